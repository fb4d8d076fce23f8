// The answers for a program without windows, as the catalogue gives them.
#include "frontend/program_context.h"

namespace {

// The names of the records that `isWanted` picks.
template <typename Predicate>
QStringList namesOf(const CommandLibrary &commands, Predicate isWanted)
{
    QStringList names;
    for (const CommandInfo &info : commands.allCommands()) {
        if (isWanted(info))
            names << info.name << info.aliases;
    }
    return names;
}

} // namespace

const CommandInfo *ProgramContext::command(const QString &name) const
{
    const CommandInfo *info = m_commands.commandInfo(name);
    return info && info->isCallable() ? info : nullptr;
}

ValueType ProgramContext::commandResult(const QString &name) const
{
    const CommandInfo *info = command(name);
    return info ? valueTypeOf(info->returnType) : ValueType::Unknown;
}

std::optional<ValueType> ProgramContext::constant(const QString &name) const
{
    const CommandInfo *info = m_commands.commandInfo(name);
    if (!info || !info->isConstant())
        return std::nullopt;
    return valueTypeOf(info->returnType);
}

QStringList ProgramContext::commandNames() const
{
    return namesOf(m_commands, [](const CommandInfo &info) { return info.isCallable(); });
}

QStringList ProgramContext::constantNames() const
{
    return namesOf(m_commands, [](const CommandInfo &info) { return info.isConstant(); });
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
