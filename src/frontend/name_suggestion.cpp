// The distance behind name_suggestion.h.
#include "frontend/name_suggestion.h"

#include <algorithm>
#include <vector>

namespace {

// What may differ before another name is meant: half of a short name, a third of a long one.
int allowedDistance(int length)
{
    return length <= 1 ? 0 : length <= 4 ? 1 : length <= 8 ? 2 : 3;
}

} // namespace

int nameDistance(const QString &a, const QString &b, int limit)
{
    if (std::abs(a.size() - b.size()) > limit)
        return limit + 1;
    std::vector<int> beforeLast;
    std::vector<int> last(size_t(b.size()) + 1);
    std::vector<int> row(size_t(b.size()) + 1);
    for (int j = 0; j <= b.size(); ++j)
        last[size_t(j)] = j;
    for (int i = 1; i <= a.size(); ++i) {
        row[0] = i;
        int least = i;
        for (int j = 1; j <= b.size(); ++j) {
            const size_t at = size_t(j);
            const int change = a.at(i - 1) == b.at(j - 1) ? 0 : 1;
            row[at] = std::min({last[at] + 1, row[at - 1] + 1, last[at - 1] + change});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1))
                row[at] = std::min(row[at], beforeLast[at - 2] + 1);
            least = std::min(least, row[at]);
        }
        if (least > limit)
            return limit + 1;
        beforeLast = last;
        std::swap(last, row);
    }
    return std::min(last[size_t(b.size())], limit + 1);
}

QString closestName(const QString &name, const QStringList &candidates)
{
    const QString wanted = name.toLower();
    QString closest;
    int least = allowedDistance(name.size()) + 1;
    for (const QString &candidate : candidates) {
        if (least <= 1 || candidate == name)
            break;
        // One letter cannot tell which name of one letter was meant.
        const int allowed = std::min(least - 1, allowedDistance(candidate.size()));
        if (allowed == 0)
            continue;
        const int distance = nameDistance(wanted, candidate.toLower(), allowed);
        if (distance <= allowed) {
            closest = candidate;
            least = distance;
        }
    }
    return closest;
}
