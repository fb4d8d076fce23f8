// The old one-file form of a program: code and design in one text.
#pragma once

#include <QString>

struct LegacyText
{
    QString code;
    QString design;
};

// Splits at the two marker lines. A text without the first marker is all code, unchanged; without
// the second, all behind the first is code. Any text is accepted.
LegacyText splitLegacyText(const QString &text);
