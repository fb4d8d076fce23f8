// Functions and the parameter lists of functions and methods.
#include "frontend/metadata.h"
#include "frontend/parser.h"
#include "frontend/parser_messages.h"
#include "frontend/type_words.h"

namespace {

const QString &untyped()
{
    static const QString text = QStringLiteral("auto");
    return text;
}

const QString &noType()
{
    static const QString text = QStringLiteral("void");
    return text;
}

} // namespace

// function: "函数" name "(" [ parameter { "," parameter } ] ")" [ "返回" ] [ type ] block
Parser::Node Parser::parseFunction()
{
    if (m_position >= m_tokens.size()) {
        report(ParserMessage::NoFunctionToken);
        return nullptr;
    }
    Node function = newNode(FunctionDecl);
    advance();
    if (!at(Lexer::Identifier))
        return nullptr;
    function->standAt(current());
    function->value = parseFunctionName();
    expect(Lexer::LeftParen, ParserMessage::ExpectedOpenParen);
    while (!at(Lexer::RightParen) && !at(Lexer::EndOfFile)) {
        if (parseFunctionParameter(function.get()) == ParameterResult::LeaveList)
            break;
    }
    expect(Lexer::RightParen, ParserMessage::ExpectedCloseParen);
    match(Lexer::Return);
    noteUnknownType(function.get());
    function->metadata.insert(Meta::returnType, parseFunctionReturnType());
    parseRoutineBody(function.get());
    return function;
}

// name: identifier { "." identifier }
QString Parser::parseFunctionName()
{
    QString name = current().text;
    advance();
    while (at(Lexer::Dot) && peek().type == Lexer::Identifier) {
        name += QLatin1Char('.') + peek().text;
        advance();
        advance();
    }
    return name;
}

// parameter: [ "[" ] [ type [ "&" ] ] name [ "=" unary ] [ "]" ]
Parser::ParameterResult Parser::parseFunctionParameter(ASTNode *function)
{
    const bool isOptional = match(Lexer::LeftBracket);
    if (at(Lexer::Identifier) && current().text.startsWith(QLatin1String("..."))) {
        report(ParserMessage::VariadicParameter, {QString::number(current().line)});
        return ParameterResult::LeaveList;
    }
    Node parameter = newUnlinedNode(Identifier);
    bool isTyped = false;
    if (!parseFunctionParameterType(parameter.get(), &isTyped))
        return ParameterResult::LeaveList;
    if (!parseParameterName(parameter.get(), isTyped))
        return ParameterResult::LeaveList;
    if (isOptional) {
        if (!match(Lexer::RightBracket))
            reportPlain(place(), ParserMessage::OptionalNotClosed);
        parameter->metadata.insert(Meta::isOptional, Meta::flagOn);
    }
    append(function, std::move(parameter));
    if (match(Lexer::Comma))
        return ParameterResult::GoOn;
    if (!at(Lexer::RightParen) && !at(Lexer::EndOfFile))
        reportPlain(place(), ParserMessage::MissingParameterComma,
                    {QString::number(current().line)});
    return ParameterResult::LeaveList;
}

// False where no parameter can begin. A class counts as a type only with a name behind it, since a
// name alone is an untyped parameter.
bool Parser::parseFunctionParameterType(ASTNode *parameter, bool *isTyped)
{
    QString type = untyped();
    if (isTypeWord(kind(), TypePlace::FunctionParameter)) {
        *isTyped = true;
        type = current().text;
    } else if (!at(Lexer::Identifier)) {
        return false;
    } else if ((peek().type == Lexer::Identifier || peek().type == Lexer::Ampersand) &&
               atClassName()) {
        *isTyped = true;
        type = cppNameOfClass(current().text);
    }
    parameter->metadata.insert(Meta::paramType, type);
    if (*isTyped)
        advance();
    return true;
}

// [ "&" ] name [ "=" unary ], the "&" behind a type only
bool Parser::parseParameterName(ASTNode *parameter, bool isTyped)
{
    if (isTyped && match(Lexer::Ampersand))
        parameter->metadata.insert(Meta::isReference, Meta::flagOn);
    if (!at(Lexer::Identifier)) {
        reportPlain(place(), ParserMessage::MissingParameterName);
        return false;
    }
    parameter->value = current().text;
    parameter->line = current().line;
    parameter->standAt(current());
    advance();
    parseParameterDefault(parameter);
    return true;
}

// A default value is no full expression: of "a + 1" only "a" is taken.
void Parser::parseParameterDefault(ASTNode *parameter)
{
    if (!match(Lexer::Assign))
        return;
    const NestingScope nesting(this);
    Expression value = parseUnary();
    if (!value.node)
        return;
    parameter->metadata.insert(Meta::hasDefault, Meta::flagOn);
    append(parameter, std::move(value.node));
}

// The word as written, or the C++ name of a class.
QString Parser::parseFunctionReturnType()
{
    QString type = noType();
    if (isTypeWord(kind(), TypePlace::FunctionReturn))
        type = current().text;
    else if (atClassName())
        type = cppNameOfClass(current().text);
    else if (!at(Lexer::Identifier))
        return type;
    advance();
    return type;
}

// parameter: type [ "&" ] name [ "=" unary ]
Parser::ParameterResult Parser::parseMethodParameter(ASTNode *method)
{
    Node parameter = newUnlinedNode(Identifier);
    if (!parseMethodParameterType(parameter.get()))
        return ParameterResult::LeaveList;
    if (!parseParameterName(parameter.get(), true))
        return ParameterResult::LeaveList;
    append(method, std::move(parameter));
    return match(Lexer::Comma) ? ParameterResult::GoOn : ParameterResult::LeaveList;
}

// A method's parameter always has a type; an unknown word stands for any.
bool Parser::parseMethodParameterType(ASTNode *parameter)
{
    QString type = untyped();
    noteUnknownType(parameter);
    if (isTypeWord(kind(), TypePlace::MethodParameter))
        type = current().text;
    else if (atClassName())
        type = cppNameOfClass(current().text);
    else if (!at(Lexer::Identifier))
        return false;
    parameter->metadata.insert(Meta::paramType, type);
    advance();
    return true;
}

// The C++ type; an unknown word as written.
QString Parser::parseMethodReturnType()
{
    QString type = noType();
    if (isTypeWord(kind(), TypePlace::MethodReturn))
        type = typeText(kind(), TypePlace::MethodReturn);
    else if (at(Lexer::Identifier))
        type = atClassName() ? cppNameOfClass(current().text) : current().text;
    else
        return type;
    advance();
    return type;
}

// Inside the body, and only there, parameters of a class type are known as its instances.
void Parser::parseRoutineBody(ASTNode *routine)
{
    const QStringList entered = enterClassParameters(*routine);
    append(routine, parseBlock());
    for (const QString &name : entered)
        m_varTypes.remove(name);
}

QStringList Parser::enterClassParameters(const ASTNode &routine)
{
    QStringList entered;
    for (const ASTNode *parameter : routine.children) {
        const QString type = parameter->metadata.value(Meta::paramType);
        if (type.isEmpty() || type == untyped())
            continue;
        const QString key = findParameterClass(type);
        if (key.isEmpty())
            continue;
        m_varTypes.insert(parameter->value, key);
        entered.append(parameter->value);
    }
    return entered;
}
