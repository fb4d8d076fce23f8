// Printing: the console or the pipe that the program was started with.
#pragma once
#include "20_constants.h"

// The console takes UTF-8; only the first call acts.
void VL_InitOutput();

// The text that printing a value shows: decimals in 15 digits, arrays as `[1, "a", [2]]` to three
// levels, dictionaries as JSON, bytes as hex pairs, an unset value as its word in brackets.
std::wstring VL_ToOutputStr(const std::wstring &v);
std::wstring VL_ToOutputStr(const wchar_t *v);
std::wstring VL_ToOutputStr(wchar_t v);
// Read as UTF-8.
std::wstring VL_ToOutputStr(const std::string &v);
std::wstring VL_ToOutputStr(long long v);
std::wstring VL_ToOutputStr(double v);
std::wstring VL_ToOutputStr(float v);
std::wstring VL_ToOutputStr(const VL_Any &v);
std::wstring VL_ToOutputStr(const VL_ByteArray &v);
std::wstring VL_ToOutputStr(const VL_Array &v);
std::wstring VL_ToOutputStr(const VL_Array2D &v);
std::wstring VL_ToOutputStr(const VL_Array3D &v);
// Handles as decimal numbers.
std::wstring VL_ToOutputStr(const void *v);
template <typename T, VL_IfInteger<T> = 0>
inline std::wstring VL_ToOutputStr(T v)
{
    return VL_ToOutputStr(static_cast<long long>(v));
}
template <typename T, VL_IfBool<T> = 0>
inline std::wstring VL_ToOutputStr(T v)
{
    return VL_Str(v);
}

// Writes the text and a line end at once: to the console, as UTF-8 to a pipe or a file, and to the
// debugger when the program has no standard output.
void VL_Print(const std::wstring &v);
void VL_Print();
template <typename T>
inline void VL_Print(const T &v)
{
    VL_Print(VL_ToOutputStr(v));
}
// Several values are joined by ", ".
template <typename First, typename Second, typename... Rest>
inline void VL_Print(const First &first, const Second &second, const Rest &...rest)
{
    std::wstring line(VL_ToOutputStr(first));
    line.append(L", ").append(VL_ToOutputStr(second));
    (void)std::initializer_list<int>{(line.append(L", ").append(VL_ToOutputStr(rest)), 0)...};
    VL_Print(line);
}
