// Changes to a form document.
#include "designer/model/form_document.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QVector>

#include <functional>

namespace {

const char propertyBag[] = "properties";
const char handlerBag[] = "eventHandlers";

} // namespace

void FormDocument::setRootValue(const char *key, const QJsonValue &value)
{
    const JsonNode *present = m_tree.find(m_tree.root(), key);
    if (present && FormValues::encoded(m_tree.variant(*present)) == value)
        return;
    m_tree.setMember(m_tree.root(), "", QString::fromLatin1(key), value);
}

void FormDocument::setEntryValue(int index, const char *key, const QJsonValue &value)
{
    JsonMember *member = entry(index);
    if (!member)
        return;
    const JsonNode *present = m_tree.find(std::as_const(member->value), key);
    if (present && FormValues::encoded(m_tree.variant(*present)) == value)
        return;
    m_tree.setMember(member->value, m_tree.indentOf(*member), QString::fromLatin1(key), value);
    entryValueChanged(key);
}

void FormDocument::removeEntryValue(int index, const char *key)
{
    if (JsonMember *member = entry(index))
        m_tree.removeMember(member->value, QString::fromLatin1(key));
}

void FormDocument::setBagValue(int index, const char *bag, const QString &key,
                               const QJsonValue &value)
{
    JsonMember *member = entry(index);
    if (!member)
        return;
    const int place = m_tree.indexOf(member->value, bag);
    if (place < 0 || member->value.members[size_t(place)].value.kind != JsonKind::Object) {
        setEntryValue(index, bag, QJsonObject{{key, value}});
        return;
    }
    JsonMember &holder = member->value.members[size_t(place)];
    const JsonNode *present = m_tree.find(std::as_const(holder.value), key.toStdString());
    if (!present || FormValues::encoded(m_tree.variant(*present)) != value)
        m_tree.setMember(holder.value, m_tree.indentOf(holder), key, value);
}

void FormDocument::removeBagValue(int index, const char *bag, const QString &key)
{
    JsonMember *member = entry(index);
    JsonNode *holder = member ? m_tree.find(member->value, bag) : nullptr;
    if (holder && holder->kind == JsonKind::Object)
        m_tree.removeMember(*holder, key);
}

void FormDocument::setProperty(int index, const QString &key, const QVariant &value)
{
    if (!entry(index))
        return;
    if (isStoredProperty(key))
        setBagValue(index, propertyBag, key, FormValues::encoded(value));
    propertyWritten(index, key, value);
}

void FormDocument::removeProperty(int index, const QString &key)
{
    removeBagValue(index, propertyBag, key);
    propertyWritten(index, key, QVariant());
}

void FormDocument::setEventHandler(int index, const QString &event, const QString &handler)
{
    if (handler.isEmpty())
        removeBagValue(index, handlerBag, event);
    else
        setBagValue(index, handlerBag, event, handler);
}

void FormDocument::setGeometry(int index, const QRect &geometry)
{
    const auto old = component(index);
    if (!old)
        return;
    const QPoint offset = presentOffset();
    VL::DesignComponent fresh = *old;
    fresh.x = geometry.x();
    fresh.y = geometry.y();
    fresh.width = geometry.width();
    fresh.height = geometry.height();
    updateEntry(index, *old, offset, fresh, offset);
}

void FormDocument::setLocked(int index, bool locked)
{
    const auto old = component(index);
    if (old && old->locked != locked)
        setEntryValue(index, "locked", locked);
}

int FormDocument::insert(int index, const VL::DesignComponent &component)
{
    index = qBound(0, index, entryCount());
    if (!entries())
        setRootValue("components", QJsonArray());
    const int place = m_tree.indexOf(m_tree.root(), "components");
    JsonMember &list = m_tree.root().members[size_t(place)];
    const QJsonObject fresh = newEntry(component, presentOffset());
    m_tree.insertElement(list.value, m_tree.indentOf(list), index, fresh);
    structureChanged();
    return index;
}

void FormDocument::remove(int index)
{
    const int count = entryCount();
    if (index < 0 || index >= count)
        return;
    std::vector<bool> kept(size_t(count), true);
    kept[size_t(index)] = false;
    m_tree.retain(*m_tree.find(m_tree.root(), "components"), kept);
    structureChanged();
}

// Which component of a new list is which entry.
struct FormDocument::Matching
{
    QVector<std::optional<VL::DesignComponent>> old; // of each entry
    QVector<int> entries;                            // of each component; -1 for a new one
    QSet<int> taken;

    void matchBy(const QList<VL::DesignComponent> &components,
                 const std::function<QString(const VL::DesignComponent &)> &mark);
};

void FormDocument::Matching::matchBy(
    const QList<VL::DesignComponent> &components,
    const std::function<QString(const VL::DesignComponent &)> &mark)
{
    const auto full = [&mark](const VL::DesignComponent &component) {
        const QString text = mark(component);
        return text.isEmpty() ? text : QString::number(component.type) + QLatin1Char(' ') + text;
    };
    QHash<QString, QVector<int>> places;
    for (int i = old.size() - 1; i >= 0; --i) {
        if (old[i] && !taken.contains(i))
            places[full(*old[i])].append(i);
    }
    places.remove(QString());
    for (int i = 0; i < components.size(); ++i) {
        const auto found = places.find(full(components[i]));
        if (entries[i] >= 0 || found == places.end() || found->isEmpty())
            continue;
        entries[i] = found->takeLast();
        taken.insert(entries[i]);
    }
}

void FormDocument::update(const QList<VL::DesignComponent> &components)
{
    Matching matching;
    QList<VL::DesignComponent> oldList;
    for (int i = 0; i < entryCount(); ++i) {
        matching.old.append(component(i));
        if (matching.old.last())
            oldList << *matching.old.last();
    }
    matching.entries.fill(-1, components.size());
    matching.matchBy(components, [](const VL::DesignComponent &c) { return c.id; });
    matching.matchBy(components, [](const VL::DesignComponent &c) { return c.originalName; });
    // Last those that only their name or nothing at all tells apart.
    matching.matchBy(components, [](const VL::DesignComponent &c) {
        return c.id.isEmpty() && c.name().isEmpty() ? QStringLiteral("-") : c.name();
    });

    const QPoint oldOffset = childOffset(oldList);
    const QPoint offset = childOffset(components);
    for (int i = 0; i < components.size(); ++i) {
        const int place = matching.entries[i];
        if (place >= 0)
            updateEntry(place, *matching.old[place], oldOffset, components[i], offset);
    }
    if (!entries() && !components.isEmpty())
        setRootValue("components", QJsonArray());
    const int place = m_tree.indexOf(m_tree.root(), "components");
    for (int i = 0; i < components.size(); ++i) {
        if (matching.entries[i] >= 0)
            continue;
        JsonMember &list = m_tree.root().members[size_t(place)];
        matching.entries[i] = int(list.value.members.size());
        m_tree.insertElement(list.value, m_tree.indentOf(list), matching.entries[i],
                             newEntry(components[i], offset));
    }
    arrange(matching);
    structureChanged();
}

// Drops the entries that nothing stands for any more and brings the others into order.
void FormDocument::arrange(const Matching &matching)
{
    if (!entries())
        return;
    std::vector<bool> kept(size_t(entryCount()), true);
    for (int i = 0; i < matching.old.size(); ++i)
        kept[size_t(i)] = !matching.old[i] || matching.taken.contains(i);
    std::vector<int> places(kept.size()); // after the removal
    int count = 0;
    for (size_t i = 0; i < kept.size(); ++i)
        places[i] = kept[i] ? count++ : -1;
    std::vector<int> order;
    int next = 0;
    for (size_t i = 0; i < kept.size(); ++i) {
        const bool stays = int(i) < matching.old.size() && !matching.old[int(i)];
        if (kept[i])
            order.push_back(places[stays ? i : size_t(matching.entries[next++])]);
    }
    JsonNode &list = *m_tree.find(m_tree.root(), "components");
    m_tree.retain(list, kept);
    m_tree.reorder(list, order);
}

void FormDocument::updateEntry(int index, const VL::DesignComponent &old, QPoint oldOffset,
                               const VL::DesignComponent &fresh, QPoint offset)
{
    if (old.type == VL::Window) {
        oldOffset = QPoint();
        offset = QPoint();
    }
    const auto set = [&](const char *key, int was, int is) {
        if (was != is)
            setEntryValue(index, key, is);
    };
    set("x", old.x - oldOffset.x(), fresh.x - offset.x());
    set("y", old.y - oldOffset.y(), fresh.y - offset.y());
    set("width", old.width, fresh.width);
    set("height", old.height, fresh.height);
    if (fresh.id != old.id)
        setEntryValue(index, "id", fresh.id);
    if (fresh.originalName != old.originalName)
        setEntryValue(index, "originalName", fresh.originalName);
    if (fresh.locked != old.locked)
        setEntryValue(index, "locked", fresh.locked);
    updateProperties(index, old, fresh);
    updateHandlers(index, old, fresh);
}

void FormDocument::updateProperties(int index, const VL::DesignComponent &old,
                                    const VL::DesignComponent &fresh)
{
    for (auto it = fresh.properties.begin(); it != fresh.properties.end(); ++it) {
        const auto was = old.properties.constFind(it.key());
        const bool same = was != old.properties.cend() &&
                          FormValues::encoded(was.value()) == FormValues::encoded(it.value());
        if (!same)
            setProperty(index, it.key(), it.value());
    }
    for (auto it = old.properties.begin(); it != old.properties.end(); ++it) {
        if (!fresh.properties.contains(it.key()))
            removeProperty(index, it.key());
    }
}

void FormDocument::updateHandlers(int index, const VL::DesignComponent &old,
                                  const VL::DesignComponent &fresh)
{
    for (auto it = fresh.eventHandlers.begin(); it != fresh.eventHandlers.end(); ++it) {
        const auto was = old.eventHandlers.constFind(it.key());
        if (was == old.eventHandlers.cend() || was.value() != it.value())
            setBagValue(index, handlerBag, it.key(), it.value());
    }
    for (auto it = old.eventHandlers.begin(); it != old.eventHandlers.end(); ++it) {
        if (!fresh.eventHandlers.contains(it.key()))
            removeBagValue(index, handlerBag, it.key());
    }
}
