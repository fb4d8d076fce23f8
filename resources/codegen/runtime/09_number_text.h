// Numbers as text, and text as numbers.
#pragma once
#include "00_prelude.h"

// Decimal text: "%.15g", so that 3.14 does not show as 3.1400000000000001.
std::wstring VL_FormatDouble(double v);
std::wstring VL_FormatInteger(long long v);
// The shortest decimal text that reads back as the same float.
std::wstring VL_FormatFloat(float v);
// A number at the start of a text, blanks before it left out; 0 when there is none. Full-width
// digits count. `whole` tells whether the number is all of the text.
long long VL_ReadInteger(const std::wstring &text, bool *whole = nullptr);
double VL_ReadNumber(const std::wstring &text, bool *whole = nullptr);
// Decimals cut to an integer, held at the ends of the range; not-a-number is 0.
long long VL_TruncateToInteger(double v);
