// Statements: blocks, branches, loops and jumps.
#include "frontend/metadata.h"
#include "frontend/parser.h"
#include "frontend/parser_messages.h"
#include "frontend/type_words.h"

#include <QScopedValueRollback>

namespace {

// The first assignment in the tree, null without one. Trees can be high, so this does not recurse.
const Parser::ASTNode *findAssignment(const Parser::ASTNode &root)
{
    std::vector<const Parser::ASTNode *> pending{&root};
    while (!pending.empty()) {
        const Parser::ASTNode *node = pending.back();
        pending.pop_back();
        if (node->type == Parser::Assign)
            return node;
        pending.insert(pending.end(), node->children.crbegin(), node->children.crend());
    }
    return nullptr;
}

// Whether a loop header's first expression makes it a loop on a condition. "!甲" does not.
bool isLoopCondition(const Parser::ASTNode &node)
{
    static const QStringList operators{
        QStringLiteral("<"),  QStringLiteral(">"),  QStringLiteral("<="), QStringLiteral(">="),
        QStringLiteral("=="), QStringLiteral("!="), QStringLiteral("&&"), QStringLiteral("||")};
    return node.type == Parser::Ternary ||
           (node.type == Parser::Binary && operators.contains(node.value));
}

// Null for a header without any expression.
QString loopTypeOf(const QList<Parser::ASTNode *> &header)
{
    switch (header.size()) {
    case 0:
        return QString();
    case 1:
        return isLoopCondition(*header.first()) ? Meta::loopWhileCond : Meta::loopCount;
    case 2:
        return isLoopCondition(*header.first()) ? Meta::loopWhileCond : Meta::loopCountVar;
    case 3:
        return Meta::loopRange;
    default:
        return Meta::loopRangeStep;
    }
}

bool startsLoopVariable(int tokenKind)
{
    return tokenKind == Lexer::Var || isTypeWord(tokenKind, TypePlace::FunctionParameter);
}

} // namespace

// block: "{" { declarations | statement } "}"
Parser::Node Parser::parseBlock()
{
    Node block = newNode(Block);
    expect(Lexer::LeftBrace, ParserMessage::ExpectedOpenBrace);
    while (!at(Lexer::RightBrace) && !at(Lexer::EndOfFile)) {
        if (startsDeclaration(kind())) {
            NodeList declared = parseDeclarations(Commas::Allowed);
            if (!declared.empty()) {
                append(block.get(), std::move(declared));
                continue;
            }
        }
        Node statement = parseStatement();
        if (statement)
            append(block.get(), std::move(statement));
        else
            advance();
    }
    expect(Lexer::RightBrace, ParserMessage::ExpectedCloseBrace);
    return block;
}

// body: block | statement
Parser::Node Parser::parseBody()
{
    if (at(Lexer::LeftBrace))
        return parseBlock();
    Node block = newNode(Block);
    append(block.get(), parseStatement());
    return block;
}

// Every way in which statements contain each other leads through here, so that this is where their
// depth is limited.
Parser::Node Parser::parseStatement()
{
    if (m_statementDepth >= ParserLimits::nestedStatements)
        return refuseStatement();
    const QScopedValueRollback<int> nesting(m_statementDepth, m_statementDepth + 1);
    return dispatchStatement();
}

Parser::Node Parser::dispatchStatement()
{
    if (startsDeclaration(kind()))
        return parseDeclaration();
    switch (kind()) {
    case Lexer::Array:
        return parseArrayDeclaration();
    case Lexer::If:
        return parseIf();
    case Lexer::Switch:
        return parseSwitch();
    case Lexer::While:
        return parseWhile();
    case Lexer::Loop:
        return parseLoop();
    case Lexer::ForEach:
        return parseForEach();
    case Lexer::Break:
        return parseJump(Break);
    case Lexer::Continue:
        return parseJump(Continue);
    case Lexer::Function:
        return parseFunction();
    case Lexer::Return:
        return parseReturn();
    case Lexer::Class:
        return parseClass();
    case Lexer::LeftBrace:
        return parseBlock();
    default:
        return atClassName() ? parseClassInstance() : parseExpressionStatement();
    }
}

// Passes over the rest of the block that nests too deep, and gives an empty one in its place. At
// the end of the file all further messages would only be echoes.
Parser::Node Parser::refuseStatement()
{
    Node empty = newNode(Block);
    report(ParserMessage::NestingTooDeep);
    skipToClosingBrace();
    if (at(Lexer::EndOfFile))
        m_muted = true;
    return empty;
}

// To the brace that closes the block around the current token.
void Parser::skipToClosingBrace()
{
    int depth = 0;
    for (; !at(Lexer::EndOfFile); advance()) {
        if (at(Lexer::LeftBrace))
            ++depth;
        else if (at(Lexer::RightBrace) && depth-- == 0)
            return;
    }
}

// An expression that is not just a name.
Parser::Node Parser::parseExpressionStatement()
{
    const int start = m_position;
    Node statement = newNode(ExprStmt);
    Node expression = parseExpression();
    if (!expression) {
        if (m_position == start) {
            report(ParserMessage::UnparsableToken, {current().text});
            advance();
        }
        return nullptr;
    }
    const bool endsHere =
        at(Lexer::Semicolon) || at(Lexer::Newline) || at(Lexer::EndOfFile) || at(Lexer::RightBrace);
    if (expression->type == Identifier && endsHere) {
        rejectLoneIdentifier(*expression);
        return nullptr;
    }
    append(statement.get(), std::move(expression));
    return statement;
}

void Parser::rejectLoneIdentifier(const ASTNode &identifier)
{
    reportNode(identifier, identifier.line, ParserMessage::LoneIdentifier, {identifier.value});
    if (!match(Lexer::Semicolon))
        match(Lexer::Newline);
}

// if: "如果" branch { "否则如果" branch } [ "否则" body ]
Parser::Node Parser::parseIf()
{
    Node node = newNode(If);
    parseBranch(node.get());
    for (int links = 0; at(Lexer::ElseIf); ++links) {
        Node elseIf = newUnlinedNode(If);
        if (links == ParserLimits::elseIfChain)
            report(ParserMessage::NestingTooDeep);
        parseBranch(elseIf.get());
        if (links < ParserLimits::elseIfChain)
            append(node.get(), std::move(elseIf));
    }
    if (match(Lexer::Else)) {
        Node body = parseBody();
        body->metadata.insert(Meta::isElse, Meta::flagOn);
        append(node.get(), std::move(body));
    }
    return node;
}

// branch: "(" condition ")" body, behind its keyword
void Parser::parseBranch(ASTNode *node)
{
    advance();
    parseCondition(node);
    append(node, parseBody());
}

void Parser::parseCondition(ASTNode *node)
{
    expect(Lexer::LeftParen, ParserMessage::ExpectedOpenParen);
    Node condition = parseExpression();
    const ASTNode *assignment = condition ? findAssignment(*condition) : nullptr;
    if (assignment)
        reportNode(*assignment, condition->line, ParserMessage::AssignmentInCondition);
    append(node, std::move(condition));
    expect(Lexer::RightParen, ParserMessage::ExpectedCloseParen);
}

// switch: "选择" "(" expression ")" "{" { label } "}"
Parser::Node Parser::parseSwitch()
{
    Node node = newNode(Switch);
    advance();
    expect(Lexer::LeftParen, ParserMessage::ExpectedOpenParen);
    append(node.get(), parseExpression());
    expect(Lexer::RightParen, ParserMessage::ExpectedCloseParen);
    expect(Lexer::LeftBrace, ParserMessage::ExpectedOpenBrace);
    while (!at(Lexer::RightBrace) && !at(Lexer::EndOfFile)) {
        const int start = m_position;
        Node label = parseSwitchLabel();
        if (m_position == start)
            skipToClosingBrace();
        else
            append(node.get(), std::move(label));
    }
    expect(Lexer::RightBrace, ParserMessage::ExpectedCloseBrace);
    return node;
}

// label: value ":" [ block ]. On a token that is no value it does not move.
Parser::Node Parser::parseSwitchLabel()
{
    Node label = newNode(Case);
    parseLabelValue(label.get());
    expect(Lexer::Colon, ParserMessage::ExpectedColon);
    if (at(Lexer::LeftBrace))
        append(label.get(), parseBlock());
    return label;
}

// value: "默认" | "#" as a string | literal | expression, of which only the text is kept
void Parser::parseLabelValue(ASTNode *label)
{
    const Lexer::Token &token = current();
    switch (token.type) {
    case Lexer::Default:
        label->type = Default;
        break;
    case Lexer::StringLiteral:
        if (token.text == QLatin1String("#")) {
            label->type = Default;
            break;
        }
        label->value = token.text;
        label->metadata.insert(Meta::literalType, Meta::literalString);
        break;
    case Lexer::IntLiteral:
    case Lexer::FloatLiteral:
        label->value = token.text;
        label->metadata.insert(Meta::literalType, token.type == Lexer::IntLiteral
                                                      ? Meta::literalInt
                                                      : Meta::literalDouble);
        break;
    default:
        if (Node value = parseExpression()) {
            label->value = value->value;
            if (value->metadata.contains(Meta::literalType))
                label->metadata.insert(Meta::literalType, value->metadata[Meta::literalType]);
            label->label = value.release();
        }
        return;
    }
    advance();
}

// while: "当" "(" condition ")" block
Parser::Node Parser::parseWhile()
{
    Node node = newUnlinedNode(While);
    advance();
    parseCondition(node.get());
    append(node.get(), parseBlock());
    return node;
}

// loop: "循环" "(" header ")" block
Parser::Node Parser::parseLoop()
{
    Node loop = newNode(Loop);
    advance();
    expect(Lexer::LeftParen, ParserMessage::MissingOpenParen);
    if (isCStyleHeader())
        parseCStyleHeader(loop.get());
    else
        parseListHeader(loop.get());
    expect(Lexer::RightParen, ParserMessage::MissingCloseParen);
    append(loop.get(), parseBlock());
    return loop;
}

// Whether a semicolon comes in the parentheses around the current token. All answers of a file are
// found in one pass, or headers without an end would be read again and again.
bool Parser::isCStyleHeader()
{
    if (m_semicolonAhead.empty()) {
        m_semicolonAhead.resize(size_t(m_tokens.size()) + 1);
        std::vector<bool> behindParentheses;
        bool ahead = false;
        for (int i = m_tokens.size() - 1; i >= 0; --i) {
            switch (m_tokens.at(i).type) {
            case Lexer::Semicolon:
                ahead = true;
                break;
            case Lexer::RightParen:
                behindParentheses.push_back(ahead);
                ahead = false;
                break;
            case Lexer::LeftParen:
                ahead = !behindParentheses.empty() && behindParentheses.back();
                if (!behindParentheses.empty())
                    behindParentheses.pop_back();
                break;
            default:
                break;
            }
            m_semicolonAhead[size_t(i)] = ahead;
        }
    }
    return m_semicolonAhead[size_t(m_position)];
}

// header: [ declaration | expression ] ";" [ expression ] ";" [ expression ]
void Parser::parseCStyleHeader(ASTNode *loop)
{
    loop->metadata.insert(Meta::loopType, Meta::loopCStyle);
    append(loop, startsLoopVariable(kind()) ? parseDeclaration() : parseExpression());
    expect(Lexer::Semicolon, ParserMessage::MissingSemicolon);
    append(loop, parseExpression());
    expect(Lexer::Semicolon, ParserMessage::MissingSemicolon);
    append(loop, parseExpression());
}

// header: expression { "," expression }, four at most
void Parser::parseListHeader(ASTNode *loop)
{
    constexpr int most = 4;
    int count = 0;
    do
        append(loop, parseExpression());
    while (++count < most && match(Lexer::Comma));
    const QString loopType = loopTypeOf(loop->children);
    if (!loopType.isNull())
        loop->metadata.insert(Meta::loopType, loopType);
}

// foreach: "遍历" "(" expression "," name "," name ")" block
Parser::Node Parser::parseForEach()
{
    Node loop = newNode(ForEach);
    advance();
    expect(Lexer::LeftParen, ParserMessage::MissingOpenParen);
    append(loop.get(), parseExpression());
    expect(Lexer::Comma, ParserMessage::MissingComma);
    if (!at(Lexer::Identifier)) {
        report(ParserMessage::MissingIndexVariable);
        return loop;
    }
    loop->metadata.insert(Meta::indexVar, current().text);
    advance();
    expect(Lexer::Comma, ParserMessage::MissingComma);
    if (!at(Lexer::Identifier)) {
        report(ParserMessage::MissingElementVariable);
        return loop;
    }
    loop->metadata.insert(Meta::elementVar, current().text);
    advance();
    expect(Lexer::RightParen, ParserMessage::MissingCloseParen);
    append(loop.get(), parseBlock());
    return loop;
}

// return: "返回" [ "(" [ expression ] ")" | expression ]. Line ends do not count: a bare "返回"
// takes the expression on the next line.
Parser::Node Parser::parseReturn()
{
    Node node = newNode(Return);
    advance();
    if (match(Lexer::LeftParen)) {
        if (!at(Lexer::RightParen))
            append(node.get(), parseExpression());
        expect(Lexer::RightParen, ParserMessage::ExpectedCloseParen);
    } else if (!at(Lexer::RightBrace) && !at(Lexer::EndOfFile)) {
        append(node.get(), parseExpression());
    }
    return node;
}

// jump: ("跳出" | "继续") [ "(" ")" ]
Parser::Node Parser::parseJump(int nodeType)
{
    Node node = newUnlinedNode(nodeType);
    advance();
    if (match(Lexer::LeftParen))
        expect(Lexer::RightParen, ParserMessage::ExpectedCloseParen);
    return node;
}
