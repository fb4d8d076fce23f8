// Place, size and state of controls and windows, in design pixels.
#include "36_geometry.h"

namespace vl_geometry {
namespace {

// Windows keeps places in 16 bits in many messages.
const int kMostPixels = 32000;

int within(int value, int least)
{
    return value < least ? least : value > kMostPixels ? kMostPixels : value;
}

bool isControl(HWND window)
{
    return (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) != 0;
}

// Normal places of windows are told from the corner of the work area.
POINT workAreaCorner(HWND window)
{
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    const bool isTool = (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0;
    if (isTool || !GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor))
        return {0, 0};
    return {monitor.rcWork.left - monitor.rcMonitor.left,
            monitor.rcWork.top - monitor.rcMonitor.top};
}

bool normalPlace(HWND window, WINDOWPLACEMENT *placement)
{
    placement->length = sizeof(*placement);
    return GetWindowPlacement(window, placement) != FALSE;
}

// In pixels: of a control in its parent, of a window on the screen with its frame.
RECT placeOf(HWND window)
{
    RECT place = {};
    WINDOWPLACEMENT placement = {};
    if (!isControl(window) && IsIconic(window) && normalPlace(window, &placement)) {
        const POINT corner = workAreaCorner(window);
        place = placement.rcNormalPosition;
        OffsetRect(&place, corner.x, corner.y);
        return place;
    }
    GetWindowRect(window, &place);
    if (isControl(window))
        MapWindowPoints(NULL, GetParent(window), (POINT *)&place, 2);
    return place;
}

SIZE innerSize(HWND window)
{
    const RECT place = placeOf(window);
    SIZE size = {place.right - place.left, place.bottom - place.top};
    if (!isControl(window)) {
        const SIZE frame = VL_FrameSize(window);
        size.cx -= frame.cx;
        size.cy -= frame.cy;
    }
    return size;
}

void setNormalPlace(HWND window, RECT place)
{
    WINDOWPLACEMENT placement = {};
    if (!normalPlace(window, &placement))
        return;
    const POINT corner = workAreaCorner(window);
    OffsetRect(&place, -corner.x, -corner.y);
    placement.rcNormalPosition = place;
    if (!IsWindowVisible(window))
        placement.showCmd = SW_HIDE;
    else if (IsIconic(window))
        placement.showCmd = SW_SHOWMINNOACTIVE;
    SetWindowPlacement(window, &placement);
}

void place(HWND window, const RECT &target, UINT flags)
{
    if (!isControl(window) && (IsIconic(window) || IsZoomed(window))) {
        setNormalPlace(window, target);
        return;
    }
    // The ground behind a control is painted as part of it and may differ elsewhere.
    if (isControl(window))
        flags |= SWP_NOCOPYBITS;
    SetWindowPos(window, NULL, target.left, target.top, target.right - target.left,
                 target.bottom - target.top, flags | SWP_NOZORDER | SWP_NOACTIVATE);
}

void moveTo(HWND window, const int *x, const int *y)
{
    if (!IsWindow(window))
        return;
    RECT target = placeOf(window);
    const int left = x ? VL_ScaleX(window, within(*x, -kMostPixels)) : target.left;
    const int top = y ? VL_ScaleY(window, within(*y, -kMostPixels)) : target.top;
    OffsetRect(&target, left - target.left, top - target.top);
    place(window, target, SWP_NOSIZE);
}

// The closed part of a drop-down list takes its height from its item, with a rim that differs.
void setClosedHeight(HWND combo, int height)
{
    int item = (int)SendMessageW(combo, CB_GETITEMHEIGHT, (WPARAM)-1, 0);
    for (int i = 0; i < 2; ++i) {
        RECT closed = {};
        GetWindowRect(combo, &closed);
        const int missing = height - (int)(closed.bottom - closed.top);
        item += missing;
        if (missing != 0 && item > 0)
            SendMessageW(combo, CB_SETITEMHEIGHT, (WPARAM)-1, item);
    }
}

void resizeDropDown(HWND combo, RECT target, bool setsHeight)
{
    const int opened = VL_GetOpenedHeight(combo);
    if (setsHeight)
        setClosedHeight(combo, target.bottom - target.top);
    target.bottom = target.top + opened;
    VL_PlaceDropDown(combo, target);
}

void resizeTo(HWND window, const int *width, const int *height)
{
    if (!IsWindow(window))
        return;
    RECT target = placeOf(window);
    const SIZE frame = isControl(window) ? SIZE{0, 0} : VL_FrameSize(window);
    if (width)
        target.right = target.left + VL_ScaleX(window, within(*width, 0)) + frame.cx;
    if (height)
        target.bottom = target.top + VL_ScaleY(window, within(*height, 0)) + frame.cy;
    if (VL_IsDropDown(window))
        resizeDropDown(window, target, height != nullptr);
    else
        place(window, target, SWP_NOMOVE);
}

// A control that cannot be used any more must not keep the keyboard.
void handFocusOn(HWND control)
{
    const HWND focus = GetFocus();
    if (!focus || (focus != control && !IsChild(control, focus)))
        return;
    const HWND owner = VL_OwnerWindow(control);
    const HWND next = GetNextDlgTabItem(owner, focus, FALSE);
    SetFocus(next && next != focus && next != control && !IsChild(control, next) ? next : owner);
}

} // namespace
} // namespace vl_geometry

HWND VL_ToWindow(const VL_Any &window)
{
    if (!window.isNumber())
        return NULL;
    const HWND handle = (HWND)(intptr_t)window.toInt();
    return IsWindow(handle) ? handle : NULL;
}

bool VL_IsDropDown(HWND control)
{
    return VL_HasClass(control, WC_COMBOBOXW) && !GetPropW(control, L"VL_KeepsHeight") &&
           (GetWindowLongW(control, GWL_STYLE) & CBS_DROPDOWNLIST) != CBS_SIMPLE;
}

int VL_GetOpenedHeight(HWND combo)
{
    RECT opened = {};
    SendMessageW(combo, CB_GETDROPPEDCONTROLRECT, 0, (LPARAM)&opened);
    return opened.bottom - opened.top;
}

void VL_PlaceDropDown(HWND combo, const RECT &place)
{
    // Versions of Windows differ in whether the closed part counts: what is told is made good.
    const int wanted = place.bottom - place.top;
    int height = wanted;
    for (int i = 0; i < 2; ++i) {
        SetWindowPos(combo, NULL, place.left, place.top, place.right - place.left, height,
                     SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
        const int missing = wanted - VL_GetOpenedHeight(combo);
        if (missing == 0)
            return;
        height += missing;
    }
}

SIZE VL_FrameSize(HWND window)
{
    RECT outer = {};
    RECT inner = {};
    if (!IsIconic(window) && GetWindowRect(window, &outer) && GetClientRect(window, &inner) &&
        inner.right > 0 && inner.bottom > 0) {
        return {outer.right - outer.left - inner.right, outer.bottom - outer.top - inner.bottom};
    }
    RECT frame = {};
    const DWORD style = (DWORD)GetWindowLongW(window, GWL_STYLE) & ~(DWORD)WS_MINIMIZE;
    AdjustWindowRectEx(&frame, style, GetMenu(window) != NULL,
                       (DWORD)GetWindowLongW(window, GWL_EXSTYLE));
    return {frame.right - frame.left, frame.bottom - frame.top};
}

int VL_GetX(HWND window)
{
    return IsWindow(window) ? VL_UnscaleX(window, vl_geometry::placeOf(window).left) : 0;
}

int VL_GetY(HWND window)
{
    return IsWindow(window) ? VL_UnscaleY(window, vl_geometry::placeOf(window).top) : 0;
}

int VL_GetWidth(HWND window)
{
    return IsWindow(window) ? VL_UnscaleX(window, vl_geometry::innerSize(window).cx) : 0;
}

int VL_GetHeight(HWND window)
{
    return IsWindow(window) ? VL_UnscaleY(window, vl_geometry::innerSize(window).cy) : 0;
}

void VL_SetX(HWND window, int x)
{
    vl_geometry::moveTo(window, &x, nullptr);
}

void VL_SetY(HWND window, int y)
{
    vl_geometry::moveTo(window, nullptr, &y);
}

void VL_SetWidth(HWND window, int width)
{
    vl_geometry::resizeTo(window, &width, nullptr);
}

void VL_SetHeight(HWND window, int height)
{
    vl_geometry::resizeTo(window, nullptr, &height);
}

void VL_SetBounds(HWND window, int x, int y, int width, int height)
{
    vl_geometry::moveTo(window, &x, &y);
    vl_geometry::resizeTo(window, &width, &height);
}

bool VL_IsVisible(HWND window)
{
    if (!IsWindow(window))
        return false;
    return vl_geometry::isControl(window) ? (GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) != 0
                                          : IsWindowVisible(window) != FALSE;
}

void VL_SetVisible(HWND window, bool visible)
{
    if (!IsWindow(window))
        return;
    const bool control = vl_geometry::isControl(window);
    if (!visible && control)
        vl_geometry::handFocusOn(window);
    ShowWindow(window, !visible ? SW_HIDE : control ? SW_SHOWNA : SW_SHOW);
}

bool VL_IsEnabled(HWND window)
{
    return IsWindow(window) && IsWindowEnabled(window) != FALSE;
}

void VL_SetEnabled(HWND window, bool enabled)
{
    if (!IsWindow(window))
        return;
    if (!enabled && vl_geometry::isControl(window))
        vl_geometry::handFocusOn(window);
    EnableWindow(window, enabled);
}

bool VL_ShowControl(const VL_Any &control)
{
    const HWND handle = VL_ToWindow(control);
    VL_SetVisible(handle, true);
    return handle != NULL;
}

bool VL_HideControl(const VL_Any &control)
{
    const HWND handle = VL_ToWindow(control);
    VL_SetVisible(handle, false);
    return handle != NULL;
}

bool VL_EnableControl(const VL_Any &control)
{
    const HWND handle = VL_ToWindow(control);
    VL_SetEnabled(handle, true);
    return handle != NULL;
}

bool VL_DisableControl(const VL_Any &control)
{
    const HWND handle = VL_ToWindow(control);
    VL_SetEnabled(handle, false);
    return handle != NULL;
}
