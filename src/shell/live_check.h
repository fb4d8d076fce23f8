// LiveCheck: checks what stands in the editors while the user types.
#pragma once

#include "shell/project_check.h"

#include <QObject>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <memory>

// One check at a time on a thread of its own. A request takes the place of those before it, also of
// one that is being checked; of a burst of requests only the last is answered.
class LiveCheck : public QObject
{
    Q_OBJECT

public:
    explicit LiveCheck(QObject *parent = nullptr);
    // Waits for the stage at which a check is.
    ~LiveCheck() override;

    // How long it must be quiet before a check begins; 400 milliseconds unless told otherwise.
    void setDelay(int milliseconds) { m_timer.setInterval(milliseconds); }
    void request(const ProjectCheckRequest &request);
    // Forgets the request that has not been answered yet.
    void cancel();

signals:
    void finished(const ProjectCheckResult &result);

private:
    void start();

    QTimer m_timer;
    ProjectCheckRequest m_request;
    // Counts up with every request; the answer to any other than the newest is dropped.
    std::atomic_int m_newest{0};
    QThread m_thread;
    QObject m_worker; // lives on the thread
    std::unique_ptr<BuildPipeline> m_pipeline;
};
