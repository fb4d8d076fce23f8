// Commands on arrays of two and three dimensions. Indices count from 0.
#include "56_array_tables.h"

#include <algorithm>
#include <new>

namespace vl_array_tables {
namespace {

template <typename V>
bool inRange(const V &items, intptr_t index)
{
    return index >= 0 && (size_t)index < items.size();
}

size_t size(intptr_t wanted)
{
    return wanted > 0 ? (size_t)wanted : 0;
}

// More items than this are refused before they are asked of the system.
bool fits(intptr_t a, intptr_t b, intptr_t c)
{
    return (double)size(a) * (double)size(b) * (double)size(c) * sizeof(VL_Any) <
               (double)INTPTR_MAX &&
           (double)size(a) * (double)size(b) * sizeof(VL_Array) < (double)INTPTR_MAX &&
           (double)size(a) * sizeof(VL_Array) < (double)INTPTR_MAX;
}

} // namespace
} // namespace vl_array_tables

VL_Array2D VL_Create2DArray(intptr_t rows, intptr_t cols, const VL_Any &initVal)
{
    using vl_array_tables::size;
    if (!vl_array_tables::fits(rows, cols, 1))
        return VL_Array2D();
    try {
        return VL_Array2D(size(rows), VL_Array(size(cols), initVal));
    } catch (const std::exception &) {
        return VL_Array2D();
    }
}

intptr_t VL_Get2DRows(const VL_Array2D &arr)
{
    return (intptr_t)arr.size();
}

intptr_t VL_Get2DCols(const VL_Array2D &arr)
{
    size_t longest = 0;
    for (const VL_Array &row : arr)
        longest = std::max(longest, row.size());
    return (intptr_t)longest;
}

VL_Any VL_Get2D(const VL_Array2D &arr, intptr_t row, intptr_t col, const VL_Any &fallback)
{
    using vl_array_tables::inRange;
    return inRange(arr, row) && inRange(arr[(size_t)row], col) ? arr[(size_t)row][(size_t)col]
                                                               : fallback;
}

bool VL_Set2D(VL_Array2D &arr, intptr_t row, intptr_t col, const VL_Any &value)
{
    using vl_array_tables::inRange;
    if (!inRange(arr, row) || !inRange(arr[(size_t)row], col))
        return false;
    arr[(size_t)row][(size_t)col] = value;
    return true;
}

VL_Array VL_Get2DRow(const VL_Array2D &arr, intptr_t row)
{
    return vl_array_tables::inRange(arr, row) ? arr[(size_t)row] : VL_Array();
}

VL_Array VL_Get2DCol(const VL_Array2D &arr, intptr_t col)
{
    VL_Array items;
    if (col < 0 || col >= VL_Get2DCols(arr))
        return items;
    items.reserve(arr.size());
    for (const VL_Array &row : arr)
        items.push_back(vl_array_tables::inRange(row, col) ? row[(size_t)col] : VL_Any());
    return items;
}

bool VL_Set2DRow(VL_Array2D &arr, intptr_t row, const VL_Array &items)
{
    if (!vl_array_tables::inRange(arr, row))
        return false;
    arr[(size_t)row] = items;
    return true;
}

void VL_Add2DRow(VL_Array2D &arr, const VL_Array &items)
{
    arr.push_back(items);
}

bool VL_Remove2DRow(VL_Array2D &arr, intptr_t row)
{
    if (!vl_array_tables::inRange(arr, row))
        return false;
    arr.erase(arr.begin() + row);
    return true;
}

void VL_Print2D(const VL_Array2D &arr)
{
    for (const VL_Array &row : arr)
        VL_Print(VL_ToOutputStr(row));
}

VL_Array3D VL_Create3DArray(intptr_t x, intptr_t y, intptr_t z, const VL_Any &initVal)
{
    using vl_array_tables::size;
    if (!vl_array_tables::fits(x, y, z))
        return VL_Array3D();
    try {
        return VL_Array3D(size(x), VL_Array2D(size(y), VL_Array(size(z), initVal)));
    } catch (const std::exception &) {
        return VL_Array3D();
    }
}

intptr_t VL_Get3DSize(const VL_Array3D &arr, intptr_t dim)
{
    if (dim == 0)
        return (intptr_t)arr.size();
    if (arr.empty() || dim < 0 || dim > 2)
        return 0;
    if (dim == 1)
        return (intptr_t)arr[0].size();
    return arr[0].empty() ? 0 : (intptr_t)arr[0][0].size();
}

VL_Any VL_Get3D(const VL_Array3D &arr, intptr_t x, intptr_t y, intptr_t z, const VL_Any &fallback)
{
    return vl_array_tables::inRange(arr, x) ? VL_Get2D(arr[(size_t)x], y, z, fallback) : fallback;
}

bool VL_Set3D(VL_Array3D &arr, intptr_t x, intptr_t y, intptr_t z, const VL_Any &value)
{
    return vl_array_tables::inRange(arr, x) && VL_Set2D(arr[(size_t)x], y, z, value);
}
