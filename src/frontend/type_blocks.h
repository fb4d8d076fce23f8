// Type blocks: the data-only notation of .vd files.
#pragma once

#include <QString>

// Translates the text of a .vd file into class text in Vorel. `error` (may be null) is set to the
// first problem, a Chinese sentence, or cleared; translation goes on after it.
QString convertTypeBlocks(const QString &text, QString *error);
