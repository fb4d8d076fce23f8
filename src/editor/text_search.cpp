#include "editor/text_search.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {

// Steps that one attempt at one place may take, and milliseconds for a whole search.
const char *const kStepLimit = "(*LIMIT_MATCH=100000)";
constexpr int kTimeLimit = 3000;

QString tooComplex()
{
    return QStringLiteral("表达式太复杂，查找已中止");
}

QString errorOf(const QRegularExpression &expression)
{
    if (expression.isValid())
        return {};
    return QStringLiteral("正则表达式有误：第 %1 个字符附近的写法不对（比如括号没有配对）。")
        .arg(expression.patternErrorOffset());
}

// `with` with its escapes resolved.
QString expanded(const QString &with, const QRegularExpressionMatch &match)
{
    QString text;
    for (int i = 0; i < with.size(); ++i) {
        const QChar next = i + 1 < with.size() ? with.at(i + 1) : QChar();
        if (with.at(i) != QLatin1Char('\\') || next.isNull()) {
            text += with.at(i);
            continue;
        }
        ++i;
        if (next >= QLatin1Char('0') && next <= QLatin1Char('9'))
            text += match.captured(next.unicode() - '0');
        else if (next == QLatin1Char('n'))
            text += QLatin1Char('\n');
        else if (next == QLatin1Char('t'))
            text += QLatin1Char('\t');
        else if (next == QLatin1Char('\\'))
            text += next;
        else
            text += QLatin1Char('\\') + QString(next);
    }
    return text;
}

} // namespace

TextSearch::TextSearch(const QString &pattern, const SearchOptions &options)
    : m_pattern(pattern), m_options(options)
{
    QRegularExpression::PatternOptions flags = QRegularExpression::UseUnicodePropertiesOption;
    if (!options.matchesCase)
        flags |= QRegularExpression::CaseInsensitiveOption;
    QString body = pattern;
    if (!options.isExpression)
        body = QRegularExpression::escape(pattern);
    // On its own: what is set around it below could lend it the bracket that it lacks.
    m_error = errorOf(QRegularExpression(body, flags));
    if (options.wholeWords)
        body = QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(body);
    m_expression = QRegularExpression(QLatin1String(kStepLimit) + body, flags);
}

QString TextSearch::forEach(const QString &text, const QString &with, const SearchRange &range,
                            const Take &take) const
{
    if (isEmpty() || !m_error.isEmpty())
        return m_error;
    const int end = range.end < 0 ? text.size() : qMin(range.end, text.size());
    QElapsedTimer time;
    time.start();
    int lineStart = range.begin <= 0 ? 0 : text.lastIndexOf(QLatin1Char('\n'), range.begin - 1) + 1;
    while (lineStart <= end) {
        const int found = text.indexOf(QLatin1Char('\n'), lineStart);
        const int lineEnd = found < 0 ? text.size() : found;
        const bool hasReturn = lineEnd > lineStart && text.at(lineEnd - 1) == QLatin1Char('\r');
        const QStringRef line(&text, lineStart, lineEnd - lineStart - (hasReturn ? 1 : 0));
        auto matches = m_expression.globalMatch(line);
        if (!matches.isValid())
            return tooComplex();
        while (matches.hasNext()) {
            const QRegularExpressionMatch match = matches.next();
            if (!match.isValid() || time.hasExpired(kTimeLimit))
                return tooComplex();
            if (!match.hasMatch())
                break;
            const int start = lineStart + match.capturedStart();
            if (start < range.begin || lineStart + match.capturedEnd() > end)
                continue;
            if (!take({start, match.capturedLength(),
                       m_options.isExpression ? expanded(with, match) : with}))
                return {};
        }
        if (time.hasExpired(kTimeLimit))
            return tooComplex();
        lineStart = lineEnd + 1;
    }
    return {};
}

QVector<SearchHit> TextSearch::all(const QString &text, const SearchRange &range,
                                   QString *error) const
{
    QVector<SearchHit> hits;
    const QString problem = forEach(text, QString(), range, [&hits](const SearchReplacement &hit) {
        hits.append({hit.start, hit.length});
        return true;
    });
    if (error)
        *error = problem;
    return hits;
}

QVector<SearchReplacement> TextSearch::replacements(const QString &text, const QString &with,
                                                    const SearchRange &range, QString *error) const
{
    QVector<SearchReplacement> changes;
    const QString problem = forEach(text, with, range, [&changes](const SearchReplacement &change) {
        changes.append(change);
        return true;
    });
    if (error)
        *error = problem;
    if (!problem.isEmpty())
        changes.clear();
    return changes;
}

int TextSearch::next(const QVector<SearchHit> &hits, int position)
{
    if (hits.isEmpty())
        return -1;
    const auto found =
        std::lower_bound(hits.begin(), hits.end(), position,
                         [](const SearchHit &hit, int place) { return hit.start < place; });
    return found == hits.end() ? 0 : int(found - hits.begin());
}

int TextSearch::previous(const QVector<SearchHit> &hits, int position)
{
    const auto behind =
        std::upper_bound(hits.begin(), hits.end(), position,
                         [](int place, const SearchHit &hit) { return place < hit.end(); });
    return behind == hits.begin() ? hits.size() - 1 : int(behind - hits.begin()) - 1;
}
