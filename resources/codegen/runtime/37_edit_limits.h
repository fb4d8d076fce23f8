// What may be typed into edit boxes and how it shows: password, limit, case.
#pragma once
#include "35_control_text.h"

void VL_SetPasswordMode(HWND edit, bool on);
bool VL_GetPasswordMode(HWND edit);
// The first character counts; empty is the system's dot. Shows only in password mode.
void VL_SetPasswordChar(HWND edit, const std::wstring &text);
std::wstring VL_GetPasswordChar(HWND edit);
// Characters that can be typed; 0 and less is no limit.
void VL_SetTextLimit(HWND edit, int limit);
// All upper case, all lower case or, for any other word, as typed.
void VL_SetCharCase(HWND edit, const std::wstring &word);
