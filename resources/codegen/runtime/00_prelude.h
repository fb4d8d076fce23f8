// What every generated program begins with: settings, system headers, encoding helpers.
#pragma once

#ifndef _CRT_SECURE_NO_WARNINGS
#define _CRT_SECURE_NO_WARNINGS
#endif
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef _WINSOCKAPI_
#define _WINSOCKAPI_
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef _WIN32_WINNT
#define _WIN32_WINNT 0x0601
#endif
// An index outside an array ends the program instead of spoiling its memory.
#ifndef _GLIBCXX_ASSERTIONS
#define _GLIBCXX_ASSERTIONS 1
#endif

// winsock2.h guards itself with the macro that keeps windows.h from including its elder, and comes
// ahead of it; everything else builds on windows.h.
#undef _WINSOCKAPI_
#include <winsock2.h>

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <cmath>
#include <cstdint>
#include <ctime>
#include <cwchar>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

// GCC does not read these lines: the build driver takes the names for the link line from here.
#ifdef _MSC_VER
#pragma comment(lib, "comctl32.lib")
#pragma comment(lib, "comdlg32.lib")
#pragma comment(lib, "shell32.lib")
#pragma comment(lib, "shlwapi.lib")
#pragma comment(lib, "iphlpapi.lib")
#pragma comment(lib, "ws2_32.lib")
#pragma comment(lib, "wininet.lib")
#pragma comment(lib, "winhttp.lib")
#pragma comment(lib, "advapi32.lib")
#pragma comment(lib, "crypt32.lib")
#pragma comment(lib, "winmm.lib")
#pragma comment(lib, "ole32.lib")
#pragma comment(lib, "oleaut32.lib")
#pragma comment(lib, "wbemuuid.lib")
#pragma comment(lib, "psapi.lib")
#pragma comment(lib, "dbghelp.lib")
#pragma comment(lib, "version.lib")
#pragma comment(lib, "imm32.lib")
#pragma comment(lib, "rpcrt4.lib")
#pragma comment(lib, "msimg32.lib")
#pragma comment(lib, "gdiplus.lib")
// clang-format off
#pragma comment(linker, "\"/manifestdependency:type='win32' name='Microsoft.Windows.Common-Controls' version='6.0.0.0' processorArchitecture='*' publicKeyToken='6595b64144ccf1df' language='*'\"")
// clang-format on
#endif

// Constants that older system headers lack.
#ifndef HDM_SETBKCOLOR
#define HDM_SETBKCOLOR (HDM_FIRST + 6)
#endif
#ifndef TCM_SETBKCOLOR
#define TCM_SETBKCOLOR (TCM_FIRST + 64)
#endif
#ifndef TBM_SETBKCOLOR
#define TBM_SETBKCOLOR (WM_USER + 59)
#endif
#ifndef DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2
#define DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2 ((HANDLE)-4)
#endif
#ifndef WBEM_FLAG_FORWARD_ONLY
#define WBEM_FLAG_FORWARD_ONLY 0x20
#endif
#ifndef WBEM_FLAG_RETURN_IMMEDIAT
#define WBEM_FLAG_RETURN_IMMEDIAT 0x10
#endif

// Names that event handlers bind under other spellings.
#define _u8282_u70b9 _node
#define _u884c _row
#define _u5217 _col
#define _u5f53_u524d_u7d22_u5f15 _vlSelIdx
#define _u5f53_u524d_u6587_u672c _vlSelText

// Defined by the program itself.
extern HINSTANCE g_hInstance;
extern HWND g_hWndMain;
extern DWORD g_mainThreadId;

// What `std::wstring(L"...")` gives. A call takes less room and time to compile than the making of
// the text in place.
std::wstring VL_Literal(const wchar_t *text);

// Text of `codePage` (CP_UTF8, 936, CP_ACP, ...) from wide text and back. What the code page cannot
// hold becomes its replacement character; nothing fails. Text of any length is taken.
std::string VL_WideToCodePage(const std::wstring &text, UINT codePage);
std::wstring VL_CodePageToWide(const char *data, size_t length, UINT codePage);
std::string VL_WideToUtf8(const std::wstring &text);
std::wstring VL_Utf8ToWide(const std::string &bytes);
