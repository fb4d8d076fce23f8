#include "builds/build_rounds.h"

#include <QDir>
#include <QTextStream>

namespace {

// A step that takes longer than this is measured once.
constexpr double kSlowSeconds = 8;

void tell(const QString &text)
{
    QTextStream stream(stderr);
    stream.setCodec("UTF-8");
    stream << text << '\n';
}

} // namespace

BuildRounds::BuildRounds(const RoundOptions &options, const Workplace &place)
    : m_options(options), m_place(place), m_contenders(allContenders(place, options.peers))
{
    m_results.runs = options.runs;
    m_results.projects << ProjectRecord{QStringLiteral("问候（1 行）"), 0};
    if (!options.quick) {
        m_results.projects << ProjectRecord{QStringLiteral("2000 行"), 2000}
                           << ProjectRecord{QStringLiteral("20000 行"), 20000};
    }
    for (const auto &contender : m_contenders)
        m_results.tools << contender->record();
}

BuildResults BuildRounds::run()
{
    warmUp();
    for (int project = 0; project < m_results.projects.size(); ++project) {
        for (const Config config : {Config::Debug, Config::Release}) {
            for (int tool = 0; tool < m_results.tools.size(); ++tool) {
                if (m_results.tools.at(tool).missing.isEmpty() && !isInterrupted())
                    measureTool(project, config, tool);
            }
        }
    }
    if (isInterrupted())
        tell(QStringLiteral("已中断，下面是到此为止的结果。"));
    return m_results;
}

// What only the first program of a session waits for, such as the start of wine, is not measured.
void BuildRounds::warmUp()
{
    tell(QStringLiteral("预热…"));
    for (const auto &contender : m_contenders) {
        if (!contender->record().missing.isEmpty() || isInterrupted())
            continue;
        const Cell cell = measureStep(*contender, 0, Config::Debug, Step::FirstBuild);
        if (!cell.median.error.isEmpty())
            tell(contender->record().title + QStringLiteral("：") + cell.median.error);
    }
}

void BuildRounds::measureTool(int project, Config config, int tool)
{
    Contender &contender = *m_contenders[size_t(tool)];
    const ProjectRecord &record = m_results.projects.at(project);
    const QList<Step> steps = contender.steps();
    for (const Step step : steps) {
        if (m_options.quick && step == Step::EmptyCache)
            continue;
        tell(
            QStringLiteral("%1，%2，%3：%4…")
                .arg(record.title, configTitle(config), contender.record().title, stepTitle(step)));
        const Cell cell = measureStep(contender, record.lines, config, step);
        if (isInterrupted())
            return;
        m_results.cells.insert({project, config, tool, step}, cell);
        if (!cell.median.error.isEmpty()) {
            // What comes next would start from a state that is not known.
            tell(cell.median.error);
            return;
        }
    }
}

Cell BuildRounds::measureStep(Contender &contender, int lines, Config config, Step step)
{
    const Contender::Prepare prepareNext = [&](SampleProject &project) {
        return prepare(contender, lines, step, project);
    };
    QList<Sample> samples;
    const int runs = step == Step::EmptyCache ? 1 : m_options.runs;
    while (samples.size() < runs) {
        const Sample sample = contender.measure(m_project, config, step, prepareNext);
        if (!sample.error.isEmpty())
            return {sample, samples.size()};
        samples << sample;
        if (sample.shown > kSlowSeconds)
            break;
    }
    return {medianOf(samples), samples.size()};
}

QString BuildRounds::prepare(Contender &contender, int lines, Step step, SampleProject &project)
{
    switch (step) {
    case Step::ChangedLine:
        return project.changeLine();
    case Step::ChangedComment:
        return project.changeComment();
    case Step::Unchanged:
        return QString();
    default:
        return newProject(contender, lines, step, project);
    }
}

QString BuildRounds::newProject(Contender &contender, int lines, Step step, SampleProject &project)
{
    const QString error = contender.forget(step);
    if (!error.isEmpty())
        return error;
    if (!m_options.keep && !project.folder().isEmpty())
        QDir(project.folder()).removeRecursively();
    ++m_variant;
    const QString folder = QStringLiteral("%1/project%2").arg(m_place.folder).arg(m_variant);
    return project.write(contender.language(), folder, lines, m_variant);
}
