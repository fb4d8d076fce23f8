// The checks of a program as a whole: overloads, globals, functions, and what their bodies share.
#include "frontend/semantic_walk.h"

#include "frontend/class_index.h"
#include "frontend/keywords.h"
#include "frontend/metadata.h"
#include "frontend/name_suggestion.h"
#include "frontend/parser_limits.h"
#include "frontend/semantic_checks.h"
#include "frontend/tree_queries.h"
#include "frontend/type_words.h"

#include <algorithm>

namespace {

using Node = Parser::ASTNode;

// What two overloads must differ in.
QString parameterKey(const FunctionSymbol &function)
{
    QString key;
    for (const ParameterSymbol &parameter : function.parameters)
        key +=
            QString::number(int(parameter.type.kind)) + parameter.type.cppClass + QLatin1Char(',');
    return key;
}

// The reserved words that name a type.
QStringList typeWords()
{
    QStringList words;
    for (const Keyword &keyword : keywords()) {
        if (isTypeWord(keyword.kind, TypePlace::Property))
            words << keyword.word;
    }
    return words;
}

} // namespace

SemanticWalk::SemanticWalk(const Node *root, const ClassRegistryMap &classes,
                           const ProgramContext &context)
    : m_root(root), m_context(context), m_rules(TypeRules::instance()), m_symbols(root, classes)
{}

QList<SourceMessage> SemanticWalk::run()
{
    collectCallbacks(m_root);
    for (const Node *node : m_root->children)
        checkTypeWords(node);
    checkOverloads();
    checkGlobals();
    for (const Node *node : m_root->children) {
        if (node->type == Parser::ClassDecl)
            checkClass(node);
        else if (node->type == Parser::FunctionDecl)
            checkFunction(node, nullptr);
    }
    reportUnusedGlobals();
    return m_messages;
}

void SemanticWalk::collectCallbacks(const Node *node)
{
    if (node->type == Parser::Identifier && node->flag(Meta::callbackRef))
        m_callbacks.insert(normalizedName(node->value));
    for (const Node *child : node->children)
        collectCallbacks(child);
}

// Words that stood for types, of a declaration, its parameters and its members.
void SemanticWalk::checkTypeWords(const Node *node)
{
    if (!node->unknownType.isEmpty()) {
        const QString close = closestName(node->unknownType, typeWords() + m_symbols.classNames());
        Node place(node->type, lineOf(node));
        place.sourceColumn = node->unknownTypeColumn;
        reportNear(CheckMessage::UnknownType, &place, node->unknownType,
                   {node->unknownType, asked(close)});
    }
    for (const Node *child : node->children) {
        if (child->type == Parser::Identifier || child->type == Parser::FunctionDecl ||
            child->type == Parser::VarDecl)
            checkTypeWords(child);
    }
}

void SemanticWalk::checkOverloads()
{
    for (const QString &name : m_symbols.functionNames()) {
        const QList<FunctionSymbol> &overloads = m_symbols.functions(name);
        QHash<QString, const FunctionSymbol *> seen;
        for (const FunctionSymbol &function : overloads) {
            const FunctionSymbol *other = seen.value(parameterKey(function));
            if (!other) {
                seen.insert(parameterKey(function), &function);
                continue;
            }
            const QString otherLine = QString::number(lineOf(other->node));
            if (other->result == function.result)
                report(CheckMessage::FunctionRepeated, function.node, {name, otherLine});
            else
                report(CheckMessage::OverloadDiffersInReturn, function.node,
                       {name, otherLine, wordOfType(other->result), wordOfType(function.result)});
        }
        const GlobalSymbol *global = m_symbols.global(name);
        if (global)
            report(CheckMessage::FunctionAndGlobal, overloads.first().node, {name});
        const bool isMain = name == QStringLiteral("主函数");
        if (isMain && overloads.first().requiredCount() > 0)
            report(CheckMessage::MainTakesParameters, overloads.first().node, {name});
    }
}

void SemanticWalk::checkGlobals()
{
    for (const Node *node : m_root->children) {
        if (node->type != Parser::VarDecl)
            continue;
        const GlobalSymbol *global = m_symbols.global(node->value);
        if (global->node != node)
            report(CheckMessage::GlobalRepeated, node, {node->value});
        m_globalOrder = global->order;
        m_line = lineOf(node);
        const SemanticType given = initialType(node, m_symbols.declaredType(node));
        m_globalOrder = -1;
        if (node->metadata.value(Meta::varType) == QLatin1String("auto"))
            m_symbols.setGlobalType(node->value, inferredGlobalType(node, given));
    }
}

// "变量" at file scope holds what its value is, where the value stands in the source for all to
// see; else anything.
SemanticType SemanticWalk::inferredGlobalType(const Node *node, const SemanticType &given) const
{
    const Node *child = node->children.value(0);
    const bool isOpen = !child || TreeQueries::needsRunTime(child) || m_symbols.hasUserClasses();
    return isOpen ? SemanticType{ValueType::Any, QString()} : given;
}

void SemanticWalk::checkClass(const Node *node)
{
    const ClassSymbolTable *symbol = m_symbols.classNamed(node->value);
    QSet<QString> members;
    for (const Node *child : node->children) {
        const QString form = normalizedName(child->value);
        if (!form.isEmpty() && members.contains(form))
            report(CheckMessage::MemberRepeated, child, {node->value, child->value});
        members.insert(form);
    }
    m_class = symbol;
    for (const Node *child : node->children) {
        m_line = lineOf(child);
        if (child->type == Parser::VarDecl)
            checkProperty(child);
        else if (child->type == Parser::FunctionDecl)
            checkFunction(child, symbol);
    }
    m_class = nullptr;
}

void SemanticWalk::checkProperty(const Node *node)
{
    const int messagesBefore = m_messages.size();
    const SemanticType declared = m_symbols.declaredType(node);
    const SemanticType given = initialType(node, declared);
    if (m_messages.size() == messagesBefore && !node->children.isEmpty() &&
        !fits(TypePair::Initialize, declared, given))
        reportMismatch(node, declared, given, node->value, node->children.first());
}

void SemanticWalk::checkFunction(const Node *node, const ClassSymbolTable *owner)
{
    const ClassSymbolTable *outer = m_class;
    const bool isDotted = node->value.contains(QLatin1Char('.'));
    if (isDotted)
        owner = m_symbols.classNamed(node->value.section(QLatin1Char('.'), 0, 0));
    m_class = owner && owner->node ? owner : nullptr;
    const bool isEvent = isDotted && !m_class;
    m_function = m_symbols.readFunction(node);
    if (const auto result = isEvent ? m_context.eventResult(node->value) : std::nullopt)
        m_function.result = {*result, QString()};
    m_line = lineOf(node);
    // What an event would hand over is not known when there is no such event.
    m_isMuted = isEvent && m_context.isUnknownEvent(node->value);
    m_scopes.emplace_back();
    declareParameters(m_function, isEvent);
    block(TreeQueries::bodyOf(node));
    popScope();
    m_scopes.clear();
    m_isMuted = false;
    m_class = outer;
    m_function = {};
}

void SemanticWalk::declareParameters(const FunctionSymbol &function, bool isEvent)
{
    for (const ParameterSymbol &parameter : function.parameters) {
        if (parameter.name.isEmpty())
            continue;
        if (m_scopes.back().locals.contains(normalizedName(parameter.name)))
            report(CheckMessage::ParameterRepeated, parameter.node, {parameter.name});
        for (const Node *child : parameter.node->children)
            value(child);
        declareLocal(parameter.node, parameter.type, true);
        // Who calls an event function or a callback decides what it is given; a reference gives
        // something back.
        if (isEvent || parameter.reference || m_callbacks.contains(normalizedName(function.name)))
            findLocal(parameter.name)->isUsed = true;
    }
    if (!isEvent)
        return;
    // A scope of its own: a declaration of the same name is no second one.
    Scope words;
    const QList<NamedValue> values = m_context.eventValues(function.name);
    checkEventParameters(function, values);
    for (const NamedValue &word : values) {
        Local local;
        local.type.kind = word.type;
        local.isUsed = true;
        words.locals.insert(normalizedName(word.name), local);
        words.order << normalizedName(word.name);
    }
    m_scopes.insert(m_scopes.end() - 1, words);
}

// Numbers and texts are turned into each other, other types are not.
void SemanticWalk::checkEventParameters(const FunctionSymbol &function,
                                        const QList<NamedValue> &values)
{
    for (int i = 0; i < values.size() && i < function.parameters.size(); ++i) {
        const ParameterSymbol &parameter = function.parameters.at(i);
        const bool isOther =
            parameter.type.kind == ValueType::Bytes || parameter.type.kind == ValueType::Object;
        if (isOther)
            report(CheckMessage::EventParameterType, parameter.node,
                   {function.name, parameter.name, wordOf(values.at(i).type)});
    }
}

void SemanticWalk::reportUnusedGlobals()
{
    for (const GlobalSymbol &global : m_symbols.globals()) {
        if (!m_usedGlobals.contains(normalizedName(global.name)))
            report(CheckMessage::UnusedGlobal, global.node, {global.name});
    }
}

int SemanticWalk::lineOf(const Node *node) const
{
    if (node && node->line > 0)
        return node->line;
    return node && node->sourceLine > 0 ? node->sourceLine : m_line;
}

void SemanticWalk::report(CheckMessage message, const Node *place, const QStringList &arguments)
{
    reportNear(message, place, nameOf(place), arguments);
}

void SemanticWalk::reportNear(CheckMessage message, const Node *place, const QString &nearText,
                              const QStringList &arguments)
{
    if (m_isMuted)
        return;
    // Errors are not crowded out by warnings.
    const bool warns = isWarning(message);
    int &count = warns ? m_warnings : m_errors;
    if (count > ParserLimits::messages)
        return;
    const int line = lineOf(place);
    const QString text = checkText(message, line, arguments);
    if (m_reported.contains(text))
        return;
    m_reported.insert(text);
    if (++count <= ParserLimits::messages) {
        m_messages << SourceMessage{line, place ? place->sourceColumn : 0, nearText, text, warns};
        return;
    }
    const CheckMessage last = warns ? CheckMessage::TooManyWarnings : CheckMessage::TooManyMessages;
    m_messages << SourceMessage{line, 0, QString(), checkText(last, line), warns};
}

QString SemanticWalk::asked(const QString &name)
{
    return name.isEmpty() ? QString() : QStringLiteral("（是否指 %1？）").arg(name);
}

// "（是否指 名字？）" or nothing.
QString SemanticWalk::suggestion(const QString &name, Purpose purpose)
{
    QStringList locals;
    if (purpose == Purpose::Value) {
        for (auto scope = m_scopes.rbegin(); scope != m_scopes.rend(); ++scope) {
            for (const QString &key : qAsConst(scope->order))
                locals << (scope->locals[key].node ? scope->locals[key].node->value : key);
        }
    }
    QString close = closestName(name, locals);
    if (close.isEmpty()) {
        QHash<QString, QString> &known = m_suggestions[int(purpose)];
        const auto found = known.constFind(name);
        close = found != known.cend()
                    ? *found
                    : *known.insert(name,
                                    closestName(name, purpose == Purpose::Value ? valueNames()
                                                                                : callableNames()));
    }
    return asked(close);
}

QStringList SemanticWalk::valueNames() const
{
    QStringList names = m_class ? m_class->properties.keys() : QStringList();
    for (const GlobalSymbol &global : m_symbols.globals())
        names << (m_context.isInConstantsFile(lineOf(global.node)) ? QLatin1Char('#') + global.name
                                                                   : global.name);
    return names + m_context.componentNames() + m_context.constantNames();
}

QStringList SemanticWalk::callableNames() const
{
    const QStringList methods = m_class ? m_class->methods.keys() : QStringList();
    return methods + m_symbols.functionNames() + m_symbols.classNames() + m_context.commandNames();
}

QString SemanticWalk::wordOfType(const SemanticType &type) const
{
    if (const ClassSymbolTable *symbol = m_symbols.classOfType(type))
        return symbol->name;
    const QString word = wordOf(type.kind);
    return word.isEmpty() ? QStringLiteral("对象") : word;
}

// Leaving a block tells which of its variables nobody used.
void SemanticWalk::popScope()
{
    const Scope &scope = m_scopes.back();
    for (const QString &key : scope.order) {
        const Local &local = scope.locals[key];
        if (local.isUsed || !local.node)
            continue;
        report(local.isParameter ? CheckMessage::UnusedParameter : CheckMessage::UnusedVariable,
               local.node, {local.node->value});
    }
    m_scopes.pop_back();
}

void SemanticWalk::declareLocal(const Node *node, const SemanticType &type, bool isParameter)
{
    const QString form = normalizedName(node->value);
    Scope &scope = m_scopes.back();
    const auto known = scope.locals.constFind(form);
    if (known != scope.locals.cend() && !isParameter) {
        report(known->isParameter ? CheckMessage::VariableLikeParameter
                                  : CheckMessage::VariableRepeated,
               node, {node->value});
    }
    if (known == scope.locals.cend())
        scope.order << form;
    Local local;
    local.node = node;
    local.type = type;
    local.isParameter = isParameter;
    local.isUsed = known != scope.locals.cend(); // one message about it is enough
    scope.locals.insert(form, local);
}

SemanticWalk::Local *SemanticWalk::findLocal(const QString &name)
{
    const QString form = normalizedName(name);
    for (auto scope = m_scopes.rbegin(); scope != m_scopes.rend(); ++scope) {
        const auto found = scope->locals.find(form);
        if (found != scope->locals.end())
            return &*found;
    }
    return nullptr;
}

QList<SourceMessage> checkSemantics(const Node *root, const ClassRegistryMap &classes,
                                    const ProgramContext &context)
{
    return root ? SemanticWalk(root, classes, context).run() : QList<SourceMessage>();
}
