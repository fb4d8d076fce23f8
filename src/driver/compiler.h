// Compiler: the object through which a shell builds and runs programs, on a thread of its own.
#pragma once

#include "driver/build_pipeline.h"
#include "driver/output_throttle.h"
#include "driver/program_runner.h"

#include <QMutex>
#include <QObject>
#include <QProcess>
#include <QTimer>

#include <atomic>
#include <memory>
#include <vector>

// Every build ends with exactly one `compileFinished`. A build that is asked for while one is at
// work is refused without a signal. While tools run the event queue is kept alive, so that `stop`
// arrives.
class Compiler : public QObject
{
    Q_OBJECT

public:
    explicit Compiler(QObject *parent = nullptr);
    ~Compiler() override;

    // To be called before the first build.
    BuildPipeline &pipeline() { return m_pipeline; }
    // Ends the build at work; may be called from any thread.
    void cancelBuild() { m_cancelled = true; }
    bool isCompiling() const { return m_compiling; }
    // Both may be read from any thread.
    QString activeFileName() const;
    QString projectPath() const;

    // `QFileInfo::canonicalFilePath` with an upper-case drive letter; empty stays empty.
    static QString canonicalPath(const QString &path);

public slots:
    void applyBuildAndCompile(const CompilerBuildRequest &request);
    bool compile(const QString &sourceFile);
    void clean();
    void run();
    void stop();
    void stopRunForProject(const QString &canonicalProjectPath);
    // A line for the standard input of that project's program; lost without one.
    void slotWriteRunInput(const QString &canonicalProjectPath, const QString &line);
    void slotShutdownDestroy();
    // What `run` and `clean` act on until the next build; not while one is at work.
    void slotSetBuild(const CompilerBuildRequest &request);
    void slotSetTargetPlatform(const QString &platform);
    void slotSetBuildConfig(const QString &config);
    void slotSetDebugMode(bool on) { m_pipeline.setDebugMode(on); }
    void slotSetDebugBreakpoints(const CompilerDebugBreakpointsMap &breakpoints);
    CompilerFastSkipSnapshot slotPeekFastSkipSnapshot();
    void pollRunProcesses();

signals:
    void compileStarted();
    void compileRetryCleanup();
    void compileProgress(int percent, QString message);
    void compileFinished(bool success, QString output, bool isCppBuildFailure = false);
    void compileError(int line, QString error);
    void compileErrorWithFile(QString file, int line, QString error);
    void compileWarning(QString file, int line, QString warning);
    // The same problems, each with all that is known of it.
    void compileDiagnostic(BuildDiagnostic diagnostic);
    void compileOutput(QString output);
    void compileOutputWithStyle(QString text, int style);
    void runStarted(QString canonicalProjectPath);
    void runFinished(int exitCode, QString canonicalProjectPath);
    // At most about twenty times a second for each program, and no more text than one can look at:
    // of a flood the older part is left out.
    void runOutput(QString output);
    void debugOutput(QString output);

private:
    class Listener;
    // A program that was started and whose end has not been reported.
    struct RunRecord
    {
        std::unique_ptr<ProgramRunner> runner;
        std::unique_ptr<OutputThrottle> output;
        QString canonicalProjectPath;
    };

    BuildOutcome runPipeline();
    std::vector<RunRecord>::iterator findRun(const QString &canonicalProjectPath);
    QString programPath() const;
    QString currentProject() const;
    void deleteLaterWhenIdle();

    BuildPipeline m_pipeline;
    CompilerBuildRequest m_request;
    mutable QMutex m_mutex; // guards the two names below
    QString m_activeFileName;
    QString m_projectPath;
    QString m_lastExecutable;
    std::vector<RunRecord> m_runs;
    QTimer m_pollTimer;
    std::atomic_bool m_cancelled{false};
    std::atomic_bool m_compiling{false};
    bool m_shuttingDown = false;
};
