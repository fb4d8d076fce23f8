// A child process together with everything it starts: killed as one, its processor time summed.
#pragma once

#include <QProcess>

#include <memory>

// Starts like any QProcess. Children stay within the group unless they leave it on purpose.
class ProcessGroup : public QProcess
{
public:
    explicit ProcessGroup(QObject *parent = nullptr);
    ~ProcessGroup() override;

    // To be called once the process runs.
    void adopt();
    // Ends every process of the group at once; harmless when none is left.
    void killAll();
    // Milliseconds of processor time that the group's living processes, and those of their children
    // that ended, have used; -1 where the system does not tell.
    qint64 processorTime() const;

protected:
    void setupChildProcess() override;

private:
    class Private;
    std::unique_ptr<Private> d;
};
