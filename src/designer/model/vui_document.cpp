#include "designer/model/vui_document.h"

#include "designer/model/component_types.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

const QString parentTabWidget = QStringLiteral("_parentTabWidget");
const QString tabPageIndex = QStringLiteral("_tabPageIndex");

QJsonArray jsonTexts(const QStringList &texts)
{
    return QJsonArray::fromStringList(texts);
}

QJsonArray jsonChildren(const QVector<QStringList> &pages)
{
    QJsonArray array;
    for (const QStringList &page : pages)
        array.append(jsonTexts(page));
    return array;
}

} // namespace

bool TabPages::operator==(const TabPages &other) const
{
    return count == other.count && currentIndex == other.currentIndex && titles == other.titles &&
           children == other.children;
}

VuiDocument::VuiDocument()
{
    setRootValue("canvas_width", 800);
    setRootValue("canvas_height", 600);
    setRootValue("components", QJsonArray());
}

void VuiDocument::entryValueChanged(const char *key)
{
    if (qstrcmp(key, "id") == 0)
        structureChanged();
}

QSize VuiDocument::canvasSize() const
{
    const auto number = [this](const char *key, int fallback) {
        const JsonNode *node = m_tree.find(m_tree.root(), key);
        return FormValues::bounded(m_tree, node, fallback, 1, FormValues::largestPixel);
    };
    return {number("canvas_width", 800), number("canvas_height", 600)};
}

void VuiDocument::setCanvasSize(const QSize &size)
{
    const QSize old = canvasSize();
    if (size.width() != old.width())
        setRootValue("canvas_width", size.width());
    if (size.height() != old.height())
        setRootValue("canvas_height", size.height());
}

int VuiDocument::storedType(const JsonNode &entry) const
{
    const JsonNode *node = m_tree.find(entry, "type");
    const QVariant value = node ? m_tree.variant(*node) : QVariant();
    return int(value.type()) == QVariant::Int ? value.toInt() : VL::NoComponentType;
}

QString VuiDocument::entryId(const JsonNode &entry) const
{
    const QString id = text(entry, "id");
    const JsonNode *properties = m_tree.find(entry, "properties");
    return id.isEmpty() && properties ? text(*properties, "name") : id;
}

QStringList VuiDocument::readTexts(const JsonNode &list) const
{
    QStringList texts;
    if (list.kind != JsonKind::Array)
        return texts;
    for (const JsonMember &member : list.members)
        texts << FormValues::usableText(m_tree.string(member.value));
    return texts;
}

std::optional<TabPages> VuiDocument::readPages(const JsonNode &entry) const
{
    const JsonNode *data = m_tree.find(entry, "tabData");
    const JsonNode *ownChildren = m_tree.find(entry, "tabChildren");
    if ((!data && !ownChildren) || storedType(entry) != VL::TabWidget)
        return std::nullopt;
    TabPages pages;
    const JsonNode *children = ownChildren;
    if (data) {
        pages.count = FormValues::bounded(m_tree, m_tree.find(*data, "tabCount"), 2, 0, mostPages);
        pages.currentIndex =
            FormValues::bounded(m_tree, m_tree.find(*data, "currentIndex"), 0, 0, mostPages);
        if (const JsonNode *titles = m_tree.find(*data, "tabTitles"))
            pages.titles = readTexts(*titles);
        if (const JsonNode *inData = m_tree.find(*data, "tabChildren"))
            children = inData;
    }
    if (children && children->kind == JsonKind::Array) {
        for (const JsonMember &page : children->members)
            pages.children << readTexts(page.value);
    }
    return pages;
}

std::optional<TabPages> VuiDocument::tabPages(int index) const
{
    const JsonMember *member = const_cast<VuiDocument *>(this)->entry(index);
    return member ? readPages(member->value) : std::nullopt;
}

void VuiDocument::setTabPages(int index, const TabPages &pages)
{
    const auto old = tabPages(index);
    JsonMember *member = entry(index);
    if (!member || storedType(member->value) != VL::TabWidget || (old && *old == pages))
        return;
    const JsonNode *present = m_tree.find(std::as_const(member->value), "tabData");
    if (!present || present->kind != JsonKind::Object)
        setEntryValue(index, "tabData", QJsonObject());
    const int place = m_tree.indexOf(member->value, "tabData");
    JsonMember &data = member->value.members[size_t(place)];
    const QByteArray indent = m_tree.indentOf(data);
    const auto set = [&](const char *key, bool changed, const QJsonValue &value) {
        if (changed)
            m_tree.setMember(data.value, indent, QString::fromLatin1(key), value);
    };
    set("tabCount", !old || old->count != pages.count, pages.count);
    set("currentIndex", !old || old->currentIndex != pages.currentIndex, pages.currentIndex);
    set("tabTitles", !old || old->titles != pages.titles, jsonTexts(pages.titles));
    set("tabChildren", !old || old->children != pages.children, jsonChildren(pages.children));
    structureChanged();
}

// A component that several pages claim lies where the last one says.
const QHash<QString, VuiDocument::PagePlace> &VuiDocument::pagePlaces() const
{
    if (m_pagePlaces)
        return *m_pagePlaces;
    m_pagePlaces.emplace();
    for (int i = 0; i < entryCount(); ++i) {
        const JsonNode &node = entries()->members[size_t(i)].value;
        const auto pages = readPages(node);
        if (!pages)
            continue;
        const QString id = entryId(node);
        for (int page = 0; page < pages->children.size(); ++page) {
            for (const QString &child : pages->children[page]) {
                if (!child.isEmpty())
                    m_pagePlaces->insert(child, {id, page});
            }
        }
    }
    return *m_pagePlaces;
}

std::optional<VL::DesignComponent> VuiDocument::readEntry(const JsonNode &entry,
                                                          FormWarnings *warnings) const
{
    const int type = VL::usableComponentType(storedType(entry));
    if (type == VL::NoComponentType) {
        if (warnings) {
            warnings->add(m_tree.lineOf(entry), QStringLiteral("组件“%1”的类型未知，已跳过")
                                                    .arg(FormValues::shown(entryId(entry))));
        }
        return std::nullopt;
    }
    VL::DesignComponent component = readCommon(entry, QSize(0, 0), warnings);
    component.type = type;
    const QString name = QStringLiteral("name");
    if (component.properties.value(name).toString().isEmpty() && !component.id.isEmpty())
        component.properties.insert(name, component.id);
    const auto place = pagePlaces().constFind(component.id);
    if (place != pagePlaces().cend() && !component.id.isEmpty()) {
        component.properties.insert(parentTabWidget, place->tabWidget);
        component.properties.insert(tabPageIndex, place->page);
    }
    return component;
}

void VuiDocument::completeForBuild(const JsonNode &entry, VL::DesignComponent &component,
                                   FormWarnings &warnings) const
{
    const QString parent = text(entry, "parentId");
    if (!parent.isEmpty())
        component.properties.insert(QStringLiteral("_parentId"), parent);
    const JsonNode *data = m_tree.find(entry, "tabData");
    const auto pages = readPages(entry);
    if (pages && data && data->kind == JsonKind::Object) {
        component.properties.insert(QStringLiteral("tabCount"), pages->count);
        component.properties.insert(QStringLiteral("currentIndex"), pages->currentIndex);
        if (!pages->titles.isEmpty()) {
            component.properties.insert(QStringLiteral("tabTitles"),
                                        pages->titles.join(QLatin1Char(';')));
        }
        if (pages->children.size() > pages->count) {
            warnings.add(m_tree.lineOf(*data),
                         QStringLiteral("选项卡“%1”的组件分在 %2 页上，但只有 %3 页")
                             .arg(FormValues::shown(component.id),
                                  QString::number(pages->children.size()),
                                  QString::number(pages->count)));
        }
    }
    readChildren(entry, component, warnings);
}

// Components inside others, as the clipboard and older files hold them. Their depth is that of
// the JSON text, which is limited.
void VuiDocument::readChildren(const JsonNode &entry, VL::DesignComponent &component,
                               FormWarnings &warnings) const
{
    const JsonNode *list = m_tree.find(entry, "children");
    if (!list || list->kind != JsonKind::Array)
        return;
    for (const JsonMember &member : list->members) {
        if (member.value.kind != JsonKind::Object)
            continue;
        auto child = readEntry(member.value, &warnings);
        if (!child)
            continue;
        completeForBuild(member.value, *child, warnings);
        component.children << *child;
    }
}

QJsonObject VuiDocument::newEntry(const VL::DesignComponent &component, QPoint offset) const
{
    QJsonObject entry = commonEntry(component, offset);
    entry.insert(QStringLiteral("type"), component.type);
    entry.insert(QStringLiteral("locked"), component.locked);
    const QString parent = component.properties.value(parentTabWidget).toString();
    const QVariant page = component.properties.value(tabPageIndex);
    if (!parent.isEmpty())
        entry.insert(QStringLiteral("parentId"), parent);
    if (page.isValid() && page.toInt() < 0) {
        QJsonObject properties = entry.value(QStringLiteral("properties")).toObject();
        properties.remove(tabPageIndex);
        entry.insert(QStringLiteral("properties"), properties);
    }
    return entry;
}

void VuiDocument::propertyWritten(int index, const QString &key, const QVariant &value)
{
    if (key == parentTabWidget) {
        if (value.toString().isEmpty())
            removeEntryValue(index, "parentId");
        else
            setEntryValue(index, "parentId", value.toString());
    } else if (key == tabPageIndex && value.isValid() && value.toInt() < 0) {
        removeProperty(index, tabPageIndex);
    } else if (key == QLatin1String("name")) {
        structureChanged(); // the id of an entry that has none of its own
    }
}

QString VuiDocument::generatedNameBase(const VL::DesignComponent &component) const
{
    return VL::componentDisplayName(component.type);
}
