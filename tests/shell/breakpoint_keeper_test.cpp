// Breakpoints go with their lines and are there again at the next start.
#include "project/project_manager.h"
#include "shell/breakpoint_keeper.h"
#include "shell/desk.h"
#include "test_files.h"

namespace {

struct Program
{
    ProjectManager projects;
    EditorTabs tabs;
    BreakpointKeeper keeper{tabs, projects, nullptr};
};

} // namespace

class BreakpointKeeperTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void goWithTheirLines_data();
    void goWithTheirLines();
    void stayWhenANameIsGiven();
    void stayWhereTheFileHasThem();

private:
    void openProject(Program &program);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_root;
};

void BreakpointKeeperTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_root = QDir(m_folder->path()).canonicalPath();
    Shell::useFolders(m_root);
}

void BreakpointKeeperTest::openProject(Program &program)
{
    const QString known = m_root + "/工程/工程.vlproj";
    if (QFileInfo::exists(known)) {
        QVERIFY(program.projects.openProject(known));
        return;
    }
    NewProject project;
    project.kind = ProjectKind::Console;
    project.name = "工程";
    project.folder = m_root;
    QVERIFY2(program.projects.createProject(project), qPrintable(program.projects.lastError()));
}

void BreakpointKeeperTest::goWithTheirLines_data()
{
    QTest::addColumn<bool>("hasProject");
    QTest::addRow("in a project") << true;
    QTest::addRow("outside of all") << false;
}

void BreakpointKeeperTest::goWithTheirLines()
{
    QFETCH(bool, hasProject);
    const QString path = m_root + (hasProject ? "/工程/source/main.vc" : "/甲.vc");
    const CompilerDebugBreakpointsMap expected{{path, {3, 5}}};
    {
        Program program;
        if (hasProject)
            openProject(program);
        TestFiles::writeFile(path, "1\n2\n3\n4\n");
        CodeEditor *editor = program.tabs.open(path);
        editor->toggleBreakpoint(2);
        editor->toggleBreakpoint(4);
        editor->insertPlainText("新\n");
        QCOMPARE(program.keeper.breakpoints(), expected);
        QVERIFY(program.tabs.save(editor));
        program.tabs.closeWithoutSaving(editor);
        QCOMPARE(program.keeper.breakpoints(), expected);
        QCOMPARE(program.tabs.open(path)->breakpoints(), (QSet<int>{3, 5}));
    }
    Program next;
    if (hasProject)
        openProject(next);
    QCOMPARE(next.tabs.open(path)->breakpoints(), (QSet<int>{3, 5}));
    next.tabs.currentEditor()->toggleBreakpoint(3);
    next.tabs.currentEditor()->toggleBreakpoint(5);
    QVERIFY(next.keeper.breakpoints().value(path).isEmpty());
}

// A new text has no place to keep them before it has a name.
void BreakpointKeeperTest::stayWhenANameIsGiven()
{
    Program program;
    CodeEditor *editor = program.tabs.openUntitled("1\n2\n");
    editor->toggleBreakpoint(2);
    QVERIFY(program.keeper.breakpoints().isEmpty());
    editor->setFilePath(m_root + "/新.vc");
    QVERIFY(program.tabs.save(editor));
    Program next;
    QCOMPARE(next.tabs.open(m_root + "/新.vc")->breakpoints(), QSet<int>{2});
}

// Lines that are thrown away have moved nothing.
void BreakpointKeeperTest::stayWhereTheFileHasThem()
{
    const QString path = m_root + "/甲.vc";
    TestFiles::writeFile(path, "1\n2\n");
    Program program;
    CodeEditor *editor = program.tabs.open(path);
    editor->toggleBreakpoint(2);
    editor->insertPlainText("新\n");
    QCOMPARE(editor->breakpoints(), QSet<int>{3});
    program.tabs.closeWithoutSaving(editor);
    QCOMPARE(program.tabs.open(path)->breakpoints(), QSet<int>{2});
}

QTEST_MAIN(BreakpointKeeperTest)
#include "breakpoint_keeper_test.moc"
