// Form files on the disk: limits, copies, and what a killed writer leaves.
#include "designer_test.h"

#include "designer/model/form_file.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cstdio>

namespace {

// A form of about a hundred kilobytes; the two kinds differ in every component.
VuiDocument bigForm(bool first)
{
    VuiDocument form;
    for (int i = 0; i < 200; ++i) {
        VL::DesignComponent component;
        component.id = QStringLiteral("按钮%1").arg(i);
        component.type = VL::Button;
        component.x = first ? 1 : 2;
        component.properties.insert(QStringLiteral("text"),
                                    QString(first ? 200 : 300, first ? u'甲' : u'乙'));
        form.append(component);
    }
    return form;
}

// Saves both forms in turn until somebody kills it.
int saveForever(const QString &path)
{
    const VuiDocument forms[] = {bigForm(true), bigForm(false)};
    for (int i = 0;; ++i) {
        if (saveFormFile(path, forms[i % 2]).status != FormStatus::Done)
            return 1;
        if (i == 1) {
            std::puts("saving");
            std::fflush(stdout);
        }
    }
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

class FormFileTest : public QObject
{
    Q_OBJECT

private slots:
    void kindsAreToldApart_data();
    void kindsAreToldApart();
    void unreadableFilesHaveAMessage();
    void savesWithACopyOfTheOldState();
    void contentIsNeverReplacedByNothing_data();
    void contentIsNeverReplacedByNothing();
    void refusesWhatIsNotItsOwn();
    void aFailedCopyDoesNotStopTheSave();
    void aKilledWriterLeavesAWholeFile();
};

void FormFileTest::kindsAreToldApart_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("selfDrawn");
    QTest::addRow("classic") << QStringLiteral("a.vui") << QByteArray("{}") << false;
    QTest::addRow("ending") << QStringLiteral("a.VLWIN") << QByteArray("{}") << true;
    QTest::addRow("format") << QStringLiteral("a.vui") << QByteArray("{\"format\":\"vlwin\"}")
                            << true;
    QTest::addRow("no ending") << QStringLiteral("a") << QByteArray("{\"format\":1}") << false;
}

void FormFileTest::kindsAreToldApart()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, selfDrawn);
    QTemporaryDir folder;
    put(folder.filePath(name), bytes);
    const FormReadResult form = readFormFile(folder.filePath(name));
    QVERIFY2(form.document, qPrintable(form.message));
    QCOMPARE(dynamic_cast<VlwinDocument *>(form.document.get()) != nullptr, selfDrawn);
}

void FormFileTest::unreadableFilesHaveAMessage()
{
    QTemporaryDir folder;
    const QString large = folder.filePath(QStringLiteral("大.vui"));
    QFile file(large);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(100 * 1024 * 1024));
    const struct
    {
        QString path;
        FormStatus status;
        QString message;
    } rows[] = {
        {folder.filePath(QStringLiteral("无.vui")), FormStatus::Missing, QStringLiteral("不存在")},
        {folder.path(), FormStatus::Unreadable, QStringLiteral("无法打开")},
        {QStringLiteral("/dev/zero"), FormStatus::Unreadable, QStringLiteral("无法打开")},
        {large, FormStatus::TooLarge, QStringLiteral("64 MB")},
    };
    for (const auto &row : rows) {
        if (row.path.startsWith(QLatin1String("/dev")) && !QFile::exists(row.path))
            continue;
        const FormReadResult form = readFormFile(row.path);
        QCOMPARE(int(form.status), int(row.status));
        QVERIFY2(form.message.contains(row.message), qPrintable(form.message));
    }
}

void FormFileTest::savesWithACopyOfTheOldState()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("ui/内/主窗口.vui"));
    QCOMPARE(int(saveFormFile(path, bigForm(true)).status), int(FormStatus::Done));
    QVERIFY(!QFile::exists(path + QStringLiteral(".bak")));
    const QByteArray first = Designer::bytesOf(path);
    QCOMPARE(first, bigForm(true).toBytes());
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(int(saveFormFile(path, bigForm(false)).status), int(FormStatus::Done));
        QCOMPARE(Designer::bytesOf(path), bigForm(false).toBytes());
        const QByteArray copy = Designer::bytesOf(path + QStringLiteral(".bak"));
        QCOMPARE(copy, i == 0 ? first : bigForm(false).toBytes());
    }
    QCOMPARE(QFileInfo(path).dir().entryList(QDir::Files).size(), 2);
}

void FormFileTest::contentIsNeverReplacedByNothing_data()
{
    QTest::addColumn<QByteArray>("present");
    QTest::addColumn<bool>("blocked");
    QTest::addRow("components") << Designer::sample("classic.vui") << true;
    QTest::addRow("unknown components") << QByteArray("{\"components\":[{\"type\":99}]}") << true;
    QTest::addRow("damaged") << Designer::sample("classic.vui").left(1000) << true;
    QTest::addRow("empty form") << Designer::sample("empty_form.vui") << false;
    QTest::addRow("empty file") << QByteArray() << false;
    QTest::addRow("blanks") << QByteArray("\n \n") << false;
}

void FormFileTest::contentIsNeverReplacedByNothing()
{
    QFETCH(QByteArray, present);
    QFETCH(bool, blocked);
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.vui"));
    put(path, present);
    if (blocked) {
        QTest::ignoreMessage(QtWarningMsg,
                             qPrintable(QStringLiteral("DesignCanvas::saveToFile blocked "
                                                       "empty-components overwrite: ") +
                                        path));
    }
    const FormSaveResult saved = saveFormFile(path, VuiDocument());
    QCOMPARE(int(saved.status), int(blocked ? FormStatus::Blocked : FormStatus::Done));
    QCOMPARE(saved.message.isEmpty(), !blocked);
    QCOMPARE(Designer::bytesOf(path), blocked ? present : VuiDocument().toBytes());
}

void FormFileTest::refusesWhatIsNotItsOwn()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("窗口.XML"));
    put(path, "<Window/>");
    QCOMPARE(int(readFormFile(path).status), int(FormStatus::Foreign));
    QCOMPARE(int(saveFormFile(path, bigForm(true)).status), int(FormStatus::Foreign));
    QCOMPARE(Designer::bytesOf(path), QByteArray("<Window/>"));
    QVERIFY(!QFile::exists(path + QStringLiteral(".bak")));
    QVERIFY(saveFormFile(QString(), bigForm(true)).status != FormStatus::Done);
    QVERIFY(saveFormFile(folder.path(), bigForm(true)).status != FormStatus::Done);
}

void FormFileTest::aFailedCopyDoesNotStopTheSave()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.vui"));
    put(path, "{}");
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("a.vui.bak")));
    QCOMPARE(int(saveFormFile(path, bigForm(true)).status), int(FormStatus::Done));
    QCOMPARE(Designer::bytesOf(path), bigForm(true).toBytes());
}

void FormFileTest::aKilledWriterLeavesAWholeFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.vui"));
    const QByteArray contents[] = {bigForm(true).toBytes(), bigForm(false).toBytes()};
    int seen[2] = {0, 0};
    for (int round = 0; round < 100; ++round) {
        QProcess writer;
        writer.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--save"), path});
        QVERIFY(writer.waitForReadyRead());
        QTest::qSleep(QRandomGenerator::global()->bounded(1, 9));
        writer.kill();
        QVERIFY(writer.waitForFinished());
        QCOMPARE(int(writer.exitStatus()), int(QProcess::CrashExit));
        const QByteArray left = Designer::bytesOf(path);
        const QByteArray copy = Designer::bytesOf(path + QStringLiteral(".bak"));
        QVERIFY(left == contents[0] || left == contents[1]);
        QVERIFY(copy == contents[0] || copy == contents[1]);
        ++seen[left == contents[0] ? 0 : 1];
    }
    QVERIFY2(seen[0] > 0 && seen[1] > 0, "the writer was killed at one place only");
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == QLatin1String("--save"))
        return saveForever(arguments[2]);
    FormFileTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "form_file_test.moc"
