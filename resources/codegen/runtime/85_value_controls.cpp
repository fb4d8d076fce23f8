#include "85_value_controls.h"

namespace vl_value_controls {
namespace {

const UINT_PTR kBarSubclass = 0x564C85;
const UINT_PTR kSliderSubclass = 0x564C86;
const UINT_PTR kMarqueeTimer = 0x564C87;
const int kValueChanged = 0x021A;
const COLORREF kNormal = RGB(6, 176, 37);
const COLORREF kError = RGB(196, 43, 28);
const COLORREF kPaused = RGB(218, 165, 32);
const COLORREF kBack = RGB(230, 230, 230);
const COLORREF kFrame = RGB(200, 200, 200);
// Of the drawn blocks, in design pixels.
const int kBlockPitch = 10;
const int kBlockGap = 2;

struct Bar
{
    bool drawn = false;
    bool hasBar = false;
    COLORREF bar = kNormal;
    COLORREF back = kBack;
    int state = 0;
    bool showText = false;
    std::wstring format;
    bool marquee = false;
    int marqueePlace = 0;
    HFONT font = NULL;
};

struct Slider
{
    bool showValue = false;
    bool inverted = false;
};

bool isBar(HWND control)
{
    return VL_HasClass(control, PROGRESS_CLASSW);
}

bool isSlider(HWND control)
{
    return VL_HasClass(control, TRACKBAR_CLASSW);
}

bool isInverted(HWND control)
{
    const Slider *slider = VL_FindExtra<Slider>(control);
    return slider && slider->inverted;
}

int rangeEnd(HWND control, bool least)
{
    if (isBar(control))
        return (int)SendMessageW(control, PBM_GETRANGE, least, 0);
    if (isSlider(control))
        return (int)SendMessageW(control, least ? TBM_GETRANGEMIN : TBM_GETRANGEMAX, 0, 0);
    return 0;
}

void replaceAll(std::wstring &text, const std::wstring &what, const std::wstring &by)
{
    for (size_t at = text.find(what); at != std::wstring::npos; at = text.find(what, at))
        text.replace(at, what.size(), by), at += by.size();
}

std::wstring barText(HWND bar, const Bar &look)
{
    std::wstring text = look.format;
    replaceAll(text, L"%p", std::to_wstring(VL_GetPercent(bar)));
    replaceAll(text, L"%v", std::to_wstring(VL_GetValue(bar)));
    replaceAll(text, L"%m", std::to_wstring(VL_GetMaxValue(bar)));
    return text;
}

COLORREF barColor(const Bar &look)
{
    return look.state == 1 ? kError : look.state == 2 ? kPaused : look.bar;
}

void fill(HDC context, const RECT &area, COLORREF color)
{
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(context, &area, brush);
    DeleteObject(brush);
}

// The part of `inside` that is done.
RECT doneArea(HWND bar, const Bar &look, RECT inside)
{
    const bool vertical = (GetWindowLongW(bar, GWL_STYLE) & PBS_VERTICAL) != 0;
    const int length = vertical ? inside.bottom - inside.top : inside.right - inside.left;
    if (look.marquee) {
        const int strip = length / 4 > 0 ? length / 4 : 1;
        const int from = look.marqueePlace % (length + strip) - strip;
        if (vertical) {
            const LONG bottom = inside.bottom;
            inside.bottom = bottom - (from > 0 ? from : 0);
            inside.top = bottom - from - strip > inside.top ? bottom - from - strip : inside.top;
        } else {
            const LONG left = inside.left;
            inside.left = left + (from > 0 ? from : 0);
            inside.right = left + from + strip < inside.right ? left + from + strip : inside.right;
        }
        return inside;
    }
    const long long range = (long long)VL_GetMaxValue(bar) - VL_GetMinValue(bar);
    const long long value = (long long)VL_GetValue(bar) - VL_GetMinValue(bar);
    const int done = range > 0 ? (int)(length * value / range) : 0;
    if (vertical)
        inside.top = inside.bottom - done;
    else
        inside.right = inside.left + done;
    return inside;
}

void cutBlocks(HWND bar, HDC context, const RECT &done, COLORREF back)
{
    const bool vertical = (GetWindowLongW(bar, GWL_STYLE) & PBS_VERTICAL) != 0;
    const int pitch = VL_ScaleX(bar, kBlockPitch);
    const int gap = VL_ScaleX(bar, kBlockGap);
    const int length = vertical ? done.bottom - done.top : done.right - done.left;
    for (int at = pitch - gap; at < length; at += pitch) {
        RECT slit = done;
        if (vertical) {
            slit.bottom = done.bottom - at;
            slit.top = slit.bottom - gap;
        } else {
            slit.left = done.left + at;
            slit.right = slit.left + gap;
        }
        fill(context, slit, back);
    }
}

void drawBar(HWND bar, HDC context, const RECT &all, const Bar &look)
{
    fill(context, all, kFrame);
    RECT inside = all;
    InflateRect(&inside, -1, -1);
    fill(context, inside, look.back);
    const RECT done = doneArea(bar, look, inside);
    fill(context, done, barColor(look));
    if (!(GetWindowLongW(bar, GWL_STYLE) & PBS_SMOOTH) && !look.marquee)
        cutBlocks(bar, context, done, look.back);
    if (!look.showText || look.marquee)
        return;
    const std::wstring text = barText(bar, look);
    const HGDIOBJ old = SelectObject(
        context, look.font ? (HGDIOBJ)look.font : GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, RGB(32, 32, 32));
    RECT place = all;
    DrawTextW(context, text.c_str(), (int)text.size(), &place,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    SelectObject(context, old);
}

void paintBar(HWND bar, HDC target, const Bar &look)
{
    RECT all = {};
    GetClientRect(bar, &all);
    const HDC context = CreateCompatibleDC(target);
    const HBITMAP bitmap = CreateCompatibleBitmap(target, all.right ? all.right : 1,
                                                  all.bottom ? all.bottom : 1);
    const HGDIOBJ old = SelectObject(context, bitmap);
    drawBar(bar, context, all, look);
    BitBlt(target, 0, 0, all.right, all.bottom, context, 0, 0, SRCCOPY);
    SelectObject(context, old);
    DeleteObject(bitmap);
    DeleteDC(context);
}

LRESULT CALLBACK barProcedure(HWND bar, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR)
{
    Bar *look = VL_FindExtra<Bar>(bar);
    if (message == WM_NCDESTROY || !look) {
        RemoveWindowSubclass(bar, barProcedure, kBarSubclass);
        return DefSubclassProc(bar, message, wParam, lParam);
    }
    switch (message) {
    case WM_SETFONT:
        look->font = (HFONT)wParam;
        break;
    case WM_GETFONT:
        return (LRESULT)look->font;
    case WM_ERASEBKGND:
        if (look->drawn)
            return TRUE;
        break;
    case WM_PRINTCLIENT:
    case WM_PAINT:
        if (!look->drawn)
            break;
        if (wParam) {
            paintBar(bar, (HDC)wParam, *look);
        } else {
            PAINTSTRUCT paint;
            paintBar(bar, BeginPaint(bar, &paint), *look);
            EndPaint(bar, &paint);
        }
        return 0;
    case WM_TIMER:
        if (wParam == kMarqueeTimer) {
            look->marqueePlace += VL_ScaleX(bar, 4);
            InvalidateRect(bar, NULL, FALSE);
            return 0;
        }
        break;
    case PBM_SETPOS:
    case PBM_DELTAPOS:
    case PBM_STEPIT:
    case PBM_SETRANGE:
    case PBM_SETRANGE32: {
        const int before = VL_GetValue(bar);
        const LRESULT result = DefSubclassProc(bar, message, wParam, lParam);
        if (look->drawn)
            InvalidateRect(bar, NULL, FALSE);
        if (VL_GetValue(bar) != before)
            VL_NotifyOwner(bar, kValueChanged);
        return result;
    }
    default:
        break;
    }
    return DefSubclassProc(bar, message, wParam, lParam);
}

Bar *barOf(HWND bar)
{
    if (!isBar(bar))
        return nullptr;
    Bar *look = VL_Extra<Bar>(bar);
    if (look)
        SetWindowSubclass(bar, barProcedure, kBarSubclass, 0);
    return look;
}

Bar *drawnBar(HWND bar)
{
    Bar *look = barOf(bar);
    if (!look)
        return nullptr;
    look->drawn = true;
    InvalidateRect(bar, NULL, FALSE);
    return look;
}

// Below the thumb where there is room for it, else at the end of the slider.
void drawSliderValue(HWND slider)
{
    RECT client = {};
    RECT thumb = {};
    GetClientRect(slider, &client);
    SendMessageW(slider, TBM_GETTHUMBRECT, 0, (LPARAM)&thumb);
    const std::wstring text = std::to_wstring(VL_GetValue(slider));
    const HDC context = GetDC(slider);
    const HFONT font = (HFONT)SendMessageW(slider, WM_GETFONT, 0, 0);
    const HGDIOBJ old =
        SelectObject(context, font ? (HGDIOBJ)font : GetStockObject(DEFAULT_GUI_FONT));
    SIZE size = {};
    GetTextExtentPoint32W(context, text.c_str(), (int)text.size(), &size);
    POINT place = {(thumb.left + thumb.right - size.cx) / 2, client.bottom - size.cy};
    if (client.bottom - thumb.bottom < size.cy)
        place = {client.right - size.cx, client.top};
    if (place.x + size.cx > client.right)
        place.x = client.right - size.cx;
    if (place.x < 0)
        place.x = 0;
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, VL_GetTextColor(slider));
    TextOutW(context, place.x, place.y, text.c_str(), (int)text.size());
    SelectObject(context, old);
    ReleaseDC(slider, context);
}

LRESULT CALLBACK sliderProcedure(HWND slider, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR)
{
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(slider, sliderProcedure, kSliderSubclass);
    const Slider *look = VL_FindExtra<Slider>(slider);
    const bool shows = look && look->showValue;
    const LRESULT before = shows ? SendMessageW(slider, TBM_GETPOS, 0, 0) : 0;
    const LRESULT result = DefSubclassProc(slider, message, wParam, lParam);
    if (!shows || message == WM_NCDESTROY || message == TBM_GETPOS)
        return result;
    if (message == WM_PAINT)
        drawSliderValue(slider);
    else if (IsWindow(slider) && SendMessageW(slider, TBM_GETPOS, 0, 0) != before)
        InvalidateRect(slider, NULL, TRUE);
    return result;
}

} // namespace
} // namespace vl_value_controls

int VL_GetMinValue(HWND control)
{
    return vl_value_controls::rangeEnd(control, true);
}

int VL_GetMaxValue(HWND control)
{
    return vl_value_controls::rangeEnd(control, false);
}

int VL_GetMin(HWND control)
{
    return VL_GetMinValue(control);
}

int VL_GetMax(HWND control)
{
    return VL_GetMaxValue(control);
}

int VL_GetValue(HWND control)
{
    using namespace vl_value_controls;
    if (isBar(control))
        return (int)SendMessageW(control, PBM_GETPOS, 0, 0);
    if (!isSlider(control))
        return 0;
    const int place = (int)SendMessageW(control, TBM_GETPOS, 0, 0);
    return isInverted(control) ? VL_GetMinValue(control) + VL_GetMaxValue(control) - place : place;
}

void VL_SetValue(HWND control, int value)
{
    using namespace vl_value_controls;
    const int least = VL_GetMinValue(control);
    const int greatest = VL_GetMaxValue(control);
    value = value < least ? least : value > greatest ? greatest : value;
    if (isBar(control)) {
        // Without a subclass nobody tells of the change.
        barOf(control);
        SendMessageW(control, PBM_SETPOS, (WPARAM)value, 0);
    } else if (isSlider(control) && value != VL_GetValue(control)) {
        SendMessageW(control, TBM_SETPOS, TRUE,
                     isInverted(control) ? least + greatest - value : value);
        const bool vertical = (GetWindowLongW(control, GWL_STYLE) & TBS_VERT) != 0;
        SendMessageW(GetParent(control), vertical ? WM_VSCROLL : WM_HSCROLL,
                     MAKEWPARAM(TB_ENDTRACK, 0), (LPARAM)control);
    }
}

void VL_SetRange(HWND control, int least, int greatest)
{
    using namespace vl_value_controls;
    if (least > greatest)
        std::swap(least, greatest);
    if (isBar(control)) {
        SendMessageW(control, PBM_SETRANGE32, (WPARAM)least, greatest);
    } else if (isSlider(control)) {
        SendMessageW(control, TBM_SETRANGEMIN, FALSE, least);
        SendMessageW(control, TBM_SETRANGEMAX, TRUE, greatest);
    }
}

void VL_SetMinValue(HWND control, int value)
{
    const int greatest = VL_GetMaxValue(control);
    VL_SetRange(control, value, greatest < value ? value : greatest);
}

void VL_SetMaxValue(HWND control, int value)
{
    const int least = VL_GetMinValue(control);
    VL_SetRange(control, least > value ? value : least, value);
}

int VL_GetStep(HWND control)
{
    using namespace vl_value_controls;
    if (isSlider(control))
        return (int)SendMessageW(control, TBM_GETLINESIZE, 0, 0);
    return isBar(control) ? VL_GetNumberProperty(control, L"VL_Step", 10) : 0;
}

void VL_SetStep(HWND control, int step)
{
    using namespace vl_value_controls;
    if (isSlider(control)) {
        SendMessageW(control, TBM_SETLINESIZE, 0, step);
    } else if (isBar(control)) {
        SendMessageW(control, PBM_SETSTEP, (WPARAM)step, 0);
        SetPropW(control, L"VL_Step", (HANDLE)(intptr_t)step);
    }
}

int VL_GetPercent(HWND control)
{
    const long long least = VL_GetMinValue(control);
    const long long range = VL_GetMaxValue(control) - least;
    return range > 0 ? (int)((VL_GetValue(control) - least) * 100 / range) : 0;
}

void VL_ProgressBar_SetBarColor(HWND bar, int color)
{
    if (vl_value_controls::Bar *look = vl_value_controls::drawnBar(bar)) {
        look->hasBar = true;
        look->bar = (COLORREF)color & 0xFFFFFF;
    }
}

void VL_ProgressBar_SetBkColor(HWND bar, int color)
{
    if (vl_value_controls::Bar *look = vl_value_controls::drawnBar(bar))
        look->back = (COLORREF)color & 0xFFFFFF;
}

void VL_ProgressBar_SetState(HWND bar, const VL_Any &state)
{
    int number = (int)state.toInt();
    const std::wstring word = state.toStr();
    if (word == L"\u6B63\u5E38")
        number = 0;
    else if (word == L"\u9519\u8BEF")
        number = 1;
    else if (word == L"\u6682\u505C")
        number = 2;
    if (vl_value_controls::Bar *look = vl_value_controls::drawnBar(bar))
        look->state = number == 1 || number == 2 ? number : 0;
}

int VL_ProgressBar_GetState(HWND bar)
{
    const vl_value_controls::Bar *look = VL_FindExtra<vl_value_controls::Bar>(bar);
    return look ? look->state : 0;
}

void VL_ProgressBar_SetNormal(HWND bar)
{
    VL_ProgressBar_SetState(bar, VL_Any(0));
}

void VL_ProgressBar_SetError(HWND bar)
{
    VL_ProgressBar_SetState(bar, VL_Any(1));
}

void VL_ProgressBar_SetPaused(HWND bar)
{
    VL_ProgressBar_SetState(bar, VL_Any(2));
}

void VL_ProgressBar_SetText(HWND bar, bool show, const std::wstring &format)
{
    if (vl_value_controls::Bar *look = vl_value_controls::drawnBar(bar)) {
        look->showText = show;
        look->format = format;
    }
}

void VL_ProgressBar_SetMarquee(HWND bar, bool on, int milliseconds)
{
    using namespace vl_value_controls;
    Bar *look = drawnBar(bar);
    if (!look)
        return;
    look->marquee = on;
    if (on)
        SetTimer(bar, kMarqueeTimer, milliseconds > 0 ? (UINT)milliseconds : 30, NULL);
    else
        KillTimer(bar, kMarqueeTimer);
}

void VL_PrepareSlider(HWND slider, bool showValue, bool inverted)
{
    using namespace vl_value_controls;
    if (!isSlider(slider))
        return;
    Slider *look = VL_Extra<Slider>(slider);
    if (!look)
        return;
    look->showValue = showValue;
    look->inverted = inverted;
    if (showValue)
        SetWindowSubclass(slider, sliderProcedure, kSliderSubclass, 0);
}
