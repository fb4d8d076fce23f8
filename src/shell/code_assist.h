// CodeAssist: what the editors are told of the program while the user types.
#pragma once

#include "editor/code_symbols.h"
#include "editor/completion_history.h"
#include "editor/syntax_issue.h"
#include "shell/live_check.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QString>

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
    ~CodeAssist() override;

    // To be called when something else than a text has changed: files, forms, options.
    void refresh();

    // As the last check read them.
    CodeSymbols symbolsOf(const QString &path) const { return m_symbols.value(path); }
    QMap<QString, CodeSymbols> symbols() const { return m_symbols; }
    QList<VlSyntaxIssue> issuesOf(const QString &path) const { return m_issues.value(path); }
    // Files with problems; what concerns no file stands under the empty name.
    QStringList filesWithIssues() const { return m_issues.keys(); }

signals:
    // A check has ended: problems and declarations are new.
    void updated();

private:
    void attach(CodeEditor *editor);
    void take(const ProjectCheckResult &result);
    void showIn(CodeEditor *editor);
    void readComponents();
    CodeSymbols symbolsElsewhere(const QString &path) const;

    EditorTabs &m_tabs;
    const Workspace &m_workspace;
    const ProjectManager &m_projects;
    const SettingsStore &m_settings;
    LiveCheck m_check;
    CompletionHistory m_history;
    QMap<QString, CodeSymbols> m_symbols;
    QMap<QString, QList<VlSyntaxIssue>> m_issues;
};
