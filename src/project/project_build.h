// From a project, or a single file, to the request that the build driver takes.
#pragma once

#include "driver/build_listener.h"
#include "driver/build_request.h"
#include "project/project_info.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// What is open in an editor or a designer and counts instead of the file. Keys are paths relative
// to the project.
struct LiveState
{
    QHash<QString, QString> sources;
    QHash<QString, QList<VL::DesignComponent>> designs;
};

// What the user has chosen beside the project. Empty texts leave the choice to the project.
struct BuildChoices
{
    QString buildConfig;
    QString platform;
    QString uiBackend;
    QString compilerType;
    QString defaultCompiler;
    bool chineseError = true;
    bool staticLink = false;
};

// A request, and what there was to say while it was put together. With errors there is nothing to
// build.
struct AssembledBuild
{
    bool succeeded() const;

    CompilerBuildRequest request;
    QStringList notes; // what was read, for the build's output
    QList<BuildDiagnostic> diagnostics;
};

// Reads the forms, merges the sources and decides the options. A form that cannot be read
// contributes no components, with a warning.
AssembledBuild assembleBuild(const VL::ProjectInfo &project, const BuildChoices &choices,
                             const LiveState &live = LiveState());
