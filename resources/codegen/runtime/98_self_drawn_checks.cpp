// Check boxes, radio buttons and group boxes of self-drawn windows.
#include "98_self_drawn_checks.h"

#include <algorithm>

namespace vl_self_drawn_checks {
namespace {

const UINT_PTR kCheckSubclass = 0x564C9801;
const UINT_PTR kGroupSubclass = 0x564C9802;
const wchar_t kKind[] = L"VL_VlwinOdKind";
const wchar_t kState[] = L"VL_VlwinCheckState";
const COLORREF kOutline = RGB(180, 180, 180);
const COLORREF kGroupFrame = RGB(80, 80, 80);
const int kBoxSize = 14;
// From the edge of the box to the text.
const int kTextOffset = 20;

struct Check
{
    bool hot = false;
};

struct Group
{
    bool sunk = false;
};

int kindOf(HWND control)
{
    return VL_GetNumberProperty(control, kKind, VL_VLWIN_OD_CHECKBOX);
}

int stateOf(HWND control)
{
    return VL_GetNumberProperty(control, kState);
}

bool isRadio(HWND control)
{
    return VL_FindExtra<Check>(control) && kindOf(control) == VL_VLWIN_OD_RADIO;
}

void storeState(HWND control, int state)
{
    if (stateOf(control) == state)
        return;
    SetPropW(control, kState, (HANDLE)(intptr_t)state);
    InvalidateRect(control, NULL, FALSE);
}

BOOL CALLBACK collect(HWND control, LPARAM list)
{
    if (isRadio(control))
        ((std::vector<HWND> *)list)->push_back(control);
    return TRUE;
}

// In the order of the tab key.
std::vector<HWND> radioGroup(HWND control)
{
    const wchar_t *const property = L"VL_VlwinRadioGroup";
    const std::wstring name = VL_GetTextProperty(control, property);
    std::vector<HWND> all;
    EnumChildWindows(VL_OwnerWindow(control), collect, (LPARAM)&all);
    std::vector<HWND> group;
    for (const HWND one : all) {
        const bool together = !name.empty() || GetParent(one) == GetParent(control);
        if (together && VL_GetTextProperty(one, property) == name)
            group.push_back(one);
    }
    return group;
}

void setState(HWND control, int state)
{
    const int kind = kindOf(control);
    state = std::max(0, std::min(state, kind == VL_VLWIN_OD_3STATE ? 2 : 1));
    storeState(control, state);
    if (kind != VL_VLWIN_OD_RADIO || state == 0)
        return;
    for (const HWND other : radioGroup(control)) {
        if (other != control)
            storeState(other, 0);
    }
}

void toggle(HWND control)
{
    const int kind = kindOf(control);
    if (kind == VL_VLWIN_OD_RADIO)
        setState(control, 1);
    else
        setState(control, (stateOf(control) + 1) % (kind == VL_VLWIN_OD_3STATE ? 3 : 2));
}

void moveInGroup(HWND control, int step)
{
    const std::vector<HWND> group = radioGroup(control);
    const int count = (int)group.size();
    const int own = (int)(std::find(group.begin(), group.end(), control) - group.begin());
    for (int i = 1; i < count; ++i) {
        const HWND next = group[(size_t)((own + count + step * i) % count)];
        if (IsWindowEnabled(next) && IsWindowVisible(next)) {
            SetFocus(next);
            SendMessageW(next, BM_CLICK, 0, 0);
            return;
        }
    }
}

int arrowStep(WPARAM key)
{
    if (key == VK_LEFT || key == VK_UP)
        return -1;
    return key == VK_RIGHT || key == VK_DOWN ? 1 : 0;
}

bool isInside(HWND control, LPARAM place)
{
    RECT all;
    GetClientRect(control, &all);
    return PtInRect(&all, POINT{(short)LOWORD(place), (short)HIWORD(place)}) != 0;
}

// Whether the class is about to tell a click: the state changes ahead of that.
bool clicks(HWND control, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_LBUTTONUP ? !isInside(control, lParam)
                                : message != WM_KEYUP || wParam != VK_SPACE)
        return false;
    return (DefSubclassProc(control, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0;
}

void setHot(HWND control, bool hot)
{
    Check *check = VL_FindExtra<Check>(control);
    if (!check || check->hot == hot)
        return;
    check->hot = hot;
    if (hot)
        VL_VlwinTrackLeave(control);
    InvalidateRect(control, NULL, FALSE);
}

// Takes part in the settings of check boxes; false for all others.
bool setOption(HWND control, const VL_ControlOption &option)
{
    const std::wstring name = option.name;
    if (name == L"checkAlign") {
        SetPropW(control, L"VL_VlwinCheckRight", (HANDLE)(intptr_t)option.number);
    } else if (name == L"threeState" && kindOf(control) != VL_VLWIN_OD_RADIO) {
        const int kind = option.number ? VL_VLWIN_OD_3STATE : VL_VLWIN_OD_CHECKBOX;
        SetPropW(control, kKind, (HANDLE)(intptr_t)kind);
    } else {
        return false;
    }
    InvalidateRect(control, NULL, FALSE);
    return true;
}

// True when `result` is the answer.
bool answer(HWND control, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    *result = 0;
    switch (message) {
    case BM_GETCHECK:
        *result = stateOf(control);
        return true;
    case VL_WM_SET_OPTION:
        *result = lParam && setOption(control, *(const VL_ControlOption *)lParam);
        return true;
    case BM_SETCHECK:
        setState(control, (int)wParam);
        return true;
    case BM_GETSTATE:
        *result = DefSubclassProc(control, message, wParam, lParam) | stateOf(control);
        return true;
    case WM_GETDLGCODE:
        *result = DLGC_BUTTON;
        if (kindOf(control) == VL_VLWIN_OD_RADIO)
            *result |= DLGC_RADIOBUTTON | DLGC_WANTARROWS;
        return true;
    case WM_KEYDOWN:
        if (kindOf(control) != VL_VLWIN_OD_RADIO || arrowStep(wParam) == 0)
            return false;
        moveInGroup(control, arrowStep(wParam));
        return true;
    case WM_ERASEBKGND:
        *result = 1;
        return true;
    case VL_REFLECT + WM_DRAWITEM:
        VL_VlwinDrawOwnerDrawCheckOrRadio((const DRAWITEMSTRUCT *)lParam);
        *result = 1;
        return true;
    default:
        return false;
    }
}

LRESULT CALLBACK checkProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR)
{
    LRESULT result = 0;
    if (answer(control, message, wParam, lParam, &result))
        return result;
    switch (message) {
    case WM_LBUTTONDBLCLK:
        // The class would tell a double click in place of the second click.
        message = WM_LBUTTONDOWN;
        break;
    case WM_LBUTTONUP:
    case WM_KEYUP:
        if (clicks(control, message, wParam, lParam))
            toggle(control);
        break;
    case WM_MOUSEMOVE:
        setHot(control, true);
        break;
    case WM_MOUSELEAVE:
        setHot(control, false);
        break;
    case WM_SETTEXT:
    case WM_ENABLE:
    case WM_SETFONT:
    case WM_UPDATEUISTATE:
        result = DefSubclassProc(control, message, wParam, lParam);
        InvalidateRect(control, NULL, FALSE);
        return result;
    case WM_NCDESTROY:
        RemovePropW(control, kState);
        RemoveWindowSubclass(control, checkProcedure, kCheckSubclass);
        break;
    default:
        break;
    }
    return DefSubclassProc(control, message, wParam, lParam);
}

void drawMark(HWND control, HDC dc, const RECT &box, COLORREF back, bool hot)
{
    const bool enabled = IsWindowEnabled(control) != 0;
    const int state = stateOf(control);
    const int line = VL_ScaleX(control, 1);
    COLORREF accent = enabled ? VL_VLWIN_ACCENT : VL_MixColors(back, kOutline, 40);
    if (enabled && hot)
        accent = VL_MixColors(accent, RGB(255, 255, 255), 15);
    const COLORREF mark = enabled ? RGB(255, 255, 255) : back;
    COLORREF outline = enabled ? kOutline : VL_MixColors(back, kOutline, 40);
    if (state == 1 || (enabled && (hot || VL_VlwinShowsFocus(control))))
        outline = accent;
    const COLORREF inside = VL_MixColors(back, RGB(255, 255, 255), 5);
    RECT inner = box;
    const int inset = VL_ScaleX(control, 4);
    InflateRect(&inner, -inset, -inset);
    if (kindOf(control) == VL_VLWIN_OD_RADIO) {
        VL_VlwinEllipse(dc, box, state == 1 ? accent : inside, outline, line);
        if (state == 1)
            VL_VlwinEllipse(dc, inner, mark, mark, 0);
        return;
    }
    VL_VlwinRoundRect(dc, box, VL_ScaleX(control, 3), state == 1 ? accent : inside, outline, line);
    if (state == 1)
        VL_VlwinTick(dc, box, mark);
    else if (state == 2)
        VL_VlwinRoundRect(dc, inner, line, accent, accent, 0);
}

void drawLabel(HWND control, HDC dc, RECT place, COLORREF back)
{
    const std::wstring text = VL_VlwinWindowText(control);
    COLORREF color = VL_HasTextColor(control) ? (COLORREF)VL_GetTextColor(control) : VL_VLWIN_TEXT;
    if (!IsWindowEnabled(control))
        color = VL_MixColors(color, back, 55);
    const UINT prefix = VL_VlwinPrefixFormat(control);
    const int width = place.right - place.left;
    SIZE size = VL_VlwinTextSize(control, dc, text, width, DT_WORDBREAK | prefix);
    UINT format = DT_LEFT | DT_WORDBREAK | prefix;
    if (size.cy > place.bottom - place.top) {
        format = DT_LEFT | DT_SINGLELINE | DT_END_ELLIPSIS | prefix;
        size = VL_VlwinTextSize(control, dc, text, width, DT_SINGLELINE | prefix);
    }
    place.top += (place.bottom - place.top - size.cy) / 2;
    VL_VlwinDrawText(control, dc, text, place, format, color);
    if (!VL_VlwinShowsFocus(control) || text.empty())
        return;
    RECT around = {place.left, place.top, place.left + std::min((int)size.cx, width),
                   place.top + size.cy};
    InflateRect(&around, VL_ScaleX(control, 3), 0);
    VL_VlwinRoundRect(dc, around, VL_ScaleX(control, 2), CLR_NONE, VL_MixColors(back, color, 45),
                      VL_ScaleX(control, 1));
}

void sinkAll(HWND parent)
{
    // Later children stand lower in the order than earlier ones; boxes go below them all, the
    // larger, which may hold others, last.
    std::vector<std::pair<long long, HWND>> boxes;
    for (HWND one = GetWindow(parent, GW_CHILD); one; one = GetWindow(one, GW_HWNDNEXT)) {
        Group *group = VL_FindExtra<Group>(one);
        if (!group)
            continue;
        RECT place;
        GetWindowRect(one, &place);
        const long long width = place.right - place.left;
        boxes.push_back({width * (place.bottom - place.top), one});
        group->sunk = true;
    }
    std::stable_sort(boxes.begin(), boxes.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    for (const auto &box : boxes)
        SetWindowPos(box.second, HWND_BOTTOM, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

void drawGroup(HWND control, HDC target)
{
    RECT all;
    GetClientRect(control, &all);
    const VL_BufferedPaint buffer(target, RECT{0, 0, all.right, all.bottom});
    const HDC dc = buffer.context();
    const COLORREF back = VL_VlwinBackColor(control);
    VL_VlwinParentBackground(control, dc);
    const std::wstring text = VL_VlwinWindowText(control);
    const UINT format = DT_SINGLELINE | DT_END_ELLIPSIS | VL_VlwinPrefixFormat(control);
    const SIZE size = VL_VlwinTextSize(control, dc, text, all.right, DT_SINGLELINE);
    const int gap = VL_ScaleX(control, 4);
    const int left = VL_ScaleX(control, 10);
    RECT title = {left + gap, 0, std::min((LONG)(left + gap + size.cx), all.right - left - gap),
                  size.cy};
    const bool titled = !text.empty() && title.right > title.left;

    RECT frame = all;
    frame.top = titled ? size.cy / 2 : 0;
    const int saved = SaveDC(dc);
    if (titled && !VL_HasBgColor(control))
        ExcludeClipRect(dc, title.left - gap, title.top, title.right + gap, title.bottom);
    const int own = VL_GetNumberProperty(control, L"VL_VlwinBorderColor");
    VL_VlwinRoundRect(dc, frame, VL_ScaleX(control, 4), VL_HasBgColor(control) ? back : CLR_NONE,
                      own ? (COLORREF)(own - 1) : kGroupFrame, VL_ScaleX(control, 1));
    RestoreDC(dc, saved);
    if (!titled)
        return;
    COLORREF color = VL_HasTextColor(control) ? (COLORREF)VL_GetTextColor(control) : VL_VLWIN_TEXT;
    if (!IsWindowEnabled(control))
        color = VL_MixColors(color, back, 55);
    if (VL_HasBgColor(control))
        VL_VlwinFill(dc, RECT{title.left - gap, title.top, title.right + gap, title.bottom}, back);
    VL_VlwinDrawText(control, dc, text, title, format, color);
}

LRESULT CALLBACK groupProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR)
{
    switch (message) {
    case WM_PAINT: {
        const Group *group = VL_FindExtra<Group>(control);
        if (group && !group->sunk)
            sinkAll(GetParent(control));
        PAINTSTRUCT state;
        if (const HDC dc = BeginPaint(control, &state))
            drawGroup(control, dc);
        EndPaint(control, &state);
        return 0;
    }
    case WM_PRINTCLIENT:
        if (wParam)
            drawGroup(control, (HDC)wParam);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETTEXT:
    case WM_ENABLE:
    case WM_SETFONT:
    case WM_SIZE:
    case WM_UPDATEUISTATE: {
        const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
        InvalidateRect(control, NULL, FALSE);
        return result;
    }
    case WM_NCDESTROY:
        RemoveWindowSubclass(control, groupProcedure, kGroupSubclass);
        break;
    default:
        break;
    }
    return DefSubclassProc(control, message, wParam, lParam);
}

} // namespace
} // namespace vl_self_drawn_checks

void VL_VlwinAttachOdSubclass(HWND control)
{
    using namespace vl_self_drawn_checks;
    if (!VL_Extra<Check>(control))
        return;
    SetWindowSubclass(control, checkProcedure, kCheckSubclass, 0);
    InvalidateRect(control, NULL, FALSE);
}

void VL_VlwinOdWriteCheckState(HWND control, int state)
{
    if (IsWindow(control))
        vl_self_drawn_checks::setState(control, state);
}

void VL_Win32StripCheckRadioTheme(HWND control)
{
    VL_VlwinStripControlTheme(control);
}

void VL_VlwinDrawOwnerDrawCheckOrRadio(const DRAWITEMSTRUCT *item)
{
    using namespace vl_self_drawn_checks;
    if (!item || !item->hDC || !IsWindow(item->hwndItem))
        return;
    const HWND control = item->hwndItem;
    RECT all;
    GetClientRect(control, &all);
    const VL_BufferedPaint buffer(item->hDC, RECT{0, 0, all.right, all.bottom});
    const HDC dc = buffer.context();
    const COLORREF back = VL_VlwinBackColor(control);
    if (VL_HasBgColor(control))
        VL_VlwinFill(dc, all, back);
    else
        VL_VlwinParentBackground(control, dc);

    const int size = VL_ScaleX(control, kBoxSize);
    const int offset = VL_ScaleX(control, kTextOffset);
    const bool atRight = VL_GetNumberProperty(control, L"VL_VlwinCheckRight") != 0;
    const LONG left = atRight ? all.right - size : 0;
    const LONG top = (all.bottom - size) / 2;
    const Check *check = VL_FindExtra<Check>(control);
    drawMark(control, dc, RECT{left, top, left + size, top + size}, back, check && check->hot);
    const RECT label = {atRight ? VL_ScaleX(control, 4) : offset, 0,
                        atRight ? all.right - offset : all.right, all.bottom};
    if (label.right > label.left)
        drawLabel(control, dc, label, back);
}

void VL_VlwinPrepareGroupBox(HWND control)
{
    using namespace vl_self_drawn_checks;
    if (!VL_Extra<Group>(control))
        return;
    const LONG_PTR style = GetWindowLongPtrW(control, GWL_STYLE);
    SetWindowLongPtrW(control, GWL_STYLE,
                      (style & ~(LONG_PTR)(BS_TYPEMASK | WS_TABSTOP)) | BS_GROUPBOX |
                          WS_CLIPSIBLINGS);
    VL_VlwinStripControlTheme(control);
    SetWindowSubclass(control, groupProcedure, kGroupSubclass, 0);
    InvalidateRect(control, NULL, FALSE);
}
