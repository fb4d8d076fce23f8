// Arithmetic with a VL_Any on one side, and joining text with everything else.
#pragma once
#include "12_byte_array.h"

// Quotient and remainder; a divisor of 0 gives 0.
long long VL_IntQuotient(long long a, long long b);
long long VL_IntRemainder(long long a, long long b);
double VL_Quotient(double a, double b);

// An integer with a VL_Any gives an integer, a decimal with a VL_Any a decimal, whatever it holds.
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator+(T a, const VL_Any &b)
{
    return static_cast<long long>(a) + b.toInt();
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator+(const VL_Any &a, T b)
{
    return a.toInt() + static_cast<long long>(b);
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator+(T a, const VL_Any &b)
{
    return static_cast<double>(a) + b.toDouble();
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator+(const VL_Any &a, T b)
{
    return a.toDouble() + static_cast<double>(b);
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator-(T a, const VL_Any &b)
{
    return static_cast<long long>(a) - b.toInt();
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator-(const VL_Any &a, T b)
{
    return a.toInt() - static_cast<long long>(b);
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator-(T a, const VL_Any &b)
{
    return static_cast<double>(a) - b.toDouble();
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator-(const VL_Any &a, T b)
{
    return a.toDouble() - static_cast<double>(b);
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator*(T a, const VL_Any &b)
{
    return static_cast<long long>(a) * b.toInt();
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator*(const VL_Any &a, T b)
{
    return a.toInt() * static_cast<long long>(b);
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator*(T a, const VL_Any &b)
{
    return static_cast<double>(a) * b.toDouble();
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator*(const VL_Any &a, T b)
{
    return a.toDouble() * static_cast<double>(b);
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator/(T a, const VL_Any &b)
{
    return VL_IntQuotient(static_cast<long long>(a), b.toInt());
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator/(const VL_Any &a, T b)
{
    return VL_IntQuotient(a.toInt(), static_cast<long long>(b));
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator/(T a, const VL_Any &b)
{
    return VL_Quotient(static_cast<double>(a), b.toDouble());
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator/(const VL_Any &a, T b)
{
    return VL_Quotient(a.toDouble(), static_cast<double>(b));
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator%(T a, const VL_Any &b)
{
    return VL_IntRemainder(static_cast<long long>(a), b.toInt());
}
template <typename T, VL_IfIntegerOrBool<T> = 0>
inline long long operator%(const VL_Any &a, T b)
{
    return VL_IntRemainder(a.toInt(), static_cast<long long>(b));
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator%(T a, const VL_Any &b)
{
    return std::fmod(static_cast<double>(a), b.toDouble());
}
template <typename T, VL_IfFloating<T> = 0>
inline double operator%(const VL_Any &a, T b)
{
    return std::fmod(a.toDouble(), static_cast<double>(b));
}

// A number changed by a VL_Any keeps its own type.
template <typename T, VL_IfNumber<T> = 0>
inline T &operator+=(T &a, const VL_Any &b)
{
    return a = static_cast<T>(a + b);
}
template <typename T, VL_IfNumber<T> = 0>
inline T &operator-=(T &a, const VL_Any &b)
{
    return a = static_cast<T>(a - b);
}
template <typename T, VL_IfNumber<T> = 0>
inline T &operator*=(T &a, const VL_Any &b)
{
    return a = static_cast<T>(a * b);
}
template <typename T, VL_IfNumber<T> = 0>
inline T &operator/=(T &a, const VL_Any &b)
{
    return a = static_cast<T>(a / b);
}
template <typename T, VL_IfNumber<T> = 0>
inline T &operator%=(T &a, const VL_Any &b)
{
    return a = static_cast<T>(a % b);
}

// The text of a value as it is joined to other text.
std::wstring VL_Str(const std::wstring &v);
std::wstring VL_Str(const wchar_t *v);
std::wstring VL_Str(wchar_t v);
std::wstring VL_Str(long long v);
std::wstring VL_Str(double v);
std::wstring VL_Str(float v);
std::wstring VL_Str(const VL_Any &v);
std::wstring VL_Str(const void *handle);
template <typename T, VL_IfInteger<T> = 0>
inline std::wstring VL_Str(T v)
{
    return VL_Str(static_cast<long long>(v));
}
template <typename T, VL_IfBool<T> = 0>
inline std::wstring VL_Str(T v)
{
    return v ? L"\u771F" : L"\u5047";
}
std::wstring VL_AnyToString(const VL_Any &v);

std::wstring operator+(const std::wstring &a, const VL_Any &b);
std::wstring operator+(const VL_Any &a, const std::wstring &b);
std::wstring operator+(const wchar_t *a, const VL_Any &b);
std::wstring operator+(const VL_Any &a, const wchar_t *b);
std::wstring operator+(const std::wstring &a, double b);
std::wstring operator+(double a, const std::wstring &b);
std::wstring operator+(const std::wstring &a, float b);
std::wstring operator+(float a, const std::wstring &b);
// Of type bool exactly, since a handle turns into a bool as well.
template <typename T, VL_IfBool<T> = 0>
inline std::wstring operator+(const std::wstring &a, T b)
{
    return a + VL_Str(b);
}
template <typename T, VL_IfBool<T> = 0>
inline std::wstring operator+(T a, const std::wstring &b)
{
    return VL_Str(a) + b;
}

// True when a number that follows is an offset: behind ".exe" and ".dll", and in a sum that holds
// "+0x" already.
bool VL_IsQmbExprChainLhs(const std::wstring &lhs);
// Joins decimal text, or `+0x1F` where VL_IsQmbExprChainLhs says so.
std::wstring operator+(const std::wstring &a, long long b);
std::wstring operator+(long long a, const std::wstring &b);
template <typename T, VL_IfInteger<T> = 0>
inline std::wstring operator+(const std::wstring &a, T b)
{
    return a + static_cast<long long>(b);
}
template <typename T, VL_IfInteger<T> = 0>
inline std::wstring operator+(T a, const std::wstring &b)
{
    return static_cast<long long>(a) + b;
}
// Appends what "+" joins, in time that does not grow with the text: an offset only to a text as
// short as addresses are. Without these a number would be appended as the character with that code.
std::wstring &VL_AppendInteger(std::wstring &text, long long v);
template <typename T, VL_IfInteger<T> = 0>
inline std::wstring &operator+=(std::wstring &a, T b)
{
    return VL_AppendInteger(a, static_cast<long long>(b));
}
template <typename T, VL_IfFloating<T> = 0>
inline std::wstring &operator+=(std::wstring &a, T b)
{
    return a.append(std::wstring() + b);
}
template <typename T, VL_IfBool<T> = 0>
inline std::wstring &operator+=(std::wstring &a, T b)
{
    return a.append(VL_Str(b));
}
std::wstring &operator+=(std::wstring &a, const VL_Any &b);
