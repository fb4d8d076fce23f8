// ProgramResources: icon, version data and bitmaps that go into a built program.
#pragma once

#include "driver/build_request.h"

#include <QList>
#include <QString>
#include <QStringList>

// A file as it was when the resources were gathered; `path` may name an embedded resource.
struct ResourceFile
{
    QString path; // absolute; empty: no file
    qint64 size = 0;
    qint64 modified = 0; // milliseconds since 1970
};

// An image of a designed context menu, known to the program by its number.
struct DesignBitmap
{
    int id = 0; // 1..65535, unique in the program
    ResourceFile file;
};

// Plain values; texts are as the user wrote them, the script's writer makes them safe.
struct ProgramResources
{
    ResourceFile icon;
    QString productName;
    QString fileDescription;
    QString companyName;
    QString copyright;
    QString version; // four numbers of 0..65535, with "." between
    QString internalName;
    QList<DesignBitmap> bitmaps;
};

struct GatheredResources
{
    ProgramResources resources;
    QStringList warnings; // Chinese sentences about files that could not be taken
};

// What the program at `executable` shall carry. An icon or a bitmap that is no readable image of
// its kind is left out with a warning; there is always an icon.
GatheredResources gatherProgramResources(const CompilerBuildRequest &request,
                                         const QString &executable);

// Names a set of resources: two sets with the same key make the same object.
QString resourceKey(const ProgramResources &resources);

// Any text as four numbers with "." between; "1.0.0.0" for an empty one. What is no number counts
// as 0, what is too large as 65535.
QString fourPartVersion(const QString &version);
