// What the main window does to the files of a project, and its welcome page.
#include "shell/mainwindow.h"

#include "settings/recent_list.h"
#include "settings/settings_store.h"
#include "shell/action_set.h"
#include "shell/editor_tabs.h"
#include "shell/example_projects.h"
#include "shell/message_dialogs.h"
#include "shell/project_file_dialogs.h"
#include "shell/project_settings_dialog.h"
#include "shell/project_tree.h"
#include "shell/status_line.h"
#include "shell/welcome_page.h"
#include "shell/workspace.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>

namespace {

bool isFile(ProjectTreeKind kind)
{
    return kind >= ProjectTreeKind::Source;
}

} // namespace

void MainWindow::onNewFileInProject()
{
    m_fileDialogs->newFile();
}

void MainWindow::onNewClassFileInProject()
{
    m_fileDialogs->newClassFile();
}

void MainWindow::onAddNewWindow()
{
    m_fileDialogs->newWindow();
}

void MainWindow::onAddExistingFile()
{
    m_fileDialogs->addExistingFile();
}

void MainWindow::onRemoveFile()
{
    using Selection = ProjectFileDialogs::Selection;
    const ProjectTreeKind kind = m_tree->selectedKind();
    const Selection selection = kind == ProjectTreeKind::None ? Selection::Nothing
                                : isFile(kind)                ? Selection::File
                                                              : Selection::Folder;
    m_fileDialogs->removeSelected(selection, m_tree->selectedPath());
}

void MainWindow::onProjectSettings()
{
    if (!m_projects->hasOpenProject())
        return;
    ProjectSettingsDialog dialog(m_projects->currentProject(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_projects->setCurrentProject(dialog.project());
    if (!m_projects->saveProject())
        MessageDialogs::warn(this, QStringLiteral("项目设置"), m_projects->lastError());
    followProject();
}

void MainWindow::onProjectItemDoubleClicked(const QString &path)
{
    openPath(path);
}

void MainWindow::onProjectContextMenu(const QString &path, ProjectTreeKind kind,
                                      const QPoint &globalPosition)
{
    QMenu menu(this);
    menu.setToolTipsVisible(true);
    if (isFile(kind)) {
        menu.addAction(QStringLiteral("打开(&O)"), this, [this, path] { openPath(path); });
        menu.addAction(QStringLiteral("重命名(&M)..."), this,
                       [this, path] { m_fileDialogs->renameFile(path); });
        menu.addAction(m_actions->action(QStringLiteral("actionRemoveFile")));
        menu.addSeparator();
    } else if (kind == ProjectTreeKind::Project) {
        const bool isActive = m_projects->currentProject().path == path;
        QAction *activate = menu.addAction(QStringLiteral("设为活动项目(&A)"), this,
                                           [this, path] { m_projects->activateProject(path); });
        activate->setEnabled(!isActive);
    }
    for (const char *name :
         {"actionAddNewFile", "actionAddNewClass", "actionAddNewWindow", "actionAddExistingFile"})
        menu.addAction(m_actions->action(QString::fromLatin1(name)));
    menu.addSeparator();
    menu.addAction(m_actions->action(QStringLiteral("actionProjectSettings")));
    menu.addAction(m_actions->action(QStringLiteral("actionCloseProject")));
    menu.exec(globalPosition);
}

void MainWindow::syncProjectTreeSelection()
{
    if (const CodeEditor *editor = m_tabs->currentEditor())
        m_tree->selectPath(editor->filePath());
}

void MainWindow::onShowWelcome()
{
    const bool isNeeded = m_tabs->editors().isEmpty();
    const int index = m_tabs->indexOf(m_welcome);
    if (!isNeeded && index >= 0)
        m_tabs->removeTab(index);
    if (!isNeeded || index >= 0)
        return;
    m_welcome->setRecentProjects(RecentList(m_settings, Setting::recentProjects).paths());
    m_tabs->addTab(m_welcome, QStringLiteral("欢迎"));
}

void MainWindow::onOpenRecentProject(const QString &path)
{
    openPath(path);
}

void MainWindow::onRemoveRecentProject(const QString &path)
{
    RecentList list(m_settings, Setting::recentProjects);
    list.remove(path);
    m_welcome->setRecentProjects(list.paths());
}

void MainWindow::onClearAllRecentProjects()
{
    RecentList(m_settings, Setting::recentProjects).clear();
    m_welcome->setRecentProjects({});
}

// Of a copy, so that what is shipped stays as it is.
void MainWindow::onViewExamples()
{
    const QString project =
        ExampleProjects::choose(m_settings.get(Setting::Project::defaultPath), this);
    if (!project.isEmpty())
        openPath(project);
}
