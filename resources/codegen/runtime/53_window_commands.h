// Windows of this and other programs: finding, placing, showing.
#pragma once
#include "53_frame_style.h"

// The lParam of a WM_CLOSE that the program itself posts.
const LPARAM VL_CLOSE_BY_PROGRAM = 0x564C;

// `window` is a handle or its number everywhere; false, 0 or an empty text when there is no such
// window. Windows of other programs are never waited for.

// A window whose title is the text or, when there is none, contains it (in any case, visible ones
// first). An empty title or class name fits all; both empty give 0.
intptr_t VL_FindWindow(const std::wstring &title, const std::wstring &className = std::wstring());
intptr_t VL_FindWindowInt(const std::wstring &title,
                          const std::wstring &className = std::wstring());
// The handle as a number, of a window or control, or of the window with that title.
intptr_t VL_GetWindowHandleInt(const VL_Any &window);
// Searches below `parent`, at any depth; 0 searches the windows of the desktop. With `exact` the
// title must be the text. The `index`th hit from 1.
intptr_t VL_GetWindowHandleIntEx(const std::wstring &title,
                                 const std::wstring &className = std::wstring(),
                                 const VL_Any &parent = 0, bool exact = false, intptr_t index = 1);

std::wstring VL_GetWindowTitle(const VL_Any &window);
bool VL_SetWindowTitle(const VL_Any &window, const std::wstring &title);
// Dictionaries of \u5DE6\u8FB9, \u9876\u8FB9 and of \u5BBD\u5EA6, \u9AD8\u5EA6 in design pixels.
// The size of a window of this program is the one of its client area, of others that of the whole.
VL_Any VL_GetWindowPosition(const VL_Any &window);
VL_Any VL_GetWindowSize(const VL_Any &window);
bool VL_SetWindowPosition(const VL_Any &window, int x, int y);
bool VL_SetWindowSize(const VL_Any &window, int width, int height);
// On the work area of its screen, or over its owner.
bool VL_CenterWindow(const VL_Any &window);

bool VL_SetWindowTopmost(const VL_Any &window, bool on = true);
bool VL_MaximizeWindow(const VL_Any &window);
bool VL_MinimizeWindow(const VL_Any &window);
bool VL_RestoreWindow(const VL_Any &window);
bool VL_HideWindow(const VL_Any &window);
bool VL_ShowWindow(const VL_Any &window);
// Asks the window to close; it does so when the running event is through.
bool VL_CloseWindow(const VL_Any &window);
bool VL_IsWindow(const VL_Any &window);
intptr_t VL_GetDesktopWindow();
intptr_t VL_GetForegroundWindow();
bool VL_SetForegroundWindow(const VL_Any &window);

// Draws on the screen, over all windows, until something else paints there. Place in pixels of the
// screen, size in points; several lines are possible.
bool VL_WriteScreenText(const std::wstring &text, intptr_t x, intptr_t y, intptr_t color = 0xFF,
                        intptr_t size = 24, const std::wstring &fontName = std::wstring());
// Fills a tree view with all windows of the system in their order: title, class and handle. A
// node's data is the handle. Returns the number of nodes.
intptr_t VL_TreeView_FillWindowHierarchy(const VL_Any &treeView);
