// What the measurement of builds deals in: steps, configurations, measured times and their table.
#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <tuple>

// What happens between two builds.
enum class Step
{
    EmptyCache,     // first build, nothing of the runtime is compiled yet
    FirstBuild,     // first build of a user who has just installed the tool
    SecondProject,  // another project, after one was built
    ChangedLine,    // one literal in one file
    ChangedComment, // one comment in one file
    Unchanged,
    Count,
};

enum class Config
{
    Debug,
    Release
};

// One measured cycle. Times are seconds from the start of the build; 0 when not measured.
struct Sample
{
    double built = 0;   // until the executable is there
    double shown = 0;   // until the program's first output byte
    qint64 size = 0;    // of the executable, bytes
    QString error = {}; // why there is nothing to tell; empty on success
};

// The middle value of each column; the mean of the two middle ones for an even number. Must not be
// empty and must hold no failed sample.
Sample medianOf(const QList<Sample> &samples);

// Where a result belongs. `tool` is the place of the tool in BuildResults::tools.
struct CellKey
{
    int project = 0;
    Config config = Config::Debug;
    int tool = 0;
    Step step = Step::EmptyCache;

    bool operator<(const CellKey &other) const
    {
        return std::tie(project, config, tool, step) <
               std::tie(other.project, other.config, other.tool, other.step);
    }
};

struct Cell
{
    Sample median;
    int runs = 0;
};

// What is known of a tool besides its times.
struct ToolRecord
{
    enum class Kind
    {
        Chosen,
        GccOnly,
        Peer
    };

    Kind kind = Kind::Peer;
    QString title;
    QString missing; // how to install it; empty when it is there
};

// A project of so many lines; 0 stands for the one-line program.
struct ProjectRecord
{
    QString title;
    int lines = 0;
};

struct BuildResults
{
    int runs = 0; // asked for; slow steps have fewer
    QList<ToolRecord> tools;
    QList<ProjectRecord> projects;
    QMap<CellKey, Cell> cells;

    // Null when not measured or failed.
    const Sample *find(const CellKey &key) const;
};

QString stepTitle(Step step);
QString configTitle(Config config);
