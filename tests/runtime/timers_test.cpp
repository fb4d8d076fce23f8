// Timers that call functions, and the timer of a window.
#include "74_timers.h"
#include "window_test.h"

namespace {

// Handles messages until `done` or the time is over; whether it was done.
bool pumpUntil(const std::function<bool()> &done, DWORD milliseconds = 3000)
{
    const DWORD begin = GetTickCount();
    while (!done()) {
        if (GetTickCount() - begin > milliseconds)
            return false;
        MsgWaitForMultipleObjects(0, NULL, FALSE, 10, QS_ALLINPUT);
        pumpMessages();
    }
    return true;
}

void ticksUntilStopped()
{
    VL_TimerClass timer;
    int count = 0;
    CHECK(!timer.isRunning());
    CHECK_EQ(timer.start(0, [] {}), (intptr_t)0);
    CHECK_EQ(timer.start(10, nullptr), (intptr_t)0);
    CHECK(timer.start(10, [&] { ++count; }) != 0);
    CHECK(timer.isRunning());
    CHECK(pumpUntil([&] { return count >= 3; }));
    timer.stop();
    CHECK(!timer.isRunning());
    const int stopped = count;
    CHECK(!pumpUntil([&] { return count != stopped; }, 60));
    // Starting anew replaces function and interval.
    int other = 0;
    timer.start(100000, [&] { ++count; });
    timer.start(10, [&] { ++other; });
    CHECK(pumpUntil([&] { return other >= 2; }));
    CHECK_EQ(count, stopped);
}

void changedWithinItsOwnCall()
{
    VL_TimerClass stopping;
    int stops = 0;
    stopping.start(10, [&] {
        ++stops;
        stopping.stop();
    });
    VL_TimerClass restarting;
    int restarts = 0;
    restarting.start(10, [&] {
        const std::wstring kept = L"still there";
        restarting.start(10, [&] { restarts += 10; });
        restarts += kept.size() == 11 ? 1 : 1000;
    });
    std::unique_ptr<VL_TimerClass> destroyed(new VL_TimerClass);
    int destroys = 0;
    destroyed->start(10, [&, text = std::wstring(100, L'x')] {
        destroyed.reset();
        destroys += text.size() == 100 ? 1 : 1000;
    });
    CHECK(pumpUntil([&] { return stops && destroys && restarts >= 31; }));
    pumpUntil([] { return false; }, 60);
    CHECK_EQ(stops, 1);
    CHECK_EQ(destroys, 1);
    CHECK_EQ(restarts % 10, 1);
}

// A call that handles messages itself, as one with a message box does, is not called again inside.
void doesNotNest()
{
    VL_TimerClass timer;
    int depth = 0;
    int deepest = 0;
    int calls = 0;
    VL_TimerClass other;
    int others = 0;
    other.start(10, [&] { ++others; });
    timer.start(10, [&] {
        deepest = ++depth > deepest ? depth : deepest;
        const int before = others;
        CHECK(pumpUntil([&] { return others > before + 1; }));
        --depth;
        ++calls;
    });
    CHECK(pumpUntil([&] { return calls >= 2; }));
    CHECK_EQ(deepest, 1);
}

void movesAndManyTimers()
{
    int count = 0;
    VL_TimerClass first;
    first.start(10, [&] { ++count; });
    VL_TimerClass second(std::move(first));
    CHECK(second.isRunning());
    CHECK(!first.isRunning());
    first.stop();
    CHECK(pumpUntil([&] { return count >= 1; }));
    second = VL_TimerClass();
    CHECK(!second.isRunning());
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    for (int i = 0; i < 500; ++i) {
        VL_TimerClass passing;
        passing.start(10, [&] { count += 1000; });
    }
    pumpUntil([] { return false; }, 40);
    CHECK(count < 1000);
    CHECK(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS) <= before + 2);
}

void windowTimer()
{
    const HWND window = testWindow();
    CHECK(!VL_SetTimer(window, 0));
    CHECK(!VL_SetTimer(NULL, 10));
    CHECK(VL_SetTimer(window, 10));
    MSG message = {};
    const DWORD begin = GetTickCount();
    while (!PeekMessageW(&message, window, WM_TIMER, WM_TIMER, PM_REMOVE) &&
           GetTickCount() - begin < 3000)
        MsgWaitForMultipleObjects(0, NULL, FALSE, 10, QS_ALLINPUT);
    CHECK_EQ((UINT_PTR)message.wParam, VL_WINDOW_TIMER);
    VL_KillTimer(window);
    Sleep(30);
    CHECK(!PeekMessageW(&message, window, WM_TIMER, WM_TIMER, PM_REMOVE));
    VL_KillTimer(NULL);
}

VL_TimerClass g_atExit;

} // namespace

void runTests()
{
    testWindow();
    ticksUntilStopped();
    changedWithinItsOwnCall();
    doesNotNest();
    movesAndManyTimers();
    windowTimer();
    // Still runs when globals are taken down.
    g_atExit.start(10, [] {});
}
