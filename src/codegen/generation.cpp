// Names and symbols: what a program declares, collected before any text is written.
#include "codegen/generation.h"

#include "codegen/names.h"
#include "frontend/metadata.h"
#include "frontend/type_rules.h"

#include <algorithm>

namespace {

ValueType typeOfParameter(const FunctionParameter &parameter)
{
    return parameter.className.isEmpty() ? valueTypeOf(parameter.cppType) : ValueType::Object;
}

// A parameter and a result of a C++ type that is a class: `VL_User_..._t`, `VL_TcpClass`.
bool looksLikeClass(const QString &cppType)
{
    return cppType.startsWith(QLatin1String("VL_")) && valueTypeOf(cppType) == ValueType::Unknown;
}

QString mappedReturnType(const GeneratorTables &tables, const QString &value)
{
    const QString type = value.isEmpty() ? QStringLiteral("void") : value;
    const auto found = tables.returnTypes.constFind(type);
    if (found != tables.returnTypes.cend())
        return *found;
    const bool isClass = type.contains(QLatin1String("VL_User_")) ||
                         (type.startsWith(QLatin1String("VL_")) && type != QLatin1String("VL_Any"));
    return isClass ? type : QStringLiteral("void");
}

QString mappedParameterType(const GeneratorTables &tables, const QString &value)
{
    const auto found = tables.parameterTypes.constFind(value);
    if (found != tables.parameterTypes.cend())
        return *found;
    return value.startsWith(QLatin1String("VL_")) ? value : QStringLiteral("intptr_t");
}

} // namespace

Generation::Generation(const GenerationInput &input)
    : m_input(input), m_tables(GeneratorTables::instance()), m_windows(input.windows)
{
    m_scopes.push(true);
}

void Generation::report(const GeneratorMessage::Text &text, int line, const QStringList &arguments)
{
    const QString message = GeneratorMessage::format(text, line, arguments);
    if (m_reported.contains(message))
        return;
    m_reported.insert(message);
    errors << message;
}

const QString &Generation::cppName(const QString &name)
{
    const auto found = m_cppNames.constFind(name);
    if (found != m_cppNames.cend())
        return *found;
    return *m_cppNames.insert(name, Names::identifier(name));
}

void Generation::collectSymbols(const Node *root)
{
    if (!root)
        return;
    renameClashes(root);
    for (const Parser::ClassInfo &info : m_input.classRegistry)
        addBuiltinClass(info);
    collectClasses(root);
    collectFunctions(root);
    collectMentions();
    collectGlobals(root);
    collectMenus();
    collectEvents(root);
    warnOfMenuHandlers();
}

// A global of this program must not meet one of C++'s own headers; a local may hide it.
void Generation::renameClashes(const Node *root)
{
    for (const Node *node : root->children) {
        const bool global = node->type == Parser::VarDecl || node->type == Parser::FunctionDecl;
        if (global && m_tables.cppGlobals.contains(node->value))
            m_cppNames.insert(node->value, node->value + QLatin1Char('_'));
    }
}

void Generation::collectFunctions(const Node *root)
{
    const auto parameterTypes = [](const FunctionSignature &signature) {
        QStringList types;
        for (const FunctionParameter &parameter : signature.parameters)
            types << parameter.cppType;
        return types;
    };
    for (const Node *node : root->children) {
        if (!isPlainFunction(node))
            continue;
        QList<FunctionSignature> &overloads = m_functions[Names::normalized(node->value)];
        FunctionSignature signature = readSignature(node, false);
        const auto same =
            std::find_if(overloads.begin(), overloads.end(), [&](const FunctionSignature &other) {
                return parameterTypes(other) == parameterTypes(signature);
            });
        if (same != overloads.end()) {
            report(GeneratorMessage::functionDefinedTwice, node->line,
                   {node->value, QString::number(same->node->line)});
            continue;
        }
        // Which one a call means is decided here: C++ would find numbers ambiguous.
        if (!overloads.isEmpty())
            signature.cppName += QStringLiteral("__vl_%1").arg(overloads.size() + 1);
        overloads << signature;
    }
}

FunctionSignature Generation::readSignature(const Node *node, bool method)
{
    FunctionSignature signature;
    signature.name = node->value;
    signature.cppName = cppName(node->value);
    signature.node = node;
    signature.returnCppType = mappedReturnType(m_tables, node->metadata.value(Meta::returnType));
    if (looksLikeClass(signature.returnCppType)) {
        const ClassSymbol *symbol = findClassByStruct(signature.returnCppType);
        signature.returnClass = symbol ? symbol->name : QString();
        signature.returnType = ValueType::Object;
    } else {
        signature.returnType = valueTypeOf(signature.returnCppType);
    }
    for (const Node *child : node->children) {
        if (child->type == Parser::Identifier)
            signature.parameters << readParameter(child, method);
    }
    return signature;
}

FunctionParameter Generation::readParameter(const Node *node, bool method)
{
    FunctionParameter parameter;
    parameter.name = node->value;
    parameter.cppName = node->value.isEmpty() ? QStringLiteral("_param") : cppName(node->value);
    QString type = node->metadata.value(Meta::paramType);
    if (method && (type.isEmpty() || type == QLatin1String("auto")))
        type = QStringLiteral("VL_Any");
    parameter.cppType = mappedParameterType(m_tables, type);
    parameter.optional = node->flag(Meta::isOptional);
    parameter.reference = node->flag(Meta::isReference);
    if (node->flag(Meta::hasDefault) && !node->children.isEmpty())
        parameter.defaultValue = node->children.first();
    if (looksLikeClass(parameter.cppType)) {
        const ClassSymbol *symbol = findClassByStruct(parameter.cppType);
        parameter.className = symbol ? symbol->name : parameter.cppType;
    }
    parameter.type = typeOfParameter(parameter);
    return parameter;
}

void Generation::collectClasses(const Node *root)
{
    for (const Node *node : root->children) {
        if (node->type == Parser::ClassDecl)
            addUserClass(node);
    }
    addDottedMethods(root);
    // Signatures mention classes, so all classes come first.
    for (const QString &name : qAsConst(m_userClassOrder)) {
        ClassSymbol &symbol = m_classes[name];
        for (const Node *method : qAsConst(symbol.methodNodes))
            symbol.methods.insert(method->value.section(QLatin1Char('.'), -1),
                                  readSignature(method, true));
        for (const Node *child : symbol.node->children) {
            if (child->type != Parser::VarDecl)
                continue;
            ClassSymbol::Property property;
            const QString cppType =
                mappedReturnType(m_tables, child->metadata.value(Meta::varType));
            property.cppName = cppName(child->value);
            property.type = valueTypeOf(cppType);
            if (looksLikeClass(cppType)) {
                const ClassSymbol *type = findClassByStruct(cppType);
                property.className = type ? type->name : QString();
                property.type = ValueType::Object;
            }
            symbol.properties.insert(child->value, property);
        }
    }
}

void Generation::addUserClass(const Node *node)
{
    const QString &name = node->value;
    if (m_userClassOrder.contains(name)) {
        report(GeneratorMessage::classDefinedTwice, node->line,
               {name, QString::number(m_classes.value(name).node->line)});
        return;
    }
    ClassSymbol symbol;
    symbol.name = name;
    symbol.node = node;
    symbol.structName = m_input.classRegistry.value(name).cppName;
    if (!symbol.structName.startsWith(QLatin1String("VL_User_")))
        symbol.structName = QStringLiteral("VL_User_%1_t").arg(Names::sanitize(name));
    for (const QString &other : qAsConst(m_userClassOrder)) {
        if (m_classes[other].structName == symbol.structName)
            report(GeneratorMessage::classNamesCollide, node->line, {name, other});
    }
    for (const Node *child : node->children) {
        if (child->type == Parser::FunctionDecl)
            symbol.methodNodes << child;
    }
    m_classes.insert(name, symbol);
    m_userClassOrder << name;
}

// "函数 学生类.介绍()" outside the class adds a method to it.
void Generation::addDottedMethods(const Node *root)
{
    for (const Node *node : root->children) {
        if (node->type != Parser::FunctionDecl || !node->value.contains(QLatin1Char('.')))
            continue;
        const QString owner = node->value.section(QLatin1Char('.'), 0, 0);
        if (m_userClassOrder.contains(owner))
            m_classes[owner].methodNodes << node;
    }
}

void Generation::addBuiltinClass(const Parser::ClassInfo &info)
{
    ClassSymbol symbol;
    symbol.name = info.name;
    symbol.structName = info.cppName;
    symbol.builtin = true;
    const auto addMethod = [&](const QString &name, const QString &cppMethod, const QString &type) {
        FunctionSignature signature;
        signature.name = name;
        signature.cppName = cppMethod;
        signature.returnType = valueTypeOf(type);
        if (m_input.classRegistry.contains(type)) {
            signature.returnClass = type;
            signature.returnType = ValueType::Object;
        }
        symbol.methods.insert(name, signature);
    };
    for (const Parser::MemberInfo &method : info.methods)
        addMethod(method.name, method.cppName, method.type);
    const auto further = m_tables.classMethods.value(info.name);
    for (auto it = further.begin(); it != further.end(); ++it)
        addMethod(it.key(), it->value(0), it->value(1));
    for (const Parser::MemberInfo &member : info.properties) {
        ClassSymbol::Property property;
        property.cppName = member.cppName;
        property.type = valueTypeOf(member.type);
        property.getter = !info.cppName.startsWith(QLatin1String("VL_User_"));
        symbol.properties.insert(member.name, property);
    }
    m_classes.insert(info.name, symbol);
}

void Generation::collectGlobals(const Node *root)
{
    QHash<QString, int> lines;
    for (const Node *node : root->children) {
        if (node->type != Parser::VarDecl)
            continue;
        if (lines.contains(node->value)) {
            report(GeneratorMessage::globalDefinedTwice, node->line,
                   {node->value, QString::number(lines.value(node->value))});
        }
        lines.insert(node->value, node->line);
        declareVariable(node);
        if (!isInstance(node) && globalCppType(node) == QLatin1String("VL_Any")) {
            Variable variable;
            variable.type = ValueType::Any;
            variable.dictionary = givesDictionary(node->children.value(0));
            m_scopes.declare(node->value, variable);
        }
    }
}

const ClassSymbol *Generation::findClass(const QString &name) const
{
    auto found = m_classes.constFind(name);
    if (found == m_classes.cend())
        found = m_classes.constFind(Names::normalized(name));
    return found == m_classes.cend() ? nullptr : &*found;
}

const ClassSymbol *Generation::findClassByStruct(const QString &structName) const
{
    for (const ClassSymbol &symbol : m_classes) {
        if (symbol.structName == structName)
            return &symbol;
    }
    return nullptr;
}

const FunctionSignature *Generation::findFunction(const QString &name) const
{
    if (m_currentClass) {
        const auto method = m_currentClass->methods.constFind(name);
        if (method != m_currentClass->methods.cend())
            return &*method;
    }
    const auto found = m_functions.constFind(Names::normalized(name));
    return found == m_functions.cend() ? nullptr : &found->first();
}

const FunctionSignature *Generation::calledFunction(const Node *call) const
{
    const QString &name = call->children.first()->value;
    const FunctionSignature *first = findFunction(name);
    const auto found = m_functions.constFind(Names::normalized(name));
    if (!first || found == m_functions.cend() || found->size() < 2 || first != &found->first())
        return first;
    QList<ValueType> given;
    for (int i = 1; i < call->children.size(); ++i)
        given << (isEmptyArgument(call->children.at(i)) ? ValueType::Unknown
                                                        : inferType(call->children.at(i)));
    int best = -1;
    for (const FunctionSignature &overload : *found) {
        if (given.size() < overload.requiredCount() || given.size() > overload.parameters.size())
            continue;
        QList<ValueType> wanted;
        for (int i = 0; i < given.size(); ++i)
            wanted << overload.parameters.at(i).type;
        const int agreement = TypeRules::instance().agreement(wanted, given);
        if (agreement > best) {
            best = agreement;
            first = &overload;
        }
    }
    return first;
}

const FunctionSignature *Generation::signatureOf(const Node *function) const
{
    const auto found = m_functions.constFind(Names::normalized(function->value));
    if (found == m_functions.cend())
        return nullptr;
    const auto own =
        std::find_if(found->begin(), found->end(), [function](const FunctionSignature &signature) {
            return signature.node == function;
        });
    return own == found->end() ? nullptr : &*own;
}
