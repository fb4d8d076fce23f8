// What taking an item of the completion list does to the line.
#pragma once

#include "editor/auto_completer.h"
#include "editor/indentation.h"

struct CompletionInsertion
{
    int removedBefore = 0; // characters on both sides of the cursor that the text replaces
    int removedAfter = 0;
    QString text;
    int cursor = 0;         // a place in the text
    bool opensCall = false; // the cursor stands where arguments go

    bool changesNothing(const QString &prefix) const
    {
        return removedAfter == 0 && text == prefix && cursor == text.size();
    }
};

// `before` and `after` are the parts of the line around the cursor. What is taken replaces the
// prefix, and the rest of a word that it ends in. Functions get their parentheses unless these are
// there, functions passed by name a "&"; lines of snippets are indented like this line, and the
// cursor goes to the first blank one.
CompletionInsertion completionInsertion(const CompletionItem &item, const CompletionOffer &offer,
                                        const QString &before, const QString &after,
                                        const Indentation &indentation);
