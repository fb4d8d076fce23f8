// What keeps thousands of changes to a control quick.
#pragma once
#include "34_window_state.h"

// The procedure of the window's class, past all that was put ahead of it. Rows and nodes come by
// the thousand: what goes straight to the control takes a tenth of the time. NULL for no window.
WNDPROC VL_ClassProcedure(HWND window);

// Records of windows by handle, where looking up a window property would cost too much.
class VL_WindowTable
{
public:
    VL_WindowTable();
    VL_WindowTable(const VL_WindowTable &) = delete;
    VL_WindowTable &operator=(const VL_WindowTable &) = delete;
    void *find(HWND window);
    // NULL takes the window out.
    void set(HWND window, void *record);

private:
    CRITICAL_SECTION m_lock;
    std::map<HWND, void *> m_records;
};

// A control that draws after each of thousands of changes takes seconds. Its drawing is off from
// the first change until messages are handled again, or until something needs to know places.
class VL_HeldDrawing
{
public:
    // Posted by the control to itself: what changed is drawn now.
    static const UINT Message = WM_APP + 0x1D76;

    void hold(HWND control);
    // True when drawing was off and is on now.
    bool show(HWND control);
    bool isHeld() const { return m_held; }
    // Nothing is drawn between these; they nest.
    void begin(HWND control);
    bool end(HWND control);
    // The control got WM_SETREDRAW: when it is the program's own, the program decides from now on.
    void seeSetRedraw();

private:
    void setRedraw(HWND control, bool on);

    bool m_held = false;
    bool m_own = false; // a message of this class is on its way
    int m_updates = 0;
};
