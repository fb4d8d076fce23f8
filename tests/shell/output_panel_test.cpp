// The panels below the editor, used with keys and mouse.
#include "shell/output_panel.h"

#include "shell/command_help_browser.h"
#include "shell/error_list_widget.h"
#include "shell/issue_filter_bar.h"
#include "shell/output_text_edit.h"
#include "shell/search_results_widget.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

// A window with an editor above the panel.
struct Window
{
    explicit Window(bool isCodeEditor = true)
    {
        auto *layout = new QVBoxLayout(&widget);
        layout->addWidget(editor);
        layout->addWidget(panel);
        editor->setProperty("codeEditor", isCodeEditor);
        widget.resize(800, 600);
        widget.show();
        widget.activateWindow();
        isActive = QTest::qWaitForWindowActive(&widget);
    }

    template <typename View>
    View *view() const
    {
        return panel->findChild<View *>();
    }
    OutputTextEdit *output(const char *name) const
    {
        for (auto *output : panel->findChildren<OutputTextEdit *>()) {
            if (output->accessibleName() == QString::fromUtf8(name))
                return output;
        }
        return nullptr;
    }
    QToolButton *toolButton(const char *text) const
    {
        for (auto *button : panel->cornerWidget()->findChildren<QToolButton *>()) {
            if (button->text() == QString::fromUtf8(text))
                return button;
        }
        return nullptr;
    }

    QWidget widget;
    QPlainTextEdit *editor = new QPlainTextEdit;
    OutputPanel *panel = new OutputPanel;
    bool isActive = false;
};

QPoint middleOf(const QTreeWidget *list, int row)
{
    return list->visualItemRect(list->topLevelItem(row)).center();
}

QString clipboard()
{
    return QApplication::clipboard()->text();
}

} // namespace

class OutputPanelTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QApplication::clipboard()->setText("空"); }

    void tabs();
    void leavesTheFocusInTheEditor();
    void leavesTheFocusWhereTheUserWent();
    void goesToAnError();
    void goesToASearchResult();
    void filters();
    void hiddenRowsAreOutOfReach();
    void renewsARow();
    void copiesErrors();
    void errorMenu();
    void toolBarActsOnTheTabInFront();
    void wrapsWords();
    void sendsInput();
    void isReachedByKeyboard();
};

void OutputPanelTest::tabs()
{
    const Window window;
    QStringList titles;
    for (int tab = 0; tab < window.panel->count(); ++tab)
        titles << window.panel->tabText(tab);
    QCOMPARE(titles, QStringList({"编译", "运行", "错误", "搜索结果", "命令提示"}));
    const auto *errors = window.view<ErrorListWidget>();
    QStringList shownOrder;
    for (int place = 0; place < errors->columnCount(); ++place)
        shownOrder << errors->headerItem()->text(errors->header()->logicalIndex(place));
    QCOMPARE(shownOrder, QStringList({"类型", "文件", "行", "列", "说明"}));
}

void OutputPanelTest::leavesTheFocusInTheEditor()
{
    const Window window;
    QVERIFY(window.isActive);
    window.panel->showTab(OutputPanel::CompileTab);
    window.editor->setFocus();
    QTest::keyClicks(window.editor, "ab");
    window.panel->addError("错了", "main.vc", 3, 1);
    QCOMPARE(window.panel->currentIndex(), int(OutputPanel::ErrorTab));
    // Whatever the change of the tab does to the focus, it comes back.
    window.view<ErrorListWidget>()->setFocus();
    QTRY_VERIFY(window.editor->hasFocus());
    QTest::keyClicks(QApplication::focusWidget(), "cd");
    QCOMPARE(window.editor->toPlainText(), QString("abcd"));
    window.panel->showTab(OutputPanel::CompileTab);
    window.panel->addInfo("无事");
    QCOMPARE(window.panel->currentIndex(), int(OutputPanel::CompileTab));
    window.panel->addWarning("小心");
    QCOMPARE(window.panel->currentIndex(), int(OutputPanel::ErrorTab));
}

void OutputPanelTest::leavesTheFocusWhereTheUserWent()
{
    const Window plain(false);
    QVERIFY(plain.isActive);
    plain.editor->setFocus();
    plain.panel->addError("错了");
    plain.view<ErrorListWidget>()->setFocus();
    QCoreApplication::processEvents();
    QVERIFY(plain.view<ErrorListWidget>()->hasFocus());

    const Window window;
    QVERIFY(window.isActive);
    QLineEdit elsewhere(const_cast<QWidget *>(&window.widget));
    elsewhere.show();
    window.editor->setFocus();
    window.panel->addError("错了");
    elsewhere.setFocus();
    QCoreApplication::processEvents();
    QVERIFY(elsewhere.hasFocus());
}

void OutputPanelTest::goesToAnError()
{
    const Window window;
    window.panel->addError("第一个", "main.vc", 3, 5);
    window.panel->addWarning("没有位置");
    auto *errors = window.view<ErrorListWidget>();
    QSignalSpy told(window.panel, &OutputPanel::errorItemClicked);
    QTest::mouseClick(errors->viewport(), Qt::LeftButton, {}, middleOf(errors, 0));
    QCOMPARE(told.count(), 0);
    QTest::mouseDClick(errors->viewport(), Qt::LeftButton, {}, middleOf(errors, 0));
    QCOMPARE(told, QList<QVariantList>({{"main.vc", 3, 5, "第一个"}}));
    QTest::keyClick(errors, Qt::Key_Down);
    QTest::keyClick(errors, Qt::Key_Return);
    QCOMPARE(told.count(), 2);
    QCOMPARE(told.last(), QVariantList({"", 0, 0, "没有位置"}));
}

void OutputPanelTest::goesToASearchResult()
{
    const Window window;
    window.panel->addSearchResult("a.vc", 7, "\t输出(1)  ");
    window.panel->addSearchResult("b.vc", 12, "输出(2)");
    window.panel->showTab(OutputPanel::SearchTab);
    auto *results = window.view<SearchResultsWidget>();
    QSignalSpy told(window.panel, &OutputPanel::searchResultClicked);
    QTest::mouseClick(results->viewport(), Qt::LeftButton, {}, middleOf(results, 0));
    QTest::mouseDClick(results->viewport(), Qt::LeftButton, {}, middleOf(results, 0));
    QTest::keyClick(results, Qt::Key_Down);
    QTest::keyClick(results, Qt::Key_Enter);
    QCOMPARE(told, QList<QVariantList>({{"a.vc", 7}, {"b.vc", 12}}));
    QTest::keyClick(results, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard(), QString("b.vc\t12\t输出(2)"));
    window.panel->clearSearchResults();
    QCOMPARE(results->topLevelItemCount(), 0);
}

void OutputPanelTest::filters()
{
    const Window window;
    auto *errors = window.view<ErrorListWidget>();
    const auto *bar = window.view<IssueFilterBar>();
    const auto shown = [errors] {
        QStringList texts;
        for (int row = 0; row < errors->topLevelItemCount(); ++row) {
            if (!errors->topLevelItem(row)->isHidden())
                texts << errors->topLevelItem(row)->text(1);
        }
        return texts;
    };
    window.panel->addError("错");
    window.panel->addWarning("警", "main.vc");
    window.panel->addInfo("信", "main.vc");
    QCOMPARE(bar->button(IssueKind::Warning)->text(), QString("警告 1"));
    QTest::mouseClick(bar->button(IssueKind::Warning), Qt::LeftButton);
    QCOMPARE(shown(), QStringList({"错", "信"}));
    window.panel->addWarning("又警", "main.vc");
    QCOMPARE(shown(), QStringList({"错", "信"}));
    QCOMPARE(bar->button(IssueKind::Warning)->text(), QString("警告 2"));
    QTest::keyClick(bar->button(IssueKind::Warning), Qt::Key_Space);
    QCOMPARE(shown(), QStringList({"错", "警", "信", "又警"}));
    QSignalSpy counts(window.panel, &OutputPanel::issueCountsChanged);
    window.panel->removeIssues("main.vc", "");
    QCOMPARE(shown(), QStringList({"错"}));
    QCOMPARE(counts, QList<QVariantList>({{1, 0, 0}}));
}

void OutputPanelTest::hiddenRowsAreOutOfReach()
{
    const Window window;
    auto *errors = window.view<ErrorListWidget>();
    window.panel->addError("错");
    QTest::mouseClick(errors->viewport(), Qt::LeftButton, {}, middleOf(errors, 0));
    errors->setKindShown(IssueKind::Error, false);
    QSignalSpy told(window.panel, &OutputPanel::errorItemClicked);
    QTest::keyClick(errors, Qt::Key_Return);
    QTest::keyClick(errors, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(told.count(), 0);
    QCOMPARE(clipboard(), QString("空"));
}

void OutputPanelTest::renewsARow()
{
    const Window window;
    auto *errors = window.view<ErrorListWidget>();
    window.panel->addError("变量 甲 重复定义", "main.vc", 3);
    window.panel->addError("别的", "main.vc", 4);
    window.panel->addWarning("变量 甲 重复定义", "main.vc", 8);
    QCOMPARE(errors->topLevelItemCount(), 2);
    QCOMPARE(errors->topLevelItem(0)->text(0), QString("警告"));
    QCOMPARE(errors->topLevelItem(0)->text(3), QString("8"));
    QVERIFY(errors->topLevelItem(0)->foreground(1) != errors->topLevelItem(1)->foreground(1));
}

void OutputPanelTest::copiesErrors()
{
    const Window window;
    auto *errors = window.view<ErrorListWidget>();
    window.panel->addError("甲 %1", "main.vc", 3, 5);
    window.panel->addWarning("乙", "main.vc", 4);
    window.panel->addInfo("丙");
    QTest::keyClick(errors, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard(), QString("空"));
    // Selected from below, copied from above.
    QTest::mouseClick(errors->viewport(), Qt::LeftButton, {}, middleOf(errors, 1));
    QTest::mouseClick(errors->viewport(), Qt::LeftButton, Qt::ShiftModifier, middleOf(errors, 0));
    QTest::keyClick(errors, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard(), QString("错误\t甲 %1\tmain.vc\t3\t5\n警告\t乙\tmain.vc\t4\t"));
    errors->copyAll();
    QCOMPARE(clipboard(),
             QString("错误\t甲 %1\tmain.vc\t3\t5\n警告\t乙\tmain.vc\t4\t\n信息\t丙\t\t\t"));
}

void OutputPanelTest::errorMenu()
{
    const Window window;
    window.panel->addError("甲");
    auto *errors = window.view<ErrorListWidget>();
    errors->showContextMenu({5, 5});
    auto *menu = errors->findChild<QMenu *>();
    QVERIFY(menu);
    const QList<QAction *> actions = menu->actions();
    QCOMPARE(actions.size(), 2);
    QCOMPARE(actions.at(0)->text(), QString("复制全部"));
    QCOMPARE(actions.at(1)->text(), QString("清除所有"));
    actions.at(0)->trigger();
    QCOMPARE(clipboard(), QString("错误\t甲\t\t\t"));
    QSignalSpy counts(errors, &ErrorListWidget::countsChanged);
    actions.at(1)->trigger();
    QCOMPARE(errors->topLevelItemCount(), 0);
    QCOMPARE(counts, QList<QVariantList>({{0, 0, 0}}));
    menu->close();
}

void OutputPanelTest::toolBarActsOnTheTabInFront()
{
    const Window window;
    window.panel->appendCompileOutput("编译了");
    window.panel->appendRunOutput("运行了");
    window.panel->addError("错了");
    window.panel->addSearchResult("a.vc", 1, "甲");
    window.panel->showCommandHelp("输出");
    QCOMPARE(window.panel->currentIndex(), int(OutputPanel::HelpTab));
    const QString help = window.view<CommandHelpBrowser>()->toPlainText();
    const QStringList copied{"编译了\n", "运行了\n", "错误\t错了\t\t\t", "a.vc\t1\t甲", help};
    for (int tab = 0; tab < window.panel->count(); ++tab) {
        window.panel->setCurrentIndex(tab);
        QTest::mouseClick(window.toolButton("复制"), Qt::LeftButton);
        QCOMPARE(clipboard(), copied.at(tab));
    }
    for (int tab = 0; tab < window.panel->count(); ++tab) {
        window.panel->setCurrentIndex(tab);
        QTest::mouseClick(window.toolButton("清除"), Qt::LeftButton);
    }
    QCOMPARE(window.output("编译输出")->toPlainText(), QString());
    QCOMPARE(window.output("运行输出")->toPlainText(), QString());
    QCOMPARE(window.view<ErrorListWidget>()->topLevelItemCount(), 0);
    QCOMPARE(window.view<SearchResultsWidget>()->topLevelItemCount(), 0);
    QVERIFY(window.view<CommandHelpBrowser>()->toPlainText() != help);
}

void OutputPanelTest::wrapsWords()
{
    const Window window;
    const auto modes = [&window] {
        return QList<int>{window.output("编译输出")->lineWrapMode(),
                          window.output("运行输出")->lineWrapMode()};
    };
    const int wrapped = QPlainTextEdit::WidgetWidth;
    const int cut = QPlainTextEdit::NoWrap;
    QCOMPARE(modes(), QList<int>({cut, cut}));
    QTest::mouseClick(window.toolButton("自动换行"), Qt::LeftButton);
    QCOMPARE(modes(), QList<int>({wrapped, wrapped}));
    QTest::mouseClick(window.toolButton("自动换行"), Qt::LeftButton);
    QCOMPARE(modes(), QList<int>({cut, cut}));
}

void OutputPanelTest::sendsInput()
{
    const Window window;
    auto *input = window.panel->widget(OutputPanel::RunTab)->findChild<QLineEdit *>();
    window.panel->showTab(OutputPanel::RunTab);
    QSignalSpy entered(window.panel, &OutputPanel::inputEntered);
    QVERIFY(!input->isEnabled());
    window.panel->setInputEnabled(true);
    window.panel->appendRunOutput("几岁？");
    QTest::keyClicks(input, "12");
    QTest::keyClick(input, Qt::Key_Return);
    QTest::keyClick(input, Qt::Key_Return);
    QCOMPARE(entered, QList<QVariantList>({{"12"}, {""}}));
    QTRY_COMPARE(window.output("运行输出")->toPlainText(), QString("几岁？\n12\n\n"));
}

void OutputPanelTest::isReachedByKeyboard()
{
    const Window window;
    QVERIFY(window.isActive);
    window.panel->showTab(OutputPanel::ErrorTab);
    window.panel->addError("错");
    window.panel->setFocus();
    QStringList reached;
    QWidget *start = QApplication::focusWidget();
    do {
        const QWidget *now = QApplication::focusWidget();
        const auto *button = qobject_cast<const QToolButton *>(now);
        reached << (button ? button->text() : now->accessibleName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != start && reached.size() < 20);
    for (const char *name : {"错误列表", "错误 1", "警告 0", "信息 0", "自动换行", "清除", "复制"})
        QVERIFY2(reached.contains(QString::fromUtf8(name)), name);
}

QTEST_MAIN(OutputPanelTest)
#include "output_panel_test.moc"
