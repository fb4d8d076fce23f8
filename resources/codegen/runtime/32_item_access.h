// Checked access to items by index.
#pragma once
#include "31_conversions.h"

// A character of a text, which is replaced by the text that is assigned.
struct VL_CharItem : std::wstring
{
    VL_CharItem(std::wstring &text, intptr_t index);
    VL_CharItem(const VL_CharItem &) = default;
    VL_CharItem &operator=(const std::wstring &character);
    VL_CharItem &operator=(const VL_CharItem &character);

private:
    std::wstring *m_text;
    intptr_t m_index;
};

// For reading and writing: writing grows an array within reason; what is written to
// a negative index, or past the end of a text or of bytes, is lost.
VL_Any &VL_At(VL_Array &arr, intptr_t index);
VL_Any VL_At(const VL_Array &arr, intptr_t index);
VL_Array &VL_At(VL_Array2D &arr, intptr_t index);
const VL_Array &VL_At(const VL_Array2D &arr, intptr_t index);
VL_Array2D &VL_At(VL_Array3D &arr, intptr_t index);
const VL_Array2D &VL_At(const VL_Array3D &arr, intptr_t index);
unsigned char &VL_At(VL_ByteArray &bytes, intptr_t index);
unsigned char VL_At(const VL_ByteArray &bytes, intptr_t index);
VL_CharItem VL_At(std::wstring &text, intptr_t index);
std::wstring VL_At(const std::wstring &text, intptr_t index);
// Of a VL_Any, by index or key: an item that can be assigned, or a value when it is constant.
template <typename A, typename K,
          std::enable_if_t<std::is_base_of<VL_Any, std::decay_t<A>>::value, int> = 0>
inline auto VL_At(A &&value, const K &indexOrKey)
{
    return value[indexOrKey];
}
