// SessionKeeper: what was open at the end is open again at the start.
#pragma once

#include "shell/session_store.h"

#include <QObject>
#include <QTimer>

class EditorTabs;
class ProjectManager;

// Keeps the session on the disk, so that a crash loses none of it. What is handed over must outlive
// it.
class SessionKeeper : public QObject
{
    Q_OBJECT

public:
    SessionKeeper(EditorTabs &tabs, ProjectManager &projects, const QString &settingsFile,
                  QObject *parent);

    // Opens projects and files of the last session; what is gone is passed over. From then on every
    // change of what is open is kept.
    void restore();
    // What is open now.
    Session current() const;
    // Keeps `session`, and no change after it. False when it cannot be written.
    [[nodiscard]] bool finish(const Session &session);

private:
    void restoreFile(const SessionFile &file);
    void noteChange();

    EditorTabs &m_tabs;
    ProjectManager &m_projects;
    SessionStore m_store;
    QTimer m_rest; // from a change to its being kept
    bool m_isKeeping = false;
};
