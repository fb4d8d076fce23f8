// RecentFilesMenu: the files opened last, as entries of a menu.
#pragma once

#include "settings/recent_list.h"

#include <QObject>

class QAction;
class QMenu;

// Entries stand ahead of what the menu holds already. The store must outlive it.
class RecentFilesMenu : public QObject
{
    Q_OBJECT

public:
    RecentFilesMenu(QMenu *menu, SettingsStore &store);

    void add(const QString &path);
    void remove(const QString &path);
    void clear();
    bool isEmpty() const { return m_list.paths().isEmpty(); }

signals:
    void fileChosen(const QString &path);

private:
    void fill();

    QMenu *m_menu;
    RecentList m_list;
    QList<QAction *> m_entries;
};
