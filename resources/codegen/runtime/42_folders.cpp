// Folders: making, deleting and listing them.
#include "42_folders.h"
#include "40_files.h"
#include "41_paths.h"

#include <algorithm>

namespace vl_folders {
namespace {

struct Entry
{
    std::wstring name;
    DWORD attributes = 0;
    bool folder = false;
    bool link = false; // a folder that is kept elsewhere
};

// A placeholder of a cloud folder is a reparse point too, but one that is a folder of its own.
bool isLink(const WIN32_FIND_DATAW &data)
{
    const DWORD nameSurrogate = 0x20000000;
    return (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) &&
           (data.dwReserved0 == 0 || (data.dwReserved0 & nameSurrogate));
}

bool isDots(const wchar_t *name)
{
    return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

std::vector<Entry> entries(const std::wstring &folder)
{
    std::vector<Entry> found;
    const std::wstring mask = VL_SystemPath(VL_JoinPath(folder, L"*"));
    WIN32_FIND_DATAW data;
    const HANDLE search = mask.empty() ? INVALID_HANDLE_VALUE : FindFirstFileW(mask.c_str(), &data);
    if (search == INVALID_HANDLE_VALUE)
        return found;
    do {
        if (isDots(data.cFileName))
            continue;
        Entry entry;
        entry.name = data.cFileName;
        entry.attributes = data.dwFileAttributes;
        entry.folder = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        entry.link = entry.folder && isLink(data);
        found.push_back(entry);
    } while (FindNextFileW(search, &data));
    FindClose(search);
    return found;
}

wchar_t folded(wchar_t unit)
{
    if (unit < 0x80)
        return unit >= L'A' && unit <= L'Z' ? (wchar_t)(unit + 32) : unit;
    if (unit >= 0x2E80 && unit < 0xA000) // Chinese characters have no case
        return unit;
    return (wchar_t)(UINT_PTR)CharLowerW((LPWSTR)(UINT_PTR)unit);
}

// "*" stands for any units, "?" for one; the last "*" alone is ever tried again.
bool fits(const std::wstring &name, const std::wstring &pattern)
{
    size_t n = 0;
    size_t p = 0;
    size_t star = std::wstring::npos;
    size_t retry = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            star = p++;
            retry = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == L'?' || folded(pattern[p]) == folded(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::wstring::npos) {
            p = star + 1;
            n = ++retry;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == L'*')
        ++p;
    return p == pattern.size();
}

std::vector<std::wstring> patterns(const std::wstring &text)
{
    std::vector<std::wstring> list;
    for (size_t begin = 0; begin <= text.size();) {
        size_t end = text.find_first_of(L";|", begin);
        if (end == std::wstring::npos)
            end = text.size();
        const size_t first = text.find_first_not_of(L' ', begin);
        if (first < end) {
            const size_t last = text.find_last_not_of(L' ', end - 1);
            const std::wstring one = text.substr(first, last + 1 - first);
            list.push_back(one == L"*.*" ? L"*" : one);
        }
        begin = end + 1;
    }
    if (list.empty())
        list.push_back(L"*");
    return list;
}

bool fitsAny(const std::wstring &name, const std::vector<std::wstring> &list)
{
    return std::any_of(list.begin(), list.end(),
                       [&name](const std::wstring &pattern) { return fits(name, pattern); });
}

// By the units regardless of case, so that the order is the same on every machine.
bool comesBefore(const std::wstring &left, const std::wstring &right)
{
    const size_t common = std::min(left.size(), right.size());
    for (size_t i = 0; i < common; ++i) {
        const wchar_t a = folded(left[i]);
        const wchar_t b = folded(right[i]);
        if (a != b)
            return a < b;
    }
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

// Paths below `root`, relative to it. Nested folders wait in a list, not on the stack.
std::vector<std::wstring> collect(const std::wstring &root, bool recursive,
                                  const std::function<bool(const Entry &)> &wanted)
{
    std::vector<std::wstring> found;
    std::vector<std::wstring> waiting(1);
    while (!waiting.empty()) {
        const std::wstring below = waiting.back();
        waiting.pop_back();
        for (const Entry &entry : entries(VL_JoinPath(root, below))) {
            const std::wstring path = VL_JoinPath(below, entry.name);
            if (wanted(entry))
                found.push_back(path);
            if (recursive && entry.folder && !entry.link)
                waiting.push_back(path);
        }
    }
    std::sort(found.begin(), found.end(), comesBefore);
    return found;
}

VL_Array listed(const std::wstring &root, const std::vector<std::wstring> &paths, bool fullPath)
{
    VL_Array array;
    array.reserve(paths.size());
    for (const std::wstring &path : paths)
        array.push_back(VL_Any(fullPath ? VL_JoinPath(root, path) : path));
    return array;
}

// Lists give full paths, so that they still hold when the current folder changes.
std::wstring absolute(const std::wstring &path)
{
    if (VL_SystemPath(path).empty())
        return std::wstring();
    std::wstring full(path.size() + MAX_PATH, L'\0');
    DWORD length = GetFullPathNameW(path.c_str(), (DWORD)full.size(), &full[0], NULL);
    if (length >= full.size()) {
        full.resize((size_t)length + 1);
        length = GetFullPathNameW(path.c_str(), (DWORD)full.size(), &full[0], NULL);
    }
    full.resize(length < full.size() ? length : 0);
    return VL_NormalizePath(full);
}

bool isRoot(const std::wstring &full)
{
    return VL_NormalizePath(full + L"\\..").size() >= full.size();
}

std::wstring finalPath(const std::wstring &path)
{
    const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE handle =
        CreateFileW(path.c_str(), 0, share, NULL, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, NULL);
    if (handle == INVALID_HANDLE_VALUE)
        return std::wstring();
    std::wstring text(0x8000, L'\0');
    const DWORD length = GetFinalPathNameByHandleW(handle, &text[0], (DWORD)text.size(), 0);
    CloseHandle(handle);
    text.resize(length < text.size() ? length : 0);
    return text;
}

// On a host where the system is emulated, deleting a link would delete what it points to: there
// an entry counts only when it really lies in its folder.
bool liesElsewhere(const std::wstring &path)
{
    static const bool emulated =
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != NULL;
    if (!emulated)
        return false;
    const std::wstring place = finalPath(path);
    if (place.empty()) // it does not tell that of a long path
        return path.size() < MAX_PATH / 2;
    return VL_GetFileDir(place) != finalPath(VL_GetFileDir(path));
}

bool removeEntry(const std::wstring &path, DWORD attributes, bool folder)
{
    const std::wstring system = VL_SystemPath(path);
    if (liesElsewhere(system))
        return false;
    if (attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesW(system.c_str(), attributes & ~(DWORD)FILE_ATTRIBUTE_READONLY);
    return folder ? RemoveDirectoryW(system.c_str()) : DeleteFileW(system.c_str());
}

// Folders are emptied on the way down and removed, deepest first, on the way back.
bool removeTree(const std::wstring &root)
{
    bool done = true;
    std::vector<std::wstring> waiting(1, root);
    std::vector<std::wstring> emptied;
    while (!waiting.empty()) {
        const std::wstring folder = waiting.back();
        waiting.pop_back();
        emptied.push_back(folder);
        for (const Entry &entry : entries(folder)) {
            const std::wstring path = VL_JoinPath(folder, entry.name);
            if (entry.folder && !entry.link)
                waiting.push_back(path);
            else
                done = removeEntry(path, entry.attributes, entry.folder) && done;
        }
    }
    for (size_t i = emptied.size(); i-- > 0;)
        done = removeEntry(emptied[i], (DWORD)VL_GetFileAttributes(emptied[i]), true) && done;
    return done;
}

} // namespace
} // namespace vl_folders

bool VL_CreateDir(const std::wstring &path)
{
    const std::wstring full = vl_folders::absolute(path);
    std::vector<std::wstring> missing;
    std::wstring folder = full;
    while (!folder.empty() && !VL_DirExists(folder)) {
        missing.push_back(folder);
        if (vl_folders::isRoot(folder) || VL_FileExists(folder))
            return false;
        folder = VL_GetFileDir(folder);
    }
    while (!missing.empty()) {
        if (!CreateDirectoryW(VL_SystemPath(missing.back()).c_str(), NULL) &&
            GetLastError() != ERROR_ALREADY_EXISTS)
            return false;
        missing.pop_back();
    }
    return VL_DirExists(full);
}

bool VL_DeleteDir(const std::wstring &path, bool recursive)
{
    const std::wstring full = vl_folders::absolute(path);
    const int attributes = VL_GetFileAttributes(full);
    if (attributes == -1 || !(attributes & FILE_ATTRIBUTE_DIRECTORY) || vl_folders::isRoot(full))
        return false;
    const bool link = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    return recursive && !link ? vl_folders::removeTree(full)
                              : RemoveDirectoryW(VL_SystemPath(full).c_str()) != 0;
}

VL_Array VL_GetFileList(const std::wstring &path, const std::wstring &pattern, bool recursive,
                        bool fullPath)
{
    const std::wstring root = vl_folders::absolute(path.empty() ? L"." : path);
    const std::vector<std::wstring> list = vl_folders::patterns(pattern);
    return vl_folders::listed(root,
                              vl_folders::collect(root, recursive,
                                                  [&list](const vl_folders::Entry &entry) {
                                                      return !entry.folder &&
                                                             vl_folders::fitsAny(entry.name, list);
                                                  }),
                              fullPath);
}

VL_Array VL_GetDirList(const std::wstring &path, bool recursive, bool fullPath)
{
    const std::wstring root = vl_folders::absolute(path.empty() ? L"." : path);
    return vl_folders::listed(
        root,
        vl_folders::collect(root, recursive,
                            [](const vl_folders::Entry &entry) { return entry.folder; }),
        fullPath);
}
