// Cuts a generated program into translation units, so that a change compiles little.
#pragma once

#include "codegen/program_text.h"
#include "driver/build_request.h"

#include <QList>
#include <QString>

// A unit is the whole program, in which what other units define is only declared, and what nothing
// in it mentions is left out. So a change in one file does not touch the units of the others,
// unless it changes a declaration that they use.
struct ProgramUnit
{
    QString name; // usable as a file name, ASCII; stable from build to build
    QString text; // to be compiled behind the runtime's header
};

// The unit of everything that no source file has written: windows, globals, entry point.
extern const QString mainUnitName;

// One unit for each source file, the largest ones in several, many small ones together, and the
// main unit. Only the main unit when the program cannot be cut.
QList<ProgramUnit> cutIntoUnits(const ProgramText &program, const SourceLineMap &lineMap);
// The program as a single unit.
ProgramUnit wholeUnit(const ProgramText &program);
