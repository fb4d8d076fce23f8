#include "driver/output_throttle.h"

#include "driver/run_messages.h"

OutputThrottle::OutputThrottle()
{
    m_timer.setParent(this);
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &OutputThrottle::emitPiece);
}

void OutputThrottle::add(const QString &text)
{
    m_waiting += text;
    if (m_waiting.size() > maxWaiting) {
        // Half of it, so that not every addition moves a million characters.
        const int excess = m_waiting.size() - maxWaiting / 2;
        const int lineEnd = m_waiting.indexOf(QLatin1Char('\n'), excess - 1);
        const int cut = lineEnd < 0 ? excess : lineEnd + 1;
        m_waiting.remove(0, cut);
        m_leftOut += cut;
    }
    if (!m_timer.isActive()) {
        m_timer.start();
        emitPiece();
    }
}

// Cut behind a line where there is one.
void OutputThrottle::emitPiece()
{
    if (m_waiting.isEmpty()) {
        m_timer.stop();
        return;
    }
    QString piece = m_waiting.left(maxPiece);
    if (piece.size() < m_waiting.size()) {
        const int lineEnd = piece.lastIndexOf(QLatin1Char('\n'));
        if (lineEnd >= 0)
            piece.truncate(lineEnd + 1);
        else if (piece.at(piece.size() - 1).isHighSurrogate())
            piece.chop(1);
    }
    m_waiting.remove(0, piece.size());
    if (m_leftOut > 0)
        piece.prepend(RunMessage::text(RunMessage::outputLeftOut).arg(m_leftOut));
    m_leftOut = 0;
    emit ready(piece);
}

void OutputThrottle::finish()
{
    if (!m_waiting.isEmpty())
        emitPiece();
    m_waiting.clear();
    m_timer.stop();
}
