// Finds and orders the candidates that answer what was typed.
#pragma once

#include "editor/completion_history.h"
#include "editor/completion_item.h"
#include "editor/completion_score.h"

#include <QStringList>
#include <QVector>

struct CompletionCandidate
{
    CompletionItem item;
    CompletionName name; // of the item's soughtName()
    QStringList aliases; // other names that a command goes by
};

// The items that answer the query with their scores, the best first. Among equals those come first
// that the user picked last, all others as the candidates stand. Aliases help out where names give
// only a short list.
QVector<CompletionItem> rankedCompletions(const CompletionQuery &query,
                                          const QVector<CompletionCandidate> &candidates,
                                          FuzzyMatching fuzzy, const CompletionHistory &history);
