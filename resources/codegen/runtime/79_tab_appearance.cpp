// How tab controls and the panels of their pages look.
#include "79_tab_appearance.h"

#include "43_background.h"

#include <algorithm>

const wchar_t *g_tabPanelClassName = L"VL_TabPanel";

namespace vl_tab_appearance {
namespace {

bool isThemed()
{
    typedef BOOL(WINAPI * Question)();
    const HMODULE library = GetModuleHandleW(L"uxtheme.dll");
    if (!library)
        return false;
    const Question active = (Question)(void *)GetProcAddress(library, "IsThemeActive");
    const Question used = (Question)(void *)GetProcAddress(library, "IsAppThemed");
    return active && used && active() && used();
}

COLORREF barColor(HWND tab)
{
    for (const HWND window : {GetParent(tab), VL_OwnerWindow(tab)}) {
        if (VL_HasBgColor(window))
            return (COLORREF)VL_GetBgColor(window);
    }
    return GetSysColor(COLOR_BTNFACE);
}

COLORREF mixed(COLORREF a, COLORREF b, int percent)
{
    const auto channel = [percent](int from, int to) { return from + (to - from) * percent / 100; };
    return RGB(channel(GetRValue(a), GetRValue(b)), channel(GetGValue(a), GetGValue(b)),
               channel(GetBValue(a), GetBValue(b)));
}

void fill(HDC context, const RECT &area, COLORREF color)
{
    SetDCBrushColor(context, color);
    FillRect(context, &area, (HBRUSH)GetStockObject(DC_BRUSH));
}

void frame(HDC context, const RECT &area, COLORREF color)
{
    SetDCBrushColor(context, color);
    FrameRect(context, &area, (HBRUSH)GetStockObject(DC_BRUSH));
}

// The part of `area` that is `thickness` wide along its edge towards the page, or away from it.
RECT edgeOf(const RECT &area, VL_TabSide side, bool towardsPage, int thickness)
{
    RECT edge = area;
    const bool rightOrBottom = side == VL_TabSide::Right || side == VL_TabSide::Bottom;
    const bool low = rightOrBottom == towardsPage;
    if (side == VL_TabSide::Left || side == VL_TabSide::Right)
        (low ? edge.right : edge.left) = low ? area.left + thickness : area.right - thickness;
    else
        (low ? edge.bottom : edge.top) = low ? area.top + thickness : area.bottom - thickness;
    return edge;
}

bool showsFocus(HWND tab)
{
    return GetFocus() == tab && !(SendMessageW(tab, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS);
}

void paintTitle(HWND tab, HDC context, int index, RECT area)
{
    const std::wstring title = VL_GetComboOrListItemText(tab, index);
    InflateRect(&area, -VL_ScaleX(tab, 4), 0);
    SetTextColor(context, IsWindowEnabled(tab) ? (COLORREF)VL_GetTextColor(tab)
                                               : GetSysColor(COLOR_GRAYTEXT));
    DrawTextW(context, title.c_str(), (int)(std::min)(title.size(), (size_t)1000), &area,
              DT_CENTER | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void paintItem(HWND tab, HDC context, int index, bool current)
{
    TCITEMW item = {};
    item.mask = TCIF_STATE;
    item.dwStateMask = TCIS_HIGHLIGHTED;
    RECT area = {};
    if (!SendMessageW(tab, TCM_GETITEMRECT, (WPARAM)index, (LPARAM)&area) ||
        !SendMessageW(tab, TCM_GETITEMW, (WPARAM)index, (LPARAM)&item))
        return;
    const VL_TabSide side = VL_Tab_SideOf(tab);
    const COLORREF page = VL_Tab_PageColor(tab);
    const bool across = side == VL_TabSide::Left || side == VL_TabSide::Right;
    // The current tab and its page are one.
    InflateRect(&area, across ? 1 : 0, across ? 0 : 1);
    const bool marked = (item.dwState & TCIS_HIGHLIGHTED) != 0;
    fill(context, area,
         marked    ? mixed(page, GetSysColor(COLOR_HIGHLIGHT), 35)
         : current ? page
                   : mixed(barColor(tab), 0, 6));
    frame(context, area, GetSysColor(COLOR_BTNSHADOW));
    if (current) {
        RECT inner = area;
        InflateRect(&inner, across ? 0 : -1, across ? -1 : 0);
        fill(context, edgeOf(inner, side, true, 1), page);
        fill(context, edgeOf(area, side, false, VL_ScaleX(tab, 2)), GetSysColor(COLOR_HIGHLIGHT));
    }
    paintTitle(tab, context, index, area);
    if (current && showsFocus(tab)) {
        InflateRect(&area, -VL_ScaleX(tab, 4), -VL_ScaleY(tab, 4));
        DrawFocusRect(context, &area);
    }
}

COLORREF panelColor(HWND panel)
{
    return VL_HasBgColor(panel) ? (COLORREF)VL_GetBgColor(panel)
                                : VL_Tab_PageColor(GetParent(panel));
}

// The page's frame, open towards the current tab.
void drawFrame(HWND panel, HDC context, const RECT &client)
{
    const HWND tab = GetParent(panel);
    if (VL_Tab_HasButtons(tab))
        return;
    SetDCBrushColor(context, GetSysColor(COLOR_BTNSHADOW));
    FrameRect(context, &client, (HBRUSH)GetStockObject(DC_BRUSH));
    RECT item = {};
    const int current = VL_GetSelectedIndex(tab);
    if (current < 0 || !SendMessageW(tab, TCM_GETITEMRECT, (WPARAM)current, (LPARAM)&item))
        return;
    MapWindowPoints(tab, panel, (POINT *)&item, 2);
    RECT gap = client;
    const bool farSide = (GetWindowLongW(tab, GWL_STYLE) & TCS_BOTTOM) != 0;
    if (VL_Tab_IsVertical(tab)) {
        (farSide ? gap.left : gap.right) = farSide ? gap.right - 1 : gap.left + 1;
        gap.top = item.top + 1;
        gap.bottom = item.bottom - 1;
    } else {
        (farSide ? gap.top : gap.bottom) = farSide ? gap.bottom - 1 : gap.top + 1;
        gap.left = item.left;
        gap.right = item.right;
    }
    SetDCBrushColor(context, panelColor(panel));
    FillRect(context, &gap, (HBRUSH)GetStockObject(DC_BRUSH));
}

void paintAll(HWND tab, HDC context, const RECT &client)
{
    const HFONT font = (HFONT)SendMessageW(tab, WM_GETFONT, 0, 0);
    const HGDIOBJ oldFont =
        SelectObject(context, font ? font : (HFONT)GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(context, TRANSPARENT);
    VL_Tab_FillBar(tab, context, client);
    const int count = VL_GetItemCount(tab);
    const int current = VL_GetSelectedIndex(tab);
    for (int i = 0; i < count; ++i) {
        if (i != current)
            paintItem(tab, context, i, false);
    }
    if (current >= 0)
        paintItem(tab, context, current, true);
    SelectObject(context, oldFont);
}

} // namespace
} // namespace vl_tab_appearance

COLORREF VL_Tab_PageColor(HWND tab)
{
    if (VL_HasBgColor(tab))
        return (COLORREF)VL_GetBgColor(tab);
    // A bar of tabs without theme is of the colour of buttons.
    return GetSysColor(vl_tab_appearance::isThemed() ? COLOR_WINDOW : COLOR_BTNFACE);
}

VL_TabSide VL_Tab_SideOf(HWND tab)
{
    const DWORD style = (DWORD)GetWindowLongW(tab, GWL_STYLE);
    if (style & TCS_VERTICAL)
        return style & TCS_RIGHT ? VL_TabSide::Right : VL_TabSide::Left;
    return style & TCS_BOTTOM ? VL_TabSide::Bottom : VL_TabSide::Top;
}

bool VL_Tab_IsVertical(HWND tab)
{
    return (GetWindowLongW(tab, GWL_STYLE) & TCS_VERTICAL) != 0;
}

bool VL_Tab_IsPaintedHere(HWND tab)
{
    if (VL_Tab_IsVertical(tab))
        return true;
    return !VL_Tab_HasButtons(tab) &&
           (VL_Tab_SideOf(tab) == VL_TabSide::Bottom || VL_HasBgColor(tab) || VL_HasTextColor(tab));
}

bool VL_Tab_HasButtons(HWND tab)
{
    return (GetWindowLongW(tab, GWL_STYLE) & TCS_BUTTONS) != 0;
}

void VL_Tab_Paint(HWND tab)
{
    using namespace vl_tab_appearance;
    PAINTSTRUCT paint = {};
    const HDC screen = BeginPaint(tab, &paint);
    RECT client = {};
    GetClientRect(tab, &client);
    {
        const VL_BufferedPaint buffer(screen, client);
        paintAll(tab, buffer.context(), client);
    }
    EndPaint(tab, &paint);
}

void VL_Tab_FillBar(HWND tab, HDC context, const RECT &area)
{
    vl_tab_appearance::fill(context, area, vl_tab_appearance::barColor(tab));
}

void VL_Tab_PaintPanel(HWND panel, HDC context)
{
    using namespace vl_tab_appearance;
    RECT client = {};
    GetClientRect(panel, &client);
    SetDCBrushColor(context, panelColor(panel));
    FillRect(context, &client, (HBRUSH)GetStockObject(DC_BRUSH));
    drawFrame(panel, context, client);
}

LRESULT VL_Tab_ColorOnPanel(HWND panel, HDC context, HWND control, LRESULT ofOwner)
{
    if (VL_HasBgColor(control) || VL_HasClass(control, L"EDIT"))
        return ofOwner;
    SetBkMode(context, TRANSPARENT);
    SetBkColor(context, vl_tab_appearance::panelColor(panel));
    SetDCBrushColor(context, vl_tab_appearance::panelColor(panel));
    return (LRESULT)GetStockObject(DC_BRUSH);
}
