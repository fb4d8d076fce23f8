// Mathematics, rounding, random numbers and bit operations.
// Integers stay integers. Where mathematics has no answer (division by zero, root or logarithm of a
// negative number) the result is 0.
#pragma once
#include "10_any.h"

// What a number becomes in a result: decimals `double`, integers intptr_t or, when wider, long
// long.
template <typename T>
using VL_NumberOf =
    std::conditional_t<std::is_floating_point<T>::value, double,
                       std::conditional_t<(sizeof(T) > sizeof(intptr_t)), long long, intptr_t>>;
template <typename A, typename B>
using VL_IfNumbers = std::enable_if_t<std::is_arithmetic<A>::value && std::is_arithmetic<B>::value,
                                      std::common_type_t<VL_NumberOf<A>, VL_NumberOf<B>>>;
// The variant type for pairs in which one side holds it or is an item of it.
template <typename A, typename B>
using VL_IfAny =
    std::enable_if_t<std::is_base_of<VL_Any, A>::value || std::is_base_of<VL_Any, B>::value,
                     VL_Any>;

template <typename T>
VL_IfNumbers<T, T> VL_Abs(T value)
{
    return value < T() ? -static_cast<VL_NumberOf<T>>(value) : static_cast<VL_NumberOf<T>>(value);
}
VL_Any VL_Abs(const VL_Any &value);

// The greatest (least) of any number of values.
template <typename A, typename B>
VL_IfNumbers<A, B> VL_Max(const A &a, const B &b)
{
    const VL_IfNumbers<A, B> left = a, right = b;
    return right > left ? right : left;
}
template <typename A, typename B>
VL_IfNumbers<A, B> VL_Min(const A &a, const B &b)
{
    const VL_IfNumbers<A, B> left = a, right = b;
    return right < left ? right : left;
}
VL_Any VL_GreaterAny(const VL_Any &left, const VL_Any &right);
VL_Any VL_LesserAny(const VL_Any &left, const VL_Any &right);
template <typename A, typename B>
VL_IfAny<A, B> VL_Max(const A &a, const B &b)
{
    return VL_GreaterAny(VL_Any(a), VL_Any(b));
}
template <typename A, typename B>
VL_IfAny<A, B> VL_Min(const A &a, const B &b)
{
    return VL_LesserAny(VL_Any(a), VL_Any(b));
}
template <typename A, typename B, typename C, typename... Rest>
auto VL_Max(const A &a, const B &b, const C &c, const Rest &...rest)
{
    return VL_Max(VL_Max(a, b), c, rest...);
}
template <typename A, typename B, typename C, typename... Rest>
auto VL_Min(const A &a, const B &b, const C &c, const Rest &...rest)
{
    return VL_Min(VL_Min(a, b), c, rest...);
}

// The remainder takes the sign of `value`; 0 for a zero divisor.
long long VL_ModIntegers(long long value, long long divisor);
double VL_ModDecimals(double value, double divisor);
VL_Any VL_ModAny(const VL_Any &value, const VL_Any &divisor);
template <typename A, typename B>
VL_IfNumbers<A, B> VL_Mod(const A &value, const B &divisor)
{
    if constexpr (std::is_floating_point<VL_IfNumbers<A, B>>::value)
        return VL_ModDecimals((double)value, (double)divisor);
    else
        return (VL_IfNumbers<A, B>)VL_ModIntegers(value, divisor);
}
template <typename A, typename B>
VL_IfAny<A, B> VL_Mod(const A &value, const B &divisor)
{
    return VL_ModAny(VL_Any(value), VL_Any(divisor));
}

// Halves are rounded away from zero.
double VL_Round(double value);
// The same with `digits` decimal places; a negative number rounds to tens, hundreds, ...
double VL_RoundTo(double value, intptr_t digits);
// What an integer cannot hold becomes the greatest or least integer; no number becomes 0.
intptr_t VL_Floor(double value);
intptr_t VL_Ceil(double value);
intptr_t VL_Truncate(double value);

double VL_Pow(double base, double exponent);
double VL_Sqrt(double value);
double VL_Log(double value);
double VL_Log10(double value);
// Angles are in radians.
double VL_Sin(double angle);
double VL_Cos(double angle);
double VL_Tan(double angle);
double VL_Asin(double value);
double VL_Acos(double value);
double VL_Atan(double value);

// An integer from `minimum` to `maximum`, both included, in either order. Until VL_RandomSeed is
// called every run gives other numbers; after it the same ones in every run.
intptr_t VL_Random(intptr_t minimum, intptr_t maximum);
intptr_t VL_Random(intptr_t maximum);
void VL_RandomSeed(intptr_t seed);

intptr_t VL_BitAnd(intptr_t left, intptr_t right);
intptr_t VL_BitOr(intptr_t left, intptr_t right);
intptr_t VL_BitXor(intptr_t left, intptr_t right);
intptr_t VL_BitNot(intptr_t value);
// Shifting to the right keeps the sign. A negative number of bits, and as many as an integer has or
// more, give 0.
intptr_t VL_ShiftLeft(intptr_t value, intptr_t bits);
intptr_t VL_ShiftRight(intptr_t value, intptr_t bits);
