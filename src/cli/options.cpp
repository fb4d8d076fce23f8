#include "cli/options.h"

namespace {

// One option: where its value goes, or which switch it sets.
struct OptionSpec
{
    const char *name;
    const char *shortName;
    unsigned group; // 0: every command has it
    // The allowed values, separated by "|"; a word in capitals stands for any. Null without a
    // value.
    const char *values;
    const char *help;
    QString CliOptions::*value;
    void (*set)(CliOptions &);
};

const OptionSpec optionSpecs[] = {
    {"--platform", nullptr, BuildOptions, "x64|x86", "目标平台，默认取工程设置，再默认 x64",
     &CliOptions::platform, nullptr},
    {"--config", nullptr, BuildOptions, "release|debug", "构建配置，默认 release",
     &CliOptions::config, nullptr},
    {"--backend", nullptr, BuildOptions, "win32|vlwin", "界面后端，默认取工程设置，再默认 win32",
     &CliOptions::backend, nullptr},
    {"--compiler", nullptr, BuildOptions, "MSVC|MinGW", "C++ 编译器；非 Windows 系统总是 MinGW",
     &CliOptions::compiler, nullptr},
    {"--rebuild", nullptr, BuildOptions, nullptr, "先清除旧的输出，再从头编译", nullptr,
     [](CliOptions &options) { options.rebuild = true; }},
    {"--plain", nullptr, BuildOptions, nullptr, "只显示错误和警告本身，不附源代码行，不用颜色",
     nullptr, [](CliOptions &options) { options.plain = true; }},
    {"--dir", nullptr, NewProjectOptions, "DIR", "新工程放在哪个文件夹下，默认是当前文件夹",
     &CliOptions::folder, nullptr},
    {"--window", nullptr, NewProjectOptions, "win32|vlwin", "窗口的类型，默认 win32",
     &CliOptions::windowType, nullptr},
    {"--json", nullptr, JsonOption, nullptr, "以 JSON 格式输出结果", nullptr,
     [](CliOptions &options) { options.json = true; }},
    {"--quiet", "-q", 0, nullptr, "不显示进度，只显示错误和警告", nullptr,
     [](CliOptions &options) { options.verbosity = Verbosity::Quiet; }},
    {"--verbose", "-v", 0, nullptr, "显示详细过程，包括构建工具的原始输出", nullptr,
     [](CliOptions &options) { options.verbosity = Verbosity::Verbose; }},
    {"--help", "-h", 0, nullptr, "显示这份帮助", nullptr,
     [](CliOptions &options) { options.help = true; }},
};

const OptionSpec *findOption(const QString &name, unsigned groups)
{
    for (const OptionSpec &spec : optionSpecs) {
        const bool matches = name == QLatin1String(spec.name) ||
                             (spec.shortName && name == QLatin1String(spec.shortName));
        if (matches && (spec.group == 0 || (spec.group & groups)))
            return &spec;
    }
    return nullptr;
}

// The allowed spelling of `given`, which may differ in case; empty if it is not allowed.
QString allowedValue(const OptionSpec &spec, const QString &given)
{
    const QString allowed = QString::fromLatin1(spec.values);
    if (allowed.at(0).isUpper() && allowed == allowed.toUpper())
        return given;
    const QStringList values = allowed.split(QLatin1Char('|'));
    for (const QString &value : values) {
        if (value.compare(given, Qt::CaseInsensitive) == 0)
            return value;
    }
    return QString();
}

} // namespace

QString readOptions(const QStringList &arguments, unsigned groups, CliOptions *options)
{
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--") && (groups & ProgramArguments)) {
            options->programArguments = arguments.mid(i + 1);
            return QString();
        }
        // "-" alone is standard input.
        if (!argument.startsWith(QLatin1Char('-')) || argument.size() == 1) {
            options->inputs << argument;
            continue;
        }
        const QString name = argument.section(QLatin1Char('='), 0, 0);
        const OptionSpec *spec = findOption(name, groups);
        if (!spec)
            return QStringLiteral("未知的选项：%1").arg(argument);
        if (!spec->values) {
            if (argument.contains(QLatin1Char('=')))
                return QStringLiteral("选项 %1 不带值").arg(name);
            spec->set(*options);
            continue;
        }
        const bool inside = argument.contains(QLatin1Char('='));
        if (!inside && ++i >= arguments.size())
            return QStringLiteral("选项 %1 缺少值（可用：%2）")
                .arg(name, QLatin1String(spec->values));
        const QString given = inside ? argument.section(QLatin1Char('='), 1) : arguments.at(i);
        options->*spec->value = allowedValue(*spec, given);
        if ((options->*spec->value).isEmpty()) {
            return QStringLiteral("选项 %1 的值无效：%2（可用：%3）")
                .arg(name, given, QLatin1String(spec->values));
        }
    }
    return QString();
}

QString optionHelp(unsigned groups)
{
    QString help;
    for (const OptionSpec &spec : optionSpecs) {
        if (spec.group != 0 && !(spec.group & groups))
            continue;
        QString head = QLatin1String(spec.name);
        if (spec.shortName)
            head = QLatin1String(spec.shortName) + QLatin1String(", ") + head;
        if (spec.values)
            head += QLatin1Char(' ') + QLatin1String(spec.values);
        help += QStringLiteral("  %1 %2\n").arg(head, -26).arg(QString::fromUtf8(spec.help));
    }
    if (groups & ProgramArguments)
        help += QStringLiteral("  %1 %2\n")
                    .arg(QStringLiteral("-- 参数..."), -24)
                    .arg(QStringLiteral("传给被运行程序的参数"));
    return help;
}
