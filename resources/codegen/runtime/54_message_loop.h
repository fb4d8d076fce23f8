// The message loop and the keyboard in the program's windows.
#pragma once
#include "53_window_commands.h"

// Sent to a window when a key goes down (wParam the key, lParam WM_KEYDOWN) or up (WM_KEYUP) that
// it does not get itself: one of its controls has the focus, or the key moves the focus.
const UINT VL_WM_KEY_PREVIEW = WM_APP + 0x1F03;
void VL_KeyPreview(const MSG &message);
// Previews keys and lets Tab, Enter, Esc and arrows move about in the window; true when the message
// is dealt with. Every message loop calls it ahead of TranslateMessage.
bool VL_FilterMessage(MSG *message);
// Runs until the program quits; returns its exit code.
int VL_RunMessageLoop();
