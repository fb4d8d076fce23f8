#include "shell/log_file.h"

#include "settings/settings_file.h"
#include "shell/user_folder.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMutexLocker>

#include <cstdio>

namespace {

constexpr int maxLineLength = 64 * 1024; // characters; the rest of a longer message is dropped

void printLine(const QByteArray &line)
{
    std::fprintf(stderr, "%s\n", line.constData());
    std::fflush(stderr);
}

QLatin1String levelOf(QtMsgType type)
{
    switch (type) {
    case QtWarningMsg:
        return QLatin1String("WARNING: ");
    case QtCriticalMsg:
        return QLatin1String("CRITICAL: ");
    case QtFatalMsg:
        return QLatin1String("FATAL: ");
    case QtDebugMsg:
    case QtInfoMsg:
        break;
    }
    return QLatin1String("INFO: ");
}

// Writing may make Qt tell something itself; that message must not wait for the lock again.
thread_local bool isWriting = false;

} // namespace

QMutex LogFile::s_mutex;
LogFile *LogFile::s_active = nullptr;

LogFile::LogFile(const QStringList &paths, qint64 maxBytes) : m_maxBytes(maxBytes)
{
    openFirst(paths);
    {
        const QMutexLocker lock(&s_mutex);
        Q_ASSERT(!s_active);
        s_active = this;
    }
    m_previousHandler = qInstallMessageHandler(handle);
    write(QStringLiteral("INFO: VorelDesk main() logging init, logPath=%1, time=%2")
              .arg(path(), QDateTime::currentDateTime().toString(Qt::ISODate)));
    write(QStringLiteral("INFO: 程序异常时，可将调试器附加到进程 %1 查看调用栈。")
              .arg(QCoreApplication::applicationPid()));
}

LogFile::~LogFile()
{
    qInstallMessageHandler(m_previousHandler);
    // A thread may still be on its way through `handle`.
    const QMutexLocker lock(&s_mutex);
    s_active = nullptr;
}

QStringList LogFile::defaultPaths()
{
    const QString name = QStringLiteral("/VorelDesk_debug.log");
    const QString programFolder = QCoreApplication::applicationDirPath();
    const QString dataFolder = userDataFolder();
    if (SettingsFile::isSystemFolder(programFolder))
        return {dataFolder + name};
    return {programFolder + name, dataFolder + name};
}

void LogFile::openFirst(const QStringList &paths)
{
    for (const QString &path : paths) {
        const bool isFallback = path != paths.first();
        const bool isOpen = open(path);
        if (isOpen && !isFallback)
            return;
        const char *const text = isOpen       ? "VorelDesk: using fallback log: "
                                 : isFallback ? "VorelDesk: cannot open fallback log: "
                                              : "VorelDesk: cannot open log (write): ";
        printLine(text + QDir::toNativeSeparators(path).toUtf8());
        if (isOpen)
            return;
    }
    m_file.setFileName(QString());
}

bool LogFile::open(const QString &path)
{
    const QFileInfo info(path);
    // A pipe or a device would block the program.
    if (info.exists() && !info.isFile())
        return false;
    QDir().mkpath(info.path());
    m_file.setFileName(path);
    return m_file.open(QIODevice::Append | QIODevice::Text);
}

void LogFile::write(const QString &line)
{
    const QByteArray bytes = line.left(maxLineLength).toUtf8();
    const QMutexLocker lock(&s_mutex);
    isWriting = true;
    append(bytes);
    isWriting = false;
}

void LogFile::handle(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const QByteArray line = (levelOf(type) + message.left(maxLineLength)).toUtf8();
    if (!isWriting) {
        const QMutexLocker lock(&s_mutex);
        isWriting = true;
        if (s_active)
            s_active->append(line);
        isWriting = false;
    }
    printLine(line);
}

void LogFile::append(const QByteArray &line)
{
    if (!m_file.isOpen())
        return;
    if (m_file.size() + line.size() > m_maxBytes)
        startAnew();
    m_file.write(line + '\n');
    m_file.flush();
}

void LogFile::startAnew()
{
    const QString current = path();
    const QString old = current + QStringLiteral(".1");
    m_file.close();
    QFile::remove(old);
    // Where the folder takes no new names, the old lines are given up.
    const bool isMoved = QFile::rename(current, old);
    const QIODevice::OpenMode mode = isMoved ? QIODevice::Append : QIODevice::Truncate;
    m_file.open(QIODevice::WriteOnly | mode | QIODevice::Text);
}

void keepWarningsHarmless()
{
    if (!qEnvironmentVariableIsEmpty("QT_FATAL_WARNINGS"))
        qputenv("QT_FATAL_WARNINGS", QByteArray());
}
