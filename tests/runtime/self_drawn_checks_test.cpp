// Check boxes, radio buttons and group boxes of self-drawn windows.
#include "98_self_drawn_checks.h"
#include "self_drawn_test.h"

namespace {

// The state that a control had while it told its click.
int g_stateAtClick = -1;

LRESULT CALLBACK watchClicks(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR)
{
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED)
        g_stateAtClick = (int)SendMessageW((HWND)lParam, BM_GETCHECK, 0, 0);
    return DefSubclassProc(window, message, wParam, lParam);
}

HWND checkControl(int kind, int id, RECT place, const std::wstring &group = L"",
                  const wchar_t *text = L"")
{
    darkWindow();
    const HWND control = testControl(L"BUTTON", text, BS_OWNERDRAW | WS_TABSTOP, id, place);
    SetPropW(control, L"VL_VlwinOdKind", (HANDLE)(intptr_t)kind);
    if (!group.empty())
        VL_SetTextProperty(control, L"VL_VlwinRadioGroup", group);
    VL_VlwinAttachOdSubclass(control);
    VL_Win32StripCheckRadioTheme(control);
    return control;
}

int stateOf(HWND control)
{
    return (int)SendMessageW(control, BM_GETCHECK, 0, 0);
}

void press(HWND control, WPARAM key)
{
    SendMessageW(control, WM_KEYDOWN, key, 1);
    SendMessageW(control, WM_KEYUP, key, (LPARAM)0xC0000001);
}

void testToggling()
{
    const struct
    {
        int kind;
        int after[4];
    } rows[] = {
        {VL_VLWIN_OD_CHECKBOX, {1, 0, 1, 0}},
        {VL_VLWIN_OD_3STATE, {1, 2, 0, 1}},
        {VL_VLWIN_OD_RADIO, {1, 1, 1, 1}},
    };
    SetWindowSubclass(darkWindow(), watchClicks, 3, 0);
    for (const auto &row : rows) {
        const HWND control = checkControl(row.kind, 31, RECT{20, 60, 140, 82});
        takeTold();
        clickAt(control, 5, 5);
        CHECK_EQ(stateOf(control), row.after[0]);
        press(control, VK_SPACE);
        CHECK_EQ(stateOf(control), row.after[1]);
        CHECK_EQ(g_stateAtClick, row.after[1]);
        SendMessageW(control, BM_CLICK, 0, 0);
        CHECK_EQ(stateOf(control), row.after[2]);
        // The second click of a double click counts as any other.
        SendMessageW(control, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
        SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
        CHECK_EQ(stateOf(control), row.after[3]);
        CHECK_EQ(countOf(takeTold(), 31, BN_CLICKED), 4);
        // Let go outside, it was no click; other keys are none either.
        SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(5, 300));
        press(control, 'A');
        CHECK_EQ(stateOf(control), row.after[3]);
        CHECK_EQ(countOf(takeTold(), 31, BN_CLICKED), 0);
        DestroyWindow(control);
    }
    RemoveWindowSubclass(darkWindow(), watchClicks, 3);
}

void testStatesByCode()
{
    const struct
    {
        int kind;
        int wanted;
        int state;
    } rows[] = {
        {VL_VLWIN_OD_CHECKBOX, 1, 1}, {VL_VLWIN_OD_CHECKBOX, 2, 1}, {VL_VLWIN_OD_CHECKBOX, -3, 0},
        {VL_VLWIN_OD_3STATE, 2, 2},   {VL_VLWIN_OD_3STATE, 99, 2},  {VL_VLWIN_OD_RADIO, 2, 1},
    };
    for (const auto &row : rows) {
        const HWND control = checkControl(row.kind, 31, RECT{20, 60, 140, 82});
        takeTold();
        SendMessageW(control, BM_SETCHECK, (WPARAM)row.wanted, 0);
        CHECK_EQ(stateOf(control), row.state);
        VL_VlwinOdWriteCheckState(control, 0);
        CHECK_EQ(stateOf(control), 0);
        CHECK(takeTold().empty());
        DestroyWindow(control);
    }
}

void testRadioGroups()
{
    std::vector<HWND> radios;
    const wchar_t *const groups[] = {L"a", L"a", L"b", L"", L"", L"a"};
    for (int i = 0; i < 6; ++i)
        radios.push_back(checkControl(VL_VLWIN_OD_RADIO, 40 + i,
                                      RECT{20, 60 + 24 * i, 140, 82 + 24 * i}, groups[i]));
    const HWND check = checkControl(VL_VLWIN_OD_CHECKBOX, 50, RECT{200, 60, 300, 82});
    VL_VlwinOdWriteCheckState(check, 1);
    const auto states = [&radios] {
        std::string text;
        for (const HWND radio : radios)
            text += (char)('0' + stateOf(radio));
        return text;
    };
    for (const int i : {0, 2, 3})
        SendMessageW(radios[(size_t)i], BM_SETCHECK, 1, 0);
    CHECK_EQ(states(), std::string("101100"));
    clickAt(radios[5], 5, 5);
    CHECK_EQ(states(), std::string("001101"));
    clickAt(radios[4], 5, 5);
    CHECK_EQ(states(), std::string("001011"));
    CHECK_EQ(stateOf(check), 1);

    // Arrow keys go on within the group, round its end, past what is disabled, and tell a click.
    EnableWindow(radios[1], FALSE);
    takeTold();
    press(radios[5], VK_DOWN);
    CHECK_EQ(states(), std::string("101010"));
    CHECK_EQ(countOf(takeTold(), 40, BN_CLICKED), 1);
    press(radios[0], VK_DOWN);
    CHECK_EQ(states(), std::string("001011"));
    press(radios[0], VK_UP);
    CHECK_EQ(states(), std::string("001011"));
    press(radios[2], VK_LEFT); // alone in its group
    CHECK_EQ(states(), std::string("001011"));
    for (const HWND radio : radios)
        DestroyWindow(radio);
    DestroyWindow(check);
}

void testPicture()
{
    const HWND control = checkControl(VL_VLWIN_OD_CHECKBOX, 31, RECT{20, 60, 140, 82});
    CHECK_EQ(windowPixel(control, 60, 11), (COLORREF)kClientColor);
    CHECK(windowPixel(control, 2, 7) != VL_VLWIN_ACCENT);
    VL_VlwinOdWriteCheckState(control, 1);
    CHECK_EQ(windowPixel(control, 2, 7), VL_VLWIN_ACCENT);
    SetPropW(control, L"VL_VlwinCheckRight", (HANDLE)1);
    InvalidateRect(control, NULL, FALSE);
    CHECK_EQ(windowPixel(control, 2, 7), (COLORREF)kClientColor);
    CHECK_EQ(windowPixel(control, 108, 7), VL_VLWIN_ACCENT);
    EnableWindow(control, FALSE);
    CHECK(windowPixel(control, 108, 7) != VL_VLWIN_ACCENT);
    VL_SetBgColor(control, RGB(90, 0, 0));
    CHECK_EQ(windowPixel(control, 60, 11), (COLORREF)RGB(90, 0, 0));
    SetWindowTextW(control, L"WWWW");
    VL_SetTextColor(control, RGB(0, 255, 0));
    CHECK(pixelsUnlike(control, RECT{4, 2, 60, 20}, RGB(90, 0, 0)) > 20);
    SetWindowTextW(control, std::wstring(3000000, L'x').c_str());
    windowPixel(control, 1, 1);
    DestroyWindow(control);
    VL_VlwinDrawOwnerDrawCheckOrRadio(nullptr);
    VL_VlwinOdWriteCheckState(NULL, 1);
    VL_VlwinAttachOdSubclass(NULL);
    VL_VlwinPrepareGroupBox(NULL);
}

void testGroupBox()
{
    const auto box = [](RECT place, DWORD style) {
        const HWND group = testControl(L"BUTTON", L"Title", style | WS_CLIPSIBLINGS, 60, place);
        VL_VlwinPrepareGroupBox(group);
        return group;
    };
    const HWND outer = box(RECT{20, 60, 320, 260}, BS_GROUPBOX);
    const HWND inner = box(RECT{40, 90, 240, 200}, BS_GROUPBOX | BS_OWNERDRAW);
    VL_SetBgColor(inner, RGB(0, 60, 0));
    const HWND check = checkControl(VL_VLWIN_OD_CHECKBOX, 31, RECT{60, 120, 180, 142});
    VL_VlwinOdWriteCheckState(check, 1);
    pumpMessages();
    CHECK_EQ(windowPixel(outer, 299, 100), (COLORREF)RGB(80, 80, 80));
    CHECK_EQ(windowPixel(outer, 280, 180), (COLORREF)kClientColor);
    CHECK(pixelsUnlike(outer, RECT{14, 0, 60, 20}, kClientColor) > 10);
    // What stands inside shows, whatever was made first.
    CHECK_EQ(windowPixel(inner, 100, 90), (COLORREF)RGB(0, 60, 0));
    CHECK_EQ(windowPixel(check, 2, 7), VL_VLWIN_ACCENT);
    CHECK_EQ(pixelAt(check, 2, 7), VL_VLWIN_ACCENT);
    CHECK(GetWindow(outer, GW_HWNDLAST) == outer);
    SetPropW(outer, L"VL_VlwinBorderColor", (HANDLE)(intptr_t)(RGB(200, 10, 10) + 1));
    InvalidateRect(outer, NULL, FALSE);
    CHECK_EQ(windowPixel(outer, 299, 100), (COLORREF)RGB(200, 10, 10));
    // It takes no focus and no mouse.
    CHECK((SendMessageW(inner, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) != 0);
    CHECK(!(GetWindowLongW(inner, GWL_STYLE) & WS_TABSTOP));
    for (const HWND one : {outer, inner, check})
        DestroyWindow(one);
}

void testLeaks()
{
    int before = 0;
    for (int round = 0; round < 105; ++round) {
        if (round == 5)
            before = gdiMark();
        const HWND group =
            testControl(L"BUTTON", L"Title", BS_GROUPBOX, 60, RECT{20, 60, 200, 120});
        VL_VlwinPrepareGroupBox(group);
        const HWND check =
            checkControl(VL_VLWIN_OD_3STATE, 31, RECT{220, 60, 320, 82}, L"", L"abc");
        VL_VlwinOdWriteCheckState(check, round % 3);
        VL_SetBgColor(check, RGB(1, round, 3));
        windowPixel(check, 1, 1);
        DestroyWindow(check);
        DestroyWindow(group);
    }
    CHECK(gdiMark() < before + 40);
}

} // namespace

void runTests()
{
    testToggling();
    testStatesByCode();
    testRadioGroups();
    testPicture();
    testGroupBox();
    testLeaks();
}
