// The window class of the large text box.
#pragma once
#include "93_text_messages.h"

// Registers the class L"VL_VirtualTextBox" once; NULL when that fails.
const wchar_t *VTB_WindowClass();
// Runs `action` on the thread of such a control; false for anything that is none.
bool VTB_Call(HWND control, const std::function<void(VL_TextMessages &)> &action);
