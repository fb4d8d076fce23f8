// Progress bars and sliders: values, ranges, events, what is painted.
#include "85_value_controls.h"
#include "gdi_count.h"

namespace {

HWND makeBar(DWORD style)
{
    return testControl(PROGRESS_CLASSW, L"", style, 1001, {10, 10, 210, 40});
}

HWND makeSlider(DWORD style)
{
    const bool upright = (style & TBS_VERT) != 0;
    const RECT place = {10, 60, upright ? 50 : 260, upright ? 260 : 100};
    return testControl(TRACKBAR_CLASSW, L"", style, 1002, place);
}

void testValues()
{
    for (const HWND control : {makeBar(0), makeSlider(0)}) {
        VL_SetRange(control, 300, -100);
        CHECK_EQ(VL_GetMinValue(control), -100);
        CHECK_EQ(VL_GetMax(control), 300);
        const struct
        {
            int value;
            int expected;
            int percent;
        } rows[] = {{0, 0, 25},      {300, 300, 100},        {301, 300, 100},
                    {-100, -100, 0}, {-2147483647, -100, 0}, {100, 100, 50}};
        for (const auto &row : rows) {
            VL_SetValue(control, row.value);
            CHECK_EQ(VL_GetValue(control), row.expected);
            CHECK_EQ(VL_GetPercent(control), row.percent);
        }
        // The range can be moved end by end, in either order.
        VL_SetMinValue(control, 500);
        VL_SetMaxValue(control, 700);
        CHECK_EQ(VL_GetMin(control), 500);
        CHECK_EQ(VL_GetMaxValue(control), 700);
        CHECK_EQ(VL_GetValue(control), 500);
        VL_SetMaxValue(control, 40);
        VL_SetMinValue(control, 0);
        CHECK_EQ(VL_GetMaxValue(control), 40);
        CHECK_EQ(VL_GetValue(control), 40);
        VL_SetRange(control, 5, 5);
        CHECK_EQ(VL_GetPercent(control), 0);
        VL_SetStep(control, 7);
        CHECK_EQ(VL_GetStep(control), 7);
        DestroyWindow(control);
        CHECK_EQ(VL_GetValue(control), 0);
    }
    for (const HWND odd : {(HWND)NULL, testWindow()}) {
        VL_SetValue(odd, 5);
        VL_SetStep(odd, 5);
        VL_PrepareSlider(odd, true, true);
        VL_ProgressBar_SetText(odd, true);
        CHECK_EQ(VL_GetPercent(odd), 0);
        CHECK_EQ(VL_ProgressBar_GetState(odd), 0);
    }
}

void testEvents()
{
    const HWND bar = makeBar(0);
    VL_PrepareProgressBar(bar);
    takeTold();
    VL_SetValue(bar, 30);
    VL_SetValue(bar, 30);
    SendMessageW(bar, PBM_STEPIT, 0, 0);
    CHECK_EQ(countOf(takeTold(), 1001, VL_EVENT_VALUE_CHANGED), 2);
    DestroyWindow(bar);
    for (const DWORD style : {(DWORD)TBS_HORZ, (DWORD)TBS_VERT}) {
        const HWND slider = makeSlider(style);
        VL_SetValue(slider, 30);
        VL_SetValue(slider, 30);
        VL_SetRange(slider, 40, 90);
        int told = 0;
        for (const Told &one : takeTold())
            told += one.message == (style == TBS_VERT ? WM_VSCROLL : WM_HSCROLL) ? 1 : 0;
        CHECK_EQ(told, 2);
        DestroyWindow(slider);
    }
}

void testStates()
{
    const HWND bar = makeBar(PBS_SMOOTH);
    VL_ProgressBar_SetState(bar, VL_Any(L"\u9519\u8BEF"));
    CHECK_EQ(VL_ProgressBar_GetState(bar), 1);
    VL_ProgressBar_SetState(bar, VL_Any(2));
    CHECK_EQ(VL_ProgressBar_GetState(bar), 2);
    VL_ProgressBar_SetState(bar, VL_Any(9));
    CHECK_EQ(VL_ProgressBar_GetState(bar), 0);
    VL_SetValue(bar, 50);
    VL_ProgressBar_SetBarColor(bar, RGB(10, 20, 200));
    VL_ProgressBar_SetBkColor(bar, RGB(250, 250, 200));
    CHECK_EQ((int)pixelAt(bar, 50, 15), (int)RGB(10, 20, 200));
    CHECK_EQ((int)pixelAt(bar, 150, 15), (int)RGB(250, 250, 200));
    VL_ProgressBar_SetError(bar);
    const COLORREF error = pixelAt(bar, 50, 15);
    CHECK(GetRValue(error) > 150 && GetBValue(error) < 100);
    VL_ProgressBar_SetNormal(bar);
    VL_SetBgColor(bar, RGB(1, 2, 3));
    CHECK_EQ((int)pixelAt(bar, 150, 15), (int)RGB(1, 2, 3));
    DestroyWindow(bar);

    const HWND upright =
        testControl(PROGRESS_CLASSW, L"", PBS_VERTICAL | PBS_SMOOTH, 1001, {10, 10, 40, 210});
    VL_ProgressBar_SetBarColor(upright, RGB(10, 20, 200));
    VL_SetValue(upright, 25);
    CHECK_EQ((int)pixelAt(upright, 15, 190), (int)RGB(10, 20, 200));
    CHECK(pixelAt(upright, 15, 100) != RGB(10, 20, 200));
    DestroyWindow(upright);

    // Blocks leave gaps, one piece does not.
    const HWND blocks = makeBar(0);
    VL_ProgressBar_SetBarColor(blocks, RGB(10, 20, 200));
    VL_SetValue(blocks, 100);
    int gaps = 0;
    for (int x = 2; x < 190; ++x)
        gaps += pixelAt(blocks, x, 15) == RGB(230, 230, 230) ? 1 : 0;
    CHECK(gaps > 10);
    DestroyWindow(blocks);
}

// Pixels of the bar that are neither its colour nor its ground belong to the text.
int inkIn(HWND bar, int left, int right, COLORREF ground)
{
    UpdateWindow(bar);
    pumpMessages();
    const HDC context = GetDC(bar);
    int ink = 0;
    for (int x = left; x < right; ++x) {
        for (int y = 3; y < 27; ++y)
            ink += GetPixel(context, x, y) != ground ? 1 : 0;
    }
    ReleaseDC(bar, context);
    return ink;
}

void testText()
{
    const HWND bar = makeBar(PBS_SMOOTH);
    VL_ProgressBar_SetBkColor(bar, RGB(0, 0, 0));
    CHECK_EQ(inkIn(bar, 60, 140, RGB(0, 0, 0)), 0);
    const wchar_t *const formats[] = {L"%p%", L"%v / %m", L"%", L"%%%q", L""};
    for (const wchar_t *format : formats) {
        VL_ProgressBar_SetText(bar, true, format);
        CHECK(inkIn(bar, 60, 140, RGB(0, 0, 0)) > 0);
    }
    VL_ProgressBar_SetText(bar, true, std::wstring(100000, L'%'));
    VL_ProgressBar_SetText(bar, false);
    CHECK_EQ(inkIn(bar, 60, 140, RGB(0, 0, 0)), 0);
    DestroyWindow(bar);
}

void testMarquee()
{
    const HWND bar = makeBar(PBS_SMOOTH);
    VL_ProgressBar_SetBarColor(bar, RGB(10, 20, 200));
    VL_ProgressBar_SetMarquee(bar, true, 10);
    CHECK((GetWindowLongW(bar, GWL_STYLE) & PBS_MARQUEE) != 0);
    bool moved = false;
    const COLORREF first = pixelAt(bar, 60, 15);
    for (int i = 0; i < 300 && !moved; ++i) {
        Sleep(10);
        pumpMessages();
        moved = pixelAt(bar, 60, 15) != first;
    }
    CHECK(moved);
    VL_ProgressBar_SetMarquee(bar, false, 0);
    VL_SetValue(bar, 100);
    CHECK_EQ((int)pixelAt(bar, 150, 15), (int)RGB(10, 20, 200));
    DestroyWindow(bar);
}

void testSliders()
{
    const HWND slider = makeSlider(TBS_ENABLESELRANGE);
    VL_SetValue(slider, 20);
    VL_PrepareSlider(slider, true, true);
    CHECK_EQ(VL_GetValue(slider), 20);
    RECT thumb = {};
    SendMessageW(slider, TBM_GETTHUMBRECT, 0, (LPARAM)&thumb);
    RECT client = {};
    GetClientRect(slider, &client);
    // A small value is at the right.
    CHECK(thumb.left > client.right / 2);
    // The value has room beside the slider.
    CHECK(client.right < 240);
    VL_SetRange(slider, 0, 1000000);
    CHECK_EQ(VL_GetValue(slider), 20);
    RECT wider = {};
    GetClientRect(slider, &wider);
    CHECK(wider.right < client.right);
    SetFocus(slider);
    VL_SetRange(slider, 0, 100);
    SendMessageW(slider, WM_KEYDOWN, VK_RIGHT, 0);
    CHECK_EQ(VL_GetValue(slider), 19);
    SendMessageW(slider, TBM_SETSELSTART, FALSE, 10);
    SendMessageW(slider, TBM_SETSELEND, TRUE, 30);
    CHECK_EQ((int)SendMessageW(slider, TBM_GETSELSTART, 0, 0), 10);
    CHECK_EQ((int)SendMessageW(slider, TBM_GETSELEND, 0, 0), 30);
    VL_PrepareSlider(slider, false, false);
    CHECK_EQ(VL_GetValue(slider), 19);
    DestroyWindow(slider);

    int before = 0;
    for (int i = 0; i < 101; ++i) {
        // The first round fills what is kept for all.
        if (i == 1)
            before = gdiObjects();
        const HWND one = makeSlider(TBS_TOOLTIPS);
        const HWND bar = makeBar(0);
        VL_PrepareSlider(one, true, false);
        VL_ProgressBar_SetText(bar, true);
        UpdateWindow(one);
        UpdateWindow(bar);
        DestroyWindow(one);
        DestroyWindow(bar);
    }
    CHECK(gdiObjects() <= before + 50);
}

} // namespace

void runTests()
{
    testValues();
    testEvents();
    testStates();
    testText();
    testMarquee();
    testSliders();
}
