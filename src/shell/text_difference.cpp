#include "shell/text_difference.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

// Beyond this many differences between two anchors a search takes the best way it has found.
constexpr int maxCost = 1024;

// Finds a shortest edit script from both ends at once, and divides the texts where the ways meet;
// needs no more room than the texts. Equal elements have equal numbers.
class Comparison
{
public:
    Comparison(const QVector<int> &left, const QVector<int> &right)
        : m_left(left),
          m_right(right),
          m_isRemoved(left.size(), false),
          m_isAdded(right.size(), false)
    {
        compare({0, left.size(), 0, right.size()});
    }

    bool isRemoved(int index) const { return m_isRemoved.at(index); }
    bool isAdded(int index) const { return m_isAdded.at(index); }

private:
    struct Box
    {
        int leftBegin, leftEnd, rightBegin, rightEnd;

        int width() const { return leftEnd - leftBegin; }
        int height() const { return rightEnd - rightBegin; }
    };
    struct Point
    {
        int left, right;
    };

    enum class Direction
    {
        Forward,
        Backward,
    };
    // The furthest place reached on each diagonal, in elements of the left text from one of the
    // box's corners; -1: none.
    class Reached
    {
    public:
        int &at(int diagonal) { return m_places[std::size_t(diagonal + maxCost)]; }
        int at(int diagonal) const { return m_places[std::size_t(diagonal + maxCost)]; }

    private:
        std::array<int, 2 * maxCost + 1> m_places{};
    };

    void compare(Box box);
    void trim(Box &box) const;
    Point middle(const Box &box);
    int reach(const Reached &reached, int diagonal, int cost, const Box &box) const;
    bool advance(const Box &box, int cost, Direction direction, Point &met);
    int equalFrom(const Box &box, int x, int y, Direction direction) const;
    Point furthest(const Box &box) const;

    const QVector<int> &m_left;
    const QVector<int> &m_right;
    QVector<bool> m_isRemoved;
    QVector<bool> m_isAdded;
    Reached m_forward;
    Reached m_backward;
};

void Comparison::trim(Box &box) const
{
    while (box.width() > 0 && box.height() > 0 &&
           m_left.at(box.leftBegin) == m_right.at(box.rightBegin)) {
        ++box.leftBegin;
        ++box.rightBegin;
    }
    while (box.width() > 0 && box.height() > 0 &&
           m_left.at(box.leftEnd - 1) == m_right.at(box.rightEnd - 1)) {
        --box.leftEnd;
        --box.rightEnd;
    }
}

void Comparison::compare(Box box)
{
    for (;;) {
        trim(box);
        if (box.width() == 0 || box.height() == 0) {
            std::fill(m_isRemoved.begin() + box.leftBegin, m_isRemoved.begin() + box.leftEnd, true);
            std::fill(m_isAdded.begin() + box.rightBegin, m_isAdded.begin() + box.rightEnd, true);
            return;
        }
        const Point cut = middle(box);
        compare({box.leftBegin, cut.left, box.rightBegin, cut.right});
        box = {cut.left, box.leftEnd, cut.right, box.rightEnd};
    }
}

// A point inside of `box` on a good way through it, which is neither of its two end corners.
Comparison::Point Comparison::middle(const Box &box)
{
    Point met{box.leftBegin, box.rightBegin};
    for (int cost = 0; cost <= maxCost; ++cost) {
        if (advance(box, cost, Direction::Forward, met) ||
            advance(box, cost, Direction::Backward, met))
            return met;
    }
    return furthest(box);
}

// The furthest place on `diagonal` that one more edit leads to, -1 if that lies outside of the box.
int Comparison::reach(const Reached &reached, int diagonal, int cost, const Box &box) const
{
    if (cost == 0)
        return 0;
    int result = -1;
    if (diagonal < cost) { // past an element of the right text
        const int x = reached.at(diagonal + 1);
        if (x >= 0 && x - diagonal <= box.height())
            result = x;
    }
    if (diagonal > -cost) { // past an element of the left text
        const int x = reached.at(diagonal - 1);
        if (x >= 0 && x < box.width())
            result = std::max(result, x + 1);
    }
    return result;
}

// Lets the way from one corner go on by one edit on each diagonal. True when it meets the other.
bool Comparison::advance(const Box &box, int cost, Direction direction, Point &met)
{
    const bool isForward = direction == Direction::Forward;
    Reached &reached = isForward ? m_forward : m_backward;
    const Reached &opposite = isForward ? m_backward : m_forward;
    const int delta = box.width() - box.height();
    const bool canMeet = (delta % 2 != 0) == isForward;
    const int oppositeCost = isForward ? cost - 1 : cost;
    for (int k = -cost; k <= cost; k += 2) {
        int x = reach(reached, k, cost, box);
        if (x >= 0)
            x += equalFrom(box, x, x - k, direction);
        reached.at(k) = x;
        const int facing = delta - k; // this diagonal, counted from the other corner
        if (canMeet && x >= 0 && std::abs(facing) <= oppositeCost && opposite.at(facing) >= 0 &&
            x + opposite.at(facing) >= box.width()) {
            met = isForward ? Point{box.leftBegin + x, box.rightBegin + x - k}
                            : Point{box.leftEnd - x, box.rightEnd - x + k};
            return true;
        }
    }
    return false;
}

int Comparison::equalFrom(const Box &box, int x, int y, Direction direction) const
{
    const bool isForward = direction == Direction::Forward;
    int count = 0;
    for (; x < box.width() && y < box.height(); ++x, ++y, ++count) {
        const int left = isForward ? box.leftBegin + x : box.leftEnd - 1 - x;
        const int right = isForward ? box.rightBegin + y : box.rightEnd - 1 - y;
        if (m_left.at(left) != m_right.at(right))
            break;
    }
    return count;
}

Comparison::Point Comparison::furthest(const Box &box) const
{
    Point best{box.leftBegin, box.rightBegin};
    for (int k = -maxCost; k <= maxCost; k += 2) {
        const int x = m_forward.at(k);
        const int y = x - k;
        if (x >= 0 && x + y > best.left - box.leftBegin + best.right - box.rightBegin)
            best = {box.leftBegin + x, box.rightBegin + y};
    }
    return best;
}

// The same number for the same text.
QVector<int> numbered(const QStringList &texts, QHash<QString, int> &numbers)
{
    QVector<int> result;
    result.reserve(texts.size());
    for (const QString &text : texts) {
        auto number = numbers.find(text);
        if (number == numbers.end())
            number = numbers.insert(text, numbers.size());
        result << *number;
    }
    return result;
}

void append(QVector<DifferenceRun> &runs, const DifferenceRun &run)
{
    if (run.count > 0)
        runs << run;
}

bool isWordCharacter(QChar c)
{
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == QLatin1Char('_'));
}

QStringList wordsOf(const QString &line)
{
    QStringList words;
    for (int i = 0; i < line.size();) {
        int end = i + 1;
        if (isWordCharacter(line.at(i))) {
            while (end < line.size() && isWordCharacter(line.at(end)))
                ++end;
        }
        words << line.mid(i, end - i);
        i = end;
    }
    return words;
}

template <typename IsChanged>
QVector<TextSpan> changedSpans(const QStringList &words, const IsChanged &isChanged)
{
    QVector<TextSpan> spans;
    int start = 0;
    for (int i = 0; i < words.size(); ++i) {
        const int length = words.at(i).size();
        if (isChanged(i)) {
            if (!spans.isEmpty() && spans.last().start + spans.last().length == start)
                spans.last().length += length;
            else
                spans << TextSpan{start, length};
        }
        start += length;
    }
    return spans;
}

} // namespace

bool DifferenceRun::operator==(const DifferenceRun &other) const
{
    return kind == other.kind && left == other.left && right == other.right && count == other.count;
}

bool TextSpan::operator==(const TextSpan &other) const
{
    return start == other.start && length == other.length;
}

QVector<DifferenceRun> lineDifference(const QStringList &left, const QStringList &right)
{
    QHash<QString, int> numbers;
    const QVector<int> leftNumbers = numbered(left, numbers);
    const QVector<int> rightNumbers = numbered(right, numbers);
    const Comparison comparison(leftNumbers, rightNumbers);
    using Kind = DifferenceRun::Kind;
    QVector<DifferenceRun> runs;
    for (int l = 0, r = 0; l < left.size() || r < right.size();) {
        const int leftStart = l, rightStart = r;
        while (l < left.size() && r < right.size() && !comparison.isRemoved(l) &&
               !comparison.isAdded(r)) {
            ++l;
            ++r;
        }
        append(runs, {Kind::Equal, leftStart, rightStart, l - leftStart});
        const int firstRemoved = l, firstAdded = r;
        while (l < left.size() && comparison.isRemoved(l))
            ++l;
        append(runs, {Kind::Removed, firstRemoved, firstAdded, l - firstRemoved});
        while (r < right.size() && comparison.isAdded(r))
            ++r;
        append(runs, {Kind::Added, l, firstAdded, r - firstAdded});
    }
    return runs;
}

ChangedWords wordDifference(const QString &left, const QString &right)
{
    const QStringList leftWords = wordsOf(left);
    const QStringList rightWords = wordsOf(right);
    QHash<QString, int> numbers;
    const QVector<int> leftNumbers = numbered(leftWords, numbers);
    const QVector<int> rightNumbers = numbered(rightWords, numbers);
    const Comparison comparison(leftNumbers, rightNumbers);
    return {changedSpans(leftWords, [&](int word) { return comparison.isRemoved(word); }),
            changedSpans(rightWords, [&](int word) { return comparison.isAdded(word); })};
}

QVector<DifferenceRow> differenceRows(const QVector<DifferenceRun> &runs)
{
    using Kind = DifferenceRow::Kind;
    QVector<DifferenceRow> rows;
    for (int i = 0; i < runs.size(); ++i) {
        const DifferenceRun &run = runs.at(i);
        if (run.kind == DifferenceRun::Kind::Equal) {
            for (int line = 0; line < run.count; ++line)
                rows << DifferenceRow{Kind::Equal, run.left + line, run.right + line};
            continue;
        }
        const bool isAdded = run.kind == DifferenceRun::Kind::Added;
        const bool isReplaced =
            !isAdded && i + 1 < runs.size() && runs.at(i + 1).kind == DifferenceRun::Kind::Added;
        const int removed = isAdded ? 0 : run.count;
        const int added = isAdded ? run.count : isReplaced ? runs.at(i + 1).count : 0;
        for (int line = 0; line < std::max(removed, added); ++line) {
            const int left = line < removed ? run.left + line : -1;
            const int right = line < added ? run.right + line : -1;
            rows << DifferenceRow{left < 0    ? Kind::Added
                                  : right < 0 ? Kind::Removed
                                              : Kind::Changed,
                                  left, right};
        }
        i += isReplaced ? 1 : 0;
    }
    return rows;
}
