// Finds headers of functions and statements that are written wrong, where the parser only notices
// what follows from them.
#pragma once

#include "frontend/lexer.h"
#include "frontend/source_message.h"

#include <QList>

// Chinese messages: functions without a name, and words in front of "( … ) {" that are no keyword
// of a statement. `tokens` end with `EndOfFile`. Right programs give none.
QList<SourceMessage> checkHeaders(const QList<Lexer::Token> &tokens);
