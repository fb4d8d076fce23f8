// Tab controls and the panels that stand for their pages. Pages count from 0; what is out of range
// is left alone or reads as -1, 0, false or an empty text.
#pragma once
#include "76_choice_lists.h"

#include <utility>

// The panel of each page by tab control; NULL for a page that holds nothing yet.
extern std::map<HWND, std::vector<HWND>> g_tabPanels;
// Tab control and page of the controls that stand on pages. Entries go with their controls and
// follow their page when others are inserted or removed.
extern std::map<HWND, std::pair<HWND, int>> g_childTabInfo;

void VL_RegisterTabPanelClass();

int VL_Tab_AddTab(HWND tab, const std::wstring &title);
int VL_Tab_InsertTab(HWND tab, int index, const std::wstring &title);
// With all controls on the page. The page beside it is shown when it was the current one.
void VL_Tab_RemoveTab(HWND tab, int index);
void VL_Tab_ClearTabs(HWND tab);
int VL_Tab_GetTabCount(HWND tab);
std::wstring VL_Tab_GetTabText(HWND tab, int index);
void VL_Tab_SetTabText(HWND tab, int index, const std::wstring &title);

int VL_Tab_GetCurrentTab(HWND tab);
void VL_Tab_SetCurrentTab(HWND tab, int index);
void VL_Tab_HighlightTab(HWND tab, int index, bool on = true);
bool VL_Tab_IsHighlighted(HWND tab, int index);
// The tab that the keyboard acts on.
void VL_Tab_SetFocus(HWND tab, int index);
int VL_Tab_GetFocus(HWND tab);
// The tab under the mouse as it stood for the message that is handled; -1 for none.
int VL_Tab_HitTest(HWND tab);
// Lifts all pressed tabs of a control with buttons, or all but the current one.
void VL_Tab_DeselectAll(HWND tab, bool exceptCurrent = false);

// Design pixels. A width only counts for tabs of fixed width; 0 leaves a size to the control.
void VL_Tab_SetItemSize(HWND tab, int width, int height);
// Room around the titles beyond the usual.
void VL_Tab_SetPadding(HWND tab, int x, int y);
void VL_Tab_SetMinTabWidth(HWND tab, int width);
int VL_Tab_GetRowCount(HWND tab);

// The window that the controls of a page are created on, made when it is first asked for; NULL for
// no page. It covers the tab control but for the bar of tabs: 25 design pixels high, at the side 60
// wide, more when the tabs need it.
HWND VL_Tab_GetTabPanel(HWND tab, int page);
// Fits the panels to the tab control.
void VL_Tab_ResizePanels(HWND tab);
// Shows the panel of the current page alone.
void VL_Tab_OnSelChange(HWND tab);
