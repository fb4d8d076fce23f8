// What the text tools make of texts, sound and broken ones.
#include "frontend/lexer.h"
#include "shell/json_tool.h"
#include "shell/string_tool.h"

#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

class TextToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void writesJson_data();
    void writesJson();
    void findsTheFaultInJson_data();
    void findsTheFaultInJson();
    void literalsReadBack_data();
    void literalsReadBack();
    void runsOperations_data();
    void runsOperations();
    void dialogShowsResultsAndErrors();
};

void TextToolsTest::writesJson_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("formatted");
    QTest::addColumn<QString>("compact");
    QTest::newRow("order and numbers stay")
        << "{\"b\":1.50,\"a\":[1,2]}"
        << "{\n    \"b\": 1.50,\n    \"a\": [\n        1,\n        2\n    ]\n}"
        << "{\"b\":1.50,\"a\":[1,2]}";
    QTest::newRow("empty ones") << " [ { } , [ ] ] "
                                << "[\n    {},\n    []\n]"
                                << "[{},[]]";
    QTest::newRow("signs in texts") << "[\"a, {b}: \\\"c\\\\\"]"
                                    << "[\n    \"a, {b}: \\\"c\\\\\"\n]"
                                    << "[\"a, {b}: \\\"c\\\\\"]";
}

void TextToolsTest::writesJson()
{
    QFETCH(QString, text);
    QTEST(JsonText::formatted(text).text, "formatted");
    QTEST(JsonText::compact(text).text, "compact");
    QTEST(JsonText::compact(JsonText::formatted(text).text).text, "compact");
}

void TextToolsTest::findsTheFaultInJson_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");
    QTest::newRow("none") << "{}"
                          << "";
    QTest::newRow("value") << "{\"甲\": 1,\n \"乙\": x}"
                           << "第 2 行第 7 列：这里不是有效的值";
    QTest::newRow("comma") << "[1 2]"
                           << "第 1 行第 4 列：两个值之间少了逗号";
    QTest::newRow("no value") << "[1,]"
                              << "第 1 行第 4 列：少了一个值";
    QTest::newRow("half a word") << "[tru]"
                                 << "第 1 行第 2 列：这里不是有效的值";
    QTest::newRow("open object") << "{\"a\":1"
                                 << "第 1 行第 7 列：内容在这里就结束了，可能少了“}”或“]”";
    QTest::newRow("open string") << "[\"a"
                                 << "第 1 行第 4 列：文字没有结束，少了引号";
    QTest::newRow("more behind") << "[]\n[]"
                                 << "第 2 行第 1 列：结尾之后还有多余的内容";
}

void TextToolsTest::findsTheFaultInJson()
{
    QFETCH(QString, text);
    QTEST(JsonText::problem(text), "problem");
    QTEST(JsonText::formatted(text).error, "problem");
}

void TextToolsTest::literalsReadBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("quotes") << "{\"甲\": \"乙\"}";
    QTest::newRow("lines") << "一\n\t二\\n三";
    QTest::newRow("backslashes") << "\\\\\"\\";
}

void TextToolsTest::literalsReadBack()
{
    QFETCH(QString, text);
    const QString literal = JsonText::toLiteral(text).text;
    const QList<Lexer::Token> tokens = Lexer(literal).tokenize();
    QCOMPARE(tokens.size(), 2);
    QCOMPARE(tokens.first().type, int(Lexer::StringLiteral));
    QVERIFY(!literal.contains('\n'));
    QCOMPARE(JsonText::fromLiteral(literal).text, text);
    QVERIFY(!JsonText::fromLiteral(literal + " 甲").error.isEmpty());
}

void TextToolsTest::runsOperations_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("expected"); // "!": an error
    const auto row = [](const char *name, const char *input, const char *expected) {
        QTest::addRow("%s: %s", name, input)
            << QString(name) << QString(input) << QString(expected);
    };
    row("转为大写", "ab甲", "AB甲");
    row("转为小写", "AB", "ab");
    row("首字母大写", "hello BIG world", "Hello Big World");
    row("反转", "a甲😀e\u0301", "e\u0301😀甲a");
    row("统计", "甲a1\n😀", "字符：5\n汉字：1\n字母：1\n数字：1\n行数：2\nUTF-8 字节：10");
    row("去掉行首行尾空白", " a \n\tb", "a\nb");
    row("去掉空行", "a\n \n\nb", "a\nb");
    row("排序", "b\na", "a\nb");
    row("去掉重复的行", "a\nb\na", "a\nb");
    row("URL 编码", "甲 &", "%E7%94%B2%20%26");
    row("URL 解码", "%E7%94%B2+%26", "甲+&");
    row("URL 解码", "%FF", "!");
    row("Base64 编码", "甲", "55Sy");
    row("Base64 解码", "55\nSy", "甲");
    row("Base64 解码", "5*", "!");
    row("Base64 解码", "//8=", "!");
    row("Unicode 转义", "a甲😀", "a\\u7532\\ud83d\\ude00");
    row("Unicode 还原", "a\\u7532\\ud83d\\ude00\\u12\\uzzzz", "a甲😀\\u12\\uzzzz");
    row("MD5", "abc", "900150983cd24fb0d6963f7d28e17f72");
    row("SHA-1", "abc", "a9993e364706816aba3e25717850c26c9cd0d89d");
    row("SHA-256", "abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    row("SHA-512", "",
        "cf83e1357eefb8bdf1542850d66d8007d620e4050b5715dc83f4a921d36ce9ce"
        "47d0d13c5d85f2b0ff8318d2877eec2f63b931bd47417a81a538327af927da3e");
}

void TextToolsTest::runsOperations()
{
    QFETCH(QString, name);
    QFETCH(QString, input);
    QFETCH(QString, expected);
    for (const TextOperation &operation : stringOperations()) {
        if (name != operation.name)
            continue;
        const TextResult result = operation.run(input);
        QCOMPARE(result.error.isEmpty() ? result.text : QString("!"), expected);
        return;
    }
    QFAIL("no such operation");
}

void TextToolsTest::dialogShowsResultsAndErrors()
{
    JsonTool tool;
    const auto texts = tool.findChildren<QPlainTextEdit *>();
    const auto buttons = tool.findChildren<QPushButton *>();
    const auto insert = std::find_if(buttons.begin(), buttons.end(), [](const QPushButton *button) {
        return button->text() == "插入到编辑器";
    });
    QSignalSpy inserted(&tool, &TextToolDialog::insertRequested);
    tool.setInput("[1");
    QVERIFY(!(*insert)->isEnabled());
    tool.setInput("[1]");
    QCOMPARE(texts.at(1)->toPlainText(), QString("[\n    1\n]"));
    tool.findChild<QListWidget *>()->setCurrentRow(2);
    QCOMPARE(texts.at(1)->toPlainText(), QString("[1]"));
    (*insert)->click();
    QCOMPARE(inserted.value(0).value(0).toString(), QString("[1]"));
}

QTEST_MAIN(TextToolsTest)
#include "text_tools_test.moc"
