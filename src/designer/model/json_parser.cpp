#include "designer/model/json_parser.h"

#include <algorithm>
#include <cctype>
#include <cstring>

JsonParser::JsonParser(const QByteArray &bytes, int start)
    : m_bytes(bytes.constData()), m_size(bytes.size()), m_at(start)
{}

bool JsonParser::fail(JsonFault fault)
{
    if (m_fault == JsonFault::None)
        m_fault = fault;
    return false;
}

JsonError JsonParser::error() const
{
    JsonError error;
    error.fault = m_fault;
    const int end = std::min(m_at, m_size);
    error.line = 1 + int(std::count(m_bytes, m_bytes + end, '\n'));
    int lineStart = end;
    while (lineStart > 0 && m_bytes[lineStart - 1] != '\n')
        --lineStart;
    error.column = 1 + end - lineStart;
    return error;
}

JsonSpan JsonParser::blanks()
{
    const int start = m_at;
    while (!atEnd() && (m_bytes[m_at] == ' ' || m_bytes[m_at] == '\n' || m_bytes[m_at] == '\r' ||
                        m_bytes[m_at] == '\t'))
        ++m_at;
    return since(start);
}

bool JsonParser::parseDocument(JsonNode &root, JsonSpan &prolog, JsonSpan &epilog)
{
    const int start = m_at;
    if (m_size - m_at >= 2 && (std::memcmp(m_bytes + m_at, "\xff\xfe", 2) == 0 ||
                               std::memcmp(m_bytes + m_at, "\xfe\xff", 2) == 0))
        return fail(JsonFault::NotUtf8);
    if (m_size - m_at >= 3 && std::memcmp(m_bytes + m_at, "\xef\xbb\xbf", 3) == 0)
        m_at += 3;
    blanks();
    prolog = since(start);
    if (!parseValue(root, 1))
        return false;
    epilog = blanks();
    return atEnd() || fail(JsonFault::TextAfterEnd);
}

bool JsonParser::parseFragment(JsonNode &node)
{
    // What is written stands a few levels down in its document, which must stay readable.
    constexpr int levelOfFragments = 8;
    return parseValue(node, levelOfFragments) && (atEnd() || fail(JsonFault::TextAfterEnd));
}

bool JsonParser::parseValue(JsonNode &node, int depth)
{
    if (++m_values > JsonTree::maxValues)
        return fail(JsonFault::TooManyValues);
    if (atEnd())
        return fail(JsonFault::UnexpectedEnd);
    switch (peek()) {
    case '{':
    case '[':
        return depth <= JsonTree::maxDepth ? parseContainer(node, depth) : fail(JsonFault::TooDeep);
    case '"':
        node.kind = JsonKind::String;
        return parseString(node.text);
    case 't':
        return parseWord(node, "true", JsonKind::Bool);
    case 'f':
        return parseWord(node, "false", JsonKind::Bool);
    case 'n':
        return parseWord(node, "null", JsonKind::Null);
    default:
        return parseNumber(node);
    }
}

bool JsonParser::parseWord(JsonNode &node, const char *word, JsonKind kind)
{
    const int length = int(std::strlen(word));
    if (m_size - m_at < length || std::memcmp(m_bytes + m_at, word, size_t(length)) != 0)
        return fail(JsonFault::UnexpectedText);
    node.kind = kind;
    node.text = {m_at, length};
    m_at += length;
    return true;
}

bool JsonParser::parseContainer(JsonNode &node, int depth)
{
    const bool inObject = peek() == '{';
    const char close = inObject ? '}' : ']';
    node.kind = inObject ? JsonKind::Object : JsonKind::Array;
    node.text = {m_at, 0};
    ++m_at;
    JsonSpan lead = blanks();
    if (peek() == close) {
        node.inside = lead;
        ++m_at;
        return true;
    }
    while (true) {
        node.members.emplace_back();
        node.members.back().lead = lead;
        if (!parseMember(node.members.back(), inObject, depth))
            return false;
        const char next = peek();
        if (next != ',' && next != close)
            return fail(atEnd() ? JsonFault::UnexpectedEnd : JsonFault::MissingComma);
        ++m_at;
        if (next == close)
            break;
        lead = blanks();
    }
    return true;
}

bool JsonParser::parseMember(JsonMember &member, bool inObject, int depth)
{
    if (inObject && !parseKey(member))
        return false;
    if (!parseValue(member.value, depth + 1))
        return false;
    member.trail = blanks();
    return true;
}

bool JsonParser::parseKey(JsonMember &member)
{
    if (peek() != '"')
        return fail(atEnd() ? JsonFault::UnexpectedEnd : JsonFault::MissingKey);
    if (!parseString(member.key))
        return false;
    const int start = m_at;
    blanks();
    if (peek() != ':')
        return fail(atEnd() ? JsonFault::UnexpectedEnd : JsonFault::MissingColon);
    ++m_at;
    blanks();
    member.colon = since(start);
    return true;
}

// Control characters are let through, as other readers of these files do.
bool JsonParser::parseString(JsonSpan &token)
{
    const int start = m_at;
    ++m_at;
    while (!atEnd()) {
        const char c = m_bytes[m_at];
        if (c == '"') {
            ++m_at;
            token = since(start);
            return true;
        }
        if (c == '\\') {
            if (!parseEscape())
                return false;
        } else {
            ++m_at;
        }
    }
    // The place where the string opens says more than the end of the file.
    m_at = start;
    return fail(JsonFault::UnclosedString);
}

bool JsonParser::parseEscape()
{
    const int start = m_at;
    ++m_at;
    const char c = peek();
    if (!atEnd() && std::strchr("\"\\/bfnrt", c) && c != '\0') {
        ++m_at;
        return true;
    }
    bool good = c == 'u' && m_size - m_at > 4;
    for (int i = 1; good && i <= 4; ++i)
        good = std::isxdigit(static_cast<unsigned char>(m_bytes[m_at + i])) != 0;
    if (good) {
        m_at += 5;
        return true;
    }
    m_at = start;
    return fail(JsonFault::BadEscape);
}

bool JsonParser::digits()
{
    const int start = m_at;
    while (!atEnd() && m_bytes[m_at] >= '0' && m_bytes[m_at] <= '9')
        ++m_at;
    return m_at > start;
}

// number: '-'? digits ('.' digits)? ([eE] [+-]? digits)?
bool JsonParser::parseNumber(JsonNode &node)
{
    const int start = m_at;
    if (peek() == '-')
        ++m_at;
    const int first = m_at;
    if (!digits()) {
        m_at = start;
        return fail(JsonFault::UnexpectedText);
    }
    bool good = m_bytes[first] != '0' || m_at - first == 1;
    if (peek() == '.') {
        ++m_at;
        good = digits() && good;
    }
    if (peek() == 'e' || peek() == 'E') {
        ++m_at;
        if (peek() == '+' || peek() == '-')
            ++m_at;
        good = digits() && good;
    }
    if (!good) {
        m_at = start;
        return fail(JsonFault::BadNumber);
    }
    node.kind = JsonKind::Number;
    node.text = since(start);
    return true;
}

namespace {

// How many bytes the UTF-8 character at `at` has; 0 if it is none.
int utf8Length(const unsigned char *bytes, int at, int size)
{
    const unsigned char lead = bytes[at];
    const int length = lead < 0x80                   ? 1
                       : lead >= 0xc2 && lead < 0xe0 ? 2
                       : lead >= 0xe0 && lead < 0xf0 ? 3
                       : lead >= 0xf0 && lead < 0xf5 ? 4
                                                     : 0;
    if (length == 0 || at + length > size)
        return 0;
    for (int i = 1; i < length; ++i) {
        if ((bytes[at + i] & 0xc0) != 0x80)
            return 0;
    }
    if (length == 1)
        return 1;
    // Overlong forms, surrogates and what lies beyond the last character.
    const unsigned char second = bytes[at + 1];
    const bool bad = (lead == 0xe0 && second < 0xa0) || (lead == 0xed && second >= 0xa0) ||
                     (lead == 0xf0 && second < 0x90) || (lead == 0xf4 && second >= 0x90);
    return bad ? 0 : length;
}

} // namespace

int firstInvalidUtf8(const QByteArray &bytes)
{
    const auto *data = reinterpret_cast<const unsigned char *>(bytes.constData());
    const int size = bytes.size();
    for (int at = 0; at < size;) {
        const int length = utf8Length(data, at, size);
        if (length == 0)
            return at;
        at += length;
    }
    return -1;
}
