// Programs on Windows: started as they are, held together by a job object.
#include "driver/program_launch.h"

#include "driver/run_messages.h"

#include <QFileInfo>

#include <windows.h>

class ProgramRunner::Launch::Private
{
public:
    HANDLE job = CreateJobObjectW(nullptr, nullptr);
};

ProgramRunner::Launch::Launch() : d(std::make_unique<Private>()) {}

ProgramRunner::Launch::~Launch()
{
    CloseHandle(d->job);
}

void ProgramRunner::Launch::warmUp() {}

QString ProgramRunner::Launch::prepare(const QString &executable, const QStringList &given,
                                       const Progress &)
{
    if (!QFileInfo(executable).isFile())
        return RunMessage::text(RunMessage::noExecutable).arg(executable);
    program = executable;
    arguments = given;
    environment = QProcessEnvironment::systemEnvironment();
    return QString();
}

void ProgramRunner::Launch::adopt(QProcess &process)
{
    const HANDLE handle =
        OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, DWORD(process.processId()));
    if (!handle)
        return;
    AssignProcessToJobObject(d->job, handle);
    CloseHandle(handle);
}

void ProgramRunner::Launch::killAll()
{
    TerminateJobObject(d->job, 1);
}
