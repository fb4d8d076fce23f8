#include "cli/diagnostic_printer.h"

#include "cli/console.h"
#include "cli/source_excerpt.h"
#include "driver/source_text.h"

#include <QDir>
#include <QFileInfo>

namespace {

// Larger files are not what somebody reads on a terminal.
constexpr qint64 largestFile = 4 * 1024 * 1024;

} // namespace

DiagnosticPrinter::DiagnosticPrinter(const QString &folder, bool plain)
    : m_folder(folder),
      m_plain(plain),
      m_coloured(!plain && Console::hasColours()),
      m_cells(Console::width())
{}

void DiagnosticPrinter::print(const BuildDiagnostic &diagnostic)
{
    const QString text = Console::formatted(diagnostic, m_coloured);
    if (text == m_lastText && diagnostic.column == m_lastColumn)
        return;
    m_lastText = text;
    m_lastColumn = diagnostic.column;
    Console::tell(text);
    if (!m_plain && diagnostic.line > 0 && !diagnostic.file.isEmpty())
        printExcerpt(diagnostic);
}

void DiagnosticPrinter::printExcerpt(const BuildDiagnostic &diagnostic)
{
    const QString text = linesOf(diagnostic.file).value(diagnostic.line - 1);
    const SourceExcerpt excerpt =
        sourceExcerpt(text, {diagnostic.line, diagnostic.column, diagnostic.nearText}, m_cells);
    if (excerpt.source.isEmpty())
        return;
    Console::tell(excerpt.source);
    if (excerpt.mark.isEmpty())
        return;
    const int begin = excerpt.mark.indexOf(QLatin1Char('^'));
    const QString mark = excerpt.mark.mid(begin);
    Console::tell(excerpt.mark.left(begin) +
                  (m_coloured ? Console::coloured(mark, diagnostic.severity) : mark));
}

const QStringList &DiagnosticPrinter::linesOf(const QString &file)
{
    const auto known = m_lines.constFind(file);
    if (known != m_lines.constEnd())
        return *known;
    const QString path = QDir(m_folder).filePath(file);
    QStringList lines;
    if (QFileInfo(path).size() <= largestFile) {
        const SourceText source = readSourceFile(path, file);
        if (source.isValid())
            lines = source.text.split(QLatin1Char('\n'));
    }
    return *m_lines.insert(file, lines);
}
