// Checks on the merged text that run before lexing.
#pragma once

#include "driver/build_request.h"
#include "frontend/source_message.h"

#include <QString>
#include <QStringList>

// Finds the first string that is still open at its line's end: a message about the opening quote,
// with line 0 if all close. Comments are not known here: an apostrophe in a comment opens a string.
// Raw strings, r"--( ... )--", are passed over.
SourceMessage checkQuotes(const QString &text);

// Event handlers that are defined more than once, one message for each second definition. Marker
// lines ("// ===== main.vc =====") name the file and restart its count; lines ahead of the first
// marker belong to `firstFile`. What `lineMap` tells of a line counts more.
QStringList findDuplicateHandlers(const QString &text,
                                  const QString &firstFile = QStringLiteral("main.vc"),
                                  const SourceLineMap &lineMap = SourceLineMap());
