// The slots of ParseHelper.
#include "frontend/parse_helper.h"

#include "frontend/type_blocks.h"

#include <QDir>
#include <QFile>

ParseHelper::ParseHelper(QObject *parent) : QObject(parent)
{
    registerMetaTypes();
}

void ParseHelper::registerMetaTypes()
{
    qRegisterMetaType<ClassRegistryMap>("ClassRegistryMap");
    qRegisterMetaType<VarTypesMap>("VarTypesMap");
    qRegisterMetaType<Parser::ASTNode *>("Parser::ASTNode*");
    qRegisterMetaType<QList<Lexer::Token>>("QList<Lexer::Token>");
    qRegisterMetaType<QList<SourceMessage>>("QList<SourceMessage>");
}

Parser::ASTNode *ParseHelper::parseSource(QString sourceCode)
{
    m_lexer.setSource(sourceCode);
    return m_parser.parse(m_lexer.tokenize());
}

Parser::ASTNode *ParseHelper::parseTokens(QList<Lexer::Token> tokens)
{
    return m_parser.parse(tokens);
}

QStringList ParseHelper::getParserErrors() const
{
    return m_parser.errors();
}

QList<SourceMessage> ParseHelper::getParserMessages() const
{
    return m_parser.messages();
}

QMap<QString, Parser::ClassInfo> ParseHelper::getClassRegistry() const
{
    return m_parser.classRegistry();
}

QMap<QString, QString> ParseHelper::getVarTypes() const
{
    return m_parser.varTypes();
}

void ParseHelper::preScanVppDir(QString projectPath)
{
    const QDir sources(projectPath + QStringLiteral("/source"));
    const QDir folder = sources.exists() ? sources : QDir(projectPath);
    if (!folder.exists())
        return;
    // Data types last: they may mention the classes.
    for (const char *pattern : {"*.vpp", "*.vt", "*.vd"}) {
        const QStringList names =
            folder.entryList({QLatin1String(pattern)}, QDir::Files, QDir::Name);
        for (const QString &name : names)
            preScanFile(folder.filePath(name));
    }
}

void ParseHelper::preScanFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QString text = QString::fromUtf8(file.readAll());
    // Errors of the translation are the build's to report.
    if (path.endsWith(QLatin1String(".vd")))
        text = convertTypeBlocks(text, nullptr);
    m_parser.preScanTokens(Lexer(text).tokenize());
}

void ParseHelper::reset()
{
    m_parser = Parser();
    m_parser.setFriendlyErrors(m_friendlyErrors);
}

void ParseHelper::setFriendlyErrors(bool on)
{
    m_friendlyErrors = on;
    m_parser.setFriendlyErrors(on);
}
