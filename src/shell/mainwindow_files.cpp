// What the main window does to files and projects.
#include "shell/mainwindow.h"

#include "settings/settings_store.h"
#include "shell/editor_tabs.h"
#include "shell/message_dialogs.h"
#include "shell/new_project_dialog.h"
#include "shell/recent_files_menu.h"
#include "shell/status_line.h"
#include "shell/workspace.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace {

bool isProjectFile(const QString &path)
{
    return path.endsWith(QLatin1String(".vlproj"), Qt::CaseInsensitive);
}

} // namespace

bool MainWindow::openPath(const QString &path)
{
    if (isProjectFile(path))
        return openProject(path);
    CodeEditor *editor = m_tabs->open(path);
    if (editor)
        editor->setFocus();
    return editor != nullptr;
}

bool MainWindow::openProject(const QString &projectFile)
{
    if (!m_projects->openProject(projectFile)) {
        MessageDialogs::warn(this, QStringLiteral("打开项目"), m_projects->lastError());
        return false;
    }
    return true;
}

// Something to look at: the main source.
void MainWindow::showMainSource()
{
    const VL::ProjectInfo &project = m_projects->currentProject();
    const QString main = m_workspace->absolutePath(QStringLiteral("source/main.vc"));
    const bool hasOpenFile = [&] {
        for (const CodeEditor *editor : m_tabs->editors()) {
            if (m_workspace->isInProject(editor->filePath()))
                return true;
        }
        return false;
    }();
    if (hasOpenFile)
        return;
    if (QFileInfo(main).isFile())
        m_tabs->open(main);
    else if (!project.sourceFiles.isEmpty())
        m_tabs->open(m_workspace->absolutePath(project.sourceFiles.first()));
}

// What is built and checked is what the user looks at.
void MainWindow::activateProjectOf(const QString &path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const QString active = m_projects->projectFile();
    for (const QString &folder : m_projects->openProjects()) {
        if (canonical.startsWith(folder + QLatin1Char('/')) &&
            m_projects->projectFileOf(folder) != active)
            m_projects->activateProject(folder);
    }
}

void MainWindow::onNewProject()
{
    NewProjectDialog dialog(m_settings, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const NewProject project = dialog.project();
    if (project.kind != ProjectKind::Single) {
        if (!m_projects->createProject(project))
            MessageDialogs::warn(this, QStringLiteral("新建项目"), m_projects->lastError());
        return;
    }
    const SingleFile file = createSingleFile(project.folder, project.name);
    if (file.error.isEmpty())
        openPath(file.path);
    else
        MessageDialogs::warn(this, QStringLiteral("新建项目"), file.error);
}

void MainWindow::onNewFile()
{
    const QList<TemplateFile> files = filesForNewProject(
        ProjectKind::Single, QStringLiteral("未命名"), QString(), QDateTime::currentDateTime());
    CodeEditor *editor = m_tabs->openUntitled(QString::fromUtf8(files.value(0).bytes));
    editor->setFocus();
}

void MainWindow::onOpenProject()
{
    const QString path = QFileDialog::getOpenFileName(
        this, QStringLiteral("打开项目"), m_settings.get(Setting::Project::defaultPath),
        QStringLiteral("Vorel 项目 (*.vlproj);;所有文件 (*.*)"));
    if (!path.isEmpty())
        openProject(path);
}

void MainWindow::onOpenFile()
{
    const CodeEditor *current = m_tabs->currentEditor();
    const QString folder = current && !current->filePath().isEmpty()
                               ? QFileInfo(current->filePath()).path()
                               : m_settings.get(Setting::Project::defaultPath);
    const QStringList paths = QFileDialog::getOpenFileNames(
        this, QStringLiteral("打开文件"), folder,
        QStringLiteral("Vorel 文件 (*.vc *.vpp *.vt *.vd *.vpi *.vl *.vui *.vlwin *.vlproj);;"
                       "所有文件 (*.*)"));
    for (const QString &path : paths)
        openPath(path);
}

void MainWindow::onClearRecentFiles()
{
    m_recentFiles->clear();
    updateActions();
}

void MainWindow::onRecentFile(const QString &path)
{
    if (!openPath(path) && !QFileInfo::exists(path))
        m_recentFiles->remove(path);
    updateActions();
}

void MainWindow::onSave()
{
    CodeEditor *editor = m_tabs->currentEditor();
    if (editor && m_tabs->save(editor))
        m_status->showMessage(QStringLiteral("已保存: %1").arg(editor->title()));
}

void MainWindow::onSaveAs()
{
    CodeEditor *editor = m_tabs->currentEditor();
    if (editor && m_tabs->saveAs(editor))
        m_status->showMessage(QStringLiteral("已保存: %1").arg(editor->title()));
}

// Untitled files are the user's to name; nobody is asked here.
bool MainWindow::onSaveAll()
{
    QStringList failures = m_tabs->saveModified();
    if (m_projects->hasOpenProject() && m_projects->isModified() && !m_projects->saveProject())
        failures << m_projects->lastError();
    for (const QString &failure : qAsConst(failures))
        m_status->showMessage(failure);
    return failures.isEmpty();
}

void MainWindow::onSaveAllFromUi()
{
    const bool isSaved = onSaveAll();
    for (CodeEditor *editor : m_tabs->modifiedEditors()) {
        if (editor->filePath().isEmpty() && !m_tabs->save(editor))
            return;
    }
    if (isSaved)
        m_status->showMessage(m_projects->hasOpenProject() ? QStringLiteral("项目已保存")
                                                           : QStringLiteral("文件已保存"));
    else
        MessageDialogs::warn(this, QStringLiteral("保存"),
                             QStringLiteral("有文件没有保存成功，它们仍在编辑器中。"));
}

void MainWindow::onCloseFile()
{
    if (CodeEditor *editor = m_tabs->currentEditor())
        m_tabs->close(editor);
}

// With the tabs of its files. False when the user gave up.
bool MainWindow::closeActiveProject()
{
    for (CodeEditor *editor : m_tabs->editors()) {
        if (m_workspace->isInProject(editor->filePath()) && !m_tabs->close(editor))
            return false;
    }
    if (m_projects->isModified() && !m_projects->saveProject()) {
        MessageDialogs::warn(this, QStringLiteral("关闭项目"), m_projects->lastError());
        return false;
    }
    m_projects->closeProject();
    return true;
}

void MainWindow::onCloseProject()
{
    closeActiveProject();
}

void MainWindow::onCloseAllProjects()
{
    while (m_projects->hasOpenProject()) {
        if (!closeActiveProject())
            return;
    }
}

void MainWindow::onExit()
{
    window()->close();
}
