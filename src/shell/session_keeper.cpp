#include "shell/session_keeper.h"

#include "project/project_manager.h"
#include "shell/editor_tabs.h"

#include <QFileInfo>
#include <QScrollBar>

#include <algorithm>

SessionKeeper::SessionKeeper(EditorTabs &tabs, ProjectManager &projects,
                             const QString &settingsFile, QObject *parent)
    : QObject(parent),
      m_tabs(tabs),
      m_projects(projects),
      m_store(SessionStore::pathBeside(settingsFile))
{
    constexpr int restTime = 2000; // milliseconds
    m_rest.setSingleShot(true);
    m_rest.setInterval(restTime);
    connect(&m_rest, &QTimer::timeout, this, [this] {
        if (!m_store.save(current()))
            qWarning("the session cannot be kept");
    });
    connect(&tabs, &EditorTabs::currentEditorChanged, this, &SessionKeeper::noteChange);
    connect(&projects, &ProjectManager::activeProjectChanged, this, &SessionKeeper::noteChange);
}

void SessionKeeper::noteChange()
{
    if (m_isKeeping)
        m_rest.start();
}

bool SessionKeeper::finish(const Session &session)
{
    m_isKeeping = false;
    m_rest.stop();
    return m_store.save(session);
}

void SessionKeeper::restore()
{
    const Session session = m_store.load();
    for (const QString &project : session.projects) {
        if (QFileInfo(project).isFile())
            m_projects.openProject(project);
    }
    if (!session.activeProject.isEmpty())
        m_projects.activateProject(QFileInfo(session.activeProject).canonicalPath());
    for (const SessionFile &file : session.files)
        restoreFile(file);
    if (CodeEditor *active = m_tabs.editorOf(session.activeFile)) {
        m_tabs.setCurrentWidget(active);
        active->setFocus();
    }
    m_isKeeping = true;
}

void SessionKeeper::restoreFile(const SessionFile &file)
{
    if (!QFileInfo(file.path).isFile() || !TextFile::read(file.path).succeeded())
        return;
    CodeEditor *editor = m_tabs.open(file.path);
    if (!editor)
        return;
    QTextCursor cursor = editor->textCursor();
    cursor.setPosition(qBound(0, file.cursorPosition, editor->document()->characterCount() - 1));
    editor->setTextCursor(cursor);
    editor->verticalScrollBar()->setValue(file.firstVisibleLine - 1);
    editor->setBookmarks(QSet<int>(file.bookmarks.cbegin(), file.bookmarks.cend()));
}

Session SessionKeeper::current() const
{
    Session session;
    const QString active = m_projects.projectFile();
    for (const QString &folder : m_projects.openProjects())
        session.projects << m_projects.projectFileOf(folder);
    session.activeProject = active;
    for (const CodeEditor *editor : m_tabs.editors()) {
        if (editor->filePath().isEmpty())
            continue;
        SessionFile file;
        file.path = editor->filePath();
        file.cursorPosition = editor->textCursor().position();
        file.firstVisibleLine = editor->verticalScrollBar()->value() + 1;
        file.bookmarks = editor->bookmarks().values();
        std::sort(file.bookmarks.begin(), file.bookmarks.end());
        session.files << file;
    }
    if (const CodeEditor *editor = m_tabs.currentEditor())
        session.activeFile = editor->filePath();
    return session;
}
