// The clipboard: what is put there is read back, by us and in the forms that others want.
#include "71_clipboard.h"
#include "window_test.h"

#include "16_picture_bytes.h"
#include "40_files.h"
#include "41_paths.h"

#include <shlobj.h>

namespace {

// As another program would put it there.
void putRaw(UINT format, const std::string &bytes)
{
    OpenClipboard(testWindow());
    EmptyClipboard();
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    memcpy(GlobalLock(memory), bytes.data(), bytes.size());
    GlobalUnlock(memory);
    SetClipboardData(format, memory);
    CloseClipboard();
}

std::string getRaw(UINT format)
{
    OpenClipboard(testWindow());
    const HGLOBAL memory = GetClipboardData(format);
    std::string bytes;
    if (memory) {
        bytes.assign((const char *)GlobalLock(memory), GlobalSize(memory));
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return bytes;
}

void texts()
{
    for (const std::wstring &text : {std::wstring(L"\u4E2D\u6587\r\n\xD83D\xDE00\t\"x\""),
                                     std::wstring(), std::wstring(5000000, L'\u957F')}) {
        CHECK(VL_SetClipboardText(text));
        CHECK(VL_ClipboardHasText());
        CHECK(VL_GetClipboardText() == text);
    }
    CHECK(VL_SetClipboardText(std::wstring(L"a\0b", 3)));
    CHECK_EQ(VL_GetClipboardText(), std::wstring(L"a"));
    CHECK(VL_ClearClipboard());
    CHECK(!VL_ClipboardHasText());
    CHECK_EQ(VL_GetClipboardText(), std::wstring());
}

// "b,g,r,a" of the first pixel.
std::wstring firstPixel(const VL_ByteArray &png)
{
    const HBITMAP picture = VL_PictureFromBytes(png.ptr(), png.size());
    const unsigned char *bits = VL_PictureBits(picture, NULL, NULL);
    std::wstring text = L"none";
    if (bits) {
        text.clear();
        for (int i = 0; i < 4; ++i)
            text += (i ? L"," : L"") + std::to_wstring(bits[i]);
    }
    DeleteObject(picture);
    return text;
}

std::string dibOf(int bits, int height, const std::string &behind)
{
    const BITMAPINFOHEADER header = {40, 4, height, 1, (WORD)bits, BI_RGB, 0, 0, 0, 0, 0};
    return std::string((const char *)&header, sizeof(header)) + behind;
}

void pictures()
{
    const HBITMAP picture = VL_NewPicture(3, 2);
    unsigned char *bits = VL_PictureBits(picture, NULL, NULL);
    bits[0] = 100; // half transparent blue
    bits[3] = 128;
    const VL_ByteArray png = VL_PictureToPng(picture);
    DeleteObject(picture);
    CHECK(VL_SetClipboardImage(VL_Any(png)));
    CHECK(VL_ClipboardHasImage());
    CHECK(!VL_ClipboardHasText());
    CHECK_EQ(firstPixel(VL_GetClipboardImage()), std::wstring(L"100,0,0,128"));
    // Programs that know no transparency get it on white; 3 pixels of 3 bytes fill 12, the top
    // line comes last.
    const std::string dib = getRaw(CF_DIB);
    CHECK_EQ((int)(unsigned char)dib[sizeof(BITMAPINFOHEADER) + 12], 227);
    CHECK_EQ((int)(unsigned char)dib[sizeof(BITMAPINFOHEADER) + 14], 127);
    CHECK_EQ((int)(unsigned char)dib[sizeof(BITMAPINFOHEADER)], 255);

    const std::wstring path = VL_JoinPath(VL_GetTempDir(), L"vl_\u526A\u8D34.png");
    VL_WriteBinaryFile(path, png);
    CHECK(VL_ClearClipboard());
    CHECK(VL_SetClipboardImage(path));
    CHECK_EQ(firstPixel(VL_GetClipboardImage()), std::wstring(L"100,0,0,128"));
    DeleteFileW(path.c_str());
    CHECK(!VL_SetClipboardImage(path));
    CHECK(!VL_SetClipboardImage(VL_Any(5)));

    // Of other programs: with a palette, from above, damaged.
    std::string palette(256 * 4, '\0');
    palette[7 * 4 + 1] = '\xFF';
    putRaw(CF_DIB, dibOf(8, 2, palette + std::string(4, '\0') + std::string(4, '\7')));
    CHECK_EQ(firstPixel(VL_GetClipboardImage()), std::wstring(L"0,255,0,255"));
    putRaw(CF_DIB, dibOf(32, -1, std::string("\x10\x20\x30\0", 4) + std::string(12, '\0')));
    CHECK_EQ(firstPixel(VL_GetClipboardImage()), std::wstring(L"16,32,48,255"));
    for (const std::string &damaged :
         {dibOf(32, 2000, "x"), dibOf(77, 2, std::string(99, 'x')), std::string("short")}) {
        putRaw(CF_DIB, damaged);
        CHECK(VL_GetClipboardImage().empty());
    }
}

void files()
{
    const std::wstring system = VL_GetSystemDir();
    VL_Array paths = {VL_Any(system), VL_Any(L""), VL_Any(L"\u7532\u4E59.txt")};
    CHECK(VL_SetClipboardFiles(paths));
    CHECK(VL_ClipboardHasFiles());
    const VL_Array read = VL_GetClipboardFiles();
    CHECK_EQ(read.size(), (size_t)2);
    CHECK_EQ(read[0].toStr(), system);
    CHECK_EQ(read[1].toStr(), VL_JoinPath(VL_GetCurrentDir(), L"\u7532\u4E59.txt"));
    CHECK(!VL_SetClipboardFiles(VL_Array()));
    VL_SetClipboardText(L"x");
    CHECK(VL_GetClipboardFiles().empty());
}

void html()
{
    const std::wstring content = L"<b>\u7C97\u4F53</b> &amp; <i>x</i>";
    CHECK(VL_SetClipboardHTML(content, L"plain"));
    CHECK_EQ(VL_GetClipboardHTML(), content);
    CHECK_EQ(VL_GetClipboardText(), std::wstring(L"plain"));
    // The head tells byte positions.
    const UINT format = RegisterClipboardFormatW(L"HTML Format");
    const std::string raw = getRaw(format);
    const size_t start = (size_t)atol(raw.c_str() + raw.find("StartFragment:") + 14);
    CHECK_EQ(raw.substr(start, 4), std::string("<b>\xE7"));
    const size_t startHtml = (size_t)atol(raw.c_str() + raw.find("StartHTML:") + 10);
    CHECK_EQ(raw.substr(startHtml, 6), std::string("<html>"));

    const struct
    {
        std::string raw;
        std::wstring expected;
    } rows[] = {
        {"Version:1.0\r\nStartFragment:0000000063\r\nEndFragment:0000000066\r\nabcde", L"abc"},
        {"Version:0.9\nStartFragment:99999\nEndFragment:5\n<p>a</p>", L"<p>a</p>"},
        {"no head and no tag", L""},
    };
    for (const auto &row : rows) {
        putRaw(format, row.raw);
        CHECK_EQ(VL_GetClipboardHTML(), row.expected);
    }
}

DWORD WINAPI holdClipboard(void *ready)
{
    OpenClipboard(NULL);
    SetEvent((HANDLE)ready);
    Sleep(200);
    CloseClipboard();
    return 0;
}

// Another owner is waited for.
void heldByOthers()
{
    const HANDLE ready = CreateEventW(NULL, TRUE, FALSE, NULL);
    const HANDLE thread = CreateThread(NULL, 0, holdClipboard, ready, 0, NULL);
    WaitForSingleObject(ready, 5000);
    CHECK(VL_SetClipboardText(L"waited"));
    CHECK_EQ(VL_GetClipboardText(), std::wstring(L"waited"));
    WaitForSingleObject(thread, 5000);
    CloseHandle(thread);
    CloseHandle(ready);
}

void waitForMessages()
{
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < 300) {
        pumpMessages();
        Sleep(10);
    }
}

std::wstring g_told;

void watching()
{
    CHECK(VL_StartClipboardWatch([] {
        g_told += L"[" + VL_GetClipboardText() + L"]";
        VL_SetClipboardText(L"of the callback");
    }));
    VL_SetClipboardText(L"one");
    waitForMessages();
    CHECK_EQ(g_told, std::wstring(L"[one]"));
    // Functions that take the text replace the first; a watch can end itself.
    g_told.clear();
    CHECK(VL_StartClipboardWatch([](const std::wstring &text) {
        g_told += text;
        VL_StopClipboardWatch();
    }));
    VL_SetClipboardText(L"two");
    waitForMessages();
    VL_SetClipboardText(L"three");
    waitForMessages();
    CHECK_EQ(g_told, std::wstring(L"two"));
    CHECK(VL_StartClipboardWatch([](intptr_t) {}));
    VL_StopClipboardWatch();
    VL_StopClipboardWatch();
}

} // namespace

void runTests()
{
    texts();
    pictures();
    files();
    html();
    heldByOthers();
    watching();
    VL_ClearClipboard();
}
