// Text boxes and combo boxes of self-drawn windows.
#include "98_self_drawn_fields.h"
#include "self_drawn_test.h"

namespace {

const UINT kSetCueBanner = 0x1501;
const UINT kGetCueBanner = 0x1502;

HWND edit(DWORD style, RECT place, const wchar_t *placeholder = L"", const wchar_t *text = L"")
{
    darkWindow();
    const HWND control = testControl(L"EDIT", text, style | WS_TABSTOP, 80, place);
    VL_VlwinPrepareEdit(control, 4, placeholder);
    return control;
}

// The client area in the control's whole rectangle.
RECT clientOf(HWND control)
{
    RECT window;
    RECT client;
    GetWindowRect(control, &window);
    GetClientRect(control, &client);
    MapWindowPoints(control, NULL, (POINT *)&client, 2);
    OffsetRect(&client, -window.left, -window.top);
    return client;
}

void testTextPlace()
{
    const HWND control = edit(ES_AUTOHSCROLL, RECT{20, 60, 220, 100});
    RECT client = clientOf(control);
    const int line = client.bottom - client.top;
    CHECK(line > 8 && line < 30);
    CHECK(abs((int)(client.top - (40 - client.bottom))) <= 1);
    CHECK(client.left >= 6 && client.right <= 194);
    const auto align = [control](int how) {
        SetPropW(control, L"VL_SLEVerticalAlign", (HANDLE)(intptr_t)how);
        SetWindowPos(control, NULL, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
        return clientOf(control);
    };
    CHECK(align(1).top <= 4);
    CHECK(align(3).bottom >= 36);
    align(2);
    // A larger font takes a higher line.
    const HFONT font =
        CreateFontW(-26, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Arial");
    SendMessageW(control, WM_SETFONT, (WPARAM)font, TRUE);
    client = clientOf(control);
    CHECK(client.bottom - client.top > line);
    for (const int height : {12, 3, 0}) {
        SetWindowPos(control, NULL, 0, 0, 30, height, SWP_NOMOVE | SWP_NOZORDER);
        windowPixel(control, 1, 1);
    }
    DestroyWindow(control);
    DeleteObject(font);

    // The whole frame takes a click for the text.
    const HWND other = edit(ES_AUTOHSCROLL, RECT{20, 60, 220, 100});
    POINT corner = {3, 3};
    RECT window;
    GetWindowRect(other, &window);
    corner = POINT{window.left + 3, window.top + 3};
    CHECK_EQ(SendMessageW(other, WM_NCHITTEST, 0, MAKELPARAM(corner.x, corner.y)),
             (LRESULT)HTCLIENT);
    DestroyWindow(other);
}

void testColors()
{
    SetForegroundWindow(darkWindow());
    const HWND control = edit(ES_AUTOHSCROLL, RECT{20, 60, 220, 100});
    const HWND other = edit(ES_AUTOHSCROLL, RECT{20, 110, 220, 150});
    SetFocus(other);
    CHECK_EQ(windowPixel(control, 100, 0), VL_VLWIN_BORDER);
    CHECK_EQ(windowPixel(control, 100, 5), VL_VLWIN_FIELD);
    CHECK_EQ(windowPixel(control, 100, 20), VL_VLWIN_FIELD);
    CHECK_EQ(windowPixel(control, 0, 0), (COLORREF)kClientColor);
    SetFocus(control);
    CHECK_EQ(windowPixel(control, 100, 0), VL_VLWIN_ACCENT);
    CHECK_EQ(windowPixel(other, 100, 0), VL_VLWIN_BORDER);
    SendMessageW(control, EM_SETREADONLY, TRUE, 0);
    CHECK_EQ(windowPixel(control, 100, 5), VL_VLWIN_FIELD_READ_ONLY);
    VL_SetBgColor(control, RGB(0, 0, 90));
    RedrawWindow(control, NULL, NULL, RDW_FRAME | RDW_INVALIDATE);
    CHECK_EQ(windowPixel(control, 100, 5), (COLORREF)RGB(0, 0, 90));
    CHECK_EQ(windowPixel(control, 100, 20), (COLORREF)RGB(0, 0, 90));
    DestroyWindow(control);
    DestroyWindow(other);
}

void testPlaceholder()
{
    const HWND other = edit(ES_AUTOHSCROLL, RECT{20, 110, 220, 150});
    const HWND control = edit(ES_AUTOHSCROLL, RECT{20, 60, 220, 100}, L"WWWW");
    const RECT text = clientOf(control);
    const auto isShown = [&] { return pixelsUnlike(control, text, VL_VLWIN_FIELD) > 20; };
    SetFocus(other);
    CHECK(isShown());
    SetFocus(control);
    HideCaret(control);
    CHECK(!isShown());
    SetFocus(other);
    SetWindowTextW(control, L" ");
    CHECK(!isShown());
    SendMessageW(control, EM_SETSEL, 0, -1);
    SendMessageW(control, EM_REPLACESEL, TRUE, (LPARAM)L"");
    CHECK(isShown());
    wchar_t told[16] = L"";
    CHECK(SendMessageW(control, kGetCueBanner, (WPARAM)told, 3) != 0);
    CHECK_EQ(std::wstring(told), std::wstring(L"WW"));
    SendMessageW(control, kSetCueBanner, FALSE, (LPARAM)L"");
    CHECK(!isShown());
    SendMessageW(control, kSetCueBanner, TRUE, (LPARAM)L"MMMM");
    SetFocus(control);
    HideCaret(control);
    CHECK(isShown());
    SendMessageW(control, WM_CHAR, L' ', 1);
    CHECK(!isShown());
    DestroyWindow(control);
    DestroyWindow(other);
}

void testMultiline()
{
    const HWND control =
        edit(ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL | WS_HSCROLL, RECT{20, 60, 220, 160});
    const RECT client = clientOf(control);
    const int bar = GetSystemMetrics(SM_CXVSCROLL);
    CHECK_EQ(client.right, (LONG)(200 - 1 - bar));
    CHECK_EQ(client.bottom, (LONG)(100 - 1 - GetSystemMetrics(SM_CYHSCROLL)));
    CHECK(client.left > 4 && client.top > 2);
    SendMessageW(control, EM_SETLIMITTEXT, 0x7FFFFFFE, 0);
    std::wstring text;
    for (int i = 0; i < 100000; ++i)
        text += L"line of a long text\r\n";
    SetWindowTextW(control, text.c_str());
    CHECK_EQ(GetWindowTextLengthW(control), (int)text.size());
    windowPixel(control, 1, 1);
    DestroyWindow(control);
}

HWND combo(DWORD style, RECT place)
{
    darkWindow();
    const HWND control = testControl(L"COMBOBOX", L"", style | WS_VSCROLL, 81, place);
    for (const wchar_t *item : {L"WWWW", L"x", L"third"})
        SendMessageW(control, CB_ADDSTRING, 0, (LPARAM)item);
    VL_VlwinApplyComboNoTheme(control);
    return control;
}

void testCombo()
{
    const HWND control = combo(CBS_DROPDOWNLIST, RECT{20, 60, 220, 260});
    RECT place;
    GetClientRect(control, &place);
    RECT text = {8, 4, 100, place.bottom - 4};
    CHECK_EQ(pixelsUnlike(control, text, VL_VLWIN_FIELD), 0);
    SendMessageW(control, CB_SETCURSEL, 0, 0);
    CHECK(pixelsUnlike(control, text, VL_VLWIN_FIELD) > 20);
    SendMessageW(control, CB_SETCURSEL, (WPARAM)-1, 0);
    CHECK_EQ(pixelsUnlike(control, text, VL_VLWIN_FIELD), 0);
    CHECK_EQ(windowPixel(control, 100, 0), VL_VLWIN_BORDER);
    // The arrow shows.
    CHECK(pixelsUnlike(control, RECT{176, 4, 198, place.bottom - 4}, VL_VLWIN_FIELD) > 4);

    // The list takes the same colours, set ones too.
    const HDC dc = GetDC(control);
    const HBRUSH brush = (HBRUSH)SendMessageW(control, WM_CTLCOLORLISTBOX, (WPARAM)dc, 0);
    CHECK(brush != NULL);
    CHECK_EQ(GetBkColor(dc), VL_VLWIN_FIELD);
    CHECK_EQ(GetTextColor(dc), VL_VLWIN_TEXT);
    VL_SetBgColor(control, RGB(70, 0, 70));
    VL_SetTextColor(control, RGB(255, 255, 0));
    SendMessageW(control, WM_CTLCOLORLISTBOX, (WPARAM)dc, 0);
    CHECK_EQ(GetBkColor(dc), (COLORREF)RGB(70, 0, 70));
    CHECK_EQ(GetTextColor(dc), (COLORREF)RGB(255, 255, 0));
    ReleaseDC(control, dc);
    CHECK_EQ(windowPixel(control, 120, 10), (COLORREF)RGB(70, 0, 70));
    DestroyWindow(control);

    const HWND editable = combo(CBS_DROPDOWN, RECT{20, 60, 220, 260});
    SetWindowTextW(editable, L"typed");
    CHECK_EQ(VL_VlwinWindowText(editable), std::wstring(L"typed"));
    CHECK_EQ(windowPixel(editable, 140, 10), VL_VLWIN_FIELD);
    DestroyWindow(editable);
}

void testOddArgumentsAndLeaks()
{
    VL_VlwinPrepareEdit(NULL, 1, L"x");
    VL_VlwinApplyComboNoTheme(NULL);
    int before = 0;
    for (int round = 0; round < 105; ++round) {
        if (round == 5)
            before = gdiMark();
        const HWND field = edit(round % 2 ? ES_MULTILINE : 0, RECT{20, 60, 220, 100}, L"hint");
        VL_VlwinPrepareEdit(field, -5, L"again", true);
        const HWND box = combo(round % 2 ? CBS_DROPDOWN : CBS_SIMPLE, RECT{20, 110, 220, 260});
        windowPixel(field, 1, 1);
        windowPixel(box, 1, 1);
        DestroyWindow(field);
        DestroyWindow(box);
    }
    CHECK(gdiMark() < before + 40);
}

} // namespace

void runTests()
{
    testTextPlace();
    testColors();
    testPlaceholder();
    testMultiline();
    testCombo();
    testOddArgumentsAndLeaks();
}
