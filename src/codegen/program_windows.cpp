// Looking up windows, components and events by their names.
#include "codegen/program_windows.h"

#include "codegen/names.h"
#include "designer/model/component_types.h"

#include <algorithm>

bool NamedEvent::isMenuItem() const
{
    return word.startsWith(menuPrefix());
}

QString NamedEvent::menuPrefix()
{
    return QStringLiteral("右键菜单_");
}

// The start window comes first; what is looked up by name is found there before elsewhere.
ProgramWindows::ProgramWindows(const QList<WindowRecord> &records)
{
    if (records.isEmpty())
        return;
    int start = 0;
    for (int i = records.size() - 1; i >= 0; --i) {
        if (records.at(i).isStartup)
            start = i;
    }
    const int kFirstControl = 1001;
    m_windows << DesignedWindow(records.at(start), true, kFirstControl);
    for (int i = 0; i < records.size(); ++i) {
        if (i != start)
            m_windows << DesignedWindow(records.at(i), false, m_windows.last().nextId());
    }
}

QStringList ProgramWindows::names() const
{
    QStringList names;
    for (const DesignedWindow &window : m_windows)
        names << window.name();
    return names;
}

const DesignedWindow *ProgramWindows::named(const QString &name) const
{
    const QString normal = Names::normalized(name);
    for (const DesignedWindow &window : m_windows) {
        if (window.name() == name || Names::normalized(window.name()) == normal ||
            Names::sanitize(window.name()) == name)
            return &window;
    }
    static const QStringList mainNames{
        QStringLiteral("主窗口"), QStringLiteral("主窗"), QStringLiteral("MainWindow"),
        Names::sanitize(QStringLiteral("主窗口")), Names::sanitize(QStringLiteral("主窗"))};
    return mainNames.contains(normal) && !m_windows.isEmpty() ? &m_windows.first() : nullptr;
}

std::optional<ComponentRef> ProgramWindows::component(const QString &written) const
{
    const QString name = written.trimmed();
    const auto known = m_known.constFind(name);
    if (known != m_known.cend())
        return *known;
    for (const DesignedWindow &window : m_windows) {
        const DesignedControl *control = window.control(name);
        if (control) {
            const ComponentRef ref{control->handle, control->component.type, control->name};
            return *m_known.insert(name, ref);
        }
    }
    if (const DesignedWindow *window = named(name)) {
        const ComponentRef ref{window->handle(), VL::Window, window->name()};
        return *m_known.insert(name, ref);
    }
    if (Names::componentNumber(Names::normalized(name)).isEmpty())
        return std::nullopt;
    return ComponentRef{Names::handle(Names::sanitizeComponent(name)), VL::NoComponentType, name};
}

std::optional<ComponentRef> ProgramWindows::componentIn(const QString &window,
                                                        const QString &name) const
{
    const DesignedWindow *owner = named(window.trimmed());
    const DesignedControl *control = owner ? owner->control(name.trimmed()) : nullptr;
    if (!control)
        return std::nullopt;
    return ComponentRef{control->handle, control->component.type, control->name};
}

NamedEvent ProgramWindows::event(const QString &function) const
{
    const QStringList parts = function.split(QLatin1Char('.'));
    if (parts.size() < 2 || parts.size() > 3)
        return {};
    const QString word = parts.last().trimmed();
    const QString owner = parts.at(parts.size() - 2).trimmed();
    const DesignedWindow *inWindow = parts.size() == 3 ? named(parts.first()) : nullptr;
    if (parts.size() == 3 && !inWindow)
        return {};
    for (const DesignedWindow &window : m_windows) {
        if (inWindow && inWindow != &window)
            continue;
        if (const DesignedControl *control = window.control(owner))
            return {&window, control, word};
    }
    const DesignedWindow *window = inWindow ? nullptr : named(owner);
    return window ? NamedEvent{window, nullptr, word} : NamedEvent();
}

ValueType ProgramWindows::memberType(const QString &name, int componentType, int arguments)
{
    const ComponentTables &tables = ComponentTables::instance();
    const QString member = name.trimmed();
    const ComponentProperty *property = tables.property(componentType, member);
    const ComponentMethod *method = tables.method(componentType, member, std::max(0, arguments));
    // Called, a method goes first; read, a property.
    if (arguments < 0 && property)
        return valueTypeOf(property->type);
    if (method)
        return valueTypeOf(method->type);
    return property ? valueTypeOf(property->type) : ValueType::Unknown;
}
