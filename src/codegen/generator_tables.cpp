#include "codegen/generator_tables.h"

#include "catalog/json_table.h"
#include "codegen/names.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QJsonDocument readDocument(const QString &name)
{
    return jsonTable(QStringLiteral(":/codegen/") + name);
}

QStringList toList(const QJsonValue &value)
{
    QStringList result;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &item : array)
        result << item.toString();
    return result;
}

QSet<QString> toSet(const QJsonValue &value)
{
    const QStringList list = toList(value);
    return QSet<QString>(list.begin(), list.end());
}

QHash<QString, QString> toHash(const QJsonValue &value)
{
    QHash<QString, QString> result;
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        result.insert(it.key(), it.value().toString());
    return result;
}

} // namespace

const GeneratorTables &GeneratorTables::instance()
{
    static const GeneratorTables tables;
    return tables;
}

GeneratorTables::GeneratorTables()
{
    const QJsonObject map = readDocument(QStringLiteral("command_map.json")).object();
    commandMap = toHash(map.value(QLatin1String("commands")));
    const QHash<QString, QString> constants = toHash(map.value(QLatin1String("constants")));
    for (auto it = constants.begin(); it != constants.end(); ++it)
        commandMap.insert(it.key(), it.value());

    const QJsonObject defaults = readDocument(QStringLiteral("default_arguments.json")).object();
    for (auto it = defaults.begin(); it != defaults.end(); ++it)
        defaultArguments.insert(it.key(), toList(it.value()));

    builtinNames = toList(readDocument(QStringLiteral("builtin_names.json")).array());

    const QJsonObject tables = readDocument(QStringLiteral("generator_tables.json")).object();
    const auto table = [&tables](const char *key) { return tables.value(QLatin1String(key)); };
    synonyms = toHash(table("synonyms"));
    variableTypes = toHash(table("variableTypes"));
    returnTypes = toHash(table("returnTypes"));
    parameterTypes = toHash(table("parameterTypes"));
    conversions = toHash(table("conversions"));
    componentWords = toList(table("componentWords"));
    integerCommandPrefixes = toList(table("integerCommandPrefixes"));
    cppReserved = toSet(table("cppReserved"));
    cppGlobals = toSet(table("cppGlobals"));
    windowNameFunctions = toSet(table("windowNameFunctions"));
    controlTextFunctions = toSet(table("controlTextFunctions"));
    arrayCommands = toSet(table("arrayCommands"));
    effectFunctions = toSet(table("effectFunctions"));
    displayedFirstArgument = toSet(table("displayedFirstArgument"));
    narrowCodePages = toHash(table("narrowCodePages"));

    const QJsonObject classes = table("classMethods").toObject();
    for (auto it = classes.begin(); it != classes.end(); ++it) {
        const QJsonObject methods = it.value().toObject();
        for (auto method = methods.begin(); method != methods.end(); ++method)
            classMethods[it.key()].insert(method.key(), toList(method.value()));
    }

    const QJsonObject byType = table("callTypes").toObject();
    for (auto it = byType.begin(); it != byType.end(); ++it) {
        for (const QString &command : toList(it.value()))
            callTypes.insert(command, it.key());
    }
}

QString GeneratorTables::commandText(const QString &name) const
{
    const auto found = commandMap.constFind(name);
    if (found != commandMap.cend())
        return *found;
    const QString normal = Names::normalized(name);
    return normal == name ? QString() : commandMap.value(normal);
}
