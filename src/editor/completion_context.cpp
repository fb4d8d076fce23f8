#include "editor/completion_context.h"

#include <QRegularExpression>

namespace {

// The quotes that end the string which `open` begins; empty for what begins none. Chinese quotes
// become ASCII ones when the line is left, so either may close them.
QString closingQuotes(QChar open)
{
    switch (open.unicode()) {
    case u'"':
        return QStringLiteral("\"");
    case u'\'':
        return QStringLiteral("'");
    case u'“':
    case u'”':
        return QStringLiteral("”\"");
    case u'‘':
    case u'’':
        return QStringLiteral("’'");
    default:
        return QString();
    }
}

bool isSlash(QChar sign)
{
    return sign == QLatin1Char('/') || sign == QChar(u'／');
}

// Whether the line ends within a string or a line comment.
bool endsOutsideCode(const QString &line)
{
    QString closing;
    for (int i = 0; i < line.size(); ++i) {
        const QChar sign = line.at(i);
        if (closing.isEmpty()) {
            if (isSlash(sign) && i + 1 < line.size() && isSlash(line.at(i + 1)))
                return true;
            closing = closingQuotes(sign);
        } else if (sign == QLatin1Char('\\')) {
            ++i;
        } else if (closing.contains(sign)) {
            closing.clear();
        }
    }
    return !closing.isEmpty();
}

bool isNumber(const QString &word)
{
    return !word.isEmpty() && word.at(0).isDigit();
}

} // namespace

CompletionContext completionContext(const QString &line)
{
    static const QRegularExpression memberOfMember(
        QStringLiteral(R"(([\w\x{4e00}-\x{9fff}]+)\.([\w\x{4e00}-\x{9fff}]+)\.$)"));
    static const QRegularExpression member(
        QStringLiteral(R"(([\w\x{4e00}-\x{9fff}]+)\.([\w\x{4e00}-\x{9fff}]*)$)"));
    static const QRegularExpression word(
        QStringLiteral(R"((#[\w\x{4e00}-\x{9fff}]*|[\w\x{4e00}-\x{9fff}]+)$)"));

    if (endsOutsideCode(line))
        return {};
    using Kind = CompletionContext::Kind;
    CompletionContext context;
    if (const auto match = memberOfMember.match(line); match.hasMatch())
        context = {Kind::MemberOfMember, match.captured(1), match.captured(2), QString()};
    else if (const auto match = member.match(line); match.hasMatch())
        context = {Kind::Member, match.captured(1), QString(), match.captured(2)};
    else if (const auto match = word.match(line); match.hasMatch())
        context = {Kind::Word, QString(), QString(), match.captured(1)};
    const bool asksForName = !isNumber(context.object.isEmpty() ? context.prefix : context.object);
    return asksForName ? context : CompletionContext();
}
