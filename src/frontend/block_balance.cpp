#include "frontend/block_balance.h"

#include <QSet>

#include <limits>

namespace {

// So that a hostile text costs no more than a moment.
constexpr int mostSteps = 4000000;
constexpr int mostCandidates = 60;

struct OpenBlock
{
    int event = 0;
    int indent = 0;
    // Where its first line begins; 0 as long as there is none.
    int firstColumn = 0;
    bool isAdded = false;
};

// One way through the events with some repairs made.
class Trial
{
public:
    Trial(const QVector<BlockEvent> &events, const QVector<BlockRepair> &repairs)
        : m_events(events), m_repairs(repairs)
    {
        for (const BlockRepair &repair : repairs)
            m_repaired.insert(repair.event);
        for (int i = 0; i < events.size(); ++i)
            step(i);
    }

    int unmatched() const { return m_surplus + m_unclosed; }
    // Matching counts most, then what the indentation says.
    qint64 score() const { return qint64(unmatched()) * m_events.size() * 2 + m_disagreements; }
    const QVector<BlockRepair> &candidates() const { return m_candidates; }

private:
    void step(int index)
    {
        const bool isRepaired = m_repaired.contains(index);
        if (isRepaired && removes(index))
            return;
        if (isRepaired)
            makeAdditions(index);
        const BlockEvent &event = m_events.at(index);
        switch (event.kind) {
        case BlockEvent::Open: {
            constexpr int deep = std::numeric_limits<int>::max();
            const bool isDouble = index > 0 && m_events.at(index - 1).kind == BlockEvent::Open &&
                                  m_events.at(index - 1).token == event.token - 1 &&
                                  m_events.at(index - 1).line == event.line;
            if (isDouble)
                m_candidates.append({BlockRepair::RemoveIt, index, 0});
            m_blocks.append({index, event.column, event.goesOn ? deep : 0});
            break;
        }
        case BlockEvent::Close:
            close(index);
            break;
        case BlockEvent::Line:
        case BlockEvent::Member:
        case BlockEvent::Branch:
            line(index, isRepaired);
            break;
        case BlockEvent::Header:
            m_candidates.append({BlockRepair::AddOpen, index, 0});
            break;
        case BlockEvent::End:
            m_unclosed = m_blocks.size();
            if (!m_blocks.isEmpty())
                m_candidates.append({BlockRepair::AddClose, index, m_blocks.last().event});
            break;
        }
    }

    bool removes(int index) const
    {
        for (const BlockRepair &repair : m_repairs) {
            if (repair.event == index && repair.kind == BlockRepair::RemoveIt)
                return true;
        }
        return false;
    }

    void makeAdditions(int index)
    {
        for (const BlockRepair &repair : m_repairs) {
            if (repair.event != index)
                continue;
            if (repair.kind == BlockRepair::AddOpen)
                m_blocks.append({index, m_events.at(index).column, 0, true});
            else if (repair.kind == BlockRepair::AddClose && !m_blocks.isEmpty())
                m_blocks.removeLast();
        }
    }

    void close(int index)
    {
        const BlockEvent &event = m_events.at(index);
        if (m_blocks.isEmpty()) {
            ++m_surplus;
            m_candidates.append({BlockRepair::RemoveIt, index, 0});
            return;
        }
        const OpenBlock block = m_blocks.takeLast();
        const bool agrees = event.column > 0 ? event.column == block.indent
                                             : event.line == m_events.at(block.event).line;
        if (agrees)
            return;
        ++m_disagreements;
        if (event.column > 0 && event.column < block.indent)
            m_candidates.append({BlockRepair::AddClose, index, block.event});
        else
            m_candidates.append({BlockRepair::RemoveIt, index, 0});
    }

    // A line that is not indented under its block tells only if others of the block are.
    void line(int index, bool isRepaired)
    {
        const BlockEvent &event = m_events.at(index);
        if (m_blocks.isEmpty()) {
            // What is indented should lie in a block.
            m_disagreements += event.column > 1 ? 1 : 0;
            return;
        }
        OpenBlock &block = m_blocks.last();
        const bool isOutdented = event.column <= block.indent && block.firstColumn > block.indent;
        const bool isMisplaced = (event.kind == BlockEvent::Member && m_blocks.size() > 1) ||
                                 (event.kind == BlockEvent::Branch && !isRepaired);
        if (block.firstColumn == 0) {
            block.firstColumn = event.column;
            m_disagreements += block.isAdded && event.column <= block.indent ? 1 : 0;
        }
        if (!isOutdented && !isMisplaced)
            return;
        ++m_disagreements;
        m_candidates.append({BlockRepair::AddClose, index, block.event});
    }

    const QVector<BlockEvent> &m_events;
    const QVector<BlockRepair> m_repairs;
    QSet<int> m_repaired;
    QVector<OpenBlock> m_blocks;
    QVector<BlockRepair> m_candidates;
    int m_surplus = 0;
    int m_unclosed = 0;
    int m_disagreements = 0;
};

// The first of the candidates that help most. False if none helps.
bool addBestRepair(const QVector<BlockEvent> &events, const Trial &last,
                   QVector<BlockRepair> *repairs)
{
    const QVector<BlockRepair> candidates = last.candidates();
    const int tried = qBound(1, mostSteps / events.size(), mostCandidates);
    qint64 bestScore = std::numeric_limits<qint64>::max();
    BlockRepair best;
    for (int i = 0; i < candidates.size(); ++i) {
        // The last one may be the only one that helps.
        if (i >= tried - 1 && i < candidates.size() - 1)
            continue;
        const BlockRepair &candidate = candidates.at(i);
        const Trial trial(events, *repairs + QVector<BlockRepair>{candidate});
        if (trial.unmatched() >= last.unmatched())
            continue;
        if (trial.score() < bestScore) {
            bestScore = trial.score();
            best = candidate;
        }
    }
    if (bestScore == std::numeric_limits<qint64>::max())
        return false;
    repairs->append(best);
    return true;
}

} // namespace

QVector<BlockRepair> repairBlocks(const QVector<BlockEvent> &events, int most)
{
    QVector<BlockRepair> repairs;
    while (repairs.size() < most) {
        const Trial last(events, repairs);
        if (last.unmatched() == 0 || !addBestRepair(events, last, &repairs))
            break;
    }
    return repairs;
}
