// The file of the settings: where it lies, and whether it may be read.
#pragma once

#include <QString>

namespace SettingsFile {

enum class State
{
    Missing,
    Readable,
    Unfit, // binary, huge, no file at all, or with values that can crash their reader
};

// Nothing above this size (bytes) is read.
constexpr qint64 maxBytes = qint64(1024) * 1024;

State inspect(const QString &path);

// $VOREL_SETTINGS; else "conf/vlide.ini" in the program's folder; else, where that cannot be
// written, "voreldesk/vlide.ini" in the user's configuration folder. All programs of VorelDesk in
// one folder share it.
QString defaultPath();

// Whether only the package manager writes in that folder, even when the administrator runs the
// program.
bool isSystemFolder(const QString &programFolder);

// Whether "conf/vlide.ini" can be written in `programFolder`. Creates nothing that stays.
bool canWriteBeside(const QString &programFolder);

} // namespace SettingsFile
