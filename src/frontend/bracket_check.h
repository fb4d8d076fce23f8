// Finds the places where brackets are missing or too much.
#pragma once

#include "frontend/lexer.h"
#include "frontend/source_message.h"

#include <QList>

// Whether every bracket of the tokens has its partner.
bool bracketsMatch(const QList<Lexer::Token> &tokens);

// Chinese messages about the brackets of one file, in the order of their places, a handful at most;
// none when all match. `tokens` end with `EndOfFile`, whose line is the last of the file. Where
// several places would do, the indentation of the lines decides. A message stands where a bracket
// is to be added or removed; what it is near to may be the lonely partner in the same line.
QList<SourceMessage> checkBrackets(const QList<Lexer::Token> &tokens);
