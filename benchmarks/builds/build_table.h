// The measured times as text: tables, and which goals are met.
#pragma once

#include "builds/results.h"

// Rows of cells as a Markdown table whose columns are aligned; the first row is the head. Chinese
// characters count as two columns.
QString alignedTable(const QList<QStringList> &rows);

// One table for each project and configuration.
QString resultTables(const BuildResults &results);

// How the tools that are missing are installed; empty when all are there.
QString installHints(const BuildResults &results);

// What a goal came to.
struct GoalVerdict
{
    enum class State
    {
        Met,
        Missed,
        NotMeasured
    };

    State state = State::NotMeasured;
    QString goal;
    QString worst;       // the value furthest from the goal, and where
    QStringList details; // every place where it is missed, for a goal that compares
};

QList<GoalVerdict> judgedGoals(const BuildResults &results);
QString goalTable(const BuildResults &results);
