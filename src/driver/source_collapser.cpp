#include "driver/source_collapser.h"

#include <string_view>

namespace {

// Must cut the text where the lexer does, or a string could be taken for code: a test compares the
// two.
class Collapser
{
public:
    explicit Collapser(const QString &source) : m_text(source.constData()), m_size(source.size())
    {
        m_result.reserve(m_size);
    }

    QString run();

private:
    QChar at(int index) const { return index < m_size ? m_text[index] : QChar(); }
    bool skipGap();
    int lineCommentEnd() const;
    int blockCommentEnd() const;
    int tokenEnd() const;
    int numberEnd() const;
    int stringEnd() const;
    int wordEnd(int begin) const;
    int rawQuote() const;
    void copyRawString(int quote);
    void copyTo(int end)
    {
        m_result.append(m_text + m_index, end - m_index);
        m_index = end;
    }

    const QChar *m_text;
    const int m_size;
    int m_index = 0;
    QString m_result;
};

constexpr std::u16string_view wideStops = u"≠≤≥≈×÷（）｛｝【】［］＝！：；，。";

bool isDigit(QChar c)
{
    const ushort code = c.unicode();
    if (code < 128)
        return code >= '0' && code <= '9';
    const bool isCommonHan = code >= 0x4E00 && code <= 0x9FFF;
    return !isCommonHan && c.isDigit();
}

bool isWordCharacter(QChar c)
{
    const ushort code = c.unicode();
    if (code >= 128)
        return wideStops.find(code) == std::u16string_view::npos;
    const ushort lower = code | 0x20;
    return (lower >= 'a' && lower <= 'z') || (code >= '0' && code <= '9') || code == '_';
}

bool isSlash(QChar c)
{
    return c == QLatin1Char('/') || c == QChar(u'／');
}

QString Collapser::run()
{
    while (m_index < m_size) {
        const bool gap = skipGap();
        if (m_index >= m_size)
            break;
        if (gap && !m_result.isEmpty())
            m_result.append(QLatin1Char(' '));
        const int quote = rawQuote();
        if (quote >= 0)
            copyRawString(quote);
        else
            copyTo(tokenEnd());
    }
    return m_result;
}

// Whether there was white space or a comment here.
bool Collapser::skipGap()
{
    const int begin = m_index;
    for (;;) {
        const QChar c = at(m_index);
        if (c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\r') ||
            c == QLatin1Char('\n'))
            ++m_index;
        else if (isSlash(c) && isSlash(at(m_index + 1)))
            m_index = lineCommentEnd();
        else if (c == QLatin1Char('/') && at(m_index + 1) == QLatin1Char('*'))
            m_index = blockCommentEnd();
        else
            return m_index > begin;
    }
}

int Collapser::lineCommentEnd() const
{
    int index = m_index;
    while (index < m_size && m_text[index] != QLatin1Char('\n'))
        ++index;
    return index;
}

// Block comments nest and end at a NUL.
int Collapser::blockCommentEnd() const
{
    int depth = 0;
    int index = m_index;
    while (index < m_size && !m_text[index].isNull()) {
        const QChar next = at(index + 1);
        if (m_text[index] == QLatin1Char('/') && next == QLatin1Char('*')) {
            ++depth;
            index += 2;
        } else if (m_text[index] == QLatin1Char('*') && next == QLatin1Char('/')) {
            index += 2;
            if (--depth <= 0)
                break;
        } else {
            ++index;
        }
    }
    return index;
}

int Collapser::tokenEnd() const
{
    const QChar c = m_text[m_index];
    if (isDigit(c))
        return numberEnd();
    if (c == QLatin1Char('"') || c == QLatin1Char('\''))
        return stringEnd();
    if (c == QLatin1Char('#') || isWordCharacter(c))
        return wordEnd(m_index + 1);
    return m_index + 1;
}

int Collapser::wordEnd(int begin) const
{
    int index = begin;
    while (index < m_size && isWordCharacter(m_text[index]))
        ++index;
    return index;
}

int Collapser::numberEnd() const
{
    int index = m_index;
    if (at(index) == QLatin1Char('0') && (at(index + 1).unicode() | 0x20) == 'x') {
        const auto isHexLetter = [](QChar c) {
            const ushort lower = c.unicode() | 0x20;
            return c.unicode() < 128 && lower >= 'a' && lower <= 'f';
        };
        index += 2;
        while (isDigit(at(index)) || isHexLetter(at(index)))
            ++index;
        return index;
    }
    bool hasDot = false;
    for (;; ++index) {
        if (at(index) == QLatin1Char('.') && !hasDot)
            hasDot = true;
        else if (!isDigit(at(index)))
            return index;
    }
}

int Collapser::stringEnd() const
{
    int index = m_index + 1;
    while (index < m_size && m_text[index] != m_text[m_index])
        index += m_text[index] == QLatin1Char('\\') ? 2 : 1;
    return qMin(index + 1, m_size);
}

// The quote of the raw string that begins here, -1 if none does: r, blanks, a quote, dashes, "(".
int Collapser::rawQuote() const
{
    if ((m_text[m_index].unicode() | 0x20) != 'r')
        return -1;
    int quote = m_index + 1;
    while (at(quote).isSpace())
        ++quote;
    if (at(quote) != QLatin1Char('"'))
        return -1;
    int open = quote + 1;
    while (at(open) == QLatin1Char('-'))
        ++open;
    return at(open) == QLatin1Char('(') ? quote : -1;
}

// Without the blanks ahead of the quote: with one, the result would be that of a name "r", a
// comment and a plain string.
void Collapser::copyRawString(int quote)
{
    constexpr int maxDashes = 32; // the lexer drops a longer opening
    m_result.append(m_text[m_index]);
    m_index = quote;
    int open = quote + 1;
    while (at(open) == QLatin1Char('-'))
        ++open;
    const int dashes = open - quote - 1;
    if (dashes > maxDashes) {
        copyTo(open);
        return;
    }
    const QString end = QLatin1Char(')') + QString(dashes, QLatin1Char('-')) + QLatin1Char('"');
    const int found = QString::fromRawData(m_text, m_size).indexOf(end, open + 1);
    copyTo(found < 0 ? m_size : found + end.size());
}

} // namespace

QString collapsedSource(const QString &source)
{
    return Collapser(source).run();
}
