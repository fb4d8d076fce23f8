// Where builds write, and that cleaning harms nothing else.
#include "driver/driver_test.h"
#include "driver/output_files.h"

#include <QTemporaryDir>

using DriverTest::readFile;
using DriverTest::writeFile;

class OutputFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void namesProjectOutput();
    void keepsSingleFilesApart();
    void normalizesRequests_data();
    void normalizesRequests();
    void replacesWholeOrNotAtAll();
    void cleansOnlyItsOwn();
};

void OutputFilesTest::namesProjectOutput()
{
    QTemporaryDir dir;
    const QString project = dir.filePath(QStringLiteral("我的 工程&'\""));
    QVERIFY(QDir().mkpath(project));
    CompilerBuildRequest request;
    request.hasProject = true;
    request.projectPath = project;
    request.buildConfig = QStringLiteral("Debug");
    QCOMPARE(OutputFiles::executable(request.normalized()),
             project + QStringLiteral("/build/x64/debug/我的 工程&'\".exe"));
}

void OutputFilesTest::keepsSingleFilesApart()
{
    CompilerBuildRequest first;
    first.sourceFile = QStringLiteral("/a/你好.vc");
    CompilerBuildRequest second;
    second.sourceFile = QStringLiteral("/b/你好.vc");
    const QString one = OutputFiles::executable(first.normalized());
    const QString two = OutputFiles::executable(second.normalized());
    QVERIFY(one != two);
    QCOMPARE(QFileInfo(one).fileName(), QStringLiteral("你好.exe"));
    CompilerBuildRequest unsaved = first;
    unsaved.sourceText = QStringLiteral("x");
    QVERIFY(OutputFiles::executable(unsaved.normalized())
                .endsWith(QStringLiteral("/x64/release/program.exe")));
}

void OutputFilesTest::normalizesRequests_data()
{
    QTest::addColumn<QString>("platform");
    QTest::addColumn<QString>("config");
    QTest::addColumn<int>("scheme");
    QTest::addColumn<QString>("result");
    QTest::addRow("empty") << ""
                           << "" << 3 << "x64 release 3";
    QTest::addRow("known") << "x86"
                           << "debug" << 5 << "x86 debug 5";
    QTest::addRow("case") << "X86"
                          << "DEBUG" << 0 << "x86 debug 0";
    QTest::addRow("unknown") << "arm"
                             << "fast" << 9 << "x64 release 3";
}

void OutputFilesTest::normalizesRequests()
{
    QFETCH(QString, platform);
    QFETCH(QString, config);
    QFETCH(int, scheme);
    CompilerBuildRequest request;
    request.platform = platform;
    request.buildConfig = config;
    request.beautificationScheme = scheme;
    request = request.normalized();
    const QString result = QStringLiteral("%1 %2 %3")
                               .arg(request.platform, request.buildConfig)
                               .arg(request.beautificationScheme);
    QTEST(result, "result");
    QVERIFY(!request.wantsMinGW());
    request.compilerType = QStringLiteral("mingw");
    QVERIFY(request.wantsMinGW());
}

void OutputFilesTest::replacesWholeOrNotAtAll()
{
    QTemporaryDir dir;
    const QString target = dir.filePath(QStringLiteral("a.exe"));
    const QString fresh = dir.filePath(QStringLiteral("新.exe"));
    writeFile(target, "old");
    QVERIFY(!OutputFiles::replace(fresh, target));
    QCOMPARE(readFile(target), QByteArray("old"));
    writeFile(fresh, "new");
    QVERIFY(OutputFiles::replace(fresh, target));
    QCOMPARE(readFile(target), QByteArray("new"));
    writeFile(fresh, "newer");
    QVERIFY(QDir().mkpath(dir.filePath(QStringLiteral("folder.exe"))));
    QVERIFY(!OutputFiles::replace(fresh, dir.filePath(QStringLiteral("folder.exe"))));
    QVERIFY(!OutputFiles::write(dir.filePath(QStringLiteral("none/x")), "y"));
}

void OutputFilesTest::cleansOnlyItsOwn()
{
    QTemporaryDir dir;
    const QDir root(dir.path());
    writeFile(root.filePath(QStringLiteral("p/build/x64/release/a.exe")), "x");
    writeFile(root.filePath(QStringLiteral("p/build/x64/release/.cache/b.o")), "x");
    writeFile(root.filePath(QStringLiteral("p/build/x86/debug/c")), "x");
    writeFile(root.filePath(QStringLiteral("p/build/mine.txt")), "keep");
    writeFile(root.filePath(QStringLiteral("else/kept.txt")), "keep");
    QVERIFY(QFile::link(root.filePath(QStringLiteral("else")),
                        root.filePath(QStringLiteral("p/build/x64/release/link"))));
    CompilerBuildRequest request;
    request.hasProject = true;
    request.projectPath = root.filePath(QStringLiteral("p"));
    const OutputFiles::Removal removal = OutputFiles::clean(request);
    QCOMPARE(removal.removed, 4);
    QCOMPARE(removal.failed, 0);
    QCOMPARE(readFile(root.filePath(QStringLiteral("p/build/mine.txt"))), QByteArray("keep"));
    QCOMPARE(readFile(root.filePath(QStringLiteral("else/kept.txt"))), QByteArray("keep"));
    QVERIFY(!QFileInfo::exists(root.filePath(QStringLiteral("p/build/x64"))));
}

QTEST_GUILESS_MAIN(OutputFilesTest)
#include "output_files_test.moc"
