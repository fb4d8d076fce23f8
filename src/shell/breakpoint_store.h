// BreakpointStore: the breakpoints of all files, also of those that are not open.
#pragma once

#include "driver/build_request.h"

#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>

// Those in an open project are kept in ".voreldesk/user.json" of its folder, which is the user's
// own and not shared by version control; all others in the user's data folder. Nothing is written
// before there is a breakpoint. Files are named by full paths, lines are counted from 1.
class BreakpointStore : public QObject
{
    Q_OBJECT

public:
    explicit BreakpointStore(const QString &dataFolder = defaultFolder(),
                             QObject *parent = nullptr);

    // The user's data folder.
    static QString defaultFolder();
    static QString projectFile(const QString &projectFolder);

    // A project that is open already is read again.
    void openProject(const QString &projectFolder);
    void closeProject(const QString &projectFolder);

    QSet<int> breakpoints(const QString &file) const;
    // In place of those there. Saved at once.
    void setBreakpoints(const QString &file, const QSet<int> &lines);

    // Of all open projects and of the files outside of them.
    CompilerDebugBreakpointsMap all() const;
    // Of the files in `projectFolder`, which need not be the only open project.
    CompilerDebugBreakpointsMap all(const QString &projectFolder) const;

signals:
    // A Chinese sentence. The breakpoints last until the program ends.
    void writeFailed(const QString &message);

private:
    using Lines = QMap<QString, QSet<int>>; // by path, relative to the project

    QString folderOf(const QString &file) const;
    QString storeFileOf(const QString &folder) const;
    Lines read(const QString &folder) const;
    bool write(const QString &folder) const;

    QString m_dataFolder;
    QMap<QString, Lines> m_folders; // by project folder; "": the files outside of all
};
