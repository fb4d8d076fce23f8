// Gathers the sources of a project, or a single file, into the one text that is compiled.
#pragma once

#include "driver/build_listener.h"
#include "driver/build_request.h"

#include <QList>
#include <QString>

// One text, and where each of its lines comes from. Marker lines and the blank lines between files
// have no entry. With errors, apart from warnings, the text is not to be used.
struct MergedSource
{
    QString text;
    SourceLineMap lineMap;
    QList<BuildDiagnostic> errors;
};

// Every .vc, then .vpp, .vt and .vd file of the folder "source" of the project (of the project
// folder itself if there is none), each kind in name order. Places name files relative to the
// project.
MergedSource mergeProject(const QString &projectPath);

// One file; `displayName` is how places name it.
MergedSource mergeSingleFile(const QString &path, const QString &displayName);
