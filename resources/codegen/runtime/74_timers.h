// Timers: objects that call a function again and again, and the timer of a window.
#pragma once
#include "54_window_calls.h"

#define VL_TIMERCLASS_DEFINED

// A window without looks on the main thread that gets what other threads and timers send; made on
// first use by the main thread. NULL on other threads as long as there is none.
HWND VL_DispatchWindow();
// What that window does with such a message; NULL for nothing. The thread section sets it.
const UINT VL_WM_RUN_QUEUE = WM_APP + 0x1F0A;
extern void (*g_vlRunQueueHook)();

struct VL_TimerState;

// Calls a function on the main thread each time the interval is over, also while message boxes are
// open. A call that lasts longer than the interval is not called again meanwhile. The function may
// stop, restart or destroy its timer.
class VL_TimerClass
{
public:
    VL_TimerClass();
    ~VL_TimerClass();
    VL_TimerClass(VL_TimerClass &&other) noexcept;
    VL_TimerClass &operator=(VL_TimerClass &&other) noexcept;
    VL_TimerClass(const VL_TimerClass &) = delete;
    VL_TimerClass &operator=(const VL_TimerClass &) = delete;

    // Begins anew when it runs. Returns the timer's number, 0 for an interval below 1 or without a
    // function.
    intptr_t start(intptr_t milliseconds, std::function<void()> callback);
    void stop();
    bool isRunning() const;

private:
    std::shared_ptr<VL_TimerState> m_state;
};

// The window's own timer: it gets WM_TIMER with this number.
const UINT_PTR VL_WINDOW_TIMER = 0x564C;
// False for an interval below 1 and for what is no window of the program.
bool VL_SetTimer(HWND window, intptr_t milliseconds);
void VL_KillTimer(HWND window);
