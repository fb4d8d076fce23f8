// Edit boxes: place of the text, cue banner, round corners, keys. Everything is for EDIT and
// RICHEDIT50W unless told otherwise.
#pragma once
#include "35_control_text.h"

const int VL_VERTICAL_TOP = 1;
const int VL_VERTICAL_CENTER = 2;
const int VL_VERTICAL_BOTTOM = 3;
LRESULT CALLBACK SingleLineEditSubclassProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam,
                                            UINT_PTR id, DWORD_PTR data);
// Makes a single-line edit place its line as the number property "VL_SLEVerticalAlign" says
// (VL_VERTICAL_*), whatever its height and font become.
void VL_PrepareSingleLineEdit(HWND edit, int verticalAlign);
// Takes the property, the font and the height into account afresh.
void SingleLineEdit_ApplyFormatRect(HWND edit);
// What every edit and rich edit gets: Ctrl+A, the cue banner, the keys below.
void VL_PrepareEdit(HWND edit);

// Design pixels; 0 is square. Follows the control's size.
void VL_SetEditCornerRadius(HWND edit, int radius);
// Whether the keys are typed into a multi-line edit rather than moving through the window.
void VL_SetAcceptTab(HWND edit, bool on);
void VL_SetAcceptReturn(HWND edit, bool on);

// The grey text of an empty edit; `focused` shows it also while the edit has the focus. Without it
// the setting stays as it is.
void VL_Edit_SetCueBanner(HWND edit, const std::wstring &text);
void VL_Edit_SetCueBanner(HWND edit, const std::wstring &text, bool focused);
std::wstring VL_Edit_GetCueBanner(HWND edit);
