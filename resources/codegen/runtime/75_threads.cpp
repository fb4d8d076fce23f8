// Threads, thread pools, and calls from them to the main thread.
#include "75_threads.h"

#include <algorithm>
#include <deque>
#include <malloc.h>

namespace vl_threads {
namespace {

const DWORD kGraceTime = 2000;
const DWORD kLookInterval = 20;
const intptr_t kMostPoolThreads = 64;

struct Job
{
    intptr_t number = 0;
    std::function<void()> task;
};

struct Pool
{
    VL_Lock lock;
    CONDITION_VARIABLE hasWork;
    HANDLE idle = NULL; // set while nothing waits or runs
    std::deque<std::function<void()>> tasks;
    int busy = 0;
    bool isStopping = false;
    std::vector<intptr_t> threads;
    std::vector<DWORD> threadIds;

    Pool() : idle(CreateEventW(NULL, TRUE, TRUE, NULL)) { InitializeConditionVariable(&hasWork); }
    ~Pool() { CloseHandle(idle); }
    Pool(const Pool &) = delete;
    Pool &operator=(const Pool &) = delete;
};

// Lives as long as the process: threads may outlive the program's globals.
struct Shared
{
    VL_Lock lock;
    intptr_t lastNumber = 0;
    std::map<intptr_t, HANDLE> threads; // those that run, with handles that are owned
    std::map<intptr_t, std::shared_ptr<Pool>> pools;
    std::deque<std::function<void()>> queue;
    bool isWakePosted = false;
};

Shared &shared()
{
    static Shared *made = new Shared;
    return *made;
}

DWORD WINAPI runJob(void *data)
{
    std::unique_ptr<Job> job((Job *)data);
    job->task();
    // What the task holds goes before the thread counts as done.
    job->task = nullptr;
    VL_Locked locked(shared().lock);
    const auto found = shared().threads.find(job->number);
    if (found != shared().threads.end()) {
        CloseHandle(found->second);
        shared().threads.erase(found);
    }
    return 0;
}

intptr_t start(std::function<void()> task, DWORD *threadId = nullptr)
{
    std::unique_ptr<Job> job(new Job);
    job->task = std::move(task);
    // Held until the handle is entered: the thread may be through at once.
    VL_Locked locked(shared().lock);
    const intptr_t number = ++shared().lastNumber;
    job->number = number;
    DWORD id = 0;
    const HANDLE thread = CreateThread(NULL, 0, runJob, job.get(), 0, &id);
    if (!thread)
        return 0;
    job.release();
    shared().threads[number] = thread;
    if (threadId)
        *threadId = id;
    return number;
}

bool isMainThread()
{
    return GetCurrentThreadId() == g_mainThreadId;
}

void runQueue()
{
    Shared &all = shared();
    size_t count = 0;
    {
        VL_Locked locked(all.lock);
        all.isWakePosted = false;
        count = all.queue.size();
    }
    // One that comes meanwhile waits for the next message, so that input gets its turn. A task that
    // opens a message box leaves the rest to the loop of that one.
    for (; count > 0; --count) {
        std::function<void()> task;
        {
            VL_Locked locked(all.lock);
            if (all.queue.empty())
                return;
            task = std::move(all.queue.front());
            all.queue.pop_front();
            if (!all.queue.empty() && !all.isWakePosted && VL_DispatchWindow())
                all.isWakePosted =
                    PostMessageW(VL_DispatchWindow(), VL_WM_RUN_QUEUE, 0, 0) != FALSE;
        }
        task();
    }
}

// Lets the main thread answer and paint while it waits; input stays where it is.
void handleWaitingMessages()
{
    MSG message;
    PeekMessageW(&message, NULL, 0, 0, PM_NOREMOVE | (QS_SENDMESSAGE << 16));
    const HWND window = VL_DispatchWindow();
    while (window && PeekMessageW(&message, window, VL_WM_RUN_QUEUE, VL_WM_RUN_QUEUE, PM_REMOVE))
        DispatchMessageW(&message);
    // A window that does not paint when told to would be told for ever.
    for (int i = 0; i < 64 && PeekMessageW(&message, NULL, WM_PAINT, WM_PAINT, PM_REMOVE); ++i)
        DispatchMessageW(&message);
}

// False when the time is over. INFINITE waits for ever.
bool waitFor(HANDLE handle, DWORD milliseconds)
{
    if (!isMainThread())
        return WaitForSingleObject(handle, milliseconds) == WAIT_OBJECT_0;
    const DWORD begin = GetTickCount();
    for (;;) {
        const DWORD passed = GetTickCount() - begin;
        if (milliseconds != INFINITE && passed >= milliseconds)
            return WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
        const DWORD rest = milliseconds == INFINITE ? INFINITE : milliseconds - passed;
        // Only what other threads send wakes it at once; the rest is looked after now and then.
        const DWORD reason = MsgWaitForMultipleObjects(
            1, &handle, FALSE, std::min(rest, kLookInterval), QS_SENDMESSAGE);
        if (reason == WAIT_OBJECT_0)
            return true;
        if (reason == WAIT_FAILED)
            return false;
        handleWaitingMessages();
    }
}

// A handle of its own for waiting; NULL when the thread is through.
HANDLE openThread(intptr_t number)
{
    VL_Locked locked(shared().lock);
    const auto found = shared().threads.find(number);
    HANDLE copy = NULL;
    if (found == shared().threads.end() || GetThreadId(found->second) == GetCurrentThreadId() ||
        !DuplicateHandle(GetCurrentProcess(), found->second, GetCurrentProcess(), &copy, 0, FALSE,
                         DUPLICATE_SAME_ACCESS))
        return NULL;
    return copy;
}

void join(intptr_t number, DWORD milliseconds)
{
    if (const HANDLE thread = openThread(number)) {
        waitFor(thread, milliseconds);
        CloseHandle(thread);
    }
}

void workFor(const std::shared_ptr<Pool> &pool)
{
    for (;;) {
        std::function<void()> task;
        {
            VL_Locked locked(pool->lock);
            while (pool->tasks.empty() && !pool->isStopping)
                SleepConditionVariableCS(&pool->hasWork, pool->lock.section(), INFINITE);
            if (pool->tasks.empty())
                return;
            task = std::move(pool->tasks.front());
            pool->tasks.pop_front();
            ++pool->busy;
        }
        task();
        task = nullptr;
        VL_Locked locked(pool->lock);
        if (--pool->busy == 0 && pool->tasks.empty())
            SetEvent(pool->idle);
    }
}

std::shared_ptr<Pool> findPool(intptr_t number)
{
    VL_Locked locked(shared().lock);
    const auto found = shared().pools.find(number);
    return found == shared().pools.end() ? nullptr : found->second;
}

bool isWorkerOf(Pool &pool)
{
    VL_Locked locked(pool.lock);
    return std::count(pool.threadIds.begin(), pool.threadIds.end(), GetCurrentThreadId()) > 0;
}

void stop(Pool &pool, bool dropTasks)
{
    VL_Locked locked(pool.lock);
    pool.isStopping = true;
    if (dropTasks)
        pool.tasks.clear();
    WakeAllConditionVariable(&pool.hasWork);
}

// No thread stops while it holds the heap, which the main thread still needs.
void freezeThreads()
{
    VL_Locked locked(shared().lock);
    const HANDLE heaps[] = {GetProcessHeap(), (HANDLE)_get_heap_handle()};
    for (HANDLE heap : heaps)
        HeapLock(heap);
    for (const auto &entry : shared().threads) {
        if (GetThreadId(entry.second) != GetCurrentThreadId())
            SuspendThread(entry.second);
    }
    for (HANDLE heap : heaps)
        HeapUnlock(heap);
}

std::vector<intptr_t> runningThreads()
{
    VL_Locked locked(shared().lock);
    std::vector<intptr_t> numbers;
    for (const auto &entry : shared().threads)
        numbers.push_back(entry.first);
    return numbers;
}

} // namespace
} // namespace vl_threads

intptr_t VL_Thread_Start(std::function<void()> task)
{
    if (!task)
        return 0;
    // From here on threads find the way back to the main one.
    g_vlRunQueueHook = vl_threads::runQueue;
    VL_DispatchWindow();
    return vl_threads::start(std::move(task));
}

void VL_Thread_JoinAll(const std::vector<intptr_t> &handles)
{
    for (intptr_t handle : handles)
        vl_threads::join(handle, INFINITE);
}

void VL_Thread_JoinAll(const VL_Any &handles)
{
    if (handles.type != VL_Any::TypeArray) {
        vl_threads::join((intptr_t)VL_AnyToInteger(handles), INFINITE);
        return;
    }
    const std::vector<VL_Any> items = handles;
    for (const VL_Any &item : items)
        vl_threads::join((intptr_t)VL_AnyToInteger(item), INFINITE);
}

void VL_Thread_CleanupAll()
{
    using namespace vl_threads;
    std::vector<std::shared_ptr<Pool>> pools;
    {
        VL_Locked locked(shared().lock);
        for (const auto &entry : shared().pools)
            pools.push_back(entry.second);
    }
    for (const std::shared_ptr<Pool> &pool : pools)
        stop(*pool, true);
    const DWORD begin = GetTickCount();
    for (intptr_t number : runningThreads()) {
        const DWORD passed = GetTickCount() - begin;
        join(number, passed < kGraceTime ? kGraceTime - passed : 0);
    }
    if (!runningThreads().empty())
        freezeThreads();
}

void VL_InvokeUI(std::function<void()> task)
{
    using namespace vl_threads;
    if (!task)
        return;
    g_vlRunQueueHook = runQueue;
    const HWND window = VL_DispatchWindow();
    VL_Locked locked(shared().lock);
    shared().queue.push_back(std::move(task));
    if (window && !shared().isWakePosted)
        shared().isWakePosted = PostMessageW(window, VL_WM_RUN_QUEUE, 0, 0) != FALSE;
}

void VL_ProcessUIInvokeQueue()
{
    if (vl_threads::isMainThread())
        vl_threads::runQueue();
}

intptr_t VL_ThreadPool_Create(intptr_t threads)
{
    using namespace vl_threads;
    SYSTEM_INFO system = {};
    GetSystemInfo(&system);
    intptr_t wanted = threads < 1 ? (intptr_t)system.dwNumberOfProcessors : threads;
    wanted = std::min(wanted, kMostPoolThreads);
    g_vlRunQueueHook = runQueue;
    VL_DispatchWindow();
    const std::shared_ptr<Pool> pool = std::make_shared<Pool>();
    for (intptr_t i = 0; i < wanted; ++i) {
        DWORD id = 0;
        const intptr_t thread = start([pool] { workFor(pool); }, &id);
        VL_Locked locked(pool->lock);
        if (thread) {
            pool->threads.push_back(thread);
            pool->threadIds.push_back(id);
        }
    }
    if (pool->threads.empty())
        return 0;
    VL_Locked locked(shared().lock);
    const intptr_t number = ++shared().lastNumber;
    shared().pools[number] = pool;
    return number;
}

bool VL_ThreadPool_Submit(intptr_t pool, std::function<void()> task)
{
    const std::shared_ptr<vl_threads::Pool> found = vl_threads::findPool(pool);
    if (!found || !task)
        return false;
    VL_Locked locked(found->lock);
    if (found->isStopping)
        return false;
    found->tasks.push_back(std::move(task));
    ResetEvent(found->idle);
    WakeConditionVariable(&found->hasWork);
    return true;
}

void VL_ThreadPool_Wait(intptr_t pool)
{
    const std::shared_ptr<vl_threads::Pool> found = vl_threads::findPool(pool);
    if (found && !vl_threads::isWorkerOf(*found))
        vl_threads::waitFor(found->idle, INFINITE);
}

void VL_ThreadPool_Destroy(intptr_t pool)
{
    using namespace vl_threads;
    const std::shared_ptr<Pool> found = findPool(pool);
    if (!found)
        return;
    {
        VL_Locked locked(shared().lock);
        shared().pools.erase(pool);
    }
    stop(*found, false);
    for (intptr_t thread : found->threads)
        join(thread, INFINITE);
}
