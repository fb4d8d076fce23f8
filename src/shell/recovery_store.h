// RecoveryStore: keeps texts that are not saved yet where a crash cannot reach them.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class QLockFile;

struct RecoveredText
{
    QString path;  // of the file, full; empty: it has none yet
    QString title; // what the user knows a text without a file by
    QString text;
    int cursorPosition = 0; // characters from the start of the text
    // Set by the store.
    QDateTime time;      // when the text was kept
    QByteArray baseHash; // `RecoveryStore::hashOf` the file it was made from; empty: no file
};

// A text that a process left behind, and the file that holds it.
struct RecoveryEntry
{
    QString file;
    RecoveredText content;
};

Q_DECLARE_METATYPE(RecoveryEntry)

// Each process has a folder of its own, locked while it lives; so two running programs never take
// the texts of each other. Whatever a folder holds that is no such text is passed over and stays.
class RecoveryStore : public QObject
{
    Q_OBJECT

public:
    explicit RecoveryStore(const QString &folder = defaultFolder(), QObject *parent = nullptr);
    ~RecoveryStore() override;

    // "recovery" in the user's data folder.
    static QString defaultFolder();
    // Empty for a file that cannot be read.
    static QByteArray hashOf(const QString &file);

    // Keeps `content` for the open text `id`, in place of what was kept for it before. Writes
    // nothing when that is the same text. False if it could not be written.
    bool note(const QString &id, const RecoveredText &content);
    // To be called when the text was saved, or closed without saving.
    void forget(const QString &id);
    // Forgets all texts that `ids` does not name.
    void keepOnly(const QStringList &ids);

    // What processes that live no more have left, the latest first. Their folders belong to this
    // store from now on; what is neither adopted nor discarded waits for the next start.
    QList<RecoveryEntry> pending();
    // Keeps what `entry` holds for the open text `id`; the entry itself goes.
    void adopt(const QString &id, const RecoveryEntry &entry);
    void discard(const RecoveryEntry &entry);

signals:
    // A Chinese sentence. Told once, and again only when writing has worked in between.
    void writeFailed(const QString &message);

private:
    struct Note
    {
        QString path;
        QByteArray textHash; // of what was written last; empty: nothing yet
        QByteArray baseHash;
    };
    // A folder of texts, whose lock is held.
    struct Held
    {
        QString path;
        std::unique_ptr<QLockFile> lock;
    };

    bool openOwnFolder();
    bool hold(const QString &folder);
    bool isHeld(const QString &folder) const;
    QString fileOf(const QString &id) const;
    bool fail();

    QString m_folder;
    QString m_own; // empty: not made yet
    std::vector<Held> m_held;
    QHash<QString, Note> m_notes;
    bool m_hasFailed = false;
};

// Notes all changed texts in `store` again and again; both the store and what `changedTexts` reads
// must outlive it.
class RecoveryTimer : public QObject
{
    Q_OBJECT

public:
    static constexpr int intervalMs = 30 * 1000;

    // All texts that differ from their files, by their ids.
    using ChangedTexts = std::function<QHash<QString, RecoveredText>()>;
    RecoveryTimer(RecoveryStore &store, ChangedTexts changedTexts, QObject *parent = nullptr);

    // Notes what has changed now and forgets what has not.
    void run();

private:
    RecoveryStore &m_store;
    ChangedTexts m_changedTexts;
    QTimer m_timer;
};
