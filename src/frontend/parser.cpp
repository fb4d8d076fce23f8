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
    m_messages.clear();
    m_depth = 0;
    m_statementDepth = 0;
    m_muted = false;
    m_semicolonAhead.clear();
    preScan(m_tokens);
    Node program = newUnlinedNode(Program);
    parseFile(program.get());
    return program.release();
}

const Lexer::Token &Parser::current() const
{
    return m_position < m_tokens.size() ? m_tokens.at(m_position) : m_endToken;
}

// The current token, and behind the end of the file its last one, which stands there.
const Lexer::Token &Parser::place() const
{
    return m_position < m_tokens.size() || m_tokens.isEmpty() ? current() : m_tokens.last();
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

QStringList Parser::errors() const
{
    QStringList texts;
    for (const SourceMessage &message : m_messages)
        texts.append(message.text);
    return texts;
}

// A message about the current token, with line, place and hint.
void Parser::report(ParserMessage message, std::initializer_list<QString> arguments)
{
    if (!isMuted())
        appendMessage({place().line, place().column, place().text,
                       framed(message, arguments, current().line)});
}

// The same about a node. The text says `toldLine` and the current token; the place is the node's.
void Parser::reportNode(const ASTNode &node, int toldLine, ParserMessage message,
                        std::initializer_list<QString> arguments)
{
    if (!isMuted())
        appendMessage(
            {node.sourceLine, node.sourceColumn, node.value, framed(message, arguments, toldLine)});
}

// A message as its sentence stands.
void Parser::reportPlain(const Lexer::Token &place, ParserMessage message,
                         std::initializer_list<QString> arguments)
{
    if (!isMuted())
        appendMessage({place.line, place.column, place.text, messageText(message, arguments)});
}

QString Parser::framed(ParserMessage message, std::initializer_list<QString> arguments,
                       int toldLine) const
{
    const QString sentence = messageText(message, arguments);
    const QString &nearText = current().text;
    return m_friendlyErrors ? friendlyText(sentence, toldLine, nearText)
                            : plainText(sentence, toldLine, nearText);
}

void Parser::appendMessage(const SourceMessage &message)
{
    if (m_messages.size() < ParserLimits::messages)
        m_messages.append(message);
    else
        m_messages.append({0, 0, QString(), messageText(ParserMessage::TooManyMessages)});
}

// A node at the current token.
Parser::Node Parser::newNode(int type) const
{
    Node node = newUnlinedNode(type);
    node->line = current().line;
    return node;
}

// The same with the `line` 0, as it is printed.
Parser::Node Parser::newUnlinedNode(int type) const
{
    Node node(new ASTNode(type));
    node->standAt(place());
    return node;
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
