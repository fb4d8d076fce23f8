// Runs the tools of a build, several at once if need be, and watches that they get on.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

struct ToolCommand
{
    QString program;
    QStringList arguments;
    QString folder; // working folder
};

struct ToolRun
{
    enum class End
    {
        Finished,
        Crashed,
        NotStarted,
        Cancelled,
        Stalled
    };

    bool succeeded() const { return end == End::Finished && exitCode == 0; }

    End end = End::NotStarted;
    int exitCode = -1;
    QString output; // both channels, in order; the first few megabytes
    QString error;  // why it did not start
};

// How a run is watched. `goOn` is called about ten times a second with the milliseconds waited so
// far; false ends everything. A tool that uses no processor time for `stallSeconds` is ended.
struct ToolWatch
{
    std::function<bool(qint64 waited)> goOn;
    std::function<void(int index)> finished; // of the command with that index
    int stallSeconds = 120;
};

// Runs all commands, at most `parallel` at a time, and returns one result for each. Once one does
// not succeed no further one is started, and those that run are ended. No process is left behind.
QList<ToolRun> runTools(const QList<ToolCommand> &commands, int parallel, const ToolWatch &watch);
ToolRun runTool(const ToolCommand &command, const ToolWatch &watch);

// What a tool prints as text: UTF-8, or the local code page where that gives no valid text.
QString decodeToolOutput(const QByteArray &bytes);
