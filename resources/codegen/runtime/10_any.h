// VL_Any, the one variant type of the language.
#pragma once
#include "09_number_text.h"

#include <type_traits>

struct VL_Any;
struct VL_AnyItem;
struct VL_ByteArray;

// Number types as operands of the templates: characters are no integers, so that text stays text.
template <typename T>
constexpr bool VL_IsCharacter =
    std::is_same<T, char>::value || std::is_same<T, wchar_t>::value ||
    std::is_same<T, char16_t>::value || std::is_same<T, char32_t>::value;
template <typename T>
constexpr bool VL_IsInteger = (std::is_integral<T>::value || std::is_enum<T>::value) &&
                              !std::is_same<T, bool>::value && !VL_IsCharacter<T>;
template <typename T>
constexpr bool VL_IsNumber =
    VL_IsInteger<T> || std::is_floating_point<T>::value || std::is_same<T, bool>::value;
template <typename T>
using VL_IfInteger = std::enable_if_t<VL_IsInteger<T>, int>;
template <typename T>
using VL_IfBool = std::enable_if_t<std::is_same<T, bool>::value, int>;
template <typename T>
using VL_IfIntegerOrBool = std::enable_if_t<VL_IsInteger<T> || std::is_same<T, bool>::value, int>;
template <typename T>
using VL_IfFloating = std::enable_if_t<std::is_floating_point<T>::value, int>;
template <typename T>
using VL_IfNumber = std::enable_if_t<VL_IsNumber<T>, int>;

// What a VL_Any turns into where it is assigned, passed, returned or tested.
template <typename T>
constexpr bool VL_IsAnyTarget =
    (std::is_arithmetic<T>::value && !VL_IsCharacter<T>) || std::is_same<T, std::wstring>::value
    || std::is_same<T, VL_ByteArray>::value || std::is_same<T, std::vector<VL_Any>>::value
    || std::is_same<T, std::vector<std::vector<VL_Any>>>::value
    || std::is_same<T, std::vector<std::vector<std::vector<VL_Any>>>>::value;

// A text joins, a decimal makes decimals, integers stay integers; integers divided by 0 give 0.
// Two arrays, or two byte arrays, are joined by "+".
VL_Any operator+(const VL_Any &a, const VL_Any &b);
VL_Any operator-(const VL_Any &a, const VL_Any &b);
VL_Any operator*(const VL_Any &a, const VL_Any &b);
VL_Any operator/(const VL_Any &a, const VL_Any &b);
VL_Any operator%(const VL_Any &a, const VL_Any &b);
VL_Any operator-(const VL_Any &v);
VL_Any operator+(const VL_Any &v);

// A value of any type. All views are filled on construction, so that reading one never fails.
// Copies of a dictionary share its entries; copies of an array or of bytes are values of their own.
struct VL_Any
{
    enum Type
    {
        TypeNone,
        TypeInt,
        TypeDouble,
        TypeString,
        TypeBool,
        TypeDict,
        TypeArray,
        TypeBytes
    };

    Type type;
    bool boolVal;
    long long intVal;
    double doubleVal;
    std::wstring strVal;
    std::shared_ptr<std::map<std::wstring, VL_Any>> mapPtr;
    // Shared until one side writes: write through items() only.
    std::shared_ptr<std::vector<VL_Any>> arrPtr;
    std::shared_ptr<const VL_ByteArray> bytesPtr;

    VL_Any();
    VL_Any(int v);
    VL_Any(long long v);
    VL_Any(double v);
    VL_Any(float v);
    VL_Any(bool v);
    VL_Any(const std::wstring &v);
    VL_Any(std::wstring &&v);
    VL_Any(const wchar_t *v);
    // A text of one character.
    VL_Any(wchar_t v);
    VL_Any(const std::vector<VL_Any> &v);
    VL_Any(std::vector<VL_Any> &&v);
    VL_Any(const std::vector<std::vector<VL_Any>> &v);
    VL_Any(const std::vector<std::vector<std::vector<VL_Any>>> &v);
    VL_Any(const VL_ByteArray &v);
    template <typename T, VL_IfInteger<T> = 0>
    VL_Any(T v) : VL_Any(static_cast<long long>(v))
    {}
    // Handles and addresses are integers.
    template <typename T,
              std::enable_if_t<!std::is_same<std::remove_cv_t<T>, wchar_t>::value, int> = 0>
    VL_Any(T *v) : VL_Any(static_cast<long long>(reinterpret_cast<intptr_t>(v)))
    {}
    VL_Any(const VL_Any &other);
    VL_Any(VL_Any &&other) noexcept;
    VL_Any &operator=(const VL_Any &other);
    VL_Any &operator=(VL_Any &&other) noexcept;
    ~VL_Any();

    // Plain reads of the views; a text is no number here (VL_ToInt reads the digits of a text).
    long long toInt() const { return intVal; }
    double toDouble() const { return doubleVal; }
    // The text of the value; empty for an unset one.
    std::wstring toStr() const;
    // True for a number that is not 0, a text, array, dictionary or bytes that are not empty.
    bool toBool() const;
    bool isNumber() const { return type == TypeInt || type == TypeDouble || type == TypeBool; }

    // The items for writing, of this value alone; anything but an array becomes an empty array.
    std::vector<VL_Any> &items();

    template <typename T, typename = std::enable_if_t<VL_IsAnyTarget<T>>>
    operator T() const
    {
        return VL_AnyTo(*this, static_cast<T *>(nullptr));
    }

    // An item of an array, an entry of a dictionary, or a character of a text. Reading one that is
    // not there gives an unset value; assigning to it grows the array or adds the entry.
    template <typename T, VL_IfNumber<T> = 0>
    VL_AnyItem operator[](T index);
    VL_AnyItem operator[](const std::wstring &key);
    VL_AnyItem operator[](const wchar_t *key);
    VL_AnyItem operator[](const VL_Any &indexOrKey);
    template <typename T, VL_IfNumber<T> = 0>
    VL_Any operator[](T index) const
    {
        return itemValue(static_cast<long long>(index));
    }
    VL_Any operator[](const std::wstring &key) const;
    VL_Any operator[](const wchar_t *key) const;
    VL_Any operator[](const VL_Any &indexOrKey) const;

    VL_Any itemValue(long long index) const;
    VL_Any entryValue(const std::wstring &key) const;

    // These follow the operators of two VL_Any: a text is prolonged, a decimal stays one.
    template <typename T>
    VL_Any &operator+=(const T &v)
    {
        return *this = *this + VL_Any(v);
    }
    template <typename T>
    VL_Any &operator-=(const T &v)
    {
        return *this = *this - VL_Any(v);
    }
    template <typename T>
    VL_Any &operator*=(const T &v)
    {
        return *this = *this * VL_Any(v);
    }
    template <typename T>
    VL_Any &operator/=(const T &v)
    {
        return *this = *this / VL_Any(v);
    }
    template <typename T>
    VL_Any &operator%=(const T &v)
    {
        return *this = *this % VL_Any(v);
    }
    VL_Any &operator++();
    VL_Any &operator--();
    VL_Any operator++(int);
    VL_Any operator--(int);
};

extern template class std::vector<VL_Any>;
extern template class std::vector<std::vector<VL_Any>>;
extern template class std::map<std::wstring, VL_Any>;

// The value at an index or key of a VL_Any, which it writes back to when it is assigned. It lives
// in the expression that made it, no longer than the value it came from.
struct VL_AnyItem : VL_Any
{
    VL_AnyItem(VL_Any *container, long long index);
    VL_AnyItem(VL_Any *container, const std::wstring &key);
    VL_AnyItem(const VL_AnyItem &) = default;
    VL_AnyItem &operator=(const VL_Any &v);
    VL_AnyItem &operator=(const VL_AnyItem &v);

    template <typename T, VL_IfNumber<T> = 0>
    VL_AnyItem operator[](T index)
    {
        return inside(VL_AnyItem(this, static_cast<long long>(index)));
    }
    VL_AnyItem operator[](const std::wstring &key);
    VL_AnyItem operator[](const wchar_t *key);
    VL_AnyItem operator[](const VL_Any &indexOrKey);

    template <typename T>
    VL_AnyItem &operator+=(const T &v)
    {
        return *this = static_cast<const VL_Any &>(*this) + VL_Any(v);
    }
    template <typename T>
    VL_AnyItem &operator-=(const T &v)
    {
        return *this = static_cast<const VL_Any &>(*this) - VL_Any(v);
    }
    template <typename T>
    VL_AnyItem &operator*=(const T &v)
    {
        return *this = static_cast<const VL_Any &>(*this) * VL_Any(v);
    }
    template <typename T>
    VL_AnyItem &operator/=(const T &v)
    {
        return *this = static_cast<const VL_Any &>(*this) / VL_Any(v);
    }
    template <typename T>
    VL_AnyItem &operator%=(const T &v)
    {
        return *this = static_cast<const VL_Any &>(*this) % VL_Any(v);
    }
    VL_AnyItem &operator++();
    VL_AnyItem &operator--();
    VL_Any operator++(int);
    VL_Any operator--(int);

private:
    VL_AnyItem inside(VL_AnyItem item);
    VL_Any *place();

    VL_Any *m_container;
    VL_AnyItem *m_outer = nullptr;
    bool m_byKey;
    long long m_index = 0;
    std::wstring m_key;
};

template <typename T, VL_IfNumber<T>>
inline VL_AnyItem VL_Any::operator[](T index)
{
    return VL_AnyItem(this, static_cast<long long>(index));
}

// Conversions behind the conversion operator. A text is read as a number here.
long long VL_AnyToInteger(const VL_Any &v);
double VL_AnyToNumber(const VL_Any &v);
template <typename T, VL_IfInteger<T> = 0>
inline T VL_AnyTo(const VL_Any &v, T *)
{
    return static_cast<T>(VL_AnyToInteger(v));
}
template <typename T, VL_IfFloating<T> = 0>
inline T VL_AnyTo(const VL_Any &v, T *)
{
    return static_cast<T>(VL_AnyToNumber(v));
}
bool VL_AnyTo(const VL_Any &v, bool *);
std::wstring VL_AnyTo(const VL_Any &v, std::wstring *);
VL_ByteArray VL_AnyTo(const VL_Any &v, VL_ByteArray *);
std::vector<VL_Any> VL_AnyTo(const VL_Any &v, std::vector<VL_Any> *);
std::vector<std::vector<VL_Any>> VL_AnyTo(const VL_Any &v, std::vector<std::vector<VL_Any>> *);
std::vector<std::vector<std::vector<VL_Any>>>
VL_AnyTo(const VL_Any &v, std::vector<std::vector<std::vector<VL_Any>>> *);

// Defined where output is: arrays as `[1, "a", [2]]` to `depth` levels, and one item inside them.
std::wstring VL_ArrayText(const std::vector<VL_Any> &items, int depth);
void VL_AppendItemText(std::wstring &out, const VL_Any &item, int depth);
// Defined where VL_ByteArray is: what a VL_Any that holds bytes needs.
std::wstring VL_AnyBytesText(const VL_Any &v);
long long VL_AnyBytesLength(const VL_Any &v);
VL_Any VL_AnyBytesItem(const VL_Any &v, long long index);
int VL_AnyBytesOrder(const VL_Any &a, const VL_Any &b);
VL_Any VL_AnyBytesJoin(const VL_Any &a, const VL_Any &b);
// A dictionary without entries; defined where dictionaries are.
VL_Any VL_NewDictAny();

// The item at an index, the array grown to hold it; a value that nobody keeps for an index that is
// negative or out of all reason.
VL_Any &VL_ItemForWriting(std::vector<VL_Any> &items, long long index);
