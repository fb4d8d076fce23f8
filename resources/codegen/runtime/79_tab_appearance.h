// How tab controls and the panels of their pages look.
#pragma once
#include "76_choice_lists.h"

extern const wchar_t *g_tabPanelClassName;

// The ground of the pages.
COLORREF VL_Tab_PageColor(HWND tab);
enum class VL_TabSide
{
    Top,
    Bottom,
    Left,
    Right
};
VL_TabSide VL_Tab_SideOf(HWND tab);
bool VL_Tab_IsVertical(HWND tab);
// Whether the system's own drawing would not do: titles turned on their side, or colours.
bool VL_Tab_IsPaintedHere(HWND tab);
// Tabs drawn as buttons have no page attached to them.
bool VL_Tab_HasButtons(HWND tab);
// Paints all tabs, for WM_PAINT.
void VL_Tab_Paint(HWND tab);
// The ground behind the tabs.
void VL_Tab_FillBar(HWND tab, HDC context, const RECT &area);
// Paints the panel of a page: its ground and its frame, open towards the current tab.
void VL_Tab_PaintPanel(HWND panel, HDC context);
// The answer to WM_CTLCOLOR* from a control on a panel, after the owner gave `ofOwner`: what shows
// through controls without a colour of their own is the page, not the window.
LRESULT VL_Tab_ColorOnPanel(HWND panel, HDC context, HWND control, LRESULT ofOwner);
