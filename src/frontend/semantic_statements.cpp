// The checks of declarations, loops, branches and returns.
#include "frontend/semantic_walk.h"

#include "frontend/class_index.h"
#include "frontend/metadata.h"
#include "frontend/tree_queries.h"

namespace {

using Node = Parser::ASTNode;

bool isPlainArrayLiteral(const Node *node)
{
    return node->type == Parser::ArrayLiteral && !node->flag(Meta::braceLiteral);
}

} // namespace

void SemanticWalk::block(const Node *node)
{
    if (!node)
        return;
    for (const Node *child : node->children)
        statement(child);
}

void SemanticWalk::scopedBlock(const Node *node)
{
    m_scopes.emplace_back();
    block(node);
    popScope();
}

void SemanticWalk::statement(const Node *node)
{
    if (!node)
        return;
    m_line = lineOf(node);
    switch (node->type) {
    case Parser::VarDecl:
        declaration(node);
        break;
    case Parser::Block:
        scopedBlock(node);
        break;
    case Parser::If:
        ifStatement(node);
        break;
    case Parser::Switch:
        switchStatement(node);
        break;
    case Parser::While:
        condition(node->children.value(0), QStringLiteral("当"));
        if (node->children.size() > 1)
            scopedBlock(node->children.last());
        break;
    case Parser::Loop:
        loopStatement(node);
        break;
    case Parser::ForEach:
        forEachStatement(node);
        break;
    case Parser::Return:
        returnStatement(node);
        break;
    case Parser::ExprStmt:
        expressionStatement(node->children.value(0));
        break;
    default:
        break;
    }
}

void SemanticWalk::expressionStatement(const Node *node)
{
    if (!node)
        return;
    const int messagesBefore = m_messages.size();
    typeOf(node);
    const bool acts = node->type == Parser::Call || node->type == Parser::Assign ||
                      node->type == Parser::Ternary ||
                      (node->type == Parser::Unary && node->flag(Meta::postfix));
    // A function's name without brackets and the like have been reported already.
    if (!acts && m_messages.size() == messagesBefore)
        report(CheckMessage::NoEffect, node);
}

void SemanticWalk::declaration(const Node *node)
{
    const SemanticType declared = m_symbols.declaredType(node);
    const SemanticType given = initialType(node, declared);
    // "变量 甲" is what its value is, or takes whatever comes later.
    const bool inferred =
        !declared.isKnown() && node->metadata.value(Meta::varType) == QLatin1String("auto");
    const SemanticType any{ValueType::Any, QString()};
    declareLocal(node, !inferred ? declared : node->children.isEmpty() ? any : given);
    findLocal(node->value)->isInferred = inferred && !node->children.isEmpty();
}

// Checks the initial value against the declaration and gives its type.
SemanticType SemanticWalk::initialType(const Node *node, const SemanticType &declared)
{
    const Node *child = node->children.value(0);
    const SemanticType given = child ? value(child) : SemanticType();
    if (TreeQueries::isArrayType(node->metadata.value(Meta::varType)))
        arrayDeclaration(node, given);
    else if (child)
        checkInitialValue(node, declared, given);
    return given;
}

void SemanticWalk::arrayDeclaration(const Node *node, const SemanticType &given)
{
    const Node *child = node->children.value(0);
    const int dimensions = node->metadata.value(Meta::dimensions).toInt();
    if (dimensions > 3) {
        report(CheckMessage::ArrayMalformed, node, {node->value});
        return;
    }
    if (!child)
        return;
    if (isPlainArrayLiteral(child)) {
        const int depth = TreeQueries::literalDimensions(child);
        // An array may hold arrays, and [] fits every number of dimensions.
        if (!child->children.isEmpty() && dimensions > 0 && depth != dimensions &&
            dimensions != 1) {
            report(CheckMessage::ArrayDimensions, node,
                   {node->value, TreeQueries::dimensionWord(dimensions),
                    TreeQueries::dimensionWord(depth)});
        }
        return;
    }
    const bool isArray = given.kind == ValueType::Array || given.kind == ValueType::Array2D ||
                         given.kind == ValueType::Array3D || given.kind == ValueType::Any;
    if (isArray || !given.isKnown())
        return;
    if (dimensions < 1) {
        report(CheckMessage::ArrayValueUnknown, node, {node->value});
        return;
    }
    const QString brackets = QStringLiteral("[]").repeated(dimensions);
    report(CheckMessage::ArrayValue, node,
           {node->value, QStringLiteral("数组 %1%2 = %2").arg(node->value, brackets)});
}

void SemanticWalk::checkInitialValue(const Node *node, const SemanticType &declared,
                                     const SemanticType &given)
{
    const Node *child = node->children.first();
    if (checkAssignedLiteral(node, declared, child, node->value))
        return;
    if (child->flag(Meta::braceLiteral) && declared.isKnown() && declared.kind != ValueType::Any) {
        report(CheckMessage::DictionaryVariable, node, {wordOfType(declared), node->value});
        return;
    }
    // Numbers for a text and the like are the generator's to refuse, in the words of declarations.
    const bool isOurs = declared.kind == ValueType::Object || given.kind == ValueType::Object ||
                        given.kind == ValueType::Handle;
    if (isOurs && !fits(TypePair::Initialize, declared, given))
        reportMismatch(node, declared, given, node->value, child);
}

// What a literal can tell for sure; true when it was refused.
bool SemanticWalk::checkAssignedLiteral(const Node *place, const SemanticType &declared,
                                        const Node *value, const QString &name)
{
    if (value->type != Parser::Literal)
        return false;
    const QString type = value->metadata.value(Meta::literalType);
    const QString word = wordOfType(declared);
    const bool isText = type == Meta::literalString;
    if (isText && (declared.kind == ValueType::Int || declared.kind == ValueType::Bool))
        report(CheckMessage::TextAssigned, place, {word, name});
    else if (type == Meta::literalBool && declared.kind == ValueType::Text)
        report(CheckMessage::BoolAssignedToText, place, {word, name});
    else
        return false;
    return true;
}

void SemanticWalk::condition(const Node *node, const QString &word)
{
    if (!node || node->type == Parser::Block)
        return;
    const SemanticType type = value(node);
    if (!m_rules.fits(TypeUse::Condition, type.kind))
        report(CheckMessage::ConditionType, node, {word, wordOfType(type)});
}

void SemanticWalk::ifStatement(const Node *node)
{
    for (const Node *child : node->children) {
        if (child->type == Parser::Block) {
            scopedBlock(child);
        } else if (child->type == Parser::If && child != node->children.first()) {
            const Node *test = child->children.value(0);
            condition(test, QStringLiteral("否则如果"));
            for (const Node *part : child->children) {
                if (part->type == Parser::Block)
                    scopedBlock(part);
            }
        } else {
            condition(child, QStringLiteral("如果"));
        }
    }
}

void SemanticWalk::switchStatement(const Node *node)
{
    SemanticType subject;
    for (const Node *child : node->children) {
        if (child->type != Parser::Case && child->type != Parser::Default) {
            subject = value(child);
            continue;
        }
        const bool isEmpty = child->type == Parser::Case && !child->label &&
                             child->metadata.value(Meta::literalType).isEmpty();
        if (isEmpty)
            report(CheckMessage::LabelWithoutValue, child);
        if (child->label) {
            const SemanticType label = value(child->label);
            if (!fits(TypePair::Compare, subject, label))
                report(CheckMessage::UseOfType, child->label,
                       {QStringLiteral("选择"), wordOfType(subject)});
        }
        if (!child->children.isEmpty())
            scopedBlock(child->children.first());
    }
}

void SemanticWalk::loopStatement(const Node *node)
{
    const QString kind = node->metadata.value(Meta::loopType);
    m_scopes.emplace_back();
    for (int i = 0; i < node->children.size(); ++i) {
        const Node *child = node->children.at(i);
        const bool isVariable =
            (i == 0 && (kind == Meta::loopRange || kind == Meta::loopRangeStep)) ||
            (i == 1 && kind == Meta::loopCountVar);
        if (child->type == Parser::Block) {
            // C++ holds the header's variables and those of the body for one scope.
            block(child);
        } else if (child->type == Parser::VarDecl) {
            declaration(child);
        } else if (isVariable) {
            loopVariable(child);
        } else if (kind == Meta::loopWhileCond) {
            condition(child, QStringLiteral("循环"));
        } else if (kind == Meta::loopCStyle) {
            typeOf(child);
        } else {
            const SemanticType type = value(child);
            if (!m_rules.fits(TypeUse::Negate, type.kind))
                report(CheckMessage::UseOfType, child, {QStringLiteral("循环"), wordOfType(type)});
        }
    }
    popScope();
}

// A variable that the loop counts in.
void SemanticWalk::loopVariable(const Node *node)
{
    const SemanticType type = value(node);
    if (!isAssignable(node))
        report(CheckMessage::AssignmentTarget, node);
    else if (!m_rules.fits(TypeUse::Step, type.kind))
        report(CheckMessage::StepType, node, {QStringLiteral("循环"), wordOfType(type)});
}

void SemanticWalk::forEachStatement(const Node *node)
{
    const Node *source = node->children.value(0);
    if (source && source->type != Parser::Block) {
        const SemanticType type = value(source);
        if (!m_rules.fits(TypeUse::Elements, type.kind))
            report(CheckMessage::UseOfType, source, {QStringLiteral("遍历"), wordOfType(type)});
    }
    for (const QString &key : {Meta::indexVar, Meta::elementVar}) {
        const QString name = node->metadata.value(key);
        if (name.isEmpty())
            continue;
        Parser::ASTNode variable(Parser::Identifier, lineOf(node));
        variable.value = name;
        const SemanticType type = identifier(&variable, Access::Read);
        const bool isIndex = key == Meta::indexVar;
        if (isIndex && !m_rules.fits(TypeUse::Step, type.kind))
            report(CheckMessage::StepType, node, {QStringLiteral("遍历"), wordOfType(type)});
        else if (!isIndex && type.kind == ValueType::Object)
            report(CheckMessage::AssignmentMismatch, node,
                   {wordOfType(type), name, wordOf(ValueType::Any), QString()});
    }
    if (!node->children.isEmpty() && node->children.last()->type == Parser::Block)
        scopedBlock(node->children.last());
}

void SemanticWalk::returnStatement(const Node *node)
{
    const Node *child = node->children.value(0);
    const SemanticType wanted = m_function.result;
    const SemanticType given = child ? typeOf(child) : SemanticType();
    const QString function = m_function.name;
    if (wanted.kind == ValueType::Void) {
        if (child && given.kind != ValueType::Void)
            report(CheckMessage::ValueReturned, node,
                   {function, given.isKnown() ? wordOfType(given) : QStringLiteral("值")});
        return;
    }
    if (!child) {
        report(CheckMessage::ValueMissing, node, {function, wordOfType(wanted)});
        return;
    }
    if (given.kind == ValueType::Void) {
        report(CheckMessage::ValueOfNothing, child, {nameOf(child)});
        return;
    }
    const bool isNumber = given.kind == ValueType::Int || given.kind == ValueType::Double;
    const bool refused =
        (wanted.kind == ValueType::Bool && isNumber) || !fits(TypePair::Initialize, wanted, given);
    if (refused)
        report(CheckMessage::ReturnType, child, {function, wordOfType(wanted), wordOfType(given)});
}
