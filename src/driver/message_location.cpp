#include "driver/message_location.h"

#include "frontend/lexer.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

const QRegularExpression &lineExpression()
{
    static const QRegularExpression expression(QStringLiteral("第\\s*(\\d+)\\s*行"));
    return expression;
}

} // namespace

int lineOfMessage(const QString &message)
{
    return lineExpression().match(message).captured(1).toInt();
}

QString withFileLines(const QString &message, const QString &file, const SourceLineMap &lineMap)
{
    QString result;
    int copied = 0;
    QRegularExpressionMatchIterator matches = lineExpression().globalMatch(message);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const SourceLocation place = locate(lineMap, match.captured(1).toInt());
        if (place.file.isEmpty())
            continue;
        result += message.midRef(copied, match.capturedStart() - copied);
        if (place.file != file)
            result += place.file + QLatin1Char(' ');
        result += QStringLiteral("第%1行").arg(place.line);
        copied = match.capturedEnd();
    }
    return result + message.midRef(copied);
}

QString writtenText(const QStringRef &line, const SourceMessage &message)
{
    const QString rest = message.column > 0 ? line.mid(message.column - 1).toString() : QString();
    if (rest.isEmpty() || rest.at(0).isSpace())
        return QString();
    if (!message.nearText.isEmpty() && rest.startsWith(message.nearText))
        return message.nearText;
    Lexer lexer(rest);
    lexer.nextToken();
    return rest.left(lexer.offset());
}

SourceLocation locate(const SourceLineMap &lineMap, int mergedLine)
{
    if (lineMap.isEmpty() || mergedLine <= 0)
        return {};
    if (mergedLine > lineMap.lastKey())
        return lineMap.last();
    return lineMap.value(mergedLine);
}

GeneratedLineTable::GeneratedLineTable(const QString &generatedText)
{
    static const QString marker = QStringLiteral("// VL_LINE:");
    int line = 1;
    int counted = 0;
    for (int at = generatedText.indexOf(marker); at >= 0; at = generatedText.indexOf(marker, at)) {
        line += generatedText.midRef(counted, at - counted).count(QLatin1Char('\n'));
        int end = generatedText.indexOf(QLatin1Char('\n'), at);
        end = end < 0 ? generatedText.size() : end;
        const int begin = at + marker.size();
        const int merged = generatedText.midRef(begin, end - begin).trimmed().toInt();
        if (merged > 0)
            m_entries << Entry{line, merged};
        counted = at;
        at = end;
    }
}

// The entry of the line itself or the nearest one above; null without.
const GeneratedLineTable::Entry *GeneratedLineTable::entryAbove(int generatedLine) const
{
    const auto behind =
        std::upper_bound(m_entries.begin(), m_entries.end(), generatedLine,
                         [](int line, const Entry &entry) { return line < entry.generated; });
    return behind == m_entries.begin() ? nullptr : &*std::prev(behind);
}

int GeneratedLineTable::mergedLine(int generatedLine) const
{
    const Entry *entry = entryAbove(generatedLine);
    return entry ? entry->merged : 0;
}

int GeneratedLineTable::markedLine(int generatedLine) const
{
    const Entry *entry = entryAbove(generatedLine);
    return entry && entry->generated == generatedLine ? entry->merged : 0;
}
