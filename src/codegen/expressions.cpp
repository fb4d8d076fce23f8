// Expressions other than calls.
#include "codegen/generation.h"

#include "codegen/names.h"
#include "frontend/metadata.h"

namespace {

using Node = Parser::ASTNode;

// Each ordered operation nests in the next; a chain of more is left to C++.
const int kMostOrderedOperands = 100;

bool isStringLiteral(const Node *node)
{
    return node->type == Parser::Literal &&
           node->metadata.value(Meta::literalType) == Meta::literalString;
}

bool isIntLiteral(const Node *node)
{
    return node->type == Parser::Literal &&
           node->metadata.value(Meta::literalType) == Meta::literalInt;
}

// "#FF0000" and "#F00" as COLORREF; empty for anything else.
QString colourText(const QString &name)
{
    const QString digits = name.mid(1);
    if (digits.size() != 6 && digits.size() != 3)
        return QString();
    bool valid = false;
    const uint value = digits.toUInt(&valid, 16);
    if (!valid)
        return QString();
    const bool brief = digits.size() == 3;
    const auto channel = [brief, value](int index) {
        return brief ? ((value >> (4 * index)) & 0xF) * 17 : (value >> (8 * index)) & 0xFF;
    };
    return QStringLiteral("(int)(COLORREF)RGB(%1,%2,%3)")
        .arg(channel(2))
        .arg(channel(1))
        .arg(channel(0));
}

// Full-width and other digits of Unicode in the form that C++ reads.
QString asciiDigits(QString text)
{
    for (QChar &c : text) {
        if (c.unicode() > 127 && c.digitValue() >= 0)
            c = QLatin1Char(static_cast<char>('0' + c.digitValue()));
    }
    return text;
}

// C++ reckons with small literals in 32 bits, the language's integers have 64. True when the
// integer literals that `chain` begins with, innermost operation last, leave 32 bits.
bool outgrowsInt(const Node *leftmost, const QList<const Node *> &chain)
{
    qint64 value = leftmost->value.toLongLong();
    for (auto it = chain.crbegin(); it != chain.crend(); ++it) {
        const Node *right = (*it)->children.at(1);
        if (!isIntLiteral(leftmost) || !isIntLiteral(right))
            return false;
        const qint64 operand = right->value.toLongLong();
        bool overflow = true;
        if ((*it)->value == QLatin1String("+"))
            overflow = __builtin_add_overflow(value, operand, &value);
        else if ((*it)->value == QLatin1String("-"))
            overflow = __builtin_sub_overflow(value, operand, &value);
        else if ((*it)->value == QLatin1String("*"))
            overflow = __builtin_mul_overflow(value, operand, &value);
        if (overflow)
            return false;
        if (value != static_cast<int>(value))
            return true;
    }
    return false;
}

bool allArrayLiterals(const Node *node)
{
    for (const Node *child : node->children) {
        if (child->type != Parser::ArrayLiteral || child->flag(Meta::braceLiteral))
            return false;
    }
    return !node->children.isEmpty();
}

} // namespace

QString Generation::expression(const Node *node)
{
    if (!node)
        return QString();
    if (node->line > 0)
        m_line = node->line;
    switch (node->type) {
    case Parser::Binary:
        return binary(node);
    case Parser::Unary:
        return unary(node);
    case Parser::Ternary:
        return ternary(node);
    case Parser::Call:
        return call(node);
    case Parser::Member:
        return member(node);
    case Parser::Index:
        return index(node);
    case Parser::Assign:
        return assignment(node);
    case Parser::Identifier:
        return identifier(node);
    case Parser::Literal:
        return literal(node);
    case Parser::ArrayLiteral:
        return node->flag(Meta::braceLiteral) ? dictionaryLiteral(node) : arrayLiteral(node);
    default:
        return QString();
    }
}

QString Generation::literal(const Node *node) const
{
    if (isStringLiteral(node))
        return CodeWriter::wideString(node->value);
    const QString type = node->metadata.value(Meta::literalType);
    return type == Meta::literalInt || type == Meta::literalDouble ? asciiDigits(node->value)
                                                                   : node->value;
}

QString Generation::identifier(const Node *node)
{
    const QString &name = node->value;
    if (node->flag(Meta::callbackRef))
        return QLatin1Char('&') + cppName(name);
    if (m_scopes.find(name))
        return cppName(name);
    const QString normal = Names::normalized(name);
    if (normal != name && m_scopes.find(normal))
        return cppName(name);
    if (const auto component = m_windows.component(name))
        return usedHandle(*component);
    if (m_functions.contains(normal))
        return cppName(name);
    QString command = m_tables.commandText(name);
    if (!command.isEmpty())
        return command;
    if (name.startsWith(QLatin1Char('#'))) {
        QString colour = colourText(name);
        if (!colour.isEmpty())
            return colour;
        if (name.size() > 1)
            return Names::sanitize(name.mid(1));
    }
    return cppName(name);
}

QString Generation::incomplete(const Node *node, const QString &sign)
{
    report(GeneratorMessage::incompleteExpression, lineOf(node), {sign});
    return QString();
}

// C++ evaluates the sides of its own operators in order, but not those of the runtime's.
bool Generation::isOverloaded(const Node *operation)
{
    if (operation->value == QLatin1String("&&") || operation->value == QLatin1String("||"))
        return false;
    const auto isNumber = [](ValueType type) {
        return type == ValueType::Int || type == ValueType::Double || type == ValueType::Bool;
    };
    return !isNumber(inferType(operation->children.at(0))) ||
           !isNumber(inferType(operation->children.at(1)));
}

QString Generation::binary(const Node *node)
{
    if (node->children.size() < 2)
        return incomplete(node, node->value);
    // A long sum nests to the left; its left end is reached by a loop, not by recursion.
    QList<const Node *> chain;
    const Node *leftmost = node;
    while (leftmost->type == Parser::Binary && leftmost->children.size() >= 2) {
        chain << leftmost;
        leftmost = leftmost->children.first();
    }
    QString text = expression(leftmost);
    if (outgrowsInt(leftmost, chain))
        text.prepend(QLatin1String("(long long)"));
    // In "ab" + x + y the text on the left decides how a number on the right is joined.
    bool stringChain = isStringLiteral(leftmost);
    bool leftHasEffect = hasEffect(leftmost);
    QString open;
    for (auto it = chain.crbegin(); it != chain.crend(); ++it) {
        const Node *operation = *it;
        const Node *right = operation->children.at(1);
        const bool plus = operation->value == QLatin1String("+");
        const bool rightHasEffect = hasEffect(right);
        if (leftHasEffect && rightHasEffect && chain.size() <= kMostOrderedOperands &&
            isOverloaded(operation)) {
            text = QLatin1String("([&]() { auto&& __vl_l = ") + open + text +
                   QLatin1String("; auto&& __vl_r = ") + expression(right) +
                   QLatin1String("; return __vl_l ") + operation->value +
                   QLatin1String(" __vl_r; }())");
            open.clear();
        } else if (plus && stringChain && isIntLiteral(right)) {
            text += QLatin1String(" + (long long)(") + expression(right) + QLatin1String("))");
            open += QLatin1Char('(');
        } else if (operation->value == QLatin1String("%") &&
                   (inferType(operation->children.first()) == ValueType::Double ||
                    inferType(right) == ValueType::Double)) {
            text = QLatin1String("(std::fmod((double)(") + open + text +
                   QLatin1String("), (double)(") + expression(right) + QLatin1String(")))");
            open.clear();
        } else {
            text += QLatin1Char(' ') + operation->value + QLatin1Char(' ') + expression(right) +
                    QLatin1Char(')');
            open += QLatin1Char('(');
        }
        stringChain = stringChain && plus;
        leftHasEffect = leftHasEffect || rightHasEffect;
    }
    return open + text;
}

QString Generation::unary(const Node *node)
{
    if (node->children.isEmpty())
        return incomplete(node, node->value);
    const Node *operand = node->children.first();
    if (node->flag(Meta::postfix) && operand->type == Parser::Member) {
        if (const auto component = componentOf(operand->children.value(0))) {
            const QString sign = node->value.left(1) + QLatin1Char('=');
            return componentAssign(operand, *component, sign, QStringLiteral("1"), ValueType::Int);
        }
    }
    const QString text = expression(operand);
    if (node->flag(Meta::postfix))
        return text + node->value;
    if (node->value == QLatin1String("!") || node->value == QStringLiteral("非")) {
        const bool compound = operand->type == Parser::Binary || operand->type == Parser::Ternary ||
                              operand->type == Parser::Assign;
        return compound ? QLatin1String("!(") + text + QLatin1Char(')') : QLatin1Char('!') + text;
    }
    // "- -1" must not become "--1".
    if (text.startsWith(node->value))
        return node->value + QLatin1Char('(') + text + QLatin1Char(')');
    return node->value + text;
}

QString Generation::ternary(const Node *node)
{
    if (node->children.size() < 3)
        return incomplete(node, QStringLiteral("?:"));
    const QString test = condition(node->children.at(0));
    QString first = expression(node->children.at(1));
    QString second = expression(node->children.at(2));
    // C++ wants one type on both sides; numbers meet by themselves.
    const ValueType firstType = inferType(node->children.at(1));
    const ValueType secondType = inferType(node->children.at(2));
    const auto isNumber = [](ValueType type) {
        return type == ValueType::Int || type == ValueType::Double || type == ValueType::Bool;
    };
    if (firstType != secondType && !(isNumber(firstType) && isNumber(secondType)) &&
        firstType != ValueType::Object && secondType != ValueType::Object) {
        first = QLatin1String("VL_Any(") + first + QLatin1Char(')');
        second = QLatin1String("VL_Any(") + second + QLatin1Char(')');
    }
    return QLatin1Char('(') + test + QLatin1String(" ? ") + first + QLatin1String(" : ") + second +
           QLatin1Char(')');
}

bool Generation::isDictionary(const Node *node) const
{
    if (node->type != Parser::Identifier)
        return false;
    const Variable *variable = m_scopes.find(node->value);
    return variable && variable->dictionary;
}

// Whether an index names an entry of a dictionary.
bool Generation::isEntry(const Node *node) const
{
    if (node->type != Parser::Index || node->children.size() < 2)
        return false;
    const Node *base = node->children.at(0);
    const Node *key = node->children.at(1);
    const bool textKey = isStringLiteral(key) ||
                         (inferType(key) == ValueType::Text && inferType(base) == ValueType::Any);
    return textKey &&
           (base->type != Parser::Identifier || isDictionary(base) || !isStringLiteral(key));
}

QString Generation::index(const Node *node)
{
    if (node->children.size() < 2)
        return incomplete(node, QStringLiteral("["));
    const Node *base = node->children.at(0);
    const Node *key = node->children.at(1);
    if (isEntry(node)) {
        const QString text = expression(base);
        return QLatin1String("VL_DictGet(") + text + QLatin1String(", ") + expression(key) +
               QLatin1Char(')');
    }
    const QString text = expression(base);
    // One character of a text is a text, not a number.
    if (inferType(base) == ValueType::Text)
        return QLatin1String("VL_CharAt(") + text + QLatin1String(", ") + expression(key) +
               QLatin1Char(')');
    return text + QLatin1Char('[') + expression(key) + QLatin1Char(']');
}

QString Generation::valueFor(ValueType target, const Node *value)
{
    const bool plainArray = target == ValueType::Array && value &&
                            value->type == Parser::ArrayLiteral && !value->flag(Meta::braceLiteral);
    if (plainArray)
        return arrayLiteral(value, false);
    // C++ takes a number for the code of a character.
    const ValueType given = target == ValueType::Text ? inferType(value) : ValueType::Unknown;
    const bool isNumber =
        given == ValueType::Int || given == ValueType::Double || given == ValueType::Bool;
    if (isNumber || (given == ValueType::Any && value->type == Parser::Binary))
        return QLatin1String("VL_ToOutputStr(") + expression(value) + QLatin1Char(')');
    return expression(value);
}

QString Generation::arrayLiteral(const Node *node, bool mayBeTable)
{
    const bool table = mayBeTable && allArrayLiterals(node);
    const bool cube = table && allArrayLiterals(node->children.first());
    QString text = cube    ? QStringLiteral("std::vector<std::vector<std::vector<VL_Any>>>{")
                   : table ? QStringLiteral("std::vector<std::vector<VL_Any>>{")
                           : QStringLiteral("std::vector<VL_Any>{");
    bool first = true;
    for (const Node *child : node->children) {
        if (!first)
            text += QLatin1String(", ");
        first = false;
        if (table)
            text += arrayLiteral(child);
        else
            text += QLatin1String("VL_Any(") + expression(child) + QLatin1Char(')');
    }
    return text + QLatin1Char('}');
}

// A dictionary where an expression is wanted. Pairs are children in turn: key, value.
QString Generation::dictionaryLiteral(const Node *node)
{
    QString text = QStringLiteral("([&]() -> VL_Any { VL_Any __vl_d = VL_NewDictAny(); ");
    for (int i = 0; i + 1 < node->children.size(); i += 2) {
        text += QLatin1String("VL_DictSet(__vl_d, ") + expression(node->children.at(i)) +
                QLatin1String(", VL_Any(") + expression(node->children.at(i + 1)) +
                QLatin1String(")); ");
    }
    return text + QLatin1String("return __vl_d; }())");
}

bool Generation::givesDictionary(const Node *node) const
{
    if (!node)
        return false;
    if (node->flag(Meta::braceLiteral))
        return true;
    if (node->type != Parser::Call || node->children.isEmpty() ||
        node->children.first()->type != Parser::Identifier)
        return false;
    const QString target = m_tables.commandText(node->children.first()->value);
    return target == QLatin1String("VL_ReadJsonFileEx") ||
           target == QLatin1String("VL_ParseJsonToAny");
}

void Generation::noteDictionary(const Node *target, const Node *value)
{
    if (target->type == Parser::Identifier && givesDictionary(value))
        m_scopes.markDictionary(target->value);
}

// An item or entry as the target of an assignment: written back by the runtime, level by level.
QString Generation::itemTarget(const Node *node)
{
    const Node *base = node->children.at(0);
    const bool nested = base->type == Parser::Index && base->children.size() == 2;
    const QString text = nested ? itemTarget(base) : expression(base);
    return text + QLatin1Char('[') + expression(node->children.at(1)) + QLatin1Char(']');
}

QString Generation::assignment(const Node *node)
{
    if (node->children.size() < 2)
        return incomplete(node, node->value);
    const Node *target = node->children.at(0);
    const Node *value = node->children.at(1);
    const bool plain = node->value == QLatin1String("=");
    if (target->type == Parser::Member) {
        if (const auto component = componentOf(target->children.value(0)))
            return componentWrite(node, *component);
    }
    if (target->type == Parser::Index && target->children.size() == 2) {
        const Node *base = target->children.at(0);
        const Node *key = target->children.at(1);
        if (plain && isStringLiteral(key) && isDictionary(base)) {
            return QLatin1String("VL_DictSet(") + expression(base) + QLatin1String(", ") +
                   expression(key) + QLatin1String(", VL_Any(") + expression(value) +
                   QLatin1String("))");
        }
        return itemTarget(target) + QLatin1Char(' ') + node->value + QLatin1Char(' ') +
               expression(value);
    }
    const ClassSymbol *symbol = classOf(target);
    const bool moves = symbol && (symbol->structName == QLatin1String("VL_TcpClass") ||
                                  symbol->structName == QLatin1String("VL_UdpClass") ||
                                  symbol->structName == QLatin1String("VL_WebSocketClass"));
    const QString left = expression(target);
    if (moves && plain)
        return left + QLatin1String(" = std::move(") + expression(value) + QLatin1Char(')');
    QString text = left + QLatin1Char(' ') + node->value + QLatin1Char(' ') +
                   valueFor(inferType(target), value);
    noteDictionary(target, value);
    return text;
}

// A member of an object, a component or a window.
QString Generation::member(const Node *node)
{
    const Node *object = node->children.value(0);
    if (!object)
        return cppName(node->value);
    if (const auto component = componentOf(object))
        return componentRead(node, *component);
    // A control of another window, written with the window's name.
    if (const auto control = componentOf(node))
        return usedHandle(*control);
    const QString text = expression(object);
    const ClassSymbol *symbol = classOf(object);
    if (!symbol)
        return text + QLatin1Char('.') + cppName(node->value);
    const auto property = symbol->properties.constFind(Names::normalized(node->value));
    if (property != symbol->properties.cend()) {
        return text + QLatin1Char('.') + property->cppName +
               (property->getter ? QLatin1String("()") : QLatin1String());
    }
    const auto method = symbol->methods.constFind(Names::normalized(node->value));
    if (symbol->builtin && method != symbol->methods.cend())
        return text + QLatin1Char('.') + method->cppName + QLatin1String("()");
    return text + QLatin1Char('.') + cppName(node->value);
}
