// The frame, icon and look of a window as a whole.
#pragma once
#include "01_images.h"
#include "36_geometry.h"
#include "41_paths.h"

// `window` is a handle or its number everywhere; false when there is no such window.

// Covers the screen without a frame and back. What the window was before is remembered.
bool VL_SetFullscreen(const VL_Any &window, bool on);
bool VL_IsFullscreen(HWND window);
// Takes caption and frame away, keeping the client area's size; `resizable` edges still size it.
bool VL_SetWindowBorderless(const VL_Any &window, bool on, bool resizable = false);
bool VL_IsBorderless(HWND window);
bool VL_IsBorderResizable(HWND window);
// Moves the window with the mouse until the button is let go; for a control its window moves.
bool VL_StartWindowDrag(const VL_Any &window);
// A file (.ico, .png, .bmp and what else GDI+ reads), its icons freed with the window; a relative
// path counts from the program's folder. A number is the handle of an icon that the caller keeps.
// An empty path and 0 take the icon away.
bool VL_SetWindowIcon(const VL_Any &window, const VL_Any &icon);
// 0 cannot be seen, 100 is solid.
bool VL_SetWindowOpacity(const VL_Any &window, int percent);
int VL_GetWindowOpacity(const VL_Any &window);
bool VL_SetShowInTaskbar(const VL_Any &window, bool on);

// The file that a path in a program means: from the program's folder when it is there, otherwise
// the path as it stands.
std::wstring VL_FindProgramFile(const std::wstring &path);
