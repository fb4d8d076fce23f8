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

// Whether standard error is a terminal whose user has nothing against colours (NO_COLOR).
bool hasColours();
// The cells of a line of standard error, as far as that is a terminal that tells; else 100.
int width();

// "FILE:LINE: 错误: TEXT"; without a place "错误: TEXT". The word for the severity can be coloured.
QString formatted(const BuildDiagnostic &diagnostic, bool hasColours = false);
// The text in the colour of the severity.
QString coloured(const QString &text, BuildDiagnostic::Severity severity);

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
