// The page on which the user begins, used with mouse and keys.
#include "shell/welcome_page.h"

#include "shell/recent_projects_list.h"
#include "test_files.h"

#include <QApplication>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

struct Fixture
{
    Fixture()
    {
        TestFiles::writeFile(dir.filePath("甲/甲.vlproj"), "{}");
        TestFiles::writeFile(dir.filePath("乙/乙.vlproj"), "{}");
        page.setRecentProjects(files);
        page.resize(900, 600);
        page.show();
        page.activateWindow();
        isActive = QTest::qWaitForWindowActive(&page);
    }

    QPushButton *button(const QString &text)
    {
        for (auto *button : page.findChildren<QPushButton *>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }
    QPoint middleOf(int row) const { return list->visualItemRect(list->item(row)).center(); }

    QTemporaryDir dir;
    QStringList files{dir.filePath("甲/甲.vlproj"), dir.filePath("没有/没有.vlproj"),
                      dir.filePath("乙/乙.vlproj")};
    WelcomePage page;
    RecentProjectsList *list = page.findChild<RecentProjectsList *>();
    QSignalSpy opened{&page, &WelcomePage::openRecentProjectRequested};
    QSignalSpy removed{&page, &WelcomePage::removeRecentProjectRequested};
    bool isActive = false;
};

using Signal = void (WelcomePage::*)();

} // namespace

Q_DECLARE_METATYPE(Signal)

class WelcomePageTest : public QObject
{
    Q_OBJECT

private slots:
    void buttons_data();
    void buttons();
    void showsRecentProjects();
    void opensAndRemovesByMouse();
    void opensAndRemovesByKeys();
    void isReachedByKeyboard();
};

void WelcomePageTest::buttons_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Signal>("signal");
    QTest::newRow("new") << "新建项目" << Signal(&WelcomePage::newProjectRequested);
    QTest::newRow("open") << "打开项目" << Signal(&WelcomePage::openProjectRequested);
    QTest::newRow("file") << "打开文件" << Signal(&WelcomePage::openFileRequested);
    QTest::newRow("examples") << "示例" << Signal(&WelcomePage::viewExamplesRequested);
    QTest::newRow("documentation")
        << "使用文档" << Signal(&WelcomePage::openDocumentationRequested);
    QTest::newRow("clear") << "清空列表" << Signal(&WelcomePage::clearAllRecentProjectsRequested);
}

void WelcomePageTest::buttons()
{
    QFETCH(QString, text);
    QFETCH(Signal, signal);
    Fixture f;
    QPushButton *button = f.button(text);
    QVERIFY(button);
    QSignalSpy told(&f.page, signal);
    button->click();
    QCOMPARE(told.count(), 1);
}

void WelcomePageTest::showsRecentProjects()
{
    Fixture f;
    QStringList names;
    for (int row = 0; row < f.list->count(); ++row)
        names << f.list->item(row)->text();
    QCOMPARE(names, QStringList({"甲", "没有", "乙"}));
    QVERIFY(!f.list->item(0)->toolTip().contains("不在这里"));
    QVERIFY(f.list->item(1)->toolTip().contains("不在这里"));
    f.page.setRecentProjects({});
    QVERIFY(!f.list->isVisible());
    QVERIFY(!f.button("清空列表")->isVisible());
}

void WelcomePageTest::opensAndRemovesByMouse()
{
    Fixture f;
    QWidget *view = f.list->viewport();
    QTest::mouseClick(view, Qt::LeftButton, {}, f.middleOf(2));
    QCOMPARE(f.opened, QList<QVariantList>{{f.files[2]}});
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(view->width() - 15, f.middleOf(1).y()));
    QTRY_COMPARE(f.removed, QList<QVariantList>{{f.files[1]}});
    // Pressed on one row, let go on another: nothing.
    QTest::mousePress(view, Qt::LeftButton, {}, f.middleOf(0));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(5, view->height() - 3));
    QTest::mouseClick(view, Qt::RightButton, {}, f.middleOf(0));
    QCOMPARE(f.opened.count(), 1);
}

void WelcomePageTest::opensAndRemovesByKeys()
{
    Fixture f;
    QObject::connect(&f.page, &WelcomePage::removeRecentProjectRequested,
                     [&f](const QString &file) {
                         f.files.removeAll(file);
                         f.page.setRecentProjects(f.files);
                     });
    QTest::keyClick(f.list, Qt::Key_Down);
    QTest::keyClick(f.list, Qt::Key_Delete);
    QTRY_COMPARE(f.list->count(), 2);
    QCOMPARE(f.list->currentRow(), 1);
    QTest::keyClick(f.list, Qt::Key_Return);
    QCOMPARE(f.opened, QList<QVariantList>{{f.dir.filePath("乙/乙.vlproj")}});
    QTest::keyClick(f.list, Qt::Key_Delete);
    QTRY_COMPARE(f.list->count(), 1);
    QCOMPARE(f.list->currentRow(), 0);
}

void WelcomePageTest::isReachedByKeyboard()
{
    Fixture f;
    QVERIFY(f.isActive);
    f.button("新建项目")->setFocus();
    QStringList reached;
    for (int step = 0; step < 7; ++step) {
        const auto *button = qobject_cast<QPushButton *>(QApplication::focusWidget());
        reached << (button ? button->text() : QApplication::focusWidget()->accessibleName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(reached, QStringList({"新建项目", "打开项目", "打开文件", "示例", "使用文档",
                                   "清空列表", "最近项目"}));
}

QTEST_MAIN(WelcomePageTest)
#include "welcome_page_test.moc"
