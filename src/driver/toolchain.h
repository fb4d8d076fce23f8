// Toolchain: turns a finished program text into an executable, by tools that this host has.
#pragma once

#include "codegen/program_text.h"
#include "driver/build_listener.h"
#include "driver/program_resources.h"
#include "driver/tool_process.h"

#include <QString>
#include <QStringList>

#include <memory>

// What is to be built, and where.
struct ToolchainJob
{
    ProgramText program;
    SourceLineMap lineMap; // tells which source file each line of the program is from
    ProgramResources resources;
    QString folder;     // build folder; exists
    QString executable; // full path of the result
    QString platform;   // "x86" or "x64"
    bool isDebug = false;
    bool staticLink = false;
    bool splitRuntime = true;
    QStringList linkLibraries;
    QStringList includeFolders;
    QStringList libraryFolders;
};

// A source of generated C++ as a tool was given it.
struct CompiledText
{
    QString name; // of the file, without its folder
    QString text;
};

// What came of it. On failure the old executable is as it was.
struct ToolchainResult
{
    // A tool ran and said no: the cause is in what it was given.
    bool isToolFailure() const { return !success && !cancelled && !toolOutput.isEmpty(); }

    bool success = false;
    bool cancelled = false;
    QString message; // why it failed, a Chinese sentence; empty when the tool's output tells
    // Of the compiler or linker that refused the program; after success of all tools that had
    // something to say.
    QString toolOutput;
    QList<CompiledText> compiledTexts; // the texts whose lines `toolOutput` counts
};

// Notes in `result` that `tool` did not succeed, and why; `waited` in milliseconds.
void noteToolFailure(ToolchainResult &result, const ToolRun &run, const QString &tool,
                     qint64 waited, BuildListener &listener);

class Toolchain
{
public:
    virtual ~Toolchain() = default;

    virtual ToolchainResult build(const ToolchainJob &job, BuildListener &listener) = 0;

    // The toolchain of this host for the compiler that is asked for.
    static std::unique_ptr<Toolchain> forHost(bool wantsMinGW);
};
