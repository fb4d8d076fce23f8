#include "shell/breakpoint_keeper.h"

#include "project/project_manager.h"
#include "shell/editor_tabs.h"

BreakpointKeeper::BreakpointKeeper(EditorTabs &tabs, ProjectManager &projects, QObject *parent)
    : QObject(parent), m_tabs(tabs), m_projects(projects)
{
    connect(&m_store, &BreakpointStore::writeFailed, this, &BreakpointKeeper::noticeGiven);
    const auto open = [this](const VL::ProjectInfo &project) { m_store.openProject(project.path); };
    connect(&projects, &ProjectManager::projectOpened, this, open);
    connect(&projects, &ProjectManager::projectCreated, this, open);
    connect(&projects, QOverload<QString>::of(&ProjectManager::projectClosed), this,
            [this](const QString &folder) { m_store.closeProject(folder); });
    connect(&tabs, &EditorTabs::editorOpened, this, [this](CodeEditor *editor) {
        if (!editor->filePath().isEmpty())
            editor->setBreakpoints(m_store.breakpoints(editor->filePath()));
        connect(editor, &CodeEditor::breakpointToggled, this, [this, editor] { store(editor); });
    });
    connect(&tabs, &EditorTabs::editorClosing, this, [this](CodeEditor *editor) {
        // Where marks stand in a text that is thrown away says nothing about the file.
        if (!editor->document()->isModified())
            store(editor);
    });
    connect(&tabs, &EditorTabs::fileSaved, this,
            [this](const QString &path) { store(m_tabs.editorOf(path)); });
}

void BreakpointKeeper::store(const CodeEditor *editor)
{
    if (!editor || editor->filePath().isEmpty())
        return;
    const QSet<int> shown = editor->breakpoints();
    if (shown != m_store.breakpoints(editor->filePath()))
        m_store.setBreakpoints(editor->filePath(), shown);
}

CompilerDebugBreakpointsMap BreakpointKeeper::breakpoints()
{
    for (const CodeEditor *editor : m_tabs.editors())
        store(editor);
    return m_projects.hasOpenProject() ? m_store.all(m_projects.currentProject().path)
                                       : m_store.all();
}
