// The debugger: calls that stop a program at the user's breakpoints, put into the generated text.
#pragma once

#include "codegen/program_text.h"
#include "driver/build_request.h"
#include "frontend/parser.h"

#include <QString>
#include <QVector>

// What the lines of the generated text come from.
struct DebugSource
{
    QString text; // all files
    SourceLineMap lineMap;
    QVector<int> functionLines; // merged lines at which functions and classes begin, ascending
};

// The lines for DebugSource::functionLines.
QVector<int> functionLinesOf(const Parser::ASTNode *root);

// Puts a call ahead of the first statement of each line with a breakpoint, and the support text
// ahead of everything. A breakpoint on a line without a statement takes the next line of the same
// function that has one; without such a line it has no effect. The box of a call shows the locals
// in scope and the components that the line reads, as far as they have a text. Whatever the source
// holds, a program that compiled before compiles afterwards.
void insertBreakpoints(ProgramText &program, const CompilerDebugBreakpointsMap &breakpoints,
                       const DebugSource &source);
