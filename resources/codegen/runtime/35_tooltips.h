// Tool tips of controls.
#pragma once
#include "34_window_state.h"

// The text shown while the mouse rests on the control, also on a disabled one; lines are kept.
// Empty removes it.
void VL_SetTooltip(HWND control, const std::wstring &text);
std::wstring VL_GetTooltip(HWND control);
