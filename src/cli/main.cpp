// vorelc: the command line of VorelDesk.
#include "cli/cell_width.h"
#include "cli/cli_command.h"
#include "cli/interrupts.h"

#include <QCoreApplication>
#include <QTextCodec>

namespace {

QString padded(const QString &text, int width)
{
    return text + QString(qMax(1, width - cellWidth(text)), QLatin1Char(' '));
}

QString generalHelp()
{
    QString help = QStringLiteral("vorelc：Vorel 语言的命令行编译器\n\n"
                                  "用法：vorelc 命令 输入 [选项]\n\n命令：\n");
    for (const CliCommand &command : cliCommands()) {
        const QString head = QStringLiteral("  %1 %2").arg(QLatin1String(command.name),
                                                           QString::fromUtf8(command.usage));
        help += padded(head, 34) + QString::fromUtf8(command.summary) + QLatin1Char('\n');
    }
    return help + QStringLiteral(
                      "\n输入是工程文件（.vlproj）、工程文件夹，或一个 .vc 源文件。\n"
                      "“vorelc 命令 --help”显示该命令的全部选项。\n\n"
                      "例子：\n"
                      "  vorelc run 你好.vc                      编译并运行一个文件\n"
                      "  vorelc build 我的工程 --platform x86    编译工程的 32 位版本\n"
                      "  vorelc check 我的工程 --json            供编辑器使用的检查结果\n"
                      "  vorelc new gui 我的程序                 新建带窗口的工程\n"
                      "  vorelc commands 随机数                  查一个命令的用法\n\n"
                      "环境变量：\n"
                      "  VOREL_CACHE_DIR    运行库缓存目录\n"
                      "  VOREL_WINEPREFIX   wine 运行环境目录\n"
                      "  VOREL_NO_SPLIT=1   不使用运行库缓存，整体编译\n\n"
                      "退出码：0 完成，1 被拒绝或失败，2 用法错误；run 返回程序自己的退出码。\n");
}

QString commandHelp(const CliCommand &command)
{
    return QStringLiteral("用法：vorelc %1 %2\n\n%3\n\n选项：\n%4")
        .arg(QLatin1String(command.name), QString::fromUtf8(command.usage),
             QString::fromUtf8(command.details), optionHelp(command.options));
}

int wrongUsage(const QString &message, const QString &hint)
{
    Console::error(message);
    Console::tell(hint);
    return ExitCode::wrongUsage;
}

int runCommand(const CliCommand &command, const QStringList &arguments)
{
    const QString name = QLatin1String(command.name);
    const QString hint = QStringLiteral("用法：vorelc %1 %2\n“vorelc %1 --help”显示帮助。")
                             .arg(name, QString::fromUtf8(command.usage));
    CliOptions options;
    const QString error = readOptions(arguments, command.options, &options);
    if (options.help) {
        Console::result(commandHelp(command).toUtf8());
        return ExitCode::done;
    }
    if (!error.isEmpty())
        return wrongUsage(error, hint);
    if (options.inputs.size() < command.minInputs)
        return wrongUsage(QStringLiteral("命令 %1 缺少参数").arg(name), hint);
    if (options.inputs.size() > command.maxInputs) {
        return wrongUsage(
            QStringLiteral("多余的参数：%1").arg(options.inputs.at(command.maxInputs)), hint);
    }
    if (options.inputs.contains(QString()))
        return wrongUsage(QStringLiteral("参数不能为空"), hint);
    return command.run(options);
}

} // namespace

int main(int argc, char *argv[])
{
#ifndef Q_OS_WIN
    // File names and arguments are UTF-8, whatever the locale says.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vorelc"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VOREL_VERSION));
    Interrupts::install();
    QStringList arguments = application.arguments().mid(1);
    const QString first = arguments.value(0);
    if (first == QLatin1String("--version") || first == QLatin1String("-V")) {
        Console::result(QStringLiteral("vorelc " VOREL_VERSION));
        return ExitCode::done;
    }
    if (first == QLatin1String("help") && arguments.size() > 1 && findCommand(arguments.at(1))) {
        Console::result(commandHelp(*findCommand(arguments.at(1))).toUtf8());
        return ExitCode::done;
    }
    if (first == QLatin1String("--help") || first == QLatin1String("-h") ||
        first == QLatin1String("help")) {
        Console::result(generalHelp().toUtf8());
        return ExitCode::done;
    }
    const QString hint = QStringLiteral("“vorelc --help”显示全部命令。");
    if (arguments.isEmpty())
        return wrongUsage(QStringLiteral("没有给出命令"), hint);
    const CliCommand *command = findCommand(first);
    if (!command)
        return wrongUsage(QStringLiteral("未知的命令：%1").arg(first), hint);
    return runCommand(*command, arguments.mid(1));
}
