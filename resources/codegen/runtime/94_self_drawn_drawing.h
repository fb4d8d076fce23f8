// What self-drawn windows and their controls share: the dark theme's colours, drawing off screen,
// smooth shapes, text.
#pragma once
#include "43_background.h"

// Colours of the dark theme, as 0xBBGGRR.
const COLORREF VL_VLWIN_TEXT = RGB(204, 204, 204);
const COLORREF VL_VLWIN_FRAME = RGB(70, 70, 74);
const COLORREF VL_VLWIN_FIELD = RGB(30, 30, 30);
const COLORREF VL_VLWIN_FIELD_READ_ONLY = RGB(37, 37, 38);
const COLORREF VL_VLWIN_BORDER = RGB(63, 63, 70);
const COLORREF VL_VLWIN_GREY = RGB(128, 128, 128);
const COLORREF VL_VLWIN_ACCENT = RGB(0, 120, 215);
// Takes the visual style off a control, so that its own colours hold.
void VL_VlwinStripControlTheme(HWND control);

bool VL_VlwinIsLight(COLORREF color);
void VL_VlwinFill(HDC dc, const RECT &place, COLORREF color);
// Smooth drawing in device pixels. A rectangle with round corners; its border lies inside, a border
// of width 0 and a filling of CLR_NONE are left out.
void VL_VlwinRoundRect(HDC dc, const RECT &place, int radius, COLORREF fill, COLORREF border,
                       int borderWidth);
void VL_VlwinEllipse(HDC dc, const RECT &place, COLORREF fill, COLORREF border, int borderWidth);
// A line through `count` points, two numbers each; whole numbers are the middle of a pixel.
void VL_VlwinStroke(HDC dc, const float *points, int count, float width, COLORREF color);
// The tick of a check box of that size.
void VL_VlwinTick(HDC dc, const RECT &box, COLORREF color);
// In the control's font, or in a given one, on what stands there; very long text is cut.
// VL_VlwinTextSize tells the room that the text takes in `width`.
void VL_VlwinDrawText(HWND control, HDC dc, const std::wstring &text, RECT place, UINT format,
                      COLORREF color);
void VL_VlwinDrawTextIn(HFONT font, HDC dc, const std::wstring &text, RECT place, UINT format,
                        COLORREF color);
SIZE VL_VlwinTextSize(HWND control, HDC dc, const std::wstring &text, int width, UINT format);
// The text of any window, without a limit to its length.
std::wstring VL_VlwinWindowText(HWND window);
// What the parent shows behind the control; `dc` has the coordinates of the control's client area,
// moved by `offsetX`, `offsetY`.
void VL_VlwinParentBackground(HWND control, HDC dc, int offsetX = 0, int offsetY = 0);
// The background colour that the control was given, else its window's.
COLORREF VL_VlwinBackColor(HWND control);
// Asks for WM_MOUSELEAVE.
void VL_VlwinTrackLeave(HWND control);
// The flags by which text hides its underlined letters until the keyboard is used.
UINT VL_VlwinPrefixFormat(HWND control);
// Whether the control has the focus and the window shows where it is.
bool VL_VlwinShowsFocus(HWND control);
