// The answers for a program without windows, as the catalogue gives them.
#include "frontend/program_context.h"

const CommandInfo *ProgramContext::command(const QString &name) const
{
    const CommandInfo *info = CommandLibrary::builtin().commandInfo(name);
    return info && info->isCallable() ? info : nullptr;
}

ValueType ProgramContext::commandResult(const QString &name) const
{
    const CommandInfo *info = command(name);
    return info ? valueTypeOf(info->returnType) : ValueType::Unknown;
}

std::optional<ValueType> ProgramContext::constant(const QString &name) const
{
    const CommandInfo *info = CommandLibrary::builtin().commandInfo(name);
    if (!info || !info->isConstant())
        return std::nullopt;
    return valueTypeOf(info->returnType);
}

QStringList ProgramContext::knownNames() const
{
    QStringList names;
    const QList<CommandInfo> &commands = CommandLibrary::builtin().allCommands();
    for (const CommandInfo &info : commands)
        names << info.name << info.aliases;
    return names;
}

std::optional<NamedComponent> ProgramContext::component(const QString &) const
{
    return std::nullopt;
}

std::optional<NamedComponent> ProgramContext::component(const QString &, const QString &) const
{
    return std::nullopt;
}

ValueType ProgramContext::memberType(const NamedComponent &, const QString &, int) const
{
    return ValueType::Unknown;
}

QList<NamedValue> ProgramContext::eventValues(const QString &) const
{
    return {};
}

std::optional<ValueType> ProgramContext::eventResult(const QString &) const
{
    return std::nullopt;
}

bool ProgramContext::isUnknownEvent(const QString &) const
{
    return false;
}

bool ProgramContext::isInConstantsFile(int) const
{
    return false;
}
