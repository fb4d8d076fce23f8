#include "component_records.h"

#include "designer/model/component_types.h"

#include <QHash>
#include <QJsonDocument>
#include <QList>
#include <QStringList>

#include <algorithm>

namespace {

const QChar kExplains(0xFF1A); // the full-width colon ahead of a parameter's explanation

// A type of component as its records show it.
struct ShownType
{
    QString name;      // "自绘按钮"
    QString component; // what the designer calls the first one of a form: "按钮1"
    QString key;       // among the "types" of a row
};

// "整数 颜色=RGB(0,0,0)：线条的颜色" of a method, "int _VL_x=横坐标：…" of an event.
struct Parameter
{
    QString type;
    QString name;
    QString defaultText; // C++; empty: the argument must be given
    QString explanation;
    bool variadic = false;
};

enum class Kind
{
    Property,
    Method,
    Event
};

QString kindWord(Kind kind)
{
    switch (kind) {
    case Kind::Property:
        return QStringLiteral("属性");
    case Kind::Method:
        return QStringLiteral("方法");
    case Kind::Event:
        return QStringLiteral("事件");
    }
    return QString();
}

QString text(const QJsonObject &row, const char *key)
{
    return row.value(QLatin1String(key)).toString();
}

QStringList texts(const QJsonObject &row, const char *key)
{
    return row.value(QLatin1String(key)).toVariant().toStringList();
}

QList<ShownType> shownTypes()
{
    QList<ShownType> shown;
    const auto add = [&shown](const QString &name, const QString &base, int type) {
        const VL::ComponentTypeInfo *info = VL::componentType(VL::usableComponentType(type));
        const QString component =
            type == VL::Window ? QStringLiteral("主窗口") : base + QLatin1Char('1');
        shown << ShownType{name, component, QLatin1String(info->key)};
    };
    for (const VL::ComponentTypeInfo &info : VL::componentTypes()) {
        // Layouts have no window, and so nothing that source could name.
        if (info.type < VL::HorizontalLayout)
            add(info.name, info.name, info.type);
    }
    for (const VL::VLWinControlTypeInfo &info : VL::vlwinControlTypes())
        add(VL::vlwinControlDisplayName(info.type), info.nameBase, info.classicType);
    return shown;
}

// The type words of the tables, and those of C++, as users know them.
QString typeWord(const QString &type)
{
    static const QHash<QString, QString> words{
        {QStringLiteral("任意"), QStringLiteral("通用")},
        {QStringLiteral("节点"), QStringLiteral("整数")},
        {QStringLiteral("颜色"), QStringLiteral("整数")},
        {QStringLiteral("int"), QStringLiteral("整数")},
        {QStringLiteral("HTREEITEM"), QStringLiteral("整数")},
        {QStringLiteral("bool"), QStringLiteral("逻辑")},
        {QStringLiteral("const std::wstring&"), QStringLiteral("文本")},
        {QString(), QStringLiteral("无")},
    };
    return words.value(type, type);
}

Parameter methodParameter(const QString &row)
{
    const QString declaration = row.section(kExplains, 0, 0);
    Parameter parameter;
    parameter.explanation = row.section(kExplains, 1);
    parameter.defaultText = declaration.section(QLatin1Char('='), 1);
    const QString typeAndName = declaration.section(QLatin1Char('='), 0, 0);
    parameter.type = typeAndName.section(QLatin1Char(' '), 0, 0);
    parameter.name = typeAndName.section(QLatin1Char(' '), 1);
    parameter.variadic = parameter.type.endsWith(QLatin1String("..."));
    if (parameter.variadic)
        parameter.type.chop(3);
    return parameter;
}

Parameter eventParameter(const QString &row)
{
    const QString declaration = row.section(kExplains, 0, 0);
    Parameter parameter;
    parameter.explanation = row.section(kExplains, 1);
    parameter.type = declaration.section(QLatin1Char('='), 0, 0).section(QLatin1Char(' '), 0, -2);
    parameter.name = declaration.section(QLatin1Char('='), 1);
    // A word that source may read without declaring it, but not declare.
    if (parameter.name == typeWord(parameter.type))
        parameter.name = QStringLiteral("内容");
    return parameter;
}

// A default value as source would write it.
QString shownDefault(const QString &cpp)
{
    static const QHash<QString, QString> words{
        {QStringLiteral("true"), QStringLiteral("真")},
        {QStringLiteral("false"), QStringLiteral("假")},
        {QStringLiteral("RGB(0,0,0)"), QStringLiteral("#黑色")},
        {QStringLiteral("RGB(255,255,255)"), QStringLiteral("#白色")},
    };
    // A wide text is written as JSON writes one.
    if (cpp.startsWith(QLatin1String("L\"")))
        return QLatin1Char('"') +
               QJsonDocument::fromJson('[' + cpp.mid(1).toUtf8() + ']').array().at(0).toString() +
               QLatin1Char('"');
    return words.value(cpp, cpp);
}

// "整数 左边", "[整数 字号=12]", "文本 内容, ..."
QString declared(const Parameter &parameter)
{
    QString declaration = typeWord(parameter.type) + QLatin1Char(' ') + parameter.name;
    if (!parameter.defaultText.isEmpty())
        declaration =
            QStringLiteral("[%1=%2]").arg(declaration, shownDefault(parameter.defaultText));
    return parameter.variadic ? declaration + QLatin1String(", ...") : declaration;
}

QString explained(const Parameter &parameter)
{
    const QString name =
        parameter.defaultText.isEmpty()
            ? parameter.name
            : QStringLiteral("[%1=%2]").arg(parameter.name, shownDefault(parameter.defaultText));
    return name + QLatin1String(": ") + parameter.explanation;
}

QString parameterList(const QList<Parameter> &parameters)
{
    QStringList declarations;
    for (const Parameter &parameter : parameters)
        declarations << declared(parameter);
    return QLatin1Char('(') + declarations.join(QLatin1String(", ")) + QLatin1Char(')');
}

QList<Parameter> parametersOf(Kind kind, const QJsonObject &row)
{
    QList<Parameter> parameters;
    for (const QString &parameter : texts(row, "parameters"))
        parameters << (kind == Kind::Event ? eventParameter(parameter)
                                           : methodParameter(parameter));
    return parameters;
}

QString returnType(Kind kind, const QJsonObject &row)
{
    if (kind == Kind::Event)
        return typeWord(text(row, "result"));
    const bool onlyWritten = kind == Kind::Property && !row.contains(QLatin1String("read"));
    return typeWord(text(row, onlyWritten ? "value" : "type"));
}

QString noteOf(Kind kind, const QJsonObject &row)
{
    QStringList sentences;
    if (kind == Kind::Property && !row.contains(QLatin1String("write")))
        sentences << QStringLiteral("只读：只能读取，不能赋值。");
    if (kind == Kind::Property && !row.contains(QLatin1String("read")))
        sentences << QStringLiteral("只写：只能赋值，不能读取。");
    sentences << text(row, "note");
    return sentences.join(QString());
}

// The explanations of the parameters, each once; nothing when one has none.
QJsonValue explanations(const QList<Parameter> &parameters)
{
    QStringList sentences;
    for (const Parameter &parameter : parameters) {
        if (parameter.explanation.isEmpty())
            return QJsonValue::Undefined;
        sentences << explained(parameter);
    }
    sentences.removeDuplicates();
    return QJsonArray::fromStringList(sentences);
}

// The words of a row, Chinese ones first.
QStringList wordsOf(Kind kind, const QJsonObject &row)
{
    QStringList words = texts(row, kind == Kind::Event ? "words" : "names");
    std::stable_partition(words.begin(), words.end(),
                          [](const QString &word) { return word.at(0).unicode() >= 0x80; });
    return words;
}

// What all ways to call a member have in common with its first row.
struct Member
{
    ShownType type;
    Kind kind;
    QJsonObject row;
    QStringList words;
    QList<QList<Parameter>> overloads; // one for each way to call it
};

QString syntaxOf(const Member &member)
{
    const QString name = member.type.component + QLatin1Char('.') + member.words.first();
    switch (member.kind) {
    case Kind::Property:
        return name;
    case Kind::Method: {
        QStringList lines;
        for (const QList<Parameter> &parameters : member.overloads)
            lines << name + parameterList(parameters);
        return lines.join(QLatin1Char('\n'));
    }
    case Kind::Event:
        break;
    }
    const QString head = QStringLiteral("函数 ") + name + parameterList(member.overloads.first());
    return member.row.contains(QLatin1String("result"))
               ? head + QLatin1Char(' ') + returnType(member.kind, member.row)
               : head;
}

QJsonObject recordOf(const Member &member)
{
    const QJsonObject &row = member.row;
    QStringList names;
    for (const QString &word : member.words)
        names << member.type.name + QLatin1Char('.') + word;
    QString category = QStringLiteral("组件类/") + member.type.name;
    if (member.kind == Kind::Event)
        category += QStringLiteral("/事件");
    QList<Parameter> parameters;
    for (const QList<Parameter> &overload : member.overloads)
        parameters << overload;
    QJsonObject record{
        {QStringLiteral("name"), names.first()},
        {QStringLiteral("category"), category},
        {QStringLiteral("memberOf"), member.type.name},
        {QStringLiteral("type"), kindWord(member.kind)},
        {QStringLiteral("description"), text(row, "description")},
        {QStringLiteral("syntax"), syntaxOf(member)},
        {QStringLiteral("returnType"), returnType(member.kind, row)},
        {QStringLiteral("parameters"), explanations(parameters)},
        {QStringLiteral("aliases"), QJsonArray::fromStringList(names.mid(1))},
        {QStringLiteral("note"), noteOf(member.kind, row)},
    };
    for (const char *key : {"example", "cause"}) {
        if (row.contains(QLatin1String(key)))
            record.insert(QLatin1String(key),
                          text(row, key).replace(QLatin1String("%n"), member.type.component));
    }
    for (const char *key : {"output", "unattended"}) {
        if (row.contains(QLatin1String(key)))
            record.insert(QLatin1String(key), row.value(QLatin1String(key)));
    }
    // An event that code does not cause waits for a person.
    if (member.kind == Kind::Event && !row.contains(QLatin1String("output")))
        record.insert(QStringLiteral("unattended"), false);
    return record;
}

// The members of one kind that a type has. Of several rows with a word the generator takes the
// first or, of methods, the one that fits the arguments: further rows are other ways to call it.
QList<Member> membersOf(const ShownType &type, Kind kind, const QJsonArray &rows)
{
    QList<Member> members;
    QHash<QString, int> memberOfWord;
    for (const QJsonValue &value : rows) {
        const QJsonObject row = value.toObject();
        const QStringList types = texts(row, "types");
        if (!types.isEmpty() && !types.contains(type.key))
            continue;
        Member member{type, kind, row, {}, {parametersOf(kind, row)}};
        const QStringList words = wordsOf(kind, row);
        const int known = memberOfWord.value(words.first(), -1);
        if (known >= 0) {
            if (kind == Kind::Method)
                members[known].overloads << member.overloads;
            continue;
        }
        for (const QString &word : words) {
            if (memberOfWord.contains(word))
                continue;
            memberOfWord.insert(word, members.size());
            member.words << word;
        }
        members << member;
    }
    return members;
}

} // namespace

QJsonArray componentRecords(const QJsonObject &members, const QJsonObject &events)
{
    const auto rows = [](const QJsonObject &table, const char *key) {
        return table.value(QLatin1String(key)).toArray();
    };
    QJsonArray records;
    for (const ShownType &type : shownTypes()) {
        const bool isWindow = type.key == QLatin1String("Window");
        for (const Member &member :
             membersOf(type, Kind::Property, rows(members, "properties")) +
                 membersOf(type, Kind::Method, rows(members, "methods")) +
                 membersOf(type, Kind::Event, rows(events, isWindow ? "window" : "control")))
            records << recordOf(member);
    }
    return records;
}
