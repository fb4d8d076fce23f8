// What the keys of the code editor do to the text. Nothing here knows of widgets.
#pragma once

#include "editor/indentation.h"

#include <QString>
#include <QVector>

#include <optional>

namespace TypingRules {

// Whole lines with '\n' between them, and the selection in them; `cursor` is the end that moves.
struct State
{
    QString text;
    int anchor = 0;
    int cursor = 0;

    bool hasSelection() const { return anchor != cursor; }
    int begin() const { return qMin(anchor, cursor); }
    int end() const { return qMax(anchor, cursor); }
};

struct Replacement
{
    int start = 0;
    int length = 0;
    QString text;
};

// Replacements in rising order that do not overlap, their places being those of the text before;
// `anchor` and `cursor` are places in the text after.
struct Change
{
    QVector<Replacement> replacements;
    int anchor = 0;
    int cursor = 0;
};

State applied(const State &state, const Change &change);

// Whether the end of this beginning of a line lies inside '"'.
bool isInString(const QString &lineToCursor);
// The same, with a text between Chinese quotation marks counted as a string, as it becomes one.
bool isInText(const QString &lineToCursor);
// The run of letters, digits and '_' that ends at the cursor.
QString wordBefore(const QString &line, int column);

// What the key of `sign` does beyond inserting it: pairs of ( [ { " and stepping over the closing
// sign. Nothing: it is inserted like any other. `state` is one line.
std::optional<Change> typed(const State &state, QChar sign);
// Return. `state` is one line without a selection.
Change lineBreak(const State &state, const Indentation &indentation);
// Tab: the template of the word in front of the cursor, or one unit; with a selection one unit for
// every line of it. Those lines are selected afterwards, here and below.
Change tab(const State &state, const Indentation &indentation);
// Takes one unit, or what there is of it, from the lines of the selection or the cursor's line.
Change unindent(const State &state, const Indentation &indentation);

// The selection once more behind it, or the cursor's line once more below it; the copy receives
// the selection or the cursor.
Change duplicate(const State &state);
// Takes "//" from the lines if all of them that are not blank begin with it, else sets it in front
// of each of these, behind the indentation.
Change toggleLineComments(const State &state);
// Sets the selection, or what the cursor's line holds, between "/*" and "*/", or takes these away.
Change toggleBlockComment(const State &state);
// The lines of the selection inside of the statement `word` of CodeTemplates; nothing for others.
std::optional<Change> wrap(const State &state, const QString &word, const Indentation &indentation);

} // namespace TypingRules
