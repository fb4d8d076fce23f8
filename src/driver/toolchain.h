// Toolchain: turns a finished program text into an executable, by tools that this host has.
#pragma once

#include "codegen/program_text.h"
#include "driver/build_listener.h"
#include "driver/program_resources.h"

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

// What came of it. On failure the old executable is as it was.
struct ToolchainResult
{
    // A tool ran and said no: the cause is in what it was given.
    bool isToolFailure() const { return !success && !cancelled && !toolOutput.isEmpty(); }

    bool success = false;
    bool cancelled = false;
    QString message;      // why it failed, a Chinese sentence; empty when the tool's output tells
    QString toolOutput;   // of the compiler or linker that refused the program
    QString compiledText; // the text that the lines in `toolOutput` count; its name is main.cpp
};

class Toolchain
{
public:
    virtual ~Toolchain() = default;

    virtual ToolchainResult build(const ToolchainJob &job, BuildListener &listener) = 0;

    // The toolchain of this host for the compiler that is asked for.
    static std::unique_ptr<Toolchain> forHost(bool wantsMinGW);
};
