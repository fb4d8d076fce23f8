// Drives: which there are, their kind and their space.
#pragma once
#include "20_constants.h"

// "C:\", "D:\" and so on.
VL_Array VL_GetDrives();
// Here a drive is given as "C", "C:" or any path on it; an empty text means the current folder's.
// Bytes; 0 when there is no such drive, or nothing in it.
long long VL_GetDiskTotal(const std::wstring &drive = std::wstring());
// What this user may still write.
long long VL_GetDiskFree(const std::wstring &drive = std::wstring());
long long VL_GetDiskUsed(const std::wstring &drive = std::wstring());
// Kind of the drive as a Chinese word.
std::wstring VL_GetDiskType(const std::wstring &drive = std::wstring());
// "NTFS", "FAT32" and the like; empty when it is not known.
std::wstring VL_GetDiskFileSystem(const std::wstring &drive = std::wstring());
