// What a build leaves in its folder, so that the next one can tell whether there is work to do.
#pragma once

#include "driver/build_hashes.h"

#include <QByteArray>
#include <QString>

// One build folder. Nothing here ever fails: what cannot be read matches nothing, and what cannot
// be written makes the next build a whole one. Files are read anew each time, since another process
// may build into the same folder.
class BuildRecord
{
public:
    BuildRecord(const QString &folder, const QString &executable)
        : m_folder(folder), m_executable(executable)
    {}

    enum class Version
    {
        Missing,
        Right,
        Wrong
    };
    Version version() const;
    bool hasExecutable() const;

    // The hashes of the last build; empty without one.
    struct Hashes
    {
        QByteArray code;
        QByteArray normalized;
        QByteArray inputs;
    };
    Hashes stored() const;

    // Whether the executable is still the one that was made of these inputs.
    bool isMadeOf(const BuildHashes &hashes) const;
    // Whether it is still the one of this cleaned program, built as `job` tells.
    bool isMadeOf(const QString &program, const QByteArray &job) const;

    void storeHashes(const BuildHashes &hashes) const;
    void storeSourceSize(const BuildHashes &hashes) const;
    // All of it, after a build that made the executable.
    void storeBuild(const BuildHashes &hashes, const QString &program, const QByteArray &job) const;

private:
    // The lines of the file that ties the executable to what it was made of.
    struct Origin
    {
        QByteArray generator;
        QByteArray inputs;
        QByteArray program;
        QByteArray executable;
    };
    Origin origin() const;
    QByteArray executableStamp() const;
    QByteArray read(const char *name) const;
    void write(const char *name, const QByteArray &bytes) const;

    QString m_folder;
    QString m_executable;
};
