// SessionStore: what was open when VorelDesk was left.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

struct SessionFile
{
    QString path;             // full
    int cursorPosition = 0;   // characters from the start of the text
    int firstVisibleLine = 1; // from 1
    QList<int> bookmarks;     // lines from 1, ascending

    bool operator==(const SessionFile &other) const;
};

struct Session
{
    QStringList projects; // their files, full paths, in the order of opening
    QString activeProject;
    QList<SessionFile> files; // in the order of their tabs
    QString activeFile;

    bool operator==(const Session &other) const;
};

class SessionStore
{
public:
    explicit SessionStore(const QString &path) : m_path(path) {}

    // "session.json" beside the file of the settings.
    static QString pathBeside(const QString &settingsFile);

    // Whatever the file holds, paths are full and none comes twice, and numbers are in their range,
    // though not necessarily in that of the text. Files may be gone by now. Bytes that are no
    // session give an empty one.
    Session load() const;
    [[nodiscard]] bool save(const Session &session) const;

private:
    QString m_path;
};
