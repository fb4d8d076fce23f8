// Reads a JSON text into the spans of a JsonTree.
#pragma once

#include "designer/model/json_tree.h"

class JsonParser
{
public:
    // Reads `bytes` from `start` on; spans count from the beginning of `bytes`.
    JsonParser(const QByteArray &bytes, int start);

    // One whole text with blanks around it.
    bool parseDocument(JsonNode &root, JsonSpan &prolog, JsonSpan &epilog);
    // One value up to the end, without blanks around it, at a lower level of a larger text.
    bool parseFragment(JsonNode &node);
    JsonError error() const;

private:
    bool parseValue(JsonNode &node, int depth);
    bool parseContainer(JsonNode &node, int depth);
    bool parseMember(JsonMember &member, bool inObject, int depth);
    bool parseKey(JsonMember &member);
    bool parseString(JsonSpan &token);
    bool parseEscape();
    bool parseNumber(JsonNode &node);
    bool parseWord(JsonNode &node, const char *word, JsonKind kind);
    bool digits();
    JsonSpan blanks();
    bool fail(JsonFault fault);
    bool atEnd() const { return m_at >= m_size; }
    char peek() const { return atEnd() ? '\0' : m_bytes[m_at]; }
    JsonSpan since(int start) const { return {start, m_at - start}; }

    const char *m_bytes;
    int m_size;
    int m_at;
    int m_values = 0;
    JsonFault m_fault = JsonFault::None;
};

// The offset of the first byte that does not belong to UTF-8 text, or -1.
int firstInvalidUtf8(const QByteArray &bytes);
