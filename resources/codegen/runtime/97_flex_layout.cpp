// Layout of a window's controls: flexible rows and columns and grids that follow its size.
#include "97_flex_layout.h"

#include <algorithm>

namespace vl_flex_layout {
namespace {

const UINT_PTR Subclass = 0x564C61;

struct Move
{
    HWND control;
    RECT from; // of the parent's client area
    RECT to;
};

struct Area
{
    double x, y, width, height;
};

UINT applyMessage()
{
    static const UINT message = RegisterWindowMessageW(L"VL_FlexLayout");
    return message;
}

RECT placeIn(HWND parent, HWND control)
{
    RECT place = {};
    GetWindowRect(control, &place);
    MapWindowPoints(NULL, parent, (POINT *)&place, 2);
    return place;
}

bool contains(const RECT &outer, const RECT &inner)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

bool isGroupBox(HWND control)
{
    return VL_HasClass(control, L"BUTTON") &&
           (GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

bool isShown(HWND control)
{
    return (GetWindowLongPtrW(control, GWL_STYLE) & WS_VISIBLE) != 0;
}

// A window's layout is laid out soon, once however often this is called.
void schedule(HWND window)
{
    VL_FlexTree *layout = VL_FindExtra<VL_FlexTree>(window);
    if (layout && !layout->scheduled)
        layout->scheduled = PostMessageW(window, applyMessage(), 0, 0) != FALSE;
}

void apply(HWND window);

// Tells the window when a member appears, disappears or is destroyed.
LRESULT CALLBACK memberProcedure(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR)
{
    if (message == WM_WINDOWPOSCHANGED) {
        if (((const WINDOWPOS *)lParam)->flags & (SWP_SHOWWINDOW | SWP_HIDEWINDOW))
            schedule(GetParent(control));
    } else if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(control, memberProcedure, Subclass);
        schedule(GetParent(control));
    }
    return DefSubclassProc(control, message, wParam, lParam);
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR)
{
    const UINT dpiChanged = 0x02E0, dpiChangedAfterParent = 0x02E3;
    if (message == applyMessage()) {
        apply(window);
        return 0;
    }
    switch (message) {
    case WM_SIZE:
        // Ahead of the window's own event, which then finds everything in its place.
        if (wParam != SIZE_MINIMIZED)
            apply(window);
        break;
    case WM_SHOWWINDOW:
        if (wParam)
            apply(window);
        break;
    case dpiChanged:
    case dpiChangedAfterParent: {
        // The window scales what it holds first.
        const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
        apply(window);
        return result;
    }
    case WM_NCDESTROY:
        RemoveWindowSubclass(window, windowProcedure, Subclass + 1);
        break;
    default:
        break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

std::vector<HWND> childWindows(HWND window)
{
    std::vector<HWND> children;
    // The order can change in between; no window has that many.
    for (HWND child = GetWindow(window, GW_CHILD); child && children.size() < 100000;
         child = GetWindow(child, GW_HWNDNEXT))
        children.push_back(child);
    return children;
}

// The child windows that no layout places.
std::vector<HWND> plainControls(HWND window, const VL_FlexTree &layout)
{
    std::vector<HWND> members;
    const auto collect = [&members](const VL_FlexBox &box) {
        for (const VL_FlexChild &child : box.children) {
            if (child.control)
                members.push_back(child.control);
        }
    };
    collect(layout.window);
    for (const VL_FlexBox &box : layout.boxes)
        collect(box);
    std::sort(members.begin(), members.end());
    std::vector<HWND> children = childWindows(window);
    children.erase(std::remove_if(children.begin(), children.end(),
                                  [&members](HWND child) {
                                      return std::binary_search(members.begin(), members.end(),
                                                                child);
                                  }),
                   children.end());
    return children;
}

template <typename F>
void removeControls(VL_FlexTree &tree, const F &unwanted)
{
    const auto remove = [&unwanted](VL_FlexBox &box) {
        box.children.erase(std::remove_if(box.children.begin(), box.children.end(),
                                          [&unwanted](const VL_FlexChild &child) {
                                              return child.control && unwanted(child.control);
                                          }),
                           box.children.end());
    };
    remove(tree.window);
    for (VL_FlexBox &box : tree.boxes)
        remove(box);
}

void addMember(HWND window, VL_FlexBox &box, HWND control)
{
    VL_FlexMember *member = VL_Extra<VL_FlexMember>(control);
    if (!member)
        return;
    member->added = true;
    VL_FlexChild child;
    child.control = control;
    box.children.push_back(child);
    SetWindowSubclass(control, memberProcedure, Subclass, 0);
    if (member->baseWidth < 0) {
        const RECT place = placeIn(window, control);
        const double scale = VL_GetDpiForScaling(window) / 96.0;
        member->baseWidth = (place.right - place.left) / scale;
        member->baseHeight = (place.bottom - place.top) / scale;
    }
}

// Without a design all controls of a window are laid out, but for what stands in a group box.
void takeAllControls(HWND window, VL_FlexTree &layout)
{
    const std::vector<HWND> plain = plainControls(window, layout);
    std::vector<RECT> frames;
    for (const HWND child : childWindows(window)) {
        if (isGroupBox(child))
            frames.push_back(placeIn(window, child));
    }
    for (const HWND child : plain) {
        const RECT place = placeIn(window, child);
        const bool inside = std::any_of(frames.begin(), frames.end(), [&](const RECT &frame) {
            return !EqualRect(&frame, &place) && contains(frame, place);
        });
        if (!inside)
            addMember(window, layout.window, child);
    }
}

void setLimits(const VL_FlexStyle &style, double scale, VL_FlexItem *item)
{
    item->grow = style.grow;
    item->shrink = style.shrink;
    item->minWidth = style.minWidth * scale;
    item->minHeight = style.minHeight * scale;
    item->maxWidth = style.maxWidth * scale;
    item->maxHeight = style.maxHeight * scale;
    item->margin = {style.margin.left * scale, style.margin.top * scale, style.margin.right * scale,
                    style.margin.bottom * scale};
}

// A control that was given another size since the last layout wants that one from now on.
void noteSize(VL_FlexMember &member, SIZE size, int dpi)
{
    if (member.lastDpi != dpi)
        return;
    if (size.cx != member.last.cx)
        member.baseWidth = size.cx * 96.0 / dpi;
    if (size.cy != member.last.cy)
        member.baseHeight = size.cy * 96.0 / dpi;
}

VL_FlexItem itemOfControl(HWND window, HWND control, int dpi)
{
    VL_FlexItem item;
    VL_FlexMember *member =
        GetParent(control) == window ? VL_FindExtra<VL_FlexMember>(control) : nullptr;
    item.hidden = !member || !isShown(control);
    if (item.hidden)
        return item;
    const RECT place = placeIn(window, control);
    const SIZE size = {place.right - place.left, place.bottom - place.top};
    const double scale = dpi / 96.0;
    noteSize(*member, size, dpi);
    setLimits(member->style, scale, &item);
    item.baseWidth = member->baseWidth * scale;
    item.baseHeight = member->baseHeight * scale;
    // The font decides how high these are.
    if (VL_HasClass(control, L"COMBOBOX") &&
        (GetWindowLongPtrW(control, GWL_STYLE) & 3) != CBS_SIMPLE)
        item.baseHeight = item.minHeight = item.maxHeight = size.cy;
    return item;
}

class Pass
{
public:
    Pass(HWND window, VL_FlexTree &layout)
        : m_window(window),
          m_layout(layout),
          m_dpi(VL_GetDpiForScaling(window)),
          m_scale(m_dpi / 96.0)
    {}

    void run()
    {
        RECT client = {};
        GetClientRect(m_window, &client);
        if (client.right <= 0 || client.bottom <= 0)
            return;
        if (m_layout.enabled)
            layOut(m_layout.window, {0, 0, (double)client.right, (double)client.bottom});
        else
            layOutAnchored(client.right / m_scale, client.bottom / m_scale);
        moveFollowers();
        moveAll();
    }

private:
    // Of the window's boxes when the window itself is not laid out.
    void layOutAnchored(double clientWidth, double clientHeight)
    {
        const double moreX = clientWidth - m_layout.designWidth;
        const double moreY = clientHeight - m_layout.designHeight;
        for (const VL_FlexChild &child : m_layout.window.children) {
            if (child.box < 0)
                continue;
            const VL_FlexBox &box = m_layout.boxes[(size_t)child.box];
            const double width = box.width + (box.growsRight ? moreX : 0);
            const double height = box.height + (box.growsDown ? moreY : 0);
            layOut(box, {box.x * m_scale, box.y * m_scale, std::max(width, 0.0) * m_scale,
                         std::max(height, 0.0) * m_scale});
        }
    }

    VL_FlexItem itemOf(const VL_FlexChild &child, bool row)
    {
        VL_FlexItem item;
        if (child.control) {
            item = itemOfControl(m_window, child.control, m_dpi);
            const VL_FlexMember *member = VL_FindExtra<VL_FlexMember>(child.control);
            if (member && member->style.shares)
                (row ? item.baseWidth : item.baseHeight) = 0;
            return item;
        }
        setLimits(child.style, m_scale, &item);
        if (child.box >= 0) {
            const VL_FlexBox &box = m_layout.boxes[(size_t)child.box];
            item.baseWidth = box.width * m_scale;
            item.baseHeight = box.height * m_scale;
            item.hidden = isEmptied(box);
        } else {
            item.baseWidth = child.width * m_scale;
            item.baseHeight = child.height * m_scale;
        }
        return item;
    }

    // Whether all controls of a box are hidden, and it has any.
    bool isEmptied(const VL_FlexBox &box) const
    {
        bool any = false;
        for (const VL_FlexChild &child : box.children) {
            if (child.control) {
                any = true;
                if (IsWindow(child.control) && isShown(child.control))
                    return false;
            } else if (child.box >= 0) {
                const VL_FlexBox &inner = m_layout.boxes[(size_t)child.box];
                if (!isEmptied(inner))
                    return false;
                any = true;
            }
        }
        return any;
    }

    VL_FlexContainer scaled(VL_FlexContainer style) const
    {
        style.padding = {style.padding.left * m_scale, style.padding.top * m_scale,
                         style.padding.right * m_scale, style.padding.bottom * m_scale};
        style.mainGap *= m_scale;
        style.crossGap *= m_scale;
        return style;
    }

    void layOut(const VL_FlexBox &box, const Area &area)
    {
        if (!box.enabled)
            return;
        const VL_FlexContainer style = scaled(box.style);
        const bool row = style.direction == VL_FlexDirection::Row ||
                         style.direction == VL_FlexDirection::RowReverse;
        std::vector<VL_FlexItem> items;
        for (const VL_FlexChild &child : box.children)
            items.push_back(itemOf(child, row));
        if (box.grid)
            VL_GridLayout(box.columns, style.mainGap, style.padding, area.width, area.height,
                          items);
        else
            VL_FlexLayout(style, area.width, area.height, items);
        for (size_t i = 0; i < items.size(); ++i) {
            const VL_FlexItem &item = items[i];
            const VL_FlexChild &child = box.children[i];
            if (item.hidden)
                continue;
            const double x = std::floor(area.x + 0.5) + item.x;
            const double y = std::floor(area.y + 0.5) + item.y;
            if (child.control)
                addMove(child.control, (int)x, (int)y, item.width, item.height);
            else if (child.box >= 0)
                layOut(m_layout.boxes[(size_t)child.box],
                       {x, y, (double)item.width, (double)item.height});
        }
    }

    void addMove(HWND control, int x, int y, int width, int height)
    {
        const RECT to = {x, y, x + width, y + height};
        m_moves.push_back({control, placeIn(m_window, control), to});
    }

    // What no layout places but stands in a group box that moves goes with it.
    void moveFollowers()
    {
        std::vector<Move> frames;
        for (const Move &move : m_moves) {
            if (isGroupBox(move.control) &&
                (move.from.left != move.to.left || move.from.top != move.to.top))
                frames.push_back(move);
        }
        if (frames.empty())
            return;
        for (const HWND child : plainControls(m_window, m_layout)) {
            RECT place = placeIn(m_window, child);
            for (const Move &frame : frames) {
                if (!contains(frame.from, place))
                    continue;
                const int width = place.right - place.left, height = place.bottom - place.top;
                addMove(child, place.left + frame.to.left - frame.from.left,
                        place.top + frame.to.top - frame.from.top, width, height);
                break;
            }
        }
    }

    // The height that a drop-down box wants to be told includes its list.
    static int toldHeight(HWND control, int height)
    {
        RECT dropped = {};
        if (VL_HasClass(control, L"COMBOBOX") &&
            SendMessageW(control, CB_GETDROPPEDCONTROLRECT, 0, (LPARAM)&dropped) &&
            dropped.bottom - dropped.top > height)
            return dropped.bottom - dropped.top;
        return height;
    }

    void moveAll()
    {
        const UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;
        std::vector<Move> changed;
        for (const Move &move : m_moves) {
            if (!EqualRect(&move.from, &move.to))
                changed.push_back(move);
        }
        HDWP batch = changed.empty() ? NULL : BeginDeferWindowPos((int)changed.size());
        for (const Move &move : changed) {
            const int width = move.to.right - move.to.left;
            const int height = toldHeight(move.control, move.to.bottom - move.to.top);
            if (batch)
                batch = DeferWindowPos(batch, move.control, NULL, move.to.left, move.to.top, width,
                                       height, flags);
        }
        // A batch that failed has moved nothing.
        if (!batch || !EndDeferWindowPos(batch)) {
            for (const Move &move : changed)
                SetWindowPos(move.control, NULL, move.to.left, move.to.top,
                             move.to.right - move.to.left,
                             toldHeight(move.control, move.to.bottom - move.to.top), flags);
        }
        noteResult(changed);
    }

    void noteResult(const std::vector<Move> &changed)
    {
        for (const Move &move : m_moves) {
            VL_FlexMember *member = VL_FindExtra<VL_FlexMember>(move.control);
            if (!member)
                continue;
            const RECT place = placeIn(m_window, move.control);
            member->last = {place.right - place.left, place.bottom - place.top};
            member->lastDpi = m_dpi;
        }
        // These may show what lies behind them.
        for (const Move &move : changed) {
            if (VL_HasClass(move.control, L"STATIC") || VL_HasClass(move.control, L"BUTTON"))
                InvalidateRect(move.control, NULL, TRUE);
        }
    }

    HWND m_window;
    VL_FlexTree &m_layout;
    int m_dpi;
    double m_scale;
    std::vector<Move> m_moves;
};

// Whether `other` lies behind an edge of `box` and would be run into.
bool isInTheWay(double boxEnd, double begin, double boxFrom, double boxTo, double from, double to)
{
    return begin >= boxEnd - 0.5 && from < boxTo && to > boxFrom;
}

// Which of the window's boxes have free room at their right and below, in the design.
void findAnchors(HWND window, VL_FlexTree &layout)
{
    layout.anchored = true;
    std::vector<Area> others;
    const double scale = VL_GetDpiForScaling(window) / 96.0;
    for (const HWND child : plainControls(window, layout)) {
        const RECT place = placeIn(window, child);
        others.push_back({place.left / scale, place.top / scale, (place.right - place.left) / scale,
                          (place.bottom - place.top) / scale});
    }
    for (const VL_FlexChild &child : layout.window.children) {
        if (child.box >= 0) {
            const VL_FlexBox &box = layout.boxes[(size_t)child.box];
            others.push_back({box.x, box.y, box.width, box.height});
        }
    }
    for (const VL_FlexChild &child : layout.window.children) {
        if (child.box < 0)
            continue;
        VL_FlexBox &box = layout.boxes[(size_t)child.box];
        const double right = box.x + box.width, bottom = box.y + box.height;
        for (const Area &other : others) {
            const double otherRight = other.x + other.width, otherBottom = other.y + other.height;
            const bool around = other.x <= box.x && other.y <= box.y && otherRight >= right &&
                                otherBottom >= bottom &&
                                other.width * other.height > box.width * box.height;
            if (around || isInTheWay(right, other.x, box.y, bottom, other.y, otherBottom))
                box.growsRight = false;
            if (around || isInTheWay(bottom, other.y, box.x, right, other.x, otherRight))
                box.growsDown = false;
        }
    }
}

void apply(HWND window)
{
    VL_FlexTree *layout = VL_FindExtra<VL_FlexTree>(window);
    if (!layout || layout->busy)
        return;
    layout->scheduled = false;
    const HWND root = GetAncestor(window, GA_ROOT);
    if (IsIconic(root))
        return;
    layout->busy = true;
    // Controls that are gone; another may have got the same handle.
    removeControls(*layout, [](HWND control) { return !VL_FindExtra<VL_FlexMember>(control); });
    if (layout->enabled && !layout->named)
        takeAllControls(window, *layout);
    if (!layout->enabled && !layout->anchored)
        findAnchors(window, *layout);
    Pass(window, *layout).run();
    // Moving controls may have run the program's own events, which may end the window.
    layout = VL_FindExtra<VL_FlexTree>(window);
    if (!layout)
        return;
    layout->busy = false;
    // A change of scale reaches the controls after their window.
    const int dpi = VL_GetDpiForScaling(window);
    if (layout->lastDpi && layout->lastDpi != dpi)
        schedule(window);
    layout->lastDpi = dpi;
}

} // namespace
} // namespace vl_flex_layout

VL_FlexWindow::VL_FlexWindow(const VL_Any &number) : handle((HWND)(intptr_t)number.toInt()) {}

VL_FlexTree *VL_Flex_TreeOf(HWND window)
{
    if (VL_FlexTree *found = VL_FindExtra<VL_FlexTree>(window))
        return found;
    VL_FlexTree *tree = VL_Extra<VL_FlexTree>(window);
    if (tree)
        SetWindowSubclass(window, vl_flex_layout::windowProcedure, vl_flex_layout::Subclass + 1, 0);
    return tree;
}

VL_FlexBox *VL_Flex_FindBox(VL_FlexTree &tree, int box)
{
    if (box == -1)
        return &tree.window;
    return box >= 0 && (size_t)box < tree.boxes.size() ? &tree.boxes[(size_t)box] : nullptr;
}

VL_FlexMember *VL_Flex_MemberOf(HWND control)
{
    return VL_Extra<VL_FlexMember>(control);
}

void VL_Flex_TakeControl(HWND window, int box, HWND control)
{
    VL_FlexTree *tree = control && control != window ? VL_Flex_TreeOf(window) : nullptr;
    if (!tree)
        return;
    const VL_FlexMember *member = VL_FindExtra<VL_FlexMember>(control);
    if (member && member->added)
        vl_flex_layout::removeControls(*tree, [control](HWND other) { return other == control; });
    if (VL_FlexBox *target = VL_Flex_FindBox(*tree, box))
        vl_flex_layout::addMember(window, *target, control);
}

void VL_Flex_Schedule(HWND window)
{
    vl_flex_layout::schedule(window);
}

bool VL_EnableFlexLayout(VL_FlexWindow window, bool enabled)
{
    VL_FlexTree *tree = VL_Flex_TreeOf(window.handle);
    if (!tree)
        return false;
    tree->enabled = enabled;
    vl_flex_layout::schedule(window.handle);
    return true;
}

void VL_ApplyFlexLayout(VL_FlexWindow window)
{
    vl_flex_layout::apply(window.handle);
}
