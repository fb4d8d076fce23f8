// Programs for Windows on a host without Windows: run by wine, ended by the mark they carry.
#include "driver/program_launch.h"

#include "driver/process_table.h"
#include "driver/run_messages.h"
#include "driver/virtual_display.h"
#include "driver/wine_prefix.h"

#include <QFileInfo>
#include <QUuid>

#include <csignal>

namespace {

// Every process that a run starts inherits this; wine's children leave groups and sessions.
const QString kRunId = QStringLiteral("VOREL_RUN_ID");

bool isWindowsProgram(const QString &executable)
{
    return executable.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive);
}

} // namespace

class ProgramRunner::Launch::Private
{
public:
    QByteArray runId;
    VirtualDisplay display;
};

ProgramRunner::Launch::Launch() : d(std::make_unique<Private>()) {}

ProgramRunner::Launch::~Launch() = default;

void ProgramRunner::Launch::warmUp()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        d->display.begin();
}

QString ProgramRunner::Launch::prepare(const QString &executable, const QStringList &given,
                                       const Progress &progress)
{
    using RunMessage::text;
    const QString path = QFileInfo(executable).absoluteFilePath();
    if (!QFileInfo(path).isFile())
        return text(RunMessage::noExecutable).arg(executable);
    environment = QProcessEnvironment::systemEnvironment();
    program = path;
    arguments = given;
    if (isWindowsProgram(path)) {
        const WinePrefix prefix;
        if (prefix.loader().isEmpty())
            return text(RunMessage::noWine);
        if (WinePrefix::is32Bit(path) && !WinePrefix::runs32Bit())
            return text(RunMessage::noWine32);
        QString error = prefix.ensureExists(progress);
        environment = prefix.environment();
        if (error.isEmpty() && qEnvironmentVariableIsEmpty("DISPLAY"))
            error = d->display.start();
        if (!error.isEmpty())
            return error;
        if (!d->display.name().isEmpty())
            environment.insert(QStringLiteral("DISPLAY"), d->display.name());
        prefix.wakeServer(environment);
        program = prefix.loader();
        arguments.prepend(path);
    }
    d->runId = QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    environment.insert(kRunId, QString::fromLatin1(d->runId));
    return QString();
}

void ProgramRunner::Launch::adopt(QProcess &) {}

void ProgramRunner::Launch::killAll()
{
    if (d->runId.isEmpty())
        return;
    const QByteArray mark = kRunId.toLatin1() + '=' + d->runId;
    // Again and again: what is about to start children may do so while the others are killed.
    constexpr int rounds = 50;
    for (int round = 0; round < rounds; ++round) {
        bool any = false;
        const QList<ProcessRecord> processes = listProcesses();
        for (const ProcessRecord &process : processes) {
            if (!startedWithEnvironment(process.id, mark) ||
                WinePrefix::isSystemProcess(commandLineOf(process.id)))
                continue;
            any = ::kill(pid_t(process.id), SIGKILL) == 0 || any;
        }
        if (!any)
            return;
    }
}
