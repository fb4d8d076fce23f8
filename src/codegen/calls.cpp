// Calls: which function a name means, its arguments, their completion and check.
#include "codegen/generation.h"

#include "codegen/names.h"
#include "codegen/runtime_library.h"
#include "frontend/metadata.h"

#include <algorithm>

namespace {

const char kErrorText[] = "/* ERROR: %1 */0";

// A message inside a comment must not end it, nor the line.
QString errorExpression(QString text)
{
    text.replace(QLatin1String("*/"), QLatin1String("* /"));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return QString::fromLatin1(kErrorText).arg(text);
}

QString parameterName(const QString &name, int position)
{
    return name.isEmpty() ? QStringLiteral("参数%1").arg(position) : name;
}

// Whether a command changes the variable that it is handed first.
bool changesFirst(const CommandInfo &info)
{
    const QList<CommandOverload> overloads = readCommandSyntax(info.syntax);
    return !overloads.isEmpty() && !overloads.first().parameters.isEmpty() &&
           overloads.first().parameters.first().reference;
}

bool acceptsType(const CommandParameter &parameter, ValueType argument)
{
    if (argument == ValueType::Unknown || argument == ValueType::Any)
        return true;
    for (const QString &word : parameter.types) {
        if (word == QStringLiteral("通用"))
            return true;
        if (word == QStringLiteral("句柄")) {
            if (argument == ValueType::Handle || argument == ValueType::Int)
                return true;
            continue;
        }
        const ValueType wanted = valueTypeOf(word);
        if (wanted == argument)
            return true;
        const bool number = wanted == ValueType::Int || wanted == ValueType::Double;
        const bool given = argument == ValueType::Int || argument == ValueType::Double ||
                           argument == ValueType::Bool || argument == ValueType::Handle;
        if (number && given)
            return true;
        if (wanted == ValueType::Bool && argument == ValueType::Int)
            return true;
    }
    return false;
}

// Advice that fits the pair of types.
QString conversionAdvice(const QString &wanted, ValueType given)
{
    if (wanted == QStringLiteral("文本") && given != ValueType::Object)
        return QStringLiteral("解决方法：用 到文本(...) 先转换成文本");
    const bool fromText = given == ValueType::Text;
    if (fromText && (wanted == QStringLiteral("整数") || wanted == QStringLiteral("长整数")))
        return QStringLiteral("解决方法：用 到整数(...) 先转换成整数");
    if (fromText && wanted == QStringLiteral("小数"))
        return QStringLiteral("解决方法：用 到小数(...) 先转换成小数");
    if (fromText && wanted == QStringLiteral("字节集"))
        return QStringLiteral("解决方法：用 到字节集(...) 先转换成字节集");
    return QStringLiteral("提示：如不清楚参数的写法，请查看该命令的帮助，传入“%1”类型的值")
        .arg(wanted);
}

} // namespace

int Generation::lineOf(const Node *node) const
{
    if (node->line > 0)
        return node->line;
    if (node->sourceLine > 0)
        return node->sourceLine;
    for (const Node *child : node->children) {
        if (child->line > 0)
            return child->line;
    }
    return m_line;
}

bool Generation::isEmptyArgument(const Node *node)
{
    return node->type == Parser::Literal && node->flag(Meta::isEmpty);
}

const CommandInfo *Generation::findCommand(const QString &name) const
{
    if (!m_input.commands)
        return nullptr;
    for (const QString &spelling : {name, m_tables.canonicalCommand(name)}) {
        const CommandInfo *info = m_input.commands->commandInfo(spelling);
        if (info && info->isCallable())
            return info;
    }
    return nullptr;
}

// The C++ function of a command: from the map, else as its record tells.
QString Generation::cppFunctionOf(const QString &name, const CommandInfo **info) const
{
    *info = findCommand(name);
    QString function = m_tables.commandText(m_tables.canonicalCommand(name));
    if (function.isEmpty())
        function = m_tables.commandText(name);
    if (function.isEmpty() && *info)
        function = (*info)->cppFunction;
    return function;
}

QString Generation::call(const Node *node)
{
    const Node *callee = node->children.value(0);
    if (!callee)
        return QString();
    if (callee->type == Parser::Member) {
        if (const auto component = componentOf(callee->children.value(0)))
            return componentCall(node, *component);
        const ClassSymbol *symbol = classOf(callee->children.value(0));
        if (symbol)
            return methodCall(node, *symbol);
    }
    if (callee->type != Parser::Identifier) {
        const QString text = expression(callee);
        return text + QLatin1Char('(') + plainArguments(node).join(QLatin1String(", ")) +
               QLatin1Char(')');
    }
    return namedCall(node, callee->value);
}

QString Generation::namedCall(const Node *node, const QString &name)
{
    if (const FunctionSignature *function = calledFunction(node))
        return userFunctionCall(node, *function);
    if (const ClassSymbol *symbol = findClass(name))
        return constructorCall(node, *symbol);
    const auto conversion = m_tables.conversions.constFind(name);
    if (conversion != m_tables.conversions.cend())
        return conversionCall(node, *conversion);
    const CommandInfo *info = nullptr;
    const QString function = cppFunctionOf(name, &info);
    return function.isEmpty() ? unknownCall(node, name) : commandCall(node, name, function, info);
}

QString Generation::unknownCall(const Node *node, const QString &name)
{
    const QString hint =
        QStringLiteral("请检查拼写，或在项目中添加对应支持库；用户自定义函数需在代码中声明。");
    report(GeneratorMessage::undefinedCommand, lineOf(node), {name, hint});
    return errorExpression(name);
}

// Whether evaluating `node` changes something that another expression may see.
bool Generation::hasEffect(const Node *node) const
{
    if (node->type == Parser::Assign || (node->type == Parser::Unary && node->flag(Meta::postfix)))
        return true;
    if (node->type == Parser::Call && !node->children.isEmpty()) {
        const Node *callee = node->children.first();
        if (callee->type != Parser::Identifier || findFunction(callee->value) ||
            findClass(callee->value))
            return true;
        const CommandInfo *info = nullptr;
        const QString function = cppFunctionOf(callee->value, &info);
        if (m_tables.effectFunctions.contains(function) ||
            m_tables.arrayCommands.contains(function))
            return true;
    }
    return std::any_of(node->children.begin(), node->children.end(),
                       [this](const Node *child) { return hasEffect(child); });
}

// C++ evaluates arguments in any order. It shows when one has an effect and another is no literal.
bool Generation::orderMatters(const Node *node) const
{
    int effects = 0;
    int others = 0;
    for (int i = 1; i < node->children.size(); ++i) {
        if (node->children.at(i)->type == Parser::Literal)
            continue;
        if (hasEffect(node->children.at(i)))
            ++effects;
        else
            ++others;
    }
    return effects > 1 || (effects == 1 && others > 0);
}

QString Generation::callText(const Node *node, const QString &function,
                             const QStringList &arguments) const
{
    if (arguments.size() < 2 || !orderMatters(node))
        return function + QLatin1Char('(') + arguments.join(QLatin1String(", ")) + QLatin1Char(')');
    QString text = QStringLiteral("([&]() -> decltype(auto) { ");
    QStringList names;
    for (int i = 0; i < arguments.size(); ++i) {
        names << QStringLiteral("__vl_a%1").arg(i);
        text += QLatin1String("auto&& ") + names.last() + QLatin1String(" = ") + arguments.at(i) +
                QLatin1String("; ");
    }
    return text + QLatin1String("return ") + function + QLatin1Char('(') +
           names.join(QLatin1String(", ")) + QLatin1String("); }())");
}

QString Generation::userFunctionCall(const Node *node, const FunctionSignature &signature)
{
    return callText(node, signature.cppName, filledArguments(node, signature, QString()));
}

QString Generation::constructorCall(const Node *node, const ClassSymbol &symbol)
{
    const auto constructor = symbol.methods.constFind(QStringLiteral("构造"));
    const QStringList arguments = constructor == symbol.methods.cend()
                                      ? plainArguments(node)
                                      : filledArguments(node, *constructor, symbol.name);
    return callText(node, symbol.structName, arguments);
}

QString Generation::conversionCall(const Node *node, const QString &function)
{
    const QString text = function + QLatin1Char('(') +
                         plainArguments(node).join(QLatin1String(", ")) + QLatin1Char(')');
    return function == QLatin1String("VL_ToLongLong") ? QLatin1String("(intptr_t)") + text : text;
}

QString Generation::methodCall(const Node *node, const ClassSymbol &symbol)
{
    const Node *callee = node->children.first();
    const QString object = expression(callee->children.first());
    const auto method = symbol.methods.constFind(Names::normalized(callee->value));
    if (method == symbol.methods.cend()) {
        // A property may be written with an empty pair of parentheses.
        const auto property = symbol.properties.constFind(Names::normalized(callee->value));
        if (property != symbol.properties.cend() && node->children.size() == 1)
            return member(callee);
        report(GeneratorMessage::unknownMethod, lineOf(node), {symbol.name, callee->value});
        return errorExpression(callee->value);
    }
    const QStringList arguments =
        symbol.builtin ? plainArguments(node) : filledArguments(node, *method, symbol.name);
    return callText(node, object + QLatin1Char('.') + method->cppName, arguments);
}

QString Generation::zeroValue(const FunctionParameter &parameter) const
{
    switch (parameter.type) {
    case ValueType::Int:
        return QStringLiteral("0");
    case ValueType::Double:
        return QStringLiteral("0.0");
    case ValueType::Bool:
        return QStringLiteral("false");
    default:
        return parameter.cppType + QLatin1String("()");
    }
}

// The arguments of a call of user code, in order, with what was left out filled in.
QStringList Generation::filledArguments(const Node *node, const FunctionSignature &signature,
                                        const QString &owner)
{
    using namespace GeneratorMessage;
    const int given = node->children.size() - 1;
    QStringList result;
    QStringList missing;
    for (int i = 0; i < signature.parameters.size(); ++i) {
        const FunctionParameter &parameter = signature.parameters.at(i);
        const Node *argument = i < given ? node->children.at(i + 1) : nullptr;
        const bool empty = argument && isEmptyArgument(argument);
        if (argument && !empty) {
            result << expression(argument);
        } else if (parameter.defaultValue) {
            result << expression(parameter.defaultValue);
        } else if (parameter.optional) {
            result << zeroValue(parameter);
        } else if (empty) {
            const QString name = parameterName(parameter.name, i + 1);
            const QString position = QString::number(i + 1);
            if (owner.isEmpty())
                report(emptyArgument, lineOf(node), {signature.name, position, name});
            else
                report(emptyMethodArgument, lineOf(node), {owner, signature.name, position, name});
        } else {
            missing << parameterName(parameter.name, i + 1);
        }
    }
    const QString names = missing.join(QStringLiteral("、"));
    if (!missing.isEmpty() && owner.isEmpty())
        report(missingArguments, lineOf(node), {signature.name, names});
    else if (!missing.isEmpty())
        report(missingMethodArguments, lineOf(node), {owner, signature.name, names});
    if (given > signature.parameters.size()) {
        report(
            tooManyArguments, lineOf(node),
            {signature.name, QString::number(signature.parameters.size()), QString::number(given)});
    }
    return result;
}

QString Generation::commandCall(const Node *node, const QString &name, const QString &cppFunction,
                                const CommandInfo *info)
{
    // Commands of libraries bring their own runtime; those of the map need the built-in one.
    const bool mapped = !info || info->cppFunction.isEmpty();
    if (mapped && cppFunction.startsWith(QLatin1String("VL_")) &&
        !cppFunction.endsWith(QLatin1Char(')')) &&
        !RuntimeLibrary::instance().names().contains(cppFunction))
        report(GeneratorMessage::commandUnavailable, lineOf(node), {name});
    checkArguments(node, name, cppFunction, info);
    if (m_tables.arrayCommands.contains(cppFunction))
        checkChangedArray(node, name);
    QString special = specialCall(node, cppFunction);
    if (!special.isEmpty())
        return special;
    QStringList arguments = commandArguments(node, cppFunction, info);
    completeArguments(arguments, cppFunction);
    // What was left open must have something that stands in.
    const int open = arguments.indexOf(QString());
    if (open >= 0) {
        report(GeneratorMessage::emptyArgument, lineOf(node),
               {name, QString::number(open + 1), parameterName(QString(), open + 1)});
    }
    // A value such as "VL_GetTempDir()" is complete as it stands.
    if (arguments.isEmpty() && cppFunction.endsWith(QLatin1Char(')')))
        return cppFunction;
    const bool rounds = cppFunction == QLatin1String("VL_Round") && arguments.size() == 2;
    const QString function = rounds ? QStringLiteral("VL_RoundTo") : cppFunction;
    if (info && node->children.size() > 1 && isEntry(node->children.at(1)) && changesFirst(*info))
        return changedEntryCall(node, function, arguments, *info);
    return callText(node, function, arguments);
}

// An entry of a dictionary is read, changed and written back.
QString Generation::changedEntryCall(const Node *node, const QString &function,
                                     QStringList arguments, const CommandInfo &info)
{
    arguments[0] = QStringLiteral("__vl_v");
    const QString call =
        function + QLatin1Char('(') + arguments.join(QLatin1String(", ")) + QLatin1Char(')');
    const bool givesNothing = valueTypeOf(info.returnType) == ValueType::Void;
    return QLatin1String("([&]() { auto&& __vl_i = ") + itemTarget(node->children.at(1)) +
           QLatin1String("; VL_Any __vl_v = __vl_i; ") +
           (givesNothing ? QString() : QStringLiteral("auto __vl_r = ")) + call +
           QLatin1String("; __vl_i = __vl_v; ") +
           (givesNothing ? QString() : QStringLiteral("return __vl_r; ")) + QLatin1String("}())");
}

QStringList Generation::plainArguments(const Node *node, int from)
{
    QStringList arguments;
    for (int i = from; i < node->children.size(); ++i)
        arguments << expression(node->children.at(i));
    return arguments;
}

QStringList Generation::commandArguments(const Node *node, const QString &cppFunction,
                                         const CommandInfo *info)
{
    const QList<CommandOverload> overloads =
        info ? readCommandSyntax(info->syntax) : QList<CommandOverload>();
    const bool dropsEmpty = m_tables.controlTextFunctions.contains(cppFunction);
    QStringList arguments;
    for (int i = 1; i < node->children.size(); ++i) {
        const Node *argument = node->children.at(i);
        if (dropsEmpty && isEmptyArgument(argument) &&
            m_tables.defaultArguments.value(cppFunction).value(i - 1).isEmpty())
            continue;
        const CommandParameter *parameter =
            overloads.isEmpty() ? nullptr : overloads.first().parameterAt(i - 1);
        arguments << commandArgument(argument, cppFunction, i - 1, parameter);
    }
    // Trailing placeholders stand for nothing that the function's own defaults do not give.
    while (!arguments.isEmpty() && arguments.last().isEmpty() &&
           m_tables.defaultArguments.value(cppFunction).value(arguments.size() - 1).isEmpty())
        arguments.removeLast();
    return arguments;
}

QString Generation::commandArgument(const Node *node, const QString &cppFunction, int position,
                                    const CommandParameter *parameter)
{
    if (isEmptyArgument(node))
        return QString();
    QString text = expression(node);
    const ValueType type = inferType(node);
    if (type == ValueType::Handle && m_tables.controlTextFunctions.contains(cppFunction))
        return QLatin1String("VL_GetText(") + text + QLatin1Char(')');
    if (position == 0 && m_tables.displayedFirstArgument.contains(cppFunction) &&
        type != ValueType::Text)
        return QLatin1String("VL_ToOutputStr(") + text + QLatin1Char(')');
    if (type == ValueType::Any && parameter &&
        parameter->types == QStringList(QStringLiteral("句柄")))
        return QLatin1String("(intptr_t)VL_ToLongLong(") + text + QLatin1Char(')');
    // What is not known to be a text becomes one where a text is wanted.
    if (type == ValueType::Unknown && parameter && parameter->types.size() == 1 &&
        parameter->types.first() == QStringLiteral("文本"))
        return QLatin1String("VL_ToOutputStr(") + text + QLatin1Char(')');
    return text;
}

void Generation::completeArguments(QStringList &arguments, const QString &cppFunction) const
{
    const QStringList defaults = m_tables.defaultArguments.value(cppFunction);
    for (int i = 0; i < defaults.size(); ++i) {
        if (i < arguments.size()) {
            if (arguments.at(i).isEmpty())
                arguments[i] = defaults.at(i);
        } else if (i == arguments.size() && !defaults.at(i).isEmpty()) {
            arguments << defaults.at(i);
        }
    }
}

void Generation::checkArguments(const Node *node, const QString &name, const QString &cppFunction,
                                const CommandInfo *info)
{
    using namespace GeneratorMessage;
    const QList<CommandOverload> overloads =
        info ? readCommandSyntax(info->syntax) : QList<CommandOverload>();
    if (overloads.isEmpty())
        return;
    const int given = node->children.size() - 1;
    const int line = lineOf(node);
    if (cppFunction == QLatin1String("VL_TimeCalc") && given == 0) {
        report(timeCalcArguments, line, {});
        return;
    }
    // The overload that fits the count; the first one speaks when none does.
    const CommandOverload *overload = &overloads.first();
    for (const CommandOverload &candidate : overloads) {
        if (given >= candidate.requiredCount() &&
            (candidate.variadic || given <= candidate.parameters.size())) {
            overload = &candidate;
            break;
        }
    }
    QStringList missing;
    for (int i = 0; i < overload->parameters.size(); ++i) {
        const CommandParameter &parameter = overload->parameters.at(i);
        if (parameter.optional)
            continue;
        const QString display = parameterName(parameter.name, i + 1);
        if (i >= given)
            missing << display;
        else if (isEmptyArgument(node->children.at(i + 1)) && name != QStringLiteral("启动线程"))
            report(emptyArgument, line, {name, QString::number(i + 1), display});
    }
    if (!missing.isEmpty())
        report(missingArguments, line, {name, missing.join(QStringLiteral("、"))});
    if (!overload->variadic && given > overload->parameters.size()) {
        report(tooManyArguments, line,
               {name, QString::number(overload->parameters.size()), QString::number(given)});
    }
    checkArgumentTypes(node, name, *overload);
}

void Generation::checkArgumentTypes(const Node *node, const QString &name,
                                    const CommandOverload &overload)
{
    for (int i = 0; i + 1 < node->children.size(); ++i) {
        const Node *argument = node->children.at(i + 1);
        const CommandParameter *parameter = overload.parameterAt(i);
        if (!parameter)
            return;
        const ValueType type = isEmptyArgument(argument) ? ValueType::Unknown : inferType(argument);
        if (parameter->callback || type == ValueType::Handle || acceptsType(*parameter, type))
            continue;
        const QString wanted = parameter->types.join(QLatin1Char('/'));
        const QString given = type == ValueType::Object ? QStringLiteral("对象") : wordOf(type);
        report(GeneratorMessage::argumentType, lineOf(node),
               {name, QString::number(i + 1), wanted, given,
                conversionAdvice(parameter->types.first(), type)});
    }
}

void Generation::checkChangedArray(const Node *node, const QString &name)
{
    const Node *array = node->children.value(1);
    const bool changeable =
        array && (array->type == Parser::Identifier || array->type == Parser::Member ||
                  array->type == Parser::Index);
    if (array && !changeable)
        report(GeneratorMessage::noVariableToChange, lineOf(node), {name});
}
