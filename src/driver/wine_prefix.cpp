#include "driver/wine_prefix.h"

#include "driver/process_group.h"
#include "driver/run_messages.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTextCodec>
#include <QtEndian>

namespace {

using RunMessage::text;

// Written once the prefix is whole; its text is the version of what is set up in it.
const QString kStamp = QStringLiteral("/voreldesk-ready");
const QByteArray kStampText = "1";

// The server stays for a while, so that the next program starts in a blink.
const QString kServerStay = QStringLiteral("-p1800");

QString firstExecutable(const QStringList &paths, const QString &name)
{
    for (const QString &path : paths) {
        if (QFileInfo(path).isExecutable())
            return path;
    }
    return QStandardPaths::findExecutable(name);
}

bool isUtf8Locale()
{
    for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const QString value = qEnvironmentVariable(name);
        if (!value.isEmpty()) {
            return value.contains(QLatin1String("utf-8"), Qt::CaseInsensitive) ||
                   value.contains(QLatin1String("utf8"), Qt::CaseInsensitive);
        }
    }
    return false;
}

// Fonts that programs ask for and the host does not have, mapped to one that shows Chinese.
QString fontReplacements()
{
    QString registry =
        QStringLiteral("Windows Registry Editor Version 5.00\r\n\r\n"
                       "[HKEY_CURRENT_USER\\Software\\Wine\\Fonts\\Replacements]\r\n");
    for (const char *font : {"Tahoma", "MS Shell Dlg", "MS Shell Dlg 2", "SimSun",
                             "Microsoft YaHei", "Microsoft YaHei UI", "宋体", "微软雅黑"})
        registry += QStringLiteral("\"%1\"=\"Noto Sans CJK SC\"\r\n").arg(QString::fromUtf8(font));
    return registry;
}

// Empty when the program ended well, else what is known of the reason.
QString runSilently(const QString &program, const QStringList &arguments,
                    const QProcessEnvironment &environment, int timeoutMs)
{
    ProcessGroup process;
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForStarted(15000))
        return process.errorString();
    process.adopt();
    QString name = QFileInfo(program).fileName();
    if (!process.waitForFinished(timeoutMs))
        return name;
    return process.exitCode() == 0 ? QString()
                                   : QStringLiteral("%1: %2").arg(name).arg(process.exitCode());
}

} // namespace

WinePrefix::WinePrefix()
{
    const QString chosen = qEnvironmentVariable("VOREL_WINEPREFIX");
    m_folder = chosen.isEmpty()
                   ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                         QLatin1String("/voreldesk/wine")
                   : QDir(chosen).absolutePath();
    // Debian's commands are scripts around these; its server script ends the server at once.
    m_loader = firstExecutable(
        {QStringLiteral("/usr/lib/wine/wine"), QStringLiteral("/usr/lib/wine/wine64")},
        QStringLiteral("wine"));
    m_server = firstExecutable({QStringLiteral("/usr/lib/wine/wineserver64"),
                                QStringLiteral("/usr/lib/wine/wineserver32")},
                               QStringLiteral("wineserver"));
}

QProcessEnvironment WinePrefix::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("WINEPREFIX"), m_folder);
    environment.insert(QStringLiteral("WINEDEBUG"), QStringLiteral("-all"));
    environment.insert(QStringLiteral("WINEDLLOVERRIDES"),
                       QStringLiteral("mscoree,mshtml=;winedbg.exe=d"));
    environment.insert(QStringLiteral("WINELOADER"), m_loader);
    environment.insert(QStringLiteral("WINESERVER"), m_server);
    // Without it file names with Chinese characters do not exist.
    if (!isUtf8Locale())
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    return environment;
}

QString WinePrefix::runWithoutDisplay(const QString &program, const QStringList &arguments,
                                      int timeoutMs) const
{
    QProcessEnvironment own = environment();
    own.remove(QStringLiteral("DISPLAY"));
    return runSilently(program, arguments, own, timeoutMs);
}

QString WinePrefix::setFonts() const
{
    QTemporaryFile file(QDir::tempPath() + QLatin1String("/vorel-fonts-XXXXXX.reg"));
    const QTextCodec *codec = QTextCodec::codecForName("UTF-16LE");
    if (!file.open() || !codec)
        return file.errorString();
    QTextCodec::ConverterState noMark(QTextCodec::IgnoreHeader);
    const QString registry = fontReplacements();
    file.write("\xFF\xFE");
    file.write(codec->fromUnicode(registry.constData(), registry.size(), &noMark));
    file.close();
    return runWithoutDisplay(m_loader,
                             {QStringLiteral("regedit.exe"), QStringLiteral("/S"),
                              QLatin1String("Z:") + file.fileName()},
                             60000);
}

QString WinePrefix::create(const Progress &progress) const
{
    if (progress)
        progress(text(RunMessage::preparingPrefix));
    QString error = runWithoutDisplay(
        m_loader, {QStringLiteral("wineboot.exe"), QStringLiteral("--init")}, 180000);
    if (error.isEmpty())
        error = setFonts();
    if (error.isEmpty())
        error = runWithoutDisplay(m_server, {QStringLiteral("-w")}, 60000);
    if (!error.isEmpty())
        return error;
    if (!QFileInfo(m_folder + QLatin1String("/system.reg")).isFile())
        return QStringLiteral("wineboot");
    QSaveFile stamp(m_folder + kStamp);
    const bool written = stamp.open(QIODevice::WriteOnly) &&
                         stamp.write(kStampText) == kStampText.size() && stamp.commit();
    return written ? QString() : stamp.errorString();
}

// They start here and not as children of the program, which would then be waited for, or killed,
// with it.
void WinePrefix::wakeServer(const QProcessEnvironment &environment) const
{
    // The server ends with an error when one is there already.
    const bool isNew = runSilently(m_server, {kServerStay}, environment, 10000).isEmpty();
    if (isNew)
        runSilently(m_loader, {QStringLiteral("wineboot.exe")}, environment, 60000);
}

QString WinePrefix::ensureExists(const Progress &progress) const
{
    const auto isStamped = [this] {
        QFile stamp(m_folder + kStamp);
        return stamp.open(QIODevice::ReadOnly) && stamp.readAll() == kStampText;
    };
    if (!isStamped()) {
        if (!QDir().mkpath(m_folder))
            return text(RunMessage::prefixFailed).arg(m_folder, QStringLiteral("mkdir"));
        if (QFileInfo(m_folder).ownerId() != QFileInfo(QStringLiteral("/proc/self")).ownerId())
            return text(RunMessage::prefixForeign).arg(m_folder);
        QLockFile lock(m_folder + QLatin1String(".lock"));
        lock.setStaleLockTime(0);
        lock.tryLock(200000);
        const QString error = isStamped() ? QString() : create(progress);
        if (!error.isEmpty())
            return text(RunMessage::prefixFailed).arg(m_folder, error);
    }
    return QString();
}

bool WinePrefix::runs32Bit()
{
    return QFileInfo(QStringLiteral("/usr/lib/wine/wine")).isExecutable() ||
           QFileInfo(QStringLiteral("/usr/lib/i386-linux-gnu/wine")).isDir();
}

bool WinePrefix::is32Bit(const QString &executable)
{
    QFile file(executable);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(4096);
    if (head.size() < 0x40)
        return false;
    const quint32 offset = qFromLittleEndian<quint32>(head.constData() + 0x3C);
    if (offset > quint32(head.size() - 6))
        return false;
    constexpr quint16 machineI386 = 0x14C;
    return qFromLittleEndian<quint16>(head.constData() + offset + 4) == machineI386;
}

bool WinePrefix::isSystemProcess(const QByteArray &commandLine)
{
    static const char *const names[] = {
        "services.exe", "explorer.exe", "winedevice.exe",      "plugplay.exe", "svchost.exe",
        "rpcss.exe",    "wineboot.exe", "winemenubuilder.exe", "wineserver",   "tabtip.exe"};
    const QByteArray first = commandLine.left(commandLine.indexOf('\0')).toLower();
    for (const char *name : names) {
        if (first.contains(name))
            return first.contains("system32") || first.contains("wineserver");
    }
    return false;
}
