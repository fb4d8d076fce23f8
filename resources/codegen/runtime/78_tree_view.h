// Tree views: nodes, what is shown of them, icons. A handle that is no node of the tree (any more)
// is refused: nothing happens, and the answer is NULL, false or an empty text.
#pragma once
#include "78_tree_state.h"

// Readies a new tree view. The functions below do so by themselves for nodes made by them.
void VL_PrepareTreeView(HWND tree);

// Each appends and gives the new node. Parent NULL makes a root.
HTREEITEM VL_TreeView_AddRoot(HWND tree, const std::wstring &text);
HTREEITEM VL_TreeView_AddChild(HWND tree, HTREEITEM parent, const std::wstring &text);
// With all nodes below it.
void VL_TreeView_DeleteItem(HWND tree, HTREEITEM item);
void VL_TreeView_Clear(HWND tree);

void VL_TreeView_Expand(HWND tree, HTREEITEM item);
void VL_TreeView_Collapse(HWND tree, HTREEITEM item);
void VL_TreeView_ExpandAll(HWND tree);
void VL_TreeView_CollapseAll(HWND tree);

std::wstring VL_TreeView_GetItemText(HWND tree, HTREEITEM item);
void VL_TreeView_SetItemText(HWND tree, HTREEITEM item, const std::wstring &text);
HTREEITEM VL_TreeView_GetParent(HWND tree, HTREEITEM item);
// Of NULL the first root.
HTREEITEM VL_TreeView_GetFirstChild(HWND tree, HTREEITEM item);
HTREEITEM VL_TreeView_GetNextSibling(HWND tree, HTREEITEM item);
bool VL_TreeView_IsRoot(HWND tree, HTREEITEM item);
int VL_TreeView_GetItemCount(HWND tree);
HTREEITEM VL_TreeView_GetSelected(HWND tree);
// NULL selects nothing.
void VL_TreeView_SetSelected(HWND tree, HTREEITEM item);
// The node under the mouse as it stood for the message that is handled: on its icon or text.
HTREEITEM VL_TreeView_HitTest(HWND tree);

// Design pixels.
void VL_TreeView_CreateImageList(HWND tree, int width, int height);
// The index of the icon, -1 when the file cannot be read.
int VL_TreeView_AddIcon(HWND tree, const std::wstring &path);
// -1 takes the icon away; `selected` is shown while the node is selected, -1 for the same.
void VL_TreeView_SetItemIcon(HWND tree, HTREEITEM item, int image, int selected = -1);
