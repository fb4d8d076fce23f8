// What the runtime keeps about tree views: their nodes, checks that follow each other, colours.
#include "78_tree_state.h"

#include "76_bulk_changes.h"

#include <unordered_set>

namespace vl_tree_state {
namespace {

const UINT kDpiChangedAfterParent = 0x02E3;
// State images of the check boxes.
const int kUnchecked = 1;
const int kChecked = 2;

struct Tree
{
    std::unordered_set<HTREEITEM> items;
    std::map<HTREEITEM, COLORREF> colors;
    WNDPROC control = NULL; // the procedure of the class
    WNDPROC next = NULL;    // the one that stood first before this section's
    bool autoSync = false;
    bool toldCheck = false; // the system told of a change of a check by itself
    VL_HeldDrawing drawing;
    int dpi = 0;
};

// Windows can outlive what is destroyed at the end of the program.
VL_WindowTable &attached()
{
    static VL_WindowTable &table = *new VL_WindowTable;
    return table;
}

Tree *treeOf(HWND tree)
{
    return (Tree *)attached().find(tree);
}

void collectItems(HWND window, Tree *tree)
{
    tree->items.clear();
    for (HTREEITEM item = VL_TreeView_NextInOrder(window, NULL); item;
         item = VL_TreeView_NextInOrder(window, item))
        tree->items.insert(item);
}

void forget(HWND window, Tree *tree, HTREEITEM top)
{
    for (HTREEITEM item = top; item; item = VL_TreeView_NextInOrder(window, item, top)) {
        tree->items.erase(item);
        tree->colors.erase(item);
    }
}

LRESULT deleteItem(HWND window, Tree *tree, WPARAM wParam, LPARAM lParam)
{
    const HTREEITEM item = (HTREEITEM)lParam;
    const bool all = !item || item == TVI_ROOT;
    if (!all && !tree->items.count(item))
        return FALSE;
    if (all) {
        tree->items.clear();
        tree->colors.clear();
    } else {
        forget(window, tree, item);
    }
    const LRESULT result = CallWindowProcW(tree->next, window, TVM_DELETEITEM, wParam, lParam);
    if (!result)
        collectItems(window, tree);
    return result;
}

int stateImage(HWND window, HTREEITEM item)
{
    return (int)VL_TreeView_ItemMessage(window, TVM_GETITEMSTATE, (WPARAM)item,
                                        TVIS_STATEIMAGEMASK) >>
           12;
}

void setStateImage(HWND window, HTREEITEM item, bool checked)
{
    const int image = checked ? kChecked : kUnchecked;
    if (stateImage(window, item) == image)
        return;
    TVITEMW change = {};
    change.mask = TVIF_STATE;
    change.hItem = item;
    change.state = INDEXTOSTATEIMAGEMASK((UINT)image);
    change.stateMask = TVIS_STATEIMAGEMASK;
    VL_TreeView_ItemMessage(window, TVM_SETITEMW, 0, (LPARAM)&change);
}

// Both neighbours in turn, farther each time: whoever checks one child after the other in any
// direction finds the next unchecked one at once.
bool siblingsChecked(HWND window, HTREEITEM item)
{
    HTREEITEM before = VL_TreeView_Step(window, TVGN_PREVIOUS, item);
    HTREEITEM behind = VL_TreeView_Step(window, TVGN_NEXT, item);
    while (before || behind) {
        if (before && stateImage(window, before) != kChecked)
            return false;
        if (behind && stateImage(window, behind) != kChecked)
            return false;
        before = before ? VL_TreeView_Step(window, TVGN_PREVIOUS, before) : NULL;
        behind = behind ? VL_TreeView_Step(window, TVGN_NEXT, behind) : NULL;
    }
    return true;
}

// The control moves its scroll bars for each check it changes, which is slow on some systems; what
// is not visible does not. Nothing of the program's runs while one lives.
class Unseen
{
public:
    explicit Unseen(HWND window)
        : m_window(GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE ? window : NULL)
    {
        if (m_window)
            DefWindowProcW(m_window, WM_SETREDRAW, FALSE, 0);
    }
    ~Unseen()
    {
        if (!m_window)
            return;
        DefWindowProcW(m_window, WM_SETREDRAW, TRUE, 0);
        RedrawWindow(m_window, NULL, NULL, RDW_INVALIDATE | RDW_FRAME);
    }
    Unseen(const Unseen &) = delete;
    Unseen &operator=(const Unseen &) = delete;

private:
    HWND m_window;
};

// `item` itself is left alone: the system may be about to change it.
void syncCheck(HWND window, HTREEITEM item, bool checked)
{
    const Unseen unseen(window);
    for (HTREEITEM below = VL_TreeView_NextInOrder(window, item, item); below;
         below = VL_TreeView_NextInOrder(window, below, item))
        setStateImage(window, below, checked);
    bool all = checked;
    for (HTREEITEM above = VL_TreeView_Step(window, TVGN_PARENT, item); above;
         above = VL_TreeView_Step(window, TVGN_PARENT, above)) {
        all = all && siblingsChecked(window, item);
        setStateImage(window, above, all);
        item = above;
    }
}

void setAllChecks(HWND window, bool checked)
{
    if (!VL_TreeView_Attach(window))
        return;
    const Unseen unseen(window);
    for (HTREEITEM item = VL_TreeView_NextInOrder(window, NULL); item;
         item = VL_TreeView_NextInOrder(window, item))
        setStateImage(window, item, checked);
}

HTREEITEM checkTarget(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_KEYDOWN)
        return wParam == VK_SPACE ? VL_TreeView_Step(window, TVGN_CARET, NULL) : NULL;
    TVHITTESTINFO hit = {};
    hit.pt = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
    VL_TreeView_ItemMessage(window, TVM_HITTEST, 0, (LPARAM)&hit);
    return hit.flags & TVHT_ONITEMSTATEICON ? hit.hItem : NULL;
}

// Not every system tells that the user changed a check; here it is told either way, and once.
LRESULT watchCheck(HWND window, Tree *tree, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HTREEITEM item = GetWindowLongW(window, GWL_STYLE) & TVS_CHECKBOXES
                               ? checkTarget(window, message, wParam, lParam)
                               : NULL;
    const int old = item ? stateImage(window, item) : 0;
    tree->toldCheck = false;
    const LRESULT result = CallWindowProcW(tree->next, window, message, wParam, lParam);
    tree = treeOf(window);
    if (!tree || !item || !tree->items.count(item) || tree->toldCheck)
        return result;
    const int fresh = stateImage(window, item);
    if (fresh == old)
        return result;
    NMTVSTATEIMAGECHANGING change = {};
    change.hdr.hwndFrom = window;
    change.hdr.idFrom = (UINT_PTR)GetDlgCtrlID(window);
    change.hdr.code = (UINT)NM_TVSTATEIMAGECHANGING;
    change.hti = item;
    change.iOldStateImageIndex = old;
    change.iNewStateImageIndex = fresh;
    SendMessageW(GetParent(window), WM_NOTIFY, (WPARAM)change.hdr.idFrom, (LPARAM)&change);
    return result;
}

LRESULT reflected(HWND window, Tree *tree, WPARAM wParam, LPARAM lParam)
{
    const NMHDR *header = (const NMHDR *)lParam;
    if (!header)
        return 0;
    if (header->code == (UINT)NM_TVSTATEIMAGECHANGING) {
        const NMTVSTATEIMAGECHANGING *change = (const NMTVSTATEIMAGECHANGING *)lParam;
        tree->toldCheck = true;
        VL_TreeView_SyncCheck(window, change->hti, change->iNewStateImageIndex == kChecked);
        return 0;
    }
    if (header->code == NM_CUSTOMDRAW) {
        if (const LRESULT result = VL_Subclass_HandleTreeViewCustomDraw(lParam))
            return result;
    }
    if (header->code == TVN_DELETEITEMW || header->code == TVN_DELETEITEMA)
        return 0;
    return CallWindowProcW(tree->next, window, VL_REFLECT + WM_NOTIFY, wParam, lParam);
}

void followDrawing(HWND window, Tree *tree, UINT message)
{
    switch (message) {
    case TVM_INSERTITEMA:
    case TVM_INSERTITEMW:
    case TVM_SETITEMA:
    case TVM_SETITEMW:
    case TVM_DELETEITEM:
    case TVM_EXPAND:
        tree->drawing.hold(window);
        break;
    case VL_HeldDrawing::Message:
    case WM_PAINT:
    case WM_PRINT:
    case WM_PRINTCLIENT:
    case TVM_SELECTITEM:
    case TVM_ENSUREVISIBLE:
    case TVM_HITTEST:
    case TVM_GETITEMRECT:
    case TVM_GETVISIBLECOUNT:
    case TVM_EDITLABELA:
    case TVM_EDITLABELW:
        tree->drawing.show(window);
        break;
    case WM_SETREDRAW:
        tree->drawing.seeSetRedraw();
        break;
    default:
        break;
    }
}

// Stands ahead of all subclass procedures, so that thousands of nodes do not pass through them.
LRESULT CALLBACK treeProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    Tree *tree = treeOf(window);
    if (!tree)
        return DefWindowProcW(window, message, wParam, lParam);
    const WNDPROC next = tree->next;
    followDrawing(window, tree, message);
    switch (message) {
    case VL_HeldDrawing::Message:
        return 0;
    case VL_REFLECT + WM_NOTIFY:
        return reflected(window, tree, wParam, lParam);
    case TVM_INSERTITEMA:
    case TVM_INSERTITEMW: {
        const LRESULT item = CallWindowProcW(tree->control, window, message, wParam, lParam);
        if (item)
            tree->items.insert((HTREEITEM)item);
        return item;
    }
    case TVM_DELETEITEM:
        return deleteItem(window, tree, wParam, lParam);
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_KEYDOWN:
        return watchCheck(window, tree, message, wParam, lParam);
    case WM_DESTROY:
        // The class makes the pictures of its check boxes and leaves them to us.
        if (GetWindowLongW(window, GWL_STYLE) & TVS_CHECKBOXES) {
            const LRESULT boxes = SendMessageW(window, TVM_SETIMAGELIST, TVSIL_STATE, 0);
            ImageList_Destroy((HIMAGELIST)boxes);
        }
        break;
    case WM_NCDESTROY:
        attached().set(window, nullptr);
        break;
    case WM_SIZE:
    case WM_SETFONT:
    case kDpiChangedAfterParent:
        if (tree->dpi != VL_GetDpiForScaling(window)) {
            tree->dpi = VL_GetDpiForScaling(window);
            VL_TreeView_RescaleIcons(window);
        }
        break;
    default:
        break;
    }
    return CallWindowProcW(next, window, message, wParam, lParam);
}

} // namespace
} // namespace vl_tree_state

bool VL_TreeView_Attach(HWND window)
{
    using namespace vl_tree_state;
    if (treeOf(window))
        return true;
    if (!VL_HasClass(window, WC_TREEVIEWW))
        return false;
    Tree *tree = VL_Extra<Tree>(window);
    if (!tree)
        return false;
    tree->control = VL_ClassProcedure(window);
    tree->next = (WNDPROC)GetWindowLongPtrW(window, GWLP_WNDPROC);
    tree->dpi = VL_GetDpiForScaling(window);
    attached().set(window, tree);
    collectItems(window, tree);
    SetWindowLongPtrW(window, GWLP_WNDPROC, (LONG_PTR)treeProcedure);
    return true;
}

LRESULT VL_TreeView_ItemMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    using namespace vl_tree_state;
    const Tree *tree = treeOf(window);
    if (!tree || !tree->control || GetWindowThreadProcessId(window, NULL) != GetCurrentThreadId())
        return SendMessageW(window, message, wParam, lParam);
    return CallWindowProcW(tree->control, window, message, wParam, lParam);
}

bool VL_TreeView_IsItem(HWND window, HTREEITEM item)
{
    return item && VL_TreeView_Attach(window) && vl_tree_state::treeOf(window)->items.count(item);
}

int VL_TreeView_CountItems(HWND window)
{
    return VL_TreeView_Attach(window) ? (int)vl_tree_state::treeOf(window)->items.size() : 0;
}

HTREEITEM VL_TreeView_Step(HWND tree, UINT direction, HTREEITEM from)
{
    return (HTREEITEM)VL_TreeView_ItemMessage(tree, TVM_GETNEXTITEM, direction, (LPARAM)from);
}

HTREEITEM VL_TreeView_NextInOrder(HWND tree, HTREEITEM item, HTREEITEM top)
{
    if (!item)
        return VL_TreeView_Step(tree, TVGN_ROOT, NULL);
    if (HTREEITEM child = VL_TreeView_Step(tree, TVGN_CHILD, item))
        return child;
    for (; item && item != top; item = VL_TreeView_Step(tree, TVGN_PARENT, item)) {
        if (HTREEITEM sibling = VL_TreeView_Step(tree, TVGN_NEXT, item))
            return sibling;
    }
    return NULL;
}

void VL_TreeView_HoldDrawing(HWND window)
{
    if (VL_TreeView_Attach(window))
        vl_tree_state::treeOf(window)->drawing.hold(window);
}

void VL_TreeView_SetItemColor(HWND window, HTREEITEM item, int color)
{
    if (!VL_TreeView_IsItem(window, item))
        return;
    vl_tree_state::Tree *tree = vl_tree_state::treeOf(window);
    if (color == -1)
        tree->colors.erase(item);
    else
        tree->colors[item] = (COLORREF)color & 0xFFFFFF;
    InvalidateRect(window, NULL, FALSE);
}

LRESULT VL_Subclass_HandleTreeViewCustomDraw(LPARAM lParam)
{
    NMTVCUSTOMDRAW *draw = (NMTVCUSTOMDRAW *)lParam;
    const vl_tree_state::Tree *tree =
        draw ? vl_tree_state::treeOf(draw->nmcd.hdr.hwndFrom) : nullptr;
    if (!tree || tree->colors.empty())
        return CDRF_DODEFAULT;
    if (draw->nmcd.dwDrawStage == CDDS_PREPAINT)
        return CDRF_NOTIFYITEMDRAW;
    if (draw->nmcd.dwDrawStage != CDDS_ITEMPREPAINT || (draw->nmcd.uItemState & CDIS_SELECTED))
        return CDRF_DODEFAULT;
    const auto color = tree->colors.find((HTREEITEM)draw->nmcd.dwItemSpec);
    if (color == tree->colors.end())
        return CDRF_DODEFAULT;
    draw->clrText = color->second;
    return CDRF_NEWFONT;
}

bool VL_TreeView_GetCheckState(HWND tree, HTREEITEM item)
{
    using namespace vl_tree_state;
    return VL_TreeView_IsItem(tree, item) && stateImage(tree, item) == kChecked;
}

void VL_TreeView_SetCheckState(HWND tree, HTREEITEM item, bool checked)
{
    if (!VL_TreeView_IsItem(tree, item))
        return;
    vl_tree_state::setStateImage(tree, item, checked);
    VL_TreeView_SyncCheck(tree, item, checked);
}

VL_Array VL_TreeView_GetAllChecked(HWND tree)
{
    using namespace vl_tree_state;
    VL_Array checked;
    if (!VL_TreeView_Attach(tree))
        return checked;
    for (HTREEITEM item = VL_TreeView_NextInOrder(tree, NULL); item;
         item = VL_TreeView_NextInOrder(tree, item)) {
        if (stateImage(tree, item) == kChecked)
            checked.push_back(VL_Any((long long)(intptr_t)item));
    }
    return checked;
}

void VL_TreeView_CheckAll(HWND tree)
{
    vl_tree_state::setAllChecks(tree, true);
}

void VL_TreeView_UncheckAll(HWND tree)
{
    vl_tree_state::setAllChecks(tree, false);
}

void VL_TreeView_SetAutoSyncCheckbox(HWND tree, bool on)
{
    if (VL_TreeView_Attach(tree))
        vl_tree_state::treeOf(tree)->autoSync = on;
}

bool VL_TreeView_GetAutoSyncCheckbox(HWND tree)
{
    return VL_TreeView_Attach(tree) && vl_tree_state::treeOf(tree)->autoSync;
}

void VL_TreeView_SyncCheck(HWND tree, HTREEITEM item, bool checked)
{
    if (VL_TreeView_GetAutoSyncCheckbox(tree) && VL_TreeView_IsItem(tree, item))
        vl_tree_state::syncCheck(tree, item, checked);
}
