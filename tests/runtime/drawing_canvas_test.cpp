// Drawing canvases: where shapes lie, what is kept, text, pictures, saving.
#include "01_images.h"
#include "40_files.h"
#include "41_paths.h"
#include "88_drawing_shapes.h"
#include "gdi_count.h"
#include "window_test.h"

#include <limits>

namespace {

const int kWhite = RGB(255, 255, 255), kBlack = 0, kRed = RGB(255, 0, 0), kBlue = RGB(0, 0, 255);

HWND canvasAt(RECT place)
{
    return testControl(L"VL_DrawCanvas", L"", WS_CLIPSIBLINGS, 11, place);
}

// The pixels of an area as text, one row per line: '#' black, '.' white, '+' between.
std::wstring map(HWND canvas, int left, int top, int width, int height)
{
    std::wstring text;
    for (int y = top; y < top + height; ++y) {
        for (int x = left; x < left + width; ++x) {
            const int color = VL_DrawCanvas_GetPixel(canvas, x, y);
            text += color == kBlack ? L'#' : color == kWhite ? L'.' : L'+';
        }
        text += L'\n';
    }
    return text;
}

typedef void (*Shape)(HWND canvas);

void testWhereShapesLie()
{
    const struct
    {
        Shape draw;
        const wchar_t *map; // of 8 by 6 pixels from 0, 0
    } rows[] = {
        {[](HWND c) { VL_DrawCanvas_Line(c, 1, 1, 5, 1); },
         L"........\n.#####..\n........\n........\n........\n........\n"},
        {[](HWND c) { VL_DrawCanvas_Line(c, 2, 4, 2, 1); },
         L"........\n..#.....\n..#.....\n..#.....\n..#.....\n........\n"},
        {[](HWND c) { VL_DrawCanvas_Line(c, 1, 2, 5, 2, kBlack, 3); },
         L"........\n.#####..\n.#####..\n.#####..\n........\n........\n"},
        {[](HWND c) { VL_DrawCanvas_Line(c, 3, 3, 3, 3); },
         L"........\n........\n........\n...#....\n........\n........\n"},
        {[](HWND c) { VL_DrawCanvas_Rectangle(c, 1, 1, 5, 4); },
         L"........\n.#####..\n.#...#..\n.#...#..\n.#####..\n........\n"},
        {[](HWND c) { VL_DrawCanvas_FillRectangle(c, 1, 1, 5, 4); },
         L"........\n.#####..\n.#####..\n.#####..\n.#####..\n........\n"},
        {[](HWND c) { VL_DrawCanvas_FillRectangle(c, 6, 5, -5, -4); },
         L"........\n.#####..\n.#####..\n.#####..\n.#####..\n........\n"},
        {[](HWND c) { VL_DrawCanvas_Rectangle(c, 1, 1, 2, 1); },
         L"........\n.##.....\n........\n........\n........\n........\n"},
        {[](HWND c) {
             VL_DrawCanvas_FillPolygon(c, {0, 0, 8, 0, 8, 6, 0, 6});
         },
         L"########\n########\n########\n########\n########\n########\n"},
        {[](HWND c) {
             VL_DrawCanvas_Polyline(c, {0, 0, 0, 3, 4, 3});
         },
         L"#.......\n#.......\n#.......\n#####...\n........\n........\n"},
        {[](HWND c) { VL_DrawCanvas_SetPixel(c, 4, 2); },
         L"........\n........\n....#...\n........\n........\n........\n"},
        {[](HWND c) { VL_DrawCanvas_FillPie(c, -20, -20, 40, 40, 0, 90); },
         L"########\n########\n########\n########\n########\n########\n"},
        {[](HWND c) { VL_DrawCanvas_FillPie(c, -20, -20, 40, 40, 180, 90); },
         L"........\n........\n........\n........\n........\n........\n"},
    };
    const HWND canvas = canvasAt({10, 10, 110, 110});
    for (const bool smooth : {false, true}) {
        VL_DrawCanvas_SetAntialias(canvas, smooth);
        for (const auto &row : rows) {
            VL_DrawCanvas_ClearOverlay(canvas);
            row.draw(canvas);
            CHECK_EQ(map(canvas, 0, 0, 8, 6), std::wstring(row.map));
        }
    }
    DestroyWindow(canvas);
}

void testSmoothness()
{
    const HWND canvas = canvasAt({10, 10, 110, 110});
    const Shape shapes[] = {
        [](HWND c) { VL_DrawCanvas_Line(c, 3, 3, 90, 40, kBlack, 2); },
        [](HWND c) { VL_DrawCanvas_FillEllipse(c, 5, 5, 80, 60); },
        [](HWND c) { VL_DrawCanvas_Ellipse(c, 5, 5, 80, 60, kBlack, 3); },
        [](HWND c) { VL_DrawCanvas_Arc(c, 5, 5, 80, 60, 10, 200, kBlack, 3); },
        [](HWND c) { VL_DrawCanvas_FillRoundRectangle(c, 5, 5, 80, 60, 20); },
        [](HWND c) {
            VL_DrawCanvas_Curve(c, {5, 50, 30, 10, 60, 90, 95, 20}, kBlack, 2);
        },
        [](HWND c) { VL_DrawCanvas_AddText(c, 5, 5, L"Text", kBlack, 30); },
    };
    for (const Shape shape : shapes) {
        for (const bool smooth : {true, false}) {
            VL_DrawCanvas_ClearOverlay(canvas);
            VL_DrawCanvas_SetAntialias(canvas, smooth);
            CHECK_EQ(VL_DrawCanvas_GetAntialias(canvas), smooth);
            shape(canvas);
            const std::wstring drawn = map(canvas, 0, 0, 100, 100);
            CHECK(drawn.find(L'#') != std::wstring::npos);
            CHECK_EQ(drawn.find(L'+') != std::wstring::npos, smooth);
        }
    }
    DestroyWindow(canvas);
}

void testWhatIsKept()
{
    const HWND canvas = canvasAt({10, 10, 110, 110});
    VL_DrawCanvas_ApplyProps(canvas, kBlue, true);
    VL_DrawCanvas_FillRectangle(canvas, 20, 20, 60, 60, kRed);
    CHECK_EQ((int)pixelAt(canvas, 50, 50), kRed);
    CHECK_EQ((int)pixelAt(canvas, 10, 10), kBlue);
    // Smaller, larger, hidden: it stays, and there is room to draw on.
    SetWindowPos(canvas, NULL, 10, 10, 40, 40, SWP_NOZORDER);
    UpdateWindow(canvas);
    VL_DrawCanvas_SetPixel(canvas, 1, 1, kRed);
    SetWindowPos(canvas, NULL, 10, 10, 300, 200, SWP_NOZORDER);
    CHECK_EQ((int)pixelAt(canvas, 79, 79), kRed);
    CHECK_EQ((int)pixelAt(canvas, 1, 1), kRed);
    ShowWindow(canvas, SW_HIDE);
    VL_DrawCanvas_FillRectangle(canvas, 280, 180, 10, 10, kRed);
    ShowWindow(canvas, SW_SHOW);
    CHECK_EQ((int)pixelAt(canvas, 285, 185), kRed);
    // The ground changes below the drawings.
    VL_SetBgColor(canvas, kWhite);
    CHECK_EQ((int)pixelAt(canvas, 50, 50), kRed);
    CHECK_EQ((int)pixelAt(canvas, 100, 100), kWhite);
    VL_DrawCanvas_Clear(canvas, kBlack);
    CHECK_EQ((int)pixelAt(canvas, 299, 199), kBlack);
    VL_DrawCanvas_ClearOverlay(canvas);
    CHECK_EQ((int)pixelAt(canvas, 50, 50), kWhite);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 300, 10), -1);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, -1, 10), -1);
    DestroyWindow(canvas);
}

void testRepainting()
{
    const HWND canvas = canvasAt({10, 10, 110, 110});
    CHECK_EQ((int)pixelAt(canvas, 5, 5), kWhite);
    VL_DrawCanvas_BeginDraw(canvas);
    VL_DrawCanvas_BeginDraw(canvas);
    VL_DrawCanvas_FillRectangle(canvas, 0, 0, 50, 50, kRed);
    VL_DrawCanvas_EndDraw(canvas);
    CHECK_EQ((int)pixelAt(canvas, 5, 5), kWhite);
    VL_DrawCanvas_EndDraw(canvas);
    VL_DrawCanvas_EndDraw(canvas);
    CHECK_EQ((int)pixelAt(canvas, 5, 5), kRed);
    // Painting again after each round.
    for (const int color : {kBlue, kBlack, kRed}) {
        VL_DrawCanvas_FillRectangle(canvas, 0, 0, 50, 50, color);
        VL_DrawCanvas_SetPixel(canvas, 90, 90, color);
        CHECK_EQ((int)pixelAt(canvas, 5, 5), color);
        CHECK_EQ((int)pixelAt(canvas, 90, 90), color);
    }
    DestroyWindow(canvas);
}

void testText()
{
    const HWND canvas = canvasAt({10, 10, 310, 210});
    const int one = VL_DrawCanvas_TextWidth(canvas, L"\u4E2D");
    CHECK(one >= 12 && one <= 24);
    CHECK_EQ(VL_DrawCanvas_TextWidth(canvas, L"\u4E2D\u4E2D\u4E2D\n\u4E2D"), 3 * one);
    const int height = VL_DrawCanvas_TextHeight(canvas, L"\u4E2D", 12);
    CHECK_EQ(VL_DrawCanvas_TextHeight(canvas, L"\u4E2D\r\n\u4E2D", 12), 2 * height);
    CHECK(VL_DrawCanvas_TextHeight(canvas, L"\u4E2D", 24) > height * 3 / 2);
    CHECK(VL_DrawCanvas_TextWidth(canvas, L"mmmm", 12, L"Microsoft YaHei UI", true) >=
          VL_DrawCanvas_TextWidth(canvas, L"mmmm", 12, L"Microsoft YaHei UI"));
    VL_DrawCanvas_AddText(canvas, 100, 50, L"\u4E2D", kRed, 20);
    int found = 0;
    const int width = VL_DrawCanvas_TextWidth(canvas, L"\u4E2D", 20);
    for (int y = 0; y < 200; ++y) {
        for (int x = 80; x < 200; ++x) {
            if (VL_DrawCanvas_GetPixel(canvas, x, y) == kWhite)
                continue;
            ++found;
            CHECK(x >= 99 && x <= 100 + width && y >= 50 && y <= 50 + 2 * 20);
        }
    }
    CHECK(found > 50);
    DestroyWindow(canvas);
}

void testPicturesAndSaving()
{
    const std::wstring path = VL_JoinPath(VL_GetTempDir(), L"drawing_canvas_test.png");
    const HWND canvas = canvasAt({10, 10, 110, 90});
    VL_DrawCanvas_FillRectangle(canvas, 0, 0, 50, 80, kRed);
    VL_DrawCanvas_FillRectangle(canvas, 50, 0, 50, 80, kBlue);
    CHECK(VL_DrawCanvas_Save(canvas, path));
    CHECK(!VL_DrawCanvas_Save(canvas, path + L".unknown"));
    CHECK(!VL_DrawCanvas_Save(canvas, std::wstring()));
    VL_DrawCanvas_Clear(canvas);
    CHECK(VL_DrawCanvas_DrawImage(canvas, path, 10, 10));
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 10, 10), kRed);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 59, 10), kRed);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 60, 10), kBlue);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 9, 10), kWhite);
    VL_DrawCanvas_Clear(canvas);
    CHECK(VL_DrawCanvas_DrawImageBytes(canvas, VL_ReadBinaryFile(path), 20, 20, 20, 10));
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 20, 20), kRed);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 39, 29), kBlue);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 40, 30), kWhite);
    CHECK(!VL_DrawCanvas_DrawImage(canvas, L"no such file.png", 0, 0));
    // A picture as the ground lies below what is drawn.
    VL_ControlImage image;
    image.path = path;
    CHECK_EQ((int)SendMessageW(canvas, VL_WM_SET_IMAGE, (WPARAM)&image, 0), 1);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 90, 70), kBlue);
    VL_DrawCanvas_SetPixel(canvas, 90, 70, kBlack);
    CHECK_EQ(VL_DrawCanvas_GetPixel(canvas, 90, 70), kBlack);
    CHECK_EQ((int)pixelAt(canvas, 91, 70), kBlue);
    DestroyWindow(canvas);
    CHECK(VL_DeleteFile(path));
}

void testOddArguments()
{
    const double odd[] = {0,     -1,
                          1e9,   -1e9,
                          1e300, std::numeric_limits<double>::infinity(),
                          0.5,   std::numeric_limits<double>::quiet_NaN()};
    const HWND canvas = canvasAt({10, 10, 60, 60});
    for (const HWND target : {canvas, (HWND)NULL, testWindow(), (HWND)(intptr_t)12345}) {
        for (const double a : odd) {
            for (const double b : odd) {
                VL_DrawCanvas_Line(target, a, b, b, 10, kRed, a);
                VL_DrawCanvas_Rectangle(target, a, 3, b, 10, -1, b);
                VL_DrawCanvas_FillRoundRectangle(target, 1, 2, a, b, b);
                VL_DrawCanvas_Pie(target, a, 1, b, 20, a, b, kRed, a);
                VL_DrawCanvas_FillEllipse(target, 5, 5, a, b);
                VL_DrawCanvas_Curve(target, {a, b, b, a, 3, 4, 5}, kRed, b);
                VL_DrawCanvas_FillPolygon(target, {a, b, 3, a, b, 4, L"x", 5});
                VL_DrawCanvas_AddText(target, a, b, L"x", kRed, b);
                VL_DrawCanvas_GetPixel(target, a, b);
            }
        }
        VL_DrawCanvas_Polygon(target, {});
        VL_DrawCanvas_Polygon(target, {1, 1});
        VL_DrawCanvas_AddText(target, 1, 1, std::wstring(3000000, L'x'));
        VL_DrawCanvas_ApplyProps(target == testWindow() ? NULL : target, -1, true);
    }
    VL_DrawCanvas_Clear(canvas);
    SetWindowPos(canvas, NULL, 0, 0, 0, 0, SWP_NOZORDER);
    VL_DrawCanvas_Line(canvas, 0, 0, 5, 5);
    CHECK(!VL_DrawCanvas_Save(canvas, L"empty.png"));
    DestroyWindow(canvas);
    VL_Array many;
    for (int i = 0; i < 60000; ++i)
        many.push_back(VL_Any((i * 7919) % 50));
    const HWND other = canvasAt({10, 10, 60, 60});
    VL_DrawCanvas_FillPolygon(other, many, kRed);
    VL_DrawCanvas_Polygon(other, many, kRed, 3);
    CHECK_EQ(VL_DrawCanvas_GetPixel(other, 25, 25), kRed);
    DestroyWindow(other);
}

void testNothingLeft()
{
    const auto round = [] {
        const HWND canvas = canvasAt({10, 10, 110, 110});
        VL_DrawCanvas_AddText(canvas, 5, 5, L"Text");
        VL_DrawCanvas_AddText(canvas, 5, 5, L"Text", kRed, 20, L"Arial", true);
        VL_DrawCanvas_Ellipse(canvas, 5, 5, 40, 40);
        UpdateWindow(canvas);
        VL_DrawCanvas_Clear(canvas, kRed);
        VL_DrawCanvas_TextWidth(canvas, L"x");
        DestroyWindow(canvas);
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
    VL_RegisterDrawCanvasClass(g_hInstance);
    testWhereShapesLie();
    testSmoothness();
    testWhatIsKept();
    testRepainting();
    testText();
    testPicturesAndSaving();
    testOddArguments();
    testNothingLeft();
}
