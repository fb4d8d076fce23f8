// Where nodes and messages stand in the source.
#include "frontend/marked_source.h"
#include "frontend/tree_dump.h"

#include <QtTest>

#include <memory>

class PlacesTest : public QObject
{
    Q_OBJECT

private slots:
    void nodes_data();
    void nodes();
    void everyNode_data();
    void everyNode();
    void messages_data();
    void messages();
};

using Node = Parser::ASTNode;

namespace {

QList<const Node *> nodesBelow(const Node &root)
{
    QList<const Node *> found{&root};
    for (int i = 0; i < found.size(); ++i) {
        for (const Node *child : found.at(i)->children)
            found.append(child);
        if (found.at(i)->label)
            found.append(found.at(i)->label);
    }
    return found;
}

std::unique_ptr<Node> parse(const QString &source)
{
    return std::unique_ptr<Node>(Parser().parse(Lexer(source).tokenize()));
}

QString inFunction(const char *statement)
{
    return QStringLiteral("函数 主函数() {\n    %1\n}").arg(QString::fromUtf8(statement));
}

} // namespace

void PlacesTest::nodes_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<int>("type");
    const auto row = [](const QString &marked, int type) {
        QTest::addRow("%s", qPrintable(marked.simplified())) << marked << type;
    };
    const auto statement = [&row](const char *marked, int type) { row(inFunction(marked), type); };
    statement("甲 = 乙 ¦+ 1", Parser::Binary);
    statement("甲 ¦= 1", Parser::Assign);
    statement("甲 = (乙 > 1) ¦? 1 : 2", Parser::Ternary);
    statement("甲 = 1 ¦- 2", Parser::Binary);
    statement("甲 = ¦-乙", Parser::Unary);
    statement("甲¦++", Parser::Unary);
    statement("¦输出(1)", Parser::Call);
    statement("按钮1.¦刷新()", Parser::Call);
    statement("按钮1.¦标题 = 1", Parser::Member);
    statement("按钮1¦. = 1", Parser::Member);
    statement("¦表[0] = 1", Parser::Index);
    statement("甲 = ¦\"文本\"", Parser::Literal);
    statement("甲 = ¦0x1F", Parser::Literal);
    statement("输出(¦, 甲)", Parser::Literal);
    statement("甲 = ¦[]", Parser::ArrayLiteral);
    statement("启动(&¦处理)", Parser::Identifier);
    statement("整数 ¦甲", Parser::VarDecl);
    statement("数组 ¦表[3]", Parser::VarDecl);
    statement("定时器类 ¦钟", Parser::VarDecl);
    statement("¦当 (甲) { }", Parser::While);
    statement("¦循环 (3) { }", Parser::Loop);
    statement("¦遍历 (表, 甲, 乙) { }", Parser::ForEach);
    statement("¦返回 1", Parser::Return);
    statement("¦跳出", Parser::Break);
    statement("¦继续", Parser::Continue);
    statement("¦选择 (甲) { }", Parser::Switch);
    statement("选择 (甲) { ¦1 : { } }", Parser::Case);
    statement("选择 (甲) { ¦默认 : { } }", Parser::Default);
    statement("如果 (甲) { } ¦否则如果 (乙) { }", Parser::If);
    row(QStringLiteral("\n函数 ¦甲.单击(整数 乙) { }"), Parser::FunctionDecl);
    row(QStringLiteral("函数 甲(整数 ¦乙) { }"), Parser::Identifier);
    row(QStringLiteral("类 ¦甲\n{ }"), Parser::ClassDecl);
    row(QStringLiteral("类 甲 {\n属性 整数 ¦乙 }"), Parser::VarDecl);
    row(QStringLiteral("类 甲 { 方法\n¦乙() { } }"), Parser::FunctionDecl);
}

// One of the nodes of the kind stands at the mark.
void PlacesTest::nodes()
{
    QFETCH(QString, marked);
    QFETCH(int, type);
    const MarkedSource source(marked);
    const std::unique_ptr<Node> tree = parse(source.text);
    QStringList places;
    for (const Node *node : nodesBelow(*tree)) {
        if (node->type == type)
            places << QStringLiteral("%1:%2").arg(node->sourceLine).arg(node->sourceColumn);
    }
    QVERIFY2(places.contains(QStringLiteral("%1:%2").arg(source.line).arg(source.column)),
             qPrintable(places.join(QLatin1Char(' '))));
}

void PlacesTest::everyNode_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(VOREL_SOURCE_DIR "/tests/frontend/data"));
    const QFileInfoList entries = folder.entryInfoList({QStringLiteral("*.vc")}, QDir::Files);
    QVERIFY(!entries.isEmpty());
    for (const QFileInfo &entry : entries)
        QTest::addRow("%s", qPrintable(entry.fileName())) << entry.filePath();
}

// Every node of a real source stands at the start of a token, a name at its own.
void PlacesTest::everyNode()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<Lexer::Token> tokens = Lexer(QString::fromUtf8(file.readAll())).tokenize();
    QMap<QPair<int, int>, QString> texts;
    for (const Lexer::Token &token : tokens)
        texts.insert({token.line, token.column}, token.text);
    const std::unique_ptr<Node> tree(Parser().parse(tokens));
    for (const Node *node : nodesBelow(*tree)) {
        const QPair<int, int> place(node->sourceLine, node->sourceColumn);
        QVERIFY2(texts.contains(place), qPrintable(sketch(*node)));
        if (node->type == Parser::Identifier)
            QCOMPARE(texts.value(place), node->value);
    }
}

void PlacesTest::messages_data()
{
    QTest::addColumn<QString>("marked");
    QTest::addColumn<QString>("nearText");
    QTest::addColumn<QString>("part");
    const auto row = [](const QString &marked, const char *nearText, const char *part) {
        QTest::addRow("%s", qPrintable(marked.simplified()))
            << marked << QString::fromUtf8(nearText) << QString::fromUtf8(part);
    };
    row(inFunction("输出(1 ¦甲)"), "甲", "Expected ')'");
    row(inFunction("¦甲"), "甲", "单独的标识符");
    // The text tells line 0 where the tree has none.
    row(inFunction("如果 (甲 ¦= 1) { }"), "=", "第 0 行：条件判断中检测到赋值表达式");
    row(inFunction("当 (甲 > 0 且 (乙 ¦= 1)) { }"), "=", "第 0 行：条件判断中检测到赋值表达式");
    row(inFunction("启动(¦&甲.乙)"), "&", "「&」仅用于");
    row(inFunction("甲 = 乙 ¦? 1 ; 2"), "?", "三目运算符缺少 ':'");
    row(QStringLiteral("函数 甲(整数 乙 ¦整数 丙) { }"), "整数", "必须用逗号分隔");
    row(QStringLiteral("函数 甲(整数 ¦) { }"), ")", "期望参数名");
    row(QStringLiteral("函数 甲() {\n    如果\n¦"), "", "第 0 行：Expected '}'");
}

void PlacesTest::messages()
{
    QFETCH(QString, marked);
    QFETCH(QString, nearText);
    QFETCH(QString, part);
    const MarkedSource source(marked);
    Parser parser;
    const std::unique_ptr<Node> tree(parser.parse(Lexer(source.text).tokenize()));
    for (const SourceMessage &message : parser.messages()) {
        if (!message.text.contains(part))
            continue;
        QCOMPARE(message.line, source.line);
        QCOMPARE(message.column, source.column);
        QCOMPARE(message.nearText, nearText);
        return;
    }
    QFAIL(qPrintable(parser.errors().join(QLatin1Char('|'))));
}

QTEST_GUILESS_MAIN(PlacesTest)
#include "places_test.moc"
