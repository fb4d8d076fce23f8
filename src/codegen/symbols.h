// What the generator knows about the names of a program: functions, classes, variables in scope.
#pragma once

#include "frontend/parser.h"
#include "frontend/value_type.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <vector>

struct Variable
{
    ValueType type = ValueType::Unknown;
    QString className; // registry key of the class, for instances
    bool dictionary = false;
};

struct FunctionParameter
{
    QString name;
    QString cppName;
    QString cppType;
    QString className;
    ValueType type = ValueType::Unknown;
    bool optional = false;
    bool reference = false;
    const Parser::ASTNode *defaultValue = nullptr;

    bool required() const { return !optional && !defaultValue; }
};

struct FunctionSignature
{
    QString name;
    QString cppName;
    QString returnCppType;
    QString returnClass;
    ValueType returnType = ValueType::Void;
    QString fallThrough; // what running off the end gives; empty: an empty value
    QList<FunctionParameter> parameters;
    const Parser::ASTNode *node = nullptr;

    int requiredCount() const;
    // The C++ of the value given where the source says none.
    QString emptyResult() const
    {
        return fallThrough.isEmpty() ? returnCppType + QLatin1String("()") : fallThrough;
    }
};

// A class of the program or a built-in one.
struct ClassSymbol
{
    struct Property
    {
        QString cppName;
        QString className;
        ValueType type = ValueType::Unknown;
        bool getter = false; // read by calling `cppName`
    };

    QString name;
    QString structName;
    bool builtin = false;
    const Parser::ASTNode *node = nullptr; // the declaration of a class of this program
    QList<const Parser::ASTNode *> methodNodes;
    QHash<QString, FunctionSignature> methods; // parameters unknown for built-in classes
    QHash<QString, Property> properties;
};

// The variables visible at the place that is being generated, innermost first, and what the C++
// scope around it already declares for itself.
class ScopeStack
{
public:
    // `cppBlock`: the scope has braces of its own in the C++ text.
    void push(bool cppBlock);
    void pop();
    // Opens and closes a scope with the C++ block around it.
    class Guard
    {
    public:
        Guard(ScopeStack &stack, bool cppBlock) : m_stack(stack) { m_stack.push(cppBlock); }
        ~Guard() { m_stack.pop(); }
        Guard(const Guard &) = delete;
        Guard &operator=(const Guard &) = delete;

    private:
        ScopeStack &m_stack;
    };

    void declare(const QString &name, const Variable &variable);
    // The variable of that name, as written or in NFKC; null when there is none.
    const Variable *find(const QString &name) const;
    void markDictionary(const QString &name);
    // Whether the C++ block being written declares `name` already.
    bool declaredInCppBlock(const QString &name) const;
    // False the first time in a C++ block, true from then on.
    bool takeSwitchValue();
    void clear() { m_scopes.clear(); }

private:
    struct Scope
    {
        QHash<QString, Variable> variables;
        bool cppBlock = false;
        bool switchValueTaken = false;
    };

    Scope &cppScope();

    std::vector<Scope> m_scopes;
};
