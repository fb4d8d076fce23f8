// The computer and its system: names, versions, memory, screen, environment, serial numbers.
#pragma once
#include "20_constants.h"

// "Windows 11", "Windows Server 2022" and the like.
std::wstring VL_GetOS();
// "10.0.22631": the true numbers, whatever the program's manifest says.
std::wstring VL_GetOSVersion();
// Language of the user interface as "zh-CN".
std::wstring VL_GetSystemLanguage();
std::wstring VL_GetComputerName();
std::wstring VL_GetUserName();
// Logical processors of the whole machine.
int VL_GetCPUCores();
// Bytes of physical memory.
long long VL_GetTotalMemory();
long long VL_GetFreeMemory();
// Pixels of the first screen.
int VL_GetScreenWidth();
int VL_GetScreenHeight();
// Writes a picture of a part of the screen, of which `x`, `y` is the upper left corner. The ending
// of `path` decides about the format: ".png", ".jpg", ".gif", ".tif", else BMP. A width or height
// of 0 reaches to the edge of the screens.
bool VL_CaptureScreenRegion(intptr_t x, intptr_t y, intptr_t width, intptr_t height,
                            const std::wstring &path);

// The environment of this process and of those it starts later.
std::wstring VL_GetEnvVar(const std::wstring &name, const std::wstring &fallback = std::wstring());
// An empty value takes the variable away.
bool VL_SetEnvVar(const std::wstring &name, const std::wstring &value);
std::wstring VL_GetWindowsDir();
std::wstring VL_GetSystem32Dir();

// Empty when the maker has written none, or the system does not tell.
std::wstring VL_GetBoardSerial();
// Of the disk with this number, from 0 on.
std::wstring VL_GetDiskPhysicalSerial(intptr_t disk = 0);
