// What stands around the text of the code editor: marks of lines, margin, brackets, templates.
#include "editor/bracket_match.h"
#include "editor/code_templates.h"
#include "editor/line_number_area.h"
#include "editor_keys.h"

#include <QMenu>
#include <QTextBlock>
#include <QWheelEvent>

class CodeEditorTest : public QObject
{
    Q_OBJECT

private slots:
    void breakpointsFollowTheirText_data();
    void breakpointsFollowTheirText();
    void leftClickInTheMarginTogglesABreakpoint();
    void bookmarksAreVisitedInTurn();
    void matchesBrackets_data();
    void matchesBrackets();
    void everyTemplateIsWellFormed();
    void wrapsASelection_data();
    void wrapsASelection();
    void caretCountsTheMarginIn();
    void zoomsWithinItsRange();
    void menuFollowsTheSelection();
    void pictureLiesUnderTheText();
};

void CodeEditorTest::breakpointsFollowTheirText_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("lines"); // with a breakpoint; it was set on line 2
    const auto row = [](const char *name, const char *before, const char *keys, const char *lines) {
        QTest::addRow("%s", name) << QString::fromUtf8(before) << QString::fromUtf8(keys)
                                  << QString::fromUtf8(lines);
    };
    row("a line above", "甲|\n乙\n丙", "<Return>", "3");
    row("a line at its start", "甲\n|乙\n丙", "<Return>", "3");
    row("between blanks and text", "甲\n  |  乙\n丙", "<Return>", "3");
    row("a line at its end", "甲\n乙|\n丙", "<Return>", "2");
    row("the line above goes", "^甲\n|乙\n丙", "<Del>", "1");
    row("the line itself goes", "甲\n^乙\n|丙", "<Del>", "");
    row("a copy has none", "甲\n乙|\n丙", "<Ctrl+Shift+D>", "2");
    row("indented", "^甲\n乙\n丙|", "<Tab>", "2");
    row("commented", "^甲\n乙\n丙|", "<Ctrl+Shift+/>", "2");
    row("punctuation converted", "甲\n乙（|\n丙", "丁", "2");
    row("a line below", "甲\n乙\n丙|", "<Return>", "2");
}

void CodeEditorTest::breakpointsFollowTheirText()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    CodeEditor editor;
    EditorKeys::load(editor, before);
    editor.setBreakpoints({2});
    EditorKeys::press(editor, keys);
    QStringList lines;
    for (const int line : editor.breakpoints())
        lines.append(QString::number(line));
    QTEST(lines.join(QLatin1Char(' ')), "lines");
}

void CodeEditorTest::leftClickInTheMarginTogglesABreakpoint()
{
    CodeEditor editor;
    editor.setPlainText(QStringLiteral("one\n二二\nthree"));
    editor.resize(400, 300);
    editor.show();
    QSignalSpy toggled(&editor, &CodeEditor::breakpointToggled);
    auto *margin = editor.findChild<LineNumberArea *>();
    QTextCursor second(editor.document()->findBlockByNumber(1));
    const QPoint place(3, editor.cursorRect(second).center().y());

    QTest::mouseClick(margin, Qt::RightButton, {}, place);
    QCOMPARE(toggled.count(), 0);
    QTest::mouseClick(margin, Qt::LeftButton, {}, place);
    QCOMPARE(toggled.takeFirst(), (QVariantList{2, true}));
    QTest::mouseClick(margin, Qt::LeftButton, {}, place);
    QCOMPARE(toggled.takeFirst(), (QVariantList{2, false}));
    QTest::mouseClick(margin, Qt::LeftButton, {}, QPoint(3, margin->height() - 2));
    QVERIFY(toggled.isEmpty());
    QVERIFY(editor.breakpoints().isEmpty());
}

void CodeEditorTest::bookmarksAreVisitedInTurn()
{
    CodeEditor editor;
    EditorKeys::load(editor, QStringLiteral("1\n|2\n3\n4\n5"));
    EditorKeys::press(editor, QStringLiteral("<Ctrl+F2><Down><Down><Ctrl+F2>"));
    QCOMPARE(editor.bookmarks(), (QSet<int>{2, 4}));
    QStringList visited;
    for (const char *key : {"<F2>", "<F2>", "<Shift+F2>", "<Shift+F2>", "<Shift+F2>"}) {
        EditorKeys::press(editor, QLatin1String(key));
        visited.append(QString::number(editor.textCursor().blockNumber() + 1));
    }
    QCOMPARE(visited.join(QLatin1Char(' ')), QStringLiteral("2 4 2 4 2"));
    EditorKeys::press(editor, QStringLiteral("<Ctrl+F2>"));
    QCOMPARE(editor.bookmarks(), QSet<int>{4});
}

void CodeEditorTest::matchesBrackets_data()
{
    QTest::addColumn<QString>("text"); // with '|' at the cursor
    QTest::addColumn<QString>("pair");
    const auto row = [](const char *name, const char *text, const char *pair) {
        QTest::addRow("%s", name) << QString::fromUtf8(text) << QString::fromUtf8(pair);
    };
    row("behind the closing one", "f(a[1])|", "1 6");
    row("in front of the opening one", "f|(a[1])", "1 6");
    row("the inner pair", "f(a[1|])", "3 5");
    row("over lines", "{|\n  (\")}\") // }\n}", "0 16");
    row("alone", "f(|", "");
    row("of another kind", "(]|", "");
    row("in a string", "\"(|)\"", "");
    row("no bracket here", "f(a|b)", "");
}

void CodeEditorTest::matchesBrackets()
{
    QFETCH(QString, text);
    const int cursor = text.indexOf(QLatin1Char('|'));
    const auto pair = matchedBrackets(text.remove(cursor, 1), cursor);
    QTEST(pair ? QStringLiteral("%1 %2").arg(pair->first).arg(pair->second) : QString(), "pair");
}

void CodeEditorTest::everyTemplateIsWellFormed()
{
    const Indentation indentation;
    QCOMPARE(CodeTemplates::words().size(), 25);
    for (const QString &word : CodeTemplates::words()) {
        const QString text = *CodeTemplates::expanded(word, 4, indentation);
        QVERIFY2(!text.contains(QLatin1Char('%')), qPrintable(text));
        QCOMPARE(text.count(QLatin1Char('{')), text.count(QLatin1Char('}')));
        for (const QString &line : text.split(QLatin1Char('\n')).mid(1))
            QVERIFY2(indentation.depth(line) >= 4, qPrintable(text));
    }
    QVERIFY(!CodeTemplates::expanded(QStringLiteral("甲"), 0, indentation));
}

void CodeEditorTest::wrapsASelection_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("word");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *before, const char *word, const char *after) {
        QTest::addRow("%s", name) << QString::fromUtf8(before) << QString::fromUtf8(word)
                                  << QString::fromUtf8(after);
    };
    row("two lines", "  甲^\n\n    乙|", "循环", "  循环 (10, i) {\n      甲\n\n        乙\n  }|");
    row("the first of two bodies", "^甲|", "如果", "如果 () {\n    甲\n} 否则 {\n    \n}|");
    row("a body at the third level", "^甲|", "选择",
        "选择 () {\n    \"值1\": {\n        甲\n    }\n    \"#\": {\n        \n    }\n}|");
    row("a body that holds something", "^甲|", "计次循环",
        "整数 计数 = 0\n循环(10, 计数) {\n    甲\n    输出(计数)\n}|");
    row("no statement", "^甲|", "整数", "^甲|");
}

void CodeEditorTest::wrapsASelection()
{
    QFETCH(QString, before);
    QFETCH(QString, word);
    CodeEditor editor;
    EditorKeys::load(editor, before);
    editor.wrapSelection(word);
    QTEST(EditorKeys::marked(editor), "after");
    editor.undo();
    QCOMPARE(editor.toPlainText(), QString(before).remove(QRegularExpression("[|^]")));
}

void CodeEditorTest::caretCountsTheMarginIn()
{
    CodeEditor editor;
    editor.resize(400, 300);
    EditorKeys::load(editor, QStringLiteral("甲\n乙|"));
    const QRectF caret = editor.inputMethodQuery(Qt::ImCursorRectangle).toRectF();
    const QPointF shown = editor.cursorRect().topLeft() + editor.viewport()->pos();
    QVERIFY2((caret.topLeft() - shown).manhattanLength() < 3, "the caret is elsewhere");
    QVERIFY(caret.left() > editor.lineNumberAreaWidth());
}

void CodeEditorTest::zoomsWithinItsRange()
{
    CodeEditor editor;
    const auto turn = [&](int delta) {
        QWheelEvent event({20, 20}, {20, 20}, {}, {0, delta}, Qt::NoButton, Qt::ControlModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(editor.viewport(), &event);
    };
    const int size = editor.font().pointSize();
    const int width = editor.lineNumberAreaWidth();
    turn(120);
    QCOMPARE(editor.font().pointSize(), size + 1);
    editor.zoomBy(100);
    QCOMPARE(editor.font().pointSize(), 72);
    QVERIFY(editor.lineNumberAreaWidth() > width);
    turn(-120);
    QCOMPARE(editor.font().pointSize(), 71);
    EditorKeys::press(editor, QStringLiteral("<Ctrl+0>"));
    QCOMPARE(editor.font().pointSize(), size);
}

void CodeEditorTest::menuFollowsTheSelection()
{
    CodeEditor editor;
    const auto enabled = [&] {
        const std::unique_ptr<QMenu> menu(editor.createContextMenu());
        QStringList letters;
        for (const QAction *action : menu->actions()) {
            if (action->isEnabled() && !action->isSeparator())
                letters.append(action->text().section(QLatin1Char('&'), 1).left(1));
        }
        letters.removeOne(QStringLiteral("P")); // as the clipboard of the machine has it
        return letters.join(QString());
    };
    EditorKeys::load(editor, QStringLiteral("甲|"));
    QCOMPARE(enabled(), QStringLiteral("AFH/BM"));
    EditorKeys::load(editor, QStringLiteral("^甲|"));
    QCOMPARE(enabled(), QStringLiteral("TCDAFH/BMW"));
    EditorKeys::press(editor, QStringLiteral("乙"));
    QCOMPARE(enabled(), QStringLiteral("UAFH/BM"));
    editor.setReadOnly(true);
    QCOMPARE(enabled(), QStringLiteral("UAFM"));
}

void CodeEditorTest::pictureLiesUnderTheText()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("red.png"));
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(path));

    CodeEditor editor;
    editor.resize(400, 300);
    const auto shown = [&] { return editor.viewport()->grab().toImage().pixelColor(200, 200); };
    const QColor plain = shown();
    editor.setBackgroundImage(path, 100);
    QCOMPARE(shown(), QColor(Qt::red));
    editor.setBackgroundImage(path, 50);
    QVERIFY(shown().red() > plain.red() && shown().red() < 255);
    editor.setBackgroundImage(QString(), 100);
    QCOMPARE(shown(), plain);
}

QTEST_MAIN(CodeEditorTest)
#include "code_editor_test.moc"
