// vorelc build and vorelc run.
#include "cli/build_session.h"
#include "cli/cli_command.h"
#include "cli/interrupts.h"
#include "cli/project_input.h"
#include "driver/output_files.h"
#include "driver/program_runner.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

namespace {

// Builds the input; an empty executable when there is none. `code` is then the exit code.
BuildOutcome buildInput(const CliOptions &options, bool quietWithoutTerminal, int *code)
{
    *code = ExitCode::failed;
    const ProjectInput input = readProjectInput(options);
    if (!input.error.isEmpty()) {
        Console::error(input.error);
        return {};
    }
    if (options.rebuild)
        OutputFiles::clean(input.request.normalized());
    BuildSession session(options, quietWithoutTerminal, BuildSession::Diagnostics::Print);
    BuildOutcome outcome = session.run(input, BuildGoal::Executable);
    if (outcome.success)
        *code = ExitCode::done;
    else if (outcome.cancelled)
        *code = ExitCode::interrupted;
    return outcome;
}

int runProgram(ProgramRunner &runner, const QString &executable, const CliOptions &options)
{
    ProgressDisplay progress(options.verbosity, true);
    QObject::connect(&runner, &ProgramRunner::finished, qApp, &QCoreApplication::quit);
    // The program works where the user is, as any command does.
    const QString error =
        runner.start(executable, options.programArguments, QDir::currentPath(),
                     ProgramRunner::Channels::Inherited,
                     [&progress](const QString &message) { progress.note(message); });
    if (!error.isEmpty()) {
        Console::error(error);
        return ExitCode::failed;
    }
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &runner, [&runner] {
        if (Interrupts::happened())
            runner.stop();
    });
    constexpr int watchInterval = 50;
    watch.start(watchInterval);
    if (runner.isRunning())
        QCoreApplication::exec();
    if (Interrupts::happened())
        return ExitCode::interrupted;
    return runner.exitCode() < 0 ? ExitCode::failed : runner.exitCode();
}

} // namespace

int runBuild(const CliOptions &options)
{
    int code = ExitCode::failed;
    const BuildOutcome outcome = buildInput(options, false, &code);
    if (outcome.success)
        Console::result(QDir::toNativeSeparators(outcome.executable));
    return code;
}

int runRun(const CliOptions &options)
{
    int code = ExitCode::failed;
    ProgramRunner runner;
    runner.warmUp();
    const BuildOutcome outcome = buildInput(options, true, &code);
    return outcome.success ? runProgram(runner, outcome.executable, options) : code;
}
