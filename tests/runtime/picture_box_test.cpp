// Picture boxes: formats, modes, borders, moving pictures.
#include "01_images.h"
#include "40_files.h"
#include "41_paths.h"
#include "71_image_drawing.h"
#include "87_picture_box.h"
#include "gdi_count.h"
#include "window_test.h"

namespace {

const COLORREF kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255), kBack = RGB(0, 128, 0);

HWND pictureBox(RECT place)
{
    const HWND box = testControl(g_pictureBoxClassName, L"", WS_CLIPSIBLINGS, 9, place);
    VL_SetBgColor(box, kBack);
    return box;
}

std::wstring tempFile(const std::wstring &name)
{
    return VL_JoinPath(VL_GetTempDir(), L"picture_box_test_" + name);
}

// A picture whose left half is red and whose right half is blue.
std::wstring halvesFile(const std::wstring &name, int width, int height)
{
    VL_Surface surface;
    surface.create(width, height);
    VL_FillOutlines(surface, {VL_RectOutline(0, 0, width, height)}, VL_ArgbOf(kBlue), false, false);
    VL_FillOutlines(surface, {VL_RectOutline(0, 0, width / 2, height)}, VL_ArgbOf(kRed), false,
                    false);
    const std::wstring path = tempFile(name);
    CHECK(VL_SaveImage(surface, path));
    return path;
}

void append(VL_ByteArray &bytes, std::initializer_list<int> values)
{
    for (const int value : values)
        bytes.append((unsigned char)value);
}

// One size of an icon: opaque pixels of one colour (blue, green, red), then an empty mask.
VL_ByteArray iconPicture(int size, std::initializer_list<int> color)
{
    VL_ByteArray bytes;
    append(bytes, {40, 0, 0, 0, size, 0, 0, 0, size * 2, 0, 0, 0, 1, 0, 32, 0});
    bytes.resize(40);
    for (int i = 0; i < size * size; ++i) {
        append(bytes, color);
        append(bytes, {255});
    }
    bytes.resize((long long)bytes.size() + size * 4);
    return bytes;
}

// An icon with a red picture of 4 by 4 and a blue one of 8 by 8 pixels.
VL_ByteArray icon()
{
    const VL_ByteArray small = iconPicture(4, {0, 0, 255}), large = iconPicture(8, {255, 0, 0});
    VL_ByteArray bytes;
    append(bytes, {0, 0, 1, 0, 2, 0});
    const int begin = 6 + 2 * 16;
    const auto entry = [&](int size, int length, int offset) {
        append(bytes, {size, size, 0, 0, 1, 0, 32, 0, length & 255, length >> 8, 0, 0, offset & 255,
                       offset >> 8, 0, 0});
    };
    entry(4, (int)small.size(), begin);
    entry(8, (int)large.size(), begin + (int)small.size());
    bytes += small;
    bytes += large;
    return bytes;
}

// Two frames of one pixel, red for 50 ms and blue for 50 ms.
VL_ByteArray movingPicture()
{
    VL_ByteArray bytes;
    append(bytes, {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 255, 0, 0, 0, 0, 255});
    append(bytes,
           {0x21, 0xFF, 11, 'N', 'E', 'T', 'S', 'C', 'A', 'P', 'E', '2', '.', '0', 3, 1, 0, 0, 0});
    for (const int frame : {0x44, 0x4C}) {
        append(bytes, {0x21, 0xF9, 4, 0, 5, 0, 0, 0});
        append(bytes, {0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0, 2, 2, frame, 1, 0});
    }
    append(bytes, {0x3B});
    return bytes;
}

void testFormats()
{
    const HWND box = pictureBox({10, 10, 90, 50});
    for (const wchar_t *name : {L"a.png", L"b.bmp", L"d.jpg", L"e.tiff", L"f.JPEG"}) {
        const std::wstring path = halvesFile(name, 16, 8);
        CHECK(VL_PictureBox_SetImage(box, path));
        CHECK_EQ(VL_PictureBox_GetError(box), std::wstring());
        CHECK_EQ(VL_PictureBox_GetPath(box), path);
        CHECK_EQ(VL_PictureBox_GetImageWidth(box), 16);
        CHECK_EQ(VL_PictureBox_GetImageHeight(box), 8);
        CHECK(GetRValue(pixelAt(box, 10, 20)) > 240 && GetBValue(pixelAt(box, 10, 20)) < 15);
        CHECK(GetBValue(pixelAt(box, 70, 20)) > 240 && GetRValue(pixelAt(box, 70, 20)) < 15);
        // The file is free once it was read.
        CHECK(VL_DeleteFile(path));
    }
    CHECK(VL_PictureBox_SetImageBytes(box, icon()));
    CHECK_EQ(VL_PictureBox_GetImageWidth(box), 8);
    CHECK_EQ(pixelAt(box, 40, 20), kBlue);
    DestroyWindow(box);
}

void testWhatCannotBeRead()
{
    const HWND box = pictureBox({10, 10, 90, 50});
    VL_PictureBox_SetImageBytes(box, icon());
    VL_ByteArray cut = icon(), noise;
    cut.resize(50);
    for (int i = 0; i < 5000; ++i)
        noise.append((unsigned char)(i * 7919 >> 3));
    VL_ByteArray headerOnly("\x89PNG\r\n\x1a\n", 8);
    VL_ByteArray huge = VL_ByteArray("BM", 2);
    append(huge,
           {0, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 0, 24, 0});
    huge.resize(60);
    for (const VL_ByteArray &bytes : {cut, noise, headerOnly, huge}) {
        CHECK(!VL_PictureBox_SetImageBytes(box, bytes));
        CHECK(!VL_PictureBox_GetError(box).empty());
        CHECK_EQ(pixelAt(box, 40, 20), kBack);
    }
    CHECK(!VL_PictureBox_SetImage(box, L"no such file.png"));
    CHECK(VL_PictureBox_GetError(box).find(L"no such file.png") != std::wstring::npos);
    // Taking a picture away is no fault.
    VL_PictureBox_SetImage(box, std::wstring());
    CHECK_EQ(VL_PictureBox_GetError(box), std::wstring());
    for (const HWND other : {(HWND)NULL, testWindow(), (HWND)(intptr_t)12345}) {
        CHECK(!VL_PictureBox_SetImageBytes(other, icon()));
        VL_PictureBox_SetMode(other, L"x");
        CHECK_EQ(VL_PictureBox_GetImageWidth(other), 0);
    }
    DestroyWindow(box);
}

void testModes()
{
    const std::wstring path = halvesFile(L"mode.png", 20, 10);
    const HWND box = pictureBox({10, 10, 110, 110});
    CHECK(VL_PictureBox_SetImage(box, path));
    // Colours at 5, 5, at the middle less 8, at the middle plus 8, and at 95, 95.
    const struct
    {
        const wchar_t *mode;
        COLORREF at[4];
    } rows[] = {{L"\u62C9\u4F38", {kRed, kRed, kBlue, kBlue}},
                {L"\u5E73\u94FA", {kRed, kRed, kBlue, kBlue}},
                {L"\u5C45\u4E2D", {kBack, kRed, kBlue, kBack}},
                {L"\u7F29\u653E", {kBack, kRed, kBlue, kBack}},
                {L"stretch", {kRed, kRed, kBlue, kBlue}}};
    for (const auto &row : rows) {
        VL_PictureBox_SetMode(box, row.mode);
        const bool tiled = wcscmp(row.mode, L"\u5E73\u94FA") == 0;
        CHECK_EQ(pixelAt(box, 5, 5), row.at[0]);
        CHECK_EQ(pixelAt(box, tiled ? 49 - 8 + 2 : 42, 50), row.at[1]);
        CHECK_EQ(pixelAt(box, tiled ? 57 : 58, 50), row.at[2]);
        CHECK_EQ(pixelAt(box, 95, 95), row.at[3]);
    }
    // Zoom fills one direction, centring none; stretching follows a new size.
    VL_PictureBox_SetMode(box, L"\u7F29\u653E");
    CHECK_EQ(pixelAt(box, 1, 50), kRed);
    CHECK_EQ(pixelAt(box, 1, 28), kRed);
    CHECK_EQ(pixelAt(box, 1, 22), kBack);
    VL_PictureBox_SetMode(box, L"\u5C45\u4E2D");
    CHECK_EQ(pixelAt(box, 38, 50), kBack);
    VL_PictureBox_SetMode(box, L"\u62C9\u4F38");
    CHECK_EQ(VL_PictureBox_GetMode(box), std::wstring(L"\u62C9\u4F38"));
    SetWindowPos(box, NULL, 10, 10, 40, 30, SWP_NOZORDER);
    CHECK_EQ(pixelAt(box, 17, 29), kRed);
    CHECK_EQ(pixelAt(box, 22, 29), kBlue);
    VL_PictureBox_SetBorder(box, 4, RGB(1, 2, 3));
    CHECK_EQ(pixelAt(box, 3, 15), RGB(1, 2, 3));
    CHECK_EQ(pixelAt(box, 4, 15), kRed);
    VL_PictureBox_SetBorder(box, 0, 0);
    CHECK_EQ(pixelAt(box, 0, 0), kRed);
    EnableWindow(box, FALSE);
    CHECK(pixelAt(box, 0, 0) != kRed);
    DestroyWindow(box);
    VL_DeleteFile(path);
}

void testSharedImageMessages()
{
    const std::wstring path = halvesFile(L"shared.png", 20, 10);
    const HWND box = pictureBox({10, 10, 110, 110});
    VL_ControlImage image;
    image.path = path;
    image.mode = L"\u62C9\u4F38";
    CHECK_EQ((int)SendMessageW(box, VL_WM_SET_IMAGE, (WPARAM)&image, 0), 1);
    CHECK_EQ(pixelAt(box, 5, 5), kRed);
    VL_ControlImage told;
    CHECK_EQ((int)SendMessageW(box, VL_WM_GET_IMAGE, (WPARAM)&told, 0), 1);
    CHECK_EQ(told.path, path);
    CHECK_EQ(told.mode, image.mode);
    VL_ControlImage modeOnly;
    modeOnly.keepPicture = true;
    modeOnly.mode = L"\u5C45\u4E2D";
    SendMessageW(box, VL_WM_SET_IMAGE, (WPARAM)&modeOnly, 0);
    CHECK_EQ(pixelAt(box, 50 - 5, 50), kRed);
    CHECK_EQ(pixelAt(box, 5, 5), kBack);
    DestroyWindow(box);
    VL_DeleteFile(path);
}

// Pumps messages until the box shows the colour; false after three seconds.
bool waitForColor(HWND box, COLORREF color)
{
    const DWORD end = GetTickCount() + 3000;
    while ((int)(end - GetTickCount()) > 0) {
        if (pixelAt(box, 20, 20) == color)
            return true;
        MsgWaitForMultipleObjects(0, NULL, FALSE, 20, QS_ALLINPUT);
    }
    return false;
}

void testMovingPictures()
{
    const HWND box = pictureBox({10, 10, 60, 60});
    CHECK(VL_PictureBox_SetImageBytes(box, movingPicture()));
    CHECK(waitForColor(box, kBlue));
    CHECK(waitForColor(box, kRed));
    ShowWindow(box, SW_HIDE);
    ShowWindow(box, SW_SHOW);
    CHECK(waitForColor(box, kBlue));
    CHECK(waitForColor(box, kRed));
    CHECK(VL_PictureBox_SetImageBytes(box, icon()));
    CHECK(waitForColor(box, kBlue));
    DestroyWindow(box);
}

// A picture many times larger than the box keeps its thin lines as grey.
void testSmoothScaling()
{
    VL_Surface surface;
    surface.create(1000, 1000);
    for (int y = 0; y < 1000; ++y) {
        for (int x = 0; x < 1000; ++x)
            surface.row(y)[x] = (x + y) % 2 ? 0xFFFFFFFF : 0xFF000000;
    }
    const std::wstring path = tempFile(L"fine.png");
    CHECK(VL_SaveImage(surface, path));
    const HWND box = pictureBox({10, 10, 47, 47});
    VL_PictureBox_SetImage(box, path);
    for (const int place : {0, 10, 20, 36}) {
        const COLORREF color = pixelAt(box, place, place);
        CHECK(GetRValue(color) > 110 && GetRValue(color) < 145);
    }
    DestroyWindow(box);
    VL_DeleteFile(path);
}

void testNothingLeft()
{
    const auto round = [] {
        const HWND box = pictureBox({10, 10, 60, 60});
        VL_PictureBox_SetImageBytes(box, movingPicture());
        UpdateWindow(box);
        VL_PictureBox_SetImageBytes(box, icon());
        UpdateWindow(box);
        DestroyWindow(box);
    };
    round();
    const int before = gdiObjects();
    for (int i = 0; i < 100; ++i)
        round();
    CHECK(gdiObjects() <= before + 2);
}

} // namespace

void runTests()
{
    VL_InitGdiPlus();
    testWindow();
    VL_RegisterPictureBoxClass();
    testFormats();
    testWhatCannotBeRead();
    testModes();
    testSharedImageMessages();
    testMovingPictures();
    testSmoothScaling();
    testNothingLeft();
}
