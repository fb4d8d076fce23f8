// Marks that are set on lines and go where the text of their line goes.
#pragma once

#include <QSet>

class QTextBlock;
class QTextDocument;

// Breakpoints and bookmarks live on the blocks of a document; lines are counted from 1. A line that
// is deleted takes its marks along, and undoing that does not bring them back.
namespace LineMarks {

// Bits: a line may have both.
enum class Kind
{
    Breakpoint = 1,
    Bookmark = 2,
};

bool has(const QTextBlock &block, Kind kind);
void set(QTextBlock block, Kind kind, bool isSet);
// All marks of `from` to `to`, in place of those there.
void move(QTextBlock from, QTextBlock to);
QSet<int> lines(const QTextDocument &document, Kind kind);
// Exactly these lines; numbers that the document has no line for are left out.
void setLines(const QTextDocument &document, Kind kind, const QSet<int> &lines);

} // namespace LineMarks
