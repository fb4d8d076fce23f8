// Balloons that point to a control.
#include "37_balloon_tips.h"

#include <algorithm>

namespace vl_balloon_tips {
namespace {

const UINT_PTR SubclassId = 0x564C37;
const UINT_PTR TimerId = 1;
const UINT CheckMilliseconds = 200;
const DWORD ShownMilliseconds = 10000;
const size_t LongestTitle = 99;
const size_t LongestText = 2000;

// The balloon of a control; there is a window only while it shows.
struct Balloon
{
    HWND tip = NULL;
    DWORD shownAt = 0;
    RECT place = {};

    void close()
    {
        const HWND old = tip;
        tip = NULL;
        if (old)
            DestroyWindow(old);
    }
    ~Balloon() { close(); }
};

TTTOOLINFOW toolOf(HWND control)
{
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_TRACK;
    tool.hwnd = control;
    tool.uId = (UINT_PTR)control;
    return tool;
}

// Runs while a balloon shows: it goes when its control moved or its time is over.
void CALLBACK check(HWND tip, UINT, UINT_PTR, DWORD now)
{
    const HWND control = (HWND)GetPropW(tip, L"VL_BalloonControl");
    Balloon *balloon = VL_FindExtra<Balloon>(control);
    if (!balloon || balloon->tip != tip)
        return;
    RECT place = {};
    GetWindowRect(control, &place);
    if (now - balloon->shownAt >= ShownMilliseconds || !EqualRect(&place, &balloon->place) ||
        !IsWindowVisible(control))
        balloon->close();
}

LRESULT CALLBACK hideOnInput(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR)
{
    switch (message) {
    case WM_CHAR:
    case WM_KILLFOCUS:
    case WM_LBUTTONDOWN:
        VL_Edit_HideBalloonTip(control);
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(control, hideOnInput, SubclassId);
        break;
    default:
        break;
    }
    return DefSubclassProc(control, message, wParam, lParam);
}

HWND createTip(HWND control, const std::wstring &title, std::wstring text, int icon)
{
    const HWND owner = VL_OwnerWindow(control);
    const HWND tip =
        CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, NULL,
                        WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON | TTS_CLOSE, 0, 0, 0,
                        0, owner, NULL, g_hInstance, NULL);
    if (!tip)
        return NULL;
    SendMessageW(tip, TTM_SETMAXTIPWIDTH, 0, VL_ScaleX(control, 320));
    TTTOOLINFOW tool = toolOf(control);
    tool.lpszText = &text[0];
    SendMessageW(tip, TTM_ADDTOOLW, 0, (LPARAM)&tool);
    const std::wstring cut = title.substr(0, LongestTitle);
    SendMessageW(tip, TTM_SETTITLEW, (WPARAM)icon, (LPARAM)cut.c_str());
    SetPropW(tip, L"VL_BalloonControl", (HANDLE)control);
    return tip;
}

} // namespace
} // namespace vl_balloon_tips

void VL_Edit_ShowBalloonTip(HWND control, const std::wstring &title, const std::wstring &text,
                            int icon)
{
    using namespace vl_balloon_tips;
    VL_Edit_HideBalloonTip(control);
    Balloon *balloon = text.empty() ? nullptr : VL_Extra<Balloon>(control);
    if (!balloon)
        return;
    const std::wstring shown = VL_WithCrLf(text.substr(0, LongestText));
    balloon->tip = createTip(control, title, shown, icon >= 0 && icon <= 3 ? icon : 0);
    if (!balloon->tip)
        return;
    SetWindowSubclass(control, hideOnInput, SubclassId, 0);
    GetWindowRect(control, &balloon->place);
    balloon->shownAt = GetTickCount();
    const RECT &place = balloon->place;
    const int inset = (std::min)((int)(place.right - place.left) / 2, VL_ScaleX(control, 16));
    SendMessageW(balloon->tip, TTM_TRACKPOSITION, 0,
                 MAKELPARAM(place.left + inset, place.bottom - VL_ScaleY(control, 2)));
    TTTOOLINFOW tool = toolOf(control);
    SendMessageW(balloon->tip, TTM_TRACKACTIVATE, TRUE, (LPARAM)&tool);
    SetTimer(balloon->tip, TimerId, CheckMilliseconds, check);
}

void VL_Edit_HideBalloonTip(HWND control)
{
    using namespace vl_balloon_tips;
    if (Balloon *balloon = VL_FindExtra<Balloon>(control)) {
        RemoveWindowSubclass(control, hideOnInput, SubclassId);
        balloon->close();
    }
}

bool VL_BalloonTip_Show(HWND control, const std::wstring &text, const std::wstring &title,
                        intptr_t icon)
{
    if (!IsWindow(control) || text.empty())
        return false;
    VL_Edit_ShowBalloonTip(control, title, text, (int)icon);
    const vl_balloon_tips::Balloon *balloon = VL_FindExtra<vl_balloon_tips::Balloon>(control);
    return balloon && balloon->tip;
}

bool VL_BalloonTip_Show(intptr_t control, const std::wstring &text, const std::wstring &title,
                        intptr_t icon)
{
    return VL_BalloonTip_Show((HWND)control, text, title, icon);
}

bool VL_BalloonTip_Hide(HWND control)
{
    const vl_balloon_tips::Balloon *balloon = VL_FindExtra<vl_balloon_tips::Balloon>(control);
    const bool shown = balloon && balloon->tip;
    VL_Edit_HideBalloonTip(control);
    return shown;
}

bool VL_BalloonTip_Hide(intptr_t control)
{
    return VL_BalloonTip_Hide((HWND)control);
}
