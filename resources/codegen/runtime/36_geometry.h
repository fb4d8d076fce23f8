// Place, size and state of controls and windows, in design pixels.
#pragma once
#include "34_window_state.h"

// The window or control that a value means: its handle, or that as a number. NULL when there is no
// such window.
HWND VL_ToWindow(const VL_Any &window);

// Of a control: its place in the client area of its parent, which is the window or a tab page. Of a
// window: the place of its frame on the screen and the size of its client area; of a minimised one
// those that it will take when restored. A maximised window takes a new size when it is restored.
// What is no window reads as 0.
int VL_GetX(HWND window);
int VL_GetY(HWND window);
int VL_GetWidth(HWND window);
int VL_GetHeight(HWND window);
void VL_SetX(HWND window, int x);
void VL_SetY(HWND window, int y);
void VL_SetWidth(HWND window, int width);
void VL_SetHeight(HWND window, int height);
// All at once, so that nothing is painted in between.
void VL_SetBounds(HWND window, int x, int y, int width, int height);
// Pixels that the frame, caption and menu of a window add to its client area.
SIZE VL_FrameSize(HWND window);

// Of combo boxes with a list that opens: the height of both as Windows tells it, and placing one in
// its parent (in pixels, with that height). One with the window property "VL_KeepsHeight" keeps the
// list's height by itself and counts as an ordinary control.
bool VL_IsDropDown(HWND control);
int VL_GetOpenedHeight(HWND combo);
void VL_PlaceDropDown(HWND combo, const RECT &place);

// A control's own flag: one that is shown counts as visible on a hidden window too.
bool VL_IsVisible(HWND window);
// Hiding or disabling the control that has the focus hands the focus on.
void VL_SetVisible(HWND window, bool visible);
bool VL_IsEnabled(HWND window);
void VL_SetEnabled(HWND window, bool enabled);

// The same as commands; false when there is no such window.
bool VL_ShowControl(const VL_Any &control);
bool VL_HideControl(const VL_Any &control);
bool VL_EnableControl(const VL_Any &control);
bool VL_DisableControl(const VL_Any &control);
