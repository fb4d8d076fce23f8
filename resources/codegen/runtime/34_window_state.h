// What the runtime keeps about windows and controls: state freed with the window, messages that
// controls and their window exchange, colours and fonts.
#pragma once
#include "29_scaling.h"
#include "32_item_access.h"

// A slot of a window's state: made on first use, destroyed with the window.
struct VL_WindowSlot
{
    virtual ~VL_WindowSlot() = default;
};
// The slot under `key` of that window; NULL when there is none, or no such window.
VL_WindowSlot *VL_FindSlot(HWND window, const void *key);
// Takes ownership; a slot that stands there is destroyed. Frees `slot` when there is no such
// window.
void VL_PutSlot(HWND window, const void *key, VL_WindowSlot *slot);

template <typename T>
struct VL_SlotOf : VL_WindowSlot
{
    static const void *key()
    {
        static const char place = 0;
        return &place;
    }
    T value;
};

// A section's own record about a window, one for each type T. NULL when there is none yet.
template <typename T>
T *VL_FindExtra(HWND window)
{
    VL_WindowSlot *slot = VL_FindSlot(window, VL_SlotOf<T>::key());
    return slot ? &static_cast<VL_SlotOf<T> *>(slot)->value : nullptr;
}
// The same, made when there is none; NULL only for something that is no window.
template <typename T>
T *VL_Extra(HWND window)
{
    if (T *found = VL_FindExtra<T>(window))
        return found;
    VL_PutSlot(window, VL_SlotOf<T>::key(), new VL_SlotOf<T>());
    return VL_FindExtra<T>(window);
}

// A text under a name such as L"VL_TextFormat"; empty without one. Numbers travel as plain window
// properties: SetPropW(h, L"VL_...", (HANDLE)(intptr_t)value).
void VL_SetTextProperty(HWND window, const wchar_t *name, const std::wstring &text);
std::wstring VL_GetTextProperty(HWND window, const wchar_t *name);
int VL_GetNumberProperty(HWND window, const wchar_t *name, int fallback = 0);

// The program's window that a control belongs to, past panels and pages; the window itself for a
// window.
HWND VL_OwnerWindow(HWND control);
// Sends the owner WM_COMMAND with the control's number and `code`.
void VL_NotifyOwner(HWND control, int code, LPARAM data = 0);
// A window sends the drawing and colour messages it gets for a control on to that control, as
// VL_REFLECT + the message. The control answers 0 when it leaves them alone.
const UINT VL_REFLECT = WM_APP + 0x2000;
// Does so for WM_DRAWITEM, WM_NOTIFY and WM_CTLCOLOR*; false when the control left it alone.
bool VL_ReflectMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);
// Passes a message that a container (a tab page, a panel) got for one of its controls to the owner.
// Only WM_COMMAND, WM_NOTIFY, WM_HSCROLL, WM_VSCROLL, WM_DRAWITEM, WM_MEASUREITEM and WM_CTLCOLOR*
// are; `result` is the owner's answer.
bool VL_PassToOwner(HWND container, UINT message, WPARAM wParam, LPARAM lParam, LRESULT *result);
// Where the mouse is, in design pixels from the window's client corner.
POINT VL_CursorIn(HWND window);
// Whether the window's class has that name, regardless of case.
bool VL_HasClass(HWND window, const wchar_t *name);

// Colours of a control or window as 0xBBGGRR. Setting one repaints; classes that keep colours of
// their own (list and tree views, rich edits, progress bars) are told.
void VL_SetBgColor(HWND window, int color);
int VL_GetBgColor(HWND window);
void VL_SetTextColor(HWND window, int color);
int VL_GetTextColor(HWND window);
bool VL_HasBgColor(HWND window);
bool VL_HasTextColor(HWND window);
// A brush of the background colour that lives until the colour changes or the window goes; NULL
// without a colour.
HBRUSH VL_BgBrush(HWND window);

// A font that is freed with the window, or when the window takes another one this way. `font` is
// made for 96 dots per inch and replaced by one of the window's scale. Returns what to send with
// WM_SETFONT.
HFONT VL_OwnFont(HWND window, HFONT font);
// Size in points; an empty name and size 0 leave those alone.
void VL_SetControlFont(HWND control, const std::wstring &name, int size, bool bold, bool italic,
                       bool underline, bool strikeOut);
void VL_SetFontName(HWND control, const std::wstring &name);
std::wstring VL_GetFontName(HWND control);
void VL_SetFontSize(HWND control, int size);
int VL_GetFontSize(HWND control);
void VL_SetFontBold(HWND control, bool on);
bool VL_IsFontBold(HWND control);
void VL_SetFontItalic(HWND control, bool on);
bool VL_IsFontItalic(HWND control);
void VL_SetFontUnderline(HWND control, bool on);
void VL_SetFontStrikeOut(HWND control, bool on);
