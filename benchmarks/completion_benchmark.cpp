// Measures how long completion takes for a key, from names to the ordered list, and prints a table.
#include "catalog/command_library.h"
#include "editor/completion_ranking.h"

#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>
#include <vector>

namespace {

constexpr int candidateCount = 3000;
constexpr int repetitions = 40;

// The records of the catalogue, then names as a large project has them.
QVector<CompletionItem> sampleItems()
{
    QVector<CompletionItem> items;
    const QList<CommandInfo> &commands = CommandLibrary::builtin().allCommands();
    for (int i = 0; items.size() < candidateCount; ++i) {
        CompletionItem item;
        item.text = commands.at(i % commands.size()).name;
        if (i >= commands.size())
            item.text += QString::number(i / commands.size());
        item.display = item.text;
        items.append(item);
    }
    return items;
}

QVector<CompletionCandidate> candidatesOf(const QVector<CompletionItem> &items,
                                          CompletionNames &names)
{
    QVector<CompletionCandidate> candidates;
    candidates.reserve(items.size());
    for (const CompletionItem &item : items)
        candidates.append({item, names.prepared(item.soughtName()), {}});
    return candidates;
}

// What stands before the cursor after each key.
QStringList queries()
{
    QStringList result;
    for (const char *word :
         {"qwbcd", "jsonjx", "xswj", "取文本长度", "#编码_utf", "htjx", "vvvvv"}) {
        const QString text = QString::fromUtf8(word);
        for (int length = 1; length <= text.size(); ++length)
            result << text.left(length);
    }
    return result;
}

void printRow(QTextStream &out, const char *name, std::vector<double> milliseconds)
{
    std::sort(milliseconds.begin(), milliseconds.end());
    out << qSetFieldWidth(12) << name << qSetFieldWidth(12)
        << QString::number(milliseconds[milliseconds.size() / 2], 'f', 3)
        << QString::number(milliseconds.back(), 'f', 3) << qSetFieldWidth(0) << '\n';
}

} // namespace

int main()
{
    QTextStream out(stdout);
    const QVector<CompletionItem> items = sampleItems();
    const CompletionHistory history{QString()};
    CompletionNames names;
    QElapsedTimer timer;
    timer.start();
    candidatesOf(items, names);
    out << candidateCount << " candidates; reading the table and preparing all names: "
        << QString::number(double(timer.nsecsElapsed()) / 1e6, 'f', 3) << " ms\n"
        << qSetFieldWidth(12) << "ms per key"
        << "median"
        << "worst" << qSetFieldWidth(0) << '\n';
    for (FuzzyMatching fuzzy : {FuzzyMatching::Off, FuzzyMatching::On}) {
        std::vector<double> milliseconds;
        for (int i = 0; i < repetitions; ++i) {
            for (const QString &query : queries()) {
                timer.restart();
                rankedCompletions(query, candidatesOf(items, names), fuzzy, history);
                milliseconds.push_back(double(timer.nsecsElapsed()) / 1e6);
            }
        }
        printRow(out, fuzzy == FuzzyMatching::On ? "fuzzy" : "strict", milliseconds);
    }
    return 0;
}
