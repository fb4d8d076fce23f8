// CompilerThread: the worker thread on which a Compiler lives, with the stack that it needs.
#pragma once

#include "driver/compiler.h"

#include <QThread>

#include <functional>

// Sources nest deeply, and their trees are walked by recursion.
constexpr uint deepStackBytes = 33554432;

// Starts the thread and moves a new Compiler onto it. The destructor ends what the compiler has
// running and waits for the thread.
class CompilerThread
{
public:
    CompilerThread();
    ~CompilerThread();

    CompilerThread(const CompilerThread &) = delete;
    CompilerThread &operator=(const CompilerThread &) = delete;

    // Ends what the compiler has running, and the thread. False when that takes longer than
    // `milliseconds`: the object must then be left alone for good.
    [[nodiscard]] bool shutdown(int milliseconds);

    // To be connected to and called through queued slots only.
    Compiler *compiler() const { return m_compiler; }

private:
    void askToEnd();

    QThread m_thread;
    Compiler *m_compiler;
    bool m_ending = false;
};

// Runs `work` on a thread with that stack and waits for it.
void runWithDeepStack(const std::function<void()> &work);
