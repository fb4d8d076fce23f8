// Windows of this and other programs: finding, placing, showing.
#include "53_window_commands.h"

#include <algorithm>

namespace vl_window_commands {
namespace {

const wchar_t kX[] = L"\u5DE6\u8FB9";
const wchar_t kY[] = L"\u9876\u8FB9";
const wchar_t kWidth[] = L"\u5BBD\u5EA6";
const wchar_t kHeight[] = L"\u9AD8\u5EA6";

bool isOwnProcess(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId();
}

bool isOwnThread(HWND window)
{
    return GetWindowThreadProcessId(window, NULL) == GetCurrentThreadId();
}

// The stored title: no message goes out that a hanging program would leave unanswered.
std::wstring storedTitle(HWND window)
{
    wchar_t title[512] = L"";
    const int length = InternalGetWindowText(window, title, 512);
    return std::wstring(title, title + (length > 0 ? length : 0));
}

std::wstring classOf(HWND window)
{
    wchar_t name[257] = L"";
    const int length = GetClassNameW(window, name, 257);
    return std::wstring(name, name + (length > 0 ? length : 0));
}

std::wstring lowered(std::wstring text)
{
    if (!text.empty())
        CharLowerBuffW(&text[0], (DWORD)text.size());
    return text;
}

struct Search
{
    std::wstring title; // lowered unless exact
    std::wstring className;
    bool exact = false;
    std::vector<HWND> found;
};

BOOL CALLBACK matchWindow(HWND window, LPARAM data)
{
    Search &search = *(Search *)data;
    if (!search.className.empty() && lowered(classOf(window)) != search.className)
        return TRUE;
    if (!search.title.empty()) {
        const std::wstring title = storedTitle(window);
        if (search.exact ? title != search.title
                         : lowered(title).find(search.title) == std::wstring::npos)
            return TRUE;
    }
    search.found.push_back(window);
    return TRUE;
}

std::vector<HWND> search(const std::wstring &title, const std::wstring &className, HWND parent,
                         bool exact)
{
    Search wanted;
    wanted.title = exact ? title : lowered(title);
    wanted.className = lowered(className);
    wanted.exact = exact;
    if (parent)
        EnumChildWindows(parent, matchWindow, (LPARAM)&wanted);
    else
        EnumWindows(matchWindow, (LPARAM)&wanted);
    // The order among the visible ones is that on the screen.
    std::stable_partition(wanted.found.begin(), wanted.found.end(),
                          [](HWND window) { return IsWindowVisible(window) != FALSE; });
    return wanted.found;
}

bool show(const VL_Any &window, int command)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle)
        return false;
    if (isOwnThread(handle))
        ShowWindow(handle, command);
    else
        ShowWindowAsync(handle, command);
    return true;
}

UINT placingFlags(HWND window)
{
    return SWP_NOZORDER | SWP_NOACTIVATE | (isOwnProcess(window) ? 0 : SWP_ASYNCWINDOWPOS);
}

bool placeTopmost(HWND window, bool on, UINT flags)
{
    return SetWindowPos(window, on ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                        SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | flags) != FALSE;
}

struct Hierarchy
{
    HWND tree = NULL;
    intptr_t count = 0;
    std::map<HWND, HTREEITEM> items;
    // The last child of each node: appending through TVI_LAST walks over all its siblings.
    std::map<HTREEITEM, HTREEITEM> lastChild;
};

void insertNode(Hierarchy &hierarchy, HWND window, HTREEITEM parent)
{
    wchar_t number[32];
    swprintf(number, 32, L" 0x%llX", (unsigned long long)(uintptr_t)window);
    std::wstring text = L"\"" + storedTitle(window) + L"\" [" + classOf(window) + L"]" + number;
    HTREEITEM &last = hierarchy.lastChild[parent];
    TVINSERTSTRUCTW node = {};
    node.hParent = parent;
    node.hInsertAfter = last ? last : TVI_FIRST;
    node.item.mask = TVIF_TEXT | TVIF_PARAM;
    node.item.pszText = &text[0];
    node.item.lParam = (LPARAM)window;
    const HTREEITEM item =
        (HTREEITEM)SendMessageW(hierarchy.tree, TVM_INSERTITEMW, 0, (LPARAM)&node);
    if (!item)
        return;
    last = item;
    hierarchy.items[window] = item;
    ++hierarchy.count;
}

BOOL CALLBACK insertBelow(HWND window, LPARAM data)
{
    Hierarchy &hierarchy = *(Hierarchy *)data;
    const auto parent = hierarchy.items.find(GetAncestor(window, GA_PARENT));
    // Parents come first; one that came into being meanwhile is left out.
    if (parent != hierarchy.items.end())
        insertNode(hierarchy, window, parent->second);
    return TRUE;
}

BOOL CALLBACK collectWindow(HWND window, LPARAM data)
{
    ((std::vector<HWND> *)data)->push_back(window);
    return TRUE;
}

RECT workAreaOf(HWND window)
{
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    return monitor.rcWork;
}

} // namespace
} // namespace vl_window_commands

intptr_t VL_FindWindow(const std::wstring &title, const std::wstring &className)
{
    if (title.empty() && className.empty())
        return 0;
    std::vector<HWND> found = vl_window_commands::search(title, className, NULL, true);
    if (found.empty() && !title.empty())
        found = vl_window_commands::search(title, className, NULL, false);
    return found.empty() ? 0 : (intptr_t)found.front();
}

intptr_t VL_FindWindowInt(const std::wstring &title, const std::wstring &className)
{
    return VL_FindWindow(title, className);
}

intptr_t VL_GetWindowHandleInt(const VL_Any &window)
{
    if (window.type == VL_Any::TypeString)
        return VL_FindWindow(window.strVal);
    return (intptr_t)VL_ToWindow(window);
}

intptr_t VL_GetWindowHandleIntEx(const std::wstring &title, const std::wstring &className,
                                 const VL_Any &parent, bool exact, intptr_t index)
{
    const HWND container = VL_ToWindow(parent);
    if (!container && parent.toInt() != 0)
        return 0;
    const std::vector<HWND> found = vl_window_commands::search(title, className, container, exact);
    const bool isThere = index >= 1 && (size_t)index <= found.size();
    return isThere ? (intptr_t)found[(size_t)index - 1] : 0;
}

std::wstring VL_GetWindowTitle(const VL_Any &window)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle)
        return std::wstring();
    if (!vl_window_commands::isOwnThread(handle))
        return vl_window_commands::storedTitle(handle);
    const int length = GetWindowTextLengthW(handle);
    std::wstring title((size_t)(length > 0 ? length : 0) + 1, L'\0');
    title.resize((size_t)GetWindowTextW(handle, &title[0], (int)title.size()));
    return title;
}

bool VL_SetWindowTitle(const VL_Any &window, const std::wstring &title)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle)
        return false;
    if (vl_window_commands::isOwnProcess(handle))
        return SetWindowTextW(handle, title.c_str()) != FALSE;
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(handle, WM_SETTEXT, 0, (LPARAM)title.c_str(), SMTO_ABORTIFHUNG, 2000,
                               &result) != 0;
}

VL_Any VL_GetWindowPosition(const VL_Any &window)
{
    const HWND handle = VL_ToWindow(window);
    VL_Any place = VL_NewDictAny();
    VL_DictSet(place, vl_window_commands::kX, VL_GetX(handle));
    VL_DictSet(place, vl_window_commands::kY, VL_GetY(handle));
    return place;
}

VL_Any VL_GetWindowSize(const VL_Any &window)
{
    using namespace vl_window_commands;
    const HWND handle = VL_ToWindow(window);
    int width = VL_GetWidth(handle);
    int height = VL_GetHeight(handle);
    RECT outer = {};
    if (handle && !isOwnProcess(handle) && GetWindowRect(handle, &outer)) {
        width = VL_UnscaleX(handle, outer.right - outer.left);
        height = VL_UnscaleY(handle, outer.bottom - outer.top);
    }
    VL_Any size = VL_NewDictAny();
    VL_DictSet(size, kWidth, width);
    VL_DictSet(size, kHeight, height);
    return size;
}

bool VL_SetWindowPosition(const VL_Any &window, int x, int y)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle)
        return false;
    if (!vl_window_commands::isOwnProcess(handle)) {
        return SetWindowPos(handle, NULL, VL_ScaleX(handle, x), VL_ScaleY(handle, y), 0, 0,
                            SWP_NOSIZE | vl_window_commands::placingFlags(handle)) != FALSE;
    }
    VL_SetX(handle, x);
    VL_SetY(handle, y);
    return true;
}

bool VL_SetWindowSize(const VL_Any &window, int width, int height)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle)
        return false;
    if (!vl_window_commands::isOwnProcess(handle)) {
        return SetWindowPos(handle, NULL, 0, 0, VL_ScaleX(handle, width), VL_ScaleY(handle, height),
                            SWP_NOMOVE | vl_window_commands::placingFlags(handle)) != FALSE;
    }
    VL_SetWidth(handle, width);
    VL_SetHeight(handle, height);
    return true;
}

bool VL_CenterWindow(const VL_Any &window)
{
    using namespace vl_window_commands;
    const HWND handle = VL_ToWindow(window);
    if (!handle || (GetWindowLongW(handle, GWL_STYLE) & WS_CHILD))
        return false;
    if (IsIconic(handle) || IsZoomed(handle) || VL_IsFullscreen(handle))
        return true;
    RECT own = {};
    GetWindowRect(handle, &own);
    const HWND owner = GetWindow(handle, GW_OWNER);
    const bool overOwner = owner && IsWindowVisible(owner) && !IsIconic(owner);
    const RECT room = workAreaOf(overOwner ? owner : handle);
    RECT middle = room;
    if (overOwner)
        GetWindowRect(owner, &middle);
    const LONG width = own.right - own.left;
    const LONG height = own.bottom - own.top;
    const LONG x = (middle.left + middle.right - width) / 2;
    const LONG y = (middle.top + middle.bottom - height) / 2;
    // The caption of a window that is too large stays within reach.
    SetWindowPos(handle, NULL, std::max(room.left, std::min(x, room.right - width)),
                 std::max(room.top, std::min(y, room.bottom - height)), 0, 0,
                 SWP_NOSIZE | placingFlags(handle));
    return true;
}

bool VL_SetWindowTopmost(const VL_Any &window, bool on)
{
    using namespace vl_window_commands;
    const HWND handle = VL_ToWindow(window);
    if (!handle || !isOwnProcess(handle))
        return handle && placeTopmost(handle, on, SWP_ASYNCWINDOWPOS);
    const bool done = placeTopmost(handle, on, 0);
    const bool isTopmost = (GetWindowLongW(handle, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
    if (!on || isTopmost)
        return done;
    // Wine puts the window below those that belong to it, such as tool tips, and makes it topmost
    // only where another topmost window comes next.
    placeTopmost(handle, false, 0);
    const HWND next = CreateWindowExW(WS_EX_TOOLWINDOW, WC_STATICW, L"", WS_POPUP, 0, 0, 0, 0, NULL,
                                      NULL, NULL, NULL);
    placeTopmost(next, true, 0);
    placeTopmost(handle, true, 0);
    DestroyWindow(next);
    return done;
}

bool VL_MaximizeWindow(const VL_Any &window)
{
    return vl_window_commands::show(window, SW_MAXIMIZE);
}

bool VL_MinimizeWindow(const VL_Any &window)
{
    return vl_window_commands::show(window, SW_MINIMIZE);
}

bool VL_RestoreWindow(const VL_Any &window)
{
    return vl_window_commands::show(window, SW_RESTORE);
}

bool VL_HideWindow(const VL_Any &window)
{
    return vl_window_commands::show(window, SW_HIDE);
}

bool VL_ShowWindow(const VL_Any &window)
{
    return vl_window_commands::show(window, SW_SHOW);
}

bool VL_CloseWindow(const VL_Any &window)
{
    const HWND handle = VL_ToWindow(window);
    return handle && PostMessageW(handle, WM_CLOSE, 0, VL_CLOSE_BY_PROGRAM);
}

bool VL_IsWindow(const VL_Any &window)
{
    return VL_ToWindow(window) != NULL;
}

intptr_t VL_GetDesktopWindow()
{
    return (intptr_t)GetDesktopWindow();
}

intptr_t VL_GetForegroundWindow()
{
    return (intptr_t)GetForegroundWindow();
}

bool VL_SetForegroundWindow(const VL_Any &window)
{
    const HWND handle = VL_ToWindow(window);
    if (!handle)
        return false;
    if (IsIconic(handle))
        vl_window_commands::show(window, SW_RESTORE);
    if (SetForegroundWindow(handle))
        return true;
    // The system only lets a program in the background ask for attention.
    BringWindowToTop(handle);
    FlashWindow(handle, TRUE);
    return GetForegroundWindow() == handle;
}

bool VL_WriteScreenText(const std::wstring &text, intptr_t x, intptr_t y, intptr_t color,
                        intptr_t size, const std::wstring &fontName)
{
    if (size < 1 || size > 1000)
        return false;
    const HDC screen = GetDC(NULL);
    if (!screen)
        return false;
    const int height = -MulDiv((int)size, GetDeviceCaps(screen, LOGPIXELSY), 72);
    const HFONT font = CreateFontW(height, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                                   OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                   DEFAULT_PITCH | FF_DONTCARE,
                                   fontName.empty() ? L"Microsoft YaHei UI" : fontName.c_str());
    const HGDIOBJ before = SelectObject(screen, font);
    SetBkMode(screen, TRANSPARENT);
    SetTextColor(screen, (COLORREF)color & 0xFFFFFF);
    RECT place = {(LONG)x, (LONG)y, (LONG)x, (LONG)y};
    // More than fits on a screen is not measured.
    const int length = (int)std::min(text.size(), (size_t)20000);
    const bool drawn = DrawTextW(screen, text.c_str(), length, &place,
                                 DT_NOCLIP | DT_NOPREFIX | DT_EXPANDTABS) != 0;
    SelectObject(screen, before);
    DeleteObject(font);
    ReleaseDC(NULL, screen);
    return drawn || text.empty();
}

intptr_t VL_TreeView_FillWindowHierarchy(const VL_Any &treeView)
{
    using namespace vl_window_commands;
    Hierarchy hierarchy;
    hierarchy.tree = VL_ToWindow(treeView);
    if (!hierarchy.tree || !VL_HasClass(hierarchy.tree, WC_TREEVIEWW))
        return 0;
    SendMessageW(hierarchy.tree, WM_SETREDRAW, FALSE, 0);
    SendMessageW(hierarchy.tree, TVM_DELETEITEM, 0, (LPARAM)TVI_ROOT);
    std::vector<HWND> windows;
    EnumWindows(collectWindow, (LPARAM)&windows);
    for (HWND window : windows) {
        insertNode(hierarchy, window, TVI_ROOT);
        EnumChildWindows(window, insertBelow, (LPARAM)&hierarchy);
    }
    SendMessageW(hierarchy.tree, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(hierarchy.tree, NULL, TRUE);
    return hierarchy.count;
}
