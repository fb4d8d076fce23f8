// The window class of the large text box.
#include "93_text_window.h"

#include <imm.h>

#include <new>

namespace vl_text_window {
namespace {

const wchar_t kClassName[] = L"VL_VirtualTextBox";
const int kTextChanged = 1;
const int kScrolled = 0x0217;
const UINT kDpiChangedAfterParent = 0x02E3;
// wParam: the address of kCallMark, lParam: a std::function<void(VL_TextMessages &)> *.
const UINT kCall = WM_APP + 0x1880;
const char kCallMark = 0;

bool isHeld(int key)
{
    return GetKeyState(key) < 0;
}

POINT pointOf(LPARAM lParam)
{
    return {(short)LOWORD(lParam), (short)HIWORD(lParam)};
}

class Box : public VL_TextMessages
{
public:
    explicit Box(HWND window) : VL_TextMessages(window) {}
    LRESULT message(UINT message, WPARAM wParam, LPARAM lParam);

private:
    bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);
    bool onWindow(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);
    bool onMouse(UINT message, WPARAM wParam, LPARAM lParam);
    bool onKeyboard(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result);
    bool ownerShowsMenu(LPARAM lParam);
    void onContextMenu(LPARAM lParam);
    void paint();
    void placeComposition();
    void tell();

    // Messages that are being handled, one within the other.
    int m_depth = 0;
    bool m_isTelling = false;
    bool m_scrolledMeanwhile = false;
};

// The owner is told when all is done: its handler may do anything with the control, or end it.
LRESULT Box::message(UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND window = view().window();
    LRESULT result = 0;
    bool handled = true;
    // A menu runs the message loop: what comes meanwhile must be shown at once.
    const bool isMenu = message == WM_CONTEXTMENU && m_depth == 0;
    m_depth += isMenu ? 0 : 1;
    try {
        if (isMenu)
            onContextMenu(lParam);
        else
            handled = handle(message, wParam, lParam, result);
    } catch (const std::bad_alloc &) {
        result = 0;
    }
    m_depth -= isMenu ? 0 : 1;
    if (!handled)
        result = DefWindowProcW(window, message, wParam, lParam);
    if (m_depth == 0 && view().window()) {
        ++m_depth;
        view().settle();
        --m_depth;
        tell();
    }
    return result;
}

void Box::tell()
{
    bool changed = false;
    bool scrolled = false;
    view().takeNews(changed, scrolled);
    // A handler that changes the text is not told of it: it would never end.
    if (m_isTelling) {
        m_scrolledMeanwhile = m_scrolledMeanwhile || scrolled;
        return;
    }
    m_isTelling = true;
    const HWND window = view().window();
    m_scrolledMeanwhile = scrolled;
    if (changed)
        VL_NotifyOwner(window, kTextChanged, (LPARAM)window);
    if (m_scrolledMeanwhile && view().window())
        VL_NotifyOwner(window, kScrolled, (LPARAM)window);
    m_isTelling = false;
}

bool Box::handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result)
{
    return onWindow(message, wParam, lParam, result) || onMouse(message, wParam, lParam) ||
           onKeyboard(message, wParam, lParam, result) ||
           onRequest(message, wParam, lParam, result);
}

void Box::paint()
{
    PAINTSTRUCT paint;
    const HDC context = BeginPaint(view().window(), &paint);
    if (!context)
        return;
    view().paint(context, paint.rcPaint);
    EndPaint(view().window(), &paint);
}

bool Box::onWindow(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result)
{
    switch (message) {
    case WM_CREATE:
        setText(((const CREATESTRUCTW *)lParam)->lpszName);
        return true;
    case WM_PAINT:
        paint();
        return true;
    case WM_PRINTCLIENT: {
        RECT client = {};
        GetClientRect(view().window(), &client);
        view().paint((HDC)wParam, client);
        return true;
    }
    case WM_ERASEBKGND:
        result = 1;
        return true;
    case VTB_WM_UPDATE_BARS:
        view().updateBars();
        return true;
    case kCall:
        if (wParam != (WPARAM)&kCallMark)
            return false;
        (*(const std::function<void(VL_TextMessages &)> *)lParam)(*this);
        result = TRUE;
        return true;
    case WM_SIZE:
        view().setDirty();
        view().invalidate();
        return true;
    case WM_SETFONT:
        view().setFont((HFONT)wParam);
        return true;
    case WM_GETFONT:
        result = (LRESULT)view().font();
        return true;
    case kDpiChangedAfterParent:
        view().setFont(view().font());
        return true;
    case WM_ENABLE:
    case WM_SYSCOLORCHANGE:
    case WM_THEMECHANGED:
        view().invalidate();
        return false;
    case WM_VSCROLL:
    case WM_HSCROLL:
        view().onScroll(message == WM_VSCROLL ? SB_VERT : SB_HORZ, wParam);
        return true;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        view().focusChanged(message == WM_SETFOCUS);
        placeComposition();
        return true;
    default:
        return false;
    }
}

bool Box::onMouse(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        input().mouseDown(pointOf(lParam), (wParam & MK_SHIFT) != 0, message == WM_LBUTTONDBLCLK);
        return true;
    case WM_RBUTTONDOWN:
        SetFocus(view().window());
        return false;
    case WM_MOUSEMOVE:
        input().mouseMove(pointOf(lParam));
        return true;
    case WM_LBUTTONUP:
    case WM_CAPTURECHANGED:
    case WM_CANCELMODE:
        input().mouseUp();
        return message != WM_CANCELMODE;
    case WM_TIMER:
        input().timer();
        return true;
    case WM_MOUSEWHEEL:
        if (wParam & MK_CONTROL)
            return true;
        if (wParam & MK_SHIFT)
            input().wheel(-GET_WHEEL_DELTA_WPARAM(wParam), true);
        else
            input().wheel(GET_WHEEL_DELTA_WPARAM(wParam), false);
        return true;
    case WM_MOUSEHWHEEL:
        input().wheel(GET_WHEEL_DELTA_WPARAM(wParam), true);
        return true;
    case WM_SETCURSOR: {
        POINT point = {};
        GetCursorPos(&point);
        ScreenToClient(view().window(), &point);
        if (LOWORD(lParam) != HTCLIENT || !view().isOverMargin(point))
            return false;
        SetCursor(LoadCursor(NULL, IDC_ARROW));
        return true;
    }
    default:
        return false;
    }
}

// What an input method is composing shows at the caret, and so does its list of candidates.
void Box::placeComposition()
{
    const HIMC context = ImmGetContext(view().window());
    if (!context)
        return;
    POINT caret;
    view().caretPoint(caret);
    COMPOSITIONFORM composition = {};
    composition.dwStyle = CFS_POINT;
    composition.ptCurrentPos = caret;
    ImmSetCompositionWindow(context, &composition);
    CANDIDATEFORM candidates = {};
    candidates.dwStyle = CFS_EXCLUDE;
    candidates.ptCurrentPos = caret;
    candidates.rcArea = {caret.x, caret.y, caret.x + 1, caret.y + view().lineHeight()};
    ImmSetCandidateWindow(context, &candidates);
    LOGFONTW font = {};
    if (GetObjectW(view().font(), sizeof(font), &font))
        ImmSetCompositionFontW(context, &font);
    ImmReleaseContext(view().window(), context);
}

bool Box::onKeyboard(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result)
{
    const bool shift = isHeld(VK_SHIFT);
    // Ctrl with Alt types characters on many keyboards.
    const bool control = isHeld(VK_CONTROL) && !isHeld(VK_MENU);
    switch (message) {
    case WM_GETDLGCODE: {
        const MSG *key = (const MSG *)lParam;
        const bool isTab = key && key->message == WM_KEYDOWN && key->wParam == VK_TAB;
        result = DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_WANTTAB | DLGC_WANTALLKEYS;
        if (isTab && input().isReadOnly())
            result = DLGC_WANTARROWS | DLGC_WANTCHARS;
        return true;
    }
    case WM_KEYDOWN:
        input().keyDown(wParam, shift, control);
        return true;
    case WM_CHAR:
        input().character((wchar_t)wParam, shift, control);
        return true;
    case WM_IME_SETCONTEXT:
    case WM_IME_STARTCOMPOSITION:
    case WM_IME_COMPOSITION:
        placeComposition();
        return false;
    default:
        return false;
    }
}

// Notes that the owner shows a menu of its own.
LRESULT CALLBACK watchMenu(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                           DWORD_PTR data)
{
    if (message == WM_ENTERMENULOOP)
        *(bool *)data = true;
    return DefSubclassProc(window, message, wParam, lParam);
}

// Offers the click to the owner, as every control does.
bool Box::ownerShowsMenu(LPARAM lParam)
{
    const HWND owner = VL_OwnerWindow(view().window());
    bool shows = false;
    SetWindowSubclass(owner, watchMenu, (UINT_PTR)this, (DWORD_PTR)&shows);
    DefWindowProcW(view().window(), WM_CONTEXTMENU, (WPARAM)view().window(), lParam);
    RemoveWindowSubclass(owner, watchMenu, (UINT_PTR)this);
    return shows;
}

void Box::onContextMenu(LPARAM lParam)
{
    if (ownerShowsMenu(lParam) || !view().window())
        return;
    const HWND window = view().window();
    POINT point = pointOf(lParam);
    if (lParam == -1) {
        view().caretPoint(point);
        point.y += view().lineHeight();
        ClientToScreen(window, &point);
    }
    const VL_TextEditing &editing = view().editing();
    const bool writable = !input().isReadOnly();
    const bool selected = editing.hasSelection();
    const bool pastes = IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
    typedef void (VL_TextInput::*Action)();
    const struct
    {
        const wchar_t *text;
        bool enabled;
        Action action;
    } items[] = {
        {L"\u64A4\u9500(&U)\tCtrl+Z", writable && editing.canUndo(), &VL_TextInput::undo},
        {L"\u91CD\u505A(&R)\tCtrl+Y", writable && editing.canRedo(), &VL_TextInput::redo},
        {nullptr, false, nullptr},
        {L"\u526A\u5207(&T)\tCtrl+X", writable && selected, &VL_TextInput::cut},
        {L"\u590D\u5236(&C)\tCtrl+C", selected, &VL_TextInput::copy},
        {L"\u7C98\u8D34(&P)\tCtrl+V", writable && pastes, &VL_TextInput::paste},
        {L"\u5220\u9664(&D)\tDel", writable && selected, &VL_TextInput::clear},
        {nullptr, false, nullptr},
        {L"\u5168\u9009(&A)\tCtrl+A", data().length() > 0, &VL_TextInput::selectAll},
    };
    const HMENU menu = CreatePopupMenu();
    UINT_PTR id = 0;
    for (const auto &item : items)
        AppendMenuW(menu,
                    !item.text     ? MF_SEPARATOR
                    : item.enabled ? MF_STRING
                                   : MF_STRING | MF_GRAYED,
                    ++id, item.text);
    const int chosen = TrackPopupMenu(menu, TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, point.x,
                                      point.y, 0, window, NULL);
    DestroyMenu(menu);
    if (chosen > 0 && items[chosen - 1].action && view().window())
        (input().*items[chosen - 1].action)();
}

// Messages within messages may end the window; its record lives until the outermost is done.
typedef std::shared_ptr<Box> BoxPointer;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    BoxPointer *held = (BoxPointer *)GetWindowLongPtrW(window, 0);
    if (message == WM_NCCREATE && !held) {
        held = new BoxPointer(std::make_shared<Box>(window));
        SetWindowLongPtrW(window, 0, (LONG_PTR)held);
    }
    if (!held)
        return DefWindowProcW(window, message, wParam, lParam);
    const BoxPointer box = *held;
    if (message == WM_NCDESTROY) {
        box->view().windowGone();
        SetWindowLongPtrW(window, 0, 0);
        delete held;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return box->message(message, wParam, lParam);
}

bool registerClass()
{
    WNDCLASSEXW description = {};
    description.cbSize = sizeof(description);
    description.style = CS_DBLCLKS;
    description.lpfnWndProc = procedure;
    description.cbWndExtra = sizeof(BoxPointer *);
    description.hInstance = g_hInstance;
    description.hCursor = LoadCursor(NULL, IDC_IBEAM);
    description.lpszClassName = kClassName;
    return RegisterClassExW(&description) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

} // namespace
} // namespace vl_text_window

const wchar_t *VTB_WindowClass()
{
    static const bool registered = vl_text_window::registerClass();
    return registered ? vl_text_window::kClassName : NULL;
}

bool VTB_Call(HWND control, const std::function<void(VL_TextMessages &)> &action)
{
    using namespace vl_text_window;
    DWORD process = 0;
    GetWindowThreadProcessId(control, &process);
    return process == GetCurrentProcessId() && VL_HasClass(control, kClassName) &&
           SendMessageW(control, kCall, (WPARAM)&kCallMark, (LPARAM)&action) != 0;
}
