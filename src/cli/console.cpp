#include "cli/console.h"

#include <QRegularExpression>

#include <cstdio>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {

void print(std::FILE *stream, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

bool isTerminal(std::FILE *stream)
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stream)) != 0;
#else
    return isatty(fileno(stream)) != 0;
#endif
}

} // namespace

namespace Console {

void result(const QString &line)
{
    result((line + QLatin1Char('\n')).toUtf8());
}

void result(const QByteArray &bytes)
{
    print(stdout, bytes);
}

void tell(const QString &line)
{
    print(stderr, (line + QLatin1Char('\n')).toUtf8());
}

void error(const QString &text)
{
    tell(QStringLiteral("错误: ") + text);
}

bool hasColours()
{
    return isTerminal(stderr) && qEnvironmentVariableIsEmpty("NO_COLOR");
}

int width()
{
#ifndef Q_OS_WIN
    constexpr int narrowest = 40;
    winsize size{};
    if (ioctl(fileno(stderr), TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return qMax<int>(size.ws_col, narrowest);
#endif
    return 100;
}

QString coloured(const QString &text, BuildDiagnostic::Severity severity)
{
    const bool isError = severity == BuildDiagnostic::Severity::Error;
    return QLatin1String(isError ? "\033[1;31m" : "\033[1;35m") + text + QLatin1String("\033[0m");
}

QString formatted(const BuildDiagnostic &diagnostic, bool hasColours)
{
    const QString word = diagnostic.severity == BuildDiagnostic::Severity::Error
                             ? QStringLiteral("错误")
                             : QStringLiteral("警告");
    const QString kind =
        (hasColours ? coloured(word, diagnostic.severity) : word) + QLatin1String(": ");
    QString place;
    if (!diagnostic.file.isEmpty()) {
        place =
            diagnostic.line > 0
                ? QStringLiteral("%1:%2: ").arg(diagnostic.file, QString::number(diagnostic.line))
                : diagnostic.file + QLatin1String(": ");
    }
    // Texts that open with their own severity are not given a second one.
    static const QRegularExpression ownSeverity(QStringLiteral("^(第\\d+行：)?(?:错误|警告): "));
    return place + kind + QString(diagnostic.text).replace(ownSeverity, QStringLiteral("\\1"));
}

} // namespace Console

ProgressDisplay::ProgressDisplay(Verbosity verbosity, bool onTerminalOnly)
    : m_enabled(verbosity != Verbosity::Quiet), m_inPlace(isTerminal(stderr))
{
    if (onTerminalOnly && !m_inPlace && verbosity != Verbosity::Verbose)
        m_enabled = false;
    if (verbosity == Verbosity::Verbose)
        m_inPlace = false;
}

ProgressDisplay::~ProgressDisplay()
{
    clear();
}

void ProgressDisplay::show(int percent, const QString &message)
{
    const QString line = QStringLiteral("[%1%] %2").arg(percent, 3).arg(message);
    if (!m_enabled || line == m_last)
        return;
    m_last = line;
    if (!m_inPlace) {
        Console::tell(line);
        return;
    }
    print(stderr, ("\r" + line.toUtf8() + "\033[K"));
    m_shown = true;
}

void ProgressDisplay::note(const QString &message)
{
    clear();
    if (m_enabled)
        Console::tell(message);
}

void ProgressDisplay::clear()
{
    if (m_shown)
        print(stderr, "\r\033[K");
    m_shown = false;
}
