// SemanticWalk: one run of the semantic checks over one program.
#pragma once

#include "catalog/command_syntax.h"
#include "frontend/check_messages.h"
#include "frontend/parser.h"
#include "frontend/program_context.h"
#include "frontend/program_symbols.h"
#include "frontend/source_message.h"
#include "frontend/type_rules.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>

#include <functional>
#include <vector>

// The member functions are spread over files by matter: declarations and scopes, statements,
// expressions, calls.
class SemanticWalk
{
public:
    using Node = Parser::ASTNode;

    SemanticWalk(const Node *root, const ClassRegistryMap &classes, const ProgramContext &context);

    QList<SourceMessage> run();

private:
    // A variable or a parameter of the function at hand.
    struct Local
    {
        const Node *node = nullptr;
        SemanticType type;
        bool isParameter = false;
        bool isInferred = false; // "变量": its exact type is that of its value
        bool isUsed = false;
    };
    // What holds for a block: a redeclaration is refused within one scope.
    struct Scope
    {
        QHash<QString, Local> locals; // by name in NFKC
        QStringList order;
    };
    enum class Access
    {
        Read,
        Write, // is no use of a variable
    };
    // What a name stands for where it is unknown.
    enum class Purpose
    {
        Value,
        Call,
    };
    using Types = QList<SemanticType>;

    // --- the program as a whole (semantic_walk.cpp) ---
    void collectCallbacks(const Node *node);
    void checkOverloads();
    void checkTypeWords(const Node *node);
    void checkGlobals();
    SemanticType inferredGlobalType(const Node *node, const SemanticType &given) const;
    void checkClass(const Node *node);
    void checkProperty(const Node *node);
    void checkFunction(const Node *node, const ClassSymbolTable *owner);
    void declareParameters(const FunctionSymbol &function, bool isEvent);
    void checkEventParameters(const FunctionSymbol &function, const QList<NamedValue> &values);
    void reportUnusedGlobals();

    // --- messages (semantic_walk.cpp) ---
    void report(CheckMessage message, const Node *place, const QStringList &arguments = {});
    void reportNear(CheckMessage message, const Node *place, const QString &nearText,
                    const QStringList &arguments = {});
    int lineOf(const Node *node) const;
    static QString asked(const QString &name);
    QString suggestion(const QString &name, Purpose purpose);
    QStringList valueNames() const;
    QStringList callableNames() const;
    QString wordOfType(const SemanticType &type) const;

    // --- scopes (semantic_walk.cpp) ---
    void popScope();
    void declareLocal(const Node *node, const SemanticType &type, bool isParameter = false);
    Local *findLocal(const QString &name);

    // --- statements (semantic_statements.cpp) ---
    void block(const Node *node);
    void statement(const Node *node);
    void scopedBlock(const Node *node);
    void expressionStatement(const Node *node);
    void declaration(const Node *node);
    SemanticType initialType(const Node *node, const SemanticType &declared);
    void arrayDeclaration(const Node *node, const SemanticType &given);
    void checkInitialValue(const Node *node, const SemanticType &declared,
                           const SemanticType &given);
    bool checkAssignedLiteral(const Node *place, const SemanticType &declared, const Node *value,
                              const QString &name);
    void ifStatement(const Node *node);
    void switchStatement(const Node *node);
    void loopStatement(const Node *node);
    void forEachStatement(const Node *node);
    void loopVariable(const Node *node);
    void returnStatement(const Node *node);
    void condition(const Node *node, const QString &word);

    // --- expressions (semantic_expressions.cpp) ---
    // The type of an expression; everything in it is checked on the way.
    SemanticType typeOf(const Node *node);
    // The same where a value is needed.
    SemanticType value(const Node *node);
    SemanticType literal(const Node *node) const;
    SemanticType identifier(const Node *node, Access access);
    SemanticType hashName(const Node *node);
    SemanticType globalName(const Node *node, const GlobalSymbol &global);
    SemanticType unknownName(const Node *node);
    SemanticType binary(const Node *node);
    SemanticType operation(const Node *node, const SemanticType &left, const SemanticType &right);
    void reportOperand(const Node *node, const SemanticType &left, const SemanticType &right);
    SemanticType logical(const Node *node, const SemanticType &left, const SemanticType &right);
    SemanticType unary(const Node *node);
    SemanticType ternary(const Node *node);
    SemanticType index(const Node *node);
    SemanticType arrayLiteral(const Node *node);
    SemanticType member(const Node *node, Access access);
    SemanticType assignment(const Node *node);
    SemanticType target(const Node *node);
    void checkAssignment(const Node *node, const SemanticType &to, const SemanticType &from);
    void reportMismatch(const Node *place, const SemanticType &to, const SemanticType &from,
                        const QString &name, const Node *value);
    bool isAssignable(const Node *node);
    std::optional<NamedComponent> componentOf(const Node *node);
    bool fits(TypePair pair, const SemanticType &first, const SemanticType &second) const;
    static QString nameOf(const Node *node);

    // --- calls (semantic_calls.cpp) ---
    SemanticType call(const Node *node);
    SemanticType namedCall(const Node *node, const Node *callee);
    SemanticType memberCall(const Node *node, const Node *callee);
    SemanticType userCall(const Node *node, const QList<FunctionSymbol> &overloads);
    SemanticType constructorCall(const Node *node, const ClassSymbolTable &symbol);
    SemanticType commandCall(const Node *node, const QString &name);
    SemanticType unknownCall(const Node *node, const Node *callee);
    void checkCallbackMarks(const Node *node, const Node *callee);
    void methodCount(const Node *node, const Node *callee, const FunctionSymbol &method);
    // The types of the arguments; Unknown for a placeholder. `isCallback` tells where a function's
    // name may stand.
    Types arguments(const Node *node, const std::function<bool(int)> &isCallback = {});
    void checkUserArguments(const Node *node, const FunctionSymbol &function, const Types &types);
    void checkReference(const Node *argument, const FunctionSymbol &function, int position,
                        const SemanticType &given);
    const QList<CommandOverload> &overloadsOf(const CommandInfo &info);
    void checkCommandCount(const Node *node, const CommandInfo &info,
                           const QList<CommandOverload> &overloads);
    void checkCommandArguments(const Node *node, const QString &name,
                               const CommandOverload &overload, const Types &types);
    void checkPassedArguments(const Node *node, const CommandOverload &overload,
                              const Types &types);
    bool isChangeable(const Node *argument, const CommandParameter &parameter,
                      const SemanticType &type);
    void checkCommandArgument(const Node *argument, const QString &name, int position,
                              const CommandParameter &parameter, const SemanticType &type);
    bool checkTimestampCall(const Node *node, const Types &types);

    const Node *m_root;
    const ProgramContext &m_context;
    const TypeRules &m_rules;
    ProgramSymbols m_symbols;
    QList<SourceMessage> m_messages;
    QSet<QString> m_reported;
    int m_errors = 0;
    int m_warnings = 0;
    QSet<QString> m_callbacks;                // functions whose name is passed on
    QSet<QString> m_usedGlobals;              // by name in NFKC
    QHash<QString, QString> m_suggestions[2]; // for each purpose
    QHash<QString, QList<CommandOverload>> m_overloads;
    std::vector<Scope> m_scopes;
    // Where the walk is.
    const ClassSymbolTable *m_class = nullptr;
    FunctionSymbol m_function;
    int m_line = 0;
    bool m_isMuted = false;
    int m_globalOrder = -1; // of the global whose initial value is walked
};
