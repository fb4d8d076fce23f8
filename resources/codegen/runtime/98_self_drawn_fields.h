// Text boxes and combo boxes of self-drawn windows.
#pragma once
#include "95_self_drawn_frame.h"

// Puts an EDIT into a dark frame of its own with room around the text. A single line stands as the
// number property "VL_SLEVerticalAlign" says (1 top, 2 middle, 3 bottom; the middle without one).
// `placeholder` shows while the box is empty, with `whenFocused` also while it has the focus;
// EM_SETCUEBANNER changes it, EM_GETCUEBANNER tells it. May be called again.
void VL_VlwinPrepareEdit(HWND edit, int cornerRadius, const std::wstring &placeholder,
                         bool whenFocused = false);

// Gives a COMBOBOX a dark face and a dark list. Colours set by VL_SetBgColor and VL_SetTextColor
// hold for both.
void VL_VlwinApplyComboNoTheme(HWND combo);
