// Code pages, URL, HTML, hexadecimal, \u escapes and Base64.
#include "runtime_test.h"

#include "39_encodings.h"
#include "58_byte_array_values.h"
#include "80_encoding.h"

namespace {

const std::wstring mixed = L"a\u4E2D\u6587 \xD83D\xDE00";

void testDetection()
{
    struct Row
    {
        std::string bytes;
        bool valid;
    };
    const Row rows[] = {
        {"", true},
        {"abc\x7F", true},
        {"\xE4\xB8\xAD", true},
        {"\xF0\x9F\x98\x80", true},
        {"\xF4\x8F\xBF\xBF", true},
        {"\xE4\xB8", false},         // cut off
        {"\xC0\x80", false},         // overlong
        {"\xE0\x9F\xBF", false},     // overlong
        {"\xED\xA0\x80", false},     // half of a pair
        {"\xF4\x90\x80\x80", false}, // past the last character
        {"\x80", false},
        {"\xD6\xD0", false},
    };
    for (const Row &row : rows)
        CHECK_EQ(VL_IsValidUtf8(row.bytes.data(), row.bytes.size()), row.valid);
    CHECK_EQ(VL_EncodeText(mixed, 99999), VL_EncodeText(mixed, 65001));
    CHECK_EQ(VL_EncodeText(mixed, -1), VL_EncodeText(mixed, 65001));
    for (intptr_t encoding : {65001, 1200, 1201, 54936}) {
        const std::string bytes = VL_EncodeText(mixed, encoding);
        CHECK_EQ(VL_DecodeText(bytes.data(), bytes.size(), encoding), mixed);
    }
}

// A call passes its argument as the UTF-8 form of the text.
std::string passed(const std::wstring &text)
{
    return VL_WideToUtf8(text);
}

void testCodePages()
{
    CHECK_EQ(VL_UTF16ToGBK(passed(L"\u4E2D")), L"\u00D6\u00D0");
    CHECK_EQ(VL_UTF16ToUTF8(passed(L"\u4E2D")), L"\u00E4\u00B8\u00AD");
    CHECK_EQ(VL_GBKToUTF16(passed(VL_UTF16ToGBK(passed(L"a\u4E2D\u6587")))), L"a\u4E2D\u6587");
    CHECK_EQ(VL_GB2312ToUTF16(passed(VL_UTF16ToGB2312(passed(L"a\u4E2D")))), L"a\u4E2D");
    CHECK_EQ(VL_UTF8ToUTF16(passed(VL_UTF16ToUTF8(passed(mixed)))), mixed);
    CHECK_EQ(VL_ASCIIToUTF16(passed(VL_UTF16ToASCII(passed(L"abc 123")))), L"abc 123");
    CHECK_EQ(VL_EncodeToUTF16(passed(VL_UTF16ToEncode(passed(mixed), 1201)), 1201), mixed);
    CHECK_EQ(VL_EncodeToUTF16(passed(VL_UTF16ToGBK(passed(L"\u4E2D\u6587")))), L"\u4E2D\u6587");
    CHECK_EQ(VL_UTF8ToGBK(passed(VL_UTF16ToUTF8(passed(L"\u4E2D")))), L"\u00D6\u00D0");
    CHECK_EQ(VL_GBKToUTF8(passed(L"\u00D6\u00D0")), L"\u00E4\u00B8\u00AD");
    CHECK_EQ(VL_GBKToUTF16(passed(mixed)), mixed);
    CHECK_EQ(VL_UTF8ToUTF16(""), L"");
}

void testUrl()
{
    CHECK_EQ(VL_URLEncode(L"a b&c=\u4E2D-_.~/"), L"a%20b%26c%3D%E4%B8%AD-_.~%2F");
    CHECK_EQ(VL_URLEncode(L"\u4E2D", 936), L"%D6%D0");
    CHECK_EQ(VL_URLDecode(VL_URLEncode(mixed)), mixed);
    CHECK_EQ(VL_URLDecode(L"%D6%D0+%41", 936), L"\u4E2D A");
    CHECK_EQ(VL_URLDecode(L"100% %4 %zz %"), L"100% %4 %zz %");
    CHECK_EQ(VL_URLDecode(L"\u4E2D%e6%96%87"), L"\u4E2D\u6587");
}

void testHtml()
{
    CHECK_EQ(VL_HTMLEncode(L"<a href=\"x\">'&'</a>"),
             L"&lt;a href=&quot;x&quot;&gt;&#39;&amp;&#39;&lt;/a&gt;");
    CHECK_EQ(VL_HTMLDecode(VL_HTMLEncode(L"<\u4E2D> & \"'")), L"<\u4E2D> & \"'");
    CHECK_EQ(VL_HTMLDecode(L"&#20013;&#x4E2D;&#128512;&nbsp;"), L"\u4E2D\u4E2D\xD83D\xDE00\u00A0");
    CHECK_EQ(VL_HTMLDecode(L"&amp;lt;"), L"&lt;");
    CHECK_EQ(VL_HTMLDecode(L"a & b; &unknown; &#; &#x; &#xZ; &&lt; &lt"),
             L"a & b; &unknown; &#; &#x; &#xZ; &< &lt");
    CHECK_EQ(VL_HTMLDecode(L"&#99999999;&#xD800;&#0;"), L"\xFFFD\xFFFD\xFFFD");
    CHECK_EQ(VL_HTMLDecode(std::wstring(300000, L'&')).size(), (size_t)300000);
}

void testHexAndEscapes()
{
    CHECK_EQ(VL_HexEncode(L"A\u4E2D"), L"41E4B8AD");
    CHECK_EQ(VL_HexDecode(L"41e4b8ad"), L"A\u4E2D");
    CHECK_EQ(VL_HexDecode(VL_HexEncode(mixed, 1200), 1200), mixed);
    CHECK_EQ(VL_HexDecode(L"xyz"), L"");
    CHECK_EQ(VL_UnicodeEncode(L"a\u4E2D\xD83D\xDE00"), L"a\\u4E2D\\uD83D\\uDE00");
    CHECK_EQ(VL_UnicodeDecode(L"\\u4e2d\\u6587\\u00"), L"\u4E2D\u6587\\u00");
    for (const std::wstring &text : {mixed, std::wstring(L"\\u0041 C:\\user\\Unit \\")})
        CHECK_EQ(VL_UnicodeDecode(VL_UnicodeEncode(text)), text);
}

void testBase64()
{
    struct Row
    {
        const wchar_t *text;
        const wchar_t *encoded;
    };
    const Row rows[] = {
        {L"", L""},
        {L"f", L"Zg=="},
        {L"fo", L"Zm8="},
        {L"foo", L"Zm9v"},
        {L"foob", L"Zm9vYg=="},
        {L"fooba", L"Zm9vYmE="},
        {L"foobar", L"Zm9vYmFy"},
        {L"\u4E2D\u6587", L"5Lit5paH"},
    };
    for (const Row &row : rows) {
        CHECK_EQ(VL_Base64Encode(row.text), row.encoded);
        CHECK_EQ(VL_Base64Decode(row.encoded), row.text);
    }
    CHECK_EQ(VL_Base64EncodeBytes(VL_HexToByteArray(L"FBFF")), L"+/8=");
    CHECK_EQ(VL_ByteArrayToHex(VL_Base64DecodeBytes(L"-_8")), L"FBFF");
    CHECK_EQ(VL_Base64Decode(L"Zm9v\r\n YmFy"), L"foobar");
    CHECK_EQ(VL_Base64Decode(L"Zm9v*mFy"), L"");
    CHECK_EQ(VL_Base64Decode(L"Zm9vY"), L"");
    CHECK_EQ(VL_Base64Decode(L"Zg==Zg=="), L"");
    CHECK_EQ(VL_Base64Decode(VL_Base64Encode(L"\u4E2D", 936), 936), L"\u4E2D");
}

} // namespace

void runTests()
{
    testDetection();
    testCodePages();
    testUrl();
    testHtml();
    testHexAndEscapes();
    testBase64();
}
