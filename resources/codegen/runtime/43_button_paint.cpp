// How drawn buttons look.
#include "43_button_paint.h"
#include "01_images.h"

#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_button_paint {
namespace {

// Larger pictures are scaled down when they are read: nothing on a button shows more.
const int LargestImage = 512;

void startGdiPlus()
{
    // Kept for good: pictures may outlive the program's own use of it.
    static const bool started = (VL_InitGdiPlus(), true);
    (void)started;
}

Gdiplus::Color solid(COLORREF color)
{
    return Gdiplus::Color(255, GetRValue(color), GetGValue(color), GetBValue(color));
}

struct Colors
{
    COLORREF fill;
    COLORREF border;
    COLORREF text;
    bool hasFill = true;
    int borderWidth = 1; // design pixels; 0 draws none
};

// Without a colour of its own a button looks as those of the desktop do.
Colors plainColors(HWND button, const VL_ButtonLook &look)
{
    if (!IsWindowEnabled(button))
        return {RGB(204, 204, 204), RGB(191, 191, 191), RGB(131, 131, 131)};
    if (look.isPressed)
        return {RGB(204, 228, 247), RGB(0, 84, 153), RGB(0, 0, 0)};
    if (look.isHot)
        return {RGB(229, 241, 251), RGB(0, 120, 215), RGB(0, 0, 0)};
    Colors colors = {RGB(225, 225, 225), RGB(173, 173, 173), RGB(0, 0, 0)};
    if (look.isDefault) {
        colors.border = RGB(0, 120, 215);
        colors.borderWidth = 2;
    }
    return colors;
}

Colors ownColors(HWND button, const VL_ButtonLook &look)
{
    const COLORREF own = (COLORREF)VL_GetBgColor(button);
    Colors colors = {own, VL_MixColors(own, RGB(0, 0, 0), 22), RGB(0, 0, 0)};
    if (!IsWindowEnabled(button)) {
        colors.fill = VL_MixColors(own, RGB(240, 240, 240), 60);
        colors.border = VL_MixColors(colors.fill, RGB(0, 0, 0), 12);
        colors.text = RGB(131, 131, 131);
    } else if (look.isPressed) {
        colors.fill = VL_MixColors(own, RGB(0, 0, 0), 15);
    } else if (look.isHot) {
        colors.fill = VL_MixColors(own, RGB(255, 255, 255), 18);
    } else if (look.isDefault) {
        colors.borderWidth = 2;
    }
    return colors;
}

Colors colorsOf(HWND button, const VL_ButtonLook &look)
{
    Colors colors = VL_HasBgColor(button) ? ownColors(button, look) : plainColors(button, look);
    const bool isFlat = VL_GetNumberProperty(button, L"VL_ButtonFlat") != 0;
    const bool isQuiet = isFlat || look.kind == VL_BUTTON_COMMAND_LINK;
    if (isFlat)
        colors.borderWidth = 0;
    if (isQuiet && !look.isHot && !look.isPressed && !VL_HasBgColor(button)) {
        colors.hasFill = false;
        colors.borderWidth = look.isDefault ? 1 : 0;
    }
    if (IsWindowEnabled(button)) {
        if (VL_HasTextColor(button))
            colors.text = (COLORREF)VL_GetTextColor(button);
        else if (look.kind == VL_BUTTON_COMMAND_LINK)
            colors.text = RGB(0, 51, 153);
    }
    return colors;
}

void addRoundRect(Gdiplus::GraphicsPath &path, const Gdiplus::RectF &area, float radius)
{
    const float across = (std::min)(2 * radius, (std::min)(area.Width, area.Height));
    if (across <= 0) {
        path.AddRectangle(area);
        return;
    }
    const float right = area.X + area.Width - across, bottom = area.Y + area.Height - across;
    path.AddArc(area.X, area.Y, across, across, 180, 90);
    path.AddArc(right, area.Y, across, across, 270, 90);
    path.AddArc(right, bottom, across, across, 0, 90);
    path.AddArc(area.X, bottom, across, across, 90, 90);
    path.CloseFigure();
}

// Straight edges are drawn pixel by pixel, crisp at any scale.
void drawSquareFace(HDC context, const RECT &client, const Colors &colors, int line)
{
    RECT inner = client;
    if (line > 0) {
        const HBRUSH border = CreateSolidBrush(colors.border);
        const HRGN rim = CreateRectRgnIndirect(&client);
        FrameRgn(context, rim, border, line, line);
        DeleteObject(rim);
        DeleteObject(border);
        InflateRect(&inner, -line, -line);
    }
    if (colors.hasFill) {
        const HBRUSH fill = CreateSolidBrush(colors.fill);
        FillRect(context, &inner, fill);
        DeleteObject(fill);
    }
}

void drawRoundFace(HDC context, const RECT &client, const Colors &colors, int line, int radius)
{
    Gdiplus::Graphics graphics(context);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    const float inset = (float)line / 2;
    const Gdiplus::RectF area(inset, inset, (float)(client.right - line),
                              (float)(client.bottom - line));
    Gdiplus::GraphicsPath path;
    addRoundRect(path, area, (float)radius);
    if (colors.hasFill) {
        const Gdiplus::SolidBrush brush(solid(colors.fill));
        graphics.FillPath(&brush, &path);
    }
    if (line > 0) {
        const Gdiplus::Pen pen(solid(colors.border), (float)line);
        graphics.DrawPath(&pen, &path);
    }
}

void drawFace(HWND button, HDC context, const RECT &client, const Colors &colors)
{
    const int radius = VL_ScaleX(button, VL_GetNumberProperty(button, L"VL_ButtonCornerRadius"));
    const int line = colors.borderWidth ? VL_ScaleX(button, colors.borderWidth) : 0;
    if (!colors.hasFill || radius > 0)
        VL_PaintBehind(button, context, client);
    if (radius > 0)
        drawRoundFace(context, client, colors, line, radius);
    else
        drawSquareFace(context, client, colors, line);
}

class SelectedFont
{
public:
    SelectedFont(HDC context, HFONT font) : m_context(context), m_old(SelectObject(context, font))
    {}
    ~SelectedFont() { SelectObject(m_context, m_old); }
    SelectedFont(const SelectedFont &) = delete;
    SelectedFont &operator=(const SelectedFont &) = delete;

private:
    HDC m_context;
    HGDIOBJ m_old;
};

HFONT fontOf(HWND button)
{
    const HFONT font = (HFONT)SendMessageW(button, WM_GETFONT, 0, 0);
    return font ? font : (HFONT)GetStockObject(DEFAULT_GUI_FONT);
}

SIZE measured(HDC context, const std::wstring &text, int width, UINT format)
{
    RECT area = {0, 0, width, 0};
    DrawTextW(context, text.c_str(), (int)text.size(), &area, format | DT_CALCRECT);
    return {area.right, area.bottom};
}

// As much of it as a button can show.
std::wstring textOf(HWND button)
{
    const std::wstring text = VL_GetText(button);
    return text.size() > 4000 ? text.substr(0, 4000) : text;
}

SIZE imageSize(HWND button, const VL_ButtonLook &look, const RECT &room)
{
    if (!look.image || room.right <= room.left || room.bottom <= room.top)
        return {};
    SIZE size = {VL_ScaleX(button, look.image->width()), VL_ScaleY(button, look.image->height())};
    const LONG width = room.right - room.left;
    const LONG height = (std::max)(room.bottom - room.top - VL_ScaleY(button, 6), 1L);
    if (size.cy > height) {
        size.cx = (std::max)((LONG)MulDiv(size.cx, height, size.cy), 1L);
        size.cy = height;
    }
    if (size.cx > width) {
        size.cy = (std::max)((LONG)MulDiv(size.cy, width, size.cx), 1L);
        size.cx = width;
    }
    return size;
}

// Picture and text side by side, as one block at the place the alignment tells.
void drawContent(HWND button, HDC context, RECT room, const VL_ButtonLook &look, COLORREF color)
{
    const int align = VL_GetNumberProperty(button, L"VL_ButtonTextAlign");
    const std::wstring text = textOf(button);
    const SIZE image = imageSize(button, look, room);
    const LONG gap = image.cx && !text.empty() ? VL_ScaleX(button, 6) : 0;
    const LONG roomWidth = (std::max)(room.right - room.left, 0L);
    const LONG textRoom = (std::max)(roomWidth - image.cx - gap, 0L);
    UINT format = DT_WORDBREAK | DT_EXPANDTABS | (look.showsMnemonics ? 0 : DT_HIDEPREFIX);
    const SelectedFont font(context, fontOf(button));
    const SIZE size = measured(context, text, textRoom, format);
    const LONG used = image.cx + gap + (std::min)(size.cx, textRoom);
    LONG left = room.left;
    if (align == 2)
        left += roomWidth - used;
    else if (align != 1)
        left += (roomWidth - used) / 2;
    const LONG middle = (room.top + room.bottom) / 2;
    if (image.cx) {
        const LONG top = middle - image.cy / 2;
        look.image->draw(context, {left, top, left + image.cx, top + image.cy},
                         IsWindowEnabled(button) != FALSE);
    }
    left += image.cx + gap;
    RECT area = {left, (std::max)(middle - size.cy / 2, room.top),
                 left + (std::min)(size.cx, textRoom), room.bottom};
    format |= align == 1 ? DT_LEFT : align == 2 ? DT_RIGHT : DT_CENTER;
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, color);
    DrawTextW(context, text.c_str(), (int)text.size(), &area, format);
}

void drawArrow(HWND button, HDC context, POINT middle, COLORREF color)
{
    Gdiplus::Graphics graphics(context);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const float reach = (float)VL_ScaleX(button, 9);
    const float x = (float)middle.x, y = (float)middle.y;
    Gdiplus::Pen pen(solid(color), (float)VL_ScaleX(button, 2));
    pen.SetLineCap(Gdiplus::LineCapRound, Gdiplus::LineCapRound, Gdiplus::DashCapRound);
    pen.SetLineJoin(Gdiplus::LineJoinRound);
    graphics.DrawLine(&pen, x - reach, y, x + reach, y);
    const Gdiplus::PointF head[] = {
        {x + reach / 4, y - reach * 3 / 4}, {x + reach, y}, {x + reach / 4, y + reach * 3 / 4}};
    graphics.DrawLines(&pen, head, 3);
}

// An arrow, the text in larger letters, the note below it.
void drawCommandLink(HWND button, HDC context, RECT room, const VL_ButtonLook &look, COLORREF color)
{
    LOGFONTW font = {};
    GetObjectW(fontOf(button), sizeof(font), &font);
    font.lfHeight = MulDiv(font.lfHeight, 4, 3);
    const HFONT large = CreateFontIndirectW(&font);
    const std::wstring text = textOf(button);
    const UINT format = DT_WORDBREAK | DT_EXPANDTABS | (look.showsMnemonics ? 0 : DT_HIDEPREFIX);
    room.left += VL_ScaleX(button, 30);
    const LONG width = (std::max)(room.right - room.left, 0L);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, color);
    LONG titleHeight = 0;
    {
        const SelectedFont selected(context, large);
        titleHeight = measured(context, text, width, format).cy;
    }
    const SelectedFont selected(context, fontOf(button));
    const LONG noteHeight =
        look.note.empty() ? 0 : measured(context, look.note, width, DT_WORDBREAK | DT_NOPREFIX).cy;
    const LONG free = room.bottom - room.top - titleHeight - noteHeight;
    room.top += (std::max)(free / 2, 0L);
    drawArrow(button, context, {room.left - VL_ScaleX(button, 16), room.top + titleHeight / 2},
              color);
    {
        const SelectedFont title(context, large);
        DrawTextW(context, text.c_str(), (int)text.size(), &room, format);
    }
    room.top += titleHeight;
    DrawTextW(context, look.note.c_str(), (int)look.note.size(), &room, DT_WORDBREAK | DT_NOPREFIX);
    DeleteObject(large);
}

void drawSplitArrow(HWND button, HDC context, const VL_ButtonLook &look, const Colors &colors)
{
    const RECT area = VL_SplitArrowArea(button);
    if (look.isArrowPressed) {
        const HBRUSH brush = CreateSolidBrush(VL_MixColors(colors.fill, RGB(0, 0, 0), 12));
        RECT inner = area;
        const int line = VL_ScaleX(button, 1);
        InflateRect(&inner, -line, -line);
        FillRect(context, &inner, brush);
        DeleteObject(brush);
    }
    Gdiplus::Graphics graphics(context);
    const int margin = VL_ScaleY(button, 4);
    const Gdiplus::Pen pen(solid(colors.border), (float)VL_ScaleX(button, 1));
    graphics.DrawLine(&pen, (int)area.left, (int)area.top + margin, (int)area.left,
                      (int)area.bottom - margin - 1);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const float x = (float)(area.left + area.right) / 2, y = (float)(area.top + area.bottom) / 2;
    const float half = (float)VL_ScaleX(button, 4);
    const Gdiplus::PointF triangle[] = {
        {x - half, y - half / 2}, {x + half, y - half / 2}, {x, y + half / 2}};
    const Gdiplus::SolidBrush brush(solid(colors.text));
    graphics.FillPolygon(&brush, triangle, 3);
}

} // namespace
} // namespace vl_button_paint

std::unique_ptr<VL_ButtonImage> VL_ButtonImage::load(const std::wstring &path)
{
    using namespace vl_button_paint;
    startGdiPlus();
    Gdiplus::Bitmap file(path.c_str());
    const int width = (int)file.GetWidth(), height = (int)file.GetHeight();
    if (file.GetLastStatus() != Gdiplus::Ok || width <= 0 || height <= 0)
        return nullptr;
    const int longest = (std::max)(width, height);
    const int shown = (std::min)(longest, LargestImage);
    const int shownWidth = (std::max)(MulDiv(width, shown, longest), 1);
    const int shownHeight = (std::max)(MulDiv(height, shown, longest), 1);
    std::unique_ptr<Gdiplus::Bitmap> copy(
        new Gdiplus::Bitmap(shownWidth, shownHeight, PixelFormat32bppPARGB));
    Gdiplus::Graphics graphics(copy.get());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    if (graphics.DrawImage(&file, 0, 0, shownWidth, shownHeight) != Gdiplus::Ok)
        return nullptr;
    return std::unique_ptr<VL_ButtonImage>(new VL_ButtonImage(copy.release()));
}

VL_ButtonImage::~VL_ButtonImage()
{
    delete (Gdiplus::Bitmap *)m_bitmap;
}

int VL_ButtonImage::width() const
{
    return (int)((Gdiplus::Bitmap *)m_bitmap)->GetWidth();
}

int VL_ButtonImage::height() const
{
    return (int)((Gdiplus::Bitmap *)m_bitmap)->GetHeight();
}

void VL_ButtonImage::draw(HDC context, const RECT &place, bool isEnabled) const
{
    Gdiplus::Graphics graphics(context);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    Gdiplus::ColorMatrix paler = {};
    for (int i = 0; i < 5; ++i)
        paler.m[i][i] = i == 3 && !isEnabled ? 0.4f : 1.0f;
    Gdiplus::ImageAttributes attributes;
    attributes.SetColorMatrix(&paler);
    const Gdiplus::Rect target(place.left, place.top, place.right - place.left,
                               place.bottom - place.top);
    graphics.DrawImage((Gdiplus::Bitmap *)m_bitmap, target, 0, 0, width(), height(),
                       Gdiplus::UnitPixel, &attributes);
}

void VL_DrawButton(HWND button, HDC context, const VL_ButtonLook &look)
{
    using namespace vl_button_paint;
    startGdiPlus();
    RECT client = {};
    GetClientRect(button, &client);
    if (client.right <= 0 || client.bottom <= 0)
        return;
    const VL_BufferedPaint buffer(context, client);
    const Colors colors = colorsOf(button, look);
    drawFace(button, buffer.context(), client, colors);
    RECT room = client;
    InflateRect(&room, -VL_ScaleX(button, 5), -VL_ScaleY(button, 1));
    if (look.kind == VL_BUTTON_SPLIT) {
        drawSplitArrow(button, buffer.context(), look, colors);
        room.right = (std::max)(VL_SplitArrowArea(button).left, room.left);
    }
    if (look.kind == VL_BUTTON_COMMAND_LINK)
        drawCommandLink(button, buffer.context(), room, look, colors.text);
    else
        drawContent(button, buffer.context(), room, look, colors.text);
    if (look.showsFocus) {
        RECT focus = client;
        InflateRect(&focus, -VL_ScaleX(button, 3), -VL_ScaleY(button, 3));
        SetTextColor(buffer.context(), RGB(0, 0, 0));
        SetBkColor(buffer.context(), RGB(255, 255, 255));
        DrawFocusRect(buffer.context(), &focus);
    }
}

RECT VL_SplitArrowArea(HWND button)
{
    RECT area = {};
    GetClientRect(button, &area);
    area.left = (std::max)(area.right - VL_ScaleX(button, 20), area.left);
    return area;
}
