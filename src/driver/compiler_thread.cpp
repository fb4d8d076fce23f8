#include "driver/compiler_thread.h"

CompilerThread::CompilerThread() : m_compiler(new Compiler)
{
    m_thread.setStackSize(deepStackBytes);
    m_thread.setObjectName(QStringLiteral("compiler"));
    m_compiler->moveToThread(&m_thread);
    m_thread.start();
}

CompilerThread::~CompilerThread()
{
    askToEnd();
    m_thread.wait();
}

void CompilerThread::askToEnd()
{
    if (m_ending)
        return;
    m_ending = true;
    m_compiler->cancelBuild();
    QObject::connect(m_compiler, &QObject::destroyed, &m_thread, &QThread::quit,
                     Qt::DirectConnection);
    QMetaObject::invokeMethod(m_compiler, "slotShutdownDestroy", Qt::QueuedConnection);
}

bool CompilerThread::shutdown(int milliseconds)
{
    askToEnd();
    return m_thread.wait(ulong(milliseconds));
}

void runWithDeepStack(const std::function<void()> &work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(deepStackBytes);
    thread->start();
    thread->wait();
}
