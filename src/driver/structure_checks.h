// Checks on the syntax tree that need no types: what can never become a program.
#pragma once

#include "frontend/parser.h"

#include <QList>
#include <QStringList>

// Functions inside functions, and event functions of windows that the program does not have. Each
// message begins "第 n 行：".
QList<SourceMessage> checkStructure(const Parser::ASTNode *root, const QStringList &windowNames);
