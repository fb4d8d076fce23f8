// What all windows of a program have in common: background, colours of controls, limits of size,
// scaling on screens of other resolution, the keyboard.
#pragma once
#include "73_background_pictures.h"

// Handles what every window does alike. Called first by each window procedure; true when the
// message is answered with `result`.
bool VL_WindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);

// Least and greatest size of the client area in design pixels; 0 sets no limit.
void VL_SetWindowLimits(HWND window, int minWidth, int minHeight, int maxWidth, int maxHeight);

// The mouse pointer over a control or window: \u624B\u578B hand, \u7B49\u5F85 wait, \u7981\u6B62
// no; anything else is the ordinary one.
void VL_SetCursorStyle(HWND control, const std::wstring &style);

// A plain window made while the program runs, hidden at first. When the program knows a window of
// that name, that one is made instead. 0 when it cannot be had.
intptr_t VL_CreateWindow(const std::wstring &name, const std::wstring &title = std::wstring(),
                         int width = 640, int height = 480);
// The same with the frame of a dialog, owned by the active window and centred over it.
intptr_t VL_CreateDialogWindow(const std::wstring &name, const std::wstring &title = std::wstring(),
                               int width = 400, int height = 300);
