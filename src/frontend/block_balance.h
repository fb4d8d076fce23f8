// Where the braces of blocks are missing or too much, told by the indentation.
#pragma once

#include <QVector>

// What matters about blocks in a text, in its order. `token` is an index that only the caller
// understands; columns are 1-based.
struct BlockEvent
{
    enum Kind
    {
        Open,   // a "{"; `column` is where its statement's line begins
        Close,  // a "}"; `column` is its own if it is the first of its line, else 0
        Line,   // a line begins with something else, at `column`
        Member, // the same; it belongs to no deeper block than the outermost
        Branch, // the same; a block should end ahead of it
        Header, // behind it a block should begin, but does not; `column` as for Open
        End,    // of the text, always the last event; `column` is 0
    };

    Kind kind = Line;
    int token = 0;
    int line = 0;
    int column = 0;
    bool goesOn = false; // of an Open: in the same line
};

// What to do at an event to have the braces match.
struct BlockRepair
{
    enum Kind
    {
        AddClose, // ahead of the event's line, for the block of `opener`
        RemoveIt, // the brace of the event
        AddOpen,  // at the header
    };

    Kind kind = AddClose;
    int event = 0;
    int opener = 0; // an event, too; 0 for the other kinds
};

// The repairs that make all braces match and leave the fewest lines that stand at another depth
// than their indentation says. Empty when the braces match; at most `most` repairs.
QVector<BlockRepair> repairBlocks(const QVector<BlockEvent> &events, int most);
