// Parser: turns tokens into the syntax tree that checks and code generation read.
#pragma once

#include "frontend/class_index.h"
#include "frontend/lexer.h"
#include "frontend/parser_limits.h"
#include "frontend/source_message.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <initializer_list>
#include <memory>
#include <vector>

enum class ParserMessage : int;

// A hand-written recursive descent parser. It never stops at the first error: it collects Chinese
// messages and always returns a tree. Class registry and variable types survive from run to run, so
// that a second file sees the classes of the first.
class Parser
{
public:
    // The numbers are fixed: `vorelc tree` prints them and the generator reads them.
    enum NodeType
    {
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
        void standAt(const Lexer::Token &token)
        {
            sourceLine = token.line;
            sourceColumn = token.column;
        }
        void standAt(const ASTNode &other)
        {
            sourceLine = other.sourceLine;
            sourceColumn = other.sourceColumn;
        }

        int type;
        QString value;
        QList<ASTNode *> children;
        QMap<QString, QString> metadata;
        int line;
        int column = 0;
        // Beside the tree that others compare: where the node's own token stands, 1-based, 0 for
        // a node that the parser did not make. It is the name of a declaration, a parameter or a
        // member, the sign of an operation, the keyword of a statement; a call and an index stand
        // where their first child does.
        int sourceLine = 0;
        int sourceColumn = 0;
        // The label of a `Case` as the whole expression that its `value` is taken from. Owned.
        ASTNode *label = nullptr;
        // The word that stood for the type of a declaration, a parameter or a result and names
        // none.
        QString unknownType;
        int unknownTypeColumn = 0;
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
    const QList<SourceMessage> &messages() const { return m_messages; }
    // Their texts.
    QStringList errors() const;
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
    using Node = std::unique_ptr<ASTNode>;
    using NodeList = std::vector<Node>;
    // An expression and the height of its tree.
    struct Expression
    {
        Node node;
        int height = 0;
    };
    enum class Commas
    {
        Refused,
        Allowed
    };
    // Whether a list of parameters goes on behind the one just read.
    enum class ParameterResult
    {
        GoOn,
        LeaveList
    };
    class PreScan;
    // One expression inside another for as long as it lives. Where the outermost ends, messages are
    // heard again, unless the file ended with it.
    class NestingScope
    {
    public:
        explicit NestingScope(Parser *parser) : m_parser(parser) { ++m_parser->m_depth; }
        ~NestingScope()
        {
            if (--m_parser->m_depth == 0 && !m_parser->at(Lexer::EndOfFile))
                m_parser->m_muted = false;
        }
        NestingScope(const NestingScope &) = delete;
        NestingScope &operator=(const NestingScope &) = delete;

    private:
        Parser *m_parser;
    };

    // Tokens and messages: parser.cpp.
    const Lexer::Token &current() const;
    const Lexer::Token &place() const;
    const Lexer::Token &peek() const;
    int kind() const { return current().type; }
    bool at(int tokenKind) const { return kind() == tokenKind; }
    void advance();
    bool match(int tokenKind);
    bool expect(int tokenKind, ParserMessage message);
    void skipNewlines();
    void report(ParserMessage message, std::initializer_list<QString> arguments = {});
    void reportNode(const ASTNode &node, int toldLine, ParserMessage message,
                    std::initializer_list<QString> arguments = {});
    void reportPlain(const Lexer::Token &place, ParserMessage message,
                     std::initializer_list<QString> arguments = {});
    QString framed(ParserMessage message, std::initializer_list<QString> arguments,
                   int toldLine) const;
    void appendMessage(const SourceMessage &message);
    bool isMuted() const { return m_muted || m_messages.size() > ParserLimits::messages; }
    Node newNode(int type) const;
    Node newUnlinedNode(int type) const;
    static void append(ASTNode *parent, Node child);
    static void append(ASTNode *parent, NodeList children);

    // File scope: parser.cpp.
    void parseFile(ASTNode *program);
    Node parseTopLevelItem();
    Node parseTopLevelName();
    Node parseGlobal();
    Node refuseAtFileScope(ParserMessage message);
    void recover();

    // Declarations: parser_declarations.cpp.
    NodeList parseDeclarations(Commas commas);
    bool parseDeclarator(const QString &varType, NodeList *declared);
    NodeList abandonDeclarations(const NodeList &declared, int start);
    Node parseDeclaration();
    Node parseArrayDeclaration();
    int parseArrayBounds(ASTNode *array);
    Expression parseArrayValue(int dimensions);
    Node parseClassInstance();
    bool atClassName() const;
    // Keeps the word at hand, if it is none that names a type.
    void noteUnknownType(ASTNode *declaration) const;

    // Functions: parser_functions.cpp.
    Node parseFunction();
    QString parseFunctionName();
    ParameterResult parseFunctionParameter(ASTNode *function);
    bool parseFunctionParameterType(ASTNode *parameter, bool *isTyped);
    bool parseParameterName(ASTNode *parameter, bool isTyped);
    void parseParameterDefault(ASTNode *parameter);
    QString parseFunctionReturnType();
    ParameterResult parseMethodParameter(ASTNode *method);
    bool parseMethodParameterType(ASTNode *parameter);
    QString parseMethodReturnType();
    void parseRoutineBody(ASTNode *routine);
    QStringList enterClassParameters(const ASTNode &routine);

    // Statements: parser_statements.cpp.
    Node parseBlock();
    Node parseBody();
    Node parseStatement();
    Node dispatchStatement();
    Node refuseStatement();
    Node parseExpressionStatement();
    void rejectLoneIdentifier(const ASTNode &identifier);
    Node parseIf();
    void parseBranch(ASTNode *node);
    void parseCondition(ASTNode *node);
    Node parseSwitch();
    Node parseSwitchLabel();
    void parseLabelValue(ASTNode *label);
    void skipToClosingBrace();
    Node parseWhile();
    Node parseLoop();
    void parseCStyleHeader(ASTNode *loop);
    void parseListHeader(ASTNode *loop);
    bool isCStyleHeader();
    Node parseForEach();
    Node parseReturn();
    Node parseJump(int nodeType);

    // Expressions: parser_expressions.cpp.
    Node parseExpression() { return parseGuarded().node; }
    Expression parseGuarded();
    Expression refuseExpression();
    Expression parseAssignment();
    Expression parseTernary();
    Expression parseBinary(int loosest);
    Expression parseUnary();
    Expression parseCallbackReference();
    Expression parsePostfix();
    Expression parseCall(Expression callee);
    Expression parseMember(Expression object);
    Expression parseIndex(Expression base);
    Expression parseStep(Expression operand);
    void resolveMember(ASTNode *member);
    bool adopt(Expression *parent, Expression child);
    Expression unwrapIfTooHigh(Expression outer, int innerHeight);
    bool fits(int height);
    void refuseNesting();
    bool isSign(int tokenKind, QChar sign) const;

    // Primary expressions and array literals: parser_primaries.cpp.
    Expression parsePrimary();
    Expression parseLiteral(const QString &text, const QMap<QString, QString> &metadata);
    Expression parseParentheses();
    Expression parseFlatArray();
    Expression parseNestedArray(int dimensions);
    Expression parseNestedElement(int dimensions);
    Expression parseBraceLiteral();
    void parseBraceElement(Expression *literal);

    // Classes: parser_classes.cpp.
    Node parseClass();
    bool parseClassMembers(ASTNode *classNode);
    Node parseProperty();
    bool parsePropertyBound(ASTNode *property);
    Node parseMethod(const QString &className);

    // Class registry: class_registry.cpp, class_prescan.cpp.
    void registerParsedClass(const ASTNode &classNode);
    void enterClass(const ClassInfo &info);
    QString cppNameOfClass(const QString &text) const;
    QString findParameterClass(const QString &paramType) const;
    QString findMember(const QString &classKey, const QString &text);
    void preScan(const QList<Lexer::Token> &tokens);

    QList<Lexer::Token> m_tokens;
    int m_position = 0;
    Lexer::Token m_endToken;
    QList<SourceMessage> m_messages;
    bool m_friendlyErrors = true;
    // Expressions inside each other, the outermost included.
    int m_depth = 0;
    // Statements inside each other.
    int m_statementDepth = 0;
    // Set by a nesting message: what follows from it is not reported.
    bool m_muted = false;
    // For each position, whether a loop header that starts there is C-style; made when needed.
    std::vector<bool> m_semicolonAhead;
    QMap<QString, QString> m_varTypes;
    QMap<QString, ClassInfo> m_classRegistry;
    ClassIndex m_classIndex;
};

using ClassRegistryMap = QMap<QString, Parser::ClassInfo>;
using VarTypesMap = QMap<QString, QString>;

Q_DECLARE_METATYPE(Parser::ASTNode *)
Q_DECLARE_METATYPE(ClassRegistryMap)
Q_DECLARE_METATYPE(VarTypesMap)
