// Token kinds, texts and places.
#include "frontend/keywords.h"
#include "frontend/lexer.h"

#include <QtTest>

class LexerTest : public QObject
{
    Q_OBJECT

private slots:
    void keywordTable();
    void tokens_data();
    void tokens();
    void places();
    void resumes();
};

// "43 甲, 49 =": kind and text of each token but the last, which must be the end of the file.
static QString described(const QList<Lexer::Token> &tokens)
{
    QStringList words;
    for (const Lexer::Token &token : tokens.mid(0, tokens.size() - 1))
        words += QStringLiteral("%1 %2").arg(QString::number(token.type), token.text).trimmed();
    return words.join(QLatin1String(", "));
}

void LexerTest::keywordTable()
{
    QCOMPARE(keywords().size(), size_t(41));
    for (const Keyword &keyword : keywords()) {
        const QString word = keyword.word;
        const QString kind = QString::number(keyword.kind);
        QCOMPARE(described(Lexer(word).tokenize()), kind + QLatin1Char(' ') + word);
        QCOMPARE(described(Lexer(word + QStringLiteral("（")).tokenize()),
                 kind + QLatin1Char(' ') + word + QStringLiteral(", 63 ("));
        QCOMPARE(described(Lexer(word + QLatin1Char('a')).tokenize()),
                 QStringLiteral("43 ") + word + QLatin1Char('a'));
    }
}

void LexerTest::tokens_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *source, const char *expected) {
        QTest::addRow("%s", name) << QString::fromUtf8(source) << QString::fromUtf8(expected);
    };
    row("empty", "", "");
    row("else if", "否则如果( 否则 如果( 否则如果x",
        "15 否则如果, 63 (, 14 否则, 13 如果, 63 (, 43 否则如果x");
    row("keyword before delimiter", "真; 真) 真≥ 真＝ 真\n真",
        "32 真, 70 ;, 32 真, 64 ), 32 真, 55 >=, 32 真, 49 =, 32 真, 32 真");
    row("no keyword before other signs", "真? 真% 真# 真\" 真× 真［ 真！ 真。",
        "43 真, 73 ?, 43 真, 48 %, 43 真, 43 #, 43 真, 42  真× 真［ 真！ 真。");
    row("no keyword before × ÷ and ［", "真×真÷真［真！",
        "43 真, 46 *, 43 真, 47 /, 43 真, 67 [, 43 真, 37 !");
    row("words that hold keywords", "类型 全局 属性值 true if 拖放类 长整数",
        "43 类型, 43 全局, 43 属性值, 43 true, 43 if, 43 拖放类, 2 长整数");
    row("wide name characters", "“甲”、？％＋＜ a｜｜b _1　乙",
        "43 “甲”、？％＋＜, 43 a｜｜b, 43 _1　乙");
    row("hash words", "# #甲1( #", "43 #, 43 #甲1, 63 (, 43 #");
    row("wide condition", "如果（a＝＝1）｛＝=！=",
        "13 如果, 63 (, 43 a, 49 =, 49 =, 40 1, 64 ), 65 {, 50 ==, 51 !=");
    row("operators", "+ ++ += - -- -= * *= / /= % = == ! != < <= > >= & && ||",
        "44 +, 60 ++, 56 +=, 45 -, 61 --, 57 -=, 46 *, 58 *=, 47 /, 59 /=, 48 %, 49 =, 50 ==, "
        "37 !, 51 !=, 52 <, 54 <=, 53 >, 55 >=, 62 &, 35 &&, 36 ||");
    row("runs of operators", "+++ --= %= ->", "60 ++, 44 +, 61 --, 49 =, 48 %, 49 =, 45 -, 53 >");
    row("wide operators", "≠ ≤ ≥ ≈ × ÷ ！ ＝ （ ） ｛ ｝ 【 】 ［ ］ ， ； ：",
        "51 !=, 54 <=, 55 >=, 50 ==, 46 *, 47 /, 37 !, 49 =, 63 (, 64 ), 65 {, 66 }, 67 [, 68 ], "
        "67 [, 68 ], 69 ,, 70 ;, 71 :");
    row("errors", "a|b @ $ 。。甲。", "43 a, 78 |, 43 b, 78 @, 78 $, 78 。, 78 。, 43 甲, 78 。");
    row("integers", "0 007 000 12 1e5", "40 0, 40 7, 40 0, 40 12, 40 1, 43 e5");
    row("decimals", "1.5 00.5 1. 1.长度 1.2.3 .5",
        "41 1.5, 41 00.5, 41 1., 41 1., 43 长度, 41 1.2, 72 ., 40 3, 72 ., 40 5");
    row("digits of other scripts", "１２ ٣甲", "40 １２, 40 ٣, 43 甲");
    row("hexadecimal", "0xFF 0X1fg 0x 0xFFFFFFFFFFFFFFFFF 0x7FFFFFFFFFFFFFFF",
        "40 255, 40 31, 43 g, 40 0, 40 0, 40 9223372036854775807");
    row("strings", R"("甲'乙" '丙"丁' "a\tb\\c\"d\'e\r\0")",
        "42 甲'乙, 42 丙\"丁, 42 a\tb\\c\"d'er0");
    row("string over lines", "\"一\n二\" 三", "42 一\n二, 43 三");
    row("open string", "\"甲 乙", "42 甲 乙");
    row("raw strings", R"vc(r"--(a)-"b)--" R"(\n)" r"()")vc", "42 a)-\"b, 42 \\n, 42");
    row("raw string after blanks", "r \t\n \"(甲)\" 乙", "42 甲, 43 乙");
    row("open raw string", "r\"-(甲)\" 乙", "42 甲)\" 乙");
    row("32 dashes", "r\"--------------------------------(x)--------------------------------\"",
        "42 x");
    row("33 dashes", "r\"---------------------------------(x", "78 r\", 63 (, 43 x");
    row("no raw string", "r \"甲\" r\"-甲\" rest r", "43 r, 42 甲, 43 r, 42 -甲, 43 rest, 43 r");
    row("line comments", "甲 // 乙\n丙 ／／ 丁\n/／ 戊\n己", "43 甲, 43 丙, 43 己");
    row("wide slash in a name", "甲／／乙 ／丙", "43 甲／／乙, 43 ／丙");
    row("block comments", "/* a /* b */ c */ d /*/ e */ */ f /* g", "43 d, 46 *, 47 /, 43 f");
    QTest::addRow("NUL ends a block comment")
        << QStringLiteral("/* a") + QChar() + QStringLiteral("b")
        << QStringLiteral("78 ") + QChar() + QStringLiteral(", 43 b");
    QTest::addRow("backslash at the end")
        << QStringLiteral("\"a\\") << QStringLiteral("42 a") + QChar();
}

void LexerTest::tokens()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);
    const QList<Lexer::Token> tokens = Lexer(source).tokenize();
    QCOMPARE(int(tokens.last().type), int(Lexer::EndOfFile));
    QCOMPARE(tokens.last().text, QString());
    QCOMPARE(described(tokens), expected);
}

void LexerTest::places()
{
    const QString source = QStringLiteral("\t甲\r\n/* \n */乙 \"x\ny\"丙 r\"(\n\n)\"丁\n😀戊 ");
    QStringList places;
    for (const Lexer::Token &token : Lexer(source).tokenize())
        places += QStringLiteral("%1:%2").arg(token.line).arg(token.column);
    QCOMPARE(places.join(QLatin1Char(' ')), QStringLiteral("1:2 3:4 3:6 4:3 4:5 6:3 7:1 7:5"));
    const Lexer::Token end = Lexer(QString()).nextToken();
    QCOMPARE(end.line, 1);
    QCOMPARE(end.column, 1);
}

// The single steps give line ends too, and the end again and again; a new source starts afresh.
void LexerTest::resumes()
{
    Lexer lexer(QStringLiteral("甲\n乙"));
    const int kinds[] = {Lexer::Identifier, Lexer::Newline, Lexer::Identifier, Lexer::EndOfFile,
                         Lexer::EndOfFile};
    for (const int kind : kinds)
        QCOMPARE(lexer.nextToken().type, kind);
    lexer.setSource(QStringLiteral("丙"));
    const Lexer::Token token = lexer.nextToken();
    QCOMPARE(token.text, QStringLiteral("丙"));
    QCOMPARE(token.line, 1);
    QCOMPARE(token.column, 1);
}

QTEST_GUILESS_MAIN(LexerTest)
#include "lexer_test.moc"
