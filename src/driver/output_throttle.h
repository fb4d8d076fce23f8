// OutputThrottle: what a program prints, in pieces that a window can show.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

// The first text is passed on at once, what follows within the interval together. More than fits
// into a piece waits for the next one; of more than `maxWaiting` the oldest lines are left out,
// which a line tells.
class OutputThrottle : public QObject
{
    Q_OBJECT

public:
    static constexpr int interval = 50;        // milliseconds
    static constexpr int maxPiece = 64 * 1024; // characters
    static constexpr int maxWaiting = 1024 * 1024;

    OutputThrottle();

    // Whether there is text for more than one piece.
    bool hasMore() const { return m_waiting.size() > maxPiece; }
    // Passes on what waits, as much of it as one piece takes.
    void finish();

public slots:
    void add(const QString &text);

signals:
    void ready(const QString &text);

private:
    void emitPiece();

    QTimer m_timer;
    QString m_waiting;
    int m_leftOut = 0;
};
