// Checked access to items by index.
#include "32_item_access.h"

#include <new>

namespace vl_item_access {
namespace {

// An index beyond this is a fault of the program, not a wish for more memory.
const intptr_t kMostRows = 1000000;

template <typename V>
bool inRange(const V &items, intptr_t index)
{
    return index >= 0 && (size_t)index < items.size();
}

// The place for writing; one that nobody keeps where there can be none.
template <typename T>
T &placeIn(std::vector<T> &items, intptr_t index)
{
    thread_local T nowhere;
    if (inRange(items, index))
        return items[(size_t)index];
    nowhere = T();
    if (index < 0 || index >= kMostRows)
        return nowhere;
    try {
        items.resize((size_t)index + 1);
    } catch (const std::bad_alloc &) {
        return nowhere;
    }
    return items[(size_t)index];
}

template <typename T>
const T &valueIn(const std::vector<T> &items, intptr_t index)
{
    static const T missing;
    return inRange(items, index) ? items[(size_t)index] : missing;
}

std::wstring characterOf(const std::wstring &text, intptr_t index)
{
    return inRange(text, index) ? std::wstring(1, text[(size_t)index]) : std::wstring();
}

} // namespace
} // namespace vl_item_access

VL_CharItem::VL_CharItem(std::wstring &text, intptr_t index)
    : std::wstring(vl_item_access::characterOf(text, index)), m_text(&text), m_index(index)
{}

VL_CharItem &VL_CharItem::operator=(const std::wstring &character)
{
    if (vl_item_access::inRange(*m_text, m_index))
        m_text->replace((size_t)m_index, 1, character);
    std::wstring::operator=(character);
    return *this;
}

VL_CharItem &VL_CharItem::operator=(const VL_CharItem &character)
{
    return *this = static_cast<const std::wstring &>(character);
}

VL_Any &VL_At(VL_Array &arr, intptr_t index)
{
    return VL_ItemForWriting(arr, index);
}

VL_Any VL_At(const VL_Array &arr, intptr_t index)
{
    return vl_item_access::valueIn(arr, index);
}

VL_Array &VL_At(VL_Array2D &arr, intptr_t index)
{
    return vl_item_access::placeIn(arr, index);
}

const VL_Array &VL_At(const VL_Array2D &arr, intptr_t index)
{
    return vl_item_access::valueIn(arr, index);
}

VL_Array2D &VL_At(VL_Array3D &arr, intptr_t index)
{
    return vl_item_access::placeIn(arr, index);
}

const VL_Array2D &VL_At(const VL_Array3D &arr, intptr_t index)
{
    return vl_item_access::valueIn(arr, index);
}

unsigned char &VL_At(VL_ByteArray &bytes, intptr_t index)
{
    thread_local unsigned char nowhere;
    if (vl_item_access::inRange(bytes, index))
        return bytes[(size_t)index];
    nowhere = 0;
    return nowhere;
}

unsigned char VL_At(const VL_ByteArray &bytes, intptr_t index)
{
    return vl_item_access::inRange(bytes, index) ? bytes[(size_t)index] : 0;
}

VL_CharItem VL_At(std::wstring &text, intptr_t index)
{
    return VL_CharItem(text, index);
}

std::wstring VL_At(const std::wstring &text, intptr_t index)
{
    return vl_item_access::characterOf(text, index);
}
