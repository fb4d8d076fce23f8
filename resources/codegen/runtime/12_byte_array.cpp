// VL_ByteArray: a value of raw bytes.
#include "12_byte_array.h"

#include <algorithm>
#include <new>

template class std::vector<unsigned char>;

VL_ByteArray::VL_ByteArray() = default;

VL_ByteArray::VL_ByteArray(const std::vector<unsigned char> &bytes) : data(bytes) {}

VL_ByteArray::VL_ByteArray(std::vector<unsigned char> &&bytes) : data(std::move(bytes)) {}

VL_ByteArray::VL_ByteArray(const void *bytes, size_t length)
{
    const unsigned char *first = static_cast<const unsigned char *>(bytes);
    if (first)
        data.assign(first, first + length);
}

VL_ByteArray::VL_ByteArray(const VL_ByteArray &other) = default;
VL_ByteArray::VL_ByteArray(VL_ByteArray &&other) noexcept = default;
VL_ByteArray &VL_ByteArray::operator=(const VL_ByteArray &other) = default;
VL_ByteArray &VL_ByteArray::operator=(VL_ByteArray &&other) noexcept = default;
VL_ByteArray::~VL_ByteArray() = default;

unsigned char *VL_ByteArray::ptr()
{
    return data.empty() ? NULL : data.data();
}

const unsigned char *VL_ByteArray::ptr() const
{
    return data.empty() ? NULL : data.data();
}

unsigned char &VL_ByteArray::operator[](size_t i)
{
    return data[i];
}

unsigned char VL_ByteArray::operator[](size_t i) const
{
    return data[i];
}

void VL_ByteArray::append(const VL_ByteArray &other)
{
    // Through indices: `other` may be this very array.
    const size_t count = other.data.size();
    data.resize(data.size() + count);
    std::copy(other.data.begin(), other.data.begin() + (ptrdiff_t)count,
              data.end() - (ptrdiff_t)count);
}

void VL_ByteArray::append(unsigned char byte)
{
    data.push_back(byte);
}

void VL_ByteArray::clear()
{
    data.clear();
}

void VL_ByteArray::resize(long long count)
{
    try {
        if (count >= 0 && (unsigned long long)count <= data.max_size())
            data.resize((size_t)count);
        else
            data.clear();
    } catch (const std::bad_alloc &) {
        data.clear();
    }
}

bool VL_ByteArray::equals(const VL_ByteArray &other) const
{
    return data == other.data;
}

VL_ByteArray VL_ByteArray::joined(const VL_ByteArray &other) const
{
    VL_ByteArray result;
    result.data.reserve(data.size() + other.data.size());
    result.data.insert(result.data.end(), data.begin(), data.end());
    result.data.insert(result.data.end(), other.data.begin(), other.data.end());
    return result;
}

VL_ByteArray &VL_ByteArray::operator+=(const VL_ByteArray &other)
{
    append(other);
    return *this;
}

std::wstring VL_ByteArrayText(const VL_ByteArray &bytes)
{
    static const wchar_t kHex[] = L"0123456789ABCDEF";
    std::wstring text(1, L'[');
    text.reserve(bytes.size() * 3 + 2);
    for (const unsigned char byte : bytes.data) {
        if (text.size() > 1)
            text += L' ';
        text += kHex[byte >> 4];
        text += kHex[byte & 15];
    }
    text += L']';
    return text;
}

VL_Any::VL_Any(const VL_ByteArray &v)
    : type(TypeBytes),
      boolVal(!v.empty()),
      intVal(0),
      doubleVal(0),
      bytesPtr(std::make_shared<const VL_ByteArray>(v))
{}

// A text gives its UTF-8 bytes, an array of numbers one byte for each of them.
VL_ByteArray VL_AnyTo(const VL_Any &v, VL_ByteArray *)
{
    VL_ByteArray bytes;
    if (v.type == VL_Any::TypeBytes)
        return *v.bytesPtr;
    if (v.type == VL_Any::TypeString) {
        const std::string utf8 = VL_WideToUtf8(v.strVal);
        bytes.data.assign(utf8.begin(), utf8.end());
    } else if (v.type == VL_Any::TypeArray) {
        for (const VL_Any &item : *v.arrPtr)
            bytes.append((unsigned char)VL_AnyToInteger(item));
    }
    return bytes;
}

std::wstring VL_AnyBytesText(const VL_Any &v)
{
    return VL_ByteArrayText(*v.bytesPtr);
}

long long VL_AnyBytesLength(const VL_Any &v)
{
    return (long long)v.bytesPtr->size();
}

VL_Any VL_AnyBytesItem(const VL_Any &v, long long index)
{
    const bool inside = index >= 0 && (unsigned long long)index < v.bytesPtr->size();
    return inside ? VL_Any((int)v.bytesPtr->data[(size_t)index]) : VL_Any();
}

int VL_AnyBytesOrder(const VL_Any &a, const VL_Any &b)
{
    const std::vector<unsigned char> &left = a.bytesPtr->data;
    const std::vector<unsigned char> &right = b.bytesPtr->data;
    return left < right ? -1 : left == right ? 0 : 1;
}

VL_Any VL_AnyBytesJoin(const VL_Any &a, const VL_Any &b)
{
    return VL_Any(*a.bytesPtr + *b.bytesPtr);
}
