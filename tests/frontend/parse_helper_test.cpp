// The slots of the parse helper, called by their names as the build driver does.
#include "frontend/parse_helper.h"
#include "test_files.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class ParseHelperTest : public QObject
{
    Q_OBJECT

private slots:
    void parsesByName();
    void keepsClassesUntilReset();
    void preScansProjects_data();
    void preScansProjects();
};

namespace {

std::unique_ptr<Parser::ASTNode> parse(ParseHelper &helper, const QString &source)
{
    Parser::ASTNode *tree = nullptr;
    QMetaObject::invokeMethod(&helper, "parseSource", Qt::DirectConnection,
                              Q_RETURN_ARG(Parser::ASTNode *, tree), Q_ARG(QString, source));
    return std::unique_ptr<Parser::ASTNode>(tree);
}

QStringList classes(ParseHelper &helper)
{
    QMap<QString, Parser::ClassInfo> registry;
    QMetaObject::invokeMethod(&helper, "getClassRegistry", Qt::DirectConnection,
                              QReturnArgument<QMap<QString, Parser::ClassInfo>>(
                                  "QMap<QString,Parser::ClassInfo>", registry));
    return registry.keys();
}

} // namespace

void ParseHelperTest::parsesByName()
{
    ParseHelper helper;
    QVERIFY(QMetaType::type("ClassRegistryMap") != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("VarTypesMap") != QMetaType::UnknownType);
    QVERIFY(QMetaType::type("Parser::ASTNode*") != QMetaType::UnknownType);

    const auto tree = parse(helper, QStringLiteral("全局 定时器类 时钟\n整数 甲\n甲 = 1"));
    QVERIFY(tree);
    QCOMPARE(tree->children.size(), 2);
    QStringList errors;
    QVERIFY(QMetaObject::invokeMethod(&helper, "getParserErrors", Qt::DirectConnection,
                                      Q_RETURN_ARG(QStringList, errors)));
    QCOMPARE(errors.size(), 1);
    QVERIFY(errors.first().startsWith(QStringLiteral("第 3 行：")));
    QCOMPARE(helper.getParserMessages().first().line, 3);
    QCOMPARE(helper.getVarTypes().value(QStringLiteral("时钟")), QStringLiteral("定时器类"));

    Parser::ASTNode *again = nullptr;
    QVERIFY(QMetaObject::invokeMethod(
        &helper, "parseTokens", Qt::DirectConnection, Q_RETURN_ARG(Parser::ASTNode *, again),
        Q_ARG(QList<Lexer::Token>, Lexer(QStringLiteral("整数 乙")).tokenize())));
    const std::unique_ptr<Parser::ASTNode> second(again);
    QCOMPARE(second->children.first()->value, QStringLiteral("乙"));
    QVERIFY(helper.getParserErrors().isEmpty());
}

void ParseHelperTest::keepsClassesUntilReset()
{
    ParseHelper helper;
    parse(helper, QStringLiteral("类 学生 { 属性 文本 姓名 }"));
    parse(helper, QStringLiteral("函数 甲(学生 某人) { 输出(某人.姓名) }"));
    QVERIFY(helper.getParserErrors().isEmpty());
    QVERIFY(classes(helper).contains(QStringLiteral("学生")));
    QMetaObject::invokeMethod(&helper, "reset", Qt::DirectConnection);
    QVERIFY(!classes(helper).contains(QStringLiteral("学生")));
    QVERIFY(classes(helper).contains(QStringLiteral("定时器类")));
}

void ParseHelperTest::preScansProjects_data()
{
    QTest::addColumn<QString>("folder"); // of the sources, below the project's
    QTest::addRow("folder of sources") << QStringLiteral("/source");
    QTest::addRow("sources beside the project") << QString();
}

void ParseHelperTest::preScansProjects()
{
    QFETCH(QString, folder);
    const QTemporaryDir project;
    const QString path = project.path() + folder + QLatin1Char('/');
    TestFiles::writeFile(path + QStringLiteral("甲.vpp"), "\xEF\xBB\xBF类 学生 { 属性 文本 姓名 }");
    TestFiles::writeFile(path + QStringLiteral("乙.vd"), "类型 点 { 整数 横 }\n整数 不对");
    TestFiles::writeFile(path + QStringLiteral("坏.vpp"), QByteArray("\xFF\xFE\x00类", 6));
    ParseHelper helper;
    QMetaObject::invokeMethod(&helper, "preScanVppDir", Qt::DirectConnection,
                              Q_ARG(QString, project.path()));
    QVERIFY(classes(helper).contains(QStringLiteral("学生")));
    QVERIFY(classes(helper).contains(QStringLiteral("点")));
    helper.preScanVppDir(project.path() + QStringLiteral("/没有"));
}

QTEST_GUILESS_MAIN(ParseHelperTest)
#include "parse_helper_test.moc"
