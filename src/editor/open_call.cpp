#include "editor/open_call.h"

#include <string_view>

namespace {

bool isWordSign(QChar sign)
{
    return sign.isLetterOrNumber() || sign == QLatin1Char('_');
}

bool isOneOf(QChar sign, std::u16string_view signs)
{
    return signs.find(char16_t(sign.unicode())) != std::u16string_view::npos;
}

// Moves `end` back over blanks of the line.
int behindText(const QString &code, int end)
{
    while (end > 0 && (code.at(end - 1) == QLatin1Char(' ') || code.at(end - 1) == u'\t'))
        --end;
    return end;
}

// Takes the word that ends at `end` off; empty if none does.
QString takeWord(const QString &code, int *end)
{
    int begin = *end;
    while (begin > 0 && isWordSign(code.at(begin - 1)))
        --begin;
    const QString word = code.mid(begin, *end - begin);
    *end = begin;
    return word;
}

// Takes "a.b.c" off; empty if it begins with a dot.
QStringList takePath(const QString &code, int *end)
{
    QStringList path;
    for (;;) {
        const QString word = takeWord(code, end);
        if (word.isEmpty())
            return {};
        path.prepend(word);
        if (*end == 0 || code.at(*end - 1) != QLatin1Char('.'))
            return path;
        --*end;
    }
}

// Moves `end` back over white space.
int behindSign(const QString &code, int end)
{
    while (end > 0 && code.at(end - 1).isSpace())
        --end;
    return end;
}

QChar signBefore(const QString &code, int end)
{
    end = behindSign(code, end);
    return end > 0 ? code.at(end - 1) : QChar();
}

QChar signFrom(const QString &code, int begin)
{
    while (begin < code.size() && code.at(begin).isSpace())
        ++begin;
    return begin < code.size() ? code.at(begin) : QChar();
}

bool goesOnOver(const QString &code, int lineBreak)
{
    return isOneOf(signBefore(code, lineBreak), u"(（[【{｛,，、+-*/%=<>&|?:") ||
           isOneOf(signFrom(code, lineBreak), u",，、)）]】}｝");
}

// Whether the "{" at `place` begins the body of a statement, not a list of values.
bool opensBody(const QString &code, int place)
{
    return !isOneOf(signBefore(code, place), u"(（[【{｛,，、=");
}

std::optional<OpenCall> callAt(const QString &code, int openingAt, int argument)
{
    int end = behindText(code, openingAt);
    const QStringList path = takePath(code, &end);
    if (path.isEmpty())
        return std::nullopt;
    end = behindText(code, end);
    const QString before = takeWord(code, &end);
    if (before == QStringLiteral("函数") || before == QStringLiteral("方法") ||
        before == QStringLiteral("子程序"))
        return std::nullopt;
    return OpenCall{path, argument, openingAt};
}

} // namespace

std::optional<OpenCall> openCall(const QString &code)
{
    int depth = 0;
    int commas = 0;
    for (int i = code.size() - 1; i >= 0; --i) {
        const QChar sign = code.at(i);
        if (isWordSign(sign))
            continue;
        if (sign == QLatin1Char('\n')) {
            if (!goesOnOver(code, i))
                return std::nullopt;
            i = behindSign(code, i);
        } else if (isOneOf(sign, u")）]】}｝")) {
            ++depth;
        } else if (isOneOf(sign, u"(（[【{｛")) {
            if (--depth >= 0)
                continue;
            if (isOneOf(sign, u"(（")) {
                if (auto call = callAt(code, i, commas))
                    return call;
            } else if (isOneOf(sign, u"{｛") && opensBody(code, i)) {
                return std::nullopt;
            }
            depth = 0;
            commas = 0;
        } else if (depth == 0 && isOneOf(sign, u",，、")) {
            ++commas;
        }
    }
    return std::nullopt;
}

QStringList objectPath(const QString &code)
{
    int end = code.size();
    takeWord(code, &end);
    if (end == 0 || code.at(end - 1) != QLatin1Char('.'))
        return {};
    --end;
    return takePath(code, &end);
}

bool beginsArgument(const QString &code)
{
    int end = code.size();
    takeWord(code, &end);
    end = behindSign(code, end);
    if (end > 0 && code.at(end - 1) == QLatin1Char('&'))
        end = behindSign(code, end - 1);
    return end > 0 && isOneOf(code.at(end - 1), u"(（,，");
}

QString wordBeforeName(const QString &code)
{
    int nameBegin = code.size();
    takeWord(code, &nameBegin);
    int end = behindText(code, nameBegin);
    return end < nameBegin ? takeWord(code, &end) : QString();
}
