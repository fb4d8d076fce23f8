// VorelDesk itself: vorelc, as a user calls it.
#include "builds/contender.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

class VorelContender : public Contender
{
public:
    VorelContender(const Workplace &place, const ToolRecord &record);

    QList<Step> steps() const override;
    QString forget(Step step) override;
    Sample measure(SampleProject &project, Config config, Step step,
                   const Prepare &prepare) override;

private:
    TimedCommand command(const QString &name, const SampleProject &project, Config config,
                         Step step) const;
    Sample measureOneRun(SampleProject &project, Config config, Step step,
                         const Prepare &prepare) const;
    QString cacheFolder() const;

    QString m_vorelc;
    QString m_cacheRoot;
    int m_cacheNumber = 0;
};

VorelContender::VorelContender(const Workplace &place, const ToolRecord &record)
    : Contender(record, QStringLiteral("vorel")), m_vorelc(place.vorelc), m_cacheRoot(place.folder)
{
    m_language.small = {{QStringLiteral("greeting.vc"), QStringLiteral("source/main.vc")},
                        {QStringLiteral("project.vlproj.in"), QStringLiteral("工程.vlproj")}};
    m_language.fixed = {{QStringLiteral("main.vc.in"), QStringLiteral("source/main.vc")},
                        {QStringLiteral("project.vlproj.in"), QStringLiteral("工程.vlproj")}};
    m_language.units = {
        {QStringLiteral("orders.vc.in"), QStringLiteral("source/订单{{unit}}.vc")},
        {QStringLiteral("customer.vpp.in"), QStringLiteral("source/客户{{unit}}.vpp")}};
    m_language.smallEdited = QStringLiteral("source/main.vc");
    m_language.unitEdited = QStringLiteral("source/订单{{unit}}.vc");
}

QList<Step> VorelContender::steps() const
{
    QList<Step> steps;
    for (int step = 0; step < int(Step::Count); ++step)
        steps << Step(step);
    return steps;
}

QString VorelContender::cacheFolder() const
{
    return QStringLiteral("%1/cache%2-%3")
        .arg(m_cacheRoot)
        .arg(int(m_record.kind))
        .arg(m_cacheNumber);
}

QString VorelContender::forget(Step step)
{
    if (step == Step::SecondProject)
        return QString();
    QDir(cacheFolder()).removeRecursively();
    ++m_cacheNumber;
    return QDir().mkpath(cacheFolder()) ? QString()
                                        : QStringLiteral("无法创建 %1").arg(cacheFolder());
}

TimedCommand VorelContender::command(const QString &name, const SampleProject &project,
                                     Config config, Step step) const
{
    TimedCommand command;
    command.program = m_vorelc;
    command.arguments << name << project.folder() << QStringLiteral("--config")
                      << configTitle(config);
    QProcessEnvironment &environment = command.environment;
    environment.insert(QStringLiteral("VOREL_CACHE_DIR"), cacheFolder());
    for (const char *variable : {"VOREL_NO_SPLIT", "VOREL_TOOLS"})
        environment.remove(QLatin1String(variable));
    if (m_record.kind == ToolRecord::Kind::GccOnly)
        environment.insert(QStringLiteral("VOREL_TOOLS"), QStringLiteral("gcc"));
    if (step == Step::EmptyCache) {
        environment.insert(QStringLiteral("VOREL_RUNTIME_DIR"),
                           cacheFolder() + QLatin1String("/nothing-shipped"));
    }
    return command;
}

QString executableIn(const SampleProject &project, Config config)
{
    const QDir folder(project.folder() + QLatin1String("/build/x64/") + configTitle(config));
    const QStringList programs = folder.entryList({QStringLiteral("*.exe")}, QDir::Files);
    return programs.size() == 1 ? folder.filePath(programs.first()) : QString();
}

// A build that was skipped though the source had changed is a fault, not a fast build.
QString outputError(const SampleProject &project, const TimedResult &run)
{
    if (!run.error.isEmpty() || !project.isOneLine() ||
        run.output.contains(project.lineText().toUtf8()))
        return run.error;
    return QStringLiteral("程序不是由现在的源代码编译的，输出是：%1")
        .arg(QString::fromUtf8(run.output.left(200)));
}

// Two builds, as a user would see them: one that ends with the executable, one that goes on to run
// the program. Each has a change of its own.
Sample VorelContender::measure(SampleProject &project, Config config, Step step,
                               const Prepare &prepare)
{
    if (step == Step::EmptyCache)
        return measureOneRun(project, config, step, prepare);
    Sample sample;
    sample.error = prepare(project);
    if (!sample.error.isEmpty())
        return sample;
    const TimedResult built = runTimed(command(QStringLiteral("build"), project, config, step));
    sample.built = built.ended;
    sample.size = QFileInfo(QString::fromUtf8(built.output).trimmed()).size();
    sample.error = built.error;
    if (sample.error.isEmpty())
        sample.error = prepare(project);
    if (!sample.error.isEmpty())
        return sample;
    const TimedResult run = runTimed(command(QStringLiteral("run"), project, config, step));
    sample.shown = run.firstOutput;
    sample.error = outputError(project, run);
    return sample;
}

// Takes too long to be done twice: when the executable was there is read off the file.
Sample VorelContender::measureOneRun(SampleProject &project, Config config, Step step,
                                     const Prepare &prepare) const
{
    Sample sample;
    sample.error = prepare(project);
    if (!sample.error.isEmpty())
        return sample;
    const QDateTime start = QDateTime::currentDateTime();
    const TimedResult run = runTimed(command(QStringLiteral("run"), project, config, step));
    const QFileInfo executable(executableIn(project, config));
    sample.built = double(start.msecsTo(executable.lastModified())) / 1000;
    sample.shown = run.firstOutput;
    sample.size = executable.size();
    sample.error = outputError(project, run);
    return sample;
}

} // namespace

std::unique_ptr<Contender> makeVorelContender(const Workplace &place, ToolRecord::Kind kind)
{
    ToolRecord record;
    record.kind = kind;
    QList<QPair<QString, QString>> needed = {
        {QStringLiteral("x86_64-w64-mingw32-g++"), QStringLiteral("g++-mingw-w64-x86-64")},
        {QStringLiteral("wine"), QStringLiteral("wine")}};
    if (kind == ToolRecord::Kind::Chosen) {
        record.title = QStringLiteral("VorelDesk（自选工具）");
        needed << qMakePair(QStringLiteral("clang"), QStringLiteral("clang"))
               << qMakePair(QStringLiteral("ld.lld"), QStringLiteral("lld"));
    } else {
        record.title = QStringLiteral("VorelDesk（只用 g++）");
    }
    record.missing = missingPackages(needed);
    return std::make_unique<VorelContender>(place, record);
}
