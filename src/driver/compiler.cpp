#include "driver/compiler.h"

#include "driver/build_messages.h"
#include "driver/output_files.h"
#include "driver/run_messages.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <exception>

namespace {

constexpr int pollInterval = 500;

const char cleanStages[][32] = {"清理中... 1/4", "清理中... 2/4", "清理中... 3/4", "清理中... 4/4"};
const char cleanStart[] = "开始清理编译缓存与输出文件...";
const char cleanResult[] = "清理完成，共删除 %1 个文件";
const char cleanDone[] = "清理完成";

} // namespace

// Turns what a build tells into signals.
class Compiler::Listener : public BuildListener
{
public:
    explicit Listener(Compiler &compiler) : m_compiler(compiler) {}

    void progress(int percent, const QString &message) override
    {
        emit m_compiler.compileProgress(percent, message);
    }
    void note(const QString &text) override { emit m_compiler.compileOutput(text); }
    void output(const QString &text) override { emit m_compiler.compileOutput(text); }
    void diagnostic(const BuildDiagnostic &diagnostic) override;
    bool isCancelled() override
    {
        // Lets `stop` and the other slots in.
        QCoreApplication::processEvents();
        return m_compiler.m_cancelled;
    }

private:
    Compiler &m_compiler;
};

void Compiler::Listener::diagnostic(const BuildDiagnostic &diagnostic)
{
    emit m_compiler.compileDiagnostic(diagnostic);
    if (diagnostic.severity == BuildDiagnostic::Severity::Warning)
        emit m_compiler.compileWarning(diagnostic.file, diagnostic.line, diagnostic.text);
    else if (diagnostic.file.isEmpty())
        emit m_compiler.compileError(diagnostic.line, diagnostic.text);
    else
        emit m_compiler.compileErrorWithFile(diagnostic.file, diagnostic.line, diagnostic.text);
}

Compiler::Compiler(QObject *parent) : QObject(parent), m_pollTimer(this)
{
    registerBuildMetaTypes();
    // A child: it moves to the compiler's thread with it.
    m_pipeline.setParseHelper(new ParseHelper(this));
    m_pollTimer.setInterval(pollInterval);
    connect(&m_pollTimer, &QTimer::timeout, this, &Compiler::pollRunProcesses);
}

Compiler::~Compiler() = default;

QString Compiler::activeFileName() const
{
    const QMutexLocker lock(&m_mutex);
    return m_activeFileName;
}

QString Compiler::projectPath() const
{
    const QMutexLocker lock(&m_mutex);
    return m_projectPath;
}

QString Compiler::canonicalPath(const QString &path)
{
    QString canonical = path.isEmpty() ? QString() : QFileInfo(path).canonicalFilePath();
    if (canonical.size() > 1 && canonical.at(1) == QLatin1Char(':'))
        canonical[0] = canonical.at(0).toUpper();
    return canonical;
}

void Compiler::slotSetBuild(const CompilerBuildRequest &request)
{
    if (m_compiling)
        return;
    m_request = request.normalized();
    const QMutexLocker lock(&m_mutex);
    m_activeFileName = request.activeFileName;
    m_projectPath = request.projectPath;
}

void Compiler::applyBuildAndCompile(const CompilerBuildRequest &request)
{
    if (m_compiling)
        return;
    slotSetBuild(request);
    compile(request.sourceFile);
}

bool Compiler::compile(const QString &sourceFile)
{
    if (m_compiling)
        return false;
    m_compiling = true;
    m_cancelled = false;
    m_request.sourceFile = sourceFile;
    emit compileStarted();
    const BuildOutcome outcome = runPipeline();
    if (outcome.success)
        m_lastExecutable = outcome.executable;
    m_compiling = false;
    emit compileFinished(outcome.success, outcome.output, outcome.isCppFailure);
    deleteLaterWhenIdle();
    return outcome.success;
}

// The last net: whatever is thrown ends the build, not the process.
BuildOutcome Compiler::runPipeline()
{
    Listener listener(*this);
    BuildOutcome outcome;
    try {
        return m_pipeline.run(m_request, listener);
    } catch (const std::exception &exception) {
        outcome.output = QString::fromLocal8Bit(exception.what());
    }
    m_pipeline.forget();
    return outcome;
}

void Compiler::clean()
{
    int removed = 0;
    emit compileProgress(0, QString::fromUtf8(cleanStages[0]));
    emit compileOutput(QString::fromUtf8(cleanStart));
    CompilerBuildRequest unsaved;
    removed += OutputFiles::removeTree(OutputFiles::buildRoot(unsaved)).removed;
    emit compileProgress(25, QString::fromUtf8(cleanStages[1]));
    if (m_request.hasProject)
        removed += OutputFiles::clean(m_request).removed;
    emit compileProgress(50, QString::fromUtf8(cleanStages[2]));
    const QString temporary = QStandardPaths::writableLocation(QStandardPaths::TempLocation);
    for (const char *stray : {"/vl_debug_main.cpp", "/vl_run_trace.txt", "/vl_debug.txt"})
        removed += QFile::remove(temporary + QLatin1String(stray)) ? 1 : 0;
    m_pipeline.forget();
    emit compileProgress(75, QString::fromUtf8(cleanStages[3]));
    emit compileOutput(QString::fromUtf8(cleanResult).arg(removed));
    emit compileProgress(100, QString::fromUtf8(cleanDone));
}

QString Compiler::currentProject() const
{
    return m_request.hasProject ? canonicalPath(m_request.projectPath) : QString();
}

QString Compiler::programPath() const
{
    return m_request.hasProject ? OutputFiles::executable(m_request.normalized())
                                : m_lastExecutable;
}

void Compiler::run()
{
    const QString project = currentProject();
    const QString program = programPath();
    if (!QFileInfo(program).isFile()) {
        emit runFinished(-1, project);
        return;
    }
    stopRunForProject(project);
    RunRecord record{std::make_unique<ProgramRunner>(), std::make_unique<OutputThrottle>(),
                     project};
    connect(record.runner.get(), &ProgramRunner::outputReady, record.output.get(),
            &OutputThrottle::add);
    connect(record.output.get(), &OutputThrottle::ready, this, &Compiler::runOutput);
    // Later: the record must not go while its runner is at work.
    connect(record.runner.get(), &ProgramRunner::finished, this, &Compiler::pollRunProcesses,
            Qt::QueuedConnection);
    emit runStarted(project);
    const QString error = record.runner->start(
        program, {}, QFileInfo(program).path(), ProgramRunner::Channels::Captured,
        [this](const QString &message) { emit compileOutput(message); });
    if (!error.isEmpty()) {
        emit compileOutput(error);
        emit runFinished(-1, project);
        return;
    }
    m_runs.push_back(std::move(record));
    if (!m_pollTimer.isActive())
        m_pollTimer.start();
}

void Compiler::pollRunProcesses()
{
    for (auto record = m_runs.begin(); record != m_runs.end();) {
        if (record->runner->isRunning() || record->output->hasMore()) {
            ++record;
            continue;
        }
        const RunRecord ended = std::move(*record);
        record = m_runs.erase(record);
        ended.output->finish();
        emit runFinished(ended.runner->exitCode(), ended.canonicalProjectPath);
    }
    if (m_runs.empty())
        m_pollTimer.stop();
}

std::vector<Compiler::RunRecord>::iterator Compiler::findRun(const QString &canonicalProjectPath)
{
    return std::find_if(m_runs.begin(), m_runs.end(), [&](const RunRecord &candidate) {
        return candidate.canonicalProjectPath == canonicalProjectPath;
    });
}

void Compiler::slotWriteRunInput(const QString &canonicalProjectPath, const QString &line)
{
    const auto record = findRun(canonicalProjectPath);
    if (record != m_runs.end())
        record->runner->writeInput(line);
}

void Compiler::stopRunForProject(const QString &canonicalProjectPath)
{
    const auto record = findRun(canonicalProjectPath);
    if (record == m_runs.end())
        return;
    const RunRecord stopped = std::move(*record);
    m_runs.erase(record);
    stopped.runner->disconnect(this);
    stopped.runner->stop();
    if (m_runs.empty())
        m_pollTimer.stop();
}

void Compiler::stop()
{
    m_cancelled = true;
    m_pollTimer.stop();
    std::vector<RunRecord> runs;
    runs.swap(m_runs);
    for (const RunRecord &record : runs) {
        record.runner->disconnect(this);
        record.runner->stop();
        record.output->finish();
        emit runFinished(record.runner->exitCode(), record.canonicalProjectPath);
    }
}

void Compiler::slotShutdownDestroy()
{
    stop();
    m_shuttingDown = true;
    deleteLaterWhenIdle();
}

// A build at work stands on this object: it goes when the build has ended.
void Compiler::deleteLaterWhenIdle()
{
    if (m_shuttingDown && !m_compiling)
        deleteLater();
}

void Compiler::slotSetTargetPlatform(const QString &platform)
{
    if (!m_compiling)
        m_request.platform = platform;
}

void Compiler::slotSetBuildConfig(const QString &config)
{
    if (!m_compiling)
        m_request.buildConfig = config;
}

void Compiler::slotSetDebugBreakpoints(const CompilerDebugBreakpointsMap &breakpoints)
{
    m_pipeline.setBreakpoints(breakpoints);
}

CompilerFastSkipSnapshot Compiler::slotPeekFastSkipSnapshot()
{
    return m_pipeline.fastSkipSnapshot(m_request);
}
