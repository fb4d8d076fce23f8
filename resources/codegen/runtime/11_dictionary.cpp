// Dictionaries inside a VL_Any, and their JSON text.
#include "11_dictionary.h"

namespace vl_dictionary {
namespace {

const int kMostDepth = 512;

void appendEscaped(std::wstring &out, const std::wstring &text)
{
    static const wchar_t kHex[] = L"0123456789abcdef";
    out += L'"';
    for (const wchar_t c : text) {
        switch (c) {
        case L'"':
            out += L"\\\"";
            break;
        case L'\\':
            out += L"\\\\";
            break;
        case L'\b':
            out += L"\\b";
            break;
        case L'\f':
            out += L"\\f";
            break;
        case L'\n':
            out += L"\\n";
            break;
        case L'\r':
            out += L"\\r";
            break;
        case L'\t':
            out += L"\\t";
            break;
        default:
            if (c < 0x20)
                (((out += L"\\u00") += kHex[c >> 4]) += kHex[c & 15]);
            else
                out += c;
        }
    }
    out += L'"';
}

class JsonWriter
{
public:
    explicit JsonWriter(bool pretty) : m_pretty(pretty) {}

    void value(const VL_Any &v, int depth)
    {
        switch (v.type) {
        case VL_Any::TypeBool:
            m_out += v.boolVal ? L"true" : L"false";
            break;
        case VL_Any::TypeInt:
            m_out += VL_FormatInteger(v.intVal);
            break;
        case VL_Any::TypeDouble:
            m_out += std::isfinite(v.doubleVal) ? VL_FormatDouble(v.doubleVal) : L"null";
            break;
        case VL_Any::TypeString:
            appendEscaped(m_out, v.strVal);
            break;
        case VL_Any::TypeDict:
            dictionary(v, depth);
            break;
        case VL_Any::TypeArray:
            array(*v.arrPtr, depth);
            break;
        case VL_Any::TypeBytes:
            bytes(v);
            break;
        default:
            m_out += L"null";
        }
    }

    std::wstring take() { return std::move(m_out); }

private:
    void dictionary(const VL_Any &v, int depth)
    {
        if (!v.mapPtr || v.mapPtr->empty()) {
            m_out += L"{}";
            return;
        }
        if (depth >= kMostDepth) {
            m_out += L"null";
            return;
        }
        m_out += L'{';
        bool first = true;
        for (const auto &entry : *v.mapPtr) {
            separate(first, depth + 1);
            appendEscaped(m_out, entry.first);
            m_out += m_pretty ? L": " : L":";
            value(entry.second, depth + 1);
        }
        close(L'}', depth);
    }

    void array(const std::vector<VL_Any> &items, int depth)
    {
        if (items.empty()) {
            m_out += L"[]";
            return;
        }
        if (depth >= kMostDepth) {
            m_out += L"null";
            return;
        }
        m_out += L'[';
        bool first = true;
        for (const VL_Any &item : items) {
            separate(first, depth + 1);
            value(item, depth + 1);
        }
        close(L']', depth);
    }

    void bytes(const VL_Any &v)
    {
        const long long count = VL_AnyBytesLength(v);
        m_out += L'[';
        for (long long i = 0; i < count; ++i) {
            if (i > 0)
                m_out += L", ";
            m_out += VL_FormatInteger(VL_AnyBytesItem(v, i).intVal);
        }
        m_out += L']';
    }

    void separate(bool &first, int depth)
    {
        if (!first)
            m_out += m_pretty ? L"," : L", ";
        first = false;
        newLine(depth);
    }

    void close(wchar_t bracket, int depth)
    {
        newLine(depth);
        m_out += bracket;
    }

    void newLine(int depth)
    {
        if (m_pretty)
            m_out.append(1, L'\n').append((size_t)depth * 2, L' ');
    }

    bool m_pretty;
    std::wstring m_out;
};

} // namespace
} // namespace vl_dictionary

VL_Any VL_NewDictAny()
{
    VL_Any dict;
    dict.type = VL_Any::TypeDict;
    dict.boolVal = true;
    dict.mapPtr = std::make_shared<std::map<std::wstring, VL_Any>>();
    return dict;
}

void VL_DictSet(VL_Any &dict, const std::wstring &key, const VL_Any &value)
{
    if (dict.type != VL_Any::TypeDict || !dict.mapPtr) {
        // The value may be a part of what is replaced.
        const VL_Any kept(value);
        dict = VL_NewDictAny();
        (*dict.mapPtr)[key] = kept;
        return;
    }
    (*dict.mapPtr)[key] = value;
}

void VL_DictSet(VL_AnyItem &&dict, const std::wstring &key, const VL_Any &value)
{
    dict[key] = value;
}

VL_Any VL_DictGet(const VL_Any &dict, const std::wstring &key)
{
    return dict.entryValue(key);
}

bool VL_DictHas(const VL_Any &dict, const std::wstring &key)
{
    return dict.type == VL_Any::TypeDict && dict.mapPtr && dict.mapPtr->count(key) > 0;
}

bool VL_DictRemove(VL_Any &dict, const std::wstring &key)
{
    return dict.type == VL_Any::TypeDict && dict.mapPtr && dict.mapPtr->erase(key) > 0;
}

std::vector<VL_Any> VL_DictKeys(const VL_Any &dict)
{
    std::vector<VL_Any> keys;
    if (dict.type == VL_Any::TypeDict && dict.mapPtr) {
        keys.reserve(dict.mapPtr->size());
        for (const auto &entry : *dict.mapPtr)
            keys.push_back(VL_Any(entry.first));
    }
    return keys;
}

intptr_t VL_DictCount(const VL_Any &dict)
{
    return dict.type == VL_Any::TypeDict && dict.mapPtr ? (intptr_t)dict.mapPtr->size() : 0;
}

void VL_DictClear(VL_Any &dict)
{
    if (dict.type == VL_Any::TypeDict && dict.mapPtr)
        dict.mapPtr->clear();
}

std::wstring VL_JsonEscapeW(const std::wstring &text)
{
    std::wstring out;
    out.reserve(text.size() + 2);
    vl_dictionary::appendEscaped(out, text);
    return out;
}

std::wstring VL_GenerateJsonFromAny(const VL_Any &root, bool pretty)
{
    vl_dictionary::JsonWriter writer(pretty);
    writer.value(root, 0);
    std::wstring text = writer.take();
    if (pretty)
        text += L'\n';
    return text;
}
