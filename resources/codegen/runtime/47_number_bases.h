// Numbers in other bases and in Chinese words.
#pragma once
#include "44_text_search.h"
#include "46_numbers.h"

// Upper-case digits, zeros put before up to `width` (at most 64). A negative integer shows the bits
// it is stored in.
std::wstring VL_ToHex(intptr_t value, intptr_t width = 0);
std::wstring VL_ToBinary(intptr_t value, intptr_t width = 0);
std::wstring VL_ToOctal(intptr_t value, intptr_t width = 0);
// Base 2 to 36, a negative integer with a minus sign; empty for another base.
std::wstring VL_ToBase(intptr_t value, intptr_t base);

// Read up to the first character that is no digit of the base; blanks before it, a sign and the
// usual prefix (0x, &H, #, 0b, 0o) may stand first. 0 when nothing can be read or it does not fit.
intptr_t VL_HexToInt(const std::wstring &text);
intptr_t VL_BinaryToInt(const std::wstring &text);
intptr_t VL_OctalToInt(const std::wstring &text);
intptr_t VL_BaseToInt(const std::wstring &text, intptr_t base);

// An amount of money as it is written on a cheque, rounded to cents; a number as it is read aloud.
// Empty for amounts of 10^16 and more and for what is not a number.
std::wstring VL_ToRMBUpper(double amount);
std::wstring VL_ToChineseUpper(double number);
