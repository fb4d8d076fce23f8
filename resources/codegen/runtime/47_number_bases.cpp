// Numbers in other bases and in Chinese words.
#include "47_number_bases.h"

#include <algorithm>

namespace vl_number_bases {
namespace {

const size_t HighestWidth = 64;
const double TooGreatForWords = 1e16;

// Digits of an unsigned number, the last `width` places at least.
std::wstring digitsOf(unsigned long long value, unsigned base, intptr_t width)
{
    std::wstring digits;
    do {
        digits += L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[value % base];
        value /= base;
    } while (value != 0);
    if (width > (intptr_t)digits.size())
        digits.append(std::min((size_t)width, HighestWidth) - std::min(digits.size(), HighestWidth),
                      L'0');
    std::reverse(digits.begin(), digits.end());
    return digits;
}

int digitValue(wchar_t unit)
{
    if (unit >= L'0' && unit <= L'9')
        return unit - L'0';
    if (unit >= L'a' && unit <= L'z')
        return unit - L'a' + 10;
    return unit >= L'A' && unit <= L'Z' ? unit - L'A' + 10 : 99;
}

size_t prefixLength(const std::wstring &text, size_t at, intptr_t base)
{
    const std::wstring two = VL_ToLower(text.substr(at, 2));
    if (base == 16)
        return two == L"0x" || two == L"&h" ? 2 : two.substr(0, 1) == L"#" ? 1 : 0;
    return (base == 2 && two == L"0b") || (base == 8 && two == L"0o") ? 2 : 0;
}

intptr_t fromBase(const std::wstring &text, intptr_t base)
{
    if (base < 2 || base > 36)
        return 0;
    const std::wstring digits = VL_TrimLeft(text);
    size_t at = 0;
    const bool negative = !digits.empty() && digits[0] == L'-';
    if (negative || (!digits.empty() && digits[0] == L'+'))
        ++at;
    at += prefixLength(digits, at, base);
    const uintptr_t highest = (uintptr_t)-1;
    uintptr_t value = 0;
    for (; at < digits.size() && digitValue(digits[at]) < base; ++at) {
        const uintptr_t digit = (uintptr_t)digitValue(digits[at]);
        if (value > (highest - digit) / (uintptr_t)base)
            return 0;
        value = value * (uintptr_t)base + digit;
    }
    return (intptr_t)(negative ? (uintptr_t)0 - value : value);
}

// The words of one style: ten digits, three places within a group, then zero and groups of four.
struct Words
{
    const wchar_t *digits;
    const wchar_t *places;
    bool dropsLeadingOne;
};

const wchar_t *const Groups[] = {L"", L"\u4E07", L"\u4EBF", L"\u4E07"};
const Words MoneyWords = {L"\u96F6\u58F9\u8D30\u53C1\u8086\u4F0D\u9646\u67D2\u634C\u7396",
                          L"\u62FE\u4F70\u4EDF", false};
const Words PlainWords = {L"\u96F6\u4E00\u4E8C\u4E09\u56DB\u4E94\u516D\u4E03\u516B\u4E5D",
                          L"\u5341\u767E\u5343", true};

void appendGroup(std::wstring &text, unsigned group, const Words &words, bool &zeroPending)
{
    const unsigned powers[] = {1, 10, 100, 1000};
    for (int place = 3; place >= 0; --place) {
        const unsigned digit = group / powers[place] % 10;
        if (digit == 0) {
            zeroPending = true;
            continue;
        }
        if (zeroPending && !text.empty())
            text += words.digits[0];
        zeroPending = false;
        if (!(words.dropsLeadingOne && text.empty() && place == 1 && digit == 1))
            text += words.digits[digit];
        if (place > 0)
            text += words.places[place - 1];
    }
}

// Whole numbers below 10^16.
std::wstring wholeInWords(unsigned long long number, const Words &words)
{
    if (number == 0)
        return std::wstring(1, words.digits[0]);
    std::wstring text;
    bool zeroPending = false;
    unsigned long long power = 1000000000000ULL;
    for (int index = 3; index >= 0; --index, power /= 10000) {
        const unsigned group = (unsigned)(number / power % 10000);
        appendGroup(text, group, words, zeroPending);
        // Zeros at the end of a group are not read; a whole group of them is.
        if (group != 0)
            zeroPending = false;
        // Ten thousand times a hundred million still needs the word for the latter.
        if (group != 0 || (index == 2 && !text.empty()))
            text += Groups[index];
    }
    return text;
}

} // namespace
} // namespace vl_number_bases

std::wstring VL_ToHex(intptr_t value, intptr_t width)
{
    return vl_number_bases::digitsOf((uintptr_t)value, 16, width);
}

std::wstring VL_ToBinary(intptr_t value, intptr_t width)
{
    return vl_number_bases::digitsOf((uintptr_t)value, 2, width);
}

std::wstring VL_ToOctal(intptr_t value, intptr_t width)
{
    return vl_number_bases::digitsOf((uintptr_t)value, 8, width);
}

std::wstring VL_ToBase(intptr_t value, intptr_t base)
{
    if (base < 2 || base > 36)
        return std::wstring();
    if (value >= 0)
        return vl_number_bases::digitsOf((uintptr_t)value, (unsigned)base, 0);
    return L"-" + vl_number_bases::digitsOf((uintptr_t)0 - (uintptr_t)value, (unsigned)base, 0);
}

intptr_t VL_HexToInt(const std::wstring &text)
{
    return vl_number_bases::fromBase(text, 16);
}

intptr_t VL_BinaryToInt(const std::wstring &text)
{
    return vl_number_bases::fromBase(text, 2);
}

intptr_t VL_OctalToInt(const std::wstring &text)
{
    return vl_number_bases::fromBase(text, 8);
}

intptr_t VL_BaseToInt(const std::wstring &text, intptr_t base)
{
    return vl_number_bases::fromBase(text, base);
}

std::wstring VL_ToRMBUpper(double amount)
{
    using vl_number_bases::MoneyWords;
    if (std::isnan(amount) || std::fabs(amount) >= vl_number_bases::TooGreatForWords)
        return std::wstring();
    const double size = VL_RoundTo(std::fabs(amount), 2);
    const unsigned long long whole = (unsigned long long)size;
    const unsigned cents = (unsigned)std::floor((size - (double)whole) * 100 + 0.5);
    std::wstring text = whole == 0 && cents == 0 ? L"" : amount < 0 ? L"\u8D1F" : L"";
    if (whole > 0 || cents == 0)
        text += vl_number_bases::wholeInWords(whole, MoneyWords) + L"\u5143";
    if (cents == 0)
        return text + L"\u6574";
    if (cents >= 10)
        text += std::wstring(1, MoneyWords.digits[cents / 10]) + L"\u89D2";
    else if (whole > 0)
        text += MoneyWords.digits[0];
    if (cents % 10 == 0)
        return text + L"\u6574";
    return text + MoneyWords.digits[cents % 10] + L"\u5206";
}

std::wstring VL_ToChineseUpper(double number)
{
    using vl_number_bases::PlainWords;
    const double size = std::fabs(number);
    if (std::isnan(number) || size >= vl_number_bases::TooGreatForWords)
        return std::wstring();
    // As many decimals as 15 significant digits leave.
    wchar_t digits[64];
    const int places = size < 1 ? 15 : 14 - (int)std::log10(size);
    swprintf(digits, 64, L"%.*f", places > 0 ? places : 0, size);
    std::wstring written = digits;
    const size_t point = written.find(L'.');
    if (point != std::wstring::npos) {
        written.resize(written.find_last_not_of(L'0') + 1);
        if (written.size() == point + 1)
            written.resize(point);
    }
    const std::wstring whole = written.substr(0, point);
    std::wstring text = written == L"0" || number >= 0 ? L"" : L"\u8D1F";
    text += vl_number_bases::wholeInWords(_wcstoui64(whole.c_str(), NULL, 10), PlainWords);
    if (whole.size() == written.size())
        return text;
    text += L"\u70B9";
    for (size_t i = point + 1; i < written.size(); ++i)
        text += PlainWords.digits[written[i] - L'0'];
    return text;
}
