// A compact text form of the syntax tree, for tests.
#pragma once

#include "frontend/parser.h"

#include <QString>

// One node a line, two blanks a level: kind, 'value', @line:column, key=value. What is empty is
// left out.
QString dumpTree(const Parser::ASTNode &root);

// Tree, messages, variable types and user classes of one source, section by section.
QString dumpSource(const QString &source);

// "If(Binary > ('甲', '1'), Block)": the tree below on one line without lines and metadata.
QString sketch(const Parser::ASTNode &node);
