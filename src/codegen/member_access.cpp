// Members of components and windows: reading and writing properties, calling methods.
#include "codegen/component_tables.h"
#include "codegen/generation.h"

#include "codegen/names.h"
#include "designer/model/component_types.h"
#include "frontend/metadata.h"

#include <algorithm>

namespace {

using Node = Parser::ASTNode;

QString filled(QString text, const QString &handle)
{
    return text.replace(QLatin1String("%h"), handle);
}

// The first names that share a character with a wrong one, or else the first of all.
QString someNames(const QStringList &names, const QString &wrong)
{
    const int kMost = 8;
    QStringList chosen;
    for (const QString &name : names) {
        const bool shares =
            std::any_of(wrong.begin(), wrong.end(), [&](QChar c) { return name.contains(c); });
        if (shares && chosen.size() < kMost)
            chosen << name;
    }
    if (chosen.isEmpty())
        chosen = names.mid(0, kMost);
    return chosen.join(QStringLiteral("、"));
}

bool isNumber(ValueType type)
{
    return type == ValueType::Int || type == ValueType::Double || type == ValueType::Bool ||
           type == ValueType::Handle;
}

} // namespace

// What an expression names, when it names a component or a window.
std::optional<ComponentRef> Generation::componentOf(const Node *node) const
{
    if (!node)
        return std::nullopt;
    if (node->type == Parser::Identifier)
        return m_scopes.find(node->value) ? std::nullopt : m_windows.component(node->value);
    if (node->type != Parser::Member || node->children.isEmpty())
        return std::nullopt;
    const Node *owner = node->children.first();
    if (owner->type != Parser::Identifier || m_scopes.find(owner->value))
        return std::nullopt;
    return m_windows.componentIn(owner->value, node->value);
}

// Notes that the program uses a handle that no design declares.
QString Generation::usedHandle(const ComponentRef &component)
{
    if (component.handle.isEmpty()) {
        report(GeneratorMessage::layoutHasNoWindow, m_line,
               {component.name, VL::componentDisplayName(component.type)});
        return QStringLiteral("g_hWndMain");
    }
    if (component.type != VL::NoComponentType)
        return component.handle;
    const QString warning =
        QStringLiteral("[组件 ID] 疑似纯数字后缀的控件名「%1」，请确认设计器命名是否与脚本一致。")
            .arg(component.name);
    if (!warnings.contains(warning))
        warnings << warning;
    if (!m_referencedControls.contains(component.handle))
        m_referencedControls << component.handle;
    return component.handle;
}

QString Generation::typeWordOf(const ComponentRef &component) const
{
    return component.type == VL::NoComponentType ? component.name
                                                 : VL::componentDisplayName(component.type);
}

QString Generation::componentRead(const Node *node, const ComponentRef &component)
{
    const ComponentTables &tables = ComponentTables::instance();
    const QString name = node->value.trimmed();
    const QString handle = usedHandle(component);
    const ComponentProperty *property = tables.property(component.type, name);
    if (property && !property->read.isEmpty())
        return filled(property->read, handle);
    // A method without arguments may be read like a property.
    const ComponentMethod *method = tables.method(component.type, name, 0);
    if (method && method->requiredCount() == 0 && method->type != QStringLiteral("空"))
        return methodText(*method, handle, {});
    if (property) {
        report(GeneratorMessage::propertyOnlyWritten, lineOf(node), {component.name, name});
        return QStringLiteral("0");
    }
    return unknownMember(node, component);
}

QString Generation::unknownMember(const Node *node, const ComponentRef &component)
{
    const QStringList names = ComponentTables::instance().memberNames(component.type);
    report(GeneratorMessage::unknownProperty, lineOf(node),
           {component.name, typeWordOf(component), node->value.trimmed(),
            someNames(names, node->value)});
    return QStringLiteral("0");
}

// `text` as a value of the type word that a property or a parameter wants.
QString Generation::componentValue(const QString &wanted, const QString &text, ValueType given,
                                   const Node *place, const QString &what)
{
    const auto mismatch = [&]() {
        report(GeneratorMessage::memberType, lineOf(place), {what, wanted, wordOf(given)});
        return text;
    };
    if (wanted == QStringLiteral("文本")) {
        if (given != ValueType::Text)
            return QLatin1String("std::wstring(VL_ToOutputStr(") + text + QLatin1String("))");
        return text.startsWith(QLatin1String("std::wstring(L\""))
                   ? text
                   : QLatin1String("std::wstring(") + text + QLatin1Char(')');
    }
    if (wanted == QStringLiteral("整数") || wanted == QStringLiteral("颜色")) {
        if (given == ValueType::Text || given == ValueType::Array || given == ValueType::Bytes ||
            given == ValueType::Object)
            return mismatch();
        if (given == ValueType::Any)
            return QLatin1String("(int)VL_ToInt(") + text + QLatin1Char(')');
        const bool digits = std::all_of(text.begin(), text.end(), [](QChar c) {
            return c >= QLatin1Char('0') && c <= QLatin1Char('9');
        });
        return digits ? text : QLatin1String("(int)(") + text + QLatin1Char(')');
    }
    if (wanted == QStringLiteral("逻辑")) {
        if (given == ValueType::Text || given == ValueType::Array || given == ValueType::Bytes)
            return mismatch();
        return given == ValueType::Any    ? QLatin1String("VL_ToBool(") + text + QLatin1Char(')')
               : given == ValueType::Bool ? text
                                          : QLatin1Char('(') + text + QLatin1String(") != 0");
    }
    if (wanted == QStringLiteral("节点")) {
        if (given == ValueType::Text)
            return mismatch();
        return given == ValueType::Any
                   ? QLatin1String("(HTREEITEM)(intptr_t)VL_ToLongLong(") + text + QLatin1Char(')')
                   : QLatin1String("(HTREEITEM)(intptr_t)(") + text + QLatin1Char(')');
    }
    if (wanted == QStringLiteral("数组") && (given == ValueType::Text || isNumber(given)))
        return mismatch();
    if (wanted == QStringLiteral("字节集") && (given == ValueType::Text || isNumber(given)))
        return mismatch();
    return text;
}

QString Generation::componentWrite(const Node *node, const ComponentRef &component)
{
    const Node *target = node->children.at(0);
    const Node *value = node->children.at(1);
    const ValueType given = inferType(value);
    const QString text = expression(value);
    return componentAssign(target, component, node->value, text, given);
}

// `target` is the member; `sign` the sign of assignment, such as "=" and "+=".
QString Generation::componentAssign(const Node *target, const ComponentRef &component,
                                    const QString &sign, QString text, ValueType given)
{
    const QString name = target->value.trimmed();
    const ComponentProperty *property = ComponentTables::instance().property(component.type, name);
    if (!property)
        return unknownMember(target, component);
    if (property->write.isEmpty()) {
        report(GeneratorMessage::propertyOnlyRead, lineOf(target), {component.name, name});
        return QStringLiteral("0");
    }
    const QString handle = usedHandle(component);
    if (sign != QLatin1String("=")) {
        if (property->read.isEmpty()) {
            report(GeneratorMessage::propertyOnlyWritten, lineOf(target), {component.name, name});
            return QStringLiteral("0");
        }
        const ValueType own = valueTypeOf(property->type);
        if (own == ValueType::Text && given != ValueType::Text)
            text = QLatin1String("VL_ToOutputStr(") + text + QLatin1Char(')');
        text = QLatin1Char('(') + filled(property->read, handle) + QLatin1Char(' ') +
               sign.chopped(1) + QLatin1String(" (") + text + QLatin1String("))");
        given = own == ValueType::Int && given == ValueType::Double ? given : own;
    }
    const QString converted =
        componentValue(property->value, text, given, target,
                       QStringLiteral("属性「%1.%2」").arg(component.name, name));
    QString call = filled(property->write, handle);
    return call.replace(QLatin1String("%v"), converted);
}

QString Generation::methodText(const ComponentMethod &method, const QString &handle,
                               const QStringList &arguments) const
{
    QString text;
    const QString &pattern = method.call;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar next = i + 1 < pattern.size() ? pattern.at(i + 1) : QChar();
        if (pattern.at(i) != QLatin1Char('%')) {
            text += pattern.at(i);
            continue;
        }
        ++i;
        if (next == QLatin1Char('h'))
            text += handle;
        else if (next == QLatin1Char('*'))
            text += QLatin1Char('{') +
                    arguments.mid(method.parameters.size() - 1).join(QLatin1String(", ")) +
                    QLatin1Char('}');
        else
            text += arguments.value(next.digitValue() - 1);
    }
    return text;
}

QString Generation::componentCall(const Node *node, const ComponentRef &component)
{
    const Node *callee = node->children.first();
    const QString name = callee->value.trimmed();
    const int given = node->children.size() - 1;
    const ComponentTables &tables = ComponentTables::instance();
    const bool balloon =
        name == QStringLiteral("显示气球提示") || name == QLatin1String("showBalloonTip");
    if (balloon && refusesBalloon(node))
        return QStringLiteral("(void)0");
    const ComponentMethod *method = tables.method(component.type, name, given);
    if (!method) {
        QString handler = eventHandlerCall(node, component);
        if (!handler.isEmpty())
            return handler;
        const ComponentProperty *property = tables.property(component.type, name);
        if (property && given == 0)
            return componentRead(callee, component);
        report(GeneratorMessage::unknownMethod, lineOf(node), {typeWordOf(component), name});
        return QStringLiteral("0");
    }
    return methodText(*method, usedHandle(component), methodArguments(node, component, *method));
}

QStringList Generation::methodArguments(const Node *node, const ComponentRef &component,
                                        const ComponentMethod &method)
{
    const QString name = node->children.first()->value.trimmed();
    const int given = node->children.size() - 1;
    QStringList arguments;
    QStringList missing;
    const int count = std::max(given, method.parameters.size());
    for (int i = 0; i < count; ++i) {
        const bool open = !method.parameters.isEmpty() && method.parameters.last().variadic;
        if (i >= method.parameters.size() && !open) {
            report(GeneratorMessage::tooManyArguments, lineOf(node),
                   {component.name + QLatin1Char('.') + name,
                    QString::number(method.parameters.size()), QString::number(given)});
            break;
        }
        const MethodParameter &parameter =
            method.parameters.at(std::min(i, method.parameters.size() - 1));
        const Node *argument = i < given ? node->children.at(i + 1) : nullptr;
        if (!argument || isEmptyArgument(argument)) {
            if (parameter.defaultText.isEmpty())
                missing << parameter.name;
            arguments << parameter.defaultText;
            continue;
        }
        const ValueType type = inferType(argument);
        arguments << componentValue(
            parameter.type, expression(argument), type, argument,
            QStringLiteral("%1.%2() 的参数「%3」").arg(component.name, name, parameter.name));
    }
    if (!missing.isEmpty()) {
        report(GeneratorMessage::missingMethodArguments, lineOf(node),
               {component.name, name, missing.join(QStringLiteral("、"))});
    }
    return arguments;
}

// Reports a balloon that would show nothing.
bool Generation::refusesBalloon(const Node *node)
{
    if (node->children.size() < 2) {
        report(GeneratorMessage::balloonWithoutText, lineOf(node), {});
        return true;
    }
    const Node *first = node->children.at(1);
    const bool emptyFirst =
        isEmptyArgument(first) || (first->type == Parser::Literal && first->value.isEmpty() &&
                                   first->metadata.value(Meta::literalType) == Meta::literalString);
    if (emptyFirst)
        report(GeneratorMessage::balloonEmptyFirst, lineOf(node), {});
    return emptyFirst;
}
