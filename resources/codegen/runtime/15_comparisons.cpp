// Comparisons with a VL_Any on one side or both.
#include "15_comparisons.h"

namespace vl_comparisons {
namespace {

// Deeper values are equal by identity only.
const int kMostDepth = 200;

int orderOf(long long a, long long b)
{
    return a < b ? -1 : a > b ? 1 : 0;
}

int orderOf(double a, double b)
{
    return a < b ? -1 : a > b ? 1 : a == b ? 0 : 2;
}

int orderOf(const std::wstring &a, const std::wstring &b)
{
    const int order = a.compare(b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

int reversed(int order)
{
    return order == 2 ? 2 : -order;
}

// A number with a text: by value if all of the text is a number, else as texts.
int orderWithText(const VL_Any &number, const std::wstring &text)
{
    bool whole = false;
    const long long integer = VL_ReadInteger(text, &whole);
    if (whole && number.type != VL_Any::TypeDouble)
        return orderOf(number.intVal, integer);
    const double decimal = VL_ReadNumber(text, &whole);
    if (whole)
        return orderOf(number.doubleVal, decimal);
    return orderOf(number.toStr(), text);
}

int orderAt(const VL_Any &a, const VL_Any &b, int depth);

int orderOfArrays(const VL_Any &a, const VL_Any &b, int depth)
{
    if (a.arrPtr == b.arrPtr)
        return 0;
    if (depth >= kMostDepth)
        return 2;
    const std::vector<VL_Any> &left = *a.arrPtr;
    const std::vector<VL_Any> &right = *b.arrPtr;
    for (size_t i = 0; i < left.size() && i < right.size(); ++i) {
        const int order = orderAt(left[i], right[i], depth + 1);
        if (order != 0)
            return order;
    }
    return orderOf((long long)left.size(), (long long)right.size());
}

// Dictionaries are equal or not; they have no order.
int orderOfDictionaries(const VL_Any &a, const VL_Any &b, int depth)
{
    if (a.mapPtr == b.mapPtr)
        return 0;
    if (!a.mapPtr || !b.mapPtr || a.mapPtr->size() != b.mapPtr->size() || depth >= kMostDepth)
        return 2;
    auto right = b.mapPtr->begin();
    for (const auto &entry : *a.mapPtr) {
        if (entry.first != right->first || orderAt(entry.second, right->second, depth + 1) != 0)
            return 2;
        ++right;
    }
    return 0;
}

// An unset value with anything: it counts as 0, as an empty text and as an empty array.
int orderOfUnset(const VL_Any &other)
{
    if (other.isNumber())
        return orderOf(0.0, other.doubleVal);
    if (other.type == VL_Any::TypeNone)
        return 0;
    return other.toBool() ? -1 : 0;
}

int orderAt(const VL_Any &a, const VL_Any &b, int depth)
{
    if (a.type == VL_Any::TypeNone)
        return orderOfUnset(b);
    if (b.type == VL_Any::TypeNone)
        return reversed(orderOfUnset(a));
    if (a.isNumber() && b.isNumber()) {
        const bool decimal = a.type == VL_Any::TypeDouble || b.type == VL_Any::TypeDouble;
        return decimal ? orderOf(a.doubleVal, b.doubleVal) : orderOf(a.intVal, b.intVal);
    }
    if (a.type == VL_Any::TypeString && b.type == VL_Any::TypeString)
        return orderOf(a.strVal, b.strVal);
    if (a.isNumber() && b.type == VL_Any::TypeString)
        return orderWithText(a, b.strVal);
    if (a.type == VL_Any::TypeString && b.isNumber())
        return reversed(orderWithText(b, a.strVal));
    if (a.type != b.type)
        return 2;
    if (a.type == VL_Any::TypeArray)
        return orderOfArrays(a, b, depth);
    return a.type == VL_Any::TypeDict ? orderOfDictionaries(a, b, depth) : VL_AnyBytesOrder(a, b);
}

} // namespace
} // namespace vl_comparisons

int VL_AnyOrder(const VL_Any &a, const VL_Any &b)
{
    return vl_comparisons::orderAt(a, b, 0);
}

int VL_AnyOrder(const VL_Any &a, long long b)
{
    if (a.type == VL_Any::TypeInt || a.type == VL_Any::TypeBool || a.type == VL_Any::TypeNone)
        return vl_comparisons::orderOf(a.intVal, b);
    return a.type == VL_Any::TypeDouble ? vl_comparisons::orderOf(a.doubleVal, (double)b)
                                        : vl_comparisons::orderAt(a, VL_Any(b), 0);
}

int VL_AnyOrder(const VL_Any &a, double b)
{
    return a.isNumber() ? vl_comparisons::orderOf(a.doubleVal, b)
                        : vl_comparisons::orderAt(a, VL_Any(b), 0);
}

int VL_AnyOrder(const VL_Any &a, bool b)
{
    if (a.isNumber())
        return vl_comparisons::orderOf(a.doubleVal, b ? 1.0 : 0.0);
    return vl_comparisons::orderOf((long long)a.toBool(), (long long)b);
}

bool operator==(const VL_Any &a, const VL_Any &b)
{
    return VL_AnyOrder(a, b) == 0;
}

bool operator!=(const VL_Any &a, const VL_Any &b)
{
    return VL_AnyOrder(a, b) != 0;
}

bool operator<(const VL_Any &a, const VL_Any &b)
{
    return VL_AnyOrder(a, b) == -1;
}

bool operator>(const VL_Any &a, const VL_Any &b)
{
    return VL_AnyOrder(a, b) == 1;
}

bool operator<=(const VL_Any &a, const VL_Any &b)
{
    return VL_AnyOrder(a, b) <= 0;
}

bool operator>=(const VL_Any &a, const VL_Any &b)
{
    const int order = VL_AnyOrder(a, b);
    return order == 0 || order == 1;
}
