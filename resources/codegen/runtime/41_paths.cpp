// Path texts, and the folders of the system, the user and the program.
#include "41_paths.h"
#include "40_files.h"

#include <objbase.h>
#include <shlobj.h>

namespace vl_paths {
namespace {

bool isSlash(wchar_t unit)
{
    return unit == L'\\' || unit == L'/';
}

size_t skipName(const std::wstring &path, size_t begin)
{
    const size_t end = path.find_first_of(L"\\/", begin);
    return end == std::wstring::npos ? path.size() : end;
}

bool hasDrive(const std::wstring &path, size_t begin = 0)
{
    if (path.size() < begin + 2 || path[begin + 1] != L':')
        return false;
    const wchar_t letter = path[begin] | 0x20;
    return letter >= L'a' && letter <= L'z';
}

// Length of what ".." cannot leave: "C:\", "C:", "\", "\\server\share\", "\\?\C:\".
size_t rootLength(const std::wstring &path)
{
    if (hasDrive(path))
        return path.size() > 2 && isSlash(path[2]) ? 3 : 2;
    if (path.empty() || !isSlash(path[0]))
        return 0;
    if (path.size() < 3 || !isSlash(path[1]) || isSlash(path[2]))
        return 1;
    const bool device = path[2] == L'?' || path[2] == L'.';
    if (device && path.size() > 3 && isSlash(path[3]) && hasDrive(path, 4))
        return path.size() > 6 && isSlash(path[6]) ? 7 : 6;
    size_t end = skipName(path, 2);
    if (end < path.size())
        end = skipName(path, end + 1);
    return end < path.size() ? end + 1 : end;
}

size_t nameBegin(const std::wstring &path)
{
    const size_t slash = path.find_last_of(L"\\/");
    const size_t begin = slash == std::wstring::npos ? 0 : slash + 1;
    return begin == 0 && hasDrive(path) ? 2 : begin;
}

// Where the extension of the name that begins at `begin` begins; the path's end if it has none.
size_t extensionBegin(const std::wstring &path, size_t begin)
{
    const size_t dot = path.rfind(L'.');
    return dot == std::wstring::npos || dot <= begin || dot + 1 == path.size() ? path.size() : dot;
}

std::wstring withoutLastSlash(std::wstring path)
{
    const size_t root = rootLength(path);
    while (path.size() > root && isSlash(path.back()))
        path.pop_back();
    return path;
}

// The text that a system function of the form `DWORD f(units, buffer)` gives. It answers with the
// room it needs when the buffer is too short.
template <typename Function>
std::wstring filled(Function function)
{
    std::wstring text(MAX_PATH, L'\0');
    for (int attempt = 0; attempt < 8; ++attempt) {
        const DWORD length = function((DWORD)text.size(), &text[0]);
        if (length < text.size()) {
            text.resize(length);
            return withoutLastSlash(text);
        }
        text.resize(length > text.size() ? length + 1 : text.size() * 4);
    }
    return std::wstring();
}

std::wstring environment(const wchar_t *name)
{
    return filled([name](DWORD units, wchar_t *buffer) {
        return GetEnvironmentVariableW(name, buffer, units);
    });
}

// A folder the user may have moved, or the usual place below the profile.
std::wstring knownFolder(const GUID &id, const wchar_t *usualName)
{
    PWSTR found = NULL;
    std::wstring path;
    if (SUCCEEDED(SHGetKnownFolderPath(id, 0, NULL, &found)) && found)
        path = found;
    CoTaskMemFree(found);
    if (!path.empty())
        return withoutLastSlash(path);
    return VL_JoinPath(environment(L"USERPROFILE"), usualName);
}

const GUID kDesktop = {
    0xB4BFCC3A, 0xDB2C, 0x424C, {0xB0, 0x29, 0x7F, 0xE9, 0x9A, 0x87, 0xC6, 0x41}};
const GUID kDocuments = {
    0xFDD39AD0, 0x238F, 0x46AF, {0xAD, 0xB4, 0x6C, 0x85, 0x48, 0x03, 0x69, 0xC7}};
const GUID kDownloads = {
    0x374DE290, 0x123F, 0x4565, {0x91, 0x64, 0x39, 0xC4, 0x92, 0x5E, 0x46, 0x7B}};
const GUID kMusic = {0x4BD8D571, 0x6D19, 0x48D3, {0xBE, 0x97, 0x42, 0x22, 0x20, 0x08, 0x0E, 0x43}};
const GUID kPictures = {
    0x33E28130, 0x4E1E, 0x4676, {0x83, 0x5A, 0x98, 0x39, 0x5C, 0x3B, 0xC3, 0xBB}};
const GUID kVideos = {0x18989B1D, 0x99B5, 0x455B, {0x84, 0x1C, 0xAB, 0x7C, 0x74, 0xE4, 0xDD, 0xFC}};
const GUID kProfile = {
    0x5E6C858F, 0x0E22, 0x4760, {0x9A, 0xFE, 0xEA, 0x33, 0x17, 0xB6, 0x71, 0x73}};

} // namespace
} // namespace vl_paths

std::wstring VL_GetFileName(const std::wstring &path, bool withExtension)
{
    const size_t begin = vl_paths::nameBegin(path);
    if (withExtension)
        return path.substr(begin);
    return path.substr(begin, vl_paths::extensionBegin(path, begin) - begin);
}

std::wstring VL_GetFileExt(const std::wstring &path)
{
    return path.substr(vl_paths::extensionBegin(path, vl_paths::nameBegin(path)));
}

std::wstring VL_GetFileDir(const std::wstring &path)
{
    return vl_paths::withoutLastSlash(path.substr(0, vl_paths::nameBegin(path)));
}

std::wstring VL_JoinPath(const std::wstring &first, const std::wstring &second)
{
    const bool server = second.size() > 1 && vl_paths::isSlash(second[0]) && second[1] == second[0];
    if (first.empty() || vl_paths::hasDrive(second) || server)
        return second;
    if (second.empty())
        return first;
    size_t end = first.size();
    while (end > 0 && vl_paths::isSlash(first[end - 1]))
        --end;
    size_t begin = 0;
    while (begin < second.size() && vl_paths::isSlash(second[begin]))
        ++begin;
    return first.substr(0, end) + L"\\" + second.substr(begin);
}

std::wstring VL_NormalizePath(const std::wstring &path)
{
    const size_t root = vl_paths::rootLength(path);
    std::wstring result = path.substr(0, root);
    for (wchar_t &unit : result)
        if (unit == L'/')
            unit = L'\\';
    const bool anchored = !result.empty() && result.back() == L'\\';
    std::vector<size_t> begins; // where each kept part begins; those of leading ".." are not kept
    for (size_t begin = root; begin < path.size();) {
        const size_t end = vl_paths::skipName(path, begin);
        const std::wstring part = path.substr(begin, end - begin);
        begin = end + 1;
        if (part.empty() || part == L".")
            continue;
        if (part == L".." && !begins.empty()) {
            result.resize(begins.back());
            begins.pop_back();
            continue;
        }
        if (part == L".." && anchored)
            continue;
        if (part != L"..")
            begins.push_back(result.size());
        if (result.size() > root)
            result += L'\\';
        result += part;
    }
    return result.empty() && !path.empty() ? L"." : result;
}

std::wstring VL_GetCurrentDir()
{
    return vl_paths::filled(
        [](DWORD units, wchar_t *buffer) { return GetCurrentDirectoryW(units, buffer); });
}

bool VL_SetCurrentDir(const std::wstring &path)
{
    const std::wstring system = VL_SystemPath(path);
    return !system.empty() && SetCurrentDirectoryW(system.c_str());
}

std::wstring VL_GetAppDir()
{
    return VL_GetFileDir(vl_paths::filled(
        [](DWORD units, wchar_t *buffer) { return GetModuleFileNameW(NULL, buffer, units); }));
}

std::wstring VL_GetTempDir()
{
    return vl_paths::filled(
        [](DWORD units, wchar_t *buffer) { return GetTempPathW(units, buffer); });
}

std::wstring VL_GetSystemDir()
{
    return vl_paths::filled(
        [](DWORD units, wchar_t *buffer) { return GetSystemDirectoryW(buffer, units); });
}

std::wstring VL_GetUserDir()
{
    return vl_paths::knownFolder(vl_paths::kProfile, L"");
}

std::wstring VL_GetDesktopPath()
{
    return vl_paths::knownFolder(vl_paths::kDesktop, L"Desktop");
}

std::wstring VL_GetDocumentsPath()
{
    return vl_paths::knownFolder(vl_paths::kDocuments, L"Documents");
}

std::wstring VL_GetDownloadsPath()
{
    return vl_paths::knownFolder(vl_paths::kDownloads, L"Downloads");
}

std::wstring VL_GetMusicPath()
{
    return vl_paths::knownFolder(vl_paths::kMusic, L"Music");
}

std::wstring VL_GetPicturesPath()
{
    return vl_paths::knownFolder(vl_paths::kPictures, L"Pictures");
}

std::wstring VL_GetVideosPath()
{
    return vl_paths::knownFolder(vl_paths::kVideos, L"Videos");
}
