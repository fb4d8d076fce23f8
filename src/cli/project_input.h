// What the user names as input: a project file, a project folder, a source file.
#pragma once

#include "cli/options.h"
#include "project/project_build.h"

#include <QString>

#include <optional>

struct ProjectInput
{
    // Without the sources and windows of `project`; complete for any other input.
    CompilerBuildRequest request;
    std::optional<VL::ProjectInfo> project; // of a project file
    QString error;                          // a Chinese sentence; empty when the input is usable
};

// Finds out what the first input is, with the options of the call put over those of the project.
// Sources are not read.
ProjectInput readProjectInput(const CliOptions &options);
// Reads forms and sources of a project.
AssembledBuild assembleInput(const ProjectInput &input, const CliOptions &options);
