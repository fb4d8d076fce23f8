// ProgramSymbols: the functions, globals and classes that a program declares, for the checks.
#pragma once

#include "frontend/parser.h"
#include "frontend/value_type.h"

#include <QHash>
#include <QList>
#include <QString>

// A type as the checks compare it. Objects also know their class, by its C++ name.
struct SemanticType
{
    ValueType kind = ValueType::Unknown;
    QString cppClass;

    bool isKnown() const { return kind != ValueType::Unknown; }
};

inline bool operator==(const SemanticType &a, const SemanticType &b)
{
    return a.kind == b.kind && a.cppClass == b.cppClass;
}

// One parameter; `required`: a call must give it.
struct ParameterSymbol
{
    const Parser::ASTNode *node = nullptr;
    QString name;
    SemanticType type;
    bool required = true;
    bool reference = false;
};

// A function or a method; `node` is null for methods of built-in classes, of which the parameters
// are not known.
struct FunctionSymbol
{
    const Parser::ASTNode *node = nullptr;
    QString name;
    SemanticType result;
    bool returnsSomething = false; // has a `返回` with a value, whatever its declaration says
    QList<ParameterSymbol> parameters;

    int requiredCount() const;
    bool takes(int count) const { return count >= requiredCount() && count <= parameters.size(); }
};

// A variable or an object at file scope.
struct GlobalSymbol
{
    const Parser::ASTNode *node = nullptr;
    QString name;
    SemanticType type;
    int order = 0; // place among the globals
};

// A class with its members, by name in NFKC.
struct ClassSymbolTable
{
    const Parser::ASTNode *node = nullptr; // null for built-in classes
    QString name;
    QString cppName;
    QHash<QString, FunctionSymbol> methods;
    QHash<QString, SemanticType> properties;
};

// Values only; the tree must outlive it.
class ProgramSymbols
{
public:
    ProgramSymbols(const Parser::ASTNode *root, const ClassRegistryMap &registry);

    // In the order of their declaration; empty without one of that name.
    const QList<FunctionSymbol> &functions(const QString &name) const;
    const QList<QString> &functionNames() const { return m_functionNames; }
    const GlobalSymbol *global(const QString &name) const;
    // Settles the type of a global that its declaration leaves open.
    void setGlobalType(const QString &name, const SemanticType &type);
    const QList<GlobalSymbol> &globals() const { return m_globals; }
    const ClassSymbolTable *classNamed(const QString &name) const;
    const ClassSymbolTable *classOfType(const SemanticType &type) const;
    QStringList classNames() const { return m_classes.keys(); }
    bool hasUserClasses() const;

    // The type of a declared variable, its initial value aside.
    SemanticType declaredType(const Parser::ASTNode *declaration) const;
    FunctionSymbol readFunction(const Parser::ASTNode *node) const;

private:
    SemanticType typeOfText(const QString &text) const;
    void addClass(const Parser::ClassInfo &info);
    void addUserMembers(const Parser::ASTNode *node);
    void addDottedMethod(const Parser::ASTNode *node);

    QHash<QString, QList<FunctionSymbol>> m_functions; // by name in NFKC
    QList<QString> m_functionNames;
    QList<GlobalSymbol> m_globals;
    QHash<QString, int> m_globalIndex;
    QMap<QString, ClassSymbolTable> m_classes;
    QHash<QString, QString> m_classByForm;    // NFKC to the key
    QHash<QString, QString> m_classByCppName; // to the key
};
