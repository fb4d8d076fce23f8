// What the runtime keeps about tree views: their nodes, checks that follow each other, colours.
#pragma once
#include "76_choice_lists.h"

// Takes charge of the tree view; false for anything else. Any number of times.
bool VL_TreeView_Attach(HWND tree);
// Whether that is a node of the tree now.
bool VL_TreeView_IsItem(HWND tree, HTREEITEM item);
int VL_TreeView_CountItems(HWND tree);
// What TVM_GETNEXTITEM answers.
HTREEITEM VL_TreeView_Step(HWND tree, UINT direction, HTREEITEM from);
// The node below `item` when all are expanded; of NULL the first one. Not beyond the nodes below
// `top`, when there is one.
HTREEITEM VL_TreeView_NextInOrder(HWND tree, HTREEITEM item, HTREEITEM top = NULL);
// Sends a message about a node straight to the control, past all subclass procedures.
LRESULT VL_TreeView_ItemMessage(HWND tree, UINT message, WPARAM wParam, LPARAM lParam);
// For the section that keeps icons: the screen's resolution changed.
void VL_TreeView_RescaleIcons(HWND tree);

// Many changes follow: nothing is drawn until messages are handled again.
void VL_TreeView_HoldDrawing(HWND tree);

// 0xBBGGRR; -1 takes the colour away.
void VL_TreeView_SetItemColor(HWND tree, HTREEITEM item, int color);
// The answer to NM_CUSTOMDRAW of a tree view: colours of single nodes.
LRESULT VL_Subclass_HandleTreeViewCustomDraw(LPARAM lParam);

bool VL_TreeView_GetCheckState(HWND tree, HTREEITEM item);
void VL_TreeView_SetCheckState(HWND tree, HTREEITEM item, bool checked);
// The handles as numbers, from top to bottom.
VL_Array VL_TreeView_GetAllChecked(HWND tree);
void VL_TreeView_CheckAll(HWND tree);
void VL_TreeView_UncheckAll(HWND tree);
// Whether the nodes below follow a check, and a parent is checked when all its children are.
void VL_TreeView_SetAutoSyncCheckbox(HWND tree, bool on);
bool VL_TreeView_GetAutoSyncCheckbox(HWND tree);
// For a check of `item` that happens by itself: brings the others into line when that is on.
void VL_TreeView_SyncCheck(HWND tree, HTREEITEM item, bool checked);
