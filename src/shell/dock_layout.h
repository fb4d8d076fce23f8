// DockLayout: the docks of the main window and where they lie at first.
#pragma once

#include <QHash>
#include <QList>
#include <QString>

class QDockWidget;
class QMainWindow;
class QWidget;

// The docks that ":/shell/docks.json" lists. Docks of one side lie behind each other as tabs, the
// first of the list in front.
class DockLayout
{
public:
    // To be raised when the list changes: a stored state of another version is of no use.
    static constexpr int version = 1;

    explicit DockLayout(QMainWindow &window);

    // Null for a name that the list does not have.
    QDockWidget *dock(const QString &name) const { return m_docks.value(name); }
    QList<QDockWidget *> docks() const { return m_docks.values(); }
    void setContent(const QString &name, QWidget *content);
    // The arrangement of the first start.
    void reset();
    // Shows the dock and brings it to the front.
    void raise(const QString &name) const;

private:
    struct Place
    {
        QString name;
        Qt::DockWidgetArea area;
        bool isHidden;
    };

    void sizeDocks();

    QMainWindow &m_window;
    QHash<QString, QDockWidget *> m_docks;
    QList<Place> m_places; // in the order of the list
};
