// Which colours a line takes, by the rules alone and in a document.
#include "editor/highlight_rules.h"
#include "editor/syntax_highlighter.h"
#include "frontend/keywords.h"

#include <QPlainTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QtTest>

#include <algorithm>
#include <random>

using Setting::Color;

namespace {

// "keyword:如果 number:1": every span with its text.
QString described(const QString &text, const std::vector<HighlightSpan> &spans)
{
    QStringList parts;
    for (const HighlightSpan &span : spans) {
        parts << QString::fromLatin1(Setting::colorKey(span.color).button) + QLatin1Char(':') +
                     text.mid(span.start, span.length);
    }
    return parts.join(QLatin1Char(' '));
}

QString described(const HighlightRules &rules, const QString &text)
{
    return described(text, rules.highlighted(text, LineState::Code).spans);
}

} // namespace

class HighlightRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void line_data();
    void line();
    void comments_data();
    void comments();
    void hugeLineEnds_data();
    void hugeLineEnds();
    void wordsOfTheEditor();
    void reservedWords();
    void wordSetFindsWhatIndexOfFinds();
    void documentFollows();
    void largeDocumentHasTurns();
};

void HighlightRulesTest::line_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("spans");
    const auto row = [](const char *name, const char *text, const char *spans) {
        QTest::addRow("%s", name) << QString::fromUtf8(text) << QString::fromUtf8(spans);
    };
    row("empty", "", "");
    row("plain", "甲 = 乙 + 丙", "");

    row("string", R"(甲 = "如果 1 // x")", R"(string:"如果 1 // x")");
    row("escapes", R"(甲 = "a\"如果" + 1)", R"(string:"a\"如果" number:1)");
    row("single quotes", R"(甲 = '如果' + "it's" + 'b')",
        R"(string:'如果' string:"it's" string:'b')");
    row("match that begins at the end of a string", R"("a"算(1))", R"(string:"a" number:1)");
    row("open string", R"(甲 = "如果)", "keyword:如果");
    row("address in a string", R"(甲 = "http://a/*b" + 1)", R"(string:"http://a/*b" number:1)");

    row("line comment", "返回 // 如果 \"x\" 1", "keyword:返回 comment:// 如果 \"x\" 1");
    row("closed comments", "1 /* 如果 */ 2 /**/ 3",
        "number:1 comment:/* 如果 */ number:2 comment:/**/ number:3");
    row("slashes in a closed comment", "/* http://a */ 1", "comment:/* http://a */ number:1");
    row("comment signs in a string before a comment", R"("/*" 1 /* a */ 2)",
        R"(string:"/*" number:1 comment:/* a */ number:2)");

    row("numbers", "1 + 12.50 - a1 - 变量1 - 2x - 3.",
        "number:1 number:12.50 keyword:变量 number:3");

    row("keyword in a name", "如果值 = 1", "keyword:如果 number:1");
    row("keyword in a declared name", "整数 如果值", "keyword:整数 keyword:如果 variable:值");
    row("longer keyword", "否则如果 计次循环", "keyword:否则如果 keyword:计次循环");
    row("command over keyword", "计次循环 输出", "keyword:计次循环 function:输出");
    row("command in a name", "甲取文本长度乙", "function:取文本长度");

    row("function header", "函数 算(整数 甲, 文本 乙)",
        "keyword:函数 userFunction:算 keyword:整数 variable:甲 keyword:文本 variable:乙");
    row("header of an event", "子程序 钮1.点了 ()", "userFunction:钮1. memberEvent:点了");
    row("constants", "#换行符 + #确定取消 + #没有", "constant:#换行符 constant:#确定取消");
    row("array declaration", "二维数组 表[]", "keyword:二维数组 variable:表");
    row("long integer", "长整数 甲1, 乙", "keyword:长整数 variable:甲1");
    row("type without a name", "文本=1", "number:1");

    row("calls", "算一(算二(甲), 丙.算三 (1))",
        "userFunction:算一 userFunction:算二 memberEvent:算三 number:1");
    row("keyword before a bracket", "如果(甲)", "keyword:如果");
    QTest::addRow("half a character") << QStringLiteral("1 ") + QChar(0xd800) + QStringLiteral(" 2")
                                      << QStringLiteral("number:1 number:2");
    row("operators", "甲 ≠ 乙 ≤ 丙≥丁 == ≈", "operator:≠ operator:≤ operator:≥ operator:≈");
}

void HighlightRulesTest::line()
{
    QFETCH(QString, text);
    QTEST(described(HighlightRules(), text), "spans");
}

void HighlightRulesTest::comments_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("spans");
    QTest::addColumn<bool>("isOpen"); // behind the last line
    const auto row = [](const char *name, std::initializer_list<const char *> lines,
                        std::initializer_list<const char *> spans, bool isOpen) {
        const auto list = [](std::initializer_list<const char *> texts) {
            QStringList result;
            for (const char *text : texts)
                result << QString::fromUtf8(text);
            return result;
        };
        QTest::addRow("%s", name) << list(lines) << list(spans) << isOpen;
    };
    row("until its end", {"返回 /* 如果", "", "返回 \"x\" // y", "返回 */ 返回"},
        {"keyword:返回 comment:/* 如果", "", "comment:返回 \"x\" // y",
         "comment:返回 */ keyword:返回"},
        false);
    row("never ended", {"/*", "返回"}, {"comment:/*", "comment:返回"}, true);
    row("ended and begun", {"/* a", "b */ 1 /* c", "d"},
        {"comment:/* a", "comment:b */ number:1 comment:/* c", "comment:d"}, true);
    row("end sign is no beginning", {"/*", "*/* 1"}, {"comment:/*", "comment:*/ number:1"}, false);
    row("three characters", {"/*/", "1 */"}, {"comment:/*/", "comment:1 */"}, false);
    row("not in a string", {"\"/*\"", "1"}, {"string:\"/*\"", "number:1"}, false);
    row("not in a line comment", {"// /*", "1"}, {"comment:// /*", "number:1"}, false);
    row("behind a string", {"\"a/*\" /* \"b\"", "*/"},
        {"string:\"a/*\" comment:/* \"b\"", "comment:*/"}, false);
    row("quote before the end", {"/*", "a \"b */ \"c\""},
        {"comment:/*", "comment:a \"b */ string:\"c\""}, false);
}

void HighlightRulesTest::comments()
{
    QFETCH(QStringList, lines);
    QFETCH(bool, isOpen);
    const HighlightRules rules;
    LineState state = LineState::Code;
    QStringList actual;
    for (const QString &line : lines) {
        const HighlightedLine result = rules.highlighted(line, state);
        actual << described(line, result.spans);
        state = result.state;
    }
    QTEST(actual, "spans");
    QCOMPARE(state == LineState::InComment, isOpen);
}

void HighlightRulesTest::hugeLineEnds_data()
{
    QTest::addColumn<QString>("repeated");
    QTest::addColumn<int>("spans"); // of 300,000 repetitions
    const auto row = [](const char *text, int spans) {
        QTest::addRow("%s", text) << QString::fromUtf8(text) << spans;
    };
    row("\\\"", 0);
    row("'", 1);
    row("/* ", 1);
    row("1 ", 300000);
    row("算(", 300000);
    row("整数 ", 300000);
    row(".", 0);
    row(" ", 0);
    row("取", 0);
}

// A line of a file that is no source can be long, and colouring it must not take quadratic time.
void HighlightRulesTest::hugeLineEnds()
{
    QFETCH(QString, repeated);
    const HighlightedLine line =
        HighlightRules().highlighted(repeated.repeated(300000), LineState::Code);
    QTEST(int(line.spans.size()), "spans");
}

void HighlightRulesTest::wordsOfTheEditor()
{
    HighlightWords words;
    words.keywords = QStringList{QStringLiteral("跳到")};
    words.builtins = QStringList{QStringLiteral("画如果圆"), QString()};
    words.constants = QStringList{QStringLiteral("#圆周")};
    words.names = QStringList{QStringLiteral("钮1"), QStringLiteral("画板")};
    const HighlightRules rules(words);
    const QString text = QStringLiteral("跳到 画如果圆(钮1, 画板.宽, #圆周, 如果)");
    QCOMPARE(described(rules, text),
             QStringLiteral("keyword:跳到 function:画如果圆 component:钮1 component:画板 "
                            "memberEvent:宽 constant:#圆周 keyword:如果"));
}

// Every reserved word but types and words of one character is coloured without further ado, whole.
void HighlightRulesTest::reservedWords()
{
    QStringList uncoloured;
    for (const Keyword &keyword : keywords()) {
        const QString expected = QStringLiteral("keyword:") + keyword.word;
        if (described(HighlightRules(), keyword.word) != expected)
            uncoloured << keyword.word;
    }
    QCOMPARE(uncoloured.join(QLatin1Char(' ')),
             QStringLiteral("整数 长整数 小数 双浮点 单浮点 文本 逻辑 数组 二维数组 三维数组 "
                            "字节集 通用 空 类 且 或 非 拖放类"));
}

void HighlightRulesTest::wordSetFindsWhatIndexOfFinds()
{
    std::mt19937 random(7);
    const auto anyText = [&random](int size) {
        QString text;
        for (int i = 0; i < size; ++i)
            text += QChar(ushort(u'甲' + random() % 3));
        return text;
    };
    for (int round = 0; round < 300; ++round) {
        QStringList words{QString()};
        for (int i = 0; i < 8; ++i)
            words << anyText(1 + int(random() % 4));
        const QString text = anyText(int(random() % 40));
        QList<QPair<int, int>> expected;
        for (const QString &word : QSet<QString>(words.cbegin(), words.cend())) {
            int at = word.isEmpty() ? -1 : text.indexOf(word);
            for (; at >= 0; at = text.indexOf(word, at + word.size()))
                expected.append({at, word.size()});
        }
        QList<QPair<int, int>> actual;
        for (const WordSet::Hit &hit : WordSet(words).hits(text))
            actual.append({hit.start, hit.length});
        std::sort(expected.begin(), expected.end());
        std::sort(actual.begin(), actual.end());
        QCOMPARE(actual, expected);
    }
}

void HighlightRulesTest::documentFollows()
{
    QTextDocument document;
    document.setDocumentLayout(new QPlainTextDocumentLayout(&document));
    document.setPlainText(QStringLiteral("甲\n如果"));
    SyntaxHighlighter highlighter(&document);
    QTRY_VERIFY(highlighter.isComplete());
    const auto colorOf = [&document](int line) {
        const auto formats = document.findBlockByNumber(line).layout()->formats();
        return formats.size() == 1 ? formats.first().format.foreground().color() : QColor();
    };
    SyntaxColors colors;
    QCOMPARE(colorOf(0), QColor());
    QCOMPARE(colorOf(1), colors[Color::Keyword]);

    colors[Color::Keyword] = Qt::red;
    highlighter.setColors(colors);
    QTRY_VERIFY(highlighter.isComplete());
    QCOMPARE(colorOf(1), QColor(Qt::red));

    HighlightWords words;
    words.names = QStringList{QStringLiteral("甲")};
    highlighter.setWords(words);
    QTRY_VERIFY(highlighter.isComplete());
    QCOMPARE(colorOf(0), colors[Color::Component]);

    QTextCursor cursor(&document);
    cursor.insertText(QStringLiteral("/*"));
    QCOMPARE(colorOf(0), colors[Color::Comment]);
    QCOMPARE(colorOf(1), colors[Color::Comment]);
    cursor.deletePreviousChar();
    QCOMPARE(colorOf(1), QColor(Qt::red));
}

// What changes above the line whose turn it is must reach the lines below it.
void HighlightRulesTest::largeDocumentHasTurns()
{
    QTextDocument document;
    document.setDocumentLayout(new QPlainTextDocumentLayout(&document));
    document.setPlainText(QStringLiteral("如果 (甲 > 1) { 输出(\"乙\") }\n").repeated(5000));
    const SyntaxHighlighter highlighter(&document);
    const auto firstColor = [](const QTextBlock &block) {
        const auto formats = block.layout()->formats();
        return formats.isEmpty() ? QColor() : formats.first().format.foreground().color();
    };
    const QTextBlock last = document.lastBlock().previous();
    const SyntaxColors colors;
    QTRY_COMPARE(firstColor(document.firstBlock()), colors[Color::Keyword]);
    QCOMPARE(firstColor(last), QColor());
    QVERIFY(!highlighter.isComplete());
    QTextCursor cursor(&document);
    cursor.insertText(QStringLiteral("/*"));
    QCOMPARE(firstColor(document.firstBlock()), colors[Color::Comment]);
    QTRY_VERIFY(highlighter.isComplete());
    QCOMPARE(firstColor(last), colors[Color::Comment]);
}

QTEST_MAIN(HighlightRulesTest)
#include "highlight_rules_test.moc"
