// Classes: their declaration, properties and methods.
#include "frontend/metadata.h"
#include "frontend/parser.h"
#include "frontend/parser_messages.h"
#include "frontend/type_words.h"

// class: "类" name "{" { property | method } "}"
// A class that is abandoned gives no node; what the pre-scan entered stays.
Parser::Node Parser::parseClass()
{
    advance();
    if (!at(Lexer::Identifier) && !at(Lexer::IntLiteral)) {
        report(ParserMessage::MissingClassName);
        return nullptr;
    }
    const Lexer::Token name = current();
    advance();
    if (!expect(Lexer::LeftBrace, ParserMessage::MissingOpenBrace))
        return nullptr;
    Node node = newNode(ClassDecl);
    node->value = name.text;
    node->standAt(name);
    if (!parseClassMembers(node.get()))
        return nullptr;
    expect(Lexer::RightBrace, ParserMessage::MissingCloseBrace);
    registerParsedClass(*node);
    return node;
}

// False where a member cannot be read, which abandons the class. A token that begins no member ends
// the class, and the node stays.
bool Parser::parseClassMembers(ASTNode *classNode)
{
    for (;;) {
        skipNewlines();
        if (at(Lexer::RightBrace) || at(Lexer::EndOfFile))
            return true;
        if (!at(Lexer::Property) && !at(Lexer::Method)) {
            report(ParserMessage::NotAClassMember);
            return true;
        }
        Node member = at(Lexer::Property) ? parseProperty() : parseMethod(classNode->value);
        if (!member)
            return false;
        append(classNode, std::move(member));
    }
}

// property: "属性" type name [ "[" [ integer ] "]" ] [ "=" expression ]
Parser::Node Parser::parseProperty()
{
    advance();
    QString type = typeText(kind(), TypePlace::Property);
    Node property = newUnlinedNode(VarDecl);
    noteUnknownType(property.get());
    if (at(Lexer::Identifier))
        type = atClassName() ? cppNameOfClass(current().text) : QStringLiteral("VL_Any");
    if (type.isNull()) {
        report(ParserMessage::MissingPropertyType);
        return nullptr;
    }
    advance();
    if (!at(Lexer::Identifier)) {
        report(ParserMessage::MissingPropertyName);
        return nullptr;
    }
    property->standAt(current());
    property->value = current().text;
    property->metadata.insert(Meta::varType, type);
    property->metadata.insert(Meta::classProperty, Meta::flagOn);
    advance();
    const bool isArray = type == QLatin1String("VL_Array");
    if (isArray && at(Lexer::LeftBracket) && !parsePropertyBound(property.get()))
        return nullptr;
    if (match(Lexer::Assign))
        append(property.get(), parseExpression());
    return property;
}

bool Parser::parsePropertyBound(ASTNode *property)
{
    advance();
    if (at(Lexer::IntLiteral)) {
        property->metadata.insert(Meta::arrayMaxLen, current().text);
        advance();
    }
    return expect(Lexer::RightBracket, ParserMessage::MissingCloseBracket);
}

// method: "方法" name "(" [ parameter { "," parameter } ] ")" [ "返回" ] [ type ] block
Parser::Node Parser::parseMethod(const QString &className)
{
    advance();
    if (!at(Lexer::Identifier)) {
        report(ParserMessage::MissingMethodName);
        return nullptr;
    }
    Node method = newNode(FunctionDecl);
    method->value = current().text;
    method->metadata.insert(Meta::classMethod, Meta::flagOn);
    method->metadata.insert(Meta::className, className);
    advance();
    expect(Lexer::LeftParen, ParserMessage::MissingOpenParen);
    while (!at(Lexer::RightParen) && !at(Lexer::EndOfFile)) {
        if (parseMethodParameter(method.get()) == ParameterResult::LeaveList)
            break;
    }
    expect(Lexer::RightParen, ParserMessage::MissingCloseParen);
    match(Lexer::Return);
    noteUnknownType(method.get());
    method->metadata.insert(Meta::returnType, parseMethodReturnType());
    parseRoutineBody(method.get());
    return method;
}
