// Compiler as a shell sees it: signals in order, one end for every build, cancelling.
#include "driver/compiler_thread.h"
#include "driver/cross_toolchain.h"
#include "driver/driver_test.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <csignal>
#include <new>

using DriverTest::writeFile;

namespace {

const char program[] = "函数 主函数() {\n    输出(\"你好\")\n}\n";

} // namespace

class CompilerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void tellsStagesInOrder();
    void reusesTokens();
    void endsOnce_data();
    void endsOnce();
    void warnsOnce();
    void placesErrorsInFiles();
    void quotesTheWrittenText_data();
    void quotesTheWrittenText();
    void refusesASecondBuild();
    void cancelsAtTheToolchain();
    void survivesShutdownDuringABuild();
    void catchesExceptions();
    void stopsAtTheGoal();
    void asksForLibraries();
    void reportsAMissingProgram();

private:
    // Every tool is the fake one, which does what `mode` says.
    static void useFakeTools(Compiler &compiler, const QByteArray &mode);
    CompilerBuildRequest projectRequest(const QByteArray &source);

    std::unique_ptr<QTemporaryDir> m_dir;
};

void CompilerTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    qunsetenv("VOREL_FAKE");
}

void CompilerTest::useFakeTools(Compiler &compiler, const QByteArray &mode)
{
    qputenv("VOREL_FAKE", mode);
    compiler.pipeline().setToolchainProvider([](const CompilerBuildRequest &) {
        auto toolchain = std::make_unique<CrossToolchain>(false);
        const QString tool = QStringLiteral(VOREL_FAKE_TOOL);
        toolchain->setTools({CppTools::gccAt(tool, tool, tool, QStringLiteral("fake"))});
        return toolchain;
    });
}

CompilerBuildRequest CompilerTest::projectRequest(const QByteArray &source)
{
    const QString folder = m_dir->filePath(QStringLiteral("工程"));
    writeFile(folder + QStringLiteral("/source/main.vc"), source);
    CompilerBuildRequest request;
    request.hasProject = true;
    request.projectPath = folder;
    request.compilerType = QStringLiteral("MinGW");
    request.splitRuntime = false;
    return request;
}

void CompilerTest::tellsStagesInOrder()
{
    Compiler compiler;
    useFakeTools(compiler, "make");
    QSignalSpy started(&compiler, &Compiler::compileStarted);
    QSignalSpy progress(&compiler, &Compiler::compileProgress);
    QSignalSpy finished(&compiler, &Compiler::compileFinished);
    compiler.applyBuildAndCompile(projectRequest(program));
    QCOMPARE(started.size(), 1);
    QStringList steps;
    int percent = 0;
    for (const QList<QVariant> &step : progress) {
        QVERIFY(step.at(0).toInt() >= percent);
        percent = step.at(0).toInt();
        // A stage goes on under one message.
        if (steps.isEmpty() || !steps.last().endsWith(step.at(1).toString()))
            steps << QString::number(percent) + QLatin1Char(' ') + step.at(1).toString();
    }
    QCOMPARE(
        steps,
        (QStringList{QStringLiteral("10 解析源代码..."), QStringLiteral("14 准备源码与工程输入..."),
                     QStringLiteral("20 词法分析..."), QStringLiteral("30 语法分析..."),
                     QStringLiteral("45 语法检查..."),
                     QStringLiteral("50 正在生成可执行程序的中间代码..."),
                     QStringLiteral("60 编译中..."), QStringLiteral("80 正在使用所选工具链编译..."),
                     QStringLiteral("80 正在调用本机构建工具..."),
                     QStringLiteral("95 正在链接程序..."), QStringLiteral("100 编译成功")}));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(0).toBool(), true);
    const QString executable = m_dir->filePath(QStringLiteral("工程/build/x64/release/工程.exe"));
    QCOMPARE(finished.first().at(1).toString(), QStringLiteral("成功: ") + executable);
    QVERIFY(DriverTest::readFile(executable).endsWith("made"));
}

void CompilerTest::reusesTokens()
{
    Compiler compiler;
    useFakeTools(compiler, "make");
    const CompilerBuildRequest request = projectRequest(program);
    compiler.applyBuildAndCompile(request);
    QVERIFY(QFile::remove(compiler.slotPeekFastSkipSnapshot().executablePath));
    QSignalSpy progress(&compiler, &Compiler::compileProgress);
    QSignalSpy output(&compiler, &Compiler::compileOutput);
    compiler.applyBuildAndCompile(request);
    QVERIFY(progress.size() > 3);
    QCOMPARE(progress.at(3).at(0).toInt(), 25);
    QCOMPARE(progress.at(3).at(1).toString(), QStringLiteral("使用缓存的词法分析结果..."));
    QCOMPARE(output.value(0).value(0).toString(),
             QStringLiteral("★ 使用缓存的生成代码（代码未变化）"));
}

void CompilerTest::endsOnce_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QByteArray>("tool");
    QTest::addColumn<bool>("isCpp");
    QTest::addColumn<QString>("part");
    const QByteArray good(program);
    QTest::addRow("quote") << QByteArray("函数 主函数() {\n输出(\"甲)\n}") << QByteArray("make")
                           << false << "第2行：缺少右双引号";
    QTest::addRow("parser") << QByteArray("输出(1)") << QByteArray("make") << false << "文件作用域";
    QTest::addRow("duplicate") << QByteArray("函数 主窗口.单击() {\n}\n函数 主窗口.单击() {\n}\n")
                               << QByteArray("make") << false << "事件处理函数重复：主窗口.单击";
    QTest::addRow("window") << QByteArray("函数 无窗口.单击() {\n}\n") << QByteArray("make")
                            << false << "引用的窗口“无窗口”";
    QTest::addRow("generator") << QByteArray("函数 主函数() {\n    跳出\n}\n") << QByteArray("make")
                               << false << "跳出";
    QTest::addRow("utf-8") << QByteArray("a\n\xFF") << QByteArray("make") << false << "UTF-8";
    QTest::addRow("compiler error") << good << QByteArray("error") << true << "编译报错";
    QTest::addRow("compiler crash") << good << QByteArray("crash") << true << "工具链进程异常结束";
    QTest::addRow("wrong bytes") << good << QByteArray("invalid") << true << "编译报错";
    QTest::addRow("no output") << good << QByteArray("exit0") << true << "输出文件未生成";
}

void CompilerTest::endsOnce()
{
    QFETCH(QByteArray, source);
    QFETCH(QByteArray, tool);
    QFETCH(QString, part);
    Compiler compiler;
    useFakeTools(compiler, tool);
    QSignalSpy finished(&compiler, &Compiler::compileFinished);
    QSignalSpy placed(&compiler, &Compiler::compileErrorWithFile);
    QSignalSpy unplaced(&compiler, &Compiler::compileError);
    QSignalSpy told(&compiler, &Compiler::compileOutput);
    compiler.applyBuildAndCompile(projectRequest(source));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(0).toBool(), false);
    const QString output = finished.first().at(1).toString();
    QVERIFY2(output.contains(part), qPrintable(output));
    QTEST(finished.first().at(2).toBool(), "isCpp");
    QVERIFY(placed.size() + unplaced.size() > 0);
    const bool tellsCrash = told.contains({QStringLiteral("[process_exit] code=%1").arg(SIGSEGV)});
    QCOMPARE(tellsCrash, tool == "crash");
    QVERIFY(!compiler.isCompiling());
}

void CompilerTest::warnsOnce()
{
    Compiler compiler;
    useFakeTools(compiler, "warn");
    QSignalSpy warnings(&compiler, &Compiler::compileWarning);
    QSignalSpy finished(&compiler, &Compiler::compileFinished);
    compiler.applyBuildAndCompile(projectRequest(program));
    QVERIFY(finished.value(0).value(0).toBool());
    // The compiler and the linker have both said it.
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings.first().at(2).toString().startsWith(QStringLiteral("编译警告：")));
}

void CompilerTest::placesErrorsInFiles()
{
    CompilerBuildRequest request = projectRequest(program);
    writeFile(request.projectPath + QStringLiteral("/source/乙.vc"),
              "函数 计算() {\n    整数 甲 = 1\n    甲\n}\n");
    Compiler compiler;
    QSignalSpy errors(&compiler, &Compiler::compileErrorWithFile);
    compiler.applyBuildAndCompile(request);
    QVERIFY(!errors.isEmpty());
    QCOMPARE(errors.first().at(0).toString(), QStringLiteral("source/乙.vc"));
    QCOMPARE(errors.first().at(1).toInt(), 3);
    QVERIFY(errors.first().at(2).toString().startsWith(QStringLiteral("第3行：")));
}

void CompilerTest::quotesTheWrittenText_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("nearText");
    QTest::addRow("assignment") << QStringLiteral("如果 (甲 ＝ 1) { }") << 7 << "＝";
    QTest::addRow("text") << QStringLiteral("输出(1 \"a\\nb\")") << 6 << "\"a\\nb\"";
    QTest::addRow("hexadecimal") << QStringLiteral("输出(1 0x1F)") << 6 << "0x1F";
    QTest::addRow("name") << QStringLiteral("    单独") << 5 << "单独";
}

// What the message is about as the user has written it, wherever the merged line came from.
void CompilerTest::quotesTheWrittenText()
{
    QFETCH(QString, line);
    const QString source = QStringLiteral("函数 主函数() {\n    整数 甲 = 1\n%1\n}\n").arg(line);
    CompilerBuildRequest request = projectRequest(source.toUtf8());
    request.goal = BuildGoal::ProgramText;
    DriverTest::RecordingListener listener;
    QVERIFY(!BuildPipeline().run(request, listener).success);
    QVERIFY(!listener.diagnostics.isEmpty());
    const BuildDiagnostic &error = listener.diagnostics.first();
    QCOMPARE(error.file, QStringLiteral("source/main.vc"));
    QCOMPARE(error.line, 3);
    QTEST(error.column, "column");
    QTEST(error.nearText, "nearText");
}

void CompilerTest::refusesASecondBuild()
{
    Compiler compiler;
    useFakeTools(compiler, "make");
    bool second = true;
    int inside = -1;
    QSignalSpy started(&compiler, &Compiler::compileStarted);
    connect(&compiler, &Compiler::compileProgress, this, [&] {
        if (inside >= 0)
            return;
        inside = started.size();
        second = compiler.compile(QStringLiteral("x.vc"));
    });
    QSignalSpy finished(&compiler, &Compiler::compileFinished);
    compiler.applyBuildAndCompile(projectRequest(program));
    QVERIFY(!second);
    QCOMPARE(started.size(), 1);
    QCOMPARE(finished.size(), 1);
    QVERIFY(finished.first().at(0).toBool());
}

void CompilerTest::cancelsAtTheToolchain()
{
    CompilerThread thread;
    Compiler *compiler = thread.compiler();
    useFakeTools(*compiler, "sleep");
    QSignalSpy finished(compiler, &Compiler::compileFinished);
    QSignalSpy progress(compiler, &Compiler::compileProgress);
    QMetaObject::invokeMethod(compiler, "applyBuildAndCompile", Qt::QueuedConnection,
                              Q_ARG(CompilerBuildRequest, projectRequest(program)));
    QTRY_VERIFY(progress.size() >= 9);
    QElapsedTimer timer;
    timer.start();
    QMetaObject::invokeMethod(compiler, "stop", Qt::QueuedConnection);
    QTRY_COMPARE(finished.size(), 1);
    QVERIFY(timer.elapsed() < 1500);
    QCOMPARE(finished.first().at(1).toString(), QStringLiteral("编译已取消"));
    const QDir folder(m_dir->filePath(QStringLiteral("工程/build/x64/release")));
    QVERIFY(!folder.exists(QStringLiteral("工程.exe")));
    QVERIFY(QDir(folder.filePath(QStringLiteral(".obj_cache")))
                .entryList({QStringLiteral("unit_*")}, QDir::Files)
                .isEmpty());
}

void CompilerTest::survivesShutdownDuringABuild()
{
    auto thread = std::make_unique<CompilerThread>();
    useFakeTools(*thread->compiler(), "sleep");
    QSignalSpy progress(thread->compiler(), &Compiler::compileProgress);
    QSignalSpy finished(thread->compiler(), &Compiler::compileFinished);
    QMetaObject::invokeMethod(thread->compiler(), "applyBuildAndCompile", Qt::QueuedConnection,
                              Q_ARG(CompilerBuildRequest, projectRequest(program)));
    QTRY_VERIFY(progress.size() >= 9);
    thread.reset();
    QTRY_COMPARE(finished.size(), 1);
}

void CompilerTest::catchesExceptions()
{
    Compiler compiler;
    compiler.pipeline().setToolchainProvider(
        [](const CompilerBuildRequest &) -> std::unique_ptr<Toolchain> { throw std::bad_alloc(); });
    QSignalSpy finished(&compiler, &Compiler::compileFinished);
    compiler.applyBuildAndCompile(projectRequest(program));
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(1).toString(), QString::fromLatin1(std::bad_alloc().what()));
    QVERIFY(!compiler.isCompiling());
}

void CompilerTest::stopsAtTheGoal()
{
    CompilerBuildRequest request = projectRequest(program);
    request.goal = BuildGoal::ProgramText;
    DriverTest::RecordingListener listener;
    const BuildOutcome outcome = BuildPipeline().run(request, listener);
    QVERIFY(outcome.success);
    QVERIFY(outcome.program.oneFile().contains(QStringLiteral("// VL_LINE:")));
    QVERIFY(!QFileInfo::exists(request.projectPath + QStringLiteral("/build")));
    QCOMPARE(listener.steps.last().first, 50);
}

void CompilerTest::asksForLibraries()
{
    CompilerBuildRequest request = projectRequest(program);
    request.goal = BuildGoal::ProgramText;
    DriverTest::RecordingListener listener;
    BuildPipeline pipeline;
    LibraryContribution contribution;
    contribution.runtimeText = QStringLiteral("int ofTheLibrary;\n");
    pipeline.setLibraryProvider(
        [&contribution](const ProgramText &, const LibraryNeeds &) { return contribution; });
    QVERIFY(pipeline.run(request, listener)
                .program.oneFile()
                .contains(QStringLiteral("Runtime Code ==========\nint ofTheLibrary;\n")));
    contribution.problems = QStringList{QStringLiteral("第 3 行：命令不可用")};
    const BuildOutcome outcome = pipeline.run(request, listener);
    QVERIFY(!outcome.success);
    QCOMPARE(outcome.output, QStringLiteral("支持库命令不可用：\n第 3 行：命令不可用"));
    QCOMPARE(listener.diagnostics.last().file, QStringLiteral("source/main.vc"));
    QCOMPARE(listener.diagnostics.last().line, 2);
}

void CompilerTest::reportsAMissingProgram()
{
    Compiler compiler;
    QSignalSpy finished(&compiler, &Compiler::runFinished);
    compiler.run();
    QCOMPARE(finished.size(), 1);
    QCOMPARE(finished.first().at(0).toInt(), -1);
    QCOMPARE(finished.first().at(1).toString(), QString());
}

QTEST_GUILESS_MAIN(CompilerTest)
#include "compiler_test.moc"
