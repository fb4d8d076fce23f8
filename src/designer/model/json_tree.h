// A JSON text as a tree that keeps every byte of what is not changed.
#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QVariant>

#include <string_view>
#include <vector>

enum class JsonKind : unsigned char
{
    Null,
    Bool,
    Number,
    String,
    Array,
    Object,
};

// A stretch of the tree's text.
struct JsonSpan
{
    int at = 0;
    int size = 0;
};

struct JsonMember;

struct JsonNode
{
    JsonKind kind = JsonKind::Null;
    JsonSpan text;   // a scalar's token as written; of a container only the place of its bracket
    JsonSpan inside; // what stands between the brackets of a container without members
    std::vector<JsonMember> members;

    bool isContainer() const { return kind == JsonKind::Array || kind == JsonKind::Object; }
};

// An element of an array or a member of an object with the blanks around it. The text of a
// container is the concatenation of lead, key, colon, value and trail, with commas in between.
struct JsonMember
{
    JsonSpan lead;  // from the bracket or comma to the key or element
    JsonSpan key;   // with its quotes; empty in an array
    JsonSpan colon; // from the key to the value
    JsonSpan trail; // from the value to the comma or bracket
    JsonNode value;
};

enum class JsonFault
{
    None,
    TooLarge,
    TooDeep,
    TooManyValues,
    NotUtf8,
    UnexpectedEnd,
    UnexpectedText,
    BadNumber,
    BadEscape,
    UnclosedString,
    MissingKey,
    MissingColon,
    MissingComma,
    TextAfterEnd,
};

// Where a text stops being JSON; both counts start at 1, columns are counted in bytes.
struct JsonError
{
    JsonFault fault = JsonFault::None;
    int line = 0;
    int column = 0;

    // "第 3 行第 7 列: 缺少冒号"
    QString message() const;
};

// How new text is laid out beside the old one. A null `indent` puts everything in one line.
struct JsonLayout
{
    QByteArray newline = "\n";
    QByteArray unit = "    ";
    QByteArray colon = ": ";
    QByteArray indent = "";
};

// A string with its quotes and escapes.
QByteArray quotedJson(const QString &text);
// The text of `value`, with sorted keys as QJsonDocument writes them.
QByteArray formatJson(const QJsonValue &value, const JsonLayout &layout);

// References to nodes hold until the container that they stand in gains or loses a member.
class JsonTree
{
public:
    static constexpr int maxBytes = 128 * 1024 * 1024;
    static constexpr int maxDepth = 256;
    static constexpr int maxValues = 2'000'000;

    // An empty object.
    JsonTree();
    // False, and the tree is unchanged, when `bytes` is no JSON text or passes a limit.
    [[nodiscard]] bool parse(const QByteArray &bytes, JsonError *error = nullptr);
    // The bytes that were read when nothing has changed since.
    QByteArray toBytes() const;
    bool isModified() const { return m_modified; }
    // The 1-based line of the first byte that is not UTF-8; 0 if there is none.
    int invalidUtf8Line() const { return m_invalidUtf8Line; }
    // The 1-based line of a node of the text that was read; 0 for a newer one. Makes a table of
    // all lines when asked first.
    int lineOf(const JsonNode &node) const;

    JsonNode &root() { return m_root; }
    const JsonNode &root() const { return m_root; }

    // Keys are UTF-8 text. The last member of that name, as it is the one that counts; null if
    // absent or no object.
    const JsonNode *find(const JsonNode &object, std::string_view key) const;
    JsonNode *find(JsonNode &object, std::string_view key);
    // The position of that member in `members`, or -1.
    int indexOf(const JsonNode &object, std::string_view key) const;

    QString key(const JsonMember &member) const;
    // Empty for anything but a string.
    QString string(const JsonNode &node) const;
    // 0 for anything but a number; infinite when too large.
    double number(const JsonNode &node) const;
    bool boolean(const JsonNode &node) const;
    // A whole number that fits is an int, another one a double; invalid for null and for numbers
    // beyond all bounds.
    QVariant variant(const JsonNode &node) const;

    // The blanks ahead of a member in its line; null when it shares the line with what is before.
    QByteArray indentOf(const JsonMember &member) const;
    // Replaces the value of that member or adds it. `indent` is that of the line that `object`
    // opens in. A new key goes to its alphabetical place if the others are sorted, else to the
    // end.
    void setMember(JsonNode &object, const QByteArray &indent, const QString &key,
                   const QJsonValue &value);
    void insertElement(JsonNode &array, const QByteArray &indent, int index,
                       const QJsonValue &value);
    // Removes every member of that name.
    void removeMember(JsonNode &object, const QString &key);
    // Removes the members that are false in `kept`, which has one entry for each.
    void retain(JsonNode &container, const std::vector<bool> &kept);
    // Puts the element `order[i]` at place i; `order` is a permutation of all places.
    void reorder(JsonNode &array, const std::vector<int> &order);

private:
    friend class JsonParser;

    // Holds until the next change.
    std::string_view text(JsonSpan span) const
    {
        return {m_text.constData() + span.at, size_t(span.size)};
    }
    JsonSpan store(const QByteArray &text);
    JsonNode build(const QJsonValue &value, const QByteArray &indent);
    JsonLayout layout(const QByteArray &indent) const;
    bool keyEquals(const JsonMember &member, std::string_view key) const;
    QString decoded(JsonSpan token) const;
    QVariant listVariant(const JsonNode &array) const;
    QVariant mapVariant(const JsonNode &object) const;
    void insert(JsonNode &container, const QByteArray &indent, int index, JsonSpan key,
                const QJsonValue &value);
    int placeFor(const JsonNode &object, const QString &key) const;
    void append(const JsonNode &node, QByteArray &out) const;
    void appendSpan(JsonSpan span, QByteArray &out) const;
    void detectLayout();

    QByteArray m_text; // what was read, then every text that was written since
    int m_sourceSize = 0;
    JsonNode m_root;
    JsonSpan m_prolog; // byte order mark and blanks
    JsonSpan m_epilog;
    JsonLayout m_layout;
    int m_invalidUtf8Line = 0;
    bool m_modified = false;
    mutable std::vector<int> m_lineStarts;
};
