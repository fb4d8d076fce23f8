// Byte arrays from and to texts, numbers, arrays, memory and files.
#include "58_byte_array_values.h"
#include "39_encodings.h"
#include "40_files.h"
#include "41_paths.h"

#include <cstring>
#include <new>

namespace vl_byte_array_values {
namespace {

const size_t kLargest = 0x7FFFFFFF;

VL_ByteArray copied(const void *data, size_t length)
{
    try {
        return length > 0 ? VL_ByteArray((const unsigned char *)data, length) : VL_ByteArray();
    } catch (const std::bad_alloc &) {
        return VL_ByteArray();
    }
}

bool holds(const VL_ByteArray &bytes, intptr_t index, intptr_t size)
{
    return index >= 0 && size >= 1 && size <= 8 && (size_t)index <= bytes.size() &&
           (size_t)size <= bytes.size() - (size_t)index;
}

unsigned long long readBits(const unsigned char *data, intptr_t size, bool highFirst)
{
    unsigned long long bits = 0;
    for (intptr_t i = 0; i < size; ++i)
        bits = bits << 8 | data[highFirst ? i : size - 1 - i];
    return bits;
}

void writeBits(unsigned char *data, unsigned long long bits, intptr_t size, bool highFirst)
{
    for (intptr_t i = 0; i < size; ++i) {
        data[highFirst ? size - 1 - i : i] = (unsigned char)bits;
        bits >>= 8;
    }
}

unsigned long long bitsOf(double value, intptr_t size)
{
    if (size == 4) {
        const float narrow = (float)value;
        unsigned bits = 0;
        std::memcpy(&bits, &narrow, sizeof bits);
        return bits;
    }
    unsigned long long bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

int digitValue(wchar_t unit)
{
    if (unit >= L'0' && unit <= L'9')
        return unit - L'0';
    const wchar_t lower = unit | 0x20;
    return lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : -1;
}

// Whether all of the memory is there to be read. Asking first costs one system call for each run
// of pages and spares the program a crash.
bool isReadable(uintptr_t address, size_t length)
{
    const uintptr_t end = address + length;
    if (address == 0 || end < address)
        return false;
    while (address < end) {
        MEMORY_BASIC_INFORMATION region;
        if (!VirtualQuery((const void *)address, &region, sizeof region) ||
            region.State != MEM_COMMIT || (region.Protect & (PAGE_NOACCESS | PAGE_GUARD)) ||
            region.Protect == PAGE_EXECUTE)
            return false;
        address = (uintptr_t)region.BaseAddress + region.RegionSize;
    }
    return true;
}

const char *readableMemory(intptr_t address, intptr_t length)
{
    const bool good =
        length > 0 && (size_t)length <= kLargest && isReadable((uintptr_t)address, (size_t)length);
    return good ? (const char *)address : NULL;
}

} // namespace
} // namespace vl_byte_array_values

VL_ByteArray VL_TextToByteArray(const std::wstring &text, intptr_t encoding)
{
    const std::string bytes = VL_EncodeText(text, encoding);
    return vl_byte_array_values::copied(bytes.data(), bytes.size());
}

std::wstring VL_ByteArrayToText(const VL_ByteArray &bytes, intptr_t encoding)
{
    return VL_DecodeText((const char *)bytes.ptr(), bytes.size(), encoding);
}

VL_ByteArray VL_ToByteArray(const std::wstring &value)
{
    return VL_TextToByteArray(value);
}

VL_ByteArray VL_ToByteArray(const wchar_t *value)
{
    return VL_TextToByteArray(value ? std::wstring(value) : std::wstring());
}

VL_ByteArray VL_ToByteArray(double value)
{
    return VL_DoubleToByteArray(value);
}

VL_ByteArray VL_ToByteArray(bool value)
{
    return VL_IntToByteArray(value, 1);
}

VL_ByteArray VL_ToByteArray(const VL_Any &value)
{
    switch (value.type) {
    case VL_Any::TypeInt:
        return VL_IntegerToByteArray(value.intVal);
    case VL_Any::TypeDouble:
        return VL_DoubleToByteArray(value.doubleVal);
    case VL_Any::TypeBool:
        return VL_ToByteArray(value.boolVal);
    case VL_Any::TypeBytes:
        return value.bytesPtr ? *value.bytesPtr : VL_ByteArray();
    case VL_Any::TypeArray:
        return value.arrPtr ? VL_ArrayToByteArray(*value.arrPtr) : VL_ByteArray();
    default:
        return VL_TextToByteArray(value.toStr());
    }
}

VL_ByteArray VL_ToByteArray(const VL_Array &value)
{
    return VL_ArrayToByteArray(value);
}

VL_ByteArray VL_ToByteArray(const VL_ByteArray &value)
{
    return value;
}

VL_ByteArray VL_IntegerToByteArray(long long value)
{
    const bool small = value >= -0x7FFFFFFFLL - 1 && value <= 0x7FFFFFFFLL;
    return VL_IntToByteArray(value, small ? 4 : 8);
}

std::wstring VL_ByteArrayToHex(const VL_ByteArray &bytes, const std::wstring &separator, bool upper)
{
    const wchar_t *digits = upper ? L"0123456789ABCDEF" : L"0123456789abcdef";
    std::wstring text;
    const size_t step = 2 + separator.size();
    if (bytes.size() > vl_byte_array_values::kLargest / step)
        return text;
    text.reserve(bytes.size() * step);
    for (unsigned char byte : bytes.data) {
        if (!text.empty())
            text += separator;
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

VL_ByteArray VL_HexToByteArray(const std::wstring &text)
{
    VL_ByteArray result;
    int high = -1;
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t unit = text[i];
        if (unit == L'0' && high < 0 && i + 1 < text.size() && (text[i + 1] | 0x20) == L'x') {
            ++i;
            continue;
        }
        if (high < 0 && (unit <= L' ' || unit == L',' || unit == L'-' || unit == L':'))
            continue;
        const int value = vl_byte_array_values::digitValue(unit);
        if (value < 0)
            return VL_ByteArray();
        if (high < 0) {
            high = value;
        } else {
            result.data.push_back((unsigned char)(high << 4 | value));
            high = -1;
        }
    }
    return high < 0 ? result : VL_ByteArray();
}

VL_ByteArray VL_IntToByteArray(long long value, intptr_t size, bool highFirst)
{
    VL_ByteArray result;
    if (size < 1 || size > 8)
        return result;
    result.data.resize((size_t)size);
    vl_byte_array_values::writeBits(result.ptr(), (unsigned long long)value, size, highFirst);
    return result;
}

VL_ByteArray VL_DoubleToByteArray(double value, intptr_t size)
{
    if (size != 4 && size != 8)
        return VL_ByteArray();
    return VL_IntToByteArray((long long)vl_byte_array_values::bitsOf(value, size), size);
}

long long VL_ByteArrayGetInt(const VL_ByteArray &bytes, intptr_t index, intptr_t size,
                             bool highFirst)
{
    if (!vl_byte_array_values::holds(bytes, index, size))
        return 0;
    unsigned long long bits = vl_byte_array_values::readBits(bytes.ptr() + index, size, highFirst);
    if (size < 8 && (bits >> (size * 8 - 1) & 1))
        bits |= ~0ULL << (size * 8);
    return (long long)bits;
}

long long VL_ByteArrayGetUInt(const VL_ByteArray &bytes, intptr_t index, intptr_t size,
                              bool highFirst)
{
    if (!vl_byte_array_values::holds(bytes, index, size))
        return 0;
    return (long long)vl_byte_array_values::readBits(bytes.ptr() + index, size, highFirst);
}

bool VL_ByteArraySetInt(VL_ByteArray &bytes, intptr_t index, long long value, intptr_t size,
                        bool highFirst)
{
    if (!vl_byte_array_values::holds(bytes, index, size))
        return false;
    vl_byte_array_values::writeBits(bytes.ptr() + index, (unsigned long long)value, size,
                                    highFirst);
    return true;
}

double VL_ByteArrayGetDouble(const VL_ByteArray &bytes, intptr_t index, intptr_t size)
{
    if ((size != 4 && size != 8) || !vl_byte_array_values::holds(bytes, index, size))
        return 0.0;
    if (size == 4) {
        float narrow = 0.0f;
        std::memcpy(&narrow, bytes.ptr() + index, sizeof narrow);
        return narrow;
    }
    double value = 0.0;
    std::memcpy(&value, bytes.ptr() + index, sizeof value);
    return value;
}

bool VL_ByteArraySetDouble(VL_ByteArray &bytes, intptr_t index, double value, intptr_t size)
{
    return (size == 4 || size == 8) &&
           VL_ByteArraySetInt(bytes, index, (long long)vl_byte_array_values::bitsOf(value, size),
                              size);
}

VL_Array VL_ByteArrayToArray(const VL_ByteArray &bytes)
{
    VL_Array array;
    try {
        array.reserve(bytes.size());
    } catch (const std::exception &) { // an item takes many times the room of a byte
        return array;
    }
    for (unsigned char byte : bytes.data)
        array.push_back(VL_Any((int)byte));
    return array;
}

VL_ByteArray VL_ArrayToByteArray(const VL_Array &array)
{
    VL_ByteArray result;
    result.data.reserve(array.size());
    for (const VL_Any &item : array)
        result.data.push_back((unsigned char)VL_AnyToInteger(item));
    return result;
}

VL_ByteArray VL_ByteArrayFromMemory(intptr_t address, intptr_t length)
{
    const char *memory = vl_byte_array_values::readableMemory(address, length);
    return memory ? vl_byte_array_values::copied(memory, (size_t)length) : VL_ByteArray();
}

std::wstring VL_ByteArrayToTextFromMemory(intptr_t address, intptr_t length, intptr_t encoding)
{
    const char *memory = vl_byte_array_values::readableMemory(address, length);
    return memory ? VL_DecodeText(memory, (size_t)length, encoding) : std::wstring();
}

bool VL_WriteFileFromMemory(const std::wstring &path, intptr_t address, intptr_t length,
                            bool append)
{
    if (length == 0)
        return VL_SaveFileBytes(path, "", 0, append);
    const char *memory = vl_byte_array_values::readableMemory(address, length);
    return memory && VL_SaveFileBytes(path, memory, (size_t)length, append);
}

VL_ByteArray VL_ReadFileByteArray(const std::wstring &path, long long offset, long long length)
{
    std::string bytes;
    VL_LoadFileBytes(path, bytes, offset, length);
    return vl_byte_array_values::copied(bytes.data(), bytes.size());
}

bool VL_WriteFileByteArray(const std::wstring &path, const VL_ByteArray &bytes, bool append)
{
    return VL_SaveFileBytes(path, bytes.ptr(), bytes.size(), append);
}

std::wstring VL_GetIdeErrorLog()
{
    const long long most = 0x100000;
    const std::wstring folder = VL_GetAppDir();
    for (const std::wstring &place : {folder, VL_GetFileDir(folder)}) {
        const std::wstring path = VL_JoinPath(place, L"VorelDesk_debug.log");
        const long long size = VL_GetFileSize(path);
        std::string bytes;
        if (size >= 0 && VL_LoadFileBytes(path, bytes, size > most ? size - most : 0, most))
            return VL_DecodeText(bytes.data(), bytes.size(), -1);
    }
    return std::wstring();
}
