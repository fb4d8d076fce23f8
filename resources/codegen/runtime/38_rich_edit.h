// Rich edits: set-up, formats of the selection, RTF.
#pragma once
#include "35_control_text.h"

// No limit of length, change notifications, one font for Chinese and Latin text, colours by
// VL_SetTextColor for all of the text, the keys of every edit.
void VL_PrepareRichEdit(HWND edit, bool wordWrap);

// Format what is selected; without a selection, what is typed next. Colours are 0xBBGGRR, -1 is the
// control's own; sizes are points, 0 leaves the size alone, as an empty name does with the font.
void VL_RE_SetSelectionColor(HWND edit, int color);
void VL_RE_SetSelectionBackColor(HWND edit, int color);
void VL_RE_SetSelectionBold(HWND edit, bool on);
void VL_RE_SetSelectionItalic(HWND edit, bool on);
void VL_RE_SetSelectionUnderline(HWND edit, bool on);
void VL_RE_SetSelectionFont(HWND edit, const std::wstring &name, int size);

// The control's content as RTF; empty for a control that is no rich edit.
std::wstring VL_RE_GetRTF(HWND edit);
// The same as bytes, as they stand in a file.
std::string VL_RE_GetRtfBytes(HWND edit);
// False, and an unchanged control, for what does not begin like RTF or is no rich edit.
bool VL_RE_SetRTF(HWND edit, const std::wstring &rtf);
bool VL_RE_SetRtfBytes(HWND edit, const std::string &rtf);
