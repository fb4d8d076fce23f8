// Real builds with the cross compiler, and the cache of the compiled runtime.
#include "driver/cross_toolchain.h"
#include "driver/driver_test.h"
#include "driver/output_files.h"
#include "driver/program_runner.h"

#include <QDirIterator>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

using DriverTest::RecordingListener;
using DriverTest::smallProgram;

class CrossToolchainTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void buildsInAnyFolder_data();
    void buildsInAnyFolder();
    void runsWhatItBuilt();
    void keepsTheRuntime();
    void repairsABrokenCache();
    void compilesEverythingWhenTheCacheFails();
    void keepsTheOldProgram();
    void namesTheMissingPackage();

private:
    ToolchainJob job(const ProgramText &program);
    ToolchainResult build(const ToolchainJob &job) { return toolchain().build(job, m_listener); }
    CrossToolchain toolchain() { return CrossToolchain(false, RuntimeCache(m_cache.path())); }

    QTemporaryDir m_cache;
    std::unique_ptr<QTemporaryDir> m_dir;
    RecordingListener m_listener;
};

void CrossToolchainTest::initTestCase()
{
    if (CrossToolchain::findTools(QStringLiteral("x64")).compiler.isEmpty())
        QSKIP("the cross compiler is not installed");
}

ToolchainJob CrossToolchainTest::job(const ProgramText &program)
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_listener = RecordingListener();
    ToolchainJob job;
    job.program = program;
    job.folder = m_dir->path();
    job.executable = m_dir->filePath(QStringLiteral("程序.exe"));
    job.platform = QStringLiteral("x64");
    return job;
}

void CrossToolchainTest::buildsInAnyFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addRow("chinese") << "我的工程";
    QTest::addRow("blanks and quotes") << "a b'c\"d";
    QTest::addRow("shell characters") << "a&b;$(c) %PATH% #";
}

void CrossToolchainTest::buildsInAnyFolder()
{
    QFETCH(QString, folder);
    ToolchainJob one = job(smallProgram(QStringLiteral("return 0;")));
    one.folder = m_dir->filePath(folder);
    one.executable = one.folder + QLatin1Char('/') + folder + QStringLiteral(".exe");
    QVERIFY(QDir().mkpath(one.folder));
    const ToolchainResult result = build(one);
    QVERIFY2(result.success, qPrintable(result.message + result.toolOutput));
    QCOMPARE(QDir(one.folder).entryList(QDir::Files, QDir::Name).size(), 2);
    QCOMPARE(DriverTest::readFile(one.executable).left(2), QByteArray("MZ"));
}

void CrossToolchainTest::runsWhatItBuilt()
{
    const ToolchainJob one =
        job(smallProgram(QStringLiteral("VL_Say(\"\\xE4\\xBD\\xA0\\xE5\\xA5\\xBD\"); return 42;")));
    QVERIFY(build(one).success);
    ProgramRunner runner;
    QString text;
    connect(&runner, &ProgramRunner::outputReady, this, [&](const QString &part) { text += part; });
    const QString error =
        runner.start(one.executable, {}, one.folder, ProgramRunner::Channels::Captured);
    if (error.contains(QLatin1String("sudo apt install")))
        QSKIP(qPrintable(error));
    QCOMPARE(error, QString());
    QTRY_VERIFY_WITH_TIMEOUT(!runner.isRunning(), 60000);
    QCOMPARE(text.trimmed(), QStringLiteral("你好"));
    QCOMPARE(runner.exitCode(), 42);
}

void CrossToolchainTest::keepsTheRuntime()
{
    const auto announced = [this] {
        return std::any_of(m_listener.steps.begin(), m_listener.steps.end(), [](const auto &step) {
            return step.second.contains(QStringLiteral("运行库"));
        });
    };
    QVERIFY(build(job(smallProgram(QStringLiteral("return 1;")))).success);
    QVERIFY(build(job(smallProgram(QStringLiteral("return 2;")))).success);
    QVERIFY(!announced());
    // Other definitions are compiled, the declarations stay.
    ProgramText other = smallProgram(QStringLiteral("return 3;"));
    other.appendRuntime(ProgramText::PartKind::RuntimeSource, QStringLiteral("01_more"),
                        QStringLiteral("int VL_More() { return 1; }\n"));
    QVERIFY(build(job(other)).success);
    QVERIFY(announced());
}

void CrossToolchainTest::repairsABrokenCache()
{
    QVERIFY(build(job(smallProgram(QStringLiteral("return 0;")))).success);
    QDirIterator files(m_cache.path(), {QStringLiteral("*.a"), QStringLiteral("*.gch")},
                       QDir::Files, QDirIterator::Subdirectories);
    int broken = 0;
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.resize(file.size() / 2));
        ++broken;
    }
    QVERIFY(broken >= 2);
    QVERIFY(build(job(smallProgram(QStringLiteral("return 0;")))).success);
    QVERIFY(m_listener.diagnostics.isEmpty());
}

void CrossToolchainTest::compilesEverythingWhenTheCacheFails()
{
    const ToolchainJob one = job(smallProgram(QStringLiteral("return 0;")));
    // A file stands where the cache's folder should be.
    const QString blocked = m_dir->filePath(QStringLiteral("cache"));
    DriverTest::writeFile(blocked, "x");
    const ToolchainResult result =
        CrossToolchain(false, RuntimeCache(blocked)).build(one, m_listener);
    QVERIFY2(result.success, qPrintable(result.message + result.toolOutput));
    QCOMPARE(m_listener.diagnostics.size(), 1);
    QVERIFY(m_listener.diagnostics.first().text.contains(QStringLiteral("已改为整体编译")));
}

void CrossToolchainTest::keepsTheOldProgram()
{
    const ToolchainJob refused = job(smallProgram(QStringLiteral("return nothing;")));
    DriverTest::writeFile(refused.executable, "old");
    const ToolchainResult result = build(refused);
    QVERIFY(!result.success);
    QVERIFY(result.toolOutput.contains(QStringLiteral("nothing")));
    QCOMPARE(DriverTest::readFile(refused.executable), QByteArray("old"));
    // A folder stands where the program should be.
    ToolchainJob blocked = job(smallProgram(QStringLiteral("return 0;")));
    QVERIFY(QDir().mkpath(blocked.executable));
    QVERIFY(build(blocked).message.contains(QStringLiteral("无法写入可执行文件")));
    blocked.folder += QStringLiteral("/none");
    QCOMPARE(build(blocked).message,
             QStringLiteral("无法写入生成代码文件，请检查输出目录权限与磁盘空间"));
}

void CrossToolchainTest::namesTheMissingPackage()
{
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nowhere");
    ToolchainJob one = job(smallProgram(QStringLiteral("return 0;")));
    one.platform = QStringLiteral("x86");
    const ToolchainResult result = build(one);
    qputenv("PATH", path);
    QVERIFY2(result.message.contains(QStringLiteral("g++-mingw-w64-i686")),
             qPrintable(result.message));
}

QTEST_GUILESS_MAIN(CrossToolchainTest)
#include "cross_toolchain_test.moc"
