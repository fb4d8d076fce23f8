#include "shell/mainwindow.h"

#include "driver/compiler.h"
#include "settings/settings_store.h"
#include "shell/action_set.h"
#include "shell/auto_save.h"
#include "shell/build_flow.h"
#include "shell/code_assist.h"
#include "shell/code_outline.h"
#include "shell/command_library_panel.h"
#include "shell/component_list.h"
#include "shell/dock_layout.h"
#include "shell/editor_tabs.h"
#include "shell/external_changes.h"
#include "shell/frameless_main_window.h"
#include "shell/output_panel.h"
#include "shell/project_file_dialogs.h"
#include "shell/project_tree.h"
#include "shell/recent_files_menu.h"
#include "shell/scheme_menu.h"
#include "shell/session_store.h"
#include "shell/status_line.h"
#include "shell/welcome_page.h"
#include "shell/window_state.h"
#include "shell/workspace.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFileInfo>
#include <QStatusBar>
#include <QTextDocument>
#include <QToolBar>

namespace {

const char windowTitle[] = "Vorel VorelDesk - Vorel 中文编程环境";

} // namespace

MainWindow::MainWindow(SettingsStore &settings)
    : m_settings(settings),
      m_projects(new ProjectManager(this)),
      m_tabs(new EditorTabs(this)),
      m_status(new StatusLine(statusBar())),
      m_output(new OutputPanel(this)),
      m_workspace(std::make_unique<Workspace>(*m_projects, *m_tabs)),
      m_docks(std::make_unique<DockLayout>(*this))
{
    setObjectName(QStringLiteral("MainWindow"));
    setWindowTitle(QString::fromUtf8(windowTitle));
    setDockOptions(AnimatedDocks | AllowTabbedDocks | AllowNestedDocks);
    setCentralWidget(m_tabs);
    createDocks();
    createMenusAndToolBars();
    connectProjects();
    connectEditors();
    connectPanels();
    connectBuild();
    applySettings();
    updateAutoSaveTimer();
    showWelcomeWhenEmpty();
    updateActions();
}
