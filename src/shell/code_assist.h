// CodeAssist: what the editors are told of the program while the user types.
#pragma once

#include "editor/code_symbols.h"
#include "editor/completion_sources.h"
#include "editor/syntax_issue.h"
#include "shell/live_check.h"
#include "shell/project_components.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QString>
#include <QTimer>

class AutoCompleter;
class CodeEditor;
class EditorTabs;
class ProjectManager;
class SettingsStore;
class Workspace;

// Checks the program after each pause in typing, hands problems, declarations and components to
// the editors, and keeps them for outline and navigation. Paths are absolute. What is handed over
// must outlive it.
class CodeAssist : public QObject
{
    Q_OBJECT

public:
    CodeAssist(EditorTabs &tabs, const Workspace &workspace, const ProjectManager &projects,
               const SettingsStore &settings, QObject *parent);

    // To be called when something else than a text has changed: files, forms, settings.
    void refresh();

    // As the last check read them.
    CodeSymbols symbolsOf(const QString &path) const { return m_symbols.value(path); }
    const QMap<QString, QList<VlSyntaxIssue>> &issues() const { return m_issues; }
    const QVector<WindowComponents> &windows() const { return m_windows; }

signals:
    // A check has ended: problems and declarations are new. Problems that concern no file stand
    // under the empty name.
    void updated();
    void windowsChanged();

private:
    void attach(CodeEditor *editor);
    void requestCheck();
    void take(const ProjectCheckResult &result);
    void inform(CodeEditor *editor);
    void readComponents();

    // How long it must be quiet before texts are gathered for a check.
    static constexpr int quietTime = 350; // milliseconds

    EditorTabs &m_tabs;
    const Workspace &m_workspace;
    const ProjectManager &m_projects;
    const SettingsStore &m_settings;
    LiveCheck m_check;
    QTimer m_quiet;
    QHash<const CodeEditor *, AutoCompleter *> m_completers;
    QMap<QString, CodeSymbols> m_symbols;
    QMap<QString, QList<VlSyntaxIssue>> m_issues;
    QVector<WindowComponents> m_windows;
};
