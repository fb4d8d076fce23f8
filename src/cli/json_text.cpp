#include "cli/json_text.h"

namespace JsonText {

namespace {

// Half of a surrogate pair, or a character that only an escape can carry.
bool needsEscape(const QString &text, int index)
{
    const QChar c = text.at(index);
    if (c.isHighSurrogate())
        return index + 1 >= text.size() || !text.at(index + 1).isLowSurrogate();
    if (c.isLowSurrogate())
        return index == 0 || !text.at(index - 1).isHighSurrogate();
    return c < QLatin1Char(' ') || c == QLatin1Char('"') || c == QLatin1Char('\\');
}

QByteArray escaped(QChar c)
{
    switch (c.unicode()) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
}

} // namespace

QByteArray string(const QString &text)
{
    QByteArray result("\"");
    int copied = 0;
    for (int i = 0; i < text.size(); ++i) {
        if (!needsEscape(text, i))
            continue;
        result += text.midRef(copied, i - copied).toUtf8() + escaped(text.at(i));
        copied = i + 1;
    }
    return result + text.midRef(copied).toUtf8() + '"';
}

QByteArray strings(const QStringList &texts)
{
    QByteArray result("[");
    for (const QString &text : texts)
        result += (result.size() > 1 ? "," : "") + string(text);
    return result + ']';
}

QByteArray object(const QMap<QString, QString> &values)
{
    QByteArray result("{");
    for (auto it = values.begin(); it != values.end(); ++it)
        result += (result.size() > 1 ? "," : "") + string(it.key()) + ':' + string(it.value());
    return result + '}';
}

} // namespace JsonText
