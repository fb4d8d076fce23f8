// Shapes on a drawing canvas.
#include "88_drawing_shapes.h"

#include <algorithm>

namespace vl_drawing_shapes {
namespace {

const double kWidestLine = 5000;

struct Box
{
    double x;
    double y;
    double w;
    double h;
};

Box boxOf(double x, double y, double w, double h)
{
    return {w < 0 ? x + w : x, h < 0 ? y + h : y, std::fabs(w), std::fabs(h)};
}

// Pixels of the surface.
Box scaledBox(const VL_CanvasTarget &target, const Box &box)
{
    return {box.x * target.scale, box.y * target.scale, box.w * target.scale, box.h * target.scale};
}

// The box through the middles of the outermost pixels, where an outline runs.
Box outlineBox(const VL_CanvasTarget &target, const Box &box)
{
    return scaledBox(
        target, {box.x + 0.5, box.y + 0.5, std::max(0.0, box.w - 1), std::max(0.0, box.h - 1)});
}

double lineWidth(const VL_CanvasTarget &target, double width)
{
    return std::max(1.0, std::min(width > 0 ? width : 1, kWidestLine) * target.scale);
}

// A line's place across its direction, so that it covers whole pixels.
double snapped(double middle, double width)
{
    return std::round(middle - width / 2) + width / 2;
}

void stroke(HWND canvas, const std::function<VL_Outline(const VL_CanvasTarget &)> &shape,
            bool closed, int color, double width)
{
    VL_DrawCanvas_Draw(canvas, [&](VL_CanvasTarget &target) {
        VL_StrokeOutline(target.surface, shape(target), closed, lineWidth(target, width),
                         VL_ArgbOf(color), target.smooth);
    });
}

void fill(HWND canvas, const std::function<VL_Outline(const VL_CanvasTarget &)> &shape, int color)
{
    VL_DrawCanvas_Draw(canvas, [&](VL_CanvasTarget &target) {
        VL_FillOutlines(target.surface, {shape(target)}, VL_ArgbOf(color), true, target.smooth);
    });
}

// `middle` moves the points to the middles of their pixels.
VL_Outline pointsOf(const VL_CanvasTarget &target, const VL_Array &numbers, bool middle)
{
    VL_Outline points;
    const double shift = middle ? 0.5 : 0;
    for (size_t i = 0; i + 1 < numbers.size(); i += 2)
        points.push_back({(VL_AnyToNumber(numbers[i]) + shift) * target.scale,
                          (VL_AnyToNumber(numbers[i + 1]) + shift) * target.scale});
    return points;
}

// Moves `end` away from `neighbour`, so that a line that begins there covers its whole pixel.
void lengthen(VL_PointD &end, const VL_PointD &neighbour, double by)
{
    const double length = std::hypot(end.x - neighbour.x, end.y - neighbour.y);
    if (!(length > 0))
        return;
    end.x += (end.x - neighbour.x) / length * by;
    end.y += (end.y - neighbour.y) / length * by;
}

VL_Outline openLine(const VL_CanvasTarget &target, VL_Outline points)
{
    if (points.size() > 1) {
        lengthen(points.front(), points[1], target.scale / 2);
        lengthen(points.back(), points[points.size() - 2], target.scale / 2);
    }
    return points;
}

VL_Outline pieOf(const Box &box, double start, double sweep)
{
    VL_Outline outline = VL_ArcOutline(box.x, box.y, box.w, box.h, start, sweep);
    if (std::fabs(sweep) < 360)
        outline.push_back({box.x + box.w / 2, box.y + box.h / 2});
    return outline;
}

void drawLine(VL_CanvasTarget &target, VL_PointD from, VL_PointD to, int color, double width)
{
    double line = lineWidth(target, width);
    from = {(from.x + 0.5) * target.scale, (from.y + 0.5) * target.scale};
    to = {(to.x + 0.5) * target.scale, (to.y + 0.5) * target.scale};
    if (from.x == to.x || from.y == to.y)
        line = std::round(line);
    if (from.y == to.y)
        from.y = to.y = snapped(from.y, line);
    else if (from.x == to.x)
        from.x = to.x = snapped(from.x, line);
    // Both ends belong to the line.
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    const double half = target.scale / 2;
    const double dx = length > 0 ? (to.x - from.x) / length * half : half;
    const double dy = length > 0 ? (to.y - from.y) / length * half : 0;
    VL_StrokeOutline(target.surface, {{from.x - dx, from.y - dy}, {to.x + dx, to.y + dy}}, false,
                     line, VL_ArgbOf(color), target.smooth);
}

void drawFrame(VL_CanvasTarget &target, const Box &box, int color, double width)
{
    const double line = std::round(lineWidth(target, width));
    const Box middle = outlineBox(target, box);
    const double left = std::round(middle.x - line / 2), top = std::round(middle.y - line / 2);
    const double right = std::round(middle.x + middle.w + line / 2);
    const double bottom = std::round(middle.y + middle.h + line / 2);
    std::vector<VL_Outline> outlines = {VL_RectOutline(left, top, right - left, bottom - top)};
    // A frame whose sides meet is a plain rectangle.
    if (right - left > 2 * line && bottom - top > 2 * line)
        outlines.push_back(VL_RectOutline(left + line, top + line, right - left - 2 * line,
                                          bottom - top - 2 * line));
    VL_FillOutlines(target.surface, outlines, VL_ArgbOf(color), true, false);
}

void fillBox(VL_CanvasTarget &target, const Box &box, int color)
{
    const Box scaled = scaledBox(target, box);
    const double left = std::round(scaled.x), top = std::round(scaled.y);
    VL_FillOutlines(target.surface,
                    {VL_RectOutline(left, top, std::round(scaled.x + scaled.w) - left,
                                    std::round(scaled.y + scaled.h) - top)},
                    VL_ArgbOf(color), true, false);
}

} // namespace
} // namespace vl_drawing_shapes

void VL_DrawCanvas_Line(HWND canvas, double x1, double y1, double x2, double y2, int color,
                        double width)
{
    VL_DrawCanvas_Draw(canvas, [&](VL_CanvasTarget &target) {
        vl_drawing_shapes::drawLine(target, {x1, y1}, {x2, y2}, color, width);
    });
}

void VL_DrawCanvas_Rectangle(HWND canvas, double x, double y, double w, double h, int color,
                             double width)
{
    using namespace vl_drawing_shapes;
    const Box box = boxOf(x, y, w, h);
    if (box.w > 0 && box.h > 0)
        VL_DrawCanvas_Draw(canvas,
                           [&](VL_CanvasTarget &target) { drawFrame(target, box, color, width); });
}

void VL_DrawCanvas_FillRectangle(HWND canvas, double x, double y, double w, double h, int color)
{
    VL_DrawCanvas_Draw(canvas, [&](VL_CanvasTarget &target) {
        vl_drawing_shapes::fillBox(target, vl_drawing_shapes::boxOf(x, y, w, h), color);
    });
}

void VL_DrawCanvas_RoundRectangle(HWND canvas, double x, double y, double w, double h,
                                  double radius, int color, double width)
{
    using namespace vl_drawing_shapes;
    if (!(radius > 0)) {
        VL_DrawCanvas_Rectangle(canvas, x, y, w, h, color, width);
        return;
    }
    const auto shape = [&](const VL_CanvasTarget &target) {
        const Box box = outlineBox(target, boxOf(x, y, w, h));
        return VL_RoundRectOutline(box.x, box.y, box.w, box.h, (radius - 0.5) * target.scale);
    };
    stroke(canvas, shape, true, color, width);
}

void VL_DrawCanvas_FillRoundRectangle(HWND canvas, double x, double y, double w, double h,
                                      double radius, int color)
{
    using namespace vl_drawing_shapes;
    if (!(radius > 0)) {
        VL_DrawCanvas_FillRectangle(canvas, x, y, w, h, color);
        return;
    }
    const auto shape = [&](const VL_CanvasTarget &target) {
        const Box box = scaledBox(target, boxOf(x, y, w, h));
        return VL_RoundRectOutline(box.x, box.y, box.w, box.h, radius * target.scale);
    };
    fill(canvas, shape, color);
}

void VL_DrawCanvas_Ellipse(HWND canvas, double x, double y, double w, double h, int color,
                           double width)
{
    VL_DrawCanvas_Arc(canvas, x, y, w, h, 0, 360, color, width);
}

void VL_DrawCanvas_FillEllipse(HWND canvas, double x, double y, double w, double h, int color)
{
    VL_DrawCanvas_FillPie(canvas, x, y, w, h, 0, 360, color);
}

void VL_DrawCanvas_Arc(HWND canvas, double x, double y, double w, double h, double start,
                       double sweep, int color, double width)
{
    using namespace vl_drawing_shapes;
    const auto shape = [&](const VL_CanvasTarget &target) {
        const Box box = outlineBox(target, boxOf(x, y, w, h));
        return VL_ArcOutline(box.x, box.y, box.w, box.h, start, sweep);
    };
    stroke(canvas, shape, std::fabs(sweep) >= 360, color, width);
}

void VL_DrawCanvas_Pie(HWND canvas, double x, double y, double w, double h, double start,
                       double sweep, int color, double width)
{
    using namespace vl_drawing_shapes;
    const auto shape = [&](const VL_CanvasTarget &target) {
        return pieOf(outlineBox(target, boxOf(x, y, w, h)), start, sweep);
    };
    stroke(canvas, shape, true, color, width);
}

void VL_DrawCanvas_FillPie(HWND canvas, double x, double y, double w, double h, double start,
                           double sweep, int color)
{
    using namespace vl_drawing_shapes;
    const auto shape = [&](const VL_CanvasTarget &target) {
        return pieOf(scaledBox(target, boxOf(x, y, w, h)), start, sweep);
    };
    fill(canvas, shape, color);
}

void VL_DrawCanvas_Polyline(HWND canvas, const VL_Array &points, int color, double width)
{
    using namespace vl_drawing_shapes;
    const auto shape = [&](const VL_CanvasTarget &target) {
        return openLine(target, pointsOf(target, points, true));
    };
    stroke(canvas, shape, false, color, width);
}

void VL_DrawCanvas_Polygon(HWND canvas, const VL_Array &points, int color, double width)
{
    using namespace vl_drawing_shapes;
    const auto shape = [&](const VL_CanvasTarget &target) {
        return pointsOf(target, points, true);
    };
    stroke(canvas, shape, true, color, width);
}

void VL_DrawCanvas_FillPolygon(HWND canvas, const VL_Array &points, int color)
{
    using namespace vl_drawing_shapes;
    const auto shape = [&](const VL_CanvasTarget &target) {
        return pointsOf(target, points, false);
    };
    fill(canvas, shape, color);
}

void VL_DrawCanvas_Curve(HWND canvas, const VL_Array &points, int color, double width)
{
    using namespace vl_drawing_shapes;
    const auto shape = [&](const VL_CanvasTarget &target) {
        return openLine(target, VL_CurveOutline(pointsOf(target, points, true)));
    };
    stroke(canvas, shape, false, color, width);
}

void VL_DrawCanvas_SetPixel(HWND canvas, double x, double y, int color)
{
    VL_DrawCanvas_FillRectangle(canvas, std::floor(x), std::floor(y), 1, 1, color);
}
