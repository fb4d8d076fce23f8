// Drives: which there are, their kind and their space.
#include "63_disk.h"

namespace vl_disk {
namespace {

// Keeps the system from asking the user to put something into an empty drive.
class QuietErrors
{
public:
    QuietErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &m_old); }
    ~QuietErrors() { SetThreadErrorMode(m_old, NULL); }
    QuietErrors(const QuietErrors &) = delete;
    QuietErrors &operator=(const QuietErrors &) = delete;

private:
    DWORD m_old = 0;
};

bool isLetter(wchar_t c)
{
    return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z');
}

// The root of the volume that holds `drive`, with a backslash at its end; empty for none.
std::wstring rootOf(const std::wstring &drive)
{
    if (drive.find(L'\0') != std::wstring::npos)
        return std::wstring();
    std::wstring path = drive.empty() ? std::wstring(L".") : drive;
    if (isLetter(path[0]) && (path.size() == 1 || (path.size() == 2 && path[1] == L':')))
        path = std::wstring(1, path[0]) + L":\\";
    std::vector<wchar_t> root(path.size() + MAX_PATH + 2);
    if (!GetVolumePathNameW(path.c_str(), root.data(), (DWORD)root.size()))
        return std::wstring();
    return root.data();
}

struct Space
{
    ULARGE_INTEGER available;
    ULARGE_INTEGER total;
    ULARGE_INTEGER unused;
};

Space spaceOf(const std::wstring &drive)
{
    const QuietErrors quiet;
    const std::wstring root = rootOf(drive);
    Space space = {};
    if (root.empty() ||
        !GetDiskFreeSpaceExW(root.c_str(), &space.available, &space.total, &space.unused))
        return Space();
    return space;
}

} // namespace
} // namespace vl_disk

VL_Array VL_GetDrives()
{
    VL_Array result;
    const DWORD drives = GetLogicalDrives();
    for (int i = 0; i < 26; ++i)
        if (drives >> i & 1)
            result.push_back(VL_Any(std::wstring(1, (wchar_t)(L'A' + i)) + L":\\"));
    return result;
}

long long VL_GetDiskTotal(const std::wstring &drive)
{
    return (long long)vl_disk::spaceOf(drive).total.QuadPart;
}

long long VL_GetDiskFree(const std::wstring &drive)
{
    return (long long)vl_disk::spaceOf(drive).available.QuadPart;
}

long long VL_GetDiskUsed(const std::wstring &drive)
{
    const vl_disk::Space space = vl_disk::spaceOf(drive);
    return (long long)(space.total.QuadPart - space.unused.QuadPart);
}

std::wstring VL_GetDiskType(const std::wstring &drive)
{
    const std::wstring root = vl_disk::rootOf(drive);
    switch (root.empty() ? DRIVE_NO_ROOT_DIR : GetDriveTypeW(root.c_str())) {
    case DRIVE_REMOVABLE:
        return L"\u53EF\u79FB\u52A8\u78C1\u76D8";
    case DRIVE_FIXED:
        return L"\u672C\u5730\u78C1\u76D8";
    case DRIVE_REMOTE:
        return L"\u7F51\u7EDC\u78C1\u76D8";
    case DRIVE_CDROM:
        return L"\u5149\u9A71";
    case DRIVE_RAMDISK:
        return L"\u5185\u5B58\u76D8";
    default:
        return L"\u672A\u77E5";
    }
}

std::wstring VL_GetDiskFileSystem(const std::wstring &drive)
{
    const vl_disk::QuietErrors quiet;
    const std::wstring root = vl_disk::rootOf(drive);
    wchar_t name[MAX_PATH + 1] = L"";
    if (root.empty() ||
        !GetVolumeInformationW(root.c_str(), NULL, 0, NULL, NULL, NULL, name, MAX_PATH + 1))
        return std::wstring();
    return name;
}
