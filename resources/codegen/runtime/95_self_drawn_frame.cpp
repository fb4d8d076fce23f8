// Self-drawn windows: title bar, frame, client area.
#include "95_self_drawn_frame.h"

#include <algorithm>

bool g_vlwinSelfDrawActive = false;
COLORREF g_vlwinTitleBarColor = RGB(45, 45, 48);
COLORREF g_vlwinClientBgColor = RGB(30, 30, 30);
HBRUSH g_vlwinClientBgBrush = NULL;
std::wstring g_vlwinWndTitle;

namespace vl_self_drawn_frame {
namespace {

const int NoButton = 0;
const int CloseButton = 1;
const int MaximizeButton = 2;
const int MinimizeButton = 3;

const COLORREF kCloseHover = RGB(232, 17, 35);
const int kResizeBorder = 8;
const size_t kLongestTitle = 1024;
// Messages by which the system's own theme code draws captions; they have no names in the headers.
const UINT kDrawThemeCaption = 0x00AE;
const UINT kDrawThemeFrame = 0x00AF;

struct Frame
{
    COLORREF title = RGB(45, 45, 48);
    bool minimizeBox = true;
    bool maximizeBox = true;
    bool resizable = true;
    bool active = true;
    bool erasing = false;
    bool painting = false;
    int hot = NoButton;
    int pressed = NoButton;
    HFONT font = NULL;
    int fontDpi = 0;
    ~Frame()
    {
        if (font)
            DeleteObject(font);
    }
};

int titleHeight(HWND window)
{
    return VL_ScaleY(window, VL_VLWIN_TITLE_HEIGHT);
}

int frameWidth(HWND window)
{
    return IsZoomed(window) ? 0 : 2 * VL_ScaleX(window, 1);
}

RECT titleRect(HWND window)
{
    RECT place;
    GetClientRect(window, &place);
    place.bottom = std::min(place.bottom, (LONG)titleHeight(window));
    return place;
}

// Empty for a button that the window has not.
RECT buttonRect(HWND window, const Frame &frame, int button)
{
    RECT place = titleRect(window);
    const int width = VL_ScaleX(window, VL_VLWIN_CAPTION_BUTTON);
    int fromRight = 0;
    if (button == MaximizeButton)
        fromRight = frame.maximizeBox ? 1 : -1;
    else if (button == MinimizeButton)
        fromRight = frame.minimizeBox ? (frame.maximizeBox ? 2 : 1) : -1;
    if (fromRight < 0 || button == NoButton)
        return RECT{0, 0, 0, 0};
    place.right -= fromRight * width;
    place.left = place.right - width;
    return place;
}

int buttonAt(HWND window, const Frame &frame, POINT point)
{
    for (const int button : {CloseButton, MaximizeButton, MinimizeButton}) {
        const RECT place = buttonRect(window, frame, button);
        if (PtInRect(&place, point))
            return button;
    }
    return NoButton;
}

void repaintTitle(HWND window)
{
    const RECT place = titleRect(window);
    InvalidateRect(window, &place, FALSE);
}

void strokeBox(HDC dc, float x, float y, float size, float width, COLORREF color)
{
    const float points[] = {x, y, x + size, y, x + size, y + size, x, y + size, x, y};
    VL_VlwinStroke(dc, points, 5, width, color);
}

void drawGlyph(HWND window, HDC dc, const RECT &place, int button, COLORREF color)
{
    const float pen = (float)VL_ScaleX(window, 1);
    const float half = (pen - 1) / 2;
    const int size = VL_ScaleX(window, 10);
    const float x = (float)((place.left + place.right - size) / 2) + half;
    const float y = (float)((place.top + place.bottom - size) / 2) + half;
    const float side = (float)size - pen;
    if (button == MinimizeButton) {
        const float middle = y + (float)(size / 2);
        const float line[] = {x, middle, x + side, middle};
        VL_VlwinStroke(dc, line, 2, pen, color);
    } else if (button == CloseButton) {
        const float down[] = {x, y, x + side, y + side};
        const float up[] = {x, y + side, x + side, y};
        VL_VlwinStroke(dc, down, 2, pen * 1.1f, color);
        VL_VlwinStroke(dc, up, 2, pen * 1.1f, color);
    } else if (IsZoomed(window)) {
        const float step = 2 * pen;
        const float behind[] = {
            x + step,        y + step,        x + step,       y, x + side, y, x + side,
            y + side - step, x + side - step, y + side - step};
        strokeBox(dc, x, y + step, side - step, pen, color);
        VL_VlwinStroke(dc, behind, 5, pen, color);
    } else {
        strokeBox(dc, x, y, side, pen, color);
    }
}

void drawButton(HWND window, const Frame &frame, HDC dc, int button, COLORREF text)
{
    const RECT place = buttonRect(window, frame, button);
    if (IsRectEmpty(&place))
        return;
    const bool hot = frame.hot == button && (frame.pressed == NoButton || frame.pressed == button);
    const bool pressed = hot && frame.pressed == button;
    COLORREF glyph = text;
    if (hot && button == CloseButton) {
        VL_VlwinFill(dc, place, pressed ? VL_MixColors(kCloseHover, 0, 20) : kCloseHover);
        glyph = RGB(255, 255, 255);
    } else if (hot) {
        const COLORREF contrast = VL_VlwinIsLight(frame.title) ? RGB(0, 0, 0) : RGB(255, 255, 255);
        VL_VlwinFill(dc, place, VL_MixColors(frame.title, contrast, pressed ? 20 : 11));
    }
    drawGlyph(window, dc, place, button, glyph);
}

HFONT titleFont(HWND window, Frame *frame)
{
    const int dpi = VL_GetDpiForScaling(window);
    if (frame->font && frame->fontDpi == dpi)
        return frame->font;
    if (frame->font)
        DeleteObject(frame->font);
    frame->font =
        CreateFontW(-VL_ScaleY(window, 14), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                    DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                    DEFAULT_PITCH | FF_DONTCARE, L"Microsoft YaHei UI");
    frame->fontDpi = dpi;
    return frame->font;
}

HICON iconOf(HWND window)
{
    HICON icon = (HICON)SendMessageW(window, WM_GETICON, ICON_SMALL, 0);
    if (!icon)
        icon = (HICON)SendMessageW(window, WM_GETICON, ICON_BIG, 0);
    if (!icon)
        icon = (HICON)GetClassLongPtrW(window, GCLP_HICONSM);
    return icon ? icon : (HICON)GetClassLongPtrW(window, GCLP_HICON);
}

void drawFrame(HWND window, HDC dc)
{
    const int width = frameWidth(window);
    if (width == 0)
        return;
    RECT all;
    GetClientRect(window, &all);
    VL_VlwinFill(dc, RECT{0, 0, all.right, width}, VL_VLWIN_FRAME);
    VL_VlwinFill(dc, RECT{0, 0, width, all.bottom}, VL_VLWIN_FRAME);
    VL_VlwinFill(dc, RECT{all.right - width, 0, all.right, all.bottom}, VL_VLWIN_FRAME);
    VL_VlwinFill(dc, RECT{0, all.bottom - width, all.right, all.bottom}, VL_VLWIN_FRAME);
}

void drawTitle(HWND window, Frame *frame, HDC target)
{
    const RECT bar = titleRect(window);
    const VL_BufferedPaint buffer(target, RECT{0, 0, bar.right, bar.bottom});
    const HDC dc = buffer.context();
    VL_VlwinFill(dc, bar, frame->title);
    COLORREF text = VL_VlwinIsLight(frame->title) ? RGB(32, 32, 32) : VL_VLWIN_TEXT;
    if (!frame->active)
        text = VL_MixColors(text, frame->title, 45);
    for (const int button : {CloseButton, MaximizeButton, MinimizeButton})
        drawButton(window, *frame, dc, button, text);

    RECT place = bar;
    place.left = VL_ScaleX(window, 14);
    place.right -= VL_ScaleX(window, VL_VLWIN_CAPTION_BUTTON) *
                   (1 + (frame->maximizeBox ? 1 : 0) + (frame->minimizeBox ? 1 : 0));
    if (const HICON icon = iconOf(window)) {
        const int size = VL_ScaleX(window, 16);
        DrawIconEx(dc, place.left, (bar.bottom - size) / 2, icon, size, size, 0, NULL, DI_NORMAL);
        place.left += size + VL_ScaleX(window, 8);
    }
    const std::wstring title = VL_VlwinWindowText(window);
    const HGDIOBJ old = SelectObject(dc, titleFont(window, frame));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, text);
    DrawTextW(dc, title.c_str(), (int)std::min(title.size(), kLongestTitle), &place,
              DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
    SelectObject(dc, old);
    drawFrame(window, dc);
}

// Whoever else answers for the window may have a picture to show; the plain colour stands
// otherwise.
void drawClient(HWND window, Frame *frame, HDC dc)
{
    const int width = frameWidth(window);
    RECT all;
    GetClientRect(window, &all);
    const RECT inside = {width, titleHeight(window), all.right - width, all.bottom - width};
    const int saved = SaveDC(dc);
    IntersectClipRect(dc, inside.left, inside.top, std::max(inside.left, inside.right),
                      std::max(inside.top, inside.bottom));
    frame->erasing = true;
    const LRESULT erased = SendMessageW(window, WM_ERASEBKGND, (WPARAM)dc, 0);
    frame->erasing = false;
    if (!erased)
        VL_VlwinFill(dc, inside, (COLORREF)VL_GetBgColor(window));
    RestoreDC(dc, saved);
}

void drawWindow(HWND window, Frame *frame, HDC dc)
{
    drawClient(window, frame, dc);
    drawFrame(window, dc);
    const RECT bar = titleRect(window);
    if (RectVisible(dc, &bar))
        drawTitle(window, frame, dc);
}

void paint(HWND window, Frame *frame)
{
    PAINTSTRUCT state;
    frame->painting = true;
    const HDC dc = BeginPaint(window, &state);
    frame->painting = false;
    if (dc)
        drawWindow(window, frame, dc);
    EndPaint(window, &state);
}

LRESULT hitTest(HWND window, const Frame &frame, LPARAM place)
{
    POINT point = {(short)LOWORD(place), (short)HIWORD(place)};
    ScreenToClient(window, &point);
    RECT all;
    GetClientRect(window, &all);
    if (!PtInRect(&all, point))
        return HTNOWHERE;
    if (buttonAt(window, frame, point) != NoButton)
        return HTCLIENT;
    // A window that fills the screen has its sizing border taken away.
    const bool hasBorder = (GetWindowLongW(window, GWL_STYLE) & WS_THICKFRAME) != 0;
    if (frame.resizable && hasBorder && !IsZoomed(window)) {
        const int border = VL_ScaleX(window, kResizeBorder);
        const int column = point.x < border ? 0 : point.x >= all.right - border ? 2 : 1;
        const int row = point.y < border ? 0 : point.y >= all.bottom - border ? 2 : 1;
        static const LRESULT edges[3][3] = {{HTTOPLEFT, HTTOP, HTTOPRIGHT},
                                            {HTLEFT, HTNOWHERE, HTRIGHT},
                                            {HTBOTTOMLEFT, HTBOTTOM, HTBOTTOMRIGHT}};
        if (row != 1 || column != 1)
            return edges[row][column];
    }
    return point.y < titleHeight(window) ? HTCAPTION : HTCLIENT;
}

void pressButton(HWND window, int button)
{
    WPARAM command = SC_CLOSE;
    if (button == MaximizeButton)
        command = IsZoomed(window) ? SC_RESTORE : SC_MAXIMIZE;
    else if (button == MinimizeButton)
        command = SC_MINIMIZE;
    PostMessageW(window, WM_SYSCOMMAND, command, 0);
}

void setHot(HWND window, Frame *frame, int button)
{
    if (frame->hot == button)
        return;
    frame->hot = button;
    if (button != NoButton)
        VL_VlwinTrackLeave(window);
    repaintTitle(window);
}

// True when the message belongs to a caption button and is no business of anybody else.
bool handleMouse(HWND window, Frame *frame, UINT message, LPARAM place)
{
    const int button =
        message == WM_MOUSELEAVE || message == WM_CAPTURECHANGED
            ? NoButton
            : buttonAt(window, *frame, POINT{(short)LOWORD(place), (short)HIWORD(place)});
    const int pressed = frame->pressed;
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        if (button == NoButton)
            return false;
        frame->pressed = button;
        setHot(window, frame, button);
        SetCapture(window);
        break;
    case WM_LBUTTONUP:
        if (pressed == NoButton)
            return false;
        ReleaseCapture();
        frame->pressed = NoButton;
        if (pressed == button)
            pressButton(window, button);
        break;
    case WM_MOUSEMOVE:
        setHot(window, frame, button);
        return button != NoButton || pressed != NoButton;
    case WM_CAPTURECHANGED:
        if (pressed == NoButton)
            return false;
        frame->pressed = NoButton;
        break;
    default: // WM_MOUSELEAVE
        setHot(window, frame, NoButton);
        return false;
    }
    repaintTitle(window);
    return true;
}

void showSystemMenu(HWND window, const Frame &frame, POINT screen)
{
    const HMENU menu = GetSystemMenu(window, FALSE);
    if (!menu)
        return;
    const auto enable = [menu](UINT item, bool on) {
        EnableMenuItem(menu, item, MF_BYCOMMAND | (on ? MF_ENABLED : MF_GRAYED));
    };
    const bool zoomed = IsZoomed(window) != 0;
    enable(SC_RESTORE, zoomed);
    enable(SC_MOVE, !zoomed);
    enable(SC_SIZE, !zoomed && frame.resizable);
    enable(SC_MINIMIZE, frame.minimizeBox);
    enable(SC_MAXIMIZE, !zoomed && frame.maximizeBox);
    SetMenuDefaultItem(menu, SC_CLOSE, FALSE);
    const int picked =
        TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x, screen.y, 0, window, NULL);
    if (picked)
        PostMessageW(window, WM_SYSCOMMAND, (WPARAM)picked, 0);
}

bool workArea(HWND window, MONITORINFO *info)
{
    info->cbSize = sizeof(*info);
    return GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), info) != 0;
}

// Maximised, the window keeps the task bar free; never is it too small for its buttons.
void limitSize(HWND window, MINMAXINFO *limits)
{
    MONITORINFO info;
    if (workArea(window, &info)) {
        limits->ptMaxPosition.x = info.rcWork.left - info.rcMonitor.left;
        limits->ptMaxPosition.y = info.rcWork.top - info.rcMonitor.top;
        limits->ptMaxSize.x = info.rcWork.right - info.rcWork.left;
        limits->ptMaxSize.y = info.rcWork.bottom - info.rcWork.top;
    }
    const LONG least = VL_ScaleX(window, 4 * VL_VLWIN_CAPTION_BUTTON);
    limits->ptMinTrackSize.x = std::max(limits->ptMinTrackSize.x, least);
    limits->ptMinTrackSize.y = std::max(limits->ptMinTrackSize.y, (LONG)titleHeight(window));
}

// The whole window is client area. A maximised window with sizing borders reaches past the screen.
void clientArea(HWND window, RECT *place)
{
    MONITORINFO info;
    RECT inside;
    if (IsZoomed(window) && workArea(window, &info) && IntersectRect(&inside, place, &info.rcWork))
        *place = inside;
}

// Moving begins with the first step of the mouse: begun at once, it would take the second click of
// a double click.
bool isPlainClick(HWND window)
{
    POINT cursor;
    if (GetKeyState(VK_LBUTTON) >= 0 || !GetCursorPos(&cursor))
        return false;
    SetActiveWindow(window);
    return !DragDetect(window, cursor);
}

bool handleTitle(HWND window, Frame *frame, UINT message, WPARAM wParam, LPARAM lParam,
                 LRESULT *result)
{
    switch (message) {
    case WM_NCLBUTTONDOWN:
        return wParam == HTCAPTION && isPlainClick(window);
    case WM_NCLBUTTONDBLCLK:
        if (wParam != HTCAPTION)
            return false;
        if (frame->maximizeBox)
            pressButton(window, MaximizeButton);
        return true;
    case WM_NCRBUTTONDOWN:
        return wParam == HTCAPTION;
    case WM_NCRBUTTONUP:
        if (wParam != HTCAPTION)
            return false;
        showSystemMenu(window, *frame, POINT{(short)LOWORD(lParam), (short)HIWORD(lParam)});
        return true;
    case WM_SYSCOMMAND: {
        if ((wParam & 0xFFF0) != SC_KEYMENU || lParam != L' ')
            return false;
        POINT below = {0, titleHeight(window)};
        ClientToScreen(window, &below);
        showSystemMenu(window, *frame, below);
        return true;
    }
    case WM_SETTEXT:
        *result = DefWindowProcW(window, message, wParam, lParam);
        if (window == g_hWndMain)
            g_vlwinWndTitle = VL_VlwinWindowText(window);
        repaintTitle(window);
        return true;
    case WM_SETICON:
        repaintTitle(window);
        return false;
    case WM_ACTIVATE:
        // A window that takes the focus ahead of its program hears of it by this alone.
        frame->active = LOWORD(wParam) != WA_INACTIVE;
        repaintTitle(window);
        return false;
    case WM_NCACTIVATE:
        frame->active = wParam != 0;
        repaintTitle(window);
        // -1 keeps the system from drawing a frame.
        *result = DefWindowProcW(window, message, wParam, -1);
        return true;
    default:
        return false;
    }
}

bool handlePainting(HWND window, Frame *frame, UINT message, WPARAM wParam, LRESULT *result)
{
    switch (message) {
    case WM_ERASEBKGND:
        if (frame->erasing)
            return false;
        // Painting covers everything; others ask for what stands behind a control.
        if (!frame->painting && wParam)
            drawWindow(window, frame, (HDC)wParam);
        *result = 1;
        return true;
    case WM_PAINT:
        paint(window, frame);
        return true;
    case WM_PRINTCLIENT:
        if (wParam)
            drawWindow(window, frame, (HDC)wParam);
        return true;
    case WM_NCPAINT:
    case kDrawThemeCaption:
    case kDrawThemeFrame:
        return true;
    default:
        return false;
    }
}

} // namespace
} // namespace vl_self_drawn_frame

void VL_VlwinPrepareWindow(HWND window, int titleColor, int clientColor, bool minimizeBox,
                           bool maximizeBox, bool resizable)
{
    vl_self_drawn_frame::Frame *frame = VL_Extra<vl_self_drawn_frame::Frame>(window);
    if (!frame)
        return;
    frame->title = (COLORREF)titleColor & 0xFFFFFF;
    frame->minimizeBox = minimizeBox;
    frame->maximizeBox = maximizeBox;
    frame->resizable = resizable;
    // The styles give the window its system menu, its place in the task bar and snapping; no part
    // of them is drawn.
    LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    style &= ~(LONG_PTR)(WS_CAPTION | WS_MINIMIZEBOX | WS_MAXIMIZEBOX | WS_THICKFRAME);
    style |= WS_SYSMENU | (minimizeBox ? WS_MINIMIZEBOX : 0) | (maximizeBox ? WS_MAXIMIZEBOX : 0) |
             (resizable ? WS_THICKFRAME : 0);
    SetWindowLongPtrW(window, GWL_STYLE, style);
    VL_SetBgColor(window, clientColor);
    VL_VlwinDisableNcRendering(window);
    SetWindowPos(window, NULL, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    InvalidateRect(window, NULL, FALSE);
}

bool VL_VlwinMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    using namespace vl_self_drawn_frame;
    Frame *frame = VL_FindExtra<Frame>(window);
    if (!frame)
        return false;
    *result = 0;
    switch (message) {
    case WM_NCCALCSIZE:
        if (IsIconic(window))
            return false;
        // Both forms of the parameter begin with the rectangle.
        clientArea(window, (RECT *)lParam);
        return true;
    case WM_NCHITTEST:
        *result = hitTest(window, *frame, lParam);
        return true;
    case WM_GETMINMAXINFO:
        limitSize(window, (MINMAXINFO *)lParam);
        return false;
    case WM_SIZE:
        InvalidateRect(window, NULL, FALSE);
        return false;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_MOUSEMOVE:
    case WM_MOUSELEAVE:
    case WM_CAPTURECHANGED:
        return handleMouse(window, frame, message, lParam);
    default:
        return handlePainting(window, frame, message, wParam, result) ||
               handleTitle(window, frame, message, wParam, lParam, result);
    }
}

void VL_VlwinDisableNcRendering(HWND window)
{
    typedef HRESULT(WINAPI * SetAttribute)(HWND, DWORD, const void *, DWORD);
    static const HMODULE library = LoadLibraryW(L"dwmapi.dll");
    static const SetAttribute setAttribute =
        library ? (SetAttribute)(void *)GetProcAddress(library, "DwmSetWindowAttribute") : NULL;
    const DWORD renderingPolicy = 2;
    const DWORD disabled = 1;
    if (setAttribute && IsWindow(window))
        setAttribute(window, renderingPolicy, &disabled, sizeof(disabled));
}
