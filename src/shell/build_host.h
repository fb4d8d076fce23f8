// What the build flow asks of the window around it.
#pragma once

#include "project/project_build.h"

#include <QString>
#include <QStringList>

#include <optional>

// What is to be built, as it stands in the editors and designers.
struct BuildSubject
{
    bool isEmpty() const { return !project && sourcePath.isEmpty() && sourceText.isEmpty(); }

    std::optional<VL::ProjectInfo> project; // the active one
    LiveState live;                         // counts with a project only
    // Without a project the source in front; without a path it has not been saved yet.
    QString sourcePath;
    QString sourceText;
};

// Called on the thread of the windows.
class BuildHost
{
public:
    virtual ~BuildHost() = default;

    // Commits all designs and saves whatever is modified without asking; Chinese sentences on what
    // could not be saved. What `buildSubject` gives is built all the same.
    virtual QStringList saveAllFilesBeforeBuild() = 0;
    virtual BuildSubject buildSubject() = 0;
    // Platform, configuration, compiler.
    virtual BuildChoices buildChoices() = 0;
    // By absolute path, of open editors and files of the project.
    virtual CompilerDebugBreakpointsMap breakpoints() = 0;
};
