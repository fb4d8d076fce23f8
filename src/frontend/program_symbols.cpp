// Collecting what a program declares.
#include "frontend/program_symbols.h"

#include "frontend/class_index.h"
#include "frontend/metadata.h"

#include <algorithm>

namespace {

using Node = Parser::ASTNode;

bool isPlainFunction(const Node *node)
{
    return node->type == Parser::FunctionDecl && !node->value.contains(QLatin1Char('.'));
}

bool returnsSomething(const Node *node)
{
    if (node->type == Parser::Return)
        return !node->children.isEmpty();
    return std::any_of(node->children.begin(), node->children.end(), returnsSomething);
}

} // namespace

int FunctionSymbol::requiredCount() const
{
    return int(std::count_if(parameters.begin(), parameters.end(),
                             [](const ParameterSymbol &parameter) { return parameter.required; }));
}

ProgramSymbols::ProgramSymbols(const Node *root, const ClassRegistryMap &registry)
{
    for (const Parser::ClassInfo &info : registry)
        addClass(info);
    for (const Node *node : root->children) {
        if (node->type == Parser::ClassDecl)
            addUserMembers(node);
    }
    for (const Node *node : root->children) {
        if (isPlainFunction(node)) {
            QList<FunctionSymbol> &overloads = m_functions[normalizedName(node->value)];
            if (overloads.isEmpty())
                m_functionNames << node->value;
            overloads << readFunction(node);
        } else if (node->type == Parser::FunctionDecl) {
            addDottedMethod(node);
        } else if (node->type == Parser::VarDecl) {
            const QString form = normalizedName(node->value);
            if (m_globalIndex.contains(form))
                continue;
            m_globalIndex.insert(form, m_globals.size());
            m_globals << GlobalSymbol{node, node->value, declaredType(node), m_globals.size()};
        }
    }
}

void ProgramSymbols::addClass(const Parser::ClassInfo &info)
{
    ClassSymbolTable symbol;
    symbol.name = info.name;
    symbol.cppName = info.cppName;
    m_classByForm.insert(normalizedName(info.name), info.name);
    m_classByCppName.insert(info.cppName, info.name);
    for (const Parser::MemberInfo &property : info.properties)
        symbol.properties.insert(normalizedName(property.name),
                                 {valueTypeOf(property.type), QString()});
    for (const Parser::MemberInfo &method : info.methods) {
        FunctionSymbol function;
        function.name = method.name;
        function.result.kind = valueTypeOf(method.type);
        symbol.methods.insert(normalizedName(method.name), function);
    }
    m_classes.insert(info.name, symbol);
}

// What the declaration tells more exactly than the registry.
void ProgramSymbols::addUserMembers(const Node *node)
{
    const auto found = m_classes.find(node->value);
    if (found == m_classes.end())
        return;
    found->node = node;
    for (const Node *child : node->children) {
        if (child->type == Parser::VarDecl)
            found->properties.insert(normalizedName(child->value), declaredType(child));
        else if (child->type == Parser::FunctionDecl)
            found->methods.insert(normalizedName(child->value), readFunction(child));
    }
}

// "函数 学生类.介绍()" is a method of the class.
void ProgramSymbols::addDottedMethod(const Node *node)
{
    const QString owner = node->value.section(QLatin1Char('.'), 0, 0);
    const auto found = m_classes.find(m_classByForm.value(normalizedName(owner)));
    if (found != m_classes.end() && found->node) {
        FunctionSymbol method = readFunction(node);
        method.name = node->value.section(QLatin1Char('.'), -1);
        found->methods.insert(normalizedName(method.name), method);
    }
}

const QList<FunctionSymbol> &ProgramSymbols::functions(const QString &name) const
{
    static const QList<FunctionSymbol> none;
    const auto found = m_functions.constFind(normalizedName(name));
    return found == m_functions.cend() ? none : *found;
}

const GlobalSymbol *ProgramSymbols::global(const QString &name) const
{
    const auto found = m_globalIndex.constFind(normalizedName(name));
    return found == m_globalIndex.cend() ? nullptr : &m_globals.at(*found);
}

void ProgramSymbols::setGlobalType(const QString &name, const SemanticType &type)
{
    const auto found = m_globalIndex.constFind(normalizedName(name));
    if (found != m_globalIndex.cend())
        m_globals[*found].type = type;
}

bool ProgramSymbols::hasUserClasses() const
{
    return std::any_of(m_classes.begin(), m_classes.end(),
                       [](const ClassSymbolTable &symbol) { return symbol.node; });
}

const ClassSymbolTable *ProgramSymbols::classNamed(const QString &name) const
{
    auto found = m_classes.constFind(name);
    if (found == m_classes.cend())
        found = m_classes.constFind(m_classByForm.value(normalizedName(name)));
    return found == m_classes.cend() ? nullptr : &*found;
}

const ClassSymbolTable *ProgramSymbols::classOfType(const SemanticType &type) const
{
    const auto found = m_classes.constFind(m_classByCppName.value(type.cppClass));
    return found == m_classes.cend() ? nullptr : &*found;
}

// A type word, a C++ type or the C++ name of a class.
SemanticType ProgramSymbols::typeOfText(const QString &text) const
{
    if (m_classByCppName.contains(text))
        return {ValueType::Object, text};
    if (const ClassSymbolTable *symbol = text.isEmpty() ? nullptr : classNamed(text))
        return {ValueType::Object, symbol->cppName};
    return {valueTypeOf(text), QString()};
}

SemanticType ProgramSymbols::declaredType(const Node *declaration) const
{
    if (declaration->flag(Meta::isClassInstance)) {
        const ClassSymbolTable *symbol = classNamed(declaration->metadata.value(Meta::className));
        return {ValueType::Object,
                symbol ? symbol->cppName : declaration->metadata.value(Meta::cppClass)};
    }
    return typeOfText(declaration->metadata.value(Meta::varType));
}

FunctionSymbol ProgramSymbols::readFunction(const Node *node) const
{
    FunctionSymbol function;
    function.node = node;
    function.name = node->value;
    const QString result = node->metadata.value(Meta::returnType);
    function.result =
        result.isEmpty() ? SemanticType{ValueType::Void, QString()} : typeOfText(result);
    function.returnsSomething = returnsSomething(node);
    for (const Node *child : node->children) {
        if (child->type != Parser::Identifier)
            continue;
        ParameterSymbol parameter;
        parameter.node = child;
        parameter.name = child->value;
        const QString type = child->metadata.value(Meta::paramType);
        // Without a type a parameter of a function is an integer, one of a method takes anything.
        const bool untyped = type.isEmpty() || type == QLatin1String("auto");
        const ValueType assumed = node->flag(Meta::classMethod) ? ValueType::Any : ValueType::Int;
        parameter.type = untyped ? SemanticType{assumed, QString()} : typeOfText(type);
        parameter.required = !child->flag(Meta::isOptional) && !child->flag(Meta::hasDefault);
        parameter.reference = child->flag(Meta::isReference);
        function.parameters << parameter;
    }
    return function;
}
