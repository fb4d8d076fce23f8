#include "driver/process_group.h"

#include <windows.h>

class ProcessGroup::Private
{
public:
    HANDLE job = nullptr;
};

ProcessGroup::ProcessGroup(QObject *parent) : QProcess(parent), d(std::make_unique<Private>())
{
    d->job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(d->job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
}

ProcessGroup::~ProcessGroup()
{
    killAll();
    if (state() != NotRunning)
        waitForFinished(1000);
    CloseHandle(d->job);
}

void ProcessGroup::setupChildProcess() {}

void ProcessGroup::adopt()
{
    const HANDLE process =
        OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, DWORD(processId()));
    if (!process)
        return;
    AssignProcessToJobObject(d->job, process);
    CloseHandle(process);
}

void ProcessGroup::killAll()
{
    TerminateJobObject(d->job, 1);
}

qint64 ProcessGroup::processorTime() const
{
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION use = {};
    if (!QueryInformationJobObject(d->job, JobObjectBasicAccountingInformation, &use, sizeof use,
                                   nullptr))
        return -1;
    return (use.TotalUserTime.QuadPart + use.TotalKernelTime.QuadPart) / 10000;
}
