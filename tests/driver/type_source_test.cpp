// Type files: what becomes of blocks, and where.
#include "driver/type_source.h"

#include "frontend/parser.h"

#include <QtTest>

#include <memory>

class TypeSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void translates_data();
    void translates();
    void refuses_data();
    void refuses();
    void givesClassesOfTheLanguage();
    void takesLargeFiles();
};

void TypeSourceTest::translates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::addRow("block") << "\n类型 点\n{\n\n整数 横 = 1 // 像素\n  // 甲\n小数 纵\n}\n"
                           << "\n\n类 点 {\n\n    属性 整数 横 = 1\n\n    属性 小数 纵\n}\n";
    QTest::addRow("brace on the line") << "类型 点 {\n整数 横\n};\n"
                                       << "类 点 {\n    属性 整数 横\n}\n";
    QTest::addRow("member on the line") << "类型 点 { 整数 横\n整数 纵\n}"
                                        << "类 点 {    属性 整数 横\n    属性 整数 纵\n}";
    QTest::addRow("one line") << "类型 点 { 整数 横 }\n类型 线 { }"
                              << "类 点 {    属性 整数 横 }\n类 线 { }";
    QTest::addRow("two blocks") << "类型 甲\n{\n整数 a\n}\n// 注\n类型 乙 {\n整数 b\n}"
                                << "\n类 甲 {\n    属性 整数 a\n}\n// 注\n类 乙 {\n    属性 整数 "
                                   "b\n}";
    QTest::addRow("brace in a value") << "类型 甲 {\n文本 a = \"}{\"\n文本 b\n}\n"
                                      << "类 甲 {\n    属性 文本 a = \"}{\"\n    属性 文本 b\n}\n";
    QTest::addRow("wide blanks") << "　\n　类型 点 {　\n　整数 横\n　}　\n"
                                 << "　\n类 点 {\n    属性 整数 横\n}\n";
    QTest::addRow("only comments") << "// 类型 甲 {\n/* 类型 乙\n*/"
                                   << "// 类型 甲 {\n/* 类型 乙\n*/";
    QTest::addRow("nothing") << ""
                             << "";
}

void TypeSourceTest::translates()
{
    QFETCH(QString, text);
    for (TypeSourceKind kind : {TypeSourceKind::BlocksOnly, TypeSourceKind::WithClasses}) {
        const TypeSource source = translateTypeSource(text, kind);
        QVERIFY2(source.faults.isEmpty(), qPrintable(source.faults.value(0).text));
        QTEST(source.text, "expected");
    }
}

void TypeSourceTest::refuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("withClasses");
    QTest::addColumn<QString>("expected"); // "line: text" of each fault, none for a good text
    QTest::addRow("member") << "\n类型 甲\n{\n整数 a\n对象 b\n}" << true
                            << "5: 第 5 行：无法识别的成员行";
    QTest::addRow("each block") << "类型 甲 {\n? a\n}\n类型 乙 {\n? b\n}" << true
                                << "2: 第 2 行：无法识别|5: 第 5 行：无法识别";
    QTest::addRow("unclosed") << "// 甲\n类型 甲 {\n整数 a\n" << true << "2: 类型「甲」未闭合";
    QTest::addRow("no name") << "\n类型 {\n}" << true << "2: 第 2 行：缺少类型名称";
    QTest::addRow("no brace") << "类型 甲\n整数 a\n" << true << "1: 第 1 行：「类型」名称后缺少";
    QTest::addRow("behind the block")
        << "类型 甲 {\n} 类 乙 {\n}" << true << "2: 第 2 行：「类型」闭合「}」后不应再有内容";
    QTest::addRow("behind a one-line block")
        << "类型 甲 { } 类 乙 { }" << true << "1: 第 1 行：「类型」闭合「}」后不应再有内容";
    QTest::addRow("class among blocks")
        << "类型 甲 {\n}\n类 乙\n{\n}\n整数 丙" << false << "3: 第 3 行：.vd 文件中仅允许";
    QTest::addRow("class") << "类 乙\n{\n属性 整数 a\n类型 甲\n}" << true << "";
    QTest::addRow("variable") << "类型 = 3\n整数 类型\n类型 甲 = 类型.取(1)\n" << true << "";
}

void TypeSourceTest::refuses()
{
    QFETCH(QString, text);
    QFETCH(bool, withClasses);
    QFETCH(QString, expected);
    const TypeSource source = translateTypeSource(text, withClasses ? TypeSourceKind::WithClasses
                                                                    : TypeSourceKind::BlocksOnly);
    const QStringList rows = expected.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QCOMPARE(source.faults.size(), rows.size());
    for (int i = 0; i < rows.size(); ++i) {
        const TypeSource::Fault &fault = source.faults.at(i);
        const QString row = QStringLiteral("%1: %2").arg(fault.line).arg(fault.text);
        QVERIFY2(row.startsWith(rows.at(i)), qPrintable(row));
    }
    if (rows.isEmpty())
        QCOMPARE(source.text, text);
}

void TypeSourceTest::givesClassesOfTheLanguage()
{
    const TypeSource source = translateTypeSource(
        QStringLiteral("类 圆\n{\n属性 整数 径\n}\n类型 点 { 整数 横 }\n类型 线\n{\n\n通用 甲\n}\n"
                       "类型 面 {\n数组 角[4]\n文本 名 = \"甲{\" // 乙\n}\n"),
        TypeSourceKind::WithClasses);
    QVERIFY2(source.faults.isEmpty(), qPrintable(source.faults.value(0).text));
    Parser parser;
    const std::unique_ptr<Parser::ASTNode> tree(parser.parse(Lexer(source.text).tokenize()));
    QVERIFY2(parser.errors().isEmpty(), qPrintable(parser.errors().join(QLatin1Char('\n'))));
    const auto classes = parser.classRegistry();
    for (const char *name : {"圆", "点", "线", "面"})
        QVERIFY2(classes.contains(QString::fromUtf8(name)), name);
}

// A translation that is not linear would not come back from this.
void TypeSourceTest::takesLargeFiles()
{
    QString text;
    for (int i = 0; i < 40000; ++i)
        text += QStringLiteral("类型 点%1 {\n整数 横\n}\n").arg(i);
    text += QStringLiteral("类型 ").repeated(40000);
    const TypeSource source = translateTypeSource(text, TypeSourceKind::WithClasses);
    QVERIFY(source.text.contains(QStringLiteral("类 点39999 {\n    属性 整数 横\n}")));
}

QTEST_GUILESS_MAIN(TypeSourceTest)
#include "type_source_test.moc"
