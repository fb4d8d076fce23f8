// Where values lie in memory. An address holds as long as the variable lives and is not changed.
#include "67_memory.h"

namespace vl_memory {
namespace {

template <typename V>
intptr_t itemAddress(const V &items, intptr_t index)
{
    if (index < 0 || (size_t)index >= items.size())
        return 0;
    return reinterpret_cast<intptr_t>(items.data() + index);
}

} // namespace
} // namespace vl_memory

intptr_t VL_GetAddress(const std::wstring &text, intptr_t offset)
{
    return reinterpret_cast<intptr_t>(text.c_str()) + offset;
}

intptr_t VL_GetAddress(const VL_ByteArray &bytes, intptr_t offset)
{
    return bytes.empty() ? 0 : reinterpret_cast<intptr_t>(bytes.ptr()) + offset;
}

intptr_t VL_GetAddress(const VL_Array &arr, intptr_t offset)
{
    return arr.empty() ? 0 : reinterpret_cast<intptr_t>(arr.data()) + offset;
}

intptr_t VL_GetArrayAddress(const VL_Array &arr, intptr_t index)
{
    return vl_memory::itemAddress(arr, index);
}

intptr_t VL_GetArrayAddress(const VL_Array2D &arr, intptr_t index)
{
    return vl_memory::itemAddress(arr, index);
}

intptr_t VL_GetArrayAddress(const VL_Array3D &arr, intptr_t index)
{
    return vl_memory::itemAddress(arr, index);
}

intptr_t VL_GetArrayAddress(const VL_ByteArray &bytes, intptr_t index)
{
    return vl_memory::itemAddress(bytes.data, index);
}

long long VL_GetArrayMemorySize(const VL_Array &arr)
{
    return (long long)arr.size() * (long long)sizeof(VL_Any);
}

long long VL_GetArrayMemorySize(const VL_Array2D &arr)
{
    long long size = (long long)arr.size() * (long long)sizeof(VL_Array);
    for (const VL_Array &row : arr)
        size += VL_GetArrayMemorySize(row);
    return size;
}

long long VL_GetArrayMemorySize(const VL_Array3D &arr)
{
    long long size = (long long)arr.size() * (long long)sizeof(VL_Array2D);
    for (const VL_Array2D &layer : arr)
        size += VL_GetArrayMemorySize(layer);
    return size;
}

long long VL_GetArrayMemorySize(const VL_ByteArray &bytes)
{
    return (long long)bytes.size();
}
