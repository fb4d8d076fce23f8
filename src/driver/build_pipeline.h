// BuildPipeline: all stages of a build, from the request to the executable.
#pragma once

#include "codegen/code_generator.h"
#include "driver/build_hashes.h"
#include "driver/build_listener.h"
#include "driver/build_request.h"
#include "driver/program_finish.h"
#include "driver/toolchain.h"
#include "frontend/parse_helper.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

// How a build ended.
struct BuildOutcome
{
    bool success = false;
    bool cancelled = false;
    QString output;            // what there is to say: "成功: ..." or the errors, one a line
    bool isCppFailure = false; // the toolchain refused the program
    QString executable;
    ProgramText program; // the finished text, as far as the build came; empty if it was not needed
};

using ToolchainProvider = std::function<std::unique_ptr<Toolchain>(const CompilerBuildRequest &)>;

// Values in, values out; problems go to the listener as they are found. One object serves build
// after build and keeps the tokens and the program of the last text. A build whose executable is
// there and would come out the same ends early, with success. Needs a stack of at least 32 MB,
// since sources nest.
class BuildPipeline
{
public:
    BuildPipeline();

    // Other toolchains than those of the host, and a source of support libraries.
    void setToolchainProvider(ToolchainProvider provider) { m_toolchains = std::move(provider); }
    void setLibraryProvider(LibraryProvider provider) { m_libraries = std::move(provider); }
    // The parse helper to use instead of an own one; it is called on the thread of the build, must
    // outlive it, and only its slots count.
    void setParseHelper(QObject *helper) { m_helper = helper; }
    // For the builds that begin from now on.
    void setDebugMode(bool on) { m_debug.isOn = on; }
    void setBreakpoints(const CompilerDebugBreakpointsMap &breakpoints)
    {
        m_debug.breakpoints = breakpoints;
    }

    // Never throws but for want of memory.
    BuildOutcome run(const CompilerBuildRequest &request, BuildListener &listener);
    // Drops what is kept between builds.
    void forget();
    // What the last build of this request has left on disk.
    CompilerFastSkipSnapshot fastSkipSnapshot(const CompilerBuildRequest &request) const;

private:
    class Run;
    // A program as generated, and what it was generated from.
    struct KeptProgram
    {
        QString source;
        QByteArray digest;
        ProgramText program;
        QStringList warnings;
    };

    // Made when it is first needed: it brings the catalogue of commands with it.
    CodeGenerator &generator();

    std::unique_ptr<ParseHelper> m_ownHelper;
    QPointer<QObject> m_helper;
    ToolchainProvider m_toolchains;
    LibraryProvider m_libraries;
    DebugOptions m_debug;
    std::optional<bool> m_lastDebugMode;
    std::unique_ptr<CodeGenerator> m_generator;
    KeptProgram m_kept;
    QString m_lexedText;
    QList<Lexer::Token> m_tokens;
};
