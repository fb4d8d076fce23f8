// The values that cross between whoever wants a build and the build driver.
#pragma once

#include "designer/model/design_component.h"

#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>

// A place in a file of the user's; lines are 1-based, 0 means "no line".
struct SourceLocation
{
    QString file;
    int line = 0;
};

// Lines of the merged source to the files they come from.
using SourceLineMap = QMap<int, SourceLocation>;

// One window of a project, as it is handed on to the generator.
struct CompilerWindowBuildSpec
{
    QString name;
    QString filePath;
    QList<VL::DesignComponent> components;
    bool isMain = false;
    bool isStartup = false;
};

// What a program tells about itself to the system that shows it. All may be empty or any text; a
// relative path of the icon starts at the project's folder.
struct ProgramIdentity
{
    QString icon;
    QString productName;
    QString fileDescription;
    QString companyName;
    QString copyright;
    QString version;
};

// How far a build goes.
enum class BuildGoal
{
    Executable,
    Check,       // up to and including generation; nothing is written
    ProgramText, // the finished C++ text; nothing is written
};

// Everything that a build depends on; plain values, so that it can cross threads. Missing or
// unknown values have the defaults that `normalized` gives.
struct CompilerBuildRequest
{
    QString sourceFile;
    bool hasProject = false;
    bool chineseError = true;
    QString buildConfig; // "debug" or "release"
    bool staticLink = false;
    QString quickjsRoot;
    QString projectPath;
    QString projectName;
    QString compilerType;
    QString defaultCompiler;
    QString platform; // "x86" or "x64"
    QString uiBackend;
    bool useBeautification = false;
    int beautificationScheme = 3;
    QString sourceText;
    QString activeFileName;
    SourceLineMap lineMap;
    QList<CompilerWindowBuildSpec> windowSpecs;
    QList<VL::DesignComponent> components;
    ProgramIdentity identity;

    BuildGoal goal = BuildGoal::Executable;
    // The runtime's definitions compiled once and kept; off: everything in one translation unit.
    bool splitRuntime = true;

    // The same request with every option in one of its known values.
    CompilerBuildRequest normalized() const;
    // The project's own compiler, else the default one; "MSVC" when neither is set.
    QString effectiveCompiler() const;
    bool wantsMinGW() const;
};

// What is known of the last build ahead of a new one.
struct CompilerFastSkipSnapshot
{
    QString codeHash;
    QString normalizedHash;
    QString inputsHash;
    QString executablePath;
    bool executableExists = false;
};

// Source files to the lines of their breakpoints.
using CompilerDebugBreakpointsMap = QMap<QString, QList<int>>;

// Registers the types above for queued signals and slots; may be called more than once.
void registerBuildMetaTypes();

Q_DECLARE_METATYPE(CompilerWindowBuildSpec)
Q_DECLARE_METATYPE(CompilerBuildRequest)
Q_DECLARE_METATYPE(CompilerFastSkipSnapshot)
Q_DECLARE_METATYPE(CompilerDebugBreakpointsMap)
