// What generated code can do with components: their events, properties and methods, read from
// ":/codegen/events.json" and ":/codegen/component_members.json".
#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

// A value that an event hands over: the C++ parameter, and the word under which source reads it.
struct EventParameter
{
    QString type;
    QString name;
    QString word;

    // The C++ variable that source works with, and what it is made from.
    QString localType() const;
    QString localValue() const;
};

// An event of a window or of a component.
struct ComponentEvent
{
    // Where Windows reports it; events of windows have their place in the window procedure.
    enum class Source
    {
        Window,
        Command, // WM_COMMAND with one of the codes
        Notify,  // WM_NOTIFY with the code
        Scroll,  // WM_HSCROLL and WM_VSCROLL
    };

    QStringList words;
    QString handler; // the end of the handler's name
    QString result;
    QList<EventParameter> parameters;
    bool optional = false; // of a window: without user code there is no handler
    QSet<int> types;       // of components; empty for windows
    Source source = Source::Window;
    QStringList codes;    // the C++ of the codes, or of the condition for Scroll
    QStringList lines;    // "%call" stands for the handler, "%h" for the component's handle
    bool watched = false; // reported only by controls that are told to

    // "int _VL_x, int _VL_y"
    QString parameterList() const;
};

// A property: how it is read and written. "%h" is the handle, "%v" the value.
struct ComponentProperty
{
    QStringList names;
    QSet<int> types; // empty: all
    QString read;    // empty: cannot be read
    QString type;    // type word of what is read
    QString write;   // empty: cannot be written
    QString value;   // type word of what is written
};

struct MethodParameter
{
    QString type;
    QString name;
    QString defaultText; // C++; empty: the argument must be given
    bool variadic = false;
};

// A method: "%h" is the handle, "%1" the first argument, "%*" all that are left.
struct ComponentMethod
{
    QStringList names;
    QSet<int> types; // empty: all
    QString call;
    QList<MethodParameter> parameters;
    QString type; // type word of the result

    int requiredCount() const;
    bool takes(int count) const;
};

// Read on first use, never changed. Component types are the numbers of VL::ComponentType; a type
// that is not known (NoComponentType) has every member.
class ComponentTables
{
public:
    static const ComponentTables &instance();

    const QList<ComponentEvent> &windowEvents() const { return m_windowEvents; }
    // Null when there is none of that name. Names are taken as written, in NFKC and sanitized.
    const ComponentEvent *windowEvent(const QString &word) const;
    const ComponentEvent *controlEvent(int type, const QString &word) const;
    // Those that a type has, in the order of the table.
    QList<const ComponentEvent *> controlEvents(int type) const;
    QStringList windowEventWords() const;
    QStringList controlEventWords(int type) const;
    const ComponentProperty *property(int type, const QString &name) const;
    // The method of that name that takes so many arguments; else the first of that name; else null.
    const ComponentMethod *method(int type, const QString &name, int arguments) const;
    QStringList memberNames(int type) const;

private:
    ComponentTables();

    QList<ComponentEvent> m_windowEvents;
    QList<ComponentEvent> m_controlEvents;
    QList<ComponentProperty> m_properties;
    QList<ComponentMethod> m_methods;
    QHash<QString, QList<int>> m_propertyIndex;
    QHash<QString, QList<int>> m_methodIndex;
};
