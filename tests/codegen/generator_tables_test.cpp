// The generator's data files agree with each other, with the catalogue and with the runtime.
#include "catalog/command_library.h"
#include "catalog/command_syntax.h"
#include "codegen/component_tables.h"
#include "codegen/generator_tables.h"
#include "codegen/runtime_library.h"
#include "designer/model/component_types.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>
#include <algorithm>

class GeneratorTablesTest : public QObject
{
    Q_OBJECT

private slots:
    void sizes();
    void lastValueStands();
    void everyDefaultIsGiven();
    void everyRecordLeadsToAFunction();
    void missingRuntimeFunctions();
    void membersLeadToTheRuntime_data();
    void membersLeadToTheRuntime();
    void membersHaveChineseNames();
    void eventsOfEveryType();
};

void GeneratorTablesTest::sizes()
{
    const GeneratorTables &tables = GeneratorTables::instance();
    QCOMPARE(tables.commandMap.size(), 1008);
    QCOMPARE(tables.defaultArguments.size(), 198);
    QCOMPARE(tables.builtinNames.size(), 519);
    QCOMPARE(QSet<QString>(tables.builtinNames.begin(), tables.builtinNames.end()).size(), 519);
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
        if (info.isConstant())
            QVERIFY2(!tables.commandText(info.name).isEmpty(), qPrintable(info.name));
        if (!info.isCallable())
            continue;
        QVERIFY2(!readCommandSyntax(info.syntax).isEmpty(), qPrintable(info.name));
        const QString target =
            info.cppFunction.isEmpty() ? tables.commandText(info.name) : info.cppFunction;
        QVERIFY2(target == QLatin1String("Sleep") || implemented.contains(target),
                 qPrintable(info.name + QStringLiteral(" -> ") + target));
    }
}

// The number can only fall; what is left belongs to a library.
void GeneratorTablesTest::missingRuntimeFunctions()
{
    static const int kMost = 1;
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

void GeneratorTablesTest::membersLeadToTheRuntime_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("events") << ":/codegen/events.json";
    QTest::newRow("members") << ":/codegen/component_members.json";
    QTest::newRow("window messages") << ":/codegen/window_messages.inc";
    QTest::newRow("messages of designed windows") << ":/codegen/designed_window_messages.inc";
}

void GeneratorTablesTest::membersLeadToTheRuntime()
{
    QFETCH(QString, file);
    QFile tables(file);
    QVERIFY(tables.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(tables.readAll());
    // Names in quotes are those of window properties; parameters of handlers begin with "_".
    static const QRegularExpression name(QStringLiteral("(?<![\\w\"])VL_[A-Za-z0-9_]+"));
    QRegularExpressionMatchIterator names = name.globalMatch(text);
    while (names.hasNext()) {
        const QString found = names.next().captured();
        QVERIFY2(RuntimeLibrary::instance().names().contains(found) ||
                     found == QLatin1String("VL_Hotkey_OnHotKey"),
                 qPrintable(found));
    }
}

void GeneratorTablesTest::membersHaveChineseNames()
{
    const ComponentTables &tables = ComponentTables::instance();
    const auto isChinese = [](const QString &name) { return name.at(0).unicode() > 0x2000; };
    for (const VL::ComponentTypeInfo &type : VL::componentTypes()) {
        bool any = false;
        for (const QString &name : tables.memberNames(type.type)) {
            any = true;
            const ComponentMethod *method = tables.method(type.type, name, 0);
            if (method)
                QVERIFY2(std::any_of(method->names.begin(), method->names.end(), isChinese),
                         qPrintable(name));
            // A name that is read and one that is called mean the same on a type.
            QVERIFY2(method || tables.property(type.type, name), qPrintable(name));
        }
        QVERIFY2(any, type.key);
    }
    // The same name, written, in English and as the parser hands it on.
    const ComponentProperty *text = tables.property(VL::Button, QStringLiteral("文本"));
    QVERIFY(text);
    QCOMPARE(tables.property(VL::Button, QStringLiteral("text")), text);
    QCOMPARE(tables.property(VL::Button, QStringLiteral("_u6587_u672c")), text);
    QVERIFY(!tables.property(VL::Slider, QStringLiteral("文本")));
}

void GeneratorTablesTest::eventsOfEveryType()
{
    const ComponentTables &tables = ComponentTables::instance();
    for (const VL::ComponentTypeInfo &type : VL::componentTypes()) {
        if (type.type == VL::Window || type.type >= VL::HorizontalLayout)
            continue;
        QVERIFY2(tables.controlEvent(type.type, QStringLiteral("鼠标进入")), type.key);
        // No two events of a type share a handler.
        QSet<QString> heads;
        for (const ComponentEvent *event : tables.controlEvents(type.type)) {
            const QString head = event->handler + QString::number(event->parameters.size());
            QVERIFY2(!heads.contains(head), qPrintable(head));
            heads.insert(head);
        }
    }
    QCOMPARE(tables.windowEvent(QStringLiteral("大小改变")),
             tables.windowEvent(QStringLiteral("尺寸改变")));
    QVERIFY(!tables.windowEvent(QStringLiteral("没有这个事件")));
}

QTEST_GUILESS_MAIN(GeneratorTablesTest)
#include "generator_tables_test.moc"
