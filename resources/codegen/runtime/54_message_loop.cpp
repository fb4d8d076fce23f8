// The message loop and the keyboard in the program's windows.
#include "54_message_loop.h"

namespace vl_message_loop {
namespace {

// Keys that move the focus or press a button, so that the window that has the focus does not get
// them.
bool isDialogKey(WPARAM key)
{
    switch (key) {
    case VK_TAB:
    case VK_RETURN:
    case VK_ESCAPE:
    case VK_EXECUTE:
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
        return true;
    default:
        return false;
    }
}

bool isMultiLineEdit(HWND window)
{
    wchar_t name[16] = L"";
    GetClassNameW(window, name, 16);
    const bool isEdit = _wcsicmp(name, L"EDIT") == 0 || _wcsnicmp(name, L"RICHEDIT", 8) == 0;
    return isEdit && (GetWindowLongW(window, GWL_STYLE) & ES_MULTILINE);
}

// A multi-line edit that knows of a dialog posts its parent WM_CLOSE for Esc.
void dispatchEscape(const MSG &message, HWND root)
{
    const HWND parent = GetParent(message.hwnd);
    MSG close;
    const bool waits = PeekMessageW(&close, parent, WM_CLOSE, WM_CLOSE, PM_NOREMOVE) != FALSE;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    if (!waits && IsWindow(parent) && PeekMessageW(&close, parent, WM_CLOSE, WM_CLOSE, PM_REMOVE) &&
        close.lParam == VL_CLOSE_BY_PROGRAM)
        PostMessageW(parent, WM_CLOSE, close.wParam, close.lParam);
    if (IsWindow(root))
        SendMessageW(root, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), 0);
}

} // namespace
} // namespace vl_message_loop

void VL_KeyPreview(const MSG &message)
{
    if (message.message != WM_KEYDOWN && message.message != WM_KEYUP)
        return;
    const HWND root = GetAncestor(message.hwnd, GA_ROOT);
    if (!root)
        return;
    const bool isChild = root != message.hwnd;
    const bool isLost = message.message == WM_KEYDOWN && GetWindow(root, GW_CHILD) &&
                        vl_message_loop::isDialogKey(message.wParam);
    if (isChild || isLost)
        SendMessageW(root, VL_WM_KEY_PREVIEW, message.wParam, message.message);
}

bool VL_FilterMessage(MSG *message)
{
    if (message->message < WM_KEYFIRST || message->message > WM_KEYLAST || !message->hwnd)
        return false;
    const HWND root = GetAncestor(message->hwnd, GA_ROOT);
    VL_KeyPreview(*message);
    // The preview may have closed the window or moved the focus.
    if (!IsWindow(message->hwnd))
        return true;
    if (!root || !GetWindow(root, GW_CHILD))
        return false;
    if (message->message == WM_KEYDOWN && message->wParam == VK_ESCAPE &&
        vl_message_loop::isMultiLineEdit(message->hwnd)) {
        vl_message_loop::dispatchEscape(*message, root);
        return true;
    }
    return IsDialogMessageW(root, message) != FALSE;
}

int VL_RunMessageLoop()
{
    MSG message;
    for (;;) {
        const BOOL got = GetMessageW(&message, NULL, 0, 0);
        if (got == 0)
            return (int)message.wParam;
        if (got < 0)
            return 1;
        if (VL_FilterMessage(&message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}
