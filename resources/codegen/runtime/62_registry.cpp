// The registry.
#include "62_registry.h"

#include <cstring>

namespace vl_registry {
namespace {

struct Root
{
    const wchar_t *name;
    const wchar_t *shortName;
    HKEY key;
};

const Root kRoots[] = {
    {L"HKEY_CURRENT_USER", L"HKCU", HKEY_CURRENT_USER},
    {L"HKEY_LOCAL_MACHINE", L"HKLM", HKEY_LOCAL_MACHINE},
    {L"HKEY_CLASSES_ROOT", L"HKCR", HKEY_CLASSES_ROOT},
    {L"HKEY_USERS", L"HKU", HKEY_USERS},
    {L"HKEY_CURRENT_CONFIG", L"HKCC", HKEY_CURRENT_CONFIG},
};

// A key name taken apart: its root, and the path below it without slashes at its ends.
struct Place
{
    HKEY root;
    std::wstring path;
};

bool findPlace(std::wstring key, Place &place)
{
    for (wchar_t &c : key)
        if (c == L'/')
            c = L'\\';
    if (key.find(L'\0') != std::wstring::npos)
        return false;
    const size_t slash = key.find(L'\\');
    const std::wstring rootName = key.substr(0, slash);
    for (const Root &root : kRoots) {
        if (_wcsicmp(rootName.c_str(), root.name) != 0 &&
            _wcsicmp(rootName.c_str(), root.shortName) != 0)
            continue;
        place.root = root.key;
        const size_t begin = key.find_first_not_of(L'\\', rootName.size());
        place.path = begin == std::wstring::npos ? std::wstring() : key.substr(begin);
        place.path.erase(place.path.find_last_not_of(L'\\') + 1);
        return true;
    }
    return false;
}

REGSAM viewFlag(intptr_t view)
{
    return view == 1 ? KEY_WOW64_64KEY : view == 2 ? KEY_WOW64_32KEY : 0;
}

// An open key; closed at the end of its life.
class Key
{
public:
    Key() : m_key(NULL) {}
    ~Key()
    {
        if (m_key)
            RegCloseKey(m_key);
    }
    Key(const Key &) = delete;
    Key &operator=(const Key &) = delete;

    bool open(const std::wstring &name, REGSAM access)
    {
        Place place;
        return findPlace(name, place) &&
               RegOpenKeyExW(place.root, place.path.c_str(), 0, access, &m_key) == ERROR_SUCCESS;
    }
    bool create(const std::wstring &name, REGSAM access)
    {
        Place place;
        return findPlace(name, place) &&
               RegCreateKeyExW(place.root, place.path.c_str(), 0, NULL, 0, access, NULL, &m_key,
                               NULL) == ERROR_SUCCESS;
    }
    HKEY get() const { return m_key; }

private:
    HKEY m_key;
};

bool readValue(HKEY key, const std::wstring &name, DWORD &type, std::vector<BYTE> &data)
{
    data.resize(256);
    // Another program may make the value longer between two calls.
    for (int attempt = 0; attempt < 8; ++attempt) {
        DWORD size = (DWORD)data.size();
        const LONG status = RegQueryValueExW(key, name.c_str(), NULL, &type, data.data(), &size);
        if (status == ERROR_SUCCESS) {
            data.resize(size);
            return true;
        }
        if (status != ERROR_MORE_DATA)
            return false;
        data.resize((size_t)size + 64);
    }
    return false;
}

std::wstring textOf(const std::vector<BYTE> &data)
{
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    if (!text.empty())
        memcpy(&text[0], data.data(), text.size() * sizeof(wchar_t));
    return text;
}

std::wstring expanded(const std::wstring &text)
{
    const DWORD size = ExpandEnvironmentStringsW(text.c_str(), NULL, 0);
    if (size == 0)
        return text;
    std::wstring result(size, L'\0');
    const DWORD used = ExpandEnvironmentStringsW(text.c_str(), &result[0], size);
    if (used == 0 || used > size)
        return text;
    result.resize(used - 1);
    return result;
}

// Several texts, each ended by a NUL, one in a line.
std::wstring joinedLines(const std::wstring &texts)
{
    std::wstring result;
    for (size_t begin = 0; begin < texts.size() && texts[begin];) {
        const size_t end = texts.find(L'\0', begin);
        if (begin > 0)
            result += L'\n';
        result.append(texts, begin, end == std::wstring::npos ? end : end - begin);
        if (end == std::wstring::npos)
            break;
        begin = end + 1;
    }
    return result;
}

std::wstring hexText(const std::vector<BYTE> &data)
{
    const wchar_t *digits = L"0123456789ABCDEF";
    std::wstring result;
    for (const BYTE byte : data) {
        if (!result.empty())
            result += L' ';
        result += digits[byte >> 4];
        result += digits[byte & 15];
    }
    return result;
}

std::wstring valueText(DWORD type, const std::vector<BYTE> &data, bool expand)
{
    unsigned long long number = 0;
    if ((type == REG_DWORD && data.size() >= 4) || (type == REG_QWORD && data.size() >= 8)) {
        memcpy(&number, data.data(), type == REG_DWORD ? 4 : 8);
        return VL_FormatInteger((long long)number);
    }
    if (type == REG_MULTI_SZ)
        return joinedLines(textOf(data));
    if (type != REG_SZ && type != REG_EXPAND_SZ)
        return hexText(data);
    const std::wstring stored = textOf(data);
    const std::wstring text = stored.substr(0, stored.find(L'\0'));
    return type == REG_EXPAND_SZ && expand ? expanded(text) : text;
}

// A text with names of environment variables stays of that kind when it is written anew.
DWORD textType(HKEY key, const std::wstring &name)
{
    DWORD type = REG_SZ;
    const LONG status = RegQueryValueExW(key, name.c_str(), NULL, &type, NULL, NULL);
    return status == ERROR_SUCCESS && type == REG_EXPAND_SZ ? REG_EXPAND_SZ : REG_SZ;
}

bool deleteKey(const std::wstring &name, bool recursive, REGSAM view)
{
    Place place;
    if (!findPlace(name, place) || place.path.find(L'\\') == std::wstring::npos)
        return false;
    if (!recursive)
        return RegDeleteKeyExW(place.root, place.path.c_str(), view, 0) == ERROR_SUCCESS;
    Key key;
    if (!key.open(name, KEY_ALL_ACCESS | view) || RegDeleteTreeW(key.get(), NULL) != ERROR_SUCCESS)
        return false;
    return RegDeleteKeyExW(place.root, place.path.c_str(), view, 0) == ERROR_SUCCESS;
}

} // namespace
} // namespace vl_registry

std::wstring VL_RegRead(const std::wstring &key, const std::wstring &name,
                        const std::wstring &fallback)
{
    return VL_RegReadEx(key, name, fallback);
}

std::wstring VL_RegReadEx(const std::wstring &key, const std::wstring &name,
                          const std::wstring &fallback, intptr_t view, bool expand)
{
    vl_registry::Key opened;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
    if (!opened.open(key, KEY_QUERY_VALUE | vl_registry::viewFlag(view)) ||
        !vl_registry::readValue(opened.get(), name, type, data))
        return fallback;
    return vl_registry::valueText(type, data, expand);
}

bool VL_RegWrite(const std::wstring &key, const std::wstring &name, const VL_Any &value)
{
    if (value.type == VL_Any::TypeInt || value.type == VL_Any::TypeBool)
        return VL_RegWriteExInt(key, name, value.toInt());
    return VL_RegWriteExStr(key, name, value.toStr());
}

bool VL_RegWriteExStr(const std::wstring &key, const std::wstring &name, const std::wstring &value,
                      intptr_t view)
{
    vl_registry::Key opened;
    if (value.size() > 0x1FFFFFFF ||
        !opened.create(key, KEY_SET_VALUE | KEY_QUERY_VALUE | vl_registry::viewFlag(view)))
        return false;
    return RegSetValueExW(opened.get(), name.c_str(), 0, vl_registry::textType(opened.get(), name),
                          (const BYTE *)value.c_str(),
                          (DWORD)((value.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS;
}

bool VL_RegWriteExInt(const std::wstring &key, const std::wstring &name, long long value,
                      intptr_t view)
{
    vl_registry::Key opened;
    if (!opened.create(key, KEY_SET_VALUE | vl_registry::viewFlag(view)))
        return false;
    const bool isShort = value >= 0 && value <= UINT32_MAX;
    const DWORD number = (DWORD)value;
    return RegSetValueExW(opened.get(), name.c_str(), 0, isShort ? REG_DWORD : REG_QWORD,
                          isShort ? (const BYTE *)&number : (const BYTE *)&value,
                          isShort ? sizeof number : sizeof value) == ERROR_SUCCESS;
}

bool VL_RegDelete(const std::wstring &key, const std::wstring &name, bool recursive, intptr_t view)
{
    const REGSAM flag = vl_registry::viewFlag(view);
    if (name.empty())
        return vl_registry::deleteKey(key, recursive, flag);
    vl_registry::Key opened;
    return opened.open(key, KEY_SET_VALUE | flag) &&
           RegDeleteValueW(opened.get(), name.c_str()) == ERROR_SUCCESS;
}

bool VL_RegKeyExists(const std::wstring &key, intptr_t view)
{
    vl_registry::Key opened;
    return opened.open(key, KEY_QUERY_VALUE | vl_registry::viewFlag(view));
}
