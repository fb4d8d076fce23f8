// Where values lie in memory. An address holds as long as the variable lives and is not changed.
#pragma once
#include "56_array_tables.h"

// The address of a variable, shifted by `offset` bytes. Of a text, an array and bytes: of their
// first character, item or byte.
template <typename T>
inline intptr_t VL_GetAddress(const T &variable, intptr_t offset = 0)
{
    return reinterpret_cast<intptr_t>(&variable) + offset;
}
intptr_t VL_GetAddress(const std::wstring &text, intptr_t offset = 0);
intptr_t VL_GetAddress(const VL_ByteArray &bytes, intptr_t offset = 0);
intptr_t VL_GetAddress(const VL_Array &arr, intptr_t offset = 0);

// The address of an item; 0 for an index out of range.
intptr_t VL_GetArrayAddress(const VL_Array &arr, intptr_t index = 0);
intptr_t VL_GetArrayAddress(const VL_Array2D &arr, intptr_t index = 0);
intptr_t VL_GetArrayAddress(const VL_Array3D &arr, intptr_t index = 0);
intptr_t VL_GetArrayAddress(const VL_ByteArray &bytes, intptr_t index = 0);
// The memory of all items in bytes.
long long VL_GetArrayMemorySize(const VL_Array &arr);
long long VL_GetArrayMemorySize(const VL_Array2D &arr);
long long VL_GetArrayMemorySize(const VL_Array3D &arr);
long long VL_GetArrayMemorySize(const VL_ByteArray &bytes);
