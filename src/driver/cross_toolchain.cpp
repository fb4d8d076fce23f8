#include "driver/cross_toolchain.h"

#include "driver/build_messages.h"
#include "driver/gcc_command.h"
#include "driver/output_files.h"
#include "driver/tool_process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

using BuildMessage::text;

const QString kSource = QStringLiteral("main.cpp");
const QString kObject = QStringLiteral("main.o");
// The linker writes here; only a whole program takes the place of the old one.
const QString kLinked = QStringLiteral("vl_linked.exe");

ToolchainResult failure(const QString &message)
{
    ToolchainResult result;
    result.message = message;
    return result;
}

// One build: the source written, compiled, linked and put in place.
class CrossBuild
{
public:
    CrossBuild(const ToolchainJob &job, const GccTools &tools, BuildListener &listener)
        : m_job(job), m_tools(tools), m_listener(listener)
    {}

    ToolchainResult run(const RuntimeCache &cache);

private:
    bool prepareRuntime(const RuntimeCache &cache);
    bool writeSource();
    bool compile();
    bool link();
    bool putInPlace();
    bool runStep(const QStringList &arguments);
    bool report(const ToolRun &run);
    QString inFolder(const QString &name) const { return m_job.folder + QLatin1Char('/') + name; }

    const ToolchainJob &m_job;
    const GccTools &m_tools;
    BuildListener &m_listener;
    PreparedRuntime m_runtime;
    ToolchainResult m_result;
    qint64 m_waitedBefore = 0;
};

bool CrossBuild::prepareRuntime(const RuntimeCache &cache)
{
    if (!m_job.splitRuntime || m_job.program.runtimeSections().isEmpty())
        return true;
    m_runtime = cache.prepare(m_job.program, m_tools, m_job.isDebug, m_listener);
    if (m_runtime.state == PreparedRuntime::State::Cancelled) {
        m_result.cancelled = true;
        return false;
    }
    if (m_runtime.state == PreparedRuntime::State::Unusable) {
        m_runtime.header.clear();
        m_listener.diagnostic({BuildDiagnostic::Severity::Warning, QString(), 0,
                               text(BuildMessage::splitFailed).arg(m_runtime.error)});
    }
    return true;
}

bool CrossBuild::writeSource()
{
    m_result.compiledText = m_runtime.header.isEmpty()
                                ? m_job.program.oneFile()
                                : m_job.program.programOnly(m_runtime.header);
    if (OutputFiles::write(inFolder(kSource), m_result.compiledText.toUtf8()))
        return true;
    m_result.message = text(BuildMessage::cannotWriteCode);
    return false;
}

bool CrossBuild::runStep(const QStringList &arguments)
{
    ToolWatch watch;
    qint64 waited = 0;
    watch.goOn = [&](qint64 milliseconds) {
        waited = milliseconds;
        const int seconds = int((m_waitedBefore + milliseconds) / 1000);
        m_listener.progress(qMin(90, 70 + seconds / 6),
                            seconds > 0 ? text(BuildMessage::waitingForTool).arg(seconds)
                                        : text(BuildMessage::callingTool));
        return !m_listener.isCancelled();
    };
    const ToolRun run = runTool({m_tools.compiler, arguments, m_job.folder}, watch);
    m_waitedBefore += waited;
    if (!run.output.isEmpty())
        m_listener.output(run.output);
    return run.succeeded() || report(run);
}

bool CrossBuild::report(const ToolRun &run)
{
    switch (run.end) {
    case ToolRun::End::NotStarted:
        m_result.message = text(BuildMessage::toolNotStarted).arg(m_tools.compiler, run.error);
        break;
    case ToolRun::End::Crashed:
        m_result.message = text(BuildMessage::toolCrashed).arg(run.exitCode);
        break;
    case ToolRun::End::Stalled:
        m_result.message = text(BuildMessage::toolStalled).arg(m_waitedBefore / 1000);
        break;
    case ToolRun::End::Cancelled:
        m_result.cancelled = true;
        break;
    case ToolRun::End::Finished:
        m_result.toolOutput = run.output;
        m_result.message = text(BuildMessage::toolFailed).arg(run.exitCode);
        break;
    }
    return false;
}

bool CrossBuild::compile()
{
    QStringList arguments = GccCommand::compileFlags(m_job.isDebug);
    // The first folder: nothing else may answer to the runtime's header.
    if (!m_runtime.header.isEmpty())
        arguments << QStringLiteral("-I") << m_runtime.includeFolder;
    for (const QString &folder : m_job.includeFolders)
        arguments << QStringLiteral("-I") << folder;
    arguments << QStringLiteral("-c") << kSource << QStringLiteral("-o") << kObject;
    return runStep(arguments);
}

bool CrossBuild::link()
{
    QStringList arguments{kObject};
    if (!m_runtime.archive.isEmpty())
        arguments << m_runtime.archive;
    arguments << GccCommand::linkFlags(m_job.isDebug) << QStringLiteral("-o") << kLinked;
    for (const QString &folder : m_job.libraryFolders)
        arguments << QStringLiteral("-L") << folder;
    arguments << GccCommand::libraryFlags(m_job.linkLibraries);
    return runStep(arguments);
}

bool CrossBuild::putInPlace()
{
    const QString linked = inFolder(kLinked);
    if (!QFileInfo::exists(linked)) {
        m_result.message = text(BuildMessage::noOutput).arg(m_job.executable);
        return false;
    }
    if (OutputFiles::replace(linked, m_job.executable))
        return true;
    m_result.message =
        text(BuildMessage::cannotReplaceExecutable).arg(QDir::toNativeSeparators(m_job.executable));
    return false;
}

ToolchainResult CrossBuild::run(const RuntimeCache &cache)
{
    m_result.success =
        prepareRuntime(cache) && writeSource() && compile() && link() && putInPlace();
    QFile::remove(inFolder(kObject));
    QFile::remove(inFolder(kLinked));
    return m_result;
}

// The Debian package that holds the tools of a platform.
QString packageOf(const QString &platform)
{
    return platform == QLatin1String("x86") ? QStringLiteral("g++-mingw-w64-i686")
                                            : QStringLiteral("g++-mingw-w64-x86-64");
}

QString prefixOf(const QString &platform)
{
    return platform == QLatin1String("x86") ? QStringLiteral("i686-w64-mingw32")
                                            : QStringLiteral("x86_64-w64-mingw32");
}

} // namespace

CrossToolchain::CrossToolchain(bool fallsBack, const RuntimeCache &cache)
    : m_cache(cache), m_fallsBack(fallsBack)
{}

GccTools CrossToolchain::findTools(const QString &platform)
{
    GccTools tools;
    tools.prefix = prefixOf(platform);
    tools.compiler = QStandardPaths::findExecutable(tools.prefix + QLatin1String("-g++"));
    tools.archiver = QStandardPaths::findExecutable(tools.prefix + QLatin1String("-ar"));
    tools.resourceCompiler =
        QStandardPaths::findExecutable(tools.prefix + QLatin1String("-windres"));
    return tools;
}

ToolchainResult CrossToolchain::build(const ToolchainJob &job, BuildListener &listener)
{
    if (m_fallsBack)
        listener.note(text(BuildMessage::usingMinGW));
    const GccTools tools = m_tools.compiler.isEmpty() ? findTools(job.platform) : m_tools;
    if (tools.compiler.isEmpty() || tools.archiver.isEmpty()) {
        return failure(
            text(BuildMessage::toolMissing)
                .arg(prefixOf(job.platform) + QLatin1String("-g++"), packageOf(job.platform)));
    }
    return CrossBuild(job, tools, listener).run(m_cache);
}
