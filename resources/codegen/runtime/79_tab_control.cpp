// Tab controls and the panels that stand for their pages.
#include "79_tab_control.h"

#include "79_tab_appearance.h"

#include <algorithm>

std::map<HWND, std::vector<HWND>> g_tabPanels;
std::map<HWND, std::pair<HWND, int>> g_childTabInfo;

namespace vl_tab_control {
namespace {

const UINT_PTR kSubclass = 0x564C79;
const UINT kDpiChangedAfterParent = 0x02E3;
// Design pixels.
const int kBarHeight = 25;
const int kBarWidth = 60;
const int kVerticalItem = 30;
const int kFixedWidth = 96;
const int kPaddingX = 6;
const int kPaddingY = 3;

struct Sizes
{
    int width = 0;
    int height = 0;
    int paddingX = 0;
    int paddingY = 0;
    int minWidth = 0;
    int dpi = 0;
    COLORREF page = CLR_NONE; // as it was painted last
    bool busy = false;        // the control is being set up by this section
};

bool attach(HWND tab);

int countOf(HWND tab)
{
    return (int)SendMessageW(tab, TCM_GETITEMCOUNT, 0, 0);
}

bool isPage(HWND tab, int page)
{
    return attach(tab) && page >= 0 && page < countOf(tab);
}

// The thickness of the bar that the tabs themselves need, in pixels.
int neededBar(HWND tab, const RECT &client)
{
    const DWORD style = (DWORD)GetWindowLongW(tab, GWL_STYLE);
    const bool farSide = (style & TCS_BOTTOM) != 0;
    int needed = 0;
    const int count = countOf(tab);
    for (int i = 0; i < count; ++i) {
        RECT item = {};
        if (!SendMessageW(tab, TCM_GETITEMRECT, (WPARAM)i, (LPARAM)&item))
            continue;
        const int reach = VL_Tab_IsVertical(tab)
                              ? (farSide ? client.right - item.left : item.right)
                              : (farSide ? client.bottom - item.top : item.bottom);
        needed = (std::max)(needed, reach);
    }
    return needed;
}

RECT pageArea(HWND tab)
{
    RECT area = {};
    GetClientRect(tab, &area);
    const bool vertical = VL_Tab_IsVertical(tab);
    const bool farSide = (GetWindowLongW(tab, GWL_STYLE) & TCS_BOTTOM) != 0;
    const Sizes *sizes = VL_FindExtra<Sizes>(tab);
    const int height = kBarHeight + (sizes ? 2 * sizes->paddingY : 0);
    const int bar = (std::max)(vertical ? VL_ScaleX(tab, kBarWidth) : VL_ScaleY(tab, height),
                               neededBar(tab, area));
    if (vertical)
        (farSide ? area.right : area.left) += farSide ? -bar : bar;
    else
        (farSide ? area.bottom : area.top) += farSide ? -bar : bar;
    area.right = (std::max)(area.left, area.right);
    area.bottom = (std::max)(area.top, area.bottom);
    return area;
}

// The control's own frame takes 2 pixels ahead of the tabs and 1 behind them.
void applySizes(HWND tab, Sizes *sizes)
{
    sizes->busy = true;
    sizes->dpi = VL_GetDpiForScaling(tab);
    const bool vertical = VL_Tab_IsVertical(tab);
    const int frame = 3;
    int width = VL_ScaleX(tab, sizes->width > 0 ? sizes->width : kFixedWidth);
    int height = VL_ScaleY(tab, kBarHeight + 2 * sizes->paddingY) - frame;
    if (vertical) {
        // Measured along the side.
        width = VL_ScaleY(tab, (sizes->height > 0 ? sizes->height : kVerticalItem) +
                                   2 * sizes->paddingY);
        height = VL_ScaleX(tab, sizes->width > 0 ? sizes->width : kBarWidth) - frame;
    } else if (sizes->height > 0) {
        height = VL_ScaleY(tab, sizes->height);
    }
    SendMessageW(tab, TCM_SETPADDING, 0,
                 MAKELPARAM(VL_ScaleX(tab, kPaddingX + sizes->paddingX),
                            VL_ScaleY(tab, kPaddingY + sizes->paddingY)));
    SendMessageW(tab, TCM_SETMINTABWIDTH, 0,
                 sizes->minWidth > 0 ? VL_ScaleX(tab, sizes->minWidth) : -1);
    // A new padding counts from the next font on.
    SendMessageW(tab, WM_SETFONT, SendMessageW(tab, WM_GETFONT, 0, 0), FALSE);
    SendMessageW(tab, TCM_SETITEMSIZE, 0, MAKELPARAM(width, height));
    sizes->busy = false;
    VL_Tab_ResizePanels(tab);
    InvalidateRect(tab, NULL, TRUE);
}

void movePages(HWND tab, int from, int distance)
{
    for (auto &child : g_childTabInfo) {
        if (child.second.first == tab && child.second.second >= from)
            child.second.second += distance;
    }
}

void forgetChildren(HWND panel)
{
    for (auto child = g_childTabInfo.begin(); child != g_childTabInfo.end();) {
        if (child->first == panel || IsChild(panel, child->first))
            child = g_childTabInfo.erase(child);
        else
            ++child;
    }
}

void pageInserted(HWND tab, int index)
{
    std::vector<HWND> &panels = g_tabPanels[tab];
    panels.insert(panels.begin() + (std::min)((size_t)index, panels.size()), (HWND)NULL);
    movePages(tab, index, 1);
    if (countOf(tab) == 1)
        SendMessageW(tab, TCM_SETCURSEL, 0, 0);
    VL_Tab_ResizePanels(tab);
    VL_Tab_OnSelChange(tab);
}

void pageRemoved(HWND tab, int index, bool wasCurrent)
{
    std::vector<HWND> &panels = g_tabPanels[tab];
    HWND panel = NULL;
    if ((size_t)index < panels.size()) {
        panel = panels[(size_t)index];
        panels.erase(panels.begin() + index);
    }
    if (panel)
        DestroyWindow(panel);
    movePages(tab, index + 1, -1);
    const int count = countOf(tab);
    if (wasCurrent && count > 0)
        SendMessageW(tab, TCM_SETCURSEL, (WPARAM)(std::min)(index, count - 1), 0);
    VL_Tab_ResizePanels(tab);
    VL_Tab_OnSelChange(tab);
}

void allPagesRemoved(HWND tab)
{
    std::vector<HWND> panels;
    panels.swap(g_tabPanels[tab]);
    for (const HWND panel : panels) {
        if (panel)
            DestroyWindow(panel);
    }
}

void forgetTab(HWND tab)
{
    g_tabPanels.erase(tab);
    for (auto child = g_childTabInfo.begin(); child != g_childTabInfo.end();) {
        if (child->second.first == tab)
            child = g_childTabInfo.erase(child);
        else
            ++child;
    }
}

LRESULT itemMessage(HWND tab, UINT message, WPARAM wParam, LPARAM lParam)
{
    const int current = VL_GetSelectedIndex(tab);
    const LRESULT result = DefSubclassProc(tab, message, wParam, lParam);
    switch (message) {
    case TCM_INSERTITEMA:
    case TCM_INSERTITEMW:
        if (result >= 0)
            pageInserted(tab, (int)result);
        break;
    case TCM_DELETEITEM:
        if (result)
            pageRemoved(tab, (int)wParam, current == (int)wParam);
        break;
    case TCM_DELETEALLITEMS:
        allPagesRemoved(tab);
        break;
    case TCM_SETITEMA:
    case TCM_SETITEMW:
        VL_Tab_ResizePanels(tab);
        break;
    default:
        VL_Tab_OnSelChange(tab);
        break;
    }
    return result;
}

void followSize(HWND tab, UINT message)
{
    Sizes *sizes = VL_FindExtra<Sizes>(tab);
    if (!sizes || sizes->busy)
        return;
    if (message == WM_SETFONT || sizes->dpi != VL_GetDpiForScaling(tab))
        applySizes(tab, sizes);
    else
        VL_Tab_ResizePanels(tab);
}

// Setting a colour repaints the tab control alone.
void followColor(HWND tab)
{
    Sizes *sizes = VL_FindExtra<Sizes>(tab);
    const COLORREF page = VL_Tab_PageColor(tab);
    if (!sizes || sizes->page == page)
        return;
    if (sizes->page != CLR_NONE)
        RedrawWindow(tab, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    sizes->page = page;
}

LRESULT paintTab(HWND tab, WPARAM wParam, LPARAM lParam)
{
    followColor(tab);
    LRESULT result = 0;
    if (VL_Tab_IsPaintedHere(tab) && !wParam)
        VL_Tab_Paint(tab);
    else
        result = DefSubclassProc(tab, WM_PAINT, wParam, lParam);
    // The arrows that scroll the tabs miss their first painting on some systems.
    if (const HWND arrows = FindWindowExW(tab, NULL, UPDOWN_CLASSW, NULL))
        InvalidateRect(arrows, NULL, TRUE);
    return result;
}

LRESULT CALLBACK tabProcedure(HWND tab, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR)
{
    switch (message) {
    case TCM_INSERTITEMA:
    case TCM_INSERTITEMW:
    case TCM_DELETEITEM:
    case TCM_DELETEALLITEMS:
    case TCM_SETITEMA:
    case TCM_SETITEMW:
    case TCM_SETCURSEL:
    case TCM_SETCURFOCUS:
        return itemMessage(tab, message, wParam, lParam);
    case VL_REFLECT + WM_NOTIFY:
        if (lParam && ((const NMHDR *)lParam)->code == (UINT)TCN_SELCHANGE)
            VL_Tab_OnSelChange(tab);
        break;
    case WM_ERASEBKGND: {
        if (VL_Tab_IsPaintedHere(tab))
            return 1;
        RECT client = {};
        GetClientRect(tab, &client);
        VL_Tab_FillBar(tab, (HDC)wParam, client);
        return 1;
    }
    case WM_PAINT:
        return paintTab(tab, wParam, lParam);
    case WM_SIZE:
    case WM_SETFONT:
    case kDpiChangedAfterParent: {
        const LRESULT result = DefSubclassProc(tab, message, wParam, lParam);
        followSize(tab, message);
        return result;
    }
    case WM_NCDESTROY:
        RemoveWindowSubclass(tab, tabProcedure, kSubclass);
        forgetTab(tab);
        break;
    default:
        break;
    }
    return DefSubclassProc(tab, message, wParam, lParam);
}

bool attach(HWND tab)
{
    if (!VL_HasClass(tab, WC_TABCONTROLW))
        return false;
    if (VL_FindExtra<Sizes>(tab))
        return true;
    Sizes *sizes = VL_Extra<Sizes>(tab);
    if (!sizes)
        return false;
    g_tabPanels[tab].assign((size_t)countOf(tab), NULL);
    LONG style = GetWindowLongW(tab, GWL_STYLE) | WS_CLIPCHILDREN;
    // Tabs at the side all have one size; this section draws them.
    if (style & TCS_VERTICAL)
        style |= TCS_FIXEDWIDTH | TCS_OWNERDRAWFIXED;
    // The system would draw single tabs as the mouse moves over them.
    if (style & (TCS_VERTICAL | TCS_BOTTOM))
        style &= ~TCS_HOTTRACK;
    SetWindowLongW(tab, GWL_STYLE, style);
    // The keyboard finds its way into the pages.
    SetWindowLongW(tab, GWL_EXSTYLE, GetWindowLongW(tab, GWL_EXSTYLE) | WS_EX_CONTROLPARENT);
    SetWindowSubclass(tab, tabProcedure, kSubclass, 0);
    applySizes(tab, sizes);
    return true;
}

LRESULT CALLBACK panelProcedure(HWND panel, UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    const bool passed = VL_PassToOwner(panel, message, wParam, lParam, &result);
    switch (message) {
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
        return VL_Tab_ColorOnPanel(panel, (HDC)wParam, (HWND)lParam, result);
    case WM_ERASEBKGND:
    case WM_PRINTCLIENT:
        VL_Tab_PaintPanel(panel, (HDC)wParam);
        return 1;
    case WM_PARENTNOTIFY:
        if (LOWORD(wParam) == WM_DESTROY)
            g_childTabInfo.erase((HWND)lParam);
        break;
    case WM_DESTROY: {
        forgetChildren(panel);
        const auto panels = g_tabPanels.find(GetParent(panel));
        if (panels != g_tabPanels.end())
            std::replace(panels->second.begin(), panels->second.end(), panel, (HWND)NULL);
        break;
    }
    case WM_SIZE:
        InvalidateRect(panel, NULL, TRUE);
        break;
    default:
        break;
    }
    return passed ? result : DefWindowProcW(panel, message, wParam, lParam);
}

} // namespace
} // namespace vl_tab_control

void VL_RegisterTabPanelClass()
{
    WNDCLASSW description = {};
    description.lpfnWndProc = vl_tab_control::panelProcedure;
    description.hInstance = g_hInstance;
    description.hCursor = LoadCursor(NULL, IDC_ARROW);
    description.lpszClassName = g_tabPanelClassName;
    RegisterClassW(&description);
}

int VL_Tab_AddTab(HWND tab, const std::wstring &title)
{
    return VL_Tab_InsertTab(tab, -1, title);
}

int VL_Tab_InsertTab(HWND tab, int index, const std::wstring &title)
{
    return vl_tab_control::attach(tab) ? VL_InsertItem(tab, index, title) : -1;
}

void VL_Tab_RemoveTab(HWND tab, int index)
{
    if (vl_tab_control::isPage(tab, index))
        SendMessageW(tab, TCM_DELETEITEM, (WPARAM)index, 0);
}

void VL_Tab_ClearTabs(HWND tab)
{
    if (vl_tab_control::attach(tab))
        SendMessageW(tab, TCM_DELETEALLITEMS, 0, 0);
}

int VL_Tab_GetTabCount(HWND tab)
{
    return vl_tab_control::attach(tab) ? vl_tab_control::countOf(tab) : 0;
}

std::wstring VL_Tab_GetTabText(HWND tab, int index)
{
    return vl_tab_control::isPage(tab, index) ? VL_GetComboOrListItemText(tab, index)
                                              : std::wstring();
}

void VL_Tab_SetTabText(HWND tab, int index, const std::wstring &title)
{
    if (vl_tab_control::isPage(tab, index))
        VL_SetComboOrListItemText(tab, index, title);
}

int VL_Tab_GetCurrentTab(HWND tab)
{
    return vl_tab_control::attach(tab) ? VL_GetSelectedIndex(tab) : -1;
}

void VL_Tab_SetCurrentTab(HWND tab, int index)
{
    if (vl_tab_control::isPage(tab, index))
        SendMessageW(tab, TCM_SETCURSEL, (WPARAM)index, 0);
}

void VL_Tab_HighlightTab(HWND tab, int index, bool on)
{
    if (vl_tab_control::isPage(tab, index))
        SendMessageW(tab, TCM_HIGHLIGHTITEM, (WPARAM)index, MAKELPARAM(on ? TRUE : FALSE, 0));
}

bool VL_Tab_IsHighlighted(HWND tab, int index)
{
    TCITEMW item = {};
    item.mask = TCIF_STATE;
    item.dwStateMask = TCIS_HIGHLIGHTED;
    return vl_tab_control::isPage(tab, index) &&
           SendMessageW(tab, TCM_GETITEMW, (WPARAM)index, (LPARAM)&item) &&
           (item.dwState & TCIS_HIGHLIGHTED);
}

void VL_Tab_SetFocus(HWND tab, int index)
{
    if (vl_tab_control::isPage(tab, index))
        SendMessageW(tab, TCM_SETCURFOCUS, (WPARAM)index, 0);
}

int VL_Tab_GetFocus(HWND tab)
{
    return vl_tab_control::attach(tab) ? (int)SendMessageW(tab, TCM_GETCURFOCUS, 0, 0) : -1;
}

int VL_Tab_HitTest(HWND tab)
{
    if (!vl_tab_control::attach(tab))
        return -1;
    const DWORD place = GetMessagePos();
    TCHITTESTINFO hit = {};
    hit.pt = {(short)LOWORD(place), (short)HIWORD(place)};
    ScreenToClient(tab, &hit.pt);
    return (int)SendMessageW(tab, TCM_HITTEST, 0, (LPARAM)&hit);
}

void VL_Tab_DeselectAll(HWND tab, bool exceptCurrent)
{
    if (vl_tab_control::attach(tab))
        SendMessageW(tab, TCM_DESELECTALL, exceptCurrent ? TRUE : FALSE, 0);
}

void VL_Tab_SetItemSize(HWND tab, int width, int height)
{
    using namespace vl_tab_control;
    if (!attach(tab))
        return;
    Sizes *sizes = VL_FindExtra<Sizes>(tab);
    sizes->width = (std::max)(0, (std::min)(width, 2000));
    sizes->height = (std::max)(0, (std::min)(height, 500));
    applySizes(tab, sizes);
}

void VL_Tab_SetPadding(HWND tab, int x, int y)
{
    using namespace vl_tab_control;
    if (!attach(tab))
        return;
    Sizes *sizes = VL_FindExtra<Sizes>(tab);
    sizes->paddingX = (std::max)(0, (std::min)(x, 500));
    sizes->paddingY = (std::max)(0, (std::min)(y, 200));
    applySizes(tab, sizes);
}

void VL_Tab_SetMinTabWidth(HWND tab, int width)
{
    using namespace vl_tab_control;
    if (!attach(tab))
        return;
    Sizes *sizes = VL_FindExtra<Sizes>(tab);
    sizes->minWidth = (std::max)(0, (std::min)(width, 2000));
    applySizes(tab, sizes);
}

int VL_Tab_GetRowCount(HWND tab)
{
    return vl_tab_control::attach(tab) ? (int)SendMessageW(tab, TCM_GETROWCOUNT, 0, 0) : 0;
}

HWND VL_Tab_GetTabPanel(HWND tab, int page)
{
    using namespace vl_tab_control;
    if (!isPage(tab, page))
        return NULL;
    std::vector<HWND> &panels = g_tabPanels[tab];
    if (panels.size() <= (size_t)page)
        panels.resize((size_t)page + 1, NULL);
    if (panels[(size_t)page])
        return panels[(size_t)page];
    VL_RegisterTabPanelClass();
    const RECT area = pageArea(tab);
    const DWORD visible = VL_GetSelectedIndex(tab) == page ? WS_VISIBLE : 0;
    const HWND panel = CreateWindowExW(WS_EX_CONTROLPARENT, g_tabPanelClassName, L"",
                                       WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS | visible,
                                       area.left, area.top, area.right - area.left,
                                       area.bottom - area.top, tab, NULL, g_hInstance, NULL);
    g_tabPanels[tab][(size_t)page] = panel;
    return panel;
}

void VL_Tab_ResizePanels(HWND tab)
{
    using namespace vl_tab_control;
    if (!attach(tab))
        return;
    const RECT area = pageArea(tab);
    for (const HWND panel : g_tabPanels[tab]) {
        if (panel)
            SetWindowPos(panel, NULL, area.left, area.top, area.right - area.left,
                         area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void VL_Tab_OnSelChange(HWND tab)
{
    using namespace vl_tab_control;
    if (!attach(tab))
        return;
    const int current = VL_GetSelectedIndex(tab);
    const HWND shown = VL_Tab_GetTabPanel(tab, current);
    // Titles of several rows change places.
    VL_Tab_ResizePanels(tab);
    if (shown) {
        ShowWindow(shown, SW_SHOWNA);
        InvalidateRect(shown, NULL, TRUE);
    }
    const std::vector<HWND> panels = g_tabPanels[tab];
    for (const HWND panel : panels) {
        if (!panel || panel == shown)
            continue;
        // What is hidden keeps the keyboard otherwise.
        if (IsChild(panel, GetFocus()))
            SetFocus(tab);
        ShowWindow(panel, SW_HIDE);
    }
    if (VL_Tab_IsPaintedHere(tab))
        InvalidateRect(tab, NULL, FALSE);
}
