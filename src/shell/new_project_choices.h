// What a new project can be, and whether it can be made.
#pragma once

#include "project/project_manager.h"

#include <QList>
#include <QString>

struct ProjectKindChoice
{
    ProjectKind kind = ProjectKind::Empty;
    QString label;
    QString tip;
    QString icon; // resource path
};

struct WindowTypeChoice
{
    QString uiBackend;
    QString label;
    QString tip;
    bool canBuild = false;
};

// In the order in which they are offered; read once from ":/shell/new_project.json".
const QList<ProjectKindChoice> &projectKindChoices();
const QList<WindowTypeChoice> &windowTypeChoices();

namespace NewProjectRules {

// Chinese sentences; empty when nothing stands in the way. The kind, the name and the folder count.
QString nameError(const NewProject &project);
QString folderError(const NewProject &project);

// Where the project or the single file will lie, full path.
QString target(const NewProject &project);

// "MyProject", or with a number where the folder has one already.
QString freeName(const QString &folder);

} // namespace NewProjectRules
