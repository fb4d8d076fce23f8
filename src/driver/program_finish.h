// What a generated program gets before it is compiled: placeholders, library text, stubs, headers.
#pragma once

#include "codegen/program_text.h"

#include <QString>
#include <QStringList>

#include <functional>

// What the support libraries that a program uses bring along.
struct LibraryContribution
{
    QString runtimeText;
    QStringList problems; // Chinese sentences; the build fails when there are any
    QStringList linkLibraries;
    QStringList includeFolders;
    QStringList libraryFolders;
    QStringList dlls; // full paths; the program needs them beside it
};

// What the driver knows of the libraries that a program needs.
struct LibraryNeeds
{
    QStringList named;
    bool network = false; // the network part of the runtime
};

// Finds the contribution for a program.
using LibraryProvider =
    std::function<LibraryContribution(const ProgramText &program, const LibraryNeeds &needs)>;

// Notes on features that are gone, or that need something on the target system.
QStringList removedFeatureWarnings(const ProgramText &program);
// Whether the program uses the script engine; names in comments do not count.
bool usesScriptEngine(const ProgramText &program);
// Whether the program uses a network class.
bool usesNetworkClasses(const ProgramText &program);

// Puts `userClasses` ahead of everything that uses them; when it is empty, one placeholder for each
// user class that the program names. Does nothing to a program that declares its classes.
void insertUserClasses(ProgramText &program, const QString &userClasses);
// Puts in the text of the used libraries, and ahead of it a stub for each part of the framework
// that is called and defined nowhere.
void insertLibraryText(ProgramText &program, const QString &libraryText);
// Adds the standard headers that parts of the text need and nobody includes.
void repairHeaders(ProgramText &program);
