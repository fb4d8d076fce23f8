// Tool tips of controls.
#include "35_tooltips.h"
#include "35_control_text.h"

namespace vl_tooltips {
namespace {

const UINT_PTR SubclassId = 0x564C35;
// More would not fit on a screen.
const size_t LongestTip = 1000;

// The tool tip window that all controls of a window share.
struct TipWindow
{
    HWND handle = NULL;
};

HWND tipWindowOf(HWND control)
{
    const HWND owner = VL_OwnerWindow(control);
    TipWindow *tip = VL_Extra<TipWindow>(owner);
    if (!tip)
        return NULL;
    if (tip->handle && IsWindow(tip->handle))
        return tip->handle;
    // Being owned it is destroyed with the window.
    tip->handle = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, NULL,
                                  WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0, owner, NULL,
                                  g_hInstance, NULL);
    if (tip->handle) {
        // A greatest width is what makes it break lines.
        SendMessageW(tip->handle, TTM_SETMAXTIPWIDTH, 0, VL_ScaleX(owner, 480));
        SendMessageW(tip->handle, TTM_SETDELAYTIME, TTDT_AUTOPOP, 30000);
    }
    return tip->handle;
}

// Where the control stands in its parent; empty while it is hidden.
RECT placeInParent(HWND control)
{
    RECT place = {};
    if (!(GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE))
        return place;
    GetWindowRect(control, &place);
    MapWindowPoints(NULL, GetParent(control), (POINT *)&place, 2);
    return place;
}

TTTOOLINFOW toolOf(HWND window, HWND child)
{
    TTTOOLINFOW tool = {};
    // The size of the oldest version: newer ones take it too.
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = window;
    tool.uId = (UINT_PTR)child;
    return tool;
}

// A control that is disabled, and a static, leaves the mouse to its parent: a second tool watches
// the control's place there.
TTTOOLINFOW placeToolOf(HWND control)
{
    TTTOOLINFOW tool = toolOf(GetParent(control), control);
    tool.uFlags = TTF_SUBCLASS;
    tool.rect = placeInParent(control);
    return tool;
}

// The edit of a combo box catches the mouse itself.
HWND innerEdit(HWND control)
{
    if (!VL_HasClass(control, WC_COMBOBOXW))
        return NULL;
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    const bool known = GetComboBoxInfo(control, &info) && info.hwndItem != control;
    return known ? info.hwndItem : NULL;
}

void removeTools(HWND control, HWND tip)
{
    TTTOOLINFOW tool = toolOf(control, control);
    SendMessageW(tip, TTM_DELTOOLW, 0, (LPARAM)&tool);
    if (const HWND inner = innerEdit(control)) {
        tool = toolOf(control, inner);
        SendMessageW(tip, TTM_DELTOOLW, 0, (LPARAM)&tool);
    }
    if (GetWindowLongW(control, GWL_STYLE) & WS_CHILD) {
        tool = placeToolOf(control);
        SendMessageW(tip, TTM_DELTOOLW, 0, (LPARAM)&tool);
    }
}

void addTools(HWND control, HWND tip, std::wstring text)
{
    if (text.size() > LongestTip)
        text = text.substr(0, LongestTip) + L"\u2026";
    TTTOOLINFOW tool = toolOf(control, control);
    tool.lpszText = &text[0];
    SendMessageW(tip, TTM_ADDTOOLW, 0, (LPARAM)&tool);
    if (const HWND inner = innerEdit(control)) {
        tool = toolOf(control, inner);
        tool.lpszText = &text[0];
        SendMessageW(tip, TTM_ADDTOOLW, 0, (LPARAM)&tool);
    }
    if (GetWindowLongW(control, GWL_STYLE) & WS_CHILD) {
        tool = placeToolOf(control);
        tool.lpszText = &text[0];
        SendMessageW(tip, TTM_ADDTOOLW, 0, (LPARAM)&tool);
    }
}

LRESULT CALLBACK tipSubclass(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR data)
{
    const HWND tip = (HWND)data;
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(control, tipSubclass, SubclassId);
        removeTools(control, tip);
        return DefSubclassProc(control, message, wParam, lParam);
    }
    const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
    if (message == WM_WINDOWPOSCHANGED && (GetWindowLongW(control, GWL_STYLE) & WS_CHILD)) {
        TTTOOLINFOW tool = placeToolOf(control);
        SendMessageW(tip, TTM_NEWTOOLRECTW, 0, (LPARAM)&tool);
    }
    return result;
}

} // namespace
} // namespace vl_tooltips

void VL_SetTooltip(HWND control, const std::wstring &text)
{
    using namespace vl_tooltips;
    const std::wstring old = VL_GetTooltip(control);
    if (!IsWindow(control) || text == old)
        return;
    VL_SetTextProperty(control, L"VL_Tooltip", text);
    const HWND tip = tipWindowOf(control);
    if (!tip)
        return;
    if (!old.empty()) {
        removeTools(control, tip);
        RemoveWindowSubclass(control, tipSubclass, SubclassId);
    }
    if (!text.empty()) {
        addTools(control, tip, VL_WithCrLf(text));
        SetWindowSubclass(control, tipSubclass, SubclassId, (DWORD_PTR)tip);
    }
}

std::wstring VL_GetTooltip(HWND control)
{
    return VL_GetTextProperty(control, L"VL_Tooltip");
}
