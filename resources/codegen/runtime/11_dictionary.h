// Dictionaries inside a VL_Any, and their JSON text.
#pragma once
#include "10_any.h"

// Sets an entry. What is no dictionary becomes a new one first; the entries of a dictionary are
// shared with its copies.
void VL_DictSet(VL_Any &dict, const std::wstring &key, const VL_Any &value);
void VL_DictSet(VL_AnyItem &&dict, const std::wstring &key, const VL_Any &value);
// The entry; unset for a missing key and for what is no dictionary.
VL_Any VL_DictGet(const VL_Any &dict, const std::wstring &key);
bool VL_DictHas(const VL_Any &dict, const std::wstring &key);
// False when there was no such entry.
bool VL_DictRemove(VL_Any &dict, const std::wstring &key);
// The keys in sorted order.
std::vector<VL_Any> VL_DictKeys(const VL_Any &dict);
intptr_t VL_DictCount(const VL_Any &dict);
void VL_DictClear(VL_Any &dict);

// The text in quotes, with what JSON wants escaped; other characters stand as they are.
std::wstring VL_JsonEscapeW(const std::wstring &text);
// JSON of any value, dictionaries sorted by key: `{"a":1, "b":2}`, or in lines of two blanks per
// depth with a line end behind the whole. What JSON cannot hold (not-a-number, infinity, values
// nested more than 512 deep) is null; bytes are an array of numbers.
std::wstring VL_GenerateJsonFromAny(const VL_Any &root, bool pretty = false);
