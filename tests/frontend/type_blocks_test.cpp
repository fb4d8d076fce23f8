// The translation of .vd files.
#include "frontend/type_blocks.h"

#include <QtTest>

class TypeBlocksTest : public QObject
{
    Q_OBJECT

private slots:
    void conversion_data();
    void conversion();
};

void TypeBlocksTest::conversion_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *text, const char *output,
                        const char *error = "") {
        QTest::addRow("%s", name) << QString::fromUtf8(text) << QString::fromUtf8(output)
                                  << QString::fromUtf8(error);
    };
    row("one line", "类型 点 { 整数 横 }", "类 点 {\n    属性 整数 横\n}\n\n");
    row("lines", "类型 点 {\r\n  整数 横 = 1 // 注\n\n  文本 名=\"//}\"\n}\n",
        "类 点 {\n    属性 整数 横 = 1\n    属性 文本 名 = \"//}\"\n}\n\n");
    row("header over lines", "类型\n点\n{ 长整数 横\n};\n类型 线 {}",
        "类 点 {\n    属性 长整数 横\n}\n\n类 线 {\n}\n\n");
    row("bounds", "类型 点 {\n数组 表 [3] = [1]\n数组 列[]\n任意\t值\n",
        "类 点 {\n    属性 数组 表[3] = [1]\n    属性 数组 列[]\n    属性 任意 值\n}\n\n",
        "类型「点」未闭合「}」");
    row("brace in a text", "类型 点 { 文本 名 = \"}\" }",
        "类 点 {\n    属性 文本 名 = \"}\"\n}\n\n");
    row("outside", "\n整数 甲\n类型 点 {}", "类 点 {\n}\n\n",
        "第 2 行：.vd 文件中仅允许以「类型」开头的类型块");
    row("no name", "类型 { 整数 横 }", "", "第 1 行：缺少类型名称");
    row("text behind", "类型 点 { } 甲", "类 点 {\n}\n\n",
        "第 1 行：「类型」闭合「}」后不应再有内容");
    row("open header", "类型 点", "", "文件末尾有未完成的「类型」声明");
    row("unknown member", "类型 点 {\n甲 乙\n整数横\n}", "类 点 {\n}\n\n",
        "第 2 行：无法识别的成员行（应以 整数/文本/数组 等类型开头）");
    row("no member name", "类型 点 {\n数组[3]\n}", "类 点 {\n}\n\n", "第 2 行：缺少成员名");
    row("open bound", "类型 点 {\n数组 表[3\n}", "类 点 {\n}\n\n", "第 2 行：成员 表 的 [] 未闭合");
    row("text behind a member", "类型 点 {\n整数 横 纵\n}", "类 点 {\n}\n\n",
        "第 2 行：成员 横 行尾有多余内容");
    row("empty", "", "");
}

void TypeBlocksTest::conversion()
{
    QFETCH(QString, text);
    QFETCH(QString, output);
    QFETCH(QString, error);
    QString actualError = QStringLiteral("stale");
    QCOMPARE(convertTypeBlocks(text, &actualError), output);
    QCOMPARE(actualError, error);
}

QTEST_GUILESS_MAIN(TypeBlocksTest)
#include "type_blocks_test.moc"
