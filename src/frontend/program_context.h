// ProgramContext: what the semantic checks must know of a program beyond its source.
#pragma once

#include "catalog/command_library.h"
#include "frontend/value_type.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// A name with the type of its value.
struct NamedValue
{
    QString name;
    ValueType type = ValueType::Unknown;
};

// A component or a window that a name in source means. The numbers of the types are those of the
// forms.
struct NamedComponent
{
    int type = 0;
};

// Commands, named constants, windows and components. The answers of this class are those for a
// program without any: the catalogue is asked, everything else is unknown.
class ProgramContext
{
public:
    // `commands` must outlive the context.
    explicit ProgramContext(const CommandLibrary &commands = CommandLibrary::builtin())
        : m_commands(commands)
    {}
    virtual ~ProgramContext() = default;
    ProgramContext(const ProgramContext &) = delete;
    ProgramContext &operator=(const ProgramContext &) = delete;

    // The record of a command that can be called; null without one.
    virtual const CommandInfo *command(const QString &name) const;
    // Whether `name(...)` is a call of a command, with or without a record.
    virtual bool isCommand(const QString &name) const { return command(name) != nullptr; }
    // What such a call gives.
    virtual ValueType commandResult(const QString &name) const;
    // A name that stands for a value, such as "#蓝"; none for anything else.
    virtual std::optional<ValueType> constant(const QString &name) const;
    // Names to suggest.
    QStringList commandNames() const;
    QStringList constantNames() const;

    virtual std::optional<NamedComponent> component(const QString &name) const;
    // A component of another window, "窗口.组件".
    virtual std::optional<NamedComponent> component(const QString &window,
                                                    const QString &name) const;
    virtual QStringList componentNames() const { return {}; }
    // The type of a property, `arguments` -1, or of what a method gives; Unknown when in doubt.
    virtual ValueType memberType(const NamedComponent &component, const QString &member,
                                 int arguments) const;
    // The values that an event hands to its function ("按钮1.单击") without being parameters, and
    // what the function may return; none when the name is no event.
    virtual QList<NamedValue> eventValues(const QString &function) const;
    virtual std::optional<ValueType> eventResult(const QString &function) const;

    // Whether a function is named after a window or component that has no such event.
    virtual bool isUnknownEvent(const QString &function) const;

    // Whether a merged line belongs to the file of global constants.
    virtual bool isInConstantsFile(int line) const;

protected:
    const CommandLibrary &m_commands;
};
