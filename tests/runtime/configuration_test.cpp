// INI files: encodings, what is kept when a file is written, odd names and values.
#include "runtime_test.h"

#include "30_output.h"
#include "39_encodings.h"
#include "40_files.h"
#include "52_configuration.h"

static const std::wstring kFile = L"\u8BBE\u7F6E test.ini";

static void put(const std::string &bytes)
{
    CHECK(VL_SaveFileBytes(kFile, bytes.data(), bytes.size()));
}

static std::string content()
{
    std::string bytes;
    VL_LoadFileBytes(kFile, bytes);
    return bytes;
}

static void reading()
{
    put("top = 0\r\n; [x]\r\n[ Main ]\r\nName = a = b \r\nquoted=\"  x \"\r\nempty=\r\nno value\r\n"
        "=nameless\r\nlast='y'\r\n#k=1\r\n[open\r\n[other] ; note\nname=second\n[MAIN]\nmore=1");
    const struct
    {
        const wchar_t *section;
        const wchar_t *key;
        const wchar_t *value;
    } rows[] = {
        {L"", L"top", L"0"},
        {L"main", L"NAME", L"a = b"},
        {L"Main", L"quoted", L"  x "},
        {L"Main", L"empty", L""},
        {L"Main", L"last", L"y"},
        {L"Main", L"no value", L"?"},
        {L"Main", L"", L"?"},
        {L"Main", L"#k", L"?"},
        {L"other", L"name", L"second"},
        {L"main", L"more", L"1"},
        {L"x", L"Name", L"?"},
        {L"other", L"top", L"?"},
        {L" Main ", L" Name ", L"a = b"},
    };
    for (const auto &row : rows)
        CHECK_EQ(VL_ReadIni(kFile, row.section, row.key, L"?"), std::wstring(row.value));
    CHECK_EQ(VL_ToOutputStr(VL_GetIniSectionList(kFile)), std::wstring(L"[\"Main\", \"other\"]"));
    CHECK_EQ(VL_ToOutputStr(VL_GetIniKeyList(kFile, L"main")),
             std::wstring(L"[\"Name\", \"quoted\", \"empty\", \"last\", \"more\"]"));
    CHECK(VL_IniKeyExists(kFile, L"Main", L"empty"));
    CHECK(!VL_IniKeyExists(kFile, L"Main", L"nameless"));
    CHECK_EQ(VL_ReadIni(L"missing.ini", L"a", L"b", L"d"), std::wstring(L"d"));
    CHECK(VL_GetIniSectionList(L"").empty());
}

// A change touches its own line only.
static void writing()
{
    put("; head\n\n[a]\n  k =  1\n; about x\nx=1\n\n[b]\nk=2");
    CHECK(VL_WriteIni(kFile, L"A", L"K", VL_Any(5)));
    CHECK(VL_WriteIni(kFile, L"a", L"new", VL_Any(L"v")));
    CHECK(VL_WriteIni(kFile, L"b", L"k", VL_Any(L"2")));
    CHECK(VL_WriteIni(kFile, L"b", L"m", VL_Any(true)));
    CHECK(VL_WriteIni(kFile, L"c", L"n", VL_Any(1.5)));
    CHECK(VL_WriteIni(kFile, L"", L"t", VL_Any(L"")));
    CHECK_EQ(content(),
             std::string("; head\nt=\n\n[a]\n  k =  5\n; about x\nx=1\nnew=v\n\n[b]\nk=2\n"
                         "m=\xE7\x9C\x9F\n\n[c]\nn=1.5\n"));
    CHECK(VL_DeleteIniKey(kFile, L"a", L"X"));
    CHECK(!VL_DeleteIniKey(kFile, L"a", L"X"));
    CHECK(VL_DeleteIniSection(kFile, L"B"));
    CHECK(!VL_DeleteIniSection(kFile, L"b"));
    CHECK_EQ(content(),
             std::string("; head\nt=\n\n[a]\n  k =  5\n; about x\nnew=v\n\n[c]\nn=1.5\n"));
    CHECK(VL_DeleteIniSection(kFile, L""));
    CHECK_EQ(content().substr(0, 12), std::string("; head\n\n[a]\n"));
}

static void values()
{
    VL_DeleteFile(kFile);
    const wchar_t *kept[] = {L"",
                             L" x",
                             L"x\t",
                             L"\"",
                             L"\"q\"",
                             L"'",
                             L"''",
                             L"a=b;c#d",
                             L"[x]",
                             L"\u3000\u4E2D",
                             L"\xD83D\xDE00",
                             L"C:\\new\\t",
                             L"\""
                             L"a' "};
    for (const wchar_t *value : kept) {
        CHECK(VL_WriteIni(kFile, L"\u8282", L"\u952E", VL_Any(value)));
        CHECK_EQ(VL_ReadIni(kFile, L"\u8282", L"\u952E", L"?"), std::wstring(value));
    }
    const wchar_t *keys[] = {L"", L" ", L"a=b", L";a", L"#a", L"[a", L"a\nb"};
    for (const wchar_t *key : keys)
        CHECK(!VL_WriteIni(kFile, L"s", key, VL_Any(1)));
    CHECK(!VL_WriteIni(kFile, L"s", L"k", VL_Any(L"a\r\nb")));
    CHECK(!VL_WriteIni(kFile, L"s]", L"k", VL_Any(1)));
    CHECK(!VL_WriteIni(L".", L"s", L"k", VL_Any(1)));
    CHECK(!VL_WriteIni(L"no such folder\\a.ini", L"s", L"k", VL_Any(1)));
}

static void encodings()
{
    const std::wstring chinese = L"[\u8282]\r\n\u952E=\u503C\r\n";
    const intptr_t codePages[] = {65001, 936, 1200, 1201};
    for (const intptr_t encoding : codePages) {
        const std::string mark = VL_ByteOrderMark(encoding);
        put(mark + VL_EncodeText(chinese, encoding));
        CHECK_EQ(VL_ReadIni(kFile, L"\u8282", L"\u952E"), std::wstring(L"\u503C"));
        CHECK(VL_WriteIni(kFile, L"\u8282", L"\u65B0", VL_Any(L"\u6587")));
        CHECK_EQ(content(), mark + VL_EncodeText(chinese + L"\u65B0=\u6587\r\n", encoding));
    }
    put("\xEF\xBB\xBF[a]\nk=\xFF\n");
    CHECK(VL_WriteIni(kFile, L"a", L"m", VL_Any(1)));
    CHECK_EQ(content(), std::string("\xEF\xBB\xBF[a]\nk=\xFF\nm=1\n"));
    // 936 has no such character: the file becomes UTF-8.
    put(VL_EncodeText(chinese, 936));
    CHECK(VL_WriteIni(kFile, L"\u8282", L"\u952E", VL_Any(L"\xD83D\xDE00")));
    CHECK_EQ(content(), VL_EncodeText(L"[\u8282]\r\n\u952E=\xD83D\xDE00\r\n", 65001));
}

static void largeFile()
{
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "[s" + std::to_string(i) + "]\nk=" + std::to_string(i) + "\n";
    put(text);
    CHECK_EQ(VL_GetIniSectionList(kFile).size(), (size_t)20000);
    CHECK(VL_WriteIni(kFile, L"s19999", L"k", VL_Any(L"x")));
    CHECK_EQ(content().substr(text.size() - 20), text.substr(text.size() - 20, 12) + "k=x\n");
    put(std::string(300000, '['));
    CHECK(VL_GetIniSectionList(kFile).empty());
}

void runTests()
{
    reading();
    writing();
    values();
    encodings();
    largeFile();
    VL_DeleteFile(kFile);
}
