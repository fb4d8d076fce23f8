// Text commands that measure, cut, build and format text.
// Positions count UTF-16 units from 0; what would cut a surrogate pair in half leaves the half out.
#pragma once
#include "30_output.h"
#include "44_text_search.h"

// Length in UTF-16 units; without `charMode` in bytes of UTF-8.
intptr_t VL_StrLen(const std::wstring &text, bool charMode = true);
// The overloads for all other values stand with the arrays.
intptr_t VL_LengthEx(const wchar_t *text);
bool VL_StrIsEmpty(const std::wstring &text);

// Pieces of a text; positions and lengths beyond the text are brought back into it. A negative
// length of VL_SubStr and VL_StrMid means everything to the end.
std::wstring VL_SubStr(const std::wstring &text, intptr_t start, intptr_t length = -1);
std::wstring VL_StrMid(const std::wstring &text, intptr_t start, intptr_t length = -1);
std::wstring VL_StrLeft(const std::wstring &text, intptr_t length);
std::wstring VL_StrRight(const std::wstring &text, intptr_t length);

// The character at `index` as text: both halves at the place of the first, nothing at the place of
// the second, so that joining all of them gives the text back. Empty out of range.
std::wstring VL_CharAt(const std::wstring &text, intptr_t index);
// The number of that character, up to 0x10FFFF; 0 where VL_CharAt is empty.
intptr_t VL_CharCode(const std::wstring &text, intptr_t index = 0);
// Empty for a number that is no character.
std::wstring VL_CodeToChar(intptr_t code);

// Results longer than VL_MAX_TEXT_LENGTH are not built: empty, or for VL_StrPad the text itself.
std::wstring VL_StrRepeat(const std::wstring &text, intptr_t count);
// Fills up to `width` units, behind the text when `right`, else before it.
std::wstring VL_StrPad(const std::wstring &text, intptr_t width, const std::wstring &filling = L" ",
                       bool right = true);
std::wstring VL_StrReverse(const std::wstring &text);
std::wstring VL_StrInsert(const std::wstring &text, intptr_t position,
                          const std::wstring &inserted);
std::wstring VL_StrRemove(const std::wstring &text, intptr_t start, intptr_t length);

std::wstring VL_CapitalizeFirst(const std::wstring &text);
// Each word's first letter upper case, its others lower case.
std::wstring VL_CapitalizeWords(const std::wstring &text);

// True for a decimal number with optional sign, point and exponent, blanks around it allowed.
bool VL_IsNumeric(const std::wstring &text);

// Puts `values` in the place of {0}, {1}, ... and of {}, which takes the next one; {{ and }} are
// braces. What names no value stays as it is.
std::wstring VL_StrFormatValues(const std::wstring &format,
                                const std::vector<std::wstring> &values);
template <typename... Values>
std::wstring VL_StrFormat(const std::wstring &format, const Values &...values)
{
    return VL_StrFormatValues(format, std::vector<std::wstring>{VL_ToOutputStr(values)...});
}
