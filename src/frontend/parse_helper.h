// ParseHelper: lexer and parser as an object whose slots are called by name.
#pragma once

#include "frontend/lexer.h"
#include "frontend/parser.h"
#include "frontend/source_message.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

// Build driver and editor have one each and call it on their own thread. Classes and variable types
// stay from file to file until `reset`.
class ParseHelper : public QObject
{
    Q_OBJECT

public:
    explicit ParseHelper(QObject *parent = nullptr);

    // Registers the types that cross the slots under the names ClassRegistryMap, VarTypesMap and
    // Parser::ASTNode*; may be called more than once.
    static void registerMetaTypes();

public slots:
    // The caller owns the tree; a text that is no program still gives one.
    Parser::ASTNode *parseSource(QString sourceCode);
    Parser::ASTNode *parseTokens(QList<Lexer::Token> tokens);
    // Of the last run.
    QStringList getParserErrors() const;
    QList<SourceMessage> getParserMessages() const;
    QMap<QString, Parser::ClassInfo> getClassRegistry() const;
    QMap<QString, QString> getVarTypes() const;
    // Makes the classes of a project's .vpp, .vt and .vd files known, from its folder "source" or
    // else the folder itself. What cannot be read is passed over.
    void preScanVppDir(QString projectPath);
    // Forgets all classes but the built-in ones, and all variables.
    void reset();
    // Off: the short English form of messages.
    void setFriendlyErrors(bool on);

private:
    void preScanFile(const QString &path);

    Lexer m_lexer;
    Parser m_parser;
    bool m_friendlyErrors = true;
};
