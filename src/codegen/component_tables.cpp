#include "codegen/component_tables.h"

#include "catalog/json_table.h"
#include "codegen/names.h"
#include "designer/model/component_types.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

QJsonObject readObject(const QString &name)
{
    return jsonTable(QStringLiteral(":/codegen/") + name).object();
}

QStringList toList(const QJsonValue &value)
{
    QStringList result;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &item : array)
        result << item.toString();
    return result;
}

QSet<int> toTypes(const QJsonValue &value)
{
    QSet<int> types;
    for (const QString &key : toList(value)) {
        if (const VL::ComponentTypeInfo *info = VL::componentTypeByKey(key))
            types.insert(info->type);
    }
    return types;
}

// A parameter without the explanation behind it.
QString declarationOf(const QString &parameter)
{
    return parameter.section(QChar(0xFF1A), 0, 0);
}

// "int _VL_x=横坐标：…"
EventParameter toEventParameter(const QString &row)
{
    const QString text = declarationOf(row);
    const QString declaration = text.section(QLatin1Char('='), 0, 0);
    EventParameter parameter;
    parameter.type = declaration.section(QLatin1Char(' '), 0, -2);
    parameter.name = declaration.section(QLatin1Char(' '), -1);
    parameter.word = text.section(QLatin1Char('='), 1);
    return parameter;
}

ComponentEvent toEvent(const QJsonObject &row)
{
    ComponentEvent event;
    event.words = toList(row.value(QLatin1String("words")));
    event.handler = row.value(QLatin1String("handler")).toString();
    event.result = row.value(QLatin1String("result")).toString(QStringLiteral("void"));
    for (const QString &parameter : toList(row.value(QLatin1String("parameters"))))
        event.parameters << toEventParameter(parameter);
    event.optional = row.value(QLatin1String("optional")).toBool();
    event.types = toTypes(row.value(QLatin1String("types")));
    event.lines = toList(row.value(QLatin1String("code")));
    event.watched = row.value(QLatin1String("watch")).toBool();
    const auto take = [&](const char *key, ComponentEvent::Source source) {
        if (!row.contains(QLatin1String(key)))
            return;
        event.source = source;
        const QString codes = row.value(QLatin1String(key)).toString();
        event.codes = source == ComponentEvent::Source::Scroll ? QStringList(codes)
                                                               : codes.split(QLatin1Char('|'));
    };
    take("command", ComponentEvent::Source::Command);
    take("notify", ComponentEvent::Source::Notify);
    take("scroll", ComponentEvent::Source::Scroll);
    return event;
}

// "整数 宽度=100：…", "文本... 各列内容：…"
MethodParameter toMethodParameter(const QString &row)
{
    const QString text = declarationOf(row);
    const QString declaration = text.section(QLatin1Char('='), 0, 0);
    MethodParameter parameter;
    parameter.type = declaration.section(QLatin1Char(' '), 0, 0);
    parameter.name = declaration.section(QLatin1Char(' '), 1);
    parameter.defaultText = text.section(QLatin1Char('='), 1);
    parameter.variadic = parameter.type.endsWith(QLatin1String("..."));
    if (parameter.variadic)
        parameter.type.chop(3);
    return parameter;
}

bool isOf(const QSet<int> &types, int type)
{
    return types.isEmpty() || type == VL::NoComponentType || types.contains(type);
}

template <typename Row>
void addNames(QHash<QString, QList<int>> &index, const QList<Row> &rows)
{
    for (int i = 0; i < rows.size(); ++i) {
        for (const QString &name : rows.at(i).names) {
            index[name] << i;
            const QString sanitized = Names::sanitize(name);
            if (sanitized != name)
                index[sanitized] << i;
        }
    }
}

bool isNamed(const ComponentEvent &event, const QString &word)
{
    return event.words.contains(word) || event.words.contains(Names::normalized(word));
}

} // namespace

QString EventParameter::localType() const
{
    if (type == QLatin1String("HTREEITEM"))
        return QStringLiteral("intptr_t");
    return type.startsWith(QLatin1String("const std::wstring")) ? QStringLiteral("std::wstring")
                                                                : type;
}

QString EventParameter::localValue() const
{
    return type == QLatin1String("HTREEITEM") ? QLatin1String("(intptr_t)") + name : name;
}

QString ComponentEvent::parameterList() const
{
    QStringList items;
    for (const EventParameter &parameter : parameters)
        items << parameter.type + QLatin1Char(' ') + parameter.name;
    return items.join(QLatin1String(", "));
}

int ComponentMethod::requiredCount() const
{
    int count = 0;
    for (const MethodParameter &parameter : parameters)
        count += parameter.defaultText.isEmpty() ? 1 : 0;
    return count;
}

bool ComponentMethod::takes(int count) const
{
    const bool open = !parameters.isEmpty() && parameters.last().variadic;
    return count >= requiredCount() && (open || count <= parameters.size());
}

const ComponentTables &ComponentTables::instance()
{
    static const ComponentTables tables;
    return tables;
}

ComponentTables::ComponentTables()
{
    const QJsonObject events = readObject(QStringLiteral("events.json"));
    const QJsonArray windowRows = events.value(QLatin1String("window")).toArray();
    for (const QJsonValue &row : windowRows)
        m_windowEvents << toEvent(row.toObject());
    const QJsonArray controlRows = events.value(QLatin1String("control")).toArray();
    for (const QJsonValue &row : controlRows)
        m_controlEvents << toEvent(row.toObject());

    const QJsonObject members = readObject(QStringLiteral("component_members.json"));
    const QJsonArray propertyRows = members.value(QLatin1String("properties")).toArray();
    for (const QJsonValue &value : propertyRows) {
        const QJsonObject row = value.toObject();
        const auto text = [&row](const char *key) {
            return row.value(QLatin1String(key)).toString();
        };
        m_properties << ComponentProperty{toList(row.value(QLatin1String("names"))),
                                          toTypes(row.value(QLatin1String("types"))),
                                          text("read"),
                                          text("type"),
                                          text("write"),
                                          text("value")};
    }
    const QJsonArray methodRows = members.value(QLatin1String("methods")).toArray();
    for (const QJsonValue &value : methodRows) {
        const QJsonObject row = value.toObject();
        ComponentMethod method;
        method.names = toList(row.value(QLatin1String("names")));
        method.types = toTypes(row.value(QLatin1String("types")));
        method.call = row.value(QLatin1String("call")).toString();
        method.type = row.value(QLatin1String("type")).toString(QStringLiteral("空"));
        for (const QString &parameter : toList(row.value(QLatin1String("parameters"))))
            method.parameters << toMethodParameter(parameter);
        m_methods << method;
    }
    addNames(m_propertyIndex, m_properties);
    addNames(m_methodIndex, m_methods);
}

const ComponentEvent *ComponentTables::windowEvent(const QString &word) const
{
    for (const ComponentEvent &event : m_windowEvents) {
        if (isNamed(event, word))
            return &event;
    }
    return nullptr;
}

const ComponentEvent *ComponentTables::controlEvent(int type, const QString &word) const
{
    for (const ComponentEvent &event : m_controlEvents) {
        if (isOf(event.types, type) && isNamed(event, word))
            return &event;
    }
    return nullptr;
}

QList<const ComponentEvent *> ComponentTables::controlEvents(int type) const
{
    QList<const ComponentEvent *> events;
    for (const ComponentEvent &event : m_controlEvents) {
        if (isOf(event.types, type))
            events << &event;
    }
    return events;
}

QStringList ComponentTables::windowEventWords() const
{
    QStringList words;
    for (const ComponentEvent &event : m_windowEvents)
        words << event.words.first();
    return words;
}

QStringList ComponentTables::controlEventWords(int type) const
{
    QStringList words;
    for (const ComponentEvent *event : controlEvents(type))
        words << event->words.first();
    return words;
}

const ComponentProperty *ComponentTables::property(int type, const QString &name) const
{
    const QList<int> rows = m_propertyIndex.value(Names::normalized(name));
    for (int row : rows) {
        if (isOf(m_properties.at(row).types, type))
            return &m_properties.at(row);
    }
    return nullptr;
}

const ComponentMethod *ComponentTables::method(int type, const QString &name, int arguments) const
{
    const ComponentMethod *first = nullptr;
    const QList<int> rows = m_methodIndex.value(Names::normalized(name));
    for (int row : rows) {
        const ComponentMethod &method = m_methods.at(row);
        if (!isOf(method.types, type))
            continue;
        if (method.takes(arguments))
            return &method;
        if (!first)
            first = &method;
    }
    return first;
}

QStringList ComponentTables::memberNames(int type) const
{
    QStringList names;
    for (const ComponentProperty &property : m_properties) {
        if (isOf(property.types, type))
            names << property.names.first();
    }
    for (const ComponentMethod &method : m_methods) {
        if (isOf(method.types, type))
            names << method.names;
    }
    return names;
}
