// Commands on arrays. Indices count from 0; what is out of range is left alone or reads as unset.
#include "55_arrays.h"

#include <algorithm>
#include <new>
#include <unordered_set>

#include "46_numbers.h"

namespace vl_arrays {
namespace {

const int kMostDepth = 200;

template <typename V>
bool inRange(const V &items, intptr_t index)
{
    return index >= 0 && (size_t)index < items.size();
}

int length(size_t size)
{
    return size > 0x7FFFFFFF ? 0x7FFFFFFF : (int)size;
}

// A negative index counts from the end; it may stay negative.
intptr_t fromEnd(size_t size, intptr_t index)
{
    return index < 0 ? index + (intptr_t)size : index;
}

// By this text items are told apart.
std::wstring identity(const VL_Any &item)
{
    if (item.type == VL_Any::TypeDict)
        return VL_GenerateJsonFromAny(item);
    return item.type == VL_Any::TypeArray ? VL_ArrayText(*item.arrPtr, kMostDepth) : item.toStr();
}

int sortRank(const VL_Any &v)
{
    if (v.isNumber())
        return v.doubleVal == v.doubleVal ? 1 : 2;
    switch (v.type) {
    case VL_Any::TypeNone:
        return 0;
    case VL_Any::TypeString:
        return 3;
    case VL_Any::TypeArray:
        return 4;
    default:
        return v.type == VL_Any::TypeBytes ? 5 : 6;
    }
}

// A total order, which VL_AnyOrder is not: sorting needs one.
int sortOrder(const VL_Any &a, const VL_Any &b, int depth)
{
    const int rank = sortRank(a);
    if (rank != sortRank(b))
        return rank < sortRank(b) ? -1 : 1;
    if (rank == 0 || rank == 2 || rank == 6 || depth > kMostDepth)
        return 0;
    if (rank != 4)
        return VL_AnyOrder(a, b);
    const VL_Array &left = *a.arrPtr;
    const VL_Array &right = *b.arrPtr;
    for (size_t i = 0; i < left.size() && i < right.size(); ++i) {
        const int order = sortOrder(left[i], right[i], depth + 1);
        if (order != 0)
            return order;
    }
    return left.size() < right.size() ? -1 : left.size() > right.size() ? 1 : 0;
}

bool readNumber(const VL_Any &item, double &value)
{
    bool isNumber = item.isNumber();
    value = item.doubleVal;
    if (item.type == VL_Any::TypeString)
        value = VL_ReadNumber(item.strVal, &isNumber);
    return isNumber;
}

std::vector<double> numbers(const VL_Array &arr)
{
    std::vector<double> values;
    values.reserve(arr.size());
    for (const VL_Any &item : arr) {
        double value = 0;
        if (readNumber(item, value))
            values.push_back(value);
    }
    return values;
}

double sum(const std::vector<double> &values)
{
    // With a running correction, so that a long array of decimals loses no digits.
    double total = 0;
    double lost = 0;
    for (const double value : values) {
        const double next = total + value;
        lost +=
            std::fabs(total) >= std::fabs(value) ? (total - next) + value : (value - next) + total;
        total = next;
    }
    return std::isfinite(lost) ? total + lost : total;
}

// The item that goes first (sign -1) or last (sign 1); numbers go before everything else.
VL_Any extreme(const VL_Array &arr, int sign)
{
    const VL_Any *best = nullptr;
    bool bestIsNumber = false;
    double bestValue = 0;
    for (const VL_Any &item : arr) {
        double value = 0;
        const bool isNumber = readNumber(item, value) && value == value;
        bool better = !best || (isNumber && !bestIsNumber);
        if (!better && isNumber == bestIsNumber) {
            better = isNumber ? (value - bestValue) * sign > 0 : sortOrder(item, *best, 0) == sign;
        }
        if (better) {
            best = &item;
            bestIsNumber = isNumber;
            bestValue = value;
        }
    }
    return best ? *best : VL_Any();
}

} // namespace
} // namespace vl_arrays

int VL_ArrayLen(const VL_Array &arr)
{
    return vl_arrays::length(arr.size());
}

int VL_ArrayLen(const VL_Array2D &arr)
{
    return vl_arrays::length(arr.size());
}

int VL_ArrayLen(const VL_Array3D &arr)
{
    return vl_arrays::length(arr.size());
}

int VL_ArrayLen(const VL_Any &value)
{
    switch (value.type) {
    case VL_Any::TypeString:
        return vl_arrays::length(value.strVal.size());
    case VL_Any::TypeArray:
        return vl_arrays::length(value.arrPtr->size());
    case VL_Any::TypeBytes:
        return vl_arrays::length(value.bytesPtr->size());
    default:
        return 1;
    }
}

int VL_ArrayLen(const std::wstring &text)
{
    return vl_arrays::length(text.size());
}

int VL_ArrayLen(const VL_ByteArray &bytes)
{
    return vl_arrays::length(bytes.size());
}

intptr_t VL_LengthEx(const VL_Array &arr)
{
    return VL_ArrayLen(arr);
}

intptr_t VL_LengthEx(const VL_Array2D &arr)
{
    return VL_ArrayLen(arr);
}

intptr_t VL_LengthEx(const VL_Array3D &arr)
{
    return VL_ArrayLen(arr);
}

intptr_t VL_LengthEx(const VL_Any &value)
{
    return value.type == VL_Any::TypeDict ? VL_DictCount(value) : VL_ArrayLen(value);
}

intptr_t VL_LengthEx(const std::wstring &text)
{
    return VL_ArrayLen(text);
}

intptr_t VL_LengthEx(const VL_ByteArray &bytes)
{
    return VL_ArrayLen(bytes);
}

VL_Any VL_ArrayGet(const VL_Array &arr, intptr_t index, const VL_Any &fallback)
{
    return vl_arrays::inRange(arr, index) ? arr[(size_t)index] : fallback;
}

VL_Any VL_ArrayGet(const VL_Array2D &arr, intptr_t index, const VL_Any &fallback)
{
    return vl_arrays::inRange(arr, index) ? VL_Any(arr[(size_t)index]) : fallback;
}

VL_Any VL_ArrayGet(const VL_Array3D &arr, intptr_t index, const VL_Any &fallback)
{
    return vl_arrays::inRange(arr, index) ? VL_Any(arr[(size_t)index]) : fallback;
}

VL_Any VL_ArrayGet(const VL_Any &value, intptr_t index, const VL_Any &fallback)
{
    switch (value.type) {
    case VL_Any::TypeArray:
        return VL_ArrayGet(*value.arrPtr, index, fallback);
    case VL_Any::TypeString:
        return VL_ArrayGet(value.strVal, index, fallback);
    case VL_Any::TypeBytes:
        return VL_ArrayGet(*value.bytesPtr, index, fallback);
    default:
        return value;
    }
}

VL_Any VL_ArrayGet(const std::wstring &text, intptr_t index, const VL_Any &fallback)
{
    return vl_arrays::inRange(text, index) ? VL_Any(text[(size_t)index]) : fallback;
}

VL_Any VL_ArrayGet(const VL_ByteArray &bytes, intptr_t index, const VL_Any &fallback)
{
    return vl_arrays::inRange(bytes, index) ? VL_Any((int)bytes[(size_t)index]) : fallback;
}

VL_Any VL_ArrayGet3(const VL_Array &arr, intptr_t index, const VL_Any &fallback)
{
    return VL_ArrayGet(arr, vl_arrays::fromEnd(arr.size(), index), fallback);
}

void VL_ArraySet(VL_Array &arr, intptr_t index, const VL_Any &value)
{
    // The value may be an item of the array, which growing moves.
    const VL_Any kept(value);
    VL_ItemForWriting(arr, vl_arrays::fromEnd(arr.size(), index)) = kept;
}

void VL_ArrayAppend(VL_Array &arr, VL_Any &&value)
{
    arr.push_back(std::move(value));
}

void VL_ArrayAppend(VL_Any &arr, VL_Any &&value)
{
    arr.items().push_back(std::move(value));
}

void VL_ArrayAppend(VL_Array2D &arr, VL_Any &&row)
{
    arr.push_back(row);
}

void VL_ArrayAppend(VL_Array3D &arr, VL_Any &&layer)
{
    arr.push_back(layer);
}

VL_Any VL_ArrayPop(VL_Array &arr)
{
    if (arr.empty())
        return VL_Any();
    VL_Any last = std::move(arr.back());
    arr.pop_back();
    return last;
}

void VL_ArrayInsert(VL_Array &arr, intptr_t index, const VL_Any &value)
{
    intptr_t at = vl_arrays::fromEnd(arr.size(), index);
    at = at < 0 ? 0 : at > (intptr_t)arr.size() ? (intptr_t)arr.size() : at;
    arr.insert(arr.begin() + at, VL_Any(value));
}

void VL_ArrayRemove(VL_Array &arr, intptr_t index, intptr_t count)
{
    if (count <= 0 || !vl_arrays::inRange(arr, index))
        return;
    const intptr_t rest = (intptr_t)arr.size() - index;
    const auto first = arr.begin() + index;
    arr.erase(first, first + (count < rest ? count : rest));
}

void VL_ArrayClear(VL_Array &arr)
{
    arr.clear();
}

void VL_ArrayClear(VL_Array2D &arr)
{
    arr.clear();
}

void VL_ArrayClear(VL_Array3D &arr)
{
    arr.clear();
}

void VL_ArrayFill(VL_Array &arr, const VL_Any &value, intptr_t start, intptr_t count)
{
    const VL_Any kept(value);
    const intptr_t first = vl_arrays::fromEnd(arr.size(), start);
    if (first < 0 || (count < 0 && first >= (intptr_t)arr.size()) || count == 0)
        return;
    intptr_t end = (intptr_t)arr.size();
    if (count > 0) {
        if (count > INTPTR_MAX - first)
            return;
        end = first + count;
        if ((size_t)end > arr.size() && !vl_arrays::inRange(arr, end - 1)) {
            VL_ItemForWriting(arr, end - 1);
            end = (size_t)end > arr.size() ? (intptr_t)arr.size() : end;
        }
    }
    for (intptr_t i = first; i < end; ++i)
        arr[(size_t)i] = kept;
}

void VL_ArraySwap(VL_Array &arr, intptr_t first, intptr_t second)
{
    const intptr_t a = vl_arrays::fromEnd(arr.size(), first);
    const intptr_t b = vl_arrays::fromEnd(arr.size(), second);
    if (a != b && vl_arrays::inRange(arr, a) && vl_arrays::inRange(arr, b))
        std::swap(arr[(size_t)a], arr[(size_t)b]);
}

VL_Array VL_ArraySlice(const VL_Array &arr, intptr_t start, intptr_t end)
{
    const intptr_t size = (intptr_t)arr.size();
    const intptr_t from = std::max<intptr_t>(0, vl_arrays::fromEnd(arr.size(), start));
    const intptr_t to = std::min(size, vl_arrays::fromEnd(arr.size(), end));
    return from < to ? VL_Array(arr.begin() + from, arr.begin() + to) : VL_Array();
}

VL_Array VL_ArrayConcat(const VL_Array &first, const VL_Array &second)
{
    VL_Array joined;
    joined.reserve(first.size() + second.size());
    joined.insert(joined.end(), first.begin(), first.end());
    joined.insert(joined.end(), second.begin(), second.end());
    return joined;
}

VL_Array VL_ArrayCopy(const VL_Array &arr)
{
    return arr;
}

VL_Any VL_ArrayFirst(const VL_Array &arr)
{
    return arr.empty() ? VL_Any() : arr.front();
}

VL_Any VL_ArrayLast(const VL_Array &arr)
{
    return arr.empty() ? VL_Any() : arr.back();
}

intptr_t VL_ArrayFind(const VL_Array &arr, const VL_Any &value, intptr_t start)
{
    const intptr_t from = vl_arrays::fromEnd(arr.size(), start);
    for (size_t i = from < 0 ? 0 : (size_t)from; i < arr.size(); ++i) {
        if (arr[i] == value)
            return (intptr_t)i;
    }
    return -1;
}

bool VL_ArrayContains(const VL_Array &arr, const VL_Any &value)
{
    return VL_ArrayFind(arr, value) >= 0;
}

intptr_t VL_ArrayCount(const VL_Array &arr, const VL_Any &value)
{
    const std::wstring text = vl_arrays::identity(value);
    intptr_t count = 0;
    for (const VL_Any &item : arr)
        count += vl_arrays::identity(item) == text ? 1 : 0;
    return count;
}

void VL_ArraySort(VL_Array &arr, bool descending)
{
    std::stable_sort(arr.begin(), arr.end(), [descending](const VL_Any &a, const VL_Any &b) {
        return vl_arrays::sortOrder(a, b, 0) == (descending ? 1 : -1);
    });
}

void VL_ArrayReverse(VL_Array &arr)
{
    std::reverse(arr.begin(), arr.end());
}

void VL_ArrayUnique(VL_Array &arr)
{
    std::unordered_set<std::wstring> seen;
    size_t kept = 0;
    for (size_t i = 0; i < arr.size(); ++i) {
        if (!seen.insert(vl_arrays::identity(arr[i])).second)
            continue;
        if (kept != i)
            arr[kept] = std::move(arr[i]);
        ++kept;
    }
    arr.resize(kept);
}

std::wstring VL_ArrayJoin(const VL_Array &arr, const std::wstring &separator)
{
    std::wstring text;
    bool first = true;
    for (const VL_Any &item : arr) {
        if (!first)
            text += separator;
        first = false;
        text += item.type == VL_Any::TypeNone ? std::wstring() : VL_ToOutputStr(item);
    }
    return text;
}

void VL_PrintArray(const VL_Array &arr)
{
    VL_Print(VL_ToOutputStr(arr));
}

double VL_ArraySum(const VL_Array &arr)
{
    return vl_arrays::sum(vl_arrays::numbers(arr));
}

double VL_ArrayAverage(const VL_Array &arr)
{
    const std::vector<double> values = vl_arrays::numbers(arr);
    return values.empty() ? 0 : vl_arrays::sum(values) / (double)values.size();
}

VL_Any VL_ArrayMax(const VL_Array &arr)
{
    return vl_arrays::extreme(arr, 1);
}

VL_Any VL_ArrayMin(const VL_Array &arr)
{
    return vl_arrays::extreme(arr, -1);
}

double VL_ArrayVariance(const VL_Array &arr)
{
    std::vector<double> values = vl_arrays::numbers(arr);
    if (values.size() < 2)
        return 0;
    const double average = vl_arrays::sum(values) / (double)values.size();
    for (double &value : values)
        value = (value - average) * (value - average);
    return vl_arrays::sum(values) / (double)values.size();
}

double VL_ArrayStdDev(const VL_Array &arr)
{
    return std::sqrt(VL_ArrayVariance(arr));
}

VL_Any VL_ArrayRandom(const VL_Array &arr)
{
    return arr.empty() ? VL_Any() : arr[(size_t)VL_Random(0, (intptr_t)arr.size() - 1)];
}

void VL_ArrayShuffle(VL_Array &arr)
{
    for (size_t i = arr.size(); i > 1; --i) {
        const size_t other = (size_t)VL_Random(0, (intptr_t)i - 1);
        if (other != i - 1)
            std::swap(arr[i - 1], arr[other]);
    }
}

void VL_ArraySet(VL_Any &arr, intptr_t index, const VL_Any &value)
{
    const VL_Any kept(value);
    VL_ArraySet(arr.items(), index, kept);
}

VL_Any VL_ArrayPop(VL_Any &arr)
{
    return VL_ArrayPop(arr.items());
}

void VL_ArrayInsert(VL_Any &arr, intptr_t index, const VL_Any &value)
{
    const VL_Any kept(value);
    VL_ArrayInsert(arr.items(), index, kept);
}

void VL_ArrayRemove(VL_Any &arr, intptr_t index, intptr_t count)
{
    VL_ArrayRemove(arr.items(), index, count);
}

void VL_ArrayClear(VL_Any &arr)
{
    arr = VL_Any(VL_Array());
}

void VL_ArrayFill(VL_Any &arr, const VL_Any &value, intptr_t start, intptr_t count)
{
    const VL_Any kept(value);
    VL_ArrayFill(arr.items(), kept, start, count);
}

void VL_ArraySwap(VL_Any &arr, intptr_t first, intptr_t second)
{
    VL_ArraySwap(arr.items(), first, second);
}

void VL_ArraySort(VL_Any &arr, bool descending)
{
    VL_ArraySort(arr.items(), descending);
}

void VL_ArrayReverse(VL_Any &arr)
{
    VL_ArrayReverse(arr.items());
}

void VL_ArrayUnique(VL_Any &arr)
{
    VL_ArrayUnique(arr.items());
}

void VL_ArrayShuffle(VL_Any &arr)
{
    VL_ArrayShuffle(arr.items());
}
