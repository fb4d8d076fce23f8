// FileWatcher: tells when files of a project are changed by somebody else.
#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

// One change is reported once, a moment after the file has come to rest, whether it was written in
// place, replaced by another file of its name, or removed. What this process has written itself,
// and a file that was touched without another content, is not reported.
class FileWatcher : public QObject
{
    Q_OBJECT

public:
    explicit FileWatcher(QObject *parent = nullptr);

    // Full paths. Files need not exist yet; what was watched before and is not named is let go.
    void watch(const QStringList &files, const QStringList &folders);
    void clear() { watch({}, {}); }
    // To be called after this process has written `file`.
    void noteOwnWrite(const QString &file);

signals:
    // Written, replaced, removed or come back.
    void fileChanged(const QString &file);
    // A file in it has come or gone.
    void folderChanged(const QString &folder);

private:
    void onPathChanged(const QString &path);
    void onFolderChanged(const QString &folder);
    void lookAtPending();
    void watchAgain(const QString &file);

    QFileSystemWatcher m_watcher;
    QTimer m_rest;
    QSet<QString> m_pending;
    QHash<QString, QByteArray> m_known; // what each file held when it was last looked at
    QSet<QString> m_folders;
    QSet<QString> m_pendingFolders;
    QHash<QString, QStringList> m_entries; // the names in each folder
};
