// The semantic checks: what the parser cannot know of a program.
#pragma once

#include "frontend/parser.h"
#include "frontend/program_context.h"
#include "frontend/source_message.h"

#include <QList>

// Walks a whole program and reports names that nobody declared, calls that do not fit, values of
// the wrong type and declarations that nobody uses. What is not sure passes. A tree with missing
// children is walked without complaint; messages stop after a limit.
QList<SourceMessage> checkSemantics(const Parser::ASTNode *root, const ClassRegistryMap &classes,
                                    const ProgramContext &context);
