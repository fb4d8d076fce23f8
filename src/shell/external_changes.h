// What to do about open files that another program has changed or removed.
#pragma once

#include "project/file_watcher.h"

#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <optional>

// How an open text and its file stand to each other.
struct ExternalState
{
    bool isModified = false; // the text has changes that are not saved
    bool exists = true;      // the file
    bool isSame = false;     // the file holds the text
};

enum class ExternalAction
{
    Nothing,
    TakeAsSaved, // file and text agree again
    Reload,
    AskChanged,
    AskRemoved,
};

// Never loses a text without asking: a text whose file has gone is the only one left.
ExternalAction externalAction(const ExternalState &state);

// A file about which the user is to be asked.
struct ExternalChange
{
    QString path;
    QString text; // what the editor holds
    bool isRemoved = false;
};

Q_DECLARE_METATYPE(ExternalChange)

// Collects the changes of open files and decides about them, all of a moment together. Paths are
// full.
class ExternalChanges : public QObject
{
    Q_OBJECT

public:
    struct OpenText
    {
        QString text;
        bool isModified = false;
    };
    // Nothing for a file that is not open.
    using FindText = std::function<std::optional<OpenText>(const QString &path)>;
    explicit ExternalChanges(FindText findText, QObject *parent = nullptr);

    // The open files that no project watches, in place of those named before.
    void setOutsideFiles(const QStringList &paths);
    // To be called after this process has written `path`.
    void noteOwnWrite(const QString &path);

public slots:
    // A file was changed, removed or has come back; those of projects are told by their manager.
    void onFileChanged(const QString &path);
    // After `questionsReady`: all of its changes are answered. Later ones wait for that.
    void finishAsking();

signals:
    // The file's content is to replace the text.
    void reloadRequested(const QString &path);
    // The text is not modified any more.
    void takenAsSaved(const QString &path);
    void questionsReady(const QList<ExternalChange> &changes);

private:
    void decide();
    ExternalAction actionFor(const QString &path, const OpenText &open) const;

    FindText m_findText;
    FileWatcher m_watcher;
    QTimer m_rest;
    QStringList m_outside;
    QSet<QString> m_pending;
    bool m_isAsking = false;
};
