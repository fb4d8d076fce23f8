// The text of new values, in the form that QJsonDocument gives them.
#include "designer/model/json_tree.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>

#include <cmath>

namespace {

void appendEscape(char16_t code, QByteArray &out)
{
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += "0123456789abcdef"[(code >> shift) & 15];
}

// The escape of a character with a short one, else null.
const char *shortEscape(QChar c)
{
    switch (c.unicode()) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\b':
        return "\\b";
    case '\f':
        return "\\f";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        return nullptr;
    }
}

void appendNumber(const QJsonValue &value, QByteArray &out)
{
    const QVariant number = value.toVariant();
    const double real = number.toDouble();
    if (!std::isfinite(real))
        out += "null";
    else if (number.type() == QVariant::LongLong)
        out += QByteArray::number(number.toLongLong());
    else
        out += QByteArray::number(real, 'g', QLocale::FloatingPointShortest);
}

void appendValue(const QJsonValue &value, const JsonLayout &layout, QByteArray &out);

// Opens a line for a member, or goes on in the same one.
void appendBreak(const JsonLayout &layout, QByteArray &out)
{
    if (!layout.indent.isNull())
        out += layout.newline + layout.indent;
}

JsonLayout deeper(const JsonLayout &layout)
{
    JsonLayout inner = layout;
    if (!layout.indent.isNull())
        inner.indent += layout.unit;
    return inner;
}

void appendSeparator(bool first, const JsonLayout &layout, QByteArray &out)
{
    if (!first)
        out += layout.indent.isNull() && layout.colon.endsWith(' ') ? ", " : ",";
}

void appendArray(const QJsonArray &array, const JsonLayout &layout, QByteArray &out)
{
    const JsonLayout inner = deeper(layout);
    bool first = true;
    out += '[';
    for (const QJsonValue element : array) {
        appendSeparator(first, layout, out);
        appendBreak(inner, out);
        appendValue(element, inner, out);
        first = false;
    }
    appendBreak(layout, out);
    out += ']';
}

void appendObject(const QJsonObject &object, const JsonLayout &layout, QByteArray &out)
{
    const JsonLayout inner = deeper(layout);
    bool first = true;
    out += '{';
    for (auto it = object.begin(); it != object.end(); ++it) {
        appendSeparator(first, layout, out);
        appendBreak(inner, out);
        out += quotedJson(it.key()) + layout.colon;
        appendValue(it.value(), inner, out);
        first = false;
    }
    appendBreak(layout, out);
    out += '}';
}

void appendValue(const QJsonValue &value, const JsonLayout &layout, QByteArray &out)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        out += value.toBool() ? "true" : "false";
        return;
    case QJsonValue::Double:
        return appendNumber(value, out);
    case QJsonValue::String:
        out += quotedJson(value.toString());
        return;
    case QJsonValue::Array:
        return appendArray(value.toArray(), layout, out);
    case QJsonValue::Object:
        return appendObject(value.toObject(), layout, out);
    default:
        out += "null";
        return;
    }
}

} // namespace

QByteArray quotedJson(const QString &text)
{
    QByteArray out("\"");
    int plain = 0; // start of what needs no escape
    const auto flush = [&](int end) { out += text.midRef(plain, end - plain).toUtf8(); };
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        const char *escape = shortEscape(c);
        // Half a surrogate pair has no UTF-8 form.
        if (!escape && c.unicode() >= 0x20 && !c.isSurrogate())
            continue;
        flush(i);
        plain = i + 1;
        if (escape)
            out += escape;
        else
            appendEscape(c.unicode(), out);
    }
    flush(text.size());
    return out + '"';
}

QByteArray formatJson(const QJsonValue &value, const JsonLayout &layout)
{
    QByteArray out;
    appendValue(value, layout, out);
    return out;
}
