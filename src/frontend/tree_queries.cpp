#include "frontend/tree_queries.h"

#include "frontend/metadata.h"

#include <QStringList>

#include <algorithm>

using Node = Parser::ASTNode;

const Node *TreeQueries::bodyOf(const Node *function)
{
    return !function->children.isEmpty() && function->children.last()->type == Parser::Block
               ? function->children.last()
               : nullptr;
}

bool TreeQueries::needsRunTime(const Node *value)
{
    return value->type == Parser::Call || value->flag(Meta::braceLiteral) ||
           std::any_of(value->children.begin(), value->children.end(), needsRunTime);
}

bool TreeQueries::isArrayType(const QString &varType)
{
    return varType == QLatin1String("array") || varType == QLatin1String("VL_Array") ||
           varType == QLatin1String("VL_Array2D") || varType == QLatin1String("VL_Array3D");
}

int TreeQueries::literalDimensions(const Node *literal)
{
    int levels = 0;
    for (const Node *node = literal;
         node && node->type == Parser::ArrayLiteral && !node->flag(Meta::braceLiteral);
         node = node->children.value(0))
        ++levels;
    return levels;
}

QString TreeQueries::dimensionWord(int dimensions)
{
    static const QStringList words{QStringLiteral("一维"), QStringLiteral("二维"),
                                   QStringLiteral("三维")};
    return words.value(dimensions - 1, QStringLiteral("%1 维").arg(dimensions));
}
