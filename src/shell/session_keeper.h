// SessionKeeper: what was open at the end is open again at the start.
#pragma once

#include "shell/session_store.h"

class EditorTabs;
class ProjectManager;

// What is handed over must outlive it.
class SessionKeeper
{
public:
    SessionKeeper(EditorTabs &tabs, ProjectManager &projects, const QString &settingsFile);

    // Opens projects and files of the last session; what is gone is passed over.
    void restore();
    // What is open now.
    Session current() const;
    // False when it cannot be written.
    [[nodiscard]] bool save(const Session &session) const { return m_store.save(session); }

private:
    void restoreFile(const SessionFile &file);

    EditorTabs &m_tabs;
    ProjectManager &m_projects;
    SessionStore m_store;
};
