// What a text declares, also while it is being typed.
#include "editor/code_symbols.h"

#include "frontend/parse_helper.h"

#include <QDirIterator>
#include <QtTest>

#include <memory>

namespace {

// "局部 主函数/甲 整数 2:8-2": kind, owner and name, type, place, last line; a signature on behalf
// of the type.
QString described(const CodeSymbol &symbol)
{
    static const QMap<SymbolKind, QString> words{
        {SymbolKind::Function, QStringLiteral("函数")},
        {SymbolKind::EventFunction, QStringLiteral("事件")},
        {SymbolKind::Class, QStringLiteral("类")},
        {SymbolKind::TypeBlock, QStringLiteral("类型")},
        {SymbolKind::Method, QStringLiteral("方法")},
        {SymbolKind::Property, QStringLiteral("属性")},
        {SymbolKind::Global, QStringLiteral("全局")},
        {SymbolKind::Parameter, QStringLiteral("参数")},
        {SymbolKind::Local, QStringLiteral("局部")}};
    QStringList parts{words.value(symbol.kind)};
    parts << (symbol.owner.isEmpty() ? symbol.name : symbol.owner + QLatin1Char('/') + symbol.name);
    if (!symbol.signature.isEmpty())
        parts << symbol.signature;
    else if (!symbol.type.isEmpty())
        parts << symbol.type;
    parts << QStringLiteral("%1:%2-%3").arg(symbol.line).arg(symbol.column).arg(symbol.endLine);
    return parts.join(QLatin1Char(' '));
}

// The names that a tree declares, with what they belong to.
void collectNames(const Parser::ASTNode *node, const QString &owner, QStringList *names)
{
    const bool isParameter = node->type == Parser::Identifier && !owner.isEmpty();
    const bool declares = node->type == Parser::FunctionDecl || node->type == Parser::ClassDecl ||
                          node->type == Parser::VarDecl || isParameter;
    const QString name = owner.isEmpty() ? node->value : owner + QLatin1Char('.') + node->value;
    if (declares)
        *names << name;
    const bool isRoutine = node->type == Parser::FunctionDecl;
    const bool isOwner = isRoutine || node->type == Parser::ClassDecl;
    for (const Parser::ASTNode *child : node->children) {
        // A lone name declares nothing but a parameter.
        if (isRoutine || child->type != Parser::Identifier)
            collectNames(child, isOwner ? name : owner, names);
    }
}

} // namespace

class CodeSymbolsTest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void keepsTheOthersOfABrokenText_data();
    void keepsTheOthersOfABrokenText();
    void endsOnAnyPrefix();
    void agreesWithTheParser_data();
    void agreesWithTheParser();
};

void CodeSymbolsTest::reads_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *text, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(expected);
    };
    row("empty", "", "");
    row("function", "函数 相加(整数 甲, 整数 乙) 整数 {\n  返回 甲 + 乙\n}\n",
        "函数 相加 相加(整数 甲, 整数 乙) 整数 1:4-3\n"
        "参数 相加/甲 整数 1:10-1\n"
        "参数 相加/乙 整数 1:16-1");
    row("parameters of all sorts",
        "函数 甲(乙, 整数 &丙, [文本 丁 = \"a,b)\"], 学生 戊) 返回 学生 {}",
        "函数 甲 甲(乙, 整数 &丙, [文本 丁 = \"a,b)\"], 学生 戊) 学生 1:4-1\n"
        "参数 甲/乙 1:6-1\n"
        "参数 甲/丙 整数 1:13-1\n"
        "参数 甲/丁 文本 1:20-1\n"
        "参数 甲/戊 学生 1:36-1");
    row("header over lines", "函数 甲(整数 乙,\n       整数 丙)\n{\n}\n",
        "函数 甲 甲(整数 乙, 整数 丙) 1:4-4\n"
        "参数 甲/乙 整数 1:9-1\n"
        "参数 甲/丙 整数 2:11-2");
    row("events", "函数 按钮1.单击() {\n}\n函数 主窗口.按钮1.单击() {\n  整数 甲\n}",
        "事件 按钮1/单击 按钮1.单击() 1:4-2\n"
        "事件 主窗口.按钮1/单击 主窗口.按钮1.单击() 3:4-5\n"
        "局部 主窗口.按钮1.单击/甲 整数 4:6-4");
    row("globals",
        "整数 甲 = 相加(1, 2), 乙\n全局 文本 丙 = \"}\" // 整数 无\n数组 丁[10] = [1, 2]\n"
        "/* 整数 无 */ 变量 戊\n全局 学生 己\n学生 庚 = 新建()\n二维数组 辛[][] = [[1], [2]]",
        "全局 甲 整数 1:4-1\n全局 乙 整数 1:18-1\n全局 丙 文本 2:7-2\n全局 丁 数组 3:4-3\n"
        "全局 戊 变量 4:15-4\n全局 己 学生 5:7-5\n全局 庚 学生 6:4-6\n全局 辛 二维数组 7:6-7");
    row("class",
        "类 学生 {\n  属性 文本 姓名 = \"\"\n  属性 数组 成绩[10]\n  属性 同学 邻座\n"
        "  方法 介绍(文本 前缀) 文本 {\n    文本 句子\n    返回 句子\n  }\n}\n整数 总数",
        "类 学生 1:3-9\n属性 学生/姓名 文本 2:9-2\n属性 学生/成绩 数组 3:9-3\n属性 学生/邻座 同学 "
        "4:9-4\n"
        "方法 学生/介绍 介绍(文本 前缀) 文本 5:6-8\n参数 学生.介绍/前缀 文本 5:12-5\n"
        "局部 学生.介绍/句子 文本 6:8-6\n全局 总数 整数 10:4-10");
    row("method outside of its class", "函数 学生.介绍(整数 甲) {\n}\n类 学生 {\n}",
        "方法 学生/介绍 介绍(整数 甲) 1:4-2\n参数 学生.介绍/甲 整数 1:13-1\n类 学生 3:3-4");
    row("type block", "类型 点 {\n  整数 横 = 1\n  任意 纵\n  数组 列[3]\n}\n类型 线 { 小数 长 }",
        "类型 点 1:4-5\n属性 点/横 整数 2:6-2\n属性 点/纵 任意 3:6-3\n属性 点/列 数组 4:6-4\n"
        "类型 线 6:4-6\n属性 线/长 小数 6:11-6");
    row("locals",
        "函数 甲() {\n  整数 乙 = (1 + 2), 丙 = 3\n  循环(整数 i = 0; i < 3; i++) { 文本 丁; 学生 "
        "戊 }\n"
        "  如果(乙 == 1) {\n    字典 = {\"a\": 1, \"b\": 2}\n    小数 己 = 1.5\n  }\n}",
        "函数 甲 甲() 1:4-8\n局部 甲/乙 整数 2:6-2\n局部 甲/丙 整数 2:19-2\n局部 甲/i 整数 3:9-3\n"
        "局部 甲/丁 文本 3:33-3\n局部 甲/戊 学生 3:39-3\n局部 甲/己 小数 6:8-6");
    row("value over lines",
        "函数 甲() {\n  变量 乙 = {\n    \"整数\": 1,\n    \"丙\": 2\n  }\n  整数 丁\n}",
        "函数 甲 甲() 1:4-7\n局部 甲/乙 变量 2:6-2\n局部 甲/丁 整数 6:6-6");
    row("list over lines", "整数 甲 = 1,\n     乙 = 2", "全局 甲 整数 1:4-1\n全局 乙 整数 2:6-2");
    row("strings and comments", "函数 甲() {\n  输出(\"整数 乙 = 1 }\") // 整数 丙 }\n}\n整数 丁",
        "函数 甲 甲() 1:4-3\n全局 丁 整数 4:4-4");
    row("windows line ends", "函数 甲() {\r\n  整数 乙\r\n}\r\n整数 丙",
        "函数 甲 甲() 1:4-3\n局部 甲/乙 整数 2:6-2\n全局 丙 整数 4:4-4");
}

void CodeSymbolsTest::reads()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QStringList found;
    const CodeSymbols symbols = readCodeSymbols(text);
    for (const CodeSymbol &symbol : symbols)
        found << described(symbol);
    QCOMPARE(found.join(QLatin1Char('\n')), expected);
}

void CodeSymbolsTest::keepsTheOthersOfABrokenText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("names"); // with the last lines of what has a body
    const auto row = [](const char *name, const char *text, const char *names) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(names);
    };
    row("brace not closed", "函数 甲() {\n  如果(1) {\n  整数 乙\n\n函数 丙() {\n}",
        "甲-3 乙-3 丙-6");
    row("brace too much", "函数 甲() {\n}\n}\n函数 乙() {\n}", "甲-2 乙-5");
    row("method not closed", "类 甲 {\n  方法 乙() {\n    整数 丙\n  方法 丁() {\n  }\n}\n整数 戊",
        "甲-6 乙-3 丙-3 丁-5 戊-7");
    row("class not closed", "类 甲 {\n  属性 整数 乙\n函数 丙() {\n}", "甲-2 乙-2 丙-4");
    row("type block not closed", "类型 甲 {\n  整数 乙\n类型 丙 {\n  整数 丁\n}",
        "甲-2 乙-2 丙-5 丁-4");
    row("parameters not closed", "函数 甲(整数 乙, {\n  整数 丙\n}\n函数 丁() {}",
        "甲-3 乙-1 丙-2 丁-4");
    row("value not closed", "函数 甲() {\n  整数 乙 = 相加(1,\n  整数 丙\n}\n函数 丁() {}",
        "甲-4 乙-2 丙-3 丁-5");
    row("opening brace missing", "函数 甲()\n  整数 乙\n}\n整数 丙", "甲-3 乙-2 丙-4");
    row("header only", "函数 甲(\n整数 乙\n", "甲-2 乙-2");
    row("no name yet", "函数 \n函数 乙() {}\n类\n类 丙 {}", "乙-2 丙-4");
    row("function without name", "函数 {\n  整数 甲\n}\n整数 乙", "乙-4");
    row("type without name", "整数\n整数 甲 =\n整数 乙", "甲-2 乙-3");
    row("constant's sign", "整数 #甲\n整数 乙\n", "乙-2");
    row("member for a variable", "函数 甲() {\n  整数 乙.丙 = 1\n}\n整数 丁", "甲-3 乙-2 丁-4");
    row("bracket not closed", "函数 甲() {\n  数组 乙[\n  数组 丙[3\n  数组 丁\n}",
        "甲-5 乙-2 丙-3 丁-4");
    row("string not closed", "整数 甲\n文本 乙 = \"abc\n整数 丙", "甲-1 乙-2");
    row("statements at file scope", "如果 (1) {\n  整数 甲\n}\n整数 乙", "乙-4");
}

void CodeSymbolsTest::keepsTheOthersOfABrokenText()
{
    QFETCH(QString, text);
    QFETCH(QString, names);
    QStringList found;
    const CodeSymbols symbols = readCodeSymbols(text);
    for (const CodeSymbol &symbol : symbols)
        found << QStringLiteral("%1-%2").arg(symbol.name).arg(symbol.endLine);
    QCOMPARE(found.join(QLatin1Char(' ')), names);
}

// However far the user has typed: an answer, in the text's order, whose lines exist.
void CodeSymbolsTest::endsOnAnyPrefix()
{
    const QString text = QStringLiteral(
        "类 学生 {\n属性 数组 成绩[3] = [1, {2}]\n方法 甲(整数 乙 = 1, [文本 &丙]) 返回 整数 {\n"
        "循环(整数 i = 0; i < 3; i++) { 文本 丁 = r\"--(x)--\" }\n}\n}\n"
        "函数 按钮1.单击() {\n数组 戊[] = []\n}\n类型 点 { 整数 横 }\n全局 学生 己, 庚 = {\"a\": "
        "[1]}");
    for (int length = 0; length <= text.size(); ++length) {
        const QString typed = text.left(length);
        const int lines = typed.count(QLatin1Char('\n')) + 1;
        int lastLine = 1;
        const CodeSymbols symbols = readCodeSymbols(typed);
        for (const CodeSymbol &symbol : symbols) {
            QVERIFY2(symbol.line >= lastLine && symbol.endLine >= symbol.line &&
                         symbol.endLine <= lines,
                     qPrintable(typed));
            lastLine = symbol.line;
        }
    }
}

void CodeSymbolsTest::agreesWithTheParser_data()
{
    QTest::addColumn<QString>("path");
    const QDir root(QStringLiteral(VOREL_SOURCE_DIR));
    for (const char *folder : {"tests/programs", "tests/windows"}) {
        QDirIterator files(root.filePath(QLatin1String(folder)), {QStringLiteral("*.vc")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            QTest::newRow(qPrintable(root.relativeFilePath(path))) << path;
        }
    }
}

// Whole programs have the same declarations for both.
void CodeSymbolsTest::agreesWithTheParser()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    ParseHelper parser;
    parser.preScanVppDir(QFileInfo(path).path());
    const std::unique_ptr<Parser::ASTNode> tree(parser.parseSource(text));
    QCOMPARE(parser.getParserErrors(), QStringList());
    QStringList expected;
    for (const Parser::ASTNode *node : qAsConst(tree->children))
        collectNames(node, QString(), &expected);
    QStringList found;
    const CodeSymbols symbols = readCodeSymbols(text);
    for (const CodeSymbol &symbol : symbols) {
        found << (symbol.owner.isEmpty() ? symbol.name
                                         : symbol.owner + QLatin1Char('.') + symbol.name);
    }
    expected.sort();
    found.sort();
    QCOMPARE(found, expected);
}

QTEST_GUILESS_MAIN(CodeSymbolsTest)
#include "code_symbols_test.moc"
