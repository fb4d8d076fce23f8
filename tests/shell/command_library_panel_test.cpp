// The panel of built-in commands: how they are ordered, found and chosen.
#include "shell/command_library_panel.h"

#include "catalog/command_library.h"

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QtTest>

namespace {

// Category paths with what is directly in them.
void listTree(const CommandCategory &category, const QString &path, QStringList &lines)
{
    QStringList names;
    for (const CommandInfo *command : category.commands)
        names << commandCaption(*command);
    if (!names.isEmpty())
        lines << path + ": " + names.join(' ');
    for (const CommandCategory &child : category.children)
        listTree(child, path + '/' + child.title, lines);
}

QStringList namesOf(const QList<const CommandInfo *> &commands)
{
    QStringList names;
    for (const CommandInfo *command : commands)
        names << command->name;
    return names;
}

CommandInfo record(const QString &name, const QString &category, const QString &memberOf = {})
{
    CommandInfo info;
    info.name = name;
    info.category = category;
    info.memberOf = memberOf;
    return info;
}

struct Fixture
{
    Fixture()
    {
        panel.resize(300, 600);
        panel.show();
        panel.activateWindow();
        isActive = QTest::qWaitForWindowActive(&panel);
    }

    QTreeWidgetItem *row(const QString &text) const
    {
        return tree->findItems(text, Qt::MatchStartsWith | Qt::MatchRecursive).value(0);
    }
    int rowCount() const
    {
        return tree->findItems("", Qt::MatchStartsWith | Qt::MatchRecursive).size();
    }

    CommandLibraryPanel panel{CommandLibrary::builtin()};
    QTreeWidget *tree = panel.findChild<QTreeWidget *>();
    QLineEdit *filter = panel.findChild<QLineEdit *>();
    QSignalSpy selected{&panel, &CommandLibraryPanel::commandSelected};
    QSignalSpy chosen{&panel, &CommandLibraryPanel::commandDoubleClicked};
    bool isActive = false;
};

} // namespace

class CommandLibraryPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void ordersByCategory();
    void holdsEveryCommandOnce();
    void finds_data();
    void finds();
    void fillsWhatIsOpened();
    void filters();
    void selectsAndInserts();
    void isUsedByKeyboard();
};

void CommandLibraryPanelTest::ordersByCategory()
{
    const QList<CommandInfo> records{record("丙", "二/一"),
                                     record("甲", "一"),
                                     record("乙", "一"),
                                     record("丁", "二"),
                                     record("按钮.标题", "组件", "按钮"),
                                     record("按钮.单击", "组件/按钮/事件", "按钮"),
                                     record("戊", "")};
    QList<const CommandInfo *> commands;
    for (const CommandInfo &info : records)
        commands << &info;
    const CommandCategory top = commandTree(commands);
    QStringList lines;
    listTree(top, "", lines);
    QCOMPARE(lines, QStringList({"/二: 丁", "/二/一: 丙", "/一: 甲 乙", "/组件/按钮: 标题",
                                 "/组件/按钮/事件: 单击", "/其他: 戊"}));
    QCOMPARE(top.commandCount(), records.size());
}

void CommandLibraryPanelTest::holdsEveryCommandOnce()
{
    const CommandLibrary &library = CommandLibrary::builtin();
    QVERIFY(library.allCommands().size() > 2000);
    QCOMPARE(commandTree(commandsByCategory(library)).commandCount(), library.allCommands().size());
}

void CommandLibraryPanelTest::finds_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("without");
    QTest::newRow("name") << "数组长度" << QStringList{"数组长度"} << QStringList{"输出"};
    QTest::newRow("beginning") << "数组" << QStringList() << QStringList{"输出"};
    QTest::newRow("initials") << "szcd" << QStringList{"数组长度"} << QStringList{"输出"};
    QTest::newRow("alias") << "取数组长度" << QStringList{"数组长度"} << QStringList{"输出"};
    QTest::newRow("constant") << "#编码_UTF8" << QStringList{"#编码_UTF8"}
                              << QStringList{"数组长度"};
    QTest::newRow("constant without its mark")
        << "编码_utf8" << QStringList{"#编码_UTF8"} << QStringList{"数组长度"};
    QTest::newRow("member") << "按钮.文本" << QStringList{"按钮.文本"} << QStringList{"窗口.文本"};
    QTest::newRow("blanks") << " 数组长度 " << QStringList{"数组长度"} << QStringList();
}

void CommandLibraryPanelTest::finds()
{
    QFETCH(QString, typed);
    QFETCH(QStringList, first);
    QFETCH(QStringList, without);
    const CommandSearch search(CommandLibrary::builtin());
    const QStringList found = namesOf(search.find(typed));
    QVERIFY(!found.isEmpty());
    QCOMPARE(found.mid(0, first.size()), first);
    QCOMPARE(QSet<QString>(found.begin(), found.end()).size(), found.size());
    for (const QString &name : without)
        QVERIFY2(!found.contains(name), qPrintable(name));
    QVERIFY(search.find("  ").isEmpty());
    QVERIFY(search.find("没有这样的命令").isEmpty());
}

void CommandLibraryPanelTest::fillsWhatIsOpened()
{
    Fixture f;
    const int closed = f.rowCount();
    QVERIFY(closed < 60);
    QTreeWidgetItem *arrays = f.row("数组操作");
    QVERIFY(arrays);
    arrays->setExpanded(true);
    QVERIFY(f.row("数组长度")->toolTip(0).contains("数组长度(通用"));
    const int opened = f.rowCount();
    QVERIFY(opened > closed);
    arrays->setExpanded(false);
    arrays->setExpanded(true);
    QCOMPARE(f.rowCount(), opened);
    f.row("组件类")->setExpanded(true);
    f.row("按钮 (")->setExpanded(true);
    QVERIFY(f.row("事件 (")->parent() == f.row("按钮 ("));
}

void CommandLibraryPanelTest::filters()
{
    Fixture f;
    const int all = f.rowCount();
    f.filter->setText("szcd");
    QVERIFY(f.row("数组长度"));
    QVERIFY(f.row("数组长度")->parent()->isExpanded());
    // Many hits: only the best category opens.
    f.filter->setText("文本");
    QVERIFY(f.tree->topLevelItem(0)->isExpanded());
    QVERIFY(!f.tree->topLevelItem(f.tree->topLevelItemCount() - 1)->isExpanded());
    f.filter->setText("没有这样的命令");
    QVERIFY(!f.tree->isVisible());
    f.filter->clear();
    QVERIFY(f.tree->isVisible());
    QCOMPARE(f.rowCount(), all);
}

void CommandLibraryPanelTest::selectsAndInserts()
{
    Fixture f;
    f.filter->setText("数组长度");
    QWidget *view = f.tree->viewport();
    const QPoint category = f.tree->visualItemRect(f.row("数组操作")).center();
    QTest::mouseClick(view, Qt::LeftButton, {}, category);
    QCOMPARE(f.selected.count(), 0);
    const QPoint command = f.tree->visualItemRect(f.row("数组长度")).center();
    QTest::mouseClick(view, Qt::LeftButton, {}, command);
    QCOMPARE(f.selected, QList<QVariantList>{{"数组长度"}});
    QCOMPARE(f.chosen.count(), 0);
    QTest::mouseDClick(view, Qt::LeftButton, {}, command);
    QTest::mouseRelease(view, Qt::LeftButton, {}, command);
    QCOMPARE(f.chosen, QList<QVariantList>{{"数组长度"}});
}

void CommandLibraryPanelTest::isUsedByKeyboard()
{
    Fixture f;
    QVERIFY(f.isActive);
    f.filter->setFocus();
    QTest::keyClicks(f.filter, "szcd");
    QTest::keyClick(f.filter, Qt::Key_Down);
    QVERIFY(f.tree->hasFocus());
    QCOMPARE(f.selected, QList<QVariantList>{{"数组长度"}});
    QTest::keyClick(f.tree, Qt::Key_Return);
    QCOMPARE(f.chosen, QList<QVariantList>{{"数组长度"}});
}

QTEST_MAIN(CommandLibraryPanelTest)
#include "command_library_panel_test.moc"
