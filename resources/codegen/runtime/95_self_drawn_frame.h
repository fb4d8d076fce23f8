// Self-drawn windows: their title bar, frame and client area.
#pragma once
#include "94_self_drawn_drawing.h"

// The main window's settings, kept for program text that reads them; each window has its own by
// VL_VlwinPrepareWindow.
extern bool g_vlwinSelfDrawActive;
extern COLORREF g_vlwinTitleBarColor;
extern COLORREF g_vlwinClientBgColor;
extern HBRUSH g_vlwinClientBgBrush;
extern std::wstring g_vlwinWndTitle;

// Height of the title bar and width of a caption button, in design pixels.
const int VL_VLWIN_TITLE_HEIGHT = 40;
const int VL_VLWIN_CAPTION_BUTTON = 46;

// Turns a window without a caption into one that draws its own, at the top of its client area,
// whose size stays. May be called again to change the settings.
void VL_VlwinPrepareWindow(HWND window, int titleColor, int clientColor, bool minimizeBox,
                           bool maximizeBox, bool resizable);
// Ahead of everything else in the window's procedure; true when `result` is the answer. Leaves
// windows alone that were not prepared.
bool VL_VlwinMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);
// Keeps the desktop from drawing a frame or caption of its own over the window's.
void VL_VlwinDisableNcRendering(HWND window);
