// The dark theme's drawing, shared by self-drawn windows and their controls.
#include "94_self_drawn_drawing.h"
#include "01_images.h"

// gdiplus.h needs the COM types, and min and max in its own namespace.
#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_self_drawn_drawing {
namespace {

const size_t kLongestShownText = 8192;

void startGdiPlus()
{
    static bool started = false;
    if (!started)
        VL_InitGdiPlus();
    started = true;
}

Gdiplus::Color gdiColor(COLORREF color)
{
    return Gdiplus::Color(255, GetRValue(color), GetGValue(color), GetBValue(color));
}

void roundPath(Gdiplus::GraphicsPath *path, Gdiplus::RectF box, float radius)
{
    const float most = std::min(box.Width, box.Height) / 2;
    const float size = std::min(radius, most) * 2;
    if (size < 1) {
        path->AddRectangle(box);
        return;
    }
    const float right = box.X + box.Width - size;
    const float bottom = box.Y + box.Height - size;
    path->AddArc(box.X, box.Y, size, size, 180, 90);
    path->AddArc(right, box.Y, size, size, 270, 90);
    path->AddArc(right, bottom, size, size, 0, 90);
    path->AddArc(box.X, bottom, size, size, 90, 90);
    path->CloseFigure();
}

HFONT fontOf(HWND control)
{
    const HFONT own = (HFONT)SendMessageW(control, WM_GETFONT, 0, 0);
    return own ? own : (HFONT)GetStockObject(DEFAULT_GUI_FONT);
}

int shownLength(const std::wstring &text)
{
    return (int)std::min(text.size(), kLongestShownText);
}

} // namespace
} // namespace vl_self_drawn_drawing

void VL_VlwinStripControlTheme(HWND control)
{
    typedef HRESULT(WINAPI * SetTheme)(HWND, const wchar_t *, const wchar_t *);
    static const HMODULE library = LoadLibraryW(L"uxtheme.dll");
    static const SetTheme setTheme =
        library ? (SetTheme)(void *)GetProcAddress(library, "SetWindowTheme") : NULL;
    if (setTheme && IsWindow(control))
        setTheme(control, L"", L"");
}

bool VL_VlwinIsLight(COLORREF color)
{
    return GetRValue(color) * 299 + GetGValue(color) * 587 + GetBValue(color) * 114 > 140 * 1000;
}

void VL_VlwinFill(HDC dc, const RECT &place, COLORREF color)
{
    const COLORREF old = SetBkColor(dc, color);
    ExtTextOutW(dc, 0, 0, ETO_OPAQUE, &place, L"", 0, NULL);
    SetBkColor(dc, old);
}

void VL_VlwinRoundRect(HDC dc, const RECT &place, int radius, COLORREF fill, COLORREF border,
                       int borderWidth)
{
    using namespace vl_self_drawn_drawing;
    if (place.right <= place.left || place.bottom <= place.top)
        return;
    startGdiPlus();
    Gdiplus::Graphics graphics(dc);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    // Whole coordinates are the middle of a pixel.
    const float half = (float)(borderWidth - 1) / 2;
    const Gdiplus::RectF box((float)place.left + half, (float)place.top + half,
                             (float)(place.right - place.left - borderWidth),
                             (float)(place.bottom - place.top - borderWidth));
    Gdiplus::GraphicsPath path;
    roundPath(&path, box, (float)radius);
    if (fill != CLR_NONE) {
        const Gdiplus::SolidBrush brush(gdiColor(fill));
        graphics.FillPath(&brush, &path);
    }
    if (borderWidth > 0) {
        const Gdiplus::Pen pen(gdiColor(border), (float)borderWidth);
        graphics.DrawPath(&pen, &path);
    }
}

void VL_VlwinEllipse(HDC dc, const RECT &place, COLORREF fill, COLORREF border, int borderWidth)
{
    VL_VlwinRoundRect(dc, place, place.right - place.left, fill, border, borderWidth);
}

void VL_VlwinStroke(HDC dc, const float *points, int count, float width, COLORREF color)
{
    using namespace vl_self_drawn_drawing;
    startGdiPlus();
    Gdiplus::Graphics graphics(dc);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    std::vector<Gdiplus::PointF> corners;
    for (int i = 0; i < count; ++i)
        corners.push_back(Gdiplus::PointF(points[2 * i], points[2 * i + 1]));
    Gdiplus::Pen pen(gdiColor(color), width);
    graphics.DrawLines(&pen, corners.data(), count);
}

void VL_VlwinTick(HDC dc, const RECT &box, COLORREF color)
{
    const float unit = (float)(box.right - box.left) / 14;
    const auto x = [&](float design) { return (float)box.left + design * unit; };
    const auto y = [&](float design) { return (float)box.top + design * unit; };
    const float points[] = {x(3.2f), y(7.2f), x(6), y(10), x(11), y(4.4f)};
    VL_VlwinStroke(dc, points, 3, 1.7f * unit, color);
}

void VL_VlwinDrawText(HWND control, HDC dc, const std::wstring &text, RECT place, UINT format,
                      COLORREF color)
{
    VL_VlwinDrawTextIn(vl_self_drawn_drawing::fontOf(control), dc, text, place, format, color);
}

void VL_VlwinDrawTextIn(HFONT font, HDC dc, const std::wstring &text, RECT place, UINT format,
                        COLORREF color)
{
    const HGDIOBJ old = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, color);
    DrawTextW(dc, text.c_str(), vl_self_drawn_drawing::shownLength(text), &place, format);
    SelectObject(dc, old);
}

SIZE VL_VlwinTextSize(HWND control, HDC dc, const std::wstring &text, int width, UINT format)
{
    using namespace vl_self_drawn_drawing;
    RECT room = {0, 0, width, 0};
    const HGDIOBJ old = SelectObject(dc, fontOf(control));
    DrawTextW(dc, text.empty() ? L" " : text.c_str(), text.empty() ? 1 : shownLength(text), &room,
              format | DT_CALCRECT);
    SelectObject(dc, old);
    return SIZE{room.right, room.bottom};
}

std::wstring VL_VlwinWindowText(HWND window)
{
    const int length = GetWindowTextLengthW(window);
    if (length <= 0)
        return std::wstring();
    std::wstring text((size_t)length + 1, L'\0');
    text.resize((size_t)GetWindowTextW(window, &text[0], length + 1));
    return text;
}

void VL_VlwinParentBackground(HWND control, HDC dc, int offsetX, int offsetY)
{
    const HWND parent = GetParent(control);
    if (!parent)
        return;
    POINT origin = {-offsetX, -offsetY};
    MapWindowPoints(control, parent, &origin, 1);
    POINT old;
    OffsetViewportOrgEx(dc, -origin.x, -origin.y, &old);
    if (!SendMessageW(parent, WM_ERASEBKGND, (WPARAM)dc, 0)) {
        RECT all;
        GetClientRect(parent, &all);
        VL_VlwinFill(dc, all, (COLORREF)VL_GetBgColor(parent));
    }
    SetViewportOrgEx(dc, old.x, old.y, NULL);
}

COLORREF VL_VlwinBackColor(HWND control)
{
    return (COLORREF)VL_GetBgColor(VL_HasBgColor(control) ? control : VL_OwnerWindow(control));
}

void VL_VlwinTrackLeave(HWND control)
{
    TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, control, 0};
    TrackMouseEvent(&track);
}

UINT VL_VlwinPrefixFormat(HWND control)
{
    const LRESULT state = SendMessageW(control, WM_QUERYUISTATE, 0, 0);
    return state & UISF_HIDEACCEL ? DT_HIDEPREFIX : 0;
}

bool VL_VlwinShowsFocus(HWND control)
{
    return GetFocus() == control &&
           !(SendMessageW(control, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS);
}
