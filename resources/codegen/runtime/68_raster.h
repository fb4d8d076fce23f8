// Drawing into memory: surfaces, filled outlines, strokes and soft masks with smooth edges.
#pragma once
#include "00_prelude.h"

// A colour as 0xAARRGGBB; `color` is 0xBBGGRR.
typedef uint32_t VL_Argb;
VL_Argb VL_ArgbOf(int color, int alpha = 255);

// A 32-bit bitmap, top row first, whose colours are multiplied by their alpha, with a context to
// draw on it. What the system draws on it leaves the alpha of its pixels undefined.
class VL_Surface
{
public:
    VL_Surface() = default;
    VL_Surface(const VL_Surface &) = delete;
    VL_Surface &operator=(const VL_Surface &) = delete;
    ~VL_Surface();

    // All pixels become transparent black; a surface of that size is used again. False, and no
    // surface, for a size below 1 or beyond reason.
    bool create(int width, int height);
    void release();
    bool valid() const { return m_pixels != nullptr; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    HDC dc() const { return m_dc; }
    // Call GdiFlush() between drawing on dc() and reading.
    VL_Argb *row(int y) const { return m_pixels + (size_t)y * m_width; }
    void swap(VL_Surface &other);
    // Lays it over what `target` shows at that place.
    void blendTo(HDC target, int x, int y) const;

private:
    HDC m_dc = NULL;
    HBITMAP m_bitmap = NULL;
    HGDIOBJ m_before = NULL;
    VL_Argb *m_pixels = nullptr;
    int m_width = 0;
    int m_height = 0;
};

struct VL_PointD
{
    double x;
    double y;
};
typedef std::vector<VL_PointD> VL_Outline;

VL_Outline VL_RectOutline(double x, double y, double width, double height);
VL_Outline VL_RoundRectOutline(double x, double y, double width, double height, double radius);
VL_Outline VL_EllipseOutline(double x, double y, double width, double height);
// A part of that ellipse. Degrees, clockwise from three o'clock.
VL_Outline VL_ArcOutline(double x, double y, double width, double height, double start,
                         double sweep);
// A smooth line through all points.
VL_Outline VL_CurveOutline(const VL_Outline &points);
// The pieces of a line that a pattern leaves: lengths of dash, gap, dash, gap, ...
std::vector<VL_Outline> VL_DashOutline(const VL_Outline &points, bool closed,
                                       const std::vector<double> &pattern);

// One colour, or two that flow into each other between two places along an axis.
struct VL_Shade
{
    enum Axis
    {
        None,
        Horizontal,
        Vertical
    };
    VL_Argb from = 0;
    VL_Argb to = 0;
    Axis axis = None;
    double start = 0;
    double end = 0;

    VL_Shade(VL_Argb color) : from(color), to(color) {}
    VL_Shade(VL_Argb first, VL_Argb second, Axis direction, double begin, double finish)
        : from(first), to(second), axis(direction), start(begin), end(finish)
    {}
    VL_Argb at(int x, int y) const;
};

// Fills what the outlines enclose, overlaps only once; `evenOdd` leaves out what is enclosed twice.
// Pixel x covers x to x + 1.
void VL_FillOutlines(VL_Surface &surface, const std::vector<VL_Outline> &outlines,
                     const VL_Shade &shade, bool evenOdd, bool smooth);
// Lines with flat ends and round joins, `width` pixels (at least 1) around the points.
void VL_StrokeOutline(VL_Surface &surface, const VL_Outline &points, bool closed, double width,
                      VL_Argb color, bool smooth);
// `color` is not multiplied by its alpha; `cover` is 0 to 255.
void VL_BlendPixel(VL_Argb *pixel, VL_Argb color, int cover);
// Lays the source over the target, their top left corners together.
void VL_BlendSurface(VL_Surface &target, const VL_Surface &source);

// How much of each pixel is covered, 0 to 255, from a place on a surface on.
struct VL_Mask
{
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<unsigned char> cover;

    void reset(const RECT &place);
};
void VL_BlendMask(VL_Surface &surface, const VL_Mask &mask, int dx, int dy, VL_Argb color);
