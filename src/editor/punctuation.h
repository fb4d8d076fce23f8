// Chinese punctuation as it is typed, and the ASCII signs that code takes for it.
#pragma once

#include <QString>

// The line with Chinese punctuation outside of strings replaced, sign for sign. A string begins and
// ends at '"' that no backslash precedes; comments are no exception.
QString withAsciiPunctuation(const QString &line);
