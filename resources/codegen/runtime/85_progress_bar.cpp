// Progress bars: colours, states, text and the moving bar.
#include "85_progress_bar.h"

#include "43_background.h"

#include <algorithm>

namespace vl_progress_bar {
namespace {

const UINT_PTR kSubclass = 0x564C85;
const UINT_PTR kTimer = 0x564C85;
const UINT kSetState = WM_USER + 16;
const UINT kGetState = WM_USER + 17;
const COLORREF kBarColor = RGB(6, 176, 37);
const COLORREF kErrorColor = RGB(218, 38, 38);
const COLORREF kPausedColor = RGB(230, 175, 0);
const COLORREF kBackColor = RGB(230, 230, 230);
const int kRound = 140; // steps of the moving bar from one end to the other, and out of sight

struct Progress
{
    COLORREF bar = CLR_DEFAULT;
    COLORREF back = CLR_DEFAULT;
    int state = 0;
    bool showText = false;
    std::wstring format;
    bool marquee = false;
    int speed = 30;
    int phase = 0;
    bool paintedHere = false;

    bool isPlain() const
    {
        return bar == CLR_DEFAULT && back == CLR_DEFAULT && state == 0 && !showText;
    }
};

struct Range
{
    int minimum;
    int maximum;
    int value;
};

Range rangeOf(HWND bar)
{
    return {(int)SendMessageW(bar, PBM_GETRANGE, TRUE, 0),
            (int)SendMessageW(bar, PBM_GETRANGE, FALSE, 0),
            (int)SendMessageW(bar, PBM_GETPOS, 0, 0)};
}

// The part of `whole` that the value stands for.
int partOf(const Range &range, int whole)
{
    const long long span = (long long)range.maximum - range.minimum;
    return span <= 0 ? 0 : (int)(((long long)range.value - range.minimum) * whole / span);
}

COLORREF mixed(COLORREF a, COLORREF b, int percent)
{
    const auto channel = [percent](int from, int to) { return from + (to - from) * percent / 100; };
    return RGB(channel(GetRValue(a), GetRValue(b)), channel(GetGValue(a), GetGValue(b)),
               channel(GetBValue(a), GetBValue(b)));
}

// Black or white, whichever can be read on that ground.
COLORREF readableOn(COLORREF ground)
{
    const int brightness =
        (GetRValue(ground) * 30 + GetGValue(ground) * 59 + GetBValue(ground) * 11) / 100;
    return brightness < 140 ? RGB(255, 255, 255) : RGB(0, 0, 0);
}

COLORREF barColor(const Progress &progress)
{
    if (progress.state == 1)
        return kErrorColor;
    if (progress.state == 2)
        return kPausedColor;
    return progress.bar == CLR_DEFAULT ? kBarColor : progress.bar;
}

std::wstring textOf(const Progress &progress, const Range &range)
{
    std::wstring text;
    const std::wstring &format = progress.format;
    for (size_t i = 0; i < format.size(); ++i) {
        const wchar_t next = format[i] == L'%' && i + 1 < format.size() ? format[i + 1] : L'\0';
        ++i;
        if (next == L'p')
            text += std::to_wstring(partOf(range, 100));
        else if (next == L'v')
            text += std::to_wstring(range.value);
        else if (next == L'm')
            text += std::to_wstring(range.maximum);
        else if (next == L'%')
            text += L'%';
        else
            text += format[--i];
    }
    return text;
}

void fill(HDC context, const RECT &area, COLORREF color)
{
    SetDCBrushColor(context, color);
    FillRect(context, &area, (HBRUSH)GetStockObject(DC_BRUSH));
}

// The filled part of the bar; from the left, or from the bottom of an upright one.
RECT filledPart(const Progress &progress, const Range &range, const RECT &room, bool upright)
{
    const int whole = upright ? room.bottom - room.top : room.right - room.left;
    int from = 0;
    int to = partOf(range, whole);
    if (progress.marquee) {
        const int length = whole * 3 / 10;
        from = (whole + length) * progress.phase / kRound - length;
        to = (std::min)(whole, from + length);
        from = (std::max)(0, from);
    }
    RECT part = room;
    if (upright) {
        part.bottom = room.bottom - from;
        part.top = room.bottom - to;
    } else {
        part.left = room.left + from;
        part.right = room.left + to;
    }
    return part;
}

void fillBlocks(HWND bar, HDC context, const RECT &part, bool upright, COLORREF color)
{
    const int block = (std::max)(4, VL_ScaleX(bar, 8));
    const int step = block + (std::max)(1, VL_ScaleX(bar, 2));
    const int whole = upright ? part.bottom - part.top : part.right - part.left;
    for (int at = 0; at < whole; at += step) {
        RECT piece = part;
        if (upright) {
            piece.bottom = part.bottom - at;
            piece.top = (std::max)(part.top, (LONG)(piece.bottom - block));
        } else {
            piece.left = part.left + at;
            piece.right = (std::min)(part.right, (LONG)(piece.left + block));
        }
        fill(context, piece, color);
    }
}

void drawText(HDC context, const std::wstring &text, RECT room, const RECT &clip, COLORREF color)
{
    const int saved = SaveDC(context);
    IntersectClipRect(context, clip.left, clip.top, clip.right, clip.bottom);
    SetTextColor(context, color);
    DrawTextW(context, text.c_str(), (int)(std::min)(text.size(), (size_t)1000), &room,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    RestoreDC(context, saved);
}

// The text in a colour that can be read, over the bar and beside it.
void drawValue(HWND bar, HDC context, const std::wstring &text, const RECT &room, const RECT &part,
               COLORREF color, COLORREF back)
{
    const HFONT font = (HFONT)SendMessageW(bar, WM_GETFONT, 0, 0);
    const HGDIOBJ old =
        SelectObject(context, font ? font : (HFONT)GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(context, TRANSPARENT);
    const int saved = SaveDC(context);
    ExcludeClipRect(context, part.left, part.top, part.right, part.bottom);
    drawText(context, text, room, room, readableOn(back));
    RestoreDC(context, saved);
    drawText(context, text, room, part, readableOn(color));
    SelectObject(context, old);
}

void draw(HWND bar, const Progress &progress, HDC context, const RECT &client)
{
    const DWORD style = (DWORD)GetWindowLongW(bar, GWL_STYLE);
    const bool upright = (style & PBS_VERTICAL) != 0;
    const COLORREF back = progress.back == CLR_DEFAULT ? kBackColor : progress.back;
    COLORREF color = barColor(progress);
    if (!IsWindowEnabled(bar))
        color = mixed(color, back, 55);
    fill(context, client, mixed(back, readableOn(back), 20));
    RECT room = client;
    const int border = (std::max)(1, VL_ScaleX(bar, 1));
    InflateRect(&room, -border, -border);
    fill(context, room, back);
    const Range range = rangeOf(bar);
    const RECT part = filledPart(progress, range, room, upright);
    if (style & PBS_SMOOTH || progress.marquee)
        fill(context, part, color);
    else
        fillBlocks(bar, context, part, upright, color);
    if (progress.showText && !progress.marquee)
        drawValue(bar, context, textOf(progress, range), room, part, color, back);
}

void paint(HWND bar, const Progress &progress, HDC target)
{
    RECT client = {};
    GetClientRect(bar, &client);
    draw(bar, progress, VL_BufferedPaint(target, client).context(), client);
}

LRESULT onPaint(HWND bar, const Progress &progress, UINT message, WPARAM wParam)
{
    if (message == WM_ERASEBKGND)
        return TRUE;
    if (wParam) {
        paint(bar, progress, (HDC)wParam);
        return 0;
    }
    PAINTSTRUCT update = {};
    const HDC context = BeginPaint(bar, &update);
    paint(bar, progress, context);
    EndPaint(bar, &update);
    return 0;
}

// The system moves a bar that it draws; one that is drawn here is moved here.
void applyMarquee(HWND bar, Progress *progress)
{
    const LONG style = GetWindowLongW(bar, GWL_STYLE);
    const LONG wanted = progress->marquee ? style | PBS_MARQUEE : style & ~PBS_MARQUEE;
    if (style != wanted)
        SetWindowLongW(bar, GWL_STYLE, wanted);
    const bool here = progress->marquee && progress->paintedHere;
    const bool there = progress->marquee && !progress->paintedHere;
    DefSubclassProc(bar, PBM_SETMARQUEE, there ? TRUE : FALSE, progress->speed);
    if (here)
        SetTimer(bar, kTimer, (UINT)(std::max)(10, progress->speed), NULL);
    else
        KillTimer(bar, kTimer);
    InvalidateRect(bar, NULL, TRUE);
}

LRESULT changeValue(HWND bar, const Progress &progress, UINT message, WPARAM wParam, LPARAM lParam)
{
    const int before = rangeOf(bar).value;
    const bool here = progress.paintedHere;
    const bool silent = progress.marquee;
    const LRESULT result = DefSubclassProc(bar, message, wParam, lParam);
    const int after = rangeOf(bar).value;
    if (here)
        InvalidateRect(bar, NULL, FALSE);
    // What is told may end the bar: nothing of it is touched afterwards.
    if (after != before && !silent)
        VL_NotifyOwner(bar, VL_EVENT_VALUE_CHANGED, after);
    return result;
}

// Messages that change the look.
LRESULT changeLook(HWND bar, Progress *progress, UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (message == PBM_SETBARCOLOR || message == PBM_SETBKCOLOR) {
        COLORREF &color = message == PBM_SETBARCOLOR ? progress->bar : progress->back;
        result = (LRESULT)color;
        color = (COLORREF)lParam;
    } else if (message == kSetState) {
        result = progress->state + 1;
        progress->state = wParam >= 1 && wParam <= 3 ? (int)wParam - 1 : 0;
    } else {
        result = TRUE;
        progress->marquee = wParam != 0;
        progress->speed = lParam > 0 && lParam < 60000 ? (int)lParam : 30;
    }
    progress->paintedHere = !progress->isPlain();
    applyMarquee(bar, progress);
    return result;
}

LRESULT CALLBACK barProcedure(HWND bar, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR)
{
    Progress *progress = VL_FindExtra<Progress>(bar);
    if (message == WM_NCDESTROY || !progress) {
        RemoveWindowSubclass(bar, barProcedure, kSubclass);
        return DefSubclassProc(bar, message, wParam, lParam);
    }
    switch (message) {
    case PBM_SETPOS:
    case PBM_DELTAPOS:
    case PBM_STEPIT:
    case PBM_SETRANGE:
    case PBM_SETRANGE32:
        return changeValue(bar, *progress, message, wParam, lParam);
    case PBM_SETBARCOLOR:
    case PBM_SETBKCOLOR:
    case PBM_SETMARQUEE:
    case kSetState:
        return changeLook(bar, progress, message, wParam, lParam);
    case kGetState:
        return progress->state + 1;
    case WM_PAINT:
    case WM_PRINTCLIENT:
    case WM_ERASEBKGND:
        if (progress->paintedHere)
            return onPaint(bar, *progress, message, wParam);
        break;
    case WM_TIMER:
        if (wParam != kTimer)
            break;
        progress->phase = (progress->phase + 1) % kRound;
        InvalidateRect(bar, NULL, FALSE);
        return 0;
    case WM_SETFONT:
    case WM_ENABLE:
    case WM_SIZE:
        InvalidateRect(bar, NULL, FALSE);
        break;
    default:
        break;
    }
    return DefSubclassProc(bar, message, wParam, lParam);
}

} // namespace
} // namespace vl_progress_bar

bool VL_PrepareProgressBar(HWND bar)
{
    using namespace vl_progress_bar;
    if (!VL_HasClass(bar, PROGRESS_CLASSW))
        return false;
    if (VL_FindExtra<Progress>(bar))
        return true;
    Progress *progress = VL_Extra<Progress>(bar);
    if (!progress)
        return false;
    // What the program told the class before.
    if (VL_HasBgColor(bar))
        progress->back = (COLORREF)VL_GetBgColor(bar);
    if (VL_HasTextColor(bar))
        progress->bar = (COLORREF)VL_GetTextColor(bar);
    progress->paintedHere = !progress->isPlain();
    SetWindowSubclass(bar, barProcedure, kSubclass, 0);
    return true;
}

void VL_ProgressBar_SetBarColor(HWND bar, int color)
{
    if (VL_PrepareProgressBar(bar))
        SendMessageW(bar, PBM_SETBARCOLOR, 0, color & 0xFFFFFF);
}

void VL_ProgressBar_SetBkColor(HWND bar, int color)
{
    if (VL_PrepareProgressBar(bar))
        SendMessageW(bar, PBM_SETBKCOLOR, 0, color & 0xFFFFFF);
}

void VL_ProgressBar_SetState(HWND bar, const VL_Any &state)
{
    const wchar_t *const names[] = {L"\u6B63\u5E38", L"\u9519\u8BEF", L"\u6682\u505C"};
    long long number = state.toInt();
    if (state.type == VL_Any::TypeString) {
        number = VL_AnyToInteger(state);
        for (int i = 0; i < 3; ++i)
            number = state.strVal == names[i] ? i : number;
    }
    if (VL_PrepareProgressBar(bar))
        SendMessageW(bar, vl_progress_bar::kSetState,
                     number == 1 || number == 2 ? (WPARAM)number + 1 : 1, 0);
}

int VL_ProgressBar_GetState(HWND bar)
{
    const vl_progress_bar::Progress *progress = VL_FindExtra<vl_progress_bar::Progress>(bar);
    return progress ? progress->state : 0;
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
    using namespace vl_progress_bar;
    if (!VL_PrepareProgressBar(bar))
        return;
    Progress *progress = VL_FindExtra<Progress>(bar);
    progress->showText = show;
    progress->format = format.empty() ? L"%p%" : format.substr(0, 1000);
    // Who moves the bar may have changed with it.
    SendMessageW(bar, PBM_SETMARQUEE, progress->marquee, progress->speed);
}

void VL_ProgressBar_SetMarquee(HWND bar, bool on, int speed)
{
    if (VL_PrepareProgressBar(bar))
        SendMessageW(bar, PBM_SETMARQUEE, on ? TRUE : FALSE, speed);
}
