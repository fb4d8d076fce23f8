// The answers behind generator_context.h.
#include "codegen/generator_context.h"

#include "codegen/generator_tables.h"
#include "codegen/names.h"

namespace {

// "#FF0000" and "#F00".
bool isColour(const QString &name)
{
    bool isHexadecimal = false;
    name.midRef(1).toUInt(&isHexadecimal, 16);
    return name.startsWith(QLatin1Char('#')) && (name.size() == 7 || name.size() == 4) &&
           isHexadecimal;
}

NamedComponent named(const ComponentRef &component)
{
    return {component.type};
}

} // namespace

GeneratorContext::GeneratorContext(const QList<WindowRecord> &windows,
                                   const CommandLibrary &commands,
                                   std::function<bool(int)> isConstantsLine)
    : ProgramContext(commands), m_windows(windows), m_isConstantsLine(std::move(isConstantsLine))
{}

const CommandInfo *GeneratorContext::command(const QString &name) const
{
    const CommandInfo *info = m_commands.commandInfo(name);
    if (!info || !info->isCallable())
        info = m_commands.commandInfo(GeneratorTables::instance().canonicalCommand(name));
    return info && info->isCallable() ? info : nullptr;
}

bool GeneratorContext::isCommand(const QString &name) const
{
    const GeneratorTables &tables = GeneratorTables::instance();
    if (tables.conversions.contains(name) || command(name))
        return true;
    return !constant(name) && (!tables.commandText(tables.canonicalCommand(name)).isEmpty() ||
                               !tables.commandText(name).isEmpty());
}

ValueType GeneratorContext::commandResult(const QString &name) const
{
    const GeneratorTables &tables = GeneratorTables::instance();
    if (tables.conversions.contains(name))
        return valueTypeOf(name);
    const auto fixed = tables.callTypes.constFind(name);
    if (fixed != tables.callTypes.cend())
        return valueTypeOf(*fixed);
    const CommandInfo *info = command(name);
    return info ? valueTypeOf(info->returnType) : ValueType::Unknown;
}

std::optional<ValueType> GeneratorContext::constant(const QString &name) const
{
    const CommandInfo *info = m_commands.commandInfo(name);
    if (info && info->isConstant())
        return valueTypeOf(info->returnType);
    if (!name.startsWith(QLatin1Char('#')))
        return std::nullopt;
    if (isColour(name))
        return ValueType::Int;
    return GeneratorTables::instance().commandText(name).isEmpty()
               ? std::nullopt
               : std::optional<ValueType>(ValueType::Unknown);
}

std::optional<NamedComponent> GeneratorContext::component(const QString &name) const
{
    const auto found = m_windows.component(name);
    return found ? std::optional<NamedComponent>(named(*found)) : std::nullopt;
}

std::optional<NamedComponent> GeneratorContext::component(const QString &window,
                                                          const QString &name) const
{
    const auto found = m_windows.componentIn(window, name);
    return found ? std::optional<NamedComponent>(named(*found)) : std::nullopt;
}

QStringList GeneratorContext::componentNames() const
{
    QStringList names;
    for (const DesignedWindow &window : m_windows.all()) {
        for (const DesignedControl &control : window.controls())
            names << control.name;
        names << window.name();
    }
    return names;
}

ValueType GeneratorContext::memberType(const NamedComponent &component, const QString &member,
                                       int arguments) const
{
    return ProgramWindows::memberType(member, component.type, arguments);
}

const ComponentEvent *GeneratorContext::eventOf(const QString &function) const
{
    const NamedEvent event = m_windows.event(function);
    if (event.control)
        return ComponentTables::instance().controlEvent(event.control->component.type, event.word);
    return event.window ? ComponentTables::instance().windowEvent(event.word) : nullptr;
}

QList<NamedValue> GeneratorContext::eventValues(const QString &function) const
{
    QList<NamedValue> values;
    const ComponentEvent *event = eventOf(function);
    if (!event)
        return values;
    for (const EventParameter &parameter : event->parameters)
        values << NamedValue{parameter.word, valueTypeOf(parameter.localType())};
    return values;
}

std::optional<ValueType> GeneratorContext::eventResult(const QString &function) const
{
    const ComponentEvent *event = eventOf(function);
    return event ? std::optional<ValueType>(valueTypeOf(event->result)) : std::nullopt;
}

bool GeneratorContext::isUnknownEvent(const QString &function) const
{
    const NamedEvent event = m_windows.event(function);
    return event.window && !eventOf(function) && !event.isMenuItem();
}
