// The test window as a self-drawn one.
#pragma once

#include "95_self_drawn_frame.h"
#include "window_test.h"

#include <algorithm>

const int kTitleColor = RGB(60, 60, 60);
const int kClientColor = RGB(40, 44, 48);

inline LRESULT CALLBACK darkProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR, DWORD_PTR)
{
    LRESULT result = 0;
    if (VL_VlwinMessage(window, message, wParam, lParam, &result))
        return result;
    if (message == WM_ERASEBKGND) {
        // As the general frame does, which is asked next.
        RECT all;
        GetClientRect(window, &all);
        FillRect((HDC)wParam, &all, VL_BgBrush(window));
        return 1;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

// 600 by 400 pixels at 10, 10; made on first use.
inline HWND darkWindow()
{
    const HWND window = testWindow();
    if (VL_HasBgColor(window))
        return window;
    SetWindowLongPtrW(window, GWL_STYLE, WS_POPUP | WS_CLIPCHILDREN | WS_VISIBLE);
    SetWindowSubclass(window, darkProcedure, 1, 0);
    VL_VlwinPrepareWindow(window, kTitleColor, kClientColor, true, true, true);
    SetWindowPos(window, NULL, 10, 10, 600, 400, SWP_NOZORDER | SWP_FRAMECHANGED);
    pumpMessages();
    return window;
}

// Presses and releases the left button at a point of the client area.
inline void clickAt(HWND window, int x, int y)
{
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

// The colour at a point of the control's whole rectangle, frame included, after painting.
inline COLORREF windowPixel(HWND control, int x, int y)
{
    UpdateWindow(control);
    pumpMessages();
    const HDC context = GetWindowDC(control);
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(control, context);
    return color;
}

// How many pixels of a part of the control's whole rectangle are not `color`.
inline int pixelsUnlike(HWND control, RECT place, COLORREF color)
{
    UpdateWindow(control);
    pumpMessages();
    const HDC context = GetWindowDC(control);
    int count = 0;
    for (int y = place.top; y < place.bottom; ++y) {
        for (int x = place.left; x < place.right; ++x)
            count += GetPixel(context, x, y) != color ? 1 : 0;
    }
    ReleaseDC(control, context);
    return count;
}

// Grows with the GDI objects in use: their number or, where the system does not tell it, the
// highest place in the table of handles once its gaps are filled.
inline int gdiMark()
{
    const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (count)
        return (int)count;
    int highest = 0;
    std::vector<HBRUSH> brushes;
    for (int i = 0; i < 400; ++i) {
        brushes.push_back(CreateSolidBrush(RGB(1, 2, 3)));
        highest = std::max(highest, (int)LOWORD((ULONG_PTR)brushes.back()));
    }
    for (const HBRUSH brush : brushes)
        DeleteObject(brush);
    return highest;
}
