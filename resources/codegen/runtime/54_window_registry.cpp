// The program's windows by name: showing, modal running, events between them.
#include "54_window_registry.h"

#include <algorithm>

std::map<std::wstring, VL_WindowRecord> g_windowRegistry;

namespace vl_window_registry {
namespace {

const UINT_PTR kWatchSubclass = 0x564C54;
const wchar_t kWatchName[] = L"VL_Watch";
const UINT kDestroyLater = WM_APP + 0x1F05;

// Threads other than the main one ask for windows.
VL_Lock &lock()
{
    static VL_Lock *made = new VL_Lock;
    return *made;
}

// One window in a modal loop.
struct ModalRun
{
    HWND window = NULL;
    HWND owner = NULL;
    bool ended = false;
    intptr_t result = 0;
};
std::vector<ModalRun *> g_modalRuns;

HWND g_lastActive = NULL;
int g_registered = 0;

// Goes with each registered window. `depth` counts its messages that are being handled: as long as
// there is one, code that uses the window or its controls is running.
struct Watch
{
    int depth = 0;
    bool destroyWhenIdle = false;
    bool isGone = false;
};

ModalRun *modalRunOf(HWND window)
{
    for (ModalRun *run : g_modalRuns) {
        if (run->window == window)
            return run;
    }
    return nullptr;
}

void wakeLoop()
{
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

// The owner must be usable before the modal window goes: else another program's window would come
// to the front.
void freeOwner(HWND window)
{
    const ModalRun *run = modalRunOf(window);
    if (!run)
        return;
    if (run->owner)
        EnableWindow(run->owner, TRUE);
    wakeLoop();
}

void forget(HWND window)
{
    {
        VL_Locked locked(lock());
        for (auto &entry : g_windowRegistry) {
            VL_WindowRecord &record = entry.second;
            if (record.handle != window)
                continue;
            record.handle = NULL;
            record.createEventCalled = false;
        }
        for (auto &entry : g_windowRegistry) {
            if (entry.second.variable && *entry.second.variable == window)
                *entry.second.variable = NULL;
        }
    }
    VL_DropEventsTo(window);
    if (g_lastActive == window)
        g_lastActive = NULL;
}

LRESULT CALLBACK watchWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR data)
{
    Watch *watch = (Watch *)data;
    LRESULT result = 0;
    ++watch->depth;
    switch (message) {
    case WM_WINDOWPOSCHANGING:
        if (((const WINDOWPOS *)lParam)->flags & SWP_HIDEWINDOW)
            freeOwner(window);
        break;
    case WM_DESTROY:
        freeOwner(window);
        break;
    case WM_ACTIVATE:
        if (LOWORD(wParam) != WA_INACTIVE)
            g_lastActive = window;
        break;
    default:
        break;
    }
    if (message == kDestroyLater) {
        watch->destroyWhenIdle = watch->depth > 1;
        if (watch->depth == 1)
            DestroyWindow(window);
    } else if (!VL_TakeMainThreadCall(message, lParam)) {
        if (message == WM_NCDESTROY) {
            RemoveWindowSubclass(window, watchWindow, kWatchSubclass);
            RemovePropW(window, kWatchName);
            watch->isGone = true;
            forget(window);
        }
        result = DefSubclassProc(window, message, wParam, lParam);
    }
    if (--watch->depth > 0)
        return result;
    if (watch->isGone) {
        delete watch;
    } else if (watch->destroyWhenIdle) {
        watch->destroyWhenIdle = false;
        PostMessageW(window, kDestroyLater, 0, 0);
    }
    return result;
}

Watch *watchOf(HWND window)
{
    return (Watch *)GetPropW(window, kWatchName);
}

void watch(HWND window)
{
    if (watchOf(window) || GetWindowThreadProcessId(window, NULL) != GetCurrentThreadId())
        return;
    Watch *fresh = new Watch;
    if (SetPropW(window, kWatchName, (HANDLE)fresh) &&
        SetWindowSubclass(window, watchWindow, kWatchSubclass, (DWORD_PTR)fresh))
        return;
    RemovePropW(window, kWatchName);
    delete fresh;
}

bool isOwnProcess(HWND window)
{
    DWORD process = 0;
    return GetWindowThreadProcessId(window, &process) && process == GetCurrentProcessId();
}

// Names by which a program means its main window, whatever it is called.
bool meansMain(const std::wstring &name)
{
    return name == L"\u4E3B\u7A97\u53E3" || name == L"\u4E3B\u7A97" || name == L"MainWindow";
}

// The handle of a record; also when only the program's variable knows it.
HWND handleOf(VL_WindowRecord &record)
{
    if (!record.handle && record.variable)
        record.handle = *record.variable;
    return IsWindow(record.handle) ? record.handle : NULL;
}

HWND find(const VL_Any &window)
{
    if (window.type != VL_Any::TypeString) {
        const HWND handle = VL_ToWindow(window);
        return handle && isOwnProcess(handle) ? handle : NULL;
    }
    VL_Locked locked(lock());
    const auto found = g_windowRegistry.find(window.strVal);
    if (found != g_windowRegistry.end())
        return handleOf(found->second);
    return meansMain(window.strVal) && IsWindow(g_hWndMain) ? g_hWndMain : NULL;
}

std::wstring nameOf(HWND window)
{
    if (!window)
        return std::wstring();
    const HWND root = VL_OwnerWindow(window);
    VL_Locked locked(lock());
    std::wstring ofRoot;
    for (auto &entry : g_windowRegistry) {
        const HWND handle = handleOf(entry.second);
        if (handle == window)
            return entry.first;
        if (handle && handle == root)
            ofRoot = entry.first;
    }
    return ofRoot;
}

// The window, made when it does not exist yet.
HWND findOrMake(const VL_Any &window)
{
    if (const HWND handle = find(window))
        return handle;
    if (window.type != VL_Any::TypeString)
        return NULL;
    VL_WindowCreator create = nullptr;
    {
        VL_Locked locked(lock());
        const auto found = g_windowRegistry.find(window.strVal);
        if (found != g_windowRegistry.end()) {
            found->second.handle = NULL;
            create = found->second.create;
        }
    }
    if (!create)
        return NULL;
    create();
    const HWND made = find(window);
    if (made)
        watch(made);
    return made;
}

void raiseCreateEvent(HWND window)
{
    std::wstring name;
    {
        VL_Locked locked(lock());
        for (auto &entry : g_windowRegistry) {
            if (handleOf(entry.second) != window || entry.second.createEventCalled)
                continue;
            entry.second.createEventCalled = true;
            name = entry.first;
            break;
        }
    }
    if (!name.empty())
        VL_CallWindowCreateEvent(name);
}

void allowCreateEvent(HWND window)
{
    VL_Locked locked(lock());
    for (auto &entry : g_windowRegistry) {
        if (entry.second.handle == window && window != g_hWndMain)
            entry.second.createEventCalled = false;
    }
}

bool show(const VL_Any &window, int command)
{
    const HWND handle = findOrMake(window);
    if (!handle)
        return false;
    if (command != SW_HIDE)
        raiseCreateEvent(handle);
    if (!IsWindow(handle))
        return false;
    ShowWindow(handle, command == SW_SHOW && IsIconic(handle) ? SW_RESTORE : command);
    if (command == SW_SHOW || command == SW_SHOWNORMAL || command == SW_MAXIMIZE) {
        SetForegroundWindow(handle);
        g_lastActive = handle;
    }
    return true;
}

void destroy(HWND window)
{
    const Watch *state = watchOf(window);
    const bool isBusy = state && state->depth > 0;
    ShowWindow(window, SW_HIDE);
    if (!IsWindow(window))
        return;
    // From now on the name stands for a window that is to be made.
    forget(window);
    if (isBusy)
        PostMessageW(window, kDestroyLater, 0, 0);
    else
        DestroyWindow(window);
}

HWND modalOwner(HWND window, const VL_Any &owner)
{
    HWND handle = find(owner);
    if (!handle)
        handle = (HWND)VL_Window_GetActiveHandle();
    handle = handle ? VL_OwnerWindow(handle) : NULL;
    return handle != window ? handle : NULL;
}

void setOwner(HWND window, HWND owner)
{
    SetWindowLongPtrW(window, GWLP_HWNDPARENT, (LONG_PTR)owner);
}

bool goesOn(const ModalRun &run)
{
    return !run.ended && IsWindow(run.window) && IsWindowVisible(run.window);
}

void modalLoop(ModalRun &run)
{
    MSG message;
    while (goesOn(run)) {
        // It was hidden and is back.
        if (run.owner && IsWindowEnabled(run.owner))
            EnableWindow(run.owner, FALSE);
        const BOOL got = GetMessageW(&message, NULL, 0, 0);
        if (got == 0)
            PostQuitMessage((int)message.wParam);
        if (got <= 0)
            return;
        if (VL_FilterMessage(&message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

intptr_t runModal(HWND window, HWND owner)
{
    const bool isOwnerFree = owner && IsWindowEnabled(owner);
    const HWND oldOwner = GetWindow(window, GW_OWNER);
    ModalRun run;
    run.window = window;
    run.owner = isOwnerFree ? owner : NULL;
    watch(window);
    g_modalRuns.push_back(&run);
    if (owner)
        setOwner(window, owner);
    if (run.owner)
        EnableWindow(run.owner, FALSE);
    raiseCreateEvent(window);
    if (IsWindow(window) && !run.ended) {
        ShowWindow(window, IsIconic(window) ? SW_RESTORE : SW_SHOW);
        SetForegroundWindow(window);
        modalLoop(run);
    }
    if (run.owner)
        EnableWindow(run.owner, TRUE);
    if (IsWindow(window)) {
        if (IsWindowVisible(window))
            ShowWindow(window, SW_HIDE);
        setOwner(window, oldOwner);
    }
    g_modalRuns.erase(std::find(g_modalRuns.begin(), g_modalRuns.end(), &run));
    if (owner && IsWindowVisible(owner))
        SetActiveWindow(owner);
    return run.result;
}

} // namespace
} // namespace vl_window_registry

bool VL_Window_Register(const std::wstring &name, const VL_Any &window, VL_WindowCreator create,
                        bool isChild)
{
    using namespace vl_window_registry;
    const HWND handle = VL_ToWindow(window);
    if (name.empty() || !handle || !isOwnProcess(handle))
        return false;
    watch(handle);
    VL_Locked locked(lock());
    VL_WindowRecord &record = g_windowRegistry[name];
    if (!record.order)
        record.order = ++g_registered;
    if (create)
        record.create = create;
    record.isChild = isChild;
    if (record.handle != handle) {
        record.handle = handle;
        // The main window's own event is raised by the program's start.
        record.createEventCalled = handle == g_hWndMain;
    }
    return true;
}

void VL_Window_RegisterCreator(const std::wstring &name, VL_WindowCreator create, HWND *handle)
{
    using namespace vl_window_registry;
    VL_Locked locked(lock());
    VL_WindowRecord &record = g_windowRegistry[name];
    if (!record.order)
        record.order = ++g_registered;
    record.create = create;
    record.variable = handle;
}

bool VL_Window_Unregister(const VL_Any &window)
{
    using namespace vl_window_registry;
    const std::wstring name =
        window.type == VL_Any::TypeString ? window.strVal : nameOf(find(window));
    VL_Locked locked(lock());
    return g_windowRegistry.erase(name) > 0;
}

intptr_t VL_Window_GetByName(const VL_Any &window)
{
    return (intptr_t)vl_window_registry::find(window);
}

std::wstring VL_Window_GetName(const VL_Any &window)
{
    return vl_window_registry::nameOf(vl_window_registry::find(window));
}

VL_Array VL_Window_GetAll(bool loadedOnly)
{
    using namespace vl_window_registry;
    std::map<int, std::wstring> ordered;
    {
        VL_Locked locked(lock());
        for (auto &entry : g_windowRegistry) {
            if (!loadedOnly || handleOf(entry.second))
                ordered[entry.second.order] = entry.first;
        }
    }
    VL_Array names;
    for (const auto &entry : ordered)
        names.push_back(VL_Any(entry.second));
    return names;
}

bool VL_Window_Exists(const VL_Any &window)
{
    return vl_window_registry::find(window) != NULL;
}

bool VL_Window_IsVisible(const VL_Any &window)
{
    return VL_IsVisible(vl_window_registry::find(window));
}

bool VL_Window_Show(const VL_Any &window, int command)
{
    bool shown = false;
    VL_CallOnMainThread([&] { shown = vl_window_registry::show(window, command); });
    return shown;
}

HWND VL_MakeWindow(const VL_Any &window)
{
    HWND made = NULL;
    VL_CallOnMainThread([&] { made = vl_window_registry::findOrMake(window); });
    return made;
}

bool VL_Window_Hide(const VL_Any &window)
{
    const HWND handle = vl_window_registry::find(window);
    if (handle)
        ShowWindow(handle, SW_HIDE);
    return handle != NULL;
}

bool VL_Window_Close(const VL_Any &window)
{
    using namespace vl_window_registry;
    const HWND handle = find(window);
    if (!handle || (GetWindowLongW(handle, GWL_STYLE) & WS_CHILD))
        return false;
    if (handle == g_hWndMain)
        return PostMessageW(handle, WM_CLOSE, 0, VL_CLOSE_BY_PROGRAM) != FALSE;
    SendMessageW(handle, WM_CLOSE, 0, VL_CLOSE_BY_PROGRAM);
    return true;
}

bool VL_Window_Activate(const VL_Any &window)
{
    const HWND handle = vl_window_registry::find(window);
    return handle && VL_SetForegroundWindow(VL_OwnerWindow(handle));
}

bool VL_Window_SwitchTo(const VL_Any &window)
{
    const HWND before = (HWND)VL_Window_GetActiveHandle();
    if (!VL_Window_Show(window))
        return false;
    if (before && before != vl_window_registry::find(window))
        ShowWindow(before, SW_HIDE);
    return true;
}

bool VL_Window_SetTopMost(const VL_Any &window, bool on)
{
    return VL_SetWindowTopmost(vl_window_registry::find(window), on);
}

bool VL_Window_SetOpacity(const VL_Any &window, int percent)
{
    return VL_SetWindowOpacity(vl_window_registry::find(window), percent);
}

intptr_t VL_Window_ShowModal(const VL_Any &window, const VL_Any &owner)
{
    using namespace vl_window_registry;
    intptr_t result = 0;
    VL_CallOnMainThread([&] {
        const HWND handle = findOrMake(window);
        if (!handle)
            return;
        if (handle == g_hWndMain || modalRunOf(handle))
            show(window, SW_SHOW);
        else
            result = runModal(handle, modalOwner(handle, owner));
    });
    return result;
}

bool VL_Window_EndModal(const VL_Any &window, intptr_t result)
{
    using namespace vl_window_registry;
    bool ended = false;
    VL_CallOnMainThread([&] {
        const HWND handle = find(window);
        ModalRun *run = handle ? modalRunOf(handle) : nullptr;
        if (!run)
            return;
        run->result = result;
        run->ended = ended = true;
        allowCreateEvent(handle);
        ShowWindow(handle, SW_HIDE);
        wakeLoop();
    });
    return ended;
}

bool VL_LoadWindow(const VL_Any &window, bool modal)
{
    if (!modal)
        return VL_Window_Show(window);
    VL_Window_ShowModal(window);
    return VL_Window_Exists(window);
}

bool VL_UnloadWindow(const VL_Any &window)
{
    return VL_DestroyWindow(window);
}

bool VL_DestroyWindow(const VL_Any &window)
{
    using namespace vl_window_registry;
    const HWND handle = find(window);
    if (!handle)
        return false;
    if (handle == g_hWndMain)
        return VL_Window_Close(handle);
    VL_CallOnMainThread([&] { destroy(handle); });
    return true;
}

VL_Any VL_WindowOfVariable(HWND &variable)
{
    using namespace vl_window_registry;
    VL_Locked locked(lock());
    for (const auto &entry : g_windowRegistry) {
        if (!variable && entry.second.variable == &variable)
            return entry.first;
    }
    return variable;
}

intptr_t VL_Window_GetActiveHandle()
{
    using namespace vl_window_registry;
    HWND active = GetActiveWindow();
    // Message boxes and the like stand for the window that they belong to.
    while (active && nameOf(active).empty())
        active = GetWindow(active, GW_OWNER);
    if (!active && IsWindow(g_lastActive) && IsWindowVisible(g_lastActive))
        active = g_lastActive;
    if (!active && IsWindow(g_hWndMain) && IsWindowVisible(g_hWndMain))
        active = g_hWndMain;
    return (intptr_t)active;
}

std::wstring VL_Window_GetActiveName()
{
    return vl_window_registry::nameOf((HWND)VL_Window_GetActiveHandle());
}

bool VL_Window_SendEvent(const VL_Any &window, int eventId, int param1, int param2)
{
    return VL_SendEventTo(vl_window_registry::find(window), eventId, param1, param2);
}

bool VL_Window_PostEvent(const VL_Any &window, int eventId, int param1, int param2)
{
    return VL_PostEventTo(vl_window_registry::find(window), eventId, param1, param2);
}

bool VL_Window_SendText(const VL_Any &window, const std::wstring &text)
{
    return VL_SendTextTo(vl_window_registry::find(window), text);
}
