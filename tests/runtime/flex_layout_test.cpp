// Layouts of windows: of all controls, of a design's boxes, on resizing, hiding and destroying.
#include "99_flex_settings.h"
#include "window_test.h"

namespace {

// A window of its own for each case, of that client size.
HWND makeWindow(int width, int height)
{
    testWindow();
    RECT size = {0, 0, width, height};
    AdjustWindowRectEx(&size, WS_OVERLAPPEDWINDOW, FALSE, 0);
    const HWND window =
        CreateWindowW(L"VLWnd", L"", WS_OVERLAPPEDWINDOW, 50, 50, size.right - size.left,
                      size.bottom - size.top, NULL, NULL, g_hInstance, NULL);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    return window;
}

void resize(HWND window, int width, int height)
{
    RECT size = {0, 0, width, height};
    AdjustWindowRectEx(&size, WS_OVERLAPPEDWINDOW, FALSE, 0);
    SetWindowPos(window, NULL, 0, 0, size.right - size.left, size.bottom - size.top,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND add(HWND window, int x, int y, int width, int height, const wchar_t *windowClass = L"BUTTON",
         DWORD style = 0)
{
    return CreateWindowW(windowClass, L"", WS_CHILD | WS_VISIBLE | style, x, y, width, height,
                         window, NULL, g_hInstance, NULL);
}

std::wstring placeOf(HWND control)
{
    RECT place = {};
    GetWindowRect(control, &place);
    MapWindowPoints(NULL, GetParent(control), (POINT *)&place, 2);
    return std::to_wstring(place.left) + L"," + std::to_wstring(place.top) + L"," +
           std::to_wstring(place.right - place.left) + L"," +
           std::to_wstring(place.bottom - place.top);
}

void allControls()
{
    const HWND window = makeWindow(300, 200);
    const HWND first = add(window, 10, 10, 80, 30), second = add(window, 10, 50, 60, 40);
    CHECK(VL_EnableFlexLayout((intptr_t)window));
    VL_Flex_SetPadding(window, 10);
    VL_Flex_SetGap(window, 5);
    VL_Flex_SetGrow(second, 1);
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(first), std::wstring(L"10,10,80,30"));
    CHECK_EQ(placeOf(second), std::wstring(L"95,10,195,40"));

    resize(window, 400, 200);
    CHECK_EQ(placeOf(second), std::wstring(L"95,10,295,40"));
    CHECK(VL_Flex_SetDirection((intptr_t)window, std::wstring(L"\u5782\u76F4")));
    CHECK(VL_Flex_SetAlignItems(window, std::wstring(L"\u62C9\u4F38")));
    pumpMessages();
    CHECK_EQ(placeOf(first), std::wstring(L"10,10,380,30"));
    CHECK_EQ(placeOf(second), std::wstring(L"10,45,380,145"));

    // A control that comes later, a size of the program's own, one that is hidden.
    const HWND third = add(window, 0, 0, 50, 20);
    SetWindowPos(first, NULL, 0, 0, 80, 60, SWP_NOMOVE | SWP_NOZORDER);
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(first), std::wstring(L"10,10,380,60"));
    CHECK_EQ(placeOf(third), std::wstring(L"10,170,380,20"));
    ShowWindow(first, SW_HIDE);
    pumpMessages();
    CHECK_EQ(placeOf(second), std::wstring(L"10,10,380,155"));
    DestroyWindow(third);
    pumpMessages();
    CHECK_EQ(placeOf(second), std::wstring(L"10,10,380,180"));
    DestroyWindow(window);
}

void settings()
{
    const HWND window = makeWindow(300, 100);
    const HWND left = add(window, 0, 0, 100, 20), right = add(window, 0, 0, 20, 20);
    VL_EnableFlexLayout(window);
    VL_Flex_SetFlex(left, 1);
    VL_Flex_SetFlex(right, 2);
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(left) + L" " + placeOf(right), std::wstring(L"0,0,100,20 100,0,200,20"));
    VL_Flex_SetMaxWidth(right, 120);
    VL_Flex_SetMargin((intptr_t)left, 1, 2, 3, 4);
    VL_Flex_SetMinHeight(left, 50);
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(left) + L" " + placeOf(right), std::wstring(L"1,2,176,50 180,0,120,20"));
    VL_Flex_SetFlex(left, 0);
    VL_Flex_SetFlex(right, 0);
    VL_Flex_SetMargin(left, 0);
    VL_Flex_SetMaxWidth(right, 0);
    CHECK(VL_Flex_SetJustifyContent(window, 2));
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(left) + L" " + placeOf(right), std::wstring(L"180,0,100,50 280,0,20,20"));
    CHECK(!VL_Flex_SetDirection(window, std::wstring(L"\u659C")));
    CHECK(!VL_Flex_SetJustifyContent(window, 6));
    CHECK(!VL_Flex_SetAlignItems(window, -1));
    DestroyWindow(window);
}

// A page with a button bar below, a list beside it, and the same within a laid out window.
void boxes()
{
    const HWND window = makeWindow(400, 300);
    const HWND list = add(window, 10, 10, 100, 240, L"LISTBOX", LBS_NOINTEGRALHEIGHT);
    const HWND edit = add(window, 0, 0, 50, 20), ok = add(window, 0, 0, 70, 25),
               cancel = add(window, 0, 0, 70, 25);
    const int page = VL_Flex_AddBox(window, -1, 1, 120, 10, 270, 240, L"alignItems=\u62C9\u4F38");
    const int bar = VL_Flex_AddBox(window, -1, 0, 10, 260, 380, 30, L"flexGap=8;flexPadding=2");
    CHECK_EQ(page, 0);
    CHECK_EQ(bar, 1);
    VL_Flex_AddControl(window, page, edit, L"flexGrow=1;margin=4");
    VL_Flex_AddSpacer(window, bar, 10, 10);
    VL_Flex_AddControl(window, bar, ok);
    VL_Flex_AddControl(window, bar, cancel, L"flexMinWidth=90;flexMaxWidth=0");
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(edit), std::wstring(L"124,14,262,232"));
    CHECK_EQ(placeOf(ok), std::wstring(L"220,262,70,25"));
    CHECK_EQ(placeOf(cancel), std::wstring(L"298,262,90,25"));
    // The page has free room at its right only, the bar at its right and below.
    resize(window, 500, 350);
    CHECK_EQ(placeOf(edit), std::wstring(L"124,14,362,232"));
    CHECK_EQ(placeOf(cancel), std::wstring(L"398,262,90,25"));
    CHECK_EQ(placeOf(list), std::wstring(L"10,10,100,240"));
    resize(window, 400, 300);
    CHECK_EQ(placeOf(edit), std::wstring(L"124,14,262,232"));
    DestroyWindow(window);
}

void nested()
{
    const HWND window = makeWindow(400, 300);
    const HWND top = add(window, 0, 0, 100, 30);
    HWND cells[3];
    VL_Flex_AddControl(window, -1, top, L"");
    const int grid = VL_Flex_AddBox(window, -1, 2, 0, 0, 100, 100,
                                    L"columns=2;spacing=10;margin=5,5,5,5;flexGrow=1");
    for (HWND &cell : cells) {
        cell = add(window, 0, 0, 10, 10);
        VL_Flex_AddControl(window, grid, cell);
    }
    VL_Flex_SetWindow(window,
                      L"flexDirection=\u5782\u76F4;alignItems=\u62C9\u4F38;flexLayout=x;;=");
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(top), std::wstring(L"0,0,400,30"));
    CHECK_EQ(placeOf(cells[1]), std::wstring(L"205,35,190,125"));
    CHECK_EQ(placeOf(cells[2]), std::wstring(L"5,170,190,125"));
    // A box all of whose controls are hidden takes no room; another place in the tree is taken.
    VL_Flex_AddControl(window, -1, cells[2], L"flexGrow=1");
    ShowWindow(cells[0], SW_HIDE);
    ShowWindow(cells[1], SW_HIDE);
    pumpMessages();
    CHECK_EQ(placeOf(cells[2]), std::wstring(L"0,30,400,270"));
    CHECK_EQ(VL_Flex_AddBox(window, 7, 0, 0, 0, 1, 1), -1);
    DestroyWindow(window);
}

void groupBoxesAndCombos()
{
    const HWND window = makeWindow(300, 200);
    const HWND first = add(window, 0, 0, 50, 30);
    const HWND frame = add(window, 100, 50, 120, 90, L"BUTTON", BS_GROUPBOX);
    const HWND inside = add(window, 110, 70, 60, 20);
    const HWND combo = add(window, 0, 0, 80, 150, L"COMBOBOX", CBS_DROPDOWNLIST);
    RECT closed = {}, dropped = {};
    GetWindowRect(combo, &closed);
    VL_EnableFlexLayout(window);
    VL_Flex_SetAlignItems(window, std::wstring(L"\u62C9\u4F38"));
    VL_Flex_SetShrink(combo, 0);
    VL_ApplyFlexLayout(window);
    CHECK_EQ(placeOf(first), std::wstring(L"0,0,50,200"));
    CHECK_EQ(placeOf(frame), std::wstring(L"50,0,120,200"));
    CHECK_EQ(placeOf(inside), std::wstring(L"60,20,60,20"));
    CHECK_EQ(placeOf(combo), L"170,0,80," + std::to_wstring(closed.bottom - closed.top));
    SendMessageW(combo, CB_GETDROPPEDCONTROLRECT, 0, (LPARAM)&dropped);
    CHECK(dropped.bottom - dropped.top > 100);
    DestroyWindow(window);
}

void oddCalls()
{
    const HWND window = makeWindow(200, 100);
    const HWND gone = add(window, 0, 0, 10, 10);
    DestroyWindow(gone);
    for (const HWND bad : {(HWND)NULL, gone, (HWND)(intptr_t)-1}) {
        CHECK(!VL_EnableFlexLayout(bad));
        VL_ApplyFlexLayout(bad);
        VL_Flex_SetGrow(bad, 1);
        VL_Flex_SetWrap(bad, true);
        CHECK(!VL_Flex_SetDirection(bad, 0));
        CHECK_EQ(VL_Flex_AddBox(bad, -1, 0, 0, 0, 1, 1), -1);
        VL_Flex_AddControl(window, -1, bad);
        VL_Flex_AddSpacer(bad, -1, 1, 1);
        VL_Flex_SetWindow(bad, NULL);
    }
    VL_Flex_AddControl(window, -1, window);
    VL_EnableFlexLayout(0);
    VL_Flex_SetPadding(window, -1e300);
    VL_Flex_SetGap(window, 1e300);
    VL_EnableFlexLayout(window);
    add(window, 0, 0, 20, 20);
    VL_ApplyFlexLayout(window);
    DestroyWindow(window);
    pumpMessages();
}

// Many windows leave nothing behind, and many controls are laid out in no time.
void manyWindows()
{
    DWORD before[2] = {};
    for (int round = 0; round < 60; ++round) {
        const HWND window = makeWindow(200, 100);
        for (int i = 0; i < 10; ++i)
            add(window, i * 10, 0, 10, 10);
        VL_EnableFlexLayout(window);
        pumpMessages();
        DestroyWindow(window);
        const DWORD now[2] = {GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
                              GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS)};
        if (round == 9)
            memcpy(before, now, sizeof(now));
        CHECK(round < 9 || (now[0] <= before[0] && now[1] <= before[1]));
    }
    const HWND window = makeWindow(900, 600);
    for (int i = 0; i < 500; ++i)
        add(window, i, i, 30, 20);
    VL_EnableFlexLayout(window);
    VL_Flex_SetWrap(window, true);
    const DWORD start = GetTickCount();
    VL_ApplyFlexLayout(window);
    resize(window, 800, 600);
    CHECK(GetTickCount() - start < 5000);
    DestroyWindow(window);
}

} // namespace

void runTests()
{
    allControls();
    settings();
    boxes();
    nested();
    groupBoxesAndCombos();
    oddCalls();
    manyWindows();
}
