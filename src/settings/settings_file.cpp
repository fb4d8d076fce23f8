#include "settings/settings_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

namespace {

constexpr char fileInFolder[] = "/conf/vlide.ini";

int digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : 16;
}

// One escape as QSettings reads it, `at` behind its backslash: a number is a character, a letter of
// C stands for one that is of no interest here, anything else is dropped.
void appendUnescaped(const QByteArray &bytes, int &at, QByteArray &result)
{
    if (at >= bytes.size())
        return;
    const bool isHex = bytes.at(at) == 'x';
    const int base = isHex ? 16 : 8;
    at += isHex ? 1 : 0;
    const int first = at;
    unsigned value = 0;
    for (; at < bytes.size() && digitValue(bytes.at(at)) < base; ++at)
        value = (value * unsigned(base) + unsigned(digitValue(bytes.at(at)))) & 0xFFFFU;
    if (at > first)
        result += value < 128 ? char(value) : '?';
    else if (!isHex && QByteArray("abfnrtv\"?'\\").contains(bytes.at(at++)))
        result += '?';
}

// A text that only begins like one is stored with a second "@" in front.
bool holdsValue(const QByteArray &plain, const char *opening)
{
    int at = plain.indexOf(opening);
    while (at > 0 && plain.at(at - 1) == '@')
        at = plain.indexOf(opening, at + 1);
    return at >= 0;
}

// Serialised values may claim any length and depth, and QSettings believes them to its death. The
// store writes none, so a file that holds one, however it is spelled, was made by somebody else.
bool holdsSerialisedValue(const QByteArray &bytes)
{
    QByteArray plain;
    plain.reserve(bytes.size());
    for (int at = 0; at < bytes.size();) {
        const char c = bytes.at(at++);
        if (c == '\\')
            appendUnescaped(bytes, at, plain);
        else if (c != '"' && c != '\n' && c != '\r')
            plain += c;
    }
    return holdsValue(plain, "@Variant(") || holdsValue(plain, "@DateTime(");
}

bool acceptsFiles(const QString &folder)
{
    QTemporaryFile probe(folder + QStringLiteral("/vlide_XXXXXX.tmp"));
    return probe.open();
}

} // namespace

SettingsFile::State SettingsFile::inspect(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return State::Missing;
    if (!info.isFile())
        return State::Unfit;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return State::Unfit;
    const QByteArray bytes = file.read(maxBytes + 1);
    if (bytes.size() > maxBytes || bytes.contains('\0') || holdsSerialisedValue(bytes))
        return State::Unfit;
    return State::Readable;
}

bool SettingsFile::isSystemFolder(const QString &programFolder)
{
#ifdef Q_OS_WIN
    Q_UNUSED(programFolder)
    return false;
#else
    return QDir::cleanPath(programFolder).startsWith(QLatin1String("/usr/"));
#endif
}

bool SettingsFile::canWriteBeside(const QString &programFolder)
{
    if (isSystemFolder(programFolder))
        return false;
    const QFileInfo file(programFolder + QLatin1String(fileInFolder));
    if (file.exists() && !file.isWritable())
        return false;
    const QString folder = file.path();
    return acceptsFiles(QFileInfo::exists(folder) ? folder : programFolder);
}

QString SettingsFile::defaultPath()
{
    const QString given = qEnvironmentVariable("VOREL_SETTINGS");
    if (!given.isEmpty())
        return QFileInfo(given).absoluteFilePath();
    const QString programFolder = QCoreApplication::applicationDirPath();
    if (canWriteBeside(programFolder))
        return programFolder + QLatin1String(fileInFolder);
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/voreldesk/vlide.ini");
}
