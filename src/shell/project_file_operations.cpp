#include "shell/project_file_operations.h"

#include "designer/model/form_values.h"
#include "driver/output_files.h"
#include "driver/source_text.h"
#include "project/project_manager.h"
#include "project/project_templates.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

using Notice = FileOperation::Notice;

const QString warningTitle = QStringLiteral("警告");
const QString renameTitle = QStringLiteral("重命名失败");

FileOperation told(Notice notice, const QString &title, const QString &message)
{
    FileOperation result;
    result.notice = notice;
    result.title = title;
    result.message = message;
    return result;
}

FileOperation succeeded(const QString &status, const QString &file = {})
{
    FileOperation result;
    result.succeeded = true;
    result.status = status;
    result.file = file;
    return result;
}

bool endsWithOneOf(const QString &name, const QStringList &endings)
{
    return std::any_of(endings.begin(), endings.end(), [&name](const QString &ending) {
        return name.endsWith(ending, Qt::CaseInsensitive);
    });
}

bool isWindowFile(const QString &file)
{
    return endsWithOneOf(
        file, {QStringLiteral(".vui"), QStringLiteral(".vlwin"), QStringLiteral(".xml")});
}

bool isCoreFile(const QString &name)
{
    static const QStringList core{QStringLiteral("main.vc"), QStringLiteral("main.vui"),
                                  QStringLiteral("globals.vc"), QStringLiteral("constants.vc")};
    return core.contains(name, Qt::CaseInsensitive);
}

bool isDigits(const QString &name)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    return digits.match(name).hasMatch();
}

// Windows and classes are called by their name in sources.
QString wordError(const QString &what, const QString &name)
{
    const QString error = fileNameError(name);
    if (!error.isEmpty() || FormValues::isIdentifier(name))
        return error;
    return QStringLiteral("“%1”不能用作%2：只能用汉字、字母、数字和下划线，不能以数字开头。")
        .arg(name, what);
}

bool discardFile(const QString &file)
{
    return QFile::moveToTrash(file) || QFile::remove(file);
}

} // namespace

ProjectFileOperations::ProjectFileOperations(ProjectManager &manager)
    : m_manager(manager), m_discard(discardFile)
{}

QString ProjectFileOperations::projectFolder() const
{
    return m_manager.currentProject().path;
}

QString ProjectFileOperations::absolute(const QString &file) const
{
    return QDir::cleanPath(QDir(projectFolder()).absoluteFilePath(file));
}

FileOperation ProjectFileOperations::checkProject() const
{
    if (m_manager.hasOpenProject())
        return succeeded({});
    return told(Notice::Warning, warningTitle, QStringLiteral("请先打开或创建一个项目。"));
}

FileOperation ProjectFileOperations::saved(FileOperation done)
{
    if (m_manager.saveProject())
        return done;
    done.succeeded = false;
    done.notice = Notice::Error;
    done.title = QStringLiteral("保存项目失败");
    done.message = m_manager.lastError();
    return done;
}

FileOperation ProjectFileOperations::registered(FileOperation done, const QString &file)
{
    if (m_manager.addFile(file))
        return saved(done);
    const QString name = QFileInfo(file).fileName();
    done.succeeded = false;
    done.notice = Notice::Warning;
    done.title = QStringLiteral("添加失败");
    done.message = QStringLiteral("文件可能已在项目中");
    done.status = QStringLiteral("已创建文件: %1").arg(name);
    return done;
}

// On success with the file's path and nothing to tell.
FileOperation ProjectFileOperations::createSource(const QString &name, const QString &text)
{
    const QString file = projectFolder() + QStringLiteral("/source/") + name;
    if (QFileInfo::exists(file)) {
        return told(Notice::Warning, QStringLiteral("文件已存在"),
                    QStringLiteral("文件 %1 已经存在，请使用其他名称。").arg(name));
    }
    // The user may have removed the folder.
    QDir().mkpath(QFileInfo(file).path());
    if (!OutputFiles::write(file, text.toUtf8())) {
        return told(Notice::Error, QStringLiteral("创建文件失败"),
                    QStringLiteral("无法创建文件 %1").arg(name));
    }
    m_manager.noteOwnWrite(file);
    return succeeded({}, file);
}

FileOperation ProjectFileOperations::newCodeFile(const QString &name)
{
    const FileOperation project = checkProject();
    if (!project.succeeded)
        return project;
    QString fileName = name.trimmed();
    const QString error = fileNameError(fileName);
    if (!error.isEmpty())
        return told(Notice::Warning, QStringLiteral("新建文件"), error);
    if (!endsWithOneOf(fileName,
                       {QStringLiteral(".vc"), QStringLiteral(".vpi"), QStringLiteral(".vt")}))
        fileName += QStringLiteral(".vc");
    FileOperation made =
        createSource(fileName, newSourceText(fileName, QDateTime::currentDateTime()));
    if (!made.succeeded)
        return made;
    made.status = QStringLiteral("已创建并添加到项目: %1").arg(fileName);
    return registered(made, made.file);
}

// The example of a new class would otherwise be a second beginning of the program.
bool ProjectFileOperations::hasMainFunction() const
{
    static const QRegularExpression mainFunction(QStringLiteral("^\\s*函数\\s+主函数\\s*\\("),
                                                 QRegularExpression::MultilineOption);
    const QStringList &sources = m_manager.currentProject().sourceFiles;
    return std::any_of(sources.begin(), sources.end(), [this](const QString &source) {
        return readSourceFile(absolute(source), source).text.contains(mainFunction);
    });
}

FileOperation ProjectFileOperations::newClassFile(const QString &name)
{
    const FileOperation project = checkProject();
    if (!project.succeeded)
        return project;
    QString className = name.trimmed();
    if (className.endsWith(QLatin1String(".vpp"), Qt::CaseInsensitive))
        className.chop(4);
    const bool onlyDigits = isDigits(className);
    const QString error =
        onlyDigits ? fileNameError(className) : wordError(QStringLiteral("类名"), className);
    if (!error.isEmpty())
        return told(Notice::Warning, QStringLiteral("新建类文件"), error);
    const auto example =
        onlyDigits || hasMainFunction() ? ClassExample::AsComment : ClassExample::AsProgram;
    const QString fileName = className + QStringLiteral(".vpp");
    FileOperation made = createSource(fileName, newClassText(className, example));
    if (!made.succeeded) {
        if (made.notice == Notice::Error)
            made.title = QStringLiteral("创建失败");
        return made;
    }
    made.status = QStringLiteral("已创建类文件: %1").arg(fileName);
    if (onlyDigits) {
        made.notice = Notice::Information;
        made.title = QStringLiteral("新建类文件");
        made.message = QStringLiteral("类名\"%1\"为纯数字，已允许创建；建议使用字母或汉字开头的名称"
                                      "以便阅读。")
                           .arg(className);
    }
    return registered(made, made.file);
}

FileOperation ProjectFileOperations::newWindow(const QString &name)
{
    const QString title = QStringLiteral("新建窗口");
    if (!m_manager.hasOpenProject())
        return told(Notice::Warning, warningTitle, QStringLiteral("请先创建或打开一个项目。"));
    QString window = name.trimmed();
    if (window.endsWith(QLatin1String(".vui"), Qt::CaseInsensitive))
        window.chop(4);
    const QString error = wordError(QStringLiteral("窗口名称"), window);
    if (!error.isEmpty())
        return told(Notice::Warning, title, error);
    const QString file = projectFolder() + QStringLiteral("/ui/%1.vui").arg(window);
    bool exists = QFileInfo::exists(file);
    for (const QString &other : m_manager.currentProject().windowFiles)
        exists = exists || ProjectFile::windowName(other).compare(window, Qt::CaseInsensitive) == 0;
    if (exists)
        return told(Notice::Warning, title, QStringLiteral("窗口 \"%1\" 已存在").arg(window));
    QDir().mkpath(QFileInfo(file).path());
    if (!OutputFiles::write(file, newWindowForm(window)))
        return told(Notice::Error, title, QStringLiteral("无法创建窗口文件"));
    m_manager.noteOwnWrite(file);
    return registered(succeeded(QStringLiteral("已创建窗口: %1").arg(window), file), file);
}

bool ProjectFileOperations::liesInProject(const QString &file) const
{
    const QString folder = QFileInfo(projectFolder()).canonicalFilePath();
    const QString path = QFileInfo(absolute(file)).canonicalFilePath();
    return !folder.isEmpty() && path.startsWith(folder + QLatin1Char('/'));
}

FileOperation ProjectFileOperations::addExistingFile(const QString &file)
{
    const FileOperation project = checkProject();
    if (!project.succeeded)
        return project;
    const VL::ProjectInfo &info = m_manager.currentProject();
    const QString folder = QFileInfo(info.path).canonicalFilePath();
    const QString relative =
        QDir(folder).relativeFilePath(QFileInfo(absolute(file)).canonicalFilePath());
    const QStringList known =
        info.sourceFiles + info.uiFiles + info.windowFiles + info.resourceFiles;
    if (known.contains(relative))
        return succeeded(QStringLiteral("文件已在项目中: %1").arg(relative), absolute(relative));
    if (!m_manager.addFile(relative))
        return told(Notice::Warning, QStringLiteral("添加失败"), m_manager.lastError());
    return saved(
        succeeded(QStringLiteral("已添加文件到项目: %1").arg(relative), absolute(relative)));
}

FileOperation ProjectFileOperations::copyExistingFile(const QString &file)
{
    const FileOperation project = checkProject();
    if (!project.succeeded)
        return project;
    const QString name = QFileInfo(file).fileName();
    const QString target = projectFolder() + QStringLiteral("/source/") + name;
    if (QFileInfo::exists(target)) {
        return told(Notice::Warning, QStringLiteral("文件已存在"),
                    QStringLiteral("目标文件已存在: %1").arg(name));
    }
    QDir().mkpath(QFileInfo(target).path());
    if (!QFile::copy(file, target)) {
        return told(Notice::Error, QStringLiteral("复制失败"),
                    QStringLiteral("无法复制文件到项目目录"));
    }
    m_manager.noteOwnWrite(target);
    return registered(succeeded(QStringLiteral("已复制文件到项目: %1").arg(name), target), target);
}

FileOperation ProjectFileOperations::addByAbsolutePath(const QString &file)
{
    const FileOperation project = checkProject();
    if (!project.succeeded)
        return project;
    const QString path = QFileInfo(file).absoluteFilePath();
    if (m_manager.currentProject().sourceFiles.contains(path))
        return succeeded(QStringLiteral("文件已在项目中: %1").arg(path), path);
    if (!m_manager.addFile(path))
        return told(Notice::Warning, QStringLiteral("添加失败"), m_manager.lastError());
    FileOperation done = succeeded(
        QStringLiteral("已添加外部文件（绝对路径）: %1\n注意：如果移动项目或文件，需要重新添加")
            .arg(path),
        path);
    return saved(done);
}

// The source of a window has its name and lies in "source/"; empty where there is none.
QString ProjectFileOperations::sourceOf(const QString &windowFile) const
{
    const QString source = projectFolder() + QStringLiteral("/source/") +
                           QFileInfo(windowFile).completeBaseName() + QStringLiteral(".vc");
    return isWindowFile(windowFile) && QFileInfo(source).isFile() ? source : QString();
}

FileRemoval ProjectFileOperations::planRemoval(const QString &file) const
{
    FileRemoval plan;
    const FileOperation project = checkProject();
    if (!project.succeeded) {
        plan.refusal = project;
        return plan;
    }
    const auto refuse = [&plan](const QString &message) {
        plan.refusal = told(Notice::Warning, warningTitle, message);
        return plan;
    };
    if (file.isEmpty())
        return refuse(QStringLiteral("无法获取文件路径"));
    const QString path = absolute(file);
    const QString name = QFileInfo(path).fileName();
    if (QFileInfo(path).isDir())
        return refuse(QStringLiteral("请选择一个文件，而不是文件夹"));
    if (isCoreFile(name)) {
        return refuse(
            QStringLiteral("无法删除系统文件: %1\n此文件是项目必需的核心文件。").arg(name));
    }
    plan.files << path;
    const QString source = sourceOf(path);
    const bool hasSource = !source.isEmpty() && !isCoreFile(QFileInfo(source).fileName());
    plan.keepsFiles = QFileInfo::exists(path) && !liesInProject(path);
    const QString form = hasSource ? QStringLiteral("确定要删除界面文件 \"%1\" 吗？\n\n")
                                   : QStringLiteral("确定要删除文件 \"%1\" 吗？\n\n");
    plan.question = form.arg(name);
    if (hasSource) {
        plan.files << source;
        plan.question +=
            QStringLiteral("它的代码文件 \"%1\" 会一起删除。\n").arg(QFileInfo(source).fileName());
    }
    plan.question += plan.keepsFiles
                         ? QStringLiteral("它不在项目目录内：只从项目中移除，文件本身保留。")
                         : QStringLiteral("文件会移到回收站；没有回收站时直接删除。");
    return plan;
}

FileOperation ProjectFileOperations::remove(const FileRemoval &removal)
{
    if (!removal.isAllowed())
        return removal.refusal;
    if (!m_manager.removeFile(removal.files.first()))
        return told(Notice::Warning, warningTitle, m_manager.lastError());
    // The source of a window need not be listed.
    const QStringList &sources = m_manager.currentProject().sourceFiles;
    for (const QString &file : removal.files.mid(1)) {
        const QString relative = QDir(projectFolder()).relativeFilePath(file);
        if (sources.contains(relative))
            m_manager.removeFile(relative);
    }
    QStringList removed;
    QStringList failed;
    for (const QString &file : removal.files) {
        const bool isGone = removal.keepsFiles || !QFileInfo::exists(file) || m_discard(file);
        (isGone ? removed : failed) << QFileInfo(file).fileName();
    }
    const QString separator = QStringLiteral("、");
    FileOperation done;
    done.succeeded = failed.isEmpty();
    done.removedFiles = removal.files;
    if (failed.isEmpty()) {
        const QString status = removal.keepsFiles ? QStringLiteral("已从项目中移除: %1")
                                                  : QStringLiteral("已删除文件: %1");
        done.status = status.arg(removed.join(separator));
        return saved(done);
    }
    done.notice = Notice::Warning;
    done.title = warningTitle;
    done.message = QStringLiteral("部分文件删除失败:\n");
    if (!removed.isEmpty())
        done.message += QStringLiteral("已删除: %1\n").arg(removed.join(separator));
    done.message += QStringLiteral("删除失败: %1").arg(failed.join(separator));
    return saved(done);
}

FileOperation ProjectFileOperations::rename(const QString &file, const QString &newName)
{
    const FileOperation project = checkProject();
    if (!project.succeeded)
        return project;
    const QFileInfo old(absolute(file));
    if (isCoreFile(old.fileName())) {
        return told(Notice::Warning, warningTitle,
                    QStringLiteral("无法重命名系统文件: %1\n此文件是项目必需的核心文件。")
                        .arg(old.fileName()));
    }
    QString name = newName.trimmed();
    const QString ending = QLatin1Char('.') + old.suffix();
    if (name.endsWith(ending, Qt::CaseInsensitive))
        name.chop(ending.size());
    const QString error = isWindowFile(old.fileName()) ? wordError(QStringLiteral("窗口名称"), name)
                                                       : fileNameError(name);
    if (!error.isEmpty())
        return told(Notice::Warning, renameTitle, error);
    const QString target = old.path() + QLatin1Char('/') + name + ending;
    if (name + ending == old.fileName())
        return succeeded({}, target);
    const QString source = sourceOf(old.filePath());
    const QString newSource =
        QFileInfo(source).path() + QLatin1Char('/') + name + QStringLiteral(".vc");
    const bool sourceFits = source.isEmpty() || !QFileInfo::exists(newSource);
    if (!sourceFits || QFileInfo::exists(target)) {
        const QString taken = sourceFits ? target : newSource;
        return told(
            Notice::Warning, QStringLiteral("文件已存在"),
            QStringLiteral("文件 %1 已经存在，请使用其他名称。").arg(QFileInfo(taken).fileName()));
    }
    if (!m_manager.renameFile(old.filePath(), target))
        return told(Notice::Error, renameTitle, m_manager.lastError());
    FileOperation done =
        succeeded(QStringLiteral("已重命名: %1 → %2").arg(old.fileName(), name + ending), target);
    if (!source.isEmpty() && !m_manager.renameFile(source, newSource)) {
        done.notice = Notice::Warning;
        done.title = renameTitle;
        done.message = m_manager.lastError();
    }
    return saved(done);
}
