// The calls behind parse_calls.h.
#include "driver/parse_calls.h"

#include <QMetaObject>

namespace {

// `typeName` is the result's type as the slot declares it.
template <typename Result>
Result ask(QObject *helper, const char *slot, const char *typeName)
{
    Result result{};
    QMetaObject::invokeMethod(helper, slot, Qt::DirectConnection,
                              QReturnArgument<Result>(typeName, result));
    return result;
}

} // namespace

void ParseCalls::reset(bool friendlyErrors) const
{
    QMetaObject::invokeMethod(m_helper, "reset", Qt::DirectConnection);
    QMetaObject::invokeMethod(m_helper, "setFriendlyErrors", Qt::DirectConnection,
                              Q_ARG(bool, friendlyErrors));
}

void ParseCalls::preScan(const QString &projectPath) const
{
    QMetaObject::invokeMethod(m_helper, "preScanVppDir", Qt::DirectConnection,
                              Q_ARG(QString, projectPath));
}

std::unique_ptr<Parser::ASTNode> ParseCalls::parse(const QList<Lexer::Token> &tokens) const
{
    Parser::ASTNode *tree = nullptr;
    QMetaObject::invokeMethod(m_helper, "parseTokens", Qt::DirectConnection,
                              Q_RETURN_ARG(Parser::ASTNode *, tree),
                              Q_ARG(QList<Lexer::Token>, tokens));
    return std::unique_ptr<Parser::ASTNode>(tree);
}

QList<SourceMessage> ParseCalls::messages() const
{
    return ask<QList<SourceMessage>>(m_helper, "getParserMessages", "QList<SourceMessage>");
}

ClassRegistryMap ParseCalls::classRegistry() const
{
    return ask<ClassRegistryMap>(m_helper, "getClassRegistry", "QMap<QString,Parser::ClassInfo>");
}
