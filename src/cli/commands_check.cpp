// vorelc check and vorelc emit.
#include "cli/build_session.h"
#include "cli/cli_command.h"
#include "cli/json_text.h"
#include "cli/project_input.h"

namespace {

QByteArray jsonOf(const QList<BuildDiagnostic> &diagnostics)
{
    QByteArray json("[");
    for (const BuildDiagnostic &diagnostic : diagnostics) {
        const bool isError = diagnostic.severity == BuildDiagnostic::Severity::Error;
        json += json.size() > 1 ? ",\n " : "";
        json += QByteArray("{\"severity\":") + (isError ? "\"error\"" : "\"warning\"") +
                ",\"file\":" + JsonText::string(diagnostic.file) +
                ",\"line\":" + QByteArray::number(diagnostic.line) +
                ",\"message\":" + JsonText::string(diagnostic.text) + '}';
    }
    return json + "]\n";
}

int exitCodeOf(const BuildOutcome &outcome)
{
    if (outcome.cancelled)
        return ExitCode::interrupted;
    return outcome.success ? ExitCode::done : ExitCode::failed;
}

} // namespace

int runCheck(const CliOptions &options)
{
    const ProjectInput input = readProjectInput(options);
    if (!input.error.isEmpty()) {
        if (options.json) {
            Console::result(
                jsonOf({{BuildDiagnostic::Severity::Error, QString(), 0, input.error}}));
        } else {
            Console::error(input.error);
        }
        return ExitCode::failed;
    }
    BuildSession session(options, options.json,
                         options.json ? BuildSession::Diagnostics::Keep
                                      : BuildSession::Diagnostics::Print);
    const BuildOutcome outcome = session.run(input, BuildGoal::Check);
    if (options.json)
        Console::result(jsonOf(session.diagnostics()));
    return exitCodeOf(outcome);
}

int runEmit(const CliOptions &options)
{
    const ProjectInput input = readProjectInput(options);
    if (!input.error.isEmpty()) {
        Console::error(input.error);
        return ExitCode::failed;
    }
    BuildSession session(options, false, BuildSession::Diagnostics::Print);
    const BuildOutcome outcome = session.run(input, BuildGoal::ProgramText);
    if (outcome.success)
        Console::result(outcome.program.oneFile().toUtf8());
    return exitCodeOf(outcome);
}
