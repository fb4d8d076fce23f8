// Measures how long completion takes for a key, from names to the ordered list and from the key to
// the painted list, and prints a table.
#include "catalog/command_library.h"
#include "editor/auto_completer.h"
#include "editor/code_editor.h"
#include "editor/completion_popup.h"
#include "editor/syntax_highlighter.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>
#include <functional>
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
void printRow(QTextStream &out, const char *title, const QStringList &keys,
              const std::function<double(const QString &)> &milliseconds)
{
    std::vector<double> all;
    double slowest = 0;
    QString slowestKey;
    for (const QString &key : keys) {
        std::vector<double> times;
        for (int i = 0; i < repetitions; ++i)
            times.push_back(milliseconds(key));
        all.insert(all.end(), times.begin(), times.end());
        if (median(times) > slowest) {
            slowest = median(times);
            slowestKey = key;
        }
    }
    out << qSetFieldWidth(12) << title << QString::number(median(all), 'f', 3)
        << QString::number(*std::max_element(all.begin(), all.end()), 'f', 3)
        << QString::number(slowest, 'f', 3) << qSetFieldWidth(0) << "  " << slowestKey << '\n';
}

void printScoring(QTextStream &out, const char *title, FuzzyMatching fuzzy)
{
    QVector<CompletionCandidate> candidates = sampleCandidates();
    CompletionNames names;
    printRow(out, title, queries(),
             [&](const QString &query) { return milliseconds(query, fuzzy, candidates, names); });
}

// As many functions as fill up the vocabulary to the candidates wanted.
CodeSymbols sampleSymbols()
{
    CodeSymbols symbols;
    const QList<CommandInfo> &commands = CommandLibrary::builtin().allCommands();
    const int count = candidateCount - CompletionVocabulary::instance().words().size();
    for (int i = 0; symbols.size() < count; ++i) {
        CodeSymbol symbol;
        symbol.name = commands.at(i % commands.size()).name.section(QLatin1Char('.'), -1) +
                      QString::number(i);
        symbol.signature = symbol.name + QStringLiteral("(整数 甲, 整数 乙) 整数");
        symbols.append(symbol);
    }
    return symbols;
}

// The last line holds `text`, with the cursor behind it.
void setLastLine(CodeEditor &editor, const QString &text)
{
    editor.moveCursor(QTextCursor::End);
    QTextCursor line = editor.textCursor();
    line.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
    line.insertText(text);
    editor.setTextCursor(line);
}

// From the key to the painted list, at the end of a source of some 2,000 lines.
void printShowing(QTextStream &out, const char *title, FuzzyMatching fuzzy)
{
    CompletionHistory history{QString()};
    AutoCompleter completer(history, CallbackRules(QString()));
    completer.setProjectSymbols(sampleSymbols());
    completer.setFuzzyMatching(fuzzy);
    CodeEditor editor;
    const SyntaxHighlighter highlighter(editor.document());
    editor.setPlainText(QStringLiteral("    输出(取文本长度(\"甲\") + 1) // 一\n").repeated(2000));
    editor.setAutoCompleter(&completer);
    editor.resize(1000, 700);
    editor.show();
    const auto *list = editor.findChild<CompletionPopup *>();
    const auto strike = [&](const QString &key) {
        setLastLine(editor, key.chopped(1));
        QApplication::processEvents();
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, key.right(1));
        QElapsedTimer timer;
        timer.start();
        QApplication::sendEvent(&editor, &press);
        QApplication::processEvents();
        const double time = double(timer.nsecsElapsed()) / 1e6;
        if (!list->isVisible())
            out << "no list for " << key << '\n';
        return time;
    };
    strike(QStringLiteral("q")); // loads the fonts
    printRow(out, title, queries().filter(QRegularExpression(QStringLiteral("^[^v]"))), strike);
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // That platform warns of every window that is shown.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    const QApplication application(argc, argv);
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    QElapsedTimer timer;
    timer.start();
    CompletionVocabulary::instance();
    out << "vocabulary, once: " << timer.elapsed() << " ms\n"
        << candidateCount << " candidates, ms per key\n"
        << qSetFieldWidth(12) << ""
        << "median"
        << "worst"
        << "slowest key" << qSetFieldWidth(0) << '\n';
    printScoring(out, "strict", FuzzyMatching::Off);
    printScoring(out, "fuzzy", FuzzyMatching::On);
    printShowing(out, "shown", FuzzyMatching::Off);
    printShowing(out, "shown fuzzy", FuzzyMatching::On);
    return 0;
}
