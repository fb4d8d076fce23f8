// Settings in INI files.
#pragma once
#include "20_constants.h"

// Files may be UTF-8, 936 or UTF-16 with its mark; they stay what they are when they are written,
// new ones are UTF-8. Comments, the order of lines, and lines that are no settings are kept. Names
// of sections and keys are compared without regard to case; the keys before the first section
// belong to the section "".

// The value of a key, a pair of quotes around it taken off; `fallback` when it is not there.
std::wstring VL_ReadIni(const std::wstring &path, const std::wstring &section,
                        const std::wstring &key, const std::wstring &fallback = std::wstring());
// Sets a key; file and section are made when they are missing. False when the file cannot be
// written, and for names and values that a line cannot hold, such as one with a line end.
bool VL_WriteIni(const std::wstring &path, const std::wstring &section, const std::wstring &key,
                 const VL_Any &value);
// False when there was nothing to delete.
bool VL_DeleteIniKey(const std::wstring &path, const std::wstring &section,
                     const std::wstring &key);
bool VL_DeleteIniSection(const std::wstring &path, const std::wstring &section);
// In the order of the file, each name once.
VL_Array VL_GetIniSectionList(const std::wstring &path);
VL_Array VL_GetIniKeyList(const std::wstring &path, const std::wstring &section);
bool VL_IniKeyExists(const std::wstring &path, const std::wstring &section,
                     const std::wstring &key);
