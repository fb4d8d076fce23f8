#include "driver/type_source.h"

#include "driver/build_messages.h"
#include "frontend/lexer.h"
#include "frontend/type_blocks.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {

// Nobody reads more of them.
constexpr int maxFaults = 100;

// Wide blanks are words of the language; beside type blocks they are blanks.
QList<Lexer::Token> visibleTokens(const QString &text)
{
    QList<Lexer::Token> tokens = Lexer(text).tokenize();
    const auto isBlank = [](const Lexer::Token &token) {
        return token.type == Lexer::Identifier && token.text.trimmed().isEmpty();
    };
    tokens.erase(std::remove_if(tokens.begin(), tokens.end(), isBlank), tokens.end());
    return tokens;
}

class TypeTranslator
{
public:
    TypeTranslator(const QString &text, TypeSourceKind kind)
        : m_lines(text.split(QLatin1Char('\n'))), m_tokens(visibleTokens(text)), m_kind(kind)
    {}

    TypeSource translate();

private:
    // Lines are counted from 0 in here.
    struct Block
    {
        int head;
        int brace;
        int last;
        bool hasHeadMember; // behind the opening brace
        bool isOneLine;
    };

    const Lexer::Token &token(int index) const
    {
        return m_tokens.at(qMin(index, m_tokens.size() - 1));
    }
    bool opensBlock(int index) const;
    int braceOf(int index) const;
    Block blockAt(int index, int brace) const;
    int readBlock(int index);
    void readOutside(int index);
    void convert(const Block &block);
    void place(const Block &block, const QStringList &converted);
    int skipBlock(int index, const Block &block);
    void fail(int line, const QString &text);
    void failIn(int firstLine, const QString &text);

    QStringList m_lines;
    const QList<Lexer::Token> m_tokens;
    const TypeSourceKind m_kind;
    int m_depth = 0;
    int m_strayLine = -1; // the last line looked at for what is no block
    bool m_hasStray = false;
    QList<TypeSource::Fault> m_faults;
};

const QString &blockWord()
{
    static const QString word = QStringLiteral("类型");
    return word;
}

void TypeTranslator::fail(int line, const QString &text)
{
    if (m_faults.size() < maxFaults)
        m_faults << TypeSource::Fault{line + 1, text};
}

// A fault that tells the line within a piece of the text that begins at `firstLine`.
void TypeTranslator::failIn(int firstLine, const QString &text)
{
    static const QRegularExpression number(QStringLiteral("^第 (\\d+) 行"));
    const QRegularExpressionMatch match = number.match(text);
    if (!match.hasMatch()) {
        fail(firstLine, text);
        return;
    }
    const int line = firstLine + match.captured(1).toInt() - 1;
    fail(line, QStringLiteral("第 %1 行").arg(line + 1) + text.mid(match.capturedEnd()));
}

// The word at the begin of a line, outside of braces.
bool TypeTranslator::opensBlock(int index) const
{
    const Lexer::Token &word = token(index);
    const QString text = word.text.trimmed();
    if (m_depth > 0 || word.type != Lexer::Identifier || !text.startsWith(blockWord()))
        return false;
    if (index > 0 && token(index - 1).line == word.line)
        return false;
    if (m_kind == TypeSourceKind::BlocksOnly)
        return true;
    if (text != blockWord() || token(index + 1).type == Lexer::LeftBrace)
        return token(index + 1).type == Lexer::LeftBrace;
    const Lexer::Token &behind = token(index + 2);
    const bool endsLine = behind.type == Lexer::EndOfFile || behind.line > word.line;
    return token(index + 1).line == word.line && (behind.type == Lexer::LeftBrace || endsLine);
}

// The token of the opening brace behind the name, -1 if there is none.
int TypeTranslator::braceOf(int index) const
{
    for (int at = index + 1; at <= index + 2; ++at) {
        if (token(at).type == Lexer::LeftBrace)
            return at;
    }
    return -1;
}

TypeTranslator::Block TypeTranslator::blockAt(int index, int brace) const
{
    Block block{token(index).line - 1, token(brace).line - 1, m_lines.size() - 1, false, false};
    const auto isOnBraceLine = [&](int at) {
        return token(at).type != Lexer::EndOfFile && token(at).line - 1 == block.brace;
    };
    block.hasHeadMember = isOnBraceLine(brace + 1) && token(brace + 1).type != Lexer::RightBrace;
    for (int at = brace + 1; isOnBraceLine(at); ++at) {
        if (token(at).type == Lexer::RightBrace) {
            block.isOneLine = true;
            block.last = block.brace;
            return block;
        }
    }
    for (int line = block.brace + 1; line < m_lines.size(); ++line) {
        if (m_lines.at(line).trimmed().startsWith(QLatin1Char('}'))) {
            block.last = line;
            break;
        }
    }
    return block;
}

// Puts the class lines where their members stood.
void TypeTranslator::place(const Block &block, const QStringList &converted)
{
    int next = 0;
    const auto take = [&] { return next < converted.size() ? converted.at(next++) : QString(); };
    for (int line = block.head; line <= block.last; ++line) {
        const QString original = m_lines.at(line).trimmed();
        QString &target = m_lines[line];
        target.clear();
        if (line == block.brace) {
            target = take();
            if (block.hasHeadMember)
                target += take();
            if (block.isOneLine)
                target += QLatin1String(" }");
        } else if (line > block.brace && original.startsWith(QLatin1Char('}'))) {
            target = QStringLiteral("}");
        } else if (line > block.brace && !original.isEmpty() &&
                   !original.startsWith(QLatin1String("//"))) {
            target = take();
        }
    }
}

void TypeTranslator::convert(const Block &block)
{
    const QStringList lines = m_lines.mid(block.head, block.last - block.head + 1);
    QString error;
    const QString converted = convertTypeBlocks(lines.join(QLatin1Char('\n')), &error);
    if (error.isEmpty())
        place(block, converted.split(QLatin1Char('\n')));
    else
        failIn(block.head, error);
}

// The first token behind the block, whose last line is its own.
int TypeTranslator::skipBlock(int index, const Block &block)
{
    bool isClosed = block.isOneLine; // a fault of that line is already told
    bool isTold = isClosed;
    for (; token(index).type != Lexer::EndOfFile && token(index).line - 1 <= block.last; ++index) {
        const Lexer::Token &at = token(index);
        if (at.line - 1 < block.last)
            continue;
        if (isClosed && !isTold && at.type != Lexer::Semicolon) {
            fail(block.last, BuildMessage::text(BuildMessage::textBehindBlock).arg(at.line));
            isTold = true;
        }
        isClosed = isClosed || at.type == Lexer::RightBrace;
    }
    return index;
}

int TypeTranslator::readBlock(int index)
{
    const int brace = braceOf(index);
    if (brace < 0) {
        const int line = token(index).line;
        fail(line - 1, BuildMessage::text(BuildMessage::blockWithoutBrace).arg(line));
        while (token(index).type != Lexer::EndOfFile && token(index).line == line)
            ++index;
        return index;
    }
    const Block block = blockAt(index, brace);
    convert(block);
    return skipBlock(index, block);
}

void TypeTranslator::readOutside(int index)
{
    if (token(index).type == Lexer::LeftBrace)
        ++m_depth;
    else if (token(index).type == Lexer::RightBrace && m_depth > 0)
        --m_depth;
    const int line = token(index).line - 1;
    if (m_kind == TypeSourceKind::WithClasses || m_hasStray || line == m_strayLine)
        return;
    // What looks like a comment to the translation may be the end of a string or a comment.
    m_strayLine = line;
    QString error;
    convertTypeBlocks(m_lines.at(line), &error);
    m_hasStray = !error.isEmpty();
    if (m_hasStray)
        failIn(line, error);
}

TypeSource TypeTranslator::translate()
{
    int index = 0;
    while (token(index).type != Lexer::EndOfFile) {
        if (opensBlock(index))
            index = readBlock(index);
        else
            readOutside(index++);
    }
    return {m_lines.join(QLatin1Char('\n')), m_faults};
}

} // namespace

TypeSource translateTypeSource(const QString &text, TypeSourceKind kind)
{
    return TypeTranslator(text, kind).translate();
}
