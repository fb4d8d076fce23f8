// A program with breakpoints, built and run: its boxes appear, show values and end the program.
#include "driver/build_pipeline.h"
#include "driver/compiler_thread.h"
#include "driver/driver_test.h"
#include "driver/program_runner.h"

#include <QSignalSpy>
#include <QTemporaryDir>

// Values of all kinds, every statement, names that end, hide each other or have no text form.
const QString kProgram = QStringLiteral(VOREL_SOURCE_DIR "/tests/driver/data/debugged.vc");

class DebugRunTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void stopsAndShows();
    void cancelEndsTheProgram();
    void everyLineCompiles();

private:
    // Builds with breakpoints at these lines; the path of the program, or empty.
    QString build(const QList<int> &lines);
    struct Ending
    {
        int code;
        QStringList boxes;
    };
    Ending run(const QString &executable, const QStringList &answers);

    std::unique_ptr<QTemporaryDir> m_dir;
    QByteArray m_source;
};

void DebugRunTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_source = DriverTest::readFile(kProgram);
    DriverTest::writeFile(m_dir->filePath(QStringLiteral("工程/source/main.vc")), m_source);
}

QString DebugRunTest::build(const QList<int> &lines)
{
    CompilerBuildRequest request;
    request.hasProject = true;
    request.projectPath = m_dir->filePath(QStringLiteral("工程"));
    request.compilerType = QStringLiteral("MinGW");
    request.buildConfig = QStringLiteral("debug");
    DriverTest::RecordingListener listener;
    BuildOutcome outcome;
    runWithDeepStack([&] {
        BuildPipeline pipeline;
        pipeline.setDebugMode(true);
        pipeline.setBreakpoints({{request.projectPath + QStringLiteral("/source/main.vc"), lines}});
        outcome = pipeline.run(request, listener);
    });
    if (!outcome.success)
        qWarning().noquote() << outcome.output;
    return outcome.success ? outcome.executable : QString();
}

DebugRunTest::Ending DebugRunTest::run(const QString &executable, const QStringList &answers)
{
    ProgramRunner runner;
    QString output;
    connect(&runner, &ProgramRunner::outputReady, this,
            [&output](const QString &text) { output += text; });
    QSignalSpy finished(&runner, &ProgramRunner::finished);
    const QString error =
        runner.start(QStringLiteral(VOREL_BOX_PRESSER), QStringList{executable} + answers,
                     QFileInfo(executable).path(), ProgramRunner::Channels::Captured);
    if (!error.isEmpty() || (finished.isEmpty() && !finished.wait(120000)))
        return {-2, {error}};
    output.remove(QLatin1Char('\r'));
    QStringList boxes = output.split(QStringLiteral("\n--\n"));
    boxes.removeLast(); // what the program has printed itself
    return {runner.exitCode(), boxes};
}

void DebugRunTest::stopsAndShows()
{
    const QString executable = build({15, 17});
    QVERIFY(!executable.isEmpty());
    const Ending ending = run(executable, {QStringLiteral("ok"), QStringLiteral("ok")});
    QCOMPARE(ending.code, 4);
    QCOMPARE(ending.boxes.size(), 1);
    QVERIFY2(ending.boxes.first().endsWith(QStringLiteral(
                 "断点暂停\n\n文件: main.vc\n行号: 16\n\n▶ 代码:\n如果 (和 > 3) {\n\n"
                 "变量值:\n甲 = 1\n乙 = 1.5\n和 = 2.5\n\n\n"
                 "点击 [确定] 继续执行\n点击 [取消] 停止调试")),
             qPrintable(ending.boxes.first()));
}

void DebugRunTest::cancelEndsTheProgram()
{
    const QString executable = build({54, 55});
    QVERIFY(!executable.isEmpty());
    const Ending ending = run(executable, {QStringLiteral("ok"), QStringLiteral("cancel")});
    QCOMPARE(ending.code, 0);
    QCOMPARE(ending.boxes.size(), 2);
    const QString &shown = ending.boxes.last();
    for (const char *part : {"行号: 55\n\n▶ 代码:\n输出(i, 猫.叫(2), 名, 真的)\n", "\ni = 7\n",
                             "\n名 = 引\"号\\路径\n", "\n列表 = [1, \"二\"]\n", "\n真的 = 真\n"})
        QVERIFY2(shown.contains(QString::fromUtf8(part)), qPrintable(shown));
    QVERIFY2(!shown.contains(QStringLiteral("猫 =")) && !shown.contains(QStringLiteral("内部")),
             qPrintable(shown));
}

void DebugRunTest::everyLineCompiles()
{
    QList<int> lines;
    for (int line = 1; line <= m_source.count('\n'); ++line)
        lines << line;
    QVERIFY(!build(lines).isEmpty());
}

QTEST_GUILESS_MAIN(DebugRunTest)
#include "debug_run_test.moc"
