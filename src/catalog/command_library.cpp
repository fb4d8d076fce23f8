#include "catalog/command_library.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QStringList stringList(const QJsonValue &value)
{
    QStringList result;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &item : array)
        result << item.toString();
    return result;
}

CommandInfo readRecord(const QJsonObject &object)
{
    const auto text = [&object](const char *key) {
        return object.value(QLatin1String(key)).toString();
    };
    CommandInfo info;
    info.name = text("name");
    info.category = text("category");
    info.description = text("description");
    info.syntax = text("syntax");
    info.returnType = text("returnType");
    info.example = text("example");
    if (object.contains(QLatin1String("output")))
        info.output = text("output");
    info.note = text("note");
    info.cppFunction = text("cppFunction");
    info.type = text("type");
    info.memberOf = text("memberOf");
    info.parameters = stringList(object.value(QLatin1String("parameters")));
    info.aliases = stringList(object.value(QLatin1String("aliases")));
    info.noPinyinCompletion = object.value(QLatin1String("noPinyinCompletion")).toBool();
    return info;
}

} // namespace

bool CommandInfo::isCallable() const
{
    return memberOf.isEmpty() && !isConstant() && type != QStringLiteral("语法");
}

CommandLibrary::CommandLibrary()
    : CommandLibrary(QStringLiteral(":/commands/builtin_commands.json"))
{}

CommandLibrary::CommandLibrary(const QString &path)
{
    if (!load(path)) {
        m_commands.clear();
        qWarning("CommandLibrary: Failed to load builtin commands from JSON");
        return;
    }
    // Names first: an alias never hides a command of that name.
    for (int i = 0; i < m_commands.size(); ++i)
        m_indexByName.insert(m_commands.at(i).name, i);
    for (int i = 0; i < m_commands.size(); ++i) {
        for (const QString &alias : m_commands.at(i).aliases) {
            if (!m_indexByName.contains(alias))
                m_indexByName.insert(alias, i);
        }
    }
}

const CommandLibrary &CommandLibrary::builtin()
{
    static const CommandLibrary library;
    return library;
}

const CommandInfo *CommandLibrary::commandInfo(const QString &name) const
{
    const auto found = m_indexByName.constFind(name);
    return found == m_indexByName.cend() ? nullptr : &m_commands.at(*found);
}

bool CommandLibrary::load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "CommandLibrary: Cannot open file:" << path;
        return false;
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isNull()) {
        qWarning() << "CommandLibrary: JSON parse error:" << error.errorString();
        return false;
    }
    const QJsonArray records = document.object().value(QLatin1String("commands")).toArray();
    m_commands.reserve(records.size());
    for (const QJsonValue &record : records)
        m_commands << readRecord(record.toObject());
    return true;
}
