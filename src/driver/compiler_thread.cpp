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
    m_compiler->cancelBuild();
    QObject::connect(m_compiler, &QObject::destroyed, &m_thread, &QThread::quit,
                     Qt::DirectConnection);
    QMetaObject::invokeMethod(m_compiler, "slotShutdownDestroy", Qt::QueuedConnection);
    m_thread.wait();
}

void runWithDeepStack(const std::function<void()> &work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(deepStackBytes);
    thread->start();
    thread->wait();
}
