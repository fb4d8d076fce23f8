// Processes that are measured from outside: when they write their first byte, when they end.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

struct TimedCommand
{
    QString program;
    QStringList arguments;
    QString folder; // where it works; empty for the present one
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    int timeoutMs = 600000;
};

// Times are seconds from the start of the process.
struct TimedResult
{
    double firstOutput = 0; // 0 when it wrote nothing to standard output
    double ended = 0;
    QByteArray output;
    QString error; // empty when it ended with exit code 0
};

// Runs one process to its end; whatever it started is ended with it when it takes too long or when
// the user interrupts.
TimedResult runTimed(const TimedCommand &command);

// Whether the user has asked to stop; runTimed() then fails at once.
bool isInterrupted();
// From now on Ctrl+C and a polite kill only make isInterrupted() true.
void catchInterrupts();

// A virtual X server for this run; ends with the object.
class DisplayServer
{
public:
    DisplayServer() = default;
    ~DisplayServer();
    DisplayServer(const DisplayServer &) = delete;
    DisplayServer &operator=(const DisplayServer &) = delete;

    // Sets DISPLAY, unless there is one already. Empty, or what went wrong.
    [[nodiscard]] QString start();

private:
    QProcess m_server;
};
