// The frame, icon and look of a window as a whole.
#include "53_frame_style.h"

#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_frame_style {
namespace {

bool isOwnProcess(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId();
}

bool isOwnThread(HWND window)
{
    return GetWindowThreadProcessId(window, NULL) == GetCurrentThreadId();
}

// Style changes take effect with this; the client area keeps its size unless `keepOuter`.
void setStyles(HWND window, LONG style, LONG extended, bool keepOuter = false)
{
    RECT client = {};
    GetClientRect(window, &client);
    const bool isNormal = !IsIconic(window) && !IsZoomed(window);
    SetWindowLongW(window, GWL_STYLE, style);
    SetWindowLongW(window, GWL_EXSTYLE, extended);
    SetWindowPos(window, NULL, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    if (!isNormal || keepOuter)
        return;
    const SIZE frame = VL_FrameSize(window);
    SetWindowPos(window, NULL, 0, 0, client.right + frame.cx, client.bottom + frame.cy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

struct Fullscreen
{
    bool on = false;
    LONG style = 0;
    WINDOWPLACEMENT placement = {};
};

struct Borderless
{
    bool on = false;
    bool isResizable = false;
    LONG style = 0;
};

struct Icons
{
    HICON big = NULL;
    HICON small = NULL;
    ~Icons() { clear(); }
    void clear()
    {
        if (big)
            DestroyIcon(big);
        if (small)
            DestroyIcon(small);
        big = small = NULL;
    }
};

const LONG kFrame = WS_CAPTION | WS_THICKFRAME | WS_BORDER | WS_DLGFRAME;

// A picture as a square icon, its proportions kept.
HICON iconFromPicture(const std::wstring &path, int size)
{
    // Never shut down again: other pictures may live as long as the program.
    static const bool started = (VL_InitGdiPlus(), true);
    (void)started;
    Gdiplus::Bitmap picture(path.c_str());
    const int width = (int)picture.GetWidth();
    const int height = (int)picture.GetHeight();
    if (picture.GetLastStatus() != Gdiplus::Ok || width <= 0 || height <= 0)
        return NULL;
    const double scale = (double)size / std::max(width, height);
    const int drawnX = std::max(1, (int)(width * scale + 0.5));
    const int drawnY = std::max(1, (int)(height * scale + 0.5));
    Gdiplus::Bitmap canvas(size, size, PixelFormat32bppARGB);
    Gdiplus::Graphics graphics(&canvas);
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    graphics.DrawImage(&picture, (size - drawnX) / 2, (size - drawnY) / 2, drawnX, drawnY);
    HICON icon = NULL;
    canvas.GetHICON(&icon);
    return icon;
}

HICON loadIcon(const std::wstring &path, int size)
{
    const HICON icon =
        (HICON)LoadImageW(NULL, path.c_str(), IMAGE_ICON, size, size, LR_LOADFROMFILE);
    return icon ? icon : iconFromPicture(path, size);
}

void applyIcons(HWND window, HICON big, HICON small)
{
    SendMessageW(window, WM_SETICON, ICON_BIG, (LPARAM)big);
    SendMessageW(window, WM_SETICON, ICON_SMALL, (LPARAM)small);
}

bool isAbsolute(const std::wstring &path)
{
    return (path.size() > 1 && path[1] == L':') ||
           (!path.empty() && (path[0] == L'\\' || path[0] == L'/'));
}

void enterFullscreen(HWND window, Fullscreen &state)
{
    state.on = true;
    state.style = GetWindowLongW(window, GWL_STYLE);
    state.placement.length = sizeof(state.placement);
    GetWindowPlacement(window, &state.placement);
    SetWindowLongW(window, GWL_STYLE,
                   (state.style & ~(kFrame | (LONG)WS_MAXIMIZE | WS_MINIMIZE)) | (LONG)WS_POPUP);
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT screen = monitor.rcMonitor;
    SetWindowPos(window, HWND_TOP, screen.left, screen.top, screen.right - screen.left,
                 screen.bottom - screen.top, SWP_FRAMECHANGED | SWP_NOOWNERZORDER);
}

void leaveFullscreen(HWND window, Fullscreen &state)
{
    state.on = false;
    const LONG visible = GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE;
    SetWindowLongW(window, GWL_STYLE,
                   (state.style & ~(LONG)(WS_VISIBLE | WS_MAXIMIZE | WS_MINIMIZE)) | visible);
    if (!visible)
        state.placement.showCmd = SW_HIDE;
    SetWindowPlacement(window, &state.placement);
    SetWindowPos(window, NULL, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

} // namespace
} // namespace vl_frame_style

bool VL_SetFullscreen(const VL_Any &window, bool on)
{
    using namespace vl_frame_style;
    const HWND handle = VL_ToWindow(window);
    if (!handle || !isOwnProcess(handle) || (GetWindowLongW(handle, GWL_STYLE) & WS_CHILD))
        return false;
    Fullscreen *state = VL_Extra<Fullscreen>(handle);
    if (!state)
        return false;
    if (state->on != on) {
        if (on)
            enterFullscreen(handle, *state);
        else
            leaveFullscreen(handle, *state);
    }
    return true;
}

bool VL_IsFullscreen(HWND window)
{
    const vl_frame_style::Fullscreen *state = VL_FindExtra<vl_frame_style::Fullscreen>(window);
    return state && state->on;
}

bool VL_SetWindowBorderless(const VL_Any &window, bool on, bool resizable)
{
    using namespace vl_frame_style;
    const HWND handle = VL_ToWindow(window);
    if (!handle || !isOwnProcess(handle) || (GetWindowLongW(handle, GWL_STYLE) & WS_CHILD))
        return false;
    Borderless *state = VL_Extra<Borderless>(handle);
    if (!state)
        return false;
    const LONG style = GetWindowLongW(handle, GWL_STYLE);
    const LONG extended = GetWindowLongW(handle, GWL_EXSTYLE);
    if (on && !state->on)
        state->style = style;
    if (on || state->on) {
        // The sizing frame itself is not drawn; without it the edges could not be dragged.
        const LONG frame = on ? (LONG)WS_POPUP | (resizable ? WS_THICKFRAME : 0)
                              : state->style & (kFrame | (LONG)WS_POPUP);
        state->on = on;
        state->isResizable = resizable;
        setStyles(handle, (style & ~(kFrame | (LONG)WS_POPUP)) | frame, extended);
    }
    return true;
}

bool VL_IsBorderless(HWND window)
{
    const vl_frame_style::Borderless *state = VL_FindExtra<vl_frame_style::Borderless>(window);
    return state && state->on;
}

bool VL_IsBorderResizable(HWND window)
{
    const vl_frame_style::Borderless *state = VL_FindExtra<vl_frame_style::Borderless>(window);
    return state && state->on && state->isResizable;
}

bool VL_StartWindowDrag(const VL_Any &window)
{
    const HWND handle = VL_OwnerWindow(VL_ToWindow(window));
    if (!handle || !vl_frame_style::isOwnThread(handle) || VL_IsFullscreen(handle))
        return false;
    const int button = GetSystemMetrics(SM_SWAPBUTTON) ? VK_RBUTTON : VK_LBUTTON;
    // Without a button held the window would hang on the mouse until the next click.
    if (GetAsyncKeyState(button) >= 0)
        return false;
    POINT mouse = {};
    GetCursorPos(&mouse);
    ReleaseCapture();
    SendMessageW(handle, WM_NCLBUTTONDOWN, HTCAPTION, MAKELPARAM(mouse.x, mouse.y));
    return true;
}

bool VL_SetWindowIcon(const VL_Any &window, const VL_Any &icon)
{
    using namespace vl_frame_style;
    const HWND handle = VL_ToWindow(window);
    Icons *icons = handle && isOwnProcess(handle) ? VL_Extra<Icons>(handle) : nullptr;
    if (!icons)
        return false;
    Icons old;
    std::swap(old.big, icons->big);
    std::swap(old.small, icons->small);
    if (icon.type != VL_Any::TypeString) {
        const HICON given = (HICON)(intptr_t)icon.toInt();
        applyIcons(handle, given, given);
        return true;
    }
    if (!icon.strVal.empty()) {
        const std::wstring path = VL_FindProgramFile(icon.strVal);
        const int dpi = VL_GetDpiForScaling(handle);
        const int screen = VL_GetDpiForScaling(NULL);
        icons->big = loadIcon(path, MulDiv(GetSystemMetrics(SM_CXICON), dpi, screen));
        icons->small = loadIcon(path, MulDiv(GetSystemMetrics(SM_CXSMICON), dpi, screen));
    }
    applyIcons(handle, icons->big, icons->small);
    return icon.strVal.empty() || icons->big;
}

bool VL_SetWindowOpacity(const VL_Any &window, int percent)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle || (GetWindowLongW(handle, GWL_STYLE) & WS_CHILD))
        return false;
    const int bounded = std::max(0, std::min(percent, 100));
    const LONG extended = GetWindowLongW(handle, GWL_EXSTYLE);
    if (bounded == 100 && !(extended & WS_EX_LAYERED))
        return true;
    SetWindowLongW(handle, GWL_EXSTYLE, extended | WS_EX_LAYERED);
    if (!SetLayeredWindowAttributes(handle, 0, (BYTE)MulDiv(bounded, 255, 100), LWA_ALPHA))
        return false;
    if (bounded == 100) {
        SetWindowLongW(handle, GWL_EXSTYLE, extended & ~WS_EX_LAYERED);
        RedrawWindow(handle, NULL, NULL, RDW_ERASE | RDW_INVALIDATE | RDW_FRAME | RDW_ALLCHILDREN);
    }
    return true;
}

int VL_GetWindowOpacity(const VL_Any &window)
{
    const HWND handle = VL_ToWindow(window);
    BYTE alpha = 255;
    DWORD flags = 0;
    const bool isLayered = handle && (GetWindowLongW(handle, GWL_EXSTYLE) & WS_EX_LAYERED) &&
                           GetLayeredWindowAttributes(handle, NULL, &alpha, &flags);
    return isLayered && (flags & LWA_ALPHA) ? MulDiv(alpha, 100, 255) : 100;
}

bool VL_SetShowInTaskbar(const VL_Any &window, bool on)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle || !vl_frame_style::isOwnProcess(handle) ||
        (GetWindowLongW(handle, GWL_STYLE) & WS_CHILD))
        return false;
    const LONG extended = GetWindowLongW(handle, GWL_EXSTYLE);
    const LONG wanted = on ? (extended & ~WS_EX_TOOLWINDOW) | WS_EX_APPWINDOW
                           : (extended & ~WS_EX_APPWINDOW) | WS_EX_TOOLWINDOW;
    if (wanted == extended)
        return true;
    // The taskbar looks at a window when it is shown.
    const bool visible = IsWindowVisible(handle) != FALSE;
    if (visible)
        ShowWindow(handle, SW_HIDE);
    vl_frame_style::setStyles(handle, GetWindowLongW(handle, GWL_STYLE), wanted);
    if (visible)
        ShowWindow(handle, SW_SHOW);
    return true;
}

std::wstring VL_FindProgramFile(const std::wstring &path)
{
    if (path.empty() || vl_frame_style::isAbsolute(path))
        return path;
    const std::wstring beside = VL_JoinPath(VL_GetAppDir(), path);
    return GetFileAttributesW(beside.c_str()) == INVALID_FILE_ATTRIBUTES ? path : beside;
}
