// The program's windows by name: showing, modal running, events between them.
#pragma once
#include "53_window_commands.h"
#include "54_message_loop.h"
#include "54_window_calls.h"

typedef void (*VL_WindowCreator)();

struct VL_WindowRecord
{
    HWND handle = NULL;
    HWND *variable = nullptr; // the program's variable of the handle
    VL_WindowCreator create = nullptr;
    bool isChild = false;
    bool createEventCalled = false;
    int order = 0;
};
extern std::map<std::wstring, VL_WindowRecord> g_windowRegistry;

// Raises the create event of that window; the program defines it.
extern void VL_CallWindowCreateEvent(const std::wstring &name);

// Names a window that exists. False for an empty name and a dead handle.
bool VL_Window_Register(const std::wstring &name, const VL_Any &window,
                        VL_WindowCreator create = nullptr, bool isChild = false);
// Names a window that `create` makes when it is first wanted; it leaves the handle in `handle`.
void VL_Window_RegisterCreator(const std::wstring &name, VL_WindowCreator create, HWND *handle);

// In all that follows `window` is a name, a handle, or a handle as a number. False, 0 or an empty
// text when there is no such window.

bool VL_Window_Unregister(const VL_Any &window);
intptr_t VL_Window_GetByName(const VL_Any &window);
std::wstring VL_Window_GetName(const VL_Any &window);
// Names in the order of registration; with `loadedOnly` of those that exist at the moment.
VL_Array VL_Window_GetAll(bool loadedOnly = false);
// Whether the window exists at the moment; one that is not yet made does not.
bool VL_Window_Exists(const VL_Any &window);
bool VL_Window_IsVisible(const VL_Any &window);

// Makes the window first when it has to. Its create event comes before it is seen, once after each
// making or closing.
bool VL_Window_Show(const VL_Any &window, int command = SW_SHOW);
// Makes the window, hidden, when it does not exist yet; NULL when it cannot be had.
HWND VL_MakeWindow(const VL_Any &window);
bool VL_Window_Hide(const VL_Any &window);
// What a click on the closing button does: other windows than the main one are hidden. The main
// window goes when the running event is through.
bool VL_Window_Close(const VL_Any &window);
bool VL_Window_Activate(const VL_Any &window);
// Shows one window and hides the one that was active.
bool VL_Window_SwitchTo(const VL_Any &window);
bool VL_Window_SetTopMost(const VL_Any &window, bool on = true);
bool VL_Window_SetOpacity(const VL_Any &window, int percent);
// Shows the window and waits until it is ended, closed or destroyed; the owner, by default the
// active window, cannot be used meanwhile. Returns what VL_Window_EndModal was given, else 0.
intptr_t VL_Window_ShowModal(const VL_Any &window, const VL_Any &owner = 0);
bool VL_Window_EndModal(const VL_Any &window, intptr_t result = 0);
bool VL_LoadWindow(const VL_Any &window, bool modal = false);
// Destroys the window; it is made anew when it is wanted again. For the main window like closing.
bool VL_UnloadWindow(const VL_Any &window);
bool VL_DestroyWindow(const VL_Any &window);

// The name that belongs to a program's variable of a window that is not made yet; else its handle.
VL_Any VL_WindowOfVariable(HWND &variable);
// The same for the variable of a window, which is made when the variable holds none.
inline bool VL_Window_Show(HWND &window, int command = SW_SHOW)
{
    return VL_Window_Show(VL_WindowOfVariable(window), command);
}
inline bool VL_Window_SwitchTo(HWND &window)
{
    return VL_Window_SwitchTo(VL_WindowOfVariable(window));
}
inline intptr_t VL_Window_ShowModal(HWND &window, const VL_Any &owner = 0)
{
    return VL_Window_ShowModal(VL_WindowOfVariable(window), owner);
}

// The program's window that is active, or was last.
intptr_t VL_Window_GetActiveHandle();
std::wstring VL_Window_GetActiveName();

// Events to a window, see VL_WM_CUSTOM_EVENT and VL_WM_RECEIVE_TEXT: a sent one is handled when the
// call returns, a posted one later.
bool VL_Window_SendEvent(const VL_Any &window, int eventId, int param1 = 0, int param2 = 0);
bool VL_Window_PostEvent(const VL_Any &window, int eventId, int param1 = 0, int param2 = 0);
bool VL_Window_SendText(const VL_Any &window, const std::wstring &text);
