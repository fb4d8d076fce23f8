// Encoding commands: code pages, URL, HTML, hexadecimal, \u escapes and Base64.
#include "80_encoding.h"
#include "39_encodings.h"
#include "58_byte_array_values.h"

#include <cstring>

namespace vl_encoding {
namespace {

const intptr_t kGbk = 936;
const intptr_t kGb2312 = 20936;
const intptr_t kUtf8 = 65001;
const intptr_t kSystem = 0;

std::wstring asByteText(const std::string &bytes)
{
    std::wstring text(bytes.size(), L'\0');
    for (size_t i = 0; i < bytes.size(); ++i)
        text[i] = (wchar_t)(unsigned char)bytes[i];
    return text;
}

std::wstring decoded(const std::string &byteText, intptr_t encoding)
{
    const std::wstring text = VL_Utf8ToWide(byteText);
    std::string bytes(text.size(), '\0');
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] > 0xFF)
            return text;
        bytes[i] = (char)text[i];
    }
    return VL_DecodeText(bytes.data(), bytes.size(), encoding);
}

std::wstring encoded(const std::string &text, intptr_t encoding)
{
    return asByteText(VL_EncodeText(VL_Utf8ToWide(text), encoding));
}

int hexValue(wchar_t unit)
{
    if (unit >= L'0' && unit <= L'9')
        return unit - L'0';
    const wchar_t lower = unit | 0x20;
    return lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : -1;
}

// The value of `count` hexadecimal digits at `begin`, or -1.
long hexNumber(const std::wstring &text, size_t begin, size_t count)
{
    if (begin > text.size() || text.size() - begin < count)
        return -1;
    long number = 0;
    for (size_t i = begin; i < begin + count; ++i) {
        const int value = hexValue(text[i]);
        if (value < 0)
            return -1;
        number = number << 4 | value;
    }
    return number;
}

void appendHex(std::wstring &text, unsigned value, int digits)
{
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
        text += L"0123456789ABCDEF"[value >> shift & 15];
}

void appendCodePoint(std::wstring &text, unsigned long code)
{
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF) || code == 0)
        code = 0xFFFD;
    if (code >= 0x10000) {
        text += (wchar_t)(0xD800 + ((code - 0x10000) >> 10));
        text += (wchar_t)(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
        text += (wchar_t)code;
    }
}

struct Entity
{
    const wchar_t *name;
    unsigned short code;
};

const Entity kEntities[] = {
    {L"amp", 0x26},      {L"lt", 0x3C},      {L"gt", 0x3E},      {L"quot", 0x22},
    {L"apos", 0x27},     {L"nbsp", 0xA0},    {L"copy", 0xA9},    {L"reg", 0xAE},
    {L"trade", 0x2122},  {L"yen", 0xA5},     {L"cent", 0xA2},    {L"pound", 0xA3},
    {L"euro", 0x20AC},   {L"sect", 0xA7},    {L"deg", 0xB0},     {L"plusmn", 0xB1},
    {L"times", 0xD7},    {L"divide", 0xF7},  {L"middot", 0xB7},  {L"bull", 0x2022},
    {L"hellip", 0x2026}, {L"ndash", 0x2013}, {L"mdash", 0x2014}, {L"lsquo", 0x2018},
    {L"rsquo", 0x2019},  {L"ldquo", 0x201C}, {L"rdquo", 0x201D}, {L"laquo", 0xAB},
    {L"raquo", 0xBB},    {L"ensp", 0x2002},  {L"emsp", 0x2003},  {L"larr", 0x2190},
    {L"uarr", 0x2191},   {L"rarr", 0x2192},  {L"darr", 0x2193},  {L"para", 0xB6},
    {L"micro", 0xB5},    {L"frac12", 0xBD},  {L"sup2", 0xB2},    {L"sup3", 0xB3},
};

// The character number that the text between "&" and ";" stands for, or -1.
long entityCode(const std::wstring &name)
{
    if (name.size() > 1 && name[0] == L'#') {
        const bool hex = (name[1] | 0x20) == L'x';
        const size_t begin = hex ? 2 : 1;
        long code = 0;
        for (size_t i = begin; i < name.size(); ++i) {
            const int value = hexValue(name[i]);
            if (value < 0 || (!hex && value > 9))
                return -1;
            code = code > 0x110000 ? code : code * (hex ? 16 : 10) + value;
        }
        return name.size() > begin ? code : -1;
    }
    for (const Entity &entity : kEntities)
        if (name == entity.name)
            return entity.code;
    return -1;
}

int base64Value(wchar_t unit)
{
    if (unit >= L'A' && unit <= L'Z')
        return unit - L'A';
    if (unit >= L'a' && unit <= L'z')
        return unit - L'a' + 26;
    if (unit >= L'0' && unit <= L'9')
        return unit - L'0' + 52;
    if (unit == L'+' || unit == L'-')
        return 62;
    return unit == L'/' || unit == L'_' ? 63 : -1;
}

std::wstring base64(const unsigned char *data, size_t length)
{
    static const wchar_t digits[] =
        L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::wstring text;
    text.reserve((length + 2) / 3 * 4);
    for (size_t i = 0; i < length; i += 3) {
        const size_t left = length - i;
        const unsigned group = (unsigned)data[i] << 16 | (left > 1 ? data[i + 1] << 8 : 0) |
                               (left > 2 ? data[i + 2] : 0);
        text += digits[group >> 18 & 63];
        text += digits[group >> 12 & 63];
        text += left > 1 ? digits[group >> 6 & 63] : L'=';
        text += left > 2 ? digits[group & 63] : L'=';
    }
    return text;
}

} // namespace
} // namespace vl_encoding

std::wstring VL_UTF8ToUTF16(const std::string &byteText)
{
    return vl_encoding::decoded(byteText, vl_encoding::kUtf8);
}

std::wstring VL_GBKToUTF16(const std::string &byteText)
{
    return vl_encoding::decoded(byteText, vl_encoding::kGbk);
}

std::wstring VL_GB2312ToUTF16(const std::string &byteText)
{
    return vl_encoding::decoded(byteText, vl_encoding::kGb2312);
}

std::wstring VL_ASCIIToUTF16(const std::string &byteText)
{
    return vl_encoding::decoded(byteText, vl_encoding::kSystem);
}

std::wstring VL_EncodeToUTF16(const std::string &byteText, intptr_t encoding)
{
    return vl_encoding::decoded(byteText, encoding);
}

std::wstring VL_UTF16ToUTF8(const std::string &text)
{
    return vl_encoding::encoded(text, vl_encoding::kUtf8);
}

std::wstring VL_UTF16ToGBK(const std::string &text)
{
    return vl_encoding::encoded(text, vl_encoding::kGbk);
}

std::wstring VL_UTF16ToGB2312(const std::string &text)
{
    return vl_encoding::encoded(text, vl_encoding::kGb2312);
}

std::wstring VL_UTF16ToASCII(const std::string &text)
{
    return vl_encoding::encoded(text, vl_encoding::kSystem);
}

std::wstring VL_UTF16ToEncode(const std::string &text, intptr_t encoding)
{
    return vl_encoding::encoded(text, encoding);
}

std::wstring VL_UTF8ToGBK(const std::string &byteText)
{
    return vl_encoding::asByteText(VL_EncodeText(VL_UTF8ToUTF16(byteText), vl_encoding::kGbk));
}

std::wstring VL_GBKToUTF8(const std::string &byteText)
{
    return vl_encoding::asByteText(VL_WideToUtf8(VL_GBKToUTF16(byteText)));
}

std::wstring VL_URLEncode(const std::wstring &text, intptr_t encoding)
{
    std::wstring result;
    for (char c : VL_EncodeText(text, encoding)) {
        const unsigned char byte = (unsigned char)c;
        const bool plain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= 'a' && byte <= 'z') || (byte && std::strchr("-_.~", byte));
        if (plain) {
            result += (wchar_t)byte;
        } else {
            result += L'%';
            vl_encoding::appendHex(result, byte, 2);
        }
    }
    return result;
}

std::wstring VL_URLDecode(const std::wstring &text, intptr_t encoding)
{
    std::wstring result;
    std::string bytes; // of the escapes that stand side by side: a character may take several
    for (size_t i = 0; i <= text.size(); ++i) {
        const long value =
            i < text.size() && text[i] == L'%' ? vl_encoding::hexNumber(text, i + 1, 2) : -1;
        if (value >= 0) {
            bytes += (char)value;
            i += 2;
            continue;
        }
        result += VL_DecodeText(bytes.data(), bytes.size(), encoding);
        bytes.clear();
        if (i < text.size())
            result += text[i] == L'+' ? L' ' : text[i];
    }
    return result;
}

std::wstring VL_HTMLEncode(const std::wstring &text)
{
    std::wstring result;
    result.reserve(text.size() + text.size() / 8);
    for (wchar_t unit : text) {
        switch (unit) {
        case L'&':
            result += L"&amp;";
            break;
        case L'<':
            result += L"&lt;";
            break;
        case L'>':
            result += L"&gt;";
            break;
        case L'"':
            result += L"&quot;";
            break;
        case L'\'':
            result += L"&#39;";
            break;
        default:
            result += unit;
        }
    }
    return result;
}

std::wstring VL_HTMLDecode(const std::wstring &text)
{
    const size_t longest = 12; // no name or number is longer, so no "&" looks far ahead
    std::wstring result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        long code = -1;
        size_t length = 0;
        if (text[i] == L'&') {
            while (length < longest && i + 1 + length < text.size() &&
                   text[i + 1 + length] != L';' && text[i + 1 + length] != L'&')
                ++length;
            if (i + 1 + length < text.size() && text[i + 1 + length] == L';')
                code = vl_encoding::entityCode(text.substr(i + 1, length));
        }
        if (code < 0) {
            result += text[i];
        } else {
            vl_encoding::appendCodePoint(result, (unsigned long)code);
            i += length + 1;
        }
    }
    return result;
}

std::wstring VL_HexEncode(const std::wstring &text, intptr_t encoding)
{
    return VL_ByteArrayToHex(VL_TextToByteArray(text, encoding));
}

std::wstring VL_HexDecode(const std::wstring &text, intptr_t encoding)
{
    return VL_ByteArrayToText(VL_HexToByteArray(text), encoding);
}

std::wstring VL_UnicodeEncode(const std::wstring &text)
{
    std::wstring result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const bool misleading =
            text[i] == L'\\' && i + 1 < text.size() && (text[i + 1] | 0x20) == L'u';
        if (text[i] < 0x80 && !misleading) {
            result += text[i];
        } else {
            result += L"\\u";
            vl_encoding::appendHex(result, (unsigned)text[i], 4);
        }
    }
    return result;
}

std::wstring VL_UnicodeDecode(const std::wstring &text)
{
    std::wstring result;
    result.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const bool escape = text[i] == L'\\' && i + 1 < text.size() && (text[i + 1] | 0x20) == L'u';
        const long unit = escape ? vl_encoding::hexNumber(text, i + 2, 4) : -1;
        if (unit < 0) {
            result += text[i];
        } else {
            result += (wchar_t)unit;
            i += 5;
        }
    }
    return result;
}

std::wstring VL_Base64Encode(const std::wstring &text, intptr_t encoding)
{
    const std::string bytes = VL_EncodeText(text, encoding);
    return vl_encoding::base64((const unsigned char *)bytes.data(), bytes.size());
}

std::wstring VL_Base64Decode(const std::wstring &text, intptr_t encoding)
{
    return VL_ByteArrayToText(VL_Base64DecodeBytes(text), encoding);
}

std::wstring VL_Base64EncodeBytes(const VL_ByteArray &bytes)
{
    return vl_encoding::base64(bytes.ptr(), bytes.size());
}

VL_ByteArray VL_Base64DecodeBytes(const std::wstring &text)
{
    VL_ByteArray result;
    result.data.reserve(text.size() / 4 * 3);
    unsigned bits = 0;
    int held = 0; // digits of a group of four
    bool ended = false;
    for (wchar_t unit : text) {
        if (unit <= L' ')
            continue;
        if (unit == L'=') {
            ended = true;
            continue;
        }
        const int value = vl_encoding::base64Value(unit);
        if (value < 0 || ended)
            return VL_ByteArray();
        bits = bits << 6 | (unsigned)value;
        if (++held == 4) {
            for (int shift = 16; shift >= 0; shift -= 8)
                result.data.push_back((unsigned char)(bits >> shift));
            bits = 0;
            held = 0;
        }
    }
    if (held == 1)
        return VL_ByteArray();
    if (held >= 2)
        result.data.push_back((unsigned char)(held == 2 ? bits >> 4 : bits >> 10));
    if (held == 3)
        result.data.push_back((unsigned char)(bits >> 2));
    return result;
}
