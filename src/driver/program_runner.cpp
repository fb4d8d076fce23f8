#include "driver/program_runner.h"

#include "driver/program_launch.h"
#include "driver/run_messages.h"
#include "driver/tool_process.h"

#include <cstdio>

namespace {

// The number of bytes at the end of `bytes` that begin a UTF-8 character but do not complete it.
int incompleteTail(const QByteArray &bytes)
{
    for (int back = 1; back <= qMin(3, bytes.size()); ++back) {
        const uchar byte = uchar(bytes.at(bytes.size() - back));
        if ((byte & 0xC0) == 0x80)
            continue;
        const int length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return length > back ? back : 0;
    }
    return 0;
}

} // namespace

ProgramRunner::ProgramRunner(QObject *parent) : QObject(parent)
{
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &ProgramRunner::readOutput);
    connect(&m_process, &QProcess::readyReadStandardError, this, &ProgramRunner::readOutput);
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &ProgramRunner::onFinished);
}

ProgramRunner::~ProgramRunner()
{
    m_process.disconnect(this);
    // What a program that ended by itself has left running is meant to run.
    if (isRunning())
        stop();
}

void ProgramRunner::warmUp()
{
    m_launch = std::make_unique<Launch>();
    m_launch->warmUp();
}

QString ProgramRunner::start(const QString &executable, const QStringList &arguments,
                             const QString &folder, Channels channels, const Progress &progress)
{
    if (!m_launch)
        m_launch = std::make_unique<Launch>();
    QString error = m_launch->prepare(executable, arguments, progress);
    if (!error.isEmpty())
        return error;
    m_inherited = channels == Channels::Inherited;
    m_process.setProcessEnvironment(m_launch->environment);
    m_process.setWorkingDirectory(folder);
    if (m_inherited) {
        m_process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
        m_process.setInputChannelMode(QProcess::ForwardedInputChannel);
    }
    m_process.start(m_launch->program, m_launch->arguments);
    if (!m_process.waitForStarted(15000))
        return RunMessage::text(RunMessage::notStarted).arg(executable, m_process.errorString());
    m_launch->adopt(m_process);
    return QString();
}

void ProgramRunner::writeInput(const QString &line)
{
    if (isRunning() && !m_inherited)
        m_process.write(line.toUtf8() + '\n');
}

bool ProgramRunner::isRunning() const
{
    return m_process.state() != QProcess::NotRunning;
}

qint64 ProgramRunner::processId() const
{
    return m_process.processId();
}

void ProgramRunner::readOutput()
{
    const QByteArray errors = m_process.readAllStandardError();
    if (m_inherited) {
        // Passed on by hand: a helper process that keeps the channel open must not hold up whoever
        // reads ours.
        std::fwrite(errors.constData(), 1, size_t(errors.size()), stderr);
        std::fflush(stderr);
        return;
    }
    m_partial += m_process.readAllStandardOutput() + errors;
    const int kept = isRunning() ? incompleteTail(m_partial) : 0;
    const QByteArray whole = m_partial.left(m_partial.size() - kept);
    m_partial = m_partial.right(kept);
    if (!whole.isEmpty())
        emit outputReady(decodeToolOutput(whole));
}

void ProgramRunner::onFinished()
{
    readOutput();
    const bool killed = m_stopped || m_process.exitStatus() == QProcess::CrashExit;
    m_exitCode = killed ? -1 : m_process.exitCode();
    emit finished(m_exitCode);
}

void ProgramRunner::stop()
{
    if (!m_launch)
        return;
    m_stopped = m_stopped || isRunning();
    m_launch->killAll();
    if (isRunning()) {
        m_process.kill();
        m_process.waitForFinished(3000);
    }
}
