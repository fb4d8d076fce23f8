// Reading JSON into a VL_Any, JSON files, and values by path.
#include "59_json.h"

namespace vl_json {
namespace {

const int kMostDepth = 512;

class Reader
{
public:
    explicit Reader(const std::wstring &text) : m_text(text)
    {
        if (!text.empty() && text[0] == 0xFEFF)
            m_at = 1;
    }

    bool whole(VL_Any &value)
    {
        skipBlanks();
        if (!readValue(value, 0))
            return false;
        skipBlanks();
        return m_at == m_text.size();
    }

    std::wstring place() const
    {
        size_t line = 1;
        size_t column = 1;
        for (size_t i = 0; i < m_at && i < m_text.size(); ++i) {
            column = m_text[i] == L'\n' ? 1 : column + 1;
            line += m_text[i] == L'\n' ? 1 : 0;
        }
        return L"\u7B2C " + std::to_wstring(line) + L" \u884C\u7B2C " + std::to_wstring(column) +
               L" \u5217\uFF1AJSON \u683C\u5F0F\u9519\u8BEF";
    }

private:
    wchar_t peek() const { return m_at < m_text.size() ? m_text[m_at] : L'\0'; }

    bool take(wchar_t c)
    {
        if (peek() != c || m_at >= m_text.size())
            return false;
        ++m_at;
        return true;
    }

    void skipBlanks()
    {
        while (m_at < m_text.size() && (m_text[m_at] == L' ' || m_text[m_at] == L'\t' ||
                                        m_text[m_at] == L'\n' || m_text[m_at] == L'\r'))
            ++m_at;
    }

    bool takeWord(const wchar_t *word, size_t length)
    {
        if (m_text.compare(m_at, length, word) != 0)
            return false;
        m_at += length;
        return true;
    }

    bool readValue(VL_Any &value, int depth)
    {
        switch (peek()) {
        case L'{':
            return depth < kMostDepth && readObject(value, depth);
        case L'[':
            return depth < kMostDepth && readArray(value, depth);
        case L'"': {
            std::wstring text;
            if (!readText(text))
                return false;
            value = VL_Any(std::move(text));
            return true;
        }
        case L't':
            value = VL_Any(true);
            return takeWord(L"true", 4);
        case L'f':
            value = VL_Any(false);
            return takeWord(L"false", 5);
        case L'n':
            value = VL_Any();
            return takeWord(L"null", 4);
        default:
            return readNumber(value);
        }
    }

    bool readObject(VL_Any &value, int depth)
    {
        ++m_at;
        value = VL_NewDictAny();
        skipBlanks();
        if (take(L'}'))
            return true;
        do {
            std::wstring key;
            skipBlanks();
            if (!readText(key))
                return false;
            skipBlanks();
            if (!take(L':'))
                return false;
            skipBlanks();
            if (!readValue((*value.mapPtr)[key], depth + 1))
                return false;
            skipBlanks();
        } while (take(L','));
        return take(L'}');
    }

    bool readArray(VL_Any &value, int depth)
    {
        ++m_at;
        VL_Array items;
        skipBlanks();
        if (!take(L']')) {
            do {
                skipBlanks();
                items.push_back(VL_Any());
                if (!readValue(items.back(), depth + 1))
                    return false;
                skipBlanks();
            } while (take(L','));
            if (!take(L']'))
                return false;
        }
        value = VL_Any(std::move(items));
        return true;
    }

    bool readText(std::wstring &text)
    {
        if (!take(L'"'))
            return false;
        for (;;) {
            const size_t plain = m_at;
            while (m_at < m_text.size() && m_text[m_at] != L'"' && m_text[m_at] != L'\\' &&
                   m_text[m_at] >= 0x20)
                ++m_at;
            text.append(m_text, plain, m_at - plain);
            if (take(L'"'))
                return true;
            if (!take(L'\\') || !readEscape(text))
                return false;
        }
    }

    bool readEscape(std::wstring &text)
    {
        static const wchar_t kNames[] = L"\"\\/bfnrt";
        static const wchar_t kValues[] = L"\"\\/\b\f\n\r\t";
        if (m_at >= m_text.size())
            return false;
        const wchar_t name = m_text[m_at++];
        if (name == L'u')
            return readCode(text);
        for (int i = 0; kNames[i]; ++i) {
            if (kNames[i] == name) {
                text += kValues[i];
                return true;
            }
        }
        --m_at;
        return false;
    }

    // Halves of surrogate pairs are code units of the text as they are.
    bool readCode(std::wstring &text)
    {
        unsigned code = 0;
        for (int i = 0; i < 4; ++i, ++m_at) {
            const wchar_t c = peek();
            if (c >= L'0' && c <= L'9')
                code = code * 16 + (unsigned)(c - L'0');
            else if ((c | 32) >= L'a' && (c | 32) <= L'f')
                code = code * 16 + (unsigned)((c | 32) - L'a' + 10);
            else
                return false;
        }
        text += (wchar_t)code;
        return true;
    }

    bool skipDigits()
    {
        const size_t first = m_at;
        while (peek() >= L'0' && peek() <= L'9')
            ++m_at;
        return m_at > first;
    }

    bool readNumber(VL_Any &value)
    {
        const size_t first = m_at;
        take(L'-');
        if (!take(L'0') && !skipDigits())
            return false;
        bool integer = true;
        if (take(L'.')) {
            integer = false;
            if (!skipDigits())
                return false;
        }
        if (take(L'e') || take(L'E')) {
            integer = false;
            if (!take(L'+'))
                take(L'-');
            if (!skipDigits())
                return false;
        }
        const std::wstring digits = m_text.substr(first, m_at - first);
        bool fits = false;
        const long long number = integer ? VL_ReadInteger(digits, &fits) : 0;
        value = fits ? VL_Any(number) : VL_Any(VL_ReadNumber(digits));
        return true;
    }

    const std::wstring &m_text;
    size_t m_at = 0;
};

// "[12]" at `at`: steps over it.
bool readIndex(const std::wstring &path, size_t &at, long long &index)
{
    const size_t close = path.find(L']', at);
    if (path[at] != L'[' || close == std::wstring::npos)
        return false;
    bool whole = false;
    index = VL_ReadInteger(path.substr(at + 1, close - at - 1), &whole);
    at = close + 1;
    return whole;
}

VL_Any valueAt(VL_Any value, const std::wstring &path)
{
    for (size_t at = 0; at < path.size();) {
        // A key may hold points itself.
        if (value.type == VL_Any::TypeDict && VL_DictHas(value, path.substr(at)))
            return VL_DictGet(value, path.substr(at));
        long long index = 0;
        if (path[at] == L'[') {
            if (!readIndex(path, at, index))
                return VL_Any();
            const VL_Any item = value.type == VL_Any::TypeArray ? value.itemValue(index) : VL_Any();
            value = item;
        } else {
            size_t end = path.find_first_of(L".[", at);
            end = end == std::wstring::npos ? path.size() : end;
            const VL_Any entry = VL_DictGet(value, path.substr(at, end - at));
            value = entry;
            at = end;
        }
        if (at < path.size() && path[at] == L'.')
            ++at;
    }
    return value;
}

} // namespace
} // namespace vl_json

bool VL_ParseJson(const std::wstring &text, VL_Any &value, std::wstring *error)
{
    vl_json::Reader reader(text);
    VL_Any read;
    if (!reader.whole(read)) {
        value = VL_Any();
        if (error)
            *error = reader.place();
        return false;
    }
    if (error)
        error->clear();
    value = std::move(read);
    return true;
}

VL_Any VL_ParseJsonToAny(const std::wstring &text)
{
    VL_Any value;
    VL_ParseJson(text, value);
    return value;
}

VL_Any VL_ReadJsonFileEx(const std::wstring &path)
{
    return VL_ParseJsonToAny(VL_ReadFile(path));
}

bool VL_WriteJsonFileEx(const std::wstring &path, const VL_Any &value, bool pretty)
{
    VL_Any parsed;
    const bool isJson = value.type == VL_Any::TypeString && VL_ParseJson(value.strVal, parsed);
    return VL_WriteFile(path, isJson ? value.strVal : VL_GenerateJsonFromAny(value, pretty));
}

VL_Any VL_JSON_Get(const VL_Any &json, const std::wstring &path)
{
    if (json.type == VL_Any::TypeString)
        return vl_json::valueAt(VL_ParseJsonToAny(json.strVal), path);
    return vl_json::valueAt(json, path);
}

std::wstring VL_JSON_GetString(const VL_Any &json, const std::wstring &path,
                               const std::wstring &fallback)
{
    const VL_Any value = VL_JSON_Get(json, path);
    if (value.type == VL_Any::TypeNone)
        return fallback;
    return value.type == VL_Any::TypeDict || value.type == VL_Any::TypeArray
               ? VL_GenerateJsonFromAny(value)
               : value.toStr();
}

intptr_t VL_JSON_GetInt(const VL_Any &json, const std::wstring &path, intptr_t fallback)
{
    const VL_Any value = VL_JSON_Get(json, path);
    return value.type == VL_Any::TypeNone ? fallback : VL_ToInt(value);
}

double VL_JSON_GetDouble(const VL_Any &json, const std::wstring &path, double fallback)
{
    const VL_Any value = VL_JSON_Get(json, path);
    return value.type == VL_Any::TypeNone ? fallback : VL_ToDouble(value);
}

bool VL_JSON_GetBool(const VL_Any &json, const std::wstring &path, bool fallback)
{
    const VL_Any value = VL_JSON_Get(json, path);
    return value.type == VL_Any::TypeNone ? fallback : VL_ToBool(value);
}

intptr_t VL_JSON_ArrayLength(const VL_Any &json, const std::wstring &path)
{
    const VL_Any value = VL_JSON_Get(json, path);
    return value.type == VL_Any::TypeArray ? (intptr_t)value.arrPtr->size() : VL_DictCount(value);
}

VL_Array VL_JSON_ArrayToList(const VL_Any &json, const std::wstring &path)
{
    const VL_Any value = VL_JSON_Get(json, path);
    return value.type == VL_Any::TypeArray ? *value.arrPtr : VL_Array();
}

VL_Array VL_JSON_GetKeys(const VL_Any &json, const std::wstring &path)
{
    return VL_DictKeys(VL_JSON_Get(json, path));
}

std::wstring VL_JSON_GetType(const VL_Any &json, const std::wstring &path)
{
    switch (VL_JSON_Get(json, path).type) {
    case VL_Any::TypeInt:
        return L"\u6574\u6570";
    case VL_Any::TypeDouble:
        return L"\u5C0F\u6570";
    case VL_Any::TypeString:
        return L"\u6587\u672C";
    case VL_Any::TypeBool:
        return L"\u903B\u8F91";
    case VL_Any::TypeDict:
        return L"\u5B57\u5178";
    case VL_Any::TypeArray:
        return L"\u6570\u7EC4";
    default:
        return std::wstring();
    }
}

bool VL_JSON_SaveFile(const std::wstring &path, const VL_Any &json, bool pretty)
{
    return VL_WriteJsonFileEx(path, json, pretty);
}
