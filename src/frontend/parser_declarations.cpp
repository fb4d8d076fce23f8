// Declarations: variables, arrays and class instances.
#include "frontend/metadata.h"
#include "frontend/parser.h"
#include "frontend/parser_messages.h"
#include "frontend/type_words.h"

namespace {

// The type's name in a message.
QString chineseType(const QString &varType)
{
    if (varType == QLatin1String("intptr_t"))
        return QStringLiteral("整数");
    if (varType == QLatin1String("double") || varType == QLatin1String("float"))
        return QStringLiteral("小数");
    if (varType == QLatin1String("wstring"))
        return QStringLiteral("文本");
    return varType == QLatin1String("bool") ? QStringLiteral("逻辑") : varType;
}

bool isArrayType(const QString &varType)
{
    return varType == QLatin1String("VL_Array2D") || varType == QLatin1String("VL_Array3D");
}

} // namespace

// declarations: type declarator { "," declarator }
// A failing list leaves no node, no variable, and the position at its type word.
Parser::NodeList Parser::parseDeclarations(Commas commas)
{
    const int start = m_position;
    const QString varType = typeText(kind(), TypePlace::Variable);
    NodeList declared;
    advance();
    while (parseDeclarator(varType, &declared)) {
        if (!match(Lexer::Comma))
            return declared;
        if (commas == Commas::Refused) {
            report(ParserMessage::CommaRefused);
            break;
        }
    }
    return abandonDeclarations(declared, start);
}

// declarator: name [ "=" expression ]
bool Parser::parseDeclarator(const QString &varType, NodeList *declared)
{
    const QString &name = current().text;
    if (!at(Lexer::Identifier)) {
        if (name.isEmpty())
            report(ParserMessage::MissingVariableName);
        else
            report(ParserMessage::KeywordAsVariable, {name});
        return false;
    }
    Node node = newNode(VarDecl);
    ASTNode *variable = node.get();
    declared->push_back(std::move(node));
    variable->metadata.insert(Meta::varType, varType);
    variable->value = name;
    m_varTypes.insert(name, varType);
    advance();
    if (at(Lexer::LeftBracket) && !isArrayType(varType)) {
        report(ParserMessage::BracketAfterVariable,
               {QString::number(current().line), chineseType(varType), variable->value});
        return false;
    }
    if (match(Lexer::Assign))
        append(variable, parseExpression());
    return true;
}

Parser::NodeList Parser::abandonDeclarations(const NodeList &declared, int start)
{
    for (const Node &node : declared)
        m_varTypes.remove(node->value);
    m_position = start;
    return {};
}

// declaration: type declarator
Parser::Node Parser::parseDeclaration()
{
    NodeList declared = parseDeclarations(Commas::Refused);
    return declared.empty() ? nullptr : std::move(declared.front());
}

// array: "数组" name { "[" [ integer ] "]" } [ "=" value ]
Parser::Node Parser::parseArrayDeclaration()
{
    Node array = newNode(VarDecl);
    advance();
    if (!at(Lexer::Identifier)) {
        report(ParserMessage::MissingArrayName);
        return nullptr;
    }
    array->value = current().text;
    array->standAt(current());
    advance();
    const int dimensions = parseArrayBounds(array.get());
    array->metadata.insert(Meta::varType, dimensions >= 3   ? QStringLiteral("VL_Array3D")
                                          : dimensions == 2 ? QStringLiteral("VL_Array2D")
                                                            : QStringLiteral("array"));
    array->metadata.insert(Meta::dimensions, QString::number(dimensions));
    if (match(Lexer::Assign))
        append(array.get(), parseArrayValue(dimensions).node);
    return array;
}

// Returns the number of bracket pairs.
int Parser::parseArrayBounds(ASTNode *array)
{
    int pairs = 0;
    while (match(Lexer::LeftBracket)) {
        if (pairs == 0 && at(Lexer::IntLiteral)) {
            array->metadata.insert(Meta::lengthHint, current().text);
            advance();
        }
        expect(Lexer::RightBracket, ParserMessage::MissingCloseBracket);
        ++pairs;
    }
    return pairs;
}

// The literal right behind "=" takes no operators.
Parser::Expression Parser::parseArrayValue(int dimensions)
{
    const NestingScope nesting(this);
    if (at(Lexer::LeftBracket))
        return dimensions < 2 ? parseFlatArray() : parseNestedArray(dimensions);
    return at(Lexer::LeftBrace) ? parseBraceLiteral() : parseAssignment();
}

bool Parser::atClassName() const
{
    return at(Lexer::Identifier) && !findClassKey(current().text).isEmpty();
}

void Parser::noteUnknownType(ASTNode *declaration) const
{
    // The one type word that is no keyword.
    static const QString any = QStringLiteral("任意");
    if (!at(Lexer::Identifier) || atClassName() || current().text == any)
        return;
    declaration->unknownType = current().text;
    declaration->unknownTypeColumn = current().column;
}

// instance: class name [ "=" expression ]
Parser::Node Parser::parseClassInstance()
{
    const Lexer::Token &token = current();
    const QString key = findClassKey(token.text);
    const QString className = key.isEmpty() ? token.text : key;
    QString cppClass = m_classRegistry.value(key).cppName;
    if (key.isEmpty() && token.text == QStringLiteral("拖放类"))
        cppClass = QStringLiteral("VL_DragDropClass");

    Node instance = newNode(VarDecl);
    instance->column = token.column;
    instance->metadata.insert(Meta::className, className);
    instance->metadata.insert(Meta::isClassInstance, Meta::flagOn);
    instance->metadata.insert(Meta::cppClass, cppClass);
    advance();
    skipNewlines();
    if (!at(Lexer::Identifier)) {
        report(ParserMessage::MissingInstanceName);
        return instance;
    }
    instance->value = current().text;
    instance->standAt(current());
    m_varTypes.insert(instance->value, className);
    advance();
    skipNewlines();
    if (match(Lexer::Assign)) {
        skipNewlines();
        append(instance.get(), parseExpression());
    }
    return instance;
}
