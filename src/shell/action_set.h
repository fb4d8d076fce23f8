// ActionSet: the commands of the main window, as ":/shell/actions.json" lists them.
#pragma once

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QVector>

class QAction;
class QMainWindow;
class QMenu;
class QWidget;

// The text of an action without the mark of its access key and the dots of a dialog.
QString plainActionName(QString text);

// Each row of the table is an action, triggered into the slot of the receiver that it names. A
// row's `needs` are conditions; an action whose conditions do not all hold is disabled, and its
// tool tip says why. Where two enabled actions have one shortcut, the first in the table has it.
class ActionSet : public QObject
{
    Q_OBJECT

public:
    // The receiver owns the actions; a row whose slot it lacks is logged and disabled.
    explicit ActionSet(QWidget *receiver);

    // The table's menus and tool bars, in its order.
    void fillMenuBar(QMainWindow &window);
    void fillToolBars(QMainWindow &window);

    // Null for a name that the table does not have.
    QAction *action(const QString &name) const;
    QMenu *menu(const QString &name) const { return m_menus.value(name); }
    QList<QAction *> actions() const;
    // The object name of the dock that a check item of the menus shows and hides, by action.
    QHash<QString, QString> docks() const { return m_docks; }

    // To be called whenever the conditions that hold have changed.
    void update(const QSet<QString> &holding);

private:
    struct Entry
    {
        QAction *action;
        QString shortcut;
        QString tip;
        QStringList needs;
        QString unavailable; // why the action can never be used
    };

    void addAction(const QJsonObject &row, QWidget *receiver);
    void connectSlot(Entry &entry, const QString &slot, QWidget *receiver);
    void fillMenu(QMenu *menu, const QJsonArray &items);
    QString obstacle(const Entry &entry, const QSet<QString> &holding) const;

    QJsonObject m_table;
    QVector<Entry> m_entries; // in the order of the table
    QHash<QString, QAction *> m_byName;
    QHash<QString, QMenu *> m_menus;
    QHash<QString, QString> m_docks;
    QHash<QString, QString> m_reasons; // by condition
};
