// Encoding helpers.
#include "runtime_test.h"

#include "00_prelude.h"

void runTests()
{
    const std::wstring mixed = L"a\u4E2D\xD83D\xDE00";
    CHECK_EQ(VL_WideToUtf8(mixed), std::string("a\xE4\xB8\xAD\xF0\x9F\x98\x80"));
    CHECK_EQ(VL_Utf8ToWide("a\xE4\xB8\xAD\xF0\x9F\x98\x80"), mixed);
    CHECK_EQ(VL_WideToCodePage(L"\u4E2D", 936), std::string("\xD6\xD0"));
    CHECK_EQ(VL_CodePageToWide("\xD6\xD0", 2, 936), std::wstring(L"\u4E2D"));
    CHECK_EQ(VL_Utf8ToWide("\xFF\x41"), std::wstring(L"\xFFFD\x41"));
    CHECK(VL_WideToUtf8(L"").empty());
    CHECK_EQ(VL_WideToUtf8(std::wstring(1000000, L'\u4E2D')).size(), (size_t)3000000);
}
