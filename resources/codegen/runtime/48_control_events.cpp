// Events of controls that the system does not tell by itself: mouse, keys, focus, scrolling.
#include "48_control_events.h"

#include <richedit.h>

#include <algorithm>

namespace vl_control_events {
namespace {

const UINT_PTR SubclassId = 0x564C48;
const UINT_PTR HeldTimer = 0x564C48;
const UINT HeldMilliseconds = 100;
const int Largest = 0x3FFF;

struct Events
{
    bool isInside = false;
    bool isUntracked = false;
    // Whether the left button went down here.
    bool isPressed = false;
    int heldButton = VL_MOUSE_NONE;
    bool hasCaptured = false;
    LPARAM lastMove = -1;
    // What shows first, by line or item, and the horizontal scroll position.
    LRESULT firstVisible = 0;
    int across = 0;
};

bool isGroupBox(HWND control)
{
    return VL_HasClass(control, WC_BUTTONW) &&
           (GetWindowLongW(control, GWL_STYLE) & 0xF) == BS_GROUPBOX;
}

bool isSingleLineEdit(HWND window)
{
    return VL_HasClass(window, L"EDIT") && !(GetWindowLongW(window, GWL_STYLE) & ES_MULTILINE);
}

bool tellsClickItself(HWND control)
{
    return (VL_HasClass(control, WC_BUTTONW) && !isGroupBox(control)) ||
           VL_HasClass(control, L"VL_D2DPushButton") || VL_HasClass(control, WC_LISTVIEWW) ||
           VL_HasClass(control, WC_TREEVIEWW);
}

// These wait inside their button-down for the mouse to go up, and swallow that message.
bool swallowsButtonUp(HWND control)
{
    return VL_HasClass(control, WC_LISTVIEWW) || VL_HasClass(control, WC_TREEVIEWW);
}

LRESULT firstVisible(HWND control)
{
    if (VL_HasClass(control, L"EDIT") || VL_HasClass(control, L"RICHEDIT50W"))
        return SendMessageW(control, EM_GETFIRSTVISIBLELINE, 0, 0);
    if (VL_HasClass(control, WC_LISTBOXW))
        return SendMessageW(control, LB_GETTOPINDEX, 0, 0);
    if (VL_HasClass(control, WC_LISTVIEWW))
        return SendMessageW(control, LVM_GETTOPINDEX, 0, 0);
    if (VL_HasClass(control, WC_TREEVIEWW))
        return SendMessageW(control, TVM_GETNEXTITEM, TVGN_FIRSTVISIBLE, 0);
    return 0;
}

// The text box of our own class tells its scrolling itself.
int positionAcross(HWND control)
{
    const bool scrolls = (GetWindowLongW(control, GWL_STYLE) & WS_HSCROLL) != 0;
    return scrolls && !VL_HasClass(control, L"VL_VirtualTextBox") ? GetScrollPos(control, SB_HORZ)
                                                                  : 0;
}

// After these something else may be visible.
bool canScroll(UINT message, WPARAM wParam)
{
    switch (message) {
    case WM_VSCROLL:
    case WM_HSCROLL:
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
    case WM_KEYDOWN:
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_SETTEXT:
    case WM_PASTE:
    case EM_SCROLL:
    case EM_LINESCROLL:
    case EM_SCROLLCARET:
    case EM_REPLACESEL:
    case EM_SETSCROLLPOS:
    case LB_SETTOPINDEX:
    case LB_SETCURSEL:
    case LVM_SCROLL:
    case LVM_ENSUREVISIBLE:
    case TVM_ENSUREVISIBLE:
        return true;
    case WM_MOUSEMOVE:
        return (wParam & MK_LBUTTON) != 0;
    default:
        return false;
    }
}

Events *eventsOf(HWND control)
{
    return VL_FindExtra<Events>(control);
}

void noteScroll(HWND control)
{
    Events *events = eventsOf(control);
    if (!events)
        return;
    const LRESULT first = firstVisible(control);
    const int across = positionAcross(control);
    const bool isOther = first != events->firstVisible || across != events->across;
    events->firstVisible = first;
    events->across = across;
    if (isOther)
        VL_NotifyOwner(control, VL_EVENT_SCROLL);
}

// `place` is in client coordinates of `source`, which is the control or a part of it.
LPARAM mouseData(HWND control, HWND source, LPARAM place, int button)
{
    POINT point = {(short)LOWORD(place), (short)HIWORD(place)};
    ClientToScreen(source, &point);
    RECT window = {};
    GetWindowRect(control, &window);
    return VL_MouseData(VL_UnscaleX(control, point.x - window.left),
                        VL_UnscaleY(control, point.y - window.top), button);
}

bool isPartOf(HWND window, HWND control)
{
    return window && (window == control || IsChild(control, window));
}

bool isCursorOver(HWND control)
{
    POINT place = {};
    GetCursorPos(&place);
    return isPartOf(WindowFromPoint(place), control);
}

int buttonOf(UINT message)
{
    switch (message) {
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_RBUTTONDBLCLK:
        return VL_MOUSE_RIGHT;
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_MBUTTONDBLCLK:
        return VL_MOUSE_MIDDLE;
    default:
        return VL_MOUSE_LEFT;
    }
}

int heldOf(WPARAM keys)
{
    if (keys & MK_LBUTTON)
        return VL_MOUSE_LEFT;
    if (keys & MK_RBUTTON)
        return VL_MOUSE_RIGHT;
    return (keys & MK_MBUTTON) ? VL_MOUSE_MIDDLE : VL_MOUSE_NONE;
}

void stopHolding(HWND control, HWND source)
{
    Events *events = eventsOf(control);
    if (!events)
        return;
    KillTimer(source, HeldTimer);
    events->heldButton = VL_MOUSE_NONE;
    if (events->hasCaptured) {
        events->hasCaptured = false;
        if (GetCapture() == source)
            ReleaseCapture();
    }
}

void mouseMoved(HWND control, HWND source, WPARAM keys, LPARAM place)
{
    Events *events = eventsOf(control);
    TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, source, 0};
    // Each call puts the news of a leave off for a while.
    if (!events->isInside || events->isUntracked || source != control)
        TrackMouseEvent(&track);
    events->isUntracked = false;
    if (!events->isInside) {
        events->isInside = true;
        VL_NotifyOwner(control, VL_EVENT_MOUSE_ENTER);
    }
    const LPARAM data = mouseData(control, source, place, heldOf(keys));
    // The system repeats the last place when windows change below the pointer.
    if (!(events = eventsOf(control)) || events->lastMove == data)
        return;
    events->lastMove = data;
    VL_NotifyOwner(control, VL_EVENT_MOUSE_MOVE, data);
}

void mouseLeft(HWND control)
{
    Events *events = eventsOf(control);
    // Nobody watches for the next one.
    events->isUntracked = true;
    if (!events->isInside || isCursorOver(control))
        return;
    events->isInside = false;
    events->lastMove = -1;
    VL_NotifyOwner(control, VL_EVENT_MOUSE_LEAVE);
}

void buttonWentDown(HWND control, HWND source, UINT message, LPARAM place)
{
    Events *events = eventsOf(control);
    const int button = buttonOf(message);
    events->heldButton = button;
    if (button == VL_MOUSE_LEFT)
        events->isPressed = true;
    SetTimer(source, HeldTimer, HeldMilliseconds, NULL);
    VL_NotifyOwner(control, VL_EVENT_MOUSE_DOWN, mouseData(control, source, place, button));
}

// Without the mouse captured, letting go outside would never be heard of.
void captureIfNobodyDid(HWND control, HWND source)
{
    Events *events = eventsOf(control);
    if (events && events->heldButton != VL_MOUSE_NONE && !GetCapture()) {
        SetCapture(source);
        events->hasCaptured = true;
    }
}

void buttonWentUp(HWND control, HWND source, UINT message, LPARAM place)
{
    stopHolding(control, source);
    VL_NotifyOwner(control, VL_EVENT_MOUSE_UP,
                   mouseData(control, source, place, buttonOf(message)));
}

// After the control's own reaction to the left button: what it did may be read in the handler.
void tellClick(HWND control, HWND source, LPARAM place)
{
    Events *events = eventsOf(control);
    if (!events || !events->isPressed)
        return;
    events->isPressed = false;
    POINT point = {(short)LOWORD(place), (short)HIWORD(place)};
    ClientToScreen(source, &point);
    RECT window = {};
    GetWindowRect(control, &window);
    if (!tellsClickItself(control) && PtInRect(&window, point))
        VL_NotifyOwner(control, VL_EVENT_CLICK);
}

void heldTick(HWND control, HWND source)
{
    const Events *events = eventsOf(control);
    const int keys[] = {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON};
    if (events->heldButton == VL_MOUSE_NONE)
        return;
    const bool isSwallowed =
        swallowsButtonUp(control) && GetKeyState(keys[events->heldButton]) >= 0;
    POINT place = {};
    GetCursorPos(&place);
    ScreenToClient(source, &place);
    const LPARAM data =
        mouseData(control, source, MAKELPARAM(place.x, place.y), events->heldButton);
    if (isSwallowed)
        stopHolding(control, source);
    VL_NotifyOwner(control, isSwallowed ? VL_EVENT_MOUSE_UP : VL_EVENT_MOUSE_HELD, data);
}

// True when the message is dealt with and must not reach the control.
bool handleEnter(HWND control, HWND source, UINT message, WPARAM key)
{
    if (key != VK_RETURN || !isSingleLineEdit(source))
        return false;
    if (message == WM_CHAR)
        return true; // it would beep
    VL_NotifyOwner(control, VL_EVENT_ENTER);
    const HWND owner = VL_OwnerWindow(control);
    const LRESULT button = SendMessageW(owner, DM_GETDEFID, 0, 0);
    if (HIWORD(button) == DC_HASDEFID)
        SendMessageW(owner, WM_COMMAND, MAKEWPARAM(LOWORD(button), BN_CLICKED),
                     (LPARAM)GetDlgItem(owner, LOWORD(button)));
    return false;
}

bool wantsEnter(HWND source, LPARAM lParam)
{
    const MSG *key = (const MSG *)lParam;
    return key && isSingleLineEdit(source) && key->message == WM_KEYDOWN &&
           key->wParam == VK_RETURN;
}

// What is told ahead of the control's own reaction. True keeps the message from the control.
bool tellBefore(HWND control, HWND source, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_MOUSEMOVE:
        mouseMoved(control, source, wParam, lParam);
        return false;
    case WM_MOUSELEAVE:
        mouseLeft(control);
        return false;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDBLCLK:
        buttonWentDown(control, source, message, lParam);
        return false;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
        buttonWentUp(control, source, message, lParam);
        return false;
    case WM_CAPTURECHANGED:
        if (lParam && !isPartOf((HWND)lParam, control))
            stopHolding(control, source);
        return false;
    case WM_TIMER:
        if (wParam != HeldTimer)
            return false;
        heldTick(control, source);
        return true;
    case WM_KEYDOWN:
        VL_NotifyOwner(control, VL_EVENT_KEY_DOWN, (LPARAM)wParam);
        return handleEnter(control, source, message, wParam);
    case WM_CHAR:
        return handleEnter(control, source, message, wParam);
    case WM_KEYUP:
        VL_NotifyOwner(control, VL_EVENT_KEY_UP, (LPARAM)wParam);
        return false;
    default:
        return false;
    }
}

void tellAfter(HWND control, HWND source, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
        captureIfNobodyDid(control, source);
        break;
    case WM_LBUTTONDBLCLK:
        captureIfNobodyDid(control, source);
        VL_NotifyOwner(control, VL_EVENT_DOUBLE_CLICK);
        break;
    case WM_LBUTTONUP:
        tellClick(control, source, lParam);
        break;
    case WM_SETFOCUS:
        if (!isPartOf((HWND)wParam, control))
            VL_NotifyOwner(control, VL_EVENT_GOT_FOCUS);
        break;
    case WM_KILLFOCUS:
        if (!isPartOf((HWND)wParam, control))
            VL_NotifyOwner(control, VL_EVENT_LOST_FOCUS);
        break;
    default:
        break;
    }
    if (canScroll(message, wParam) && IsWindow(control))
        noteScroll(control);
}

// Of the control and, for a combo box, of its edit; `data` is the control.
LRESULT CALLBACK eventsSubclass(HWND source, UINT message, WPARAM wParam, LPARAM lParam,
                                UINT_PTR id, DWORD_PTR data)
{
    const HWND control = (HWND)data;
    if (message == WM_NCDESTROY || !eventsOf(control)) {
        RemoveWindowSubclass(source, eventsSubclass, id);
        return DefSubclassProc(source, message, wParam, lParam);
    }
    if (message == WM_NCHITTEST) {
        const LRESULT hit = DefSubclassProc(source, message, wParam, lParam);
        return hit == HTTRANSPARENT ? HTCLIENT : hit;
    }
    if (message == WM_GETDLGCODE) {
        const LRESULT code = DefSubclassProc(source, message, wParam, lParam);
        return wantsEnter(source, lParam) ? code | DLGC_WANTMESSAGE : code;
    }
    const bool isDone = tellBefore(control, source, message, wParam, lParam);
    // A handler may have closed the window.
    if (isDone || !IsWindow(source))
        return 0;
    const LRESULT result = DefSubclassProc(source, message, wParam, lParam);
    if (IsWindow(source) && IsWindow(control))
        tellAfter(control, source, message, wParam, lParam);
    return result;
}

void watch(HWND control, HWND source)
{
    if (isSingleLineEdit(source))
        SetPropW(source, L"VL_TellsEnter", (HANDLE)1);
    SetWindowSubclass(source, eventsSubclass, SubclassId, (DWORD_PTR)control);
}

} // namespace
} // namespace vl_control_events

LPARAM VL_MouseData(int x, int y, int button)
{
    const int largest = vl_control_events::Largest;
    const int left = (std::min)((std::max)(x, 0), largest);
    const int top = (std::min)((std::max)(y, 0), largest);
    return (LPARAM)MAKELPARAM(left, top | ((button & 3) << 14));
}

void VL_WatchControlEvents(HWND control)
{
    using namespace vl_control_events;
    Events *events = VL_Extra<Events>(control);
    if (!events)
        return;
    events->firstVisible = firstVisible(control);
    events->across = positionAcross(control);
    watch(control, control);
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    if (VL_HasClass(control, WC_COMBOBOXW) && GetComboBoxInfo(control, &info) && info.hwndItem &&
        info.hwndItem != control)
        watch(control, info.hwndItem);
}
