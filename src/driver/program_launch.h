// What starting and ending a program means on this host; one implementation for each kind of host.
#pragma once

#include "driver/program_runner.h"

#include <QProcessEnvironment>

// The command that starts a program, and what must live as long as it runs.
class ProgramRunner::Launch
{
public:
    Launch();
    ~Launch();

    // Begins what takes time and does not depend on the program.
    void warmUp();
    // Finds out how to start `executable`; empty on success, else a Chinese sentence.
    QString prepare(const QString &executable, const QStringList &arguments,
                    const Progress &progress);
    // To be called once `process` runs.
    void adopt(QProcess &process);
    // Ends the program and everything that it started.
    void killAll();

    QString program;
    QStringList arguments;
    QProcessEnvironment environment;

private:
    class Private;
    std::unique_ptr<Private> d;
};
