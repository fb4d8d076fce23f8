// Timers: objects that call a function again and again, and the timer of a window.
#include "74_timers.h"

void (*g_vlRunQueueHook)() = nullptr;

// What an object and the timers under way share.
struct VL_TimerState
{
    UINT_PTR number = 0; // 0 while it does not run
    UINT interval = 0;
    bool isBusy = false;
    std::function<void()> callback;
};

namespace vl_timers {
namespace {

const UINT kSetTimer = WM_APP + 0x1F0B;
const UINT kKillTimer = WM_APP + 0x1F0C;

VL_Lock &lock()
{
    static VL_Lock *made = new VL_Lock;
    return *made;
}

// Timers under way by number. Timer objects may be globals: this outlives them.
std::map<UINT_PTR, std::shared_ptr<VL_TimerState>> &running()
{
    static auto *all = new std::map<UINT_PTR, std::shared_ptr<VL_TimerState>>;
    return *all;
}

UINT_PTR g_lastNumber = 0;
HWND g_window = NULL;

std::shared_ptr<VL_TimerState> find(UINT_PTR number)
{
    VL_Locked locked(lock());
    const auto found = running().find(number);
    return found == running().end() ? nullptr : found->second;
}

// Clears the mark also when the function throws.
struct Busy
{
    explicit Busy(VL_TimerState &state) : m_state(state) { m_state.isBusy = true; }
    ~Busy() { m_state.isBusy = false; }
    VL_TimerState &m_state;
};

void tick(HWND window, UINT_PTR number)
{
    // The object may be gone before the call is over.
    const std::shared_ptr<VL_TimerState> state = find(number);
    if (!state) {
        KillTimer(window, number);
        return;
    }
    if (state->isBusy)
        return;
    std::function<void()> callback;
    {
        VL_Locked locked(lock());
        callback = state->callback;
    }
    Busy busy(*state);
    if (callback)
        callback();
}

void setTimer(HWND window, UINT_PTR number)
{
    if (const std::shared_ptr<VL_TimerState> state = find(number))
        SetTimer(window, number, state->interval, NULL);
}

LRESULT CALLBACK dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_TIMER:
        tick(window, (UINT_PTR)wParam);
        return 0;
    case kSetTimer:
        setTimer(window, (UINT_PTR)wParam);
        return 0;
    case kKillTimer:
        KillTimer(window, (UINT_PTR)wParam);
        return 0;
    case VL_WM_RUN_QUEUE:
        if (g_vlRunQueueHook)
            g_vlRunQueueHook();
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND makeWindow()
{
    static const wchar_t className[] = L"VLDispatch";
    WNDCLASSW description = {};
    description.lpfnWndProc = dispatch;
    description.hInstance = GetModuleHandleW(NULL);
    description.lpszClassName = className;
    RegisterClassW(&description);
    return CreateWindowExW(0, className, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, NULL,
                           GetModuleHandleW(NULL), NULL);
}

// Only the thread of the dispatch window can set its timers.
void tellTimer(UINT message, UINT_PTR number)
{
    const HWND window = VL_DispatchWindow();
    if (!window)
        return;
    if (GetWindowThreadProcessId(window, NULL) == GetCurrentThreadId())
        dispatch(window, message, (WPARAM)number, 0);
    else
        PostMessageW(window, message, (WPARAM)number, 0);
}

void stopTimer(VL_TimerState &state)
{
    UINT_PTR number = 0;
    {
        VL_Locked locked(lock());
        number = state.number;
        state.number = 0;
        running().erase(number);
    }
    if (number)
        tellTimer(kKillTimer, number);
}

} // namespace
} // namespace vl_timers

HWND VL_DispatchWindow()
{
    using namespace vl_timers;
    // Before the program's start has told the main thread, only that one runs.
    const bool isMain = !g_mainThreadId || g_mainThreadId == GetCurrentThreadId();
    VL_Locked locked(lock());
    if (!g_window && isMain)
        g_window = makeWindow();
    return g_window;
}

VL_TimerClass::VL_TimerClass() : m_state(std::make_shared<VL_TimerState>()) {}

VL_TimerClass::~VL_TimerClass()
{
    stop();
}

VL_TimerClass::VL_TimerClass(VL_TimerClass &&other) noexcept : m_state(std::move(other.m_state)) {}

VL_TimerClass &VL_TimerClass::operator=(VL_TimerClass &&other) noexcept
{
    if (this != &other) {
        stop();
        m_state = std::move(other.m_state);
    }
    return *this;
}

intptr_t VL_TimerClass::start(intptr_t milliseconds, std::function<void()> callback)
{
    using namespace vl_timers;
    stop();
    if (milliseconds < 1 || !callback || !VL_DispatchWindow())
        return 0;
    if (!m_state)
        m_state = std::make_shared<VL_TimerState>();
    // The state of a running call belongs to that call until it is over.
    if (m_state->isBusy) {
        m_state = std::make_shared<VL_TimerState>();
    }
    UINT_PTR number = 0;
    {
        VL_Locked locked(lock());
        number = ++g_lastNumber;
        m_state->number = number;
        m_state->interval =
            milliseconds < USER_TIMER_MAXIMUM ? (UINT)milliseconds : USER_TIMER_MAXIMUM;
        m_state->callback = std::move(callback);
        running()[number] = m_state;
    }
    tellTimer(kSetTimer, number);
    return (intptr_t)number;
}

void VL_TimerClass::stop()
{
    if (m_state)
        vl_timers::stopTimer(*m_state);
}

bool VL_TimerClass::isRunning() const
{
    VL_Locked locked(vl_timers::lock());
    return m_state && m_state->number != 0;
}

bool VL_SetTimer(HWND window, intptr_t milliseconds)
{
    if (milliseconds < 1 || !IsWindow(window))
        return false;
    const UINT interval =
        milliseconds < USER_TIMER_MAXIMUM ? (UINT)milliseconds : USER_TIMER_MAXIMUM;
    bool set = false;
    VL_CallOnMainThread(
        [&] { set = SetTimer(window, VL_WINDOW_TIMER, interval, NULL) == VL_WINDOW_TIMER; });
    return set;
}

void VL_KillTimer(HWND window)
{
    if (IsWindow(window))
        VL_CallOnMainThread([&] { KillTimer(window, VL_WINDOW_TIMER); });
}
