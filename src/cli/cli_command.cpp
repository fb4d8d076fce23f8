#include "cli/cli_command.h"

const QList<CliCommand> &cliCommands()
{
    static const QList<CliCommand> commands{
        {"build", "输入 [选项]", "编译，输出可执行文件的路径",
         "把 Vorel 程序编译成 Windows 可执行文件，并在标准输出上打印它的路径。\n"
         "工程的输出在“工程/build/平台/配置”下；单个文件的输出在临时目录下。",
         BuildOptions, 1, 1, runBuild},
        {"run", "输入 [选项] [-- 参数...]", "编译并运行，退出码就是程序的退出码",
         "编译程序并立刻运行它。程序的输入输出就是本命令的输入输出，按 Ctrl-C 结束程序。\n"
         "非 Windows 系统上用 wine 运行；没有显示器时用虚拟显示。\n"
         "编译失败时退出码为 1，程序不会运行。",
         BuildOptions | ProgramArguments, 1, 1, runRun},
        {"check", "输入 [--json]", "只检查，不调用 C++ 编译器",
         "检查语法并生成代码，但不写文件，也不调用 C++ 编译器。有错误时退出码为 1。\n"
         "--json 输出数组：{\"severity\":\"error\"|\"warning\",\"file\",\"line\",\"message\"}。",
         BuildOptions | JsonOption, 1, 1, runCheck},
        {"emit", "输入 [选项]", "输出生成的 C++ 代码",
         "在标准输出上打印完整的 C++ 程序：一个文件，可以单独编译。", BuildOptions, 1, 1, runEmit},
        {"tokens", "文件", "输出词法分析的结果（JSON）",
         "文件可以是 -，表示标准输入。输出数组：{\"type\",\"text\",\"line\",\"column\"}。",
         NoOptions, 1, 1, runTokens},
        {"tree", "文件", "输出语法树（JSON）",
         "文件可以是 -，表示标准输入。输出对象：\n"
         "{\"tree\":节点,\"errors\":[...],\"varTypes\":{...},\"classes\":{...}}。",
         NoOptions, 1, 1, runTree},
        {"commands", "[名称] [--json]", "列出全部命令，或显示一个命令的帮助",
         "不给名称时按类别列出全部内置命令；给出名称时显示该命令的语法、参数、返回值和例子。",
         JsonOption, 0, 1, runCommands},
        {"new", "种类 名称 [--dir 文件夹] [--window 类型]", "新建工程，打印工程文件的路径",
         "种类：gui 图形界面应用，console 控制台应用，empty 空项目，single 单个源文件（.vl）。\n"
         "新工程可以马上编译运行，源文件里有供初学者阅读的注释。",
         NewProjectOptions, 2, 2, runNew},
        {"clean", "输入", "删除编译的输出，打印删除的文件数",
         "只删除本程序编译产生的输出目录，不会动其他文件。", NoOptions, 1, 1, runClean},
    };
    return commands;
}

const CliCommand *findCommand(const QString &name)
{
    for (const CliCommand &command : cliCommands()) {
        if (name == QLatin1String(command.name))
            return &command;
    }
    return nullptr;
}
