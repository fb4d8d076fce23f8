// The values that tell whether two builds would make the same executable.
#pragma once

#include "driver/build_request.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// What the debugger wants of a program.
struct DebugOptions
{
    // Whether the program gets calls for the debugger.
    bool stopsAnywhere() const { return isOn && !breakpoints.isEmpty(); }

    bool isOn = false;
    CompilerDebugBreakpointsMap breakpoints;
};

// Those named "hash" are the decimal text of a 32-bit value, good for telling a change at a glance;
// `digest` is what a skip relies on.
struct BuildHashes
{
    QByteArray codeHash;
    QByteArray normalizedHash; // of the text without white space and comments that mean nothing
    QByteArray inputsHash;
    QByteArray sizeText; // "<characters>_<hash>" of that text
    QByteArray digest;   // of that text and of all that goes into a program beside it
};

namespace BuildHash {

// The version of the generated programs. A build folder of another version is built anew.
constexpr int codegenVersion = 13;

// Of the merged `text` and a normalised request. The same values in every process.
BuildHashes ofBuild(const QString &text, const CompilerBuildRequest &request,
                    const DebugOptions &debug);

// Everything beside the text that a build depends on, as compact JSON. `sourceHash` stands for the
// text.
QByteArray inputsSnapshot(const QByteArray &sourceHash, const CompilerBuildRequest &request,
                          const DebugOptions &debug);

// Whether debug mode and breakpoints count as inputs, as the environment wants it.
bool countsDebugging();

// A generated text without blanks at line ends and without runs of empty lines.
QString cleanedProgram(const QString &program);

// Decimal hash of the UTF-8 bytes.
QByteArray ofText(const QString &text);

// Hexadecimal; parts that are cut differently give another digest.
QByteArray digestOf(const QList<QByteArray> &parts);
QString digestOfTexts(const QStringList &parts);

// A value of the sources of this compiler itself: another one may generate another program.
QByteArray generatorFingerprint();

} // namespace BuildHash
