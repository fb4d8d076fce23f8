// What all windows of a program have in common: background, colours of controls, limits of size,
// scaling on screens of other resolution, the keyboard.
#include "73_window_frame.h"

#include <algorithm>

namespace vl_window_frame {
namespace {

const UINT_PTR kCursorSubclass = 0x564C75;
// Design pixels at the edge of a window without a frame that size it.
const int BORDER_WIDTH = 8;

struct FrameState
{
    int dpi = 0;
    HWND focus = NULL;
    bool restoreFocus = false;
};

struct Limits
{
    int minWidth = 0;
    int minHeight = 0;
    int maxWidth = 0;
    int maxHeight = 0;
};

// Where a control was designed. Pixels are computed from this at each change of scale, so that
// rounding does not add up; a control that the program moved since is measured anew.
struct DesignPlace
{
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    RECT placed = {};
};

struct DesignFont
{
    HFONT made = NULL;
    double height = 0;
};

int rounded(double value)
{
    return (int)(value < 0 ? value - 0.5 : value + 0.5);
}

int channelSum(COLORREF color)
{
    return GetRValue(color) + GetGValue(color) + GetBValue(color);
}

struct ComboSearch
{
    HWND list;
    HWND combo;
};

BOOL CALLBACK findCombo(HWND window, LPARAM data)
{
    ComboSearch &search = *(ComboSearch *)data;
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    if (VL_HasClass(window, WC_COMBOBOXW) && GetComboBoxInfo(window, &info) &&
        info.hwndList == search.list) {
        search.combo = window;
        return FALSE;
    }
    return TRUE;
}

// The control whose colours count: the combo box for its list and its edit.
HWND subjectOf(HWND window, HWND control)
{
    const HWND parent = GetParent(control);
    if (parent && VL_HasClass(parent, WC_COMBOBOXW))
        return parent;
    if (!VL_HasClass(control, L"ComboLBox"))
        return control;
    ComboSearch search = {control, NULL};
    EnumChildWindows(window, findCombo, (LPARAM)&search);
    return search.combo ? search.combo : control;
}

bool isSystemColored(UINT message, HWND subject)
{
    const bool isEdit = VL_HasClass(subject, WC_EDITW);
    if (isEdit || VL_HasClass(subject, WC_COMBOBOXW)) {
        if (!IsWindowEnabled(subject))
            return true;
        // A read-only edit looks like a label to Windows.
        if (message == WM_CTLCOLORSTATIC)
            return !VL_HasBgColor(subject) && !VL_HasTextColor(subject);
    }
    return false;
}

bool colorControl(HWND window, UINT message, HDC context, HWND control, LRESULT *result)
{
    if (!context || !IsWindow(control))
        return false;
    const HWND subject = subjectOf(window, control);
    if (isSystemColored(message, subject))
        return false;
    const bool isField = message == WM_CTLCOLOREDIT || message == WM_CTLCOLORLISTBOX;
    HBRUSH brush = VL_OwnGroundBrush(subject);
    HWND ground = brush ? subject : NULL;
    if (ground)
        VL_SetBrushCorner(context, 0, 0);
    if (!brush && !isField) {
        brush = VL_BrushBehind(subject, context);
        ground = brush ? VL_GroundOf(subject) : NULL;
    }
    COLORREF back = GetSysColor(isField ? COLOR_WINDOW : COLOR_BTNFACE);
    if (ground && VL_HasBgColor(ground))
        back = (COLORREF)VL_GetBgColor(ground);
    else if (!ground && !VL_HasTextColor(subject))
        return false;
    COLORREF text = (COLORREF)VL_GetTextColor(subject);
    const bool onPicture = ground && VL_HasBackgroundPicture(ground);
    // White text stays readable on light ground.
    if (!onPicture && channelSum(text) > 600 && channelSum(back) > 400)
        text = GetSysColor(COLOR_WINDOWTEXT);
    SetTextColor(context, text);
    SetBkColor(context, back);
    SetBkMode(context, brush ? TRANSPARENT : OPAQUE);
    if (!brush)
        brush = GetSysColorBrush(isField ? COLOR_WINDOW : COLOR_BTNFACE);
    *result = (LRESULT)brush;
    return true;
}

bool hitTestBorder(HWND window, LPARAM lParam, LRESULT *result)
{
    if (!VL_IsBorderResizable(window) || IsZoomed(window) || VL_IsFullscreen(window))
        return false;
    RECT place = {};
    GetWindowRect(window, &place);
    const int x = (short)LOWORD(lParam);
    const int y = (short)HIWORD(lParam);
    const int border = VL_ScaleX(window, BORDER_WIDTH);
    const int column = x < place.left + border ? 0 : x >= place.right - border ? 2 : 1;
    const int row = y < place.top + border ? 0 : y >= place.bottom - border ? 2 : 1;
    static const LRESULT places[3][3] = {{HTTOPLEFT, HTTOP, HTTOPRIGHT},
                                         {HTLEFT, HTCLIENT, HTRIGHT},
                                         {HTBOTTOMLEFT, HTBOTTOM, HTBOTTOMRIGHT}};
    if (places[row][column] == HTCLIENT)
        return false;
    *result = places[row][column];
    return true;
}

// False when Windows' own sizes are right.
bool limitSize(HWND window, MINMAXINFO *info)
{
    const Limits *limits = VL_FindExtra<Limits>(window);
    const bool isBorderless = VL_IsBorderless(window);
    if (isBorderless && !VL_IsFullscreen(window)) {
        MONITORINFO monitor = {};
        monitor.cbSize = sizeof(monitor);
        GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
        info->ptMaxPosition = {monitor.rcWork.left - monitor.rcMonitor.left,
                               monitor.rcWork.top - monitor.rcMonitor.top};
        info->ptMaxSize = {monitor.rcWork.right - monitor.rcWork.left,
                           monitor.rcWork.bottom - monitor.rcWork.top};
    }
    if (!limits || VL_IsFullscreen(window))
        return isBorderless;
    const SIZE frame = VL_FrameSize(window);
    if (limits->minWidth > 0)
        info->ptMinTrackSize.x = VL_ScaleX(window, limits->minWidth) + frame.cx;
    if (limits->minHeight > 0)
        info->ptMinTrackSize.y = VL_ScaleY(window, limits->minHeight) + frame.cy;
    if (limits->maxWidth > 0) {
        info->ptMaxTrackSize.x = VL_ScaleX(window, limits->maxWidth) + frame.cx;
        info->ptMaxSize.x = std::min(info->ptMaxSize.x, info->ptMaxTrackSize.x);
    }
    if (limits->maxHeight > 0) {
        info->ptMaxTrackSize.y = VL_ScaleY(window, limits->maxHeight) + frame.cy;
        info->ptMaxSize.y = std::min(info->ptMaxSize.y, info->ptMaxTrackSize.y);
    }
    return true;
}

// Controls in these are the program's own; what lies in others belongs to the control.
bool isContainer(HWND window)
{
    return VL_HasClass(window, WC_STATICW) || VL_HasClass(window, WC_BUTTONW) ||
           VL_HasClass(window, WC_TABCONTROLW) || VL_HasClass(window, L"VL_TabPanel") ||
           (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_CONTROLPARENT);
}

// In the parent, with the open list of a combo box.
RECT placeInParent(HWND window)
{
    RECT place = {};
    GetWindowRect(window, &place);
    if (VL_IsDropDown(window))
        place.bottom = place.top + VL_GetOpenedHeight(window);
    MapWindowPoints(NULL, GetParent(window), (POINT *)&place, 2);
    return place;
}

void rescalePlace(HWND window, int oldDpi, int newDpi)
{
    DesignPlace *design = VL_Extra<DesignPlace>(window);
    if (!design)
        return;
    const RECT now = placeInParent(window);
    if (design->width <= 0 || !EqualRect(&now, &design->placed)) {
        const double toDesign = 96.0 / oldDpi;
        design->x = now.left * toDesign;
        design->y = now.top * toDesign;
        design->width = (now.right - now.left) * toDesign;
        design->height = (now.bottom - now.top) * toDesign;
    }
    const double toPixels = newDpi / 96.0;
    RECT place = {rounded(design->x * toPixels), rounded(design->y * toPixels), 0, 0};
    place.right = place.left + rounded(design->width * toPixels);
    place.bottom = place.top + rounded(design->height * toPixels);
    if (VL_IsDropDown(window))
        VL_PlaceDropDown(window, place);
    else
        SetWindowPos(window, NULL, place.left, place.top, place.right - place.left,
                     place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void rescaleFont(HWND window, int oldDpi)
{
    const HFONT font = (HFONT)SendMessageW(window, WM_GETFONT, 0, 0);
    DesignFont *design = VL_Extra<DesignFont>(window);
    LOGFONTW wanted = {};
    if (!font || !design || !GetObjectW(font, sizeof(wanted), &wanted))
        return;
    if (design->made != font)
        design->height = wanted.lfHeight * 96.0 / oldDpi;
    wanted.lfHeight = rounded(design->height);
    design->made = VL_OwnFont(window, CreateFontIndirectW(&wanted));
    SendMessageW(window, WM_SETFONT, (WPARAM)design->made, FALSE);
}

void rescaleChildren(HWND parent, int oldDpi, int newDpi)
{
    std::vector<HWND> children;
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    for (HWND child : children) {
        if (!IsWindow(child))
            continue;
        rescalePlace(child, oldDpi, newDpi);
        rescaleFont(child, oldDpi);
        // A combo box takes another height with another font.
        if (DesignPlace *design = VL_FindExtra<DesignPlace>(child))
            design->placed = placeInParent(child);
        if (isContainer(child))
            rescaleChildren(child, oldDpi, newDpi);
    }
}

void changeScale(HWND window, int newDpi, const RECT *suggested)
{
    FrameState *state = VL_Extra<FrameState>(window);
    if (!state || newDpi <= 0)
        return;
    const int oldDpi = state->dpi > 0 ? state->dpi : VL_GetDpiForScaling(NULL);
    if (oldDpi != newDpi) {
        state->dpi = newDpi;
        rescaleChildren(window, oldDpi, newDpi);
    }
    RECT place = *suggested;
    if (VL_IsFullscreen(window)) {
        MONITORINFO monitor = {};
        monitor.cbSize = sizeof(monitor);
        if (GetMonitorInfoW(MonitorFromRect(suggested, MONITOR_DEFAULTTONEAREST), &monitor))
            place = monitor.rcMonitor;
    }
    // Comes last: it has the layout done anew.
    SetWindowPos(window, NULL, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
    RedrawWindow(window, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

bool canTakeFocus(HWND control, HWND window)
{
    return control && IsChild(window, control) && IsWindowVisible(control) &&
           IsWindowEnabled(control);
}

void keepFocus(HWND window, bool isActive)
{
    FrameState *state = VL_Extra<FrameState>(window);
    if (!state)
        return;
    if (isActive) {
        state->restoreFocus = true;
        return;
    }
    const HWND focus = GetFocus();
    if (focus && IsChild(window, focus))
        state->focus = focus;
}

// A window that becomes active gives the focus to the control that had it, or to the first one.
void restoreFocus(HWND window)
{
    FrameState *state = VL_FindExtra<FrameState>(window);
    if (!state || !state->restoreFocus)
        return;
    state->restoreFocus = false;
    HWND target = state->focus;
    if (!canTakeFocus(target, window))
        target = GetNextDlgTabItem(window, NULL, FALSE);
    if (canTakeFocus(target, window) && (GetWindowLongW(target, GWL_STYLE) & WS_TABSTOP))
        SetFocus(target);
}

LPCWSTR cursorOf(const std::wstring &style)
{
    if (style == L"\u624B\u578B")
        return IDC_HAND;
    if (style == L"\u7B49\u5F85")
        return IDC_WAIT;
    return style == L"\u7981\u6B62" ? IDC_NO : NULL;
}

LRESULT CALLBACK cursorProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR cursor)
{
    if (message == WM_SETCURSOR && LOWORD(lParam) == HTCLIENT && (HWND)wParam == window) {
        SetCursor(LoadCursorW(NULL, (LPCWSTR)cursor));
        return TRUE;
    }
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(window, cursorProcedure, kCursorSubclass);
    return DefSubclassProc(window, message, wParam, lParam);
}

void resized(HWND window, WPARAM kind)
{
    if (kind == SIZE_MINIMIZED)
        return;
    VL_RefreshBackground(window);
}

LRESULT CALLBACK plainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (VL_WindowMessage(window, message, wParam, lParam, &result))
        return result;
    if (message == WM_CLOSE) {
        ShowWindow(window, SW_HIDE);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND makePlain(const std::wstring &name, const std::wstring &title, int width, int height,
               DWORD style, HWND owner)
{
    static const wchar_t className[] = L"VLPlainWindow";
    WNDCLASSW description = {};
    if (!GetClassInfoW(g_hInstance, className, &description)) {
        description.style = CS_DBLCLKS;
        description.lpfnWndProc = plainProcedure;
        description.hInstance = g_hInstance;
        description.hCursor = LoadCursorW(NULL, IDC_ARROW);
        description.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);
        description.lpszClassName = className;
        RegisterClassW(&description);
    }
    const HWND window =
        CreateWindowExW(owner ? WS_EX_DLGMODALFRAME : 0, className,
                        (title.empty() ? name : title).c_str(), style | WS_CLIPCHILDREN,
                        CW_USEDEFAULT, CW_USEDEFAULT, 100, 100, owner, NULL, g_hInstance, NULL);
    if (!window)
        return NULL;
    VL_SetWidth(window, width > 0 ? width : 1);
    VL_SetHeight(window, height > 0 ? height : 1);
    VL_CenterWindow(window);
    VL_Window_Register(name, window);
    return window;
}

intptr_t makeNamed(const std::wstring &name, const std::wstring &title, int width, int height,
                   DWORD style, bool isDialog)
{
    HWND window = VL_MakeWindow(name);
    if (!window) {
        VL_CallOnMainThread([&] {
            const HWND owner = isDialog ? (HWND)VL_Window_GetActiveHandle() : NULL;
            window = makePlain(name, title, width, height, style, owner);
        });
    }
    return (intptr_t)window;
}

bool frameMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    switch (message) {
    case WM_NCCALCSIZE:
        // All of a borderless window is client area, its sizing frame included.
        *result = 0;
        return VL_IsBorderResizable(window) && !IsIconic(window);
    case WM_NCACTIVATE:
        if (!VL_IsBorderResizable(window))
            return false;
        *result = DefWindowProcW(window, message, wParam, -1);
        return true;
    case WM_NCHITTEST:
        return hitTestBorder(window, lParam, result);
    case WM_GETMINMAXINFO:
        *result = 0;
        return limitSize(window, (MINMAXINFO *)lParam);
    case WM_DPICHANGED:
        if (!lParam || !g_vlDpiAware)
            return false;
        changeScale(window, LOWORD(wParam), (const RECT *)lParam);
        *result = 0;
        return true;
    default:
        return false;
    }
}

} // namespace
} // namespace vl_window_frame

bool VL_WindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    using namespace vl_window_frame;
    if (VL_ReflectMessage(message, wParam, lParam, result))
        return true;
    switch (message) {
    case WM_CREATE:
        if (FrameState *state = VL_Extra<FrameState>(window))
            state->dpi = VL_GetDpiForScaling(window);
        return false;
    case WM_ERASEBKGND:
        *result = 1;
        return VL_PaintBackground(window, (HDC)wParam);
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORLISTBOX:
        return colorControl(window, message, (HDC)wParam, (HWND)lParam, result);
    case WM_SIZE:
        resized(window, wParam);
        return false;
    case WM_ACTIVATE:
        keepFocus(window, LOWORD(wParam) != WA_INACTIVE);
        return false;
    case WM_SETFOCUS:
        restoreFocus(window);
        return false;
    case WM_COMMAND:
        // Esc in a window without a button for it.
        *result = 0;
        return !lParam && wParam == IDCANCEL;
    default:
        return frameMessage(window, message, wParam, lParam, result);
    }
}

void VL_SetWindowLimits(HWND window, int minWidth, int minHeight, int maxWidth, int maxHeight)
{
    if (vl_window_frame::Limits *limits = VL_Extra<vl_window_frame::Limits>(window))
        *limits = {minWidth, minHeight, maxWidth, maxHeight};
}

void VL_SetCursorStyle(HWND control, const std::wstring &style)
{
    using namespace vl_window_frame;
    if (!IsWindow(control))
        return;
    if (const LPCWSTR cursor = cursorOf(style))
        SetWindowSubclass(control, cursorProcedure, kCursorSubclass, (DWORD_PTR)cursor);
    else
        RemoveWindowSubclass(control, cursorProcedure, kCursorSubclass);
}

intptr_t VL_CreateWindow(const std::wstring &name, const std::wstring &title, int width, int height)
{
    return vl_window_frame::makeNamed(name, title, width, height, WS_OVERLAPPEDWINDOW, false);
}

intptr_t VL_CreateDialogWindow(const std::wstring &name, const std::wstring &title, int width,
                               int height)
{
    return vl_window_frame::makeNamed(name, title, width, height,
                                      WS_POPUP | WS_CAPTION | WS_SYSMENU, true);
}
