// Compiles the emitted runtime ahead of time, so that no build of a user's program waits for it.
#include "codegen/program_text.h"
#include "codegen/runtime_library.h"
#include "driver/runtime_cache.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

namespace {

// Tells faults, and a line for each runtime.
class Report : public BuildListener
{
public:
    void progress(int, const QString &) override {}
    void note(const QString &text) override { tell(text); }
    void output(const QString &text) override { tell(text); }
    void diagnostic(const BuildDiagnostic &diagnostic) override { tell(diagnostic.text); }
    bool isCancelled() override { return false; }

private:
    static void tell(const QString &text) { std::fprintf(stderr, "%s\n", qUtf8Printable(text)); }
};

ProgramText wholeRuntime()
{
    ProgramText text;
    for (const RuntimeSection &section : RuntimeLibrary::instance().sections()) {
        text.appendRuntime(ProgramText::PartKind::RuntimeHeader, section.name,
                           section.emittedHeader);
        text.appendRuntime(ProgramText::PartKind::RuntimeSource, section.name,
                           section.emittedSource);
    }
    return text;
}

// Runtimes for `machine` of older texts and other tools.
void dropOthers(const QString &folder, const QString &machine, const QStringList &kept)
{
    const QStringList names = QDir(folder).entryList({machine + QLatin1String("-*")}, QDir::Dirs);
    for (const QString &name : names) {
        if (!kept.contains(name))
            QDir(folder + QLatin1Char('/') + name).removeRecursively();
    }
}

bool makeRuntimes(const QString &folder, const QString &platform)
{
    const RuntimeCache cache(folder, QString());
    const ProgramText runtime = wholeRuntime();
    Report report;
    bool made = true;
    QStringList names;
    // A platform without tools is left out: whoever installs them later fills the own cache.
    const QList<CppTools> installed = CppTools::installed(platform);
    for (const CppTools &tools : installed) {
        for (const bool isDebug : {false, true}) {
            const PreparedRuntime prepared = cache.prepare(runtime, tools, isDebug, report);
            names << prepared.key;
            if (prepared.state == PreparedRuntime::State::Ready)
                continue;
            report.note(tools.name() + QLatin1String(": ") + prepared.error);
            made = false;
        }
    }
    const QString machine = CppTools::prefixOf(platform).section(QLatin1Char('-'), 0, 0);
    dropOthers(folder, machine, names);
    return made;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: make_runtime FOLDER PLATFORM...\n", stderr);
        return 2;
    }
    bool made = true;
    for (const QString &platform : arguments.mid(2))
        made = makeRuntimes(QDir(arguments.at(1)).absolutePath(), platform) && made;
    return made ? 0 : 1;
}
