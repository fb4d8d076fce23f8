#include "designer/model/vlwin_document.h"

#include "designer/model/component_types.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

const QString typeKey = QStringLiteral("_vlwin_type");
const QString nameKey = QStringLiteral("name");

// Labels and controls with a caption know their alignment by either name.
void fillAlignment(int type, QMap<QString, QVariant> &properties)
{
    const QString one = QStringLiteral("alignment");
    const QString other = QStringLiteral("textAlign");
    if (type != VL::VLWinButton && type != VL::VLWinLabel && type != VL::VLWinCheckBox &&
        type != VL::VLWinRadioButton)
        return;
    if (properties.contains(one) && !properties.contains(other))
        properties.insert(other, properties.value(one));
    else if (properties.contains(other) && !properties.contains(one))
        properties.insert(one, properties.value(other));
}

} // namespace

VlwinDocument::VlwinDocument()
{
    setRootValue("format", QStringLiteral("vlwin"));
    setRootValue("version", QStringLiteral("1.0"));
    setRootValue("coordSpace", QStringLiteral("local"));
    setRootValue("components", QJsonArray());
}

bool VlwinDocument::hasLocalPositions() const
{
    return text(m_tree.root(), "coordSpace") == QLatin1String("local");
}

// -1 when absent, -2 when it is no whole number.
int VlwinDocument::storedType(const JsonNode &entry) const
{
    const JsonNode *node = m_tree.find(entry, "_vlwin_type");
    if (!node)
        return -1;
    const QVariant value = m_tree.variant(*node);
    return int(value.type()) == QVariant::Int ? value.toInt() : -2;
}

void VlwinDocument::entryValueChanged(const char *key)
{
    if (qstrcmp(key, "x") == 0 || qstrcmp(key, "y") == 0)
        structureChanged();
}

QPoint VlwinDocument::presentOffset() const
{
    return hasLocalPositions() ? rootPosition() : QPoint();
}

QPoint VlwinDocument::rootPosition() const
{
    if (m_rootPosition)
        return *m_rootPosition;
    m_rootPosition = QPoint();
    for (int i = 0; i < entryCount(); ++i) {
        const JsonNode &node = entries()->members[size_t(i)].value;
        if (node.kind != JsonKind::Object || storedType(node) != VL::VLWinWindow)
            continue;
        const VL::DesignComponent window = readCommon(node, QSize(100, 30), nullptr);
        m_rootPosition = QPoint(window.x, window.y);
        break;
    }
    return *m_rootPosition;
}

std::optional<VL::DesignComponent> VlwinDocument::readEntry(const JsonNode &entry,
                                                            FormWarnings *warnings) const
{
    const int type = storedType(entry);
    const int classicType = VL::classicTypeOfVlwin(type);
    if (classicType == VL::NoComponentType) {
        if (warnings && type != -1) {
            warnings->add(m_tree.lineOf(entry), QStringLiteral("组件“%1”的类型未知，已跳过")
                                                    .arg(FormValues::shown(text(entry, "id"))));
        }
        return std::nullopt;
    }
    VL::DesignComponent component = readCommon(entry, QSize(100, 30), warnings);
    component.type = classicType;
    if (type != VL::VLWinWindow && hasLocalPositions()) {
        component.x += rootPosition().x();
        component.y += rootPosition().y();
    }
    const QString instance = text(entry, "_vlwin_instance");
    if (!instance.isEmpty())
        component.properties.insert(nameKey, instance);
    fillAlignment(type, component.properties);
    component.properties.insert(typeKey, type);
    return component;
}

QPoint VlwinDocument::childOffset(const QList<VL::DesignComponent> &components) const
{
    if (!hasLocalPositions())
        return {};
    for (const VL::DesignComponent &component : components) {
        if (component.type == VL::Window)
            return {component.x, component.y};
    }
    return {};
}

bool VlwinDocument::isStoredProperty(const QString &key) const
{
    return key != typeKey;
}

QJsonObject VlwinDocument::newEntry(const VL::DesignComponent &component, QPoint offset) const
{
    QJsonObject entry = commonEntry(component, offset);
    int type = component.properties.value(typeKey, -1).toInt();
    if (VL::classicTypeOfVlwin(type) != component.type) {
        const VL::VLWinControlTypeInfo *info = VL::vlwinControlTypeOfClassic(
            component.type == VL::ListView ? VL::tableComponentType : component.type);
        type = info ? info->type : -1;
    }
    entry.insert(typeKey, type);
    entry.insert(QStringLiteral("_vlwin_instance"), component.name());
    if (component.locked)
        entry.insert(QStringLiteral("locked"), true);
    return entry;
}

void VlwinDocument::propertyWritten(int index, const QString &key, const QVariant &value)
{
    if (key == nameKey && !value.toString().isEmpty())
        setEntryValue(index, "_vlwin_instance", value.toString());
}

QString VlwinDocument::generatedNameBase(const VL::DesignComponent &component) const
{
    const VL::VLWinControlTypeInfo *info =
        VL::vlwinControlType(component.properties.value(typeKey, -1).toInt());
    return info ? info->nameBase : VL::componentDisplayName(component.type);
}
