// From what is open in the IDE to the request of a build; values only, for any thread.
#pragma once

#include "shell/build_host.h"

#include <QList>
#include <QString>
#include <QStringList>

struct PreparedBuild
{
    CompilerBuildRequest request;
    QStringList notes;                  // for the build's output
    QList<BuildDiagnostic> diagnostics; // of forms and sources that cannot be read
    QString problem; // a Chinese sentence when there is nothing to build, else empty
    // How messages call a source that was handed over in a temporary file, and that source's path.
    QString temporaryName;
    QString sourcePath;
};

// The request as far as it is known without reading a file: what running and cleaning need.
CompilerBuildRequest outlineRequest(const BuildSubject &subject, const BuildChoices &choices);
// Reads forms and sources, and leaves the text to be built in the temporary folder.
PreparedBuild prepareBuild(const BuildSubject &subject, const BuildChoices &choices);
// The file that a problem of this build stands in: absolute, or empty.
QString issueFile(const PreparedBuild &build, const QString &file);
