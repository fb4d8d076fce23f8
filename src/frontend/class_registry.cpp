// The parser's class registry: built-in classes, look-up by name, user classes.
#include "catalog/json_table.h"
#include "frontend/metadata.h"
#include "frontend/parser.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QMap<QString, Parser::MemberInfo> readMembers(const QJsonArray &rows)
{
    QMap<QString, Parser::MemberInfo> members;
    for (const QJsonValue &row : rows) {
        const QString name = row[QLatin1String("name")].toString();
        members.insert(name, {name, row[QLatin1String("cppName")].toString(),
                              row[QLatin1String("type")].toString()});
    }
    return members;
}

ClassRegistryMap readBuiltinClasses()
{
    ClassRegistryMap classes;
    const QJsonArray rows = jsonTable(QStringLiteral(":/frontend/builtin_classes.json")).array();
    for (const QJsonValue &row : rows) {
        const QString name = row[QLatin1String("name")].toString();
        classes.insert(name, {name, row[QLatin1String("cppName")].toString(),
                              readMembers(row[QLatin1String("methods")].toArray()),
                              readMembers(row[QLatin1String("properties")].toArray())});
    }
    return classes;
}

// "学生" and "学生类" share one C++ name; nothing checks for that.
QString cppNameOfUserClass(QString name)
{
    name.remove(QChar(u'类')).remove(QLatin1Char(' '));
    return QStringLiteral("VL_User_%1_t").arg(name);
}

} // namespace

Parser::Parser()
{
    static const ClassRegistryMap builtins = readBuiltinClasses();
    m_classRegistry = builtins;
    for (const ClassInfo &info : builtins)
        m_classIndex.add(info.name, info.cppName);
}

QString Parser::findClassKey(const QString &text) const
{
    const QString key = m_classIndex.keyOfName(text);
    return !key.isEmpty() && m_classRegistry.contains(text) ? text : key;
}

QString Parser::findMemberKey(const ClassInfo &classInfo, const QString &text)
{
    QString composed = text.normalized(QString::NormalizationForm_C);
    if (classInfo.methods.contains(composed) || classInfo.properties.contains(composed))
        return composed;
    const QString form = normalizedName(text);
    for (const auto *members : {&classInfo.methods, &classInfo.properties}) {
        for (auto member = members->cbegin(); member != members->cend(); ++member) {
            if (normalizedName(member.key()) == form)
                return member.key();
        }
    }
    return QString();
}

// As findMemberKey(), but a class with many members costs one look-up.
QString Parser::findMember(const QString &classKey, const QString &text)
{
    const auto found = m_classRegistry.constFind(classKey);
    if (found == m_classRegistry.constEnd())
        return QString();
    QString composed = text.normalized(QString::NormalizationForm_C);
    if (found->methods.contains(composed) || found->properties.contains(composed))
        return composed;
    return m_classIndex.memberOfName(classKey, text, [&] {
        return QStringList(found->methods.keys() + found->properties.keys());
    });
}

QString Parser::ensureClass(const QString &name)
{
    QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return QString();
    QString known = findClassKey(trimmed);
    if (!known.isEmpty())
        return known;
    enterClass({trimmed, cppNameOfUserClass(trimmed), {}, {}});
    return trimmed;
}

// Enters a class under its name, in place of an earlier one.
void Parser::enterClass(const ClassInfo &info)
{
    const auto old = m_classRegistry.constFind(info.name);
    const bool renamed = old != m_classRegistry.constEnd() && old->cppName != info.cppName;
    m_classRegistry.insert(info.name, info);
    m_classIndex.forgetMembers(info.name);
    if (!renamed) {
        m_classIndex.add(info.name, info.cppName);
        return;
    }
    // A user class has taken the place of a built-in one: rare enough to start afresh.
    m_classIndex.clear();
    for (const ClassInfo &entry : qAsConst(m_classRegistry))
        m_classIndex.add(entry.name, entry.cppName);
}

// Makes the parsed members of a class the registry's entry.
void Parser::registerParsedClass(const ASTNode &classNode)
{
    ClassInfo info{classNode.value, cppNameOfUserClass(classNode.value), {}, {}};
    for (const ASTNode *child : classNode.children) {
        const QString &name = child->value;
        if (child->type == VarDecl && child->flag(Meta::classProperty))
            info.properties.insert(name, {name, name, child->metadata.value(Meta::varType)});
        else if (child->type == FunctionDecl && child->flag(Meta::classMethod))
            info.methods.insert(name, {name, name, child->metadata.value(Meta::returnType)});
    }
    enterClass(info);
}

// The C++ name of the class that `text` names; null if it names none.
QString Parser::cppNameOfClass(const QString &text) const
{
    const QString key = findClassKey(text.trimmed());
    return key.isEmpty() ? QString() : m_classRegistry.value(key).cppName;
}

// The class that a parameter's type names, as a registry key or as a C++ name.
QString Parser::findParameterClass(const QString &paramType) const
{
    if (m_classRegistry.contains(paramType))
        return paramType;
    return m_classIndex.keyOfCppName(paramType);
}
