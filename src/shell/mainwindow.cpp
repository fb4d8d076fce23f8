#include "shell/mainwindow.h"

#include "catalog/command_library.h"
#include "editor/find_bar.h"
#include "settings/recent_list.h"
#include "settings/settings_store.h"
#include "shell/action_set.h"
#include "shell/auto_save.h"
#include "shell/breakpoint_keeper.h"
#include "shell/build_flow.h"
#include "shell/build_target.h"
#include "shell/code_assist.h"
#include "shell/code_outline.h"
#include "shell/command_library_panel.h"
#include "shell/component_list.h"
#include "shell/dock_layout.h"
#include "shell/document_guard.h"
#include "shell/editor_tabs.h"
#include "shell/frameless_main_window.h"
#include "shell/keyboard_navigation.h"
#include "shell/message_dialogs.h"
#include "shell/output_panel.h"
#include "shell/project_file_dialogs.h"
#include "shell/project_file_operations.h"
#include "shell/project_tree.h"
#include "shell/recent_files_menu.h"
#include "shell/scheme_menu.h"
#include "shell/session_keeper.h"
#include "shell/snippet_manager.h"
#include "shell/status_line.h"
#include "shell/stored_fonts.h"
#include "shell/welcome_page.h"
#include "shell/window_state.h"
#include "shell/workspace.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

const char plainTitle[] = "Vorel VorelDesk - Vorel 中文编程环境";

} // namespace

MainWindow::MainWindow(SettingsStore &settings)
    : m_settings(settings),
      m_projects(new ProjectManager(this)),
      m_tabs(new EditorTabs(this)),
      m_findBar(new FindBar(this)),
      m_workspace(std::make_unique<Workspace>(*m_projects, *m_tabs)),
      m_status(new StatusLine(statusBar())),
      m_output(new OutputPanel(this)),
      m_tree(new ProjectTree(*m_projects, this)),
      m_outline(new CodeOutline(this)),
      m_components(new ComponentList(this)),
      m_welcome(new WelcomePage(this)),
      m_fileOperations(std::make_unique<ProjectFileOperations>(*m_projects)),
      m_fileDialogs(new ProjectFileDialogs(*m_fileOperations, this)),
      m_docks(std::make_unique<DockLayout>(*this)),
      m_actions(new ActionSet(this)),
      m_assist(new CodeAssist(*m_tabs, *m_workspace, *m_projects, settings, this)),
      m_breakpoints(new BreakpointKeeper(*m_tabs, *m_projects, this)),
      m_guard(new DocumentGuard(*m_tabs, *m_projects, this)),
      m_session(new SessionKeeper(*m_tabs, *m_projects, settings.path(), this)),
      m_autoSave(new AutoSave(settings, this)),
      m_target(new BuildTarget(*m_tabs, *m_projects, *m_workspace, *m_breakpoints, settings, this)),
      m_build(new BuildFlow(*m_target, this)),
      m_snippets(std::make_unique<SnippetManager>(QFileInfo(settings.path()).path() +
                                                  QStringLiteral("/snippets.json")))
{
    setObjectName(QStringLiteral("MainWindow"));
    setDockOptions(AnimatedDocks | AllowTabbedDocks | AllowNestedDocks);
    auto *center = new QWidget(this);
    auto *column = new QVBoxLayout(center);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_tabs, 1);
    column->addWidget(m_findBar);
    setCentralWidget(center);
    fillDocks();
    new KeyboardNavigation(*this, *m_docks, *m_tabs, *m_output);
    m_actions->fillMenuBar(*this);
    m_actions->fillToolBars(*this);
    // Of no use before a design is open.
    findChild<QToolBar *>(QStringLiteral("DesignToolBar"))->hide();
    m_recentFiles =
        new RecentFilesMenu(m_actions->menu(QStringLiteral("menuRecentFiles")), settings);
    connect(m_recentFiles, &RecentFilesMenu::fileChosen, this, &MainWindow::onRecentFile);
    connectProjects();
    connectEditors();
    connectPanels();
    connectBuild();
    applySettings();
    onShowWelcome();
    showTitle();
    updateActions();
}

MainWindow::~MainWindow() = default;

void MainWindow::fillDocks()
{
    m_docks->setContent(QStringLiteral("ProjectExplorerDock"), m_tree);
    m_docks->setContent(QStringLiteral("CodeOutlineDock"), m_outline);
    m_docks->setContent(QStringLiteral("ComponentListDock"), m_components);
    m_docks->setContent(QStringLiteral("OutputDock"), m_output);
    auto *commands = new CommandLibraryPanel(CommandLibrary::builtin(), this);
    m_docks->setContent(QStringLiteral("CommandLibDock"), commands);
    connect(commands, &CommandLibraryPanel::commandSelected, this, &MainWindow::onCommandSelected);
    connect(commands, &CommandLibraryPanel::commandDoubleClicked, this,
            &MainWindow::onCommandDoubleClicked);
    for (QDockWidget *dock : m_docks->docks())
        connect(dock, &QDockWidget::visibilityChanged, this, &MainWindow::syncViewMenuCheckStates);
}

void MainWindow::connectProjects()
{
    m_projects->setRecentProjects([this](const QString &projectFile) {
        RecentList(m_settings, Setting::recentProjects).add(projectFile);
    });
    const auto opened = [this] {
        followProject();
        showMainSource();
    };
    connect(m_projects, &ProjectManager::projectOpened, this, opened);
    connect(m_projects, &ProjectManager::projectCreated, this, opened);
    connect(m_projects, &ProjectManager::activeProjectChanged, this, &MainWindow::followProject);
    connect(m_projects, QOverload<>::of(&ProjectManager::projectClosed), this,
            &MainWindow::followProject);
    for (auto changed : {&ProjectManager::fileAdded, &ProjectManager::fileRemoved})
        connect(m_projects, changed, m_assist, &CodeAssist::refresh);
    connect(m_projects, &ProjectManager::fileRenamed, this,
            [this](const QString &oldPath, const QString &newPath) {
                m_tabs->renameFile(m_workspace->absolutePath(oldPath),
                                   m_workspace->absolutePath(newPath));
                m_assist->refresh();
            });
    connect(m_tree, &ProjectTree::fileActivated, this, &MainWindow::onProjectItemDoubleClicked);
    connect(m_tree, &ProjectTree::projectActivated, this,
            [this](const QString &folder) { m_projects->activateProject(folder); });
    connect(m_tree, &ProjectTree::renameRequested, m_fileDialogs, &ProjectFileDialogs::renameFile);
    connect(m_tree, &ProjectTree::removeRequested, m_fileDialogs, &ProjectFileDialogs::removeFile);
    connect(m_tree, &ProjectTree::contextMenuRequested, this, &MainWindow::onProjectContextMenu);
    connect(m_tree, &ProjectTree::itemSelectionChanged, this, &MainWindow::updateActions);
    connect(m_fileDialogs, &ProjectFileDialogs::openRequested, this, &MainWindow::openPath);
    connect(m_fileDialogs, &ProjectFileDialogs::statusChanged, m_status, &StatusLine::showMessage);
    connect(m_fileDialogs, &ProjectFileDialogs::filesRemoved, this,
            [this](const QStringList &files) {
                for (const QString &file : files) {
                    if (CodeEditor *editor = m_tabs->editorOf(file))
                        m_tabs->closeWithoutSaving(editor);
                }
            });
}

void MainWindow::connectEditors()
{
    connect(m_tabs, &EditorTabs::currentEditorChanged, this, &MainWindow::onTabChanged);
    connect(m_tabs, &EditorTabs::editorOpened, this, &MainWindow::followEditor);
    connect(m_tabs, &EditorTabs::editorClosing, this, [this] {
        // Then the editor is gone.
        QTimer::singleShot(0, this, &MainWindow::onShowWelcome);
    });
    connect(m_tabs, &EditorTabs::modificationChanged, this, &MainWindow::onCodeModified);
    connect(m_tabs, &EditorTabs::noticeGiven, m_status, &StatusLine::showMessage);
    connect(m_tabs, &EditorTabs::fileOpened, this, [this](const QString &path) {
        m_recentFiles->add(path);
        updateActions();
    });
    connect(m_tabs, &EditorTabs::fileSaved, this,
            [this](const QString &path, const QString &oldPath) {
                if (path != oldPath)
                    m_recentFiles->add(path);
                // A form that was edited as text has other components now.
                if (!EditorTabs::isSourceFile(path))
                    m_assist->refresh();
                updateActions();
            });
    connect(m_guard, &DocumentGuard::noticeGiven, m_status, &StatusLine::showMessage);
    connect(m_breakpoints, &BreakpointKeeper::noticeGiven, m_status, &StatusLine::showMessage);
    connect(m_assist, &CodeAssist::updated, this, &MainWindow::showFindings);
    connect(m_assist, &CodeAssist::windowsChanged, this,
            [this] { m_components->setWindows(m_assist->windows()); });
    connect(m_autoSave, &AutoSave::due, this, &MainWindow::onAutoSave);
}

void MainWindow::followEditor(CodeEditor *editor)
{
    onShowWelcome();
    connect(editor, &CodeEditor::cursorPositionInfo, this, &MainWindow::onCursorPositionChanged);
    connect(editor, &CodeEditor::findRequested, this, &MainWindow::onFind);
    connect(editor, &CodeEditor::replaceRequested, this, &MainWindow::onReplace);
    connect(editor, &CodeEditor::commandHelpRequested, this, &MainWindow::onCommandSelected);
    // For its context menu.
    for (const char *name : {"actionGotoDefinition", "actionFindUsages", "actionRename",
                             "actionFormatVcFile", "actionToggleBreakpoint"})
        editor->addAction(m_actions->action(QString::fromLatin1(name)));
    connect(editor, &CodeEditor::undoAvailable, this, &MainWindow::updateActions);
    connect(editor, &CodeEditor::redoAvailable, this, &MainWindow::updateActions);
}

void MainWindow::connectPanels()
{
    connect(m_output, &OutputPanel::errorItemClicked, this, &MainWindow::onErrorItemClicked);
    connect(m_output, &OutputPanel::searchResultClicked, this,
            [this](const QString &file, int line) { goTo(file, line); });
    connect(m_output, &OutputPanel::issueCountsChanged, this,
            [this](int errors, int warnings) { m_status->setIssueCounts(errors, warnings); });
    connect(m_status, &StatusLine::issuesClicked, this, [this] {
        m_docks->raise(QStringLiteral("OutputDock"));
        m_output->showTab(OutputPanel::ErrorTab);
    });
    connect(m_outline, &CodeOutline::lineActivated, this, [this](int line) {
        if (const CodeEditor *editor = m_tabs->currentEditor())
            goTo(editor->filePath(), line);
    });
    connect(m_components, &ComponentList::formActivated, this, &MainWindow::openPath);
    connect(m_components, &ComponentList::nameChosen, this, &MainWindow::insertInEditor);
    using Welcome = WelcomePage;
    connect(m_welcome, &Welcome::newProjectRequested, this, &MainWindow::onNewProject);
    connect(m_welcome, &Welcome::openProjectRequested, this, &MainWindow::onOpenProject);
    connect(m_welcome, &Welcome::openFileRequested, this, &MainWindow::onOpenFile);
    connect(m_welcome, &Welcome::viewExamplesRequested, this, &MainWindow::onViewExamples);
    connect(m_welcome, &Welcome::openDocumentationRequested, this,
            &MainWindow::onOpenDocumentation);
    connect(m_welcome, &Welcome::openRecentProjectRequested, this,
            &MainWindow::onOpenRecentProject);
    connect(m_welcome, &Welcome::removeRecentProjectRequested, this,
            &MainWindow::onRemoveRecentProject);
    connect(m_welcome, &Welcome::clearAllRecentProjectsRequested, this,
            &MainWindow::onClearAllRecentProjects);
}

// What depends on which project is the active one.
void MainWindow::followProject()
{
    showTitle();
    if (m_projects->hasOpenProject())
        m_target->setPlatform(m_projects->currentProject().targetPlatform);
    m_assist->refresh();
    updateActions();
}

void MainWindow::showTitle()
{
    QString title = QString::fromUtf8(plainTitle);
    if (m_projects->hasOpenProject())
        title.prepend(m_projects->currentProject().name + QStringLiteral(" - "));
    const bool isModified = !m_tabs->modifiedEditors().isEmpty();
    // Where the mark of unsaved changes stands.
    if (isModified)
        title += QStringLiteral("[*]");
    setWindowTitle(title);
    setWindowModified(isModified);
}

// What the last check found. While a build lists its own problems they stay.
void MainWindow::showFindings()
{
    if (const CodeEditor *editor = m_tabs->currentEditor())
        m_outline->setSymbols(m_assist->symbolsOf(editor->filePath()));
    if (m_build->isBuilding())
        return;
    QMap<QString, QVector<Issue>> findings;
    const QMap<QString, QList<VlSyntaxIssue>> &issues = m_assist->issues();
    for (auto file = issues.begin(); file != issues.end(); ++file) {
        const QString name = m_workspace->displayName(file.key());
        for (const VlSyntaxIssue &issue : file.value()) {
            const IssueKind kind = issue.isWarning ? IssueKind::Warning : IssueKind::Error;
            findings[name] << Issue{kind, issue.message, name, issue.line, issue.column};
        }
    }
    m_output->showFindings(findings);
}

void MainWindow::updateActions()
{
    QSet<QString> holding;
    const auto hold = [&holding](const char *condition, bool holds) {
        if (holds)
            holding.insert(QString::fromLatin1(condition));
    };
    const CodeEditor *editor = m_tabs->currentEditor();
    const bool hasProject = m_projects->hasOpenProject();
    hold("project", hasProject);
    hold("editor", editor);
    hold("source", hasProject || (editor && EditorTabs::isSourceFile(editor->filePath())));
    hold("idle", !m_build->isBuilding());
    hold("stoppable", m_build->isBuilding() || hasActiveRun());
    hold("undo", editor && editor->document()->isUndoAvailable());
    hold("redo", editor && editor->document()->isRedoAvailable());
    hold("recent", !m_recentFiles->isEmpty());
    hold("treeFile", m_tree->selectedKind() >= ProjectTreeKind::Source);
    m_actions->update(holding);
}

void MainWindow::applySettings()
{
    m_tabs->applySettings(EditorSettings::stored(m_settings));
    m_output->setOutputFont(StoredFonts::compilerOutput(m_settings));
    m_assist->refresh();
    updateAutoSaveTimer();
}

void MainWindow::updateAutoSaveTimer()
{
    m_autoSave->updateAutoSaveTimer();
}

void MainWindow::onAutoSave()
{
    if (onSaveAll())
        m_status->showMessage(QStringLiteral("已自动保存"));
}

void MainWindow::attachFrame(FramelessMainWindow &frame)
{
    m_frame = &frame;
    // Docks take their sizes only in a window that is shown.
    if (!WindowState(m_settings, DockLayout::version).restore(frame, *this))
        QTimer::singleShot(0, this, &MainWindow::onResetLayout);
    syncViewMenuCheckStates();
    connect(&frame, &FramelessMainWindow::skinMenuRequested, this, [this](const QPoint &place) {
        SchemeMenu menu(m_settings);
        connect(&menu, &SchemeMenu::schemeChosen, this, &MainWindow::applySettings);
        menu.exec(place);
    });
}

void MainWindow::restoreSession()
{
    m_session->restore();
    m_guard->offerRecovered();
    showNewsOfUpdate();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // Taken while everything is open still.
    const Session session = m_session->current();
    if (!m_tabs->closeAll()) {
        event->ignore();
        return;
    }
    if (m_projects->isModified() && !m_projects->saveProject())
        MessageDialogs::warn(this, QStringLiteral("退出"), m_projects->lastError());
    if (m_frame)
        WindowState(m_settings, DockLayout::version).save(*m_frame, *this);
    QString error;
    if (!m_session->finish(session) || !m_settings.save(&error))
        qWarning("cannot keep session or settings: %s", qUtf8Printable(error));
    m_build->shutdown();
    event->accept();
}
