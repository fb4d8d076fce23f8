#include "shell/build_flow.h"

#include "driver/build_messages.h"
#include "shell/build_texts.h"
#include "shell/running_image.h"
#include "shell/trace_file.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using BuildText::text;

namespace {

constexpr int shutdownLimit = 4000; // milliseconds
// More than anybody reads; each costs the list time.
constexpr int maxIssues = 500;

void trace(const char *step)
{
    TraceFile::append(TraceFile::buildSteps, QString::fromLatin1(step));
}

// The lines of a failed build's last words that tell something.
QStringList tellingLines(const QString &output)
{
    static const QRegularExpression lineEnds(QStringLiteral("[\r\n]+"));
    QStringList lines = output.split(lineEnds, Qt::SkipEmptyParts);
    const auto says = [](const QString &line) {
        return line.trimmed().isEmpty() || line.startsWith(text(BuildText::noToolchainMark)) ||
               line.startsWith(text(BuildText::exitCodeMark)) ||
               line.startsWith(text(BuildText::processExitMark));
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), says), lines.end());
    return lines;
}

// Whether a build ended with these words because nothing had changed, breakpoints included.
bool wasSkipped(const QString &output)
{
    return output == text(BuildMessage::skippedFormat) || output == text(BuildMessage::skippedCode);
}

} // namespace

BuildFlow::BuildFlow(BuildHost &host, QObject *parent)
    : QObject(parent), m_host(host), m_thread(std::make_unique<CompilerThread>())
{
    qRegisterMetaType<OutputKind>();
    qRegisterMetaType<Issue>();
    connectCompiler();
}

BuildFlow::~BuildFlow()
{
    shutdown();
}

void BuildFlow::connectCompiler()
{
    Compiler *const compiler = m_thread->compiler();
    connect(compiler, &Compiler::compileStarted, this, [this] {
        if (m_cancelled)
            m_thread->compiler()->cancelBuild();
    });
    connect(compiler, &Compiler::compileProgress, this, [this](int percent, const QString &text) {
        emit progress(percent, text);
        if (!m_building)
            emit statusChanged(text);
    });
    connect(compiler, &Compiler::compileOutput, this, [this](const QString &text) { line(text); });
    connect(compiler, &Compiler::compileDiagnostic, this, &BuildFlow::onDiagnostic);
    connect(compiler, &Compiler::compileFinished, this, &BuildFlow::onCompileFinished);
    connect(compiler, &Compiler::runStarted, this, &BuildFlow::runStarted);
    connect(compiler, &Compiler::runOutput, this, &BuildFlow::runOutput);
    connect(compiler, &Compiler::runFinished, this, &BuildFlow::onRunFinished);
}

// Calls a slot of the compiler on its thread.
template <typename Slot, typename... Arguments>
void BuildFlow::post(Slot slot, const Arguments &...arguments)
{
    if (!m_thread)
        return;
    Compiler *const compiler = m_thread->compiler();
    QMetaObject::invokeMethod(
        compiler, [compiler, slot, arguments...] { (compiler->*slot)(arguments...); },
        Qt::QueuedConnection);
}

void BuildFlow::line(const QString &text, OutputKind kind)
{
    emit outputLine(text, kind);
}

QString BuildFlow::activeProject() const
{
    const BuildSubject subject = m_host.buildSubject();
    return subject.project ? Compiler::canonicalPath(subject.project->path) : QString();
}

bool BuildFlow::hasRun(const QString &projectPath) const
{
    return m_runs.contains(Compiler::canonicalPath(projectPath));
}

void BuildFlow::setRunning(const QString &project, bool running)
{
    if (m_runs.contains(project) == running)
        return;
    if (running)
        m_runs.insert(project);
    else
        m_runs.remove(project);
    emit runningChanged();
}

void BuildFlow::setBuilding(bool building)
{
    m_building = building;
    emit buildingChanged(building);
}

void BuildFlow::build()
{
    trace("onBuild: enter");
    if (m_building) {
        trace("onBuild: blocked (building)");
        return;
    }
    begin(Then::Nothing, {});
}

void BuildFlow::begin(Then then, const CompilerDebugBreakpointsMap &breakpoints)
{
    if (!m_thread)
        return;
    m_then = then;
    m_debugging = !breakpoints.isEmpty();
    // A build without breakpoints rids the program of those it had.
    post(&Compiler::slotSetDebugMode, m_debugging);
    post(&Compiler::slotSetDebugBreakpoints, breakpoints);
    const QString project = activeProject();
    // Its program holds the file that is to be written.
    post(&Compiler::stopRunForProject, project);
    setRunning(project, false);

    m_cancelled = false;
    m_issues = 0;
    m_hasErrors = false;
    m_time.start();
    setBuilding(true);
    emit outputCleared();
    emit issuesCleared();
    emit statusChanged(text(BuildText::compiling));
    line(text(BuildText::started));
    line(text(BuildText::projectPath).arg(QDir::toNativeSeparators(project)));
    line(text(BuildText::hasProject).arg(text(project.isEmpty() ? BuildText::no : BuildText::yes)));
    line(text(BuildText::saving));
    const QStringList problems = m_host.saveAllFilesBeforeBuild();
    for (const QString &problem : problems)
        line(problem, OutputKind::Failure);
    prepare(m_host.buildSubject());
}

// A large project takes its time to read: elsewhere.
void BuildFlow::prepare(const BuildSubject &subject)
{
    trace("onBuild: prepare");
    const BuildChoices choices = m_host.buildChoices();
    const auto prepared = std::make_shared<PreparedBuild>();
    m_preparation.reset(QThread::create([prepared, subject, choices] {
        QString ended;
        if (subject.project) {
            const QString image = QDir(subject.project->path).dirName() + QLatin1String(".exe");
            if (endRunningImage(image))
                ended = text(BuildText::imageEnded).arg(image);
        }
        *prepared = prepareBuild(subject, choices);
        if (!ended.isEmpty())
            prepared->notes.prepend(ended);
    }));
    connect(m_preparation.get(), &QThread::finished, this,
            [this, prepared] { startCompiler(*prepared); });
    m_preparation->setStackSize(deepStackBytes);
    m_preparation->start();
}

void BuildFlow::startCompiler(const PreparedBuild &prepared)
{
    m_prepared = prepared;
    for (const QString &note : prepared.notes)
        line(note);
    for (const BuildDiagnostic &diagnostic : prepared.diagnostics)
        onDiagnostic(diagnostic);
    if (m_cancelled) {
        onCompileFinished(false, text(BuildText::cancelled));
        return;
    }
    if (!prepared.problem.isEmpty()) {
        trace("onBuild: nothing to build");
        onCompileFinished(false, prepared.problem);
        return;
    }
    trace("onBuild: posted");
    post(&Compiler::applyBuildAndCompile, prepared.request);
}

void BuildFlow::addIssue(const Issue &issue)
{
    m_hasErrors = m_hasErrors || issue.kind == IssueKind::Error;
    if (++m_issues <= maxIssues)
        emit issueFound(issue);
}

void BuildFlow::onDiagnostic(const BuildDiagnostic &diagnostic)
{
    const bool isWarning = diagnostic.severity == BuildDiagnostic::Severity::Warning;
    addIssue({isWarning ? IssueKind::Warning : IssueKind::Error, diagnostic.text,
              issueFile(m_prepared, diagnostic.file), diagnostic.line, diagnostic.column});
}

void BuildFlow::onCompileFinished(bool success, const QString &output)
{
    trace(success ? "onCompileFinished: success" : "onCompileFinished: failure");
    if (m_issues > maxIssues)
        line(text(BuildText::moreIssues).arg(m_issues - maxIssues), OutputKind::Hint);
    line(text(success ? BuildText::time : BuildText::failedTime).arg(m_time.elapsed()),
         success ? OutputKind::Ordinary : OutputKind::Failure);
    if (success)
        endSuccessfully(output);
    else
        endFailed(output);
    m_then = Then::Nothing;
    setBuilding(false);
}

void BuildFlow::endSuccessfully(const QString &output)
{
    emit statusChanged(text(BuildText::succeeded));
    line(text(BuildText::succeededLine), OutputKind::Success);
    if (m_then != Then::Run || m_cancelled)
        return;
    if (m_debugging && wasSkipped(output))
        line(text(BuildText::unchanged), OutputKind::Hint);
    line(text(BuildText::startingProgram));
    trace("onCompileFinished: run");
    const CompilerBuildRequest &request = m_prepared.request;
    setRunning(request.hasProject ? Compiler::canonicalPath(request.projectPath) : QString(), true);
    post(&Compiler::run);
}

void BuildFlow::endFailed(const QString &output)
{
    if (m_cancelled) {
        emit statusChanged(text(BuildText::cancelled));
        line(text(BuildText::cancelled), OutputKind::Hint);
        return;
    }
    emit statusChanged(text(BuildText::failed));
    if (output.startsWith(text(BuildText::noToolchainMark))) {
        addIssue({IssueKind::Error, text(BuildText::notCompleted), QString(), 0, 0});
        emit toolchainMissing(text(BuildText::noToolchain));
    } else if (!m_hasErrors) {
        QStringList lines = tellingLines(output);
        if (lines.isEmpty())
            lines << text(output.isEmpty() ? BuildText::unknownFailure : BuildText::unknownError);
        for (const QString &error : qAsConst(lines))
            addIssue({IssueKind::Error, error, QString(), 0, 0});
    }
    line(text(BuildText::seeErrorTab), OutputKind::Failure);
    emit showErrorTab();
}

void BuildFlow::rebuild()
{
    if (m_building)
        return;
    clean();
    build();
}

void BuildFlow::clean()
{
    if (m_building) {
        line(text(BuildText::isBuilding), OutputKind::Hint);
        return;
    }
    const BuildSubject subject = m_host.buildSubject();
    emit statusChanged(text(BuildText::cleaning));
    line(text(BuildText::cleaningFolders));
    const QString project = activeProject();
    post(&Compiler::stopRunForProject, project);
    setRunning(project, false);
    post(&Compiler::slotSetBuild, outlineRequest(subject, m_host.buildChoices()));
    post(&Compiler::clean);
}

void BuildFlow::run()
{
    trace("onRun: enter");
    if (m_building) {
        line(text(BuildText::isBuilding), OutputKind::Hint);
        return;
    }
    if (m_runs.contains(activeProject())) {
        line(text(BuildText::isRunning), OutputKind::Hint);
        return;
    }
    begin(Then::Run, {});
}

void BuildFlow::debug()
{
    trace("onDebug: enter");
    if (m_building) {
        line(text(BuildText::isBuilding), OutputKind::Hint);
        return;
    }
    CompilerDebugBreakpointsMap breakpoints;
    int count = 0;
    const CompilerDebugBreakpointsMap all = m_host.breakpoints();
    for (auto file = all.begin(); file != all.end(); ++file) {
        if (!file->isEmpty())
            breakpoints.insert(file.key(), *file);
        count += file->size();
    }
    QStringList lines;
    if (breakpoints.isEmpty())
        lines << text(BuildText::noBreakpoints) << text(BuildText::breakpointTip);
    else
        lines << text(BuildText::debugStarted).arg(count);
    for (auto file = breakpoints.begin(); file != breakpoints.end(); ++file) {
        QStringList numbers;
        for (const int number : *file)
            numbers << QString::number(number);
        lines << text(BuildText::debugFile)
                     .arg(QFileInfo(file.key()).fileName(), numbers.join(QLatin1String(", ")));
    }
    if (breakpoints.isEmpty())
        run();
    else
        begin(Then::Run, breakpoints);
    // Behind the build's beginning, which clears the output.
    for (const QString &told : qAsConst(lines))
        line(told, OutputKind::Hint);
}

void BuildFlow::stopRun()
{
    const QString project = activeProject();
    if (m_runs.contains(project)) {
        post(&Compiler::stopRunForProject, project);
        setRunning(project, false);
        line(text(BuildText::stopped), OutputKind::Hint);
    } else if (m_building) {
        m_cancelled = true;
        line(text(BuildText::cancelling), OutputKind::Hint);
        m_thread->compiler()->cancelBuild();
    } else {
        line(text(BuildText::nothingRuns), OutputKind::Hint);
    }
}

void BuildFlow::writeRunInput(const QString &text)
{
    post(&Compiler::slotWriteRunInput, activeProject(), text);
}

void BuildFlow::onRunFinished(int exitCode, const QString &project)
{
    setRunning(project, false);
    if (exitCode == -1)
        line(text(BuildText::notStarted), OutputKind::Failure);
    else
        line(text(BuildText::ended).arg(exitCode), OutputKind::Hint);
    emit runFinished(exitCode, project);
}

void BuildFlow::shutdown()
{
    if (!m_thread)
        return;
    m_thread->compiler()->disconnect(this);
    QElapsedTimer time;
    time.start();
    // Threads that hang are left to the end of the process: waiting for them would hang it.
    if (!m_thread->shutdown(shutdownLimit))
        m_thread.release();
    m_thread.reset();
    const int left = std::max(1, shutdownLimit - int(time.elapsed()));
    if (m_preparation && !m_preparation->wait(ulong(left)))
        m_preparation.release();
    m_preparation.reset();
    m_building = false;
    m_runs.clear();
}
