#include "driver/tool_process.h"

#include "driver/process_group.h"

#include <QElapsedTimer>

#include <memory>
#include <vector>

namespace {

constexpr int maxOutputBytes = 4 * 1024 * 1024;
constexpr int sliceMs = 40;
constexpr int activityCheckMs = 1000;

// One tool at work.
class RunningTool
{
public:
    RunningTool(const ToolCommand &command, int index);

    int index() const { return m_index; }
    // Waits a moment; true when the tool has ended.
    bool waitABit();
    bool isStalled(int stallSeconds);
    ToolRun abort(ToolRun::End end);
    ToolRun result();

private:
    void collectOutput();

    ProcessGroup m_process;
    QByteArray m_output;
    QElapsedTimer m_sinceActivity;
    QElapsedTimer m_sinceCheck;
    qint64 m_processorTime = -1;
    int m_index;
    bool m_started;
};

RunningTool::RunningTool(const ToolCommand &command, int index) : m_index(index)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Messages are parsed: they must come in the one language and form that the parser knows.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    environment.remove(QStringLiteral("GCC_COLORS"));
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(command.folder);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.start(command.program, command.arguments);
    m_started = m_process.waitForStarted(15000);
    if (m_started)
        m_process.adopt();
    m_sinceActivity.start();
    m_sinceCheck.start();
}

bool RunningTool::waitABit()
{
    if (!m_started)
        return true;
    const bool ended =
        m_process.state() == QProcess::NotRunning || m_process.waitForFinished(sliceMs);
    collectOutput();
    return ended || m_process.state() == QProcess::NotRunning;
}

void RunningTool::collectOutput()
{
    const QByteArray bytes = m_process.readAll();
    if (!bytes.isEmpty())
        m_sinceActivity.restart();
    if (m_output.size() < maxOutputBytes)
        m_output += bytes.left(maxOutputBytes - m_output.size());
}

bool RunningTool::isStalled(int stallSeconds)
{
    if (m_sinceCheck.elapsed() >= activityCheckMs) {
        m_sinceCheck.restart();
        const qint64 now = m_process.processorTime();
        if (now != m_processorTime)
            m_sinceActivity.restart();
        m_processorTime = now;
    }
    return m_sinceActivity.elapsed() > qint64(stallSeconds) * 1000;
}

ToolRun RunningTool::abort(ToolRun::End end)
{
    m_process.killAll();
    m_process.waitForFinished(1000);
    collectOutput();
    ToolRun run;
    run.end = end;
    run.output = decodeToolOutput(m_output);
    return run;
}

ToolRun RunningTool::result()
{
    ToolRun run;
    if (!m_started) {
        run.error = m_process.errorString();
        return run;
    }
    // What the tool left running holds nothing that is still wanted.
    m_process.killAll();
    collectOutput();
    run.end = m_process.exitStatus() == QProcess::CrashExit ? ToolRun::End::Crashed
                                                            : ToolRun::End::Finished;
    run.exitCode = m_process.exitCode();
    run.output = decodeToolOutput(m_output);
    return run;
}

// All commands of one call.
class ToolBatch
{
public:
    ToolBatch(const QList<ToolCommand> &commands, const ToolWatch &watch)
        : m_commands(commands), m_watch(watch)
    {
        for (int i = 0; i < commands.size(); ++i)
            m_results << ToolRun{ToolRun::End::Cancelled, -1, QString(), QString()};
        m_elapsed.start();
    }

    QList<ToolRun> run(int parallel);

private:
    void startMore(int parallel);
    void look();
    void abortAll(ToolRun::End end);

    const QList<ToolCommand> &m_commands;
    const ToolWatch &m_watch;
    QList<ToolRun> m_results;
    std::vector<std::unique_ptr<RunningTool>> m_running;
    QElapsedTimer m_elapsed;
    int m_next = 0;
    bool m_failed = false;
};

void ToolBatch::startMore(int parallel)
{
    while (!m_failed && m_next < m_commands.size() && int(m_running.size()) < parallel) {
        m_running.push_back(std::make_unique<RunningTool>(m_commands.at(m_next), m_next));
        ++m_next;
    }
}

void ToolBatch::look()
{
    for (auto tool = m_running.begin(); tool != m_running.end();) {
        const int index = (*tool)->index();
        if ((*tool)->waitABit()) {
            m_results[index] = (*tool)->result();
        } else if ((*tool)->isStalled(m_watch.stallSeconds)) {
            m_results[index] = (*tool)->abort(ToolRun::End::Stalled);
        } else {
            ++tool;
            continue;
        }
        tool = m_running.erase(tool);
        m_failed = m_failed || !m_results.at(index).succeeded();
        if (m_watch.finished)
            m_watch.finished(index);
    }
}

void ToolBatch::abortAll(ToolRun::End end)
{
    for (const auto &tool : m_running)
        m_results[tool->index()] = tool->abort(end);
    m_running.clear();
}

QList<ToolRun> ToolBatch::run(int parallel)
{
    startMore(parallel);
    while (!m_running.empty()) {
        look();
        if (m_failed || (m_watch.goOn && !m_watch.goOn(m_elapsed.elapsed()))) {
            abortAll(ToolRun::End::Cancelled);
            break;
        }
        startMore(parallel);
    }
    return m_results;
}

} // namespace

QList<ToolRun> runTools(const QList<ToolCommand> &commands, int parallel, const ToolWatch &watch)
{
    return ToolBatch(commands, watch).run(qMax(1, parallel));
}

ToolRun runTool(const ToolCommand &command, const ToolWatch &watch)
{
    return runTools({command}, 1, watch).first();
}

QString decodeToolOutput(const QByteArray &bytes)
{
    const QString text = QString::fromUtf8(bytes);
    return text.contains(QChar(QChar::ReplacementCharacter)) ? QString::fromLocal8Bit(bytes) : text;
}
