#include "driver/cpp_tokens.h"

namespace {

bool beginsName(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_') || c.isSurrogate();
}

bool continuesName(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_') || c.isSurrogate();
}

} // namespace

int CppTokenReader::lineEnd(int position) const
{
    while (position < m_text.size() && m_text[position] != QLatin1Char('\n'))
        ++position;
    return position;
}

bool CppTokenReader::startsLine(int position) const
{
    while (position > 0) {
        const QChar before = m_text[--position];
        if (before == QLatin1Char('\n'))
            return true;
        if (!before.isSpace())
            return false;
    }
    return true;
}

int CppTokenReader::literalEnd(int quoteAt) const
{
    const QChar quote = m_text[quoteAt];
    int position = quoteAt + 1;
    while (position < m_text.size() && m_text[position] != quote &&
           m_text[position] != QLatin1Char('\n'))
        position += m_text[position] == QLatin1Char('\\') ? 2 : 1;
    return qMin<int>(position + 1, m_text.size());
}

int CppTokenReader::rawStringEnd(int quoteAt) const
{
    int open = quoteAt + 1;
    while (open < m_text.size() && m_text[open] != QLatin1Char('('))
        ++open;
    const QString close = QLatin1Char(')') +
                          m_text.mid(quoteAt + 1, open - quoteAt - 1).toString() + QLatin1Char('"');
    const int found = int(m_text.indexOf(close, open));
    return found < 0 ? m_text.size() : found + close.size();
}

int CppTokenReader::directiveEnd() const
{
    int end = lineEnd(m_at);
    while (end < m_text.size() && end > 0 && m_text[end - 1] == QLatin1Char('\\'))
        end = lineEnd(end + 1);
    return end;
}

int CppTokenReader::nameEnd() const
{
    int end = m_at + 1;
    while (end < m_text.size() && continuesName(m_text[end]))
        ++end;
    return end;
}

CppToken CppTokenReader::next()
{
    while (m_at < m_text.size() && m_text[m_at].isSpace())
        ++m_at;
    CppToken token;
    token.begin = token.end = m_at;
    if (m_at >= m_text.size())
        return token;
    token.first = m_text[m_at];
    const QChar second = at(m_at + 1);
    if (beginsName(token.first)) {
        token.kind = CppToken::Kind::Name;
        token.end = nameEnd();
        const bool raw = token.end < m_text.size() && m_text[token.end] == QLatin1Char('"') &&
                         m_text[token.end - 1] == QLatin1Char('R') && token.length() <= 3;
        if (raw) {
            token.kind = CppToken::Kind::Text;
            token.end = rawStringEnd(token.end);
        }
    } else if (token.first.isDigit()) {
        // Digit separators and signs of exponents do not matter here.
        token.kind = CppToken::Kind::Number;
        token.end = nameEnd();
    } else if (token.first == QLatin1Char('"') || token.first == QLatin1Char('\'')) {
        token.kind = CppToken::Kind::Text;
        token.end = literalEnd(m_at);
    } else if (token.first == QLatin1Char('/') && second == QLatin1Char('/')) {
        token.kind = CppToken::Kind::Comment;
        token.end = lineEnd(m_at);
    } else if (token.first == QLatin1Char('/') && second == QLatin1Char('*')) {
        token.kind = CppToken::Kind::Comment;
        const int close = int(m_text.indexOf(QLatin1String("*/"), m_at + 2));
        token.end = close < 0 ? m_text.size() : close + 2;
    } else if (token.first == QLatin1Char('#') && startsLine(m_at)) {
        token.kind = CppToken::Kind::Directive;
        token.end = directiveEnd();
    } else {
        token.kind = CppToken::Kind::Sign;
        token.end = m_at + 1;
    }
    m_at = token.end;
    return token;
}

bool CppTokenReader::skipGroup()
{
    int depth = 1;
    while (depth > 0) {
        const CppToken token = next();
        if (token.kind == CppToken::Kind::End)
            return false;
        if (token.isSign('(') || token.isSign('[') || token.isSign('{'))
            ++depth;
        else if (token.isSign(')') || token.isSign(']') || token.isSign('}'))
            --depth;
    }
    return true;
}

QString cppCodeOnly(QStringView text)
{
    QString code;
    code.reserve(int(text.size()));
    CppTokenReader reader(text);
    for (CppToken token = reader.next(); token.kind != CppToken::Kind::End; token = reader.next()) {
        if (token.kind == CppToken::Kind::Comment)
            continue;
        code += reader.textOf(token);
        // A directive ends with its line; one blank keeps all other tokens apart.
        code += token.kind == CppToken::Kind::Directive ? QLatin1Char('\n') : QLatin1Char(' ');
    }
    return code;
}
