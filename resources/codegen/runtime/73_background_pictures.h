// Pictures behind windows and controls.
#pragma once
#include "54_window_registry.h"

// What a control that shows pictures itself is offered; it answers nonzero when it takes it. With
// `bytes` the path means nothing; an empty path without bytes takes the picture away. An empty mode
// leaves the mode alone.
struct VL_ControlImage
{
    std::wstring path;
    const VL_ByteArray *bytes = nullptr;
    std::wstring mode;
    bool keepPicture = false; // only the mode changes
};
// wParam: a VL_ControlImage to show, or one whose path and mode the control fills.
const UINT VL_WM_SET_IMAGE = WM_APP + 0x1F08;
const UINT VL_WM_GET_IMAGE = WM_APP + 0x1F09;

// Modes: \u62C9\u4F38 fills the area, \u5E73\u94FA tiles it, \u5C45\u4E2D centres the picture in
// its own size, \u7F29\u653E fits it with its proportions kept. A window begins with the first.
// Relative paths count from the program's folder; a picture that cannot be read leaves the plain
// background. An empty path takes the picture away.
void VL_SetWindowBackground(HWND window, const std::wstring &path,
                            const std::wstring &mode = std::wstring());
void VL_SetWindowBackgroundFromBytes(HWND window, const VL_ByteArray &bytes);
void VL_SetWindowBackgroundScaleMode(HWND window, const std::wstring &mode);
std::wstring VL_GetWindowBackgroundPath(HWND window);
std::wstring VL_GetWindowBackgroundMode(HWND window);
// For panels, group boxes and whatever else; the same for a control that takes pictures itself.
void VL_SetControlBackgroundImage(HWND control, const std::wstring &path);
void VL_SetControlBackgroundImage(HWND control, const VL_ByteArray &bytes);
void VL_SetControlBackgroundImage(HWND control, const VL_Any &pathOrBytes);

// Readies a STATIC that serves as a panel: it shows its own colour or picture, passes on what
// controls inside it tell, and stays whole when resized.
void VL_PreparePanel(HWND panel);
// Makes a panel or group box the ground of those controls that lie on it without being inside it:
// the see-through ones show its colour or picture.
void VL_AddBackdrop(HWND container);

bool VL_HasBackgroundPicture(HWND window);
// Paints picture or colour over the whole client area; false when the window has neither.
bool VL_PaintBackground(HWND window, HDC context);
// A brush for what shows behind `control`, its origin set in `context`; NULL when nothing of the
// program's lies there. The runtime owns the brush.
HBRUSH VL_BrushBehind(HWND control, HDC context);
// A brush of the window's own picture or colour for painting from its client corner; NULL without.
HBRUSH VL_OwnGroundBrush(HWND window);
// Has patterns begin at that point, which is in the coordinates of the drawing.
void VL_SetBrushCorner(HDC context, int x, int y);
// The window whose colour or picture shows behind the control.
HWND VL_GroundOf(HWND control);
// Forgets scaled pictures after a change of size or colour.
void VL_RefreshBackground(HWND window);
