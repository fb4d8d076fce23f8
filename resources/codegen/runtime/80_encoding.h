// Encoding commands: code pages, URL, HTML, hexadecimal, \u escapes and Base64.
#pragma once
#include "12_byte_array.h"

// Code page commands. A text that "holds bytes" has one unit from 0 to 255 for each byte. Calls
// pass the argument text as its UTF-8 form. A text with units above 255 where bytes are expected
// counts as already decoded. VL_UTF16ToX followed by VL_XToUTF16 gives
// the text back.
std::wstring VL_UTF8ToUTF16(const std::string &byteText);
std::wstring VL_GBKToUTF16(const std::string &byteText);
std::wstring VL_GB2312ToUTF16(const std::string &byteText);
std::wstring VL_ASCIIToUTF16(const std::string &byteText);
std::wstring VL_EncodeToUTF16(const std::string &byteText, intptr_t encoding = -1);
// Results hold bytes.
std::wstring VL_UTF16ToUTF8(const std::string &text);
std::wstring VL_UTF16ToGBK(const std::string &text);
std::wstring VL_UTF16ToGB2312(const std::string &text);
std::wstring VL_UTF16ToASCII(const std::string &text);
std::wstring VL_UTF16ToEncode(const std::string &text, intptr_t encoding = 65001);
std::wstring VL_UTF8ToGBK(const std::string &byteText);
std::wstring VL_GBKToUTF8(const std::string &byteText);

// Letters, digits and "-_.~" stay, all other bytes become %XX. Decoding also takes "+" for a blank;
// what is no escape stays as it is.
std::wstring VL_URLEncode(const std::wstring &text, intptr_t encoding = 65001);
std::wstring VL_URLDecode(const std::wstring &text, intptr_t encoding = 65001);
// Decoding knows the usual names, &#number; and &#xnumber;.
std::wstring VL_HTMLEncode(const std::wstring &text);
std::wstring VL_HTMLDecode(const std::wstring &text);
std::wstring VL_HexEncode(const std::wstring &text, intptr_t encoding = 65001);
std::wstring VL_HexDecode(const std::wstring &text, intptr_t encoding = 65001);
// Units above 127, and a backslash that would begin an escape, become \uXXXX.
std::wstring VL_UnicodeEncode(const std::wstring &text);
std::wstring VL_UnicodeDecode(const std::wstring &text);
// Decoding skips blanks and line ends, takes both alphabets and missing "=" at the end; anything
// else gives an empty result.
std::wstring VL_Base64Encode(const std::wstring &text, intptr_t encoding = 65001);
std::wstring VL_Base64Decode(const std::wstring &text, intptr_t encoding = 65001);
std::wstring VL_Base64EncodeBytes(const VL_ByteArray &bytes);
VL_ByteArray VL_Base64DecodeBytes(const std::wstring &text);
