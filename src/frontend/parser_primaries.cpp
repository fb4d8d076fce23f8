// Primary expressions: literals, names, parentheses and array literals.
#include "frontend/metadata.h"
#include "frontend/parser.h"
#include "frontend/parser_messages.h"

namespace {

QMap<QString, QString> literalMetadata(const QString &type)
{
    return {{Meta::literalType, type}};
}

// Type words that may stand as a name, for conversions such as 整数(x).
bool isNameInExpression(int tokenKind)
{
    switch (tokenKind) {
    case Lexer::Var:
    case Lexer::Int:
    case Lexer::Double:
    case Lexer::Text:
    case Lexer::Bool:
    case Lexer::Array:
    case Lexer::ByteArray:
    case Lexer::Any:
    case Lexer::Void:
        return true;
    default:
        return false;
    }
}

} // namespace

// primary: literal | name | type word | "(" expression ")" | array literal
// On any other token it gives nothing, says nothing and does not move.
Parser::Expression Parser::parsePrimary()
{
    // All literals of a kind share one map.
    static const auto intMetadata = literalMetadata(Meta::literalInt);
    static const auto doubleMetadata = literalMetadata(Meta::literalDouble);
    static const auto stringMetadata = literalMetadata(Meta::literalString);
    static const auto boolMetadata = literalMetadata(Meta::literalBool);
    switch (kind()) {
    case Lexer::IntLiteral:
        return parseLiteral(current().text, intMetadata);
    case Lexer::FloatLiteral:
        return parseLiteral(current().text, doubleMetadata);
    case Lexer::StringLiteral:
        return parseLiteral(current().text, stringMetadata);
    case Lexer::True:
        return parseLiteral(QStringLiteral("true"), boolMetadata);
    case Lexer::False:
        return parseLiteral(QStringLiteral("false"), boolMetadata);
    case Lexer::LeftParen:
        return parseParentheses();
    case Lexer::LeftBracket:
        return parseFlatArray();
    case Lexer::LeftBrace:
        return parseBraceLiteral();
    default:
        break;
    }
    const bool isName = at(Lexer::Identifier);
    if (!isName && !isNameInExpression(kind()))
        return {};
    Node name = isName ? newNode(Identifier) : newUnlinedNode(Identifier);
    name->value = current().text;
    advance();
    return {std::move(name), 1};
}

Parser::Expression Parser::parseLiteral(const QString &text, const QMap<QString, QString> &metadata)
{
    Node literal = newUnlinedNode(Literal);
    literal->value = text;
    literal->metadata = metadata;
    advance();
    return {std::move(literal), 1};
}

// Parentheses leave no trace in the tree.
Parser::Expression Parser::parseParentheses()
{
    advance();
    Expression inner = parseGuarded();
    expect(Lexer::RightParen, ParserMessage::ExpectedCloseParen);
    return inner;
}

// flat array: "[" { expression "," } "]"
Parser::Expression Parser::parseFlatArray()
{
    Expression literal{newUnlinedNode(ArrayLiteral), 1};
    advance();
    while (!at(Lexer::RightBracket) && !at(Lexer::EndOfFile)) {
        adopt(&literal, parseGuarded());
        if (!match(Lexer::Comma))
            break;
    }
    expect(Lexer::RightBracket, ParserMessage::ExpectedCloseBracket);
    return literal;
}

// nested array: "[" { ( nested array | expression ) "," } "]"
Parser::Expression Parser::parseNestedArray(int dimensions)
{
    Expression literal{newUnlinedNode(ArrayLiteral), 1};
    literal.node->metadata.insert(Meta::dimensions, QString::number(dimensions));
    advance();
    while (!at(Lexer::RightBracket) && !at(Lexer::EndOfFile)) {
        adopt(&literal, parseNestedElement(dimensions));
        if (!match(Lexer::Comma))
            break;
    }
    expect(Lexer::RightBracket, ParserMessage::MissingCloseBracket);
    return literal;
}

Parser::Expression Parser::parseNestedElement(int dimensions)
{
    if (dimensions <= 1 || !at(Lexer::LeftBracket))
        return parseGuarded();
    if (m_depth > ParserLimits::nestedExpressions)
        return refuseExpression();
    const NestingScope nesting(this);
    return parseNestedArray(dimensions - 1);
}

// brace literal: "{" { expression [ ":" expression ] "," } "}"
Parser::Expression Parser::parseBraceLiteral()
{
    Expression literal{newUnlinedNode(ArrayLiteral), 1};
    literal.node->metadata.insert(Meta::braceLiteral, Meta::flagOn);
    advance();
    while (!at(Lexer::RightBrace) && !at(Lexer::EndOfFile)) {
        parseBraceElement(&literal);
        if (!match(Lexer::Comma))
            break;
    }
    expect(Lexer::RightBrace, ParserMessage::MissingCloseBrace);
    return literal;
}

// A key and its value are two children in a row. A pair that lacks one of them is left out, so that
// the other pairs stay pairs.
void Parser::parseBraceElement(Expression *literal)
{
    Expression key = parseGuarded();
    if (!match(Lexer::Colon)) {
        adopt(literal, std::move(key));
        return;
    }
    Expression value = parseGuarded();
    const bool isWhole = key.node && value.node;
    if (isWhole && fits(qMax(key.height, value.height) + 1)) {
        adopt(literal, std::move(key));
        adopt(literal, std::move(value));
    }
}
