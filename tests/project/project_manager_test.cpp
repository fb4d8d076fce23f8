// Several open projects, their files, and what is told of changes.
#include "project/project_manager.h"
#include "test_files.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

using TestFiles::readFile;
using TestFiles::writeFile;

class ProjectManagerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void createsProjects_data();
    void createsProjects();
    void refusesToCreate();
    void opensSaves();
    void failuresKeepTheActiveProject();
    void severalProjects();
    void filesOfTheProject();
    void windows();
    void tellsOfForeignChanges_data();
    void tellsOfForeignChanges();
    void keepsQuietAboutOwnWrites();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    QString makeProject(const QString &name);

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<ProjectManager> m_manager;
};

void ProjectManagerTest::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_manager = std::make_unique<ProjectManager>();
}

QString ProjectManagerTest::makeProject(const QString &name)
{
    const QString file = path(name + QLatin1Char('/') + name + QLatin1String(".vlproj"));
    writeFile(path(name + QStringLiteral("/source/main.vc")), "函数 主函数() { }\n");
    writeFile(file, QStringLiteral("{\"name\": \"%1\"}").arg(name).toUtf8());
    return file;
}

void ProjectManagerTest::createsProjects_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("windowType");
    QTest::addColumn<QString>("windowFile");
    QTest::addRow("console") << int(ProjectKind::Console) << "vlwin" << QString();
    QTest::addRow("empty") << int(ProjectKind::Empty) << "win32" << QString();
    QTest::addRow("win32") << int(ProjectKind::Gui) << "win32"
                           << "ui/主窗口.vui";
    QTest::addRow("vlwin") << int(ProjectKind::Gui) << "vlwin"
                           << "ui/主窗口.vlwin";
}

void ProjectManagerTest::createsProjects()
{
    QFETCH(int, kind);
    QFETCH(QString, windowType);
    QFETCH(QString, windowFile);
    QSignalSpy created(m_manager.get(), &ProjectManager::projectCreated);
    QStringList recent;
    m_manager->setRecentProjects([&recent](const QString &file) { recent << file; });
    NewProject project;
    project.kind = ProjectKind(kind);
    project.name = QStringLiteral("我的 程序");
    project.folder = path(QStringLiteral("a/b"));
    project.windowType = windowType;
    QVERIFY2(m_manager->createProject(project), qPrintable(m_manager->lastError()));
    QCOMPARE(created.size(), 1);
    QCOMPARE(recent, QStringList{m_manager->projectFile()});
    const QDir folder(path(QStringLiteral("a/b/我的 程序")));
    for (const char *sub : {"source", "ui", "resource", "output"})
        QVERIFY(folder.exists(QLatin1String(sub)));
    const VL::ProjectInfo written =
        ProjectFile::read(folder.filePath(QStringLiteral("我的 程序.vlproj"))).info;
    QCOMPARE(written.name, project.name);
    QCOMPARE(written.mainWindowFile, windowFile);
    QCOMPARE(written.startupWindowFile, windowFile);
    QCOMPARE(written.uiBackend, windowFile.endsWith(QLatin1String("vlwin")) ? "vlwin" : "win32");
    QCOMPARE(written.sourceFiles.size(), 3);
    for (const QString &file : written.sourceFiles + written.windowFiles)
        QVERIFY2(QFileInfo(folder.filePath(file)).size() > 0, qPrintable(file));
    QVERIFY(written.created.isValid());
}

void ProjectManagerTest::refusesToCreate()
{
    QSignalSpy errors(m_manager.get(), &ProjectManager::errorOccurred);
    NewProject project;
    project.folder = m_dir->path();
    for (const char *name : {"", "..", "a/b", "CON", "x."}) {
        project.name = QLatin1String(name);
        QVERIFY2(!m_manager->createProject(project), name);
    }
    writeFile(path(QStringLiteral("taken/mine.txt")), "mine");
    project.name = QStringLiteral("taken");
    QVERIFY(!m_manager->createProject(project));
    QVERIFY(m_manager->lastError().contains(QStringLiteral("taken")));
    QCOMPARE(readFile(path(QStringLiteral("taken/mine.txt"))), QByteArray("mine"));
    QCOMPARE(errors.size(), 6);
    QCOMPARE(errors.last().at(0).toString(), QStringLiteral("Failed to create project directory"));
    QVERIFY(!m_manager->hasOpenProject());
}

void ProjectManagerTest::opensSaves()
{
    const QString file = makeProject(QStringLiteral("甲"));
    writeFile(path(QStringLiteral("甲/source/extra.vc")), "// x\n");
    QVERIFY(!m_manager->saveProject());
    QSignalSpy opened(m_manager.get(), &ProjectManager::projectOpened);
    QSignalSpy modified(m_manager.get(), &ProjectManager::projectModified);
    QSignalSpy saved(m_manager.get(), &ProjectManager::projectSaved);
    QVERIFY(m_manager->openProject(file));
    QCOMPARE(opened.size(), 1);
    QVERIFY(m_manager->currentProject().sourceFiles.contains(QStringLiteral("source/extra.vc")));
    QVERIFY(!m_manager->isModified());
    VL::ProjectInfo info = m_manager->currentProject();
    info.author = QStringLiteral("乙");
    info.path = QStringLiteral("/");
    m_manager->setCurrentProject(info);
    m_manager->setCurrentProject(info);
    QCOMPARE(modified.size(), 1);
    QVERIFY(m_manager->isModified());
    QVERIFY(m_manager->saveProject());
    QCOMPARE(saved.size(), 1);
    QVERIFY(!m_manager->isModified());
    const VL::ProjectInfo read = ProjectFile::read(file).info;
    QCOMPARE(read.author, QStringLiteral("乙"));
    QVERIFY(read.modified.isValid());
}

void ProjectManagerTest::failuresKeepTheActiveProject()
{
    QVERIFY(m_manager->openProject(makeProject(QStringLiteral("甲"))));
    QSignalSpy errors(m_manager.get(), &ProjectManager::errorOccurred);
    const QString broken = path(QStringLiteral("乙/乙.vlproj"));
    writeFile(broken, "{\"name\": ");
    QVERIFY(!m_manager->openProject(broken));
    QVERIFY(!m_manager->openProject(path(QStringLiteral("nothing.vlproj"))));
    QCOMPARE(errors.at(0).at(0).toString(), QStringLiteral("Invalid project file format"));
    QCOMPARE(errors.at(1).at(0).toString(), QStringLiteral("Failed to open project file"));
    QCOMPARE(m_manager->currentProject().name, QStringLiteral("甲"));
}

void ProjectManagerTest::severalProjects()
{
    const QString first = makeProject(QStringLiteral("甲"));
    const QString second = makeProject(QStringLiteral("乙"));
    QSignalSpy active(m_manager.get(), &ProjectManager::activeProjectChanged);
    QVERIFY(m_manager->openProject(first) && m_manager->openProject(second));
    QVERIFY(m_manager->addFile(QStringLiteral("source/main.vc")));
    // Opening again only switches, and what was changed is still there.
    QVERIFY(m_manager->openProject(path(QStringLiteral("甲/../甲/甲.vlproj"))));
    QCOMPARE(m_manager->openProjects().size(), 2);
    QCOMPARE(m_manager->currentProject().name, QStringLiteral("甲"));
    QVERIFY(m_manager->activateProject(path(QStringLiteral("乙"))));
    QVERIFY(!m_manager->activateProject(path(QStringLiteral("丙"))));
    QCOMPARE(m_manager->currentProject().name, QStringLiteral("乙"));
    QCOMPARE(active.size(), 4);
    QSignalSpy closed(m_manager.get(), qOverload<>(&ProjectManager::projectClosed));
    m_manager->closeProject();
    QCOMPARE(m_manager->currentProject().name, QStringLiteral("甲"));
    m_manager->closeProject();
    m_manager->closeProject();
    QCOMPARE(closed.size(), 2);
    QVERIFY(!m_manager->hasOpenProject());
    QCOMPARE(m_manager->currentProject().name, QString());
}

void ProjectManagerTest::filesOfTheProject()
{
    QVERIFY(m_manager->openProject(makeProject(QStringLiteral("甲"))));
    QSignalSpy added(m_manager.get(), &ProjectManager::fileAdded);
    QSignalSpy renamed(m_manager.get(), &ProjectManager::fileRenamed);
    QSignalSpy removed(m_manager.get(), &ProjectManager::fileRemoved);
    const QString outside = path(QStringLiteral("shared.vc"));
    writeFile(outside, "// shared\n");
    writeFile(path(QStringLiteral("甲/source/b.vc")), "// b\n");
    writeFile(path(QStringLiteral("甲/resource/a.png")), "x");
    QVERIFY(m_manager->addFile(path(QStringLiteral("甲/source/b.vc"))));
    QVERIFY(m_manager->addFile(QStringLiteral("source/b.vc")));
    QVERIFY(m_manager->addFile(outside));
    QVERIFY(m_manager->addFile(QStringLiteral("resource/a.png")));
    QVERIFY(!m_manager->addFile(QStringLiteral("source/none.vc")));
    writeFile(path(QStringLiteral("form.vui")), "{}");
    QVERIFY(!m_manager->addFile(path(QStringLiteral("form.vui"))));
    QCOMPARE(added.size(), 3);
    QCOMPARE(m_manager->currentProject().resourceFiles,
             QStringList{QStringLiteral("resource/a.png")});
    QVERIFY(m_manager->currentProject().sourceFiles.contains(outside));

    QVERIFY(m_manager->renameFile(QStringLiteral("source/b.vc"), QStringLiteral("source/c.vc")));
    QVERIFY(QFileInfo(path(QStringLiteral("甲/source/c.vc"))).isFile());
    QVERIFY(
        !m_manager->renameFile(QStringLiteral("source/c.vc"), QStringLiteral("source/main.vc")));
    QVERIFY(!m_manager->renameFile(QStringLiteral("source/c.vc"), QStringLiteral("../c.vc")));
    QCOMPARE(renamed.size(), 1);
    QVERIFY(m_manager->removeFile(QStringLiteral("source/c.vc")));
    QVERIFY(!m_manager->removeFile(QStringLiteral("source/c.vc")));
    QCOMPARE(removed.size(), 1);
    QVERIFY(QFileInfo(path(QStringLiteral("甲/source/c.vc"))).isFile());
}

void ProjectManagerTest::windows()
{
    const QString file = makeProject(QStringLiteral("甲"));
    writeFile(path(QStringLiteral("甲/ui/主窗口.vui")), "{}");
    writeFile(path(QStringLiteral("甲/ui/登录.vui")), "{}");
    QVERIFY(m_manager->openProject(file));
    QSignalSpy main(m_manager.get(), &ProjectManager::mainWindowChanged);
    QSignalSpy renamed(m_manager.get(), &ProjectManager::windowFileRenamed);
    QVERIFY(m_manager->setMainWindow(QStringLiteral("主窗口")));
    QVERIFY(m_manager->setStartupWindow(QStringLiteral("登录")));
    QVERIFY(!m_manager->setMainWindow(QStringLiteral("没有")));
    QVERIFY(m_manager->renameFile(QStringLiteral("ui/登录.vui"), QStringLiteral("ui/欢迎.vui")));
    QCOMPARE(renamed.first().at(1).toString(), QStringLiteral("欢迎"));
    QCOMPARE(m_manager->currentProject().startupWindowFile, QStringLiteral("ui/欢迎.vui"));
    QVERIFY(m_manager->removeFile(QStringLiteral("ui/主窗口.vui")));
    QCOMPARE(m_manager->currentProject().mainWindowFile, QString());
    QCOMPARE(main.size(), 2);
}

void ProjectManagerTest::tellsOfForeignChanges_data()
{
    QTest::addColumn<QString>("how");
    for (const char *how : {"written in place", "replaced", "removed", "written in steps"})
        QTest::addRow("%s", how) << QString::fromLatin1(how);
}

void ProjectManagerTest::tellsOfForeignChanges()
{
    QFETCH(QString, how);
    QVERIFY(m_manager->openProject(makeProject(QStringLiteral("甲"))));
    QSignalSpy changed(m_manager.get(), &ProjectManager::fileChanged);
    const QString file = path(QStringLiteral("甲/source/main.vc"));
    for (int round = 1; round <= 3; ++round) {
        const QByteArray content = "// " + QByteArray::number(round) + '\n';
        if (how == QLatin1String("removed") && round == 2) {
            QVERIFY(QFile::remove(file));
        } else if (how == QLatin1String("replaced")) {
            writeFile(file + QStringLiteral(".new"), content);
            QVERIFY(QFile::remove(file) && QFile::rename(file + QStringLiteral(".new"), file));
        } else if (how == QLatin1String("written in steps")) {
            for (int i = 0; i < 5; ++i)
                writeFile(file, content + QByteArray(i, 'x'));
        } else {
            writeFile(file, content);
        }
        QTRY_COMPARE(changed.size(), round);
        QCOMPARE(QFileInfo(changed.last().at(0).toString()), QFileInfo(file));
    }
}

void ProjectManagerTest::keepsQuietAboutOwnWrites()
{
    QVERIFY(m_manager->openProject(makeProject(QStringLiteral("甲"))));
    QSignalSpy changed(m_manager.get(), &ProjectManager::fileChanged);
    const QString file = path(QStringLiteral("甲/source/main.vc"));
    writeFile(file, "// mine\n");
    m_manager->noteOwnWrite(file);
    VL::ProjectInfo info = m_manager->currentProject();
    info.author = QStringLiteral("乙");
    m_manager->setCurrentProject(info);
    QVERIFY(m_manager->saveProject());
    // Somebody else's change comes after: it is the only one that is told.
    writeFile(path(QStringLiteral("甲/source/other.vc")), "x");
    writeFile(file, "// theirs\n");
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(QFileInfo(changed.first().at(0).toString()), QFileInfo(file));
}

QTEST_GUILESS_MAIN(ProjectManagerTest)
#include "project_manager_test.moc"
