// What of a source text is code, and what is a string or a comment.
#pragma once

#include <QChar>
#include <QString>

// Stands for each character of a string, its quotes and its line breaks included.
constexpr QChar stringFiller(0xFFFC);

struct MaskedCode
{
    QString text; // as long as the source; strings are filled, comments blank
    bool endsInCode = true;
};

// Reads as the lexer does: strings may span lines. Only on the last line do Chinese quotation marks
// begin a string, for they become ASCII ones when the line is left.
MaskedCode maskedCode(const QString &source);
