// Commands whose call is more than "function(arguments)".
#include "codegen/generation.h"

#include "codegen/names.h"
#include "frontend/metadata.h"

namespace {

using Node = Parser::ASTNode;

// "((a))" without the parentheses that enclose the whole.
QString withoutParentheses(QString text)
{
    while (text.startsWith(QLatin1Char('(')) && text.endsWith(QLatin1Char(')'))) {
        int depth = 0;
        for (int i = 0; i < text.size() - 1; ++i) {
            if (text.at(i) == QLatin1Char('('))
                ++depth;
            else if (text.at(i) == QLatin1Char(')') && --depth == 0)
                return text;
        }
        text = text.mid(1, text.size() - 2);
    }
    return text;
}

QString narrowBytes(const QString &argument, const QString &codePage)
{
    return QStringLiteral(
               "([](const std::wstring& wstr) -> std::string { int n = WideCharToMultiByte(%1, 0, "
               "wstr.c_str(), (int)wstr.size(), NULL, 0, NULL, NULL); std::string bytes((size_t)n, "
               "'\\0'); if (n > 0) WideCharToMultiByte(%1, 0, wstr.c_str(), (int)wstr.size(), "
               "&bytes[0], n, NULL, NULL); return bytes; })(")
               .arg(codePage) +
           argument + QLatin1Char(')');
}

} // namespace

QString Generation::specialCall(const Node *node, const QString &cppFunction)
{
    if (cppFunction == QLatin1String("VL_Print"))
        return printCall(node);
    if (m_tables.windowNameFunctions.contains(cppFunction))
        return windowCall(node, cppFunction);
    if (cppFunction == QLatin1String("VL_Thread_Start"))
        return threadCall(node, cppFunction, 1, QStringLiteral("intptr_t"));
    if (cppFunction == QLatin1String("VL_ThreadPool_Submit"))
        return threadCall(node, cppFunction, 2, QStringLiteral("bool"));
    if (cppFunction == QLatin1String("VL_InvokeUI"))
        return uiCall(node);
    if (cppFunction == QLatin1String("VL_Hotkey_RegisterGlobal") ||
        cppFunction == QLatin1String("VL_Hotkey_RegisterLocal"))
        return hotkeyCall(node, cppFunction);
    if (cppFunction == QLatin1String("VL_DragDrop_SetDropCallback") ||
        cppFunction == QLatin1String("VL_ContextMenu_SetDesignPreTrackCallback") ||
        cppFunction == QLatin1String("VL_ContextMenu_AddItem"))
        return callbackCall(node, cppFunction);
    if (cppFunction == QLatin1String("VL_Thread_JoinAll"))
        return joinAllCall(node);
    if (cppFunction == QLatin1String("VL_HTTP_RequestBytes") ||
        cppFunction == QLatin1String("VL_HTTP_RequestEx_Bytes"))
        return httpBytesCall(node, cppFunction);
    const auto codePage = m_tables.narrowCodePages.constFind(cppFunction);
    if (codePage != m_tables.narrowCodePages.cend())
        return narrowCall(node, cppFunction, *codePage);
    return QString();
}

QString Generation::printCall(const Node *node)
{
    QStringList arguments;
    for (int i = 1; i < node->children.size(); ++i) {
        const Node *argument = node->children.at(i);
        if (isEmptyArgument(argument))
            continue;
        if (inferType(argument) == ValueType::Void && argument->type == Parser::Call) {
            report(GeneratorMessage::noResultPrinted, lineOf(node),
                   {argument->children.first()->value});
        }
        arguments << printArgument(argument);
    }
    if (arguments.isEmpty())
        return QStringLiteral("VL_Print(std::wstring())");
    return callText(node, QStringLiteral("VL_Print"), arguments);
}

QString Generation::printArgument(const Node *node)
{
    const QString text = expression(node);
    const ValueType type = inferType(node);
    if (type == ValueType::Text)
        return text;
    const QString bare = withoutParentheses(text);
    for (const QString &prefix : m_tables.integerCommandPrefixes) {
        // Only a call as a whole: "VL_GetYear(x) + 1.5" is a decimal.
        if (bare.startsWith(prefix) && node->type == Parser::Call && type != ValueType::Text)
            return QLatin1String("VL_ToOutputStr((long long)(") + text + QLatin1String("))");
    }
    return QLatin1String("VL_ToOutputStr(") + text + QLatin1Char(')');
}

// The first argument may be a window's name without quotes.
QString Generation::windowCall(const Node *node, const QString &cppFunction)
{
    QStringList arguments = plainArguments(node);
    const Node *window = node->children.value(1);
    if (window && window->type == Parser::Identifier && m_windows.names().contains(window->value) &&
        !m_scopes.find(window->value))
        arguments[0] = CodeWriter::wideString(window->value);
    completeArguments(arguments, cppFunction);
    return cppFunction + QLatin1Char('(') + arguments.join(QLatin1String(", ")) + QLatin1Char(')');
}

// A function that runs on another thread. Objects move into shared ownership, everything else is
// captured by value.
QString Generation::threadCall(const Node *node, const QString &cppFunction, int functionIndex,
                               const QString &resultType)
{
    const Node *function = node->children.value(functionIndex);
    if (!function)
        return cppFunction + QLatin1String("()");
    const QString name = cppName(function->value);
    QString before = cppFunction + QLatin1Char('(');
    if (functionIndex == 2)
        before += expression(node->children.at(1)) + QLatin1String(", ");

    QString setUp;
    QStringList arguments;
    int shared = 0;
    for (int i = functionIndex + 1; i < node->children.size(); ++i) {
        const Node *argument = node->children.at(i);
        const ClassSymbol *symbol = classOf(argument);
        const QString text = expression(argument);
        if (!symbol) {
            arguments << text;
            continue;
        }
        const QString holder = QStringLiteral("__vl_sp_%1").arg(shared++);
        setUp += QStringLiteral("auto %1 = std::make_shared<%2>(std::move(%3)); ")
                     .arg(holder, symbol->structName, text);
        arguments << QLatin1Char('*') + holder;
    }
    const QString start = before + QLatin1String("[=](){ ") + name + QLatin1Char('(') +
                          arguments.join(QLatin1String(", ")) + QLatin1String("); })");
    if (setUp.isEmpty())
        return start;
    return QLatin1String("([&]() -> ") + resultType + QLatin1String(" { ") + setUp +
           QLatin1String("return ") + start + QLatin1String("; })()");
}

QString Generation::uiCall(const Node *node)
{
    const Node *function = node->children.value(1);
    if (!function)
        return QStringLiteral("VL_InvokeUI([=](){ })");
    return QLatin1String("VL_InvokeUI([=](){ ") + cppName(function->value) + QLatin1Char('(') +
           plainArguments(node, 2).join(QLatin1String(", ")) + QLatin1String("); })");
}

QString Generation::hotkeyCall(const Node *node, const QString &cppFunction)
{
    QStringList arguments = plainArguments(node);
    const Node *last = node->children.last();
    if (last->type == Parser::Identifier && findFunction(last->value))
        arguments.last() = QLatin1String("[=](){ ") + cppName(last->value) + QLatin1String("(); }");
    return cppFunction + QLatin1Char('(') + arguments.join(QLatin1String(", ")) + QLatin1Char(')');
}

// A function name as an argument, wrapped to what the runtime calls; anything else as it stands.
QString Generation::callbackArgument(const Node *node)
{
    const FunctionSignature *function =
        node->type == Parser::Identifier ? findFunction(node->value) : nullptr;
    if (!function)
        return expression(node);
    switch (function->parameters.size()) {
    case 0:
    case 1: {
        const QString argument = function->parameters.isEmpty() ? QString() : QStringLiteral("__a");
        const QString parameter = function->parameters.isEmpty() ? QStringLiteral("intptr_t")
                                                                 : QStringLiteral("intptr_t __a");
        return QStringLiteral("[](%1){ %2(%3); }").arg(parameter, function->cppName, argument);
    }
    case 2:
        return QStringLiteral("[](intptr_t __a, intptr_t __b){ %1(__a, (int)__b); }")
            .arg(function->cppName);
    default:
        return QStringLiteral("[](intptr_t __a, intptr_t __b, intptr_t __c){ %1(__a, __b, __c); }")
            .arg(function->cppName);
    }
}

QString Generation::callbackCall(const Node *node, const QString &cppFunction)
{
    QStringList arguments;
    for (int i = 1; i < node->children.size(); ++i) {
        const Node *argument = node->children.at(i);
        arguments << (isEmptyArgument(argument) ? QString() : callbackArgument(argument));
    }
    completeArguments(arguments, cppFunction);
    return cppFunction + QLatin1Char('(') + arguments.join(QLatin1String(", ")) + QLatin1Char(')');
}

QString Generation::joinAllCall(const Node *node)
{
    if (inferType(node->children.value(1)) != ValueType::Array)
        return QString();
    return QStringLiteral(
               "([&](){ std::vector<intptr_t> __handles; for (const VL_Any& __h : %1) "
               "__handles.push_back(__h.type == VL_Any::TypeInt ? (intptr_t)__h.intVal : "
               "(intptr_t)__h.doubleVal); return VL_Thread_JoinAll(__handles); }())")
        .arg(expression(node->children.at(1)));
}

QString Generation::narrowCall(const Node *node, const QString &cppFunction,
                               const QString &codePage)
{
    QStringList arguments = plainArguments(node);
    if (arguments.isEmpty())
        return QString();
    arguments[0] = narrowBytes(arguments.first(), codePage);
    completeArguments(arguments, cppFunction);
    return cppFunction + QLatin1Char('(') + arguments.join(QLatin1String(", ")) + QLatin1Char(')');
}

QString Generation::httpBytesCall(const Node *node, const QString &cppFunction)
{
    QStringList arguments = plainArguments(node);
    completeArguments(arguments, cppFunction);
    arguments << QStringLiteral("__vl_http_bc");
    return QStringLiteral("[=](){ intptr_t __vl_http_bc=0; intptr_t __h=%1(%2); return "
                          "VL_ByteArrayFromMemory(__h, __vl_http_bc); }()")
        .arg(cppFunction, arguments.join(QLatin1String(", ")));
}
