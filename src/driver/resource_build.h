// ResourceBuild: makes the object file with a program's resources, when it is not there yet.
#pragma once

#include "driver/program_resources.h"
#include "driver/tool_process.h"

#include <QString>

// One build's part of the work. The resource compiler itself is run by the caller, at the same time
// as other tools:
//   prepare(), then when mustRun(): run command() and hand the result to finish(); object() is
//   linked.
// Only one build may work in a folder at a time.
class ResourceBuild
{
public:
    // `folder`: the build folder; exists. `resourceCompiler`: path of windres; may be empty when it
    // is not installed.
    ResourceBuild(const QString &folder, const ProgramResources &resources,
                  const QString &resourceCompiler);

    // Writes what the resource compiler reads, unless the object is current. False: see error().
    [[nodiscard]] bool prepare();
    bool mustRun() const { return !m_command.program.isEmpty(); }
    const ToolCommand &command() const { return m_command; }
    // Takes the new object into use. False: there is none, see error(). A run that was cancelled
    // gives no text.
    [[nodiscard]] bool finish(const ToolRun &run);

    // Relative to the build folder.
    static QString object();
    // A Chinese sentence.
    const QString &error() const { return m_error; }

private:
    bool fail(const char *message, const QString &detail = QString());
    bool isCurrent() const;
    bool writeInput();
    bool makeReadable(ResourceFile &file, const QString &plainName);
    bool write(const QString &name, const QByteArray &bytes);
    QString inFolder(const QString &name) const { return m_folder + QLatin1Char('/') + name; }

    QString m_folder;
    ProgramResources m_resources;
    QString m_compiler;
    QByteArray m_hash;
    ToolCommand m_command;
    QString m_error;
};
