// What layouts are told: directions, alignments, shares and lengths, and the layouts of a design.
#pragma once
#include "97_flex_layout.h"

// By word or number: \u6C34\u5E73 0, \u5782\u76F4 1, \u6C34\u5E73\u53CD\u5411 2,
// \u5782\u76F4\u53CD\u5411 3. False for anything else.
bool VL_Flex_SetDirection(VL_FlexWindow window, const VL_Any &direction);
// \u5F00\u59CB 0, \u5C45\u4E2D 1, \u672B\u5C3E 2, \u7B49\u5206 3, \u73AF\u7ED5 4, \u5747\u5300 5.
bool VL_Flex_SetJustifyContent(VL_FlexWindow window, const VL_Any &justify);
// \u5F00\u59CB 0, \u5C45\u4E2D 1, \u672B\u5C3E 2, \u62C9\u4F38 3.
bool VL_Flex_SetAlignItems(VL_FlexWindow window, const VL_Any &align);
void VL_Flex_SetWrap(VL_FlexWindow window, bool wrap);
void VL_Flex_SetGap(VL_FlexWindow window, double gap);
void VL_Flex_SetPadding(VL_FlexWindow window, double all);
void VL_Flex_SetPadding(VL_FlexWindow window, double left, double top, double right, double bottom);

// A control's share of the room, whatever size it has itself.
void VL_Flex_SetFlex(VL_FlexWindow control, double share);
void VL_Flex_SetGrow(VL_FlexWindow control, double grow);
void VL_Flex_SetShrink(VL_FlexWindow control, double shrink);
void VL_Flex_SetMargin(VL_FlexWindow control, double all);
void VL_Flex_SetMargin(VL_FlexWindow control, double left, double top, double right, double bottom);
// A greatest length of 0 is none.
void VL_Flex_SetMinWidth(VL_FlexWindow control, double length);
void VL_Flex_SetMaxWidth(VL_FlexWindow control, double length);
void VL_Flex_SetMinHeight(VL_FlexWindow control, double length);
void VL_Flex_SetMaxHeight(VL_FlexWindow control, double length);

// The layouts of a designed window, which are no windows themselves. A box lays out what was added
// to it: controls of that window, spacers, other boxes. The box -1 is the window. Options are
// "key=value;key=value": flexDirection, justifyContent, alignItems, flexWrap, flexPadding, flexGap,
// margin, spacing, columns for a box; flexGrow, flexShrink, flexMinWidth, flexMaxWidth,
// flexMinHeight, flexMaxHeight for what stands in one; margin for a control.

// `kind` is 0 for a row, 1 for a column, 2 for a grid. The number of the box; -1 for no window or
// no such parent. Unless the window itself is laid out, its boxes keep their place and grow with
// the window where nothing stands in their way.
int VL_Flex_AddBox(HWND window, int parentBox, int kind, int x, int y, int width, int height,
                   const wchar_t *options = L"");
void VL_Flex_AddControl(HWND window, int box, HWND control, const wchar_t *options = L"");
// Takes the room that is left along its box.
void VL_Flex_AddSpacer(HWND window, int box, int width, int height, const wchar_t *options = L"");
// Lays the window itself out, with the options of a box.
void VL_Flex_SetWindow(HWND window, const wchar_t *options);
