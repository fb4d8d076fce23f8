#include "shell/project_file_dialogs.h"

#include "shell/message_dialogs.h"

#include <QFileDialog>
#include <QFileInfo>

namespace {

QMessageBox::Icon iconOf(FileOperation::Notice notice)
{
    switch (notice) {
    case FileOperation::Notice::Warning:
        return QMessageBox::Warning;
    case FileOperation::Notice::Error:
        return QMessageBox::Critical;
    case FileOperation::Notice::Information:
    case FileOperation::Notice::None:
        break;
    }
    return QMessageBox::Information;
}

} // namespace

ProjectFileDialogs::ProjectFileDialogs(ProjectFileOperations &operations, QWidget *parent)
    : QObject(parent), m_operations(operations), m_window(parent)
{}

void ProjectFileDialogs::show(const FileOperation &done)
{
    if (!done.status.isEmpty())
        emit statusChanged(done.status);
    if (done.notice != FileOperation::Notice::None)
        MessageDialogs::tell(m_window, iconOf(done.notice), done.title, done.message);
}

bool ProjectFileDialogs::hasProject()
{
    const FileOperation project = m_operations.checkProject();
    if (!project.succeeded)
        show(project);
    return project.succeeded;
}

void ProjectFileDialogs::newFile()
{
    if (!hasProject())
        return;
    const auto name = MessageDialogs::askText(m_window, QStringLiteral("新建文件"),
                                              QStringLiteral("请输入文件名（不需要扩展名）："),
                                              QStringLiteral("新文件"));
    if (!name)
        return;
    const FileOperation done = m_operations.newCodeFile(*name);
    show(done);
    if (done.succeeded)
        emit openRequested(done.file);
}

void ProjectFileDialogs::newClassFile()
{
    if (!hasProject())
        return;
    const auto name =
        MessageDialogs::askText(m_window, QStringLiteral("新建类文件"),
                                QStringLiteral("请输入类名（将作为文件名，不需要扩展名）："));
    if (!name)
        return;
    const FileOperation done = m_operations.newClassFile(*name);
    show(done);
    if (done.succeeded)
        emit openRequested(done.file);
}

void ProjectFileDialogs::newWindow()
{
    // Without a project the operation refuses every name.
    std::optional<QString> name = QString();
    if (m_operations.checkProject().succeeded) {
        name = MessageDialogs::askText(m_window, QStringLiteral("新建窗口"),
                                       QStringLiteral("请输入窗口名称"));
    }
    if (!name)
        return;
    const FileOperation done = m_operations.newWindow(*name);
    show(done);
    if (!done.succeeded)
        return;
    const QString question = QStringLiteral("是否打开新创建的窗口 \"%1\" 进行设计？")
                                 .arg(QFileInfo(done.file).completeBaseName());
    const int answer =
        MessageDialogs::choose(m_window, QMessageBox::Question, QStringLiteral("打开窗口"),
                               question, {QStringLiteral("打开"), QStringLiteral("不打开")}, 0);
    if (answer == 0)
        emit openRequested(done.file);
}

void ProjectFileDialogs::addExistingFile()
{
    if (!hasProject())
        return;
    const QString file = QFileDialog::getOpenFileName(
        m_window, QStringLiteral("添加现有代码文件"), m_operations.projectFolder(),
        QStringLiteral("Vorel 源代码 (*.vc *.vpi *.vt);;所有文件 (*.*)"));
    if (file.isEmpty())
        return;
    if (m_operations.liesInProject(file)) {
        show(m_operations.addExistingFile(file));
        return;
    }
    const QString question = QStringLiteral("文件 \"%1\" 不在项目目录内。\n\n请选择操作方式：")
                                 .arg(QFileInfo(file).fileName());
    const QStringList ways{QStringLiteral("复制到项目"), QStringLiteral("使用绝对路径"),
                           QStringLiteral("取消")};
    switch (MessageDialogs::choose(m_window, QMessageBox::Question, QStringLiteral("添加外部文件"),
                                   question, ways, 0)) {
    case 0:
        show(m_operations.copyExistingFile(file));
        break;
    case 1:
        show(m_operations.addByAbsolutePath(file));
        break;
    default:
        break;
    }
}

void ProjectFileDialogs::removeSelected(Selection selection, const QString &file)
{
    if (!hasProject())
        return;
    const auto warn = [this](const QString &text) {
        MessageDialogs::warn(m_window, QStringLiteral("警告"), text);
    };
    switch (selection) {
    case Selection::Nothing:
        warn(QStringLiteral("请先选择要移除的文件"));
        break;
    case Selection::Folder:
        warn(QStringLiteral("请选择一个文件，而不是文件夹"));
        break;
    case Selection::File:
        removeFile(file);
        break;
    }
}

void ProjectFileDialogs::removeFile(const QString &file)
{
    const FileRemoval removal = m_operations.planRemoval(file);
    if (!removal.isAllowed()) {
        show(removal.refusal);
        return;
    }
    // Enter does no harm.
    const int answer = MessageDialogs::choose(m_window, QMessageBox::Warning,
                                              QStringLiteral("确认删除"), removal.question,
                                              {QStringLiteral("删除"), QStringLiteral("取消")}, 1);
    if (answer != 0)
        return;
    const FileOperation done = m_operations.remove(removal);
    if (!done.removedFiles.isEmpty())
        emit filesRemoved(done.removedFiles);
    show(done);
}

void ProjectFileDialogs::renameFile(const QString &file)
{
    if (!hasProject())
        return;
    const auto name = MessageDialogs::askText(m_window, QStringLiteral("重命名"),
                                              QStringLiteral("请输入新的名称："),
                                              QFileInfo(file).completeBaseName());
    if (name)
        show(m_operations.rename(file, *name));
}
