// Workspace: the texts of the user's program, as editors and disk hold them together.
#pragma once

#include "project/project_build.h"
#include "shell/find_in_files.h"

#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QString>

class EditorTabs;
class ProjectManager;

// What an open editor holds counts instead of the file. Paths are absolute.
class Workspace
{
public:
    // Both must outlive it.
    Workspace(const ProjectManager &projects, const EditorTabs &tabs);

    // Every source of the active project, or the current file without one.
    QMap<QString, QString> sourceTexts();
    // What editors hold of the active project's sources that is not saved.
    LiveState liveState() const;
    // What a search in files goes through.
    QList<SearchFile> searchFiles() const;
    // Whether the file belongs to the active project.
    bool isInProject(const QString &path) const;
    // Names as messages give them, relative to the project, to paths.
    QString absolutePath(const QString &name) const;
    // As short as the user can tell it apart: relative to the project where it lies in it.
    QString displayName(const QString &path) const;

private:
    // A file as it was read last.
    struct KnownFile
    {
        QDateTime changed;
        qint64 size = -1;
        QString text;
    };

    QString diskText(const QString &path);

    const ProjectManager &m_projects;
    const EditorTabs &m_tabs;
    QHash<QString, KnownFile> m_known;
};
