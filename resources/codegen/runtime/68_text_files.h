// Files shown in text boxes: plain text and RTF.
#pragma once
#include "35_control_text.h"

// The file's text becomes the control's, whatever its encoding. False, and an unchanged control,
// when it cannot be read.
bool VL_LoadFile(HWND edit, const std::wstring &path);
// Formatted text for a rich edit. What is no RTF, and what goes to any other control, is loaded as
// plain text.
bool VL_LoadRTF(HWND edit, const std::wstring &path);
// False when the control is no rich edit or the file cannot be written.
bool VL_SaveRTF(HWND edit, const std::wstring &path);
