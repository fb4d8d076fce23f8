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
QVector<CompletionCandidate> sampleCandidates()
{
    QVector<CompletionCandidate> candidates;
    const QList<CommandInfo> &commands = CommandLibrary::builtin().allCommands();
    for (int i = 0; candidates.size() < candidateCount; ++i) {
        const CommandInfo &command = commands.at(i % commands.size());
        CompletionItem item;
        item.text = command.name;
        if (i >= commands.size())
            item.text += QString::number(i / commands.size());
        item.display = item.text;
        candidates.append({item, item.soughtName(), command.aliases});
    }
    return candidates;
}

// What the editor does for each key: every name is looked up anew, for names come and go.
double milliseconds(const QString &query, FuzzyMatching fuzzy,
                    QVector<CompletionCandidate> &candidates, CompletionNames &names)
{
    static const CompletionHistory history{QString()};
    QElapsedTimer timer;
    timer.start();
    for (CompletionCandidate &candidate : candidates)
        candidate.name = names.prepared(candidate.item.soughtName());
    rankedCompletions(query, candidates, fuzzy, history);
    return double(timer.nsecsElapsed()) / 1e6;
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

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// The slowest key is the one with the highest median; the worst time is that of a single stroke,
// whatever else the machine did meanwhile.
void printRow(QTextStream &out, FuzzyMatching fuzzy)
{
    QVector<CompletionCandidate> candidates = sampleCandidates();
    CompletionNames names;
    std::vector<double> all;
    double slowest = 0;
    QString slowestQuery;
    for (const QString &query : queries()) {
        std::vector<double> times;
        for (int i = 0; i < repetitions; ++i)
            times.push_back(milliseconds(query, fuzzy, candidates, names));
        all.insert(all.end(), times.begin(), times.end());
        if (median(times) > slowest) {
            slowest = median(times);
            slowestQuery = query;
        }
    }
    out << qSetFieldWidth(12) << (fuzzy == FuzzyMatching::On ? "fuzzy" : "strict")
        << QString::number(median(all), 'f', 3)
        << QString::number(*std::max_element(all.begin(), all.end()), 'f', 3)
        << QString::number(slowest, 'f', 3) << qSetFieldWidth(0) << "  " << slowestQuery << '\n';
}

} // namespace

int main()
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    out << candidateCount << " candidates, ms per key\n"
        << qSetFieldWidth(12) << ""
        << "median"
        << "worst"
        << "slowest key" << qSetFieldWidth(0) << '\n';
    printRow(out, FuzzyMatching::Off);
    printRow(out, FuzzyMatching::On);
    return 0;
}
