// Text commands that measure, cut, build and format text.
#include "45_text.h"

#include <algorithm>

namespace vl_text {
namespace {

size_t clamped(intptr_t value, size_t highest)
{
    return value <= 0 ? 0 : std::min((size_t)value, highest);
}

// The units from `start` to before `end`; a half pair at either side is left out.
std::wstring between(const std::wstring &text, size_t start, size_t end)
{
    if (VL_CutsPair(text, start))
        ++start;
    if (VL_CutsPair(text, end))
        --end;
    return start < end ? text.substr(start, end - start) : std::wstring();
}

bool isDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

size_t skipDigits(const std::wstring &text, size_t at)
{
    while (at < text.size() && isDigit(text[at]))
        ++at;
    return at;
}

size_t skipSign(const std::wstring &text, size_t at)
{
    return at < text.size() && (text[at] == L'+' || text[at] == L'-') ? at + 1 : at;
}

// Reads what stands in braces behind `at`; false when it is no place for a value.
bool readPlace(const std::wstring &format, size_t at, size_t &next, size_t &index, size_t &end)
{
    const size_t digits = at + 1;
    const size_t close = skipDigits(format, digits);
    if (close >= format.size() || format[close] != L'}' || close - digits > 6)
        return false;
    index = close == digits ? next++ : (size_t)_wtoi(format.c_str() + digits);
    end = close + 1;
    return true;
}

} // namespace
} // namespace vl_text

intptr_t VL_StrLen(const std::wstring &text, bool charMode)
{
    if (charMode)
        return (intptr_t)text.size();
    size_t bytes = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        if (VL_CutsPair(text, i + 1)) {
            bytes += 4;
            ++i;
        } else {
            bytes += text[i] < 0x80 ? 1 : text[i] < 0x800 ? 2 : 3;
        }
    }
    return (intptr_t)bytes;
}

intptr_t VL_LengthEx(const wchar_t *text)
{
    return text ? (intptr_t)wcslen(text) : 0;
}

bool VL_StrIsEmpty(const std::wstring &text)
{
    return text.empty();
}

std::wstring VL_SubStr(const std::wstring &text, intptr_t start, intptr_t length)
{
    const size_t begin = vl_text::clamped(start, text.size());
    const size_t rest = text.size() - begin;
    return vl_text::between(text, begin,
                            begin + (length < 0 ? rest : vl_text::clamped(length, rest)));
}

std::wstring VL_StrMid(const std::wstring &text, intptr_t start, intptr_t length)
{
    return VL_SubStr(text, start, length);
}

std::wstring VL_StrLeft(const std::wstring &text, intptr_t length)
{
    return vl_text::between(text, 0, vl_text::clamped(length, text.size()));
}

std::wstring VL_StrRight(const std::wstring &text, intptr_t length)
{
    return vl_text::between(text, text.size() - vl_text::clamped(length, text.size()), text.size());
}

std::wstring VL_CharAt(const std::wstring &text, intptr_t index)
{
    if (index < 0 || (size_t)index >= text.size() || VL_CutsPair(text, (size_t)index))
        return std::wstring();
    return text.substr((size_t)index, VL_CutsPair(text, (size_t)index + 1) ? 2 : 1);
}

intptr_t VL_CharCode(const std::wstring &text, intptr_t index)
{
    const std::wstring character = VL_CharAt(text, index);
    if (character.size() == 2)
        return 0x10000 + ((character[0] - 0xD800) << 10) + (character[1] - 0xDC00);
    return character.empty() ? 0 : character[0];
}

std::wstring VL_CodeToChar(intptr_t code)
{
    if (code <= 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return std::wstring();
    if (code < 0x10000)
        return std::wstring(1, (wchar_t)code);
    const intptr_t beyond = code - 0x10000;
    return std::wstring{(wchar_t)(0xD800 + (beyond >> 10)), (wchar_t)(0xDC00 + (beyond & 0x3FF))};
}

std::wstring VL_StrRepeat(const std::wstring &text, intptr_t count)
{
    std::wstring result;
    if (count <= 0 || text.empty() || (size_t)count > VL_MAX_TEXT_LENGTH / text.size())
        return result;
    result.reserve(text.size() * (size_t)count);
    for (intptr_t i = 0; i < count; ++i)
        result += text;
    return result;
}

std::wstring VL_StrPad(const std::wstring &text, intptr_t width, const std::wstring &filling,
                       bool right)
{
    if (filling.empty() || width <= (intptr_t)text.size() || (size_t)width > VL_MAX_TEXT_LENGTH)
        return text;
    const size_t missing = (size_t)width - text.size();
    std::wstring pad;
    pad.reserve(missing + filling.size());
    while (pad.size() < missing)
        pad += filling;
    // Half a pair is worth less than one unit of width.
    pad.resize(VL_CutsPair(pad, missing) ? missing - 1 : missing);
    return right ? text + pad : pad + text;
}

std::wstring VL_StrReverse(const std::wstring &text)
{
    std::wstring result(text.rbegin(), text.rend());
    for (size_t i = 1; i < result.size(); ++i) {
        const bool swapped = result[i - 1] >= 0xDC00 && result[i - 1] <= 0xDFFF &&
                             result[i] >= 0xD800 && result[i] <= 0xDBFF;
        if (swapped) {
            std::swap(result[i - 1], result[i]);
            ++i;
        }
    }
    return result;
}

std::wstring VL_StrInsert(const std::wstring &text, intptr_t position, const std::wstring &inserted)
{
    size_t at = vl_text::clamped(position, text.size());
    if (VL_CutsPair(text, at))
        --at;
    std::wstring result = text;
    return result.insert(at, inserted);
}

std::wstring VL_StrRemove(const std::wstring &text, intptr_t start, intptr_t length)
{
    size_t begin = vl_text::clamped(start, text.size());
    size_t end = begin + vl_text::clamped(length, text.size() - begin);
    if (begin == end)
        return text;
    if (VL_CutsPair(text, begin))
        --begin;
    if (VL_CutsPair(text, end))
        ++end;
    return text.substr(0, begin) + text.substr(end);
}

std::wstring VL_CapitalizeFirst(const std::wstring &text)
{
    return VL_ToUpper(text.substr(0, 1)) + text.substr(std::min((size_t)1, text.size()));
}

std::wstring VL_CapitalizeWords(const std::wstring &text)
{
    std::wstring result = VL_ToLower(text);
    const std::wstring upper = VL_ToUpper(text);
    bool inWord = false;
    for (size_t i = 0; i < result.size(); ++i) {
        const bool letter = IsCharAlphaNumericW(result[i]) != FALSE;
        if (letter && !inWord)
            result[i] = upper[i];
        inWord = letter || (inWord && (result[i] == L'\'' || result[i] == 0x2019));
    }
    return result;
}

bool VL_IsNumeric(const std::wstring &text)
{
    const std::wstring number = VL_Trim(text);
    const size_t first = vl_text::skipSign(number, 0);
    size_t at = vl_text::skipDigits(number, first);
    size_t digits = at - first;
    if (at < number.size() && number[at] == L'.') {
        const size_t end = vl_text::skipDigits(number, at + 1);
        digits += end - at - 1;
        at = end;
    }
    if (digits == 0)
        return false;
    if (at < number.size() && (number[at] == L'e' || number[at] == L'E')) {
        const size_t exponent = vl_text::skipSign(number, at + 1);
        at = vl_text::skipDigits(number, exponent);
        if (at == exponent)
            return false;
    }
    return at == number.size();
}

std::wstring VL_StrFormatValues(const std::wstring &format, const std::vector<std::wstring> &values)
{
    std::wstring result;
    size_t next = 0;
    for (size_t at = 0; at < format.size();) {
        const wchar_t unit = format[at];
        size_t index = 0, end = 0;
        if (unit == L'{' && vl_text::readPlace(format, at, next, index, end)) {
            if (index < values.size())
                result += values[index];
            else
                result.append(format, at, end - at);
            if (result.size() > VL_MAX_TEXT_LENGTH)
                return format;
            at = end;
            continue;
        }
        const bool twice =
            (unit == L'{' || unit == L'}') && at + 1 < format.size() && format[at + 1] == unit;
        result += unit;
        at += twice ? 2 : 1;
    }
    return result;
}
