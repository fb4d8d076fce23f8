// The tool that merges the record files refuses what is incomplete or stands in the wrong place.
#include "test_files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class MergeCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void merged();
    void refused_data();
    void refused();

private:
    // Merges files with these contents, "0.json" first; returns what the tool says.
    QString merge(const QStringList &contents);

    QTemporaryDir m_folder;
};

// A complete record but for what `changes` say: "key=value" sets a text (false: the value), "key"
// takes it away.
static QString record(const QString &name, const QString &category, const QStringList &changes = {})
{
    QJsonObject object{{QStringLiteral("name"), name},
                       {QStringLiteral("category"), category},
                       {QStringLiteral("description"), QStringLiteral("说明")},
                       {QStringLiteral("syntax"), name + QStringLiteral("()")},
                       {QStringLiteral("returnType"), QStringLiteral("无")},
                       {QStringLiteral("parameters"), QJsonArray()},
                       {QStringLiteral("example"), name + QStringLiteral("()")},
                       {QStringLiteral("output"), QString()}};
    for (const QString &change : changes) {
        const QString key = change.section(QLatin1Char('='), 0, 0);
        const QString value = change.section(QLatin1Char('='), 1);
        if (change == key)
            object.remove(key);
        else if (value == QLatin1String("false"))
            object.insert(key, false);
        else
            object.insert(key, value);
    }
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

static QString file(const QStringList &records)
{
    return QLatin1Char('[') + records.join(QLatin1Char(',')) + QLatin1Char(']');
}

QString MergeCommandsTest::merge(const QStringList &contents)
{
    QStringList arguments{m_folder.filePath(QStringLiteral("merged.json"))};
    QFile::remove(arguments.first());
    for (int i = 0; i < contents.size(); ++i) {
        arguments << m_folder.filePath(QStringLiteral("%1.json").arg(i));
        TestFiles::writeFile(arguments.last(), contents.at(i).toUtf8());
    }
    QProcess process;
    process.start(QStringLiteral(VOREL_MERGE_COMMANDS), arguments);
    if (!process.waitForFinished())
        return QStringLiteral("out of time");
    const QString message = QString::fromUtf8(process.readAllStandardError()).trimmed();
    return process.exitCode() == 0 || !message.isEmpty() ? message : QStringLiteral("no message");
}

void MergeCommandsTest::merged()
{
    const QString text = QStringLiteral("文本");
    QCOMPARE(
        merge({file({record(QStringLiteral("甲"), text + QStringLiteral("/查找")),
                     record(QStringLiteral("乙"), text + QStringLiteral("/替换"))}),
               file({record(QStringLiteral("丙"), QStringLiteral("数学"),
                            {QStringLiteral("output"), QStringLiteral("unattended=false")})})}),
        QString());
    const QByteArray merged = TestFiles::readFile(m_folder.filePath(QStringLiteral("merged.json")));
    const QJsonArray commands =
        QJsonDocument::fromJson(merged).object().value(QStringLiteral("commands")).toArray();
    QStringList names;
    for (const QJsonValue &command : commands)
        names << command.toObject().value(QStringLiteral("name")).toString();
    QCOMPARE(names.join(QString()), QStringLiteral("甲乙丙"));
}

void MergeCommandsTest::refused_data()
{
    QTest::addColumn<QStringList>("contents");
    QTest::addColumn<QString>("message");
    const QString a = QStringLiteral("甲");
    const QString b = QStringLiteral("乙");
    const QString text = QStringLiteral("文本");
    const QString math = QStringLiteral("数学");
    QTest::newRow("no JSON") << QStringList{QStringLiteral("[")} << "0.json: no JSON array";
    for (const char *key :
         {"name", "category", "description", "syntax", "returnType", "parameters", "example"}) {
        const QString name = QString::fromLatin1(key);
        const QString message = QStringLiteral("0.json: a record lacks its %1:").arg(name);
        QTest::addRow("no %s", key) << QStringList{file({record(a, text, {name})})} << message;
        QTest::addRow("blank %s", key)
            << QStringList{file({record(a, text, {name + QStringLiteral("= ")})})} << message;
    }
    const QString noOutput = QStringLiteral("0.json: a record lacks its output: 甲");
    QTest::newRow("no output") << QStringList{file({record(a, text, {QStringLiteral("output")})})}
                               << noOutput;
    QTest::newRow("output of what cannot run")
        << QStringList{file({record(a, text, {QStringLiteral("unattended=false")})})} << noOutput;
    QTest::newRow("a name twice") << QStringList{file({record(a, text)}), file({record(a, math)})}
                                  << "1.json: recorded twice: 甲";
    QTest::newRow("two categories in a file")
        << QStringList{file({record(a, text), record(b, math)})}
        << "0.json: holds two top categories: 文本 and 数学";
    QTest::newRow("a category in two files")
        << QStringList{file({record(a, text)}), file({record(b, text + QStringLiteral("/查找"))})}
        << "1.json: the category 文本 stands in ";
}

void MergeCommandsTest::refused()
{
    QFETCH(QStringList, contents);
    QFETCH(QString, message);
    const QString actual = merge(contents);
    QVERIFY2(actual.contains(message), qPrintable(actual));
    QVERIFY(!QFile::exists(m_folder.filePath(QStringLiteral("merged.json"))));
}

QTEST_GUILESS_MAIN(MergeCommandsTest)
#include "merge_commands_test.moc"
