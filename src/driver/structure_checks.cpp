#include "driver/structure_checks.h"

#include "codegen/names.h"
#include "driver/build_messages.h"

#include <QSet>
#include <QVector>

namespace {

using Node = Parser::ASTNode;
using BuildMessage::text;

// A message about a function, which begins with its line.
SourceMessage about(const Node *function, const QString &message)
{
    return {function->sourceLine, function->sourceColumn, function->value,
            QStringLiteral("第 %1 行：").arg(function->line) + message};
}

// Walks with a stack of its own: trees are as deep as the source nests.
void findNestedFunctions(const Node *function, QList<SourceMessage> &messages)
{
    QVector<const Node *> pending;
    const auto push = [&pending](const Node *node) {
        for (auto it = node->children.crbegin(); it != node->children.crend(); ++it)
            pending << *it;
    };
    push(function);
    while (!pending.isEmpty()) {
        const Node *node = pending.takeLast();
        if (!node)
            continue;
        if (node->type == Parser::FunctionDecl)
            messages << about(node, text(BuildMessage::nestedFunction).arg(node->value));
        else
            push(node);
    }
}

// The names that may stand ahead of the dot in "函数 名字.事件()".
QSet<QString> knownOwners(const Node *root, const QStringList &windowNames)
{
    QSet<QString> owners{QStringLiteral("主窗口")};
    for (const QString &name : windowNames)
        owners << Names::normalized(name);
    for (const Node *node : root->children) {
        if (node->type == Parser::ClassDecl)
            owners << Names::normalized(node->value);
    }
    return owners;
}

void checkOwner(const Node *function, const QSet<QString> &owners, QList<SourceMessage> &messages)
{
    const int dot = function->value.indexOf(QLatin1Char('.'));
    if (dot <= 0)
        return;
    const QString owner = function->value.left(dot);
    if (owners.contains(Names::normalized(owner)))
        return;
    messages << about(function, text(BuildMessage::unknownWindow).arg(function->value, owner));
}

} // namespace

QList<SourceMessage> checkStructure(const Parser::ASTNode *root, const QStringList &windowNames)
{
    QList<SourceMessage> messages;
    if (!root)
        return messages;
    const QSet<QString> owners = knownOwners(root, windowNames);
    for (const Node *node : root->children) {
        if (node->type == Parser::FunctionDecl) {
            findNestedFunctions(node, messages);
            checkOwner(node, owners, messages);
        } else if (node->type == Parser::ClassDecl) {
            for (const Node *member : node->children) {
                if (member->type == Parser::FunctionDecl)
                    findNestedFunctions(member, messages);
            }
        }
    }
    return messages;
}
