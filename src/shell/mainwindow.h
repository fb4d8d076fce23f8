// MainWindow: the central class of the shell, which brings its parts together.
#pragma once

#include "project/project_manager.h"
#include "shell/project_tree_entries.h"
#include "shell/settings_dialog.h"
#include "shell/visited_places.h"

#include <QMainWindow>
#include <QPointer>

#include <memory>

class ActionSet;
class AutoSave;
class BreakpointKeeper;
class BuildFlow;
class BuildTarget;
class CodeAssist;
class CodeEditor;
class CodeOutline;
class ComponentList;
class DockLayout;
class DocumentGuard;
class EditorTabs;
class FindBar;
class FindInFilesDialog;
class FramelessMainWindow;
class OutputPanel;
class ProjectFileDialogs;
class ProjectFileOperations;
class ProjectTree;
class RecentFilesMenu;
class SessionKeeper;
class SettingsStore;
class SnippetManager;
class StatusLine;
class WelcomePage;
class Workspace;
class QUrl;
struct FileEdits;

// Every command of the user goes through one of the slots, which hands it to the class whose
// matter it is.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    // The settings must outlive it.
    explicit MainWindow(SettingsStore &settings);
    ~MainWindow() override;

    // To be called once, before `frame`, which holds the window, is shown: size and place of the
    // last start come back.
    void attachFrame(FramelessMainWindow &frame);
    // Opens what was open at the last end, and offers what a crash left behind.
    void restoreSession();
    // A project, a source or a form. Tells a failure in a box.
    bool openPath(const QString &path);

public slots:
    // --- files and projects (mainwindow_files.cpp) ---
    void onNewProject();
    void onNewFile();
    void onOpenProject();
    void onOpenFile();
    void onClearRecentFiles();
    void onRecentFile(const QString &path);
    void onSave();
    void onSaveAs();
    bool onSaveAll();
    void onSaveAllFromUi();
    void onCloseFile();
    void onCloseProject();
    void onCloseAllProjects();
    void onExit();
    void onAutoSave();

    // --- what a project consists of (mainwindow_project.cpp) ---
    void onNewFileInProject();
    void onNewClassFileInProject();
    void onAddNewWindow();
    void onAddExistingFile();
    void onRemoveFile();
    void onProjectSettings();
    void onProjectItemDoubleClicked(const QString &path);
    void onProjectContextMenu(const QString &path, ProjectTreeKind kind,
                              const QPoint &globalPosition);
    void syncProjectTreeSelection();
    void onShowWelcome();
    void onOpenRecentProject(const QString &path);
    void onRemoveRecentProject(const QString &path);
    void onClearAllRecentProjects();
    void onViewExamples();

    // --- editing (mainwindow_edit.cpp) ---
    void onUndo();
    void onRedo();
    void onCut();
    void onCopy();
    void onPaste();
    void onDelete();
    void onSelectAll();
    void onFind();
    void onReplace();
    void onFindInFiles();
    void onGotoLine();
    void onToggleComment();
    void onFormatCode();
    void onFormatCurrentVcFile();
    void onDuplicateLine();
    void onTabChanged();
    void onCursorPositionChanged(int line, int column);
    void onCodeModified();

    // --- places and names (mainwindow_navigate.cpp) ---
    void onGotoDefinition();
    void onGoBack();
    void onFindUsages();
    void onRename();

    // --- view (mainwindow_view.cpp) ---
    void onToggleToolbox();
    void onToggleProperties();
    void onToggleCodeOutline();
    void onToggleOutput();
    void onToggleProjectExplorer();
    void onToggleCommandLibrary();
    void onToggleComponentList();
    void syncViewMenuCheckStates();
    void onZoomIn();
    void onZoomOut();
    void onZoomReset();
    void onFullScreen();
    void onResetLayout();

    // --- building and running (mainwindow_build.cpp) ---
    void onBuild();
    void onRebuild();
    void onClean();
    void onRun();
    void onDebug();
    void onStopRun();
    void onToggleBreakpoint();
    void onBuildSettings();
    void onErrorItemClicked(const QString &file, int line, int column, const QString &message);
    void onPlatformChanged(const QString &platform);
    void onBuildConfigChanged(const QString &configuration);

    // --- tools and settings (mainwindow_tools.cpp) ---
    void onColorPicker();
    void onJsonTool();
    void onStringTool();
    void onSnippetManager();
    void onSettings();
    void onThemeManager();
    void onCommandSelected(const QString &name);
    void onCommandDoubleClicked(const QString &name);

    // --- help (mainwindow_help.cpp) ---
    void onHelp();
    void onOpenDocumentation();
    void onShortcutsGuide();
    void onTemplateLibrary();
    void onCheckUpdate();
    void onChangelog();
    void onAbout();

    // To be called after every change of what commands depend on.
    void updateActions();
    void updateAutoSaveTimer();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void fillDocks();
    void connectProjects();
    void connectEditors();
    void connectPanels();
    void connectBuild();
    void followEditor(CodeEditor *editor);
    void followProject();
    void followRun();
    void showTitle();
    void showFindings();
    void showCompileOutput();
    void applySettings();

    bool openProject(const QString &projectFile);
    void showMainSource();
    void activateProjectOf(const QString &path);
    bool closeActiveProject();
    void goTo(const QString &path, int line, int column = 0);
    void rememberPlace();
    void applyFileEdits(const QList<FileEdits> &edits);
    void toggleDock(const char *name);
    void insertInEditor(const QString &text);
    void showTool(QDialog *tool);
    void showSettings(SettingsDialog::Page page);
    void showNewsOfUpdate();
    void showUpdate(const QString &version, const QUrl &page, const QString &notes);
    bool hasActiveRun() const;

    SettingsStore &m_settings;
    ProjectManager *m_projects;
    EditorTabs *m_tabs;
    FindBar *m_findBar;
    std::unique_ptr<Workspace> m_workspace;
    StatusLine *m_status;
    OutputPanel *m_output;
    ProjectTree *m_tree;
    CodeOutline *m_outline;
    ComponentList *m_components;
    WelcomePage *m_welcome;
    std::unique_ptr<ProjectFileOperations> m_fileOperations;
    ProjectFileDialogs *m_fileDialogs;
    std::unique_ptr<DockLayout> m_docks;
    ActionSet *m_actions;
    RecentFilesMenu *m_recentFiles = nullptr; // made with the menus
    CodeAssist *m_assist;
    BreakpointKeeper *m_breakpoints;
    DocumentGuard *m_guard;
    SessionKeeper *m_session;
    AutoSave *m_autoSave;
    BuildTarget *m_target;
    BuildFlow *m_build;
    std::unique_ptr<SnippetManager> m_snippets;
    QPointer<FindInFilesDialog> m_findInFiles;
    VisitedPlaces m_visited;
    QPointer<FramelessMainWindow> m_frame;
};
