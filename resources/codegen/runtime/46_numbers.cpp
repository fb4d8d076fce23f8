// Mathematics, rounding, random numbers and bit operations.
#include "46_numbers.h"

#include <limits>

namespace vl_numbers {
namespace {

const intptr_t IntegerBits = (intptr_t)sizeof(intptr_t) * 8;

// 0 in the place of what is not a number.
double defined(double value)
{
    return std::isnan(value) ? 0 : value;
}

// Texts are read as decimals.
bool isDecimal(const VL_Any &value)
{
    return value.type == VL_Any::TypeDouble || value.type == VL_Any::TypeString;
}

intptr_t toInteger(double value)
{
    if (std::isnan(value))
        return 0;
    // The least integer is exact as a decimal, the greatest is not.
    const double least = (double)(std::numeric_limits<intptr_t>::min)();
    if (value < least)
        return (std::numeric_limits<intptr_t>::min)();
    return value >= -least ? (std::numeric_limits<intptr_t>::max)() : (intptr_t)value;
}

// Of the C library's family, but one sequence for all threads of the program.
volatile LONG g_randomState = 0;
volatile LONG g_isSeeded = 0;

void seedOnce()
{
    if (InterlockedCompareExchange(&g_isSeeded, 1, 0) != 0)
        return;
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    const DWORD mixed = counter.LowPart * 2654435761u ^ GetCurrentProcessId() * 40503u ^
                        (DWORD)time(NULL) ^ GetTickCount();
    InterlockedExchange(&g_randomState, (LONG)mixed);
}

// 15 bits, as rand() gives them.
unsigned nextRandom()
{
    for (;;) {
        const LONG old = g_randomState;
        const LONG fresh = (LONG)((DWORD)old * 214013u + 2531011u);
        if (InterlockedCompareExchange(&g_randomState, fresh, old) == old)
            return ((DWORD)fresh >> 16) & 0x7FFF;
    }
}

const unsigned long long RandomValues = 0x8000;

unsigned long long nextRandomBelow(unsigned long long count)
{
    if (count != 0 && count <= RandomValues)
        return nextRandom() % count;
    unsigned long long wide = 0;
    for (int i = 0; i < 5; ++i)
        wide = wide << 15 ^ nextRandom();
    return count == 0 ? wide : wide % count;
}

} // namespace
} // namespace vl_numbers

VL_Any VL_Abs(const VL_Any &value)
{
    if (vl_numbers::isDecimal(value))
        return VL_Any(std::fabs(VL_AnyToNumber(value)));
    return VL_Any(VL_Abs(value.toInt()));
}

VL_Any VL_GreaterAny(const VL_Any &left, const VL_Any &right)
{
    return VL_AnyToNumber(right) > VL_AnyToNumber(left) ? right : left;
}

VL_Any VL_LesserAny(const VL_Any &left, const VL_Any &right)
{
    return VL_AnyToNumber(right) < VL_AnyToNumber(left) ? right : left;
}

long long VL_ModIntegers(long long value, long long divisor)
{
    // The least integer divided by -1 does not fit.
    return divisor == 0 || divisor == -1 ? 0 : value % divisor;
}

double VL_ModDecimals(double value, double divisor)
{
    return divisor == 0 ? 0 : vl_numbers::defined(std::fmod(value, divisor));
}

VL_Any VL_ModAny(const VL_Any &value, const VL_Any &divisor)
{
    if (vl_numbers::isDecimal(value) || vl_numbers::isDecimal(divisor))
        return VL_Any(VL_ModDecimals(VL_AnyToNumber(value), VL_AnyToNumber(divisor)));
    return VL_Any(VL_ModIntegers(value.toInt(), divisor.toInt()));
}

double VL_Round(double value)
{
    // std::round() of this C library takes the decimal just below 0.5 for a half.
    const double whole = std::trunc(vl_numbers::defined(value));
    return std::fabs(value - whole) >= 0.5 ? whole + std::copysign(1.0, value) : whole;
}

double VL_RoundTo(double value, intptr_t digits)
{
    if (digits > 15 || std::isnan(value) || std::isinf(value))
        return vl_numbers::defined(value);
    if (digits < -308)
        return 0;
    const double power = std::pow(10.0, std::fabs((double)digits));
    double scaled = digits < 0 ? value / power : value * power;
    // A decimal this great has no more than the places asked for.
    if (std::fabs(scaled) >= 4503599627370496.0)
        return value;
    // 1.005 is stored a little too small; a person rounds the digits that are written.
    if (std::fabs(scaled) < 1e13)
        scaled *= 1 + 2 * std::numeric_limits<double>::epsilon();
    const double rounded = VL_Round(scaled);
    return digits < 0 ? rounded * power : rounded / power;
}

intptr_t VL_Floor(double value)
{
    return vl_numbers::toInteger(std::floor(value));
}

intptr_t VL_Ceil(double value)
{
    return vl_numbers::toInteger(std::ceil(value));
}

intptr_t VL_Truncate(double value)
{
    return vl_numbers::toInteger(value);
}

double VL_Pow(double base, double exponent)
{
    return vl_numbers::defined(std::pow(base, exponent));
}

double VL_Sqrt(double value)
{
    return value > 0 ? std::sqrt(value) : 0;
}

double VL_Log(double value)
{
    return value > 0 ? std::log(value) : 0;
}

double VL_Log10(double value)
{
    return value > 0 ? std::log10(value) : 0;
}

double VL_Sin(double angle)
{
    return vl_numbers::defined(std::sin(angle));
}

double VL_Cos(double angle)
{
    return vl_numbers::defined(std::cos(angle));
}

double VL_Tan(double angle)
{
    return vl_numbers::defined(std::tan(angle));
}

double VL_Asin(double value)
{
    return vl_numbers::defined(std::asin(value));
}

double VL_Acos(double value)
{
    return vl_numbers::defined(std::acos(value));
}

double VL_Atan(double value)
{
    return vl_numbers::defined(std::atan(value));
}

intptr_t VL_Random(intptr_t minimum, intptr_t maximum)
{
    vl_numbers::seedOnce();
    if (minimum > maximum)
        std::swap(minimum, maximum);
    // The count of all 64-bit integers wraps to 0, which nextRandomBelow() knows.
    const unsigned long long count = (unsigned long long)maximum - (unsigned long long)minimum + 1;
    return (intptr_t)((unsigned long long)minimum + vl_numbers::nextRandomBelow(count));
}

intptr_t VL_Random(intptr_t maximum)
{
    return VL_Random(0, maximum);
}

void VL_RandomSeed(intptr_t seed)
{
    InterlockedExchange(&vl_numbers::g_isSeeded, 1);
    InterlockedExchange(&vl_numbers::g_randomState, (LONG)seed);
}

intptr_t VL_BitAnd(intptr_t left, intptr_t right)
{
    return left & right;
}

intptr_t VL_BitOr(intptr_t left, intptr_t right)
{
    return left | right;
}

intptr_t VL_BitXor(intptr_t left, intptr_t right)
{
    return left ^ right;
}

intptr_t VL_BitNot(intptr_t value)
{
    return ~value;
}

intptr_t VL_ShiftLeft(intptr_t value, intptr_t bits)
{
    if (bits < 0 || bits >= vl_numbers::IntegerBits)
        return 0;
    return (intptr_t)((uintptr_t)value << bits);
}

intptr_t VL_ShiftRight(intptr_t value, intptr_t bits)
{
    return bits < 0 || bits >= vl_numbers::IntegerBits ? 0 : value >> bits;
}
