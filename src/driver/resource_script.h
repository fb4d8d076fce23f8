// The texts from which a resource compiler makes a program's resources.
#pragma once

#include "driver/program_resources.h"

#include <QByteArray>
#include <QString>

// How the script is stored: each resource compiler reads one form only.
enum class ScriptEncoding
{
    Utf16, // little endian with a byte-order mark
    Utf8,  // without a mark
};

// Names of the files in the build folder.
inline QString resourceScriptName()
{
    return QStringLiteral("app_resource.rc");
}
inline QString manifestName()
{
    return QStringLiteral("app_dpi_aware.manifest");
}

// The whole script. Any text may stand in `resources`: control characters are dropped, overlong
// values cut. Lines end with CR LF.
QString resourceScript(const ProgramResources &resources);

// `value` as a literal of the script, with the quotes, and with `ending` unescaped at its end.
QString scriptLiteral(const QString &value, const QString &ending = QString());

QByteArray encodeScript(const QString &script, ScriptEncoding encoding);

// Asks for themed controls and for sharp windows on every display. UTF-8.
QByteArray manifestText();
