#include "driver/source_checks.h"

#include "driver/build_messages.h"

#include <QFileInfo>
#include <QHash>
#include <QPair>
#include <QRegularExpression>

namespace {

using BuildMessage::text;

bool continuesWord(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_') ||
           character == QLatin1Char('#');
}

// The offset behind the raw string that starts at `begin`, or -1 if none starts there. One that is
// not closed goes to the end.
int rawStringEnd(const QString &source, int begin)
{
    constexpr int maxDashes = 32; // the lexer refuses longer ones
    const auto at = [&source](int index) {
        return index < source.size() ? source.at(index) : QChar();
    };
    if (begin > 0 && continuesWord(source.at(begin - 1)))
        return -1;
    int quote = begin + 1;
    while (at(quote).isSpace())
        ++quote;
    if (at(quote) != QLatin1Char('"'))
        return -1;
    int open = quote + 1;
    while (at(open) == QLatin1Char('-'))
        ++open;
    const int dashes = open - quote - 1;
    if (at(open) != QLatin1Char('(') || dashes > maxDashes)
        return -1;
    const QString terminator =
        QLatin1Char(')') + QString(dashes, QLatin1Char('-')) + QLatin1Char('"');
    const int found = source.indexOf(terminator, open + 1);
    return found < 0 ? source.size() : found + terminator.size();
}

int newlinesBetween(const QString &source, int begin, int end)
{
    return source.midRef(begin, end - begin).count(QLatin1Char('\n'));
}

// A message about the quote at offset `at`; the text from there is open to the line's end.
SourceMessage unclosed(const QString &source, int at, int line)
{
    const int column = at - source.lastIndexOf(QLatin1Char('\n'), at);
    const char *message = source.at(at) == QLatin1Char('"') ? BuildMessage::missingDoubleQuote
                                                            : BuildMessage::missingSingleQuote;
    const int end = source.indexOf(QLatin1Char('\n'), at);
    return {line, column, source.mid(at, end < 0 ? -1 : end - at), text(message).arg(line)};
}

// The name in a marker line: what stands behind the first "=" signs without the closing ones.
QString markedFile(const QString &line)
{
    QString name = line;
    name.remove(QStringLiteral("[FILE_BOUNDARY]"));
    name = name.mid(name.indexOf(QLatin1String("//")) + 2).trimmed();
    while (name.startsWith(QLatin1Char('=')))
        name.remove(0, 1);
    while (name.endsWith(QLatin1Char('=')))
        name.chop(1);
    return name.trimmed();
}

bool isMarker(const QStringRef &line)
{
    return line.startsWith(QLatin1String("//")) &&
           (line.contains(QLatin1String("[FILE_BOUNDARY]")) ||
            line.startsWith(QLatin1String("// =====")) ||
            line.startsWith(QLatin1String("//=====")));
}

QString normalizedKey(const QString &part)
{
    return part.normalized(QString::NormalizationForm_C).trimmed();
}

struct Place
{
    QString file;
    int line;
};

} // namespace

SourceMessage checkQuotes(const QString &source)
{
    int line = 1;
    int openedIn = 0;
    int openedAt = 0;
    QChar quote; // null outside strings
    for (int i = 0; i < source.size(); ++i) {
        const QChar c = source.at(i);
        if (quote.isNull()) {
            const bool maybeRaw = c == QLatin1Char('r') || c == QLatin1Char('R');
            const int end = maybeRaw ? rawStringEnd(source, i) : -1;
            if (end >= 0) {
                line += newlinesBetween(source, i, end);
                i = end - 1;
                continue;
            }
            if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
                quote = c;
                openedIn = line;
                openedAt = i;
            }
        } else if (c == QLatin1Char('\\') && i + 1 < source.size()) {
            ++i;
            line += source.at(i) == QLatin1Char('\n') ? 1 : 0;
            continue;
        } else if (c == quote) {
            quote = QChar();
        } else if (c == QLatin1Char('\n')) {
            return unclosed(source, openedAt, openedIn);
        }
        line += c == QLatin1Char('\n') ? 1 : 0;
    }
    return quote.isNull() ? SourceMessage() : unclosed(source, openedAt, openedIn);
}

QStringList findDuplicateHandlers(const QString &source, const QString &firstFile,
                                  const SourceLineMap &lineMap)
{
    static const QRegularExpression head(
        QStringLiteral("^\\s*(?:函数|子程序)\\s+([^\\s.]+)\\s*\\.\\s*([^\\(]+?)\\s*\\("));
    static const QString function = QStringLiteral("函数");
    static const QString routine = QStringLiteral("子程序");
    QStringList messages;
    QHash<QPair<QString, QString>, Place> seen;
    QString file = firstFile;
    int line = 0;
    int mergedLine = 0;
    const QVector<QStringRef> lines = source.splitRef(QLatin1Char('\n'));
    for (const QStringRef &content : lines) {
        ++line;
        ++mergedLine;
        const QStringRef trimmed = content.trimmed();
        if (isMarker(trimmed)) {
            const QString name = markedFile(trimmed.toString());
            if (!name.isEmpty()) {
                file = name;
                line = 0;
                continue;
            }
        }
        // Most lines are dismissed without the expression.
        if (!trimmed.startsWith(function) && !trimmed.startsWith(routine))
            continue;
        const QRegularExpressionMatch match = head.match(content);
        if (!match.hasMatch())
            continue;
        const QPair<QString, QString> key(normalizedKey(match.captured(1)),
                                          normalizedKey(match.captured(2)));
        const auto mapped = lineMap.constFind(mergedLine);
        const Place place = mapped == lineMap.cend()
                                ? Place{file, line}
                                : Place{QFileInfo(mapped->file).fileName(), mapped->line};
        const auto first = seen.constFind(key);
        if (first == seen.cend()) {
            seen.insert(key, place);
            continue;
        }
        messages << text(BuildMessage::duplicateHandler)
                        .arg(place.file, QString::number(place.line), key.first, key.second,
                             first->file, QString::number(first->line));
    }
    return messages;
}
