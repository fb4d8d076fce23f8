// Simple ciphers, random bytes, random keys and UUIDs.
#pragma once
#include "12_byte_array.h"

// Encrypt a text (as UTF-8) to upper-case hexadecimal digits; with `decrypt` back again. An empty
// key leaves the bytes as they are; digits that are none give an empty text.
std::wstring VL_RC4(const std::wstring &text, const std::wstring &key, bool decrypt = false);
std::wstring VL_XORCrypt(const std::wstring &text, const std::wstring &key, bool decrypt = false);

// Unpredictable bytes from the system; empty for a length that is not positive or passes 2 GB.
VL_ByteArray VL_RandomBytes(intptr_t length);
// Letters and digits, each equally likely; at most a million.
std::wstring VL_GenerateRandomKey(intptr_t length = 16);
// A random UUID (version 4).
std::wstring VL_GenerateUUID(bool hyphens = true, bool upper = false);
