#include "designer/model/form_document.h"

#include "designer/model/form_checks.h"

#include <QJsonObject>

namespace {

QString keyName(const char *key)
{
    return QString::fromLatin1(key);
}

} // namespace

bool FormDocument::read(const QByteArray &bytes, QString *error)
{
    JsonTree tree;
    JsonError fault;
    QString message;
    if (!tree.parse(bytes, &fault))
        message = fault.message();
    else if (tree.root().kind != JsonKind::Object)
        message = QStringLiteral("第 1 行: 最外层应为对象");
    if (!message.isEmpty()) {
        if (error)
            *error = message;
        return false;
    }
    m_tree = std::move(tree);
    structureChanged();
    return true;
}

bool FormDocument::isSelfDrawn() const
{
    return text(m_tree.root(), "format") == QLatin1String("vlwin");
}

const JsonNode *FormDocument::entries() const
{
    const JsonNode *list = m_tree.find(m_tree.root(), "components");
    return list && list->kind == JsonKind::Array ? list : nullptr;
}

int FormDocument::entryCount() const
{
    const JsonNode *list = entries();
    return list ? int(list->members.size()) : 0;
}

JsonMember *FormDocument::entry(int index)
{
    auto *list = const_cast<JsonNode *>(entries());
    if (!list || index < 0 || index >= int(list->members.size()))
        return nullptr;
    JsonMember &member = list->members[size_t(index)];
    return member.value.kind == JsonKind::Object ? &member : nullptr;
}

std::optional<VL::DesignComponent> FormDocument::component(int index) const
{
    const JsonMember *member = const_cast<FormDocument *>(this)->entry(index);
    return member ? readEntry(member->value, nullptr) : std::nullopt;
}

int FormDocument::indexOf(const QString &id) const
{
    for (int i = 0; i < entryCount(); ++i) {
        const auto found = component(i);
        if (found && found->id == id)
            return i;
    }
    return -1;
}

QList<VL::DesignComponent> FormDocument::components() const
{
    QList<VL::DesignComponent> list;
    for (int i = 0; i < entryCount(); ++i) {
        if (const auto found = component(i))
            list << *found;
    }
    return list;
}

QList<VL::DesignComponent> FormDocument::buildComponents(QStringList *warnings) const
{
    FormWarnings found;
    QList<VL::DesignComponent> list;
    if (m_tree.invalidUtf8Line() > 0)
        found.add(m_tree.invalidUtf8Line(), QStringLiteral("文字不是 UTF-8 编码"));
    const JsonNode *all = m_tree.find(m_tree.root(), "components");
    if (all && all->kind != JsonKind::Array)
        found.add(m_tree.lineOf(*all), QStringLiteral("components 应为数组"));
    for (int i = 0; i < entryCount(); ++i) {
        const JsonNode &node = entries()->members[size_t(i)].value;
        if (node.kind != JsonKind::Object) {
            found.add(m_tree.lineOf(node), QStringLiteral("组件应为对象，已跳过"));
            continue;
        }
        auto component = readEntry(node, &found);
        if (!component)
            continue;
        completeForBuild(node, *component, found);
        list << *component;
    }
    FormChecks::giveNames(
        list, [this](const VL::DesignComponent &c) { return generatedNameBase(c); }, found);
    FormChecks::cutParentCircles(list, found);
    if (warnings)
        *warnings += found.take();
    return list;
}

void FormDocument::completeForBuild(const JsonNode &, VL::DesignComponent &, FormWarnings &) const
{}

QPoint FormDocument::childOffset(const QList<VL::DesignComponent> &) const
{
    return {};
}

bool FormDocument::isStoredProperty(const QString &) const
{
    return true;
}

void FormDocument::entryValueChanged(const char *) {}

void FormDocument::propertyWritten(int, const QString &, const QVariant &) {}

QString FormDocument::text(const JsonNode &object, const char *key) const
{
    const JsonNode *node = m_tree.find(object, key);
    return node ? FormValues::usableText(m_tree.string(*node)) : QString();
}

VL::DesignComponent FormDocument::readCommon(const JsonNode &entry, const QSize &defaultSize,
                                             FormWarnings *warnings) const
{
    constexpr int far = FormValues::largestPixel;
    const auto number = [&](const char *key, int fallback, int lowest) {
        return FormValues::bounded(m_tree, m_tree.find(entry, key), fallback, lowest, far);
    };
    VL::DesignComponent component;
    component.id = text(entry, "id");
    component.originalName = text(entry, "originalName");
    component.x = number("x", 0, -far);
    component.y = number("y", 0, -far);
    component.width = number("width", defaultSize.width(), 0);
    component.height = number("height", defaultSize.height(), 0);
    const JsonNode *locked = m_tree.find(entry, "locked");
    component.locked = locked && m_tree.boolean(*locked);
    readProperties(entry, component, warnings);
    readHandlers(entry, component, warnings);
    if (component.id.isEmpty())
        component.id = component.properties.value(QStringLiteral("name")).toString();
    if (warnings) {
        for (const char *key : {"x", "y"})
            warnOfRange(entry, key, -far, far, component, warnings);
        for (const char *key : {"width", "height"})
            warnOfRange(entry, key, 0, far, component, warnings);
    }
    return component;
}

void FormDocument::warnOfRange(const JsonNode &entry, const char *key, int lowest, int highest,
                               const VL::DesignComponent &component, FormWarnings *warnings) const
{
    const JsonNode *node = m_tree.find(entry, key);
    if (!FormValues::isOutside(m_tree, node, lowest, highest))
        return;
    const QString name = FormValues::shown(component.id);
    const QString wrong =
        node->kind == JsonKind::Number
            ? QStringLiteral("组件“%1”的 %2 超出 %3 到 %4")
                  .arg(name, keyName(key), QString::number(lowest), QString::number(highest))
            : QStringLiteral("组件“%1”的 %2 应为数字").arg(name, keyName(key));
    warnings->add(m_tree.lineOf(*node), wrong);
}

void FormDocument::readProperties(const JsonNode &entry, VL::DesignComponent &component,
                                  FormWarnings *warnings) const
{
    const JsonNode *bag = m_tree.find(entry, "properties");
    if (!bag)
        return;
    if (bag->kind != JsonKind::Object) {
        if (warnings)
            warnings->add(m_tree.lineOf(*bag), QStringLiteral("properties 应为对象"));
        return;
    }
    for (const JsonMember &member : bag->members) {
        const QVariant value = FormValues::usableValue(m_tree.variant(member.value));
        // Most files hold them in this order.
        component.properties.insert(component.properties.constEnd(),
                                    FormValues::usableText(m_tree.key(member)), value);
        if (warnings && !value.isValid() && member.value.kind == JsonKind::Number) {
            warnings->add(
                m_tree.lineOf(member.value),
                QStringLiteral("属性 %1 的数字太大").arg(FormValues::shown(m_tree.key(member))));
        }
    }
}

void FormDocument::readHandlers(const JsonNode &entry, VL::DesignComponent &component,
                                FormWarnings *warnings) const
{
    const JsonNode *bag = m_tree.find(entry, "eventHandlers");
    if (!bag)
        return;
    if (bag->kind != JsonKind::Object) {
        if (warnings)
            warnings->add(m_tree.lineOf(*bag), QStringLiteral("eventHandlers 应为对象"));
        return;
    }
    for (const JsonMember &member : bag->members) {
        const QString event = FormValues::usableText(m_tree.key(member));
        if (member.value.kind == JsonKind::String) {
            component.eventHandlers.insert(event,
                                           FormValues::usableText(m_tree.string(member.value)));
        } else if (warnings) {
            warnings->add(m_tree.lineOf(member.value),
                          QStringLiteral("事件 %1 的处理应为文字").arg(FormValues::shown(event)));
        }
    }
}

QJsonObject FormDocument::newEntry(const VL::DesignComponent &component, QPoint offset) const
{
    return commonEntry(component, offset);
}

QJsonObject FormDocument::commonEntry(const VL::DesignComponent &component, QPoint offset) const
{
    QJsonObject properties;
    for (auto it = component.properties.begin(); it != component.properties.end(); ++it) {
        if (isStoredProperty(it.key()))
            properties.insert(it.key(), FormValues::encoded(it.value()));
    }
    QJsonObject handlers;
    for (auto it = component.eventHandlers.begin(); it != component.eventHandlers.end(); ++it)
        handlers.insert(it.key(), it.value());
    const QPoint shift = component.type == VL::Window ? QPoint() : offset;
    return {{QStringLiteral("id"), component.id},
            {QStringLiteral("originalName"), component.originalName},
            {QStringLiteral("x"), component.x - shift.x()},
            {QStringLiteral("y"), component.y - shift.y()},
            {QStringLiteral("width"), component.width},
            {QStringLiteral("height"), component.height},
            {QStringLiteral("properties"), properties},
            {QStringLiteral("eventHandlers"), handlers}};
}
