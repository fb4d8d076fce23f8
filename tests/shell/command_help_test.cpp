// The help of commands as the user reads it.
#include "shell/command_help.h"

#include "catalog/command_library.h"
#include "shell/command_help_browser.h"

#include <QtTest>

class CommandHelpTest : public QObject
{
    Q_OBJECT

private slots:
    void tellsEveryPart();
    void leavesOutWhatIsUnknown();
    void takesNoTextForHtml();
    void showsEveryBuiltinCommand();
    void beginsWithAHint();
};

void CommandHelpTest::tellsEveryPart()
{
    CommandInfo command;
    command.name = "求和";
    command.category = "数学";
    command.description = "把两个数加起来。";
    command.syntax = "求和(整数 甲, 整数 乙)";
    command.parameters = QStringList{"甲: 第一个数", "乙"};
    command.returnType = "整数";
    command.example = "如果 真\n    输出(求和(1, 2))";
    command.output = "3";
    command.note = "不检查溢出。";
    command.aliases = QStringList{"加", "相加"};
    CommandHelpBrowser browser;
    browser.showCommand(command);
    const QString text = browser.toPlainText().replace(QChar::Nbsp, QLatin1Char(' '));
    QCOMPARE(text, QString("求和  数学\n"
                           "把两个数加起来。\n"
                           "语法\n求和(整数 甲, 整数 乙)\n"
                           "参数\n甲\n第一个数\n乙\n\n"
                           "返回值\n整数\n"
                           "例子\n如果 真\n    输出(求和(1, 2))\n"
                           "运行结果\n3\n"
                           "说明\n不检查溢出。\n"
                           "别名\n加、相加"));
}

void CommandHelpTest::leavesOutWhatIsUnknown()
{
    CommandInfo command;
    command.name = "甲";
    CommandHelpBrowser browser;
    browser.showCommand(command);
    QCOMPARE(browser.toPlainText(), QString("甲"));
}

void CommandHelpTest::takesNoTextForHtml()
{
    const QString hostile = "<b>粗</b>&amp;<img src='x'>";
    CommandInfo command;
    command.name = command.category = command.description = command.syntax = command.returnType =
        command.example = command.output = command.note = hostile;
    command.parameters = QStringList{hostile + ": " + hostile};
    command.aliases = QStringList{hostile};
    CommandHelpBrowser browser;
    browser.showCommand(command);
    QCOMPARE(browser.toPlainText().count(hostile), 11);
}

void CommandHelpTest::showsEveryBuiltinCommand()
{
    const QList<CommandInfo> &commands = CommandLibrary::builtin().allCommands();
    QVERIFY(!commands.isEmpty());
    CommandHelpBrowser browser;
    for (const CommandInfo &command : commands) {
        browser.showCommand(command);
        const QString text = browser.toPlainText();
        for (const QString &part : {command.name, command.syntax, command.example, command.output})
            QVERIFY2(text.contains(part), qPrintable(command.name + ": " + part));
    }
}

void CommandHelpTest::beginsWithAHint()
{
    CommandHelpBrowser browser;
    const QString hint = browser.toPlainText();
    QVERIFY(hint.startsWith("💡 在左侧支持库中点击命令，或在代码中输入函"));
    QVERIFY(!browser.showCommand(QString("没有这个命令")));
    QCOMPARE(browser.toPlainText(), hint);
    QVERIFY(browser.showCommand(QString("输出")));
    QVERIFY(browser.toPlainText().startsWith("输出"));
}

QTEST_MAIN(CommandHelpTest)
#include "command_help_test.moc"
