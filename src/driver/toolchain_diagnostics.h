// From the raw output of a toolchain to messages on the lines of the user's files.
#pragma once

#include "driver/build_listener.h"
#include "driver/toolchain.h"

#include <QList>
#include <QString>
#include <QStringList>

// What a toolchain was given, and what that was made from.
struct TranslatedProgram
{
    QList<CompiledText> texts;
    SourceLineMap lineMap;
    QString source; // merged
};

// One error for each cause and at most one warning, in the order of the output; errors are placed
// by the markers in the generated texts and by the line map. Behind fifty errors one more tells how
// many were left out. Empty when the output holds nothing that is known.
QList<BuildDiagnostic> translateToolOutput(const QString &output, const TranslatedProgram &program);

// The texts of errors that belong to no source.
QStringList translateToolErrors(const QString &output);
