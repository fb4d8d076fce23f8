// Combo boxes and list boxes, and the item functions that all controls with items share.
// Indices count from 0. Without an index, a handle or a class that fits, nothing happens and the
// answer is -1, 0 or an empty text.
#pragma once
#include "34_window_state.h"

// A text of any length from a call that fills a buffer of `size` characters and ends it with a 0.
std::wstring VL_ReadGrowing(const std::function<void(wchar_t *buffer, int size)> &read);

// These take combo boxes, list boxes, list views (rows), tree views (items in their order, parents
// ahead of children) and tab controls (pages).
int VL_GetItemCount(HWND control);
// In a list box with several selected items VL_ListBox_GetBestIndex.
int VL_GetSelectedIndex(HWND control);
// -1 selects nothing. A row of a list view and an item of a tree view come into sight.
void VL_SetSelectedIndex(HWND control, int index);
// Selects the first item with that text, regardless of case. Without one the selection stays; an
// editable combo box shows the text all the same.
void VL_SelectText(HWND control, const std::wstring &text);
// Also of one among several selected items.
bool VL_IsItemSelected(HWND control, int index);
// All selected items, in order.
VL_Array VL_GetSelectedIndexes(HWND control);
std::wstring VL_GetComboOrListItemText(HWND control, int index);
void VL_SetComboOrListItemText(HWND control, int index, const std::wstring &text);
// The index of the new item, -1 when there is none. Sorted lists choose the place themselves; an
// index out of range appends.
int VL_AddItem(HWND control, const std::wstring &text);
int VL_InsertItem(HWND control, int index, const std::wstring &text);
void VL_DeleteItem(HWND control, int index);
void VL_ClearComboOrList(HWND control);

// Replaces the items of a combo box or list box by the lines of `items`; a text of one line is
// taken apart at ";". An end of line behind the last item adds none.
void VL_FillItems(HWND control, const std::wstring &items);

// The selected item that the user touched last, else the first selected one.
int VL_ListBox_GetBestIndex(HWND list);
// Whether the user can type into the combo box.
bool VL_IsComboBoxEditable(HWND combo);
