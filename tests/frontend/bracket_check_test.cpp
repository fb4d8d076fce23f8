// Where a bracket is missing or too much, told from the brackets and the indentation.
#include "frontend/bracket_check.h"
#include "frontend/marked_source.h"

#include <QtTest>

class BracketCheckTest : public QObject
{
    Q_OBJECT

private slots:
    void findsOneMistake_data();
    void findsOneMistake();
    void findsEveryMistake_data();
    void findsEveryMistake();
    void keepsSilent_data();
    void keepsSilent();
    void realPrograms_data();
    void realPrograms();
    void hostileSources_data();
    void hostileSources();
};

namespace {

QList<SourceMessage> check(const QString &source)
{
    return checkBrackets(Lexer(source).tokenize());
}

QStringList textsOf(const QList<SourceMessage> &messages)
{
    QStringList texts;
    for (const SourceMessage &message : messages)
        texts << message.text;
    return texts;
}

QString readSource(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

void BracketCheckTest::findsOneMistake_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("text"); // without the line ahead
    const auto row = [](const char *name, const char *marked, const char *text) {
        QTest::addRow("%s", name) << QString::fromUtf8(marked) << QString::fromUtf8(text);
    };
    row("call in a line", "函数 甲() {\n    输出¦(加(1, 2)\n    输出(3)\n}\n",
        "缺少右括号 ')'，第 2 行的 '(' 没有配对");
    row("call at the end of a block", "函数 甲() {\n    输出¦(1\n}\n",
        "缺少右括号 ')'，第 2 行的 '(' 没有配对");
    row("call over lines", "函数 甲() {\n    输出(1,\n        ¦2\n    返回 (3)\n}\n",
        "缺少右括号 ')'，第 2 行的 '(' 没有配对");
    row("condition", "函数 甲() {\n    如果 ¦(乙 > (1) {\n    }\n}\n",
        "缺少右括号 ')'，第 2 行的 '(' 没有配对");
    row("parameters", "函数 甲¦(整数 乙 {\n}\n", "缺少右括号 ')'，第 1 行的 '(' 没有配对");
    row("index", "函数 甲() {\n    输出(表¦[0)\n}\n", "缺少右方括号 ']'，第 2 行的 '[' 没有配对");
    row("values", "函数 甲() {\n    数组 表 = ¦[1, 2\n    输出(表[0])\n}\n",
        "缺少右方括号 ']'，第 2 行的 '[' 没有配对");
    row("pairs", "函数 甲() {\n    任意 表 = ¦{\"a\": {\"b\": 1}\n    输出(表)\n}\n",
        "缺少右花括号 '}'，第 2 行的 '{' 没有配对");
    row("wrong kind", "函数 甲() {\n    输出(表[0¦))\n}\n",
        "右括号 ')' 与第 2 行的 '[' 不配对，此处应为 ']'");
    row("wrong kind of values", "函数 甲() {\n    数组 表 = [1, 2¦}\n}\n",
        "右花括号 '}' 与第 2 行的 '[' 不配对，此处应为 ']'");
    row("surplus round", "函数 甲() {\n    输出(1)¦)\n}\n", "多余的右括号 ')'，没有与它配对的 '('");
    row("surplus square", "函数 甲() {\n    输出(1¦])\n}\n",
        "多余的右方括号 ']'，没有与它配对的 '['");

    row("block ahead of a line", "函数 甲() {\n    如果 (乙) {\n        输出(¦1)\n    输出(2)\n}\n",
        "缺少右花括号 '}'，第 2 行的 '{' 没有配对");
    row("block ahead of a blank line",
        "函数 甲() {\n    如果 (乙) {\n        输出(1)\n¦\n    输出(2)\n}\n",
        "缺少右花括号 '}'，第 2 行的 '{' 没有配对");
    row("block ahead of the other branch",
        "函数 甲() {\n    如果 (乙) {\n        输出(1¦)\n    否则 {\n        输出(2)\n    }\n}\n",
        "缺少右花括号 '}'，第 2 行的 '{' 没有配对");
    row("inner block ahead of the outer brace",
        "函数 甲() {\n    当 (真) {\n        如果 (乙) {\n            输出(¦1)\n    }\n}\n",
        "缺少右花括号 '}'，第 3 行的 '{' 没有配对");
    row("label of a choice",
        "函数 甲() {\n    选择 (乙) {\n        1: {\n            输出(¦1)\n        2: {\n        "
        "}\n"
        "    }\n}\n",
        "缺少右花括号 '}'，第 3 行的 '{' 没有配对");
    row("brace on a line of its own",
        "函数 甲()\n{\n    如果 (乙)\n    {\n        输出(1)\n¦\n    输出(2)\n}\n",
        "缺少右花括号 '}'，第 4 行的 '{' 没有配对");
    row("condition over lines",
        "函数 甲() {\n    如果 (乙 且\n            丙) {\n        输出(¦1)\n    输出(2)\n}\n",
        "缺少右花括号 '}'，第 3 行的 '{' 没有配对");
    row("function ahead of a function", "函数 甲() {\n    输出(1)\n¦\n函数 乙() {\n}\n",
        "缺少右花括号 '}'，第 1 行的 '{' 没有配对");
    row("function ahead of a class", "函数 甲() {\n    输出(1¦)\n类 乙 {\n}\n",
        "缺少右花括号 '}'，第 1 行的 '{' 没有配对");
    row("function ahead of a variable", "函数 甲() {\n    输出(1¦)\n整数 乙 = 1\n函数 丙() {\n}\n",
        "缺少右花括号 '}'，第 1 行的 '{' 没有配对");
    row("function at the end", "函数 甲() {\n    输出(1)\n¦",
        "缺少右花括号 '}'，第 1 行的 '{' 没有配对");
    row("function at the end of the last line", "函数 甲() {\n    输出(1¦)",
        "缺少右花括号 '}'，第 1 行的 '{' 没有配对");
    row("without any indentation",
        "函数 甲() {\n如果 (乙) {\n输出(1)\n}\n输出(2¦)\n函数 丙() {\n}\n",
        "缺少右花括号 '}'，第 1 行的 '{' 没有配对");
    row("method", "类 甲 {\n    方法 乙() {\n        输出(1¦)\n    方法 丙() {\n    }\n}\n",
        "缺少右花括号 '}'，第 2 行的 '{' 没有配对");
    row("method without any indentation", "类 甲 {\n方法 乙() {\n输出(1¦)\n方法 丙() {\n}\n}\n",
        "缺少右花括号 '}'，第 2 行的 '{' 没有配对");
    row("a line that is only badly indented",
        "函数 甲() {\n    如果 (乙) {\n        输出(0)\n    输出(9)\n    }\n    如果 (丙) {\n"
        "        输出(¦1)\n    输出(2)\n}\n",
        "缺少右花括号 '}'，第 6 行的 '{' 没有配对");
    row("tabs", "函数 甲() {\n\t如果 (乙) {\n\t\t输出(¦1)\n\t输出(2)\n}\n",
        "缺少右花括号 '}'，第 2 行的 '{' 没有配对");

    row("surplus at the end", "函数 甲() {\n    输出(1)\n}\n¦}\n",
        "多余的右花括号 '}'，没有与它配对的 '{'");
    row("surplus between functions", "函数 甲() {\n}\n¦}\n\n函数 乙() {\n}\n",
        "多余的右花括号 '}'，没有与它配对的 '{'");
    row("surplus inside",
        "函数 甲() {\n    如果 (乙) {\n        输出(1)\n    }\n    ¦}\n    输出(2)\n}\n",
        "多余的右花括号 '}'，没有与它配对的 '{'");
    row("surplus ahead of everything", "¦}\n函数 甲() {\n}\n",
        "多余的右花括号 '}'，没有与它配对的 '{'");
    row("doubled", "函数 甲() {\n    如果 (真) {¦{\n        输出(1)\n    }\n}\n",
        "多余的左花括号 '{'，没有与它配对的 '}'");
    row("function without its brace", "函数 甲(整数 乙¦)\n    输出(1)\n}\n",
        "缺少左花括号 '{'，代码块需要用花括号包围");
    row("loop without its brace", "函数 甲() {\n    循环 (3¦)\n        输出(1)\n    }\n}\n",
        "缺少左花括号 '{'，代码块需要用花括号包围");
    row("condition without its brace",
        "函数 甲() {\n    如果 (乙¦)\n        输出(1)\n        输出(2)\n    }\n}\n",
        "缺少左花括号 '{'，代码块需要用花括号包围");
    row("other branch without its brace",
        "函数 甲() {\n    如果 (乙) {\n    } ¦否则\n        输出(1)\n    }\n}\n",
        "缺少左花括号 '{'，代码块需要用花括号包围");
}

// The only message stands at the mark; at a last token of a line it is near to, at its beginning.
void BracketCheckTest::findsOneMistake()
{
    QFETCH(QString, marked);
    QFETCH(QString, text);
    const MarkedSource source(marked);
    const QList<SourceMessage> messages = check(source.text);
    QCOMPARE(textsOf(messages), QStringList{QStringLiteral("第 %1 行：").arg(source.line) + text});
    QCOMPARE(messages.first().line, source.line);
}

void BracketCheckTest::findsEveryMistake_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("places"); // line:column and what is near
    const auto row = [](const char *name, const char *source, const char *places) {
        QTest::addRow("%s", name) << QString::fromUtf8(source) << QString::fromUtf8(places);
    };
    row("a function each",
        "函数 甲() {\n    输出(1\n}\n函数 乙() {\n    输出(2))\n}\n"
        "函数 丙() {\n    如果 (真) {\n        输出(3)\n}\n}\n}\n",
        "2:7 ( | 5:10 ) | 12:1 }");
    row("a line each", "函数 甲() {\n    输出(1\n    整数 乙 = (2\n    输出(表[3)\n}\n",
        "2:7 ( | 3:12 ( | 4:9 [");
    row("two blocks in a row",
        "函数 甲() {\n    当 (真) {\n        如果 (乙) {\n            输出(1)\n\n函数 丙() {\n}\n",
        "5:9  | 5:5  | 5:1 ");
    row("an open call and an open block",
        "函数 甲() {\n    如果 (真) {\n        输出(1\n    输出(2)\n}\n", "3:11 ( | 3:12 1");
}

void BracketCheckTest::findsEveryMistake()
{
    QFETCH(QString, source);
    QStringList places;
    for (const SourceMessage &message : check(source))
        places << QStringLiteral("%1:%2 ").arg(message.line).arg(message.column) + message.nearText;
    QTEST(places.join(QStringLiteral(" | ")), "places");
}

void BracketCheckTest::keepsSilent_data()
{
    QTest::addColumn<QString>("source");
    QTest::addRow("nothing") << QString();
    QTest::addRow("badly indented") << QStringLiteral("函数 甲() {\n如果 (真) {\n输出(1)\n    }\n"
                                                      "        }\n函数 乙() {\n}\n");
    QTest::addRow("in texts and comments")
        << QStringLiteral("函数 甲() { // }\n    输出(\"(}\") /* ( */\n}\n");
    QTest::addRow("function in a function") << QStringLiteral("函数 甲() {\n函数 乙() {\n}\n}\n");
    QTest::addRow("lines of a call")
        << QStringLiteral("函数 甲() {\n输出(\n1\n2\n)\n数组 表 = [\n1\n2\n]\n}\n");
}

void BracketCheckTest::keepsSilent()
{
    QFETCH(QString, source);
    QCOMPARE(textsOf(check(source)), QStringList());
}

void BracketCheckTest::realPrograms_data()
{
    QTest::addColumn<QString>("path");
    for (const char *folder : {"tests/programs", "examples"}) {
        QDirIterator files(QStringLiteral(VOREL_SOURCE_DIR "/") + QLatin1String(folder),
                           {QStringLiteral("*.vc"), QStringLiteral("*.vpp")}, QDir::Files,
                           QDirIterator::Subdirectories);
        QVERIFY(files.hasNext());
        while (files.hasNext()) {
            const QString path = files.next();
            QTest::addRow("%s", qPrintable(path.section(QLatin1Char('/'), -3))) << path;
        }
    }
}

// Whichever bracket of a well-formed program is left out or written twice, there is one message,
// about that place or one next to it.
void BracketCheckTest::realPrograms()
{
    QFETCH(QString, path);
    const QString text = readSource(path);
    QCOMPARE(textsOf(check(text)), QStringList());
    const QList<Lexer::Token> tokens = Lexer(text).tokenize();
    int line = 1;
    int begin = 0; // of the line
    for (const Lexer::Token &token : tokens) {
        for (; line < token.line; ++line)
            begin = text.indexOf(QLatin1Char('\n'), begin) + 1;
        if (token.type < Lexer::LeftParen || token.type > Lexer::RightBracket)
            continue;
        const int at = begin + token.column - 1;
        for (const QString &changed :
             {text.left(at) + text.mid(at + 1), text.left(at + 1) + text.mid(at)}) {
            const QList<SourceMessage> messages = check(changed);
            const QString what =
                QStringLiteral("%1:%2 %3: ").arg(token.line).arg(token.column).arg(token.text) +
                textsOf(messages).join(QLatin1Char('|'));
            QVERIFY2(messages.size() == 1, qPrintable(what));
            QVERIFY2(qAbs(messages.first().line - token.line) <= 2, qPrintable(what));
        }
    }
}

void BracketCheckTest::hostileSources_data()
{
    QTest::addColumn<QString>("source");
    constexpr int many = 200000;
    for (const char *part : {"(", ")", "[", "]", "{", "}", "{\n", "}\n", "(\n", "(甲\n", "([", "[)",
                             "函数 甲() {\n", "如果 (\n", "    {\n  甲\n", "{ (\n}", " }\n甲\n{\n"})
        QTest::addRow("%s", qPrintable(QString::fromUtf8(part).simplified()))
            << QString::fromUtf8(part).repeated(many);
    QTest::addRow("deep and back")
        << QStringLiteral("([").repeated(many) + QStringLiteral(")]").repeated(many);
}

// A handful of messages in no time, whatever the source.
void BracketCheckTest::hostileSources()
{
    QFETCH(QString, source);
    const QList<SourceMessage> messages = check(source);
    QVERIFY(!messages.isEmpty());
    QVERIFY(messages.size() <= 50);
}

QTEST_APPLESS_MAIN(BracketCheckTest)
#include "bracket_check_test.moc"
