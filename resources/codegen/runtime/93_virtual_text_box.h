// The large text box, a control of our own: texts of many megabytes open, scroll and change without
// delay.
#pragma once
#include "34_window_state.h"

// The class L"VL_VirtualTextBox" is registered when the first control is made. Place and size are
// device pixels. NULL when the window cannot be made. The control tells its owner 1 when its text
// changes and 0x0217 when another line has become the first one shown. WM_SETTEXT and the functions
// about the text of controls work on it as on an edit box.
HWND VL_CreateVirtualTextBox(HWND parent, int x, int y, int w, int h, int id);

// All of these do nothing, or answer 0 or an empty text, for anything but such a control. They may
// be called on any thread. Lines and columns count from 1.
void VL_VTB_ShowLineNumbers(HWND box, bool on = true);
// Design pixels; 0 takes the room that the numbers need.
void VL_VTB_SetLineNumberWidth(HWND box, int width);
void VL_VTB_SetReadOnly(HWND box, bool on = true);
// Colours the words of the language; on from the beginning.
void VL_VTB_SetSyntaxHighlight(HWND box, bool on = true);
void VL_VTB_SetWordWrap(HWND box, bool on = true);
// 1 to 32, 4 from the beginning; the number property "VL_VTB_TabSpaces".
void VL_VTB_SetTabSpaces(HWND box, int spaces);
void VL_VTB_SetTextColor(HWND box, int color);
void VL_VTB_SetBgColor(HWND box, int color);
// The colour of marked lines that are marked without a colour of their own from now on.
void VL_VTB_SetHighlightColor(HWND box, int color);

int VL_VTB_GetLineCount(HWND box);
int VL_VTB_GetCurrentLine(HWND box);
int VL_VTB_GetCurrentColumn(HWND box);
// Beyond the text it is the last line, beyond the line its end. Scrolls there.
void VL_VTB_SetCursorPos(HWND box, int line, int column = 1);
// Without its line end; empty for a line that is none.
std::wstring VL_VTB_GetLineText(HWND box, int line);

// The whole file becomes the text: UTF-8, UTF-16 or 936, found out by itself. False, and the text
// stays, when it cannot be read.
bool VL_VTB_LoadFile(HWND box, const std::wstring &path);
// In the encoding and with the line ends of the file that was loaded, else UTF-8 and CR LF.
bool VL_VTB_SaveFile(HWND box, const std::wstring &path);
