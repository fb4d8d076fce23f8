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

// The same for texts that come one after the other while the user types: what stands above the last
// line is read again only when it has changed.
class TypedCodeMask
{
public:
    MaskedCode masked(const QString &source);

private:
    bool endsWhereLineMayBegin() const;

    QString m_above;
    MaskedCode m_maskedAbove;
};
