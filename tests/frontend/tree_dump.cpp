// The text forms of tree_dump.h.
#include "frontend/tree_dump.h"

#include <memory>

namespace {

QString kindName(int type)
{
    static const char *const names[] = {
        "Program",  "VarDecl",  "FunctionDecl", "ClassDecl", "Block",       "If",     "Switch",
        "Case",     "Default",  "While",        "Loop",      "ForEach",     "Return", "Break",
        "Continue", "ExprStmt", "Binary",       "Unary",     "Ternary",     "Call",   "Member",
        "Index",    "Assign",   "Identifier",   "Literal",   "ArrayLiteral"};
    static_assert(sizeof(names) / sizeof(names[0]) == Parser::ArrayLiteral + 1,
                  "one name for each kind");
    return QLatin1String(names[type]);
}

QString quoted(QString text)
{
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString dumpNode(const Parser::ASTNode &node)
{
    QString line = kindName(node.type);
    if (!node.value.isEmpty())
        line += QLatin1Char(' ') + quoted(node.value);
    if (node.line != 0)
        line += QStringLiteral(" @%1").arg(node.line);
    if (node.column != 0)
        line += QStringLiteral(":%1").arg(node.column);
    for (auto entry = node.metadata.cbegin(); entry != node.metadata.cend(); ++entry)
        line += QStringLiteral(" %1=%2").arg(entry.key(), entry.value());
    return line;
}

void dumpBelow(const Parser::ASTNode &node, int level, QStringList *lines)
{
    lines->append(QString(level * 2, QLatin1Char(' ')) + dumpNode(node));
    for (const Parser::ASTNode *child : node.children)
        dumpBelow(*child, level + 1, lines);
}

QStringList dumpMembers(const QString &kind, const QMap<QString, Parser::MemberInfo> &members)
{
    QStringList lines;
    for (const Parser::MemberInfo &member : members)
        lines +=
            QStringLiteral("  %1 %2 %3 %4").arg(kind, member.name, member.cppName, member.type);
    return lines;
}

QStringList dumpClasses(const Parser &parser)
{
    static const QStringList builtins = Parser().classRegistry().keys();
    QStringList lines;
    for (const Parser::ClassInfo &info : parser.classRegistry()) {
        if (builtins.contains(info.name))
            continue;
        lines += info.name + QLatin1Char(' ') + info.cppName;
        lines += dumpMembers(QStringLiteral("property"), info.properties);
        lines += dumpMembers(QStringLiteral("method"), info.methods);
    }
    return lines;
}

QString section(const QString &title, const QStringList &lines)
{
    if (lines.isEmpty())
        return QString();
    return QStringLiteral("--- %1\n%2\n").arg(title, lines.join(QLatin1Char('\n')));
}

} // namespace

QString dumpTree(const Parser::ASTNode &root)
{
    QStringList lines;
    dumpBelow(root, 0, &lines);
    return lines.join(QLatin1Char('\n'));
}

QString dumpSource(const QString &source)
{
    Parser parser;
    const std::unique_ptr<Parser::ASTNode> tree(parser.parse(Lexer(source).tokenize()));
    QStringList types;
    const QMap<QString, QString> varTypes = parser.varTypes();
    for (auto entry = varTypes.cbegin(); entry != varTypes.cend(); ++entry)
        types += entry.key() + QLatin1Char(' ') + entry.value();
    return dumpTree(*tree) + QLatin1Char('\n') +
           section(QStringLiteral("messages"), parser.errors()) +
           section(QStringLiteral("variables"), types) +
           section(QStringLiteral("classes"), dumpClasses(parser));
}

QString sketch(const Parser::ASTNode &node)
{
    QString text = kindName(node.type);
    if (node.type == Parser::Identifier || node.type == Parser::Literal)
        text = node.value.isEmpty() ? QStringLiteral("-") : node.value;
    else if (!node.value.isEmpty())
        text += QLatin1Char(' ') + node.value;
    QStringList children;
    for (const Parser::ASTNode *child : node.children)
        children += sketch(*child);
    if (!children.isEmpty())
        text += QLatin1Char('(') + children.join(QLatin1String(", ")) + QLatin1Char(')');
    return text;
}
