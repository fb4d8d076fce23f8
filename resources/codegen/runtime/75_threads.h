// Threads, thread pools, and calls from them to the main thread.
#pragma once
#include "74_timers.h"

// Runs `task` on a thread of its own. The handle is for VL_Thread_JoinAll; 0 when there is no task
// or the system refuses.
intptr_t VL_Thread_Start(std::function<void()> task);
// Waits until the threads are done; unknown handles and the calling thread itself count as done.
// The main thread keeps painting meanwhile and answers what the threads ask of its windows.
void VL_Thread_JoinAll(const std::vector<intptr_t> &handles);
// One handle, or an array of them.
void VL_Thread_JoinAll(const VL_Any &handles);
// For the end of the program: gives threads two seconds to come to an end. What is left stands
// still from then on, so that it cannot touch what the program takes down.
void VL_Thread_CleanupAll();

// Runs `task` on the main thread as soon as that handles messages, also within message boxes. The
// calls of one thread keep their order.
void VL_InvokeUI(std::function<void()> task);
// Runs what waits; only on the main thread.
void VL_ProcessUIInvokeQueue();

// A pool of so many threads, at most 64; a number below 1 takes as many as there are processors.
intptr_t VL_ThreadPool_Create(intptr_t threads = 0);
// False when there is no such pool or no task.
bool VL_ThreadPool_Submit(intptr_t pool, std::function<void()> task);
// Waits until all tasks are done; at once when called by one of them.
void VL_ThreadPool_Wait(intptr_t pool);
// Waits and ends the pool's threads.
void VL_ThreadPool_Destroy(intptr_t pool);
