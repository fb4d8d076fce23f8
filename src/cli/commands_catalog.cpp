// vorelc commands.
#include "catalog/command_library.h"
#include "cli/cli_command.h"
#include "cli/json_text.h"

namespace {

QByteArray recordJson(const CommandInfo &info)
{
    const QList<QPair<const char *, QString>> texts{{"name", info.name},
                                                    {"category", info.category},
                                                    {"description", info.description},
                                                    {"syntax", info.syntax},
                                                    {"returnType", info.returnType},
                                                    {"example", info.example},
                                                    {"note", info.note},
                                                    {"cppFunction", info.cppFunction},
                                                    {"type", info.type},
                                                    {"memberOf", info.memberOf}};
    QByteArray json("{");
    for (const auto &text : texts) {
        json += json.size() > 1 ? "," : "";
        json += QByteArray("\"") + text.first + "\":" + JsonText::string(text.second);
    }
    return json + ",\"parameters\":" + JsonText::strings(info.parameters) +
           ",\"aliases\":" + JsonText::strings(info.aliases) + '}';
}

QByteArray libraryJson(const QList<CommandInfo> &commands)
{
    QByteArray json("[");
    for (const CommandInfo &info : commands)
        json += (json.size() > 1 ? ",\n " : "") + recordJson(info);
    return json + "]\n";
}

// A heading with its lines indented below it; nothing for an empty text.
QString paragraph(const char *heading, const QString &text)
{
    if (text.trimmed().isEmpty())
        return QString();
    QString result = QString::fromUtf8(heading) + QStringLiteral("：\n");
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines)
        result += QLatin1String("  ") + line + QLatin1Char('\n');
    return result;
}

QString helpOf(const CommandInfo &info)
{
    QString help = info.name;
    if (!info.category.isEmpty())
        help += QStringLiteral("（%1）").arg(info.category);
    help += QLatin1Char('\n');
    if (!info.description.isEmpty())
        help += info.description + QLatin1Char('\n');
    help += QLatin1Char('\n');
    help += paragraph("语法", info.syntax);
    help += paragraph("参数", info.parameters.join(QLatin1Char('\n')));
    help += paragraph("返回值", info.returnType);
    help += paragraph("例子", info.example);
    help += paragraph("说明", info.note);
    help += paragraph("别名", info.aliases.join(QStringLiteral("、")));
    return help;
}

QString listByCategory(const QList<CommandInfo> &commands)
{
    // Categories in the order of their first command.
    QStringList categories;
    QHash<QString, QString> lines;
    for (const CommandInfo &info : commands) {
        if (!lines.contains(info.category))
            categories << info.category;
        const QString description = info.description.section(QLatin1Char('\n'), 0, 0);
        lines[info.category] +=
            QStringLiteral("  %1%2\n")
                .arg(info.name,
                     description.isEmpty() ? QString() : QStringLiteral("  —  ") + description);
    }
    QString list;
    for (const QString &category : qAsConst(categories)) {
        list += (list.isEmpty() ? QString() : QStringLiteral("\n")) +
                QStringLiteral("【%1】\n").arg(category) + lines.value(category);
    }
    return list;
}

int unknownCommand(const CommandLibrary &library, const QString &name)
{
    QStringList similar;
    for (const CommandInfo &info : library.allCommands()) {
        if (similar.size() < 8 && (info.name.contains(name) || name.contains(info.name)))
            similar << info.name;
    }
    Console::error(QStringLiteral("没有名为“%1”的命令").arg(name));
    if (!similar.isEmpty())
        Console::tell(QStringLiteral("相近的命令：%1").arg(similar.join(QStringLiteral("、"))));
    return ExitCode::failed;
}

} // namespace

int runCommands(const CliOptions &options)
{
    const CommandLibrary &library = CommandLibrary::builtin();
    if (options.inputs.isEmpty()) {
        Console::result(options.json ? libraryJson(library.allCommands())
                                     : listByCategory(library.allCommands()).toUtf8());
        return ExitCode::done;
    }
    const QString name = options.inputs.first();
    const CommandInfo *info = library.commandInfo(name);
    if (!info)
        return unknownCommand(library, name);
    Console::result(options.json ? recordJson(*info) + '\n' : helpOf(*info).toUtf8());
    return ExitCode::done;
}
