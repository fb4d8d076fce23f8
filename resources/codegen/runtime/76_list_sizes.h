// Heights of combo boxes and sizes of the items of list boxes, kept in design pixels.
#pragma once
#include "76_choice_lists.h"

// How many items the open list shows at once; more are scrolled.
void VL_SetDropDownCount(HWND combo, int count);
// Keeps the closed combo box `height` design pixels high, whatever its font, and its open list
// `maxItems` items. Resizing the control afterwards sets the closed height.
void VL_PrepareComboBox(HWND combo, int height, int maxItems);
// Design pixels; 0 leaves a size to the control. A column width is for list boxes of several
// columns. `horizontalScroll` keeps the width that can be scrolled at that of the longest item.
void VL_PrepareListBox(HWND list, int itemHeight, int columnWidth, bool horizontalScroll);
