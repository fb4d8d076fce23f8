// Text in numbered encodings, as files, byte arrays and the encoding commands use them.
#pragma once
#include "00_prelude.h"

// Encodings are code page numbers: 65001 UTF-8, 936, 20936, 1200 and 1201 (UTF-16, low or high byte
// first), 0 the system's own; -1 finds out by itself. A number the system does not know counts
// as UTF-8.

// The text that `length` bytes hold. A byte order mark is left out. With -1 the mark decides, then
// whether the bytes are valid UTF-8, else they are read as 936. Never fails: what cannot be read
// becomes replacement characters.
std::wstring VL_DecodeText(const char *data, size_t length, intptr_t encoding);
// The bytes of `text`, without a byte order mark.
std::string VL_EncodeText(const std::wstring &text, intptr_t encoding);
// The byte order mark of a file in `encoding`: two bytes for UTF-16, else none.
std::string VL_ByteOrderMark(intptr_t encoding);
// Whether the bytes are well-formed UTF-8 throughout.
bool VL_IsValidUtf8(const char *data, size_t length);
