// VL::ProjectInfo: what a project file says.
#pragma once

#include "driver/build_request.h"

#include <QByteArray>
#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QStringList>

namespace VL {

// A plain value. File paths in it are relative to the project's folder, with forward slashes; only
// a source that the user added from elsewhere is absolute.
struct ProjectInfo
{
    QString name;
    QString path; // the project's folder; not stored
    QString version = QStringLiteral("1.0.0");
    QString author;
    QString description;
    QString targetPlatform = QStringLiteral("x64");
    QString compiler = QStringLiteral("MSVC");
    bool unicode = true;
    QStringList sourceFiles;
    QStringList uiFiles;
    QStringList windowFiles;
    QString mainWindowFile;
    QString startupWindowFile;
    QStringList resourceFiles;
    QString globalVarsFile;
    QString globalConstFile;
    bool encryptSource = false;
    int encryptLevel = 1;
    QString uiBackend = QStringLiteral("win32");
    bool useBeautification = false;
    int beautificationScheme = 3;
    QDateTime created;
    QDateTime modified;

    // Icon and version data; set by hand in the file, under "ProjectSettings".
    ProgramIdentity identity;
    // The file as it was read: keys that this version does not know are written back as they were.
    QByteArray original;
};

} // namespace VL

// What came of reading a project file. A key of the wrong type counts as missing.
struct ReadProject
{
    bool succeeded() const { return error.isEmpty(); }

    VL::ProjectInfo info;
    QString error; // Chinese sentence
};

namespace ProjectFile {

// Reads the file; `info.path` is its folder.
ReadProject read(const QString &path);
// From the bytes of a file that is called `displayName` in messages.
ReadProject parse(const QByteArray &bytes, const QString &displayName);

// The text of the file, in the told order of keys.
QByteArray serialize(const VL::ProjectInfo &info);

// Adds the source and window files that lie in the project's folders and are not listed.
void addFilesOfFolders(VL::ProjectInfo &info);

// Whether the file that `info` was read from holds that key.
bool stores(const VL::ProjectInfo &info, const char *key);

// The window that a window file ("ui/主窗口.vui") holds.
QString windowName(const QString &windowFile);

} // namespace ProjectFile

Q_DECLARE_METATYPE(VL::ProjectInfo)
