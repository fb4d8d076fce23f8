// The checks ahead of lexing and on the tree.
#include "driver/driver_test.h"
#include "driver/source_checks.h"
#include "driver/structure_checks.h"

#include <memory>

class SourceChecksTest : public QObject
{
    Q_OBJECT

private slots:
    void quotes_data();
    void quotes();
    void findsDuplicateHandlers();
    void ignoresWhatIsNoDuplicate();
    void structure_data();
    void structure();
};

void SourceChecksTest::quotes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message"); // empty: all quotes close
    const QString none;
    QTest::addRow("closed") << "输出(\"甲\")\n输出('乙')" << none;
    QTest::addRow("open at line end") << "甲\n输出(\"乙)\n"
                                      << "第 2 行：缺少右双引号";
    QTest::addRow("open at text end") << "输出(\"乙"
                                      << "第 1 行：缺少右双引号";
    QTest::addRow("only a quote") << "\""
                                  << "第 1 行：缺少右双引号";
    QTest::addRow("single") << "\n\n'a\n"
                            << "第 3 行：缺少右单引号";
    QTest::addRow("apostrophe in comment") << "// it's\n"
                                           << "第 1 行：缺少右单引号";
    QTest::addRow("other quote inside") << "\"it's\"" << none;
    QTest::addRow("escaped quote") << "\"a\\\"b\"" << none;
    QTest::addRow("escaped line end") << "\"a\\\nb\"\n\"c"
                                      << "第 3 行：缺少右双引号";
    QTest::addRow("backslash last") << "\"a\\"
                                    << "第 1 行：缺少右双引号";
    QTest::addRow("first error only") << "\"a\n'b\n"
                                      << "第 1 行：缺少右双引号";
    QTest::addRow("raw with quotes") << "r\"(a\"b'\nc)\"\n" << none;
    QTest::addRow("raw with dashes") << "R \n\"--(a)\"-)--\" \"x\"" << none;
    QTest::addRow("line behind raw") << "r\"(\n\n)\"\n'"
                                     << "第 4 行：缺少右单引号";
    QTest::addRow("raw without end") << "r\"(a\n'" << none;
    QTest::addRow("word that ends in r") << "bar\"(a\n"
                                         << "第 1 行：缺少右双引号";
}

void SourceChecksTest::quotes()
{
    QFETCH(QString, text);
    QTEST(checkQuotes(text).text, "message");
}

void SourceChecksTest::findsDuplicateHandlers()
{
    const QString text = QStringLiteral("函数 主窗口.单击(整数 甲) {\n}\n"
                                        "// [FILE_BOUNDARY] ==========二.vc ==========\n"
                                        "\n子程序  主窗口 . 单击 () {\n}\n"
                                        "//===== 三.vc =====\n函数 主窗口.单击(\n");
    QCOMPARE(findDuplicateHandlers(text),
             (QStringList{QStringLiteral("二.vc(2): 事件处理函数重复：主窗口.单击"
                                         "（首次定义在 main.vc 第 1 行，请删除重复项）"),
                          QStringLiteral("三.vc(1): 事件处理函数重复：主窗口.单击"
                                         "（首次定义在 main.vc 第 1 行，请删除重复项）")}));
}

void SourceChecksTest::ignoresWhatIsNoDuplicate()
{
    // Another event, another window, a call, a comment; a ruler that names no file keeps the count.
    const QString text = QStringLiteral("函数 甲.单击()\n函数 甲.双击()\n函数 乙.单击()\n"
                                        "甲.单击()\n// 函数 甲.单击()\n// ==========\n");
    QCOMPARE(findDuplicateHandlers(text), QStringList());
    const QStringList hits = findDuplicateHandlers(text + QStringLiteral("函数 甲.单击()\n"));
    QCOMPARE(hits.size(), 1);
    QVERIFY2(hits.first().startsWith(QStringLiteral("main.vc(7): ")), qPrintable(hits.first()));
}

void SourceChecksTest::structure_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("messages");
    QTest::addRow("known owners")
        << "类 人 {\n方法 说() {\n}\n}\n函数 主窗口.创建完毕() {\n}\n函数 人.走() {\n}\n函数 "
           "登录窗口.单击() {\n}\n"
        << QStringList();
    QTest::addRow("unknown window")
        << "\n函数 别处.单击() {\n}\n"
        << QStringList{QStringLiteral(
               "2:4 第 2 行：错误: 事件函数“别处.单击”引用的窗口“别处”在项目中不存在。")};
}

void SourceChecksTest::structure()
{
    QFETCH(QString, source);
    Parser parser;
    const std::unique_ptr<Parser::ASTNode> root(parser.parse(Lexer(source).tokenize()));
    QCOMPARE(parser.errors(), QStringList());
    QStringList messages;
    for (const SourceMessage &message : checkStructure(root.get(), {QStringLiteral("登录窗口")}))
        messages << QStringLiteral("%1:%2 ").arg(message.line).arg(message.column) + message.text;
    QTEST(messages, "messages");
}

QTEST_GUILESS_MAIN(SourceChecksTest)
#include "source_checks_test.moc"
