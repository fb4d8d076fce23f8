// Printing: the console or the pipe that the program was started with.
#include "30_output.h"

namespace vl_output {
namespace {

// WriteConsoleW takes a limited buffer, and a surrogate pair must not be cut.
const size_t kConsolePiece = 8192;
const size_t kPipePiece = 0x400000;
const int kMostLevels = 3;

SRWLOCK g_lock = SRWLOCK_INIT;

HANDLE standardOutput()
{
    static const HANDLE handle = GetStdHandle(STD_OUTPUT_HANDLE);
    return handle;
}

size_t pieceEnd(const std::wstring &text, size_t begin, size_t most)
{
    size_t end = text.size() - begin > most ? begin + most : text.size();
    if (end < text.size() && text[end - 1] >= 0xD800 && text[end - 1] <= 0xDBFF)
        --end;
    return end;
}

bool writeConsole(HANDLE handle, const std::wstring &text)
{
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = pieceEnd(text, begin, kConsolePiece);
        DWORD written = 0;
        if (!WriteConsoleW(handle, text.data() + begin, (DWORD)(end - begin), &written, NULL) ||
            written == 0)
            return false;
        begin += written;
    }
    return true;
}

// A pipe whose reader is gone takes nothing; the program goes on without its output.
void writeBytes(HANDLE handle, const std::string &bytes)
{
    for (size_t begin = 0; begin < bytes.size();) {
        const size_t rest = bytes.size() - begin;
        DWORD written = 0;
        if (!WriteFile(handle, bytes.data() + begin, (DWORD)(rest > kPipePiece ? kPipePiece : rest),
                       &written, NULL) ||
            written == 0)
            return;
        begin += written;
    }
}

void writeUtf8(HANDLE handle, const std::wstring &text)
{
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = pieceEnd(text, begin, kPipePiece);
        writeBytes(handle, VL_WideToUtf8(text.substr(begin, end - begin)));
        begin = end;
    }
}

// One line in one piece, also when several threads print.
void writeLine(const std::wstring &line)
{
    const HANDLE handle = standardOutput();
    if (!handle || handle == INVALID_HANDLE_VALUE) {
        OutputDebugStringW(line.c_str());
        return;
    }
    AcquireSRWLockExclusive(&g_lock);
    if (GetFileType(handle) != FILE_TYPE_CHAR || !writeConsole(handle, line))
        writeUtf8(handle, line);
    ReleaseSRWLockExclusive(&g_lock);
}

void appendArray(std::wstring &out, const std::vector<VL_Any> &items, int depth)
{
    if (depth <= 0 && !items.empty()) {
        out += L"[...]";
        return;
    }
    out += L'[';
    bool first = true;
    for (const VL_Any &item : items) {
        if (!first)
            out += L", ";
        first = false;
        VL_AppendItemText(out, item, depth - 1);
    }
    out += L']';
}

} // namespace
} // namespace vl_output

std::wstring VL_ArrayText(const std::vector<VL_Any> &items, int depth)
{
    std::wstring text;
    vl_output::appendArray(text, items, depth);
    return text;
}

void VL_AppendItemText(std::wstring &out, const VL_Any &item, int depth)
{
    switch (item.type) {
    case VL_Any::TypeString:
        ((out += L'"') += item.strVal) += L'"';
        break;
    case VL_Any::TypeArray:
        vl_output::appendArray(out, *item.arrPtr, depth);
        break;
    default:
        out += VL_ToOutputStr(item);
    }
}

void VL_InitOutput()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    SetConsoleOutputCP(CP_UTF8);
}

std::wstring VL_ToOutputStr(const std::wstring &v)
{
    return v;
}

std::wstring VL_ToOutputStr(wchar_t v)
{
    return std::wstring(1, v);
}

std::wstring VL_ToOutputStr(const wchar_t *v)
{
    return VL_Str(v);
}

std::wstring VL_ToOutputStr(const std::string &v)
{
    return VL_Utf8ToWide(v);
}

std::wstring VL_ToOutputStr(long long v)
{
    return VL_FormatInteger(v);
}

std::wstring VL_ToOutputStr(double v)
{
    return VL_FormatDouble(v);
}

std::wstring VL_ToOutputStr(float v)
{
    return VL_FormatFloat(v);
}

std::wstring VL_ToOutputStr(const VL_Any &v)
{
    if (v.type == VL_Any::TypeNone)
        return L"[\u7A7A]";
    return v.type == VL_Any::TypeDict ? VL_GenerateJsonFromAny(v) : v.toStr();
}

std::wstring VL_ToOutputStr(const VL_ByteArray &v)
{
    return VL_ByteArrayText(v);
}

std::wstring VL_ToOutputStr(const VL_Array &v)
{
    return VL_ArrayText(v, vl_output::kMostLevels);
}

std::wstring VL_ToOutputStr(const VL_Array2D &v)
{
    return VL_Any(v).toStr();
}

std::wstring VL_ToOutputStr(const VL_Array3D &v)
{
    return VL_Any(v).toStr();
}

std::wstring VL_ToOutputStr(const void *v)
{
    return VL_Str(v);
}

void VL_Print(const std::wstring &v)
{
    std::wstring line;
    line.reserve(v.size() + 2);
    line.append(v).append(L"\r\n");
    vl_output::writeLine(line);
}

void VL_Print()
{
    VL_Print(std::wstring());
}
