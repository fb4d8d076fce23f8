// Reading the catalogue and the call forms in it.
#include "catalog/command_library.h"
#include "catalog/command_syntax.h"

#include <QTemporaryFile>
#include <QtTest>

class CommandLibraryTest : public QObject
{
    Q_OBJECT

private slots:
    void syntax_data();
    void syntax();
    void parameterAt();
    void broken_data();
    void broken();
    void aliases();
    void kinds_data();
    void kinds();
    void builtin();
};

// A parameter as one text: "文本/数组 名字", "[...]" around an optional one, "&" ahead of a
// callback.
static QString shown(const CommandParameter &parameter)
{
    const QString text = (parameter.callback ? QStringLiteral("&") : QString()) +
                         parameter.types.join(QLatin1Char('/')) + QLatin1Char(' ') + parameter.name;
    return parameter.optional ? QLatin1Char('[') + text + QLatin1Char(']') : text;
}

void CommandLibraryTest::syntax_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("several") << QStringLiteral("输出(通用 内容1, [通用 内容2], ...)")
                             << QStringList{QStringLiteral("通用 内容1|[通用 内容2]|..")};
    QTest::newRow("dots in brackets, behind a name, alone")
        << QStringLiteral("甲(文本 段, [...])\n乙(通用 值...)\n丙(...)")
        << QStringList{QStringLiteral("文本 段|.."), QStringLiteral("通用 值|.."),
                       QStringLiteral("..")};
    QTest::newRow("brackets around several parts")
        << QStringLiteral("取(文本 名, [整数 起, [整数 止]], 逻辑 全)\n取([整数 起, 整数 止])")
        << QStringList{QStringLiteral("文本 名|[整数 起]|[整数 止]|逻辑 全"),
                       QStringLiteral("[整数 起]|[整数 止]")};
    QTest::newRow("quoted defaults")
        << QStringLiteral("分割(文本 原文, [文本 分隔=\",\"], [文本 左=\"[...\"], 整数 数)")
        << QStringList{QStringLiteral("文本 原文|[文本 分隔]|[文本 左]|整数 数")};
    QTest::newRow("callbacks") << QStringLiteral("启动([&函数名], & 另一个, 通用 &值)")
                               << QStringList{
                                      QStringLiteral("[&通用 函数名]|&通用 另一个|通用 值")};
    QTest::newRow("blanks and empty parts")
        << QStringLiteral("  取 (  整数   位置 , , 句柄/整数\t窗口,) ")
        << QStringList{QStringLiteral("整数 位置|句柄/整数 窗口")};
    QTest::newRow("words that only look like types")
        << QStringLiteral("取(文本名 长, 文本/图片 内容, 数组)")
        << QStringList{QStringLiteral("通用 文本名 长|通用 文本/图片 内容|数组 ")};
    QTest::newRow("no parameters") << QStringLiteral("取当前时间()") << QStringList{QString()};
    QTest::newRow("overloads") << QStringLiteral("最大(整数 甲, 整数 乙)\n\n最大(数组 全部)")
                               << QStringList{QStringLiteral("整数 甲|整数 乙"),
                                              QStringLiteral("数组 全部")};
    QTest::newRow("no brackets") << QStringLiteral("变量 变量名 = 值") << QStringList();
    QTest::newRow("type list and callback")
        << QStringLiteral("筛选(数组/二维数组 源, &函数名)")
        << QStringList{QStringLiteral("数组/二维数组 源|&通用 函数名")};
    QTest::newRow("untyped, default, inner brackets")
        << QStringLiteral("取(名, [整数 位置 = (1, 2)])")
        << QStringList{QStringLiteral("通用 名|[整数 位置]")};
}

void CommandLibraryTest::syntax()
{
    QFETCH(QString, text);
    QFETCH(QStringList, expected);
    QStringList actual;
    for (const CommandOverload &overload : readCommandSyntax(text)) {
        QStringList parameters;
        for (const CommandParameter &parameter : overload.parameters)
            parameters << shown(parameter);
        if (overload.variadic)
            parameters << QStringLiteral("..");
        actual << parameters.join(QLatin1Char('|'));
    }
    QCOMPARE(actual, expected);
}

void CommandLibraryTest::parameterAt()
{
    const QList<CommandOverload> overloads =
        readCommandSyntax(QStringLiteral("甲(文本 名, [整数 值], ...)\n乙(文本 名)\n丙(...)"));
    QCOMPARE(overloads.at(0).parameterAt(0)->name, QStringLiteral("名"));
    QCOMPARE(overloads.at(0).parameterAt(7)->name, QStringLiteral("值"));
    QVERIFY(!overloads.at(1).parameterAt(1));
    QVERIFY(!overloads.at(2).parameterAt(0));
}

void CommandLibraryTest::broken_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut off") << QByteArray("{\"commands\": [{\"name\": \"a\"");
    QTest::newRow("binary") << QByteArray("\x00\xFF\xFE\x01", 4);
    QTest::newRow("other types") << QByteArray("{\"commands\": 5}");
}

void CommandLibraryTest::broken()
{
    QFETCH(QByteArray, content);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(content);
    file.close();
    QVERIFY(CommandLibrary(file.fileName()).allCommands().isEmpty());
}

void CommandLibraryTest::aliases()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(
        QStringLiteral("{\"commands\": [{\"name\": \"甲\", \"category\": \"c\", \"aliases\": "
                       "[\"乙\", \"丙\"]}, {\"name\": \"丙\", \"category\": \"c\"}]}")
            .toUtf8());
    file.close();
    const CommandLibrary library(file.fileName());
    QCOMPARE(library.commandInfo(QStringLiteral("乙"))->name, QStringLiteral("甲"));
    QCOMPARE(library.commandInfo(QStringLiteral("丙"))->name, QStringLiteral("丙"));
    QVERIFY(!library.commandInfo(QStringLiteral("丁")));
}

void CommandLibraryTest::kinds_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<bool>("callable");
    QTest::addColumn<bool>("constant");
    QTest::newRow("command") << QByteArray() << true << false;
    QTest::newRow("other type") << QByteArray(", \"type\": \"命令\"") << true << false;
    QTest::newRow("constant") << QByteArray(", \"type\": \"常量\"") << false << true;
    QTest::newRow("language form") << QByteArray(", \"type\": \"语法\"") << false << false;
    QTest::newRow("member") << QByteArray(", \"memberOf\": \"按钮\"") << false << false;
}

void CommandLibraryTest::kinds()
{
    QFETCH(QByteArray, keys);
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write("{\"commands\": [{\"name\": \"a\"" + keys + "}]}");
    file.close();
    const CommandLibrary library(file.fileName());
    QTEST(library.commandInfo(QStringLiteral("a"))->isCallable(), "callable");
    QTEST(library.commandInfo(QStringLiteral("a"))->isConstant(), "constant");
}

void CommandLibraryTest::builtin()
{
    const CommandInfo *info = CommandLibrary::builtin().commandInfo(QStringLiteral("替换"));
    QVERIFY(info);
    QVERIFY(info->isCallable());
    QVERIFY(!info->description.isEmpty());
    QCOMPARE(info->returnType, QStringLiteral("文本"));
    const CommandInfo *constant = CommandLibrary::builtin().commandInfo(QStringLiteral("#红色"));
    QVERIFY(constant && constant->isConstant());
}

QTEST_GUILESS_MAIN(CommandLibraryTest)
#include "command_library_test.moc"
