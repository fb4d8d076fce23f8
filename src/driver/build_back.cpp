// The stages of a build from the generated program to the executable.
#include "driver/build_run.h"

#include "driver/build_messages.h"
#include "driver/debug_breakpoints.h"
#include "driver/output_copies.h"
#include "driver/output_files.h"
#include "driver/shell_icons.h"
#include "driver/toolchain_diagnostics.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>

using BuildMessage::text;
using Severity = BuildDiagnostic::Severity;

namespace {

// Passes everything on, but never a smaller percentage than one shown before.
class RisingProgress : public BuildListener
{
public:
    RisingProgress(BuildListener &listener, int percent) : m_listener(listener), m_percent(percent)
    {}

    void progress(int percent, const QString &message) override
    {
        if (m_lastMessage == message && percent <= m_percent)
            return;
        m_percent = qMax(m_percent, percent);
        m_lastMessage = message;
        m_listener.progress(m_percent, message);
    }
    void note(const QString &text) override { m_listener.note(text); }
    void output(const QString &text) override { m_listener.output(text); }
    void diagnostic(const BuildDiagnostic &diagnostic) override
    {
        m_listener.diagnostic(diagnostic);
    }
    bool isCancelled() override { return m_listener.isCancelled(); }

private:
    BuildListener &m_listener;
    int m_percent;
    QString m_lastMessage;
};

} // namespace

bool BuildPipeline::Run::finishProgram()
{
    ProgramText &program = m_outcome.program;
    const QStringList notes = removedFeatureWarnings(program);
    for (const QString &note : notes)
        report({Severity::Warning, m_request.activeFileName, 0, note});
    if (m_pipeline.m_libraries) {
        LibraryNeeds needs;
        if (usesScriptEngine(program))
            needs.named << QStringLiteral("javascript");
        needs.network = usesNetworkClasses(program);
        m_libraryText = m_pipeline.m_libraries(program, needs);
    }
    if (!m_libraryText.problems.isEmpty()) {
        reportMessages(m_libraryText.problems, Severity::Error);
        m_errors = QStringList{text(BuildMessage::librariesUnavailable) +
                               m_libraryText.problems.join(QLatin1Char('\n'))};
        return endIfErrors();
    }
    insertLibraryText(program, m_libraryText.runtimeText);
    repairHeaders(program);
    if (m_debug.stopsAnywhere()) {
        insertBreakpoints(program, m_debug.breakpoints,
                          {m_text, m_lineMap, functionLinesOf(m_tree.get())});
    }
    return true;
}

bool BuildPipeline::Run::prepareFolder()
{
    if (!begin(60, BuildMessage::compiling))
        return false;
    const QString folder = OutputFiles::buildFolder(m_request);
    m_outcome.executable = OutputFiles::executable(m_request);
    if (QDir().mkpath(folder))
        return true;
    report({Severity::Error, QString(), 0,
            text(BuildMessage::cannotMakeFolder).arg(QDir::toNativeSeparators(folder))});
    return endIfErrors();
}

ToolchainJob BuildPipeline::Run::toolchainJob() const
{
    ToolchainJob job;
    job.program = m_outcome.program;
    job.lineMap = m_lineMap;
    job.resources = m_resources.resources;
    job.folder = OutputFiles::buildFolder(m_request);
    job.executable = m_outcome.executable;
    job.platform = m_request.platform;
    job.isDebug = m_request.buildConfig == QLatin1String("debug");
    job.staticLink = m_request.staticLink;
    job.splitRuntime = m_request.splitRuntime && qEnvironmentVariableIsEmpty("VOREL_NO_SPLIT");
    job.linkLibraries = m_libraryText.linkLibraries;
    job.includeFolders = m_libraryText.includeFolders;
    job.libraryFolders = m_libraryText.libraryFolders;
    return job;
}

bool BuildPipeline::Run::compile()
{
    if (!begin(80, BuildMessage::runningToolchain))
        return false;
    const ToolchainJob job = toolchainJob();
    for (const QString &warning : qAsConst(m_resources.warnings))
        report({Severity::Warning, QString(), 0, warning});
    // Two builds of one program take turns.
    QLockFile lock(job.folder + QLatin1String("/.vl_build.lock"));
    lock.setStaleLockTime(0);
    while (!lock.tryLock(100) && lock.error() == QLockFile::LockFailedError) {
        if (m_listener.isCancelled())
            return begin(80, BuildMessage::runningToolchain);
    }
    RisingProgress rising(m_listener, m_percent);
    const std::unique_ptr<Toolchain> toolchain = m_pipeline.m_toolchains(m_request);
    const ToolchainResult result = toolchain->build(job, rising);
    const QList<BuildDiagnostic> told =
        translateToolOutput(result.toolOutput, {result.compiledTexts, m_lineMap, m_text});
    if (!result.success)
        return reportToolchainFailure(result, told);
    for (const BuildDiagnostic &diagnostic : told) {
        if (diagnostic.severity == Severity::Warning)
            report(diagnostic);
    }
    copyLibraryFiles();
    refreshShellIcons();
    return true;
}

void BuildPipeline::Run::copyLibraryFiles()
{
    const QString folder = QFileInfo(m_outcome.executable).path();
    QStringList lines = OutputCopies::copyLibraries(m_libraryText.dlls, folder);
    if (usesScriptEngine(m_outcome.program))
        lines << OutputCopies::copyScriptEngine(m_request.quickjsRoot, folder);
    for (const QString &line : qAsConst(lines))
        m_listener.output(line);
}

// What the program finds beside it changes without a change of the program.
void BuildPipeline::Run::completeOutput()
{
    const QString folder = QFileInfo(m_outcome.executable).path();
    OutputCopies::removeIntermediates(OutputFiles::buildFolder(m_request), folder);
    if (!m_request.hasProject)
        return;
    const QStringList lines = OutputCopies::copyProjectResources(m_request.projectPath, folder);
    for (const QString &line : lines)
        m_listener.output(line);
}

bool BuildPipeline::Run::reportToolchainFailure(const ToolchainResult &result,
                                                const QList<BuildDiagnostic> &told)
{
    m_outcome.isCppFailure = true;
    m_outcome.executable.clear();
    if (result.cancelled) {
        m_outcome.cancelled = true;
        m_outcome.isCppFailure = false;
        return fail({text(BuildMessage::cancelled)});
    }
    for (const BuildDiagnostic &diagnostic : told)
        report(diagnostic);
    // The bare exit code only tells something when nothing else does.
    if (!result.message.isEmpty() && m_errors.isEmpty())
        report({Severity::Error, QString(), 0, result.message});
    else if (!result.message.isEmpty())
        m_listener.output(result.message);
    return endIfErrors();
}
