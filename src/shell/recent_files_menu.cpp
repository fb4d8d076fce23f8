#include "shell/recent_files_menu.h"

#include <QDir>
#include <QMenu>

RecentFilesMenu::RecentFilesMenu(QMenu *menu, SettingsStore &store)
    : QObject(menu), m_menu(menu), m_list(store, Setting::recentFiles)
{
    fill();
}

void RecentFilesMenu::add(const QString &path)
{
    if (m_list.add(path))
        fill();
}

void RecentFilesMenu::remove(const QString &path)
{
    if (m_list.remove(path))
        fill();
}

void RecentFilesMenu::clear()
{
    if (m_list.clear())
        fill();
}

void RecentFilesMenu::fill()
{
    qDeleteAll(m_entries);
    m_entries.clear();
    QAction *first = m_menu->actions().value(0);
    const QStringList paths = m_list.paths();
    for (const QString &path : paths) {
        QString label = QDir::toNativeSeparators(path);
        label.replace(QLatin1Char('&'), QLatin1String("&&"));
        if (m_entries.size() < 9)
            label.prepend(QStringLiteral("&%1  ").arg(m_entries.size() + 1));
        auto *entry = new QAction(label, m_menu);
        connect(entry, &QAction::triggered, this, [this, path] { emit fileChosen(path); });
        m_menu->insertAction(first, entry);
        m_entries << entry;
    }
}
