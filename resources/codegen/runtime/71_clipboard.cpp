// The clipboard: text, pictures, files, HTML, and being told of changes.
#include "71_clipboard.h"

#include "16_picture_bytes.h"
#include "40_files.h"

#include <shlobj.h>

namespace vl_clipboard {
namespace {

const int Tries = 25;
const DWORD PauseMs = 20;
const wchar_t WatchClass[] = L"VL_ClipboardWatch";

UINT pngFormat()
{
    static const UINT format = RegisterClipboardFormatW(L"PNG");
    return format;
}

UINT htmlFormat()
{
    static const UINT format = RegisterClipboardFormatW(L"HTML Format");
    return format;
}

HWND hiddenWindow(const wchar_t *windowClass)
{
    return CreateWindowExW(0, windowClass, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, NULL, g_hInstance,
                           NULL);
}

// The clipboard opened, in the name of a window of its own: what is put there without a window may
// get lost.
class Clipboard
{
public:
    Clipboard() : m_owner(hiddenWindow(L"STATIC"))
    {
        for (int i = 0; i < Tries && !m_open; ++i) {
            m_open = OpenClipboard(m_owner) != FALSE;
            if (!m_open)
                Sleep(PauseMs);
        }
    }
    ~Clipboard()
    {
        if (m_open)
            CloseClipboard();
        if (m_owner)
            DestroyWindow(m_owner);
    }
    Clipboard(const Clipboard &) = delete;
    Clipboard &operator=(const Clipboard &) = delete;

    bool empty() { return m_open && EmptyClipboard(); }

    std::string bytes(UINT format) const
    {
        std::string result;
        const HGLOBAL memory = m_open ? (HGLOBAL)GetClipboardData(format) : NULL;
        const void *data = memory ? GlobalLock(memory) : NULL;
        if (data) {
            result.assign((const char *)data, GlobalSize(memory));
            GlobalUnlock(memory);
        }
        return result;
    }

    HDROP files() const { return m_open ? (HDROP)GetClipboardData(CF_HDROP) : NULL; }

    bool put(UINT format, const void *data, size_t size)
    {
        const HGLOBAL memory = m_open ? GlobalAlloc(GMEM_MOVEABLE, size ? size : 1) : NULL;
        if (!memory)
            return false;
        memcpy(GlobalLock(memory), data, size);
        GlobalUnlock(memory);
        // From here on it belongs to the system.
        if (SetClipboardData(format, memory))
            return true;
        GlobalFree(memory);
        return false;
    }

    bool putText(const std::wstring &text)
    {
        const std::wstring content = text.c_str();
        return put(CF_UNICODETEXT, content.c_str(), (content.size() + 1) * sizeof(wchar_t));
    }

private:
    HWND m_owner;
    bool m_open = false;
};

// The bytes of a wide text up to its end mark.
std::wstring wideText(const std::string &bytes)
{
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    memcpy(&text[0], bytes.data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

// Header and lines of 24 bits, bottom line first, on white: what every program takes.
std::string dibFromPicture(HBITMAP picture)
{
    int width = 0, height = 0;
    const unsigned char *bits = VL_PictureBits(picture, &width, &height);
    if (!bits)
        return std::string();
    const size_t line = ((size_t)width * 3 + 3) / 4 * 4;
    BITMAPINFOHEADER header = {};
    header.biSize = sizeof(header);
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biSizeImage = (DWORD)(line * height);
    std::string dib(sizeof(header) + line * height, '\0');
    memcpy(&dib[0], &header, sizeof(header));
    for (int y = 0; y < height; ++y) {
        const unsigned char *from = bits + (size_t)(height - 1 - y) * width * 4;
        unsigned char *to = (unsigned char *)&dib[sizeof(header) + line * y];
        for (int x = 0; x < width; ++x, from += 4, to += 3) {
            const int white = 255 - from[3];
            for (int i = 0; i < 3; ++i)
                to[i] = (unsigned char)(from[i] + white < 255 ? from[i] + white : 255);
        }
    }
    return dib;
}

// The number behind a name such as "StartFragment:" in the head of clipboard HTML; -1 without.
long headNumber(const std::string &html, const char *name)
{
    const size_t found = html.substr(0, 1000).find(name);
    return found == std::string::npos ? -1 : atol(html.c_str() + found + strlen(name));
}

std::string cut(const std::string &html, long begin, long end)
{
    if (begin < 0 || end < begin || (size_t)end > html.size())
        return std::string();
    return html.substr((size_t)begin, (size_t)(end - begin));
}

std::string htmlWithHead(const std::string &fragment)
{
    const char before[] = "<html><body>\r\n<!--StartFragment-->";
    const char after[] = "<!--EndFragment-->\r\n</body></html>";
    const char form[] = "Version:0.9\r\nStartHTML:%010u\r\nEndHTML:%010u\r\n"
                        "StartFragment:%010u\r\nEndFragment:%010u\r\n";
    char head[160];
    const unsigned headSize = (unsigned)snprintf(head, sizeof(head), form, 0u, 0u, 0u, 0u);
    const unsigned start = headSize + (unsigned)strlen(before);
    const unsigned end = start + (unsigned)fragment.size();
    snprintf(head, sizeof(head), form, headSize, end + (unsigned)strlen(after), start, end);
    return head + std::string(before) + fragment + after;
}

// Whoever is told of changes.
struct Watch
{
    HWND window = NULL;
    std::function<void()> callback;
    DWORD told = 0;
    bool inside = false;
};
Watch g_watch;

void tellChange()
{
    if (g_watch.inside || GetClipboardSequenceNumber() == g_watch.told)
        return;
    g_watch.inside = true;
    // The callback may end the watch, or begin another.
    const std::function<void()> callback = g_watch.callback;
    if (callback)
        callback();
    g_watch.inside = false;
    g_watch.told = GetClipboardSequenceNumber();
}

LRESULT CALLBACK watchProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    const UINT clipboardUpdate = 0x031D;
    if (message == clipboardUpdate) {
        tellChange();
        return 0;
    }
    if (message == WM_DESTROY)
        RemoveClipboardFormatListener(window);
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace
} // namespace vl_clipboard

std::wstring VL_GetClipboardText()
{
    if (!VL_ClipboardHasText())
        return std::wstring();
    return vl_clipboard::wideText(vl_clipboard::Clipboard().bytes(CF_UNICODETEXT));
}

bool VL_SetClipboardText(const std::wstring &text)
{
    vl_clipboard::Clipboard clipboard;
    return clipboard.empty() && clipboard.putText(text);
}

bool VL_ClearClipboard()
{
    return vl_clipboard::Clipboard().empty();
}

bool VL_ClipboardHasText()
{
    return IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
}

bool VL_ClipboardHasImage()
{
    return IsClipboardFormatAvailable(CF_DIB) ||
           IsClipboardFormatAvailable(vl_clipboard::pngFormat());
}

bool VL_ClipboardHasFiles()
{
    return IsClipboardFormatAvailable(CF_HDROP) != FALSE;
}

VL_ByteArray VL_GetClipboardImage()
{
    if (!VL_ClipboardHasImage())
        return VL_ByteArray();
    std::string dib;
    {
        const vl_clipboard::Clipboard clipboard;
        const std::string png = clipboard.bytes(vl_clipboard::pngFormat());
        if (png.compare(0, 4, "\x89PNG") == 0)
            return VL_ByteArray(png.data(), png.size());
        dib = clipboard.bytes(CF_DIB);
    }
    const HBITMAP picture = VL_PictureFromDib(dib.data(), dib.size());
    const VL_ByteArray png = VL_PictureToPng(picture);
    if (picture)
        DeleteObject(picture);
    return png;
}

bool VL_SetClipboardImage(const VL_Any &pathOrBytes)
{
    const VL_ByteArray bytes = pathOrBytes.type == VL_Any::TypeBytes
                                   ? (VL_ByteArray)pathOrBytes
                                   : VL_ReadBinaryFile(pathOrBytes.toStr());
    const HBITMAP picture = VL_PictureFromBytes(bytes.ptr(), bytes.size());
    if (!picture)
        return false;
    const VL_ByteArray png = VL_PictureToPng(picture);
    const std::string dib = vl_clipboard::dibFromPicture(picture);
    DeleteObject(picture);
    vl_clipboard::Clipboard clipboard;
    if (!clipboard.empty())
        return false;
    if (!png.empty())
        clipboard.put(vl_clipboard::pngFormat(), png.ptr(), png.size());
    return clipboard.put(CF_DIB, dib.data(), dib.size());
}

VL_Array VL_GetClipboardFiles()
{
    VL_Array paths;
    if (!VL_ClipboardHasFiles())
        return paths;
    const vl_clipboard::Clipboard clipboard;
    const HDROP files = clipboard.files();
    const UINT count = files ? DragQueryFileW(files, 0xFFFFFFFF, NULL, 0) : 0;
    for (UINT i = 0; i < count; ++i) {
        std::wstring path(DragQueryFileW(files, i, NULL, 0) + 1, L'\0');
        path.resize(DragQueryFileW(files, i, &path[0], (UINT)path.size()));
        paths.push_back(VL_Any(path));
    }
    return paths;
}

bool VL_SetClipboardFiles(const VL_Array &paths)
{
    std::wstring list;
    for (const VL_Any &path : paths) {
        const std::wstring given = path.toStr().c_str();
        const DWORD size = given.empty() ? 0 : GetFullPathNameW(given.c_str(), 0, NULL, NULL);
        std::wstring full(size, L'\0');
        full.resize(size ? GetFullPathNameW(given.c_str(), size, &full[0], NULL) : 0);
        if (!full.empty())
            list += full + L'\0';
    }
    if (list.empty())
        return false;
    list += L'\0';
    DROPFILES head = {};
    head.pFiles = sizeof(head);
    head.fWide = TRUE;
    std::string data((const char *)&head, sizeof(head));
    data.append((const char *)list.data(), list.size() * sizeof(wchar_t));

    vl_clipboard::Clipboard clipboard;
    const DWORD copy = DROPEFFECT_COPY;
    return clipboard.empty() && clipboard.put(CF_HDROP, data.data(), data.size()) &&
           clipboard.put(RegisterClipboardFormatW(L"Preferred DropEffect"), &copy, sizeof(copy));
}

std::wstring VL_GetClipboardHTML()
{
    using namespace vl_clipboard;
    if (!IsClipboardFormatAvailable(htmlFormat()))
        return std::wstring();
    std::string html = Clipboard().bytes(htmlFormat());
    html.resize(strlen(html.c_str()));
    std::string part =
        cut(html, headNumber(html, "StartFragment:"), headNumber(html, "EndFragment:"));
    if (part.empty())
        part = cut(html, headNumber(html, "StartHTML:"), headNumber(html, "EndHTML:"));
    // A head that cannot be right: everything from the first tag on.
    if (part.empty() && html.find('<') != std::string::npos)
        part = html.substr(html.find('<'));
    return VL_Utf8ToWide(part);
}

bool VL_SetClipboardHTML(const std::wstring &html, const std::wstring &plain)
{
    const std::string content = vl_clipboard::htmlWithHead(VL_WideToUtf8(html));
    vl_clipboard::Clipboard clipboard;
    return clipboard.empty() &&
           clipboard.put(vl_clipboard::htmlFormat(), content.c_str(), content.size() + 1) &&
           (plain.empty() || clipboard.putText(plain));
}

bool VL_WatchClipboard(std::function<void()> callback)
{
    using namespace vl_clipboard;
    if (!callback)
        return false;
    VL_StopClipboardWatch();
    WNDCLASSW description = {};
    description.lpfnWndProc = watchProcedure;
    description.hInstance = g_hInstance;
    description.lpszClassName = WatchClass;
    RegisterClassW(&description);
    g_watch.window = hiddenWindow(WatchClass);
    if (!g_watch.window)
        return false;
    g_watch.callback = std::move(callback);
    g_watch.told = GetClipboardSequenceNumber();
    if (AddClipboardFormatListener(g_watch.window))
        return true;
    VL_StopClipboardWatch();
    return false;
}

void VL_StopClipboardWatch()
{
    vl_clipboard::g_watch.callback = nullptr;
    if (const HWND window = vl_clipboard::g_watch.window) {
        vl_clipboard::g_watch.window = NULL;
        DestroyWindow(window);
    }
}
