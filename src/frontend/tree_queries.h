// Questions about the syntax tree that checks and generator must answer alike.
#pragma once

#include "frontend/parser.h"

#include <QString>

namespace TreeQueries {

// The block of a function or a method; null without one.
const Parser::ASTNode *bodyOf(const Parser::ASTNode *function);
// Whether a value can only be computed when the program runs: what calls something, and
// dictionaries, which are filled by statements.
bool needsRunTime(const Parser::ASTNode *value);
// Whether a variable of this `varType` is an array of any dimensions.
bool isArrayType(const QString &varType);
// How deep a literal nests: [[1], [2]] has two levels. Dictionaries nest nothing.
int literalDimensions(const Parser::ASTNode *literal);
// "一维", "二维", "三维"; "4 维" beyond.
QString dimensionWord(int dimensions);

} // namespace TreeQueries
