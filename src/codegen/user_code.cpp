// Classes, globals and functions of the program.
#include "codegen/generation.h"

#include "frontend/metadata.h"
#include "frontend/tree_queries.h"

#include <algorithm>

namespace {

using Node = Parser::ASTNode;

const char kTimerGuard[] =
    "// VL_TimerClass: must precede global instances (see codegen_window stub)\n"
    "#ifndef VL_TIMERCLASS_DEFINED\n"
    "#define VL_TIMERCLASS_DEFINED\n"
    "class VL_TimerClass {\n"
    "public:\n"
    "    template <typename... Args> intptr_t start(Args&&...) { return 0; }\n"
    "    template <typename... Args> void stop(Args&&...) {}\n"
    "    bool isRunning() const { return false; }\n"
    "};\n"
    "#endif\n";

} // namespace

bool Generation::isPlainFunction(const Node *node)
{
    return node->type == Parser::FunctionDecl && !node->value.contains(QLatin1Char('.')) &&
           !node->flag(Meta::classMethod);
}

QString Generation::wholeUserCode(const Node *root)
{
    collectSymbols(root);
    return userCode(root);
}

QString Generation::userClasses(const Node *root)
{
    collectSymbols(root);
    return writeClasses();
}

QString Generation::userCode(const Node *root)
{
    CodeWriter writer;
    CodeWriter announced;
    writeGlobalsForClasses(announced, root);
    const QString classes = writeClasses();
    if (!classes.isEmpty()) {
        writer.line(QStringLiteral("// User-defined classes"));
        writer.raw(announced.takeText());
        writer.raw(classes);
        writer.blankLine();
    }
    writeTimerGuard(writer, root);
    writeGlobals(writer, root);
    writeFunctionDeclarations(writer, root);
    writeFunctionDefinitions(writer, root);
    return writer.takeText();
}

void Generation::writeTimerGuard(CodeWriter &writer, const Node *root)
{
    const bool used =
        std::any_of(root->children.begin(), root->children.end(), [this](const Node *node) {
            return node->type == Parser::VarDecl && isInstance(node) &&
                   instanceType(node) == QLatin1String("VL_TimerClass");
        });
    if (used)
        writer.raw(QString::fromLatin1(kTimerGuard));
}

bool Generation::isMentionedByClass(const QString &name) const
{
    return std::any_of(m_mentions.begin(), m_mentions.end(),
                       [&name](const QSet<QString> &names) { return names.contains(name); });
}

// The type that only a value tells is not known ahead of it: neither where a class is written, nor
// where the value is computed when the program runs.
QString Generation::globalCppType(const Node *node) const
{
    const QString varType = node->metadata.value(Meta::varType, QStringLiteral("auto"));
    const Node *value = node->children.value(0);
    const bool isOpen =
        varType == QLatin1String("auto") &&
        (!value || TreeQueries::needsRunTime(value) || isMentionedByClass(node->value));
    return isOpen ? QStringLiteral("VL_Any") : variableCppType(varType);
}

void Generation::writeGlobals(CodeWriter &writer, const Node *root)
{
    CodeWriter initialization(1);
    bool any = false;
    for (const Node *node : root->children) {
        if (node->type != Parser::VarDecl)
            continue;
        if (!any)
            writer.line(QStringLiteral("// User global variables"));
        any = true;
        const Node *value = node->children.value(0);
        const int start = writer.position();
        const QString varType = node->metadata.value(Meta::varType, QStringLiteral("auto"));
        const bool isAnnounced = varType == QLatin1String("auto") && !isInstance(node) &&
                                 isMentionedByClass(node->value);
        if (value && !TreeQueries::needsRunTime(value) && !isAnnounced) {
            writeDeclaration(writer, node);
            writer.markSourceLine(start, node->line);
            continue;
        }
        if (!value) {
            writeDeclaration(writer, node);
            continue;
        }
        if (!isInstance(node))
            checkDeclaration(node);
        const QString type = isInstance(node) ? instanceType(node) : globalCppType(node);
        writer.line(type + QLatin1Char(' ') + cppName(node->value) + QLatin1Char(';'));
        const int assignmentStart = initialization.position();
        initialization.line(cppName(node->value) + QLatin1String(" = ") +
                            valueFor(valueTypeOf(varType), value) + QLatin1Char(';'));
        initialization.markSourceLine(assignmentStart, node->line);
    }
    if (any)
        writer.blankLine();
    writer.line(QStringLiteral("// Global variables initialization function"));
    writer.line(QStringLiteral("void __VL_InitGlobalVariables() {"));
    writer.raw(initialization.takeText());
    writer.line(QStringLiteral("}"));
    writer.blankLine();
}

QString Generation::parameterList(const FunctionSignature &signature) const
{
    QStringList items;
    for (const FunctionParameter &parameter : signature.parameters) {
        items << parameter.cppType +
                     (parameter.reference ? QLatin1String("& ") : QLatin1String(" ")) +
                     parameter.cppName;
    }
    return items.join(QLatin1String(", "));
}

void Generation::writeFunctionDeclarations(CodeWriter &writer, const Node *root)
{
    writer.line(QStringLiteral("// User function forward declarations"));
    bool any = false;
    for (const Node *node : root->children) {
        const FunctionSignature *known = isPlainFunction(node) ? signatureOf(node) : nullptr;
        if (!known)
            continue;
        const FunctionSignature &signature = *known;
        writer.line(QLatin1String("// DEBUG: Generating declaration for ") + signature.name);
        writer.line(signature.returnCppType + QLatin1Char(' ') + signature.cppName +
                    QLatin1Char('(') + parameterList(signature) + QLatin1String(");"));
        any = true;
    }
    if (any)
        writer.blankLine();
}

void Generation::writeFunctionDefinitions(CodeWriter &writer, const Node *root)
{
    for (const Node *node : root->children) {
        const FunctionSignature *known = isPlainFunction(node) ? signatureOf(node) : nullptr;
        if (!known)
            continue;
        const FunctionSignature &signature = *known;
        writer.open(signature.returnCppType + QLatin1Char(' ') + signature.cppName +
                    QLatin1Char('(') + parameterList(signature) + QLatin1String(") {"));
        writer.raw(QLatin1String("// DEBUG: Generated function ") + signature.name +
                   QLatin1String(" -> ") + signature.cppName + QLatin1Char('\n'));
        writeFunctionBody(writer, node, signature);
        writer.close();
        writer.blankLine();
    }
}

void Generation::writeFunctionBody(CodeWriter &writer, const Node *node,
                                   const FunctionSignature &signature)
{
    const ScopeStack::Guard scope(m_scopes, true);
    for (const FunctionParameter &parameter : signature.parameters) {
        Variable variable;
        variable.type = parameter.type;
        variable.className = parameter.className;
        m_scopes.declare(parameter.name, variable);
    }
    m_currentFunction = &signature;
    m_line = node->line;
    const Node *body = TreeQueries::bodyOf(node);
    writeBlock(writer, body);
    // Running off the end of a function that gives a value gives an empty one.
    const bool returns =
        body && !body->children.isEmpty() && body->children.last()->type == Parser::Return;
    if (signature.returnCppType != QLatin1String("void") && !returns)
        writer.line(QStringLiteral("return %1;").arg(signature.emptyResult()));
    m_currentFunction = nullptr;
}
