// Drawing into memory: surfaces, filled outlines, strokes and soft masks with smooth edges.
#include "68_raster.h"

#include <algorithm>

namespace vl_raster {
namespace {

const double kPi = 3.14159265358979323846;
const int kLongestSide = 32767;
const long long kMostPixels = 100000000;
// Beyond any surface, and far from what numbers can hold.
const double kFarthest = 1000000;

double limited(double value, double least, double most)
{
    // Written so that what is no number becomes the least.
    return value > least ? std::min(value, most) : least;
}

VL_PointD limitedPoint(const VL_PointD &point)
{
    return {limited(point.x, -kFarthest, kFarthest), limited(point.y, -kFarthest, kFarthest)};
}

// Each channel * factor / 255, rounded.
inline VL_Argb scaled(VL_Argb color, unsigned factor)
{
    const VL_Argb kLanes = 0x00FF00FF;
    VL_Argb even = (color & kLanes) * factor + 0x00800080;
    even = (even + (even >> 8 & kLanes)) >> 8 & kLanes;
    VL_Argb odd = (color >> 8 & kLanes) * factor + 0x00800080;
    odd = (odd + (odd >> 8 & kLanes)) & ~kLanes;
    return even | odd;
}

int stepsOfArc(double radius, double sweep)
{
    // Keeps the chord within a tenth of a pixel of the arc.
    const double whole = kPi * std::sqrt(5 * std::max(radius, 1.0));
    return (int)limited(std::ceil(whole * std::fabs(sweep) / 360), 2, 2000);
}

void addArc(VL_Outline &outline, VL_PointD center, double radiusX, double radiusY, double start,
            double sweep)
{
    const int steps = stepsOfArc(std::max(radiusX, radiusY), sweep);
    for (int i = 0; i <= steps; ++i) {
        const double angle = (start + sweep * i / steps) * kPi / 180;
        outline.push_back(
            {center.x + radiusX * std::cos(angle), center.y + radiusY * std::sin(angle)});
    }
}

struct Edge
{
    double top;
    double bottom;
    double x; // at the top
    double slope;
    int winding;
};

std::vector<Edge> edgesOf(const std::vector<VL_Outline> &outlines, double height)
{
    std::vector<Edge> edges;
    for (const VL_Outline &outline : outlines) {
        for (size_t i = 0; i < outline.size(); ++i) {
            VL_PointD a = limitedPoint(outline[i]);
            VL_PointD b = limitedPoint(outline[i + 1 < outline.size() ? i + 1 : 0]);
            const int winding = a.y < b.y ? 1 : -1;
            if (winding < 0)
                std::swap(a, b);
            if (a.y < b.y && b.y > 0 && a.y < height)
                edges.push_back({a.y, b.y, a.x, (b.x - a.x) / (b.y - a.y), winding});
        }
    }
    std::sort(edges.begin(), edges.end(),
              [](const Edge &a, const Edge &b) { return a.top < b.top; });
    return edges;
}

// Coverage of one row of pixels, gathered from spans of lines within it.
class Row
{
public:
    explicit Row(int width) : m_part((size_t)width + 2), m_step((size_t)width + 2), m_width(width)
    {}

    void add(double from, double to)
    {
        from = limited(from, 0, m_width);
        to = limited(to, 0, m_width);
        if (to <= from)
            return;
        const int first = (int)from;
        const int last = (int)to;
        if (first == last) {
            m_part[first] += (float)(to - from);
        } else {
            m_part[first] += (float)(first + 1 - from);
            m_part[last] += (float)(to - last);
            m_step[first + 1] += 1;
            m_step[last] -= 1;
        }
        m_first = std::min(m_first, first);
        m_last = std::max(m_last, last);
    }
    // Blends what was gathered and is empty again.
    void blend(VL_Argb *pixels, int y, const VL_Shade &shade, int lines)
    {
        float full = 0;
        for (int x = m_first; x <= m_last; ++x) {
            full += m_step[x];
            const int cover = (int)((full + m_part[x]) * 255 / (float)lines + 0.5f);
            if (cover > 0 && x < m_width)
                VL_BlendPixel(pixels + x, shade.at(x, y), std::min(cover, 255));
            m_part[x] = m_step[x] = 0;
        }
        if (m_last + 1 < (int)m_step.size())
            m_step[m_last + 1] = 0;
        m_first = m_width;
        m_last = -1;
    }

private:
    std::vector<float> m_part;
    std::vector<float> m_step;
    int m_width;
    int m_first = m_width;
    int m_last = -1;
};

struct Crossing
{
    double x;
    int winding;
};

// Adds to `row` what lies inside along the line at height `y`; the crossings are those of it.
void addSpans(std::vector<Crossing> &crossings, bool evenOdd, bool smooth, Row &row)
{
    std::sort(crossings.begin(), crossings.end(),
              [](const Crossing &a, const Crossing &b) { return a.x < b.x; });
    int winding = 0;
    for (size_t i = 0; i + 1 < crossings.size(); ++i) {
        winding += crossings[i].winding;
        if (!(evenOdd ? i % 2 == 0 : winding != 0))
            continue;
        const double from = crossings[i].x;
        const double to = crossings[i + 1].x;
        // Without smoothing a pixel belongs inside when its middle does.
        if (smooth)
            row.add(from, to);
        else
            row.add(std::ceil(from - 0.5), std::ceil(to - 0.5));
    }
}

int linesPerRow(size_t edges, bool smooth)
{
    if (!smooth || edges > 20000)
        return 1;
    return edges > 2000 ? 4 : 16;
}

// One piece of a stroke: how much of a pixel it covers.
struct Segment
{
    VL_PointD start;
    double dx; // direction, length 1
    double dy;
    double length;
    double half; // of the width
    bool flatStart;
    bool flatEnd;

    double cover(double x, double y) const
    {
        const double along = (x - start.x) * dx + (y - start.y) * dy;
        const double aside = std::fabs((y - start.y) * dx - (x - start.x) * dy);
        const double beyond = along < 0 ? along : along > length ? along - length : 0;
        if (beyond != 0 && !(beyond < 0 ? flatStart : flatEnd))
            return limited(half + 0.5 - std::hypot(beyond, aside), 0, 1);
        double part = limited(half + 0.5 - aside, 0, 1);
        if (flatStart)
            part *= limited(along + 0.5, 0, 1);
        if (flatEnd)
            part *= limited(length - along + 0.5, 0, 1);
        return part;
    }
};

Segment segmentOf(const VL_PointD &from, const VL_PointD &to, double width)
{
    Segment segment = {from,      1,     0,    std::hypot(to.x - from.x, to.y - from.y),
                       width / 2, false, false};
    if (segment.length > 0) {
        segment.dx = (to.x - from.x) / segment.length;
        segment.dy = (to.y - from.y) / segment.length;
    }
    return segment;
}

RECT reachOf(const Segment &segment, int width, int height)
{
    const double endX = segment.start.x + segment.dx * segment.length;
    const double endY = segment.start.y + segment.dy * segment.length;
    const double pad = segment.half + 1;
    return {(LONG)limited(std::floor(std::min(segment.start.x, endX) - pad), 0, width),
            (LONG)limited(std::floor(std::min(segment.start.y, endY) - pad), 0, height),
            (LONG)limited(std::ceil(std::max(segment.start.x, endX) + pad), 0, width),
            (LONG)limited(std::ceil(std::max(segment.start.y, endY) + pad), 0, height)};
}

// Calls put(x, y, cover 1..255) for the pixels that the segment reaches within `reach`.
template <typename Put>
void coverSegment(const Segment &segment, const RECT &reach, bool smooth, const Put &put)
{
    const bool steep = std::fabs(segment.dy) > std::fabs(segment.dx);
    const double slope = steep ? segment.dx / segment.dy : segment.dy / segment.dx;
    const double room = (segment.half + 0.5) * std::hypot(1, slope);
    const int mainFrom = steep ? reach.top : reach.left;
    const int mainTo = steep ? reach.bottom : reach.right;
    const int sideFrom = steep ? reach.left : reach.top;
    const int sideTo = steep ? reach.right : reach.bottom;
    for (int main = mainFrom; main < mainTo; ++main) {
        const double middle = steep ? segment.start.x + (main + 0.5 - segment.start.y) * slope
                                    : segment.start.y + (main + 0.5 - segment.start.x) * slope;
        const int from = (int)limited(std::floor(middle - room - 0.5), sideFrom, sideTo);
        const int to = (int)limited(std::ceil(middle + room + 0.5), sideFrom, sideTo);
        for (int side = from; side < to; ++side) {
            const int x = steep ? side : main;
            const int y = steep ? main : side;
            const double part = segment.cover(x + 0.5, y + 0.5);
            const int cover = smooth ? (int)(part * 255 + 0.5) : part >= 0.4999 ? 255 : 0;
            if (cover > 0)
                put(x, y, cover);
        }
    }
}

std::vector<Segment> segmentsOf(const VL_Outline &points, bool closed, double width)
{
    std::vector<Segment> segments;
    const size_t count = closed && points.size() > 2 ? points.size() : points.size() - 1;
    for (size_t i = 0; i < count; ++i) {
        const VL_PointD from = limitedPoint(points[i]);
        const VL_PointD to = limitedPoint(points[(i + 1) % points.size()]);
        const Segment segment = segmentOf(from, to, width);
        if (segment.length > 0)
            segments.push_back(segment);
    }
    if (!segments.empty() && count < points.size()) {
        segments.front().flatStart = true;
        segments.back().flatEnd = true;
    }
    return segments;
}

} // namespace
} // namespace vl_raster

VL_Argb VL_ArgbOf(int color, int alpha)
{
    return (VL_Argb)alpha << 24 | GetRValue((COLORREF)color) << 16 |
           GetGValue((COLORREF)color) << 8 | GetBValue((COLORREF)color);
}

VL_Surface::~VL_Surface()
{
    release();
}

bool VL_Surface::create(int width, int height)
{
    if (valid() && width == m_width && height == m_height) {
        GdiFlush();
        std::fill_n(m_pixels, (size_t)width * height, 0);
        return true;
    }
    release();
    if (width < 1 || height < 1 || width > vl_raster::kLongestSide ||
        height > vl_raster::kLongestSide || (long long)width * height > vl_raster::kMostPixels)
        return false;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void *pixels = nullptr;
    m_bitmap = CreateDIBSection(NULL, &info, DIB_RGB_COLORS, &pixels, NULL, 0);
    m_dc = m_bitmap ? CreateCompatibleDC(NULL) : NULL;
    if (!m_dc) {
        release();
        return false;
    }
    m_before = SelectObject(m_dc, m_bitmap);
    m_pixels = (VL_Argb *)pixels;
    m_width = width;
    m_height = height;
    return true;
}

void VL_Surface::release()
{
    if (m_dc) {
        SelectObject(m_dc, m_before);
        DeleteDC(m_dc);
    }
    if (m_bitmap)
        DeleteObject(m_bitmap);
    m_dc = NULL;
    m_bitmap = NULL;
    m_pixels = nullptr;
    m_width = m_height = 0;
}

void VL_Surface::swap(VL_Surface &other)
{
    std::swap(m_dc, other.m_dc);
    std::swap(m_bitmap, other.m_bitmap);
    std::swap(m_before, other.m_before);
    std::swap(m_pixels, other.m_pixels);
    std::swap(m_width, other.m_width);
    std::swap(m_height, other.m_height);
}

void VL_Surface::blendTo(HDC target, int x, int y) const
{
    if (!valid())
        return;
    const BLENDFUNCTION blend = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    AlphaBlend(target, x, y, m_width, m_height, m_dc, 0, 0, m_width, m_height, blend);
}

VL_Outline VL_RectOutline(double x, double y, double width, double height)
{
    return {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}};
}

VL_Outline VL_RoundRectOutline(double x, double y, double width, double height, double radius)
{
    const double r = vl_raster::limited(radius, 0, std::min(width, height) / 2);
    if (r <= 0)
        return VL_RectOutline(x, y, width, height);
    VL_Outline outline;
    vl_raster::addArc(outline, {x + width - r, y + r}, r, r, 270, 90);
    vl_raster::addArc(outline, {x + width - r, y + height - r}, r, r, 0, 90);
    vl_raster::addArc(outline, {x + r, y + height - r}, r, r, 90, 90);
    vl_raster::addArc(outline, {x + r, y + r}, r, r, 180, 90);
    return outline;
}

VL_Outline VL_EllipseOutline(double x, double y, double width, double height)
{
    return VL_ArcOutline(x, y, width, height, 0, 360);
}

VL_Outline VL_ArcOutline(double x, double y, double width, double height, double start,
                         double sweep)
{
    VL_Outline outline;
    vl_raster::addArc(outline, {x + width / 2, y + height / 2}, width / 2, height / 2,
                      std::fmod(start, 360), vl_raster::limited(sweep, -360, 360));
    return outline;
}

VL_Outline VL_CurveOutline(const VL_Outline &points)
{
    if (points.size() < 3)
        return points;
    VL_Outline outline;
    const size_t last = points.size() - 1;
    for (size_t i = 0; i < last; ++i) {
        const VL_PointD a = points[i], b = points[i + 1];
        const VL_PointD before = points[i > 0 ? i - 1 : 0], after = points[std::min(i + 2, last)];
        // Tangents of half the way between the neighbours.
        const VL_PointD leave = {(b.x - before.x) / 2, (b.y - before.y) / 2};
        const VL_PointD arrive = {(after.x - a.x) / 2, (after.y - a.y) / 2};
        const int steps = (int)vl_raster::limited(std::hypot(b.x - a.x, b.y - a.y) / 4, 4, 100);
        for (int k = 0; k < steps; ++k) {
            const double t = (double)k / steps, t2 = t * t, t3 = t2 * t;
            const double ofA = 2 * t3 - 3 * t2 + 1, ofLeave = t3 - 2 * t2 + t;
            const double ofB = 3 * t2 - 2 * t3, ofArrive = t3 - t2;
            outline.push_back({a.x * ofA + leave.x * ofLeave + b.x * ofB + arrive.x * ofArrive,
                               a.y * ofA + leave.y * ofLeave + b.y * ofB + arrive.y * ofArrive});
        }
    }
    outline.push_back(points[last]);
    return outline;
}

std::vector<VL_Outline> VL_DashOutline(const VL_Outline &points, bool closed,
                                       const std::vector<double> &pattern)
{
    std::vector<VL_Outline> pieces;
    size_t step = 0;
    double left = pattern[0];
    VL_Outline piece;
    const size_t count = closed ? points.size() : points.size() - 1;
    for (size_t i = 0; i < count; ++i) {
        const VL_PointD from = points[i], to = points[(i + 1) % points.size()];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        if (piece.empty() && step % 2 == 0)
            piece.push_back(from);
        double done = 0;
        while (length - done > left) {
            done += left;
            const VL_PointD here = {from.x + (to.x - from.x) * done / length,
                                    from.y + (to.y - from.y) * done / length};
            piece.push_back(here);
            if (step % 2 == 0) {
                pieces.push_back(piece);
                piece.clear();
            }
            step = (step + 1) % pattern.size();
            left = std::max(pattern[step], 0.5);
        }
        left -= length - done;
        if (step % 2 == 0)
            piece.push_back(to);
    }
    if (step % 2 == 0 && piece.size() > 1)
        pieces.push_back(piece);
    return pieces;
}

VL_Argb VL_Shade::at(int x, int y) const
{
    if (axis == None)
        return from;
    const double place = (axis == Horizontal ? x : y) + 0.5;
    const int part =
        end > start ? (int)(vl_raster::limited((place - start) / (end - start), 0, 1) * 256) : 0;
    VL_Argb color = 0;
    for (int shift = 0; shift < 32; shift += 8) {
        const int a = from >> shift & 255, b = to >> shift & 255;
        color |= (VL_Argb)(a + (b - a) * part / 256) << shift;
    }
    return color;
}

void VL_BlendPixel(VL_Argb *pixel, VL_Argb color, int cover)
{
    const unsigned alpha = ((color >> 24) * (unsigned)cover + 127) / 255;
    if (alpha == 255)
        *pixel = color;
    else if (alpha > 0)
        *pixel =
            vl_raster::scaled(color | 0xFF000000, alpha) + vl_raster::scaled(*pixel, 255 - alpha);
}

void VL_BlendSurface(VL_Surface &target, const VL_Surface &source)
{
    GdiFlush();
    const int width = std::min(target.width(), source.width());
    const int height = std::min(target.height(), source.height());
    for (int y = 0; y < height; ++y) {
        VL_Argb *to = target.row(y);
        const VL_Argb *from = source.row(y);
        for (int x = 0; x < width; ++x) {
            const unsigned alpha = from[x] >> 24;
            if (alpha == 255)
                to[x] = from[x];
            else if (alpha > 0)
                to[x] = from[x] + vl_raster::scaled(to[x], 255 - alpha);
        }
    }
}

void VL_FillOutlines(VL_Surface &surface, const std::vector<VL_Outline> &outlines,
                     const VL_Shade &shade, bool evenOdd, bool smooth)
{
    using namespace vl_raster;
    if (!surface.valid())
        return;
    const std::vector<Edge> edges = edgesOf(outlines, surface.height());
    if (edges.empty())
        return;
    GdiFlush();
    const int lines = linesPerRow(edges.size(), smooth);
    std::vector<const Edge *> active;
    std::vector<Crossing> crossings;
    Row row(surface.width());
    size_t next = 0;
    const int top = (int)limited(std::floor(edges[0].top), 0, surface.height());
    for (int y = top; y < surface.height() && (next < edges.size() || !active.empty()); ++y) {
        for (; next < edges.size() && edges[next].top < y + 1; ++next)
            active.push_back(&edges[next]);
        for (int line = 0; line < lines; ++line) {
            const double height = y + (line + 0.5) / lines;
            crossings.clear();
            for (const Edge *edge : active) {
                if (edge->top <= height && height < edge->bottom)
                    crossings.push_back(
                        {edge->x + (height - edge->top) * edge->slope, edge->winding});
            }
            addSpans(crossings, evenOdd, smooth, row);
        }
        row.blend(surface.row(y), y, shade, lines);
        active.erase(std::remove_if(active.begin(), active.end(),
                                    [y](const Edge *edge) { return edge->bottom <= y + 1; }),
                     active.end());
    }
}

void VL_StrokeOutline(VL_Surface &surface, const VL_Outline &points, bool closed, double width,
                      VL_Argb color, bool smooth)
{
    using namespace vl_raster;
    if (!surface.valid() || points.size() < 2)
        return;
    GdiFlush();
    const std::vector<Segment> segments =
        segmentsOf(points, closed, limited(width, 1, kLongestSide));
    RECT all = {surface.width(), surface.height(), 0, 0};
    for (const Segment &segment : segments) {
        const RECT reach = reachOf(segment, surface.width(), surface.height());
        if (segments.size() == 1) {
            coverSegment(segment, reach, smooth, [&](int x, int y, int cover) {
                VL_BlendPixel(surface.row(y) + x, color, cover);
            });
            return;
        }
        all = {std::min(all.left, reach.left), std::min(all.top, reach.top),
               std::max(all.right, reach.right), std::max(all.bottom, reach.bottom)};
    }
    // Where pieces meet each pixel takes the colour once.
    VL_Mask mask;
    mask.reset(all);
    for (const Segment &segment : segments) {
        const RECT reach = reachOf(segment, surface.width(), surface.height());
        coverSegment(segment, reach, smooth, [&](int x, int y, int cover) {
            unsigned char &value =
                mask.cover[(size_t)(y - mask.top) * mask.width + (x - mask.left)];
            value = std::max(value, (unsigned char)cover);
        });
    }
    VL_BlendMask(surface, mask, 0, 0, color);
}

void VL_Mask::reset(const RECT &place)
{
    left = place.left;
    top = place.top;
    width = std::max(0, (int)(place.right - place.left));
    height = std::max(0, (int)(place.bottom - place.top));
    cover.assign((size_t)width * height, 0);
}

void VL_BlendMask(VL_Surface &surface, const VL_Mask &mask, int dx, int dy, VL_Argb color)
{
    const int fromX = std::max(0, -(mask.left + dx));
    const int toX = std::min(mask.width, surface.width() - mask.left - dx);
    const int fromY = std::max(0, -(mask.top + dy));
    const int toY = std::min(mask.height, surface.height() - mask.top - dy);
    for (int y = fromY; y < toY; ++y) {
        VL_Argb *pixels = surface.row(mask.top + dy + y) + mask.left + dx;
        const unsigned char *cover = mask.cover.data() + (size_t)y * mask.width;
        for (int x = fromX; x < toX; ++x) {
            if (cover[x])
                VL_BlendPixel(pixels + x, color, cover[x]);
        }
    }
}
