// What lies behind a control that is not opaque: its parent and the controls below it.
#pragma once
#include "34_window_state.h"

// Paints into `dc`, whose origin is the control's client area, what would show there without the
// control: the parent's colour or picture and the siblings that lie below. Does nothing while a
// control is itself painted as such a background, for then it is there already.
void VL_PaintParentBackground(HWND control, HDC dc);
// A control that uses it says so when it is made, and when it goes.
void VL_BeginShineThrough(HWND control);
void VL_EndShineThrough(HWND control);
// Has the controls painted afresh through which this one shines.
void VL_RepaintAbove(HWND control);
// The order of controls is remembered for the twentieth part of a second, because to ask for it
// takes long in a window of many controls. To be called after a change of it.
void VL_ForgetSiblings();
// A control calls this first when it is asked to print itself into `dc`: true when it must paint
// over what is there and nothing behind it.
bool VL_IsPaintingBackground();

// Whether it is a window of that class and of this program, so that pointers may be sent to it.
bool VL_IsOwnControl(HWND control, const wchar_t *className);
