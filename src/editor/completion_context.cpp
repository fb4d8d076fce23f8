#include "editor/completion_context.h"

#include "editor/masked_code.h"

#include <QRegularExpression>

namespace {

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

    if (!maskedCode(line).endsInCode)
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
