// What the checks let pass must compile: a function for each operation with each pair of types, of
// which those that are refused are taken out and the others are built.
#include "cli/cli_test.h"
#include "test_files.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>

class TypeRulesTest : public QObject
{
    Q_OBJECT

private slots:
    void whatPassesCompiles();
};

namespace {

// Declares "%1" and gives it a value.
struct Operand
{
    const char *type;
    const char *declaration;
};

constexpr Operand operands[] = {
    {"整数", "整数 %1 = 1"},
    {"小数", "小数 %1 = 1.5"},
    {"单浮点", "单浮点 %1 = 1.5"},
    {"文本", "文本 %1 = \"a\""},
    {"逻辑", "逻辑 %1 = 真"},
    {"数组", "数组 %1[] = [1]"},
    {"二维数组", "数组 %1[][] = [[1]]"},
    {"三维数组", "数组 %1[][][] = [[[1]]]"},
    {"字节集", "字节集 %1 = 到字节集(\"a\")"},
    {"通用", "通用 %1 = 1"},
    {"对象", "盒子 %1"},
};

// "%1" and "%2" are the names of the two operands.
constexpr const char *pairs[] = {"输出(%1 + %2)",
                                 "输出(%1 - %2)",
                                 "输出(%1 % %2)",
                                 "输出(%1 < %2)",
                                 "输出(%1 == %2)",
                                 "输出(%1 并且 %2)",
                                 "%1 = %2",
                                 "%1 += %2",
                                 "%1 -= %2",
                                 "输出(%1[%2])",
                                 "%1[0] = %2",
                                 "输出(真 ? %1 : %2)",
                                 "选择(%1) { %2: { 输出(1) } }"};

// "%1" is the name of the operand.
constexpr const char *uses[] = {"输出(-%1)",
                                "输出(!%1)",
                                "%1++",
                                "如果 (%1) { 输出(1) }",
                                "当 (%1) { 跳出 }",
                                "循环 (%1) { 跳出 }",
                                "循环 (%1, 0, 3) { 跳出 }",
                                "整数 位 = 0 通用 元 = 0 遍历(%1, 位, 元) { 输出(元) }",
                                "通用 新 = %1 输出(新)",
                                "输出(%1, [%1])"};

QString declared(const Operand &operand, const QString &name)
{
    return QString::fromUtf8(operand.declaration).arg(name);
}

// Values handed to parameters and given back, by type words as functions write them.
QStringList passingFunctions()
{
    const QStringList words{QStringLiteral("整数"),   QStringLiteral("小数"),
                            QStringLiteral("文本"),   QStringLiteral("逻辑"),
                            QStringLiteral("字节集"), QStringLiteral("通用")};
    QStringList functions;
    for (const QString &word : words) {
        for (const Operand &operand : operands) {
            const QString name =
                QStringLiteral("%1给%2").arg(QString::fromUtf8(operand.type), word);
            functions << QStringLiteral("函数 交%1() { %2 收%3(值) }")
                             .arg(name, declared(operand, QStringLiteral("值")), word)
                      << QStringLiteral("函数 还%1() %3 { %2 返回 值 }")
                             .arg(name, declared(operand, QStringLiteral("值")), word);
        }
    }
    for (const QString &word : words)
        functions << QStringLiteral("函数 收%1(%1 值) { 输出(值) }").arg(word);
    return functions;
}

QStringList allFunctions()
{
    QStringList functions;
    const auto add = [&functions](const QString &body) {
        functions << QStringLiteral("函数 试%1() { %2 }").arg(functions.size() + 1).arg(body);
    };
    for (const Operand &left : operands) {
        const QString leftText = declared(left, QStringLiteral("左")) + QLatin1Char(' ');
        for (const char *use : uses)
            add(leftText +
                QString::fromUtf8(use).replace(QStringLiteral("%1"), QStringLiteral("左")));
        for (const Operand &right : operands) {
            for (const char *pair : pairs)
                add(leftText + declared(right, QStringLiteral("右")) + QLatin1Char(' ') +
                    QString::fromUtf8(pair)
                        .replace(QStringLiteral("%1"), QStringLiteral("左"))
                        .replace(QStringLiteral("%2"), QStringLiteral("右")));
        }
    }
    return functions + passingFunctions();
}

// The lines of the errors that `check` tells.
QSet<int> refusedLines(const QString &path)
{
    const CliTest::Result result = CliTest::vorelc(
        {QStringLiteral("check"), QStringLiteral("--json"), path}, QFileInfo(path).path());
    QSet<int> lines;
    const QJsonArray diagnostics = QJsonDocument::fromJson(result.out).array();
    for (const QJsonValue &diagnostic : diagnostics) {
        if (diagnostic[QLatin1String("severity")].toString() == QLatin1String("error"))
            lines.insert(diagnostic[QLatin1String("line")].toInt());
    }
    return lines;
}

} // namespace

void TypeRulesTest::whatPassesCompiles()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("types.vc"));
    QStringList lines{QStringLiteral("类 盒子 { 属性 整数 值 = 0 }")};
    lines << allFunctions() << QStringLiteral("函数 主函数() { 输出(\"好\") }");
    const int all = lines.size();
    // Messages end after many, and the generator speaks when the checks are silent.
    QSet<int> refused;
    int taken = 0;
    do {
        for (int line : qAsConst(refused)) {
            QVERIFY(!lines.at(line - 1).isEmpty());
            lines[line - 1].clear();
            ++taken;
        }
        TestFiles::writeFile(path, lines.join(QLatin1Char('\n')).toUtf8());
        refused = refusedLines(path);
    } while (!refused.isEmpty());
    // Both sides must be there for the test to tell anything.
    QVERIFY(taken > all / 10 && taken < all * 9 / 10);
    const CliTest::Result built = CliTest::vorelc(
        {QStringLiteral("build"), QStringLiteral("--quiet"), QStringLiteral("--plain"),
         QStringLiteral("--config"), QStringLiteral("debug"), path},
        folder.path(), QByteArray(), 300000);
    const QStringList errors = built.err.split(QLatin1Char('\n')).filter(QStringLiteral("错误"));
    QVERIFY2(built.code == 0, qPrintable(errors.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(TypeRulesTest)
#include "type_rules_test.moc"
