// From a project on disk to the request of a build.
#include "driver/message_location.h"
#include "project/project_build.h"
#include "test_files.h"

#include <QTemporaryDir>

#include <memory>

using TestFiles::writeFile;

class ProjectBuildTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void decidesOptions_data();
    void decidesOptions();
    void readsWindows();
    void unusableForms_data();
    void unusableForms();
    void takesWhatIsOpen();
    void namesPlacesInFiles();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    AssembledBuild assemble(const QByteArray &projectFile, const BuildChoices &choices = {},
                            const LiveState &live = {});

    std::unique_ptr<QTemporaryDir> m_dir;
};

static const char kForm[] = R"({"components": [
    {"id": "w", "type": 0, "width": 640, "height": 480, "properties": {"name": "窗"}},
    {"id": "按钮1", "type": 4, "x": 8, "y": 9, "width": 80, "height": 28}
]})";

void ProjectBuildTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    writeFile(path(QStringLiteral("source/main.vc")), "函数 主函数() { }\n");
}

AssembledBuild ProjectBuildTest::assemble(const QByteArray &projectFile,
                                          const BuildChoices &choices, const LiveState &live)
{
    ReadProject read = ProjectFile::parse(projectFile, QStringLiteral("甲.vlproj"));
    if (!read.succeeded())
        qWarning("%s", qPrintable(read.error));
    read.info.path = m_dir->path();
    ProjectFile::addFilesOfFolders(read.info);
    return assembleBuild(read.info, choices, live);
}

void ProjectBuildTest::decidesOptions_data()
{
    QTest::addColumn<QByteArray>("project");
    QTest::addColumn<QString>("chosen"); // platform, back end, compiler
    QTest::addColumn<QString>("decided");
    const auto row = [](const char *project, const char *chosen, const char *decided) {
        QTest::addRow("%s %s", project, chosen)
            << QByteArray(project) << QString::fromLatin1(chosen) << QString::fromLatin1(decided);
    };
    row("{}", ",,", "x64,win32,");
    row(R"({"targetPlatform":"x86","uiBackend":"vlwin","compiler":"MinGW"})", ",,",
        "x86,vlwin,MinGW");
    row(R"({"targetPlatform":"x86","uiBackend":"vlwin","compiler":"MinGW"})", "x64,win32,MSVC",
        "x64,win32,MSVC");
    row(R"({"uiBackend":"win32","windowFiles":["ui/a.vlwin"]})", ",,", "x64,vlwin,");
    row(R"({"uiBackend":"win32","windowFiles":["ui/a.vlwin"]})", ",win32,", "x64,win32,");
    row(R"({"uiBackend":"d2dwin"})", ",,", "x64,d2dwin,");
}

void ProjectBuildTest::decidesOptions()
{
    QFETCH(QByteArray, project);
    QFETCH(QString, chosen);
    writeFile(path(QStringLiteral("ui/a.vlwin")), "{}");
    BuildChoices choices;
    choices.platform = chosen.section(QLatin1Char(','), 0, 0);
    choices.uiBackend = chosen.section(QLatin1Char(','), 1, 1);
    choices.compilerType = chosen.section(QLatin1Char(','), 2, 2);
    const CompilerBuildRequest request = assemble(project, choices).request;
    const QStringList decided{request.platform, request.uiBackend, request.compilerType};
    QTEST(decided.join(QLatin1Char(',')), "decided");
    QVERIFY(request.hasProject);
    QCOMPARE(request.projectName, QFileInfo(m_dir->path()).fileName());
}

void ProjectBuildTest::readsWindows()
{
    writeFile(path(QStringLiteral("ui/甲.vui")), kForm);
    writeFile(path(QStringLiteral("ui/主.vui")), kForm);
    writeFile(path(QStringLiteral("ui/old/甲.vui")), kForm);
    const AssembledBuild build = assemble(R"({
        "windowFiles": ["ui/甲.vui", "ui/主.vui", "ui/old/甲.vui"],
        "mainWindowFile": "ui/主.vui"})");
    QVERIFY(build.succeeded());
    const QList<CompilerWindowBuildSpec> &windows = build.request.windowSpecs;
    QCOMPARE(windows.size(), 2);
    QCOMPARE(windows.at(0).name, QStringLiteral("主"));
    QVERIFY(windows.at(0).isMain && windows.at(0).isStartup);
    QCOMPARE(windows.at(1).name, QStringLiteral("甲"));
    QVERIFY(!windows.at(1).isMain && !windows.at(1).isStartup);
    QCOMPARE(windows.at(1).components.size(), 2);
    QCOMPARE(windows.at(1).components.at(1).y, 9);
    QCOMPARE(build.diagnostics.size(), 1);
    QVERIFY(build.notes.contains(QStringLiteral("  已加载 2 个组件: 窗(窗口), 按钮1(按钮)")));
}

void ProjectBuildTest::unusableForms_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("note");
    QTest::addRow("missing") << "ui/没有.vui"
                             << "窗口文件不存在";
    QTest::addRow("broken") << "ui/坏.vui"
                            << "第 1 行";
    QTest::addRow("empty") << "ui/空.vui"
                           << "窗口文件为空";
    QTest::addRow("nothing in it") << "ui/无.vui"
                                   << "窗口文件没有组件";
    QTest::addRow("nothing in a self-drawn one") << "ui/无.vlwin"
                                                 << "VL窗口文件无有效自绘组件";
    QTest::addRow("outside") << "../外.vui"
                             << "不在工程文件夹中";
    QTest::addRow("absolute") << "/etc/passwd.vui"
                              << "窗口文件不存在";
    QTest::addRow("link") << "ui/链接.vui"
                          << "不在工程文件夹中";
    QTest::addRow("folder") << "ui/夹.vui"
                            << "窗口文件";
}

void ProjectBuildTest::unusableForms()
{
    QFETCH(QString, file);
    QFETCH(QString, note);
    const QTemporaryDir outside;
    writeFile(outside.filePath(QStringLiteral("外.vui")), kForm);
    writeFile(QFileInfo(m_dir->path()).path() + QStringLiteral("/外.vui"), kForm);
    writeFile(path(QStringLiteral("ui/坏.vui")), "{\"components\": [");
    writeFile(path(QStringLiteral("ui/空.vui")), "");
    writeFile(path(QStringLiteral("ui/无.vui")), "{}");
    writeFile(path(QStringLiteral("ui/无.vlwin")), "{\"format\": \"vlwin\"}");
    QVERIFY(QDir().mkpath(path(QStringLiteral("ui/夹.vui"))));
    QVERIFY(QFile::link(outside.filePath(QStringLiteral("外.vui")),
                        path(QStringLiteral("ui/链接.vui"))));
    ReadProject read = ProjectFile::parse("{\"name\": \"a\"}", QString());
    read.info.path = m_dir->path();
    read.info.sourceFiles = QStringList{QStringLiteral("source/main.vc")};
    read.info.windowFiles = QStringList{file};
    const AssembledBuild build = assembleBuild(read.info, {});
    QFile::remove(QFileInfo(m_dir->path()).path() + QStringLiteral("/外.vui"));
    QVERIFY(build.succeeded());
    QVERIFY(build.request.windowSpecs.first().components.isEmpty());
    QVERIFY2(build.notes.join(QLatin1Char('\n')).contains(note),
             qPrintable(build.notes.join(QLatin1Char('\n'))));
}

void ProjectBuildTest::takesWhatIsOpen()
{
    writeFile(path(QStringLiteral("ui/主.vui")), kForm);
    LiveState live;
    VL::DesignComponent button;
    button.id = QStringLiteral("按钮9");
    button.type = VL::Button;
    live.designs.insert(QStringLiteral("ui/主.vui"), {button});
    live.sources.insert(QStringLiteral("source/main.vc"), QStringLiteral("函数 新的() { }\n"));
    const AssembledBuild build = assemble(R"({"mainWindowFile": "ui/主.vui"})", {}, live);
    QVERIFY(build.succeeded());
    QCOMPARE(build.request.windowSpecs.first().components.first().id, button.id);
    QVERIFY(build.request.sourceText.contains(QStringLiteral("新的")));
    QVERIFY(build.notes.first().contains(QStringLiteral("未保存的修改将参与编译")));
}

void ProjectBuildTest::namesPlacesInFiles()
{
    writeFile(path(QStringLiteral("source/b.vc")), "\r\n\r\n函数 第三行() { }\r\n");
    AssembledBuild build = assemble("{}");
    QVERIFY(build.succeeded());
    const QStringList lines = build.request.sourceText.split(QLatin1Char('\n'));
    int merged = 1;
    while (!lines.value(merged - 1).contains(QStringLiteral("第三行")))
        ++merged;
    const SourceLocation place = locate(build.request.lineMap, merged);
    QCOMPARE(place.file, QStringLiteral("source/b.vc"));
    QCOMPARE(place.line, 3);
    // A file that cannot be read ends it, with its name.
    writeFile(path(QStringLiteral("source/c.vc")), "\n\xFF\n");
    build = assemble("{}");
    QVERIFY(!build.succeeded());
    QCOMPARE(build.diagnostics.first().file, QStringLiteral("source/c.vc"));
    QCOMPARE(build.diagnostics.first().line, 2);
}

QTEST_APPLESS_MAIN(ProjectBuildTest)
#include "project_build_test.moc"
