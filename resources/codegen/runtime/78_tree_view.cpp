// Tree views: nodes, what is shown of them, icons.
#include "78_tree_view.h"

#include "76_item_icons.h"

namespace vl_tree_view {
namespace {

HTREEITEM step(HWND tree, UINT direction, HTREEITEM from)
{
    return VL_TreeView_Step(tree, direction, from);
}

HTREEITEM insertItem(HWND tree, HTREEITEM parent, const std::wstring &text)
{
    if (!VL_TreeView_Attach(tree))
        return NULL;
    TVINSERTSTRUCTW place = {};
    place.hParent = parent ? parent : TVI_ROOT;
    place.hInsertAfter = TVI_LAST;
    place.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    place.item.iImage = I_IMAGENONE;
    place.item.iSelectedImage = I_IMAGENONE;
    place.item.pszText = const_cast<wchar_t *>(text.c_str());
    return (HTREEITEM)SendMessageW(tree, TVM_INSERTITEMW, 0, (LPARAM)&place);
}

void expandEach(HWND tree, UINT action)
{
    if (!VL_TreeView_Attach(tree))
        return;
    VL_TreeView_HoldDrawing(tree);
    for (HTREEITEM item = step(tree, TVGN_ROOT, NULL); item;
         item = VL_TreeView_NextInOrder(tree, item)) {
        if (step(tree, TVGN_CHILD, item))
            SendMessageW(tree, TVM_EXPAND, action, (LPARAM)item);
    }
}

struct Icons
{
    VL_ItemImages images;
};

Icons *readyIcons(HWND tree)
{
    Icons *icons = VL_TreeView_Attach(tree) ? VL_Extra<Icons>(tree) : nullptr;
    if (icons && !icons->images.handle()) {
        icons->images.create(tree, 16, 16);
        SendMessageW(tree, TVM_SETIMAGELIST, TVSIL_NORMAL, (LPARAM)icons->images.handle());
    }
    return icons;
}

} // namespace
} // namespace vl_tree_view

void VL_PrepareTreeView(HWND tree)
{
    VL_TreeView_Attach(tree);
}

HTREEITEM VL_TreeView_AddRoot(HWND tree, const std::wstring &text)
{
    return vl_tree_view::insertItem(tree, NULL, text);
}

HTREEITEM VL_TreeView_AddChild(HWND tree, HTREEITEM parent, const std::wstring &text)
{
    if (parent && !VL_TreeView_IsItem(tree, parent))
        return NULL;
    return vl_tree_view::insertItem(tree, parent, text);
}

void VL_TreeView_DeleteItem(HWND tree, HTREEITEM item)
{
    if (VL_TreeView_IsItem(tree, item))
        SendMessageW(tree, TVM_DELETEITEM, 0, (LPARAM)item);
}

void VL_TreeView_Clear(HWND tree)
{
    if (VL_TreeView_Attach(tree))
        SendMessageW(tree, TVM_DELETEITEM, 0, (LPARAM)TVI_ROOT);
}

void VL_TreeView_Expand(HWND tree, HTREEITEM item)
{
    if (VL_TreeView_IsItem(tree, item))
        SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, (LPARAM)item);
}

void VL_TreeView_Collapse(HWND tree, HTREEITEM item)
{
    if (VL_TreeView_IsItem(tree, item))
        SendMessageW(tree, TVM_EXPAND, TVE_COLLAPSE, (LPARAM)item);
}

void VL_TreeView_ExpandAll(HWND tree)
{
    vl_tree_view::expandEach(tree, TVE_EXPAND);
}

void VL_TreeView_CollapseAll(HWND tree)
{
    vl_tree_view::expandEach(tree, TVE_COLLAPSE);
}

std::wstring VL_TreeView_GetItemText(HWND tree, HTREEITEM item)
{
    if (!VL_TreeView_IsItem(tree, item))
        return std::wstring();
    return VL_ReadGrowing([&](wchar_t *buffer, int size) {
        TVITEMW request = {};
        request.mask = TVIF_TEXT;
        request.hItem = item;
        request.pszText = buffer;
        request.cchTextMax = size;
        SendMessageW(tree, TVM_GETITEMW, 0, (LPARAM)&request);
    });
}

void VL_TreeView_SetItemText(HWND tree, HTREEITEM item, const std::wstring &text)
{
    if (!VL_TreeView_IsItem(tree, item))
        return;
    TVITEMW change = {};
    change.mask = TVIF_TEXT;
    change.hItem = item;
    change.pszText = const_cast<wchar_t *>(text.c_str());
    SendMessageW(tree, TVM_SETITEMW, 0, (LPARAM)&change);
}

HTREEITEM VL_TreeView_GetParent(HWND tree, HTREEITEM item)
{
    return VL_TreeView_IsItem(tree, item) ? vl_tree_view::step(tree, TVGN_PARENT, item) : NULL;
}

HTREEITEM VL_TreeView_GetFirstChild(HWND tree, HTREEITEM item)
{
    if (!item)
        return VL_TreeView_Attach(tree) ? vl_tree_view::step(tree, TVGN_ROOT, NULL) : NULL;
    return VL_TreeView_IsItem(tree, item) ? vl_tree_view::step(tree, TVGN_CHILD, item) : NULL;
}

HTREEITEM VL_TreeView_GetNextSibling(HWND tree, HTREEITEM item)
{
    return VL_TreeView_IsItem(tree, item) ? vl_tree_view::step(tree, TVGN_NEXT, item) : NULL;
}

bool VL_TreeView_IsRoot(HWND tree, HTREEITEM item)
{
    return VL_TreeView_IsItem(tree, item) && !vl_tree_view::step(tree, TVGN_PARENT, item);
}

int VL_TreeView_GetItemCount(HWND tree)
{
    return VL_TreeView_CountItems(tree);
}

HTREEITEM VL_TreeView_GetSelected(HWND tree)
{
    return VL_TreeView_Attach(tree) ? vl_tree_view::step(tree, TVGN_CARET, NULL) : NULL;
}

void VL_TreeView_SetSelected(HWND tree, HTREEITEM item)
{
    if (item ? VL_TreeView_IsItem(tree, item) : VL_TreeView_Attach(tree))
        SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, (LPARAM)item);
}

HTREEITEM VL_TreeView_HitTest(HWND tree)
{
    if (!VL_TreeView_Attach(tree))
        return NULL;
    const DWORD place = GetMessagePos();
    TVHITTESTINFO hit = {};
    hit.pt = {(short)LOWORD(place), (short)HIWORD(place)};
    ScreenToClient(tree, &hit.pt);
    SendMessageW(tree, TVM_HITTEST, 0, (LPARAM)&hit);
    return hit.flags & (TVHT_ONITEM | TVHT_ONITEMICON | TVHT_ONITEMLABEL) ? hit.hItem : NULL;
}

void VL_TreeView_CreateImageList(HWND tree, int width, int height)
{
    vl_tree_view::Icons *icons = vl_tree_view::readyIcons(tree);
    if (!icons)
        return;
    icons->images.create(tree, width, height);
    SendMessageW(tree, TVM_SETIMAGELIST, TVSIL_NORMAL, (LPARAM)icons->images.handle());
}

int VL_TreeView_AddIcon(HWND tree, const std::wstring &path)
{
    vl_tree_view::Icons *icons = vl_tree_view::readyIcons(tree);
    return icons ? icons->images.add(tree, path) : -1;
}

void VL_TreeView_SetItemIcon(HWND tree, HTREEITEM item, int image, int selected)
{
    if (!VL_TreeView_IsItem(tree, item))
        return;
    TVITEMW change = {};
    change.mask = TVIF_IMAGE | TVIF_SELECTEDIMAGE;
    change.hItem = item;
    change.iImage = image < 0 ? I_IMAGENONE : image;
    change.iSelectedImage = selected < 0 ? change.iImage : selected;
    SendMessageW(tree, TVM_SETITEMW, 0, (LPARAM)&change);
}

void VL_TreeView_RescaleIcons(HWND tree)
{
    vl_tree_view::Icons *icons = VL_FindExtra<vl_tree_view::Icons>(tree);
    if (icons && icons->images.rescale(tree))
        SendMessageW(tree, TVM_SETIMAGELIST, TVSIL_NORMAL, (LPARAM)icons->images.handle());
}
