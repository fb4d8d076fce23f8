// VL_ByteArray: a value of raw bytes.
#pragma once
#include "11_dictionary.h"

// Bytes in a row. Copies are values of their own.
struct VL_ByteArray
{
    std::vector<unsigned char> data;

    VL_ByteArray();
    VL_ByteArray(const std::vector<unsigned char> &bytes);
    VL_ByteArray(std::vector<unsigned char> &&bytes);
    // Copies `length` bytes; a null pointer gives an empty array.
    VL_ByteArray(const void *bytes, size_t length);
    // `count` zero bytes; none for a negative count.
    template <typename T, VL_IfInteger<T> = 0>
    explicit VL_ByteArray(T count)
    {
        resize(static_cast<long long>(count));
    }
    VL_ByteArray(const VL_ByteArray &other);
    VL_ByteArray(VL_ByteArray &&other) noexcept;
    VL_ByteArray &operator=(const VL_ByteArray &other);
    VL_ByteArray &operator=(VL_ByteArray &&other) noexcept;
    ~VL_ByteArray();

    size_t size() const { return data.size(); }
    bool empty() const { return data.empty(); }
    // Null for an empty array.
    unsigned char *ptr();
    const unsigned char *ptr() const;
    // Unchecked.
    unsigned char &operator[](size_t i);
    unsigned char operator[](size_t i) const;

    void append(const VL_ByteArray &other);
    void append(unsigned char byte);
    void clear();
    // New bytes are 0. A size that is negative or beyond the memory leaves an empty array.
    void resize(long long count);

    bool equals(const VL_ByteArray &other) const;
    VL_ByteArray joined(const VL_ByteArray &other) const;
    VL_ByteArray &operator+=(const VL_ByteArray &other);
};

// Of VL_ByteArray exactly: with a VL_Any on one side the operators of VL_Any act.
template <typename A, typename B>
using VL_IfBytes =
    std::enable_if_t<std::is_same<A, VL_ByteArray>::value && std::is_same<B, VL_ByteArray>::value,
                     int>;
template <typename A, typename B, VL_IfBytes<A, B> = 0>
inline bool operator==(const A &a, const B &b)
{
    return a.equals(b);
}
template <typename A, typename B, VL_IfBytes<A, B> = 0>
inline bool operator!=(const A &a, const B &b)
{
    return !a.equals(b);
}
template <typename A, typename B, VL_IfBytes<A, B> = 0>
inline VL_ByteArray operator+(const A &a, const B &b)
{
    return a.joined(b);
}

extern template class std::vector<unsigned char>;

// Upper-case hex pairs between brackets, as output shows them: `[41 42 0D]`.
std::wstring VL_ByteArrayText(const VL_ByteArray &bytes);
