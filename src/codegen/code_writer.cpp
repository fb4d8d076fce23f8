#include "codegen/code_writer.h"

namespace {

const int kBlanksPerLevel = 4;

bool needsEscape(QChar c)
{
    return c == QLatin1Char('"') || c == QLatin1Char('\\') || c.unicode() < 0x20;
}

} // namespace

void CodeWriter::line(const QString &text)
{
    const int oldSize = m_text.size();
    const int indent = m_level * kBlanksPerLevel;
    m_text.resize(oldSize + indent);
    std::fill(m_text.begin() + oldSize, m_text.end(), QLatin1Char(' '));
    m_text += text;
    m_text += QLatin1Char('\n');
}

void CodeWriter::open(const QString &text)
{
    line(text);
    ++m_level;
}

void CodeWriter::close(const QString &text)
{
    --m_level;
    line(text);
}

void CodeWriter::reopen(const QString &text)
{
    close(text);
    ++m_level;
}

void CodeWriter::markSourceLine(int start, int line)
{
    const int last = m_text.size() - 1;
    if (line <= 0 || last <= start || m_text.at(last) != QLatin1Char('\n'))
        return;
    m_text.chop(1);
    m_text += QLatin1String(" // VL_LINE:");
    m_text += QString::number(line);
    m_text += QLatin1Char('\n');
}

QString CodeWriter::takeText()
{
    QString text;
    text.swap(m_text);
    return text;
}

QString CodeWriter::escaped(const QString &text)
{
    if (std::none_of(text.begin(), text.end(), needsEscape))
        return text;
    QString result;
    result.reserve(text.size() + 8);
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\n':
            result += QLatin1String("\\n");
            break;
        case '\r':
            result += QLatin1String("\\r");
            break;
        case '\t':
            result += QLatin1String("\\t");
            break;
        case '\\':
            result += QLatin1String("\\\\");
            break;
        case '"':
            result += QLatin1String("\\\"");
            break;
        default:
            // Three octal digits end by themselves, whatever follows.
            if (c.unicode() < 0x20)
                result += QStringLiteral("\\%1").arg(c.unicode(), 3, 8, QLatin1Char('0'));
            else
                result += c;
        }
    }
    return result;
}

QString CodeWriter::wideString(const QString &text)
{
    // A NUL would end the literal's text, so such a text is given with its length.
    const QString literal = QLatin1String("L\"") + escaped(text) + QLatin1Char('"');
    if (text.contains(QChar::Null))
        return QStringLiteral("std::wstring(%1, %2)").arg(literal).arg(text.size());
    return QLatin1String("std::wstring(") + literal + QLatin1Char(')');
}
