// Reads what GCC and its linker print, and turns it into messages about the user's own lines.
#pragma once

#include "driver/build_listener.h"
#include "driver/build_request.h"

#include <QList>
#include <QString>

// One line of tool output that tells of an error.
struct GccError
{
    enum class Kind
    {
        Compile,
        UndefinedReference,
        Other
    };

    Kind kind = Kind::Other;
    QString file; // empty without a place
    int line = 0;
    QString message;
};

// The errors in `output`, in order; notes, warnings and quoted source are passed over.
QList<GccError> readGccErrors(const QString &output);

// A name of generated text as the user wrote it: "_u4e3b" becomes the character it stands for, a
// handle's prefix is taken off.
QString decodeIdentifier(const QString &name);

// One message for each cause. Errors in `generatedFile` are placed on the user's lines by the
// markers in `generatedText` and by `lineMap`. Empty when the output holds no known error.
QList<BuildDiagnostic> translateGccOutput(const QString &output, const QString &generatedFile,
                                          const QString &generatedText,
                                          const SourceLineMap &lineMap);
