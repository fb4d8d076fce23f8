// The table of self-drawn windows: a dark list view.
#pragma once
#include "98_self_drawn_rows.h"

// Draws the header of the list view in dark colours.
void VL_VlwinAttachListHeaderSubclass(HWND list);
// The same and dark rows, a thin frame, own grid lines in place of LVS_EX_GRIDLINES, double
// buffering. `rowHeader` shows the numbers of the rows, from 1, in a strip of `rowHeaderWidth`
// design pixels at the left, which is no column: column numbers stay. Colours below 0 are the
// theme's. May be called again.
void VL_VlwinPrepareTable(HWND list, bool rowHeader, int rowHeaderWidth,
                          const wchar_t *rowHeaderTitle, int headerBack, int headerFore);
// Answers NM_CUSTOMDRAW of a prepared list view; 0 for anything else.
LRESULT VL_VlwinListViewNmCustomDraw(LPARAM lParam);
