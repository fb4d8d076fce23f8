// Numbers as text, and text as numbers.
#include "09_number_text.h"

#include <cstdlib>

namespace vl_number_text {
namespace {

// More digits change no decimal, and would make reading a long text slow.
const int kMostDigits = 800;
const long long kMostExponent = 100000;

// The value of an ASCII or full-width digit; -1 for anything else.
int digitValue(wchar_t c)
{
    if (c >= L'0' && c <= L'9')
        return c - L'0';
    if (c >= 0xFF10 && c <= 0xFF19)
        return c - 0xFF10;
    return -1;
}

bool isBlank(wchar_t c)
{
    return c == L' ' || (c >= L'\t' && c <= L'\r') || c == 0xA0 || c == 0x3000;
}

bool isPoint(wchar_t c)
{
    return c == L'.' || c == 0xFF0E;
}

size_t skipBlanks(const std::wstring &text, size_t at)
{
    while (at < text.size() && isBlank(text[at]))
        ++at;
    return at;
}

// Steps over a sign; true for a minus.
bool readSign(const std::wstring &text, size_t &at)
{
    if (at >= text.size())
        return false;
    const wchar_t c = text[at];
    const bool minus = c == L'-' || c == 0xFF0D || c == 0x2212;
    if (minus || c == L'+' || c == 0xFF0B)
        ++at;
    return minus;
}

// The digits of a decimal: "ddd" times ten to the power of `exponent`.
struct Digits
{
    std::string text;
    long long exponent = 0;
    bool any = false;
};

void readDigits(const std::wstring &text, size_t &at, bool behindPoint, Digits &digits)
{
    for (; at < text.size(); ++at) {
        const int value = digitValue(text[at]);
        if (value < 0)
            return;
        digits.any = true;
        const bool kept = (int)digits.text.size() < kMostDigits;
        if (kept && (value != 0 || !digits.text.empty()))
            digits.text += (char)('0' + value);
        if (behindPoint ? kept : !kept)
            digits.exponent += behindPoint ? -1 : 1;
    }
}

// Steps over "e+12"; without digits behind it nothing is read.
long long readExponent(const std::wstring &text, size_t &at)
{
    if (at >= text.size() || (text[at] != L'e' && text[at] != L'E'))
        return 0;
    size_t next = at + 1;
    const bool minus = readSign(text, next);
    if (next >= text.size() || digitValue(text[next]) < 0)
        return 0;
    long long exponent = 0;
    for (; next < text.size() && digitValue(text[next]) >= 0; ++next) {
        if (exponent < kMostExponent)
            exponent = exponent * 10 + digitValue(text[next]);
    }
    at = next;
    return minus ? -exponent : exponent;
}

std::wstring withoutMinusZero(const wchar_t *text)
{
    return std::wcscmp(text, L"-0") == 0 ? std::wstring(L"0") : std::wstring(text);
}

} // namespace
} // namespace vl_number_text

std::wstring VL_FormatDouble(double v)
{
    if (v != v)
        return L"nan";
    if (std::isinf(v))
        return v > 0 ? L"inf" : L"-inf";
    wchar_t buffer[80];
    swprintf(buffer, 80, L"%.15g", v);
    return vl_number_text::withoutMinusZero(buffer);
}

std::wstring VL_FormatInteger(long long v)
{
    wchar_t buffer[24];
    wchar_t *at = buffer + 24;
    unsigned long long rest = v < 0 ? 0 - (unsigned long long)v : (unsigned long long)v;
    do {
        *--at = (wchar_t)(L'0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (v < 0)
        *--at = L'-';
    return std::wstring(at, buffer + 24);
}

std::wstring VL_FormatFloat(float v)
{
    if (v != v || std::isinf(v))
        return VL_FormatDouble((double)v);
    wchar_t buffer[80];
    for (int digits = 6; digits <= 9; ++digits) {
        swprintf(buffer, 80, L"%.*g", digits, (double)v);
        if ((float)std::wcstod(buffer, NULL) == v)
            break;
    }
    return vl_number_text::withoutMinusZero(buffer);
}

long long VL_ReadInteger(const std::wstring &text, bool *whole)
{
    using vl_number_text::digitValue;
    size_t at = vl_number_text::skipBlanks(text, 0);
    const bool minus = vl_number_text::readSign(text, at);
    const size_t first = at;
    const unsigned long long limit = minus ? 0x8000000000000000ull : 0x7FFFFFFFFFFFFFFFull;
    unsigned long long value = 0;
    bool fits = true;
    for (; at < text.size() && digitValue(text[at]) >= 0; ++at) {
        const unsigned digit = (unsigned)digitValue(text[at]);
        fits = fits && value <= (limit - digit) / 10;
        value = fits ? value * 10 + digit : limit;
    }
    if (whole)
        *whole = fits && at > first && vl_number_text::skipBlanks(text, at) == text.size();
    return (long long)(minus ? 0 - value : value);
}

double VL_ReadNumber(const std::wstring &text, bool *whole)
{
    using vl_number_text::readDigits;
    using vl_number_text::skipBlanks;
    size_t at = skipBlanks(text, 0);
    const bool minus = vl_number_text::readSign(text, at);
    vl_number_text::Digits digits;
    readDigits(text, at, false, digits);
    if (at < text.size() && vl_number_text::isPoint(text[at])) {
        ++at;
        readDigits(text, at, true, digits);
    }
    if (whole)
        *whole = false;
    if (!digits.any)
        return 0;
    digits.exponent += vl_number_text::readExponent(text, at);
    if (whole)
        *whole = skipBlanks(text, at) == text.size();
    if (digits.text.empty())
        return 0;
    const std::string number = digits.text + "e" + std::to_string(digits.exponent);
    const double value = std::strtod(number.c_str(), NULL);
    return minus ? -value : value;
}

long long VL_TruncateToInteger(double v)
{
    if (v != v)
        return 0;
    if (v >= 9223372036854775807.0)
        return 0x7FFFFFFFFFFFFFFFll;
    if (v <= -9223372036854775808.0)
        return -0x7FFFFFFFFFFFFFFFll - 1;
    return (long long)v;
}
