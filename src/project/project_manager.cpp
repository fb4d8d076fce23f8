#include "project/project_manager.h"

#include "driver/output_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const char createFailed[] = "Failed to create project directory";
const char openFailed[] = "Failed to open project file";
const char formatInvalid[] = "Invalid project file format";
const char saveFailed[] = "Failed to save project";
const char fileFailed[] = "Failed to change project files";

const char folderExists[] = "文件夹“%1”已经存在，而且不是空的。请换一个项目名称或位置。";
const char folderNotMade[] = "无法创建文件夹“%1”，请检查权限与磁盘空间。";
const char fileNotWritten[] = "无法写入文件“%1”，请检查权限与磁盘空间。";
const char noProject[] = "没有打开的工程。";
const char notListed[] = "工程中没有文件“%1”。";
const char fileMissing[] = "找不到文件“%1”。";
const char nameTaken[] = "文件“%1”已经存在。";
const char renameFailed[] = "无法把“%1”改名为“%2”。";
const char noSuchWindow[] = "工程中没有窗口“%1”。";
const char outside[] = "文件“%1”不在工程文件夹中。";

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString canonicalFolder(const QString &projectFile)
{
    QString folder = QFileInfo(QFileInfo(projectFile).absolutePath()).canonicalFilePath();
    if (folder.size() > 1 && folder.at(1) == QLatin1Char(':'))
        folder[0] = folder.at(0).toUpper();
    return folder;
}

bool isWindowFile(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("vui") || suffix == QLatin1String("vlwin") ||
           suffix == QLatin1String("xml");
}

bool isSourceFile(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return QStringList{QStringLiteral("vc"), QStringLiteral("vpp"), QStringLiteral("vt"),
                       QStringLiteral("vd"), QStringLiteral("vpi")}
        .contains(suffix);
}

} // namespace

SingleFile createSingleFile(const QString &folder, const QString &name)
{
    const QString error = projectNameError(name);
    if (!error.isEmpty())
        return {QString(), error};
    const QString path = QDir(folder).absoluteFilePath(name + QLatin1String(".vl"));
    if (QFileInfo::exists(path))
        return {QString(), text(nameTaken).arg(QDir::toNativeSeparators(path))};
    const QList<TemplateFile> program =
        filesForNewProject(ProjectKind::Single, name, QString(), QDateTime::currentDateTime());
    if (!QDir().mkpath(folder) || !OutputFiles::write(path, program.first().bytes))
        return {QString(), text(fileNotWritten).arg(QDir::toNativeSeparators(path))};
    return {path, QString()};
}

ProjectManager::ProjectManager(QObject *parent) : QObject(parent), m_watcher(this)
{
    qRegisterMetaType<VL::ProjectInfo>();
    connect(&m_watcher, &FileWatcher::fileChanged, this, &ProjectManager::onFileChanged);
    connect(&m_watcher, &FileWatcher::folderChanged, this, &ProjectManager::onDirectoryChanged);
}

ProjectManager::~ProjectManager() = default;

bool ProjectManager::fail(const char *error, const QString &detail)
{
    m_lastError = detail;
    emit errorOccurred(QString::fromLatin1(error));
    return false;
}

void ProjectManager::noteRecent(const QString &projectFile)
{
    if (!m_noteRecent)
        return;
    m_noteRecent(projectFile);
    emit recentProjectsChanged();
}

bool ProjectManager::makeFolders(const QString &folder)
{
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    const QFileInfo info(folder);
    if (info.exists() && !(info.isDir() && QDir(folder).isEmpty(everything)))
        return fail(createFailed, text(folderExists).arg(QDir::toNativeSeparators(folder)));
    for (const char *part : {"", "/source", "/ui", "/resource", "/output"}) {
        const QString path = folder + QLatin1String(part);
        if (!QDir().mkpath(path))
            return fail(createFailed, text(folderNotMade).arg(QDir::toNativeSeparators(path)));
    }
    return true;
}

bool ProjectManager::writeTemplates(const NewProject &project, VL::ProjectInfo &info)
{
    const QList<TemplateFile> files =
        filesForNewProject(project.kind, project.name, project.windowType, info.created);
    for (const TemplateFile &file : files) {
        const QString path = info.path + QLatin1Char('/') + file.path;
        if (!OutputFiles::write(path, file.bytes))
            return fail(createFailed, text(fileNotWritten).arg(QDir::toNativeSeparators(path)));
        (isWindowFile(file.path) ? info.windowFiles : info.sourceFiles) << file.path;
    }
    return true;
}

bool ProjectManager::createProject(const NewProject &project)
{
    const QString nameError = projectNameError(project.name);
    if (!nameError.isEmpty())
        return fail(createFailed, nameError);
    OpenProject made;
    VL::ProjectInfo &info = made.info;
    info.path = QDir::cleanPath(QDir(project.folder).absoluteFilePath(project.name));
    info.name = project.name;
    info.targetPlatform = project.platform;
    info.uiBackend =
        project.kind == ProjectKind::Gui ? project.windowType : QStringLiteral("win32");
#ifndef Q_OS_WIN
    info.compiler = QStringLiteral("MinGW"); // the only one there is
#endif
    info.created = info.modified = QDateTime::currentDateTime();
    info.globalVarsFile = QStringLiteral("source/globals.vc");
    info.globalConstFile = QStringLiteral("source/constants.vc");
    if (!makeFolders(info.path) || !writeTemplates(project, info))
        return false;
    info.mainWindowFile = info.startupWindowFile = info.windowFiles.value(0);
    made.file = info.path + QLatin1Char('/') + project.name + QLatin1String(".vlproj");
    info.original = ProjectFile::serialize(info);
    if (!OutputFiles::write(made.file, info.original))
        return fail(saveFailed, text(fileNotWritten).arg(QDir::toNativeSeparators(made.file)));
    addOpen(made);
    noteRecent(made.file);
    emit projectCreated(currentProject());
    return true;
}

bool ProjectManager::openProject(const QString &projectFile)
{
    const int open = indexOf(canonicalFolder(projectFile));
    if (open >= 0 && QFileInfo(m_projects.at(open).file) == QFileInfo(projectFile)) {
        activate(open);
        return true;
    }
    const ReadProject read = ProjectFile::read(projectFile);
    if (!read.succeeded())
        return fail(QFileInfo(projectFile).isFile() ? formatInvalid : openFailed, read.error);
    OpenProject opened;
    opened.info = read.info;
    opened.file = QFileInfo(projectFile).absoluteFilePath();
    ProjectFile::addFilesOfFolders(opened.info);
    addOpen(opened);
    noteRecent(opened.file);
    emit projectOpened(currentProject());
    return true;
}

void ProjectManager::addOpen(const OpenProject &project)
{
    m_projects << project;
    m_projects.last().canonical = canonicalFolder(project.file);
    activate(m_projects.size() - 1);
}

void ProjectManager::activate(int index)
{
    if (m_active == index)
        return;
    m_active = index;
    watchFiles();
    emit activeProjectChanged(m_active < 0 ? QString() : m_projects.at(m_active).canonical);
}

bool ProjectManager::saveProject()
{
    if (!hasOpenProject())
        return false;
    OpenProject &project = m_projects[m_active];
    VL::ProjectInfo saved = project.info;
    saved.modified = QDateTime::currentDateTime();
    const QByteArray bytes = ProjectFile::serialize(saved);
    if (!OutputFiles::write(project.file, bytes))
        return fail(saveFailed, text(fileNotWritten).arg(QDir::toNativeSeparators(project.file)));
    m_watcher.noteOwnWrite(project.file);
    saved.original = bytes;
    project.info = saved;
    project.isModified = false;
    emit projectSaved();
    return true;
}

void ProjectManager::closeProject()
{
    if (!hasOpenProject())
        return;
    const QString closed = m_projects.at(m_active).canonical;
    m_projects.removeAt(m_active);
    const int next = qMin(m_active, m_projects.size() - 1);
    m_active = -1;
    if (next < 0)
        m_watcher.clear();
    emit projectClosed(closed);
    emit projectClosed();
    if (next >= 0)
        activate(next);
}

QStringList ProjectManager::openProjects() const
{
    QStringList folders;
    for (const OpenProject &project : m_projects)
        folders << project.canonical;
    return folders;
}

int ProjectManager::indexOf(const QString &canonical) const
{
    return canonical.isEmpty() ? -1 : openProjects().indexOf(canonical);
}

bool ProjectManager::activateProject(const QString &projectPath)
{
    const int index = indexOf(canonicalFolder(projectPath + QLatin1String("/x")));
    if (index < 0)
        return false;
    activate(index);
    return true;
}

VL::ProjectInfo ProjectManager::project(const QString &projectPath) const
{
    const int index = indexOf(canonicalFolder(projectPath + QLatin1String("/x")));
    return index < 0 ? VL::ProjectInfo() : m_projects.at(index).info;
}

const VL::ProjectInfo &ProjectManager::currentProject() const
{
    static const VL::ProjectInfo none;
    return hasOpenProject() ? m_projects.at(m_active).info : none;
}

QString ProjectManager::projectFileOf(const QString &canonicalFolder) const
{
    const int index = indexOf(canonicalFolder);
    return index < 0 ? QString() : m_projects.at(index).file;
}

QString ProjectManager::projectFile() const
{
    return hasOpenProject() ? m_projects.at(m_active).file : QString();
}

bool ProjectManager::isModified() const
{
    return hasOpenProject() && m_projects.at(m_active).isModified;
}

void ProjectManager::setCurrentProject(const VL::ProjectInfo &info)
{
    if (!hasOpenProject())
        return;
    VL::ProjectInfo &current = m_projects[m_active].info;
    const QString path = current.path;
    const QByteArray original = current.original;
    current = info;
    current.path = path;
    current.original = original;
    watchFiles();
    markModified();
}

void ProjectManager::markModified()
{
    if (m_projects.at(m_active).isModified)
        return;
    m_projects[m_active].isModified = true;
    emit projectModified();
}

void ProjectManager::watchFiles()
{
    const OpenProject &project = m_projects.at(m_active);
    const VL::ProjectInfo &info = project.info;
    QStringList files{project.file};
    const QStringList listed =
        info.sourceFiles + info.uiFiles + info.windowFiles + info.resourceFiles;
    for (const QString &file : listed)
        files << QDir(info.path).absoluteFilePath(file);
    m_watcher.watch(files,
                    {info.path + QLatin1String("/source"), info.path + QLatin1String("/ui")});
}

QString ProjectManager::relativePath(const QString &path) const
{
    const QString &folder = currentProject().path;
    const QString absolute = QDir::cleanPath(QDir(folder).absoluteFilePath(path));
    const QString relative = QDir(folder).relativeFilePath(absolute);
    return relative.startsWith(QLatin1String("..")) ? absolute : relative;
}

QStringList *ProjectManager::listFor(const QString &path)
{
    VL::ProjectInfo &info = m_projects[m_active].info;
    if (isWindowFile(path))
        return &info.windowFiles;
    return isSourceFile(path) ? &info.sourceFiles : &info.resourceFiles;
}

bool ProjectManager::addFile(const QString &path)
{
    if (!hasOpenProject())
        return fail(fileFailed, text(noProject));
    const QString file = relativePath(path);
    if (!QFileInfo(QDir(currentProject().path).absoluteFilePath(file)).isFile())
        return fail(fileFailed, text(fileMissing).arg(path));
    // A source may lie anywhere; everything else belongs to the project's folder.
    if (QDir::isAbsolutePath(file) && !isSourceFile(file))
        return fail(fileFailed, text(outside).arg(path));
    QStringList *list = listFor(file);
    if (list->contains(file))
        return true;
    *list << file;
    watchFiles();
    markModified();
    emit fileAdded(file);
    if (isWindowFile(file))
        emit windowFileAdded(ProjectFile::windowName(file));
    return true;
}

bool ProjectManager::removeFile(const QString &path)
{
    if (!hasOpenProject())
        return fail(fileFailed, text(noProject));
    const QString file = relativePath(path);
    VL::ProjectInfo &info = m_projects[m_active].info;
    if (listFor(file)->removeAll(file) + info.uiFiles.removeAll(file) == 0)
        return fail(fileFailed, text(notListed).arg(path));
    watchFiles();
    markModified();
    emit fileRemoved(file);
    if (!isWindowFile(file))
        return true;
    emit windowFileRemoved(ProjectFile::windowName(file));
    if (info.mainWindowFile == file) {
        info.mainWindowFile.clear();
        emit mainWindowChanged(QString());
    }
    if (info.startupWindowFile == file) {
        info.startupWindowFile.clear();
        emit startupWindowChanged(QString());
    }
    return true;
}

bool ProjectManager::renameFile(const QString &oldPath, const QString &newPath)
{
    if (!hasOpenProject())
        return fail(fileFailed, text(noProject));
    const QString from = relativePath(oldPath);
    const QString to = relativePath(newPath);
    const QDir folder(currentProject().path);
    if (!listFor(from)->contains(from))
        return fail(fileFailed, text(notListed).arg(oldPath));
    if (QDir::isAbsolutePath(to) && !QDir::isAbsolutePath(from))
        return fail(fileFailed, text(outside).arg(newPath));
    if (QFileInfo::exists(folder.absoluteFilePath(to)))
        return fail(fileFailed, text(nameTaken).arg(newPath));
    if (!QFile::rename(folder.absoluteFilePath(from), folder.absoluteFilePath(to)))
        return fail(fileFailed, text(renameFailed).arg(oldPath, newPath));
    VL::ProjectInfo &info = m_projects[m_active].info;
    listFor(from)->removeAll(from);
    QStringList *list = listFor(to);
    if (!list->contains(to))
        *list << to;
    const int inOldList = info.uiFiles.indexOf(from);
    if (inOldList >= 0)
        info.uiFiles[inOldList] = to;
    for (QString *named : {&info.mainWindowFile, &info.startupWindowFile, &info.globalVarsFile,
                           &info.globalConstFile})
        *named = *named == from ? to : *named;
    watchFiles();
    markModified();
    emit fileRenamed(from, to);
    if (isWindowFile(from) && isWindowFile(to))
        emit windowFileRenamed(ProjectFile::windowName(from), ProjectFile::windowName(to));
    return true;
}

QString ProjectManager::windowFile(const QString &windowName) const
{
    for (const QString &file : currentProject().windowFiles) {
        if (ProjectFile::windowName(file) == windowName)
            return file;
    }
    return QString();
}

bool ProjectManager::setMainWindow(const QString &windowName)
{
    const QString file = windowFile(windowName);
    if (file.isEmpty())
        return fail(fileFailed, text(noSuchWindow).arg(windowName));
    m_projects[m_active].info.mainWindowFile = file;
    markModified();
    emit mainWindowChanged(windowName);
    return true;
}

bool ProjectManager::setStartupWindow(const QString &windowName)
{
    const QString file = windowFile(windowName);
    if (file.isEmpty())
        return fail(fileFailed, text(noSuchWindow).arg(windowName));
    m_projects[m_active].info.startupWindowFile = file;
    markModified();
    emit startupWindowChanged(windowName);
    return true;
}

void ProjectManager::onFileChanged(const QString &path)
{
    emit fileChanged(path);
}

// The lists follow the folders when a project is opened, not before.
void ProjectManager::onDirectoryChanged(const QString &) {}
