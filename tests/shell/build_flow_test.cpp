// Building, running and debugging as the IDE does it, without a window.
#include "driver/cross_toolchain.h"
#include "shell/build_flow.h"
#include "test_files.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

using TestFiles::writeFile;

namespace {

const char program[] = "函数 主函数() {\n    输出(\"你好\")\n}\n";

// What a main window would hold.
class FakeHost : public BuildHost
{
public:
    QStringList saveAllFilesBeforeBuild() override
    {
        ++saves;
        return {};
    }
    BuildSubject buildSubject() override { return subject; }
    BuildChoices buildChoices() override { return choices; }
    CompilerDebugBreakpointsMap breakpoints() override { return points; }

    BuildSubject subject;
    BuildChoices choices;
    CompilerDebugBreakpointsMap points;
    int saves = 0;
};

// Gives every project a program that does what it is told.
class CopyingToolchain : public Toolchain
{
public:
    ToolchainResult build(const ToolchainJob &job, BuildListener &) override
    {
        ToolchainResult result;
        lastProgram = job.program.oneFile();
        QFile::remove(job.executable);
        result.success = QFile::copy(QStringLiteral(VOREL_CONSOLE_CHILD), job.executable);
        return result;
    }

    static QString lastProgram;
};

QString CopyingToolchain::lastProgram;

// Keeps what a flow tells.
class Told : public QObject
{
public:
    explicit Told(BuildFlow &flow)
    {
        connect(&flow, &BuildFlow::outputCleared, this, [this] { lines.clear(); });
        connect(&flow, &BuildFlow::outputLine, this,
                [this](const QString &text, OutputKind) { lines << text; });
        connect(&flow, &BuildFlow::issueFound, this, [this](const Issue &issue) {
            if (issue.kind == IssueKind::Error)
                issues << issue;
        });
        connect(&flow, &BuildFlow::issuesCleared, this, [this] { issues.clear(); });
        connect(&flow, &BuildFlow::statusChanged, this,
                [this](const QString &text) { status = text; });
        connect(&flow, &BuildFlow::runOutput, this,
                [this](const QString &text) { output += QString(text).remove(QLatin1Char('\r')); });
    }

    // The number of the line that begins so, -1 without one.
    int lineOf(const char *beginning) const
    {
        for (int i = 0; i < lines.size(); ++i) {
            if (lines.at(i).startsWith(QString::fromUtf8(beginning)))
                return i;
        }
        return -1;
    }

    QStringList lines;
    QList<Issue> issues;
    QString status;
    QString output;
};

QByteArray traceText()
{
    return TestFiles::readFile(QDir::tempPath() + QStringLiteral("/vl_run_trace.txt"));
}

} // namespace

class BuildFlowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void tellsABuild();
    void ignoresABuildWhileBuilding();
    void listsIssues();
    void listsWhatHasNoPlace_data();
    void listsWhatHasNoPlace();
    void buildsWhatIsInTheEditor();
    void cancels_data();
    void cancels();
    void runsAndPassesInput();
    void runsTwoProjects();
    void stopsAFlood();
    void refusesASecondRun();
    void debugs();
    void runsWithoutBreakpoints();
    void cleans();
    void shutsDownAtOnce();
    void buildsAndRunsForReal();

private:
    VL::ProjectInfo makeProject(const QString &name, const QByteArray &source);
    void useFakeTools(const QByteArray &mode);
    void useConsoleChild();
    void startProgram(const VL::ProjectInfo &project);
    bool endOfBuild()
    {
        return QTest::qWaitFor([this] { return !m_flow->isBuilding(); }, 60000);
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<FakeHost> m_host;
    std::unique_ptr<BuildFlow> m_flow;
    std::unique_ptr<Told> m_told;
};

// A place of its own for temporary files: cleaning removes those of all single files.
void BuildFlowTest::initTestCase()
{
    static const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    qputenv("TMPDIR", folder.path().toUtf8());
}

void BuildFlowTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    qunsetenv("VOREL_FAKE");
    m_host = std::make_unique<FakeHost>();
    m_host->choices.compilerType = QStringLiteral("MinGW");
    m_flow = std::make_unique<BuildFlow>(*m_host);
    m_told = std::make_unique<Told>(*m_flow);
}

void BuildFlowTest::cleanup()
{
    m_flow.reset();
}

VL::ProjectInfo BuildFlowTest::makeProject(const QString &name, const QByteArray &source)
{
    const QString folder = m_dir->filePath(name);
    writeFile(folder + QStringLiteral("/source/main.vc"), source);
    VL::ProjectInfo project;
    project.name = name;
    project.path = folder;
    project.sourceFiles = QStringList{QStringLiteral("source/main.vc")};
    m_host->subject.project = project;
    return project;
}

void BuildFlowTest::useFakeTools(const QByteArray &mode)
{
    qputenv("VOREL_FAKE", mode);
    m_flow->pipeline().setToolchainProvider([](const CompilerBuildRequest &) {
        auto toolchain = std::make_unique<CrossToolchain>(false);
        const QString tool = QStringLiteral(VOREL_FAKE_TOOL);
        toolchain->setTools({CppTools::gccAt(tool, tool, tool, QStringLiteral("fake"))});
        return toolchain;
    });
    qputenv("VOREL_NO_SPLIT", "1");
}

void BuildFlowTest::useConsoleChild()
{
    m_flow->pipeline().setToolchainProvider(
        [](const CompilerBuildRequest &) { return std::make_unique<CopyingToolchain>(); });
}

void BuildFlowTest::startProgram(const VL::ProjectInfo &project)
{
    m_host->subject.project = project;
    m_told->output.clear();
    m_flow->run();
    QTRY_VERIFY_WITH_TIMEOUT(m_told->output.contains(QStringLiteral("ready\n")), 60000);
}

void BuildFlowTest::tellsABuild()
{
    useFakeTools("make");
    makeProject(QStringLiteral("工程"), program);
    QSignalSpy building(m_flow.get(), &BuildFlow::buildingChanged);
    m_flow->build();
    QVERIFY(m_flow->isBuilding());
    QVERIFY(endOfBuild());
    int last = -1;
    for (const char *beginning : {"开始编译...", "项目路径: ", "是否有项目: 是", "保存项目文件...",
                                  "构建配置: [release]（输出目录: build/x64/release）",
                                  "编译器: MinGW", "编译耗时：", "编译成功！"}) {
        const int line = m_told->lineOf(beginning);
        QVERIFY2(line > last, beginning);
        last = line;
    }
    QCOMPARE(m_told->status, QStringLiteral("编译成功"));
    QCOMPARE(building.size(), 2);
    QCOMPARE(m_host->saves, 1);
    QVERIFY(m_told->issues.isEmpty());
}

void BuildFlowTest::ignoresABuildWhileBuilding()
{
    useFakeTools("make");
    makeProject(QStringLiteral("工程"), program);
    m_flow->build();
    const QStringList lines = m_told->lines;
    const int traced = traceText().count("onBuild: blocked (building)\n");
    m_flow->build();
    m_flow->rebuild();
    QCOMPARE(traceText().count("onBuild: blocked (building)\n"), traced + 1);
    QCOMPARE(m_told->lines, lines);
    QVERIFY(endOfBuild());
    QCOMPARE(m_host->saves, 1);
}

void BuildFlowTest::listsIssues()
{
    const VL::ProjectInfo project = makeProject(QStringLiteral("工程"), program);
    writeFile(project.path + QStringLiteral("/source/乙.vc"),
              "函数 计算() {\n    整数 甲 = 1\n    跳出\n}\n");
    QSignalSpy errorTab(m_flow.get(), &BuildFlow::showErrorTab);
    m_flow->build();
    QVERIFY(endOfBuild());
    QCOMPARE(m_told->status, QStringLiteral("编译失败"));
    QCOMPARE(m_told->issues.size(), 1);
    const Issue issue = m_told->issues.first();
    QCOMPARE(issue.kind, IssueKind::Error);
    QCOMPARE(issue.file, project.path + QStringLiteral("/source/乙.vc"));
    QCOMPARE(issue.line, 3);
    QCOMPARE(errorTab.size(), 1);
    QVERIFY(m_told->lineOf("编译失败，耗时：") > 0);
    QVERIFY(m_told->lineOf("请查看底部「错误」标签页中的说明。") > 0);
    // What was wrong is forgotten with the next build.
    QFile::remove(issue.file);
    useFakeTools("make");
    m_flow->build();
    QVERIFY(endOfBuild());
    QVERIFY(m_told->issues.isEmpty());
}

void BuildFlowTest::listsWhatHasNoPlace_data()
{
    QTest::addColumn<bool>("hasProject");
    QTest::addColumn<QString>("issue");
    QTest::addRow("nothing open") << false << "没有可编译的内容：请先打开一个项目或源文件。";
    QTest::addRow("project without sources") << true << "工程中没有源文件";
}

void BuildFlowTest::listsWhatHasNoPlace()
{
    QFETCH(bool, hasProject);
    QFETCH(QString, issue);
    if (hasProject) {
        const VL::ProjectInfo project = makeProject(QStringLiteral("空"), program);
        QFile::remove(project.path + QStringLiteral("/source/main.vc"));
        m_host->subject.project->sourceFiles.clear();
    }
    m_flow->build();
    QVERIFY(endOfBuild());
    QCOMPARE(m_told->issues.size(), 1);
    QVERIFY2(m_told->issues.first().text.startsWith(issue),
             qPrintable(m_told->issues.first().text));
    QCOMPARE(m_told->issues.first().file, QString());
}

// A source without a project, saved or not; its problems lead back to it.
void BuildFlowTest::buildsWhatIsInTheEditor()
{
    const QString path = m_dir->filePath(QStringLiteral("单.vc"));
    writeFile(path, program);
    m_host->subject.sourcePath = path;
    m_host->subject.sourceText = QStringLiteral("函数 主函数() {\n    整数 甲 = 1\n    跳出\n}\n");
    m_flow->build();
    QVERIFY(endOfBuild());
    QCOMPARE(m_told->issues.size(), 1);
    QCOMPARE(m_told->issues.first().file, path);
    QCOMPARE(m_told->issues.first().line, 3);
    QVERIFY(m_told->lineOf("是否有项目: 否") > 0);
    useFakeTools("make");
    m_host->subject.sourceText = QString::fromUtf8(program);
    m_flow->build();
    QVERIFY(endOfBuild());
    QVERIFY(m_told->issues.isEmpty());
    QCOMPARE(m_told->status, QStringLiteral("编译成功"));
}

void BuildFlowTest::cancels_data()
{
    QTest::addColumn<bool>("atOnce");
    QTest::addRow("at once") << true;
    QTest::addRow("in the toolchain") << false;
}

void BuildFlowTest::cancels()
{
    QFETCH(bool, atOnce);
    useFakeTools("sleep");
    makeProject(QStringLiteral("工程"), program);
    int percent = 0;
    connect(m_flow.get(), &BuildFlow::progress, this, [&percent](int now) { percent = now; });
    m_flow->run();
    if (!atOnce)
        QTRY_VERIFY(percent >= 80);
    m_flow->stopRun();
    QTRY_VERIFY_WITH_TIMEOUT(!m_flow->isBuilding(), 2000);
    QCOMPARE(m_told->status, QStringLiteral("编译已取消"));
    QVERIFY(m_told->issues.isEmpty());
    QVERIFY(!m_flow->hasRun(m_host->subject.project->path));
}

void BuildFlowTest::runsAndPassesInput()
{
    useConsoleChild();
    const VL::ProjectInfo project = makeProject(QStringLiteral("工程"), program);
    QSignalSpy finished(m_flow.get(), &BuildFlow::runFinished);
    QSignalSpy running(m_flow.get(), &BuildFlow::runningChanged);
    startProgram(project);
    QVERIFY(m_flow->hasRun(project.path));
    m_flow->writeRunInput(QStringLiteral("你好"));
    QTRY_COMPARE(m_told->output, QStringLiteral("ready\n<你好\n"));
    m_flow->writeRunInput(QStringLiteral("exit 7"));
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(0).toInt(), 7);
    QCOMPARE(finished.first().at(1).toString(), Compiler::canonicalPath(project.path));
    QVERIFY(!m_flow->hasRun(project.path));
    QCOMPARE(running.size(), 2);
    QVERIFY(m_told->lineOf("程序已结束，退出代码: 7") > 0);
}

void BuildFlowTest::runsTwoProjects()
{
    useConsoleChild();
    const VL::ProjectInfo first = makeProject(QStringLiteral("甲"), program);
    const VL::ProjectInfo second = makeProject(QStringLiteral("乙"), program);
    QSignalSpy finished(m_flow.get(), &BuildFlow::runFinished);
    startProgram(first);
    startProgram(second);
    QVERIFY(m_flow->hasRun(first.path) && m_flow->hasRun(second.path));
    m_flow->writeRunInput(QStringLiteral("exit 3"));
    QTRY_COMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(1).toString(), Compiler::canonicalPath(second.path));
    QVERIFY(m_flow->hasRun(first.path) && !m_flow->hasRun(second.path));
    m_host->subject.project = first;
    m_flow->writeRunInput(QStringLiteral("exit 4"));
    QTRY_COMPARE(finished.size(), 2);
    QCOMPARE(finished.last().at(0).toInt(), 4);
}

void BuildFlowTest::stopsAFlood()
{
    useConsoleChild();
    const VL::ProjectInfo project = makeProject(QStringLiteral("工程"), program);
    startProgram(project);
    QSignalSpy pieces(m_flow.get(), &BuildFlow::runOutput);
    QElapsedTimer time;
    time.start();
    m_flow->writeRunInput(QStringLiteral("flood"));
    QTRY_VERIFY(pieces.size() > 10);
    const qint64 flooded = time.elapsed();
    QVERIFY2(pieces.size() <= flooded / OutputThrottle::interval + 2,
             qPrintable(QString::number(pieces.size())));
    time.restart();
    m_flow->stopRun();
    QVERIFY(!m_flow->hasRun(project.path));
    QVERIFY(m_told->lineOf("已停止当前活动项目的运行") > 0);
    // The thread of the programs is free again as soon as the program is gone.
    QSignalSpy status(m_flow.get(), &BuildFlow::statusChanged);
    m_flow->clean();
    QTRY_VERIFY(m_told->status == QStringLiteral("清理完成"));
    qInfo("stopping a flood took %lld ms", time.elapsed());
    pieces.clear();
    QTest::qWait(4 * OutputThrottle::interval);
    QCOMPARE(pieces.size(), 0);
}

void BuildFlowTest::refusesASecondRun()
{
    useConsoleChild();
    const VL::ProjectInfo project = makeProject(QStringLiteral("工程"), program);
    startProgram(project);
    m_flow->run();
    QVERIFY(!m_flow->isBuilding());
    QVERIFY(m_told->lineOf("当前活动项目已有程序在运行，请先停止或切换到其它项目。") > 0);
    // Building ends the program, whose file is to be written.
    m_flow->build();
    QVERIFY(!m_flow->hasRun(project.path));
    QVERIFY(endOfBuild());
    QCOMPARE(m_told->status, QStringLiteral("编译成功"));
}

void BuildFlowTest::debugs()
{
    useConsoleChild();
    const VL::ProjectInfo project = makeProject(QStringLiteral("工程"), program);
    m_host->points.insert(project.path + QStringLiteral("/source/main.vc"), {2, 5});
    m_host->points.insert(project.path + QStringLiteral("/source/乙.vc"), {});
    const auto debugOnce = [&] {
        m_told->output.clear();
        m_flow->debug();
        QTRY_VERIFY_WITH_TIMEOUT(m_told->output.contains(QStringLiteral("ready\n")), 60000);
        QVERIFY(m_told->lineOf("🔴 调试模式启动，共 2 个断点：") > 0);
        QVERIFY(m_told->lineOf("   📄 main.vc → 行 2, 5") > 0);
        QCOMPARE(m_told->lineOf("   📄 乙.vc"), -1);
    };
    debugOnce();
    QVERIFY(CopyingToolchain::lastProgram.contains(QStringLiteral("VL_DebugBreakpoint(2, ")));
    const char unchanged[] = "无修改且断点未变化，跳过编译，直接调试运行...";
    QCOMPARE(m_told->lineOf(unchanged), -1);
    debugOnce();
    QVERIFY(m_told->lineOf(unchanged) > 0);
    m_host->points[project.path + QStringLiteral("/source/main.vc")] = {1, 3};
    m_told->output.clear();
    m_flow->debug();
    QTRY_VERIFY_WITH_TIMEOUT(m_told->output.contains(QStringLiteral("ready\n")), 60000);
    QVERIFY(m_told->lineOf("   📄 main.vc → 行 1, 3") > 0);
    QCOMPARE(m_told->lineOf(unchanged), -1);
    // Whoever builds only wants a program for others.
    m_flow->build();
    QVERIFY(endOfBuild());
    QVERIFY(!CopyingToolchain::lastProgram.contains(QStringLiteral("VL_DebugBreakpoint")));
}

void BuildFlowTest::runsWithoutBreakpoints()
{
    useConsoleChild();
    makeProject(QStringLiteral("工程"), program);
    m_flow->debug();
    QTRY_VERIFY_WITH_TIMEOUT(m_told->output.contains(QStringLiteral("ready\n")), 60000);
    QVERIFY(m_told->lineOf("⚡ 调试模式：未设置断点，将以普通模式运行") > 0);
    QVERIFY(m_told->lineOf("💡 提示：") > 0);
}

// Of the active project, whether it has been built in this session or not.
void BuildFlowTest::cleans()
{
    const VL::ProjectInfo project = makeProject(QStringLiteral("工程"), program);
    const QString left = project.path + QStringLiteral("/build/x64/release/main.obj");
    writeFile(left, "x");
    m_flow->clean();
    QTRY_COMPARE(m_told->status, QStringLiteral("清理完成"));
    QVERIFY(!QFileInfo::exists(left));
    QVERIFY(m_told->lineOf("开始清理 build 目录（x86/x64，debug/release）") >= 0);
    QVERIFY(m_told->lineOf("清理完成，共删除 ") > 0);
}

void BuildFlowTest::shutsDownAtOnce()
{
    useFakeTools("sleep");
    makeProject(QStringLiteral("工程"), program);
    int percent = 0;
    connect(m_flow.get(), &BuildFlow::progress, this, [&percent](int now) { percent = now; });
    m_flow->build();
    QTRY_VERIFY(percent >= 80);
    QElapsedTimer time;
    time.start();
    m_flow->shutdown();
    QVERIFY2(time.elapsed() < 3000, qPrintable(QString::number(time.elapsed())));
    QVERIFY(!m_flow->isBuilding());
    m_flow->build();
    QVERIFY(!m_flow->isBuilding());
}

void BuildFlowTest::buildsAndRunsForReal()
{
    qunsetenv("VOREL_NO_SPLIT");
    const VL::ProjectInfo project =
        makeProject(QStringLiteral("真"), "函数 主函数() {\n    整数 甲 = 0\n    当 (真) {\n       "
                                          " 甲++\n        输出(甲)\n    }\n}\n");
    m_flow->run();
    QTRY_VERIFY_WITH_TIMEOUT(m_told->output.startsWith(QStringLiteral("1\n2\n3\n")), 120000);
    QVERIFY(m_told->lineOf("正在启动程序...") > 0);
    m_flow->stopRun();
    QVERIFY(!m_flow->hasRun(project.path));
}

QTEST_GUILESS_MAIN(BuildFlowTest)
#include "build_flow_test.moc"
