// What type an expression has, as far as the generator can tell.
#include "codegen/generation.h"

#include "codegen/names.h"
#include "frontend/metadata.h"

namespace {

const ValueType kUnknown = ValueType::Unknown;

ValueType literalType(const Parser::ASTNode *node)
{
    const QString type = node->metadata.value(Meta::literalType);
    if (type == Meta::literalInt)
        return ValueType::Int;
    if (type == Meta::literalDouble)
        return ValueType::Double;
    if (type == Meta::literalString)
        return ValueType::Text;
    return type == Meta::literalBool ? ValueType::Bool : kUnknown;
}

ValueType arrayType(const Parser::ASTNode *node)
{
    if (node->flag(Meta::braceLiteral))
        return ValueType::Any;
    int levels = 0;
    for (; node && node->type == Parser::ArrayLiteral; node = node->children.value(0))
        ++levels;
    return levels <= 1 ? ValueType::Array : levels == 2 ? ValueType::Array2D : ValueType::Array3D;
}

} // namespace

ValueType Generation::inferType(const Node *node) const
{
    if (!node)
        return kUnknown;
    switch (node->type) {
    case Parser::Literal:
        return literalType(node);
    case Parser::Binary:
        return inferBinary(node);
    case Parser::Unary:
        if (node->value == QLatin1String("!") || node->value == QStringLiteral("非"))
            return ValueType::Bool;
        return inferType(node->children.value(0));
    case Parser::Ternary: {
        const ValueType first = inferType(node->children.value(1));
        const ValueType second = inferType(node->children.value(2));
        if (first == second)
            return first;
        if (first == ValueType::Object || second == ValueType::Object)
            return kUnknown;
        const bool decimal = first == ValueType::Double || second == ValueType::Double;
        const bool numbers = (first == ValueType::Int || first == ValueType::Double) &&
                             (second == ValueType::Int || second == ValueType::Double);
        return numbers && decimal ? ValueType::Double : ValueType::Any;
    }
    case Parser::Assign:
        return inferType(node->children.value(0));
    case Parser::Identifier: {
        const Variable *variable = m_scopes.find(node->value);
        if (variable)
            return variable->type;
        if (m_windows.component(node->value))
            return ValueType::Handle;
        return valueTypeOf(m_tables.callTypes.value(node->value));
    }
    case Parser::Index:
        return inferIndex(node);
    case Parser::ArrayLiteral:
        return arrayType(node);
    case Parser::Call:
        return inferCall(node);
    case Parser::Member:
        return inferMember(node);
    default:
        return kUnknown;
    }
}

ValueType Generation::inferBinary(const Node *node) const
{
    if (node->children.size() < 2)
        return kUnknown;
    static const QSet<QString> logical{
        QStringLiteral("=="), QStringLiteral("!="), QStringLiteral("<"),  QStringLiteral(">"),
        QStringLiteral("<="), QStringLiteral(">="), QStringLiteral("&&"), QStringLiteral("||")};
    if (logical.contains(node->value))
        return ValueType::Bool;
    // Down the left side by a loop: sums may be long.
    bool text = false;
    bool decimal = false;
    bool any = false;
    const bool joins = node->value == QLatin1String("+");
    const Node *walk = node;
    const auto note = [&](ValueType type) {
        text = text || type == ValueType::Text;
        decimal = decimal || type == ValueType::Double;
        any = any || type == ValueType::Any || type == kUnknown;
    };
    while (walk->type == Parser::Binary && walk->children.size() >= 2 &&
           !logical.contains(walk->value)) {
        note(inferType(walk->children.at(1)));
        walk = walk->children.at(0);
    }
    note(inferType(walk));
    if (text)
        return joins ? ValueType::Text : ValueType::Any;
    if (decimal)
        return ValueType::Double;
    return any ? ValueType::Any : ValueType::Int;
}

ValueType Generation::inferIndex(const Node *node) const
{
    switch (inferType(node->children.value(0))) {
    case ValueType::Array:
    case ValueType::Any:
        return ValueType::Any;
    case ValueType::Array2D:
        return ValueType::Array;
    case ValueType::Array3D:
        return ValueType::Array2D;
    case ValueType::Text:
        return ValueType::Text;
    case ValueType::Bytes:
        return ValueType::Int;
    default:
        return kUnknown;
    }
}

ValueType Generation::inferCall(const Node *node) const
{
    const Node *callee = node->children.value(0);
    if (!callee)
        return kUnknown;
    if (callee->type == Parser::Member) {
        if (const auto component = componentOf(callee->children.value(0)))
            return ProgramWindows::memberType(callee->value, component->type,
                                              node->children.size() - 1);
        const ClassSymbol *symbol = classOf(callee->children.value(0));
        return symbol ? symbol->methods.value(Names::normalized(callee->value)).returnType
                      : kUnknown;
    }
    if (callee->type != Parser::Identifier)
        return kUnknown;
    if (const FunctionSignature *function = calledFunction(node))
        return function->returnType;
    if (findClass(callee->value))
        return ValueType::Object;
    if (m_tables.conversions.contains(callee->value))
        return valueTypeOf(callee->value);
    const auto fixed = m_tables.callTypes.constFind(callee->value);
    if (fixed != m_tables.callTypes.cend())
        return valueTypeOf(*fixed);
    const CommandInfo *info = findCommand(callee->value);
    return info ? valueTypeOf(info->returnType) : kUnknown;
}

ValueType Generation::inferMember(const Node *node) const
{
    if (const auto component = componentOf(node->children.value(0)))
        return ProgramWindows::memberType(node->value, component->type, -1);
    if (componentOf(node))
        return ValueType::Handle;
    const ClassSymbol *symbol = classOf(node->children.value(0));
    if (!symbol)
        return kUnknown;
    const auto property = symbol->properties.constFind(Names::normalized(node->value));
    return property == symbol->properties.cend() ? kUnknown : property->type;
}

const ClassSymbol *Generation::classOf(const Node *node) const
{
    if (!node)
        return nullptr;
    const auto byName = [this](const QString &name) {
        return name.isEmpty() ? nullptr : findClass(name);
    };
    if (node->type == Parser::Identifier) {
        const Variable *variable = m_scopes.find(node->value);
        return variable ? byName(variable->className) : nullptr;
    }
    if (node->type == Parser::Member) {
        const ClassSymbol *owner = classOf(node->children.value(0));
        return owner ? byName(owner->properties.value(Names::normalized(node->value)).className)
                     : nullptr;
    }
    if (node->type != Parser::Call || node->children.isEmpty())
        return nullptr;
    const Node *callee = node->children.first();
    if (callee->type == Parser::Member) {
        const ClassSymbol *owner = classOf(callee->children.value(0));
        return owner ? byName(owner->methods.value(Names::normalized(callee->value)).returnClass)
                     : nullptr;
    }
    if (callee->type != Parser::Identifier)
        return nullptr;
    if (const FunctionSignature *function = calledFunction(node))
        return byName(function->returnClass);
    return findClass(callee->value);
}
