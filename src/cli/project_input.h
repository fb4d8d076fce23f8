// What the user names as input - a project file, a project folder, a source file - as a build
// request.
#pragma once

#include "cli/options.h"
#include "driver/build_request.h"

#include <QString>

struct ProjectInput
{
    CompilerBuildRequest request;
    QString error; // a Chinese sentence; empty when the request is usable
};

// The request for the first input, with the options of the call put over those of the project.
ProjectInput readProjectInput(const CliOptions &options);
