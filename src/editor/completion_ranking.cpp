#include "editor/completion_ranking.h"

#include <algorithm>
#include <vector>

namespace {

// A list of this length needs no aliases.
constexpr int longList = 24;

struct Answer
{
    int candidate;
    int score;
    int historyRank;
};

int bestAliasScore(const CompletionQuery &query, const QStringList &aliases)
{
    int best = 0;
    for (const QString &alias : aliases)
        best = qMax(best, aliasScore(query, alias));
    return best;
}

std::vector<Answer> answersTo(const CompletionQuery &query,
                              const QVector<CompletionCandidate> &candidates, FuzzyMatching fuzzy)
{
    std::vector<Answer> answers;
    std::vector<int> unanswered;
    for (int i = 0; i < candidates.size(); ++i) {
        const int points = score(query, candidates.at(i).name, fuzzy);
        if (points > 0)
            answers.push_back({i, points, 0});
        else if (!candidates.at(i).aliases.isEmpty())
            unanswered.push_back(i);
    }
    if (int(answers.size()) >= longList)
        return answers;
    for (int i : unanswered) {
        if (const int points = bestAliasScore(query, candidates.at(i).aliases))
            answers.push_back({i, points, 0});
    }
    return answers;
}

} // namespace

QVector<CompletionItem> rankedCompletions(const CompletionQuery &query,
                                          const QVector<CompletionCandidate> &candidates,
                                          FuzzyMatching fuzzy, const CompletionHistory &history)
{
    std::vector<Answer> answers = answersTo(query, candidates, fuzzy);
    for (Answer &answer : answers)
        answer.historyRank = history.rank(candidates.at(answer.candidate).name.text());
    std::sort(answers.begin(), answers.end(), [](const Answer &a, const Answer &b) {
        if (a.score != b.score)
            return a.score > b.score;
        if (a.historyRank != b.historyRank)
            return a.historyRank > b.historyRank;
        return a.candidate < b.candidate;
    });
    QVector<CompletionItem> items;
    items.reserve(int(answers.size()));
    for (const Answer &answer : answers) {
        items.append(candidates.at(answer.candidate).item);
        items.last().score = answer.score;
    }
    return items;
}
