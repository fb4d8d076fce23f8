// The checks of expressions other than calls, and the types of all.
#include "frontend/semantic_walk.h"

#include "frontend/class_index.h"
#include "frontend/metadata.h"
#include "frontend/name_suggestion.h"

namespace {

using Node = Parser::ASTNode;

const SemanticType kNoType;

SemanticType plain(ValueType kind)
{
    return {kind, QString()};
}

bool isLogicalSign(const QString &sign)
{
    return sign == QLatin1String("&&") || sign == QLatin1String("||");
}

bool isComparison(const QString &sign)
{
    return sign == QLatin1String("==") || sign == QLatin1String("!=") ||
           sign == QLatin1String("<") || sign == QLatin1String(">") ||
           sign == QLatin1String("<=") || sign == QLatin1String(">=");
}

bool isNegation(const QString &sign)
{
    return sign == QLatin1String("!") || sign == QStringLiteral("非");
}

bool isWholeNumber(ValueType kind)
{
    return kind == ValueType::Int || kind == ValueType::Bool;
}

bool isNumber(ValueType kind)
{
    return isWholeNumber(kind) || kind == ValueType::Double;
}

// What "+", "-" and the like give.
ValueType arithmeticType(const QString &sign, ValueType left, ValueType right)
{
    const bool joins = sign == QLatin1String("+");
    if (joins && (left == ValueType::Text || right == ValueType::Text))
        return ValueType::Text;
    if (isWholeNumber(left) && isWholeNumber(right))
        return ValueType::Int;
    if (isNumber(left) && isNumber(right))
        return ValueType::Double;
    if (joins && left == ValueType::Bytes && right == ValueType::Bytes)
        return ValueType::Bytes;
    if (left == ValueType::Unknown || right == ValueType::Unknown)
        return ValueType::Unknown;
    return ValueType::Any;
}

// How a text can be made to fit where `wanted` is asked for.
QString conversionAdvice(ValueType given, ValueType wanted = ValueType::Unknown)
{
    if (wanted == ValueType::Text)
        return QStringLiteral("，请先用 到文本(...) 转换成文本");
    if (given != ValueType::Text)
        return QString();
    if (wanted == ValueType::Int)
        return QStringLiteral("，请先用 到整数(...) 转换成整数");
    if (wanted == ValueType::Double)
        return QStringLiteral("，请先用 到小数(...) 转换成小数");
    if (wanted == ValueType::Bool)
        return QStringLiteral("，请先用 到逻辑(...) 转换成逻辑");
    return QStringLiteral("，请先用 到整数(...) 或 到小数(...) 转换成数");
}

} // namespace

QString SemanticWalk::nameOf(const Node *node)
{
    if (!node)
        return QString();
    if (node->type == Parser::Call || node->type == Parser::Index)
        return nameOf(node->children.value(0));
    return node->value;
}

bool SemanticWalk::fits(TypePair pair, const SemanticType &first, const SemanticType &second) const
{
    const bool firstIsObject = first.kind == ValueType::Object;
    const bool secondIsObject = second.kind == ValueType::Object;
    if (!firstIsObject && !secondIsObject)
        return m_rules.fits(pair, first.kind, second.kind);
    if (!first.isKnown() || !second.isKnown())
        return true;
    const bool stores = pair == TypePair::Assign || pair == TypePair::Initialize;
    return stores && first == second;
}

SemanticType SemanticWalk::typeOf(const Node *node)
{
    if (!node)
        return kNoType;
    if (node->line > 0)
        m_line = node->line;
    switch (node->type) {
    case Parser::Literal:
        return literal(node);
    case Parser::Identifier:
        return identifier(node, Access::Read);
    case Parser::Binary:
        return binary(node);
    case Parser::Unary:
        return unary(node);
    case Parser::Ternary:
        return ternary(node);
    case Parser::Call:
        return call(node);
    case Parser::Member:
        return member(node, Access::Read);
    case Parser::Index:
        return index(node);
    case Parser::Assign:
        return assignment(node);
    case Parser::ArrayLiteral:
        return arrayLiteral(node);
    default:
        return kNoType;
    }
}

SemanticType SemanticWalk::value(const Node *node)
{
    const SemanticType type = typeOf(node);
    if (type.kind != ValueType::Void)
        return type;
    report(CheckMessage::ValueOfNothing, node, {nameOf(node)});
    return kNoType;
}

SemanticType SemanticWalk::literal(const Node *node) const
{
    const QString type = node->metadata.value(Meta::literalType);
    if (type == Meta::literalInt)
        return plain(ValueType::Int);
    if (type == Meta::literalDouble)
        return plain(ValueType::Double);
    if (type == Meta::literalString)
        return plain(ValueType::Text);
    return type == Meta::literalBool ? plain(ValueType::Bool) : kNoType;
}

SemanticType SemanticWalk::identifier(const Node *node, Access access)
{
    const QString &name = node->value;
    if (name.isEmpty())
        return kNoType;
    if (node->flag(Meta::callbackRef)) {
        const bool isMethod = m_class && m_class->methods.contains(normalizedName(name));
        return isMethod || !m_symbols.functions(name).isEmpty() ? kNoType : unknownName(node);
    }
    if (name.startsWith(QLatin1Char('#')))
        return hashName(node);
    if (Local *local = findLocal(name)) {
        local->isUsed = local->isUsed || access == Access::Read;
        return local->type;
    }
    if (m_class && m_class->properties.contains(normalizedName(name)))
        return m_class->properties.value(normalizedName(name));
    if (const GlobalSymbol *global = m_symbols.global(name))
        return globalName(node, *global);
    if (m_context.component(name))
        return plain(ValueType::Handle);
    if (const auto constant = m_context.constant(name))
        return plain(*constant);
    if (!m_symbols.functions(name).isEmpty())
        report(CheckMessage::FunctionWithoutCall, node, {name});
    else if (m_symbols.classNamed(name))
        report(CheckMessage::ClassAsValue, node, {name});
    else if (m_context.isCommand(name))
        report(CheckMessage::CommandWithoutCall, node, {name});
    else
        return unknownName(node);
    return kNoType;
}

// "#" refers to a constant.
SemanticType SemanticWalk::hashName(const Node *node)
{
    const QString name = node->value.mid(1);
    if (const auto constant = m_context.constant(node->value))
        return plain(*constant);
    const GlobalSymbol *global = name.isEmpty() ? nullptr : m_symbols.global(name);
    if (!global)
        return unknownName(node);
    m_usedGlobals.insert(normalizedName(name));
    if (!m_context.isInConstantsFile(lineOf(global->node)))
        report(CheckMessage::HashBeforeGlobal, node, {name});
    return global->type;
}

SemanticType SemanticWalk::globalName(const Node *node, const GlobalSymbol &global)
{
    m_usedGlobals.insert(normalizedName(global.name));
    const int line = lineOf(node);
    if (m_context.isInConstantsFile(lineOf(global.node)) && !m_context.isInConstantsFile(line))
        report(CheckMessage::HashMissing, node, {global.name});
    if (m_globalOrder >= 0 && global.order >= m_globalOrder)
        report(CheckMessage::GlobalUsedTooEarly, node, {global.name});
    return global.type;
}

SemanticType SemanticWalk::unknownName(const Node *node)
{
    report(CheckMessage::UnknownName, node, {node->value, suggestion(node->value, Purpose::Value)});
    return kNoType;
}

// A long sum nests to the left; its left end is reached by a loop, not by recursion.
SemanticType SemanticWalk::binary(const Node *node)
{
    QList<const Node *> chain;
    const Node *leftmost = node;
    while (leftmost->type == Parser::Binary && leftmost->children.size() >= 2) {
        chain << leftmost;
        leftmost = leftmost->children.first();
    }
    if (chain.isEmpty()) {
        value(node->children.value(0));
        return kNoType;
    }
    SemanticType type = value(leftmost);
    for (auto it = chain.crbegin(); it != chain.crend(); ++it)
        type = operation(*it, type, value((*it)->children.at(1)));
    return type;
}

SemanticType SemanticWalk::operation(const Node *node, const SemanticType &left,
                                     const SemanticType &right)
{
    const QString &sign = node->value;
    if (isLogicalSign(sign))
        return logical(node, left, right);
    const bool compares = isComparison(sign);
    const TypePair pair = compares                     ? TypePair::Compare
                          : sign == QLatin1String("+") ? TypePair::Add
                                                       : TypePair::Calculate;
    if (fits(pair, left, right))
        return plain(compares ? ValueType::Bool : arithmeticType(sign, left.kind, right.kind));
    reportOperand(node, left, right);
    return plain(compares ? ValueType::Bool : ValueType::Unknown);
}

// Names the side of an operation that fits with nothing.
void SemanticWalk::reportOperand(const Node *node, const SemanticType &left,
                                 const SemanticType &right)
{
    const bool leftIsNumber = isNumber(left.kind) || left.kind == ValueType::Any;
    const SemanticType &guilty = leftIsNumber ? right : left;
    const QString advice = isComparison(node->value) ? QString() : conversionAdvice(guilty.kind);
    reportNear(CheckMessage::OperandType, node, node->value,
               {wordOfType(guilty), node->value, advice});
}

SemanticType SemanticWalk::logical(const Node *node, const SemanticType &left,
                                   const SemanticType &right)
{
    const QString word =
        node->value == QLatin1String("&&") ? QStringLiteral("并且") : QStringLiteral("或者");
    for (const SemanticType &side : {left, right}) {
        if (!m_rules.fits(TypeUse::Condition, side.kind))
            report(CheckMessage::LogicalOperand, node, {wordOfType(side), word});
    }
    return plain(ValueType::Bool);
}

SemanticType SemanticWalk::unary(const Node *node)
{
    const Node *operand = node->children.value(0);
    const SemanticType type = value(operand);
    if (node->flag(Meta::postfix)) {
        if (operand && !isAssignable(operand))
            report(CheckMessage::AssignmentTarget, node);
        else if (!m_rules.fits(TypeUse::Step, type.kind))
            report(CheckMessage::StepType, node, {node->value, wordOfType(type)});
        return type;
    }
    if (isNegation(node->value)) {
        if (!m_rules.fits(TypeUse::Condition, type.kind))
            report(CheckMessage::NegationOperand, node, {wordOfType(type)});
        return plain(ValueType::Bool);
    }
    if (m_rules.fits(TypeUse::Negate, type.kind))
        return type.kind == ValueType::Bool ? plain(ValueType::Int) : type;
    report(CheckMessage::OperandType, node,
           {wordOfType(type), node->value, conversionAdvice(type.kind)});
    return kNoType;
}

SemanticType SemanticWalk::ternary(const Node *node)
{
    condition(node->children.value(0), QStringLiteral("?"));
    const SemanticType first = value(node->children.value(1));
    const SemanticType second = value(node->children.value(2));
    if (first == second)
        return first;
    const bool oneIsObject = first.kind == ValueType::Object || second.kind == ValueType::Object;
    if (oneIsObject && first.isKnown() && second.isKnown())
        report(CheckMessage::OperandType, node,
               {wordOfType(first.kind == ValueType::Object ? first : second), QStringLiteral("? :"),
                QString()});
    if (!first.isKnown() || !second.isKnown())
        return kNoType;
    if (isNumber(first.kind) && isNumber(second.kind))
        return plain(ValueType::Double);
    return plain(ValueType::Any);
}

SemanticType SemanticWalk::index(const Node *node)
{
    const SemanticType base = value(node->children.value(0));
    const Node *key = node->children.value(1);
    const SemanticType keyType = value(key);
    if (!m_rules.fits(TypeUse::Elements, base.kind)) {
        report(CheckMessage::NoElements, node, {nameOf(node), wordOfType(base)});
        return kNoType;
    }
    if (keyType.kind == ValueType::Object)
        report(CheckMessage::UseOfType, key, {QStringLiteral("[ ]"), wordOfType(keyType)});
    else if (base.isKnown() && base.kind != ValueType::Any && keyType.isKnown()) {
        if (keyType.kind == ValueType::Text) {
            report(CheckMessage::ElementByText, key, {wordOfType(base)});
            return kNoType;
        }
        if (!m_rules.fits(TypeUse::Negate, keyType.kind))
            report(CheckMessage::UseOfType, key, {QStringLiteral("[ ]"), wordOfType(keyType)});
    }
    switch (base.kind) {
    case ValueType::Array:
    case ValueType::Any:
        return plain(ValueType::Any);
    case ValueType::Array2D:
        return plain(ValueType::Array);
    case ValueType::Array3D:
        return plain(ValueType::Array2D);
    case ValueType::Text:
        return plain(ValueType::Text);
    case ValueType::Bytes:
        return plain(ValueType::Int);
    default:
        return kNoType;
    }
}

SemanticType SemanticWalk::arrayLiteral(const Node *node)
{
    int levels = 0;
    for (const Node *inner = node; inner && inner->type == Parser::ArrayLiteral;
         inner = inner->children.value(0))
        ++levels;
    for (const Node *child : node->children) {
        const SemanticType type = value(child);
        if (type.kind == ValueType::Object)
            report(CheckMessage::ObjectInArray, child);
    }
    if (node->flag(Meta::braceLiteral))
        return plain(ValueType::Any);
    // Whether literals in a literal make a table is decided by what takes them.
    return plain(levels <= 1 ? ValueType::Array : ValueType::Unknown);
}

std::optional<NamedComponent> SemanticWalk::componentOf(const Node *node)
{
    if (!node)
        return std::nullopt;
    if (node->type == Parser::Identifier) {
        if (node->value.startsWith(QLatin1Char('#')) || findLocal(node->value))
            return std::nullopt;
        return m_symbols.global(node->value) ? std::nullopt : m_context.component(node->value);
    }
    const Node *owner = node->type == Parser::Member ? node->children.value(0) : nullptr;
    if (!owner || owner->type != Parser::Identifier || findLocal(owner->value))
        return std::nullopt;
    return m_context.component(owner->value, node->value);
}

SemanticType SemanticWalk::member(const Node *node, Access access)
{
    const Node *object = node->children.value(0);
    if (const auto component = componentOf(object))
        return plain(m_context.memberType(*component, node->value, -1));
    if (componentOf(node))
        return plain(ValueType::Handle);
    const SemanticType type = value(object);
    if (!type.isKnown() || type.kind == ValueType::Handle)
        return kNoType;
    if (type.kind != ValueType::Object) {
        report(CheckMessage::NoMembersAtAll, node, {nameOf(object), wordOfType(type), node->value});
        return kNoType;
    }
    const ClassSymbolTable *symbol = m_symbols.classOfType(type);
    if (!symbol)
        return kNoType;
    const QString form = normalizedName(node->value);
    const auto property = symbol->properties.constFind(form);
    if (property != symbol->properties.cend()) {
        if (!symbol->node && access == Access::Write)
            report(CheckMessage::ReadOnlyProperty, node, {nameOf(object), node->value});
        return *property;
    }
    const auto method = symbol->methods.constFind(form);
    if (method != symbol->methods.cend()) {
        if (!symbol->node)
            return method->result;
        report(CheckMessage::MethodWithoutCall, node,
               {nameOf(object) + QLatin1Char('.') + node->value});
        return kNoType;
    }
    const QString close = closestName(node->value, symbol->properties.keys());
    report(CheckMessage::NoSuchMember, node, {symbol->name, node->value, asked(close)});
    return kNoType;
}

bool SemanticWalk::isAssignable(const Node *node)
{
    if (node->type == Parser::Member || node->type == Parser::Index)
        return true;
    if (node->type != Parser::Identifier || node->flag(Meta::callbackRef))
        return false;
    const QString &name = node->value;
    if (name.startsWith(QLatin1Char('#')))
        return m_symbols.global(name.mid(1)) && !m_context.constant(name);
    if (findLocal(name) || m_symbols.global(name))
        return true;
    if (m_class && m_class->properties.contains(normalizedName(name)))
        return true;
    // A name that nobody knows has been reported as such.
    return !m_context.component(name) && !m_context.constant(name);
}

// The type of what stands left of "=".
SemanticType SemanticWalk::target(const Node *node)
{
    if (node->line > 0)
        m_line = node->line;
    if (node->type == Parser::Identifier)
        return identifier(node, Access::Write);
    if (node->type == Parser::Member)
        return member(node, Access::Write);
    return typeOf(node);
}

SemanticType SemanticWalk::assignment(const Node *node)
{
    const Node *left = node->children.value(0);
    const Node *right = node->children.value(1);
    if (!left)
        return kNoType;
    const bool plainSign = node->value == QLatin1String("=");
    const SemanticType to = plainSign ? target(left) : typeOf(left);
    const bool isEmpty = !right || (right->type == Parser::Literal && right->flag(Meta::isEmpty));
    if (isEmpty) {
        if (left->type == Parser::Identifier)
            report(CheckMessage::AssignmentWithoutValue, left, {left->value});
        return to;
    }
    const SemanticType from = value(right);
    // Setting a property of a component is a call that gives nothing.
    if (left->type == Parser::Member && componentOf(left->children.value(0)))
        return plain(ValueType::Void);
    if (!isAssignable(left))
        report(CheckMessage::AssignmentTarget, node);
    else
        checkAssignment(node, to, from);
    return to;
}

void SemanticWalk::reportMismatch(const Node *place, const SemanticType &to,
                                  const SemanticType &from, const QString &name, const Node *value)
{
    if (from.kind == ValueType::Handle)
        report(CheckMessage::HandleAsValue, place, {wordOfType(to), name, nameOf(value)});
    else
        report(CheckMessage::AssignmentMismatch, place,
               {wordOfType(to), name, wordOfType(from), conversionAdvice(from.kind, to.kind)});
}

void SemanticWalk::checkAssignment(const Node *node, const SemanticType &to,
                                   const SemanticType &from)
{
    const Node *left = node->children.at(0);
    const Node *right = node->children.at(1);
    if (left->type == Parser::Index && to.kind == ValueType::Text) {
        report(CheckMessage::TextElementAssigned, left, {nameOf(left)});
        return;
    }
    const bool isMember = left->type == Parser::Member;
    const QString name = isMember && !left->children.isEmpty()
                             ? nameOf(left->children.first()) + QLatin1Char('.') + left->value
                             : nameOf(left);
    if (node->value == QLatin1String("=")) {
        if (!checkAssignedLiteral(left, to, right, name) && !fits(TypePair::Assign, to, from))
            reportMismatch(left, to, from, name, right);
        return;
    }
    const bool adds = node->value == QLatin1String("+=");
    if (!fits(adds ? TypePair::AddTo : TypePair::CalculateWith, to, from))
        reportOperand(node, to, from);
}
