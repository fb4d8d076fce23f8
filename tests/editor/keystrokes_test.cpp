// What keys and input methods do to the text, the cursor and the steps of undo.
#include "editor_keys.h"

class KeystrokesTest : public QObject
{
    Q_OBJECT

private slots:
    void pairs_data();
    void pairs() { run(); }
    void lines_data();
    void lines() { run(); }
    void tabs_data();
    void tabs() { run(); }
    void comments_data();
    void comments() { run(); }
    void punctuation_data();
    void punctuation() { run(); }
    void undoOfAnotherLineKeepsRedo();
    void anotherTextIsNotConverted();
    void readOnlyTextStays();

private:
    static void columns();
    static void row(const char *name, const char *before, const char *keys, const char *after,
                    int undoSteps);
    void run();
};

void KeystrokesTest::columns()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("undoSteps");
}

void KeystrokesTest::row(const char *name, const char *before, const char *keys, const char *after,
                         int undoSteps)
{
    QTest::addRow("%s", name) << QString::fromUtf8(before) << QString::fromUtf8(keys)
                              << QString::fromUtf8(after) << undoSteps;
}

void KeystrokesTest::run()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    CodeEditor editor;
    EditorKeys::load(editor, before);
    const QString first = editor.toPlainText();
    EditorKeys::press(editor, keys);
    QTEST(EditorKeys::marked(editor), "after");

    const QString last = editor.toPlainText();
    int undoSteps = 0;
    for (; editor.document()->isUndoAvailable(); ++undoSteps)
        editor.undo();
    QTEST(undoSteps, "undoSteps");
    QCOMPARE(editor.toPlainText(), first);
    while (editor.document()->isRedoAvailable())
        editor.redo();
    QCOMPARE(editor.toPlainText(), last);
}

void KeystrokesTest::pairs_data()
{
    columns();
    row("round", "输出|", "(", "输出(|)", 1);
    row("square", "甲|", "[", "甲[|]", 1);
    row("curly", "当 (真) |", "{", "当 (真) {|}", 1);
    row("quote", "甲 = |", "\"", "甲 = \"|\"", 1);
    row("no pair in a string", "甲 = \"乙|\"", "([{", "甲 = \"乙([{|\"", 1);
    row("a pair behind a string", "甲(\"乙\"|)", "(", "甲(\"乙\"(|))", 1);
    row("an escaped quote does not end a string", "甲 = \"乙\\\"|\"", "(", "甲 = \"乙\\\"(|\"", 1);
    row("a quote in a string is one quote", "甲 = \"乙| 丙", "\"", "甲 = \"乙\"| 丙", 1);
    row("a quote ends its string by a step", "甲 = \"乙|\"", "\"", "甲 = \"乙\"|", 0);
    row("an escaped quote is no end", "甲 = \"乙\\|\"", "\"", "甲 = \"乙\\\"|\"", 1);
    row("a quote in front of a string begins another", "|\"乙\"", "\"", "\"|\"\"乙\"", 1);
    row("the string above does not count", "甲 = \"\n|", "(", "甲 = \"\n(|)", 1);
    row("steps over", "f([{|}])", "}])", "f([{}])|", 0);
    row("closes where nothing closes", "f(1|", ")", "f(1)|", 1);
    row("no step in a string", "甲 = \"|)\"", ")", "甲 = \")|)\"", 1);
    row("the pair replaces a selection", "^甲 + 乙| * 2", "(", "(|) * 2", 1);
    row("a pair and what goes into it", "|", "f(1)", "f(1)|", 3);
}

void KeystrokesTest::lines_data()
{
    columns();
    row("keeps the depth", "    甲 = 1|", "<Return>", "    甲 = 1\n    |", 1);
    row("deeper behind a brace", "  当 (真) {  |", "<Return>", "  当 (真) {  \n      |", 1);
    row("between braces", "    当 (真) {|}", "<Return>", "    当 (真) {\n        |\n    }", 1);
    row("in front of a closing brace", "  {甲 = 1|}", "<Return>", "  {甲 = 1\n  |\n  }", 1);
    row("a closing brace that stands alone", "    |}", "<Return>", "    \n    |}", 1);
    row("a brace typed and opened", "|", "{<Return>甲", "{\n    甲|\n}", 3);
    row("splits a line", "    甲 = 1| + 2", "<Enter>", "    甲 = 1\n    |+ 2", 1);
    row("in front of a line", "|    甲", "<Return>", "\n    |甲", 1);
    row("a tab counts as its width", "\t甲|", "<Return>", "\t甲\n    |", 1);
    row("replaces a selection", "  甲^乙\n丙|丁", "<Return>", "  甲\n  |丁", 1);
    row("shift makes no other kind of line", "甲|", "<Shift+Return>", "甲\n|", 1);
    row("duplicates a line", "甲|1\n乙", "<Ctrl+Shift+D>", "甲1\n甲|1\n乙", 1);
    row("duplicates the last line", "甲\n乙|", "<Ctrl+Shift+D>", "甲\n乙\n乙|", 1);
    row("duplicates a selection", "甲^乙|丙", "<Ctrl+Shift+D>", "甲乙^乙|丙", 1);
    row("duplicates lines", "^甲\n|乙", "<Ctrl+Shift+D>", "甲\n^甲\n|乙", 1);
}

void KeystrokesTest::tabs_data()
{
    columns();
    row("one unit", "甲|", "<Tab>", "甲    |", 1);
    row("a template", "    如果|", "<Tab>",
        "    如果 (条件) {\n        \n    } 否则 {\n        \n    }|", 1);
    row("a longer word", "甲如果|", "<Tab>", "甲如果    |", 1);
    row("a word that goes on", "如果|甲", "<Tab>", "如果    |甲", 1);
    row("a word behind others", "} 否则|", "<Tab>", "} 否则 {\n    \n}|", 1);
    row("a word in a string", "甲 = \"如果|\"", "<Tab>", "甲 = \"如果    |\"", 1);
    row("three levels", "  选择|", "<Tab>",
        "  选择 (变量) {\n      \"值1\": {\n          // 代码\n      }\n"
        "      \"#\": {\n          // 默认代码\n      }\n  }|",
        1);
    row("lines", "甲^1\n乙\n丙|1", "<Tab>", "^    甲1\n    乙\n    丙1|", 1);
    row("not the line behind the selection", "^甲\n|乙", "<Tab>", "^    甲|\n乙", 1);
    row("one unit back", "^      甲\n  乙\n丙|", "<Shift+Tab>", "^  甲\n乙\n丙|", 1);
    row("back from a tab", "  \t甲|", "<Shift+Tab>", "  甲|", 1);
    row("nothing to take", "甲|", "<Shift+Backtab>", "甲|", 0);
    row("lines in and out", "^甲\n乙|", "<Tab><Tab><Shift+Tab>", "^    甲\n    乙|", 3);
}

void KeystrokesTest::comments_data()
{
    columns();
    row("a line", "    甲| = 1", "<Ctrl+/>", "    // 甲| = 1", 1);
    row("and back", "    // 甲| = 1", "<Ctrl+/>", "    甲| = 1", 1);
    row("without a blank", "//甲|", "<Ctrl+/>", "甲|", 1);
    row("an empty line", "|", "<Ctrl+/>", "// |", 1);
    row("mixed lines", "^  // 甲\n\n    乙|", "<Ctrl+/>", "^  // // 甲\n\n    // 乙|", 1);
    row("mixed lines and back", "^  // 甲\n\n    乙|", "<Ctrl+/><Ctrl+/>", "^  // 甲\n\n    乙|",
        2);
    row("a selection", "甲 ^乙| 丙", "<Ctrl+Shift+/>", "甲 /* ^乙| */ 丙", 1);
    row("a selection and back", "甲 ^乙\n丁| 丙", "<Ctrl+Shift+/><Ctrl+Shift+/>", "甲 ^乙\n丁| 丙",
        2);
    row("a selected comment", "^/*甲*/|", "<Ctrl+Shift+/>", "^甲|", 1);
    row("two comments are not one", "^/* 甲 */ 乙 /* 丙 */|", "<Ctrl+Shift+/>",
        "/* ^/* 甲 */ 乙 /* 丙 */| */", 1);
    row("what the line holds", "  甲|乙", "<Ctrl+Shift+?>", "  /* 甲|乙 */", 1);
    row("an empty comment", "|", "<Ctrl+Shift+/><Ctrl+Shift+/>", "|", 2);
}

void KeystrokesTest::punctuation_data()
{
    columns();
    row("not as long as it stands last", "输出|", "（", "输出（|", 1);
    row("when typing goes on", "输出|", "（甲", "输出(甲|", 2);
    row("when the line is left", "甲（|\n乙", "，<Down>", "甲(,\n乙|", 2);
    row("not in a string", "甲 = |", "\"，乙\"", "甲 = \"，乙\"|", 2);
    row("Chinese quotes when both are there", "输出|", "（“你好”）;", "输出(\"你好\");|", 2);
    row("with Return in one step", "甲；|", "<Return>", "甲;\n|", 1);
    row("a line that was only passed", "甲（\n|乙", "<Up><Down>", "甲（\n|乙", 0);
    row("nothing while composing", "甲（|", "<compose:ni>", "甲（|", 0);
    row("after composing", "甲（|", "<compose:ni><commit:你>", "甲(你|", 1);
    row("a sign that is committed", "甲|", "<commit:，>", "甲，|", 1);
    row("a committed bracket comes in a pair", "甲|", "<commit:(>", "甲(|)", 1);
    row("a Chinese bracket does not", "甲|", "<commit:（><commit:乙>", "甲(乙|", 2);
    row("a word that is given up", "甲（|", "<compose:ni><compose:>", "甲（|", 0);
}

void KeystrokesTest::undoOfAnotherLineKeepsRedo()
{
    CodeEditor editor;
    EditorKeys::load(editor, QStringLiteral("|\n乙（"));
    EditorKeys::press(editor, QStringLiteral("甲<Down><End>，<Ctrl+Z><Ctrl+Z>"));
    QCOMPARE(editor.toPlainText(), QStringLiteral("\n乙（"));
    editor.redo();
    QCOMPARE(editor.toPlainText(), QStringLiteral("甲\n乙（"));
}

void KeystrokesTest::anotherTextIsNotConverted()
{
    CodeEditor editor;
    EditorKeys::load(editor, QStringLiteral("甲|"));
    EditorKeys::press(editor, QStringLiteral("，"));
    EditorKeys::load(editor, QStringLiteral("|（\n乙"));
    EditorKeys::press(editor, QStringLiteral("<Down>"));
    QCOMPARE(editor.toPlainText(), QStringLiteral("（\n乙"));
}

void KeystrokesTest::readOnlyTextStays()
{
    CodeEditor editor;
    EditorKeys::load(editor, QStringLiteral("  ^如果（|"));
    editor.setReadOnly(true);
    EditorKeys::press(editor,
                      QStringLiteral("(<Tab><Shift+Tab><Return><Ctrl+/><Ctrl+Shift+D><commit:(>"));
    editor.convertChinesePunctuation();
    QCOMPARE(editor.toPlainText(), QStringLiteral("  如果（"));
}

QTEST_MAIN(KeystrokesTest)
#include "keystrokes_test.moc"
