// What editors are told of the program while the user types.
#include "editor/auto_completer.h"
#include "project/project_manager.h"
#include "shell/code_assist.h"
#include "shell/desk.h"
#include "shell/workspace.h"
#include "test_files.h"

namespace {

constexpr int checkTime = 30000; // milliseconds

QStringList offered(CodeEditor *editor, const QString &text)
{
    QStringList names;
    for (const CompletionItem &item : editor->findChild<AutoCompleter *>()->offer(text).items)
        names << item.text;
    return names;
}

// "2 错误 …" for each.
QStringList issuesOf(const CodeEditor *editor)
{
    QStringList issues;
    for (const VlSyntaxIssue &issue : editor->issues())
        issues << QStringLiteral("%1 %2").arg(issue.line).arg(issue.message);
    return issues;
}

} // namespace

class CodeAssistTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void problemsReachTheirEditors();
    void declarationsReachOtherEditors();
    void componentsReachCompletion();
    void aFileAloneIsChecked();
    void closedProjectsAreForgotten();

private:
    QString path(const QString &relative) const { return m_folder->filePath(relative); }
    // Opens a new file of the project.
    CodeEditor *open(const QString &name, const QString &text);
    void openProject(ProjectKind kind);

    QTemporaryDir m_home;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<ProjectManager> m_projects;
    std::unique_ptr<EditorTabs> m_tabs;
    std::unique_ptr<Workspace> m_workspace;
    std::unique_ptr<CodeAssist> m_assist;
};

void CodeAssistTest::initTestCase()
{
    Shell::useFolders(m_home.path());
    qRegisterMetaType<QList<VlSyntaxIssue>>();
}

void CodeAssistTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<SettingsStore>(path("vlide.ini"));
    m_projects = std::make_unique<ProjectManager>();
    m_tabs = std::make_unique<EditorTabs>();
    m_workspace = std::make_unique<Workspace>(*m_projects, *m_tabs);
    m_assist =
        std::make_unique<CodeAssist>(*m_tabs, *m_workspace, *m_projects, *m_settings, nullptr);
}

void CodeAssistTest::cleanup()
{
    m_assist.reset();
    m_workspace.reset();
    m_tabs.reset();
    m_projects.reset();
}

void CodeAssistTest::openProject(ProjectKind kind)
{
    NewProject project;
    project.kind = kind;
    project.name = "工程";
    project.folder = m_folder->path();
    QVERIFY2(m_projects->createProject(project), qPrintable(m_projects->lastError()));
    m_assist->refresh();
}

CodeEditor *CodeAssistTest::open(const QString &name, const QString &text)
{
    const QString file = path("工程/source/" + name);
    TestFiles::writeFile(file, text.toUtf8());
    m_projects->addFile("source/" + name);
    return m_tabs->open(file);
}

void CodeAssistTest::problemsReachTheirEditors()
{
    openProject(ProjectKind::Console);
    CodeEditor *main = open("main.vc", "函数 主函数() {\n    输出(加倍(2))\n}\n");
    CodeEditor *other = open("工具.vc", "函数 加倍(整数 甲) 整数 {\n    返回 甲 * 2\n}\n");
    // Not saved: what is typed counts.
    main->goToLine(2);
    main->insertPlainText("    跳出\n");
    QTRY_COMPARE_WITH_TIMEOUT(issuesOf(main).size(), 1, checkTime);
    QVERIFY2(issuesOf(main).first().startsWith("2 "), qPrintable(issuesOf(main).first()));
    QVERIFY(issuesOf(other).isEmpty());
    QCOMPARE(m_assist->issues().keys(), QStringList{main->filePath()});
    main->undo();
    QTRY_VERIFY_WITH_TIMEOUT(issuesOf(main).isEmpty(), checkTime);
    // A function that is gone is missed where it is called.
    other->selectAll();
    other->insertPlainText("整数 个数 = 0\n");
    QTRY_VERIFY_WITH_TIMEOUT(!issuesOf(main).isEmpty(), checkTime);
}

void CodeAssistTest::declarationsReachOtherEditors()
{
    openProject(ProjectKind::Console);
    CodeEditor *main = open("main.vc", "函数 主函数() {\n}\n");
    CodeEditor *other = open("工具.vc", "函数 加倍(整数 甲) 整数 {\n    返回 甲 * 2\n}\n");
    const QString begun = "函数 主函数() {\n    加倍";
    QTRY_VERIFY_WITH_TIMEOUT(offered(main, begun).contains("加倍"), checkTime);
    QCOMPARE(m_assist->symbolsOf(other->filePath()).first().name, QString("加倍"));
    QCOMPARE(m_assist->symbolsOf(main->filePath()).first().name, QString("主函数"));
}

void CodeAssistTest::componentsReachCompletion()
{
    openProject(ProjectKind::Gui);
    CodeEditor *editor = m_tabs->open(path("工程/source/main.vc"));
    const QString begun = "函数 甲() {\n    按钮";
    QVERIFY2(offered(editor, begun).contains("按钮1"),
             qPrintable(offered(editor, begun).join(' ')));
    QVERIFY(offered(editor, begun + "1.").contains("文本"));
    QCOMPARE(m_assist->windows().size(), 1);
    QCOMPARE(m_assist->windows().first().name, QString("主窗口"));
}

void CodeAssistTest::aFileAloneIsChecked()
{
    CodeEditor *editor = m_tabs->openUntitled("函数 主函数() {\n    跳出\n}\n");
    QTRY_COMPARE_WITH_TIMEOUT(issuesOf(editor).size(), 1, checkTime);
    // A form is no program.
    TestFiles::writeFile(path("甲.vui"), "跳出");
    CodeEditor *form = m_tabs->open(path("甲.vui"));
    QSignalSpy updated(m_assist.get(), &CodeAssist::updated);
    QTRY_VERIFY_WITH_TIMEOUT(!updated.isEmpty(), checkTime);
    QVERIFY(issuesOf(form).isEmpty());
    QVERIFY(m_assist->issues().isEmpty());
}

void CodeAssistTest::closedProjectsAreForgotten()
{
    openProject(ProjectKind::Gui);
    CodeEditor *editor = open("main.vc", "函数 主函数() {\n    跳出\n}\n");
    QTRY_VERIFY_WITH_TIMEOUT(!issuesOf(editor).isEmpty(), checkTime);
    m_tabs->closeWithoutSaving(editor);
    m_projects->closeProject();
    m_assist->refresh();
    QTRY_VERIFY_WITH_TIMEOUT(m_assist->issues().isEmpty(), checkTime);
    QVERIFY(m_assist->windows().isEmpty());
}

QTEST_MAIN(CodeAssistTest)
#include "code_assist_test.moc"
