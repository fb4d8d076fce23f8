// How wide a text stands on a terminal.
#pragma once

#include <QString>

// The cells that one character takes: 2 for those of East Asian scripts and for pictures, 0 for
// marks that stand on the character before, else 1. A tab has no width of its own and counts as 1.
int cellWidth(uint codePoint);
int cellWidth(const QString &text);
