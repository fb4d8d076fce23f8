// Measures lexer, parser, checks and generator on generated projects and prints a table.
#include "codegen/code_generator.h"
#include "frontend/parser.h"
#include "frontend/program_context.h"
#include "frontend/semantic_checks.h"
#include "project_source.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <functional>
#include <memory>

namespace {

constexpr int repetitions = 5;

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

// Peak memory of this process in MiB, and a fresh start of its counting. 0 where the system does
// not tell.
double peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

void resetPeakMemory()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

// The best of some runs, in seconds.
double measured(const std::function<void()> &run)
{
    double best = 0;
    for (int i = 0; i < repetitions; ++i) {
        QElapsedTimer timer;
        timer.start();
        run();
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        best = i == 0 ? seconds : qMin(best, seconds);
    }
    return best;
}

void printRow(const QString &stage, int lines, const QString &source, double seconds)
{
    const double megabytes = double(source.toUtf8().size()) / 1e6;
    out() << qSetFieldWidth(9) << lines << qSetFieldWidth(10) << stage << qSetFieldWidth(11)
          << QString::number(seconds * 1000, 'f', 2) << qSetFieldWidth(13)
          << QString::number(lines / seconds, 'f', 0) << qSetFieldWidth(9)
          << QString::number(megabytes / seconds, 'f', 1) << qSetFieldWidth(10)
          << QString::number(peakMemory(), 'f', 1) << qSetFieldWidth(0) << '\n';
    out().flush();
}

// From the tree to the whole program text, runtime included, in one file.
double generationSeconds(const Parser::ASTNode &tree, const Parser &parser)
{
    CodeGenerator generator;
    generator.registerImplicitWindow();
    generator.setClassRegistry(parser.classRegistry());
    QElapsedTimer timer;
    timer.start();
    const QString text = generator.generate(&tree).oneFile();
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    if (text.isEmpty() || !generator.errors().isEmpty())
        qFatal("The generated source does not translate: %s",
               qPrintable(generator.errors().value(0)));
    return seconds;
}

double checkSeconds(const Parser::ASTNode &tree, const Parser &parser)
{
    CodeGenerator generator;
    generator.registerImplicitWindow();
    QElapsedTimer timer;
    timer.start();
    const auto context = generator.programContext([](int) { return false; });
    const QList<SourceMessage> messages = checkSemantics(&tree, parser.classRegistry(), *context);
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    for (const SourceMessage &message : messages) {
        if (!message.isWarning)
            qFatal("The generated source is refused: %s", qPrintable(message.text));
    }
    return seconds;
}

void measureProject(int wantedLines)
{
    const QString source = projectSource(wantedLines);
    const int lines = source.count(QLatin1Char('\n'));
    resetPeakMemory();
    QList<Lexer::Token> tokens;
    const double lexing = measured([&] { tokens = Lexer(source).tokenize(); });
    printRow(QStringLiteral("lex"), lines, source, lexing);

    // Deleting the tree is part of what a build pays for it, but not of parsing.
    std::unique_ptr<Parser::ASTNode> tree;
    double parsing = 0;
    double checking = 0;
    double generating = 0;
    for (int i = 0; i < repetitions; ++i) {
        tree.reset();
        Parser parser;
        QElapsedTimer timer;
        timer.start();
        tree.reset(parser.parse(tokens));
        const double seconds = double(timer.nsecsElapsed()) / 1e9;
        parsing = i == 0 ? seconds : qMin(parsing, seconds);
        if (!parser.errors().isEmpty())
            qFatal("The generated source has an error: %s", qPrintable(parser.errors().first()));
        const double check = checkSeconds(*tree, parser);
        checking = i == 0 ? check : qMin(checking, check);
        const double generation = generationSeconds(*tree, parser);
        generating = i == 0 ? generation : qMin(generating, generation);
    }
    printRow(QStringLiteral("parse"), lines, source, parsing);
    printRow(QStringLiteral("check"), lines, source, checking);
    printRow(QStringLiteral("generate"), lines, source, generating);
    printRow(QStringLiteral("all"), lines, source, lexing + parsing + checking + generating);
}

} // namespace

int main()
{
    out() << "    lines     stage         ms      lines/s     MB/s  peak MiB\n";
    for (const int lines : {1000, 10000, 100000})
        measureProject(lines);
    return 0;
}
