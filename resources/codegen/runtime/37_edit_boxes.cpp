// Edit boxes: place of the text, cue banner, round corners, keys.
#include "37_edit_boxes.h"

#include <richedit.h>

#include <algorithm>

namespace vl_edit_boxes {
namespace {

const UINT_PTR EditSubclassId = 0x564C38;
const UINT_PTR SingleLineSubclassId = 0x564C39;
const wchar_t VerticalAlignName[] = L"VL_SLEVerticalAlign";
// Set by whoever wants Enter of a single-line edit for itself.
const wchar_t TellsEnterName[] = L"VL_TellsEnter";

struct EditState
{
    std::wstring cue;
    bool cueFocused = false;
    bool wasEmpty = false;
    bool acceptTab = false;
    bool acceptReturn = true;
    int radius = 0;
    // Of a single-line edit: the alignment that padding has to bring about, -1 for none.
    int align = -1;
    LONG alignedWidth = -1;
    // What lies within the border, relative to the window.
    RECT inner = {};
    // Whether the control draws a border into its client area.
    bool drawsBorder = false;
};

bool isRichEdit(HWND edit)
{
    return VL_HasClass(edit, L"RICHEDIT50W");
}

bool isTextBox(HWND edit)
{
    return VL_HasClass(edit, L"EDIT") || isRichEdit(edit);
}

bool isMultiLine(HWND edit)
{
    return (GetWindowLongW(edit, GWL_STYLE) & ES_MULTILINE) != 0;
}

bool isEmpty(HWND edit)
{
    return SendMessageW(edit, WM_GETTEXTLENGTH, 0, 0) == 0;
}

// After these the text may be another one.
bool canChangeText(UINT message)
{
    switch (message) {
    case WM_CHAR:
    case WM_KEYDOWN:
    case WM_SETTEXT:
    case WM_PASTE:
    case WM_CUT:
    case WM_CLEAR:
    case WM_UNDO:
    case WM_IME_CHAR:
    case WM_IME_COMPOSITION:
    case EM_UNDO:
    case EM_REPLACESEL:
    case EM_REDO:
    case EM_STREAMIN:
    case EM_SETTEXTEX:
    case EM_SETPASSWORDCHAR:
        return true;
    default:
        return false;
    }
}

void recalculateFrame(HWND edit)
{
    SetWindowPos(edit, NULL, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

// The control's font in a device context, for as long as this lives.
class FontContext
{
public:
    explicit FontContext(HWND edit) : m_edit(edit), m_context(GetDC(edit))
    {
        if (const HGDIOBJ font = (HGDIOBJ)SendMessageW(edit, WM_GETFONT, 0, 0))
            m_old = SelectObject(m_context, font);
    }
    ~FontContext()
    {
        if (m_old)
            SelectObject(m_context, m_old);
        ReleaseDC(m_edit, m_context);
    }
    FontContext(const FontContext &) = delete;
    FontContext &operator=(const FontContext &) = delete;

    HDC get() const { return m_context; }

private:
    HWND m_edit;
    HDC m_context;
    HGDIOBJ m_old = NULL;
};

LONG lineHeight(HWND edit)
{
    const FontContext context(edit);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(context.get(), &metrics);
    return metrics.tmHeight;
}

// How wide the text is that shows, which may be the cue banner or the dots of a password. Texts
// that are wider than any box are not measured to their end.
LONG shownWidth(HWND edit, const EditState &state)
{
    std::wstring text = VL_GetText(edit);
    if (text.empty())
        text = state.cue;
    else if (const LRESULT dot = SendMessageW(edit, EM_GETPASSWORDCHAR, 0, 0))
        text.assign(text.size(), (wchar_t)dot);
    const FontContext context(edit);
    SIZE size = {};
    GetTextExtentPoint32W(context.get(), text.c_str(), (int)(std::min)(text.size(), (size_t)2000),
                          &size);
    return size.cx;
}

// The brush of the control's background, as the window behind it answers.
HBRUSH backgroundBrush(HWND edit, HDC context)
{
    const bool isStatic = !IsWindowEnabled(edit) || (GetWindowLongW(edit, GWL_STYLE) & ES_READONLY);
    const UINT message = isStatic ? WM_CTLCOLORSTATIC : WM_CTLCOLOREDIT;
    const LRESULT brush = SendMessageW(GetParent(edit), message, (WPARAM)context, (LPARAM)edit);
    return brush ? (HBRUSH)brush : GetSysColorBrush(isStatic ? COLOR_BTNFACE : COLOR_WINDOW);
}

// The client area relative to the window.
RECT clientInWindow(HWND edit)
{
    RECT window = {}, client = {};
    GetWindowRect(edit, &window);
    GetClientRect(edit, &client);
    MapWindowPoints(edit, NULL, (POINT *)&client, 2);
    OffsetRect(&client, -window.left, -window.top);
    return client;
}

// Fills `area`, relative to the window, except for the client area.
void fillAround(HWND edit, const RECT &area)
{
    const RECT client = clientInWindow(edit);
    if (client.left <= area.left && client.top <= area.top && client.right >= area.right &&
        client.bottom >= area.bottom)
        return;
    const HDC context = GetWindowDC(edit);
    ExcludeClipRect(context, client.left, client.top, client.right, client.bottom);
    FillRect(context, &area, backgroundBrush(edit, context));
    ReleaseDC(edit, context);
}

// The control's rectangle less `inset` pixels on each side, its corners rounded.
HRGN roundRegion(HWND edit, int radius, int inset)
{
    RECT window = {};
    GetWindowRect(edit, &window);
    const int across = 2 * (VL_ScaleX(edit, radius) - inset);
    return CreateRoundRectRgn(inset, inset, window.right - window.left + 1 - inset,
                              window.bottom - window.top + 1 - inset, across, across);
}

void applyRadius(HWND edit, int radius)
{
    // The window owns the region from here on.
    SetWindowRgn(edit, radius > 0 ? roundRegion(edit, radius, 0) : NULL, TRUE);
}

// The border follows the round corners: everything around the text gets its colour, then all but
// the rim the background's.
void paintRoundBorder(HWND edit, int radius)
{
    const RECT client = clientInWindow(edit);
    const HDC context = GetWindowDC(edit);
    ExcludeClipRect(context, client.left, client.top, client.right, client.bottom);
    const HBRUSH rim = CreateSolidBrush(GetFocus() == edit ? RGB(0, 120, 215) : RGB(160, 160, 160));
    const HRGN outer = roundRegion(edit, radius, 0);
    const HRGN inner = roundRegion(edit, radius, VL_ScaleX(edit, 1));
    FillRgn(context, outer, rim);
    FillRgn(context, inner, backgroundBrush(edit, context));
    DeleteObject(inner);
    DeleteObject(outer);
    DeleteObject(rim);
    ReleaseDC(edit, context);
}

bool hasBorder(HWND edit)
{
    return (GetWindowLongW(edit, GWL_STYLE) & WS_BORDER) ||
           (GetWindowLongW(edit, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
}

void paintAround(HWND edit, const EditState &state)
{
    if (state.radius > 0 && hasBorder(edit))
        paintRoundBorder(edit, state.radius);
    else
        fillAround(edit, state.inner);
}

void paintCue(HWND edit, const EditState &state)
{
    if (state.cue.empty() || !isEmpty(edit) || (!state.cueFocused && GetFocus() == edit))
        return;
    RECT area = {};
    SendMessageW(edit, EM_GETRECT, 0, (LPARAM)&area);
    const LONG style = GetWindowLongW(edit, GWL_STYLE);
    UINT format = DT_NOPREFIX | DT_EXPANDTABS;
    format |= (style & ES_MULTILINE) ? DT_WORDBREAK : DT_SINGLELINE;
    format |= (style & ES_CENTER) ? DT_CENTER : (style & ES_RIGHT) ? DT_RIGHT : DT_LEFT;
    HideCaret(edit);
    {
        const FontContext context(edit);
        SetBkMode(context.get(), TRANSPARENT);
        SetTextColor(context.get(), GetSysColor(COLOR_GRAYTEXT));
        DrawTextW(context.get(), state.cue.c_str(), (int)state.cue.size(), &area, format);
    }
    ShowCaret(edit);
}

// What the dialog keyboard may do with a key. The control itself is not asked: once asked it would
// take Tab, Enter and Esc for the dialog's even when they are meant for it, and close the window on
// Esc.
LRESULT dialogCode(HWND edit, const EditState &state, const MSG *key)
{
    const bool multiLine = isMultiLine(edit);
    LRESULT code = DLGC_WANTCHARS | DLGC_WANTARROWS | (multiLine ? 0 : DLGC_HASSETSEL);
    if (!key || (key->message != WM_KEYDOWN && key->message != WM_CHAR))
        return code;
    if (!multiLine)
        return code |
               (key->wParam == VK_RETURN && GetPropW(edit, TellsEnterName) ? DLGC_WANTMESSAGE : 0);
    const bool isBent = GetKeyState(VK_SHIFT) < 0 || GetKeyState(VK_CONTROL) < 0;
    if ((key->wParam == VK_TAB && state.acceptTab && !isBent) ||
        (key->wParam == VK_RETURN && state.acceptReturn))
        code |= DLGC_WANTMESSAGE;
    return code;
}

// Keys that the control does not know, or beeps at.
bool handleKey(HWND edit, const EditState &state, UINT message, WPARAM key)
{
    const bool control = GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
    if (message == WM_KEYDOWN && key == 'A' && control) {
        SendMessageW(edit, EM_SETSEL, 0, -1);
        return true;
    }
    if (message != WM_CHAR)
        return false;
    if (key == 1 && control)
        return true;
    if (key == VK_ESCAPE)
        return true;
    return key == VK_RETURN && (!isMultiLine(edit) || !state.acceptReturn);
}

void noteChange(HWND edit, EditState *state)
{
    const bool empty = isEmpty(edit);
    if (empty != state->wasEmpty && !state->cue.empty())
        InvalidateRect(edit, NULL, TRUE);
    state->wasEmpty = empty;
}

LRESULT CALLBACK editSubclass(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR)
{
    EditState *state = VL_FindExtra<EditState>(edit);
    if (message == WM_NCDESTROY || !state) {
        RemoveWindowSubclass(edit, editSubclass, EditSubclassId);
        return DefSubclassProc(edit, message, wParam, lParam);
    }
    if (message == WM_GETDLGCODE)
        return dialogCode(edit, *state, (const MSG *)lParam);
    if ((message == WM_KEYDOWN || message == WM_CHAR) && handleKey(edit, *state, message, wParam))
        return 0;
    const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
    if (!IsWindow(edit) || !(state = VL_FindExtra<EditState>(edit)))
        return result;
    if (canChangeText(message)) {
        noteChange(edit, state);
        return result;
    }
    switch (message) {
    case WM_PAINT:
        paintCue(edit, *state);
        break;
    case WM_NCPAINT:
        paintAround(edit, *state);
        break;
    case WM_SIZE:
        if (state->radius > 0)
            applyRadius(edit, state->radius);
        break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        if (!state->cue.empty())
            InvalidateRect(edit, NULL, TRUE);
        if (state->radius > 0 && hasBorder(edit))
            RedrawWindow(edit, NULL, NULL, RDW_FRAME | RDW_INVALIDATE);
        break;
    default:
        break;
    }
    return result;
}

// The state of a text box, which has the subclass from then on; NULL for any other window.
EditState *prepare(HWND edit)
{
    if (!isTextBox(edit))
        return nullptr;
    if (EditState *found = VL_FindExtra<EditState>(edit))
        return found;
    EditState *state = VL_Extra<EditState>(edit);
    if (!state)
        return nullptr;
    state->wasEmpty = isEmpty(edit);
    SetWindowSubclass(edit, editSubclass, EditSubclassId, 0);
    return state;
}

int styleAlign(HWND edit)
{
    const LONG style = GetWindowLongW(edit, GWL_STYLE);
    return (style & ES_CENTER)  ? VL_ALIGN_CENTER
           : (style & ES_RIGHT) ? VL_ALIGN_RIGHT
                                : VL_ALIGN_LEFT;
}

// Narrows the line to its text and puts it where it belongs. The alignment of an edit is settled
// when it is made: another one needs room at its sides.
void padSides(HWND edit, EditState *state, RECT *client)
{
    state->alignedWidth = -1;
    if (state->align < 0 || state->align == styleAlign(edit))
        return;
    state->alignedWidth = shownWidth(edit, *state);
    const LRESULT margins = SendMessageW(edit, EM_GETMARGINS, 0, 0);
    const LONG needed =
        state->alignedWidth + LOWORD(margins) + HIWORD(margins) + VL_ScaleX(edit, 8);
    const LONG free = client->right - client->left - needed;
    if (free <= 0)
        return;
    const LONG left = state->align == VL_ALIGN_CENTER  ? free / 2
                      : state->align == VL_ALIGN_RIGHT ? free
                                                       : 0;
    client->left += left;
    client->right = client->left + needed;
}

void padLine(HWND edit, EditState *state, RECT *client)
{
    // One more line of pixels for the border that is kept away.
    const LONG needed = lineHeight(edit) + (state->drawsBorder ? 1 : 0);
    // Clear of the round corners as far as there is room.
    const LONG corner = VL_ScaleX(edit, state->radius) / 3;
    const LONG room = client->bottom - client->top - needed;
    InflateRect(client, -(std::min)(corner, (client->right - client->left) / 8),
                -(std::min)(corner, (std::max)(room / 2, 0L)));
    const LONG free = client->bottom - client->top - needed;
    if (free > 0) {
        const int place = VL_GetNumberProperty(edit, VerticalAlignName, VL_VERTICAL_CENTER);
        const LONG above = place == VL_VERTICAL_TOP      ? 0
                           : place == VL_VERTICAL_BOTTOM ? free
                                                         : free / 2;
        client->top += above;
        client->bottom -= free - above;
    }
    padSides(edit, state, client);
}

LRESULT calculateClient(HWND edit, WPARAM wParam, LPARAM lParam)
{
    RECT *place = wParam ? &((NCCALCSIZE_PARAMS *)lParam)->rgrc[0] : (RECT *)lParam;
    const RECT window = *place;
    const LRESULT result = DefSubclassProc(edit, WM_NCCALCSIZE, wParam, lParam);
    if (EditState *state = VL_FindExtra<EditState>(edit)) {
        state->inner = *place;
        OffsetRect(&state->inner, -window.left, -window.top);
        padLine(edit, state, place);
    }
    return result;
}

// The padding belongs to the text: it takes clicks and shows the caret's mouse pointer.
LRESULT hitTest(HWND edit, LPARAM lParam, const RECT &inner)
{
    RECT window = {};
    GetWindowRect(edit, &window);
    const POINT place = {(short)LOWORD(lParam) - window.left, (short)HIWORD(lParam) - window.top};
    return PtInRect(&inner, place) ? HTCLIENT : DefSubclassProc(edit, WM_NCHITTEST, 0, lParam);
}

// A single-line edit takes its border away from the window and draws it around its line, in the
// middle of the box when the line is padded. The window gets it back, the drawing is kept away.
void takeBorderOver(HWND edit, EditState *state)
{
    const LONG style = GetWindowLongW(edit, GWL_STYLE);
    if (state->drawsBorder || (style & WS_BORDER) ||
        (GetWindowLongW(edit, GWL_EXSTYLE) & WS_EX_CLIENTEDGE))
        return;
    RECT text = {};
    SendMessageW(edit, EM_GETRECT, 0, (LPARAM)&text);
    state->drawsBorder = text.left > LOWORD(SendMessageW(edit, EM_GETMARGINS, 0, 0));
    if (state->drawsBorder)
        SetWindowLongW(edit, GWL_STYLE, style | WS_BORDER);
}

void keepBorderAway(HWND edit)
{
    RECT client = {};
    GetClientRect(edit, &client);
    const int x = GetSystemMetrics(SM_CXBORDER), y = GetSystemMetrics(SM_CYBORDER);
    const RECT strips[] = {{0, 0, client.right, y},
                           {0, client.bottom - y, client.right, client.bottom},
                           {0, 0, x, client.bottom},
                           {client.right - x, 0, client.right, client.bottom}};
    const HDC context = GetDC(edit);
    const HBRUSH brush = backgroundBrush(edit, context);
    for (const RECT &strip : strips) {
        FillRect(context, &strip, brush);
        ValidateRect(edit, &strip);
    }
    ReleaseDC(edit, context);
}

// Narrower padding than before may leave the line scrolled: its start is shown, then the caret.
void realign(HWND edit, EditState *state)
{
    if (state->align < 0 || state->align == styleAlign(edit) ||
        state->alignedWidth == shownWidth(edit, *state))
        return;
    recalculateFrame(edit);
    DWORD start = 0, end = 0;
    SendMessageW(edit, EM_GETSEL, (WPARAM)&start, (LPARAM)&end);
    SendMessageW(edit, EM_SETSEL, 0, 0);
    SendMessageW(edit, EM_SCROLLCARET, 0, 0);
    SendMessageW(edit, EM_SETSEL, start, end);
    SendMessageW(edit, EM_SCROLLCARET, 0, 0);
    InvalidateRect(edit, NULL, TRUE);
}

} // namespace
} // namespace vl_edit_boxes

LRESULT CALLBACK SingleLineEditSubclassProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam,
                                            UINT_PTR id, DWORD_PTR)
{
    using namespace vl_edit_boxes;
    EditState *state = VL_FindExtra<EditState>(edit);
    if (message == WM_NCDESTROY || !state) {
        RemoveWindowSubclass(edit, SingleLineEditSubclassProc, id);
        return DefSubclassProc(edit, message, wParam, lParam);
    }
    if (message == WM_NCCALCSIZE)
        return calculateClient(edit, wParam, lParam);
    if (message == WM_NCHITTEST)
        return hitTest(edit, lParam, state->inner);
    if (message == VL_WM_SET_OPTION && lParam) {
        const VL_ControlOption *option = (const VL_ControlOption *)lParam;
        if (wcscmp(option->name, L"textAlign") != 0)
            return DefSubclassProc(edit, message, wParam, lParam);
        state->align = option->number;
        SingleLineEdit_ApplyFormatRect(edit);
        return 1;
    }
    if (message == WM_PAINT && state->drawsBorder)
        keepBorderAway(edit);
    const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
    if (!IsWindow(edit) || !(state = VL_FindExtra<EditState>(edit)))
        return result;
    if (message == WM_SETFONT)
        SingleLineEdit_ApplyFormatRect(edit);
    else if (message == WM_PAINT || message == WM_NCPAINT || message == WM_ENABLE ||
             message == EM_SETREADONLY)
        paintAround(edit, *state);
    else if (canChangeText(message))
        realign(edit, state);
    return result;
}

void VL_PrepareSingleLineEdit(HWND edit, int verticalAlign)
{
    using namespace vl_edit_boxes;
    if (!VL_HasClass(edit, L"EDIT") || isMultiLine(edit))
        return;
    EditState *state = prepare(edit);
    if (!state)
        return;
    takeBorderOver(edit, state);
    SetPropW(edit, VerticalAlignName, (HANDLE)(intptr_t)verticalAlign);
    SetWindowSubclass(edit, SingleLineEditSubclassProc, SingleLineSubclassId, 0);
    SingleLineEdit_ApplyFormatRect(edit);
}

void SingleLineEdit_ApplyFormatRect(HWND edit)
{
    vl_edit_boxes::recalculateFrame(edit);
    RedrawWindow(edit, NULL, NULL, RDW_FRAME | RDW_INVALIDATE | RDW_ERASE);
}

void VL_PrepareEdit(HWND edit)
{
    vl_edit_boxes::prepare(edit);
}

void VL_SetEditCornerRadius(HWND edit, int radius)
{
    using namespace vl_edit_boxes;
    EditState *state = prepare(edit);
    if (!state)
        return;
    state->radius = radius > 0 ? (std::min)(radius, 1000) : 0;
    applyRadius(edit, state->radius);
    recalculateFrame(edit);
    RedrawWindow(edit, NULL, NULL, RDW_FRAME | RDW_INVALIDATE | RDW_ERASE);
}

void VL_SetAcceptTab(HWND edit, bool on)
{
    if (vl_edit_boxes::EditState *state = vl_edit_boxes::prepare(edit))
        state->acceptTab = on;
}

void VL_SetAcceptReturn(HWND edit, bool on)
{
    if (vl_edit_boxes::EditState *state = vl_edit_boxes::prepare(edit))
        state->acceptReturn = on;
}

void VL_Edit_SetCueBanner(HWND edit, const std::wstring &text)
{
    using namespace vl_edit_boxes;
    if (EditState *state = prepare(edit)) {
        state->cue = text;
        realign(edit, state);
        InvalidateRect(edit, NULL, TRUE);
    }
}

void VL_Edit_SetCueBanner(HWND edit, const std::wstring &text, bool focused)
{
    if (vl_edit_boxes::EditState *state = vl_edit_boxes::prepare(edit))
        state->cueFocused = focused;
    VL_Edit_SetCueBanner(edit, text);
}

std::wstring VL_Edit_GetCueBanner(HWND edit)
{
    const vl_edit_boxes::EditState *state = VL_FindExtra<vl_edit_boxes::EditState>(edit);
    return state ? state->cue : std::wstring();
}
