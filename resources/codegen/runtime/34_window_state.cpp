#include "34_window_state.h"

#include <richedit.h>

namespace vl_window_state {
namespace {

const wchar_t kStateName[] = L"VL_State";
const UINT_PTR kSubclass = 0x564C34;

struct State
{
    std::map<const void *, std::unique_ptr<VL_WindowSlot>> slots;
    std::map<std::wstring, std::wstring> texts;
};

// Device objects that go with the window.
struct Colors
{
    bool hasBack = false;
    bool hasText = false;
    COLORREF back = 0;
    COLORREF text = 0;
    HBRUSH brush = NULL;
    ~Colors()
    {
        if (brush)
            DeleteObject(brush);
    }
};

struct Font
{
    HFONT handle = NULL;
    ~Font()
    {
        if (handle)
            DeleteObject(handle);
    }
};

LRESULT CALLBACK freeWithWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR data)
{
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, freeWithWindow, kSubclass);
        RemovePropW(window, kStateName);
        const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
        delete (State *)data;
        return result;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

State *findState(HWND window)
{
    return (State *)GetPropW(window, kStateName);
}

State *stateOf(HWND window)
{
    if (State *found = findState(window))
        return found;
    if (!IsWindow(window))
        return nullptr;
    State *state = new State;
    if (!SetWindowSubclass(window, freeWithWindow, kSubclass, (DWORD_PTR)state) ||
        !SetPropW(window, kStateName, (HANDLE)state)) {
        RemoveWindowSubclass(window, freeWithWindow, kSubclass);
        delete state;
        return nullptr;
    }
    return state;
}

// What classes with colours of their own must be told; CLR_NONE leaves one alone.
void tellClass(HWND window, COLORREF back, COLORREF text)
{
    if (VL_HasClass(window, WC_LISTVIEWW)) {
        if (back != CLR_NONE) {
            SendMessageW(window, LVM_SETBKCOLOR, 0, back);
            SendMessageW(window, LVM_SETTEXTBKCOLOR, 0, back);
        }
        if (text != CLR_NONE)
            SendMessageW(window, LVM_SETTEXTCOLOR, 0, text);
    } else if (VL_HasClass(window, WC_TREEVIEWW)) {
        if (back != CLR_NONE)
            SendMessageW(window, TVM_SETBKCOLOR, 0, back);
        if (text != CLR_NONE)
            SendMessageW(window, TVM_SETTEXTCOLOR, 0, text);
    } else if (VL_HasClass(window, PROGRESS_CLASSW)) {
        if (back != CLR_NONE)
            SendMessageW(window, PBM_SETBKCOLOR, 0, back);
        if (text != CLR_NONE)
            SendMessageW(window, PBM_SETBARCOLOR, 0, text);
    }
}

// Of a rich edit, whose messages another header declares.
const UINT kSetRichBackColor = WM_USER + 67;

// With the children: some of them show what lies behind.
void repaint(HWND window)
{
    RedrawWindow(window, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// A rich edit knows no font but formats; the one that all of its text has to begin with.
LOGFONTW richFontOf(HWND edit)
{
    CHARFORMATW format = {};
    format.cbSize = sizeof(format);
    SendMessageW(edit, EM_GETCHARFORMAT, SCF_DEFAULT, (LPARAM)&format);
    LOGFONTW font = {};
    font.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(font.lfFaceName, format.szFaceName, LF_FACESIZE);
    font.lfHeight = -MulDiv(format.yHeight, VL_GetDpiForScaling(edit), 1440);
    font.lfWeight = format.dwEffects & CFE_BOLD ? FW_BOLD : FW_NORMAL;
    font.lfItalic = (format.dwEffects & CFE_ITALIC) != 0;
    font.lfUnderline = (format.dwEffects & CFE_UNDERLINE) != 0;
    font.lfStrikeOut = (format.dwEffects & CFE_STRIKEOUT) != 0;
    return font;
}

LOGFONTW logFontOf(HWND control)
{
    LOGFONTW font = {};
    HFONT current = (HFONT)SendMessageW(control, WM_GETFONT, 0, 0);
    if (!current && VL_HasClass(control, L"RICHEDIT50W"))
        return richFontOf(control);
    if (!current)
        current = (HFONT)GetStockObject(DEFAULT_GUI_FONT);
    GetObjectW(current, sizeof(font), &font);
    return font;
}

void applyFont(HWND control, const LOGFONTW &wanted)
{
    Font *font = VL_Extra<Font>(control);
    if (!font)
        return;
    const HFONT fresh = CreateFontIndirectW(&wanted);
    if (!fresh)
        return;
    SendMessageW(control, WM_SETFONT, (WPARAM)fresh, TRUE);
    if (font->handle)
        DeleteObject(font->handle);
    font->handle = fresh;
}

LONG heightOf(HWND control, int points)
{
    return -MulDiv(points, VL_GetDpiForScaling(control), 72);
}

} // namespace
} // namespace vl_window_state

VL_WindowSlot *VL_FindSlot(HWND window, const void *key)
{
    vl_window_state::State *state = vl_window_state::findState(window);
    if (!state)
        return nullptr;
    const auto found = state->slots.find(key);
    return found == state->slots.end() ? nullptr : found->second.get();
}

void VL_PutSlot(HWND window, const void *key, VL_WindowSlot *slot)
{
    std::unique_ptr<VL_WindowSlot> owned(slot);
    if (vl_window_state::State *state = vl_window_state::stateOf(window))
        state->slots[key] = std::move(owned);
}

void VL_SetTextProperty(HWND window, const wchar_t *name, const std::wstring &text)
{
    if (vl_window_state::State *state = vl_window_state::stateOf(window))
        state->texts[name] = text;
}

std::wstring VL_GetTextProperty(HWND window, const wchar_t *name)
{
    const vl_window_state::State *state = vl_window_state::findState(window);
    if (!state)
        return std::wstring();
    const auto found = state->texts.find(name);
    return found == state->texts.end() ? std::wstring() : found->second;
}

int VL_GetNumberProperty(HWND window, const wchar_t *name, int fallback)
{
    // A property of 0 looks like none; what is 0 by design is left unset.
    const HANDLE value = GetPropW(window, name);
    return value ? (int)(intptr_t)value : fallback;
}

HWND VL_OwnerWindow(HWND control)
{
    return GetAncestor(control, GA_ROOT);
}

void VL_NotifyOwner(HWND control, int code, LPARAM data)
{
    const HWND owner = VL_OwnerWindow(control);
    if (owner && owner != control)
        SendMessageW(owner, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code), data);
}

bool VL_PassToOwner(HWND container, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    switch (message) {
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_HSCROLL:
    case WM_VSCROLL:
    case WM_DRAWITEM:
    case WM_MEASUREITEM:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC:
        break;
    default:
        return false;
    }
    const HWND owner = VL_OwnerWindow(container);
    if (!owner || owner == container)
        return false;
    *result = SendMessageW(owner, message, wParam, lParam);
    return true;
}

bool VL_ReflectMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result)
{
    HWND control = NULL;
    switch (message) {
    case WM_DRAWITEM:
        // A menu's item is drawn for the window itself.
        if (lParam && wParam)
            control = ((const DRAWITEMSTRUCT *)lParam)->hwndItem;
        break;
    case WM_NOTIFY:
        if (lParam)
            control = ((const NMHDR *)lParam)->hwndFrom;
        break;
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORSTATIC:
        control = (HWND)lParam;
        break;
    default:
        break;
    }
    if (!control || !IsWindow(control))
        return false;
    *result = SendMessageW(control, VL_REFLECT + message, wParam, lParam);
    return *result != 0;
}

POINT VL_CursorIn(HWND window)
{
    POINT place = {};
    GetCursorPos(&place);
    ScreenToClient(window, &place);
    place.x = VL_UnscaleX(window, (int)place.x);
    place.y = VL_UnscaleY(window, (int)place.y);
    return place;
}

bool VL_HasClass(HWND window, const wchar_t *name)
{
    wchar_t own[64] = L"";
    GetClassNameW(window, own, 64);
    return _wcsicmp(own, name) == 0;
}

void VL_SetBgColor(HWND window, int color)
{
    using namespace vl_window_state;
    Colors *colors = VL_Extra<Colors>(window);
    if (!colors)
        return;
    colors->hasBack = true;
    colors->back = (COLORREF)color & 0xFFFFFF;
    if (colors->brush)
        DeleteObject(colors->brush);
    colors->brush = CreateSolidBrush(colors->back);
    tellClass(window, colors->back, CLR_NONE);
    if (VL_HasClass(window, L"RICHEDIT50W"))
        SendMessageW(window, kSetRichBackColor, 0, colors->back);
    repaint(window);
}

int VL_GetBgColor(HWND window)
{
    const vl_window_state::Colors *colors = VL_FindExtra<vl_window_state::Colors>(window);
    if (colors && colors->hasBack)
        return (int)colors->back;
    const bool edit = VL_HasClass(window, L"EDIT") || VL_HasClass(window, L"RICHEDIT50W") ||
                      VL_HasClass(window, L"LISTBOX") || VL_HasClass(window, L"COMBOBOX") ||
                      VL_HasClass(window, WC_LISTVIEWW) || VL_HasClass(window, WC_TREEVIEWW) ||
                      VL_HasClass(window, L"VL_VirtualTextBox");
    return (int)GetSysColor(edit ? COLOR_WINDOW : COLOR_BTNFACE);
}

void VL_SetTextColor(HWND window, int color)
{
    using namespace vl_window_state;
    Colors *colors = VL_Extra<Colors>(window);
    if (!colors)
        return;
    colors->hasText = true;
    colors->text = (COLORREF)color & 0xFFFFFF;
    tellClass(window, CLR_NONE, colors->text);
    // Rich edits keep the colour with the text; whoever knows their formats answers this.
    SendMessageW(window, VL_REFLECT + WM_CTLCOLOREDIT, 0, (LPARAM)colors->text);
    repaint(window);
}

int VL_GetTextColor(HWND window)
{
    const vl_window_state::Colors *colors = VL_FindExtra<vl_window_state::Colors>(window);
    return colors && colors->hasText ? (int)colors->text : (int)GetSysColor(COLOR_WINDOWTEXT);
}

bool VL_HasBgColor(HWND window)
{
    const vl_window_state::Colors *colors = VL_FindExtra<vl_window_state::Colors>(window);
    return colors && colors->hasBack;
}

bool VL_HasTextColor(HWND window)
{
    const vl_window_state::Colors *colors = VL_FindExtra<vl_window_state::Colors>(window);
    return colors && colors->hasText;
}

HBRUSH VL_BgBrush(HWND window)
{
    const vl_window_state::Colors *colors = VL_FindExtra<vl_window_state::Colors>(window);
    return colors ? colors->brush : NULL;
}

HFONT VL_OwnFont(HWND window, HFONT font)
{
    using namespace vl_window_state;
    Font *own = VL_Extra<Font>(window);
    LOGFONTW wanted = {};
    if (!own || !GetObjectW(font, sizeof(wanted), &wanted))
        return font;
    DeleteObject(font);
    wanted.lfHeight = MulDiv(wanted.lfHeight, VL_GetDpiForScaling(window), 96);
    if (own->handle)
        DeleteObject(own->handle);
    own->handle = CreateFontIndirectW(&wanted);
    return own->handle;
}

void VL_SetControlFont(HWND control, const std::wstring &name, int size, bool bold, bool italic,
                       bool underline, bool strikeOut)
{
    LOGFONTW font = vl_window_state::logFontOf(control);
    if (!name.empty())
        lstrcpynW(font.lfFaceName, name.c_str(), LF_FACESIZE);
    if (size > 0)
        font.lfHeight = vl_window_state::heightOf(control, size);
    font.lfWeight = bold ? FW_BOLD : FW_NORMAL;
    font.lfItalic = italic;
    font.lfUnderline = underline;
    font.lfStrikeOut = strikeOut;
    vl_window_state::applyFont(control, font);
}

void VL_SetFontName(HWND control, const std::wstring &name)
{
    LOGFONTW font = vl_window_state::logFontOf(control);
    lstrcpynW(font.lfFaceName, name.c_str(), LF_FACESIZE);
    vl_window_state::applyFont(control, font);
}

std::wstring VL_GetFontName(HWND control)
{
    return vl_window_state::logFontOf(control).lfFaceName;
}

void VL_SetFontSize(HWND control, int size)
{
    if (size <= 0 || size > 1000)
        return;
    LOGFONTW font = vl_window_state::logFontOf(control);
    font.lfHeight = vl_window_state::heightOf(control, size);
    vl_window_state::applyFont(control, font);
}

int VL_GetFontSize(HWND control)
{
    const LONG height = vl_window_state::logFontOf(control).lfHeight;
    return MulDiv(height < 0 ? -height : height, 72, VL_GetDpiForScaling(control));
}

void VL_SetFontBold(HWND control, bool on)
{
    LOGFONTW font = vl_window_state::logFontOf(control);
    font.lfWeight = on ? FW_BOLD : FW_NORMAL;
    vl_window_state::applyFont(control, font);
}

bool VL_IsFontBold(HWND control)
{
    return vl_window_state::logFontOf(control).lfWeight >= FW_BOLD;
}

void VL_SetFontItalic(HWND control, bool on)
{
    LOGFONTW font = vl_window_state::logFontOf(control);
    font.lfItalic = on;
    vl_window_state::applyFont(control, font);
}

bool VL_IsFontItalic(HWND control)
{
    return vl_window_state::logFontOf(control).lfItalic != 0;
}

void VL_SetFontUnderline(HWND control, bool on)
{
    LOGFONTW font = vl_window_state::logFontOf(control);
    font.lfUnderline = on;
    vl_window_state::applyFont(control, font);
}

void VL_SetFontStrikeOut(HWND control, bool on)
{
    LOGFONTW font = vl_window_state::logFontOf(control);
    font.lfStrikeOut = on;
    vl_window_state::applyFont(control, font);
}
