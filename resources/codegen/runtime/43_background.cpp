// What stands behind controls: painting it, and keeping containers behind what stands on them.
#include "43_background.h"

#include <algorithm>

namespace vl_background {
namespace {

const UINT_PTR SubclassId = 0x564C43;

// The containers of a window, the hindmost first.
struct Containers
{
    std::vector<HWND> windows;
    bool mustSort = false;
    bool isSorting = false;
};

bool isSorted(const std::vector<HWND> &windows)
{
    HWND expected = GetWindow(windows.front(), GW_HWNDLAST);
    for (HWND window : windows) {
        if (window != expected)
            return false;
        expected = GetWindow(window, GW_HWNDPREV);
    }
    return true;
}

// Puts off sorting until something is to be seen: a window of many controls is sorted once.
void sortContainers(HWND parent)
{
    Containers *containers = VL_FindExtra<Containers>(parent);
    if (!containers || !containers->mustSort || containers->isSorting)
        return;
    containers->mustSort = false;
    std::vector<HWND> &windows = containers->windows;
    windows.erase(std::remove_if(windows.begin(), windows.end(),
                                 [parent](HWND window) { return GetParent(window) != parent; }),
                  windows.end());
    if (windows.empty() || isSorted(windows))
        return;
    containers->isSorting = true;
    const std::vector<HWND> order = windows;
    for (auto window = order.rbegin(); window != order.rend(); ++window)
        SetWindowPos(*window, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    if ((containers = VL_FindExtra<Containers>(parent)))
        containers->isSorting = false;
}

LRESULT CALLBACK parentSubclass(HWND parent, UINT message, WPARAM wParam, LPARAM lParam,
                                UINT_PTR id, DWORD_PTR)
{
    switch (message) {
    case WM_PARENTNOTIFY:
        if (Containers *containers = VL_FindExtra<Containers>(parent))
            containers->mustSort = true;
        break;
    case WM_SHOWWINDOW:
    case WM_ERASEBKGND:
    case WM_NCPAINT:
    case WM_PAINT:
        sortContainers(parent);
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(parent, parentSubclass, id);
        break;
    default:
        break;
    }
    return DefSubclassProc(parent, message, wParam, lParam);
}

// Lets `window` draw itself into `context`, whose origin is moved to the window's place.
void printWindow(HWND window, HWND control, HDC context, const RECT &area)
{
    POINT offset = {};
    MapWindowPoints(window, control, &offset, 1);
    const int saved = SaveDC(context);
    IntersectClipRect(context, area.left, area.top, area.right, area.bottom);
    OffsetViewportOrgEx(context, offset.x, offset.y, NULL);
    if (!SendMessageW(window, WM_ERASEBKGND, (WPARAM)context, 0)) {
        RECT client = {};
        GetClientRect(window, &client);
        FillRect(context, &client, GetSysColorBrush(COLOR_BTNFACE));
    }
    SendMessageW(window, WM_PRINTCLIENT, (WPARAM)context, PRF_CLIENT);
    RestoreDC(context, saved);
}

// Containers draw their whole face by WM_PRINTCLIENT alone.
void printContainer(HWND window, HWND control, HDC context, const RECT &area)
{
    POINT offset = {};
    MapWindowPoints(window, control, &offset, 1);
    const int saved = SaveDC(context);
    IntersectClipRect(context, area.left, area.top, area.right, area.bottom);
    OffsetViewportOrgEx(context, offset.x, offset.y, NULL);
    RECT client = {};
    GetClientRect(window, &client);
    IntersectClipRect(context, 0, 0, client.right, client.bottom);
    SendMessageW(window, WM_PRINTCLIENT, (WPARAM)context, PRF_CLIENT | PRF_ERASEBKGND);
    RestoreDC(context, saved);
}

} // namespace
} // namespace vl_background

void VL_PaintBehind(HWND control, HDC context, const RECT &area)
{
    using namespace vl_background;
    const HWND parent = GetParent(control);
    if (!parent)
        return;
    printWindow(parent, control, context, area);
    const Containers *containers = VL_FindExtra<Containers>(parent);
    if (!containers)
        return;
    const std::vector<HWND> windows = containers->windows;
    for (HWND window : windows) {
        if (window == control)
            break;
        RECT place = {};
        GetClientRect(window, &place);
        MapWindowPoints(window, control, (POINT *)&place, 2);
        RECT common = {};
        if (GetParent(window) == parent && IsWindowVisible(window) &&
            IntersectRect(&common, &place, &area))
            printContainer(window, control, context, area);
    }
}

void VL_KeepBehind(HWND container)
{
    using namespace vl_background;
    const HWND parent = IsWindow(container) ? GetParent(container) : NULL;
    Containers *containers = parent ? VL_Extra<Containers>(parent) : nullptr;
    if (!containers)
        return;
    std::vector<HWND> &windows = containers->windows;
    if (std::find(windows.begin(), windows.end(), container) == windows.end())
        windows.push_back(container);
    containers->mustSort = true;
    SetWindowSubclass(parent, parentSubclass, SubclassId, 0);
    InvalidateRect(parent, NULL, FALSE);
}

VL_BufferedPaint::VL_BufferedPaint(HDC target, const RECT &area)
    : m_target(target), m_area(area), m_context(target), m_bitmap(NULL), m_old(NULL)
{
    if (area.right <= area.left || area.bottom <= area.top)
        return;
    m_bitmap = CreateCompatibleBitmap(target, area.right - area.left, area.bottom - area.top);
    const HDC memory = m_bitmap ? CreateCompatibleDC(target) : NULL;
    if (!memory)
        return;
    m_context = memory;
    m_old = SelectObject(memory, m_bitmap);
    SetViewportOrgEx(memory, -area.left, -area.top, NULL);
}

VL_BufferedPaint::~VL_BufferedPaint()
{
    if (m_context != m_target) {
        BitBlt(m_target, m_area.left, m_area.top, m_area.right - m_area.left,
               m_area.bottom - m_area.top, m_context, m_area.left, m_area.top, SRCCOPY);
        SelectObject(m_context, m_old);
        DeleteDC(m_context);
    }
    if (m_bitmap)
        DeleteObject(m_bitmap);
}

COLORREF VL_MixColors(COLORREF color, COLORREF other, int share)
{
    const auto mixed = [share](int a, int b) { return (a * (100 - share) + b * share) / 100; };
    return RGB(mixed(GetRValue(color), GetRValue(other)), mixed(GetGValue(color), GetGValue(other)),
               mixed(GetBValue(color), GetBValue(other)));
}
