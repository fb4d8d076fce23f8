// The registry: writing and reading back, kinds of values, deleting.
#include "runtime_test.h"

#include "62_registry.h"

static const std::wstring kTop = L"HKCU\\Software\\VorelDeskTest";
static const std::wstring kKey = kTop + L"\\\u8BBE\u7F6E";

static void writeRaw(const wchar_t *name, DWORD type, const void *data, DWORD size)
{
    HKEY key = NULL;
    CHECK(RegCreateKeyExW(HKEY_CURRENT_USER, kKey.c_str() + 5, 0, NULL, 0, KEY_SET_VALUE, NULL,
                          &key, NULL) == ERROR_SUCCESS);
    CHECK(RegSetValueExW(key, name, 0, type, (const BYTE *)data, size) == ERROR_SUCCESS);
    RegCloseKey(key);
}

static DWORD typeOf(const wchar_t *name)
{
    HKEY key = NULL;
    DWORD type = REG_NONE;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey.c_str() + 5, 0, KEY_QUERY_VALUE, &key) != 0)
        return REG_NONE;
    RegQueryValueExW(key, name, NULL, &type, NULL, NULL);
    RegCloseKey(key);
    return type;
}

static void roundTrip()
{
    const std::wstring longText(70000, L'\u4E2D');
    const struct
    {
        VL_Any value;
        std::wstring text;
        DWORD type;
    } rows[] = {
        {L"", L"", REG_SZ},
        {L"\u4E2D\xD83D\xDE00 %PATH%", L"\u4E2D\xD83D\xDE00 %PATH%", REG_SZ},
        {longText, longText, REG_SZ},
        {0, L"0", REG_DWORD},
        {4294967295LL, L"4294967295", REG_DWORD},
        {4294967296LL, L"4294967296", REG_QWORD},
        {-5, L"-5", REG_QWORD},
        {true, L"1", REG_DWORD},
        {1.5, L"1.5", REG_SZ},
    };
    for (const auto &row : rows) {
        CHECK(VL_RegWrite(kKey, L"\u503C", row.value));
        CHECK_EQ(VL_RegRead(kKey, L"\u503C", L"?"), row.text);
        CHECK_EQ(typeOf(L"\u503C"), row.type);
    }
    CHECK(VL_RegWrite(kKey, L"", VL_Any(L"unnamed")));
    CHECK_EQ(VL_RegRead(L"hkey_current_user/Software/VorelDeskTest/\u8BBE\u7F6E/", L""),
             std::wstring(L"unnamed"));
}

static void foreignValues()
{
    writeRaw(L"multi", REG_MULTI_SZ, L"a\0b\0", 10);
    CHECK_EQ(VL_RegRead(kKey, L"multi"), std::wstring(L"a\nb"));
    writeRaw(L"binary", REG_BINARY, "\x0A\xFF", 2);
    CHECK_EQ(VL_RegRead(kKey, L"binary"), std::wstring(L"0A FF"));
    writeRaw(L"unended", REG_SZ, L"abc", 6);
    CHECK_EQ(VL_RegRead(kKey, L"unended"), std::wstring(L"abc"));
    writeRaw(L"short", REG_DWORD, "\x01", 1);
    CHECK_EQ(VL_RegRead(kKey, L"short"), std::wstring(L"01"));

    const std::wstring path = L"%VL_TEST%\\x";
    SetEnvironmentVariableW(L"VL_TEST", L"D:");
    writeRaw(L"path", REG_EXPAND_SZ, path.c_str(), (DWORD)(path.size() + 1) * 2);
    CHECK_EQ(VL_RegRead(kKey, L"path"), std::wstring(L"D:\\x"));
    CHECK_EQ(VL_RegReadEx(kKey, L"path", L"", 0, false), path);
    CHECK(VL_RegWriteExStr(kKey, L"path", L"%VL_TEST%"));
    CHECK_EQ(VL_RegRead(kKey, L"path"), std::wstring(L"D:"));
}

static void missing()
{
    CHECK_EQ(VL_RegRead(kKey, L"no such", L"d"), std::wstring(L"d"));
    CHECK_EQ(VL_RegRead(L"HKXX\\a", L"b", L"d"), std::wstring(L"d"));
    CHECK_EQ(VL_RegRead(L"", L"", L"d"), std::wstring(L"d"));
    CHECK(VL_RegKeyExists(L"HKCU"));
    CHECK(VL_RegKeyExists(kKey));
    CHECK(!VL_RegKeyExists(kKey + L"\\none"));
    CHECK(!VL_RegWrite(L"Software\\X", L"a", VL_Any(1)));
}

static void deleting()
{
    CHECK(VL_RegDelete(kKey, L"path"));
    CHECK(!VL_RegDelete(kKey, L"path"));
    CHECK(!VL_RegDelete(kTop));
    CHECK(VL_RegKeyExists(kKey));
    CHECK(!VL_RegDelete(L"HKCU\\Software", L"", true));
    CHECK(!VL_RegDelete(L"HKCU", L"", true));
    CHECK(VL_RegDelete(kTop, L"", true));
    CHECK(!VL_RegKeyExists(kTop));
}

static void views()
{
    const std::wstring key = L"HKLM\\Software\\VorelDeskTest\\a";
    if (!VL_RegWriteExStr(key, L"v", L"64", 1) || !VL_RegWriteExInt(key, L"v", 32, 2))
        return; // no right to write there
    CHECK_EQ(VL_RegReadEx(key, L"v", L"", 1), std::wstring(L"64"));
    CHECK_EQ(VL_RegReadEx(key, L"v", L"", 2), std::wstring(L"32"));
    CHECK(VL_RegDelete(L"HKLM\\Software\\VorelDeskTest", L"", true, 2));
    CHECK(!VL_RegKeyExists(key, 2));
    CHECK(VL_RegKeyExists(key, 1));
    CHECK(VL_RegDelete(L"HKLM\\Software\\VorelDeskTest", L"", true, 1));
}

void runTests()
{
    roundTrip();
    foreignValues();
    missing();
    deleting();
    views();
}
