// FileSearch: a search in files that goes on beside the user's work.
#pragma once

#include "shell/find_in_files.h"

#include <QObject>

#include <atomic>
#include <memory>

class QThread;

struct SearchSummary
{
    int hits = 0;
    int filesWithHits = 0;
    QStringList skipped; // names of files that are no text, too large or unreadable
    bool wasCancelled = false;
    bool hitLimit = false; // there are more hits than were told
    QString error;         // why it was given up, a Chinese sentence

    // In Chinese, for a status line.
    QString text() const;
};

// One search at a time; a new one ends the former, of which nothing more is heard. The files are
// read on a thread of its own.
class FileSearch : public QObject
{
    Q_OBJECT

public:
    // No more hits than that are told.
    static constexpr int maxHits = 10000;

    explicit FileSearch(QObject *parent = nullptr);
    ~FileSearch() override;

    // Empty once the search has begun, or why it does not: a Chinese sentence.
    QString start(const QList<SearchFile> &files, const SearchQuery &query);
    // `finished` still comes.
    void cancel();
    // Nothing more is heard of the search, not even its end.
    void abandon();
    bool isRunning() const { return m_thread != nullptr; }

signals:
    // In portions, in the order of the files.
    void hitsFound(const QList<FileHit> &hits);
    void finished(const SearchSummary &summary);

private:
    std::unique_ptr<QThread> m_thread;
    std::shared_ptr<std::atomic_bool> m_isCancelled;
    int m_number = 0; // of the search that is listened to
};
