// The table of vorelc's commands.
#pragma once

#include "cli/options.h"

#include <QList>
#include <QString>

namespace ExitCode {
constexpr int done = 0;
constexpr int failed = 1; // refused or failed
constexpr int wrongUsage = 2;
constexpr int interrupted = 130;
} // namespace ExitCode

struct CliCommand
{
    const char *name;
    const char *usage;   // behind the name
    const char *summary; // one line
    const char *details; // of the command's own help
    unsigned options;    // OptionGroup
    int minInputs;
    int maxInputs;
    int (*run)(const CliOptions &options);
};

const QList<CliCommand> &cliCommands();
// Null if there is none of that name.
const CliCommand *findCommand(const QString &name);

// One function for each command: commands_*.cpp.
int runBuild(const CliOptions &options);
int runRun(const CliOptions &options);
int runCheck(const CliOptions &options);
int runEmit(const CliOptions &options);
int runTokens(const CliOptions &options);
int runTree(const CliOptions &options);
int runCommands(const CliOptions &options);
int runClean(const CliOptions &options);
int runNew(const CliOptions &options);
