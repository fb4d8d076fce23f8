// Merging the sources of a project into the one text that is compiled.
#pragma once

#include "driver/source_merger.h"
#include "driver/source_text.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

// A window of a project as far as its source is concerned: the file of that base name.
struct ProjectWindow
{
    QString name;
    bool isMain = false;
    // The names of its components, where they are known.
    std::optional<QSet<QString>> components;
};

// What there is to merge.
struct ProjectSources
{
    QString projectPath;
    // Paths relative to the project, with forward slashes. A file outside of the project is read
    // only when its absolute path stands here. Files of other kinds than .vc, .vpp, .vt and .vd
    // are left out.
    QStringList files;
    // In the order of their sources.
    QList<ProjectWindow> windows;
    // What editors hold that is not saved, by absolute path or path relative to the project.
    QHash<QString, QString> liveTexts;
};

struct MergeLimits
{
    qint64 fileBytes = maxSourceBytes;
    int mergedChars = maxMergedChars;
};

// The merged text: "source/main.vc", the sources of the windows, the other .vc files, the .vpp and
// the type files, each kind in name order. Places name files relative to the project, lines are
// those of the file as it is on disk. Every file that cannot be used is an error, one that is
// gone a warning; a limit that is passed ends the merging. A text without errors is never empty.
MergedSource mergeSources(const ProjectSources &sources, const MergeLimits &limits = {});
