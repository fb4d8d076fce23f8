// Measures the syntax highlighter on generated sources and prints a table: the rules alone, and a
// whole document coloured again.
#include "editor/syntax_highlighter.h"
#include "project_source.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPlainTextDocumentLayout>
#include <QTextDocument>
#include <QTextStream>

#include <functional>

namespace {

constexpr int repetitions = 5;

// The best of some runs, in milliseconds.
double measured(const std::function<void()> &run)
{
    double best = 0;
    for (int i = 0; i < repetitions; ++i) {
        QElapsedTimer timer;
        timer.start();
        run();
        const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
        best = i == 0 ? milliseconds : qMin(best, milliseconds);
    }
    return best;
}

double rulesTime(const QStringList &lines)
{
    const HighlightRules rules;
    return measured([&] {
        LineState state = LineState::Code;
        for (const QString &line : lines)
            state = rules.highlighted(line, state).state;
    });
}

double documentTime(const QString &source)
{
    QTextDocument document;
    document.setDocumentLayout(new QPlainTextDocumentLayout(&document));
    document.setPlainText(source);
    SyntaxHighlighter highlighter(&document);
    return measured([&] {
        highlighter.beginAnew();
        while (!highlighter.isComplete())
            QCoreApplication::processEvents();
    });
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QTextStream out(stdout);
    out << "    lines   rules ms   document ms   rules us/line\n";
    for (const int wanted : {1000, 20000}) {
        const QString source = projectSource(wanted);
        const QStringList lines = source.split(QLatin1Char('\n'));
        const double rules = rulesTime(lines);
        out << qSetFieldWidth(9) << lines.size() << qSetFieldWidth(11)
            << QString::number(rules, 'f', 1) << qSetFieldWidth(14)
            << QString::number(documentTime(source), 'f', 1) << qSetFieldWidth(16)
            << QString::number(rules * 1000 / lines.size(), 'f', 2) << qSetFieldWidth(0) << '\n';
        out.flush();
    }
    return 0;
}
