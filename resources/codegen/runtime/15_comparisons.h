// Comparisons with a VL_Any on one side or both.
#pragma once
#include "14_operators.h"

// Order of two values: -1, 0, 1, or 2 when there is none. Numbers by value, texts by code units, a
// number and a text by value if the text is a number, else as texts; unset counts as 0 and as "".
int VL_AnyOrder(const VL_Any &a, const VL_Any &b);
int VL_AnyOrder(const VL_Any &a, long long b);
int VL_AnyOrder(const VL_Any &a, double b);
int VL_AnyOrder(const VL_Any &a, bool b);
template <typename T, VL_IfInteger<T> = 0>
inline int VL_AnyOrder(const VL_Any &a, T b)
{
    return VL_AnyOrder(a, static_cast<long long>(b));
}

bool operator==(const VL_Any &a, const VL_Any &b);
bool operator!=(const VL_Any &a, const VL_Any &b);
bool operator<(const VL_Any &a, const VL_Any &b);
bool operator>(const VL_Any &a, const VL_Any &b);
bool operator<=(const VL_Any &a, const VL_Any &b);
bool operator>=(const VL_Any &a, const VL_Any &b);

template <typename T, VL_IfNumber<T> = 0>
inline bool operator==(const VL_Any &a, T b)
{
    return VL_AnyOrder(a, b) == 0;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator==(T a, const VL_Any &b)
{
    return VL_AnyOrder(b, a) == 0;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator!=(const VL_Any &a, T b)
{
    return VL_AnyOrder(a, b) != 0;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator!=(T a, const VL_Any &b)
{
    return VL_AnyOrder(b, a) != 0;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator<(const VL_Any &a, T b)
{
    return VL_AnyOrder(a, b) == -1;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator<(T a, const VL_Any &b)
{
    return VL_AnyOrder(b, a) == 1;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator>(const VL_Any &a, T b)
{
    return VL_AnyOrder(a, b) == 1;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator>(T a, const VL_Any &b)
{
    return VL_AnyOrder(b, a) == -1;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator<=(const VL_Any &a, T b)
{
    return VL_AnyOrder(a, b) <= 0;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator<=(T a, const VL_Any &b)
{
    const int order = VL_AnyOrder(b, a);
    return order == 0 || order == 1;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator>=(const VL_Any &a, T b)
{
    const int order = VL_AnyOrder(a, b);
    return order == 0 || order == 1;
}
template <typename T, VL_IfNumber<T> = 0>
inline bool operator>=(T a, const VL_Any &b)
{
    return VL_AnyOrder(b, a) <= 0;
}
