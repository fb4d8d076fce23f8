// Reading JSON into a VL_Any, JSON files, and values by path.
#pragma once
#include "40_files.h"
#include "55_arrays.h"

// Reads a JSON text whole: objects become dictionaries, arrays arrays, integers that need more than
// 64 bits decimals. False for anything else than one JSON value, `error` then telling line and
// column; `value` is unset then. At most 512 levels.
bool VL_ParseJson(const std::wstring &text, VL_Any &value, std::wstring *error = nullptr);
// The value; unset when the text is not JSON.
VL_Any VL_ParseJsonToAny(const std::wstring &text);
// The value in a file of any encoding; unset when the file cannot be read.
VL_Any VL_ReadJsonFileEx(const std::wstring &path);
// Writes a value as UTF-8. A text is written as it stands when it is JSON itself.
bool VL_WriteJsonFileEx(const std::wstring &path, const VL_Any &value, bool pretty = true);

// Values inside a dictionary, an array or a JSON text, by a path such as `user.tags[0]`. An empty
// path is the whole. `fallback` where there is nothing, or null.
VL_Any VL_JSON_Get(const VL_Any &json, const std::wstring &path);
std::wstring VL_JSON_GetString(const VL_Any &json, const std::wstring &path,
                               const std::wstring &fallback = L"");
intptr_t VL_JSON_GetInt(const VL_Any &json, const std::wstring &path, intptr_t fallback = 0);
double VL_JSON_GetDouble(const VL_Any &json, const std::wstring &path, double fallback = 0);
bool VL_JSON_GetBool(const VL_Any &json, const std::wstring &path, bool fallback = false);
// Items of an array, entries of a dictionary; 0 for anything else.
intptr_t VL_JSON_ArrayLength(const VL_Any &json, const std::wstring &path = L"");
VL_Array VL_JSON_ArrayToList(const VL_Any &json, const std::wstring &path = L"");
VL_Array VL_JSON_GetKeys(const VL_Any &json, const std::wstring &path = L"");
// The type word of the value; empty where there is nothing.
std::wstring VL_JSON_GetType(const VL_Any &json, const std::wstring &path = L"");
bool VL_JSON_SaveFile(const std::wstring &path, const VL_Any &json, bool pretty = true);
