// GeneratorContext: what the generator's tables and the windows of a program tell the checks.
#pragma once

#include "codegen/program_windows.h"
#include "frontend/program_context.h"

#include <functional>

// Built for one program; `commands` must outlive it.
class GeneratorContext : public ProgramContext
{
public:
    // `isConstantsLine`: whether a merged line belongs to the file of global constants.
    GeneratorContext(const QList<WindowRecord> &windows, const CommandLibrary &commands,
                     std::function<bool(int)> isConstantsLine);

    const CommandInfo *command(const QString &name) const override;
    bool isCommand(const QString &name) const override;
    ValueType commandResult(const QString &name) const override;
    std::optional<ValueType> constant(const QString &name) const override;

    std::optional<NamedComponent> component(const QString &name) const override;
    std::optional<NamedComponent> component(const QString &window,
                                            const QString &name) const override;
    QStringList componentNames() const override;
    ValueType memberType(const NamedComponent &component, const QString &member,
                         int arguments) const override;
    QList<NamedValue> eventValues(const QString &function) const override;
    std::optional<ValueType> eventResult(const QString &function) const override;

    bool isUnknownEvent(const QString &function) const override;

    bool isInConstantsFile(int line) const override { return m_isConstantsLine(line); }

private:
    const ComponentEvent *eventOf(const QString &function) const;

    ProgramWindows m_windows;
    std::function<bool(int)> m_isConstantsLine;
};
