// ProjectFileOperations: adding files to the active project and taking them away.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class ProjectManager;

// What came of an operation, and what the user is to be told.
struct FileOperation
{
    enum class Notice
    {
        None,
        Information,
        Warning,
        Error,
    };

    bool succeeded = false;
    Notice notice = Notice::None; // how `title` and `message` are shown
    QString title;
    QString message;
    QString status;           // for the status bar
    QString file;             // full path of the file that was made or added
    QStringList removedFiles; // full paths: what shows them is to be closed
};

// What a removal would do, to be agreed to by the user.
struct FileRemoval
{
    bool isAllowed() const { return !files.isEmpty(); }

    FileOperation refusal; // when not allowed
    QString question;
    QStringList files;       // full paths, the chosen one first
    bool keepsFiles = false; // they lie outside of the project and stay on disk
};

// Without widgets. Every operation that changes the project saves it. A failure leaves the project
// as it was, except that a new file which the project refuses stays on disk.
class ProjectFileOperations
{
public:
    explicit ProjectFileOperations(ProjectManager &manager);

    // Succeeds with an open project. The others ask it themselves.
    FileOperation checkProject() const;
    // Of the active project.
    QString projectFolder() const;

    // In "source/"; without one of the known endings the name gets ".vc".
    FileOperation newCodeFile(const QString &name);
    // "source/<name>.vpp".
    FileOperation newClassFile(const QString &name);
    // "ui/<name>.vui".
    FileOperation newWindow(const QString &name);

    // A file outside of the project is either copied or entered by its absolute path.
    bool liesInProject(const QString &file) const;
    FileOperation addExistingFile(const QString &file);
    FileOperation copyExistingFile(const QString &file);
    FileOperation addByAbsolutePath(const QString &file);

    // `file` is relative to the project or absolute, as the tree shows it.
    FileRemoval planRemoval(const QString &file) const;
    FileOperation remove(const FileRemoval &removal);

    // A name without ending keeps the old one; the source of a window goes along with its form.
    FileOperation rename(const QString &file, const QString &newName);

    // Takes one file off the disk. At first: to the system's trash, or away where there is none.
    using Discard = std::function<bool(const QString &file)>;
    void setDiscard(Discard discard) { m_discard = std::move(discard); }

private:
    QString absolute(const QString &file) const;
    QString sourceOf(const QString &windowFile) const;
    bool hasMainFunction() const;
    FileOperation createSource(const QString &name, const QString &text);
    FileOperation registered(FileOperation done, const QString &file);
    FileOperation saved(FileOperation done);

    ProjectManager &m_manager;
    Discard m_discard;
};
