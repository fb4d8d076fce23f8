#include "project/file_watcher.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// Whoever saves a file does it in several steps.
constexpr int restMs = 80;
// Larger files are known by their size and time alone.
constexpr qint64 hashedBytes = 16 << 20;

// Another text whenever the content is another; empty for a file that is not there.
QByteArray contentOf(const QString &path)
{
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return QByteArray();
    if (info.size() > hashedBytes) {
        return QByteArray::number(info.size()) + ' ' +
               QByteArray::number(info.lastModified().toMSecsSinceEpoch());
    }
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1).toHex();
}

QStringList entriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

FileWatcher::FileWatcher(QObject *parent) : QObject(parent), m_watcher(this), m_rest(this)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(restMs);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileWatcher::onPathChanged);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileWatcher::onFolderChanged);
    connect(&m_rest, &QTimer::timeout, this, &FileWatcher::lookAtPending);
}

void FileWatcher::watch(const QStringList &files, const QStringList &folders)
{
    const QStringList before = m_watcher.files() + m_watcher.directories();
    if (!before.isEmpty())
        m_watcher.removePaths(before);
    m_pending.clear();
    m_pendingFolders.clear();
    m_known.clear();
    m_entries.clear();
    m_folders.clear();
    QSet<QString> watched;
    for (const QString &file : files) {
        m_known.insert(file, contentOf(file));
        watched.insert(QFileInfo(file).path()); // tells when a missing file comes
        if (QFileInfo::exists(file))
            watched.insert(file);
    }
    for (const QString &folder : folders) {
        m_folders.insert(folder);
        m_entries.insert(folder, entriesOf(folder));
        watched.insert(folder);
    }
    QStringList existing;
    for (const QString &path : qAsConst(watched)) {
        if (QFileInfo::exists(path))
            existing << path;
    }
    if (!existing.isEmpty())
        m_watcher.addPaths(existing);
}

void FileWatcher::noteOwnWrite(const QString &file)
{
    const auto known = m_known.find(file);
    if (known == m_known.end())
        return;
    *known = contentOf(file);
    watchAgain(file);
}

void FileWatcher::onPathChanged(const QString &path)
{
    m_pending.insert(path);
    m_rest.start();
}

void FileWatcher::onFolderChanged(const QString &folder)
{
    if (m_folders.contains(folder))
        m_pendingFolders.insert(folder);
    // A file that is replaced by rename leaves the watcher: its folder tells.
    for (auto file = m_known.begin(); file != m_known.end(); ++file) {
        if (QFileInfo(file.key()).path() == folder)
            m_pending.insert(file.key());
    }
    m_rest.start();
}

// The watcher forgets a file whose name has gone, even when another one takes it.
void FileWatcher::watchAgain(const QString &file)
{
    if (QFileInfo::exists(file) && !m_watcher.files().contains(file))
        m_watcher.addPath(file);
}

void FileWatcher::lookAtPending()
{
    QSet<QString> pending;
    pending.swap(m_pending);
    QStringList changed;
    for (const QString &file : qAsConst(pending)) {
        const auto known = m_known.find(file);
        if (known == m_known.end())
            continue;
        watchAgain(file);
        const QByteArray now = contentOf(file);
        if (now == *known)
            continue;
        *known = now;
        changed << file;
    }
    QSet<QString> folders;
    folders.swap(m_pendingFolders);
    for (const QString &folder : qAsConst(folders)) {
        const QStringList now = entriesOf(folder);
        if (now == m_entries.value(folder))
            continue;
        m_entries.insert(folder, now);
        emit folderChanged(folder);
    }
    changed.sort();
    for (const QString &file : qAsConst(changed))
        emit fileChanged(file);
}
