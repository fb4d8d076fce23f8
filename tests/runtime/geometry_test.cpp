// Places, sizes and states of controls and windows.
#include "36_geometry.h"
#include "window_test.h"

namespace {

// Lets the window manager finish what was asked of it: until nothing more arrives.
void settle()
{
    const DWORD begin = GetTickCount();
    do {
        pumpMessages();
    } while (GetTickCount() - begin < 3000 &&
             MsgWaitForMultipleObjects(0, NULL, FALSE, 80, QS_ALLINPUT) == WAIT_OBJECT_0);
}

struct Getter
{
    void (*set)(HWND, int);
    int (*get)(HWND);
};
const Getter kAll[] = {{VL_SetX, VL_GetX},
                       {VL_SetY, VL_GetY},
                       {VL_SetWidth, VL_GetWidth},
                       {VL_SetHeight, VL_GetHeight}};

void controlsReadBack()
{
    const HWND button = testControl(L"BUTTON", L"", BS_PUSHBUTTON, 1, {10, 20, 110, 50});
    CHECK_EQ(VL_GetX(button), 10);
    CHECK_EQ(VL_GetY(button), 20);
    CHECK_EQ(VL_GetWidth(button), 100);
    CHECK_EQ(VL_GetHeight(button), 30);
    const int values[] = {-7, 133, 250, 41};
    for (int i = 0; i < 4; ++i)
        kAll[i].set(button, values[i]);
    for (int i = 0; i < 4; ++i)
        CHECK_EQ(kAll[i].get(button), values[i]);
    VL_SetWidth(button, -5);
    CHECK_EQ(VL_GetWidth(button), 0);
    VL_SetBounds(button, 1, 2, 300, 40);
    CHECK_EQ(VL_GetHeight(button) + VL_GetY(button), 42);
    DestroyWindow(button);
    for (const Getter &one : kAll) {
        one.set(button, 5);
        CHECK_EQ(one.get(button), 0);
    }
}

void innerControlsCountFromTheirParent()
{
    const HWND page = testControl(L"STATIC", L"", 0, 2, {50, 60, 350, 260});
    const HWND inner = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE, 5, 6, 70, 20, page, NULL,
                                     g_hInstance, NULL);
    VL_SetX(page, 80);
    CHECK_EQ(VL_GetX(inner), 5);
    VL_SetY(inner, 33);
    CHECK_EQ(VL_GetY(inner), 33);
    CHECK_EQ(VL_GetX(inner), 5);
    DestroyWindow(page);
}

// The list of a combo box keeps its height when the box is moved or widened.
void comboKeepsItsList()
{
    const HWND combo =
        testControl(L"COMBOBOX", L"", CBS_DROPDOWNLIST | WS_VSCROLL, 3, {10, 10, 130, 190});
    const auto opened = [combo] {
        RECT place = {};
        SendMessageW(combo, CB_GETDROPPEDCONTROLRECT, 0, (LPARAM)&place);
        return (int)(place.bottom - place.top);
    };
    const int before = opened();
    VL_SetX(combo, 40);
    VL_SetWidth(combo, 200);
    CHECK_EQ(opened(), before);
    CHECK_EQ(VL_GetWidth(combo), 200);
    VL_SetHeight(combo, 40);
    CHECK_EQ(VL_GetHeight(combo), 40);
    DestroyWindow(combo);
}

// The size of a window is that of its client area, whatever state it is in.
void windowSizeIsTheClientArea()
{
    const HWND window = testWindow();
    for (int state : {SW_SHOWNORMAL, SW_HIDE, SW_MINIMIZE}) {
        ShowWindow(window, state);
        settle();
        VL_SetWidth(window, 432);
        VL_SetHeight(window, 321);
        VL_SetX(window, 60);
        VL_SetY(window, 70);
        CHECK_EQ(VL_GetWidth(window), 432);
        CHECK_EQ(VL_GetHeight(window), 321);
        CHECK_EQ(VL_GetX(window), 60);
        CHECK_EQ(VL_GetY(window), 70);
        CHECK_EQ(IsIconic(window) != FALSE, state == SW_MINIMIZE);
        CHECK_EQ(IsWindowVisible(window) != FALSE, state != SW_HIDE);
        ShowWindow(window, SW_SHOWNORMAL);
        settle();
        RECT client = {};
        GetClientRect(window, &client);
        CHECK_EQ(client.right, 432L);
        CHECK_EQ(client.bottom, 321L);
        VL_SetWidth(window, 600);
        VL_SetHeight(window, 400);
        settle();
    }
}

void visibilityIsTheControlsOwn()
{
    const HWND window = testWindow();
    const HWND edit = testControl(L"EDIT", L"", WS_TABSTOP, 4, {0, 0, 50, 20});
    const HWND next = testControl(L"EDIT", L"", WS_TABSTOP, 5, {0, 30, 50, 50});
    VL_SetVisible(window, false);
    CHECK(VL_IsVisible(edit));
    CHECK(!VL_IsVisible(window));
    VL_SetVisible(window, true);
    settle();
    SetFocus(edit);
    VL_SetEnabled(edit, false);
    CHECK(!VL_IsEnabled(edit));
    CHECK(GetFocus() == next);
    VL_SetVisible(next, false);
    CHECK(!VL_IsVisible(next));
    CHECK(GetFocus() == window);
    CHECK(VL_EnableControl(edit));
    CHECK(VL_ShowControl((intptr_t)next));
    CHECK(VL_IsEnabled(edit) && VL_IsVisible(next));
    DestroyWindow(edit);
    DestroyWindow(next);
    for (const VL_Any &none : {VL_Any(), VL_Any(0x7FFFFFF0), VL_Any(L"x"), VL_Any(edit)}) {
        CHECK(!VL_HideControl(none));
        CHECK(VL_ToWindow(none) == NULL);
    }
}

} // namespace

void runTests()
{
    testWindow();
    controlsReadBack();
    innerControlsCountFromTheirParent();
    comboKeepsItsList();
    windowSizeIsTheClientArea();
    visibilityIsTheControlsOwn();
}
