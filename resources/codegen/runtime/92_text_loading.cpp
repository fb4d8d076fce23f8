// Text files of many megabytes: read without a copy of the whole, written as they were.
#include "92_text_loading.h"
#include "39_encodings.h"
#include "40_files.h"

#include <algorithm>
#include <cstring>

namespace vl_text_loading {
namespace {

const int kUtf16Low = 1200;
const int kUtf16High = 1201;
const int kChinese = 936;
const size_t kPiece = 0x8000;

// A file's bytes in memory, without reading them ahead of use.
class MappedFile
{
public:
    explicit MappedFile(const std::wstring &path)
    {
        const std::wstring system = VL_SystemPath(path);
        if (system.empty())
            return;
        m_file = CreateFileW(system.c_str(), GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, NULL,
                             OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, NULL);
        LARGE_INTEGER size = {};
        if (m_file == INVALID_HANDLE_VALUE || !GetFileSizeEx(m_file, &size) ||
            (unsigned long long)size.QuadPart > (size_t)-1 / 2)
            return;
        m_mapping = CreateFileMappingW(m_file, NULL, PAGE_READONLY, 0, 0, NULL);
        if (m_mapping)
            m_data = (const char *)MapViewOfFile(m_mapping, FILE_MAP_READ, 0, 0, 0);
        m_size = (size_t)size.QuadPart;
    }
    ~MappedFile()
    {
        if (m_data)
            UnmapViewOfFile(m_data);
        if (m_mapping)
            CloseHandle(m_mapping);
        if (m_file != INVALID_HANDLE_VALUE)
            CloseHandle(m_file);
    }
    MappedFile(const MappedFile &) = delete;
    MappedFile &operator=(const MappedFile &) = delete;

    // NULL when the file cannot be mapped: missing, empty, a pipe, or too large.
    const char *data() const { return m_data; }
    size_t size() const { return m_size; }

private:
    HANDLE m_file = INVALID_HANDLE_VALUE;
    HANDLE m_mapping = NULL;
    const char *m_data = nullptr;
    size_t m_size = 0;
};

// How many bytes from the start are ASCII, found eight at a time.
size_t asciiLength(const char *data, size_t size)
{
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        unsigned long long eight;
        memcpy(&eight, data + i, 8);
        if (eight & 0x8080808080808080ULL)
            break;
    }
    while (i < size && (unsigned char)data[i] < 0x80)
        ++i;
    return i;
}

VTB_FileForm foundForm(const char *data, size_t size)
{
    VTB_FileForm form;
    const auto startsWith = [data, size](const char *mark, size_t length) {
        return size >= length && memcmp(data, mark, length) == 0;
    };
    if (startsWith("\xFF\xFE", 2) || startsWith("\xFE\xFF", 2)) {
        form.encoding = data[0] == '\xFF' ? kUtf16Low : kUtf16High;
        form.hasMark = true;
    } else if (startsWith("\xEF\xBB\xBF", 3)) {
        form.hasMark = true;
    } else {
        const size_t ascii = asciiLength(data, size);
        if (!VL_IsValidUtf8(data + ascii, size - ascii))
            form.encoding = kChinese;
    }
    return form;
}

void addUtf16(const char *data, size_t size, bool highFirst, VL_TextCutter &cutter)
{
    std::vector<wchar_t> units(kPiece);
    for (size_t done = 0; done + 2 <= size;) {
        const size_t count = (std::min)(kPiece, (size - done) / 2);
        memcpy(units.data(), data + done, count * 2);
        if (highFirst)
            for (size_t i = 0; i < count; ++i)
                units[i] = (wchar_t)((unsigned short)units[i] << 8 | (unsigned short)units[i] >> 8);
        cutter.add(units.data(), count);
        done += count * 2;
    }
}

// Where a piece of at most `length` bytes may end without parting a character.
size_t pieceEnd(const char *data, size_t length, UINT page)
{
    size_t end = length;
    if (page == CP_UTF8) {
        while (end > 0 && length - end < 4 && ((unsigned char)data[end] & 0xC0) == 0x80)
            --end;
        return end > 0 && length - end < 4 ? end : length;
    }
    // Second bytes are not below 0x40, so that blanks and line ends stand for themselves.
    while (end > 0 && (unsigned char)data[end - 1] >= 0x30)
        --end;
    if (end > 0)
        return end;
    while (end < length)
        end += IsDBCSLeadByteEx(page, (BYTE)data[end]) ? 2 : 1;
    return end > length ? end - 2 : end;
}

void addBytes(const char *data, size_t size, UINT page, VL_TextCutter &cutter)
{
    std::vector<wchar_t> units(kPiece);
    for (size_t done = 0; done < size;) {
        size_t length = (std::min)(kPiece, size - done);
        const char *piece = data + done;
        int count = (int)length;
        if (asciiLength(piece, length) == length) {
            for (size_t i = 0; i < length; ++i)
                units[i] = (wchar_t)piece[i];
        } else {
            if (done + length < size)
                length = pieceEnd(piece, length, page);
            count =
                MultiByteToWideChar(page, 0, piece, (int)length, units.data(), (int)units.size());
        }
        cutter.add(units.data(), (size_t)(std::max)(count, 0));
        done += length;
    }
}

// False when the code page lacks a character.
bool encode(const std::wstring &text, int encoding, std::string &bytes)
{
    if (encoding != kChinese) {
        bytes += VL_EncodeText(text, encoding);
        return true;
    }
    const size_t old = bytes.size();
    bytes.resize(old + text.size() * 2);
    BOOL lacks = FALSE;
    const int used =
        WideCharToMultiByte(kChinese, WC_NO_BEST_FIT_CHARS, text.data(), (int)text.size(),
                            &bytes[old], (int)(text.size() * 2), NULL, &lacks);
    bytes.resize(old + (size_t)used);
    return !lacks;
}

bool encodeAll(const VirtualTextData &data, const VTB_FileForm &form, std::string &bytes)
{
    if (form.hasMark)
        bytes = form.encoding == CP_UTF8 ? "\xEF\xBB\xBF" : VL_ByteOrderMark(form.encoding);
    bytes.reserve(data.length() + data.lineCount());
    std::wstring text;
    for (size_t offset = 0; offset < data.length();) {
        size_t count = (std::min)(kPiece, data.length() - offset);
        const wchar_t last = data.at(offset + count - 1);
        if (count > 1 && last >= 0xD800 && last < 0xDC00)
            --count; // the other half goes with it
        text.resize(count * 2);
        text.resize(data.copyOuter(offset, count, data.outerLineEnd(), &text[0], text.size()));
        if (!encode(text, form.encoding, bytes))
            return false;
        offset += count;
    }
    return true;
}

} // namespace
} // namespace vl_text_loading

bool VTB_LoadText(const std::wstring &path, VL_TextCutter &cutter, VTB_FileForm &form)
{
    using namespace vl_text_loading;
    const MappedFile file(path);
    std::string bytes;
    const char *data = file.data();
    size_t size = file.size();
    if (!data) {
        if (!VL_LoadFileBytes(path, bytes))
            return false;
        data = bytes.data();
        size = bytes.size();
    }
    form = foundForm(data, size);
    const bool utf16 = form.encoding != CP_UTF8 && form.encoding != kChinese;
    const size_t mark = form.hasMark ? (utf16 ? 2 : 3) : 0;
    if (utf16)
        addUtf16(data + mark, size - mark, form.encoding == kUtf16High, cutter);
    else
        addBytes(data + mark, size - mark, (UINT)form.encoding, cutter);
    return true;
}

bool VTB_SaveText(const std::wstring &path, const VirtualTextData &data, VTB_FileForm &form)
{
    using namespace vl_text_loading;
    std::string bytes;
    if (!encodeAll(data, form, bytes)) {
        form = VTB_FileForm();
        bytes.clear();
        encodeAll(data, form, bytes);
    }
    return VL_SaveFileBytes(path, bytes.data(), bytes.size());
}
