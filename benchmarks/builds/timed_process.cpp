#include "builds/timed_process.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <csignal>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int)
{
    interrupted = 1;
}

// A process that leads a group of its own, so that its children can be ended with it.
class GroupProcess : public QProcess
{
public:
    ~GroupProcess() override { killGroup(); }

    void killGroup()
    {
        if (state() == NotRunning || processId() <= 0)
            return;
        ::kill(-pid_t(processId()), SIGKILL);
        kill();
        waitForFinished(5000);
    }

protected:
    void setupChildProcess() override { ::setpgid(0, 0); }
};

QString failure(const QString &program, const QString &reason, const QByteArray &messages)
{
    constexpr int keptBytes = 1500;
    return QStringLiteral("%1：%2\n%3")
        .arg(QFileInfo(program).fileName(), reason,
             QString::fromUtf8(messages.right(keptBytes)).trimmed());
}

} // namespace

TimedResult runTimed(const TimedCommand &command)
{
    TimedResult result;
    GroupProcess process;
    process.setProcessEnvironment(command.environment);
    process.setWorkingDirectory(command.folder);
    process.setStandardInputFile(QProcess::nullDevice());
    QByteArray messages;
    QElapsedTimer timer;
    timer.start();
    process.start(command.program, command.arguments);
    const auto seconds = [&timer] { return double(timer.nsecsElapsed()) / 1e9; };
    const auto read = [&] {
        result.output += process.readAllStandardOutput();
        messages += process.readAllStandardError();
        if (result.firstOutput == 0 && !result.output.isEmpty())
            result.firstOutput = seconds();
    };
    if (!process.waitForStarted()) {
        result.error = failure(command.program, process.errorString(), messages);
        return result;
    }
    // Bytes on either channel wake this; the interval only bounds how late an interrupt is seen.
    constexpr int interval = 100;
    while (process.state() != QProcess::NotRunning && !isInterrupted() &&
           timer.elapsed() < command.timeoutMs) {
        process.waitForReadyRead(interval);
        read();
    }
    result.ended = seconds();
    if (process.state() != QProcess::NotRunning) {
        process.killGroup();
        result.error =
            failure(command.program,
                    isInterrupted() ? QStringLiteral("已中断") : QStringLiteral("超时"), messages);
        return result;
    }
    read();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        result.error = failure(command.program, QStringLiteral("退出码 %1").arg(process.exitCode()),
                               messages + '\n' + result.output);
    }
    return result;
}

bool isInterrupted()
{
    return interrupted != 0;
}

void catchInterrupts()
{
    std::signal(SIGINT, onInterrupt);
    std::signal(SIGTERM, onInterrupt);
    std::signal(SIGHUP, onInterrupt);
}

DisplayServer::~DisplayServer()
{
    if (m_server.state() == QProcess::NotRunning)
        return;
    m_server.terminate();
    if (!m_server.waitForFinished(2000)) {
        m_server.kill();
        m_server.waitForFinished(2000);
    }
}

QString DisplayServer::start()
{
    if (!qEnvironmentVariableIsEmpty("DISPLAY"))
        return QString();
    m_server.setStandardErrorFile(QProcess::nullDevice());
    // It picks a free number and prints it once it takes connections.
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("1280x1024x24"),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp"),
                    QStringLiteral("-noreset")});
    QByteArray number;
    while (!number.contains('\n')) {
        if (!m_server.waitForReadyRead(15000))
            return QStringLiteral("无法启动 Xvfb（apt-get install xvfb）：%1")
                .arg(m_server.errorString());
        number += m_server.readAllStandardOutput();
    }
    qputenv("DISPLAY", ':' + number.trimmed());
    return QString();
}
