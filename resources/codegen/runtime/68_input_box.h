// The input box: a question, a line to type in, OK and cancel.
#pragma once
#include "33_message_boxes.h"
#include "34_window_state.h"

struct VL_InputBoxResult
{
    std::wstring text;
    int code = 0; // 1 for OK, 0 for cancel
};

// Waits for the user over the program's active window. Enter is OK, Esc cancel. A long question is
// wrapped and makes the box taller. Cancel gives an empty text.
VL_InputBoxResult VL_InputBoxEx(const std::wstring &prompt,
                                const std::wstring &title = std::wstring(),
                                const std::wstring &initial = std::wstring());
std::wstring VL_InputBox(const std::wstring &prompt, const std::wstring &title = std::wstring(),
                         const std::wstring &initial = std::wstring());
// Of the last input box of this thread.
intptr_t VL_InputBox_GetCode();
std::wstring VL_InputBox_GetText();
intptr_t VL_InputBox_GetCode(const VL_InputBoxResult &result);
std::wstring VL_InputBox_GetText(const VL_InputBoxResult &result);
