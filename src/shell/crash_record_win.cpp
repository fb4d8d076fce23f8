// The crash record by the filter of unhandled exceptions; nothing but Win32 calls within it.
#include "shell/crash_record.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <cwchar>

namespace {

constexpr wchar_t fileName[] = L"VorelDesk_seh.log";

// The open file at `folder` (with its last separator, `length` characters), or an invalid handle.
HANDLE openRecordIn(wchar_t (&folder)[MAX_PATH], size_t length)
{
    if (length + std::wcslen(fileName) >= MAX_PATH)
        return INVALID_HANDLE_VALUE;
    std::wcscpy(folder + length, fileName);
    return CreateFileW(folder, FILE_APPEND_DATA,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

HANDLE openBesideProgram()
{
    wchar_t path[MAX_PATH];
    size_t length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH)
        return INVALID_HANDLE_VALUE;
    while (length > 0 && path[length - 1] != L'\\')
        --length;
    return openRecordIn(path, length);
}

HANDLE openInDataFolder()
{
    constexpr wchar_t subfolder[] = L"\\voreldesk";
    wchar_t path[MAX_PATH];
    size_t length = GetEnvironmentVariableW(L"LOCALAPPDATA", path, MAX_PATH);
    if (length == 0 || length + std::wcslen(subfolder) + 1 >= MAX_PATH)
        return INVALID_HANDLE_VALUE;
    std::wcscpy(path + length, subfolder);
    length += std::wcslen(subfolder);
    CreateDirectoryW(path, nullptr);
    path[length++] = L'\\';
    return openRecordIn(path, length);
}

LONG WINAPI writeRecord(EXCEPTION_POINTERS *pointers)
{
    if (!pointers || !pointers->ExceptionRecord)
        return EXCEPTION_CONTINUE_SEARCH;
    const EXCEPTION_RECORD &record = *pointers->ExceptionRecord;
    const auto info = [&record](DWORD i) {
        return reinterpret_cast<void *>(i < record.NumberParameters ? record.ExceptionInformation[i]
                                                                    : 0);
    };
    SYSTEMTIME now;
    GetLocalTime(&now);
    char text[512];
    std::snprintf(text, sizeof text,
                  "\r\n[%04u-%02u-%02u %02u:%02u:%02u] SEH code=0x%08lX addr=%p info0=0x%p "
                  "info1=0x%p\r\n",
                  now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
                  record.ExceptionCode, record.ExceptionAddress, info(0), info(1));
    OutputDebugStringA(text);
    HANDLE file = openBesideProgram();
    if (file == INVALID_HANDLE_VALUE)
        file = openInDataFolder();
    if (file == INVALID_HANDLE_VALUE)
        return EXCEPTION_CONTINUE_SEARCH;
    DWORD written = 0;
    WriteFile(file, text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
    CloseHandle(file);
    return EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

void installCrashRecord()
{
    SetUnhandledExceptionFilter(writeRecord);
}
