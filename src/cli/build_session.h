// One build as vorelc does it: with progress, problems and Ctrl-C on the terminal.
#pragma once

#include "cli/options.h"
#include "cli/project_input.h"
#include "driver/build_pipeline.h"

#include <QList>

class BuildSession
{
public:
    enum class Diagnostics
    {
        Print, // on standard error, as they come
        Keep,  // for `diagnostics` alone
    };

    // `quietWithoutTerminal`: progress only where somebody watches.
    BuildSession(const CliOptions &options, bool quietWithoutTerminal, Diagnostics mode);

    // Builds the input up to `goal`. What went wrong has been printed, or kept, on return.
    BuildOutcome run(const ProjectInput &input, BuildGoal goal);
    const QList<BuildDiagnostic> &diagnostics() const { return m_diagnostics; }

private:
    class Listener;

    BuildOutcome build(const ProjectInput &input, BuildGoal goal, Listener &listener) const;

    CliOptions m_options;
    QList<BuildDiagnostic> m_diagnostics;
    bool m_quietWithoutTerminal;
    Diagnostics m_mode;
};
