// The checks of calls: functions and classes of the program, commands, members.
#include "frontend/semantic_walk.h"

#include "frontend/class_index.h"
#include "frontend/metadata.h"

#include <algorithm>

namespace {

using Node = Parser::ASTNode;

const QString kConstructor = QStringLiteral("构造");
const SemanticType kNoType;

bool isPlaceholder(const Node *node)
{
    return node->type == Parser::Literal && node->flag(Meta::isEmpty);
}

// "&名称"
bool isFunctionReference(const Node *node)
{
    return node->type == Parser::Identifier && node->flag(Meta::callbackRef);
}

int argumentCount(const Node *call)
{
    return call->children.size() - 1;
}

// "参数一" to "参数九", then "参数10".
QString ordinal(int position)
{
    static const QString digits = QStringLiteral("一二三四五六七八九");
    return QStringLiteral("参数") + (position < digits.size() ? QString(digits.at(position))
                                                              : QString::number(position + 1));
}

bool takes(const CommandOverload &overload, int count)
{
    return count >= overload.requiredCount() &&
           (overload.variadic || count <= overload.parameters.size());
}

bool isScalar(ValueType kind)
{
    return kind == ValueType::Int || kind == ValueType::Double || kind == ValueType::Text ||
           kind == ValueType::Bool;
}

// Whether a parameter of one type word takes a value. Numbers are turned into each other.
bool accepts(ValueType wanted, ValueType given)
{
    switch (wanted) {
    case ValueType::Int:
    case ValueType::Double:
        return given != ValueType::Text && (isScalar(given) || given == ValueType::Handle);
    case ValueType::Text:
        return given != ValueType::Int && given != ValueType::Double && given != ValueType::Object;
    case ValueType::Bool:
        return given == ValueType::Bool;
    case ValueType::Array:
    case ValueType::Array2D:
    case ValueType::Array3D:
    case ValueType::Bytes:
        return !isScalar(given) && given != ValueType::Object;
    default:
        return given != ValueType::Object;
    }
}

// What a call gives. A function that returns a value without saying so is told there, not at every
// call.
SemanticType resultOf(const FunctionSymbol &function)
{
    const bool isForgotten = function.result.kind == ValueType::Void && function.returnsSomething;
    return isForgotten ? kNoType : function.result;
}

} // namespace

SemanticType SemanticWalk::call(const Node *node)
{
    const Node *callee = node->children.value(0);
    if (!callee)
        return kNoType;
    if (callee->type == Parser::Identifier)
        return namedCall(node, callee);
    if (callee->type == Parser::Member)
        return memberCall(node, callee);
    typeOf(callee);
    arguments(node);
    report(CheckMessage::CallOfExpression, node);
    return kNoType;
}

SemanticWalk::Types SemanticWalk::arguments(const Node *node,
                                            const std::function<bool(int)> &isCallback)
{
    Types types;
    for (int i = 1; i < node->children.size(); ++i) {
        const Node *argument = node->children.at(i);
        const bool isFunctionName = isCallback && isCallback(i - 1) &&
                                    argument->type == Parser::Identifier &&
                                    !m_symbols.functions(argument->value).isEmpty();
        types << (isPlaceholder(argument) || isFunctionName ? kNoType : value(argument));
    }
    return types;
}

SemanticType SemanticWalk::namedCall(const Node *node, const Node *callee)
{
    const QString &name = callee->value;
    const Local *local = findLocal(name);
    const QString form = normalizedName(name);
    if (m_class && m_class->methods.contains(form) && !local)
        return userCall(node, {m_class->methods.value(form)});
    const QList<FunctionSymbol> &functions = m_symbols.functions(name);
    if (!functions.isEmpty() && !local)
        return userCall(node, functions);
    if (m_class && m_class->properties.contains(form) && !local) {
        report(CheckMessage::PropertyCalled, callee, {name});
        return m_class->properties.value(form);
    }
    if (const ClassSymbolTable *symbol = m_symbols.classNamed(name))
        return constructorCall(node, *symbol);
    if (functions.isEmpty() && m_context.isCommand(name))
        return commandCall(node, name);
    return unknownCall(node, callee);
}

SemanticType SemanticWalk::unknownCall(const Node *node, const Node *callee)
{
    const QString &name = callee->value;
    arguments(node);
    if (findLocal(name) || m_symbols.global(name)) {
        identifier(callee, Access::Read);
        report(CheckMessage::CallOfVariable, callee, {name});
        return kNoType;
    }
    QString hint = suggestion(name, Purpose::Call);
    hint = hint.isEmpty() ? QStringLiteral("自己的函数要先写出来：函数 %1() { … }。").arg(name)
                          : hint.mid(1, hint.size() - 2); // without the brackets
    report(CheckMessage::UnknownFunction, callee, {name, hint});
    return kNoType;
}

SemanticType SemanticWalk::userCall(const Node *node, const QList<FunctionSymbol> &overloads)
{
    const Types types = arguments(node);
    const int given = argumentCount(node);
    const QString &name = overloads.first().name;
    QList<const FunctionSymbol *> fitting;
    for (const FunctionSymbol &overload : overloads) {
        if (overload.takes(given))
            fitting << &overload;
    }
    if (fitting.isEmpty()) {
        const bool tooMany = overloads.size() == 1 && given > overloads.first().parameters.size();
        report(tooMany ? CheckMessage::TooManyForFunction : CheckMessage::NoFittingOverload, node,
               {name, QString::number(given)});
        return resultOf(overloads.first());
    }
    // The same choice as the generator's.
    const auto agreement = [this, &types](const FunctionSymbol *function) {
        QList<ValueType> wanted;
        QList<ValueType> given;
        for (int i = 0; i < types.size(); ++i) {
            wanted << function->parameters.at(i).type.kind;
            given << types.at(i).kind;
        }
        return m_rules.agreement(wanted, given);
    };
    const FunctionSymbol &chosen =
        **std::max_element(fitting.begin(), fitting.end(),
                           [&agreement](const FunctionSymbol *a, const FunctionSymbol *b) {
                               return agreement(a) < agreement(b);
                           });
    checkUserArguments(node, chosen, types);
    return resultOf(chosen);
}

void SemanticWalk::checkUserArguments(const Node *node, const FunctionSymbol &function,
                                      const Types &types)
{
    for (int i = 0; i < types.size() && i < function.parameters.size(); ++i) {
        const ParameterSymbol &parameter = function.parameters.at(i);
        const Node *argument = node->children.at(i + 1);
        if (isPlaceholder(argument)) {
            if (parameter.required)
                report(CheckMessage::EmptyArgument, node, {function.name, ordinal(i)});
            continue;
        }
        if (parameter.reference)
            checkReference(argument, function, i, types.at(i));
        else if (isFunctionReference(argument) ||
                 !fits(TypePair::Initialize, parameter.type, types.at(i)))
            report(CheckMessage::ArgumentNeedsType, argument,
                   {function.name, ordinal(i), wordOfType(parameter.type)});
    }
}

// A reference changes the variable that is handed over, so it must be one, and of that very type.
void SemanticWalk::checkReference(const Node *argument, const FunctionSymbol &function,
                                  int position, const SemanticType &given)
{
    const SemanticType &wanted = function.parameters.at(position).type;
    const Local *local =
        argument->type == Parser::Identifier ? findLocal(argument->value) : nullptr;
    const bool isInferred = local && local->isInferred && given.kind != ValueType::Object;
    const bool isVariable =
        !isInferred && argument->type != Parser::Index && isAssignable(argument) &&
        !componentOf(argument) &&
        !(argument->type == Parser::Member && componentOf(argument->children.value(0)));
    if (isVariable && (!given.isKnown() || !wanted.isKnown() || given == wanted))
        return;
    report(CheckMessage::ReferenceNeedsVariable, argument,
           {function.name, ordinal(position), wordOfType(wanted)});
}

SemanticType SemanticWalk::constructorCall(const Node *node, const ClassSymbolTable &symbol)
{
    const SemanticType result{ValueType::Object, symbol.cppName};
    const Types types = arguments(node);
    const int given = argumentCount(node);
    if (!symbol.node)
        return result;
    const auto constructor = symbol.methods.constFind(kConstructor);
    if (constructor == symbol.methods.cend()) {
        if (given > 0)
            report(CheckMessage::NoConstructor, node, {symbol.name});
        return result;
    }
    const int least = constructor->requiredCount();
    const int most = constructor->parameters.size();
    if (given < least) {
        // An object without any arguments may be filled later.
        if (given > 0)
            report(CheckMessage::ConstructorTooFew, node,
                   {symbol.name, QString::number(given), QString::number(least)});
    } else if (given > most) {
        report(CheckMessage::ConstructorTooMany, node,
               {symbol.name, QString::number(given), QString::number(most),
                QStringLiteral("请对照该类“构造”方法声明核对参数。")});
    } else {
        FunctionSymbol named = *constructor;
        named.name = symbol.name;
        checkUserArguments(node, named, types);
    }
    return result;
}

SemanticType SemanticWalk::memberCall(const Node *node, const Node *callee)
{
    const Node *object = callee->children.value(0);
    if (const auto component = componentOf(object)) {
        arguments(node, [](int) { return true; });
        return {m_context.memberType(*component, callee->value, argumentCount(node)), QString()};
    }
    const SemanticType type = value(object);
    const ClassSymbolTable *symbol = m_symbols.classOfType(type);
    const QString form = normalizedName(callee->value);
    const QString objectName = nameOf(object);
    const auto method =
        symbol ? symbol->methods.constFind(form) : QHash<QString, FunctionSymbol>::const_iterator();
    if (symbol && method != symbol->methods.cend()) {
        const Types types = arguments(node, [symbol](int) { return !symbol->node; });
        if (symbol->node) {
            methodCount(node, callee, *method);
            checkUserArguments(node, *method, types);
        } else {
            checkCallbackMarks(node, callee);
        }
        return resultOf(*method);
    }
    arguments(node);
    if (symbol && symbol->properties.contains(form)) {
        report(CheckMessage::MemberPropertyCalled, callee, {objectName, callee->value});
        return symbol->properties.value(form);
    }
    const bool isSure = symbol || (type.isKnown() && type.kind != ValueType::Object &&
                                   type.kind != ValueType::Handle);
    if (isSure)
        report(CheckMessage::UnknownMethod, callee, {objectName, callee->value});
    return kNoType;
}

// Of built-in methods only this is known: a function's name alone is no value to hand over.
void SemanticWalk::checkCallbackMarks(const Node *node, const Node *callee)
{
    for (int i = 1; i < node->children.size(); ++i) {
        const Node *argument = node->children.at(i);
        const bool isFunctionName = argument->type == Parser::Identifier &&
                                    !isFunctionReference(argument) && !findLocal(argument->value) &&
                                    !m_symbols.functions(argument->value).isEmpty();
        if (isFunctionName)
            report(CheckMessage::MethodCallbackMark, argument,
                   {nameOf(callee->children.value(0)), callee->value, QString::number(i)});
    }
}

void SemanticWalk::methodCount(const Node *node, const Node *callee, const FunctionSymbol &method)
{
    const int given = argumentCount(node);
    const QString objectName = nameOf(callee->children.value(0));
    if (given < method.requiredCount())
        report(CheckMessage::MethodTooFew, callee,
               {objectName, callee->value, QString::number(given),
                QString::number(method.requiredCount())});
    else if (given > method.parameters.size())
        report(CheckMessage::MethodTooMany, callee,
               {objectName, callee->value, QString::number(given),
                QString::number(method.parameters.size())});
}

const QList<CommandOverload> &SemanticWalk::overloadsOf(const CommandInfo &info)
{
    const auto known = m_overloads.constFind(info.name);
    if (known != m_overloads.cend())
        return *known;
    return *m_overloads.insert(info.name, readCommandSyntax(info.syntax));
}

SemanticType SemanticWalk::commandCall(const Node *node, const QString &name)
{
    const SemanticType result{m_context.commandResult(name), QString()};
    const CommandInfo *info = m_context.command(name);
    const QList<CommandOverload> overloads = info ? overloadsOf(*info) : QList<CommandOverload>();
    if (overloads.isEmpty()) {
        arguments(node, [](int) { return true; });
        // A type word called as a function turns a value into that type.
        const bool converts = valueTypeOf(name) != ValueType::Unknown;
        if (converts && argumentCount(node) == 0)
            report(CheckMessage::TooFewArguments, node, {name, QStringLiteral("（值）")});
        return result;
    }
    const int given = argumentCount(node);
    const auto fitting =
        std::find_if(overloads.begin(), overloads.end(),
                     [given](const CommandOverload &overload) { return takes(overload, given); });
    const CommandOverload &overload = fitting == overloads.end() ? overloads.first() : *fitting;
    const Types types = arguments(node, [&overload](int position) {
        const CommandParameter *parameter = overload.parameterAt(position);
        return parameter && parameter->callback;
    });
    if (name == QStringLiteral("时间转时间戳") && !checkTimestampCall(node, types))
        return result;
    if (fitting == overloads.end())
        checkCommandCount(node, *info, overloads);
    checkCommandArguments(node, name, overload, types);
    if (overload.variadic)
        checkPassedArguments(node, overload, types);
    return result;
}

// What stands behind the callback of a command that goes on without end ("启动线程(&函数, …)") is
// handed to that function.
void SemanticWalk::checkPassedArguments(const Node *node, const CommandOverload &overload,
                                        const Types &types)
{
    const auto callback =
        std::find_if(overload.parameters.begin(), overload.parameters.end(),
                     [](const CommandParameter &parameter) { return parameter.callback; });
    const int position = int(callback - overload.parameters.begin());
    if (callback == overload.parameters.end() || position >= types.size())
        return;
    const QList<FunctionSymbol> &functions =
        m_symbols.functions(node->children.at(position + 1)->value);
    if (functions.isEmpty())
        return;
    const Types passed = types.mid(position + 1);
    const auto fits = [&passed](const FunctionSymbol &function) {
        return function.takes(passed.size());
    };
    const auto chosen = std::find_if(functions.begin(), functions.end(), fits);
    if (chosen == functions.end()) {
        report(CheckMessage::NoFittingOverload, node->children.at(position + 1),
               {functions.first().name, QString::number(passed.size())});
        return;
    }
    for (int i = 0; i < passed.size(); ++i) {
        const ParameterSymbol &parameter = chosen->parameters.at(i);
        if (!this->fits(TypePair::Initialize, parameter.type, passed.at(i)))
            report(CheckMessage::ArgumentNeedsType, node->children.at(position + 2 + i),
                   {chosen->name, ordinal(i), wordOfType(parameter.type)});
    }
}

bool SemanticWalk::checkTimestampCall(const Node *node, const Types &types)
{
    if (types.size() == 2)
        report(CheckMessage::TimestampSecondArgument, node);
    else if (types.size() == 1 && types.first().isKnown() &&
             types.first().kind != ValueType::Text && types.first().kind != ValueType::Any)
        report(CheckMessage::TimestampWantsText, node);
    else
        return true;
    return false;
}

void SemanticWalk::checkCommandCount(const Node *node, const CommandInfo &info,
                                     const QList<CommandOverload> &overloads)
{
    const int given = argumentCount(node);
    const QString name = nameOf(node);
    const QString count = QString::number(given);
    const bool tooFew =
        std::any_of(overloads.begin(), overloads.end(), [given](const CommandOverload &overload) {
            return given < overload.requiredCount();
        });
    if (!tooFew) {
        int most = 0;
        for (const CommandOverload &overload : overloads)
            most = std::max(most, overload.parameters.size());
        report(CheckMessage::TooManyArguments, node,
               {name, count, QString::number(most),
                QStringLiteral("语法：") + info.syntax.section(QLatin1Char('\n'), 0, 0)});
        return;
    }
    if (overloads.size() > 1) {
        report(CheckMessage::TooFewForAnyForm, node, {name, count});
        return;
    }
    QStringList missing;
    const CommandOverload &overload = overloads.first();
    for (int i = given; i < overload.parameters.size(); ++i) {
        const CommandParameter &parameter = overload.parameters.at(i);
        if (!parameter.optional)
            missing << (parameter.name.isEmpty() ? ordinal(i) : parameter.name);
    }
    report(CheckMessage::TooFewArguments, node,
           {name, QStringLiteral("（%1）").arg(missing.join(QStringLiteral("、")))});
}

void SemanticWalk::checkCommandArguments(const Node *node, const QString &name,
                                         const CommandOverload &overload, const Types &types)
{
    for (int i = 0; i < types.size(); ++i) {
        const CommandParameter *parameter = overload.parameterAt(i);
        if (!parameter)
            return;
        const Node *argument = node->children.at(i + 1);
        if (isPlaceholder(argument)) {
            // What is repeated has no value of its own to stand in.
            const bool isRepeated = overload.variadic && i + 1 >= overload.parameters.size();
            if (!parameter->optional || isRepeated)
                report(CheckMessage::EmptyArgument, node, {name, ordinal(i)});
        } else if (parameter->callback) {
            if (!isFunctionReference(argument))
                report(CheckMessage::CallbackWithoutMark, argument, {name, QString::number(i + 1)});
        } else if (parameter->reference && !isChangeable(argument, *parameter, types.at(i))) {
            report(CheckMessage::ReferenceNeedsVariable, argument,
                   {name, ordinal(i), parameter->types.join(QLatin1Char('/'))});
        } else {
            checkCommandArgument(argument, name, i, *parameter, types.at(i));
        }
    }
}

// Whether a command can change what it is handed over in place.
bool SemanticWalk::isChangeable(const Node *argument, const CommandParameter &parameter,
                                const SemanticType &type)
{
    const bool isMember = argument->type == Parser::Member;
    if (!isAssignable(argument) || componentOf(isMember ? argument->children.value(0) : argument))
        return false;
    const ValueType wanted = valueTypeOf(parameter.types.first());
    // An array may lie in a variable for anything; other types must be declared as such.
    if (type.kind == ValueType::Any || !type.isKnown())
        return !type.isKnown() || wanted == ValueType::Any || wanted == ValueType::Array;
    return wanted != ValueType::Any;
}

void SemanticWalk::checkCommandArgument(const Node *argument, const QString &name, int position,
                                        const CommandParameter &parameter, const SemanticType &type)
{
    if (isFunctionReference(argument)) {
        report(CheckMessage::ArgumentNeedsType, argument,
               {name, ordinal(position), parameter.types.join(QLatin1Char('/'))});
        return;
    }
    if (!type.isKnown() || type.kind == ValueType::Any || type.kind == ValueType::Handle)
        return;
    QList<ValueType> wanted;
    for (const QString &word : parameter.types)
        wanted << valueTypeOf(word);
    const bool takesAll = wanted.contains(ValueType::Any);
    if (takesAll && type.kind != ValueType::Object)
        return;
    if (wanted.size() > 1 && !takesAll) {
        if (!wanted.contains(type.kind))
            report(CheckMessage::ArgumentOfOtherType, argument,
                   {name, ordinal(position), parameter.types.join(QLatin1Char('/'))});
        return;
    }
    if (accepts(wanted.value(0), type.kind))
        return;
    const QString word =
        takesAll ? QStringLiteral("能输出的值，不能是对象") : parameter.types.first();
    report(CheckMessage::ArgumentNeedsType, argument, {name, ordinal(position), word});
}
