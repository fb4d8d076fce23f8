// What vorelc prints: results on standard output, everything else on standard error, all UTF-8.
#pragma once

#include "driver/build_listener.h"

#include <QByteArray>
#include <QString>

namespace Console {

void result(const QString &line);
void result(const QByteArray &bytes);
// A line on standard error.
void tell(const QString &line);
// "错误: TEXT" on standard error.
void error(const QString &text);

// "FILE:LINE: 错误: TEXT"; without a place "错误: TEXT".
QString formatted(const BuildDiagnostic &diagnostic);

} // namespace Console

// How much is told while a command works.
enum class Verbosity
{
    Quiet,  // problems only
    Normal, // progress too
    Verbose // also what the tools print
};

// Shows progress: in place on a terminal, else a line each.
class ProgressDisplay
{
public:
    // `onTerminalOnly`: no lines when standard error is not a terminal.
    ProgressDisplay(Verbosity verbosity, bool onTerminalOnly);
    ~ProgressDisplay();

    void show(int percent, const QString &message);
    // A message without a percentage, such as the first start of something.
    void note(const QString &message);
    // Takes the line off the terminal, so that something else can be printed.
    void clear();

private:
    bool m_enabled;
    bool m_inPlace;
    bool m_shown = false;
    QString m_last;
};
