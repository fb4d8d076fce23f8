// RecentList: the files or projects that were opened last.
#pragma once

#include "settings/settings_store.h"

#include <QStringList>

// Absolute paths, the most recent first, none twice, at most `maxSize`. Names that differ only in
// the case of letters are one file on Windows. The store must outlive the list and is to be saved
// by the caller.
class RecentList
{
public:
    static constexpr int maxSize = 20;

    RecentList(SettingsStore &store, const Key<QStringList> &key) : m_store(store), m_key(key) {}

    // Includes what has been deleted since.
    QStringList paths() const;
    // These tell whether the list changed.
    bool add(const QString &path);
    bool remove(const QString &path);
    bool clear();

private:
    bool store(const QStringList &paths);

    SettingsStore &m_store;
    const Key<QStringList> &m_key;
};
