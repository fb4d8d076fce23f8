// What was open at the end is open again at the start.
#include "project/project_manager.h"
#include "shell/desk.h"
#include "shell/session_keeper.h"
#include "test_files.h"

using TestFiles::writeFile;

namespace {

struct Program
{
    explicit Program(const QString &folder) : keeper(tabs, projects, folder + "/vlide.ini", nullptr)
    {
        tabs.resize(600, 200);
        tabs.show();
    }

    QStringList titles() const
    {
        QStringList titles;
        for (const CodeEditor *editor : tabs.editors())
            titles << editor->title();
        return titles;
    }

    ProjectManager projects;
    EditorTabs tabs;
    SessionKeeper keeper;
};

} // namespace

class SessionKeeperTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void everythingComesBack();
    void crashFindsItKept();
    void whatIsGoneIsPassedOver_data();
    void whatIsGoneIsPassedOver();

private:
    QString file(const QString &name) const { return m_folder->filePath(name); }
    void createProject(Program &program, const QString &name);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void SessionKeeperTest::createProject(Program &program, const QString &name)
{
    NewProject project;
    project.kind = ProjectKind::Console;
    project.name = name;
    project.folder = m_folder->path();
    QVERIFY2(program.projects.createProject(project), qPrintable(program.projects.lastError()));
}

void SessionKeeperTest::everythingComesBack()
{
    writeFile(file("长.vc"), QByteArray("一行\n").repeated(300));
    writeFile(file("短.vc"), "短");
    Session left;
    {
        Program program(m_folder->path());
        createProject(program, "甲");
        createProject(program, "乙");
        QVERIFY(program.projects.activateProject(QDir(file("甲")).canonicalPath()));
        CodeEditor *editor = program.tabs.open(file("长.vc"));
        editor->goToLine(200);
        editor->setBookmarks({7, 3});
        program.tabs.open(file("短.vc"));
        program.tabs.openUntitled("没有名字");
        program.tabs.setCurrentWidget(editor);
        left = program.keeper.current();
        QVERIFY(left.files.first().firstVisibleLine > 150);
        QVERIFY(program.keeper.finish(left));
    }
    Program next(m_folder->path());
    next.keeper.restore();
    QCOMPARE(next.titles(), (QStringList{"长.vc", "短.vc"}));
    QCOMPARE(next.projects.currentProject().name, QString("甲"));
    QCOMPARE(next.tabs.currentEditor()->textCursor().blockNumber() + 1, 200);
    QCOMPARE(next.tabs.currentEditor()->bookmarks(), (QSet<int>{3, 7}));
    // Leaving at once keeps the same.
    QVERIFY(next.keeper.current() == left);
}

void SessionKeeperTest::crashFindsItKept()
{
    writeFile(file("甲.vc"), "甲");
    Program program(m_folder->path());
    program.keeper.restore();
    program.tabs.open(file("甲.vc"));
    const auto kept = [this] {
        return SessionStore(SessionStore::pathBeside(file("vlide.ini"))).load().activeFile;
    };
    QTRY_COMPARE_WITH_TIMEOUT(kept(), file("甲.vc"), 15000);
}

void SessionKeeperTest::whatIsGoneIsPassedOver_data()
{
    QTest::addColumn<QByteArray>("now"); // none: the file is gone
    QTest::addColumn<QStringList>("titles");
    QTest::addRow("gone") << QByteArray() << QStringList{"乙.vc"};
    QTest::addRow("no text any more") << QByteArray("\0\1", 2) << QStringList{"乙.vc"};
    QTest::addRow("shorter") << QByteArray("1") << QStringList{"甲.vc", "乙.vc"};
}

// Nobody is asked or told at the start.
void SessionKeeperTest::whatIsGoneIsPassedOver()
{
    QFETCH(QByteArray, now);
    for (const char *name : {"甲.vc", "乙.vc"})
        writeFile(file(name), "12345678\n2\n3\n");
    {
        Program program(m_folder->path());
        createProject(program, "工程");
        program.tabs.open(file("甲.vc"))->moveCursor(QTextCursor::End);
        program.tabs.open(file("乙.vc"));
        program.tabs.setCurrentIndex(0);
        QVERIFY(program.keeper.finish(program.keeper.current()));
    }
    QVERIFY(QDir(file("工程")).removeRecursively());
    if (now.isNull())
        QVERIFY(QFile::remove(file("甲.vc")));
    else
        writeFile(file("甲.vc"), now);
    Program next(m_folder->path());
    next.keeper.restore();
    QTEST(next.titles(), "titles");
    QVERIFY(!next.projects.hasOpenProject());
    QVERIFY(!QApplication::activeModalWidget());
}

QTEST_MAIN(SessionKeeperTest)
#include "session_keeper_test.moc"
