#include "driver/process_group.h"

#include "driver/process_table.h"

#include <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

class ProcessGroup::Private
{
public:
    qint64 groupId = 0;
};

ProcessGroup::ProcessGroup(QObject *parent) : QProcess(parent), d(std::make_unique<Private>()) {}

ProcessGroup::~ProcessGroup()
{
    killAll();
    if (state() != NotRunning)
        waitForFinished(1000);
}

// Between fork and exec.
void ProcessGroup::setupChildProcess()
{
    ::setpgid(0, 0);
    // Whoever works at the machine meanwhile comes first.
    constexpr int niceness = 5;
    ::setpriority(PRIO_PROCESS, 0, niceness);
#ifdef PR_SET_PDEATHSIG
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
}

void ProcessGroup::adopt()
{
    d->groupId = processId();
}

void ProcessGroup::killAll()
{
    // A group of 0 or 1 would mean everybody.
    if (d->groupId > 1)
        ::kill(pid_t(-d->groupId), SIGKILL);
    d->groupId = state() == NotRunning ? 0 : d->groupId;
}

qint64 ProcessGroup::processorTime() const
{
    qint64 ticks = 0;
    bool any = false;
    for (const ProcessRecord &process : listProcesses()) {
        if (process.groupId != d->groupId)
            continue;
        any = true;
        ticks += process.processorTicks;
    }
    return any ? ticks * 1000 / qMax<qint64>(1, ::sysconf(_SC_CLK_TCK)) : -1;
}
