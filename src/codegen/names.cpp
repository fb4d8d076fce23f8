#include "codegen/names.h"

#include "codegen/generator_tables.h"

#include <algorithm>

namespace Names {
namespace {

bool isAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

void appendEscaped(QString &result, QChar c)
{
    static const char digits[] = "0123456789abcdef";
    const ushort code = c.unicode();
    result += QLatin1String("_u");
    for (int shift = 12; shift >= 0; shift -= 4)
        result += QLatin1Char(digits[(code >> shift) & 0xF]);
}

} // namespace

QString sanitize(const QString &name)
{
    if (name.isEmpty())
        return QStringLiteral("unnamed");
    const QString source = isAscii(name) ? name : name.normalized(QString::NormalizationForm_C);
    QString result;
    result.reserve(source.size() * 6);
    for (const QChar c : source) {
        if (!c.isLetterOrNumber() && c != QLatin1Char('_'))
            result += QLatin1Char('_');
        else if (c.unicode() > 127)
            appendEscaped(result, c);
        else
            result += c;
    }
    return result.isEmpty() ? QStringLiteral("unnamed") : result;
}

QString identifier(const QString &name)
{
    QString result = sanitize(name);
    if (GeneratorTables::instance().cppReserved.contains(result))
        result += QLatin1Char('_');
    else if (result.at(0).unicode() >= '0' && result.at(0).unicode() <= '9')
        result.prepend(QLatin1Char('_'));
    return result;
}

QString sanitizeComponent(const QString &name)
{
    return isAscii(name) ? name : sanitize(name);
}

QString handle(const QString &sanitized)
{
    return (sanitized.startsWith(QLatin1Char('_')) ? QLatin1String("hwnd")
                                                   : QLatin1String("hwnd_")) +
           sanitized;
}

QString normalized(const QString &name)
{
    return isAscii(name) ? name : name.normalized(QString::NormalizationForm_KC);
}

QString componentNumber(const QString &name)
{
    for (const QString &word : GeneratorTables::instance().componentWords) {
        if (!name.startsWith(word) || name.size() == word.size())
            continue;
        QString rest = name.mid(word.size());
        if (std::all_of(rest.begin(), rest.end(), [](QChar c) { return c.isDigit(); }))
            return rest;
    }
    return QString();
}

} // namespace Names
