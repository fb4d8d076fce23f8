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
    void components();
    void unexplainedComponents_data();
    void unexplainedComponents();

private:
    // Merges files with these contents, "0.json" first; returns what the tool says.
    QString merge(const QStringList &contents);
    // The same for the tables of components with these rows.
    QString mergeComponents(const QString &properties, const QString &methods,
                            const QString &events);
    QString run(const QStringList &arguments);
    QJsonArray mergedCommands() const;

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
    return run(arguments);
}

QString MergeCommandsTest::mergeComponents(const QString &properties, const QString &methods,
                                           const QString &events)
{
    const QStringList paths{m_folder.filePath(QStringLiteral("merged.json")),
                            m_folder.filePath(QStringLiteral("members.json")),
                            m_folder.filePath(QStringLiteral("events.json"))};
    QFile::remove(paths.first());
    TestFiles::writeFile(paths.at(1), QStringLiteral("{\"properties\": [%1], \"methods\": [%2]}")
                                          .arg(properties, methods)
                                          .toUtf8());
    TestFiles::writeFile(
        paths.at(2), QStringLiteral("{\"window\": [], \"control\": [%1]}").arg(events).toUtf8());
    return run({paths.at(0), QStringLiteral("--components"), paths.at(1), paths.at(2)});
}

QString MergeCommandsTest::run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(VOREL_MERGE_COMMANDS), arguments);
    if (!process.waitForFinished())
        return QStringLiteral("out of time");
    const QString message = QString::fromUtf8(process.readAllStandardError()).trimmed();
    return process.exitCode() == 0 || !message.isEmpty() ? message : QStringLiteral("no message");
}

QJsonArray MergeCommandsTest::mergedCommands() const
{
    const QByteArray merged = TestFiles::readFile(m_folder.filePath(QStringLiteral("merged.json")));
    return QJsonDocument::fromJson(merged).object().value(QStringLiteral("commands")).toArray();
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
    QStringList names;
    const QJsonArray commands = mergedCommands();
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

// Rows become records of each type that has them, classic and self-drawn.
void MergeCommandsTest::components()
{
    const QString texts =
        QStringLiteral(", \"description\": \"说明\", \"example\": \"%n.甲\", \"output\": \"\"}");
    const QString types = QStringLiteral(", \"types\": [\"ListView\"]");
    const QString property =
        QStringLiteral("{\"names\": [\"甲\", \"a\"], \"read\": \"\", \"type\": \"整数\"") + types +
        texts;
    const QString hidden = QStringLiteral("{\"names\": [\"甲\"], \"write\": \"\"") + texts;
    const QString method =
        QStringLiteral("{\"names\": [\"b\", \"乙\"], \"parameters\": [\"节点 头：一\", "
                       "\"逻辑 尾=true：二\"]") +
        types + texts;
    const QString overload =
        QStringLiteral("{\"names\": [\"乙\"], \"parameters\": [\"文本... 各项：三\"]") + types +
        texts;
    const QString event =
        QStringLiteral("{\"words\": [\"甲\"], \"result\": \"bool\", \"parameters\": "
                       "[\"const std::wstring& _t=文本：四\"]") +
        types + texts;
    QCOMPARE(mergeComponents(property + QLatin1Char(',') + hidden,
                             method + QLatin1Char(',') + overload, event),
             QString());
    QStringList lines;
    const QJsonArray commands = mergedCommands();
    for (const QJsonValue &value : commands) {
        const QVariantMap record = value.toObject().toVariantMap();
        const auto part = [&record](const char *key) {
            return record.value(QLatin1String(key)).toStringList().join(QLatin1Char(';'));
        };
        if (part("memberOf").endsWith(QStringLiteral("列表视图")) ||
            part("memberOf") == QStringLiteral("自绘表格"))
            lines << QStringList{part("name"),    part("category"),   part("type"),
                                 part("aliases"), part("returnType"), part("parameters"),
                                 part("note"),    part("example"),    part("syntax")}
                         .join(QLatin1Char('|'));
    }
    const QStringList expected{
        QStringLiteral(
            "列表视图.甲|组件类/列表视图|属性|列表视图.a|整数||只读：只能读取，不能赋值。|"
            "列表视图1.甲|列表视图1.甲"),
        QStringLiteral(
            "列表视图.乙|组件类/列表视图|方法|列表视图.b|无|头: 一;[尾=真]: 二;各项: 三||"
            "列表视图1.甲|列表视图1.乙(整数 头, [逻辑 尾=真])\n"
            "列表视图1.乙(文本 各项, ...)"),
        QStringLiteral("列表视图.甲|组件类/列表视图/事件|事件||逻辑|内容: 四||列表视图1.甲|"
                       "函数 列表视图1.甲(文本 内容) 逻辑"),
    };
    QCOMPARE(lines.mid(0, 3).join(QLatin1Char('\n')), expected.join(QLatin1Char('\n')));
    QCOMPARE(lines.size(), 6);
    QVERIFY(lines.at(3).startsWith(QStringLiteral("自绘表格.甲|组件类/自绘表格|")));
    QVERIFY(lines.at(3).endsWith(QStringLiteral("|表格1.甲|表格1.甲")));
}

void MergeCommandsTest::unexplainedComponents_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("message");
    QTest::newRow("row") << "{\"names\": [\"甲\"], \"example\": \"%n.甲()\"}"
                         << "lacks its description: 窗口.甲";
    QTest::newRow("example") << "{\"names\": [\"甲\"], \"description\": \"说明\"}"
                             << "lacks its example: 窗口.甲";
    QTest::newRow("parameter") << "{\"names\": [\"甲\"], \"description\": \"说明\", \"example\": "
                                  "\"%n.甲(1)\", \"parameters\": [\"整数 数\"]}"
                               << "lacks its parameters: 窗口.甲";
}

void MergeCommandsTest::unexplainedComponents()
{
    QFETCH(QString, row);
    QFETCH(QString, message);
    const QString actual = mergeComponents(QString(), row, QString());
    QVERIFY2(actual.contains(message), qPrintable(actual));
}

QTEST_GUILESS_MAIN(MergeCommandsTest)
#include "merge_commands_test.moc"
