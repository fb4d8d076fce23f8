// The examples: the user works on copies of his own.
#include "project/project_manager.h"
#include "shell/desk.h"
#include "shell/example_projects.h"
#include "test_files.h"

#include <QInputDialog>

class ExampleProjectsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void copiesOpen_data();
    void copiesOpen();
    void theUsersCopyStays();
    void othersFilesStay();
    void letsTheUserChoose();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void ExampleProjectsTest::copiesOpen_data()
{
    QTest::addColumn<QString>("name");
    QVERIFY(!ExampleProjects::names().isEmpty());
    for (const QString &name : ExampleProjects::names())
        QTest::addRow("%s", qPrintable(name)) << name;
}

void ExampleProjectsTest::copiesOpen()
{
    QFETCH(QString, name);
    QString error;
    const QString project = ExampleProjects::openCopy(name, m_folder->path(), &error);
    QCOMPARE(error, QString());
    QCOMPARE(QFileInfo(project).path(), m_folder->filePath(name));
    ProjectManager projects;
    QVERIFY2(projects.openProject(project), qPrintable(projects.lastError()));
    const VL::ProjectInfo &info = projects.currentProject();
    for (const QString &file : info.sourceFiles + info.uiFiles + info.windowFiles) {
        const QFileInfo copy(QDir(info.path), file);
        QVERIFY2(copy.isFile() && copy.isWritable(), qPrintable(file));
    }
    QVERIFY(!QFileInfo::exists(info.path + "/build"));
}

void ExampleProjectsTest::theUsersCopyStays()
{
    const QString name = ExampleProjects::names().first();
    QString error;
    const QString project = ExampleProjects::openCopy(name, m_folder->path(), &error);
    const QString source = QFileInfo(project).path() + "/source/main.vc";
    TestFiles::writeFile(source, "我的");
    QCOMPARE(ExampleProjects::openCopy(name, m_folder->path(), &error), project);
    QCOMPARE(error, QString());
    QCOMPARE(TestFiles::readFile(source), QByteArray("我的"));
}

// A folder that only has the name of an example is not written into.
void ExampleProjectsTest::othersFilesStay()
{
    const QString name = ExampleProjects::names().first();
    TestFiles::writeFile(m_folder->filePath(name + "/信.txt"), "我的");
    QString error;
    QCOMPARE(ExampleProjects::openCopy(name, m_folder->path(), &error), QString());
    QVERIFY2(error.contains(name), qPrintable(error));
    QCOMPARE(QDir(m_folder->filePath(name)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{"信.txt"});
}

void ExampleProjectsTest::letsTheUserChoose()
{
    const QString last = ExampleProjects::names().last();
    Shell::inNext<QInputDialog>([](QInputDialog *dialog) { dialog->reject(); });
    QCOMPARE(ExampleProjects::choose(m_folder->path(), nullptr), QString());
    QVERIFY(QDir(m_folder->path()).isEmpty());
    Shell::inNext<QInputDialog>([last](QInputDialog *dialog) {
        dialog->setTextValue(last);
        dialog->accept();
    });
    QCOMPARE(QFileInfo(ExampleProjects::choose(m_folder->path(), nullptr)).path(),
             m_folder->filePath(last));
}

QTEST_MAIN(ExampleProjectsTest)
#include "example_projects_test.moc"
