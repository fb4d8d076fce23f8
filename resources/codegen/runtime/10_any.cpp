// VL_Any, the one variant type of the language.
#include "10_any.h"

#include <new>

template class std::vector<VL_Any>;
template class std::vector<std::vector<VL_Any>>;
template class std::map<std::wstring, VL_Any>;

namespace vl_any {
namespace {

// An index beyond this is a fault of the program, not a wish for more memory.
const long long kMostItems = 20000000;

// What a dying value leaves behind, taken apart in a loop: a deep value must not use up the stack.
struct Remains
{
    std::vector<std::shared_ptr<std::vector<VL_Any>>> arrays;
    std::vector<std::shared_ptr<std::map<std::wstring, VL_Any>>> maps;

    void take(VL_Any &value)
    {
        if (value.arrPtr)
            arrays.push_back(std::move(value.arrPtr));
        if (value.mapPtr)
            maps.push_back(std::move(value.mapPtr));
        value.arrPtr.reset();
        value.mapPtr.reset();
    }
};

void dismantle(VL_Any &value)
{
    Remains remains;
    remains.take(value);
    while (!remains.arrays.empty() || !remains.maps.empty()) {
        if (!remains.arrays.empty()) {
            const std::shared_ptr<std::vector<VL_Any>> items = std::move(remains.arrays.back());
            remains.arrays.pop_back();
            if (items.use_count() == 1) {
                for (VL_Any &item : *items)
                    remains.take(item);
            }
        } else {
            const std::shared_ptr<std::map<std::wstring, VL_Any>> map =
                std::move(remains.maps.back());
            remains.maps.pop_back();
            if (map.use_count() == 1) {
                for (auto &entry : *map)
                    remains.take(entry.second);
            }
        }
    }
}

// Whether letting go of the value could free further arrays or dictionaries.
bool holdsContainers(const VL_Any &value)
{
    const auto isContainer = [](const VL_Any &item) { return item.arrPtr || item.mapPtr; };
    if (value.mapPtr && value.mapPtr.use_count() == 1)
        return true;
    if (!value.arrPtr || value.arrPtr.use_count() > 1)
        return false;
    for (const VL_Any &item : *value.arrPtr) {
        if (isContainer(item))
            return true;
    }
    return false;
}

} // namespace
} // namespace vl_any

VL_Any::VL_Any() : type(TypeNone), boolVal(false), intVal(0), doubleVal(0) {}

VL_Any::VL_Any(int v) : type(TypeInt), boolVal(v != 0), intVal(v), doubleVal(v) {}

VL_Any::VL_Any(long long v) : type(TypeInt), boolVal(v != 0), intVal(v), doubleVal((double)v) {}

VL_Any::VL_Any(double v)
    : type(TypeDouble), boolVal(v != 0), intVal(VL_TruncateToInteger(v)), doubleVal(v)
{}

VL_Any::VL_Any(float v) : VL_Any((double)v) {}

VL_Any::VL_Any(bool v) : type(TypeBool), boolVal(v), intVal(v ? 1 : 0), doubleVal(v ? 1.0 : 0.0) {}

VL_Any::VL_Any(const std::wstring &v)
    : type(TypeString), boolVal(!v.empty()), intVal(0), doubleVal(0), strVal(v)
{}

VL_Any::VL_Any(std::wstring &&v)
    : type(TypeString), boolVal(!v.empty()), intVal(0), doubleVal(0), strVal(std::move(v))
{}

VL_Any::VL_Any(const wchar_t *v)
    : type(TypeString), boolVal(v && v[0]), intVal(0), doubleVal(0), strVal(v ? v : L"")
{}

VL_Any::VL_Any(wchar_t v) : VL_Any(std::wstring(1, v)) {}

VL_Any::VL_Any(const std::vector<VL_Any> &v) : VL_Any(std::vector<VL_Any>(v)) {}

VL_Any::VL_Any(std::vector<VL_Any> &&v)
    : type(TypeArray),
      boolVal(!v.empty()),
      intVal(0),
      doubleVal(0),
      arrPtr(std::make_shared<std::vector<VL_Any>>(std::move(v)))
{}

VL_Any::VL_Any(const std::vector<std::vector<VL_Any>> &v)
    : VL_Any(std::vector<VL_Any>(v.begin(), v.end()))
{}

VL_Any::VL_Any(const std::vector<std::vector<std::vector<VL_Any>>> &v)
    : VL_Any(std::vector<VL_Any>(v.begin(), v.end()))
{}

VL_Any::VL_Any(const VL_Any &other) = default;

VL_Any::VL_Any(VL_Any &&other) noexcept
    : type(other.type),
      boolVal(other.boolVal),
      intVal(other.intVal),
      doubleVal(other.doubleVal),
      strVal(std::move(other.strVal)),
      mapPtr(std::move(other.mapPtr)),
      arrPtr(std::move(other.arrPtr)),
      bytesPtr(std::move(other.bytesPtr))
{
    other.type = TypeNone;
    other.boolVal = false;
    other.intVal = 0;
    other.doubleVal = 0;
    other.strVal.clear();
}

VL_Any &VL_Any::operator=(const VL_Any &other)
{
    VL_Any copy(other);
    return *this = std::move(copy);
}

VL_Any &VL_Any::operator=(VL_Any &&other) noexcept
{
    // The old value goes last: it may own the new one.
    VL_Any taken(std::move(other));
    std::swap(type, taken.type);
    std::swap(boolVal, taken.boolVal);
    std::swap(intVal, taken.intVal);
    std::swap(doubleVal, taken.doubleVal);
    strVal.swap(taken.strVal);
    mapPtr.swap(taken.mapPtr);
    arrPtr.swap(taken.arrPtr);
    bytesPtr.swap(taken.bytesPtr);
    return *this;
}

VL_Any::~VL_Any()
{
    if ((arrPtr || mapPtr) && vl_any::holdsContainers(*this))
        vl_any::dismantle(*this);
}

std::wstring VL_Any::toStr() const
{
    switch (type) {
    case TypeInt:
        return VL_FormatInteger(intVal);
    case TypeDouble:
        return VL_FormatDouble(doubleVal);
    case TypeString:
        return strVal;
    case TypeBool:
        return boolVal ? L"\u771F" : L"\u5047";
    case TypeDict:
        return L"[\u5B57\u5178]";
    case TypeArray:
        return VL_ArrayText(*arrPtr, 3);
    case TypeBytes:
        return VL_AnyBytesText(*this);
    default:
        return std::wstring();
    }
}

bool VL_Any::toBool() const
{
    switch (type) {
    case TypeDict:
        return mapPtr && !mapPtr->empty();
    case TypeArray:
        return !arrPtr->empty();
    default:
        return boolVal;
    }
}

std::vector<VL_Any> &VL_Any::items()
{
    if (type != TypeArray)
        *this = VL_Any(std::vector<VL_Any>());
    else if (arrPtr.use_count() > 1)
        arrPtr = std::make_shared<std::vector<VL_Any>>(*arrPtr);
    return *arrPtr;
}

VL_Any VL_Any::itemValue(long long index) const
{
    switch (type) {
    case TypeArray:
        return index >= 0 && (unsigned long long)index < arrPtr->size() ? (*arrPtr)[(size_t)index]
                                                                        : VL_Any();
    case TypeString:
        return index >= 0 && (unsigned long long)index < strVal.size()
                   ? VL_Any(std::wstring(1, strVal[(size_t)index]))
                   : VL_Any();
    case TypeDict:
        return entryValue(VL_FormatInteger(index));
    case TypeBytes:
        return VL_AnyBytesItem(*this, index);
    default:
        return VL_Any();
    }
}

VL_Any VL_Any::entryValue(const std::wstring &key) const
{
    if (type != TypeDict || !mapPtr)
        return VL_Any();
    const auto found = mapPtr->find(key);
    return found == mapPtr->end() ? VL_Any() : found->second;
}

VL_AnyItem VL_Any::operator[](const std::wstring &key)
{
    return VL_AnyItem(this, key);
}

VL_AnyItem VL_Any::operator[](const wchar_t *key)
{
    return VL_AnyItem(this, std::wstring(key ? key : L""));
}

VL_AnyItem VL_Any::operator[](const VL_Any &indexOrKey)
{
    if (indexOrKey.type == TypeString)
        return VL_AnyItem(this, indexOrKey.strVal);
    return VL_AnyItem(this, indexOrKey.intVal);
}

VL_Any VL_Any::operator[](const std::wstring &key) const
{
    return entryValue(key);
}

VL_Any VL_Any::operator[](const wchar_t *key) const
{
    return entryValue(key ? key : L"");
}

VL_Any VL_Any::operator[](const VL_Any &indexOrKey) const
{
    return indexOrKey.type == TypeString ? entryValue(indexOrKey.strVal)
                                         : itemValue(indexOrKey.intVal);
}

VL_Any &VL_Any::operator++()
{
    return *this += 1;
}

VL_Any &VL_Any::operator--()
{
    return *this -= 1;
}

VL_Any VL_Any::operator++(int)
{
    VL_Any old(*this);
    *this += 1;
    return old;
}

VL_Any VL_Any::operator--(int)
{
    VL_Any old(*this);
    *this -= 1;
    return old;
}

VL_AnyItem::VL_AnyItem(VL_Any *container, long long index)
    : VL_Any(container->itemValue(index)), m_container(container), m_byKey(false), m_index(index)
{}

VL_AnyItem::VL_AnyItem(VL_Any *container, const std::wstring &key)
    : VL_Any(container->entryValue(key)), m_container(container), m_byKey(true), m_key(key)
{}

// The place inside the container, made when it is not there; null where there can be none.
VL_Any *VL_AnyItem::place()
{
    VL_Any *container = m_outer ? m_outer->place() : m_container;
    if (!container)
        return nullptr;
    if (!m_byKey && container->type == TypeDict)
        m_key = VL_FormatInteger(m_index);
    if (m_byKey || container->type == TypeDict) {
        if (container->type != TypeDict || !container->mapPtr)
            *container = VL_NewDictAny();
        return &(*container->mapPtr)[m_key];
    }
    if (m_index < 0 || m_index >= vl_any::kMostItems ||
        (container->type != TypeArray && container->type != TypeNone))
        return nullptr;
    return &VL_ItemForWriting(container->items(), m_index);
}

VL_AnyItem &VL_AnyItem::operator=(const VL_Any &v)
{
    VL_Any value(v);
    if (VL_Any *target = place())
        *target = value;
    VL_Any::operator=(std::move(value));
    return *this;
}

VL_AnyItem &VL_AnyItem::operator=(const VL_AnyItem &v)
{
    return *this = static_cast<const VL_Any &>(v);
}

VL_AnyItem VL_AnyItem::inside(VL_AnyItem item)
{
    item.m_outer = this;
    return item;
}

VL_AnyItem VL_AnyItem::operator[](const std::wstring &key)
{
    return inside(VL_AnyItem(this, key));
}

VL_AnyItem VL_AnyItem::operator[](const wchar_t *key)
{
    return inside(VL_AnyItem(this, std::wstring(key ? key : L"")));
}

VL_AnyItem VL_AnyItem::operator[](const VL_Any &indexOrKey)
{
    return indexOrKey.type == TypeString ? inside(VL_AnyItem(this, indexOrKey.strVal))
                                         : inside(VL_AnyItem(this, indexOrKey.intVal));
}

VL_AnyItem &VL_AnyItem::operator++()
{
    return *this += 1;
}

VL_AnyItem &VL_AnyItem::operator--()
{
    return *this -= 1;
}

VL_Any VL_AnyItem::operator++(int)
{
    VL_Any old(*this);
    *this += 1;
    return old;
}

VL_Any VL_AnyItem::operator--(int)
{
    VL_Any old(*this);
    *this -= 1;
    return old;
}

VL_Any &VL_ItemForWriting(std::vector<VL_Any> &items, long long index)
{
    thread_local VL_Any nowhere;
    if (index < 0 || index >= vl_any::kMostItems) {
        nowhere = VL_Any();
        return nowhere;
    }
    try {
        if ((unsigned long long)index >= items.size())
            items.resize((size_t)index + 1);
    } catch (const std::bad_alloc &) {
        nowhere = VL_Any();
        return nowhere;
    }
    return items[(size_t)index];
}

long long VL_AnyToInteger(const VL_Any &v)
{
    return v.type == VL_Any::TypeString ? VL_ReadInteger(v.strVal) : v.intVal;
}

double VL_AnyToNumber(const VL_Any &v)
{
    return v.type == VL_Any::TypeString ? VL_ReadNumber(v.strVal) : v.doubleVal;
}

bool VL_AnyTo(const VL_Any &v, bool *)
{
    return v.toBool();
}

std::wstring VL_AnyTo(const VL_Any &v, std::wstring *)
{
    return v.toStr();
}

std::vector<VL_Any> VL_AnyTo(const VL_Any &v, std::vector<VL_Any> *)
{
    if (v.type == VL_Any::TypeArray)
        return *v.arrPtr;
    return v.type == VL_Any::TypeNone ? std::vector<VL_Any>() : std::vector<VL_Any>(1, v);
}

std::vector<std::vector<VL_Any>> VL_AnyTo(const VL_Any &v, std::vector<std::vector<VL_Any>> *)
{
    std::vector<std::vector<VL_Any>> rows;
    for (const VL_Any &item : VL_AnyTo(v, static_cast<std::vector<VL_Any> *>(nullptr)))
        rows.push_back(VL_AnyTo(item, static_cast<std::vector<VL_Any> *>(nullptr)));
    return rows;
}

std::vector<std::vector<std::vector<VL_Any>>>
VL_AnyTo(const VL_Any &v, std::vector<std::vector<std::vector<VL_Any>>> *)
{
    std::vector<std::vector<std::vector<VL_Any>>> layers;
    for (const VL_Any &item : VL_AnyTo(v, static_cast<std::vector<VL_Any> *>(nullptr)))
        layers.push_back(VL_AnyTo(item, static_cast<std::vector<std::vector<VL_Any>> *>(nullptr)));
    return layers;
}
