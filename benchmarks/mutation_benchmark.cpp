// Measures what becomes of wrong programs: each must end in a message of the checks at the right
// line, or build.
//
// Usage: mutation_benchmark [--count N] [--seed N] [--list] [PROGRAM...]
// A program is a project folder or a .vc file; without any, the examples and test programs.
#include "driver/build_pipeline.h"
#include "driver/compiler_thread.h"
#include "mutations/mutant.h"
#include "project/project_build.h"
#include "project/project_info.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <vector>

namespace {

constexpr int defaultCount = 2400;
constexpr int attemptsPerMutant = 60;

QString readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void writeFile(const QString &path, const QString &text)
{
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

// Keeps the problems that a build tells.
class Collector : public BuildListener
{
public:
    QList<BuildDiagnostic> errors;
    QString toolOutput;

    void progress(int, const QString &) override {}
    void note(const QString &) override {}
    void output(const QString &text) override { toolOutput += text + QLatin1Char('\n'); }
    void diagnostic(const BuildDiagnostic &diagnostic) override
    {
        if (diagnostic.severity == BuildDiagnostic::Severity::Error)
            errors << diagnostic;
    }
    bool isCancelled() override { return false; }
};

// A right program in a folder of its own, of which one file at a time is made wrong.
class Program
{
public:
    Program(const QString &path, const QString &folder) : m_name(QFileInfo(path).fileName())
    {
        if (QFileInfo(path).isFile()) {
            m_single = folder + QLatin1Char('/') + m_name;
            writeFile(m_single, readFile(path));
            m_sources << m_single;
            return;
        }
        copyFolder(path, folder);
        const QStringList projects = QDir(folder).entryList({QStringLiteral("*.vlproj")});
        m_project = ProjectFile::read(folder + QLatin1Char('/') + projects.value(0)).info;
        ProjectFile::addFilesOfFolders(m_project);
        QDirIterator sources(folder + QStringLiteral("/source"),
                             {QStringLiteral("*.vc"), QStringLiteral("*.vpp")}, QDir::Files);
        while (sources.hasNext())
            m_sources << sources.next();
        m_sources.sort();
    }

    const QString &name() const { return m_name; }
    const QStringList &sources() const { return m_sources; }

    // A line of one of the files, named as diagnostics name it; empty without one.
    QString sourceLine(const QString &file, int line) const
    {
        for (const QString &source : m_sources) {
            if (QFileInfo(source).fileName() == QFileInfo(file).fileName())
                return readFile(source).section(QLatin1Char('\n'), line - 1, line - 1);
        }
        return QString();
    }

    BuildOutcome build(BuildGoal goal, Collector &collector)
    {
        BuildChoices choices;
        choices.buildConfig = QStringLiteral("debug");
        choices.defaultCompiler = QStringLiteral("MinGW");
        CompilerBuildRequest request;
        if (m_single.isEmpty()) {
            const AssembledBuild assembled = assembleBuild(m_project, choices);
            for (const BuildDiagnostic &diagnostic : assembled.diagnostics)
                collector.diagnostic(diagnostic);
            if (!assembled.succeeded())
                return {};
            request = assembled.request;
        } else {
            request.sourceFile = m_single;
            request.activeFileName = m_single;
            request.buildConfig = choices.buildConfig;
            request.defaultCompiler = choices.defaultCompiler;
        }
        request.goal = goal;
        return m_pipeline.run(request, collector);
    }

private:
    static void copyFolder(const QString &from, const QString &to)
    {
        const QDir source(from);
        QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString relative = source.relativeFilePath(files.next());
            if (relative.startsWith(QLatin1String("build/")))
                continue;
            const QString target = to + QLatin1Char('/') + relative;
            QDir().mkpath(QFileInfo(target).path());
            QFile::copy(files.filePath(), target);
        }
    }

    QString m_name;
    QString m_single;
    VL::ProjectInfo m_project;
    QStringList m_sources;
    BuildPipeline m_pipeline;
};

enum class Fate
{
    Refused,   // by the checks, at the right line
    Misplaced, // by the checks, elsewhere
    Built,
    Leaked, // only the C++ compiler noticed
};

struct Result
{
    Fate fate;
    QString told; // the first message
};

// At the changed place, or where a name that was changed is used or spoken of.
bool isAbout(const BuildDiagnostic &error, const QString &file, const Mutant &mutant,
             const Program &program)
{
    const bool sameFile = QFileInfo(error.file).fileName() == QFileInfo(file).fileName();
    if (sameFile && error.line >= mutant.firstLine && error.line <= mutant.lastLine)
        return true;
    const QString told = error.text + program.sourceLine(error.file, error.line);
    return std::any_of(mutant.names.begin(), mutant.names.end(),
                       [&told](const QString &name) { return told.contains(name); });
}

Result judge(Program &program, const QString &file, const Mutant &mutant)
{
    Collector checked;
    program.build(BuildGoal::Check, checked);
    if (!checked.errors.isEmpty()) {
        const BuildDiagnostic &first = checked.errors.first();
        const QString told =
            QStringLiteral("%1:%2: %3").arg(first.file, QString::number(first.line), first.text);
        return {isAbout(first, file, mutant, program) ? Fate::Refused : Fate::Misplaced, told};
    }
    Collector built;
    if (program.build(BuildGoal::Executable, built).success)
        return {Fate::Built, QString()};
    return {Fate::Leaked, built.toolOutput.left(3000)};
}

struct Counts
{
    int refused = 0;
    int misplaced = 0;
    int built = 0;
    int leaked = 0;

    int total() const { return refused + misplaced + built + leaked; }
    void add(Fate fate)
    {
        switch (fate) {
        case Fate::Refused:
            ++refused;
            break;
        case Fate::Misplaced:
            ++misplaced;
            break;
        case Fate::Built:
            ++built;
            break;
        case Fate::Leaked:
            ++leaked;
            break;
        }
    }
};

void printRow(QTextStream &out, const QString &name, const Counts &counts)
{
    const auto share = [&counts](int part) {
        return QString::number(100.0 * part / std::max(1, counts.total()), 'f', 2) +
               QLatin1Char('%');
    };
    out << QStringLiteral("%1%2%3%4%5%6%7%8\n")
               .arg(name, -12)
               .arg(counts.total(), 8)
               .arg(counts.refused, 10)
               .arg(counts.built, 8)
               .arg(counts.misplaced, 12)
               .arg(share(counts.misplaced), 9)
               .arg(counts.leaked, 10)
               .arg(share(counts.leaked), 9);
    out.flush();
}

QStringList defaultPrograms()
{
    const QString root = QStringLiteral(VOREL_SOURCE_DIR);
    QStringList paths;
    for (const char *folder : {"/examples", "/tests/windows"}) {
        const QDir programs(root + QLatin1String(folder));
        for (const QFileInfo &entry : programs.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            if (!QDir(entry.filePath()).entryList({QStringLiteral("*.vlproj")}).isEmpty())
                paths << entry.filePath();
        }
    }
    const QDir programs(root + QStringLiteral("/tests/programs"));
    for (const QFileInfo &entry : programs.entryInfoList({QStringLiteral("*.vc")}))
        paths << entry.filePath();
    return paths;
}

struct Options
{
    QStringList programs;
    int count = defaultCount;
    unsigned seed = 1;
    bool lists = false;
};

void run(const Options &options)
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    const QTemporaryDir folder;
    std::vector<std::unique_ptr<Program>> programs;
    QList<QPair<Program *, QString>> files; // longer files stand for more mistakes
    for (const QString &path : options.programs) {
        programs.push_back(
            std::make_unique<Program>(path, folder.filePath(QString::number(programs.size()))));
        for (const QString &source : programs.back()->sources()) {
            const int weight = 1 + splitSource(readFile(source)).size() / 40;
            for (int i = 0; i < weight; ++i)
                files << qMakePair(programs.back().get(), source);
        }
    }
    std::mt19937 random(options.seed);
    Counts counts[std::size(allMistakes)];
    QElapsedTimer timer;
    timer.start();
    for (int number = 0; number < options.count; ++number) {
        const size_t kind = size_t(number) % std::size(allMistakes);
        for (int attempt = 0; attempt < attemptsPerMutant; ++attempt) {
            const auto &chosen = files.at(int(random() % unsigned(files.size())));
            const QString original = readFile(chosen.second);
            const auto mutant = makeMutant(original, allMistakes[kind], random);
            if (!mutant)
                continue;
            writeFile(chosen.second, mutant->text);
            const Result result = judge(*chosen.first, chosen.second, *mutant);
            writeFile(chosen.second, original);
            counts[kind].add(result.fate);
            if (options.lists && (result.fate == Fate::Leaked || result.fate == Fate::Misplaced)) {
                out << (result.fate == Fate::Leaked ? "LEAK " : "LINE ") << chosen.first->name()
                    << ' ' << QFileInfo(chosen.second).fileName() << ' ' << mutant->description
                    << '\n'
                    << "     "
                    << QString(result.told).replace(QLatin1Char('\n'), QLatin1String("\n     "))
                    << '\n';
                out.flush();
            }
            break;
        }
    }
    out << QStringLiteral("%1%2%3%4%5%6%7%8\n")
               .arg(QStringLiteral("mistake"), -12)
               .arg(QStringLiteral("mutants"), 8)
               .arg(QStringLiteral("refused"), 10)
               .arg(QStringLiteral("built"), 8)
               .arg(QStringLiteral("wrong line"), 12)
               .arg(QString(), 9)
               .arg(QStringLiteral("C++ only"), 10)
               .arg(QString(), 9);
    Counts all;
    for (size_t kind = 0; kind < std::size(allMistakes); ++kind) {
        printRow(out, mistakeName(allMistakes[kind]), counts[kind]);
        all.refused += counts[kind].refused;
        all.misplaced += counts[kind].misplaced;
        all.built += counts[kind].built;
        all.leaked += counts[kind].leaked;
    }
    printRow(out, QStringLiteral("all"), all);
    out << QStringLiteral("%1 s\n").arg(double(timer.elapsed()) / 1000, 0, 'f', 1);
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOption({QStringLiteral("count"), QStringLiteral("how many mutants"),
                      QStringLiteral("N"), QString::number(defaultCount)});
    parser.addOption({QStringLiteral("seed"), QStringLiteral("start of the random numbers"),
                      QStringLiteral("N"), QStringLiteral("1")});
    parser.addOption({QStringLiteral("list"), QStringLiteral("print each mutant that went wrong")});
    parser.addHelpOption();
    parser.process(application);
    Options options;
    options.programs = parser.positionalArguments();
    if (options.programs.isEmpty())
        options.programs = defaultPrograms();
    options.count = parser.value(QStringLiteral("count")).toInt();
    options.seed = parser.value(QStringLiteral("seed")).toUInt();
    options.lists = parser.isSet(QStringLiteral("list"));
    runWithDeepStack([&options] { run(options); });
    return 0;
}
