// DesignedWindow: a window of the program with the C++ names of everything in it.
#pragma once

#include "designer/model/design_component.h"

#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

// A window that the program has.
struct WindowRecord
{
    QString name;
    QString filePath;
    QList<VL::DesignComponent> components;
    bool isMain = false;
    bool isStartup = false;
    bool implicit = false; // the hidden start window of a program without a form
    QString sanitizedName;
};

// The properties of a component, each with its own reading. An absent or unusable value gives the
// fallback.
class PropertyBag
{
public:
    explicit PropertyBag(const VL::DesignComponent &component) : m_component(&component) {}

    bool has(const QString &key) const;
    QString text(const QString &key, const QString &fallback = QString()) const;
    int number(const QString &key, int fallback = 0) const;
    bool flag(const QString &key, bool fallback = false) const;
    // 0xBBGGRR. None for what is no colour and for one that is fully transparent.
    std::optional<int> color(const QString &key) const;

private:
    QVariant value(const QString &key) const { return m_component->properties.value(key); }

    const VL::DesignComponent *m_component;
};

struct DesignedControl
{
    VL::DesignComponent component;
    QString name;   // as source writes it
    QString stem;   // unique in the program; handlers are named after it
    QString handle; // the C++ variable; empty for layouts and springs, which have no window
    int id = 0;     // of the control; 0 without a window
    QString idText; // how generated code writes the id
    // In design pixels, from the client area of the window or of the page it lies on.
    QRect place;
    int tabWidget = -1; // index of the tab widget it lies on
    int page = 0;

    bool hasWindow() const { return !handle.isEmpty(); }
    PropertyBag bag() const { return PropertyBag(component); }
};

class DesignedWindow
{
public:
    // `firstId`: the number of the first control.
    DesignedWindow(const WindowRecord &record, bool start, int firstId);

    const QString &name() const { return m_name; }
    // "MainWindow" for the start window, else the sanitized name.
    const QString &cppName() const { return m_cppName; }
    const QString &handle() const { return m_handle; }
    bool isStart() const { return m_start; }
    bool isImplicit() const { return m_implicit; }
    bool isSelfDrawn() const { return m_selfDrawn; }
    // The window component; one with defaults when the form has none.
    const VL::DesignComponent &component() const { return m_component; }
    PropertyBag bag() const { return PropertyBag(m_component); }

    // All components but the window, in the order of the form.
    const QList<DesignedControl> &controls() const { return m_controls; }
    // By name as written, in NFKC or sanitized; null without one.
    const DesignedControl *control(const QString &name) const;
    // By component id; -1 without one.
    int indexOfId(const QString &id) const;
    // The controls that have a window, containers ahead of what they contain.
    QList<int> creationOrder() const;
    int nextId() const { return m_nextId; }

private:
    void addControls(const QList<VL::DesignComponent> &components, QPoint origin);
    void addControl(const VL::DesignComponent &component, QPoint origin);
    void placeOnPages();
    QString uniqueStem(const QString &wanted);

    QString m_name;
    QString m_cppName;
    QString m_handle;
    bool m_start = false;
    bool m_implicit = false;
    bool m_selfDrawn = false;
    VL::DesignComponent m_component;
    QList<DesignedControl> m_controls;
    QStringList m_stems;
    int m_firstId = 0;
    int m_nextId = 0;
};
