// Arithmetic with a VL_Any on one side, and joining text with everything else.
#include "14_operators.h"

namespace vl_operators {
namespace {

const size_t kLongestAddress = 1024;

VL_Any ofNumbers(const VL_Any &a, const VL_Any &b, char operation)
{
    if (a.type == VL_Any::TypeDouble || b.type == VL_Any::TypeDouble) {
        switch (operation) {
        case '+':
            return VL_Any(a.doubleVal + b.doubleVal);
        case '-':
            return VL_Any(a.doubleVal - b.doubleVal);
        case '*':
            return VL_Any(a.doubleVal * b.doubleVal);
        case '/':
            return VL_Any(a.doubleVal / b.doubleVal);
        default:
            return VL_Any(b.doubleVal == 0 ? 0.0 : std::fmod(a.doubleVal, b.doubleVal));
        }
    }
    // Unsigned, since these may run over.
    const unsigned long long left = (unsigned long long)a.intVal;
    const unsigned long long right = (unsigned long long)b.intVal;
    switch (operation) {
    case '+':
        return VL_Any((long long)(left + right));
    case '-':
        return VL_Any((long long)(left - right));
    case '*':
        return VL_Any((long long)(left * right));
    case '/':
        return VL_Any(VL_IntQuotient(a.intVal, b.intVal));
    default:
        return VL_Any(VL_IntRemainder(a.intVal, b.intVal));
    }
}

bool endsWith(const std::wstring &text, const wchar_t *lowerEnd, size_t length)
{
    if (text.size() < length)
        return false;
    for (size_t i = 0; i < length; ++i) {
        const wchar_t c = text[text.size() - length + i];
        if ((c >= L'A' && c <= L'Z' ? c + 32 : c) != lowerEnd[i])
            return false;
    }
    return true;
}

std::wstring joinedInteger(bool isOffset, long long v)
{
    if (!isOffset)
        return VL_FormatInteger(v);
    wchar_t offset[32];
    swprintf(offset, 32, L"+0x%llX", (unsigned long long)(uintptr_t)(intptr_t)v);
    return offset;
}

} // namespace
} // namespace vl_operators

long long VL_IntQuotient(long long a, long long b)
{
    if (b == 0)
        return 0;
    // The one quotient that does not fit stays what it was.
    return b == -1 ? (long long)(0 - (unsigned long long)a) : a / b;
}

long long VL_IntRemainder(long long a, long long b)
{
    return b == 0 || b == -1 ? 0 : a % b;
}

VL_Any operator+(const VL_Any &a, const VL_Any &b)
{
    if (a.type == VL_Any::TypeString || b.type == VL_Any::TypeString)
        return VL_Any(a.toStr() + b.toStr());
    if (a.type == VL_Any::TypeArray && b.type == VL_Any::TypeArray) {
        std::vector<VL_Any> joined(*a.arrPtr);
        joined.insert(joined.end(), b.arrPtr->begin(), b.arrPtr->end());
        return VL_Any(std::move(joined));
    }
    if (a.type == VL_Any::TypeBytes && b.type == VL_Any::TypeBytes)
        return VL_AnyBytesJoin(a, b);
    return vl_operators::ofNumbers(a, b, '+');
}

VL_Any operator-(const VL_Any &a, const VL_Any &b)
{
    return vl_operators::ofNumbers(a, b, '-');
}

VL_Any operator*(const VL_Any &a, const VL_Any &b)
{
    return vl_operators::ofNumbers(a, b, '*');
}

VL_Any operator/(const VL_Any &a, const VL_Any &b)
{
    return vl_operators::ofNumbers(a, b, '/');
}

VL_Any operator%(const VL_Any &a, const VL_Any &b)
{
    return vl_operators::ofNumbers(a, b, '%');
}

VL_Any operator-(const VL_Any &v)
{
    return v.type == VL_Any::TypeDouble ? VL_Any(-v.doubleVal)
                                        : VL_Any((long long)(0 - (unsigned long long)v.intVal));
}

VL_Any operator+(const VL_Any &v)
{
    return v;
}

double VL_Quotient(double a, double b)
{
    return b == 0 ? 0 : a / b;
}

std::wstring VL_Str(const std::wstring &v)
{
    return v;
}

std::wstring VL_Str(wchar_t v)
{
    return std::wstring(1, v);
}

std::wstring VL_Str(const wchar_t *v)
{
    return v ? v : L"";
}

std::wstring VL_Str(long long v)
{
    return VL_FormatInteger(v);
}

std::wstring VL_Str(double v)
{
    return VL_FormatDouble(v);
}

std::wstring VL_Str(float v)
{
    wchar_t buffer[80];
    swprintf(buffer, 80, L"%.9g", (double)v);
    return buffer;
}

std::wstring VL_Str(const VL_Any &v)
{
    return v.toStr();
}

std::wstring VL_Str(const void *handle)
{
    return VL_FormatInteger((long long)reinterpret_cast<intptr_t>(handle));
}

std::wstring VL_AnyToString(const VL_Any &v)
{
    return v.toStr();
}

std::wstring operator+(const std::wstring &a, const VL_Any &b)
{
    return a + b.toStr();
}

std::wstring operator+(const VL_Any &a, const std::wstring &b)
{
    return a.toStr() + b;
}

std::wstring operator+(const wchar_t *a, const VL_Any &b)
{
    return VL_Str(a) + b.toStr();
}

std::wstring operator+(const VL_Any &a, const wchar_t *b)
{
    return a.toStr() + VL_Str(b);
}

std::wstring operator+(const std::wstring &a, double b)
{
    return a + VL_FormatDouble(b);
}

std::wstring operator+(double a, const std::wstring &b)
{
    return VL_FormatDouble(a) + b;
}

std::wstring operator+(const std::wstring &a, float b)
{
    return a + VL_FormatFloat(b);
}

std::wstring operator+(float a, const std::wstring &b)
{
    return VL_FormatFloat(a) + b;
}

bool VL_IsQmbExprChainLhs(const std::wstring &lhs)
{
    return vl_operators::endsWith(lhs, L".exe", 4) || vl_operators::endsWith(lhs, L".dll", 4) ||
           lhs.find(L"+0x") != std::wstring::npos || lhs.find(L"+0X") != std::wstring::npos;
}

std::wstring operator+(const std::wstring &a, long long b)
{
    return a + vl_operators::joinedInteger(VL_IsQmbExprChainLhs(a), b);
}

std::wstring &VL_AppendInteger(std::wstring &text, long long v)
{
    const bool isShort = text.size() <= vl_operators::kLongestAddress;
    return text.append(vl_operators::joinedInteger(isShort && VL_IsQmbExprChainLhs(text), v));
}

std::wstring operator+(long long a, const std::wstring &b)
{
    return VL_FormatInteger(a) + b;
}

std::wstring &operator+=(std::wstring &a, const VL_Any &b)
{
    return a.append(b.toStr());
}
