// The lexer: white space and comments, numbers, strings, words and operators.
#include "frontend/lexer.h"

#include "frontend/keywords.h"
#include "frontend/operators.h"

#include <string_view>

namespace {

constexpr int maxRawDashes = 32;
constexpr size_t recentSlots = 1024;
constexpr int maxSharedLength = 32;

// The signs beyond ASCII that end a name.
constexpr std::u16string_view wideStops = u"≠≤≥≈×÷（）｛｝【】［］＝！：；，。";

// What may stand right behind a keyword. The set is not that of the ends of a name: "真?" is a name
// followed by "?".
constexpr std::u16string_view asciiDelimiters = u" \t\n\r(){}[],;+-*/=<>!&|.:";
constexpr std::u16string_view wideDelimiters = u"≠≤≥≈（）｛｝【】，；：＝";

bool isCommonHan(ushort code)
{
    return code >= 0x4E00 && code <= 0x9FFF;
}

bool isAsciiDigit(ushort code)
{
    return code >= '0' && code <= '9';
}

bool isAsciiLetter(ushort code)
{
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z');
}

bool isDigit(QChar c)
{
    const ushort code = c.unicode();
    return code < 128 ? isAsciiDigit(code) : !isCommonHan(code) && c.isDigit();
}

// Quotation marks, "、", "？" and the full-width "＋" are name characters on purpose.
bool isWordCharacter(QChar c)
{
    const ushort code = c.unicode();
    if (isCommonHan(code) || isAsciiLetter(code) || isAsciiDigit(code) || code == '_')
        return true;
    return code >= 128 && wideStops.find(code) == std::u16string_view::npos;
}

bool isKeywordDelimiter(QChar c)
{
    const ushort code = c.unicode();
    if (isCommonHan(code) || isAsciiLetter(code))
        return false;
    return code == 0 ||
           (code < 128 ? asciiDelimiters : wideDelimiters).find(code) != std::u16string_view::npos;
}

bool isSlash(QChar c)
{
    return c == QLatin1Char('/') || c == QChar(u'／');
}

QChar decodedEscape(QChar c)
{
    return c == QLatin1Char('n')   ? QChar(QLatin1Char('\n'))
           : c == QLatin1Char('t') ? QChar(QLatin1Char('\t'))
                                   : c;
}

} // namespace

void Lexer::setSource(const QString &source)
{
    m_source = source;
    m_index = 0;
    m_line = 1;
    m_column = 1;
}

QList<Lexer::Token> Lexer::tokenize()
{
    QList<Token> tokens;
    for (;;) {
        const Token token = nextToken();
        if (token.type != Newline)
            tokens.append(token);
        if (token.type == EndOfFile)
            return tokens;
    }
}

Lexer::Token Lexer::nextToken()
{
    for (;;) {
        QChar c = at(0);
        while (c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\r')) {
            advance(1);
            c = at(0);
        }
        if (isSlash(c) && isSlash(at(1)))
            skipLineComment();
        else if (c == QLatin1Char('/') && at(1) == QLatin1Char('*'))
            skipBlockComment();
        else
            return scanToken();
    }
}

// Dispatches on the first character of a token.
Lexer::Token Lexer::scanToken()
{
    if (m_index >= m_source.size())
        return make(EndOfFile, QString(), 0);
    const QChar c = at(0);
    const ushort code = c.unicode();
    if (code == '\n') {
        Token token = make(Newline, QString(), 1);
        ++m_line;
        m_column = 1;
        return token;
    }
    if (isDigit(c))
        return scanNumber();
    if ((code == 'r' || code == 'R') && startsRawString())
        return scanRawString();
    if (code == '"' || code == '\'')
        return scanString();
    if (code == '#')
        return scanHashWord();
    return isWordCharacter(c) ? scanWord() : scanOperator();
}

// NUL behind the end of the text.
QChar Lexer::at(int offset) const
{
    const int index = m_index + offset;
    return index < m_source.size() ? m_source.constData()[index] : QChar();
}

// A token of the next `length` characters, none of them a line feed unless the caller counts it.
Lexer::Token Lexer::make(int kind, const QString &text, int length)
{
    Token token{kind, text, m_line, m_column};
    advance(length);
    return token;
}

// Moves to `end`, counting the lines on the way.
void Lexer::advanceOverLines(int end)
{
    const QChar *text = m_source.constData();
    for (; m_index < end; ++m_index) {
        if (text[m_index] == QLatin1Char('\n')) {
            ++m_line;
            m_column = 1;
        } else {
            ++m_column;
        }
    }
}

// The text of a name or a number; short ones that came lately are shared, not copied.
QString Lexer::shared(int begin, int length)
{
    const QChar *text = m_source.constData() + begin;
    if (length > maxSharedLength)
        return QString(text, length);
    if (m_recent.empty())
        m_recent.resize(recentSlots);
    uint hash = uint(length);
    for (int i = 0; i < length; ++i)
        hash = hash * 31 + text[i].unicode();
    hash ^= hash >> 10;
    QString &slot = m_recent[hash % recentSlots];
    if (slot.size() != length ||
        memcmp(slot.constData(), text, size_t(length) * sizeof(QChar)) != 0)
        slot = QString(text, length);
    return slot;
}

void Lexer::skipLineComment()
{
    const int end = m_source.indexOf(QLatin1Char('\n'), m_index);
    advance((end < 0 ? m_source.size() : end) - m_index);
}

// Block comments nest. One that is never closed, or that meets a NUL, ends there in silence.
void Lexer::skipBlockComment()
{
    const QChar *text = m_source.constData();
    const int size = m_source.size();
    int depth = 0;
    int index = m_index;
    while (index < size && !text[index].isNull()) {
        const QChar next = index + 1 < size ? text[index + 1] : QChar();
        if (text[index] == QLatin1Char('/') && next == QLatin1Char('*')) {
            ++depth;
            index += 2;
        } else if (text[index] == QLatin1Char('*') && next == QLatin1Char('/')) {
            --depth;
            index += 2;
            if (depth <= 0)
                break;
        } else {
            ++index;
        }
    }
    advanceOverLines(index);
}

Lexer::Token Lexer::scanNumber()
{
    if (at(0) == QLatin1Char('0') && (at(1) == QLatin1Char('x') || at(1) == QLatin1Char('X')))
        return scanHexadecimal();
    int length = 0;
    bool hasDot = false;
    for (;; ++length) {
        const QChar c = at(length);
        if (c == QLatin1Char('.') && !hasDot)
            hasDot = true;
        else if (!isDigit(c))
            break;
    }
    int zeros = 0;
    while (!hasDot && zeros < length - 1 && at(zeros) == QLatin1Char('0'))
        ++zeros;
    const QString text = shared(m_index + zeros, length - zeros);
    return make(hasDot ? FloatLiteral : IntLiteral, text, length);
}

// The token's text is the decimal value; what 64 bits cannot hold is 0.
Lexer::Token Lexer::scanHexadecimal()
{
    int length = 2;
    for (;; ++length) {
        const QChar c = at(length);
        const ushort lower = c.unicode() | 0x20;
        const bool isHexLetter = c.unicode() < 128 && lower >= 'a' && lower <= 'f';
        if (!isHexLetter && !isDigit(c))
            break;
    }
    const qlonglong value = m_source.mid(m_index + 2, length - 2).toLongLong(nullptr, 16);
    return make(IntLiteral, QString::number(value), length);
}

// The text is the decoded content. A string may span lines and may lack its closing quote.
Lexer::Token Lexer::scanString()
{
    const QChar *text = m_source.constData();
    const int size = m_source.size();
    const QChar quote = text[m_index];
    Token token{StringLiteral, QString(), m_line, m_column};
    int begin = m_index + 1;
    int index = begin;
    while (index < size && text[index] != quote) {
        if (text[index] == QLatin1Char('\\')) {
            token.text.append(text + begin, index - begin);
            token.text.append(index + 1 < size ? decodedEscape(text[index + 1]) : QChar());
            index = qMin(index + 2, size);
            begin = index;
        } else {
            ++index;
        }
    }
    token.text.append(text + begin, index - begin);
    advanceOverLines(qMin(index + 1, size));
    return token;
}

// Whether the "r" here opens a raw string: r, blanks, a quote, dashes, "(".
bool Lexer::startsRawString() const
{
    int offset = 1;
    while (at(offset).isSpace())
        ++offset;
    if (at(offset) != QLatin1Char('"'))
        return false;
    do
        ++offset;
    while (at(offset) == QLatin1Char('-'));
    return at(offset) == QLatin1Char('(');
}

// Called where startsRawString() holds. The content is not decoded.
Lexer::Token Lexer::scanRawString()
{
    Token token{StringLiteral, QString(), m_line, m_column};
    const int quote = m_source.indexOf(QLatin1Char('"'), m_index);
    const int open = m_source.indexOf(QLatin1Char('('), quote);
    const int dashes = open - quote - 1;
    if (dashes > maxRawDashes) {
        token.type = Error;
        token.text = QStringLiteral("r\"");
        advanceOverLines(open);
        return token;
    }
    const QString terminator =
        QLatin1Char(')') + QString(dashes, QLatin1Char('-')) + QLatin1Char('"');
    const int found = m_source.indexOf(terminator, open + 1);
    const int end = found < 0 ? m_source.size() : found;
    token.text = m_source.mid(open + 1, end - open - 1);
    advanceOverLines(found < 0 ? end : end + terminator.size());
    return token;
}

Lexer::Token Lexer::scanHashWord()
{
    int length = 1;
    while (isWordCharacter(at(length)))
        ++length;
    return make(Identifier, shared(m_index, length), length);
}

// A keyword holds no delimiter itself, so only the run up to the next delimiter can be one.
Lexer::Token Lexer::scanWord()
{
    int run = 1;
    while (run <= maxKeywordLength && !isKeywordDelimiter(at(run)))
        ++run;
    if (const Keyword *keyword = findKeyword(m_source.constData() + m_index, run))
        return make(keyword->kind, keyword->word, run);
    int length = 1;
    while (isWordCharacter(at(length)))
        ++length;
    return make(Identifier, shared(m_index, length), length);
}

// What is no operator is an `Error` token of one character. "。" comes here too, so that it is
// consumed.
Lexer::Token Lexer::scanOperator()
{
    const QChar c = at(0);
    const Operator found = findOperator(c, at(1));
    return make(found.kind, found.kind == Error ? QString(c) : operatorText(found.kind),
                found.length);
}
