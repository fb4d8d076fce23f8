// The checks behind header_check.h.
#include "frontend/header_check.h"

#include "frontend/name_suggestion.h"

#include <QStringList>

namespace {

using Token = Lexer::Token;

constexpr int mostMessages = 20;

bool isFunctionWord(int type)
{
    return type == Lexer::Function || type == Lexer::Method;
}

// The index of the bracket that closes the one at `open`; -1 without one.
int closingParenthesis(const QList<Token> &tokens, int open)
{
    int depth = 0;
    for (int i = open; i < tokens.size(); ++i) {
        const int type = tokens.at(i).type;
        // A header does not go on behind a block.
        if (type == Lexer::LeftBrace || type == Lexer::RightBrace)
            return -1;
        depth += type == Lexer::LeftParen ? 1 : type == Lexer::RightParen ? -1 : 0;
        if (depth == 0)
            return i;
    }
    return -1;
}

// "名字 ( … ) {" where a statement begins.
bool opensBlock(const QList<Token> &tokens, int name)
{
    if (tokens.at(name).type != Lexer::Identifier || tokens.at(name + 1).type != Lexer::LeftParen)
        return false;
    // The name of a function may have dots.
    for (int i = name - 1; i >= 0; --i) {
        const int type = tokens.at(i).type;
        if (isFunctionWord(type))
            return false;
        if (type != Lexer::Dot && type != Lexer::Identifier)
            break;
    }
    const int close = closingParenthesis(tokens, name + 1);
    return close >= 0 && tokens.at(close + 1).type == Lexer::LeftBrace;
}

// "( … ) {" that no word of a statement leads.
bool isHeadless(const QList<Token> &tokens, int open)
{
    if (open == 0 || tokens.at(open).type != Lexer::LeftParen)
        return false;
    const Token &before = tokens.at(open - 1);
    const bool begins = before.type == Lexer::LeftBrace || before.type == Lexer::RightBrace;
    const int close = begins ? closingParenthesis(tokens, open) : -1;
    return close >= 0 && tokens.at(close + 1).type == Lexer::LeftBrace;
}

// "( )" that belongs to no name.
bool isLonelyPair(const QList<Token> &tokens, int open)
{
    if (open == 0 || tokens.at(open).type != Lexer::LeftParen ||
        tokens.at(open + 1).type != Lexer::RightParen)
        return false;
    switch (tokens.at(open - 1).type) {
    case Lexer::LeftBrace:
    case Lexer::RightBrace:
    case Lexer::Assign:
    case Lexer::Comma:
    case Lexer::LeftParen:
    case Lexer::Plus:
        return true;
    default:
        return tokens.at(open - 1).line < tokens.at(open).line;
    }
}

SourceMessage message(const Token &token, const QString &text)
{
    SourceMessage result;
    result.line = token.line;
    result.column = token.column;
    result.nearText = token.text;
    result.text = QStringLiteral("第 %1 行：").arg(token.line) + text;
    return result;
}

QString misspelledKeyword(const QString &word)
{
    static const QStringList headers{QStringLiteral("如果"),     QStringLiteral("否则如果"),
                                     QStringLiteral("循环"),     QStringLiteral("当"),
                                     QStringLiteral("计次循环"), QStringLiteral("遍历"),
                                     QStringLiteral("选择"),     QStringLiteral("否则")};
    const QString close = closestName(word, headers);
    return close.isEmpty()
               ? QStringLiteral(
                     "「%1」后面不能接 { }。带条件的语句要以 如果、否则如果、循环、当、遍历 "
                     "或 选择 开头。")
                     .arg(word)
               : QStringLiteral("「%1」后面不能接 { }（是否指 %2？）").arg(word, close);
}

} // namespace

QList<SourceMessage> checkHeaders(const QList<Token> &tokens)
{
    QList<SourceMessage> messages;
    for (int i = 0; i + 1 < tokens.size() && messages.size() < mostMessages; ++i) {
        const Token &token = tokens.at(i);
        const bool isNameless =
            token.type == Lexer::Function && tokens.at(i + 1).type != Lexer::Identifier;
        if (isNameless)
            messages << message(token,
                                QStringLiteral("“函数”后面缺少函数名，例如：函数 计算() { … }"));
        else if (isHeadless(tokens, i))
            messages << message(
                token, QStringLiteral("括号前面缺少 如果、否则如果、循环、当、遍历 或 选择"));
        else if (isLonelyPair(tokens, i))
            messages << message(token, QStringLiteral("括号前面缺少函数名、命令名或方法名"));
        else if (opensBlock(tokens, i))
            messages << message(token, misspelledKeyword(token.text));
    }
    return messages;
}
