#include "designer/model/json_tree.h"

#include "designer/model/json_parser.h"

#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

QString faultText(JsonFault fault)
{
    switch (fault) {
    case JsonFault::None:
        return {};
    case JsonFault::TooLarge:
        return QStringLiteral("文件太大");
    case JsonFault::TooDeep:
        return QStringLiteral("嵌套超过 %1 层").arg(JsonTree::maxDepth);
    case JsonFault::TooManyValues:
        return QStringLiteral("数据超过 %1 项").arg(JsonTree::maxValues);
    case JsonFault::NotUtf8:
        return QStringLiteral("文件不是 UTF-8 编码");
    case JsonFault::UnexpectedEnd:
        return QStringLiteral("文件不完整");
    case JsonFault::UnexpectedText:
        return QStringLiteral("此处应为值");
    case JsonFault::BadNumber:
        return QStringLiteral("数字格式不正确");
    case JsonFault::BadEscape:
        return QStringLiteral("转义序列不正确");
    case JsonFault::UnclosedString:
        return QStringLiteral("字符串没有结束");
    case JsonFault::MissingKey:
        return QStringLiteral("此处应为带引号的键名");
    case JsonFault::MissingColon:
        return QStringLiteral("缺少冒号");
    case JsonFault::MissingComma:
        return QStringLiteral("缺少逗号或右括号");
    case JsonFault::TextAfterEnd:
        return QStringLiteral("结尾之后有多余的内容");
    }
    return {};
}

// The character of a one-letter escape.
QChar escapedCharacter(char letter)
{
    switch (letter) {
    case 'b':
        return QLatin1Char('\b');
    case 'f':
        return QLatin1Char('\f');
    case 'n':
        return QLatin1Char('\n');
    case 'r':
        return QLatin1Char('\r');
    case 't':
        return QLatin1Char('\t');
    default:
        return QLatin1Char(letter);
    }
}

} // namespace

QString JsonError::message() const
{
    return QStringLiteral("第 %1 行第 %2 列: %3").arg(line).arg(column).arg(faultText(fault));
}

JsonTree::JsonTree()
{
    const bool read = parse(QByteArrayLiteral("{\n}\n"));
    Q_ASSERT(read);
    Q_UNUSED(read)
}

bool JsonTree::parse(const QByteArray &bytes, JsonError *error)
{
    JsonParser parser(bytes, 0);
    JsonNode root;
    JsonSpan prolog;
    JsonSpan epilog;
    if (bytes.size() > maxBytes) {
        if (error)
            *error = {JsonFault::TooLarge, 1, 1};
        return false;
    }
    if (!parser.parseDocument(root, prolog, epilog)) {
        if (error)
            *error = parser.error();
        return false;
    }
    m_text = bytes;
    m_sourceSize = bytes.size();
    m_root = std::move(root);
    m_prolog = prolog;
    m_epilog = epilog;
    m_modified = false;
    m_lineStarts.clear();
    const int invalid = firstInvalidUtf8(bytes);
    m_invalidUtf8Line =
        invalid < 0 ? 0 : 1 + int(std::count(bytes.begin(), bytes.begin() + invalid, '\n'));
    detectLayout();
    return true;
}

// New text follows what the outermost object shows of line ends, step and spacing.
void JsonTree::detectLayout()
{
    m_layout = JsonLayout();
    if (m_root.members.empty()) {
        if (text(m_root.inside).find('\n') == std::string_view::npos)
            m_layout.indent = QByteArray();
        return;
    }
    const JsonMember &first = m_root.members.front();
    const std::string_view colon = text(first.colon);
    if (!colon.empty() && colon.find('\n') == std::string_view::npos)
        m_layout.colon = QByteArray(colon.data(), int(colon.size()));
    if (text(first.lead).find("\r\n") != std::string_view::npos)
        m_layout.newline = "\r\n";
    const QByteArray step = indentOf(first);
    if (!step.isEmpty())
        m_layout.unit = step;
}

void JsonTree::appendSpan(JsonSpan span, QByteArray &out) const
{
    out.append(m_text.constData() + span.at, span.size);
}

void JsonTree::append(const JsonNode &node, QByteArray &out) const
{
    if (!node.isContainer()) {
        appendSpan(node.text, out);
        return;
    }
    const bool isObject = node.kind == JsonKind::Object;
    out += isObject ? '{' : '[';
    if (node.members.empty())
        appendSpan(node.inside, out);
    bool first = true;
    for (const JsonMember &member : node.members) {
        if (!first)
            out += ',';
        first = false;
        appendSpan(member.lead, out);
        appendSpan(member.key, out);
        appendSpan(member.colon, out);
        append(member.value, out);
        appendSpan(member.trail, out);
    }
    out += isObject ? '}' : ']';
}

QByteArray JsonTree::toBytes() const
{
    if (!m_modified)
        return m_text;
    QByteArray out;
    out.reserve(m_text.size());
    appendSpan(m_prolog, out);
    append(m_root, out);
    appendSpan(m_epilog, out);
    return out;
}

int JsonTree::lineOf(const JsonNode &node) const
{
    if (node.text.at >= m_sourceSize)
        return 0;
    if (m_lineStarts.empty()) {
        m_lineStarts.push_back(0);
        for (int i = 0; i < m_sourceSize; ++i) {
            if (m_text.at(i) == '\n')
                m_lineStarts.push_back(i + 1);
        }
    }
    const auto after = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), node.text.at);
    return int(after - m_lineStarts.begin());
}

bool JsonTree::keyEquals(const JsonMember &member, std::string_view key) const
{
    const std::string_view token = text(member.key);
    if (token.size() < key.size() + 2)
        return false;
    if (token.substr(1, token.size() - 2) == key)
        return true;
    // An escaped form is longer than what it stands for.
    return token.size() > key.size() + 2 && token.find('\\') != std::string_view::npos &&
           decoded(member.key) == QString::fromUtf8(key.data(), int(key.size()));
}

int JsonTree::indexOf(const JsonNode &object, std::string_view key) const
{
    if (object.kind != JsonKind::Object)
        return -1;
    for (int i = int(object.members.size()) - 1; i >= 0; --i) {
        if (keyEquals(object.members[size_t(i)], key))
            return i;
    }
    return -1;
}

const JsonNode *JsonTree::find(const JsonNode &object, std::string_view key) const
{
    const int index = indexOf(object, key);
    return index < 0 ? nullptr : &object.members[size_t(index)].value;
}

JsonNode *JsonTree::find(JsonNode &object, std::string_view key)
{
    return const_cast<JsonNode *>(std::as_const(*this).find(std::as_const(object), key));
}

QString JsonTree::decoded(JsonSpan token) const
{
    const char *at = m_text.constData() + token.at + 1;
    const char *end = m_text.constData() + token.at + token.size - 1;
    if (std::find(at, end, '\\') == end)
        return QString::fromUtf8(at, int(end - at));
    QString out;
    while (at < end) {
        const char *escape = std::find(at, end, '\\');
        out += QString::fromUtf8(at, int(escape - at));
        if (escape == end)
            break;
        if (escape[1] == 'u') {
            out += QChar(QByteArray(escape + 2, 4).toUShort(nullptr, 16));
            at = escape + 6;
        } else {
            out += escapedCharacter(escape[1]);
            at = escape + 2;
        }
    }
    return out;
}

QString JsonTree::key(const JsonMember &member) const
{
    return member.key.size < 2 ? QString() : decoded(member.key);
}

QString JsonTree::string(const JsonNode &node) const
{
    return node.kind == JsonKind::String ? decoded(node.text) : QString();
}

double JsonTree::number(const JsonNode &node) const
{
    if (node.kind != JsonKind::Number)
        return 0;
    const std::string_view token = text(node.text);
    constexpr size_t shortest = 10; // digits that always fit an int, and so a double
    if (token.size() < shortest && token.find_first_not_of("0123456789") == token.npos) {
        int value = 0;
        for (const char digit : token)
            value = 10 * value + (digit - '0');
        return value;
    }
    bool fits = false;
    const double value = QByteArray(token.data(), int(token.size())).toDouble(&fits);
    if (fits)
        return value;
    // Only numbers too large or too small get here: the form of all was checked.
    const size_t exponent = token.find_first_of("eE");
    if (exponent != token.npos && token.substr(exponent + 1).substr(0, 1) == "-")
        return 0;
    const double infinity = std::numeric_limits<double>::infinity();
    return token.front() == '-' ? -infinity : infinity;
}

bool JsonTree::boolean(const JsonNode &node) const
{
    return node.kind == JsonKind::Bool && text(node.text).front() == 't';
}

QVariant JsonTree::listVariant(const JsonNode &array) const
{
    QVariantList list;
    list.reserve(int(array.members.size()));
    for (const JsonMember &member : array.members)
        list << variant(member.value);
    return list;
}

QVariant JsonTree::mapVariant(const JsonNode &object) const
{
    QVariantMap map;
    for (const JsonMember &member : object.members)
        map.insert(key(member), variant(member.value));
    return map;
}

QVariant JsonTree::variant(const JsonNode &node) const
{
    switch (node.kind) {
    case JsonKind::Null:
        return {};
    case JsonKind::Bool:
        return boolean(node);
    case JsonKind::String:
        return string(node);
    case JsonKind::Array:
        return listVariant(node);
    case JsonKind::Object:
        return mapVariant(node);
    case JsonKind::Number:
        break;
    }
    const double value = number(node);
    if (!std::isfinite(value))
        return {};
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    if (value >= lowest && value <= highest && value == std::floor(value))
        return int(value);
    return value;
}
