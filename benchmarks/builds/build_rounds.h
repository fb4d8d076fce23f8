// The whole measurement: every tool on every project through every step, one at a time.
#pragma once

#include "builds/contender.h"
#include "builds/results.h"

struct RoundOptions
{
    int runs = 5;
    bool quick = false; // the one-line project only, without the slow first builds
    bool peers = true;
    bool keep = false; // leave all projects where they are
};

class BuildRounds
{
public:
    BuildRounds(const RoundOptions &options, const Workplace &place);

    // Measures; tells on standard error what it is at and what has failed. When the user
    // interrupts, what has been measured by then is returned.
    BuildResults run();

private:
    void warmUp();
    void measureTool(int project, Config config, int tool);
    Cell measureStep(Contender &contender, int lines, Config config, Step step);
    QString prepare(Contender &contender, int lines, Step step, SampleProject &project);
    QString newProject(Contender &contender, int lines, Step step, SampleProject &project);

    RoundOptions m_options;
    Workplace m_place;
    std::vector<std::unique_ptr<Contender>> m_contenders;
    BuildResults m_results;
    SampleProject m_project; // the one that is at work
    int m_variant = 0;
};
