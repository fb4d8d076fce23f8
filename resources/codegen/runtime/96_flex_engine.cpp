// Layout of the children of one container: flexible rows and columns, and grids of equal cells.
#include "96_flex_engine.h"

#include <algorithm>
#include <cmath>

namespace vl_flex_engine {
namespace {

// Far beyond any screen; keeps sums exact and conversions to int safe.
const double Most = 1e7;
const double Tiny = 1e-6;

double length(double value)
{
    // Also false for what is not a number.
    return value > 0 ? std::min(value, Most) : 0;
}

double within(double value, double least, double greatest)
{
    return std::max(std::min(value, greatest), least);
}

// An item along the container's axes.
struct Part
{
    VL_FlexItem *item = nullptr;
    double base = 0;
    double least = 0;
    double greatest = 0;
    double before = 0; // margins along the main axis
    double after = 0;
    double crossBase = 0;
    double crossLeast = 0;
    double crossGreatest = 0;
    double crossBefore = 0;
    double crossAfter = 0;
    double grow = 0;
    double shrink = 0;

    double main = 0; // the size found
    bool frozen = false;

    double hypothetical() const { return within(base, least, greatest); }
    double outer(double size) const { return before + size + after; }
    double crossHypothetical() const { return within(crossBase, crossLeast, crossGreatest); }
    double crossOuter() const { return crossBefore + crossHypothetical() + crossAfter; }
};

struct Line
{
    size_t begin = 0;
    size_t end = 0;
    double cross = 0;
};

// The container along its axes.
struct Frame
{
    bool row = true;
    bool reverse = false;
    double main = 0; // inside the padding
    double cross = 0;
    double mainGap = 0;
    double crossGap = 0;
    double left = 0;
    double top = 0;
};

Part partOf(VL_FlexItem &item, const Frame &frame)
{
    const VL_FlexSides margin = {length(item.margin.left), length(item.margin.top),
                                 length(item.margin.right), length(item.margin.bottom)};
    Part part;
    part.item = &item;
    part.grow = length(item.grow);
    part.shrink = length(item.shrink);
    part.base = length(item.baseWidth);
    part.least = length(item.minWidth);
    part.greatest = length(item.maxWidth);
    part.before = margin.left;
    part.after = margin.right;
    part.crossBase = length(item.baseHeight);
    part.crossLeast = length(item.minHeight);
    part.crossGreatest = length(item.maxHeight);
    part.crossBefore = margin.top;
    part.crossAfter = margin.bottom;
    if (!frame.row) {
        std::swap(part.base, part.crossBase);
        std::swap(part.least, part.crossLeast);
        std::swap(part.greatest, part.crossGreatest);
        std::swap(part.before, part.crossBefore);
        std::swap(part.after, part.crossAfter);
    }
    if (frame.reverse)
        std::swap(part.before, part.after);
    return part;
}

std::vector<Line> breakLines(const std::vector<Part> &parts, const Frame &frame, bool wrap)
{
    std::vector<Line> lines;
    double used = 0;
    for (size_t i = 0; i < parts.size(); ++i) {
        const double size = parts[i].outer(parts[i].hypothetical());
        const bool fits = used + frame.mainGap + size <= frame.main + Tiny;
        if (lines.empty() || (wrap && !fits)) {
            lines.emplace_back();
            lines.back().begin = i;
            used = size;
        } else {
            used += frame.mainGap + size;
        }
        lines.back().end = i + 1;
    }
    return lines;
}

// One line whose items grow or shrink into the room there is.
class LineSizes
{
public:
    LineSizes(std::vector<Part> &parts, const Line &line, const Frame &frame)
        : m_begin(parts.data() + line.begin),
          m_end(parts.data() + line.end),
          m_room(frame.main - frame.mainGap * (double)(line.end - line.begin - 1))
    {}

    void resolve()
    {
        double wanted = 0;
        for (Part *part = m_begin; part != m_end; ++part)
            wanted += part->outer(part->hypothetical());
        m_growing = wanted < m_room;
        freezeInflexible();
        m_initialFree = freeSpace();
        // Every round freezes one item at least.
        while (!allFrozen())
            round();
    }

private:
    double factor(const Part &part) const { return m_growing ? part.grow : part.shrink; }

    void freezeInflexible()
    {
        for (Part *part = m_begin; part != m_end; ++part) {
            const double size = part->hypothetical();
            part->frozen =
                factor(*part) <= 0 || (m_growing ? part->base > size : part->base < size);
            part->main = size;
        }
    }

    bool allFrozen() const
    {
        return std::all_of(m_begin, m_end, [](const Part &part) { return part.frozen; });
    }

    double freeSpace() const
    {
        double used = 0;
        for (const Part *part = m_begin; part != m_end; ++part)
            used += part->outer(part->frozen ? part->main : part->base);
        return m_room - used;
    }

    // Factors that add up to less than 1 take only that share of the room.
    double spaceToGive() const
    {
        double factors = 0;
        for (const Part *part = m_begin; part != m_end; ++part)
            factors += part->frozen ? 0 : factor(*part);
        const double free = freeSpace();
        const double share = m_initialFree * factors;
        return factors < 1 && std::fabs(share) < std::fabs(free) ? share : free;
    }

    // What the item's share is weighed by: greater items shrink more.
    double weight(const Part &part) const
    {
        return m_growing ? part.grow : part.shrink * part.base;
    }

    void round()
    {
        const double free = spaceToGive();
        double weights = 0;
        for (Part *part = m_begin; part != m_end; ++part)
            weights += part->frozen ? 0 : weight(*part);
        double violation = 0;
        for (Part *part = m_begin; part != m_end; ++part) {
            if (part->frozen)
                continue;
            const double target = part->base + (weights > 0 ? free * (weight(*part) / weights) : 0);
            part->main = within(std::max(target, 0.0), part->least, part->greatest);
            violation += part->main - target;
        }
        freezeViolated(violation, free, weights);
    }

    // When the limits take more than there is, items at their least size stay there; when they
    // leave some, items at their greatest.
    void freezeViolated(double violation, double free, double weights)
    {
        const bool none = std::fabs(violation) < Tiny;
        bool any = false;
        for (Part *part = m_begin; part != m_end; ++part) {
            if (part->frozen)
                continue;
            const double target = part->base + (weights > 0 ? free * (weight(*part) / weights) : 0);
            const double difference = part->main - target;
            part->frozen = none || (violation > 0 ? difference > 0 : difference < 0);
            any = any || part->frozen;
        }
        for (Part *part = m_begin; !any && part != m_end; ++part)
            part->frozen = true;
    }

    Part *m_begin;
    Part *m_end;
    double m_room;
    bool m_growing = false;
    double m_initialFree = 0;
};

// Room before the first of `count` things, and added between two, when `free` is left.
void spread(VL_FlexJustify how, double free, size_t count, double *before, double *between)
{
    *before = 0;
    *between = 0;
    if (free <= 0 || count == 0)
        return;
    const double things = (double)count;
    switch (how) {
    case VL_FlexJustify::Start:
        break;
    case VL_FlexJustify::Center:
        *before = free / 2;
        break;
    case VL_FlexJustify::End:
        *before = free;
        break;
    case VL_FlexJustify::SpaceBetween:
        *between = count > 1 ? free / (things - 1) : 0;
        break;
    case VL_FlexJustify::SpaceAround:
        *between = free / things;
        *before = *between / 2;
        break;
    case VL_FlexJustify::SpaceEvenly:
        *between = free / (things + 1);
        *before = *between;
        break;
    }
}

// Halves go up, so that whole sizes stay whole wherever they begin.
int rounded(double value)
{
    return (int)std::floor(std::min(std::max(value, 0.0), Most * 10) + 0.5 + Tiny);
}

void setEdges(VL_FlexItem &item, double left, double top, double right, double bottom)
{
    item.x = rounded(left);
    item.y = rounded(top);
    item.width = std::max(rounded(right) - item.x, 0);
    item.height = std::max(rounded(bottom) - item.y, 0);
}

void setItem(const Part &part, const Frame &frame, double main, double cross, double crossSize)
{
    const double mainEnd = main + part.main, crossEnd = cross + crossSize;
    if (frame.row)
        setEdges(*part.item, frame.left + main, frame.top + cross, frame.left + mainEnd,
                 frame.top + crossEnd);
    else
        setEdges(*part.item, frame.left + cross, frame.top + main, frame.left + crossEnd,
                 frame.top + mainEnd);
}

void placeCross(const Part &part, const Frame &frame, const Line &line, VL_FlexAlign align,
                double main, double crossBegin)
{
    const double room = line.cross - part.crossBefore - part.crossAfter;
    double size = part.crossHypothetical();
    if (align == VL_FlexAlign::Stretch)
        size = within(std::max(room, 0.0), part.crossLeast, part.crossGreatest);
    const double free = std::max(room - size, 0.0);
    double offset = part.crossBefore;
    if (align == VL_FlexAlign::Center)
        offset += free / 2;
    else if (align == VL_FlexAlign::End)
        offset += free;
    setItem(part, frame, main, crossBegin + offset, size);
}

void placeLine(const std::vector<Part> &parts, const Line &line, const Frame &frame,
               const VL_FlexContainer &container, double crossBegin)
{
    double used = frame.mainGap * (double)(line.end - line.begin - 1);
    for (size_t i = line.begin; i < line.end; ++i)
        used += parts[i].outer(parts[i].main);
    double at = 0, between = 0;
    spread(container.justifyContent, frame.main - used, line.end - line.begin, &at, &between);
    // Seen from the other end; what does not fit still runs out at the right.
    const double mirror = std::max(frame.main, used);
    for (size_t i = line.begin; i < line.end; ++i) {
        const Part &part = parts[i];
        const double begin = at + part.before;
        const double main = frame.reverse ? mirror - (begin + part.main) : begin;
        placeCross(part, frame, line, container.alignItems, main, crossBegin);
        at = begin + part.main + part.after + frame.mainGap + between;
    }
}

// The heights of the lines and the room above the first.
double sizeLines(const std::vector<Part> &parts, std::vector<Line> &lines, const Frame &frame,
                 const VL_FlexContainer &container)
{
    double used = frame.crossGap * (double)(lines.size() - 1);
    for (Line &line : lines) {
        for (size_t i = line.begin; i < line.end; ++i)
            line.cross = std::max(line.cross, parts[i].crossOuter());
        used += line.cross;
    }
    if (!container.wrap) {
        lines.front().cross = frame.cross;
        return 0;
    }
    const double free = std::max(frame.cross - used, 0.0);
    switch (container.alignItems) {
    case VL_FlexAlign::Stretch:
        for (Line &line : lines)
            line.cross += free / (double)lines.size();
        return 0;
    case VL_FlexAlign::Center:
        return free / 2;
    case VL_FlexAlign::End:
        return free;
    default:
        return 0;
    }
}

Frame frameOf(const VL_FlexContainer &container, double width, double height)
{
    const double left = length(container.padding.left), top = length(container.padding.top);
    Frame frame;
    frame.row = container.direction == VL_FlexDirection::Row ||
                container.direction == VL_FlexDirection::RowReverse;
    frame.reverse = container.direction == VL_FlexDirection::RowReverse ||
                    container.direction == VL_FlexDirection::ColumnReverse;
    frame.left = left;
    frame.top = top;
    frame.main = length(length(width) - left - length(container.padding.right));
    frame.cross = length(length(height) - top - length(container.padding.bottom));
    if (!frame.row)
        std::swap(frame.main, frame.cross);
    frame.mainGap = length(container.mainGap);
    frame.crossGap = length(container.crossGap);
    return frame;
}

} // namespace
} // namespace vl_flex_engine

void VL_FlexLayout(const VL_FlexContainer &container, double width, double height,
                   std::vector<VL_FlexItem> &items)
{
    using namespace vl_flex_engine;
    const Frame frame = frameOf(container, width, height);
    std::vector<Part> parts;
    for (VL_FlexItem &item : items) {
        if (!item.hidden)
            parts.push_back(partOf(item, frame));
    }
    if (parts.empty())
        return;
    std::vector<Line> lines = breakLines(parts, frame, container.wrap);
    for (const Line &line : lines)
        LineSizes(parts, line, frame).resolve();
    double cross = sizeLines(parts, lines, frame, container);
    for (const Line &line : lines) {
        placeLine(parts, line, frame, container, cross);
        cross += line.cross + frame.crossGap;
    }
}

void VL_GridLayout(int columns, double spacing, const VL_FlexSides &padding, double width,
                   double height, std::vector<VL_FlexItem> &items)
{
    using namespace vl_flex_engine;
    size_t shown = 0;
    for (const VL_FlexItem &item : items)
        shown += item.hidden ? 0 : 1;
    if (shown == 0)
        return;
    const size_t across = columns < 1 ? 1 : (size_t)columns;
    const size_t down = (shown + across - 1) / across;
    const double gap = length(spacing), left = length(padding.left), top = length(padding.top);
    // A cell with the gap behind it.
    const double stepX =
        length(length(width) - left - length(padding.right) + gap) / (double)across;
    const double stepY = length(length(height) - top - length(padding.bottom) + gap) / (double)down;
    size_t index = 0;
    for (VL_FlexItem &item : items) {
        if (item.hidden)
            continue;
        const double x = left + stepX * (double)(index % across) + length(item.margin.left);
        const double y = top + stepY * (double)(index / across) + length(item.margin.top);
        const double margins = length(item.margin.left) + length(item.margin.right);
        const double marginsDown = length(item.margin.top) + length(item.margin.bottom);
        const double cellWidth =
            within(length(stepX - gap - margins), length(item.minWidth), length(item.maxWidth));
        const double cellHeight = within(length(stepY - gap - marginsDown), length(item.minHeight),
                                         length(item.maxHeight));
        setEdges(item, x, y, x + cellWidth, y + cellHeight);
        ++index;
    }
}
