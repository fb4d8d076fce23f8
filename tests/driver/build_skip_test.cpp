// Builds that follow a build: which changes are worth a toolchain, and what lies in the folder.
#include "driver/build_pipeline.h"
#include "driver/driver_test.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <functional>

using DriverTest::readFile;
using DriverTest::writeFile;

namespace {

const char source[] = "函数 主函数() {\n    // 问候\n    输出(\"你  好\")\n    输出(1+2)\n}\n";
const char buildFolder[] = "/build/x64/release";

// Where a build ended.
enum Reached
{
    SameFormat,  // before lexing, by the hash that knows no layout
    SameCode,    // before lexing, by the other one
    SameProgram, // after generation
    Built,       // by the toolchain
};

// Makes an executable at once and counts how often.
class CountingToolchain : public Toolchain
{
public:
    explicit CountingToolchain(int &count) : m_count(count) {}
    ToolchainResult build(const ToolchainJob &job, BuildListener &) override
    {
        ToolchainResult result;
        result.success = !job.program.programContains(QStringLiteral("编译失败"));
        result.message = QStringLiteral("失败");
        if (result.success) {
            // Another length each time, since two builds may fall into one millisecond.
            writeFile(job.executable, QByteArray(++m_count, 'x'));
        }
        return result;
    }

private:
    int &m_count;
};

// A project in a folder of its own, and what is built of it.
struct Workshop
{
    Workshop()
    {
        request.hasProject = true;
        request.projectPath = dir.filePath(QStringLiteral("工程"));
        request.buildConfig = QStringLiteral("release");
        request.defaultCompiler = QStringLiteral("MinGW");
        restart();
        setSource(source);
    }
    // As a new process would begin.
    void restart()
    {
        pipeline = std::make_unique<BuildPipeline>();
        pipeline->setToolchainProvider([this](const CompilerBuildRequest &) {
            return std::make_unique<CountingToolchain>(made);
        });
    }
    void setSource(const QByteArray &text)
    {
        writeFile(request.projectPath + QStringLiteral("/source/main.vc"), text);
    }
    void edit(const char *before, const char *after)
    {
        QByteArray text(source);
        QVERIFY(text.contains(before));
        setSource(text.replace(before, after));
    }
    QString path(const char *name) const
    {
        return request.projectPath + QLatin1String(buildFolder) + QLatin1Char('/') +
               QString::fromUtf8(name);
    }
    BuildOutcome build()
    {
        listener = std::make_unique<DriverTest::RecordingListener>();
        return pipeline->run(request, *listener);
    }

    QTemporaryDir dir;
    CompilerBuildRequest request;
    std::unique_ptr<BuildPipeline> pipeline;
    std::unique_ptr<DriverTest::RecordingListener> listener;
    int made = 0;
};

using Change = std::function<void(Workshop &)>;

CompilerWindowBuildSpec window(const QString &name, int x, bool isStartup)
{
    VL::DesignComponent component;
    component.id = QStringLiteral("1");
    component.originalName = QStringLiteral("按钮1");
    component.type = VL::Button;
    component.x = x;
    component.properties.insert(QStringLiteral("items"), QStringList{QStringLiteral("甲")});
    CompilerWindowBuildSpec spec;
    spec.name = name;
    spec.components << component;
    spec.isStartup = isStartup;
    return spec;
}

struct ReachedTexts
{
    const char *progress;
    const char *output;
};

// In the order of Reached.
constexpr ReachedTexts reachedTexts[] = {
    {"Only whitespace/format changes, skip compilation",
     "Skip compilation: only whitespace or format changes, use cache"},
    {"Code unchanged, skip compilation", "Incremental compilation: code unchanged, use cache"},
    {"生成码未变，跳过编译", "生成码无变化，使用已有 exe"},
    {"编译成功", "成功: "},
};

} // namespace

Q_DECLARE_METATYPE(Change)

class BuildSkipTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { qunsetenv("VL_IDE_DISABLE_AGGRESSIVE_INCREMENTAL"); }
    void rebuilds_data();
    void rebuilds();
    void newGeneratorDeletesTheExecutable();
    void failuresKeepTheOldBuild();
    void reportsWhatAWholeBuildRefuses();
    void noticesClassFilesBesideAHandedInText();
    void debuggingCountsWhenAsked();
    void otherGoalsNeitherSkipNorWrite();
    void leavesHashFiles();
    void snapshotTellsTheLastBuild();
    void inputsKeepTheirOrder();
    void cleansPrograms();
};

void BuildSkipTest::rebuilds_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("reached");
    const auto row = [](const char *name, Reached reached, const Change &change) {
        QTest::addRow("%s", name) << change << int(reached);
    };
    const auto edit = [row](const char *name, Reached reached, const char *before,
                            const char *after) {
        row(name, reached, [=](Workshop &workshop) { workshop.edit(before, after); });
    };
    const auto file = [row](const char *name, Reached reached, const char *path,
                            const QByteArray &bytes) {
        row(name, reached, [=](Workshop &workshop) { writeFile(workshop.path(path), bytes); });
    };
    const auto missing = [row](const char *name, Reached reached, const char *path) {
        row(name, reached,
            [=](Workshop &workshop) { QVERIFY(QFile::remove(workshop.path(path))); });
    };

    row("nothing", SameFormat, [](Workshop &) {});
    edit("indentation", SameFormat, "    输出", "\t\n\n  输出");
    edit("comment changed", SameFormat, "// 问候", "// 再见 /*");
    edit("comment removed", SameFormat, "    // 问候\n", "");
    edit("comment added", SameFormat, "}\n", "}// 完\n\n// 尾");
    edit("blank within an expression", SameProgram, "1+2", "1 + 2");
    edit("blank within a string", Built, "你  好", "你 好");
    edit("code commented out", Built, "输出(1+2)", "// 输出(1+2)");
    edit("line joined to a comment", Built, "// 问候\n    ", "// 问候 ");
    edit("code", Built, "1+2", "1+3");
    row("another file", Built, [](Workshop &workshop) {
        writeFile(workshop.request.projectPath + QStringLiteral("/source/乙.vc"),
                  "函数 乙() {\n    输出(5)\n}\n");
    });

    missing("executable deleted", Built, "工程.exe");
    file("executable of somebody else", Built, "工程.exe", "another program");
    missing("version missing", SameProgram, ".vl_codegen_version");
    file("version with blanks", SameFormat, ".vl_codegen_version", " 13\n");
    file("one line of code hashes", SameProgram, ".vl_code_hash", "123\n");
    missing("inputs hash missing", SameProgram, ".vl_inputs_hash");
    file("program hash", SameFormat, "source.hash", "1");
    missing("origin missing", Built, ".vl_generator_hash");
    row("another normalised hash", SameCode, [](Workshop &workshop) {
        const QByteArray hashes = readFile(workshop.path(".vl_code_hash"));
        writeFile(workshop.path(".vl_code_hash"), hashes.left(hashes.indexOf('\n') + 1) + "1\n");
    });
    row("compiler changed", Built, [](Workshop &workshop) {
        QByteArray origin = readFile(workshop.path(".vl_generator_hash"));
        origin[0] = origin.at(0) == '0' ? '1' : '0';
        writeFile(workshop.path(".vl_generator_hash"), origin);
    });

    row("static link", Built, [](Workshop &workshop) { workshop.request.staticLink = true; });
    row("compiler choice", Built,
        [](Workshop &workshop) { workshop.request.compilerType = QStringLiteral("MSVC"); });
    row("one translation unit", Built,
        [](Workshop &workshop) { workshop.request.splitRuntime = false; });
    row("platform", Built,
        [](Workshop &workshop) { workshop.request.platform = QStringLiteral("x86"); });
    row("start window", Built, [](Workshop &workshop) {
        workshop.request.windowSpecs[0].isStartup = false;
        workshop.request.windowSpecs[1].isStartup = true;
    });
    row("window renamed", Built,
        [](Workshop &workshop) { workshop.request.windowSpecs[1].name = QStringLiteral("设置"); });
    row("version data", Built,
        [](Workshop &workshop) { workshop.request.identity.productName = QStringLiteral("记账"); });
}

// Each change is met by the process that has built before, and by another one.
void BuildSkipTest::rebuilds()
{
    QFETCH(Change, change);
    QFETCH(int, reached);
    for (const bool inAnotherProcess : {false, true}) {
        Workshop workshop;
        workshop.request.windowSpecs = {window(QStringLiteral("主窗口"), 10, true),
                                        window(QStringLiteral("登录"), 20, false)};
        QVERIFY(workshop.build().success);
        QCOMPARE(workshop.made, 1);
        if (inAnotherProcess)
            workshop.restart();
        change(workshop);
        const BuildOutcome outcome = workshop.build();
        QVERIFY2(outcome.success, qPrintable(outcome.output));
        QCOMPARE(workshop.listener->steps.last().first, 100);
        QCOMPARE(workshop.listener->steps.last().second,
                 QString::fromUtf8(reachedTexts[reached].progress));
        QVERIFY2(outcome.output.startsWith(QString::fromUtf8(reachedTexts[reached].output)),
                 qPrintable(outcome.output));
        QCOMPARE(workshop.made, reached == Built ? 2 : 1);
        QVERIFY(QFileInfo(outcome.executable).isFile());
        // Whatever was missing is there again.
        QCOMPARE(workshop.build().output, QString::fromUtf8(reachedTexts[SameFormat].output));
    }
}

void BuildSkipTest::newGeneratorDeletesTheExecutable()
{
    for (const char *version : {"12", "", "13a", "99999999999999999999"}) {
        Workshop workshop;
        QVERIFY(workshop.build().success);
        writeFile(workshop.path(".vl_codegen_version"), version);
        workshop.setSource("函数 主函数() {\n    甲 乙 丙\n}\n");
        QVERIFY(!workshop.build().success);
        QVERIFY(workshop.listener->outputs.contains(
            QStringLiteral("★ 编译器版本已更新，清除旧缓存并重新编译")));
        QVERIFY(!QFileInfo::exists(workshop.path("工程.exe")));
    }
}

// The executable that is left is the one of the old source: going back to that needs no build.
void BuildSkipTest::failuresKeepTheOldBuild()
{
    for (const char *faulty :
         {"函数 主函数() {\n    甲 乙\n}\n", "函数 主函数() {\n    输出(\"编译失败\")\n}\n"}) {
        Workshop workshop;
        QVERIFY(workshop.build().success);
        workshop.setSource(faulty);
        QVERIFY(!workshop.build().success);
        QVERIFY(!workshop.build().success);
        workshop.setSource(source);
        QCOMPARE(workshop.build().output, QString::fromUtf8(reachedTexts[SameFormat].output));
    }
}

void BuildSkipTest::reportsWhatAWholeBuildRefuses()
{
    Workshop workshop;
    QVERIFY(workshop.build().success);
    workshop.edit("// 问候", "// it's");
    const BuildOutcome outcome = workshop.build();
    QVERIFY(!outcome.success);
    QVERIFY2(outcome.output.contains(QStringLiteral("缺少右单引号")), qPrintable(outcome.output));
}

// Classes are read from disk even when the editor hands the text in.
void BuildSkipTest::noticesClassFilesBesideAHandedInText()
{
    Workshop workshop;
    workshop.request.sourceText = QString::fromUtf8(source);
    QVERIFY(workshop.build().success);
    QCOMPARE(workshop.build().output, QString::fromUtf8(reachedTexts[SameFormat].output));
    writeFile(workshop.request.projectPath + QStringLiteral("/source/类.vpp"),
              "类 甲 {\n公有:\n    属性 整数 值\n}\n");
    QVERIFY(workshop.build().success);
    QVERIFY(workshop.listener->steps.size() > 3);
}

void BuildSkipTest::debuggingCountsWhenAsked()
{
    const auto skipsBeforeLexing = [](const Change &change) {
        Workshop workshop;
        workshop.request.buildConfig = QStringLiteral("debug");
        bool success = workshop.build().success;
        change(workshop);
        success = workshop.build().success && success;
        return success && workshop.listener->steps.size() == 3;
    };
    const QList<Change> changes{
        [](Workshop &workshop) { workshop.pipeline->setDebugMode(true); },
        [](Workshop &workshop) {
            workshop.pipeline->setBreakpoints({{QStringLiteral("main.vc"), {3}}});
        }};
    for (const Change &change : changes) {
        QVERIFY(skipsBeforeLexing(change));
        qputenv("VL_IDE_DISABLE_AGGRESSIVE_INCREMENTAL", "1");
        QVERIFY(!skipsBeforeLexing(change));
        QVERIFY(skipsBeforeLexing([](Workshop &) {}));
        qunsetenv("VL_IDE_DISABLE_AGGRESSIVE_INCREMENTAL");
    }
}

void BuildSkipTest::otherGoalsNeitherSkipNorWrite()
{
    Workshop workshop;
    QVERIFY(workshop.build().success);
    writeFile(workshop.path(".vl_codegen_version"), "12");
    for (const BuildGoal goal : {BuildGoal::Check, BuildGoal::ProgramText}) {
        workshop.request.goal = goal;
        const BuildOutcome outcome = workshop.build();
        QVERIFY(outcome.success);
        QVERIFY(!outcome.program.isEmpty());
        QCOMPARE(workshop.listener->steps.last().first, 50);
    }
    QCOMPARE(readFile(workshop.path(".vl_codegen_version")), QByteArray("12"));
    QCOMPARE(workshop.made, 1);
    QVERIFY(QFileInfo::exists(workshop.path("工程.exe")));
}

void BuildSkipTest::leavesHashFiles()
{
    Workshop workshop;
    workshop.setSource("函数 主函数()  {\n\n    输出( 1 ) // 一\n}\n");
    QVERIFY(workshop.build().success);
    QCOMPARE(readFile(workshop.path(".vl_codegen_version")), QByteArray("13"));
    const QByteArray decimal = readFile(workshop.path("source.hash"));
    QVERIFY(QRegularExpression(QStringLiteral("^\\d+$")).match(QLatin1String(decimal)).hasMatch());
    const QString codes = QLatin1String(readFile(workshop.path(".vl_code_hash")));
    QVERIFY(QRegularExpression(QStringLiteral("^\\d+\\n\\d+\\n$")).match(codes).hasMatch());
    // The marker line of the file is a comment; what is left has 21 characters.
    const QString collapsed = QStringLiteral("函数 主函数() { 输出( 1 ) }");
    const QByteArray size =
        QByteArray::number(collapsed.size()) + '_' + BuildHash::ofText(collapsed);
    QCOMPARE(readFile(workshop.path("user_source.hash")), size);
    QCOMPARE(readFile(workshop.path("user_source_built.hash")), size);

    // A source that the toolchain refuses is not the one that was built.
    workshop.setSource("函数 主函数() {\n    输出(\"编译失败\")\n}\n");
    QVERIFY(!workshop.build().success);
    QVERIFY(readFile(workshop.path("user_source.hash")) != size);
    QCOMPARE(readFile(workshop.path("user_source_built.hash")), size);
    QCOMPARE(readFile(workshop.path("source.hash")), decimal);
}

void BuildSkipTest::snapshotTellsTheLastBuild()
{
    Workshop workshop;
    CompilerFastSkipSnapshot snapshot = workshop.pipeline->fastSkipSnapshot(workshop.request);
    QVERIFY(!snapshot.executableExists);
    QCOMPARE(snapshot.codeHash, QString());
    QVERIFY(workshop.build().success);
    snapshot = workshop.pipeline->fastSkipSnapshot(workshop.request);
    QVERIFY(snapshot.executableExists);
    QCOMPARE(snapshot.executablePath, workshop.path("工程.exe"));
    QCOMPARE(QString(snapshot.codeHash + QLatin1Char('\n') + snapshot.normalizedHash +
                     QLatin1Char('\n')),
             QString::fromLatin1(readFile(workshop.path(".vl_code_hash"))));
    QCOMPARE(QString(snapshot.inputsHash + QLatin1Char('\n')),
             QString::fromLatin1(readFile(workshop.path(".vl_inputs_hash"))));
}

void BuildSkipTest::inputsKeepTheirOrder()
{
    CompilerBuildRequest request = CompilerBuildRequest().normalized();
    request.hasProject = true;
    request.useBeautification = true;
    request.windowSpecs = {window(QStringLiteral("主窗口"), 7, true)};
    request.windowSpecs[0].components[0].eventHandlers.insert(QStringLiteral("单击"),
                                                              QStringLiteral("\"处理\""));
    DebugOptions debug;
    debug.isOn = true;
    debug.breakpoints.insert(QStringLiteral("乙.vc"), {4, 9});
    const QString start = QStringLiteral("{\"srcHash\":\"5\",\"uiBackend\":\"win32\",\"platform\":"
                                         "\"x64\",\"buildCfg\":\"release\",");
    const QString rest = QStringLiteral(
        "\"beautificationScheme\":3,\"compilerType\":\"MSVC\",\"staticLink\":false,"
        "\"sourceProtection\":false,\"quickjsRoot\":\"\",\"ui\":[{\"id\":\"1\","
        "\"originalName\":\"按钮1\",\"type\":4,\"x\":7,\"y\":0,\"w\":0,\"h\":0,\"z\":0,"
        "\"locked\":false,\"props\":{\"items\":\"[\\\"甲\\\"]\"},"
        "\"events\":{\"单击\":\"\\\"处理\\\"\"},\"children\":[]}],");
    QCOMPARE(QString::fromUtf8(BuildHash::inputsSnapshot("5", request, debug)),
             start + QStringLiteral("\"debugMode\":false,\"useBeautification\":false,") + rest +
                 QStringLiteral("\"bps\":[]}"));
    qputenv("VL_IDE_DISABLE_AGGRESSIVE_INCREMENTAL", "1");
    QCOMPARE(QString::fromUtf8(BuildHash::inputsSnapshot("5", request, debug)),
             start + QStringLiteral("\"debugMode\":true,\"useBeautification\":true,") + rest +
                 QStringLiteral("\"bps\":[{\"file\":\"乙.vc\",\"lines\":[4,9]}]}"));
}

// The one pass does what the two replacements would.
void BuildSkipTest::cleansPrograms()
{
    const QString letters = QStringLiteral("\n\n\n \ta");
    QRandomGenerator random(3);
    for (int round = 0; round < 3000; ++round) {
        QString text;
        for (int length = random.bounded(24); length > 0; --length)
            text += letters.at(random.bounded(letters.size()));
        QString wanted = text;
        wanted.replace(QRegularExpression(QStringLiteral("\n{3,}")), QStringLiteral("\n\n"));
        wanted.replace(QRegularExpression(QStringLiteral("[ \t]+\n")), QStringLiteral("\n"));
        QCOMPARE(BuildHash::cleanedProgram(text), wanted);
    }
}

QTEST_GUILESS_MAIN(BuildSkipTest)
#include "build_skip_test.moc"
