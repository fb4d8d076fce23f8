// What lies behind a control that is not opaque: its parent and the controls below it.
#include "85_parent_background.h"

#include <algorithm>

namespace vl_parent_background {
namespace {

const int kDeepest = 20;
const DWORD kRemembered = 50; // milliseconds
bool g_painting = false;
std::vector<HWND> g_shineThrough;

// The direct children of `parent` from the topmost down.
struct Children
{
    HWND parent;
    std::vector<HWND> list;
};

BOOL CALLBACK addChild(HWND window, LPARAM data)
{
    Children *children = (Children *)data;
    if (GetAncestor(window, GA_PARENT) == children->parent)
        children->list.push_back(window);
    return TRUE;
}

std::vector<HWND> childrenOf(HWND parent)
{
    Children children = {parent, {}};
    EnumChildWindows(parent, addChild, (LPARAM)&children);
    return children.list;
}

struct Remembered
{
    HWND parent = NULL;
    DWORD since = 0;
    std::vector<HWND> children;
};
Remembered g_remembered;

const std::vector<HWND> &siblingsIn(HWND parent)
{
    const DWORD now = GetTickCount();
    if (g_remembered.parent != parent || now - g_remembered.since > kRemembered) {
        g_remembered.children = childrenOf(parent);
        g_remembered.parent = parent;
        g_remembered.since = now;
    }
    return g_remembered.children;
}

bool isShown(HWND window)
{
    return (GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) != 0;
}

RECT clientIn(HWND window, HWND frame)
{
    RECT area = {};
    GetClientRect(window, &area);
    MapWindowPoints(window, frame, (POINT *)&area, 2);
    return area;
}

// Paints one window at its place in the client area of `control`, children not included.
void printWindow(HWND window, const RECT &area, HDC dc)
{
    const int saved = SaveDC(dc);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    OffsetViewportOrgEx(dc, area.left, area.top, NULL);
    SetBrushOrgEx(dc, area.left, area.top, NULL);
    SendMessageW(window, WM_ERASEBKGND, (WPARAM)dc, 0);
    SendMessageW(window, WM_PRINTCLIENT, (WPARAM)dc, PRF_CLIENT | PRF_ERASEBKGND);
    RestoreDC(dc, saved);
}

void printTree(HWND window, HWND control, const RECT &wanted, HDC dc, int depth)
{
    if (!isShown(window) || depth > kDeepest)
        return;
    const RECT area = clientIn(window, control);
    RECT shown = {};
    if (!IntersectRect(&shown, &area, &wanted))
        return;
    printWindow(window, area, dc);
    const std::vector<HWND> children = childrenOf(window);
    for (size_t i = children.size(); i-- > 0;)
        printTree(children[i], control, shown, dc, depth + 1);
}

// Not every parent paints when asked; the colour it names for the control stands in.
void fillByParent(HWND control, HWND parent, const RECT &area, HDC dc)
{
    const int saved = SaveDC(dc);
    HBRUSH brush = (HBRUSH)SendMessageW(parent, WM_CTLCOLORSTATIC, (WPARAM)dc, (LPARAM)control);
    RestoreDC(dc, saved);
    FillRect(dc, &area, brush ? brush : GetSysColorBrush(COLOR_BTNFACE));
}

} // namespace
} // namespace vl_parent_background

void VL_PaintParentBackground(HWND control, HDC dc)
{
    using namespace vl_parent_background;
    const HWND parent = GetAncestor(control, GA_PARENT);
    if (g_painting || !parent || parent == GetDesktopWindow())
        return;
    RECT own = {};
    GetClientRect(control, &own);
    if (IsRectEmpty(&own))
        return;
    const int saved = SaveDC(dc);
    IntersectClipRect(dc, 0, 0, own.right, own.bottom);
    fillByParent(control, parent, own, dc);
    g_painting = true;
    printWindow(parent, clientIn(parent, control), dc);
    // A copy: what is asked to print itself might look for siblings, too.
    const std::vector<HWND> siblings = siblingsIn(parent);
    for (size_t i = siblings.size(); i-- > 0 && siblings[i] != control;)
        printTree(siblings[i], control, own, dc, 0);
    g_painting = false;
    RestoreDC(dc, saved);
}

void VL_BeginShineThrough(HWND control)
{
    vl_parent_background::g_shineThrough.push_back(control);
    VL_ForgetSiblings();
}

void VL_EndShineThrough(HWND control)
{
    std::vector<HWND> &all = vl_parent_background::g_shineThrough;
    all.erase(std::remove(all.begin(), all.end(), control), all.end());
    VL_ForgetSiblings();
}

void VL_RepaintAbove(HWND control)
{
    const HWND parent = GetAncestor(control, GA_PARENT);
    RECT own = {};
    GetWindowRect(control, &own);
    // One that lies below is painted without need, which is cheaper than to ask for the order.
    for (const HWND other : vl_parent_background::g_shineThrough) {
        RECT place = {}, common = {};
        GetWindowRect(other, &place);
        if (other != control && IntersectRect(&common, &place, &own) &&
            GetAncestor(other, GA_PARENT) == parent)
            InvalidateRect(other, NULL, FALSE);
    }
}

void VL_ForgetSiblings()
{
    vl_parent_background::g_remembered.parent = NULL;
}

bool VL_IsPaintingBackground()
{
    return vl_parent_background::g_painting;
}

bool VL_IsOwnControl(HWND control, const wchar_t *className)
{
    DWORD process = 0;
    return control && GetWindowThreadProcessId(control, &process) != 0 &&
           process == GetCurrentProcessId() && VL_HasClass(control, className);
}
