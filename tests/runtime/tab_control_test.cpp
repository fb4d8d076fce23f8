// Tab controls: pages, the geometry of their panels, controls that go with them, events and
// colours.
#include "79_tab_control.h"
#include "gdi_count.h"

namespace {

HWND makeTab(DWORD style, int pages)
{
    const HWND tab = testControl(WC_TABCONTROLW, L"", style, 1001, {20, 30, 320, 230});
    for (int i = 0; i < pages; ++i)
        VL_Tab_AddTab(tab, L"\u9875" + std::to_wstring(i));
    return tab;
}

HWND makeButton(HWND tab, int page, int id)
{
    const HWND button =
        CreateWindowW(L"BUTTON", L"b", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 10, 60, 24,
                      VL_Tab_GetTabPanel(tab, page), (HMENU)(intptr_t)id, g_hInstance, NULL);
    g_childTabInfo[button] = std::make_pair(tab, page);
    return button;
}

RECT areaIn(HWND parent, HWND child)
{
    RECT area = {};
    GetWindowRect(child, &area);
    MapWindowPoints(NULL, parent, (POINT *)&area, 2);
    return area;
}

bool isShown(HWND window)
{
    return IsWindowVisible(window) != FALSE;
}

void testPages()
{
    const HWND tab = makeTab(0, 3);
    CHECK_EQ(VL_Tab_GetTabCount(tab), 3);
    CHECK_EQ(VL_Tab_GetCurrentTab(tab), 0);
    CHECK(VL_Tab_GetTabPanel(tab, 3) == NULL && VL_Tab_GetTabPanel(tab, -1) == NULL);
    const HWND first = makeButton(tab, 0, 11);
    const HWND second = makeButton(tab, 1, 12);
    const HWND third = makeButton(tab, 2, 13);
    CHECK(isShown(first) && !isShown(second));
    VL_Tab_SetCurrentTab(tab, 1);
    CHECK(!isShown(first) && isShown(second));
    VL_Tab_SetCurrentTab(tab, 7);
    CHECK_EQ(VL_Tab_GetCurrentTab(tab), 1);
    // Pages keep their controls when others come and go.
    CHECK_EQ(VL_Tab_InsertTab(tab, 1, L"new"), 1);
    CHECK_EQ(VL_Tab_GetCurrentTab(tab), 2);
    CHECK(isShown(second));
    CHECK_EQ(g_childTabInfo[third].second, 3);
    CHECK(GetParent(third) == VL_Tab_GetTabPanel(tab, 3));
    VL_Tab_SetTabText(tab, 1, L"renamed");
    CHECK_EQ(VL_Tab_GetTabText(tab, 1), L"renamed");
    VL_Tab_RemoveTab(tab, 2);
    CHECK(!IsWindow(second) && g_childTabInfo.count(second) == 0);
    CHECK_EQ(VL_Tab_GetCurrentTab(tab), 2);
    CHECK(isShown(third));
    CHECK_EQ(g_childTabInfo[third].second, 2);
    DestroyWindow(third);
    CHECK_EQ((int)g_childTabInfo.count(third), 0);
    VL_Tab_ClearTabs(tab);
    CHECK(!IsWindow(first));
    CHECK(g_tabPanels[tab].empty());
    VL_Tab_AddTab(tab, L"again");
    CHECK_EQ(VL_Tab_GetCurrentTab(tab), 0);
    makeButton(tab, 0, 14);
    DestroyWindow(tab);
    CHECK(g_childTabInfo.empty());
    CHECK_EQ((int)g_tabPanels.count(tab), 0);
    for (const HWND odd : {(HWND)NULL, tab, testWindow()}) {
        CHECK_EQ(VL_Tab_AddTab(odd, L"x"), -1);
        CHECK(VL_Tab_GetTabPanel(odd, 0) == NULL);
        VL_Tab_OnSelChange(odd);
        VL_Tab_SetItemSize(odd, 1, 1);
    }
}

// A control stands where it was designed whatever the style of the tabs.
void testGeometry()
{
    const struct
    {
        DWORD style;
        RECT panel;
    } rows[] = {{0, {0, 25, 300, 200}},
                {TCS_FIXEDWIDTH | TCS_HOTTRACK, {0, 25, 300, 200}},
                {TCS_BUTTONS, {0, 25, 300, 200}},
                {TCS_BUTTONS | TCS_FLATBUTTONS, {0, 25, 300, 200}},
                {TCS_BOTTOM, {0, 0, 300, 175}},
                {TCS_VERTICAL | TCS_MULTILINE, {60, 0, 300, 200}},
                {TCS_VERTICAL | TCS_MULTILINE | TCS_RIGHT, {0, 0, 240, 200}}};
    for (const auto &row : rows) {
        const HWND tab = makeTab(row.style, 2);
        VL_SetFontSize(tab, 9);
        const RECT panel = areaIn(tab, VL_Tab_GetTabPanel(tab, 0));
        CHECK(EqualRect(&panel, &row.panel) != FALSE);
        MoveWindow(tab, 20, 30, 400, 250, TRUE);
        const RECT grown = areaIn(tab, VL_Tab_GetTabPanel(tab, 0));
        CHECK_EQ(grown.right, row.panel.right + 100);
        CHECK_EQ(grown.bottom, row.panel.bottom + 50);
        DestroyWindow(tab);
    }
    const HWND rowsTab = makeTab(TCS_MULTILINE, 20);
    CHECK(VL_Tab_GetRowCount(rowsTab) > 1);
    RECT last = {};
    SendMessageW(rowsTab, TCM_GETITEMRECT, 0, (LPARAM)&last);
    CHECK(areaIn(rowsTab, VL_Tab_GetTabPanel(rowsTab, 0)).top >= last.bottom);
    DestroyWindow(rowsTab);
}

int itemWidth(HWND tab)
{
    RECT item = {};
    SendMessageW(tab, TCM_GETITEMRECT, 0, (LPARAM)&item);
    return item.right - item.left;
}

void testOptions()
{
    const HWND tab = makeTab(0, 2);
    const int usual = itemWidth(tab);
    VL_Tab_SetPadding(tab, 15, 5);
    CHECK_EQ(itemWidth(tab), usual + 30);
    CHECK_EQ(areaIn(tab, VL_Tab_GetTabPanel(tab, 0)).top, 35);
    VL_Tab_SetPadding(tab, 0, 0);
    CHECK_EQ(itemWidth(tab), usual);
    VL_Tab_SetMinTabWidth(tab, 120);
    CHECK_EQ(itemWidth(tab), 120);
    VL_Tab_HighlightTab(tab, 1);
    CHECK(VL_Tab_IsHighlighted(tab, 1) && !VL_Tab_IsHighlighted(tab, 0));
    VL_Tab_HighlightTab(tab, 1, false);
    CHECK(!VL_Tab_IsHighlighted(tab, 1));
    VL_Tab_SetFocus(tab, 1);
    CHECK_EQ(VL_Tab_GetFocus(tab), 1);
    CHECK(isShown(VL_Tab_GetTabPanel(tab, 1)) && !isShown(VL_Tab_GetTabPanel(tab, 0)));
    DestroyWindow(tab);
    const HWND fixed = makeTab(TCS_FIXEDWIDTH, 2);
    VL_Tab_SetItemSize(fixed, 70, 30);
    CHECK_EQ(itemWidth(fixed), 70);
    CHECK(areaIn(fixed, VL_Tab_GetTabPanel(fixed, 0)).top >= 30);
    DestroyWindow(fixed);
}

void testEvents()
{
    const HWND tab = makeTab(0, 2);
    const HWND button = makeButton(tab, 0, 11);
    const HWND other = makeButton(tab, 1, 12);
    pumpMessages();
    takeTold();
    // What controls on a page tell reaches the window.
    SendMessageW(button, BM_CLICK, 0, 0);
    CHECK_EQ(countOf(takeTold(), 11, BN_CLICKED), 1);
    RECT item = {};
    SendMessageW(tab, TCM_GETITEMRECT, 1, (LPARAM)&item);
    const LPARAM place = MAKELPARAM(item.left + 5, item.top + 5);
    SetFocus(button);
    SendMessageW(tab, WM_LBUTTONDOWN, MK_LBUTTON, place);
    SendMessageW(tab, WM_LBUTTONUP, 0, place);
    CHECK_EQ(countOf(takeTold(), 1001, (int)TCN_SELCHANGE), 1);
    CHECK(isShown(other) && !isShown(button));
    // Nothing hidden keeps the keyboard.
    CHECK(GetFocus() != button);
    CHECK(GetNextDlgTabItem(testWindow(), NULL, FALSE) == other);
    DestroyWindow(tab);
}

void testColors()
{
    const HWND tab = makeTab(0, 1);
    const HWND label = CreateWindowW(L"STATIC", L"", WS_CHILD | WS_VISIBLE, 20, 20, 60, 20,
                                     VL_Tab_GetTabPanel(tab, 0), NULL, g_hInstance, NULL);
    pumpMessages();
    CHECK_EQ((int)pixelAt(label, 30, 10), (int)pixelAt(GetParent(label), 200, 100));
    VL_SetBgColor(tab, RGB(10, 200, 30));
    pumpMessages();
    CHECK_EQ((int)pixelAt(GetParent(label), 200, 100), (int)RGB(10, 200, 30));
    CHECK_EQ((int)pixelAt(label, 30, 10), (int)RGB(10, 200, 30));
    DestroyWindow(tab);

    for (const DWORD style : {(DWORD)0, (DWORD)(TCS_VERTICAL | TCS_MULTILINE)}) {
        int before = 0;
        for (int i = 0; i < 101; ++i) {
            // The first one fills what is kept for all.
            if (i == 1)
                before = gdiObjects();
            const HWND one = makeTab(style, 3);
            VL_SetBgColor(one, RGB(1, 2, 3));
            UpdateWindow(one);
            DestroyWindow(one);
        }
        CHECK(gdiObjects() <= before + 50);
    }
}

} // namespace

void runTests()
{
    testPages();
    testGeometry();
    testOptions();
    testEvents();
    testColors();
}
