// Hashes and check sums of texts, byte arrays and files.
#pragma once
#include "12_byte_array.h"

// Texts are hashed as UTF-8. Results are lower-case hexadecimal digits; a file that cannot be read
// gives an empty text. Files of any size are read piece by piece.
std::wstring VL_MD5(const std::wstring &text);
std::wstring VL_MD5Bytes(const VL_ByteArray &bytes);
std::wstring VL_FileMD5(const std::wstring &path);
std::wstring VL_SHA1(const std::wstring &text);
std::wstring VL_SHA1Bytes(const VL_ByteArray &bytes);
std::wstring VL_FileSHA1(const std::wstring &path);
std::wstring VL_SHA256(const std::wstring &text);
std::wstring VL_SHA256Bytes(const VL_ByteArray &bytes);
std::wstring VL_FileSHA256(const std::wstring &path);
std::wstring VL_SHA512(const std::wstring &text);
std::wstring VL_SHA512Bytes(const VL_ByteArray &bytes);
std::wstring VL_CRC32(const std::wstring &text);
std::wstring VL_CRC32Bytes(const VL_ByteArray &bytes);

std::wstring VL_HMAC_MD5(const std::wstring &text, const std::wstring &key);
std::wstring VL_HMAC_SHA1(const std::wstring &text, const std::wstring &key);
std::wstring VL_HMAC_SHA256(const std::wstring &text, const std::wstring &key);
// The 32 bytes themselves, so that one result can be the key of the next.
VL_ByteArray VL_HMAC_SHA256Bytes(const VL_ByteArray &bytes, const VL_ByteArray &key);
