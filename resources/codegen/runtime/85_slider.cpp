// Sliders: the value beside the slider, and sliders that run the other way.
#include "85_slider.h"

#include "43_background.h"

#include <algorithm>

namespace vl_slider {
namespace {

const UINT_PTR kSubclass = 0x564C86;
const UINT kSetPosAndNotify = WM_USER + 34;

struct Slider
{
    bool showValue = false;
    bool inverted = false;
    int strip = 0; // pixels beside the slider that hold the value
    int shown = 0; // the value that stands there
    HFONT font = NULL;
};

int own(HWND slider, UINT message)
{
    return (int)DefSubclassProc(slider, message, 0, 0);
}

// Of an inverted slider, a value from a place and the other way round.
int mirrored(HWND slider, long long place)
{
    const long long sum =
        (long long)own(slider, TBM_GETRANGEMIN) + own(slider, TBM_GETRANGEMAX) - place;
    return (int)(std::max)(-0x7FFFFFFFLL, (std::min)(0x7FFFFFFFLL, sum));
}

bool isUpright(HWND slider)
{
    return (GetWindowLongW(slider, GWL_STYLE) & TBS_VERT) != 0;
}

int valueOf(HWND slider)
{
    return (int)SendMessageW(slider, TBM_GETPOS, 0, 0);
}

HFONT fontOf(const Slider &look)
{
    return look.font ? look.font : (HFONT)GetStockObject(DEFAULT_GUI_FONT);
}

// Room for the longest value.
int stripFor(HWND slider, const Slider &look)
{
    if (!look.showValue)
        return 0;
    const HDC context = GetDC(slider);
    const HGDIOBJ old = SelectObject(context, fontOf(look));
    int width = 0;
    int height = 0;
    for (const UINT end : {(UINT)TBM_GETRANGEMIN, (UINT)TBM_GETRANGEMAX}) {
        const std::wstring text = std::to_wstring((int)SendMessageW(slider, end, 0, 0));
        SIZE size = {};
        GetTextExtentPoint32W(context, text.c_str(), (int)text.size(), &size);
        width = (std::max)(width, (int)size.cx);
        height = (std::max)(height, (int)size.cy);
    }
    SelectObject(context, old);
    ReleaseDC(slider, context);
    return isUpright(slider) ? height + VL_ScaleY(slider, 4) : width + VL_ScaleX(slider, 8);
}

void applyStrip(HWND slider, Slider *look)
{
    const int strip = stripFor(slider, *look);
    if (strip == look->strip)
        return;
    look->strip = strip;
    SetWindowPos(slider, NULL, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    InvalidateRect(slider, NULL, TRUE);
}

// In pixels of the window, its frame included.
RECT stripArea(HWND slider, const Slider &look)
{
    RECT area = {};
    GetWindowRect(slider, &area);
    OffsetRect(&area, -area.left, -area.top);
    if (isUpright(slider))
        area.top = (std::max)(area.top, area.bottom - look.strip);
    else
        area.left = (std::max)(area.left, area.right - look.strip);
    return area;
}

// The part of the strip beside the thumb's way.
RECT valuePlace(HWND slider, RECT inside)
{
    RECT thumb = {};
    SendMessageW(slider, TBM_GETTHUMBRECT, 0, (LPARAM)&thumb);
    if (isUpright(slider)) {
        const int middle = (thumb.left + thumb.right) / 2;
        const int half = (std::min)(middle, (int)inside.right - middle);
        return half > 0 ? RECT{middle - half, inside.top, middle + half, inside.bottom} : inside;
    }
    return {inside.left, thumb.top, inside.right, thumb.bottom};
}

void drawValue(HWND slider, const Slider &look, HDC context, const RECT &area,
               const std::wstring &text)
{
    const HGDIOBJ oldFont = SelectObject(context, fontOf(look));
    const HBRUSH ground =
        (HBRUSH)SendMessageW(GetParent(slider), WM_CTLCOLORSTATIC, (WPARAM)context, (LPARAM)slider);
    FillRect(context, &area, ground ? ground : GetSysColorBrush(COLOR_BTNFACE));
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, IsWindowEnabled(slider) ? (COLORREF)VL_GetTextColor(slider)
                                                  : GetSysColor(COLOR_GRAYTEXT));
    RECT place = valuePlace(slider, area);
    DrawTextW(context, text.c_str(), (int)text.size(), &place,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
    SelectObject(context, oldFont);
}

void drawStrip(HWND slider, Slider *look)
{
    if (look->strip <= 0)
        return;
    look->shown = valueOf(slider);
    const std::wstring text = std::to_wstring(look->shown);
    const RECT area = stripArea(slider, *look);
    const HDC window = GetWindowDC(slider);
    {
        const VL_BufferedPaint buffer(window, area);
        drawValue(slider, *look, buffer.context(), area, text);
    }
    ReleaseDC(slider, window);
}

// Turns what a message says from values into places. True when it is answered with `result`.
bool mirrorMessage(HWND slider, UINT message, WPARAM wParam, LPARAM *lParam, LRESULT *result)
{
    switch (message) {
    case TBM_GETPOS:
        *result = mirrored(slider, own(slider, TBM_GETPOS));
        return true;
    case TBM_GETSELSTART:
        *result = mirrored(slider, own(slider, TBM_GETSELEND));
        return true;
    case TBM_GETSELEND:
        *result = mirrored(slider, own(slider, TBM_GETSELSTART));
        return true;
    case TBM_SETSELSTART:
        *result = DefSubclassProc(slider, TBM_SETSELEND, wParam, mirrored(slider, (int)*lParam));
        return true;
    case TBM_SETSELEND:
        *result = DefSubclassProc(slider, TBM_SETSELSTART, wParam, mirrored(slider, (int)*lParam));
        return true;
    case TBM_SETSEL:
        *lParam = MAKELPARAM(mirrored(slider, (short)HIWORD(*lParam)),
                             mirrored(slider, (short)LOWORD(*lParam)));
        return false;
    case TBM_SETPOS:
    case kSetPosAndNotify:
    case TBM_SETTIC:
        *lParam = mirrored(slider, (int)*lParam);
        return false;
    default:
        return false;
    }
}

// A new range leaves the value where it is, as far as it can.
LRESULT changeRange(HWND slider, Slider *look, UINT message, WPARAM wParam, LPARAM lParam)
{
    const int value = valueOf(slider);
    const LRESULT result = DefSubclassProc(slider, message, wParam, lParam);
    if (look->inverted)
        SendMessageW(slider, TBM_SETPOS, TRUE, value);
    applyStrip(slider, look);
    return result;
}

LRESULT calculateSize(HWND slider, const Slider &look, WPARAM wParam, LPARAM lParam)
{
    const LRESULT result = DefSubclassProc(slider, WM_NCCALCSIZE, wParam, lParam);
    RECT *area = (RECT *)lParam;
    if (isUpright(slider))
        area->bottom = (std::max)(area->top, area->bottom - look.strip);
    else
        area->right = (std::max)(area->left, area->right - look.strip);
    return result;
}

LRESULT otherMessage(HWND slider, Slider *look, UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (look->inverted && mirrorMessage(slider, message, wParam, &lParam, &result))
        return result;
    result = DefSubclassProc(slider, message, wParam, lParam);
    // Telling the value may have ended the slider.
    look = VL_FindExtra<Slider>(slider);
    if (look && look->showValue && message != TBM_GETPOS && valueOf(slider) != look->shown)
        drawStrip(slider, look);
    return result;
}

LRESULT CALLBACK sliderProcedure(HWND slider, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR)
{
    Slider *look = VL_FindExtra<Slider>(slider);
    if (message == WM_NCDESTROY || !look) {
        RemoveWindowSubclass(slider, sliderProcedure, kSubclass);
        return DefSubclassProc(slider, message, wParam, lParam);
    }
    switch (message) {
    case TBM_SETRANGE:
    case TBM_SETRANGEMIN:
    case TBM_SETRANGEMAX:
        return changeRange(slider, look, message, wParam, lParam);
    case WM_NCCALCSIZE:
        return calculateSize(slider, *look, wParam, lParam);
    case WM_NCPAINT: {
        const LRESULT result = DefSubclassProc(slider, message, wParam, lParam);
        drawStrip(slider, look);
        return result;
    }
    case WM_SETFONT:
        look->font = (HFONT)wParam;
        applyStrip(slider, look);
        break;
    case WM_ENABLE:
    case WM_SIZE:
        applyStrip(slider, look);
        RedrawWindow(slider, NULL, NULL, RDW_INVALIDATE | RDW_FRAME);
        break;
    default:
        return otherMessage(slider, look, message, wParam, lParam);
    }
    return DefSubclassProc(slider, message, wParam, lParam);
}

} // namespace
} // namespace vl_slider

void VL_PrepareSlider(HWND slider, bool showValue, bool inverted)
{
    using namespace vl_slider;
    if (!VL_HasClass(slider, TRACKBAR_CLASSW))
        return;
    Slider *look = VL_Extra<Slider>(slider);
    if (!look)
        return;
    SetWindowSubclass(slider, sliderProcedure, kSubclass, 0);
    const int value = valueOf(slider);
    look->showValue = showValue;
    look->inverted = inverted;
    look->font = (HFONT)SendMessageW(slider, WM_GETFONT, 0, 0);
    // The system's tip would show the place in place of the value.
    const HWND tip = (HWND)SendMessageW(slider, TBM_GETTOOLTIPS, 0, 0);
    if (tip && (showValue || inverted)) {
        SendMessageW(slider, TBM_SETTOOLTIPS, 0, 0);
        DestroyWindow(tip);
    }
    SendMessageW(slider, TBM_SETPOS, TRUE, value);
    applyStrip(slider, look);
}
