// The parser's core: token access, messages, file scope and recovery.
#include "frontend/parser.h"

#include "frontend/parser_messages.h"
#include "frontend/type_words.h"

#include <algorithm>

namespace {

constexpr int stallLimit = 100;

// Where parsing can start again after an item that failed.
bool isRecoveryPoint(const Lexer::Token &token)
{
    switch (token.type) {
    case Lexer::EndOfFile:
    case Lexer::If:
    case Lexer::While:
    case Lexer::Loop:
    case Lexer::Function:
    case Lexer::Return:
    case Lexer::Var:
    case Lexer::Class:
    case Lexer::Property:
    case Lexer::Method:
    case Lexer::Int:
    case Lexer::Double:
    case Lexer::Float:
    case Lexer::Text:
    case Lexer::Bool:
    case Lexer::Array:
    case Lexer::ByteArray:
    case Lexer::RightBrace:
        return true;
    case Lexer::Identifier:
        return token.text == QStringLiteral("全局");
    default:
        return false;
    }
}

} // namespace

// Trees can be higher than the stack is deep, so deletion does not recurse.
Parser::ASTNode::~ASTNode()
{
    delete label;
    QList<ASTNode *> pending;
    pending.swap(children);
    while (!pending.isEmpty()) {
        ASTNode *node = pending.takeLast();
        pending.append(node->children);
        node->children.clear();
        delete node;
    }
}

Parser::ASTNode *Parser::parse(const QList<Lexer::Token> &tokens)
{
    m_tokens = tokens;
    m_position = 0;
    m_errors.clear();
    m_depth = 0;
    m_statementDepth = 0;
    m_muted = false;
    m_semicolonAhead.clear();
    preScan(m_tokens);
    Node program(new ASTNode(Program));
    parseFile(program.get());
    return program.release();
}

const Lexer::Token &Parser::current() const
{
    return m_position < m_tokens.size() ? m_tokens.at(m_position) : m_endToken;
}

// The token behind the current one.
const Lexer::Token &Parser::peek() const
{
    return m_position + 1 < m_tokens.size() ? m_tokens.at(m_position + 1) : m_endToken;
}

void Parser::advance()
{
    if (m_position < m_tokens.size())
        ++m_position;
}

bool Parser::match(int tokenKind)
{
    if (!at(tokenKind))
        return false;
    advance();
    return true;
}

// Reports and stays where it is if the current token is another one.
bool Parser::expect(int tokenKind, ParserMessage message)
{
    if (match(tokenKind))
        return true;
    report(message);
    return false;
}

void Parser::skipNewlines()
{
    while (match(Lexer::Newline)) {
    }
}

// A message with line, place and hint. `line` is that of the current token if negative.
void Parser::report(ParserMessage message, std::initializer_list<QString> arguments, int line)
{
    if (isMuted())
        return;
    const Lexer::Token &token = current();
    const QString sentence = messageText(message, arguments);
    const int shownLine = line < 0 ? token.line : line;
    appendMessage(m_friendlyErrors ? friendlyText(sentence, shownLine, token.text)
                                   : plainText(sentence, shownLine, token.text));
}

// A message as its sentence stands.
void Parser::appendPlain(ParserMessage message, std::initializer_list<QString> arguments)
{
    if (!isMuted())
        appendMessage(messageText(message, arguments));
}

void Parser::appendMessage(const QString &text)
{
    const bool isFull = m_errors.size() >= ParserLimits::messages;
    m_errors.append(isFull ? messageText(ParserMessage::TooManyMessages) : text);
}

// A missing child leaves no gap.
void Parser::append(ASTNode *parent, Node child)
{
    if (child)
        parent->children.append(child.release());
}

void Parser::append(ASTNode *parent, NodeList children)
{
    for (Node &child : children)
        append(parent, std::move(child));
}

// file: { declarations | item }
void Parser::parseFile(ASTNode *program)
{
    int lastPosition = -1;
    int stall = 0;
    while (!at(Lexer::EndOfFile)) {
        if (m_position == lastPosition) {
            if (++stall > stallLimit) {
                report(ParserMessage::Stalled, {current().text});
                return;
            }
            advance();
            continue;
        }
        lastPosition = m_position;
        stall = 0;
        if (startsDeclaration(kind())) {
            NodeList declared = parseDeclarations(Commas::Allowed);
            if (!declared.empty()) {
                append(program, std::move(declared));
                continue;
            }
        }
        Node item = parseTopLevelItem();
        if (item)
            append(program, std::move(item));
        else
            recover();
    }
}

// item: declaration | array | function | class | instance | "全局" declaration
Parser::Node Parser::parseTopLevelItem()
{
    if (m_position < 0 || m_position >= m_tokens.size()) {
        report(ParserMessage::PositionOutside,
               {QString::number(m_position), QString::number(m_tokens.size())});
        return nullptr;
    }
    if (startsDeclaration(kind()))
        return parseDeclaration();
    switch (kind()) {
    case Lexer::Identifier:
        return parseTopLevelName();
    case Lexer::Array:
        return parseArrayDeclaration();
    case Lexer::Function:
        return parseFunction();
    case Lexer::Class:
        return parseClass();
    case Lexer::If:
    case Lexer::Switch:
    case Lexer::While:
    case Lexer::Loop:
    case Lexer::ForEach:
        return refuseAtFileScope(ParserMessage::FlowAtFileScope);
    case Lexer::Break:
    case Lexer::Continue:
    case Lexer::Return:
        return refuseAtFileScope(ParserMessage::JumpAtFileScope);
    case Lexer::LeftBrace:
        report(ParserMessage::BlockAtFileScope);
        return nullptr;
    default:
        return refuseAtFileScope(ParserMessage::TokenAtFileScope);
    }
}

Parser::Node Parser::parseTopLevelName()
{
    if (current().text == QStringLiteral("全局"))
        return parseGlobal();
    if (atClassName())
        return parseClassInstance();
    return refuseAtFileScope(ParserMessage::NameAtFileScope);
}

// global: "全局" (declaration | array | instance)
Parser::Node Parser::parseGlobal()
{
    advance();
    if (startsDeclaration(kind()))
        return parseDeclaration();
    if (at(Lexer::Array))
        return parseArrayDeclaration();
    if (atClassName())
        return parseClassInstance();
    report(at(Lexer::Identifier) ? ParserMessage::GlobalUnknownClass
                                 : ParserMessage::GlobalNoDeclaration);
    return nullptr;
}

// Reports a sentence about the current token, which stays.
Parser::Node Parser::refuseAtFileScope(ParserMessage message)
{
    const QString &text = current().text;
    report(message, {text.isEmpty() ? QStringLiteral("文件末尾") : text});
    return nullptr;
}

// Goes to the next token that may begin something; maybe it stays.
void Parser::recover()
{
    while (!isRecoveryPoint(current()))
        advance();
}
