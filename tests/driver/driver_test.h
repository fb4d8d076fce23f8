// What several tests of the driver need.
#pragma once

#include "codegen/program_text.h"
#include "driver/build_listener.h"
#include "test_files.h"

#include <QList>
#include <QPair>
#include <QStringList>
#include <QtTest>

namespace DriverTest {

using TestFiles::readFile;
using TestFiles::writeFile;

// A program of one runtime section and one part of its own, small enough for a real compiler.
inline ProgramText smallProgram(const QString &mainBody)
{
    using Kind = ProgramText::PartKind;
    ProgramText program;
    program.appendRuntime(Kind::RuntimeHeader, QStringLiteral("00_small"),
                          QStringLiteral("#include <windows.h>\n#include <string>\n"
                                         "void VL_Say(const std::string &text);\n"));
    program.appendRuntime(
        Kind::RuntimeSource, QStringLiteral("00_small"),
        QStringLiteral("#include <cstdio>\n"
                       "void VL_Say(const std::string &text)\n{\n"
                       "    std::puts(text.c_str());\n    std::fflush(stdout);\n}\n"));
    program.append(QStringLiteral("int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {\n") +
                   mainBody + QStringLiteral("\n}\n"));
    return program;
}

// Keeps what a build tells.
class RecordingListener : public BuildListener
{
public:
    void progress(int percent, const QString &message) override
    {
        steps << qMakePair(percent, message);
    }
    void note(const QString &text) override { notes << text; }
    void output(const QString &text) override { outputs << text; }
    void diagnostic(const BuildDiagnostic &diagnostic) override { diagnostics << diagnostic; }
    bool isCancelled() override { return cancelled; }

    QStringList errors() const
    {
        QStringList texts;
        for (const BuildDiagnostic &diagnostic : diagnostics) {
            if (diagnostic.severity == BuildDiagnostic::Severity::Error)
                texts << diagnostic.text;
        }
        return texts;
    }

    QList<QPair<int, QString>> steps;
    QStringList notes;
    QStringList outputs;
    QList<BuildDiagnostic> diagnostics;
    bool cancelled = false;
};

} // namespace DriverTest
