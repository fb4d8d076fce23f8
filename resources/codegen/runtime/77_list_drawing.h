// How list views draw: once for all changes made in a row, icons and columns in the screen's
// resolution, headers in colours of their own.
#pragma once
#include "76_choice_lists.h"
#include "76_item_icons.h"

// Icons of a list view's items; an icon has the same index in both lists.
struct VL_ListViewIcons
{
    VL_ItemImages largeIcons;
    VL_ItemImages smallIcons;
};

// Takes charge of the list view's drawing; false for anything else. Any number of times.
bool VL_ListView_Attach(HWND list);
// Sends a message about rows straight to the control, past all subclass procedures: these can cost
// ten times as much as the row itself. -1 for anything but a list view.
LRESULT VL_ListView_RowMessage(HWND list, UINT message, WPARAM wParam, LPARAM lParam);
// NULL for anything but a list view.
VL_ListViewIcons *VL_ListView_Icons(HWND list);
// Hands the image lists to the control after they were made anew.
void VL_ListView_ShowIcons(HWND list);
// Nothing is drawn between these; they nest.
void VL_ListView_BeginUpdate(HWND list);
void VL_ListView_EndUpdate(HWND list);
