// The program as editors and disk hold it together, and the names of its files.
#include "project/project_manager.h"
#include "shell/desk.h"
#include "shell/workspace.h"
#include "test_files.h"

using TestFiles::writeFile;

class WorkspaceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void names_data();
    void names();
    void withoutAProjectNamesAreWhole();
    void editorsCountInsteadOfFiles();
    void withoutAProjectTheFileInFrontCounts();

private:
    QString path(const QString &relative) const { return m_root + '/' + relative; }
    void openProject();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProjectManager> m_projects;
    std::unique_ptr<EditorTabs> m_tabs;
    std::unique_ptr<Workspace> m_workspace;
    QString m_root;
};

void WorkspaceTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_projects = std::make_unique<ProjectManager>();
    m_tabs = std::make_unique<EditorTabs>();
    m_workspace = std::make_unique<Workspace>(*m_projects, *m_tabs);
    m_root = QDir(m_folder->path()).canonicalPath();
}

void WorkspaceTest::cleanup()
{
    m_workspace.reset();
    m_tabs.reset();
    m_projects.reset();
}

void WorkspaceTest::openProject()
{
    NewProject project;
    project.kind = ProjectKind::Console;
    project.name = "工程";
    project.folder = m_root;
    QVERIFY2(m_projects->createProject(project), qPrintable(m_projects->lastError()));
    writeFile(path("工程/source/main.vc"), "主");
    writeFile(path("工程/source/乙.vc"), "旧");
    QVERIFY(m_projects->addFile("source/乙.vc"));
}

void WorkspaceTest::names_data()
{
    QTest::addColumn<QString>("file"); // as it lies beside the project
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isInside");
    QTest::addRow("source") << "工程/source/main.vc"
                            << "source/main.vc" << true;
    QTest::addRow("no source") << "工程/说明.txt"
                               << "说明.txt" << true;
    QTest::addRow("dots in the name") << "工程/..甲.vc"
                                      << "..甲.vc" << true;
    QTest::addRow("beside it") << "别的.vc"
                               << "" << false;
    QTest::addRow("folder with a longer name") << "工程2/甲.vc"
                                               << "" << false;
}

void WorkspaceTest::names()
{
    QFETCH(QString, file);
    QFETCH(QString, name);
    openProject();
    const QString absolute = path(file);
    QTEST(m_workspace->isInProject(absolute), "isInside");
    QCOMPARE(m_workspace->displayName(absolute),
             name.isEmpty() ? QDir::toNativeSeparators(absolute) : name);
    QCOMPARE(m_workspace->absolutePath(m_workspace->displayName(absolute)), absolute);
}

void WorkspaceTest::withoutAProjectNamesAreWhole()
{
    const QString file = path("甲.vc");
    QCOMPARE(m_workspace->displayName(file), QDir::toNativeSeparators(file));
    QCOMPARE(m_workspace->absolutePath(file), file);
    QCOMPARE(m_workspace->absolutePath(QString()), QString());
    QVERIFY(!m_workspace->isInProject(file));
}

void WorkspaceTest::editorsCountInsteadOfFiles()
{
    openProject();
    const QString main = path("工程/source/main.vc");
    const QString other = path("工程/source/乙.vc");
    m_tabs->open(main)->insertPlainText("新");
    QCOMPARE(m_workspace->sourceTexts().value(main), QString("新主"));
    QCOMPARE(m_workspace->sourceTexts().value(other), QString("旧"));
    writeFile(other, "更新");
    QCOMPARE(m_workspace->sourceTexts().value(other), QString("更新"));
    // An editor whose text is saved adds nothing to what is on the disk.
    m_tabs->open(other);
    writeFile(path("外.vc"), "外");
    m_tabs->open(path("外.vc"))->insertPlainText("新");
    const QHash<QString, QString> live = m_workspace->liveState().sources;
    QCOMPARE(live, (QHash<QString, QString>{{"source/main.vc", "新主"}}));
    QMap<QString, QString> searched;
    for (const SearchFile &file : m_workspace->searchFiles())
        searched.insert(file.path, file.liveText.value_or(QString()));
    QCOMPARE(searched.value(main), QString("新主"));
}

void WorkspaceTest::withoutAProjectTheFileInFrontCounts()
{
    writeFile(path("甲.vc"), "甲");
    writeFile(path("乙.vui"), "乙");
    QVERIFY(m_workspace->sourceTexts().isEmpty());
    m_tabs->open(path("甲.vc"))->insertPlainText("新");
    QCOMPARE(m_workspace->sourceTexts(), (QMap<QString, QString>{{path("甲.vc"), "新甲"}}));
    QVERIFY(m_workspace->liveState().sources.isEmpty());
    m_tabs->open(path("乙.vui"));
    QVERIFY(m_workspace->sourceTexts().isEmpty());
    QCOMPARE(m_workspace->searchFiles().size(), 2);
}

QTEST_MAIN(WorkspaceTest)
#include "workspace_test.moc"
