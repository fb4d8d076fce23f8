// The push button of self-drawn windows, a window class of its own.
#pragma once
#include "43_buttons.h"
#include "95_self_drawn_frame.h"

// Registers the class L"VL_D2DPushButton"; may be called any number of times. The button takes the
// styles of a BUTTON (plain, default, command link, split button), answers BM_CLICK, BM_GETSTATE,
// BM_SETSTATE, BM_SETSTYLE, BCM_SETNOTE and BCM_GETNOTE, and tells BN_CLICKED. Its colours are
// those of VL_SetBgColor and VL_SetTextColor. The number property "VL_VlwinButtonType" (1 command
// link, 2 split button) goes before the style, a note that was set before the text property
// "VL_ButtonNote".
void VL_D2DStdControls_Register();

// Corner radius in design pixels; the text 0 in the middle, 1 at the left, 2 at the right; a
// picture beside it, empty for none. A relative path counts from the program's folder.
void VL_VlwinButton_SetOptions(HWND button, int cornerRadius, int textAlign,
                               const std::wstring &iconPath);

// A click on the arrow of a split button, or the down key, is VL_Button_ShowDropDown.
