// Encoding helpers on which all other sections build.
#include "00_prelude.h"

namespace vl_prelude {
namespace {

// The system's conversions take an int as length: longer text goes in pieces of this many units.
const size_t kPiece = 0x10000000;

// The last code unit of a piece must not be the first half of a surrogate pair.
size_t pieceEnd(const std::wstring &text, size_t begin)
{
    size_t end = text.size() - begin > kPiece ? begin + kPiece : text.size();
    if (end < text.size() && text[end - 1] >= 0xD800 && text[end - 1] <= 0xDBFF)
        --end;
    return end;
}

} // namespace
} // namespace vl_prelude

std::wstring VL_Literal(const wchar_t *text)
{
    return text;
}

std::string VL_WideToCodePage(const std::wstring &text, UINT codePage)
{
    std::string result;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = vl_prelude::pieceEnd(text, begin);
        const int units = (int)(end - begin);
        const int bytes =
            WideCharToMultiByte(codePage, 0, text.data() + begin, units, NULL, 0, NULL, NULL);
        if (bytes <= 0)
            return result;
        const size_t old = result.size();
        result.resize(old + (size_t)bytes);
        WideCharToMultiByte(codePage, 0, text.data() + begin, units, &result[old], bytes, NULL,
                            NULL);
        begin = end;
    }
    return result;
}

std::wstring VL_CodePageToWide(const char *data, size_t length, UINT codePage)
{
    if (!data || length == 0 || length > 0x7FFFFFFF)
        return std::wstring();
    const int units = MultiByteToWideChar(codePage, 0, data, (int)length, NULL, 0);
    if (units <= 0)
        return std::wstring();
    std::wstring result((size_t)units, L'\0');
    MultiByteToWideChar(codePage, 0, data, (int)length, &result[0], units);
    return result;
}

std::string VL_WideToUtf8(const std::wstring &text)
{
    return VL_WideToCodePage(text, CP_UTF8);
}

std::wstring VL_Utf8ToWide(const std::string &bytes)
{
    return VL_CodePageToWide(bytes.data(), bytes.size(), CP_UTF8);
}
