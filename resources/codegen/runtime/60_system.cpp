// The computer and its system: names, versions, memory, screen, environment, serial numbers.
#include "60_system.h"
#include "01_images.h"
#include "40_files.h"
#include "41_paths.h"

#include <objidl.h>
#include <winioctl.h>

#include <algorithm>
#include <cstring>
namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus
#include <gdiplus.h>

namespace vl_system {
namespace {

// The documented calls give a version that depends on the program's manifest.
RTL_OSVERSIONINFOEXW version()
{
    typedef LONG(WINAPI * GetVersion)(RTL_OSVERSIONINFOEXW *);
    RTL_OSVERSIONINFOEXW info;
    memset(&info, 0, sizeof info);
    info.dwOSVersionInfoSize = sizeof info;
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    void *found = ntdll ? (void *)GetProcAddress(ntdll, "RtlGetVersion") : NULL;
    if (found)
        ((GetVersion)found)(&info);
    return info;
}

struct Release
{
    DWORD major;
    DWORD minor;
    DWORD build;
    const wchar_t *desktop;
    const wchar_t *server;
};

// Newest first; a version belongs to the first row that is not above it.
const Release kReleases[] = {
    {10, 0, 26100, L"Windows 11", L"Windows Server 2025"},
    {10, 0, 22000, L"Windows 11", L"Windows Server 2022"},
    {10, 0, 20348, L"Windows 10", L"Windows Server 2022"},
    {10, 0, 17763, L"Windows 10", L"Windows Server 2019"},
    {10, 0, 0, L"Windows 10", L"Windows Server 2016"},
    {6, 3, 0, L"Windows 8.1", L"Windows Server 2012 R2"},
    {6, 2, 0, L"Windows 8", L"Windows Server 2012"},
    {6, 1, 0, L"Windows 7", L"Windows Server 2008 R2"},
    {6, 0, 0, L"Windows Vista", L"Windows Server 2008"},
};

bool reaches(const RTL_OSVERSIONINFOEXW &info, const Release &release)
{
    if (info.dwMajorVersion != release.major)
        return info.dwMajorVersion > release.major;
    if (info.dwMinorVersion != release.minor)
        return info.dwMinorVersion > release.minor;
    return info.dwBuildNumber >= release.build;
}

// Calls `get(buffer, size)`, which returns the length or, when the buffer is too small, the size
// that it needs.
template <typename Get>
std::wstring textFrom(Get get)
{
    std::wstring text(256, L'\0');
    for (int attempt = 0; attempt < 4; ++attempt) {
        const DWORD length = get(&text[0], (DWORD)text.size());
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize((size_t)length + 1);
    }
    return std::wstring();
}

MEMORYSTATUSEX memory()
{
    MEMORYSTATUSEX status;
    memset(&status, 0, sizeof status);
    status.dwLength = sizeof status;
    GlobalMemoryStatusEx(&status);
    return status;
}

struct Region
{
    int x;
    int y;
    int width;
    int height;
};

const int kLargestSide = 32767;

bool isScreenUnit(intptr_t value)
{
    return value >= -kLargestSide && value <= kLargestSide;
}

bool findRegion(intptr_t x, intptr_t y, intptr_t width, intptr_t height, Region &region)
{
    if (!isScreenUnit(x) || !isScreenUnit(y) || width < 0 || height < 0)
        return false;
    const intptr_t right =
        GetSystemMetrics(SM_XVIRTUALSCREEN) + GetSystemMetrics(SM_CXVIRTUALSCREEN);
    const intptr_t bottom =
        GetSystemMetrics(SM_YVIRTUALSCREEN) + GetSystemMetrics(SM_CYVIRTUALSCREEN);
    if (width == 0)
        width = right - x;
    if (height == 0)
        height = bottom - y;
    if (width <= 0 || height <= 0 || width > kLargestSide || height > kLargestSide)
        return false;
    region = {(int)x, (int)y, (int)width, (int)height};
    return true;
}

HBITMAP pictureOf(const Region &region)
{
    const HDC screen = GetDC(NULL);
    const HDC memoryDc = screen ? CreateCompatibleDC(screen) : NULL;
    HBITMAP bitmap = memoryDc ? CreateCompatibleBitmap(screen, region.width, region.height) : NULL;
    if (bitmap) {
        const HGDIOBJ old = SelectObject(memoryDc, bitmap);
        const BOOL copied = BitBlt(memoryDc, 0, 0, region.width, region.height, screen, region.x,
                                   region.y, SRCCOPY | CAPTUREBLT);
        SelectObject(memoryDc, old);
        if (!copied) {
            DeleteObject(bitmap);
            bitmap = NULL;
        }
    }
    if (memoryDc)
        DeleteDC(memoryDc);
    if (screen)
        ReleaseDC(NULL, screen);
    return bitmap;
}

CLSID encoderFor(const std::wstring &path)
{
    const struct
    {
        const wchar_t *ending;
        unsigned long id;
    } rows[] = {{L".jpg", 0x557CF401}, {L".jpeg", 0x557CF401}, {L".gif", 0x557CF402},
                {L".tif", 0x557CF405}, {L".tiff", 0x557CF405}, {L".png", 0x557CF406}};
    // The encoders differ in the first number only; this is the one of BMP.
    CLSID id = {0x557CF400, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
    const std::wstring ending = VL_GetFileExt(path);
    for (const auto &row : rows)
        if (_wcsicmp(ending.c_str(), row.ending) == 0)
            id.Data1 = row.id;
    return id;
}

bool saveBitmap(HBITMAP bitmap, const std::wstring &path)
{
    VL_InitGdiPlus();
    bool saved = false;
    {
        Gdiplus::Bitmap picture(bitmap, NULL);
        const CLSID encoder = encoderFor(path);
        saved = picture.GetLastStatus() == Gdiplus::Ok &&
                picture.Save(path.c_str(), &encoder, NULL) == Gdiplus::Ok;
    }
    VL_ShutdownGdiPlus();
    return saved;
}

std::wstring cleaned(const char *text, size_t length)
{
    std::string kept;
    for (size_t i = 0; i < length && text[i]; ++i)
        if (text[i] >= ' ' && text[i] <= '~')
            kept += text[i];
    const size_t begin = kept.find_first_not_of(' ');
    if (begin == std::string::npos)
        return std::wstring();
    kept = kept.substr(begin, kept.find_last_not_of(' ') - begin + 1);
    return std::wstring(kept.begin(), kept.end());
}

// Makers who do not number their boards leave such words in place.
bool isPlaceholder(const std::wstring &serial)
{
    const wchar_t *words[] = {L"None",
                              L"Default string",
                              L"To be filled by O.E.M.",
                              L"To be filled by O.E.M",
                              L"Not Specified",
                              L"Not Applicable",
                              L"N/A",
                              L"System Serial Number",
                              L"Base Board Serial Number"};
    for (const wchar_t *word : words)
        if (_wcsicmp(serial.c_str(), word) == 0)
            return true;
    return serial.find_first_not_of(L"0 .-") == std::wstring::npos;
}

// The `number`-th of the texts that follow the fixed part of a firmware table, from 1 on.
std::wstring firmwareText(const char *begin, const char *end, int number)
{
    for (int i = 1; number > 0 && begin < end && *begin; ++i) {
        const char *stop = (const char *)memchr(begin, 0, (size_t)(end - begin));
        if (!stop)
            stop = end;
        if (i == number)
            return cleaned(begin, (size_t)(stop - begin));
        begin = stop + 1;
    }
    return std::wstring();
}

// The firmware's tables: type, length of the fixed part, the fixed part, then texts up to an empty
// one. Type 2 is the board; its eighth byte is the number of the text with the serial number.
std::wstring boardSerial(const char *table, const char *end)
{
    while (end - table >= 4) {
        const unsigned type = (unsigned char)table[0];
        const size_t length = (unsigned char)table[1];
        if (length < 4 || (size_t)(end - table) < length || type == 127)
            break;
        const char *texts = table + length;
        if (type == 2 && length > 7)
            return firmwareText(texts, end, (unsigned char)table[7]);
        while (end - texts >= 2 && (texts[0] || texts[1]))
            ++texts;
        if (end - texts < 2)
            break;
        table = texts + 2;
    }
    return std::wstring();
}

// Some drives give their number as hex digits, each pair of characters swapped.
std::wstring unswapped(const std::wstring &serial)
{
    if (serial.size() < 16 || serial.size() % 4 != 0 ||
        serial.find_first_not_of(L"0123456789abcdefABCDEF") != std::wstring::npos)
        return serial;
    std::string bytes;
    for (size_t i = 0; i < serial.size(); i += 2) {
        const long byte = wcstol(serial.substr(i, 2).c_str(), NULL, 16);
        if (byte < ' ' || byte > '~')
            return serial;
        bytes += (char)byte;
    }
    for (size_t i = 0; i + 1 < bytes.size(); i += 2)
        std::swap(bytes[i], bytes[i + 1]);
    return cleaned(bytes.data(), bytes.size());
}

std::wstring serialOfDisk(HANDLE disk)
{
    STORAGE_PROPERTY_QUERY query;
    memset(&query, 0, sizeof query);
    query.PropertyId = StorageDeviceProperty;
    query.QueryType = PropertyStandardQuery;
    std::vector<char> answer(4096);
    DWORD got = 0;
    if (!DeviceIoControl(disk, IOCTL_STORAGE_QUERY_PROPERTY, &query, sizeof query, answer.data(),
                         (DWORD)answer.size(), &got, NULL) ||
        got < sizeof(STORAGE_DEVICE_DESCRIPTOR))
        return std::wstring();
    STORAGE_DEVICE_DESCRIPTOR head;
    memcpy(&head, answer.data(), sizeof head);
    const DWORD at = head.SerialNumberOffset;
    return at == 0 || at >= got ? std::wstring() : unswapped(cleaned(answer.data() + at, got - at));
}

} // namespace
} // namespace vl_system

std::wstring VL_GetOS()
{
    const RTL_OSVERSIONINFOEXW info = vl_system::version();
    for (const vl_system::Release &release : vl_system::kReleases)
        if (vl_system::reaches(info, release))
            return info.wProductType > VER_NT_WORKSTATION ? release.server : release.desktop;
    return L"Windows";
}

std::wstring VL_GetOSVersion()
{
    const RTL_OSVERSIONINFOEXW info = vl_system::version();
    wchar_t text[64];
    swprintf(text, 64, L"%lu.%lu.%lu", (unsigned long)info.dwMajorVersion,
             (unsigned long)info.dwMinorVersion, (unsigned long)info.dwBuildNumber);
    return text;
}

std::wstring VL_GetSystemLanguage()
{
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
    const LCID language = MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT);
    if (LCIDToLocaleName(language, name, LOCALE_NAME_MAX_LENGTH, 0) == 0 &&
        GetUserDefaultLocaleName(name, LOCALE_NAME_MAX_LENGTH) == 0)
        return std::wstring();
    return name;
}

std::wstring VL_GetComputerName()
{
    return vl_system::textFrom([](wchar_t *text, DWORD size) {
        const bool done = GetComputerNameExW(ComputerNamePhysicalDnsHostname, text, &size) != FALSE;
        return done || GetLastError() == ERROR_MORE_DATA ? size : 0;
    });
}

std::wstring VL_GetUserName()
{
    wchar_t name[257] = L"";
    DWORD size = 257;
    return GetUserNameW(name, &size) ? std::wstring(name) : std::wstring();
}

int VL_GetCPUCores()
{
    const DWORD count = GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
    return count > 0 ? (int)count : 1;
}

long long VL_GetTotalMemory()
{
    return (long long)vl_system::memory().ullTotalPhys;
}

long long VL_GetFreeMemory()
{
    return (long long)vl_system::memory().ullAvailPhys;
}

int VL_GetScreenWidth()
{
    return GetSystemMetrics(SM_CXSCREEN);
}

int VL_GetScreenHeight()
{
    return GetSystemMetrics(SM_CYSCREEN);
}

bool VL_CaptureScreenRegion(intptr_t x, intptr_t y, intptr_t width, intptr_t height,
                            const std::wstring &path)
{
    vl_system::Region region;
    const std::wstring file = VL_SystemPath(path);
    if (file.empty() || VL_DirExists(path) || !vl_system::findRegion(x, y, width, height, region))
        return false;
    const HBITMAP bitmap = vl_system::pictureOf(region);
    if (!bitmap)
        return false;
    const bool saved = vl_system::saveBitmap(bitmap, file);
    DeleteObject(bitmap);
    return saved;
}

std::wstring VL_GetEnvVar(const std::wstring &name, const std::wstring &fallback)
{
    SetLastError(ERROR_SUCCESS);
    const std::wstring value = vl_system::textFrom([&name](wchar_t *text, DWORD size) {
        return GetEnvironmentVariableW(name.c_str(), text, size);
    });
    return value.empty() && GetLastError() == ERROR_ENVVAR_NOT_FOUND ? fallback : value;
}

bool VL_SetEnvVar(const std::wstring &name, const std::wstring &value)
{
    if (name.empty() || name.find(L'=') != std::wstring::npos)
        return false;
    const BOOL done = SetEnvironmentVariableW(name.c_str(), value.empty() ? NULL : value.c_str());
    return done || (value.empty() && GetLastError() == ERROR_ENVVAR_NOT_FOUND);
}

std::wstring VL_GetWindowsDir()
{
    return vl_system::textFrom(
        [](wchar_t *text, DWORD size) { return (DWORD)GetSystemWindowsDirectoryW(text, size); });
}

std::wstring VL_GetSystem32Dir()
{
    return vl_system::textFrom(
        [](wchar_t *text, DWORD size) { return (DWORD)GetSystemDirectoryW(text, size); });
}

std::wstring VL_GetBoardSerial()
{
    const DWORD provider = 0x52534D42; // "RSMB", the tables of the firmware
    const DWORD size = GetSystemFirmwareTable(provider, 0, NULL, 0);
    if (size < 8 || size > 0x1000000)
        return std::wstring();
    std::vector<char> data(size);
    const DWORD got = GetSystemFirmwareTable(provider, 0, data.data(), size);
    if (got < 8 || got > size)
        return std::wstring();
    const std::wstring serial = vl_system::boardSerial(data.data() + 8, data.data() + got);
    return vl_system::isPlaceholder(serial) ? std::wstring() : serial;
}

std::wstring VL_GetDiskPhysicalSerial(intptr_t disk)
{
    if (disk < 0 || disk > 255)
        return std::wstring();
    const std::wstring name = L"\\\\.\\PhysicalDrive" + std::to_wstring((int)disk);
    // No access rights are asked for: reading properties needs none, and no administrator.
    const HANDLE handle = CreateFileW(name.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, NULL,
                                      OPEN_EXISTING, 0, NULL);
    if (handle == INVALID_HANDLE_VALUE)
        return std::wstring();
    const std::wstring serial = vl_system::serialOfDisk(handle);
    CloseHandle(handle);
    return serial;
}
