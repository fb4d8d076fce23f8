// Parser: turns tokens into the syntax tree that checks and code generation read.
#pragma once

#include "frontend/lexer.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

// A hand-written recursive descent parser. It never stops at the first error: it collects Chinese
// messages and always returns a tree. Class registry and variable types survive from run to run, so
// that a second file sees the classes of the first.
class Parser
{
public:
    // The numbers are fixed: `vorelc tree` prints them and the generator reads them.
    enum NodeType {
        Program = 0,
        VarDecl = 1,
        FunctionDecl = 2,
        ClassDecl = 3,
        Block = 4,
        If = 5,
        Switch = 6,
        Case = 7,
        Default = 8,
        While = 9,
        Loop = 10,
        ForEach = 11,
        Return = 12,
        Break = 13,
        Continue = 14,
        ExprStmt = 15,
        Binary = 16,
        Unary = 17,
        Ternary = 18,
        Call = 19,
        Member = 20,
        Index = 21,
        Assign = 22,
        Identifier = 23,
        Literal = 24,
        ArrayLiteral = 25,
    };

    // A node owns its children. A child that could not be parsed is simply missing, so readers
    // check the count. A flag in `metadata` is the text "true".
    struct ASTNode
    {
        explicit ASTNode(int nodeType, int nodeLine = 0) : type(nodeType), line(nodeLine) {}
        ~ASTNode();
        ASTNode(const ASTNode &) = delete;
        ASTNode &operator=(const ASTNode &) = delete;

        bool flag(const QString &key) const { return metadata.value(key) == QLatin1String("true"); }

        int type;
        QString value;
        QList<ASTNode *> children;
        QMap<QString, QString> metadata;
        int line;
        int column = 0;
    };

    // `name` as written in source, `cppName` the C++ member, `type` a Chinese type word for
    // built-in classes and a C++ type for user classes.
    struct MemberInfo
    {
        QString name;
        QString cppName;
        QString type;
    };

    struct ClassInfo
    {
        QString name;
        QString cppName;
        QMap<QString, MemberInfo> methods;
        QMap<QString, MemberInfo> properties;
    };

    // Knows the built-in classes from the start.
    Parser();

    // Parses a whole file. The caller owns the returned `Program`.
    ASTNode *parse(const QList<Lexer::Token> &tokens);
    // Enters the classes that `tokens` declare without parsing anything else.
    void preScanTokens(const QList<Lexer::Token> &tokens);

    // The messages of the last run, in order of detection.
    QStringList errors() const { return m_errors; }
    QMap<QString, ClassInfo> classRegistry() const { return m_classRegistry; }
    QMap<QString, QString> varTypes() const { return m_varTypes; }
    // Off: the short English form of messages, "Line 3: ... (near '...')".
    void setFriendlyErrors(bool on) { m_friendlyErrors = on; }

    // The registry key that `text` names, compared in Unicode form NFKC; empty if there is none.
    QString findClassKey(const QString &text) const;
    // The key of a method, else of a property, that `text` names; empty if there is none.
    static QString findMemberKey(const ClassInfo &classInfo, const QString &text);
    // The key of class `name`, entered with empty members if it is new; empty for a blank name.
    QString ensureClass(const QString &name);

private:
    QList<Lexer::Token> m_tokens;
    int m_position = 0;
    QStringList m_errors;
    bool m_friendlyErrors = true;
    int m_depth = 0;
    QMap<QString, QString> m_varTypes;
    QMap<QString, ClassInfo> m_classRegistry;
};

using ClassRegistryMap = QMap<QString, Parser::ClassInfo>;
using VarTypesMap = QMap<QString, QString>;

Q_DECLARE_METATYPE(ClassRegistryMap)
Q_DECLARE_METATYPE(VarTypesMap)
