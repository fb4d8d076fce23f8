// Conversions between text, numbers and logical values. Nothing fails: what is no number is 0.
#pragma once
#include "30_output.h"

// The integer at the start of a text, a decimal cut at its point, 1 or 0 for a logical value.
intptr_t VL_ToInt(const std::wstring &v);
intptr_t VL_ToInt(const wchar_t *v);
intptr_t VL_ToInt(double v);
// A VL_Any that holds a text is read like a text.
intptr_t VL_ToInt(const VL_Any &v);
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline intptr_t VL_ToInt(T v)
{
    return static_cast<intptr_t>(v);
}

// The decimal at the start of a text. With `round` rounded half up to `precision` digits behind the
// point (-15 to 15); integers ignore both.
double VL_ToDouble(const std::wstring &v, bool round = false, intptr_t precision = 2);
double VL_ToDouble(const wchar_t *v, bool round = false, intptr_t precision = 2);
double VL_ToDouble(double v, bool round = false, intptr_t precision = 2);
double VL_ToDouble(const VL_Any &v, bool round = false, intptr_t precision = 2);
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline double VL_ToDouble(T v, bool = false, intptr_t = 2)
{
    return static_cast<double>(v);
}

float VL_ToFloat(const std::wstring &v, bool round = false, intptr_t precision = 2);
float VL_ToFloat(const wchar_t *v, bool round = false, intptr_t precision = 2);
float VL_ToFloat(double v, bool round = false, intptr_t precision = 2);
float VL_ToFloat(const VL_Any &v, bool round = false, intptr_t precision = 2);
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline float VL_ToFloat(T v, bool = false, intptr_t = 2)
{
    return static_cast<float>(v);
}

long long VL_ToLongLong(const std::wstring &v);
long long VL_ToLongLong(const wchar_t *v);
long long VL_ToLongLong(double v);
long long VL_ToLongLong(const VL_Any &v);
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long VL_ToLongLong(T v)
{
    return static_cast<long long>(v);
}

// True for the words of truth ("true", "yes", "on" in any case, and the Chinese ones), for a text
// that is a number other than 0, for a number other than 0.
bool VL_ToBool(const std::wstring &v);
bool VL_ToBool(const wchar_t *v);
bool VL_ToBool(double v);
bool VL_ToBool(const VL_Any &v);
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline bool VL_ToBool(T v)
{
    return v != T();
}
std::wstring VL_BoolToStr(bool v);

// The text of a value. With `round` a decimal shows exactly `precision` digits behind its point
// (0 to 15). An unset value and a dictionary give an empty text.
std::wstring VL_ToStr(const std::wstring &v);
std::wstring VL_ToStr(const wchar_t *v);
std::wstring VL_ToStr(wchar_t v);
std::wstring VL_ToStr(double v);
std::wstring VL_ToStr(double v, bool round, intptr_t precision = 2);
std::wstring VL_ToStr(float v);
// What is no number all through stands as it is.
std::wstring VL_ToStr(const std::wstring &v, bool round, intptr_t precision = 2);
std::wstring VL_ToStr(const wchar_t *v, bool round, intptr_t precision = 2);
std::wstring VL_ToStr(const VL_Any &v, bool round, intptr_t precision = 2);
std::wstring VL_ToStr(const VL_Any &v);
std::wstring VL_ToStr(const VL_ByteArray &v);
std::wstring VL_ToStr(const void *handle);
template <typename T, VL_IfInteger<T> = 0>
inline std::wstring VL_ToStr(T v)
{
    return VL_FormatInteger(static_cast<long long>(v));
}
template <typename T, VL_IfBool<T> = 0>
inline std::wstring VL_ToStr(T v)
{
    return VL_BoolToStr(v);
}

// The first number inside a text ("about 12.5 kg" gives 12.5); 0 when there is none.
double VL_ParseNumber(const std::wstring &text);
