// Simple ciphers, random bytes, random keys and UUIDs.
#include "82_cipher.h"
#include "58_byte_array_values.h"

#include <new>
#include <utility>

namespace vl_cipher {
namespace {

void applyRc4(VL_ByteArray &bytes, const VL_ByteArray &key)
{
    if (key.empty())
        return;
    unsigned char box[256];
    for (int i = 0; i < 256; ++i)
        box[i] = (unsigned char)i;
    for (unsigned i = 0, j = 0; i < 256; ++i) {
        j = (j + box[i] + key.data[i % key.size()]) & 255;
        std::swap(box[i], box[j]);
    }
    unsigned i = 0;
    unsigned j = 0;
    for (unsigned char &byte : bytes.data) {
        i = (i + 1) & 255;
        j = (j + box[i]) & 255;
        std::swap(box[i], box[j]);
        byte ^= box[(box[i] + box[j]) & 255];
    }
}

void applyXor(VL_ByteArray &bytes, const VL_ByteArray &key)
{
    if (key.empty())
        return;
    size_t k = 0;
    for (unsigned char &byte : bytes.data) {
        byte ^= key.data[k];
        k = k + 1 == key.size() ? 0 : k + 1;
    }
}

// Both ciphers undo themselves; only the form of the text differs by direction.
std::wstring crypted(const std::wstring &text, const std::wstring &key, bool decrypt,
                     void (*apply)(VL_ByteArray &, const VL_ByteArray &))
{
    VL_ByteArray bytes = decrypt ? VL_HexToByteArray(text) : VL_TextToByteArray(text);
    apply(bytes, VL_TextToByteArray(key));
    return decrypt ? VL_ByteArrayToText(bytes) : VL_ByteArrayToHex(bytes);
}

// The system's generator by the name under which its library exports it.
bool fillRandom(unsigned char *data, size_t length)
{
    typedef BOOLEAN(NTAPI * Generator)(PVOID, ULONG);
    static const HMODULE library = LoadLibraryW(L"advapi32.dll");
    static const Generator generate =
        library ? (Generator)(void *)GetProcAddress(library, "SystemFunction036") : NULL;
    const size_t most = 0x1000000;
    while (generate && length > 0) {
        const size_t piece = length < most ? length : most;
        if (!generate(data, (ULONG)piece))
            return false;
        data += piece;
        length -= piece;
    }
    return generate != NULL;
}

} // namespace
} // namespace vl_cipher

std::wstring VL_RC4(const std::wstring &text, const std::wstring &key, bool decrypt)
{
    return vl_cipher::crypted(text, key, decrypt, vl_cipher::applyRc4);
}

std::wstring VL_XORCrypt(const std::wstring &text, const std::wstring &key, bool decrypt)
{
    return vl_cipher::crypted(text, key, decrypt, vl_cipher::applyXor);
}

VL_ByteArray VL_RandomBytes(intptr_t length)
{
    VL_ByteArray bytes;
    if (length <= 0 || (size_t)length > 0x7FFFFFFF)
        return bytes;
    try {
        bytes.data.resize((size_t)length);
    } catch (const std::bad_alloc &) {
        return bytes;
    }
    if (!vl_cipher::fillRandom(bytes.ptr(), bytes.size()))
        bytes.clear();
    return bytes;
}

std::wstring VL_GenerateRandomKey(intptr_t length)
{
    static const wchar_t units[] =
        L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    const int fair = 256 / 62 * 62; // bytes from here on would favour the first units
    std::wstring key;
    if (length <= 0 || length > 1000000)
        return key;
    while (key.size() < (size_t)length) {
        const VL_ByteArray bytes = VL_RandomBytes(length - (intptr_t)key.size() + 16);
        if (bytes.empty())
            return std::wstring();
        for (unsigned char byte : bytes.data)
            if (byte < fair && key.size() < (size_t)length)
                key += units[byte % 62];
    }
    return key;
}

std::wstring VL_GenerateUUID(bool hyphens, bool upper)
{
    VL_ByteArray bytes = VL_RandomBytes(16);
    if (bytes.size() != 16)
        return std::wstring();
    bytes.data[6] = (unsigned char)((bytes.data[6] & 0x0F) | 0x40);
    bytes.data[8] = (unsigned char)((bytes.data[8] & 0x3F) | 0x80);
    std::wstring text = VL_ByteArrayToHex(bytes, L"", upper);
    if (hyphens)
        for (size_t at : {20, 16, 12, 8})
            text.insert(at, 1, L'-');
    return text;
}
