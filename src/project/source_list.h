// Which files of a project are merged, and in which order.
#pragma once

#include "driver/build_listener.h"
#include "project/source_merge.h"

enum class SourceKind
{
    Main,
    Code,
    ClassFile,
    TypeFile,
    TypeBlockFile,
};

struct SourceFile
{
    QString path; // absolute
    QString name; // how places and messages call it
    SourceKind kind = SourceKind::Code;
    int window = -1; // the index of the window whose source it is
};

struct SourceList
{
    QList<SourceFile> files;
    QList<BuildDiagnostic> errors; // one for each file that may not be read
};

// The files in the order of merging, each once. Nothing is read.
SourceList listSources(const ProjectSources &sources);
