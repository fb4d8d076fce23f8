#include "shell/live_check.h"

#include "driver/compiler_thread.h"

namespace {

constexpr int kDelay = 400; // milliseconds

} // namespace

LiveCheck::LiveCheck(QObject *parent) : QObject(parent)
{
    qRegisterMetaType<ProjectCheckResult>();
    m_timer.setSingleShot(true);
    m_timer.setInterval(kDelay);
    connect(&m_timer, &QTimer::timeout, this, &LiveCheck::start);
    m_thread.setStackSize(deepStackBytes);
    m_thread.setObjectName(QStringLiteral("live check"));
    m_worker.moveToThread(&m_thread);
    m_thread.start(QThread::LowPriority);
}

LiveCheck::~LiveCheck()
{
    cancel();
    m_thread.quit();
    m_thread.wait();
}

void LiveCheck::request(const ProjectCheckRequest &request)
{
    ++m_newest;
    m_request = request;
    m_timer.start();
}

void LiveCheck::cancel()
{
    ++m_newest;
    m_timer.stop();
}

void LiveCheck::start()
{
    const auto check = [this, request = m_request, number = m_newest.load()] {
        const auto isStale = [this, number] { return m_newest != number; };
        if (isStale())
            return;
        // Made here, since what it holds belongs to the thread that it works on.
        if (!m_pipeline)
            m_pipeline = std::make_unique<BuildPipeline>();
        const auto result = checkProject(request, *m_pipeline, isStale);
        if (!result)
            return;
        const auto tell = [this, isStale, result] {
            if (!isStale())
                emit finished(*result);
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    };
    QMetaObject::invokeMethod(&m_worker, check, Qt::QueuedConnection);
}
