// CompletionHistory: what the user picked from the completion list, from one start to the next.
#pragma once

#include <QHash>
#include <QString>

// The names picked last. A file that is missing, huge or anything but a history leaves an empty
// one. For one thread.
class CompletionHistory
{
public:
    static constexpr int maxNames = 500;
    static constexpr int maxNameLength = 200; // longer ones are not kept

    explicit CompletionHistory(const QString &path = defaultPath());

    // "completion_history.json" beside the settings.
    static QString defaultPath();

    void addPick(const QString &name);
    // Higher for what was picked later, 0 for what never was.
    int rank(const QString &name) const { return m_ranks.value(name); }

    // Writes what was picked since; false when the file cannot be written.
    [[nodiscard]] bool save();

private:
    void load();
    void dropOldest();
    QStringList oldestFirst() const;

    QString m_path;
    QHash<QString, int> m_ranks; // by name
    int m_lastRank = 0;
    bool m_hasUnsaved = false;
};
