// Completion in the editor: keys, the list, what taking an item does, the parameter hint.
#include "editor/auto_completer.h"
#include "editor/completion_popup.h"
#include "editor/popup_place.h"
#include "editor/syntax_highlighter.h"
#include "editor_keys.h"

#include <QLabel>
#include <QListView>
#include <QTemporaryDir>

class EditorCompletionTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void keys_data();
    void keys();
    void takingIsOneStepOfUndo();
    void takesByAClick();
    void closes_data();
    void closes();
    void closesWhenTheTextChangesOtherwise();
    void opensLate();
    void staysShutOnceClosed();
    void neverWhileComposing();
    void neverTakesTheFocus();
    void rowsAreFewAndDrawn();
    void hintFollowsTheCursor();
    void tellsTheCommandAtTheCursor();
    void offersNothingWithoutCompleter();
    void standsOnTheScreen_data();
    void standsOnTheScreen();

private:
    CompletionPopup *popup() const { return m_editor->findChild<CompletionPopup *>(); }
    QLabel *hint() const
    {
        return m_editor->findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    }
    void load(const char *marked) { EditorKeys::load(*m_editor, QString::fromUtf8(marked)); }
    void press(const char *keys) { EditorKeys::press(*m_editor, QString::fromUtf8(keys)); }
    QString marked() const { return EditorKeys::marked(*m_editor); }
    QString current() const
    {
        const CompletionItem *item = popup()->currentItem();
        return popup()->isVisible() && item ? item->display : QString();
    }

    QTemporaryDir m_folder;
    QScopedPointer<CompletionHistory> m_history;
    QScopedPointer<AutoCompleter> m_completer;
    QScopedPointer<CodeEditor> m_editor;
};

void EditorCompletionTest::init()
{
    m_editor.reset();
    m_completer.reset();
    QFile::remove(m_folder.filePath(QStringLiteral("history.json")));
    m_history.reset(new CompletionHistory(m_folder.filePath(QStringLiteral("history.json"))));
    m_completer.reset(new AutoCompleter(*m_history, CallbackRules(QString())));
    m_completer->setComponents({{QStringLiteral("树1"), QStringLiteral("TreeView")},
                                {QStringLiteral("主窗口"), QStringLiteral("Window")}});
    CodeSymbol task;
    task.name = QStringLiteral("下载");
    task.signature = QStringLiteral("下载()");
    CodeSymbol variable;
    variable.kind = SymbolKind::Global;
    variable.name = QStringLiteral("计数器");
    m_completer->setProjectSymbols({task, variable});
    m_editor.reset(new CodeEditor);
    new SyntaxHighlighter(m_editor->document());
    m_editor->setAutoCompleter(m_completer.data());
    m_editor->resize(500, 300);
    m_editor->show();
    m_editor->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_editor.data()));
    m_editor->setFocus();
}

void EditorCompletionTest::keys_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *before, const char *keys, const char *after) {
        QTest::addRow("%s", name) << QString::fromUtf8(before) << QString::fromUtf8(keys)
                                  << QString::fromUtf8(after);
    };
    row("function with parameters", "|", "qwb<Return>", "取文本(|)");
    row("Enter on the keypad", "|", "qwb<Enter>", "取文本(|)");
    row("function without", "|", "下<Return>", "下载()|");
    row("parentheses are there", "|(1)", "qwb<Return>", "取文本|(1)");
    row("wide parentheses are there", "|（1", "qwb<Return>", "取文本|(1");
    row("rest of the word", "|本(1)", "取文<Return>", "取文本|(1)");
    row("another word behind", "|甲", "jsq<Return>", "计数器|甲");
    row("the second row", "|", "qwb<Down><Up><Return>", "取文本(|)");
    row("round the ends", "|", "qwb<Up><Down><Return>", "取文本(|)");
    row("pages", "|", "qwb<PgDown><PgUp><Return>", "取文本(|)");
    row("constant", "|", "#编码_gb2<Return>", "#编码_GB2312|");
    row("a member", "|", "主窗口.jz<Return>", "主窗口.居中()|");
    row("a property", "|", "主窗口.bt<Return>", "主窗口.标题|");
    row("an event's function", "|", "函数 树1.yjdj<Return>",
        "函数 树1.右键单击(整数 节点, 整数 横坐标, 整数 纵坐标) {\n    |\n}");
    row("an event's name alone", "函数 树1.|() {", "xzgb<Return>", "函数 树1.选择改变|() {");
    row("a snippet", "    |", "rgfz<Down><Return>",
        "    如果 (条件一) {\n        |\n    } 否则如果 (条件二) {\n        \n    } 否则 {\n"
        "        \n    }");
    row("a function by name", "启动线程|", "(x<Return>", "启动线程(&下载|)");
    row("its sign is there", "启动线程|", "(&x<Return>", "启动线程(&下载|)");
    row("all of it stands there", "|", "jsq<Return><Return>", "计数器\n|");
    row("a word in full", "|", "计数器<Return>", "计数器\n|");
    row("closed by Escape", "|", "qwb<Esc><Return>", "qwb\n|");
    row("closed by Backtab", "    |", "qwb<Shift+Tab>", "    qwb|");
    row("Tab expands templates", "|", "否则<Tab>", "否则 {\n    \n}|");
    row("Tab indents", "|", "qwb<Tab>", "qwb    |");
    row("shorter again", "|", "qwbx<Backspace><Return>", "取文本(|)");
    row("nothing to take", "|", "vvvvv<Return>", "vvvvv\n|");
    row("in a string", "|", "\"qwb<Return>", "\"qwb\n|\"");
    row("a name being given", "|", "整数 qwb<Return>", "整数 qwb\n|");
    row("asked for", "|", "<Ctrl+Space>qwb<Return>", "取文本(|)");
    row("asked for behind a word", "qwb|", "<Ctrl+Space><Return>", "取文本(|)");
    row("by an input method", "|", "<compose:qu><commit:取文><Return>", "取文本(|)");
}

void EditorCompletionTest::keys()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    EditorKeys::load(*m_editor, before);
    EditorKeys::press(*m_editor, keys);
    QTEST(marked(), "after");
}

void EditorCompletionTest::takingIsOneStepOfUndo()
{
    load("    |");
    press("rgfz<Return>");
    QVERIFY(m_editor->toPlainText().contains(QLatin1Char('\n')));
    m_editor->undo();
    QCOMPARE(m_editor->toPlainText(), QStringLiteral("    rgfz"));
    m_editor->redo();
    QVERIFY(m_editor->toPlainText().contains(QLatin1Char('\n')));
}

void EditorCompletionTest::takesByAClick()
{
    load("|");
    press("qwb");
    const QModelIndex second = popup()->model()->index(1, 0);
    const QString name = popup()->items().at(1).text;
    QTest::mouseClick(popup()->viewport(), Qt::LeftButton, {},
                      popup()->visualRect(second).center());
    QVERIFY2(marked().startsWith(name), qPrintable(marked()));
    QVERIFY(!popup()->isVisible());
    QCOMPARE(m_history->rank(name), 1);
}

void EditorCompletionTest::closes_data()
{
    QTest::addColumn<QString>("keys");
    for (const char *keys : {"<Esc>", "<Shift+Tab>", "<Left><Left><Left>", " ", "<Home>", "\"",
                             "<Backspace><Backspace><Backspace>", "<compose:ni>"})
        QTest::addRow("%s", keys) << QString::fromLatin1(keys);
}

void EditorCompletionTest::closes()
{
    load("|");
    press("qwb");
    QCOMPARE(current(), QStringLiteral("取文本"));
    QFETCH(QString, keys);
    EditorKeys::press(*m_editor, keys);
    QVERIFY(!popup()->isVisible());
}

// As menus and tool bars do it.
void EditorCompletionTest::closesWhenTheTextChangesOtherwise()
{
    load("甲\n|");
    press("qwb");
    m_editor->undo();
    QTest::mouseClick(popup()->viewport(), Qt::LeftButton, {}, {20, 8});
    QCOMPARE(marked(), QStringLiteral("甲\n|"));
    QTRY_VERIFY(!popup()->isVisible());

    press("qwb<Ctrl+/>");
    QTRY_VERIFY(!popup()->isVisible());
    QVERIFY(m_editor->toPlainText().endsWith(QStringLiteral("qwb")));
}

void EditorCompletionTest::opensLate()
{
    QSignalSpy requested(m_editor.data(), &CodeEditor::requestAutoComplete);
    load("|");
    m_editor->insertPlainText(QStringLiteral("qwb")); // as pasting does
    QVERIFY(!popup()->isVisible());
    QTRY_COMPARE(current(), QStringLiteral("取文本"));
    QCOMPARE(requested.count(), 1);
    QCOMPARE(requested.at(0).at(0).toString(), QStringLiteral("qwb"));
}

void EditorCompletionTest::staysShutOnceClosed()
{
    load("|");
    press("qwb<Esc>");
    QTest::qWait(400); // longer than the delayed trigger takes
    QVERIFY(!popup()->isVisible());
    press("x");
    press("<Backspace>");
    QTRY_VERIFY(popup()->isVisible());
    press("<Return>");
    QTest::qWait(400);
    QVERIFY(!popup()->isVisible());
}

void EditorCompletionTest::neverWhileComposing()
{
    load("|");
    press("<compose:qwb>");
    m_editor->updateCompletions();
    m_editor->updateAutoComplete();
    QVERIFY(!popup()->isVisible());
    m_editor->insertCompletion(QStringLiteral("取文本"));
    QCOMPARE(m_editor->toPlainText(), QString());
    press("<commit:取文>");
    QCOMPARE(current(), QStringLiteral("取文本"));
}

void EditorCompletionTest::neverTakesTheFocus()
{
    load("|");
    press("qwb<Down><PgDown>");
    QVERIFY(popup()->isVisible());
    QVERIFY(m_editor->hasFocus());
    QCOMPARE(QApplication::activeWindow(), m_editor.data());
    m_editor->clearFocus();
    QVERIFY(!popup()->isVisible());
}

void EditorCompletionTest::rowsAreFewAndDrawn()
{
    load("|");
    press("qw");
    QVERIFY(popup()->items().size() > CompletionPopup::maxVisibleRows);
    const int rowHeight = popup()->visualRect(popup()->model()->index(0, 0)).height();
    QVERIFY(popup()->viewport()->height() <= CompletionPopup::maxVisibleRows * rowHeight);
    QVERIFY(popup()->viewport()->height() > (CompletionPopup::maxVisibleRows - 1) * rowHeight);
    // The tile of the kind is drawn in its colour.
    const QImage drawn = popup()->viewport()->grab().toImage();
    const QColor tile = SyntaxColors()[Setting::Color::CompletionCommand];
    QCOMPARE(drawn.pixelColor(6, rowHeight / 2), tile);
}

void EditorCompletionTest::hintFollowsTheCursor()
{
    load("|");
    press("弹窗(");
    QVERIFY(hint()->isVisible());
    QCOMPARE(hint()->text(), QStringLiteral("弹窗(<b>通用 内容</b>, [文本 标题], [整数 样式])"));
    press("1,");
    QCOMPARE(hint()->text(), QStringLiteral("弹窗(通用 内容, <b>[文本 标题]</b>, [整数 样式])"));
    press("<Left>");
    QCOMPARE(hint()->text(), QStringLiteral("弹窗(<b>通用 内容</b>, [文本 标题], [整数 样式])"));
    press("<Right>qwb");
    QVERIFY(popup()->isVisible());
    QVERIFY(!hint()->geometry().intersects(popup()->geometry()));
    press("<Esc>");
    QVERIFY(hint()->isVisible());
    press("<End>");
    QVERIFY(!hint()->isVisible());

    load("弹窗(1|");
    m_editor->updateParamHint();
    QVERIFY(hint()->isVisible());
    press(")");
    QVERIFY(!hint()->isVisible());

    load("弹窗(1|");
    m_editor->updateParamHint();
    press("<Esc>");
    QVERIFY(!hint()->isVisible());

    load("|");
    press("qwb<Return>");
    QCOMPARE(hint()->text(), QStringLiteral("取文本(<b>句柄 控件</b>)"));
    QVERIFY(hint()->isVisible());
}

void EditorCompletionTest::tellsTheCommandAtTheCursor()
{
    QSignalSpy moved(m_editor.data(), &CodeEditor::commandAtCursor);
    QSignalSpy asked(m_editor.data(), &CodeEditor::commandHelpRequested);
    load("甲 = 取|文本(1)\n弹窗(甲)");
    QTRY_COMPARE(moved.count(), 1);
    QCOMPARE(moved.takeFirst().at(0).toString(), QStringLiteral("取文本"));
    press("<F1>");
    QCOMPARE(asked.takeFirst().at(0).toString(), QStringLiteral("取文本"));
    press("<Down><Home>");
    QTRY_COMPARE(moved.count(), 1);
    QCOMPARE(moved.takeFirst().at(0).toString(), QStringLiteral("弹窗"));
    press("<End><F1>");
    QCOMPARE(asked.count(), 0);
    // With the list open, its current row is what help is wanted for.
    press("qwb<F1>");
    QCOMPARE(asked.takeFirst().at(0).toString(), QStringLiteral("取文本"));
}

void EditorCompletionTest::offersNothingWithoutCompleter()
{
    load("|");
    press("qwb");
    m_completer.reset();
    press("x<Return>y(");
    m_editor->updateCompletions();
    m_editor->updateParamHint();
    QVERIFY(!popup()->isVisible());
    m_editor->setAutoCompleter(nullptr);
    press("z<Ctrl+Space>");
    QVERIFY(!popup()->isVisible());
}

void EditorCompletionTest::standsOnTheScreen_data()
{
    QTest::addColumn<QRect>("caret");
    QTest::addColumn<QRect>("list"); // 200 x 100
    QTest::addColumn<QRect>("hint"); // 150 x 20
    const auto row = [](const char *name, QRect caret, QRect list, QRect hint) {
        QTest::addRow("%s", name) << caret << list << hint;
    };
    row("in the middle", {300, 300, 1, 16}, {300, 318, 200, 100}, {300, 278, 150, 20});
    row("at the bottom", {300, 580, 1, 16}, {300, 478, 200, 100}, {300, 456, 150, 20});
    row("at the top", {300, 5, 1, 16}, {300, 23, 200, 100}, {300, 125, 150, 20});
    row("at the right", {795, 300, 1, 16}, {600, 318, 200, 100}, {650, 278, 150, 20});
    row("left of the screen", {-50, 300, 1, 16}, {0, 318, 200, 100}, {0, 278, 150, 20});
}

void EditorCompletionTest::standsOnTheScreen()
{
    const QRect screen(0, 0, 800, 600);
    QFETCH(QRect, caret);
    QFETCH(QRect, list);
    QCOMPARE(PopupPlace::list(caret, {200, 100}, screen), list);
    QTEST(PopupPlace::hint(caret, {150, 20}, list, screen), "hint");
    const QRect help = PopupPlace::help(list, {290, 80}, screen);
    QVERIFY(screen.contains(help));
    QVERIFY(!help.intersects(list));
    QVERIFY(PopupPlace::help(list, {700, 80}, screen).isNull());
}

QTEST_MAIN(EditorCompletionTest)
#include "editor_completion_test.moc"
