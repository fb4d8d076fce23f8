// Text boxes and combo boxes of self-drawn windows.
#include "98_self_drawn_fields.h"

#include <algorithm>

namespace vl_self_drawn_fields {
namespace {

const UINT_PTR kEditSubclass = 0x564C9803;
const UINT_PTR kComboSubclass = 0x564C9804;
const UINT kSetCueBanner = 0x1501;
const UINT kGetCueBanner = 0x1502;
const int kTextIndent = 7;
const int kComboRadius = 3;
const int kComboArrow = 24;

struct Edit
{
    int radius = 0;
    bool whenFocused = false;
    bool wasEmpty = true;
    std::wstring placeholder;
};

struct Combo
{
    bool hot = false;
};

COLORREF backOf(HWND field)
{
    if (VL_HasBgColor(field))
        return (COLORREF)VL_GetBgColor(field);
    const bool readOnly =
        VL_HasClass(field, L"EDIT") && (GetWindowLongW(field, GWL_STYLE) & ES_READONLY) != 0;
    return readOnly || !IsWindowEnabled(field) ? VL_VLWIN_FIELD_READ_ONLY : VL_VLWIN_FIELD;
}

COLORREF textOf(HWND field)
{
    const COLORREF text = VL_HasTextColor(field) ? (COLORREF)VL_GetTextColor(field) : VL_VLWIN_TEXT;
    return IsWindowEnabled(field) ? text : VL_MixColors(text, backOf(field), 50);
}

// The answer to a WM_CTLCOLOR message about the field or a part of it.
LRESULT colorPart(HWND field, HDC dc)
{
    const COLORREF back = backOf(field);
    SetTextColor(dc, textOf(field));
    SetBkColor(dc, back);
    SetDCBrushColor(dc, back);
    return (LRESULT)GetStockObject(DC_BRUSH);
}

bool isMultiline(HWND edit)
{
    return (GetWindowLongW(edit, GWL_STYLE) & ES_MULTILINE) != 0;
}

int lineHeight(HWND edit)
{
    const HDC dc = GetDC(edit);
    if (!dc)
        return 0;
    const int height = VL_VlwinTextSize(edit, dc, L"Wg", 10000, DT_SINGLELINE).cy;
    ReleaseDC(edit, dc);
    return height;
}

// The room of the text within the window's rectangle.
void insetText(HWND edit, RECT *place)
{
    const int border = VL_ScaleX(edit, 1);
    const int height = place->bottom - place->top;
    int above = border + VL_ScaleX(edit, 4);
    int below = above;
    if (!isMultiline(edit)) {
        const int line = lineHeight(edit);
        const int spare = std::max(0, height - line);
        const int align = VL_GetNumberProperty(edit, L"VL_SLEVerticalAlign", 2);
        const int least = std::min(spare / 2, border + VL_ScaleX(edit, 2));
        above = align == 1 ? least : align == 3 ? spare - least : spare / 2;
        below = std::max(0, height - above - line);
    }
    const int beside =
        std::min((int)(place->right - place->left) / 3, border + VL_ScaleX(edit, kTextIndent));
    place->left += beside;
    // A scroll bar stands at the border.
    const bool bar = (GetWindowLongW(edit, GWL_STYLE) & WS_VSCROLL) != 0;
    place->right -= bar ? border : beside;
    place->top += above;
    place->bottom -= std::min(below, height / 2);
    if (GetWindowLongW(edit, GWL_STYLE) & WS_HSCROLL)
        place->bottom += below - border;
}

// The client area and the scroll bars, in the window's coordinates; `client` gets the client area.
RECT nativeArea(HWND edit, RECT *client)
{
    RECT window;
    GetWindowRect(edit, &window);
    GetClientRect(edit, client);
    MapWindowPoints(edit, NULL, (POINT *)client, 2);
    OffsetRect(client, -window.left, -window.top);
    RECT native = *client;
    const LONG style = GetWindowLongW(edit, GWL_STYLE);
    if (style & WS_VSCROLL)
        native.right += GetSystemMetrics(SM_CXVSCROLL);
    if (style & WS_HSCROLL)
        native.bottom += GetSystemMetrics(SM_CYHSCROLL);
    return native;
}

void drawEditFrame(HWND edit, const Edit &data)
{
    const HDC target = GetWindowDC(edit);
    if (!target)
        return;
    RECT window;
    GetWindowRect(edit, &window);
    const RECT all = {0, 0, window.right - window.left, window.bottom - window.top};
    RECT client;
    const RECT native = nativeArea(edit, &client);
    ExcludeClipRect(target, native.left, native.top, native.right, native.bottom);
    {
        const VL_BufferedPaint buffer(target, RECT{0, 0, all.right, all.bottom});
        VL_VlwinParentBackground(edit, buffer.context(), client.left, client.top);
        const bool focus = GetFocus() == edit;
        VL_VlwinRoundRect(buffer.context(), all, VL_ScaleX(edit, data.radius), backOf(edit),
                          focus ? VL_VLWIN_ACCENT : VL_VLWIN_BORDER, VL_ScaleX(edit, 1));
    }
    ReleaseDC(edit, target);
}

void repaintFrame(HWND edit)
{
    RedrawWindow(edit, NULL, NULL, RDW_FRAME | RDW_INVALIDATE | RDW_NOCHILDREN);
}

bool showsPlaceholder(HWND edit, const Edit &data)
{
    return !data.placeholder.empty() && GetWindowTextLengthW(edit) == 0 &&
           (data.whenFocused || GetFocus() != edit);
}

void drawPlaceholder(HWND edit, const Edit &data)
{
    const HDC dc = GetDC(edit);
    if (!dc)
        return;
    RECT place;
    GetClientRect(edit, &place);
    const LRESULT margins = SendMessageW(edit, EM_GETMARGINS, 0, 0);
    place.left += LOWORD(margins);
    place.right -= HIWORD(margins);
    const LONG style = GetWindowLongW(edit, GWL_STYLE);
    UINT format = DT_NOPREFIX | (style & ES_CENTER ? DT_CENTER : style & ES_RIGHT ? DT_RIGHT : 0);
    format |= isMultiline(edit) ? DT_WORDBREAK : DT_SINGLELINE | DT_END_ELLIPSIS;
    VL_VlwinDrawText(edit, dc, data.placeholder, place, format, VL_VLWIN_GREY);
    ReleaseDC(edit, dc);
}

// The class draws single letters by itself: the placeholder goes and comes by a repaint.
void watchEmptiness(HWND edit)
{
    Edit *data = VL_FindExtra<Edit>(edit);
    const bool empty = GetWindowTextLengthW(edit) == 0;
    if (!data || data->wasEmpty == empty)
        return;
    data->wasEmpty = empty;
    if (!data->placeholder.empty())
        InvalidateRect(edit, NULL, TRUE);
}

bool changesText(UINT message)
{
    switch (message) {
    case WM_SETTEXT:
    case WM_CHAR:
    case WM_KEYDOWN:
    case WM_PASTE:
    case WM_CUT:
    case WM_CLEAR:
    case WM_UNDO:
    case WM_COMMAND:
    case WM_IME_COMPOSITION:
    case EM_REPLACESEL:
    case EM_UNDO:
    case EM_SETHANDLE:
        return true;
    default:
        return false;
    }
}

LRESULT copyPlaceholder(const Edit &data, wchar_t *target, LPARAM room)
{
    if (!target || room <= 0)
        return FALSE;
    lstrcpynW(target, data.placeholder.c_str(), (int)std::min<LPARAM>(room, 0x7FFFFFFF));
    return !data.placeholder.empty();
}

LRESULT editHitTest(HWND edit, LPARAM lParam)
{
    const LRESULT hit = DefSubclassProc(edit, WM_NCHITTEST, 0, lParam);
    // The room around the text is the text's.
    return hit == HTNOWHERE || hit == HTBORDER ? HTCLIENT : hit;
}

bool answerEdit(HWND edit, Edit *data, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    *result = 0;
    switch (message) {
    case WM_NCCALCSIZE:
        insetText(edit, (RECT *)lParam);
        *result = DefSubclassProc(edit, message, wParam, lParam);
        return true;
    case WM_NCPAINT:
        *result = DefSubclassProc(edit, message, wParam, lParam);
        drawEditFrame(edit, *data);
        return true;
    case WM_NCHITTEST:
        *result = editHitTest(edit, lParam);
        return true;
    case WM_PAINT:
        *result = DefSubclassProc(edit, message, wParam, lParam);
        if (showsPlaceholder(edit, *data))
            drawPlaceholder(edit, *data);
        return true;
    case kSetCueBanner:
        data->placeholder = lParam ? (const wchar_t *)lParam : L"";
        data->whenFocused = wParam != 0;
        InvalidateRect(edit, NULL, TRUE);
        *result = TRUE;
        return true;
    case kGetCueBanner:
        *result = copyPlaceholder(*data, (wchar_t *)wParam, lParam);
        return true;
    case VL_REFLECT + WM_CTLCOLOREDIT:
    case VL_REFLECT + WM_CTLCOLORSTATIC:
        // A new text colour is told by the same message, without a device.
        *result = wParam ? colorPart(edit, (HDC)wParam) : 0;
        return true;
    default:
        return false;
    }
}

LRESULT CALLBACK editProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR)
{
    LRESULT result = 0;
    Edit *data = VL_FindExtra<Edit>(edit);
    if (data && answerEdit(edit, data, message, wParam, lParam, &result))
        return result;
    result = DefSubclassProc(edit, message, wParam, lParam);
    switch (message) {
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_ENABLE:
    case EM_SETREADONLY:
        repaintFrame(edit);
        break;
    case WM_SETFONT:
        SetWindowPos(edit, NULL, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
        break;
    case WM_SIZE:
        repaintFrame(edit);
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(edit, editProcedure, kEditSubclass);
        return result;
    default:
        if (changesText(message) && IsWindow(edit))
            watchEmptiness(edit);
        break;
    }
    return result;
}

RECT editPartOf(HWND combo)
{
    RECT place = {0, 0, 0, 0};
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    if (GetComboBoxInfo(combo, &info))
        place = info.rcItem;
    return place;
}

void drawChevron(HWND combo, HDC dc, const RECT &place, COLORREF color)
{
    const float unit = (float)VL_ScaleX(combo, 100) / 100;
    const float x = (float)(place.left + place.right) / 2;
    const float y = (float)(place.top + place.bottom) / 2;
    const float points[] = {x - 4.5f * unit, y - 2.2f * unit, x,
                            y + 2.2f * unit, x + 4.5f * unit, y - 2.2f * unit};
    VL_VlwinStroke(dc, points, 3, 1.4f * unit, color);
}

bool hasFocusInside(HWND combo)
{
    const HWND focus = GetFocus();
    return focus && (focus == combo || IsChild(combo, focus));
}

void drawCombo(HWND combo, HDC target)
{
    RECT all;
    GetClientRect(combo, &all);
    const LONG style = GetWindowLongW(combo, GWL_STYLE) & 3;
    if (style == CBS_SIMPLE) // the list is a part of the window
        all.bottom = std::min(all.bottom, editPartOf(combo).bottom + VL_ScaleX(combo, 3));
    const Combo *data = VL_FindExtra<Combo>(combo);
    const bool enabled = IsWindowEnabled(combo) != 0;
    const bool active =
        enabled && (hasFocusInside(combo) || SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0);
    const COLORREF back = backOf(combo);
    COLORREF border = VL_VLWIN_BORDER;
    if (active)
        border = VL_VLWIN_ACCENT;
    else if (enabled && data && data->hot)
        border = VL_MixColors(border, RGB(255, 255, 255), 25);

    const VL_BufferedPaint buffer(target, RECT{0, 0, all.right, all.bottom});
    const HDC dc = buffer.context();
    VL_VlwinParentBackground(combo, dc);
    VL_VlwinRoundRect(dc, all, VL_ScaleX(combo, kComboRadius), back, border, VL_ScaleX(combo, 1));
    if (style == CBS_SIMPLE)
        return;
    RECT arrow = all;
    arrow.left = std::max(0L, all.right - VL_ScaleX(combo, kComboArrow));
    drawChevron(combo, dc, arrow, textOf(combo));
    if (style != CBS_DROPDOWNLIST)
        return;
    RECT text = all;
    text.left += VL_ScaleX(combo, kTextIndent + 1);
    text.right = arrow.left;
    VL_VlwinDrawText(combo, dc, VL_VlwinWindowText(combo), text,
                     DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX, textOf(combo));
}

void paintCombo(HWND combo)
{
    PAINTSTRUCT state;
    if (const HDC dc = BeginPaint(combo, &state)) {
        for (HWND child = GetWindow(combo, GW_CHILD); child;
             child = GetWindow(child, GW_HWNDNEXT)) {
            RECT place;
            GetWindowRect(child, &place);
            MapWindowPoints(NULL, combo, (POINT *)&place, 2);
            if (IsWindowVisible(child))
                ExcludeClipRect(dc, place.left, place.top, place.right, place.bottom);
        }
        drawCombo(combo, dc);
    }
    EndPaint(combo, &state);
}

// The class draws its own face at once after these, past WM_PAINT.
bool drawsAtOnce(UINT message)
{
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_LBUTTONUP:
    case WM_KEYDOWN:
    case WM_CHAR:
    case WM_MOUSEWHEEL:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_ENABLE:
    case WM_SETTEXT:
    case WM_SETFONT:
    case WM_COMMAND:
    case WM_CAPTURECHANGED:
    case CB_SETCURSEL:
    case CB_SELECTSTRING:
    case CB_SHOWDROPDOWN:
    case CB_RESETCONTENT:
    case CB_DELETESTRING:
    case CB_SETITEMHEIGHT:
        return true;
    default:
        return false;
    }
}

// The typed text begins where the chosen text of other boxes does.
void indentTyping(HWND combo)
{
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    if (GetComboBoxInfo(combo, &info) && info.hwndItem && info.hwndItem != combo)
        SendMessageW(info.hwndItem, EM_SETMARGINS, EC_LEFTMARGIN, VL_ScaleX(combo, 4));
}

void setComboHot(HWND combo, bool hot)
{
    Combo *data = VL_FindExtra<Combo>(combo);
    if (!data || data->hot == hot)
        return;
    data->hot = hot;
    if (hot)
        VL_VlwinTrackLeave(combo);
    InvalidateRect(combo, NULL, FALSE);
}

LRESULT CALLBACK comboProcedure(HWND combo, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR)
{
    switch (message) {
    case WM_PAINT:
        paintCombo(combo);
        return 0;
    case WM_PRINTCLIENT:
        if (wParam)
            drawCombo(combo, (HDC)wParam);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSTATIC:
        return colorPart(combo, (HDC)wParam);
    case WM_NCDESTROY:
        RemoveWindowSubclass(combo, comboProcedure, kComboSubclass);
        return DefSubclassProc(combo, message, wParam, lParam);
    case WM_MOUSEMOVE:
    case WM_MOUSELEAVE: {
        const LRESULT result = DefSubclassProc(combo, message, wParam, lParam);
        setComboHot(combo, message == WM_MOUSEMOVE);
        return result;
    }
    default:
        break;
    }
    const LRESULT result = DefSubclassProc(combo, message, wParam, lParam);
    if (message == WM_SETFONT)
        indentTyping(combo);
    if (drawsAtOnce(message) && IsWindow(combo))
        RedrawWindow(combo, NULL, NULL, RDW_INVALIDATE | RDW_NOERASE | RDW_UPDATENOW);
    return result;
}

} // namespace
} // namespace vl_self_drawn_fields

void VL_VlwinPrepareEdit(HWND edit, int cornerRadius, const std::wstring &placeholder,
                         bool whenFocused)
{
    using namespace vl_self_drawn_fields;
    Edit *data = VL_Extra<Edit>(edit);
    if (!data)
        return;
    data->radius = std::max(0, std::min(cornerRadius, 1000));
    data->placeholder = placeholder;
    data->whenFocused = whenFocused;
    data->wasEmpty = GetWindowTextLengthW(edit) == 0;
    SetWindowLongPtrW(edit, GWL_STYLE, GetWindowLongPtrW(edit, GWL_STYLE) & ~(LONG_PTR)WS_BORDER);
    SetWindowLongPtrW(edit, GWL_EXSTYLE,
                      GetWindowLongPtrW(edit, GWL_EXSTYLE) & ~(LONG_PTR)WS_EX_CLIENTEDGE);
    SetWindowSubclass(edit, editProcedure, kEditSubclass, 0);
    SetWindowPos(edit, NULL, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    RedrawWindow(edit, NULL, NULL, RDW_FRAME | RDW_INVALIDATE | RDW_ERASE);
}

void VL_VlwinApplyComboNoTheme(HWND combo)
{
    using namespace vl_self_drawn_fields;
    if (!VL_Extra<Combo>(combo))
        return;
    VL_VlwinStripControlTheme(combo);
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    if (GetComboBoxInfo(combo, &info))
        VL_VlwinStripControlTheme(info.hwndList);
    SetWindowSubclass(combo, comboProcedure, kComboSubclass, 0);
    indentTyping(combo);
    RedrawWindow(combo, NULL, NULL, RDW_INVALIDATE | RDW_ALLCHILDREN);
}
