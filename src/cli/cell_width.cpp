#include "cli/cell_width.h"

#include <algorithm>

namespace {

struct Range
{
    uint first;
    uint last;
};

// The blocks of wide and full-width characters, in order.
constexpr Range wideRanges[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x23E9, 0x23EC},   {0x2E80, 0x303E},
    {0x3041, 0x3247},   {0x3250, 0x4DBF},   {0x4E00, 0xA4C6},   {0xA960, 0xA97C},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6B},
    {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CD5}, {0x1B000, 0x1B2FB},
    {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x1FA70, 0x1FAFF},
    {0x20000, 0x3FFFD},
};

bool isWide(uint codePoint)
{
    const Range *range =
        std::lower_bound(std::begin(wideRanges), std::end(wideRanges), codePoint,
                         [](const Range &entry, uint value) { return entry.last < value; });
    return range != std::end(wideRanges) && range->first <= codePoint;
}

} // namespace

int cellWidth(uint codePoint)
{
    switch (QChar::category(codePoint)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        return isWide(codePoint) ? 2 : 1;
    }
}

int cellWidth(const QString &text)
{
    const QVector<uint> codePoints = text.toUcs4();
    int width = 0;
    for (const uint codePoint : codePoints)
        width += cellWidth(codePoint);
    return width;
}
