// Threads, pools, and calls to the main thread.
#include "75_threads.h"
#include "window_test.h"

namespace {

bool isMain()
{
    return GetCurrentThreadId() == g_mainThreadId;
}

void joinWaitsForAll()
{
    volatile LONG done = 0;
    std::vector<intptr_t> handles;
    for (int i = 0; i < 40; ++i) {
        handles.push_back(VL_Thread_Start([&done, i] {
            Sleep((DWORD)(i % 5) * 10);
            InterlockedIncrement(&done);
        }));
        CHECK(handles.back() != 0);
    }
    // Unknown ones and repeated ones count as done.
    handles.push_back(handles.front());
    handles.push_back(123456);
    handles.push_back(-1);
    VL_Thread_JoinAll(handles);
    CHECK_EQ(done, 40L);
    VL_Thread_JoinAll(handles);
    CHECK_EQ(VL_Thread_Start(nullptr), (intptr_t)0);
    const intptr_t one = VL_Thread_Start([&done] { InterlockedIncrement(&done); });
    VL_Thread_JoinAll(VL_Any(one));
    CHECK_EQ(done, 41L);
    VL_Thread_JoinAll(VL_Any(VL_Array{VL_Any(one), VL_Any(L"x")}));
}

// A thread that talks to a window, and one that waits for itself, must not hang the main thread.
void joiningAnswersThreads()
{
    const HWND window = testWindow();
    bool ranOnMain = false;
    const intptr_t handle = VL_Thread_Start([&] {
        SetWindowTextW(window, L"from a thread");
        VL_CallOnMainThread([] {});
        VL_InvokeUI([&] { ranOnMain = isMain(); });
        const DWORD begin = GetTickCount();
        while (!ranOnMain && GetTickCount() - begin < 3000)
            Sleep(5);
    });
    VL_Thread_JoinAll(handle);
    CHECK(ranOnMain);
    wchar_t title[40] = L"";
    GetWindowTextW(window, title, 40);
    CHECK_EQ(std::wstring(title), L"from a thread");
    volatile LONG own = 0;
    const intptr_t self = VL_Thread_Start([&own] {
        while (own == 0)
            Sleep(1);
        VL_Thread_JoinAll((intptr_t)own);
        own = -1;
    });
    own = (LONG)self;
    VL_Thread_JoinAll(self);
    CHECK_EQ(own, -1L);
}

void callsKeepTheirOrder()
{
    std::vector<int> order;
    const intptr_t handle = VL_Thread_Start([&order] {
        for (int i = 0; i < 5000; ++i)
            VL_InvokeUI([&order, i] { order.push_back(isMain() ? i : -1); });
    });
    VL_Thread_JoinAll(handle);
    const DWORD begin = GetTickCount();
    while (order.size() < 5000 && GetTickCount() - begin < 5000)
        pumpMessages();
    CHECK_EQ(order.size(), (size_t)5000);
    for (int i = 0; i < (int)order.size(); ++i) {
        if (order[(size_t)i] != i) {
            CHECK_EQ(order[(size_t)i], i);
            break;
        }
    }
}

// What is called while another call handles messages runs inside it.
void callsRunInsideOthers()
{
    std::wstring log;
    VL_InvokeUI([&log] {
        log += L"a";
        const DWORD begin = GetTickCount();
        while (log.size() < 2 && GetTickCount() - begin < 2000)
            pumpMessages();
        log += L"c";
    });
    VL_InvokeUI([&log] { log += L"b"; });
    CHECK_EQ(log, L"");
    pumpMessages();
    CHECK_EQ(log, L"abc");
    VL_InvokeUI([&log] { log += L"d"; });
    VL_ProcessUIInvokeQueue();
    CHECK_EQ(log, L"abcd");
    pumpMessages();
    VL_InvokeUI(nullptr);
}

void poolsWorkAndEnd()
{
    volatile LONG done = 0;
    const intptr_t pool = VL_ThreadPool_Create(4);
    CHECK(pool != 0);
    for (int i = 0; i < 1000; ++i)
        CHECK(VL_ThreadPool_Submit(pool, [&done] { InterlockedIncrement(&done); }));
    VL_ThreadPool_Wait(pool);
    CHECK_EQ(done, 1000L);
    // A task that submits and waits does not wait for itself.
    VL_ThreadPool_Submit(pool, [&] {
        VL_ThreadPool_Wait(pool);
        VL_ThreadPool_Submit(pool, [&done] {
            Sleep(50);
            InterlockedIncrement(&done);
        });
    });
    VL_ThreadPool_Wait(pool);
    CHECK_EQ(done, 1001L);
    for (int i = 0; i < 20; ++i)
        VL_ThreadPool_Submit(pool, [&done] {
            Sleep(2);
            InterlockedIncrement(&done);
        });
    VL_ThreadPool_Destroy(pool);
    CHECK_EQ(done, 1021L);
    CHECK(!VL_ThreadPool_Submit(pool, [] {}));
    VL_ThreadPool_Wait(pool);
    VL_ThreadPool_Destroy(pool);
    CHECK(!VL_ThreadPool_Submit(0, [] {}));
    const intptr_t huge = VL_ThreadPool_Create(1000000);
    CHECK(huge != 0);
    VL_ThreadPool_Destroy(huge);
}

DWORD handleCount()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

void nothingIsLeftOver()
{
    VL_Thread_JoinAll(VL_Thread_Start([] {}));
    const DWORD before = handleCount();
    for (int i = 0; i < 200; ++i)
        VL_Thread_JoinAll(VL_Thread_Start([] {}));
    CHECK(handleCount() <= before + 4);
}

std::vector<std::wstring> g_used;

// The end waits for what ends soon and stops what would never end, even if that uses globals.
void endOfTheProgram()
{
    volatile LONG done = 0;
    VL_Thread_Start([&done] {
        Sleep(200);
        InterlockedIncrement(&done);
    });
    VL_Thread_Start([] {
        for (;;) {
            g_used.assign(50, std::wstring(100, L'x'));
            g_used.clear();
        }
    });
    const intptr_t pool = VL_ThreadPool_Create(2);
    for (int i = 0; i < 100; ++i)
        VL_ThreadPool_Submit(pool, [] { Sleep(100); });
    const DWORD begin = GetTickCount();
    VL_Thread_CleanupAll();
    const DWORD passed = GetTickCount() - begin;
    CHECK_EQ(done, 1L);
    CHECK(passed >= 1500 && passed < 4000);
}

} // namespace

void runTests()
{
    testWindow();
    joinWaitsForAll();
    joiningAnswersThreads();
    callsKeepTheirOrder();
    callsRunInsideOthers();
    poolsWorkAndEnd();
    nothingIsLeftOver();
    endOfTheProgram();
}
