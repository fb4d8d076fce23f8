// BreakpointKeeper: carries breakpoints between the editors and the store.
#pragma once

#include "shell/breakpoint_store.h"

class CodeEditor;
class EditorTabs;
class ProjectManager;

// What an open editor shows counts: its marks move with the text. What is handed over must outlive
// it.
class BreakpointKeeper : public QObject
{
    Q_OBJECT

public:
    BreakpointKeeper(EditorTabs &tabs, ProjectManager &projects, QObject *parent);

    // Of the active project, or of the files outside of all projects without one.
    CompilerDebugBreakpointsMap breakpoints();

signals:
    void noticeGiven(const QString &sentence);

private:
    void store(const CodeEditor *editor);

    EditorTabs &m_tabs;
    ProjectManager &m_projects;
    BreakpointStore m_store;
};
