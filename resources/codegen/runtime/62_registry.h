// The registry.
#pragma once
#include "20_constants.h"

// A key is written with its root, "HKEY_CURRENT_USER\\Software\\X" or shortly "HKCU\\Software\\X";
// `name` is that of a value, "" the key's unnamed one. `view` of a 64 bit system: 0 that of the
// program, 1 the 64 bit one, 2 the 32 bit one.

// A value as text: numbers in decimal, several texts one in a line, bytes as "0A FF"; `fallback`
// when there is none. Names of environment variables in it are replaced unless `expand` is false.
std::wstring VL_RegRead(const std::wstring &key, const std::wstring &name,
                        const std::wstring &fallback = std::wstring());
std::wstring VL_RegReadEx(const std::wstring &key, const std::wstring &name,
                          const std::wstring &fallback = std::wstring(), intptr_t view = 0,
                          bool expand = true);
// Integers become numbers, all else text; the key is made when it is missing.
bool VL_RegWrite(const std::wstring &key, const std::wstring &name, const VL_Any &value);
bool VL_RegWriteExStr(const std::wstring &key, const std::wstring &name, const std::wstring &value,
                      intptr_t view = 0);
bool VL_RegWriteExInt(const std::wstring &key, const std::wstring &name, long long value,
                      intptr_t view = 0);
// Deletes a value; without a name the key itself, which must have no subkeys unless `recursive`
// is set. A root and what stands directly below it are never deleted.
bool VL_RegDelete(const std::wstring &key, const std::wstring &name = std::wstring(),
                  bool recursive = false, intptr_t view = 0);
bool VL_RegKeyExists(const std::wstring &key, intptr_t view = 0);
