// List views: columns, rows, icons, check boxes. Rows and columns count from 0; what is
// out of range is left alone or reads as empty.
#pragma once
#include "77_list_drawing.h"

#include <initializer_list>

// Readies a new list view: icons of that many design pixels in its icon view, header colours from
// the window properties "VL_LvHdrBg" and "VL_LvHdrFg" (COLORREF + 1), and drawing once for all
// changes that a program makes in a row.
void VL_PrepareListView(HWND list, int iconWidth = 32, int iconHeight = 32);
// 0 \u56FE\u6807 icons, 1 \u5C0F\u56FE\u6807 small icons, 2 \u5217\u8868 list, 3 \u8BE6\u7EC6
// details.
// The number or the word.
void VL_ListView_SetViewMode(HWND list, const VL_Any &mode);

// The index of the new column, -1 when there is none. Width in design pixels; alignment 0
// \u5DE6\u5BF9\u9F50 left, 1 \u5C45\u4E2D centred, 2 \u53F3\u5BF9\u9F50 right.
int VL_ListView_AddColumn(HWND list, const std::wstring &title, int width = 100, int align = 0);
int VL_ListView_AddColumn(HWND list, const std::wstring &title, int width,
                          const std::wstring &align);
void VL_ListView_DeleteColumn(HWND list, int column);
int VL_ListView_GetColumnCount(HWND list);

// Each gives the index of the row, -1 when there is none. A row index out of range appends.
int VL_ListView_AddRow(HWND list, std::initializer_list<std::wstring> cells);
int VL_ListView_AddRow(HWND list, const VL_Array &cells);
int VL_ListView_AddRowWithImage(HWND list, int image, std::initializer_list<std::wstring> cells);
int VL_ListView_AddRowWithImage(HWND list, int image, const VL_Array &cells);
int VL_ListView_InsertRow(HWND list, int row, std::initializer_list<std::wstring> cells);
int VL_ListView_InsertRow(HWND list, int row, const VL_Array &cells);
// `cells` row by row; NULL counts as an empty text.
void VL_ListView_AddRowsText(HWND list, const wchar_t *const *cells, int rows, int columns);
int VL_ListView_AddItem(HWND list, const std::wstring &text);
int VL_ListView_AddItem(HWND list, const std::wstring &text, int image);
int VL_ListView_AddItem(HWND list, const std::wstring &text, const std::wstring &iconPath);
// The index of an icon, or the path of one.
int VL_ListView_AddItemWithImage(HWND list, const std::wstring &text, const VL_Any &icon);
// One row for each item; an item that is an array fills the columns.
void VL_ListView_AddItemsFromArray(HWND list, const VL_Array &items);
void VL_ListView_AddItemsFromArray(HWND list, const VL_Any &items);
void VL_ListView_AddItemsFromArray(HWND list, const VL_Array2D &rows);
void VL_ListView_AddItemsFromArrays(HWND list, const VL_Array2D &rows);
void VL_ListView_DeleteRow(HWND list, int row);
void VL_ListView_Clear(HWND list);

void VL_ListView_SetSubItem(HWND list, int row, int column, const std::wstring &text);
std::wstring VL_ListView_GetItemText(HWND list, int row, int column = 0);
VL_Array VL_ListView_GetRowData(HWND list, int row);
// The text of the row that VL_GetSelectedIndex gives.
std::wstring VL_ListView_GetSelectedText(HWND list);
void VL_ListView_SelectAll(HWND list);
void VL_ListView_EnsureVisible(HWND list, int row);
void VL_ListView_SetEnsureVisible(HWND list, int row);
void VL_ListView_SetChecked(HWND list, int row, bool checked);
bool VL_ListView_IsChecked(HWND list, int row);

// Image list for large icons, or for the small ones of all views but the first. Design pixels.
void VL_ListView_CreateImageList(HWND list, int width, int height, bool smallIcons = false);
// The index of the icon in both image lists, -1 when the file cannot be read.
int VL_ListView_AddIcon(HWND list, const std::wstring &path, bool smallIcons = false);

// Row and column under the mouse as it stood for the message that is handled; -1 for none.
void VL_ListView_HitTest(HWND list, int *row, int *column);
std::wstring VL_ListView_DebugInfo(HWND list);
