// What windows and threads of the program send each other.
#pragma once
#include "34_window_state.h"

// A lock for what several threads share. Objects of this class are made with `new` and never
// deleted where threads may outlive the program's globals.
class VL_Lock
{
public:
    VL_Lock() { InitializeCriticalSection(&m_section); }
    ~VL_Lock() { DeleteCriticalSection(&m_section); }
    VL_Lock(const VL_Lock &) = delete;
    VL_Lock &operator=(const VL_Lock &) = delete;
    CRITICAL_SECTION *section() { return &m_section; }

private:
    CRITICAL_SECTION m_section;
};

// Holds a lock as long as it lives; the same thread may hold it several times.
class VL_Locked
{
public:
    explicit VL_Locked(VL_Lock &lock) : m_lock(lock) { EnterCriticalSection(m_lock.section()); }
    ~VL_Locked() { LeaveCriticalSection(m_lock.section()); }
    VL_Locked(const VL_Locked &) = delete;
    VL_Locked &operator=(const VL_Locked &) = delete;

private:
    VL_Lock &m_lock;
};

// Events between windows. A sent one is handled when the call returns, a posted one later; false
// when the window does not take messages.
const UINT VL_WM_CUSTOM_EVENT = WM_APP + 0x1F01;
const UINT VL_WM_RECEIVE_TEXT = WM_APP + 0x1F02;
bool VL_SendEventTo(HWND window, int eventId, int param1, int param2);
bool VL_PostEventTo(HWND window, int eventId, int param1, int param2);
bool VL_SendTextTo(HWND window, const std::wstring &text);
// What such a message brought; false for other messages, and for one that was taken already.
bool VL_Window_TakeEvent(UINT message, WPARAM wParam, LPARAM lParam, int *id, int *param1,
                         int *param2);
bool VL_Window_TakeText(UINT message, WPARAM wParam, LPARAM lParam, std::wstring *text);
// Frees what is still on its way to a window that goes.
void VL_DropEventsTo(HWND window);

// Runs `call` on the thread of the main window and returns when it is done; without a main window
// on this thread.
void VL_CallOnMainThread(const std::function<void()> &call);
// Handles the message by which that is done; called for messages of the main window.
bool VL_TakeMainThreadCall(UINT message, LPARAM lParam);
