// BuildFlow: building, running and debugging as the IDE does it, without a widget.
#pragma once

#include "driver/compiler_thread.h"
#include "shell/build_preparation.h"
#include "shell/error_list_model.h"

#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QString>

#include <memory>

// How a line of the build's output is meant.
enum class OutputKind
{
    Ordinary,
    Success,
    Failure,
    Hint
};

Q_DECLARE_METATYPE(OutputKind)
Q_DECLARE_METATYPE(Issue)

// Lives on the thread of the windows and owns the compiler's thread. No call waits for work:
// sources are read and programs built elsewhere, what comes of it arrives by signals. At most one
// build is at work; each project may have one program running.
class BuildFlow : public QObject
{
    Q_OBJECT

public:
    // `host` must outlive it.
    explicit BuildFlow(BuildHost &host, QObject *parent = nullptr);
    ~BuildFlow() override;

    bool isBuilding() const { return m_building; }
    // Whether a program of the project in this folder runs; an empty path means the source without
    // a project.
    bool hasRun(const QString &projectPath) const;
    // Ends builds and programs within a few seconds; nothing can be asked for afterwards.
    void shutdown();
    // To be set up before the first build.
    BuildPipeline &pipeline() { return m_thread->compiler()->pipeline(); }

public slots:
    void build();
    void rebuild();
    void clean();
    // Builds and runs; refused while the active project has a program running.
    void run();
    // The same with the host's breakpoints.
    void debug();
    // Ends the active project's program, or else the build at work.
    void stopRun();
    // A line for the standard input of the active project's program.
    void writeRunInput(const QString &line);

signals:
    void outputCleared();
    void outputLine(const QString &text, OutputKind kind);
    void issuesCleared();
    // The file is absolute or empty.
    void issueFound(const Issue &issue);
    void showErrorTab();
    void toolchainMissing(const QString &html);
    void progress(int percent, const QString &message);
    void statusChanged(const QString &text);
    void buildingChanged(bool building);
    void runningChanged();
    void runOutput(const QString &text);
    void runStarted(const QString &canonicalProjectPath);
    void runFinished(int exitCode, const QString &canonicalProjectPath);

private:
    void connectCompiler();
    template <typename Slot, typename... Arguments>
    void post(Slot slot, const Arguments &...arguments);
    QString activeProject() const;
    void setRunning(const QString &project, bool running);
    void setBuilding(bool building);
    void line(const QString &text, OutputKind kind = OutputKind::Ordinary);

    // What follows a build that succeeds.
    enum class Then
    {
        Nothing,
        Run
    };
    void begin(Then then, const CompilerDebugBreakpointsMap &breakpoints);
    void prepare(const BuildSubject &subject);
    void startCompiler(const PreparedBuild &prepared);
    void addIssue(const Issue &issue);
    void onDiagnostic(const BuildDiagnostic &diagnostic);
    void onCompileFinished(bool success, const QString &output);
    void endSuccessfully(const QString &output);
    void endFailed(const QString &output);
    void onRunFinished(int exitCode, const QString &project);

    BuildHost &m_host;
    std::unique_ptr<CompilerThread> m_thread;
    std::unique_ptr<QThread> m_preparation; // reads what is to be built
    PreparedBuild m_prepared;
    QElapsedTimer m_time;
    QSet<QString> m_runs; // canonical paths of the projects whose programs run
    int m_issues = 0;     // of the build, listed or not
    bool m_hasErrors = false;
    bool m_building = false;
    bool m_cancelled = false;
    Then m_then = Then::Nothing;
    bool m_debugging = false;
};
