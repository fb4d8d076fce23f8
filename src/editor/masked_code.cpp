#include "editor/masked_code.h"

namespace {

// The quotes that end the string which `open` begins; empty for what begins none. Either form may
// close what a Chinese quote opens.
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

// Whether a string or a comment may begin with the sign.
bool mayLeaveCode(QChar sign)
{
    switch (sign.unicode()) {
    case u'"':
    case u'\'':
    case u'/':
    case u'／':
    case u'r':
    case u'R':
    case u'“':
    case u'”':
    case u'‘':
    case u'’':
        return true;
    default:
        return false;
    }
}

bool isSlash(QChar sign)
{
    return sign == QLatin1Char('/') || sign == QChar(u'／');
}

class Masker
{
public:
    explicit Masker(const QString &source)
        : m_source(source), m_lastLine(source.lastIndexOf(QLatin1Char('\n')) + 1)
    {
        m_result.text = source;
    }

    MaskedCode run()
    {
        while (m_index < m_source.size()) {
            if (mayLeaveCode(m_source.at(m_index)))
                step();
            else
                ++m_index;
        }
        return m_result;
    }

private:
    static int behind(int found, int length) { return found < 0 ? -1 : found + length; }

    void step()
    {
        const QChar sign = m_source.at(m_index);
        const QChar next = m_source.size() > m_index + 1 ? m_source.at(m_index + 1) : QChar();
        const bool mayQuote = sign.unicode() < 0x80 || m_index >= m_lastLine;
        const QString closing = mayQuote ? closingQuotes(sign) : QString();
        if (isSlash(sign) && isSlash(next))
            fill(m_source.indexOf(QLatin1Char('\n'), m_index), QLatin1Char(' '));
        else if (sign == QLatin1Char('/') && next == QLatin1Char('*'))
            fill(behind(m_source.indexOf(QLatin1String("*/"), m_index + 2), 2), QLatin1Char(' '));
        else if (const int end = rawStringEnd())
            fill(end, stringFiller);
        else if (!closing.isEmpty())
            fill(stringEnd(closing), stringFiller);
        else
            ++m_index;
    }

    // Up to `end`, or to the end of the source for -1.
    void fill(int end, QChar filler)
    {
        if (end < 0) {
            m_result.endsInCode = false;
            end = m_source.size();
        }
        for (; m_index < end; ++m_index)
            m_result.text[m_index] = filler;
    }

    int stringEnd(const QString &closing) const
    {
        for (int i = m_index + 1; i < m_source.size(); ++i) {
            if (m_source.at(i) == QLatin1Char('\\'))
                ++i;
            else if (closing.contains(m_source.at(i)))
                return i + 1;
        }
        return -1;
    }

    // Behind the r"--(...)--" that begins here; 0 if none does, -1 if it does not end.
    int rawStringEnd() const
    {
        const QChar sign = m_source.at(m_index);
        const bool isWordsEnd = m_index > 0 && m_source.at(m_index - 1).isLetterOrNumber();
        if ((sign != QLatin1Char('r') && sign != QLatin1Char('R')) || isWordsEnd)
            return 0;
        int quote = m_index + 1;
        while (quote < m_source.size() && m_source.at(quote).isSpace())
            ++quote;
        int open = quote + 1;
        while (open < m_source.size() && m_source.at(open) == QLatin1Char('-'))
            ++open;
        if (open >= m_source.size() || m_source.at(quote) != QLatin1Char('"') ||
            m_source.at(open) != QLatin1Char('('))
            return 0;
        const QString terminator =
            QLatin1Char(')') + QString(open - quote - 1, QLatin1Char('-')) + QLatin1Char('"');
        return behind(m_source.indexOf(terminator, open), terminator.size());
    }

    const QString &m_source;
    const int m_lastLine;
    int m_index = 0;
    MaskedCode m_result;
};

} // namespace

MaskedCode maskedCode(const QString &source)
{
    return Masker(source).run();
}

MaskedCode TypedCodeMask::masked(const QString &source)
{
    const int line = source.lastIndexOf(QLatin1Char('\n')) + 1;
    if (source.leftRef(line) != m_above) {
        m_above = source.left(line);
        m_maskedAbove = maskedCode(m_above);
    }
    if (!endsWhereLineMayBegin())
        return maskedCode(source);
    MaskedCode result = maskedCode(source.mid(line));
    result.text.prepend(m_maskedAbove.text);
    return result;
}

// Neither in a string or comment nor between the sign and the quote that begin a raw string.
bool TypedCodeMask::endsWhereLineMayBegin() const
{
    int end = m_above.size();
    while (end > 0 && m_above.at(end - 1).isSpace())
        --end;
    const QChar last = end > 0 ? m_above.at(end - 1) : QChar();
    return m_maskedAbove.endsInCode && last != QLatin1Char('r') && last != QLatin1Char('R');
}
