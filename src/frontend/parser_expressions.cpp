// Expressions: operators, from assignment down to calls, members and indices.
#include "frontend/metadata.h"
#include "frontend/operators.h"
#include "frontend/parser.h"
#include "frontend/parser_messages.h"

#include <climits>

namespace {

// Levels of binary operators, the loosest first; noLevel is no operator.
enum BinaryLevel
{
    noLevel,
    orLevel,
    andLevel,
    equalityLevel,
    orderLevel,
    sumLevel,
    productLevel
};

int binaryLevel(int tokenKind)
{
    switch (tokenKind) {
    case Lexer::Or:
        return orLevel;
    case Lexer::And:
        return andLevel;
    case Lexer::Equal:
    case Lexer::NotEqual:
        return equalityLevel;
    case Lexer::Less:
    case Lexer::Greater:
    case Lexer::LessEqual:
    case Lexer::GreaterEqual:
        return orderLevel;
    case Lexer::Plus:
    case Lexer::Minus:
        return sumLevel;
    case Lexer::Star:
    case Lexer::Slash:
    case Lexer::Percent:
        return productLevel;
    default:
        return noLevel;
    }
}

bool isAssignment(int tokenKind)
{
    return tokenKind == Lexer::Assign ||
           (tokenKind >= Lexer::PlusAssign && tokenKind <= Lexer::SlashAssign);
}

bool isMemberName(int tokenKind)
{
    return tokenKind == Lexer::Identifier || tokenKind == Lexer::Text || tokenKind == Lexer::Int ||
           tokenKind == Lexer::Double || tokenKind == Lexer::Bool;
}

// Words that no expression holds: where nesting went wrong, a new statement begins here.
bool startsStatement(int tokenKind)
{
    return (tokenKind >= Lexer::If && tokenKind <= Lexer::Switch) ||
           (tokenKind >= Lexer::While && tokenKind <= Lexer::Private);
}

// A new node around `inner`, which becomes child 0. It stands where `inner` does.
Parser::ASTNode *encloseNode(int type, const QString &value, Parser::ASTNode *inner)
{
    auto *outer = new Parser::ASTNode(type);
    outer->value = value;
    outer->standAt(*inner);
    outer->children.append(inner);
    return outer;
}

// The same for an operation, which stands where its sign does.
Parser::ASTNode *encloseOperand(int type, const QString &value, const Lexer::Token &sign,
                                Parser::ASTNode *inner)
{
    Parser::ASTNode *outer = encloseNode(type, value, inner);
    outer->standAt(sign);
    return outer;
}

} // namespace

// The one way into an expression, from outside and from within.
Parser::Expression Parser::parseGuarded()
{
    if (m_depth > ParserLimits::nestedExpressions)
        return refuseExpression();
    const NestingScope nesting(this);
    return parseAssignment();
}

// Passes over what nests too deep, to the end of the brackets or the list it stands in. Everything
// said about the rest of the expression would be an echo, so it is muted.
Parser::Expression Parser::refuseExpression()
{
    refuseNesting();
    int round = 0;
    int curly = 0;
    int questions = 0;
    for (; !at(Lexer::EndOfFile) && !startsStatement(kind()); advance()) {
        switch (kind()) {
        case Lexer::LeftParen:
        case Lexer::LeftBracket:
            ++round;
            break;
        case Lexer::RightParen:
        case Lexer::RightBracket:
            if (round == 0 && curly == 0)
                return {};
            round = qMax(round - 1, 0);
            break;
        case Lexer::LeftBrace:
            ++curly;
            break;
        case Lexer::RightBrace:
            if (curly-- == 0)
                return {};
            break;
        case Lexer::Question:
            questions += round == 0 && curly == 0 ? 1 : 0;
            break;
        case Lexer::Colon:
            if (round == 0 && curly == 0 && questions-- == 0)
                return {};
            break;
        case Lexer::Comma:
        case Lexer::Semicolon:
            if (round == 0 && curly == 0)
                return {};
            break;
        default:
            break;
        }
    }
    return {};
}

// Says it once for each outermost expression.
void Parser::refuseNesting()
{
    report(ParserMessage::NestingTooDeep);
    m_muted = true;
}

// Whether a tree may be this high; refuses it if not.
bool Parser::fits(int height)
{
    if (height <= ParserLimits::expressionHeight)
        return true;
    refuseNesting();
    return false;
}

// Makes `child` the last child of `parent`. A missing one is left out, and so is one that is too
// high.
bool Parser::adopt(Expression *parent, Expression child)
{
    if (!child.node || !fits(child.height + 1))
        return false;
    parent->height = qMax(parent->height, child.height + 1);
    parent->node->children.append(child.node.release());
    return true;
}

// The outer node, or its first child alone if the outer is too high.
Parser::Expression Parser::unwrapIfTooHigh(Expression outer, int innerHeight)
{
    if (fits(outer.height))
        return outer;
    return {Node(outer.node->children.takeFirst()), innerHeight};
}

// assignment: ternary [ op assignment ]
// The chain is collected and then closed from the right, so that its length costs no stack.
Parser::Expression Parser::parseAssignment()
{
    struct Link
    {
        Expression target;
        Lexer::Token sign;
    };
    Expression value = parseTernary();
    if (!isAssignment(kind()))
        return value;
    std::vector<Link> links;
    while (value.node && isAssignment(kind())) {
        links.push_back({std::move(value), current()});
        advance();
        value = parseTernary();
    }
    for (auto link = links.rbegin(); link != links.rend(); ++link) {
        const int targetHeight = link->target.height;
        ASTNode *node =
            encloseOperand(Assign, link->sign.text, link->sign, link->target.node.release());
        Expression outer{Node(node), targetHeight + 1};
        adopt(&outer, std::move(value));
        value = unwrapIfTooHigh(std::move(outer), targetHeight);
    }
    return value;
}

// A sign's token, or a token of any kind with the sign as its text.
bool Parser::isSign(int tokenKind, QChar sign) const
{
    const Lexer::Token &token = current();
    return token.type == tokenKind || (token.text.size() == 1 && token.text.at(0) == sign);
}

// ternary: binary [ "?" expression ":" ternary ]
Parser::Expression Parser::parseTernary()
{
    struct Link
    {
        Expression condition;
        Expression chosen;
        Lexer::Token sign;
    };
    Expression last = parseBinary(orLevel);
    if (!isSign(Lexer::Question, QLatin1Char('?')))
        return last;
    std::vector<Link> links;
    while (last.node && isSign(Lexer::Question, QLatin1Char('?'))) {
        const Lexer::Token sign = current();
        advance();
        Expression chosen = parseGuarded();
        if (!isSign(Lexer::Colon, QLatin1Char(':'))) {
            reportPlain(sign, ParserMessage::TernaryWithoutColon);
            break;
        }
        advance();
        links.push_back({std::move(last), std::move(chosen), sign});
        last = parseBinary(orLevel);
    }
    for (auto link = links.rbegin(); link != links.rend(); ++link) {
        const int conditionHeight = link->condition.height;
        ASTNode *node = encloseOperand(Ternary, QStringLiteral("?:"), link->sign,
                                       link->condition.node.release());
        Expression outer{Node(node), conditionHeight + 1};
        adopt(&outer, std::move(link->chosen));
        adopt(&outer, std::move(last));
        last = unwrapIfTooHigh(std::move(outer), conditionHeight);
    }
    return last;
}

// binary: operand { op operand } on the levels from `loosest` to the tightest
Parser::Expression Parser::parseBinary(int loosest)
{
    Expression left = parseUnary();
    // Behind a missing right side stands a tighter operator, which none of the levels takes.
    int tightest = INT_MAX;
    while (left.node) {
        const Lexer::Token sign = current();
        const int level = binaryLevel(sign.type);
        if (level < loosest || level > tightest)
            break;
        tightest = level;
        advance();
        Expression right = parseBinary(level + 1);
        if (!fits(qMax(left.height, right.height) + 1))
            continue;
        ASTNode *outer = encloseOperand(Binary, operatorText(sign.type), sign, left.node.release());
        left = {Node(outer), left.height + 1};
        adopt(&left, std::move(right));
    }
    return left;
}

// unary: { "!" | "-" } ( "&" name | postfix )
Parser::Expression Parser::parseUnary()
{
    std::vector<Lexer::Token> signs;
    for (; at(Lexer::Not) || at(Lexer::Minus); advance())
        signs.push_back(current());
    Expression operand = at(Lexer::Ampersand) ? parseCallbackReference() : parsePostfix();
    if (!operand.node)
        return {};
    for (auto sign = signs.rbegin(); sign != signs.rend(); ++sign) {
        if (!fits(operand.height + 1))
            break;
        operand.node.reset(encloseOperand(Unary, sign->text, *sign, operand.node.release()));
        ++operand.height;
    }
    return operand;
}

// callback: "&" postfix, which must be a plain name
Parser::Expression Parser::parseCallbackReference()
{
    const Lexer::Token mark = current();
    advance();
    Expression operand = parsePostfix();
    if (!operand.node)
        return {};
    if (operand.node->type == Identifier)
        operand.node->metadata.insert(Meta::callbackRef, Meta::flagOn);
    else
        reportPlain(mark, ParserMessage::CallbackMark, {QString::number(mark.line)});
    return operand;
}

// postfix: primary { call | member | index | "++" | "--" }
Parser::Expression Parser::parsePostfix()
{
    Expression operand = parsePrimary();
    while (operand.node) {
        switch (kind()) {
        case Lexer::LeftParen:
            operand = parseCall(std::move(operand));
            break;
        case Lexer::Dot:
            operand = parseMember(std::move(operand));
            break;
        case Lexer::LeftBracket:
            operand = parseIndex(std::move(operand));
            break;
        case Lexer::PlusPlus:
        case Lexer::MinusMinus:
            operand = parseStep(std::move(operand));
            break;
        default:
            return operand;
        }
    }
    return operand;
}

// call: "(" { expression "," } ")". A comma where an expression could stand is an argument left
// out.
Parser::Expression Parser::parseCall(Expression callee)
{
    static const QMap<QString, QString> leftOut{{Meta::literalType, Meta::literalEmpty},
                                                {Meta::isEmpty, Meta::flagOn}};
    const int calleeHeight = callee.height;
    const int line = callee.node->line;
    ASTNode *node = encloseNode(Call, QString(), callee.node.release());
    node->line = line;
    Expression call{Node(node), calleeHeight + 1};
    advance();
    while (!at(Lexer::RightParen) && !at(Lexer::EndOfFile)) {
        if (at(Lexer::Comma)) {
            Node placeholder = newUnlinedNode(Literal);
            placeholder->metadata = leftOut;
            append(node, std::move(placeholder));
            advance();
            continue;
        }
        adopt(&call, parseGuarded());
        if (!match(Lexer::Comma))
            break;
    }
    expect(Lexer::RightParen, ParserMessage::ExpectedCloseParen);
    return unwrapIfTooHigh(std::move(call), calleeHeight);
}

// member: "." name. The name may be missing, and may be one of some type words.
Parser::Expression Parser::parseMember(Expression object)
{
    const int objectHeight = object.height;
    const int line = object.node->line;
    ASTNode *node = encloseOperand(Member, QString(), current(), object.node.release());
    node->line = line;
    Expression member{Node(node), objectHeight + 1};
    advance();
    if (isMemberName(kind())) {
        node->value = current().text;
        node->standAt(current());
        advance();
    }
    resolveMember(node);
    return unwrapIfTooHigh(std::move(member), objectHeight);
}

// Notes what the member of a known class is called in C++. An unknown member is no error here.
void Parser::resolveMember(ASTNode *member)
{
    const auto type = m_varTypes.constFind(member->children.first()->value);
    if (type == m_varTypes.constEnd())
        return;
    member->metadata.insert(Meta::className, *type);
    const QString classKey = findClassKey(*type);
    if (classKey.isEmpty())
        return;
    const bool isCall = at(Lexer::LeftParen);
    member->metadata.insert(isCall ? Meta::isClassMethod : Meta::isClassProperty, Meta::flagOn);
    const QString key = findMember(classKey, member->value);
    const ClassInfo &info = *m_classRegistry.constFind(classKey);
    const auto &wanted = isCall ? info.methods : info.properties;
    const auto &other = isCall ? info.properties : info.methods;
    const auto found = wanted.constFind(key);
    const QString cppName = found != wanted.constEnd() ? found->cppName : other.value(key).cppName;
    if (!cppName.isEmpty())
        member->metadata.insert(isCall ? Meta::cppMethod : Meta::cppGetter, cppName);
}

// index: "[" expression "]"
Parser::Expression Parser::parseIndex(Expression base)
{
    const int baseHeight = base.height;
    Expression index{Node(encloseNode(Index, QString(), base.node.release())), baseHeight + 1};
    advance();
    adopt(&index, parseGuarded());
    expect(Lexer::RightBracket, ParserMessage::ExpectedCloseBracket);
    return unwrapIfTooHigh(std::move(index), baseHeight);
}

// step: "++" | "--"
Parser::Expression Parser::parseStep(Expression operand)
{
    const int operandHeight = operand.height;
    ASTNode *node = encloseOperand(Unary, current().text, current(), operand.node.release());
    node->metadata.insert(Meta::postfix, Meta::flagOn);
    advance();
    return unwrapIfTooHigh({Node(node), operandHeight + 1}, operandHeight);
}
