// Project files: what is read, what is corrected, and that writing loses nothing.
#include "project/project_info.h"
#include "test_files.h"

#include <QTemporaryDir>

using TestFiles::writeFile;
using VL::ProjectInfo;

class ProjectInfoTest : public QObject
{
    Q_OBJECT

private slots:
    void readsEveryKey();
    void corrects_data();
    void corrects();
    void refuses_data();
    void refuses();
    void writesKeysInOrder();
    void keepsWhatItDoesNotKnow();
    void changesOnlyWhatChanged();
    void findsFilesOfFolders_data();
    void findsFilesOfFolders();
    void anyBytes();
};

static const char kWhole[] = R"({
    "name": "记账",
    "version": "2.1",
    "author": "甲",
    "description": "一句话",
    "targetPlatform": "x86",
    "compiler": "MinGW",
    "unicode": false,
    "sourceFiles": [
        "source/main.vc",
        "source\\b.vc"
    ],
    "uiFiles": [],
    "windowFiles": [
        "ui/主窗口.vui"
    ],
    "mainWindowFile": "ui/主窗口.vui",
    "startupWindowFile": "ui\\主窗口.vui",
    "resourceFiles": [
        "resource/a.png"
    ],
    "globalVarsFile": "source/globals.vc",
    "globalConstFile": "source/constants.vc",
    "encryptSource": true,
    "encryptLevel": 2,
    "uiBackend": "vlwin",
    "useBeautification": true,
    "beautificationScheme": 5,
    "created": "2026-01-02T03:04:05",
    "modified": "2026-01-02T03:04:06",
    "ProjectSettings": {
        "productName": "记账本",
        "version": "3.2.1"
    }
}
)";

static ProjectInfo parsed(const QByteArray &bytes)
{
    const ReadProject read = ProjectFile::parse(bytes, QStringLiteral("a.vlproj"));
    if (!read.succeeded())
        qWarning("%s", qPrintable(read.error));
    return read.info;
}

void ProjectInfoTest::readsEveryKey()
{
    const ProjectInfo info = parsed(kWhole);
    QCOMPARE(info.name, QStringLiteral("记账"));
    QCOMPARE(info.version, QStringLiteral("2.1"));
    QCOMPARE(info.author, QStringLiteral("甲"));
    QCOMPARE(info.description, QStringLiteral("一句话"));
    QCOMPARE(info.targetPlatform, QStringLiteral("x86"));
    QCOMPARE(info.compiler, QStringLiteral("MinGW"));
    QCOMPARE(info.unicode, false);
    QCOMPARE(info.sourceFiles,
             (QStringList{QStringLiteral("source/main.vc"), QStringLiteral("source/b.vc")}));
    QCOMPARE(info.windowFiles, QStringList{QStringLiteral("ui/主窗口.vui")});
    QCOMPARE(info.mainWindowFile, QStringLiteral("ui/主窗口.vui"));
    QCOMPARE(info.startupWindowFile, QStringLiteral("ui/主窗口.vui"));
    QCOMPARE(info.resourceFiles, QStringList{QStringLiteral("resource/a.png")});
    QCOMPARE(info.globalVarsFile, QStringLiteral("source/globals.vc"));
    QCOMPARE(info.globalConstFile, QStringLiteral("source/constants.vc"));
    QCOMPARE(info.encryptSource, true);
    QCOMPARE(info.encryptLevel, 2);
    QCOMPARE(info.uiBackend, QStringLiteral("vlwin"));
    QCOMPARE(info.useBeautification, true);
    QCOMPARE(info.beautificationScheme, 5);
    QCOMPARE(info.created, QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    QCOMPARE(info.modified, QDateTime(QDate(2026, 1, 2), QTime(3, 4, 6)));
    QCOMPARE(info.identity.productName, QStringLiteral("记账本"));
    QCOMPARE(info.identity.version, QStringLiteral("3.2.1"));
}

void ProjectInfoTest::corrects_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("backend");
    QTest::addColumn<int>("scheme");
    const auto row = [](const char *bytes, const char *backend, int scheme) {
        QTest::addRow("%s", bytes) << QByteArray(bytes) << QString::fromLatin1(backend) << scheme;
    };
    row("{}", "win32", 3);
    row(R"({"uiBackend":"advanced","beautificationScheme":9})", "win32", 3);
    row(R"({"uiBackend":"","beautificationScheme":-1})", "win32", 3);
    row(R"({"windowFiles":["ui/a.vlwin"]})", "vlwin", 3);
    row(R"({"windowFiles":["ui/a.vlwin","ui/b.vui"]})", "win32", 3);
    row(R"({"windowFiles":["ui/a.xml"]})", "vlui", 3);
    row(R"({"uiBackend":7,"beautificationScheme":"5","windowFiles":"ui/a.vlwin"})", "win32", 3);
    row(R"({"beautificationScheme":1.5,"sourceFiles":[1,null,{}],"name":[]})", "win32", 3);
    row(R"({"beautificationScheme":1e400})", "win32", 3);
}

void ProjectInfoTest::corrects()
{
    QFETCH(QByteArray, bytes);
    const ReadProject read = ProjectFile::parse(bytes, QString());
    QVERIFY2(read.succeeded(), qPrintable(read.error));
    QTEST(read.info.uiBackend, "backend");
    QTEST(read.info.beautificationScheme, "scheme");
    QCOMPARE(read.info.sourceFiles, QStringList());
    QCOMPARE(read.info.name, QString());
}

void ProjectInfoTest::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    QTest::addRow("empty") << QByteArray() << QStringLiteral("第 1 行");
    QTest::addRow("cut off") << QByteArray("{\n\"name\": \"甲").left(14)
                             << QStringLiteral("第 2 行");
    QTest::addRow("list") << QByteArray("[]") << QStringLiteral("不是 JSON 对象");
    QTest::addRow("deep") << QByteArray(100000, '[') << QStringLiteral("JSON");
    QTest::addRow("binary") << QByteArray("\0\xFF\x01", 3) << QStringLiteral("JSON");
}

void ProjectInfoTest::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const ReadProject read = ProjectFile::parse(bytes, QStringLiteral("甲.vlproj"));
    QVERIFY2(read.error.contains(message), qPrintable(read.error));
    QVERIFY(read.error.contains(QStringLiteral("甲.vlproj")));
}

void ProjectInfoTest::writesKeysInOrder()
{
    ProjectInfo info = parsed(kWhole);
    info.original.clear();
    const QByteArray written = ProjectFile::serialize(info);
    // What "ProjectSettings" says is the user's own writing.
    const QByteArray expected = QByteArray(kWhole)
                                    .replace("\\\\", "/")
                                    .replace("[]", "[\n    ]")
                                    .replace(",\n    \"ProjectSettings\": {\n"
                                             "        \"productName\": \"记账本\",\n"
                                             "        \"version\": \"3.2.1\"\n    }",
                                             "");
    QCOMPARE(QString::fromUtf8(written), QString::fromUtf8(expected));
    QCOMPARE(ProjectFile::serialize(parsed(written)), written);
}

void ProjectInfoTest::keepsWhatItDoesNotKnow()
{
    const QByteArray odd("\xEF\xBB\xBF{ \"zukunft\":[1.50 , {\"a\":null}],\r\n\"name\":\"a\"}\r\n");
    ProjectInfo info = parsed(odd);
    QCOMPARE(ProjectFile::serialize(info), odd);
    info.author = QStringLiteral("甲");
    const QByteArray written = ProjectFile::serialize(info);
    QVERIFY(written.contains("\"zukunft\":[1.50 , {\"a\":null}]"));
    QCOMPARE(parsed(written).author, QStringLiteral("甲"));
}

void ProjectInfoTest::changesOnlyWhatChanged()
{
    ProjectInfo info = parsed(kWhole);
    info.sourceFiles << QStringLiteral("source/c.vc");
    const QList<QByteArray> before = QByteArray(kWhole).split('\n');
    const QList<QByteArray> after = ProjectFile::serialize(info).split('\n');
    QCOMPARE(after.size(), before.size() + 1);
    int same = 0;
    for (const QByteArray &line : after)
        same += before.contains(line) ? 1 : 0;
    QVERIFY(same >= before.size() - 2);
}

void ProjectInfoTest::findsFilesOfFolders_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QStringList>("windows");
    QTest::addRow("win32") << "win32" << QStringList{"ui/a.vui", "ui/c.xml"};
    QTest::addRow("vlwin") << "vlwin" << QStringList{"ui/a.vui", "ui/b.vlwin"};
    QTest::addRow("vlui") << "vlui" << QStringList{"ui/c.xml"};
}

void ProjectInfoTest::findsFilesOfFolders()
{
    QFETCH(QString, backend);
    QFETCH(QStringList, windows);
    const QTemporaryDir dir;
    for (const char *name :
         {"source/main.vc", "source/extra.vc", "source/c.vpp", "source/t.vt", "source/d.vd",
          "source/notes.txt", "ui/a.vui", "ui/b.vlwin", "ui/c.xml"})
        writeFile(dir.filePath(QLatin1String(name)), "x");
    ProjectInfo info;
    info.path = dir.path();
    info.uiBackend = backend;
    info.sourceFiles = QStringList{QStringLiteral("source/main.vc")};
    ProjectFile::addFilesOfFolders(info);
    QCOMPARE(info.sourceFiles.first(), QStringLiteral("source/main.vc"));
    QCOMPARE(info.sourceFiles.size(), 5);
    QVERIFY(info.sourceFiles.contains(QStringLiteral("source/extra.vc")));
    QCOMPARE(info.windowFiles, windows);
    ProjectFile::addFilesOfFolders(info);
    QCOMPARE(info.sourceFiles.size(), 5);
}

// No change of single bytes may bring the reader down or lose what it could read.
void ProjectInfoTest::anyBytes()
{
    uint state = 1;
    const auto next = [&state] { return state = state * 1664525U + 1013904223U; };
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes(kWhole);
        for (uint i = 0; i <= next() % 3; ++i)
            bytes[int(next() >> 8) % bytes.size()] = char(next() >> 16);
        const ReadProject read = ProjectFile::parse(bytes, QString());
        if (read.succeeded())
            QCOMPARE(ProjectFile::serialize(read.info), bytes);
    }
}

QTEST_APPLESS_MAIN(ProjectInfoTest)
#include "project_info_test.moc"
