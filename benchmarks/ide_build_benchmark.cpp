// Measures what a build of a large project does to the windows: the longest time in which the event
// loop of the build flow's thread did not turn, and how soon a flooding program is stopped.
#include "loop_watch.h"
#include "project_source.h"
#include "shell/build_flow.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>

namespace {

constexpr int lineCount = 20000;
constexpr int longestWait = 600000; // milliseconds

class ProjectHost : public BuildHost
{
public:
    QStringList saveAllFilesBeforeBuild() override { return {}; }
    BuildSubject buildSubject() override { return subject; }
    BuildChoices buildChoices() override
    {
        BuildChoices choices;
        choices.compilerType = QStringLiteral("MinGW");
        return choices;
    }
    CompilerDebugBreakpointsMap breakpoints() override { return {}; }

    BuildSubject subject;
};

void write(const QString &path, const QString &text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(text.toUtf8());
}

VL::ProjectInfo project(const QString &folder, const QString &main)
{
    VL::ProjectInfo info;
    info.path = folder;
    info.sourceFiles = QStringList{QStringLiteral("source/main.vc")};
    write(folder + QStringLiteral("/source/main.vc"), main);
    return info;
}

// Turns the loop until `done`; false when that takes too long.
bool turnUntil(const std::function<bool()> &done)
{
    QElapsedTimer time;
    time.start();
    while (!done()) {
        if (time.elapsed() > longestWait)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void measureBuild(BuildFlow &flow, const char *name, QTextStream &out)
{
    QString ending;
    const auto connection = QObject::connect(&flow, &BuildFlow::statusChanged, &flow,
                                             [&ending](const QString &text) { ending = text; });
    QElapsedTimer time;
    time.start();
    const LoopWatch watch;
    flow.build();
    turnUntil([&flow] { return !flow.isBuilding(); });
    QObject::disconnect(connection);
    out << name << ": " << ending << ", " << time.elapsed() << " ms, longest gap of the loop "
        << watch.longest() << " ms\n";
    out.flush();
}

void measureStop(BuildFlow &flow, QTextStream &out)
{
    int pieces = 0;
    QObject::connect(&flow, &BuildFlow::runOutput, &flow, [&pieces] { ++pieces; });
    flow.run();
    if (!turnUntil([&pieces] { return pieces > 20; }))
        out << "the flood did not come\n";
    QString status;
    QObject::connect(&flow, &BuildFlow::statusChanged, &flow,
                     [&status](const QString &text) { status = text; });
    QElapsedTimer time;
    time.start();
    const LoopWatch watch;
    flow.stopRun();
    // What the compiler's thread does next comes behind the end of the program.
    flow.clean();
    turnUntil([&status] { return status == QStringLiteral("清理完成"); });
    out << "stop of a flood and cleaning: " << time.elapsed() << " ms, longest gap of the loop "
        << watch.longest() << " ms\n";
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    // Cleaning must not touch what others build.
    qputenv("TMPDIR", folder.path().toUtf8());
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    ProjectHost host;
    BuildFlow flow(host);
    host.subject.project =
        project(folder.filePath(QStringLiteral("large")), projectSource(lineCount));
    measureBuild(flow, "20,000 lines, first build", out);
    measureBuild(flow, "20,000 lines, unchanged", out);
    write(folder.filePath(QStringLiteral("large/source/another.vc")),
          QStringLiteral("函数 又() {\n    跳出\n}\n"));
    measureBuild(flow, "20,000 lines, with an error", out);
    host.subject.project =
        project(folder.filePath(QStringLiteral("flood")),
                QStringLiteral("函数 主函数() {\n    整数 甲 = 0\n    当 (真) {\n        甲++\n"
                               "        输出(甲)\n    }\n}\n"));
    measureStop(flow, out);
    return 0;
}
