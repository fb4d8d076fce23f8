// The tools that are measured: how each builds a project and starts its program.
#pragma once

#include "builds/results.h"
#include "builds/sample_project.h"
#include "builds/timed_process.h"

#include <functional>
#include <memory>

// One tool with one choice of settings.
class Contender
{
public:
    // Makes or changes the project that is built next. Empty, or what went wrong.
    using Prepare = std::function<QString(SampleProject &project)>;

    // `language` names the folder of this language's patterns.
    Contender(const ToolRecord &record, const QString &language);
    virtual ~Contender() = default;

    const ToolRecord &record() const { return m_record; }
    const ProjectLanguage &language() const { return m_language; }
    virtual QList<Step> steps() const;

    // Called before each new project: what earlier builds of this tool have left behind counts for
    // Step::SecondProject only. Empty, or what went wrong.
    [[nodiscard]] virtual QString forget(Step step);
    // Measures one cycle. `prepare` is called once ahead of each build that is timed.
    virtual Sample measure(SampleProject &project, Config config, Step step,
                           const Prepare &prepare) = 0;

protected:
    ToolRecord m_record;
    ProjectLanguage m_language;
};

// Where the contenders work.
struct Workplace
{
    QString folder; // for what they leave behind
    QString vorelc;
};

// All that can be measured; those whose tools are missing say so in their record.
std::vector<std::unique_ptr<Contender>> allContenders(const Workplace &place, bool withPeers);

// The two kinds, used by allContenders().
std::unique_ptr<Contender> makeVorelContender(const Workplace &place, ToolRecord::Kind kind);
std::unique_ptr<Contender> makeLclContender(const Workplace &place);
std::unique_ptr<Contender> makeQtContender();

// "apt-get install …" for what is not there, else empty. Each pair is a program or file and the
// packages that bring it.
QString missingPackages(const QList<QPair<QString, QString>> &needed);
