// ParseCalls: the build driver's calls of a parse helper's slots, by their names.
#pragma once

#include "frontend/parser.h"
#include "frontend/source_message.h"

#include <QList>
#include <QPointer>
#include <QString>

#include <memory>

// The helper is called directly, on the thread at hand. Without one, or with an object that lacks a
// slot, every call gives an empty value.
class ParseCalls
{
public:
    explicit ParseCalls(QObject *helper) : m_helper(helper) {}

    bool isValid() const { return m_helper; }

    void reset(bool friendlyErrors) const;
    void preScan(const QString &projectPath) const;
    std::unique_ptr<Parser::ASTNode> parse(const QList<Lexer::Token> &tokens) const;
    QList<SourceMessage> messages() const;
    ClassRegistryMap classRegistry() const;

private:
    QPointer<QObject> m_helper;
};
