// CrossBuild: from a finished program text to the executable, with one set of tools.
#pragma once

#include "driver/object_store.h"
#include "driver/program_units.h"
#include "driver/resource_build.h"
#include "driver/runtime_cache.h"
#include "driver/toolchain.h"

#include <QElapsedTimer>
#include <QList>
#include <QString>
#include <QStringList>

// Sources, objects and the linked program appear in the build folder; only a whole program takes
// the place of the old one.
class CrossBuild
{
public:
    enum class Form
    {
        Units,        // the program in units, through the prepared runtime
        WholeProgram, // the program in one unit, through the prepared runtime
        OneFile,      // with the runtime's text, nothing prepared
    };

    CrossBuild(const ToolchainJob &job, const CppTools &tools, const PreparedRuntime &runtime,
               Form form, BuildListener &listener);

    ToolchainResult run();

private:
    bool writeSources();
    void dropStaleSources() const;
    bool compile();
    QList<ToolCommand> compileCommands();
    bool link();
    bool putInPlace();
    QString includeLine() const;
    QStringList compileArguments() const;
    bool refuseResources(const ToolRun &run);
    bool takeRuns(const QList<ToolRun> &runs, const QList<ToolCommand> &commands);
    ToolWatch watch(const QString &message, int percent, int percentEnd, int steps);
    QString inFolder(const QString &name) const { return m_job.folder + QLatin1Char('/') + name; }

    const ToolchainJob &m_job;
    const CppTools &m_tools;
    const PreparedRuntime &m_runtime;
    BuildListener &m_listener;
    Form m_form;
    ObjectStore m_store;
    ResourceBuild m_resources;
    QList<ProgramUnit> m_units;
    QStringList m_objects; // of all units, relative to the build folder
    QStringList m_made;    // those among them that this build compiles
    ToolchainResult m_result;
    QString m_said;          // by the tools that succeeded
    QElapsedTimer m_elapsed; // since the first tool was started
    int m_done = 0;
};
