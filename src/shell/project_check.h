// Checking a project, or one text, as it stands in the editors: what a build would say of it.
#pragma once

#include "driver/build_pipeline.h"
#include "editor/code_symbols.h"
#include "editor/syntax_issue.h"
#include "project/project_build.h"
#include "project/project_info.h"

#include <QHash>
#include <QList>
#include <QString>

#include <functional>
#include <optional>

// What is to be checked, as a value that crosses threads.
struct ProjectCheckRequest
{
    // Without a project `text` is checked by itself; `file` is its path, or what it is called.
    std::optional<VL::ProjectInfo> project;
    BuildChoices choices;
    LiveState live;
    QString file;
    QString text;
};

// Files are named relative to the project, and those outside of it by their absolute path; without
// a project the one file has the name that the request gave it.
struct ProjectCheckResult
{
    // What concerns no file stands under the empty name; a line of 0 is no place.
    QHash<QString, QList<VlSyntaxIssue>> issues;
    QHash<QString, CodeSymbols> symbols; // of every source that can be read
};

// Writes nothing. `pipeline` keeps from check to check what can be kept. Needs a stack of at least
// `deepStackBytes`. Nothing if `isCancelled`, which is asked between the stages, says so.
std::optional<ProjectCheckResult> checkProject(const ProjectCheckRequest &request,
                                               BuildPipeline &pipeline,
                                               const std::function<bool()> &isCancelled);

// The 1-based column in a file's line where `nearText` stands, of several the one closest to
// `column`; 0 if it does not stand there.
int columnOfNearText(const QString &line, const QString &nearText, int column);

Q_DECLARE_METATYPE(ProjectCheckResult)
