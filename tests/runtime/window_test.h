// A window for the runtime tests that need one: it records what its controls tell it.
#pragma once

#include "34_window_state.h"
#include "runtime_test.h"

#include <string>
#include <vector>

struct Told
{
    UINT message; // WM_COMMAND, WM_NOTIFY, WM_HSCROLL or WM_VSCROLL
    int id;
    int code;
    LPARAM data;
};

// The window, shown at 10, 10 with a client area of 600 by 400 pixels; made on first use.
HWND testWindow();
// A child of that window with the styles WS_CHILD | WS_VISIBLE | `style`.
HWND testControl(const wchar_t *windowClass, const wchar_t *text, DWORD style, int id, RECT place);
// Handles all messages that wait, paint messages included.
void pumpMessages();
// What the controls told since the last call.
std::vector<Told> takeTold();
// How often `code` came from the control `id` among what was told.
int countOf(const std::vector<Told> &told, int id, int code);
// The colour on the screen at a point of the window's client area, after painting.
COLORREF pixelAt(HWND window, int x, int y);
