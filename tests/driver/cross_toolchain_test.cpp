// Real builds with the cross compiler, and the cache of the compiled runtime.
#include "driver/cross_toolchain.h"
#include "driver/driver_test.h"
#include "driver/output_files.h"
#include "driver/program_runner.h"

#include <QDirIterator>
#include <QTemporaryDir>

#include <algorithm>
#include <future>
#include <memory>

Q_DECLARE_METATYPE(CppTools)

using DriverTest::RecordingListener;
using DriverTest::smallProgram;

class CrossToolchainTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void buildsInAnyFolder_data();
    void buildsInAnyFolder();
    void runsWhatItBuilt_data();
    void runsWhatItBuilt();
    void compilesOnlyWhatChanged();
    void compilesAsAWholeWhenTheCutIsWrong();
    void keepsTheRuntime();
    void repairsABrokenCache_data();
    void repairsABrokenCache();
    void takesWhatWasShipped();
    void otherCompilersHaveTheirOwnRuntime();
    void twoBuildsAtOnce();
    void compilesEverythingWhenTheCacheFails();
    void keepsTheOldProgram();
    void namesTheMissingPackage();

private:
    ToolchainJob job(const ProgramText &program);
    ToolchainResult build(const ToolchainJob &job) { return toolchain().build(job, m_listener); }
    CrossToolchain toolchain()
    {
        return CrossToolchain(false, RuntimeCache(m_cache.path(), QString()));
    }

    QTemporaryDir m_cache;
    std::unique_ptr<QTemporaryDir> m_dir;
    RecordingListener m_listener;
};

void CrossToolchainTest::initTestCase()
{
    if (CppTools::installed(QStringLiteral("x64")).isEmpty())
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
    QCOMPARE(DriverTest::readFile(one.executable).left(2), QByteArray("MZ"));
}

void CrossToolchainTest::runsWhatItBuilt_data()
{
    QTest::addColumn<CppTools>("tools");
    QTest::addColumn<bool>("isDebug");
    QTest::addColumn<bool>("split");
    const QList<CppTools> installed = CppTools::installed(QStringLiteral("x64"));
    for (const CppTools &tools : installed) {
        for (const bool isDebug : {false, true}) {
            for (const bool split : {false, true}) {
                QTest::addRow("%s %d %d", qPrintable(tools.name()), isDebug, split)
                    << tools << isDebug << split;
            }
        }
    }
}

void CrossToolchainTest::runsWhatItBuilt()
{
    QFETCH(CppTools, tools);
    QFETCH(bool, isDebug);
    QFETCH(bool, split);
    ToolchainJob one =
        job(smallProgram(QStringLiteral("VL_Say(\"\\xE4\\xBD\\xA0\\xE5\\xA5\\xBD\"); return 42;")));
    one.isDebug = isDebug;
    one.splitRuntime = split;
    CrossToolchain chosen = toolchain();
    chosen.setTools({tools});
    QVERIFY(chosen.build(one, m_listener).success);
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

// Two source files, each with a function; the second changes.
void CrossToolchainTest::compilesOnlyWhatChanged()
{
    const QString two = QStringLiteral("int one() {\n    return 1; // VL_LINE:1\n}\n"
                                       "int two() {\n    return one(); // VL_LINE:2\n}\n");
    ToolchainJob first = job(smallProgram(QStringLiteral("return two();")));
    const auto setFunctions = [&first](const QString &functions) {
        first.program = smallProgram(QStringLiteral("return two();"));
        QVERIFY(first.program.insertAhead(QStringLiteral("int WINAPI"), functions));
    };
    first.lineMap = {{1, {QStringLiteral("a.vc"), 1}}, {2, {QStringLiteral("b.vc"), 1}}};
    const auto objects = [&first] {
        return QDir(first.folder + QStringLiteral("/.obj_cache"))
            .entryList({QStringLiteral("unit_*")}, QDir::Files, QDir::Name);
    };
    setFunctions(two);
    QVERIFY(build(first).success);
    const QStringList old = objects();
    QCOMPARE(old.size(), 3);
    setFunctions(QString(two).replace(QStringLiteral("one();"), QStringLiteral("one() + 1;")));
    QVERIFY(build(first).success);
    const QStringList now = objects();
    QCOMPARE(now.size(), 3);
    for (const QString &object : now)
        QCOMPARE(old.contains(object), !object.startsWith(QLatin1String("unit_user_b_")));
    // A program that fails leaves the objects of what it did not touch.
    setFunctions(QString(two).replace(QStringLiteral("one();"), QStringLiteral("three();")));
    QVERIFY(!build(first).success);
    QVERIFY(objects().contains(now.first()));
    QVERIFY(!objects().join(QLatin1Char(' ')).contains(QLatin1String(".part")));
    // Nothing is linked that is linked already.
    setFunctions(two);
    QVERIFY(build(first).success);
    const QDateTime linked = QFileInfo(first.executable).lastModified();
    setFunctions(QStringLiteral("// new\n") + two);
    QVERIFY(build(first).success);
    QCOMPARE(QFileInfo(first.executable).lastModified(), linked);
}

// A name that only the preprocessor puts together cannot be seen to be mentioned.
void CrossToolchainTest::compilesAsAWholeWhenTheCutIsWrong()
{
    ToolchainJob one = job(smallProgram(QStringLiteral("return CALL(hidden);")));
    QVERIFY(one.program.insertAhead(
        QStringLiteral("int WINAPI"),
        QStringLiteral("#define CALL(name) name##_function()\n"
                       "int hidden_function() {\n    return 0; // VL_LINE:1\n}\n")));
    one.lineMap = {{1, {QStringLiteral("a.vc"), 1}}};
    const ToolchainResult result = build(one);
    QVERIFY2(result.success, qPrintable(result.toolOutput));
    QVERIFY(m_listener.diagnostics.isEmpty());
}

void CrossToolchainTest::repairsABrokenCache_data()
{
    QTest::addColumn<bool>("cut");
    QTest::addColumn<bool>("hidden");
    QTest::addRow("cut off") << true << false;
    QTest::addRow("overwritten") << false << false;
    QTest::addRow("overwritten, but of the same time") << false << true;
}

void CrossToolchainTest::repairsABrokenCache()
{
    QFETCH(bool, cut);
    QFETCH(bool, hidden);
    QVERIFY(build(job(smallProgram(QStringLiteral("return 0;")))).success);
    QDirIterator files(m_cache.path(), {QStringLiteral("*.a")}, QDir::Files,
                       QDirIterator::Subdirectories);
    int broken = 0;
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QDateTime time = file.fileTime(QFileDevice::FileModificationTime);
        QVERIFY(cut ? file.resize(file.size() / 2) : file.write(QByteArray(200, 'x')) == 200);
        QVERIFY(file.flush());
        QVERIFY(
            file.setFileTime(hidden ? time : time.addSecs(60), QFileDevice::FileModificationTime));
        ++broken;
    }
    QVERIFY(broken >= 1);
    const ToolchainResult result = build(job(smallProgram(QStringLiteral("return 0;"))));
    QVERIFY2(result.success, qPrintable(result.message + result.toolOutput));
    QCOMPARE(m_listener.diagnostics.size(), hidden ? 1 : 0);
    if (hidden)
        QVERIFY(m_listener.diagnostics.first().text.contains(QStringLiteral("已损坏")));
}

void CrossToolchainTest::takesWhatWasShipped()
{
    QVERIFY(build(job(smallProgram(QStringLiteral("return 0;")))).success);
    const QTemporaryDir own;
    const ToolchainJob one = job(smallProgram(QStringLiteral("return 0;")));
    QVERIFY(CrossToolchain(false, RuntimeCache(own.path(), m_cache.path()))
                .build(one, m_listener)
                .success);
    QVERIFY(!QDirIterator(own.path(), QDir::Files, QDirIterator::Subdirectories).hasNext());
    // Damaged, it is not touched; the user's cache takes its place.
    QDirIterator archives(m_cache.path(), {QStringLiteral("*.a")}, QDir::Files,
                          QDirIterator::Subdirectories);
    while (archives.hasNext())
        QVERIFY(QFile::resize(archives.next(), 100));
    QVERIFY(CrossToolchain(false, RuntimeCache(own.path(), m_cache.path()))
                .build(one, m_listener)
                .success);
    QVERIFY(
        QDirIterator(own.path(), {QStringLiteral("*.a")}, QDir::Files, QDirIterator::Subdirectories)
            .hasNext());
}

void CrossToolchainTest::otherCompilersHaveTheirOwnRuntime()
{
    const CppTools gcc = CppTools::installed(QStringLiteral("x64")).last();
    const QTemporaryDir folder;
    const QString script = folder.filePath(QStringLiteral("g++"));
    DriverTest::writeFile(script, "#!/bin/sh\nexec " + gcc.compiler().toUtf8() + " \"$@\"\n");
    QVERIFY(QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner));
    const CppTools tools = CppTools::gccAt(script, gcc.archiver(), gcc.resourceCompiler(),
                                           QStringLiteral("x86_64-w64-mingw32"));
    const QString before = tools.identity();
    QFile file(script);
    QVERIFY(file.open(QIODevice::Append));
    QVERIFY(file.write("# another version\n") > 0);
    file.close();
    QVERIFY(tools.identity() != before);
}

void CrossToolchainTest::twoBuildsAtOnce()
{
    const QTemporaryDir empty;
    const RuntimeCache cache(empty.path(), QString());
    const auto buildOne = [&cache](const QString &folder) {
        RecordingListener listener;
        ToolchainJob one;
        one.program = smallProgram(QStringLiteral("return 0;"));
        one.folder = folder;
        one.executable = folder + QStringLiteral("/a.exe");
        one.platform = QStringLiteral("x64");
        return CrossToolchain(false, cache).build(one, listener).success;
    };
    const QTemporaryDir first;
    const QTemporaryDir second;
    auto beside = std::async(std::launch::async, [&] { return buildOne(first.path()); });
    QVERIFY(buildOne(second.path()));
    QVERIFY(beside.get());
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
