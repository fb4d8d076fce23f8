// Shapes of expressions, messages, and the limits that keep any source harmless.
#include "frontend/tree_dump.h"

#include "frontend/parser_limits.h"
#include "frontend/type_blocks.h"

#include <QtTest>

#include <memory>

class ParserTest : public QObject
{
    Q_OBJECT

private slots:
    void expressions_data();
    void expressions();
    void messages_data();
    void messages();
    void plainMessages();
    void nesting_data();
    void nesting();
    void longChains();
    void messageLimit_data();
    void messageLimit();
    void longQuotation();
    void corpus_data();
    void corpus();
};

using Tree = std::unique_ptr<Parser::ASTNode>;

static Tree parse(Parser *parser, const QString &source)
{
    return Tree(parser->parse(Lexer(source).tokenize()));
}

static QStringList messagesOf(const QString &source)
{
    Parser parser;
    parse(&parser, source);
    return parser.errors();
}

static QString inFunction(const QString &statements)
{
    return QStringLiteral("函数 主函数() { %1 }").arg(statements);
}

void ParserTest::expressions_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *expression, const char *expected) {
        QTest::addRow("%s", expression)
            << QString::fromUtf8(expression) << QString::fromUtf8(expected);
    };
    row("甲 = 乙 += 1", "Assign =(甲, Assign +=(乙, 1))");
    row("1 + 2 * 3 - 4", "Binary -(Binary +(1, Binary *(2, 3)), 4)");
    row("甲 或 乙 且 丙 == 1 < 2 + 3 % 4",
        "Binary ||(甲, Binary &&(乙, Binary ==(丙, Binary <(1, Binary +(2, Binary %(3, 4))))))");
    row("甲 - 乙 - 丙", "Binary -(Binary -(甲, 乙), 丙)");
    row("(甲 - (乙 - 丙)) × 2", "Binary *(Binary -(甲, Binary -(乙, 丙)), 2)");
    row("甲 ? 乙 = 1 : 丙 ? 丁 : 戊", "Ternary ?:(甲, Assign =(乙, 1), Ternary ?:(丙, 丁, 戊))");
    row("甲 ? 乙 : 丙 = 1", "Assign =(Ternary ?:(甲, 乙, 丙), 1)");
    row("非 !-甲.乙++", "Unary 非(Unary !(Unary -(Unary ++(Member 乙(甲)))))");
    row("f(, 1,)", "Call(f, -, 1)");
    row("f()(甲)[1].文本", "Member 文本(Index(Call(Call(f), 甲), 1))");
    row("甲.循环", "Member(甲)");
    row("整数(\"1\") + 空", "Binary +(Call(整数, 1), 空)");
    row("[1, [2], ]", "ArrayLiteral(1, ArrayLiteral(2))");
    row("{1, 甲: 2, \"b\": 真 ? 1 : 2, : 3}", "ArrayLiteral(1, 甲, 2, b, Ternary ?:(true, 1, 2))");
    row("{}", "ArrayLiteral");
    row("学生类(\"张三\", 25)", "Call(学生类, 张三, 25)");
    row("1 +", "Binary +(1)");
    row("1 + * 2", "Binary +(1)");
    row("甲 = ", "Assign =(甲)");
    row("-", "");
    row("()", "");
    row("单浮点(1)", "");
}

void ParserTest::expressions()
{
    QFETCH(QString, expression);
    QFETCH(QString, expected);
    Parser parser;
    const Tree tree = parse(&parser, QStringLiteral("类 学生类 { }\n数组 结果 = ") + expression);
    const Parser::ASTNode &declaration = *tree->children.at(1);
    const QString actual =
        declaration.children.isEmpty() ? QString() : sketch(*declaration.children.first());
    QCOMPARE(actual, expected);
}

void ParserTest::messages_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *source, const char *expected) {
        QTest::addRow("%s", source) << QString::fromUtf8(source) << QString::fromUtf8(expected);
    };
    row("函数 f() { 甲 }",
        "第 1 行：语法错误 - 无效的语句\n  └─ 在 \"甲\" 附近\n"
        "  💡 提示：单独的标识符不是有效的语句，请检查是否缺少赋值、函数调用等操作\n"
        "  └─ 在 \"}\" 附近|"
        "第 1 行：Expected '}'\n  └─ 在 \"文件末尾\" 附近");
    row("函数 f() { 如果 ",
        "第 1 行：Expected '('\n  └─ 在 \"文件末尾\" 附近|"
        "第 1 行：Expected ')'\n  └─ 在 \"文件末尾\" 附近|"
        "第 1 行：语法错误 - 无法识别的语句或表达式\n  └─ 在 \"文件末尾\" 附近\n"
        "  💡 提示：请检查语句是否符合Vorel语法规则|"
        "第 0 行：Expected '}'\n  └─ 在 \"文件末尾\" 附近");
    row("函数 f() { 遍历(表, 1) { } }",
        "第 1 行：语法错误 - 遍历语句缺少索引变量\n  └─ 在 \"1\" 附近\n"
        "  💡 正确格式：遍历(数组名, 索引变量, 元素变量) { ... }|"
        "第 1 行：语法错误 - 无法识别的语句或表达式\n  └─ 在 \")\" 附近\n"
        "  💡 提示：请检查语句是否符合Vorel语法规则|"
        "第 1 "
        "行：文件作用域只允许声明，不允许可执行语句（如赋值、函数调用等）。请将语句移到函数体内。"
        "当前 token: \"}\"\n  └─ 在 \"}\" 附近");
    row("函数 f(整数) { }", "期望参数名");
    row("函数 f(数组 甲) { }", "第 1 行：Expected ')'\n  └─ 在 \"数组\" 附近|"
                               "第 1 行：Expected '{'\n  └─ 在 \"数组\" 附近|"
                               "第 1 行：语法错误 - 无法识别的语句或表达式\n  └─ 在 \")\" 附近\n"
                               "  💡 提示：请检查语句是否符合Vorel语法规则");
    row("函数 f() { 选择 (1) { 分支 2: { } } 甲() }",
        "第 1 行：Expected ':'\n  └─ 在 \"分支\" 附近");
    row("类 甲 { 方法 乙(丙) { } }", "期望参数名");
    row("类 甲 { 属性 二维数组 乙 }",
        "第 1 行：期望属性类型\n  └─ 在 \"二维数组\" 附近|"
        "第 1 行：文件作用域只允许声明，不允许可执行语句（如赋值、函数调用等）。"
        "请将语句移到函数体内。当前 token: \"}\"\n  └─ 在 \"}\" 附近");
    row("类 甲 { 方法 { }",
        "第 1 行：期望方法名\n  └─ 在 \"{\" 附近|"
        "第 1 行：文件作用域只允许声明，不允许可执行语句（如赋值、函数调用等）。"
        "请将语句移到函数体内。当前 token: \"}\"\n  └─ 在 \"}\" 附近");
    // What a source quotes in a message cannot pose as a place of the message.
    row("\"%1%2\"", "第 1 行：文件作用域只允许声明，不允许可执行语句（如赋值、函数调用等）。"
                    "请将语句移到函数体内。当前 token: \"%1%2\"\n  └─ 在 \"%1%2\" 附近");
}

void ParserTest::messages()
{
    QFETCH(QString, source);
    QFETCH(QString, expected);
    QCOMPARE(messagesOf(source).join(QLatin1Char('|')), expected);
}

void ParserTest::plainMessages()
{
    Parser parser;
    parser.setFriendlyErrors(false);
    parse(&parser, QStringLiteral("\n函数 f( { "));
    QCOMPARE(parser.errors(), QStringList({QStringLiteral("Line 2: Expected ')' (near '{')"),
                                           QStringLiteral("Line 2: Expected '}' (near 'EOF')")}));
}

void ParserTest::nesting_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<int>("tooDeep");
    const auto row = [](const char *name, const QString &source, int tooDeep) {
        QTest::addRow("%s", name) << source << tooDeep;
    };
    const auto nested = [](const char *open, int count, const char *inner, const char *close) {
        return inFunction(QString::fromUtf8(open).repeated(count) + QString::fromUtf8(inner) +
                          QString::fromUtf8(close).repeated(count));
    };
    constexpr int many = 50000;
    row("512 parentheses", nested("(", 512, "1", ")"), 0);
    row("513 parentheses", nested("(", 513, "1", ")"), 1);
    row("calls", nested("f(", 513, "1", ")"), 1);
    row("mixed, twice",
        inFunction(QStringLiteral("甲 = ") + QStringLiteral("f([").repeated(400) +
                   QStringLiteral("1") + QStringLiteral("])").repeated(400) +
                   QStringLiteral(" 乙 = ") + QStringLiteral("{(").repeated(400) +
                   QStringLiteral("1") + QStringLiteral(")}").repeated(400)),
        2);
    row("then branches", nested("甲 ? ", 600, "1", " : 2"), 1);
    row("nested arrays",
        QStringLiteral("数组 甲") + QStringLiteral("[]").repeated(many) + QLatin1Char('=') +
            QStringLiteral("[").repeated(many) + QStringLiteral("]").repeated(many),
        1);
    row("blocks", nested("{", 500, "", "}"), 0);
    row("too many blocks", nested("{", many, "", "}"), 1);
    const QString deepTerm = QStringLiteral("1 或 1 且 1 == 1 < 1 + 1 * -f(").repeated(500) +
                             QLatin1Char('1') + QStringLiteral(")").repeated(500);
    row("the longest way down",
        nested("类 甲 { 方法 乙() { 如果 (甲) ", 160, qUtf8Printable(deepTerm), "} }"), 1);
    row("open parentheses", inFunction(QStringLiteral("(").repeated(many)), 1);
    row("open blocks", QStringLiteral("函数 f() ") + QStringLiteral("{").repeated(many), 1);
    row("functions", QStringLiteral("函数 甲() {").repeated(many), 1);
    row("functions in classes", QStringLiteral("类 甲 { 方法 乙() {").repeated(many), 1);
    row("ifs without blocks", inFunction(QStringLiteral("如果 (甲) ").repeated(many)), 1);
    row("loops", inFunction(QStringLiteral("循环 (1) { ").repeated(many)), 1);
    row("switches", inFunction(QStringLiteral("选择 (甲) { 1: { ").repeated(many)), 1);
    row("prefixes",
        inFunction(QStringLiteral("甲 = ") + QStringLiteral("!-").repeated(many) +
                   QStringLiteral("1")),
        1);
    row("calls in a row", inFunction(QStringLiteral("f") + QStringLiteral("()").repeated(many)), 1);
    row("members in a row",
        inFunction(QStringLiteral("甲 = 乙") + QStringLiteral(".丙").repeated(many)), 1);
    row("indices in a row",
        inFunction(QStringLiteral("甲 = 乙") + QStringLiteral("[0]").repeated(many)), 1);
    row("assignments", inFunction(QStringLiteral("甲 = ").repeated(many) + QStringLiteral("1")), 1);
    row("else branches",
        inFunction(QStringLiteral("丙 = ") + QStringLiteral("甲 ? 乙 : ").repeated(many) +
                   QStringLiteral("1")),
        1);
    row("terms", inFunction(QStringLiteral("甲 = 1") + QStringLiteral("+1").repeated(many)), 1);
    row("else ifs",
        inFunction(QStringLiteral("如果 (甲) { } ") +
                   QStringLiteral("否则如果 (甲) { } ").repeated(many)),
        1);
    row("high operands side by side",
        inFunction(
            QStringLiteral("甲 = ") +
            (QStringLiteral("(") + QStringLiteral("1+").repeated(2000) + QStringLiteral("1)*"))
                .repeated(50) +
            QStringLiteral("1")),
        0);
}

// Only the nesting is reported, once for each statement, however long the source goes on.
void ParserTest::nesting()
{
    QFETCH(QString, source);
    QFETCH(int, tooDeep);
    const QString sentence = QStringLiteral("表达式或语句嵌套过深，请简化代码");
    const QStringList messages = messagesOf(source);
    QCOMPARE(messages.filter(sentence).size(), tooDeep);
    QVERIFY2(messages.size() <= tooDeep + 10, qPrintable(messages.join(QLatin1Char('|'))));
}

void ParserTest::longChains()
{
    const auto source =
        inFunction(QStringLiteral("甲 = 1") + QStringLiteral(" + 1").repeated(2000));
    QCOMPARE(messagesOf(source), QStringList());
}

void ParserTest::messageLimit_data()
{
    QTest::addColumn<QString>("source");
    constexpr int many = 20000;
    QTest::addRow("braces") << QStringLiteral("} ").repeated(many);
    QTest::addRow("loops without an end") << inFunction(QStringLiteral("循环 (").repeated(many));
    QTest::addRow("declarations") << inFunction(QStringLiteral("整数 甲 = 1, 乙, ").repeated(many));
    QTest::addRow("parameters") << QStringLiteral("函数 甲(整数 乙 ").repeated(many);
    QTest::addRow("ternaries") << inFunction(QStringLiteral("甲 ? 乙 ").repeated(many));
}

// Nor may time grow faster than the source: these would take minutes.
void ParserTest::messageLimit()
{
    QFETCH(QString, source);
    const QStringList messages = messagesOf(source);
    QCOMPARE(messages.size(), ParserLimits::messages + 1);
    QCOMPARE(messages.last(), QStringLiteral("错误过多，其余错误不再逐条列出，请先修正以上错误。"));
}

void ParserTest::longQuotation()
{
    const QString text = QLatin1Char('"') + QString(1000000, QLatin1Char('a')) + QLatin1Char('"');
    QVERIFY(messagesOf(text).join(QString()).size() < 1000);
}

void ParserTest::corpus_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QDir folder(QStringLiteral(VOREL_SOURCE_DIR "/tests/corpus/frontend"));
    const QFileInfoList entries = folder.entryInfoList(QDir::Files);
    QVERIFY(!entries.isEmpty());
    for (const QFileInfo &entry : entries) {
        QFile file(entry.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::addRow("%s", qPrintable(entry.fileName())) << file.readAll();
    }
}

// Nothing falls, and the list of messages is bounded.
void ParserTest::corpus()
{
    QFETCH(QByteArray, bytes);
    const QString text = QString::fromUtf8(bytes);
    for (const QString &source : {text, convertTypeBlocks(text, nullptr)}) {
        Parser parser;
        QVERIFY(parse(&parser, source) != nullptr);
        QVERIFY(parser.errors().size() <= ParserLimits::messages + 1);
    }
}

QTEST_GUILESS_MAIN(ParserTest)
#include "parser_test.moc"
