// The class registry: built-in classes, look-up by other forms of a name, and the pre-scan.
#include "frontend/tree_dump.h"

#include <QtTest>

#include <memory>

class ClassesTest : public QObject
{
    Q_OBJECT

private slots:
    void builtinClasses();
    void lookUp();
    void preScan_data();
    void preScan();
    void registryAfterParsing();
    void severalFiles();
    void memberResolution_data();
    void memberResolution();
    void manyClassesAndMembers();
};

using Tree = std::unique_ptr<Parser::ASTNode>;

static Tree parse(Parser *parser, const QString &source)
{
    return Tree(parser->parse(Lexer(source).tokenize()));
}

// "整数 甲; 乙()": properties with their types, then methods.
static QString membersOf(const Parser &parser, const QString &key)
{
    const Parser::ClassInfo info = parser.classRegistry().value(key);
    QStringList members;
    for (const Parser::MemberInfo &property : info.properties)
        members += property.type + QLatin1Char(' ') + property.name;
    for (const Parser::MemberInfo &method : info.methods)
        members += method.type + QLatin1Char(' ') + method.name + QLatin1String("()");
    return members.join(QLatin1String("; "));
}

void ClassesTest::builtinClasses()
{
    const ClassRegistryMap classes = Parser().classRegistry();
    QStringList counts;
    for (const Parser::ClassInfo &info : classes)
        counts += QStringLiteral("%1 %2 %3/%4")
                      .arg(info.name, info.cppName)
                      .arg(info.methods.size())
                      .arg(info.properties.size());
    QCOMPARE(counts.join(QLatin1String(", ")),
             QStringLiteral("HTTP类 VL_HttpClass 14/9, HTTP请求配置类 VL_HttpRequestConfig 11/8, "
                            "JSON类 VL_JsonClass 15/3, JS引擎类 VL_JSEngine 9/4, "
                            "TCP类 VL_TcpClass 13/6, UDP类 VL_UdpClass 9/4, "
                            "WebSocket类 VL_WebSocketClass 15/4, 定时器类 VL_TimerClass 2/1, "
                            "对象类 VL_ComObject 7/2, 拖放类 VL_DragDropClass 10/0"));
    const Parser::MemberInfo stop =
        classes[QStringLiteral("TCP类")].methods[QStringLiteral("停止")];
    QCOMPARE(stop.cppName, QStringLiteral("close"));
    QCOMPARE(stop.type, QStringLiteral("无"));
}

void ClassesTest::lookUp()
{
    Parser parser;
    QCOMPARE(parser.findClassKey(QStringLiteral("ＨＴＴＰ类")), QStringLiteral("HTTP类"));
    QCOMPARE(parser.findClassKey(QStringLiteral("HTTP")), QString());
    QCOMPARE(parser.findClassKey(QString()), QString());
    const Parser::ClassInfo http = parser.classRegistry().value(QStringLiteral("HTTP类"));
    QCOMPARE(Parser::findMemberKey(http, QStringLiteral("ＧＥＴ")), QStringLiteral("GET"));
    QCOMPARE(Parser::findMemberKey(http, QStringLiteral("状态码")), QStringLiteral("状态码"));
    QCOMPARE(Parser::findMemberKey(http, QStringLiteral("没有")), QString());

    QCOMPARE(parser.ensureClass(QStringLiteral("  ")), QString());
    QCOMPARE(parser.ensureClass(QStringLiteral("ＪＳＯＮ类")), QStringLiteral("JSON类"));
    QCOMPARE(parser.ensureClass(QStringLiteral(" 学生类 ")), QStringLiteral("学生类"));
    QCOMPARE(parser.ensureClass(QStringLiteral("学生")), QStringLiteral("学生"));
    const ClassRegistryMap classes = parser.classRegistry();
    QCOMPARE(classes[QStringLiteral("学生类")].cppName, QStringLiteral("VL_User_学生_t"));
    QCOMPARE(classes[QStringLiteral("学生")].cppName, QStringLiteral("VL_User_学生_t"));
}

void ClassesTest::preScan_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *body, const char *expected) {
        QTest::addRow("%s", body) << QString::fromUtf8(body) << QString::fromUtf8(expected);
    };
    row("", "");
    row("属性 文本 名 = \"x\" 属性 单浮点 长 属性 数组 表[3] = [1, 2] 方法 问(整数 甲) 整数 { 整数 "
        "乙 }",
        "wstring 名; VL_Array 表; double 长; void 问()");
    row("属性 通用 典 = {\"a\": {1}} 方法 甲(通用 丙 = {1}) { { } } 方法 乙() { } 属性 空 丁",
        "void 丁; VL_Any 典; void 乙(); void 甲()");
    row("属性 HTTP类 网 属性 后来类 后 属性 任意 谁 属性 二维数组 面",
        "VL_User_后来_t 后; VL_HttpClass 网; VL_Any 谁; VL_Array2D 面");
    row("整数 甲 HTTP类 乙 属性 整数 丙 文本 丁 = \"\" 逻辑 戊",
        "wstring 丁; intptr_t 丙; VL_HttpClass 乙; bool 戊; intptr_t 甲");
    row("公开 属性 整数 甲 = (1 属性 变量 乙 方法 丙 方法", "intptr_t 甲; void 丙()");
}

void ClassesTest::preScan()
{
    QFETCH(QString, body);
    QFETCH(QString, expected);
    const QString source = QStringLiteral("类 甲类 {%1} 类 后来类 { 属性 整数 末 }").arg(body);
    Parser parser;
    parser.preScanTokens(Lexer(source).tokenize());
    QCOMPARE(membersOf(parser, QStringLiteral("甲类")), expected);
    QCOMPARE(membersOf(parser, QStringLiteral("后来类")), QStringLiteral("intptr_t 末"));
}

// The class parser knows the return types, and replaces what the pre-scan has entered.
void ClassesTest::registryAfterParsing()
{
    Parser parser;
    parse(&parser, QStringLiteral("类 甲类 { 属性 单浮点 长 属性 数组 表[3] 方法 构造(文本 名) { } "
                                  "方法 子(甲类 &他) 返回 甲类 { } 方法 丑() 未知 { } }"));
    QCOMPARE(parser.errors(), QStringList());
    QCOMPARE(membersOf(parser, QStringLiteral("甲类")),
             QStringLiteral("VL_Array 表; float 长; 未知 丑(); VL_User_甲_t 子(); void 构造()"));
    parse(&parser, QStringLiteral("类 HTTP类 { }"));
    QCOMPARE(parser.classRegistry()[QStringLiteral("HTTP类")].cppName,
             QStringLiteral("VL_User_HTTP_t"));
}

void ClassesTest::severalFiles()
{
    Parser parser;
    parser.preScanTokens(Lexer(QStringLiteral("类 乙类 { 方法 问() { } }")).tokenize());
    parse(&parser, QStringLiteral("错 类 甲类 { 属性 整数 数 } 全局 甲类 丙"));
    QCOMPARE(parser.errors().size(), 1);
    const Tree tree = parse(&parser, QStringLiteral("乙类 丁 函数 f() { 丙.数 = 1 丁.问() }"));
    QCOMPARE(parser.errors(), QStringList());
    QVERIFY(dumpTree(*tree).contains(QStringLiteral("cppGetter=数")));
    QVERIFY(dumpTree(*tree).contains(QStringLiteral("cppMethod=问")));
}

void ClassesTest::memberResolution_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *expression, const char *expected) {
        QTest::addRow("%s", expression)
            << QString::fromUtf8(expression) << QString::fromUtf8(expected);
    };
    row("网.状态码", "className=HTTP类 cppGetter=getStatusCode isClassProperty=true");
    row("网.设置超时(5)", "className=HTTP类 cppMethod=setTimeout isClassMethod=true");
    row("网.ＧＥＴ(1)", "className=HTTP类 cppMethod=get isClassMethod=true");
    row("网.请求", "className=HTTP类 cppGetter=request isClassProperty=true");
    row("网.状态码()", "className=HTTP类 cppMethod=getStatusCode isClassMethod=true");
    row("网.没有", "className=HTTP类 isClassProperty=true");
    row("数.长度", "className=intptr_t");
    row("按钮.标题", "");
}

void ClassesTest::memberResolution()
{
    QFETCH(QString, expression);
    QFETCH(QString, expected);
    Parser parser;
    const Tree tree =
        parse(&parser, QStringLiteral("整数 数 ＨＴＴＰ类 网 变量 果 = ") + expression);
    const Parser::ASTNode *node = tree->children.last()->children.first();
    if (node->type == Parser::Call)
        node = node->children.first();
    QStringList metadata;
    for (auto entry = node->metadata.cbegin(); entry != node->metadata.cend(); ++entry)
        metadata += entry.key() + QLatin1Char('=') + entry.value();
    QCOMPARE(metadata.join(QLatin1Char(' ')), expected);
}

// Growth must not be quadratic: this would take minutes if it were.
void ClassesTest::manyClassesAndMembers()
{
    QString source = QStringLiteral("类 大类 { ");
    for (int i = 0; i < 20000; ++i)
        source += QStringLiteral("属性 整数 员%1 ").arg(i);
    source += QStringLiteral("} 大类 实例 ");
    for (int i = 0; i < 20000; ++i)
        source +=
            QStringLiteral("类 小%1 { } 函数 f%1(小%1 甲, 整数 乙) { 实例.无%1() 实例.员%1 = 1 }")
                .arg(i);
    Parser parser;
    parse(&parser, source + QStringLiteral("类 ").repeated(200000));
    QCOMPARE(parser.classRegistry().size(), 10 + 20001);
}

QTEST_GUILESS_MAIN(ClassesTest)
#include "classes_test.moc"
