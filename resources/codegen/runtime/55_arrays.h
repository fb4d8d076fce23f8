// Commands on arrays. Indices count from 0; what is out of range is left alone or reads as unset.
#pragma once
#include "32_item_access.h"

// Number of items; of rows, of layers, of characters, of bytes; 1 for a single value in a VL_Any.
int VL_ArrayLen(const VL_Array &arr);
int VL_ArrayLen(const VL_Array2D &arr);
int VL_ArrayLen(const VL_Array3D &arr);
int VL_ArrayLen(const VL_Any &value);
int VL_ArrayLen(const std::wstring &text);
int VL_ArrayLen(const VL_ByteArray &bytes);
// The same for every type, in the width of an integer.
intptr_t VL_LengthEx(const VL_Array &arr);
intptr_t VL_LengthEx(const VL_Array2D &arr);
intptr_t VL_LengthEx(const VL_Array3D &arr);
intptr_t VL_LengthEx(const VL_Any &value);
intptr_t VL_LengthEx(const std::wstring &text);
intptr_t VL_LengthEx(const VL_ByteArray &bytes);

// One item; `fallback` for an index out of range, which a negative one is. Of a text a character,
// of a single value the value itself.
VL_Any VL_ArrayGet(const VL_Array &arr, intptr_t index, const VL_Any &fallback = VL_Any());
VL_Any VL_ArrayGet(const VL_Array2D &arr, intptr_t index, const VL_Any &fallback = VL_Any());
VL_Any VL_ArrayGet(const VL_Array3D &arr, intptr_t index, const VL_Any &fallback = VL_Any());
VL_Any VL_ArrayGet(const VL_Any &value, intptr_t index, const VL_Any &fallback = VL_Any());
VL_Any VL_ArrayGet(const std::wstring &text, intptr_t index, const VL_Any &fallback = L"");
VL_Any VL_ArrayGet(const VL_ByteArray &bytes, intptr_t index, const VL_Any &fallback = VL_Any());
// The same, where a negative index counts from the end.
VL_Any VL_ArrayGet3(const VL_Array &arr, intptr_t index, const VL_Any &fallback = VL_Any());
// Sets an item; a negative index counts from the end, one past the end grows the array.
void VL_ArraySet(VL_Array &arr, intptr_t index, const VL_Any &value);
void VL_ArraySet(VL_Any &arr, intptr_t index, const VL_Any &value);

// Appends. Of a VL_Any that holds no array a new array is made.
void VL_ArrayAppend(VL_Array &arr, VL_Any &&value);
void VL_ArrayAppend(VL_Any &arr, VL_Any &&value);
// Appends a row.
void VL_ArrayAppend(VL_Array2D &arr, VL_Any &&row);
// Appends a layer.
void VL_ArrayAppend(VL_Array3D &arr, VL_Any &&layer);
template <typename A, typename... Values>
inline void VL_ArrayPush(A &arr, const Values &...values)
{
    (void)std::initializer_list<int>{(VL_ArrayAppend(arr, VL_Any(values)), 0)...};
}
// The last item, taken out; unset when there is none.
VL_Any VL_ArrayPop(VL_Array &arr);
// Puts the value before the item at `index`; at the end for an index past it.
void VL_ArrayInsert(VL_Array &arr, intptr_t index, const VL_Any &value);
void VL_ArrayRemove(VL_Array &arr, intptr_t index, intptr_t count = 1);
void VL_ArrayClear(VL_Array &arr);
void VL_ArrayClear(VL_Array2D &arr);
void VL_ArrayClear(VL_Array3D &arr);
// Sets all items, or `count` of them from `start` on, where the array grows to hold them.
void VL_ArrayFill(VL_Array &arr, const VL_Any &value, intptr_t start = 0, intptr_t count = -1);
// Negative indices count from the end; nothing happens when one is out of range.
void VL_ArraySwap(VL_Array &arr, intptr_t first, intptr_t second);

// Items from `start` up to, and without, `end`. Negative ones count from the end.
VL_Array VL_ArraySlice(const VL_Array &arr, intptr_t start, intptr_t end = 2147483647);
VL_Array VL_ArrayConcat(const VL_Array &first, const VL_Array &second);
VL_Array VL_ArrayCopy(const VL_Array &arr);
VL_Any VL_ArrayFirst(const VL_Array &arr);
VL_Any VL_ArrayLast(const VL_Array &arr);

// The index of the first equal item from `start` on; -1 when there is none.
intptr_t VL_ArrayFind(const VL_Array &arr, const VL_Any &value, intptr_t start = 0);
bool VL_ArrayContains(const VL_Array &arr, const VL_Any &value);
// How many items have the same text as the value.
intptr_t VL_ArrayCount(const VL_Array &arr, const VL_Any &value);
// Numbers by value before texts by code units; equal items keep their order.
void VL_ArraySort(VL_Array &arr, bool descending = false);
void VL_ArrayReverse(VL_Array &arr);
// Leaves the first of items with the same text.
void VL_ArrayUnique(VL_Array &arr);
std::wstring VL_ArrayJoin(const VL_Array &arr, const std::wstring &separator = L",");
void VL_PrintArray(const VL_Array &arr);

// Numbers of the array, texts that are numbers included; other items do not count.
double VL_ArraySum(const VL_Array &arr);
double VL_ArrayAverage(const VL_Array &arr);
// The greatest and the least item, by number; by text when no item is a number.
VL_Any VL_ArrayMax(const VL_Array &arr);
VL_Any VL_ArrayMin(const VL_Array &arr);
// Of the whole population; 0 for fewer than two numbers.
double VL_ArrayVariance(const VL_Array &arr);
double VL_ArrayStdDev(const VL_Array &arr);

// An item by chance; unset for an empty array.
VL_Any VL_ArrayRandom(const VL_Array &arr);
void VL_ArrayShuffle(VL_Array &arr);

// The items for which the function says true, and what the function makes of each item.
template <typename F>
inline VL_Array VL_ArrayFilter(const VL_Array &arr, F keep)
{
    VL_Array kept;
    for (const VL_Any &item : arr) {
        if (static_cast<bool>(keep(item)))
            kept.push_back(item);
    }
    return kept;
}
template <typename F>
inline VL_Array VL_ArrayMap(const VL_Array &arr, F change)
{
    VL_Array changed;
    changed.reserve(arr.size());
    for (const VL_Any &item : arr)
        changed.push_back(VL_Any(change(item)));
    return changed;
}

// The same for an array inside a VL_Any; what is no array becomes an empty one first.
VL_Any VL_ArrayPop(VL_Any &arr);
void VL_ArrayInsert(VL_Any &arr, intptr_t index, const VL_Any &value);
void VL_ArrayRemove(VL_Any &arr, intptr_t index, intptr_t count = 1);
void VL_ArrayClear(VL_Any &arr);
void VL_ArrayFill(VL_Any &arr, const VL_Any &value, intptr_t start = 0, intptr_t count = -1);
void VL_ArraySwap(VL_Any &arr, intptr_t first, intptr_t second);
void VL_ArraySort(VL_Any &arr, bool descending = false);
void VL_ArrayReverse(VL_Any &arr);
void VL_ArrayUnique(VL_Any &arr);
void VL_ArrayShuffle(VL_Any &arr);
