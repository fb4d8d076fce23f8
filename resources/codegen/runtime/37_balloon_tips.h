// Balloons that point to a control.
#pragma once
#include "35_control_text.h"

// Shows a balloon below the control until it is hidden, the user types or goes elsewhere, or ten
// seconds have passed. `icon`: 0 none, 1 information, 2 warning, 3 error. Titles are cut at 99
// characters.
void VL_Edit_ShowBalloonTip(HWND control, const std::wstring &title, const std::wstring &text,
                            int icon = 1);
void VL_Edit_HideBalloonTip(HWND control);
// The same as commands. False for something that is no window, and for an empty text.
bool VL_BalloonTip_Show(HWND control, const std::wstring &text, const std::wstring &title = L"",
                        intptr_t icon = 1);
bool VL_BalloonTip_Show(intptr_t control, const std::wstring &text, const std::wstring &title = L"",
                        intptr_t icon = 1);
bool VL_BalloonTip_Hide(HWND control);
bool VL_BalloonTip_Hide(intptr_t control);
