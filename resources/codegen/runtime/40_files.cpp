// Files: reading and writing them whole, copying, attributes and times.
#include "40_files.h"
#include "39_encodings.h"

#include <new>

namespace vl_files {
namespace {

const size_t kChunk = 0x1000000;
const long long kLargest = 0x7FFFFFFF;
// Paths from this length on need the long form; the system's limit for folders is 248.
const size_t kLongFrom = 240;

class Handle
{
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle() { close(); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    bool valid() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }
    bool close()
    {
        const bool done = valid() && CloseHandle(m_handle);
        m_handle = INVALID_HANDLE_VALUE;
        return done;
    }

private:
    HANDLE m_handle;
};

HANDLE openToRead(const std::wstring &path)
{
    return CreateFileW(path.c_str(), GENERIC_READ,
                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, NULL, OPEN_EXISTING,
                       FILE_FLAG_SEQUENTIAL_SCAN, NULL);
}

bool writeAll(HANDLE file, const char *data, size_t length)
{
    while (length > 0) {
        DWORD written = 0;
        const DWORD piece = (DWORD)(length < kChunk ? length : kChunk);
        if (!WriteFile(file, data, piece, &written, NULL) || written == 0)
            return false;
        data += written;
        length -= written;
    }
    return true;
}

// How many bytes lie between the file's position and its end; 0 for a pipe or a device.
long long bytesAhead(HANDLE file)
{
    LARGE_INTEGER size = {};
    LARGE_INTEGER position = {};
    const LARGE_INTEGER zero = {};
    if (!GetFileSizeEx(file, &size) || !SetFilePointerEx(file, zero, &position, FILE_CURRENT))
        return 0;
    return size.QuadPart > position.QuadPart ? size.QuadPart - position.QuadPart : 0;
}

// Reads up to `length` bytes to `target`; less only at the end of the file.
size_t readPiece(HANDLE file, char *target, size_t length)
{
    size_t used = 0;
    while (used < length) {
        const size_t left = length - used;
        DWORD got = 0;
        if (!ReadFile(file, target + used, (DWORD)(left < kChunk ? left : kChunk), &got, NULL) ||
            got == 0)
            break;
        used += got;
    }
    return used;
}

// What has no size, or grows meanwhile, is read on until nothing comes.
bool readRest(HANDLE file, long long limit, std::string &bytes)
{
    const long long ahead = bytesAhead(file);
    const long long most = limit < 0 ? kLargest + 1 : limit;
    if (ahead > kLargest && most > kLargest)
        return false;
    bytes.resize((size_t)(ahead < most ? ahead : most));
    bytes.resize(readPiece(file, &bytes[0], bytes.size()));
    char more[4096];
    while ((long long)bytes.size() >= ahead && (long long)bytes.size() < most) {
        const long long room = most - (long long)bytes.size();
        const size_t wanted = room < (long long)sizeof more ? (size_t)room : sizeof more;
        const size_t got = readPiece(file, more, wanted);
        if (got == 0)
            break;
        bytes.append(more, got);
    }
    return (long long)bytes.size() <= kLargest;
}

// A name beside `path` that nothing has yet, opened for writing.
HANDLE createTemporary(const std::wstring &path, std::wstring &temporary)
{
    static volatile LONG counter = 0;
    const size_t slash = path.find_last_of(L"\\/:");
    const std::wstring folder = slash == std::wstring::npos ? L"" : path.substr(0, slash + 1);
    for (int attempt = 0; attempt < 100; ++attempt) {
        wchar_t name[64];
        swprintf(name, 64, L"~vl%lx-%lx-%lx.tmp", (unsigned long)GetCurrentProcessId(),
                 (unsigned long)GetTickCount(), (unsigned long)InterlockedIncrement(&counter));
        temporary = folder + name;
        const HANDLE file = CreateFileW(temporary.c_str(), GENERIC_WRITE, 0, NULL, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, NULL);
        if (file != INVALID_HANDLE_VALUE || GetLastError() != ERROR_FILE_EXISTS)
            return file;
    }
    return INVALID_HANDLE_VALUE;
}

bool writeInPlace(const std::wstring &path, const char *data, size_t length)
{
    Handle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, NULL, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, NULL));
    return file.valid() && writeAll(file.get(), data, length) && file.close();
}

bool appendTo(const std::wstring &path, const char *data, size_t length)
{
    Handle file(CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            NULL, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, NULL));
    return file.valid() && writeAll(file.get(), data, length) && file.close();
}

bool replaceWhole(const std::wstring &path, const char *data, size_t length)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool exists = attributes != INVALID_FILE_ATTRIBUTES;
    if (exists && (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)))
        return false;
    // Renaming over a link would replace the link itself.
    if (exists && (attributes & FILE_ATTRIBUTE_REPARSE_POINT))
        return writeInPlace(path, data, length);
    std::wstring temporary;
    Handle file(createTemporary(path, temporary));
    if (!file.valid())
        return writeInPlace(path, data, length);
    bool done = writeAll(file.get(), data, length);
    done = file.close() && done;
    if (done && exists)
        SetFileAttributesW(
            temporary.c_str(),
            attributes & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE));
    if (done && MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
        return true;
    // Someone holds the old file open: its name cannot be taken over, but it may be written.
    done = done && CopyFileW(temporary.c_str(), path.c_str(), FALSE);
    DeleteFileW(temporary.c_str());
    return done;
}

std::wstring timeText(const FILETIME &time)
{
    SYSTEMTIME utc;
    SYSTEMTIME local;
    if (!FileTimeToSystemTime(&time, &utc) || !SystemTimeToTzSpecificLocalTime(NULL, &utc, &local))
        return std::wstring();
    wchar_t text[80];
    swprintf(text, 80, L"%04d-%02d-%02d %02d:%02d:%02d", local.wYear, local.wMonth, local.wDay,
             local.wHour, local.wMinute, local.wSecond);
    return text;
}

bool information(const std::wstring &path, WIN32_FILE_ATTRIBUTE_DATA &data)
{
    const std::wstring system = VL_SystemPath(path);
    return !system.empty() && GetFileAttributesExW(system.c_str(), GetFileExInfoStandard, &data);
}

bool setAttribute(const std::wstring &path, DWORD attribute, bool on)
{
    const std::wstring system = VL_SystemPath(path);
    const DWORD old = system.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(system.c_str());
    if (old == INVALID_FILE_ATTRIBUTES)
        return false;
    const DWORD changed = on ? old | attribute : old & ~attribute;
    return changed == old ||
           SetFileAttributesW(system.c_str(), changed ? changed : FILE_ATTRIBUTE_NORMAL);
}

bool hasAttribute(const std::wstring &path, DWORD attribute)
{
    const int attributes = VL_GetFileAttributes(path);
    return attributes != -1 && ((DWORD)attributes & attribute) != 0;
}

// The encoding a text is written in, and whether its byte order mark goes before it.
std::string encoded(const std::wstring &path, const std::wstring &content, intptr_t encoding,
                    bool append)
{
    std::string head;
    const bool begun = append && VL_LoadFileBytes(path, head, 0, 2) && !head.empty();
    if (encoding == -1) {
        encoding = 65001;
        for (intptr_t candidate = 1200; candidate <= 1201; ++candidate)
            if (begun && head == VL_ByteOrderMark(candidate))
                encoding = candidate;
    }
    const std::string bytes = VL_EncodeText(content, encoding);
    return begun ? bytes : VL_ByteOrderMark(encoding) + bytes;
}

} // namespace
} // namespace vl_files

std::wstring VL_SystemPath(const std::wstring &path)
{
    if (path.empty() || path.find(L'\0') != std::wstring::npos)
        return std::wstring();
    if (path.size() < vl_files::kLongFrom || path.compare(0, 4, L"\\\\?\\") == 0 ||
        path.size() > 32000)
        return path;
    std::wstring full(path.size() + 2 * MAX_PATH, L'\0');
    const DWORD length = GetFullPathNameW(path.c_str(), (DWORD)full.size(), &full[0], NULL);
    if (length == 0 || length >= full.size())
        return path;
    full.resize(length);
    if (full.compare(0, 2, L"\\\\") == 0)
        return L"\\\\?\\UNC\\" + full.substr(2);
    return L"\\\\?\\" + full;
}

bool VL_LoadFileBytes(const std::wstring &path, std::string &bytes, long long offset,
                      long long limit)
{
    bytes.clear();
    const std::wstring system = VL_SystemPath(path);
    if (system.empty() || offset < 0)
        return false;
    vl_files::Handle file(vl_files::openToRead(system));
    if (!file.valid())
        return false;
    LARGE_INTEGER position;
    position.QuadPart = offset;
    if (offset > 0 && !SetFilePointerEx(file.get(), position, NULL, FILE_BEGIN))
        return false;
    try {
        if (vl_files::readRest(file.get(), limit, bytes))
            return true;
    } catch (const std::bad_alloc &) {
    }
    std::string().swap(bytes);
    return false;
}

bool VL_SaveFileBytes(const std::wstring &path, const void *data, size_t length, bool append)
{
    const std::wstring system = VL_SystemPath(path);
    if (system.empty())
        return false;
    const char *bytes = (const char *)data;
    return append ? vl_files::appendTo(system, bytes, length)
                  : vl_files::replaceWhole(system, bytes, length);
}

bool VL_FileExists(const std::wstring &path)
{
    const int attributes = VL_GetFileAttributes(path);
    return attributes != -1 && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool VL_DirExists(const std::wstring &path)
{
    return vl_files::hasAttribute(path, FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring VL_ReadFile(const std::wstring &path, intptr_t encoding)
{
    std::string bytes;
    VL_LoadFileBytes(path, bytes);
    return VL_DecodeText(bytes.data(), bytes.size(), encoding);
}

bool VL_WriteFile(const std::wstring &path, const std::wstring &content, intptr_t encoding,
                  intptr_t mode)
{
    if (mode != 0 && mode != 1)
        return false;
    const std::string bytes = vl_files::encoded(path, content, encoding, mode == 1);
    return VL_SaveFileBytes(path, bytes.data(), bytes.size(), mode == 1);
}

bool VL_AppendFile(const std::wstring &path, const std::wstring &content, intptr_t encoding)
{
    return VL_WriteFile(path, content, encoding, 1);
}

VL_Array VL_ReadFileLines(const std::wstring &path, intptr_t encoding)
{
    const std::wstring text = VL_ReadFile(path, encoding);
    VL_Array lines;
    for (size_t begin = 0; begin < text.size();) {
        size_t end = text.find_first_of(L"\r\n", begin);
        if (end == std::wstring::npos)
            end = text.size();
        lines.push_back(VL_Any(text.substr(begin, end - begin)));
        begin = text.compare(end < text.size() ? end : text.size(), 2, L"\r\n") == 0 ? end + 2
                                                                                     : end + 1;
    }
    return lines;
}

bool VL_WriteFileLines(const std::wstring &path, const VL_Array &lines, intptr_t encoding,
                       intptr_t mode)
{
    std::wstring text;
    for (const VL_Any &line : lines)
        text.append(line.toStr()).append(L"\r\n");
    return VL_WriteFile(path, text, encoding, mode);
}

VL_ByteArray VL_ReadBinaryFile(const std::wstring &path)
{
    std::string bytes;
    VL_LoadFileBytes(path, bytes);
    return VL_ByteArray((const unsigned char *)bytes.data(), bytes.size());
}

bool VL_WriteBinaryFile(const std::wstring &path, const VL_ByteArray &bytes)
{
    return VL_SaveFileBytes(path, bytes.ptr(), bytes.size());
}

bool VL_DeleteFile(const std::wstring &path)
{
    const std::wstring system = VL_SystemPath(path);
    return !system.empty() && DeleteFileW(system.c_str());
}

bool VL_CopyFile(const std::wstring &source, const std::wstring &target, bool overwrite)
{
    const std::wstring from = VL_SystemPath(source);
    const std::wstring to = VL_SystemPath(target);
    return !from.empty() && !to.empty() && CopyFileW(from.c_str(), to.c_str(), !overwrite);
}

bool VL_MoveFile(const std::wstring &source, const std::wstring &target, bool overwrite)
{
    const std::wstring from = VL_SystemPath(source);
    const std::wstring to = VL_SystemPath(target);
    const DWORD flags = MOVEFILE_COPY_ALLOWED | (overwrite ? MOVEFILE_REPLACE_EXISTING : 0);
    return !from.empty() && !to.empty() && MoveFileExW(from.c_str(), to.c_str(), flags);
}

bool VL_RenameFile(const std::wstring &path, const std::wstring &newName)
{
    size_t end = path.size();
    while (end > 0 && (path[end - 1] == L'\\' || path[end - 1] == L'/'))
        --end;
    const size_t slash = path.find_last_of(L"\\/:", end == 0 ? 0 : end - 1);
    const bool bare = newName.find_first_of(L"\\/:") == std::wstring::npos;
    const std::wstring target = bare && !newName.empty() && slash != std::wstring::npos
                                    ? path.substr(0, slash + 1) + newName
                                    : newName;
    return VL_MoveFile(path, target, false);
}

long long VL_GetFileSize(const std::wstring &path)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!vl_files::information(path, data) || (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
        return -1;
    return (long long)((unsigned long long)data.nFileSizeHigh << 32 | data.nFileSizeLow);
}

std::wstring VL_FormatFileSize(long long size)
{
    static const wchar_t *const units[] = {L"B", L"KB", L"MB", L"GB", L"TB", L"PB", L"EB"};
    double value = size > 0 ? (double)size : 0.0;
    size_t unit = 0;
    // 1023.995 would be rounded up to 1024 of this unit: it is 1 of the next.
    while (value >= (unit == 0 ? 1024.0 : 1023.995) && unit + 1 < sizeof(units) / sizeof(*units)) {
        value /= 1024.0;
        ++unit;
    }
    wchar_t text[80];
    swprintf(text, 80, L"%.2f", value);
    std::wstring number = text;
    number.erase(number.find_last_not_of(L'0') + 1);
    if (!number.empty() && number.back() == L'.')
        number.pop_back();
    return number + L" " + units[unit];
}

std::wstring VL_GetFileModifyTime(const std::wstring &path)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    return vl_files::information(path, data) ? vl_files::timeText(data.ftLastWriteTime)
                                             : std::wstring();
}

std::wstring VL_GetFileCreateTime(const std::wstring &path)
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    return vl_files::information(path, data) ? vl_files::timeText(data.ftCreationTime)
                                             : std::wstring();
}

int VL_GetFileAttributes(const std::wstring &path)
{
    const std::wstring system = VL_SystemPath(path);
    return system.empty() ? -1 : (int)GetFileAttributesW(system.c_str());
}

bool VL_IsReadOnlyFile(const std::wstring &path)
{
    return vl_files::hasAttribute(path, FILE_ATTRIBUTE_READONLY);
}

bool VL_SetReadOnlyFile(const std::wstring &path, bool on)
{
    return vl_files::setAttribute(path, FILE_ATTRIBUTE_READONLY, on);
}

bool VL_IsHiddenFile(const std::wstring &path)
{
    return vl_files::hasAttribute(path, FILE_ATTRIBUTE_HIDDEN);
}

bool VL_SetHiddenFile(const std::wstring &path, bool on)
{
    return vl_files::setAttribute(path, FILE_ATTRIBUTE_HIDDEN, on);
}
