#include "editor/source_formatter.h"

#include "frontend/lexer.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <climits>

namespace {

struct Piece
{
    int type;
    int start;
    int end;
    int line;    // from 0
    int endLine; // a string may go over several
};

enum class Gap
{
    None,
    Blank,
    Kept, // none stays none, more than one blank becomes one
};

bool isOpening(int type)
{
    return type == Lexer::LeftParen || type == Lexer::LeftBrace || type == Lexer::LeftBracket;
}

bool isClosing(int type)
{
    return type == Lexer::RightParen || type == Lexer::RightBrace || type == Lexer::RightBracket;
}

int closingOf(int opening)
{
    return opening == Lexer::LeftParen   ? Lexer::RightParen
           : opening == Lexer::LeftBrace ? Lexer::RightBrace
                                         : Lexer::RightBracket;
}

// Whether a value may end here, so that a sign behind it stands between two values.
bool endsValue(int type)
{
    switch (type) {
    case Lexer::Identifier:
    case Lexer::IntLiteral:
    case Lexer::FloatLiteral:
    case Lexer::StringLiteral:
    case Lexer::True:
    case Lexer::False:
    case Lexer::RightParen:
    case Lexer::RightBracket:
        return true;
    default:
        return false;
    }
}

// Operators that always stand between two values, and those that do so behind a value.
bool isBinary(int type, int before)
{
    switch (type) {
    case Lexer::Assign:
    case Lexer::Equal:
    case Lexer::NotEqual:
    case Lexer::Less:
    case Lexer::Greater:
    case Lexer::LessEqual:
    case Lexer::GreaterEqual:
    case Lexer::PlusAssign:
    case Lexer::MinusAssign:
    case Lexer::StarAssign:
    case Lexer::SlashAssign:
    case Lexer::And:
    case Lexer::Or:
    case Lexer::Question:
        return true;
    case Lexer::Plus:
    case Lexer::Minus:
    case Lexer::Star:
    case Lexer::Slash:
    case Lexer::Percent:
        return endsValue(before);
    default:
        return false;
    }
}

class Formatter
{
public:
    Formatter(const QString &source, const Indentation &indentation);
    QString run();

private:
    void readTokens();
    void markComments(int begin, int end);
    void readBrackets();
    int levelOf(int firstPiece, int endPiece) const;
    void enter(int level, int firstPiece, int endPiece);
    bool continuesExpression(int firstPiece) const;
    bool belongsToChoice(int colon) const;
    bool isBlankBetween(int begin, int end) const;
    Gap gapBetween(int index) const;
    QString contentOf(int firstPiece, int endPiece, int begin, int end) const;
    QString withoutTrailingBlanks(const QString &text) const;

    struct Open
    {
        int type;
        int level; // of the lines inside
    };

    const QString &m_source;
    Indentation m_indentation;
    QVector<int> m_lineStarts;
    QVector<bool> m_isVerbatim; // begins in a string or a comment
    QVector<Piece> m_pieces;
    QVector<Open> m_open;
    int m_firstUnjudged = INT_MAX; // line
};

Formatter::Formatter(const QString &source, const Indentation &indentation)
    : m_source(source), m_indentation(indentation)
{
    m_lineStarts.append(0);
    for (int i = 0; i < source.size(); ++i) {
        if (source.at(i) == QLatin1Char('\n'))
            m_lineStarts.append(i + 1);
    }
    m_isVerbatim.fill(false, m_lineStarts.size());
    readTokens();
    readBrackets();
}

void Formatter::readTokens()
{
    Lexer lexer(m_source);
    int end = 0;
    for (;;) {
        const Lexer::Token token = lexer.nextToken();
        if (token.type == Lexer::Newline)
            continue;
        const int line = token.line - 1;
        const int start = m_lineStarts.at(line) + token.column - 1;
        markComments(end, start);
        if (token.type == Lexer::EndOfFile)
            return;
        end = lexer.offset();
        int endLine = line;
        while (endLine + 1 < m_lineStarts.size() && m_lineStarts.at(endLine + 1) < end)
            m_isVerbatim[++endLine] = true;
        m_pieces.append({token.type, start, end, line, endLine});
    }
}

// Finds the lines that begin inside a block comment of the gap.
void Formatter::markComments(int begin, int end)
{
    const auto isAt = [&](int place, const char *sign) {
        return place + 1 < end && m_source.at(place) == QLatin1Char(sign[0]) &&
               m_source.at(place + 1) == QLatin1Char(sign[1]);
    };
    const auto isSlash = [&](int place) {
        return place < end &&
               (m_source.at(place) == QLatin1Char('/') || m_source.at(place) == QChar(u'／'));
    };
    int line = int(std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), begin) -
                   m_lineStarts.begin()) -
               1;
    int depth = 0;
    for (int i = begin; i < end; ++i) {
        if (m_source.at(i) == QLatin1Char('\n')) {
            ++line;
            m_isVerbatim[line] = depth > 0;
        } else if (depth == 0 && isSlash(i) && isSlash(i + 1)) {
            const int lineEnd = m_source.indexOf(QLatin1Char('\n'), i);
            i = (lineEnd < 0 ? end : qMin(lineEnd, end)) - 1;
        } else if (isAt(i, "/*")) {
            ++depth;
            ++i;
        } else if (depth > 0 && isAt(i, "*/")) {
            --depth;
            ++i;
        }
    }
}

// Finds the line from which on brackets do not match.
void Formatter::readBrackets()
{
    QVector<const Piece *> open;
    for (const Piece &piece : m_pieces) {
        if (isOpening(piece.type)) {
            open.append(&piece);
        } else if (isClosing(piece.type)) {
            if (open.isEmpty() || closingOf(open.last()->type) != piece.type) {
                m_firstUnjudged = open.isEmpty() ? piece.line : open.first()->line;
                return;
            }
            open.removeLast();
        }
    }
    if (!open.isEmpty())
        m_firstUnjudged = open.first()->line;
}

// A line that goes on with what the line above has left open.
bool Formatter::continuesExpression(int firstPiece) const
{
    if (firstPiece == 0 || (!m_open.isEmpty() && m_open.last().type != Lexer::LeftBrace))
        return false;
    const int before = m_pieces.at(firstPiece - 1).type;
    const int beforeThat = firstPiece > 1 ? m_pieces.at(firstPiece - 2).type : -1;
    return isBinary(before, beforeThat) || m_pieces.at(firstPiece).type == Lexer::Dot;
}

// The closing brackets at its beginning stand as deep as the line that opened the last of them.
int Formatter::levelOf(int firstPiece, int endPiece) const
{
    int piece = firstPiece;
    int depth = m_open.size();
    int level = m_open.isEmpty() ? 0 : m_open.last().level;
    for (; piece < endPiece && isClosing(m_pieces.at(piece).type) && depth > 0; ++piece)
        level = m_open.at(--depth).level - 1;
    if (piece == firstPiece && piece < endPiece && continuesExpression(firstPiece))
        ++level;
    return level;
}

void Formatter::enter(int level, int firstPiece, int endPiece)
{
    for (int i = firstPiece; i < endPiece; ++i) {
        const int type = m_pieces.at(i).type;
        if (isOpening(type))
            m_open.append({type, level + 1});
        else if (isClosing(type) && !m_open.isEmpty())
            m_open.removeLast();
    }
}

bool Formatter::isBlankBetween(int begin, int end) const
{
    for (int i = begin; i < end; ++i) {
        if (!m_source.at(i).isSpace())
            return false;
    }
    return true;
}

// Whether the colon follows a "?" on its line.
bool Formatter::belongsToChoice(int colon) const
{
    for (int i = colon - 1; i >= 0 && m_pieces.at(i).line == m_pieces.at(colon).line; --i) {
        if (m_pieces.at(i).type == Lexer::Question)
            return true;
        if (isOpening(m_pieces.at(i).type) || m_pieces.at(i).type == Lexer::Comma)
            return false;
    }
    return false;
}

// What stands between the piece and the one behind it, both on one line.
Gap Formatter::gapBetween(int index) const
{
    const int left = m_pieces.at(index).type;
    const int right = m_pieces.at(index + 1).type;
    const int beforeLeft = index > 0 ? m_pieces.at(index - 1).type : -1;
    if (left == Lexer::LeftParen || left == Lexer::LeftBracket || right == Lexer::RightParen ||
        right == Lexer::RightBracket || right == Lexer::Comma || right == Lexer::Semicolon)
        return Gap::None;
    if (left == Lexer::Comma || left == Lexer::Semicolon || left == Lexer::Colon ||
        right == Lexer::Else || right == Lexer::ElseIf)
        return Gap::Blank;
    if (isBinary(left, beforeLeft) || isBinary(right, left))
        return Gap::Blank;
    if (right == Lexer::Colon && belongsToChoice(index + 1))
        return Gap::Blank;
    const bool isSign = left == Lexer::Minus || left == Lexer::Plus;
    if (isSign && (endsValue(right) || right == Lexer::LeftParen))
        return Gap::None;
    if (right == Lexer::LeftBrace)
        return Gap::Blank;
    if (left == Lexer::Identifier && (right == Lexer::LeftParen || right == Lexer::Dot))
        return Gap::None;
    if (left == Lexer::Dot)
        return Gap::None;
    return Gap::Kept;
}

QString Formatter::withoutTrailingBlanks(const QString &text) const
{
    int size = text.size();
    while (size > 0 && text.at(size - 1).isSpace())
        --size;
    return text.left(size);
}

// The line's text without its indentation.
QString Formatter::contentOf(int firstPiece, int endPiece, int begin, int end) const
{
    QString text;
    bool isKept = false; // nothing is known about the signs around an unknown one
    for (int i = firstPiece; i < endPiece; ++i)
        isKept = isKept || m_pieces.at(i).type == Lexer::Error;
    int place = begin;
    for (int i = firstPiece; i < endPiece; ++i) {
        const Piece &piece = m_pieces.at(i);
        text += m_source.mid(place, qMin(piece.end, end) - place);
        place = qMin(piece.end, end);
        if (isKept || i + 1 >= endPiece)
            continue;
        const int next = m_pieces.at(i + 1).start;
        if (!isBlankBetween(place, next))
            continue;
        const Gap gap = gapBetween(i);
        if (gap == Gap::Blank || (gap == Gap::Kept && next > place))
            text += QLatin1Char(' ');
        place = next;
    }
    text += m_source.mid(place, end - place);
    const bool endsInString = endPiece > firstPiece && m_pieces.at(endPiece - 1).end > end;
    return endsInString ? text : withoutTrailingBlanks(text);
}

QString Formatter::run()
{
    QStringList lines;
    int piece = 0;
    const int count = m_lineStarts.size();
    for (int line = 0; line < count; ++line) {
        const int start = m_lineStarts.at(line);
        const int end = line + 1 < count ? m_lineStarts.at(line + 1) - 1 : m_source.size();
        const int firstPiece = piece;
        while (piece < m_pieces.size() && m_pieces.at(piece).line == line)
            ++piece;
        const QString whole = m_source.mid(start, end - start);
        const int level = levelOf(firstPiece, piece);
        enter(level, firstPiece, piece);
        const bool leavesOpen = line + 1 < count && m_isVerbatim.at(line + 1);
        if (m_isVerbatim.at(line)) {
            lines.append(whole);
            continue;
        }
        const int leading = leadingLength(whole);
        QString content = contentOf(firstPiece, piece, start + leading, end);
        // A comment that goes on below ends as it is.
        if (leavesOpen && (piece == firstPiece || m_pieces.at(piece - 1).end <= end))
            content = whole.mid(leading);
        const bool isJudged = line < m_firstUnjudged;
        const bool isSecondBlank = content.isEmpty() && !lines.isEmpty() &&
                                   lines.last().isEmpty() && !m_isVerbatim.at(line - 1);
        if (isJudged && isSecondBlank && !m_open.isEmpty())
            continue;
        const QString indent =
            isJudged ? m_indentation.leading(level * m_indentation.width) : whole.left(leading);
        lines.append(content.isEmpty() ? QString() : indent + content);
    }
    return lines.join(QLatin1Char('\n'));
}

bool haveSameTokens(const QString &one, const QString &other)
{
    const QList<Lexer::Token> left = Lexer(one).tokenize();
    const QList<Lexer::Token> right = Lexer(other).tokenize();
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](const Lexer::Token &a, const Lexer::Token &b) {
                          return a.type == b.type && a.text == b.text;
                      });
}

} // namespace

QString SourceFormatter::formatted(const QString &source, const Indentation &indentation)
{
    const QString text = Formatter(source, indentation).run();
    // Signs that nobody writes side by side may melt into others without the blank between them.
    return haveSameTokens(source, text) ? text : source;
}
