// Changes to a JsonTree: the text around a change stays as it was.
#include "designer/model/json_parser.h"
#include "designer/model/json_tree.h"

#include <algorithm>

namespace {

// Moves the spans of newly read text to where it stands in the tree's text.
void shift(JsonNode &node, int by)
{
    node.text.at += by;
    node.inside.at += by;
    for (JsonMember &member : node.members) {
        member.lead.at += by;
        member.key.at += by;
        member.colon.at += by;
        member.trail.at += by;
        shift(member.value, by);
    }
}

} // namespace

JsonSpan JsonTree::store(const QByteArray &text)
{
    const JsonSpan span = {m_text.size(), text.size()};
    m_text += text;
    m_modified = true;
    return span;
}

JsonLayout JsonTree::layout(const QByteArray &indent) const
{
    JsonLayout layout = m_layout;
    layout.indent = indent;
    return layout;
}

QByteArray JsonTree::indentOf(const JsonMember &member) const
{
    const std::string_view lead = text(member.lead);
    const size_t newline = lead.rfind('\n');
    if (newline == lead.npos)
        return {};
    // Never null here: a member at the start of its line has the indentation "".
    const std::string_view indent = lead.substr(newline + 1);
    return QByteArray(indent.data(), int(indent.size()));
}

// The nodes of a new value. A value nested too deeply to be read again becomes null.
JsonNode JsonTree::build(const QJsonValue &value, const QByteArray &indent)
{
    const QByteArray bytes = formatJson(value, layout(indent));
    JsonNode node;
    if (!JsonParser(bytes, 0).parseFragment(node)) {
        node = JsonNode();
        node.text = store(QByteArrayLiteral("null"));
        return node;
    }
    shift(node, store(bytes).at);
    return node;
}

int JsonTree::placeFor(const JsonNode &object, const QString &key) const
{
    const int count = int(object.members.size());
    int place = count;
    QString previous;
    for (int i = 0; i < count; ++i) {
        const QString current = this->key(object.members[size_t(i)]);
        if (current < previous)
            return count;
        if (place == count && key < current)
            place = i;
        previous = current;
    }
    return place;
}

void JsonTree::insert(JsonNode &container, const QByteArray &indent, int index, JsonSpan key,
                      const QJsonValue &value)
{
    JsonMember member;
    member.key = key;
    if (key.size > 0)
        member.colon = store(m_layout.colon);
    std::vector<JsonMember> &members = container.members;
    if (members.empty()) {
        const JsonLayout outer = layout(m_layout.indent.isNull() ? QByteArray() : indent);
        const bool inLine = outer.indent.isNull();
        const QByteArray inner = inLine ? QByteArray() : outer.indent + outer.unit;
        member.value = build(value, inner);
        member.lead = store(inLine ? QByteArray() : outer.newline + inner);
        member.trail = store(inLine ? QByteArray() : outer.newline + outer.indent);
        members.push_back(std::move(member));
        return;
    }
    const int last = int(members.size()) - 1;
    member.value = build(value, indentOf(members[size_t(std::min(index, last))]));
    if (index > last) {
        // The blanks ahead of the closing bracket stay there.
        member.lead = members[size_t(last)].lead;
        member.trail = members[size_t(last)].trail;
        members[size_t(last)].trail = last > 0 ? members[size_t(last - 1)].trail : JsonSpan();
        // In one line the first member may lean on the bracket while the others stand apart.
        if (last == 0 && indentOf(members[0]).isNull() && m_layout.colon.endsWith(' '))
            member.lead = store(QByteArrayLiteral(" "));
    } else {
        member.lead = members[size_t(index)].lead;
        member.trail = index < last ? members[size_t(index)].trail : JsonSpan();
        if (index == 0 && last > 0)
            members[0].lead = members[1].lead;
    }
    members.insert(members.begin() + index, std::move(member));
}

void JsonTree::setMember(JsonNode &object, const QByteArray &indent, const QString &key,
                         const QJsonValue &value)
{
    Q_ASSERT(object.kind == JsonKind::Object);
    const int index = indexOf(object, key.toStdString());
    if (index >= 0) {
        JsonMember &member = object.members[size_t(index)];
        member.value = build(value, indentOf(member));
        return;
    }
    const int place = placeFor(object, key);
    insert(object, indent, place, store(quotedJson(key)), value);
}

void JsonTree::insertElement(JsonNode &array, const QByteArray &indent, int index,
                             const QJsonValue &value)
{
    Q_ASSERT(array.kind == JsonKind::Array);
    insert(array, indent, qBound(0, index, int(array.members.size())), JsonSpan(), value);
}

void JsonTree::removeMember(JsonNode &object, const QString &key)
{
    const std::string utf8 = key.toStdString();
    std::vector<bool> kept;
    kept.reserve(object.members.size());
    for (const JsonMember &member : object.members)
        kept.push_back(!keyEquals(member, utf8));
    retain(object, kept);
}

void JsonTree::retain(JsonNode &container, const std::vector<bool> &kept)
{
    std::vector<JsonMember> &members = container.members;
    Q_ASSERT(kept.size() == members.size());
    if (std::find(kept.begin(), kept.end(), false) == kept.end())
        return;
    m_modified = true;
    const JsonSpan lead = members.front().lead;
    const JsonSpan trail = members.back().trail;
    size_t count = 0;
    for (size_t i = 0; i < members.size(); ++i) {
        if (!kept[i])
            continue;
        if (count != i)
            members[count] = std::move(members[i]);
        ++count;
    }
    members.erase(members.begin() + std::ptrdiff_t(count), members.end());
    if (members.empty()) {
        container.inside = trail;
        return;
    }
    members.front().lead = lead;
    members.back().trail = trail;
}

void JsonTree::reorder(JsonNode &array, const std::vector<int> &order)
{
    Q_ASSERT(order.size() == array.members.size());
    if (std::is_sorted(order.begin(), order.end()))
        return;
    std::vector<JsonNode> values;
    values.reserve(order.size());
    for (const int from : order)
        values.push_back(std::move(array.members[size_t(from)].value));
    for (size_t i = 0; i < values.size(); ++i)
        array.members[i].value = std::move(values[i]);
    m_modified = true;
}
