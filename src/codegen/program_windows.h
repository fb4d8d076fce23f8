// ProgramWindows: the windows of a program, and what the names of windows and components mean.
#pragma once

#include "codegen/component_tables.h"
#include "codegen/designed_window.h"
#include "frontend/value_type.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// What a name in source refers to. `type` is NoComponentType for a control that only code mentions.
struct ComponentRef
{
    QString handle; // the C++ variable; empty for layouts, which have no window
    int type;
    QString name;
};

// An event that a function's name ("按钮1.单击") means; all null when it means none.
struct NamedEvent
{
    const DesignedWindow *window = nullptr;   // whose event it is, or that of the control
    const DesignedControl *control = nullptr; // null for an event of the window itself
    QString word;

    // "右键菜单_打开" answers an item of a menu of the form.
    bool isMenuItem() const;
    static QString menuPrefix();
};

class ProgramWindows
{
public:
    explicit ProgramWindows(const QList<WindowRecord> &records);

    // The start window first.
    const QList<DesignedWindow> &all() const { return m_windows; }
    QStringList names() const;
    // By name as written, in NFKC, sanitized, or as one of the names of the main window.
    const DesignedWindow *named(const QString &name) const;
    // A component of any window, else a window. A name such as "按钮7" that no design knows stands
    // for a control that only code mentions.
    std::optional<ComponentRef> component(const QString &written) const;
    // A component by the name of its window and its own.
    std::optional<ComponentRef> componentIn(const QString &window, const QString &name) const;
    // The window or control that "主窗口.创建完毕", "按钮1.单击" or "窗口2.按钮1.单击" belongs to.
    NamedEvent event(const QString &function) const;
    // The type of a property, or of what a method gives; `arguments`: -1 when the member is read.
    static ValueType memberType(const QString &name, int componentType, int arguments);

private:
    QList<DesignedWindow> m_windows;
    mutable QHash<QString, ComponentRef> m_known;
};
