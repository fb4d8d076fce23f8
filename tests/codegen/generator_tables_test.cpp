// The generator's data files agree with each other, with the catalogue and with the runtime.
#include "catalog/command_library.h"
#include "catalog/command_syntax.h"
#include "codegen/generator_tables.h"
#include "codegen/runtime_library.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

class GeneratorTablesTest : public QObject
{
    Q_OBJECT

private slots:
    void sizes();
    void lastValueStands();
    void everyDefaultIsGiven();
    void everyRecordLeadsToAFunction();
    void missingRuntimeFunctions();
};

void GeneratorTablesTest::sizes()
{
    const GeneratorTables &tables = GeneratorTables::instance();
    QCOMPARE(tables.commandMap.size(), 1008);
    QCOMPARE(tables.defaultArguments.size(), 198);
    QCOMPARE(tables.builtinNames.size(), 519);
    QCOMPARE(QSet<QString>(tables.builtinNames.begin(), tables.builtinNames.end()).size(), 519);
    QCOMPARE(tables.mainWindowEvents.size(), 18);
}

void GeneratorTablesTest::lastValueStands()
{
    const GeneratorTables &tables = GeneratorTables::instance();
    QCOMPARE(tables.commandText(QStringLiteral("#白色")), QStringLiteral("0xFFFFFF"));
    QCOMPARE(tables.commandText(QStringLiteral("#红色")),
             QStringLiteral("(int)(COLORREF)RGB(255,0,0)"));
    QCOMPARE(tables.commandText(QStringLiteral("延时")), QStringLiteral("Sleep"));
    // Full-width letters name the same command.
    QCOMPARE(tables.commandText(QStringLiteral("ＭＤ５")), QStringLiteral("VL_MD5"));
}

// A function whose runtime exists has its row of defaults, and none stands between required ones.
void GeneratorTablesTest::everyDefaultIsGiven()
{
    QFile file(QStringLiteral(":/codegen/default_arguments.json"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject rows = QJsonDocument::fromJson(file.readAll()).object();
    const QSet<QString> &implemented = RuntimeLibrary::instance().names();
    for (auto row = rows.begin(); row != rows.end(); ++row) {
        if (implemented.contains(row.key()))
            QVERIFY2(row->isArray(), qPrintable(row.key()));
    }
    for (const QString &target : GeneratorTables::instance().commandMap)
        QVERIFY(!target.isEmpty());
}

void GeneratorTablesTest::everyRecordLeadsToAFunction()
{
    const GeneratorTables &tables = GeneratorTables::instance();
    const QSet<QString> &implemented = RuntimeLibrary::instance().names();
    for (const CommandInfo &info : CommandLibrary::builtin().allCommands()) {
        if (info.syntax.isEmpty())
            continue;
        QVERIFY2(!readCommandSyntax(info.syntax).isEmpty(), qPrintable(info.name));
        const QString target =
            info.cppFunction.isEmpty() ? tables.commandText(info.name) : info.cppFunction;
        QVERIFY2(target == QLatin1String("Sleep") || implemented.contains(target),
                 qPrintable(info.name + QStringLiteral(" -> ") + target));
    }
}

// The number can only fall; windows, dialogs and the clipboard are what is left.
void GeneratorTablesTest::missingRuntimeFunctions()
{
    static const int kMost = 103;
    const QSet<QString> &implemented = RuntimeLibrary::instance().names();
    static const QRegularExpression name(QStringLiteral("\\bVL_[A-Za-z0-9_]+"));
    QStringList missing;
    for (const QString &target : GeneratorTables::instance().commandMap) {
        const QString function = name.match(target).captured();
        if (!function.isEmpty() && !implemented.contains(function))
            missing << function;
    }
    missing.removeDuplicates();
    missing.sort();
    qInfo("%d functions of the command map have no runtime yet: %s", missing.size(),
          qPrintable(missing.join(QLatin1Char(' '))));
    QVERIFY(missing.size() <= kMost);
}

QTEST_GUILESS_MAIN(GeneratorTablesTest)
#include "generator_tables_test.moc"
