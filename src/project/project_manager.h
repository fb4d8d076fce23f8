// ProjectManager: the open projects, the active one among them, and all that is done to their
// files.
#pragma once

#include "project/file_watcher.h"
#include "project/project_info.h"
#include "project/project_templates.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

// What a new project shall be.
struct NewProject
{
    ProjectKind kind = ProjectKind::Empty; // any but Single, which is a file and no project
    QString name;
    QString folder;                               // in which the project's own folder is made
    QString windowType = QStringLiteral("win32"); // of a project with a window; or "vlwin"
    QString platform = QStringLiteral("x64");
};

// A program of one file, which is no project.
struct SingleFile
{
    QString path;  // of the file that was made
    QString error; // or why there is none: a Chinese sentence
};

// Writes "<folder>/<name>.vl" and the folder; never in the place of another file.
SingleFile createSingleFile(const QString &folder, const QString &name);

// Lives on one thread. Functions that return bool tell their failure by `errorOccurred`, and in
// detail by `lastError`; the former active project then stays as it was. Operations without a
// project named work on the active one.
class ProjectManager : public QObject
{
    Q_OBJECT

public:
    explicit ProjectManager(QObject *parent = nullptr);
    ~ProjectManager() override;

    // Keeps the list of recent projects; without it there is none.
    using RecentProjects = std::function<void(const QString &projectFile)>;
    void setRecentProjects(RecentProjects note) { m_noteRecent = std::move(note); }

    bool createProject(const NewProject &project);
    // A project that is open already just becomes the active one.
    bool openProject(const QString &projectFile);
    bool saveProject();
    void closeProject();

    // Why the last operation failed: a Chinese sentence for the user.
    const QString &lastError() const { return m_lastError; }

    bool hasOpenProject() const { return m_active >= 0; }
    // Canonical folders, in the order of opening.
    QStringList openProjects() const;
    bool activateProject(const QString &projectPath);
    // Of any open project, by its folder; an empty value when none is open there.
    VL::ProjectInfo project(const QString &projectPath) const;

    // Of the active project; an empty value without one.
    const VL::ProjectInfo &currentProject() const;
    QString projectFile() const;
    // Of an open project by its canonical folder; empty for any other.
    QString projectFileOf(const QString &canonicalFolder) const;
    bool isModified() const;
    // Replaces what the project says, its folder excepted.
    void setCurrentProject(const VL::ProjectInfo &info);

    // Paths are relative to the project or absolute. Adding a listed file does nothing.
    bool addFile(const QString &path);
    // Takes the file out of the project; it stays on disk.
    bool removeFile(const QString &path);
    // Renames it on disk and in the project.
    bool renameFile(const QString &oldPath, const QString &newPath);
    // Windows are known by the name of their file.
    bool setMainWindow(const QString &windowName);
    bool setStartupWindow(const QString &windowName);

    // To be called after a file of a project was written by this process.
    void noteOwnWrite(const QString &path) { m_watcher.noteOwnWrite(path); }

signals:
    void projectCreated(VL::ProjectInfo info);
    void projectOpened(VL::ProjectInfo info);
    void projectSaved();
    void projectClosed();
    void projectClosed(QString projectPath);
    void projectModified();
    void activeProjectChanged(QString projectPath);
    void fileAdded(QString filePath);
    void fileRemoved(QString filePath);
    void fileRenamed(QString oldPath, QString newPath);
    void fileChanged(QString filePath);
    void windowFileAdded(QString windowName);
    void windowFileRemoved(QString windowName);
    void windowFileRenamed(QString oldName, QString newName);
    void mainWindowChanged(QString windowName);
    void startupWindowChanged(QString windowName);
    void recentProjectsChanged();
    void errorOccurred(QString error);

public slots:
    void onFileChanged(const QString &path);
    void onDirectoryChanged(const QString &path);

private:
    struct OpenProject
    {
        VL::ProjectInfo info;
        QString file;      // the project file, full path
        QString canonical; // the project's folder
        bool isModified = false;
    };

    bool fail(const char *error, const QString &detail);
    bool makeFolders(const QString &folder);
    bool writeTemplates(const NewProject &project, VL::ProjectInfo &info);
    void noteRecent(const QString &projectFile);
    void addOpen(const OpenProject &project);
    void activate(int index);
    void markModified();
    void watchFiles();
    int indexOf(const QString &canonical) const;
    QString relativePath(const QString &path) const;
    QString windowFile(const QString &windowName) const;
    QStringList *listFor(const QString &path);

    FileWatcher m_watcher;
    RecentProjects m_noteRecent;
    QString m_lastError;
    QList<OpenProject> m_projects;
    int m_active = -1;
};
