#include "cli/build_session.h"

#include "cli/diagnostic_printer.h"
#include "cli/interrupts.h"
#include "driver/compiler_thread.h"

#include <algorithm>
#include <exception>

class BuildSession::Listener : public BuildListener
{
public:
    Listener(BuildSession &session, const QString &folder)
        : m_session(session),
          m_progress(session.m_options.verbosity, session.m_quietWithoutTerminal),
          m_printer(folder, session.m_options.plain)
    {}

    void progress(int percent, const QString &message) override
    {
        m_progress.show(percent, message);
    }
    void note(const QString &text) override { m_progress.note(text); }
    void output(const QString &text) override
    {
        if (m_session.m_options.verbosity == Verbosity::Verbose)
            Console::tell(text);
    }
    void diagnostic(const BuildDiagnostic &diagnostic) override
    {
        m_session.m_diagnostics << diagnostic;
        if (m_session.m_mode != Diagnostics::Print)
            return;
        m_progress.clear();
        m_printer.print(diagnostic);
    }
    bool isCancelled() override { return Interrupts::happened(); }

private:
    BuildSession &m_session;
    ProgressDisplay m_progress;
    DiagnosticPrinter m_printer;
};

BuildSession::BuildSession(const CliOptions &options, bool quietWithoutTerminal, Diagnostics mode)
    : m_options(options), m_quietWithoutTerminal(quietWithoutTerminal), m_mode(mode)
{}

BuildOutcome BuildSession::build(const ProjectInput &input, BuildGoal goal,
                                 Listener &listener) const
{
    AssembledBuild assembled = assembleInput(input, m_options);
    for (const QString &note : qAsConst(assembled.notes))
        listener.output(note);
    for (const BuildDiagnostic &diagnostic : qAsConst(assembled.diagnostics))
        listener.diagnostic(diagnostic);
    if (!assembled.succeeded())
        return {};
    assembled.request.goal = goal;
    return BuildPipeline().run(assembled.request, listener);
}

BuildOutcome BuildSession::run(const ProjectInput &input, BuildGoal goal)
{
    BuildOutcome outcome;
    runWithDeepStack([&] {
        Listener listener(*this, input.request.projectPath);
        try {
            outcome = build(input, goal, listener);
        } catch (const std::exception &exception) {
            outcome.output = QString::fromLocal8Bit(exception.what());
        }
        const bool told = std::any_of(
            m_diagnostics.begin(), m_diagnostics.end(), [](const BuildDiagnostic &diagnostic) {
                return diagnostic.severity == BuildDiagnostic::Severity::Error;
            });
        if (!outcome.success && !told)
            listener.diagnostic({BuildDiagnostic::Severity::Error, QString(), 0, outcome.output});
    });
    return outcome;
}
