// Conversions between text, numbers and logical values. Nothing fails: what is no number is 0.
#include "31_conversions.h"

namespace vl_conversions {
namespace {

intptr_t fit(long long v)
{
    const long long most = (long long)INTPTR_MAX;
    const long long least = (long long)INTPTR_MIN;
    return (intptr_t)(v > most ? most : v < least ? least : v);
}

int heldPrecision(intptr_t precision, int least)
{
    return precision < least ? least : precision > 15 ? 15 : (int)precision;
}

double rounded(double v, intptr_t precision)
{
    const int digits = heldPrecision(precision, -15);
    const double factor = std::pow(10.0, digits < 0 ? -digits : digits);
    const double result =
        digits < 0 ? std::floor(v / factor + 0.5) * factor : std::floor(v * factor + 0.5) / factor;
    return std::isfinite(result) ? result : v;
}

bool equalsIgnoringCase(const std::wstring &text, const wchar_t *lower)
{
    size_t i = 0;
    for (; i < text.size() && lower[i]; ++i) {
        const wchar_t c = text[i];
        if ((c >= L'A' && c <= L'Z' ? c + 32 : c) != lower[i])
            return false;
    }
    return i == text.size() && !lower[i];
}

std::wstring trimmed(const std::wstring &text)
{
    const wchar_t *blanks = L" \t\r\n\u3000";
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::wstring::npos)
        return std::wstring();
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::wstring textOf(const wchar_t *text)
{
    return text ? text : L"";
}

bool isDigit(wchar_t c)
{
    return (c >= L'0' && c <= L'9') || (c >= 0xFF10 && c <= 0xFF19);
}

} // namespace
} // namespace vl_conversions

intptr_t VL_ToInt(const std::wstring &v)
{
    return vl_conversions::fit(VL_ReadInteger(v));
}

intptr_t VL_ToInt(const wchar_t *v)
{
    return VL_ToInt(vl_conversions::textOf(v));
}

intptr_t VL_ToInt(double v)
{
    return vl_conversions::fit(VL_TruncateToInteger(v));
}

intptr_t VL_ToInt(const VL_Any &v)
{
    return (intptr_t)VL_AnyToInteger(v);
}

double VL_ToDouble(const std::wstring &v, bool round, intptr_t precision)
{
    return VL_ToDouble(VL_ReadNumber(v), round, precision);
}

double VL_ToDouble(const wchar_t *v, bool round, intptr_t precision)
{
    return VL_ToDouble(vl_conversions::textOf(v), round, precision);
}

double VL_ToDouble(double v, bool round, intptr_t precision)
{
    return round ? vl_conversions::rounded(v, precision) : v;
}

double VL_ToDouble(const VL_Any &v, bool round, intptr_t precision)
{
    return VL_ToDouble(VL_AnyToNumber(v), round, precision);
}

float VL_ToFloat(const std::wstring &v, bool round, intptr_t precision)
{
    return (float)VL_ToDouble(v, round, precision);
}

float VL_ToFloat(const wchar_t *v, bool round, intptr_t precision)
{
    return (float)VL_ToDouble(v, round, precision);
}

float VL_ToFloat(double v, bool round, intptr_t precision)
{
    return (float)VL_ToDouble(v, round, precision);
}

float VL_ToFloat(const VL_Any &v, bool round, intptr_t precision)
{
    return (float)VL_ToDouble(v, round, precision);
}

long long VL_ToLongLong(const std::wstring &v)
{
    return VL_ReadInteger(v);
}

long long VL_ToLongLong(const wchar_t *v)
{
    return VL_ReadInteger(vl_conversions::textOf(v));
}

long long VL_ToLongLong(double v)
{
    return VL_TruncateToInteger(v);
}

long long VL_ToLongLong(const VL_Any &v)
{
    return VL_AnyToInteger(v);
}

bool VL_ToBool(const std::wstring &v)
{
    static const wchar_t *const kWords[] = {L"true",   L"yes",    L"on",    L"\u771F",
                                            L"\u662F", L"\u5BF9", L"\u5F00"};
    const std::wstring word = vl_conversions::trimmed(v);
    for (const wchar_t *truth : kWords) {
        if (vl_conversions::equalsIgnoringCase(word, truth))
            return true;
    }
    bool whole = false;
    const double number = VL_ReadNumber(word, &whole);
    return whole && number != 0;
}

bool VL_ToBool(const wchar_t *v)
{
    return VL_ToBool(vl_conversions::textOf(v));
}

bool VL_ToBool(double v)
{
    return v != 0;
}

bool VL_ToBool(const VL_Any &v)
{
    return v.type == VL_Any::TypeString ? VL_ToBool(v.strVal) : v.toBool();
}

std::wstring VL_BoolToStr(bool v)
{
    return VL_Str(v);
}

std::wstring VL_ToStr(const std::wstring &v)
{
    return v;
}

std::wstring VL_ToStr(wchar_t v)
{
    return std::wstring(1, v);
}

std::wstring VL_ToStr(const wchar_t *v)
{
    return vl_conversions::textOf(v);
}

std::wstring VL_ToStr(double v)
{
    return VL_FormatDouble(v);
}

std::wstring VL_ToStr(double v, bool round, intptr_t precision)
{
    if (!round || !std::isfinite(v))
        return VL_FormatDouble(v);
    // The longest double has 309 digits before its point.
    wchar_t buffer[400];
    swprintf(buffer, 400, L"%.*f", vl_conversions::heldPrecision(precision, 0),
             vl_conversions::rounded(v, vl_conversions::heldPrecision(precision, 0)));
    return buffer;
}

std::wstring VL_ToStr(float v)
{
    return VL_Str(v);
}

std::wstring VL_ToStr(const std::wstring &v, bool round, intptr_t precision)
{
    bool whole = false;
    const double number = VL_ReadNumber(v, &whole);
    return whole && round ? VL_ToStr(number, round, precision) : v;
}

std::wstring VL_ToStr(const wchar_t *v, bool round, intptr_t precision)
{
    return VL_ToStr(vl_conversions::textOf(v), round, precision);
}

std::wstring VL_ToStr(const VL_Any &v, bool round, intptr_t precision)
{
    return v.isNumber() && v.type != VL_Any::TypeBool ? VL_ToStr(v.doubleVal, round, precision)
                                                      : VL_ToStr(VL_ToStr(v), round, precision);
}

std::wstring VL_ToStr(const VL_Any &v)
{
    return v.type == VL_Any::TypeDict ? std::wstring() : v.toStr();
}

std::wstring VL_ToStr(const VL_ByteArray &v)
{
    return VL_ByteArrayText(v);
}

std::wstring VL_ToStr(const void *handle)
{
    return VL_Str(handle);
}

double VL_ParseNumber(const std::wstring &text)
{
    for (size_t i = 0; i < text.size(); ++i) {
        if (!vl_conversions::isDigit(text[i]))
            continue;
        // A point and a sign right before the digits belong to the number.
        size_t first = i;
        if (first > 0 && text[first - 1] == L'.')
            --first;
        if (first > 0 && (text[first - 1] == L'-' || text[first - 1] == L'+'))
            --first;
        return VL_ReadNumber(text.substr(first));
    }
    return 0;
}
