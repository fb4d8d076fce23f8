// The tree of project files: what it shows, and what it says when it is used.
#include "shell/project_tree.h"

#include "project/project_manager.h"
#include "test_files.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

// A project with one file of every kind, and a tree over its manager.
struct Fixture
{
    Fixture()
    {
        isReady = create("甲");
        for (const char *file : {"source/工具.vc", "source/学生.vpp", "source/座位.vt",
                                 "ui/关于.vui", "resource/图.png"}) {
            TestFiles::writeFile(path(file), "{}");
            isReady = isReady && manager.addFile(path(file));
        }
        tree.rebuild();
        tree.resize(300, 500);
        tree.show();
    }

    bool create(const QString &name)
    {
        NewProject wanted;
        wanted.kind = ProjectKind::Gui;
        wanted.name = name;
        wanted.folder = dir.path();
        return manager.createProject(wanted);
    }
    QString path(const QString &relative) const { return dir.filePath("甲/" + relative); }
    // The rows that can be seen, indented by their level.
    QStringList rows() const
    {
        QStringList result;
        for (const QTreeWidgetItem *item = tree.topLevelItem(0); item;
             item = tree.itemBelow(item)) {
            QString indent;
            for (const QTreeWidgetItem *above = item->parent(); above; above = above->parent())
                indent += ' ';
            result << indent + item->text(0);
        }
        return result;
    }
    QTreeWidgetItem *item(const QString &text) const
    {
        return tree.findItems(text, Qt::MatchExactly | Qt::MatchRecursive).value(0);
    }

    QTemporaryDir dir;
    ProjectManager manager;
    ProjectTree tree{manager};
    bool isReady = false;
};

} // namespace

class ProjectTreeTest : public QObject
{
    Q_OBJECT

private slots:
    void showsFilesInGroups();
    void showsTheActiveProject();
    void followsTheManager();
    void keepsExpansionAndSelection();
    void marksFiles();
    void tellsWhatTheUserWants();
    void opensItsContextMenu();
};

void ProjectTreeTest::showsFilesInGroups()
{
    Fixture f;
    QVERIFY(f.isReady);
    QCOMPARE(f.rows(),
             QStringList({"甲", " 源代码", "  main.vc", "  constants.vc", "  globals.vc",
                          "  工具.vc", " 类", "  学生.vpp", " 类型", "  座位.vt", " 窗口",
                          "  主窗口.vui（主窗口、启动）", "  关于.vui", " 资源", "  图.png"}));
    for (const char *row : {"甲", "源代码", "main.vc", "学生.vpp", "座位.vt", "关于.vui", "图.png"})
        QVERIFY2(!f.item(row)->icon(0).pixmap(16, 16).isNull(), row);
    QVERIFY(f.item("main.vc")->toolTip(0).contains("source/main.vc"));
}

void ProjectTreeTest::showsTheActiveProject()
{
    Fixture f;
    QVERIFY(f.create("乙"));
    f.tree.rebuild();
    QCOMPARE(f.tree.topLevelItemCount(), 2);
    QVERIFY(!f.item("甲")->font(0).bold());
    QVERIFY(f.item("乙")->font(0).bold());
    QVERIFY(f.manager.activateProject(f.dir.filePath("甲")));
    QTRY_VERIFY(f.item("甲")->font(0).bold());
    QVERIFY(!f.item("乙")->font(0).bold());
}

void ProjectTreeTest::followsTheManager()
{
    Fixture f;
    TestFiles::writeFile(f.path("source/新.vc"), "");
    QVERIFY(f.manager.addFile("source/新.vc"));
    QTRY_VERIFY(f.item("新.vc"));
    QVERIFY(f.manager.renameFile("source/新.vc", "source/旧.vc"));
    QTRY_VERIFY(f.item("旧.vc") && !f.item("新.vc"));
    QVERIFY(f.manager.setStartupWindow("关于"));
    QTRY_VERIFY(f.item("关于.vui（启动）") && f.item("主窗口.vui（主窗口）"));
    QVERIFY(f.manager.removeFile("source/旧.vc"));
    QTRY_VERIFY(!f.item("旧.vc"));
    f.manager.closeProject();
    QTRY_COMPARE(f.tree.topLevelItemCount(), 0);
}

void ProjectTreeTest::keepsExpansionAndSelection()
{
    Fixture f;
    f.item("类")->setExpanded(false);
    f.tree.selectPath(f.path("source/工具.vc"));
    TestFiles::writeFile(f.path("source/甲.vpp"), "");
    QVERIFY(f.manager.addFile("source/甲.vpp"));
    QTRY_VERIFY(f.item("甲.vpp"));
    QVERIFY(!f.item("类")->isExpanded());
    QVERIFY(f.item("窗口")->isExpanded());
    QCOMPARE(f.tree.selectedPath(), f.path("source/工具.vc"));
    QCOMPARE(f.tree.selectedKind(), ProjectTreeKind::Source);
    QCOMPARE(f.tree.selectedProject(), QFileInfo(f.path("")).canonicalFilePath());
    f.tree.selectPath(f.path("source/没有.vc"));
    QCOMPARE(f.tree.selectedPath(), f.path("source/工具.vc"));
    f.tree.selectPath(f.path("source/甲.vpp"));
    QVERIFY(f.item("类")->isExpanded());
}

void ProjectTreeTest::marksFiles()
{
    Fixture f;
    f.tree.setModifiedFiles({f.path("source/工具.vc")});
    QVERIFY(f.item("工具.vc •"));
    QVERIFY(QFile::remove(f.path("source/座位.vt")));
    f.tree.rebuild();
    QVERIFY(f.item("工具.vc •"));
    const QBrush dimmed = f.tree.palette().brush(QPalette::Disabled, QPalette::Text);
    QCOMPARE(f.item("座位.vt")->foreground(0).color(), dimmed.color());
    QVERIFY(f.item("座位.vt")->toolTip(0).contains("磁盘上没有这个文件。"));
    QVERIFY(!f.item("main.vc")->toolTip(0).contains("没有"));
    f.tree.setModifiedFiles({});
    QVERIFY(f.item("工具.vc"));
}

void ProjectTreeTest::tellsWhatTheUserWants()
{
    Fixture f;
    QSignalSpy activated(&f.tree, &ProjectTree::fileActivated);
    QSignalSpy project(&f.tree, &ProjectTree::projectActivated);
    QSignalSpy renamed(&f.tree, &ProjectTree::renameRequested);
    QSignalSpy removed(&f.tree, &ProjectTree::removeRequested);
    const QString file = f.path("source/工具.vc");
    const QPoint place = f.tree.visualItemRect(f.item("工具.vc")).center();
    QTest::mouseClick(f.tree.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(f.tree.viewport(), Qt::LeftButton, {}, place);
    QTest::keyClick(&f.tree, Qt::Key_Return);
    QCOMPARE(activated, QList<QVariantList>({{file}, {file}}));
    QTest::keyClick(&f.tree, Qt::Key_F2);
    QTest::keyClick(&f.tree, Qt::Key_Delete);
    QCOMPARE(renamed, QList<QVariantList>{{file}});
    QCOMPARE(removed, QList<QVariantList>{{file}});

    f.tree.setCurrentItem(f.item("源代码"));
    QTest::keyClick(&f.tree, Qt::Key_F2);
    QTest::keyClick(&f.tree, Qt::Key_Delete);
    QTest::keyClick(&f.tree, Qt::Key_Return);
    f.tree.setCurrentItem(f.item("甲"));
    QTest::keyClick(&f.tree, Qt::Key_Return);
    QCOMPARE(project, QList<QVariantList>{{QFileInfo(f.path("")).canonicalFilePath()}});
    QCOMPARE(activated.count() + renamed.count() + removed.count(), 4);
}

void ProjectTreeTest::opensItsContextMenu()
{
    Fixture f;
    QSignalSpy asked(&f.tree, &ProjectTree::contextMenuRequested);
    const auto ask = [&f](const QPoint &place) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                                f.tree.viewport()->mapToGlobal(place));
        QApplication::sendEvent(f.tree.viewport(), &event);
    };
    ask(f.tree.visualItemRect(f.item("学生.vpp")).center());
    ask(QPoint(5, f.tree.viewport()->height() - 2));
    QCOMPARE(asked.count(), 2);
    QCOMPARE(asked[0][0].toString(), f.path("source/学生.vpp"));
    QCOMPARE(asked[0][1].value<ProjectTreeKind>(), ProjectTreeKind::Class);
    QCOMPARE(asked[1][0].toString(), QString());
    QCOMPARE(asked[1][1].value<ProjectTreeKind>(), ProjectTreeKind::None);
}

QTEST_MAIN(ProjectTreeTest)
#include "project_tree_test.moc"
