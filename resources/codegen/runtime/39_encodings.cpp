// Text in numbered encodings, as files, byte arrays and the encoding commands use them.
#include "39_encodings.h"

namespace vl_encodings {
namespace {

const intptr_t kAuto = -1;
const intptr_t kUtf16Low = 1200;
const intptr_t kUtf16High = 1201;
const intptr_t kGb2312 = 20936;

UINT codePage(intptr_t encoding)
{
    if (encoding == 0)
        return CP_ACP;
    if (encoding < 0 || encoding > 0xFFFF)
        return CP_UTF8;
    if (IsValidCodePage((UINT)encoding))
        return (UINT)encoding;
    return encoding == kGb2312 ? 936 : CP_UTF8;
}

bool startsWith(const char *data, size_t length, const std::string &mark)
{
    return !mark.empty() && length >= mark.size() &&
           mark.compare(0, mark.size(), data, mark.size()) == 0;
}

std::string utf8Mark()
{
    return std::string("\xEF\xBB\xBF", 3);
}

std::wstring decodeUtf16(const char *data, size_t length, bool highFirst)
{
    std::wstring text(length / 2, L'\0');
    const unsigned char *bytes = (const unsigned char *)data;
    for (size_t i = 0; i < text.size(); ++i) {
        const unsigned first = bytes[2 * i];
        const unsigned second = bytes[2 * i + 1];
        text[i] = (wchar_t)(highFirst ? first << 8 | second : second << 8 | first);
    }
    return text;
}

std::string encodeUtf16(const std::wstring &text, bool highFirst)
{
    std::string bytes(text.size() * 2, '\0');
    for (size_t i = 0; i < text.size(); ++i) {
        const char low = (char)(text[i] & 0xFF);
        const char high = (char)(text[i] >> 8 & 0xFF);
        bytes[2 * i] = highFirst ? high : low;
        bytes[2 * i + 1] = highFirst ? low : high;
    }
    return bytes;
}

intptr_t foundEncoding(const char *data, size_t length)
{
    if (startsWith(data, length, VL_ByteOrderMark(kUtf16Low)))
        return kUtf16Low;
    if (startsWith(data, length, VL_ByteOrderMark(kUtf16High)))
        return kUtf16High;
    return VL_IsValidUtf8(data, length) ? CP_UTF8 : 936;
}

// Length of the well-formed sequence at `data`, 0 if there is none. The second byte of some
// sequences has a narrower range: no overlong forms, no surrogates, nothing past U+10FFFF.
size_t sequenceLength(const unsigned char *data, size_t left)
{
    const unsigned lead = data[0];
    const size_t length = lead < 0x80   ? 1
                          : lead < 0xC2 ? 0
                          : lead < 0xE0 ? 2
                          : lead < 0xF0 ? 3
                          : lead < 0xF5 ? 4
                                        : 0;
    if (length < 2 || length > left)
        return length > left ? 0 : length;
    const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (data[1] < low || data[1] > high)
        return 0;
    for (size_t i = 2; i < length; ++i)
        if ((data[i] & 0xC0) != 0x80)
            return 0;
    return length;
}

} // namespace
} // namespace vl_encodings

bool VL_IsValidUtf8(const char *data, size_t length)
{
    const unsigned char *bytes = (const unsigned char *)data;
    for (size_t i = 0; i < length;) {
        const size_t step = vl_encodings::sequenceLength(bytes + i, length - i);
        if (step == 0)
            return false;
        i += step;
    }
    return true;
}

std::string VL_ByteOrderMark(intptr_t encoding)
{
    if (encoding == vl_encodings::kUtf16Low)
        return std::string("\xFF\xFE", 2);
    if (encoding == vl_encodings::kUtf16High)
        return std::string("\xFE\xFF", 2);
    return std::string();
}

std::wstring VL_DecodeText(const char *data, size_t length, intptr_t encoding)
{
    if (!data || length == 0)
        return std::wstring();
    if (encoding == vl_encodings::kAuto)
        encoding = vl_encodings::foundEncoding(data, length);
    const bool utf16 = encoding == vl_encodings::kUtf16Low || encoding == vl_encodings::kUtf16High;
    const UINT page = utf16 ? 0 : vl_encodings::codePage(encoding);
    const std::string mark = utf16             ? VL_ByteOrderMark(encoding)
                             : page == CP_UTF8 ? vl_encodings::utf8Mark()
                                               : std::string();
    if (vl_encodings::startsWith(data, length, mark)) {
        data += mark.size();
        length -= mark.size();
    }
    if (utf16)
        return vl_encodings::decodeUtf16(data, length, encoding == vl_encodings::kUtf16High);
    return VL_CodePageToWide(data, length, page);
}

std::string VL_EncodeText(const std::wstring &text, intptr_t encoding)
{
    if (encoding == vl_encodings::kUtf16Low || encoding == vl_encodings::kUtf16High)
        return vl_encodings::encodeUtf16(text, encoding == vl_encodings::kUtf16High);
    return VL_WideToCodePage(text, vl_encodings::codePage(encoding));
}
