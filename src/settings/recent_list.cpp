#include "settings/recent_list.h"

#include <QDir>
#include <QFileInfo>

namespace {

#ifdef Q_OS_WIN
constexpr Qt::CaseSensitivity pathCase = Qt::CaseInsensitive;
#else
constexpr Qt::CaseSensitivity pathCase = Qt::CaseSensitive;
#endif

// A file that is gone has no canonical path; it keeps the name it has.
QString canonical(const QString &path)
{
    const QFileInfo info(path);
    const QString found = info.canonicalFilePath();
    return found.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : found;
}

} // namespace

// No look at the disk: a path on a network that is down would hold up the start.
QStringList RecentList::paths() const
{
    QStringList result;
    const QStringList stored = m_store.get(m_key);
    for (const QString &entry : stored) {
        const QString path = QDir::cleanPath(QDir::fromNativeSeparators(entry));
        if (result.size() == maxSize)
            break;
        if (QDir::isAbsolutePath(path) && !result.contains(path, pathCase))
            result << path;
    }
    return result;
}

bool RecentList::add(const QString &path)
{
    if (path.isEmpty())
        return false;
    const QString added = canonical(path);
    QStringList list = paths();
    // Both spellings: an entry may have been added while the file was not there.
    const QString plain = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    for (int i = list.size() - 1; i >= 0; --i) {
        if (list.at(i).compare(added, pathCase) == 0 || list.at(i).compare(plain, pathCase) == 0)
            list.removeAt(i);
    }
    list.prepend(added);
    while (list.size() > maxSize)
        list.removeLast();
    return store(list);
}

bool RecentList::remove(const QString &path)
{
    const QString removed = canonical(path);
    const QString plain = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QStringList list;
    for (const QString &entry : paths()) {
        if (entry.compare(removed, pathCase) != 0 && entry.compare(plain, pathCase) != 0)
            list << entry;
    }
    return store(list);
}

bool RecentList::clear()
{
    return store({});
}

bool RecentList::store(const QStringList &list)
{
    if (m_store.get(m_key) == list)
        return false;
    m_store.set(m_key, list);
    return true;
}
