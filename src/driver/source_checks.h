// Checks on the merged text that run before lexing.
#pragma once

#include "driver/build_request.h"

#include <QString>
#include <QStringList>

// An unclosed quote: the message and the merged line of the opening quote; 0 and empty if all
// close.
struct QuoteError
{
    int line = 0;
    QString message;
};

// Finds the first string that is still open at its line's end. Comments are not known here: an
// apostrophe in a comment opens a string. Raw strings, r"--( ... )--", are passed over.
QuoteError checkQuotes(const QString &text);

// Event handlers that are defined more than once, one message for each second definition. Marker
// lines ("// ===== main.vc =====") name the file and restart its count; lines ahead of the first
// marker belong to `firstFile`. What `lineMap` tells of a line counts more.
QStringList findDuplicateHandlers(const QString &text,
                                  const QString &firstFile = QStringLiteral("main.vc"),
                                  const SourceLineMap &lineMap = SourceLineMap());
