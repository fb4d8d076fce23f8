// Labels: text, placing, grounds, borders, effects, what shows through.
#include "01_images.h"
#include "35_control_text.h"
#include "86_label.h"
#include "87_picture_box.h"
#include "gdi_count.h"
#include "window_test.h"

#include <algorithm>

namespace {

const wchar_t kLeft[] = L"\u5DE6\u5BF9\u9F50";
const wchar_t kRight[] = L"\u53F3\u5BF9\u9F50";
const wchar_t kMiddle[] = L"\u5C45\u4E2D";
const wchar_t kSolid[] = L"borderStyle=\u5355\u7EBF;";

HWND label(const wchar_t *text, RECT place, const std::wstring &options = std::wstring())
{
    const HWND made = testControl(g_ownerDrawLabelClassName, text, WS_CLIPSIBLINGS, 5, place);
    VL_SetControlFont(made, L"Microsoft YaHei UI", 12, false, false, false, false);
    VL_SetBgColor(made, RGB(255, 255, 255));
    VL_Label_SetOptions(made, options.c_str());
    return made;
}

// What the window shows, after painting.
void takeShot(HWND window, VL_Surface &shot)
{
    RECT area = {};
    GetClientRect(window, &area);
    UpdateWindow(window);
    pumpMessages();
    const HDC context = GetDC(window);
    if (shot.create(area.right, area.bottom))
        BitBlt(shot.dc(), 0, 0, area.right, area.bottom, context, 0, 0, SRCCOPY);
    ReleaseDC(window, context);
    GdiFlush();
}

// The part of the label that is not white, in its client coordinates.
RECT inkOf(HWND window)
{
    VL_Surface shot;
    takeShot(window, shot);
    RECT ink = {10000, 10000, -1, -1};
    for (LONG y = 0; y < shot.height(); ++y) {
        for (LONG x = 0; x < shot.width(); ++x) {
            if ((shot.row(y)[x] & 0xFFFFFF) != 0xFFFFFF)
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x),
                       std::max(ink.bottom, y)};
        }
    }
    return ink;
}

// How many pixels have exactly that colour.
int countColor(HWND window, COLORREF color)
{
    VL_Surface shot;
    takeShot(window, shot);
    int count = 0;
    for (int y = 0; y < shot.height(); ++y)
        count += (int)std::count_if(shot.row(y), shot.row(y) + shot.width(), [&](VL_Argb pixel) {
            return (pixel & 0xFFFFFF) == (VL_ArgbOf((int)color) & 0xFFFFFF);
        });
    return count;
}

void testText()
{
    const HWND made = label(L"first", {10, 10, 200, 40});
    CHECK_EQ(VL_GetText(made), std::wstring(L"first"));
    for (const std::wstring &text :
         {std::wstring(), std::wstring(L"a & b;=\\"), std::wstring(L"\u4E2D\n\u6587"),
          std::wstring(5000000, L'x')}) {
        SetWindowTextW(made, text.c_str());
        CHECK(VL_GetText(made) == text);
        UpdateWindow(made);
    }
    wchar_t small[4];
    CHECK_EQ(GetWindowTextW(made, small, 4), 3);
    CHECK_EQ(small, std::wstring(L"xxx"));
    // A mnemonic would be drawn as an underline instead of the sign.
    SetWindowTextW(made, L"&&&&");
    const RECT signs = inkOf(made);
    CHECK(signs.right - signs.left > 30);
    DestroyWindow(made);
}

void testPlacing()
{
    const struct
    {
        const wchar_t *horizontal;
        const wchar_t *vertical;
        int x; // where the ink's middle lies: -1 first half, 0 middle, 1 second half
        int y;
    } rows[] = {{kLeft, L"\u4E0A", -1, -1},
                {kMiddle, kMiddle, 0, 0},
                {kRight, L"\u4E0B", 1, 1},
                {kRight, L"\u4E0A", 1, -1}};
    const HWND made = label(L"Text", {10, 10, 210, 110});
    const auto side = [](int middle, int half) {
        return middle < half - 8 ? -1 : middle > half + 8 ? 1 : 0;
    };
    for (const auto &row : rows) {
        VL_Label_SetOptions(made, (std::wstring(L"padding=10;textAlign=") + row.horizontal +
                                   L";verticalAlign=" + row.vertical)
                                      .c_str());
        const RECT ink = inkOf(made);
        CHECK_EQ(side((ink.left + ink.right) / 2, 100), row.x);
        CHECK_EQ(side((ink.top + ink.bottom) / 2, 50), row.y);
        CHECK(ink.left >= 9 && ink.right <= 190 && ink.top >= 9 && ink.bottom <= 90);
    }
    // The same by the message that controls are offered.
    CHECK(VL_OfferOption(made, L"textAlign", std::wstring(), VL_ALIGN_LEFT));
    CHECK(inkOf(made).left < 30);
    CHECK(!VL_OfferOption(made, L"noSuchOption", std::wstring(), 1));
    DestroyWindow(made);
}

// The lines of a text for that many ideographs of room, joined by '|'.
std::wstring brokenLines(const std::wstring &text, int ideographs)
{
    const HDC context = CreateCompatibleDC(NULL);
    SIZE one = {};
    GetTextExtentPoint32W(context, L"\u4E2D", 1, &one);
    const std::wstring drawable = VL_DrawableText(text);
    std::wstring result;
    for (const VL_DrawnLine &line :
         VL_BreakText(context, drawable, ideographs * one.cx, true, 100).lines)
        result += drawable.substr(line.start, line.length) + L"|";
    DeleteDC(context);
    return result;
}

void testBreakingLines()
{
    const struct
    {
        const wchar_t *text;
        int room;
        const wchar_t *lines;
    } rows[] = {
        {L"", 4, L"|"},
        {L"\u4E00\u4E8C\u4E09\u56DB\u4E94\u516D", 4, L"\u4E00\u4E8C\u4E09\u56DB|\u4E94\u516D|"},
        // No line begins with a comma or ends with an opening bracket.
        {L"\u4E00\u4E8C\u4E09\u56DB\uFF0C\u4E94", 4, L"\u4E00\u4E8C\u4E09|\u56DB\uFF0C\u4E94|"},
        {L"\u4E00\u4E8C\u4E09\uFF08\u56DB\u4E94", 4, L"\u4E00\u4E8C\u4E09|\uFF08\u56DB\u4E94|"},
        {L"a b\r\nc\rd\n\te", 90, L"a b|c|d|    e|"},
        {L"\u4E00\u4E8C   \u4E09", 2, L"\u4E00\u4E8C|\u4E09|"},
        {L"\u4E00\u4E8C\u4E09", 0, L"\u4E00|\u4E8C|\u4E09|"},
        {L"\U00020000\U00020001", 0, L"\U00020000|\U00020001|"},
        {L"one two three", 3, L"one|two|three|"},
    };
    for (const auto &row : rows)
        CHECK_EQ(brokenLines(row.text, row.room), std::wstring(row.lines));
}

void testWrappingAndShortening()
{
    const std::wstring text = L"\u4E00\u4E8C\u4E09\u56DB\u4E94\u516D\u4E03\u516B\u4E5D\u5341 abc "
                              L"def \u4E00\u4E8C\u4E09\u56DB\u4E94\u516D\u4E03\u516B\u4E5D";
    const HWND made = label(text.c_str(), {10, 10, 130, 110}, L"verticalAlign=\u4E0A");
    const int oneLine = inkOf(made).bottom;
    VL_SetWordWrap(made, true);
    CHECK(inkOf(made).bottom > 3 * oneLine);
    VL_SetWordWrap(made, false);
    VL_Label_SetOptions(made, L"ellipsis=true;textAlign=\u5DE6\u5BF9\u9F50");
    CHECK(inkOf(made).bottom <= oneLine);
    CHECK(inkOf(made).right < 120);
    DestroyWindow(made);
}

void testAutoSize()
{
    const HWND made = label(L"Text", {10, 10, 300, 110}, L"autoSize=true");
    const auto sizeOf = [&] {
        RECT area = {};
        GetClientRect(made, &area);
        return area;
    };
    const RECT small = sizeOf();
    CHECK(small.right < 100 && small.bottom < 40);
    SetWindowTextW(made, L"Text Text\nText");
    CHECK(sizeOf().right > small.right + 20);
    CHECK_EQ(sizeOf().bottom, small.bottom * 2);
    SetWindowTextW(made, L"Text");
    CHECK(EqualRect(&small, std::make_unique<RECT>(sizeOf()).get()) != 0);
    VL_SetFontSize(made, 24);
    CHECK(sizeOf().bottom > small.bottom * 3 / 2);
    VL_Label_SetOptions(made, (std::wstring(kSolid) + L"padding=5").c_str());
    CHECK(sizeOf().right > small.right + 12);
    DestroyWindow(made);
}

void testGroundsAndBorders()
{
    const COLORREF white = RGB(255, 255, 255), red = RGB(255, 0, 0), behind = RGB(240, 240, 240);
    const struct
    {
        const wchar_t *options;
        COLORREF corner; // at 0, 0
        COLORREF top;    // in the middle of the upper edge
        COLORREF right;  // in the middle of the right edge
        COLORREF inside; // near the right edge
    } rows[] = {
        {L"", white, white, white, white},
        {L"borderStyle=\u5355\u7EBF;borderColor=#FF0000", red, red, red, white},
        {L"borderStyle=\u5355\u7EBF;borderColor=#FFFF0000;borderSides=\u4E0A\u4E0B", red, red,
         white, white},
        {L"borderStyle=\u5355\u7EBF;borderColor=#FF0000;borderSides=\u53F3", white, white, red,
         white},
        {L"borderStyle=\u5355\u7EBF;borderColor=#FF0000;borderWidth=6", red, red, red, red},
        {L"borderStyle=\u5355\u7EBF;borderColor=#FF0000;borderRadius=15", behind, red, red, white},
        {L"borderStyle=3D\u51F9\u9677", RGB(160, 160, 160), RGB(160, 160, 160), white, white},
        {L"borderRadius=15", behind, white, white, white},
        // Words and numbers that nobody knows leave things as they are.
        {L"borderStyle=?;borderColor=red;gradientPreset=x;padding=;=;;a\\", white, white, white,
         white},
    };
    for (const auto &row : rows) {
        const HWND made = label(L"", {10, 10, 110, 50}, row.options);
        CHECK_EQ(pixelAt(made, 0, 0), row.corner);
        CHECK_EQ(pixelAt(made, 50, 0), row.top);
        CHECK_EQ(pixelAt(made, 99, 20), row.right);
        CHECK_EQ(pixelAt(made, 95, 20), row.inside);
        DestroyWindow(made);
        pumpMessages();
    }
}

void testGradients()
{
    const struct
    {
        const wchar_t *options;
        COLORREF first;
        COLORREF last;
        bool vertical;
    } rows[] = {
        {L"backColor2=#FF0000", RGB(0, 255, 0), RGB(255, 0, 0), false},
        {L"backColor2=#FF0000;gradientDirection=\u5782\u76F4", RGB(0, 255, 0), RGB(255, 0, 0),
         true},
        // A preset wins over the colour, although that is set later.
        {L"gradientPreset=\u7EA2\u6A59\u6E10\u53D8\uFF08\u6C34\u5E73\uFF09", RGB(255, 69, 0),
         RGB(255, 165, 0), false},
        {L"gradientPreset=\u84DD\u767D\u6E10\u53D8\uFF08\u5782\u76F4\uFF09", RGB(65, 105, 225),
         RGB(255, 255, 255), true},
    };
    const auto isNear = [](COLORREF a, COLORREF b) {
        return std::abs(GetRValue(a) - GetRValue(b)) < 8 &&
               std::abs(GetGValue(a) - GetGValue(b)) < 8 &&
               std::abs(GetBValue(a) - GetBValue(b)) < 8;
    };
    for (const auto &row : rows) {
        const HWND made = label(L"", {10, 10, 110, 110}, row.options);
        VL_SetBgColor(made, RGB(0, 255, 0));
        CHECK(isNear(pixelAt(made, 0, 0), row.first));
        CHECK(isNear(pixelAt(made, row.vertical ? 99 : 0, row.vertical ? 0 : 99), row.first));
        CHECK(isNear(pixelAt(made, row.vertical ? 0 : 99, row.vertical ? 99 : 0), row.last));
        DestroyWindow(made);
        pumpMessages();
    }
}

void testEffects()
{
    const struct
    {
        const wchar_t *options;
        COLORREF color;
    } rows[] = {
        {L"textShadow=true;textShadowColor=#FF0000;textShadowOffsetX=6;textShadowOffsetY=6",
         RGB(255, 0, 0)},
        {L"textStroke=true;textStrokeColor=#00C000;textStrokeWidth=3", RGB(0, 192, 0)},
        {L"text3D=true;text3DDepth=6", RGB(150, 150, 150)},
    };
    const HWND made = label(L"MMM", {10, 10, 210, 80});
    VL_SetFontSize(made, 30);
    VL_SetTextColor(made, RGB(0, 0, 0));
    const RECT plain = inkOf(made);
    for (const auto &row : rows) {
        CHECK_EQ(countColor(made, row.color), 0);
        VL_Label_SetOptions(made, row.options);
        CHECK(countColor(made, row.color) > 50);
        const RECT ink = inkOf(made);
        CHECK(ink.right >= plain.right + 3);
        VL_Label_SetOptions(made, L"textShadow=false;textStroke=false;text3D=false");
    }
    VL_Label_SetOptions(made, L"textGlow=true;textGlowColor=#00FF00;textGlowSize=8");
    const RECT glow = inkOf(made);
    CHECK(glow.right >= plain.right + 5 && glow.bottom >= plain.bottom + 5);
    EnableWindow(made, FALSE);
    CHECK(inkOf(made).right <= plain.right + 1);
    DestroyWindow(made);
}

void testShowsWhatLiesBehind()
{
    // The topmost is made first.
    const HWND top =
        testControl(g_ownerDrawLabelClassName, L"", WS_CLIPSIBLINGS, 6, {20, 20, 120, 60});
    const HWND below = label(L"", {60, 10, 200, 100});
    VL_SetBgColor(below, RGB(0, 0, 255));
    CHECK_EQ(pixelAt(top, 10, 10), RGB(240, 240, 240));
    CHECK_EQ(pixelAt(top, 60, 10), RGB(0, 0, 255));
    SetWindowPos(top, NULL, 70, 20, 50, 50, SWP_NOZORDER);
    CHECK_EQ(pixelAt(top, 1, 1), RGB(0, 0, 255));
    DestroyWindow(below);
    // A change of what lies behind shows.
    const HWND box =
        testControl(g_pictureBoxClassName, L"", WS_CLIPSIBLINGS, 7, {60, 10, 200, 100});
    VL_SetBgColor(box, RGB(0, 128, 0));
    InvalidateRect(top, NULL, FALSE);
    CHECK_EQ(pixelAt(top, 1, 1), RGB(0, 128, 0));
    VL_SetBgColor(box, RGB(128, 0, 0));
    VL_PictureBox_SetMode(box, kMiddle);
    CHECK_EQ(pixelAt(top, 1, 1), RGB(128, 0, 0));
    // Clicks go to what is visible there.
    CHECK_EQ(SendMessageW(top, WM_NCHITTEST, 0, 0), (LRESULT)HTTRANSPARENT);
    // Many labels upon each other cost no more than their number.
    std::vector<HWND> pile;
    for (int i = 0; i < 40; ++i)
        pile.push_back(
            testControl(g_ownerDrawLabelClassName, L"x", WS_CLIPSIBLINGS, 8, {60, 10, 160, 60}));
    CHECK_EQ(pixelAt(pile[0], 99, 1), RGB(128, 0, 0));
    for (const HWND one : pile)
        DestroyWindow(one);
    DestroyWindow(top);
    DestroyWindow(box);
}

void testScaledLook()
{
    VL_LabelLook look;
    look.dpi = 192;
    look.backColor = RGB(255, 255, 255);
    look.borderStyle = VL_BORDER_SOLID;
    look.borderWidth = 3;
    look.borderColor = RGB(255, 0, 0);
    VL_ImageLayer none;
    VL_Surface surface;
    CHECK(surface.create(60, 40));
    VL_PaintLabel(surface, look, none, NULL, std::wstring());
    CHECK_EQ(GetPixel(surface.dc(), 5, 20), RGB(255, 0, 0));
    CHECK_EQ(GetPixel(surface.dc(), 6, 20), RGB(255, 255, 255));
}

void testOddWindows()
{
    VL_Label_SetOptions(NULL, L"padding=1");
    VL_Label_SetOptions(testWindow(), L"padding=1");
    const HWND made = label(L"x", {0, 0, 0, 0}, L"padding=2000;borderRadius=2000;borderWidth=2000");
    VL_Label_SetOptions(made, NULL);
    VL_Label_SetOptions(made, L"backImage=no such file.png;textShadow=true;textShadowBlur=2000");
    SetWindowPos(made, NULL, 0, 0, 300, 200, SWP_NOZORDER);
    UpdateWindow(made);
    VL_Label_SetOptions(made, L"padding=0;borderWidth=-5;textGlow=true;textGlowSize=2000");
    UpdateWindow(made);
    DestroyWindow(made);
}

void testNothingLeft()
{
    const auto round = [] {
        const HWND made = label(
            L"Text", {10, 10, 200, 60},
            L"borderStyle=\u865A\u7EBF;borderRadius=9;textShadow=true;textGlow=true;wordWrap=true");
        UpdateWindow(made);
        DestroyWindow(made);
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
    VL_RegisterOwnerDrawLabelClass();
    VL_RegisterPictureBoxClass();
    // The tests take the window's colour for granted.
    SetClassLongPtrW(testWindow(), GCLP_HBRBACKGROUND,
                     (LONG_PTR)CreateSolidBrush(RGB(240, 240, 240)));
    testText();
    testPlacing();
    testBreakingLines();
    testWrappingAndShortening();
    testAutoSize();
    testGroundsAndBorders();
    testGradients();
    testEffects();
    testShowsWhatLiesBehind();
    testScaledLook();
    testOddWindows();
    testNothingLeft();
}
