// How a label looks, and painting it.
#include "85_label_paint.h"
#include "68_soft_masks.h"

#include <algorithm>

namespace vl_label_paint {
namespace {

const int kMostLines = 4096;
const int kLargestLabel = 30000;

// Blue to white, red to orange, green to cyan, violet to pink, grey to white.
const int kPresets[5][2] = {{RGB(0x41, 0x69, 0xE1), RGB(0xFF, 0xFF, 0xFF)},
                            {RGB(0xFF, 0x45, 0x00), RGB(0xFF, 0xA5, 0x00)},
                            {RGB(0x32, 0xCD, 0x32), RGB(0x00, 0xCE, 0xD1)},
                            {RGB(0x93, 0x70, 0xDB), RGB(0xFF, 0xC0, 0xCB)},
                            {RGB(0x80, 0x80, 0x80), RGB(0xFF, 0xFF, 0xFF)}};

int scaled(const VL_LabelLook &look, int value)
{
    return MulDiv(value, look.dpi, 96);
}

// The border's width in pixels; 0 without one.
int borderWidth(const VL_LabelLook &look)
{
    switch (look.borderStyle) {
    case VL_BORDER_NONE:
        return 0;
    case VL_BORDER_SUNKEN:
    case VL_BORDER_RAISED:
        return std::max(2, scaled(look, 2));
    default:
        return std::max(1, scaled(look, look.borderWidth));
    }
}

int insetOf(const VL_LabelLook &look)
{
    return borderWidth(look) + scaled(look, look.padding);
}

bool hasBackground(const VL_LabelLook &look)
{
    return look.gradientPreset > 0 || look.backColor >= 0;
}

VL_Shade backgroundOf(const VL_LabelLook &look, int width, int height)
{
    int from = look.backColor, to = look.backColor2;
    bool vertical = look.gradientVertical != 0;
    if (look.gradientPreset > 0) {
        const int preset = std::min(look.gradientPreset, 10) - 1;
        from = kPresets[preset / 2][0];
        to = kPresets[preset / 2][1];
        vertical = preset % 2 == 1;
    }
    if (to < 0)
        return VL_ArgbOf(from);
    return VL_Shade(VL_ArgbOf(from), VL_ArgbOf(to),
                    vertical ? VL_Shade::Vertical : VL_Shade::Horizontal, 0,
                    vertical ? height : width);
}

void paintGround(VL_Surface &surface, const VL_LabelLook &look, VL_ImageLayer &picture)
{
    const int width = surface.width(), height = surface.height();
    const int radius = scaled(look, look.borderRadius);
    if (hasBackground(look)) {
        // The outer pixels of a rounded ground end below the border.
        const double inset = radius > 0 && look.borderStyle != VL_BORDER_NONE ? 0.5 : 0;
        VL_FillOutlines(
            surface,
            {VL_RoundRectOutline(inset, inset, width - 2 * inset, height - 2 * inset, radius)},
            backgroundOf(look, width, height), false, true);
    }
    if (!picture.image())
        return;
    const int saved = SaveDC(surface.dc());
    if (radius > 0) {
        const HRGN region = CreateRoundRectRgn(0, 0, width + 1, height + 1, 2 * radius, 2 * radius);
        SelectClipRgn(surface.dc(), region);
        DeleteObject(region);
    }
    picture.blendTo(surface.dc(), {0, 0, width, height}, look.pictureMode, look.dpi);
    RestoreDC(surface.dc(), saved);
}

std::vector<double> patternOf(int style, double width)
{
    switch (style) {
    case VL_BORDER_DASH:
        return {4 * width, 2 * width};
    case VL_BORDER_DOT:
        return {width, 2 * width};
    case VL_BORDER_DASHDOT:
        return {4 * width, 2 * width, width, 2 * width};
    default:
        return {};
    }
}

void strokeLine(VL_Surface &surface, const VL_Outline &line, bool closed, const VL_LabelLook &look,
                double width, bool smooth)
{
    const VL_Argb color = VL_ArgbOf(look.borderColor);
    const std::vector<double> pattern = patternOf(look.borderStyle, width);
    if (pattern.empty()) {
        VL_StrokeOutline(surface, line, closed, width, color, smooth);
        return;
    }
    for (const VL_Outline &piece : VL_DashOutline(line, closed, pattern))
        VL_StrokeOutline(surface, piece, false, width, color, smooth);
}

// Two edges, light and dark; swapped they seem to stand out.
void paintEdges(VL_Surface &surface, const VL_LabelLook &look)
{
    const bool sunken = look.borderStyle == VL_BORDER_SUNKEN;
    const int width = surface.width(), height = surface.height();
    const int line = std::max(1, borderWidth(look) / 2);
    const auto frame = [&](int inset, int topLeft, int bottomRight) {
        const int right = width - inset, bottom = height - inset;
        const auto fill = [&](int x1, int y1, int x2, int y2, int color) {
            VL_FillOutlines(surface, {VL_RectOutline(x1, y1, x2 - x1, y2 - y1)}, VL_ArgbOf(color),
                            false, false);
        };
        fill(inset, inset, right, inset + line, topLeft);
        fill(inset, inset, inset + line, bottom, topLeft);
        fill(inset, bottom - line, right, bottom, bottomRight);
        fill(right - line, inset, right, bottom, bottomRight);
    };
    const int light = RGB(255, 255, 255), grey = RGB(160, 160, 160), dark = RGB(105, 105, 105);
    const int soft = RGB(227, 227, 227);
    frame(0, sunken ? grey : soft, sunken ? light : dark);
    frame(line, sunken ? dark : light, sunken ? soft : grey);
}

void paintBorder(VL_Surface &surface, const VL_LabelLook &look)
{
    if (look.borderStyle == VL_BORDER_SUNKEN || look.borderStyle == VL_BORDER_RAISED) {
        paintEdges(surface, look);
        return;
    }
    const double line = borderWidth(look);
    if (line < 1)
        return;
    const double half = line / 2, right = surface.width() - half, bottom = surface.height() - half;
    const int sides = look.borderSides & 15;
    if (sides == 0 || sides == 15) {
        const double radius = scaled(look, look.borderRadius);
        const VL_Outline around = VL_RoundRectOutline(half, half, right - half, bottom - half,
                                                      std::max(0.0, radius - half));
        if (radius > 0 || look.borderStyle != VL_BORDER_SOLID)
            strokeLine(surface, around, true, look, line, true);
        else
            VL_FillOutlines(surface,
                            {VL_RectOutline(0, 0, surface.width(), surface.height()),
                             VL_RectOutline(line, line, surface.width() - 2 * line,
                                            surface.height() - 2 * line)},
                            VL_ArgbOf(look.borderColor), true, false);
        return;
    }
    const double width = surface.width(), height = surface.height();
    const struct
    {
        int side;
        VL_Outline line;
    } lines[] = {{VL_SIDE_TOP, {{0, half}, {width, half}}},
                 {VL_SIDE_BOTTOM, {{0, bottom}, {width, bottom}}},
                 {VL_SIDE_LEFT, {{half, 0}, {half, height}}},
                 {VL_SIDE_RIGHT, {{right, 0}, {right, height}}}};
    for (const auto &one : lines) {
        if (sides & one.side)
            strokeLine(surface, one.line, false, look, line, true);
    }
}

// The sides of letters that stand out: a shade of their colour that can be told from it.
int sideColor(int color)
{
    const int sum =
        GetRValue((COLORREF)color) + GetGValue((COLORREF)color) + GetBValue((COLORREF)color);
    const auto mixed = [&](int channel) { return sum < 240 ? channel * 2 / 5 + 150 : channel / 2; };
    return (int)RGB(mixed(GetRValue((COLORREF)color)), mixed(GetGValue((COLORREF)color)),
                    mixed(GetBValue((COLORREF)color)));
}

void paintEffects(VL_Surface &surface, const VL_LabelLook &look, const VL_Mask &mask)
{
    if (look.shadow) {
        VL_Mask shadow = mask;
        VL_BlurMask(shadow, scaled(look, look.shadowBlur));
        VL_BlendMask(surface, shadow, scaled(look, look.shadowX), scaled(look, look.shadowY),
                     VL_ArgbOf(look.shadowColor));
    }
    if (look.glow)
        VL_BlendMask(surface, VL_GrowMask(mask, scaled(look, look.glowSize), true), 0, 0,
                     VL_ArgbOf(look.glowColor));
    const int depth = look.depth3D ? std::max(1, scaled(look, look.depth)) : 0;
    for (int i = depth; i > 0; --i)
        VL_BlendMask(surface, mask, i, i, VL_ArgbOf(sideColor(look.textColor)));
    if (look.stroke)
        VL_BlendMask(surface, VL_GrowMask(mask, std::max(1, scaled(look, look.strokeWidth)), false),
                     0, 0, VL_ArgbOf(look.strokeColor));
}

// How far effects reach beyond the letters.
int effectReach(const VL_LabelLook &look)
{
    int reach = 0;
    if (look.shadow)
        reach = 2 * scaled(look, look.shadowBlur);
    if (look.glow)
        reach = std::max(reach, scaled(look, look.glowSize) + 1);
    if (look.stroke)
        reach = std::max(reach, scaled(look, look.strokeWidth) + 1);
    return reach;
}

void paintText(VL_Surface &surface, const VL_LabelLook &look, HFONT font, const std::wstring &text)
{
    const int inset = insetOf(look);
    VL_DrawnPlace place;
    place.area = {inset, inset, surface.width() - inset, surface.height() - inset};
    if (text.empty() || place.area.left >= place.area.right || place.area.top >= place.area.bottom)
        return;
    place.align = std::max(0, look.textAlign);
    place.vertical = look.verticalAlign;
    place.ellipsis = look.ellipsis != 0;
    const HDC dc = surface.dc();
    const int saved = SaveDC(dc);
    SelectObject(dc, font);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    const int rows = (place.area.bottom - place.area.top) / std::max(1, (int)metrics.tmHeight) + 2;
    const VL_DrawnText layout =
        VL_BreakText(dc, text, place.area.right - place.area.left, look.wordWrap != 0, rows);
    if (look.enabled && (look.shadow || look.glow || look.depth3D || look.stroke)) {
        // A shadow, unlike the text itself, may come from beyond the area.
        const RECT bounds = {-200, -200, surface.width() + 200, surface.height() + 200};
        paintEffects(surface, look,
                     VL_MaskOfText(font, text, layout, place, effectReach(look), bounds));
    }
    const int border = borderWidth(look);
    IntersectClipRect(dc, border, border, surface.width() - border, surface.height() - border);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, look.enabled ? (COLORREF)look.textColor : GetSysColor(COLOR_GRAYTEXT));
    VL_DrawBrokenText(dc, text, layout, place);
    RestoreDC(dc, saved);
}

} // namespace
} // namespace vl_label_paint

bool VL_IsLabelOpaque(const VL_LabelLook &look)
{
    return vl_label_paint::hasBackground(look) && look.borderRadius <= 0;
}

void VL_PaintLabel(VL_Surface &surface, const VL_LabelLook &look, VL_ImageLayer &picture,
                   HFONT font, const std::wstring &text)
{
    vl_label_paint::paintGround(surface, look, picture);
    vl_label_paint::paintBorder(surface, look);
    vl_label_paint::paintText(surface, look, font, text);
}

SIZE VL_FittingLabelSize(const VL_LabelLook &look, HFONT font, const std::wstring &text, int width)
{
    using namespace vl_label_paint;
    const int inset = insetOf(look);
    const HDC dc = CreateCompatibleDC(NULL);
    const HGDIOBJ before = SelectObject(dc, font);
    const VL_DrawnText layout =
        VL_BreakText(dc, text, std::max(1, width - 2 * inset), look.wordWrap != 0, kMostLines);
    SelectObject(dc, before);
    DeleteDC(dc);
    SIZE size = {look.wordWrap ? width : layout.width + 2 * inset, layout.height() + 2 * inset};
    size.cx = std::min((int)size.cx, kLargestLabel);
    size.cy = std::min((int)size.cy, kLargestLabel);
    return size;
}
