// What the tree of project files shows of a project.
#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

namespace VL {
struct ProjectInfo;
}

enum class ProjectTreeKind
{
    None,
    Project,
    Group,
    // Kinds of files, in the order of their groups.
    Source,
    Class,
    Type,
    Window,
    Resource,
};

Q_DECLARE_METATYPE(ProjectTreeKind)

inline constexpr ProjectTreeKind projectFileKinds[] = {
    ProjectTreeKind::Source, ProjectTreeKind::Class,    ProjectTreeKind::Type,
    ProjectTreeKind::Window, ProjectTreeKind::Resource,
};

// The group that files of that kind stand in; empty for what is no kind of file.
QString projectGroupTitle(ProjectTreeKind kind);

struct ProjectTreeEntry
{
    ProjectTreeKind kind = ProjectTreeKind::None;
    QString path;    // absolute
    QString caption; // the name, with what the file is to the project
    bool isMissing = false;
};

// The files of the project, group by group; "main.vc" and the main window first, all else by name.
QList<ProjectTreeEntry> projectTreeEntries(const VL::ProjectInfo &info);
