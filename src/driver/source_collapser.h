// Reduces a source text to what the program depends on.
#pragma once

#include <QString>

// The text with every run of white space and comments between two words replaced by one blank, and
// none at its ends; strings are left as they are. Two texts with the same result give the lexer the
// same tokens, so they are one program. Any text is accepted; takes linear time.
QString collapsedSource(const QString &source);
