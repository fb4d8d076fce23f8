// Byte arrays from and to texts, numbers, arrays, memory and files.
#pragma once
#include "20_constants.h"

VL_ByteArray VL_TextToByteArray(const std::wstring &text, intptr_t encoding = 65001);
// With -1 the encoding is found out.
std::wstring VL_ByteArrayToText(const VL_ByteArray &bytes, intptr_t encoding = 65001);

// The bytes of any value: a text in UTF-8, an integer as 4 bytes (8 if it needs them), a decimal as
// 8 and a truth value as 1; numbers have their lowest byte first.
VL_ByteArray VL_ToByteArray(const std::wstring &value);
VL_ByteArray VL_ToByteArray(const wchar_t *value);
VL_ByteArray VL_ToByteArray(double value);
VL_ByteArray VL_ToByteArray(bool value);
VL_ByteArray VL_ToByteArray(const VL_Any &value);
VL_ByteArray VL_ToByteArray(const VL_Array &value);
VL_ByteArray VL_ToByteArray(const VL_ByteArray &value);
VL_ByteArray VL_IntegerToByteArray(long long value);
template <typename T, VL_IfInteger<T> = 0>
VL_ByteArray VL_ToByteArray(T value)
{
    return VL_IntegerToByteArray((long long)value);
}

// Hexadecimal digits, two for each byte. Reading skips blanks, ",", "-", ":" and "0x"; anything
// else, or an odd number of digits, gives an empty array.
std::wstring VL_ByteArrayToHex(const VL_ByteArray &bytes,
                               const std::wstring &separator = std::wstring(), bool upper = true);
VL_ByteArray VL_HexToByteArray(const std::wstring &text);

// Numbers of `size` 1 to 8 bytes (decimals: 4 or 8). Reading outside the array gives 0, writing
// changes nothing.
VL_ByteArray VL_IntToByteArray(long long value, intptr_t size = 4, bool highFirst = false);
VL_ByteArray VL_DoubleToByteArray(double value, intptr_t size = 8);
long long VL_ByteArrayGetInt(const VL_ByteArray &bytes, intptr_t index, intptr_t size = 4,
                             bool highFirst = false);
long long VL_ByteArrayGetUInt(const VL_ByteArray &bytes, intptr_t index, intptr_t size = 4,
                              bool highFirst = false);
bool VL_ByteArraySetInt(VL_ByteArray &bytes, intptr_t index, long long value, intptr_t size = 4,
                        bool highFirst = false);
double VL_ByteArrayGetDouble(const VL_ByteArray &bytes, intptr_t index, intptr_t size = 8);
bool VL_ByteArraySetDouble(VL_ByteArray &bytes, intptr_t index, double value, intptr_t size = 8);

VL_Array VL_ByteArrayToArray(const VL_ByteArray &bytes);
VL_ByteArray VL_ArrayToByteArray(const VL_Array &array);

// Copies from an address of this program. Memory that is not readable gives an empty result.
VL_ByteArray VL_ByteArrayFromMemory(intptr_t address, intptr_t length);
std::wstring VL_ByteArrayToTextFromMemory(intptr_t address, intptr_t length,
                                          intptr_t encoding = 65001);
bool VL_WriteFileFromMemory(const std::wstring &path, intptr_t address, intptr_t length,
                            bool append = false);

// `length` -1 reads to the end.
VL_ByteArray VL_ReadFileByteArray(const std::wstring &path, long long offset = 0,
                                  long long length = -1);
bool VL_WriteFileByteArray(const std::wstring &path, const VL_ByteArray &bytes,
                           bool append = false);
// The log that the development environment keeps beside the program or one folder above; at most
// its last megabyte.
std::wstring VL_GetIdeErrorLog();
