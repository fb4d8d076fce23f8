#include "frontend/bracket_check.h"

#include "frontend/block_balance.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

using Token = Lexer::Token;

// More would be echoes of the first ones.
constexpr int mostMessages = 20;
constexpr int mostRepairs = 5;

enum class Bracket
{
    Round,
    Square,
    Curly,
};

struct BracketKind
{
    int open;
    int close;
    const char16_t *name;
    QChar openSign;
    QChar closeSign;
};

constexpr std::array<BracketKind, 3> bracketKinds{{
    {Lexer::LeftParen, Lexer::RightParen, u"括号", u'(', u')'},
    {Lexer::LeftBracket, Lexer::RightBracket, u"方括号", u'[', u']'},
    {Lexer::LeftBrace, Lexer::RightBrace, u"花括号", u'{', u'}'},
}};

const BracketKind &kindOf(Bracket bracket)
{
    return bracketKinds[size_t(bracket)];
}

// The bracket that a token opens or closes.
Bracket bracketOf(const Token &token)
{
    int index = 0;
    while (token.type != bracketKinds[size_t(index)].open &&
           token.type != bracketKinds[size_t(index)].close)
        ++index;
    return Bracket(index);
}

bool isOpening(int type)
{
    return type == Lexer::LeftParen || type == Lexer::LeftBracket || type == Lexer::LeftBrace;
}

bool isClosing(int type)
{
    return type == Lexer::RightParen || type == Lexer::RightBracket || type == Lexer::RightBrace;
}

bool isTypeName(int type)
{
    return type == Lexer::Var || (type >= Lexer::Int && type <= Lexer::Void);
}

// Behind it an expression has to go on.
bool asksForOperand(int type)
{
    return (type >= Lexer::And && type <= Lexer::Not) ||
           (type >= Lexer::Plus && type <= Lexer::SlashAssign) || type == Lexer::Ampersand ||
           type == Lexer::LeftParen || type == Lexer::LeftBracket || type == Lexer::Comma ||
           type == Lexer::Dot || type == Lexer::Question;
}

// Behind it an expression may end.
bool endsOperand(int type)
{
    return type == Lexer::True || type == Lexer::False || isClosing(type) || isTypeName(type) ||
           type == Lexer::PlusPlus || type == Lexer::MinusMinus ||
           (type >= Lexer::IntLiteral && type <= Lexer::Identifier);
}

// Words that begin a statement or a member, and never stand in an expression.
bool startsStatement(int type)
{
    return (type >= Lexer::If && type <= Lexer::Switch) ||
           (type >= Lexer::While && type <= Lexer::Private);
}

// Directly behind the end of an operand it belongs to something new.
bool startsOperand(int type)
{
    return type == Lexer::True || type == Lexer::False || isTypeName(type) ||
           startsStatement(type) || (type >= Lexer::IntLiteral && type <= Lexer::Identifier);
}

bool isElse(int type)
{
    return type == Lexer::Else || type == Lexer::ElseIf;
}

bool isRoutine(int type)
{
    return type == Lexer::Function || type == Lexer::Method;
}

// Words whose statement or declaration has a block.
bool startsHeader(int type)
{
    switch (type) {
    case Lexer::If:
    case Lexer::Else:
    case Lexer::ElseIf:
    case Lexer::Switch:
    case Lexer::While:
    case Lexer::Loop:
    case Lexer::ForEach:
    case Lexer::Function:
    case Lexer::Method:
    case Lexer::Class:
        return true;
    default:
        return false;
    }
}

// Headers behind which a statement without braces may stand.
bool mayLackBraces(int type)
{
    return type >= Lexer::If && type <= Lexer::ElseIf;
}

// One function or class, from its word to the next one: it has to match by itself.
class Section
{
public:
    // Of `tokens`, those from `begin` to `end`, which is not part of it.
    Section(const QList<Token> &tokens, int begin, int end);

    QList<SourceMessage> check();

private:
    // A bracket in an expression, or a "{" of values.
    struct Opened
    {
        Bracket bracket;
        int token;
        int indent;
        // The first token that looks as if it stood behind the missing partner; 0 without.
        int suspect = 0;
    };

    const Token &at(int index) const { return m_tokens.at(index); }
    bool startsLine(int index) const
    {
        return index == m_begin || at(index).line > at(index - 1).line;
    }

    bool endsLine(int index) const { return index + 1 == m_end || startsLine(index + 1); }

    void addEvent(BlockEvent::Kind kind, int index, int column, bool goesOn = false)
    {
        m_events.append({kind, index, at(index).line, column, goesOn});
    }

    void read(int index);
    void readLineStart(int index);
    void suspectAll(int index);
    void readHeader(int index);
    bool isLiteralBrace(int index) const;
    void open(int index);
    void closeExpression(int index);
    int mistakesBehind(int index, QVector<Bracket> stack) const;
    bool settleMismatch(Bracket bracket, int index, bool mayEndBlock);
    void closeUpTo(Bracket bracket, int index);
    void closeBrace(int index);
    bool closesLiteral(int index) const;
    void abandonExpressions(int index);
    void repairAllBlocks();

    void report(int index, int line, int column, const QString &text);
    void reportUnclosed(const Opened &opened, int index);
    void reportWrongKind(const Opened &opened, int index);
    void reportSurplus(int index);
    void reportUnclosedBlock(const BlockRepair &repair);
    void reportMissingOpen(int index);

    const QList<Token> &m_tokens;
    int m_begin;
    int m_end;
    QList<SourceMessage> m_messages;
    QVector<Opened> m_opened;  // of the statement
    QVector<int> m_blockLines; // of the open blocks
    QVector<BlockEvent> m_events;
    int m_indent = 1;     // of the statement
    int m_lineColumn = 1; // where the line begins
    int m_header = -1;    // a word that waits for its block
    int m_headerEnd = -1; // its ")"
    int m_headerIndent = 1;
};

Section::Section(const QList<Token> &tokens, int begin, int end)
    : m_tokens(tokens), m_begin(begin), m_end(end)
{}

QList<SourceMessage> Section::check()
{
    for (int index = m_begin; index < m_end && m_messages.size() < mostMessages; ++index)
        read(index);
    abandonExpressions(m_end);
    addEvent(BlockEvent::End, m_end, 0);
    repairAllBlocks();
    return m_messages;
}

void Section::read(int index)
{
    const int type = at(index).type;
    if (startsLine(index))
        readLineStart(index);
    else if (m_header >= 0 && m_headerEnd == index - 1 && type != Lexer::LeftBrace &&
             !isRoutine(at(m_header).type))
        addEvent(BlockEvent::Header, index, m_headerIndent);
    if (isOpening(type))
        open(index);
    else if (type == Lexer::RightBrace)
        closeBrace(index);
    else if (isClosing(type))
        closeExpression(index);
    else if (startsHeader(type) && m_opened.isEmpty())
        readHeader(index);
}

void Section::readHeader(int index)
{
    m_header = index;
    m_headerIndent = m_indent;
    m_headerEnd = at(index).type == Lexer::Else ? index : -1;
}

void Section::readLineStart(int index)
{
    const int type = at(index).type;
    const int before = index > m_begin ? at(index - 1).type : int(Lexer::EndOfFile);
    m_lineColumn = at(index).column;
    if (!m_opened.isEmpty()) {
        if (endsOperand(before) && startsOperand(type))
            suspectAll(index);
        return;
    }
    if (asksForOperand(before))
        return;
    m_indent = m_lineColumn;
    if (type == Lexer::LeftBrace && m_header >= 0)
        return;
    const bool lacksBlock =
        m_header >= 0 && (!mayLackBraces(at(m_header).type) || m_headerEnd == index - 1);
    if (lacksBlock)
        addEvent(BlockEvent::Header, index, m_headerIndent);
    m_header = -1;
    if (type == Lexer::Property || type == Lexer::Method)
        addEvent(BlockEvent::Member, index, m_indent);
    else if (isElse(type) && before != Lexer::RightBrace)
        addEvent(BlockEvent::Branch, index, m_indent);
    else if (type != Lexer::RightBrace)
        addEvent(BlockEvent::Line, index, m_indent);
}

// Where one has its suspect, those below have theirs too.
void Section::suspectAll(int index)
{
    for (int i = m_opened.size() - 1; i >= 0 && m_opened.at(i).suspect == 0; --i)
        m_opened[i].suspect = index;
}

// Whether the "{" holds values: it stands where an operand has to.
bool Section::isLiteralBrace(int index) const
{
    if (index == m_begin)
        return false;
    const int before = at(index - 1).type;
    const bool isInHeader = m_header >= 0 && m_opened.size() == 1;
    if (isInHeader && (isRoutine(at(m_header).type) || endsLine(index)))
        return false;
    const bool isInValues = m_header < 0 && !m_opened.isEmpty() && !endsLine(index);
    if (isInValues || asksForOperand(before))
        return true;
    if (before == Lexer::Return)
        return startsLine(index - 1);
    return !m_opened.isEmpty() && (before == Lexer::Colon || before == Lexer::LeftBrace);
}

void Section::open(int index)
{
    if (at(index).type != Lexer::LeftBrace || isLiteralBrace(index)) {
        m_opened.append({bracketOf(at(index)), index, m_indent});
        return;
    }
    abandonExpressions(index);
    m_header = -1;
    m_blockLines.append(at(index).line);
    addEvent(BlockEvent::Open, index, m_indent, !endsLine(index));
}

// A ")" or "]".
void Section::closeExpression(int index)
{
    const Bracket bracket = bracketOf(at(index));
    if (m_opened.isEmpty())
        reportSurplus(index);
    else if (m_opened.last().bracket == bracket)
        m_opened.removeLast();
    else
        settleMismatch(bracket, index, false);
    if (m_opened.isEmpty() && m_header >= 0 && m_headerEnd < 0)
        m_headerEnd = index;
}

// The mistakes that the rest of the line shows when the brackets of `stack` are open.
int Section::mistakesBehind(int index, QVector<Bracket> stack) const
{
    int mistakes = 0;
    for (int i = index + 1; i < m_end && !startsLine(i); ++i) {
        const int type = at(i).type;
        if (isOpening(type))
            stack.append(bracketOf(at(i)));
        else if (isClosing(type) && !stack.isEmpty() && stack.last() == bracketOf(at(i)))
            stack.removeLast();
        else if (isClosing(type))
            ++mistakes;
    }
    return mistakes + stack.size();
}

// The token closes another bracket than the one that is open: those between may lack their
// partners, it may be too much, or stand in the place of another one. What leaves the fewest
// mistakes in the line is taken to be so. A "}" may end the block, too; false if it does.
bool Section::settleMismatch(Bracket bracket, int index, bool mayEndBlock)
{
    // Whatever has a suspect, this is not its partner, unless there is nothing else.
    QVector<Bracket> stack;
    for (const Opened &opened : qAsConst(m_opened)) {
        if (opened.suspect > 0 && m_opened.last().suspect == 0)
            stack.clear();
        else
            stack.append(opened.bracket);
    }
    const int outer = stack.lastIndexOf(bracket);
    const int none = std::numeric_limits<int>::max();
    const int forgotten =
        outer < 0 ? none : stack.size() - 1 - outer + mistakesBehind(index, stack.mid(0, outer));
    const int ended = mayEndBlock ? stack.size() + mistakesBehind(index, {}) : none;
    const int surplus = 1 + mistakesBehind(index, stack);
    const int wrongKind = 1 + mistakesBehind(index, stack.mid(0, stack.size() - 1));
    const int least = std::min({forgotten, ended, surplus, wrongKind});
    if (forgotten == least) {
        closeUpTo(bracket, index);
    } else if (ended == least) {
        return false;
    } else if (surplus == least) {
        reportSurplus(index);
    } else {
        reportWrongKind(m_opened.last(), index);
        m_opened.removeLast();
    }
    return true;
}

// Closes the topmost of the kind, and those above.
void Section::closeUpTo(Bracket bracket, int index)
{
    while (m_opened.last().bracket != bracket) {
        reportUnclosed(m_opened.last(), index);
        m_opened.removeLast();
    }
    m_opened.removeLast();
}

// Whether a "}" ends the values of an open "{" and not the block around the statement.
bool Section::closesLiteral(int index) const
{
    const auto literal =
        std::find_if(m_opened.crbegin(), m_opened.crend(),
                     [](const Opened &opened) { return opened.bracket == Bracket::Curly; });
    if (literal == m_opened.crend())
        return false;
    return literal->suspect == 0 || !startsLine(index) || at(index).column >= literal->indent;
}

void Section::closeBrace(int index)
{
    if (closesLiteral(index)) {
        closeUpTo(Bracket::Curly, index);
        return;
    }
    // A "}" behind an index or values in the line is hardly that of a block that began above.
    const bool isInLine = !m_opened.isEmpty() && !startsLine(index) &&
                          (m_blockLines.isEmpty() || m_blockLines.last() < at(index).line);
    const bool mayEndBlock = !isInLine || m_opened.last().bracket != Bracket::Square;
    if (isInLine && settleMismatch(Bracket::Curly, index, mayEndBlock))
        return;
    abandonExpressions(index);
    if (!m_blockLines.isEmpty())
        m_blockLines.removeLast();
    addEvent(BlockEvent::Close, index, startsLine(index) ? at(index).column : 0);
}

// The statement has ended, so its open brackets never close.
void Section::abandonExpressions(int index)
{
    for (const Opened &opened : qAsConst(m_opened))
        reportUnclosed(opened, index);
    if (!m_opened.isEmpty() && m_opened.first().suspect > 0) {
        const int suspect = m_opened.first().suspect;
        addEvent(BlockEvent::Line, suspect, at(suspect).column);
        m_indent = m_lineColumn;
    }
    m_opened.clear();
}

void Section::repairAllBlocks()
{
    const QVector<BlockRepair> repairs = repairBlocks(m_events, mostRepairs);
    for (const BlockRepair &repair : repairs) {
        const int token = m_events.at(repair.event).token;
        switch (repair.kind) {
        case BlockRepair::AddClose:
            reportUnclosedBlock(repair);
            break;
        case BlockRepair::RemoveIt:
            reportSurplus(token);
            break;
        case BlockRepair::AddOpen:
            reportMissingOpen(token);
            break;
        }
    }
}

void Section::report(int index, int line, int column, const QString &text)
{
    if (m_messages.size() >= mostMessages)
        return;
    const QString nearText = at(index).line == line ? at(index).text : QString();
    m_messages.append({line, column, nearText, QStringLiteral("第 %1 行：").arg(line) + text});
}

// The partner is missing ahead of the suspect, else ahead of the token `index`. The lonely bracket
// itself says more than that place, if it is near.
void Section::reportUnclosed(const Opened &opened, int index)
{
    const Token &bracket = at(opened.token);
    const int last = (opened.suspect > 0 ? opened.suspect : index) - 1;
    const int line = at(last).line;
    const int shown = bracket.line == line ? opened.token : last;
    const BracketKind &kind = kindOf(opened.bracket);
    report(shown, line, at(shown).column,
           QStringLiteral("缺少右%1 '%2'，第 %3 行的 '%4' 没有配对")
               .arg(QString::fromUtf16(kind.name), kind.closeSign, QString::number(bracket.line),
                    kind.openSign));
}

void Section::reportWrongKind(const Opened &opened, int index)
{
    const BracketKind &given = kindOf(bracketOf(at(index)));
    const BracketKind &wanted = kindOf(opened.bracket);
    report(index, at(index).line, at(index).column,
           QStringLiteral("右%1 '%2' 与第 %3 行的 '%4' 不配对，此处应为 '%5'")
               .arg(QString::fromUtf16(given.name), given.closeSign,
                    QString::number(at(opened.token).line), wanted.openSign, wanted.closeSign));
}

void Section::reportSurplus(int index)
{
    const BracketKind &kind = kindOf(bracketOf(at(index)));
    const bool isClose = isClosing(at(index).type);
    report(index, at(index).line, at(index).column,
           QStringLiteral("多余的%1%2 '%3'，没有与它配对的 '%4'")
               .arg(isClose ? QStringLiteral("右") : QStringLiteral("左"),
                    QString::fromUtf16(kind.name), isClose ? kind.closeSign : kind.openSign,
                    isClose ? kind.openSign : kind.closeSign));
}

// In the blank line behind the block's content, else at the content's end.
void Section::reportUnclosedBlock(const BlockRepair &repair)
{
    const BlockEvent &opener = m_events.at(repair.opener);
    const int next = m_events.at(repair.event).token;
    const Token &last = at(next - 1);
    const bool isEnd = at(next).type == Lexer::EndOfFile;
    const bool hasBlankLine = at(next).line > last.line + (isEnd ? 0 : 1);
    const QString text =
        QStringLiteral("缺少右花括号 '}'，第 %1 行的 '{' 没有配对").arg(at(opener.token).line);
    if (hasBlankLine)
        report(next, last.line + 1, opener.column, text);
    else
        report(next - 1, last.line, last.column, text);
}

void Section::reportMissingOpen(int index)
{
    const Token &last = at(index - 1);
    report(index - 1, last.line, last.column,
           QStringLiteral("缺少左花括号 '{'，代码块需要用花括号包围"));
}

// Where the sections of the tokens begin, and the end.
QVector<int> sectionsOf(const QList<Token> &tokens)
{
    QVector<int> begins{0};
    const int end = tokens.size() - 1;
    int column = std::numeric_limits<int>::max();
    for (int i = 0; i < end; ++i) {
        const Token &token = tokens.at(i);
        const bool isFirst = i == 0 || tokens.at(i - 1).line < token.line;
        const bool isWord = token.type == Lexer::Function || token.type == Lexer::Class;
        if (!isFirst || !isWord || token.column > column)
            continue;
        column = token.column;
        if (i > 0)
            begins.append(i);
    }
    begins.append(end);
    return begins;
}

} // namespace

bool bracketsMatch(const QList<Lexer::Token> &tokens)
{
    QVector<Bracket> opened;
    for (const Token &token : tokens) {
        if (isOpening(token.type)) {
            opened.append(bracketOf(token));
        } else if (isClosing(token.type)) {
            if (opened.isEmpty() || opened.takeLast() != bracketOf(token))
                return false;
        }
    }
    return opened.isEmpty();
}

QList<SourceMessage> checkBrackets(const QList<Lexer::Token> &tokens)
{
    QList<SourceMessage> messages;
    if (bracketsMatch(tokens))
        return messages;
    const QVector<int> begins = sectionsOf(tokens);
    for (int i = 0; i + 1 < begins.size() && messages.size() < mostMessages; ++i)
        messages += Section(tokens, begins.at(i), begins.at(i + 1)).check();
    std::stable_sort(messages.begin(), messages.end(),
                     [](const SourceMessage &left, const SourceMessage &right) {
                         return left.line < right.line;
                     });
    return messages;
}
