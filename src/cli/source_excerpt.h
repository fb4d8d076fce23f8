// The source line that a problem is about, with a mark under the place.
#pragma once

#include <QString>

// A place in a line of a source file. `column` is 1-based and may be that of a translated line, 0
// if it is unknown; `nearText` is what stands there.
struct ExcerptPlace
{
    int line = 0; // 1-based, for the margin
    int column = 0;
    QString nearText;
};

// Two lines with their margins, `mark` below `source`.
struct SourceExcerpt
{
    QString source; // empty for a blank line, which shows nothing
    QString mark;   // ends in "^~~~"; empty where the place is not certain
};

// The place is marked where `nearText` stands at the column of `text`, else at its only occurrence
// as a word of its own. What does not fit into `cells` (at least 40) is cut to "…", the place
// stays. Characters that could steer a terminal are shown as "�".
SourceExcerpt sourceExcerpt(const QString &text, const ExcerptPlace &place, int cells);
