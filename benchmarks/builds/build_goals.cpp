// The goals of the build times, and how the measured times stand to them.
#include "builds/build_table.h"

#include <limits>

namespace {

enum class Measure
{
    Built,
    Shown,
    Size
};
enum class Projects
{
    Small,
    Large,
    All
};
// Which tools a goal is about.
enum class Tools
{
    Chosen,
    GccOnly,
    Both
};

struct Goal
{
    const char *title;
    Tools tools;
    Projects projects;
    QList<Config> configs;
    QList<Step> steps;
    Measure measure;
    double limit; // seconds, or megabytes; the value must be below
};

const QList<Goal> &goals()
{
    const QList<Config> debug{Config::Debug};
    const QList<Config> release{Config::Release};
    const QList<Config> both{Config::Debug, Config::Release};
    const QList<Step> line{Step::ChangedLine};
    const QList<Step> all{Step::EmptyCache,  Step::FirstBuild,     Step::SecondProject,
                          Step::ChangedLine, Step::ChangedComment, Step::Unchanged};
    static const QList<Goal> table{
        {"改一行到输出，debug，问候，clang 和 lld", Tools::Chosen, Projects::Small, debug, line,
         Measure::Shown, 0.5},
        {"改一行到输出，debug，问候，只用 g++", Tools::GccOnly, Projects::Small, debug, line,
         Measure::Shown, 0.8},
        {"改一行到输出，debug，2000 和 20000 行", Tools::Chosen, Projects::Large, debug, line,
         Measure::Shown, 1.2},
        {"改一行到输出，debug，2000 和 20000 行，只用 g++", Tools::GccOnly, Projects::Large, debug,
         line, Measure::Shown, 1.2},
        {"改一行到输出，release，问候", Tools::Chosen, Projects::Small, release, line,
         Measure::Shown, 1.3},
        {"改一行到输出，release，问候，只用 g++", Tools::GccOnly, Projects::Small, release, line,
         Measure::Shown, 1.3},
        {"改一行到输出，release，2000 和 20000 行", Tools::Chosen, Projects::Large, release, line,
         Measure::Shown, 2.5},
        {"改一行到输出，release，2000 和 20000 行，只用 g++", Tools::GccOnly, Projects::Large,
         release, line, Measure::Shown, 2.5},
        {"没有改动，vorelc 全程",
         Tools::Both,
         Projects::All,
         both,
         {Step::Unchanged},
         Measure::Built,
         0.1},
        {"安装后第一次编译到输出，问候",
         Tools::Both,
         Projects::Small,
         both,
         {Step::FirstBuild},
         Measure::Shown,
         2.5},
        {"程序大小（MB）", Tools::Both, Projects::All, both, all, Measure::Size, 1.5},
    };
    return table;
}

bool concerns(Tools tools, ToolRecord::Kind kind)
{
    switch (kind) {
    case ToolRecord::Kind::Chosen:
        return tools != Tools::GccOnly;
    case ToolRecord::Kind::GccOnly:
        return tools != Tools::Chosen;
    case ToolRecord::Kind::Peer:
        break;
    }
    return false;
}

bool concerns(Projects projects, const ProjectRecord &record)
{
    return projects == Projects::All || (projects == Projects::Small) == (record.lines == 0);
}

bool concerns(const Goal &goal, const BuildResults &results, const CellKey &key)
{
    return goal.configs.contains(key.config) && goal.steps.contains(key.step) &&
           concerns(goal.tools, results.tools.at(key.tool).kind) &&
           concerns(goal.projects, results.projects.at(key.project));
}

QString placeOf(const BuildResults &results, const CellKey &key)
{
    return QStringLiteral("%1，%2，%3，%4")
        .arg(results.projects.at(key.project).title, configTitle(key.config),
             results.tools.at(key.tool).title, stepTitle(key.step));
}

// A failed build is further from any goal than a slow one.
double valueOf(const Sample &sample, Measure measure)
{
    if (!sample.error.isEmpty())
        return std::numeric_limits<double>::infinity();
    switch (measure) {
    case Measure::Built:
        return sample.built;
    case Measure::Shown:
        return sample.shown;
    case Measure::Size:
        return double(sample.size) / 1e6;
    }
    return 0;
}

GoalVerdict judged(const Goal &goal, const BuildResults &results)
{
    GoalVerdict verdict;
    verdict.goal = QStringLiteral("%1 < %2").arg(QString::fromUtf8(goal.title)).arg(goal.limit);
    double worst = -1;
    for (auto cell = results.cells.constBegin(); cell != results.cells.constEnd(); ++cell) {
        if (!concerns(goal, results, cell.key()))
            continue;
        const double value = valueOf(cell->median, goal.measure);
        if (value <= worst)
            continue;
        worst = value;
        verdict.state = value < goal.limit ? GoalVerdict::State::Met : GoalVerdict::State::Missed;
        verdict.worst = QStringLiteral("%1（%2）")
                            .arg(cell->median.error.isEmpty() ? QString::number(value, 'f', 2)
                                                              : QStringLiteral("失败"),
                                 placeOf(results, cell.key()));
    }
    return verdict;
}

// The tool that is held against the peers; -1 when VorelDesk was not measured.
int ownTool(const BuildResults &results)
{
    for (int tool = 0; tool < results.tools.size(); ++tool) {
        const ToolRecord &record = results.tools.at(tool);
        if (record.kind != ToolRecord::Kind::Peer && record.missing.isEmpty())
            return tool;
    }
    return -1;
}

// Ahead of every peer in every row, in both times.
GoalVerdict judgedAgainstPeers(const BuildResults &results)
{
    GoalVerdict verdict;
    verdict.goal = QStringLiteral("每一行都快过对照的工具");
    const int own = ownTool(results);
    for (auto cell = results.cells.constBegin(); cell != results.cells.constEnd(); ++cell) {
        CellKey key = cell.key();
        if (results.tools.at(key.tool).kind != ToolRecord::Kind::Peer ||
            !cell->median.error.isEmpty())
            continue;
        key.tool = own;
        const auto ours = results.cells.constFind(key);
        if (ours == results.cells.constEnd())
            continue;
        if (verdict.state == GoalVerdict::State::NotMeasured)
            verdict.state = GoalVerdict::State::Met;
        if (valueOf(ours->median, Measure::Built) < cell->median.built &&
            valueOf(ours->median, Measure::Shown) < cell->median.shown)
            continue;
        verdict.state = GoalVerdict::State::Missed;
        verdict.details << placeOf(results, cell.key());
    }
    if (!verdict.details.isEmpty())
        verdict.worst = QStringLiteral("落后 %1 处，见下").arg(verdict.details.size());
    return verdict;
}

QString stateText(GoalVerdict::State state)
{
    switch (state) {
    case GoalVerdict::State::Met:
        return QStringLiteral("达到");
    case GoalVerdict::State::Missed:
        return QStringLiteral("未达到");
    case GoalVerdict::State::NotMeasured:
        break;
    }
    return QStringLiteral("未测");
}

} // namespace

QList<GoalVerdict> judgedGoals(const BuildResults &results)
{
    QList<GoalVerdict> verdicts;
    for (const Goal &goal : goals())
        verdicts << judged(goal, results);
    verdicts << judgedAgainstPeers(results);
    return verdicts;
}

QString goalTable(const BuildResults &results)
{
    QList<QStringList> rows{
        {QStringLiteral("目标"), QStringLiteral("结果"), QStringLiteral("最差")}};
    const QList<GoalVerdict> verdicts = judgedGoals(results);
    QString details;
    for (const GoalVerdict &verdict : verdicts) {
        rows << QStringList{verdict.goal, stateText(verdict.state), verdict.worst};
        for (const QString &detail : verdict.details)
            details += QStringLiteral("- 落后：%1\n").arg(detail);
    }
    if (!details.isEmpty())
        details.prepend(QLatin1Char('\n'));
    return QStringLiteral("\n# 目标\n\n") + alignedTable(rows) + details;
}
