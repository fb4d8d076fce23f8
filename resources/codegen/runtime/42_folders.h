// Folders: making, deleting and listing them.
#pragma once
#include "20_constants.h"

// Makes the folder and all that is missing above it; true too when it is there already.
bool VL_CreateDir(const std::wstring &path);
// Without `recursive` only an empty folder is deleted. Links inside are deleted, never followed;
// the root of a drive is refused.
bool VL_DeleteDir(const std::wstring &path, bool recursive = false);
// Files whose name fits one of the patterns in `pattern` ("*.jpg;*.png"; "*.*" fits all), or the
// subfolders, sorted. Without `fullPath` the paths are relative to `path`. Folder links are listed,
// but not entered.
VL_Array VL_GetFileList(const std::wstring &path, const std::wstring &pattern = L"*.*",
                        bool recursive = false, bool fullPath = true);
VL_Array VL_GetDirList(const std::wstring &path, bool recursive = false, bool fullPath = true);
