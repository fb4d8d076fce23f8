// LoopWatch: the longest time in which the event loop of a thread did not turn.
#pragma once

#include <QElapsedTimer>
#include <QTimer>

// Watches the loop of the thread that made it, from then on.
class LoopWatch : public QObject
{
public:
    LoopWatch()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] {
            m_longest = qMax(m_longest, m_last.nsecsElapsed());
            m_last.start();
        });
        m_last.start();
        m_timer.start(1);
    }
    // Milliseconds.
    double longest() const { return qMax(0.0, double(m_longest) / 1e6 - m_timer.interval()); }

private:
    QTimer m_timer;
    QElapsedTimer m_last;
    qint64 m_longest = 0;
};
