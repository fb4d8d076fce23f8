// Tree views: nodes and their handles, checks that follow each other, colours, icons.
#include "78_tree_view.h"
#include "gdi_count.h"

namespace {

HWND makeTree(DWORD style)
{
    const HWND tree = testControl(WC_TREEVIEWW, L"", style | TVS_HASBUTTONS | TVS_LINESATROOT, 1001,
                                  {10, 10, 310, 310});
    VL_PrepareTreeView(tree);
    return tree;
}

// The texts of the checked nodes.
std::wstring checked(HWND tree)
{
    std::wstring all;
    for (const VL_Any &item : VL_TreeView_GetAllChecked(tree))
        all += VL_TreeView_GetItemText(tree, (HTREEITEM)(intptr_t)item.toInt());
    return all;
}

void testNodes()
{
    const HWND tree = makeTree(0);
    const HTREEITEM root = VL_TreeView_AddRoot(tree, L"\u6839");
    const HTREEITEM child = VL_TreeView_AddChild(tree, root, L"child");
    const HTREEITEM second = VL_TreeView_AddChild(tree, root, L"second");
    const HTREEITEM leaf = VL_TreeView_AddChild(tree, child, L"leaf");
    const HTREEITEM other = VL_TreeView_AddChild(tree, NULL, L"other");
    CHECK_EQ(VL_TreeView_GetItemCount(tree), 5);
    CHECK(VL_TreeView_GetParent(tree, leaf) == child);
    CHECK(VL_TreeView_GetFirstChild(tree, root) == child);
    CHECK(VL_TreeView_GetNextSibling(tree, child) == second);
    CHECK(VL_TreeView_GetFirstChild(tree, NULL) == root);
    CHECK(VL_TreeView_IsRoot(tree, other) && !VL_TreeView_IsRoot(tree, leaf));
    VL_TreeView_SetItemText(tree, leaf, std::wstring(3000, L'l'));
    CHECK(VL_TreeView_GetItemText(tree, leaf) == std::wstring(3000, L'l'));
    VL_TreeView_ExpandAll(tree);
    CHECK((SendMessageW(tree, TVM_GETITEMSTATE, (WPARAM)child, TVIS_EXPANDED) & TVIS_EXPANDED) !=
          0);
    VL_TreeView_Collapse(tree, root);
    CHECK((SendMessageW(tree, TVM_GETITEMSTATE, (WPARAM)root, TVIS_EXPANDED) & TVIS_EXPANDED) == 0);
    VL_TreeView_SetSelected(tree, leaf);
    CHECK(VL_TreeView_GetSelected(tree) == leaf);
    VL_TreeView_SetSelected(tree, NULL);
    CHECK(VL_TreeView_GetSelected(tree) == NULL);

    // Handles of nodes that went with their parent are refused.
    VL_TreeView_DeleteItem(tree, child);
    CHECK_EQ(VL_TreeView_GetItemCount(tree), 3);
    for (const HTREEITEM odd : {child, leaf, (HTREEITEM)NULL, (HTREEITEM)(intptr_t)12345}) {
        CHECK_EQ(VL_TreeView_GetItemText(tree, odd), L"");
        CHECK(VL_TreeView_GetParent(tree, odd) == NULL);
        VL_TreeView_SetItemText(tree, odd, L"x");
        VL_TreeView_Expand(tree, odd);
        VL_TreeView_DeleteItem(tree, odd);
        VL_TreeView_SetCheckState(tree, odd, true);
        VL_TreeView_SyncCheck(tree, odd, true);
        VL_TreeView_SetItemColor(tree, odd, 5);
        if (odd)
            CHECK(VL_TreeView_AddChild(tree, odd, L"x") == NULL);
    }
    CHECK_EQ(VL_TreeView_GetItemCount(tree), 3);
    // Whoever deletes without asking this section leaves it no wrong handles either.
    SendMessageW(tree, TVM_DELETEITEM, 0, (LPARAM)second);
    CHECK_EQ(VL_TreeView_GetItemText(tree, second), L"");
    VL_TreeView_Clear(tree);
    CHECK_EQ(VL_TreeView_GetItemCount(tree), 0);
    CHECK_EQ(VL_TreeView_GetItemText(tree, root), L"");
    DestroyWindow(tree);
    CHECK(VL_TreeView_AddRoot(tree, L"dead") == NULL);
    CHECK(VL_TreeView_AddRoot(testWindow(), L"odd") == NULL);
}

struct Family
{
    HWND tree;
    HTREEITEM a, b, c, d;
};

// a has the children b and c, b has the child d.
Family makeFamily()
{
    Family family = {};
    family.tree = makeTree(TVS_CHECKBOXES);
    family.a = VL_TreeView_AddRoot(family.tree, L"a");
    family.b = VL_TreeView_AddChild(family.tree, family.a, L"b");
    family.c = VL_TreeView_AddChild(family.tree, family.a, L"c");
    family.d = VL_TreeView_AddChild(family.tree, family.b, L"d");
    VL_TreeView_ExpandAll(family.tree);
    return family;
}

void testChecks()
{
    const Family family = makeFamily();
    const HWND tree = family.tree;
    VL_TreeView_SetCheckState(tree, family.a, true);
    CHECK_EQ(checked(tree), L"a");
    CHECK(!VL_TreeView_GetAutoSyncCheckbox(tree));
    VL_TreeView_SetAutoSyncCheckbox(tree, true);
    const struct
    {
        HTREEITEM item;
        bool on;
        const wchar_t *expected;
    } rows[] = {{family.a, true, L"abdc"}, {family.d, false, L"c"}, {family.d, true, L"abdc"},
                {family.c, false, L"bd"},  {family.b, false, L""},  {family.b, true, L"bd"},
                {family.c, true, L"abdc"}, {family.a, false, L""}};
    for (const auto &row : rows) {
        VL_TreeView_SetCheckState(tree, row.item, row.on);
        CHECK_EQ(checked(tree), row.expected);
    }
    VL_TreeView_CheckAll(tree);
    CHECK_EQ(checked(tree), L"abdc");
    VL_TreeView_UncheckAll(tree);
    CHECK_EQ(checked(tree), L"");
    DestroyWindow(tree);
}

// A click on the box is told once, whatever the system tells by itself, and the others follow.
void testClicks()
{
    const Family family = makeFamily();
    const HWND tree = family.tree;
    VL_TreeView_SetAutoSyncCheckbox(tree, true);
    pumpMessages();
    RECT area = {};
    *(HTREEITEM *)&area = family.b;
    SendMessageW(tree, TVM_GETITEMRECT, TRUE, (LPARAM)&area);
    TVHITTESTINFO hit = {};
    hit.pt.y = (area.top + area.bottom) / 2;
    for (hit.pt.x = area.left; hit.pt.x > 0; --hit.pt.x) {
        SendMessageW(tree, TVM_HITTEST, 0, (LPARAM)&hit);
        if (hit.flags & TVHT_ONITEMSTATEICON)
            break;
    }
    hit.pt.x -= 4;
    takeTold();
    const LPARAM place = MAKELPARAM(hit.pt.x, hit.pt.y);
    PostMessageW(tree, WM_LBUTTONUP, 0, place);
    SendMessageW(tree, WM_LBUTTONDOWN, MK_LBUTTON, place);
    pumpMessages();
    CHECK_EQ(countOf(takeTold(), 1001, (int)NM_TVSTATEIMAGECHANGING), 1);
    CHECK_EQ(checked(tree), L"bd");
    SetFocus(tree);
    VL_TreeView_SetSelected(tree, family.c);
    takeTold();
    SendMessageW(tree, WM_KEYDOWN, VK_SPACE, 0);
    pumpMessages();
    CHECK_EQ(countOf(takeTold(), 1001, (int)NM_TVSTATEIMAGECHANGING), 1);
    CHECK_EQ(checked(tree), L"abdc");
    DestroyWindow(tree);
}

bool showsColor(HWND tree, HTREEITEM item, COLORREF color)
{
    RECT area = {};
    *(HTREEITEM *)&area = item;
    SendMessageW(tree, TVM_GETITEMRECT, TRUE, (LPARAM)&area);
    pumpMessages();
    UpdateWindow(tree);
    const HDC context = GetDC(tree);
    bool found = false;
    for (int y = area.top; y < area.bottom && !found; ++y) {
        for (int x = area.left - 20; x < area.right && !found; ++x)
            found = GetPixel(context, x, y) == color;
    }
    ReleaseDC(tree, context);
    return found;
}

void testColorsAndIcons()
{
    const HWND tree = makeTree(0);
    const HTREEITEM plain = VL_TreeView_AddRoot(tree, L"MMMM");
    const HTREEITEM red = VL_TreeView_AddRoot(tree, L"MMMM");
    VL_TreeView_SetItemColor(tree, red, RGB(255, 0, 0));
    CHECK(showsColor(tree, red, RGB(255, 0, 0)));
    CHECK(!showsColor(tree, plain, RGB(255, 0, 0)));
    VL_TreeView_SetItemColor(tree, red, -1);
    CHECK(!showsColor(tree, red, RGB(255, 0, 0)));
    CHECK_EQ(VL_TreeView_AddIcon(tree, L"missing.ico"), -1);
    VL_TreeView_CreateImageList(tree, 24, 24);
    VL_TreeView_SetItemIcon(tree, red, 3);
    DestroyWindow(tree);

    makeFamily();
    DestroyWindow(GetDlgItem(testWindow(), 1001));
    const int before = gdiObjects();
    for (int i = 0; i < 100; ++i) {
        const Family family = makeFamily();
        VL_TreeView_CreateImageList(family.tree, 20, 20);
        UpdateWindow(family.tree);
        DestroyWindow(family.tree);
    }
    CHECK(gdiObjects() <= before + 50);
}

} // namespace

void runTests()
{
    testNodes();
    testChecks();
    testClicks();
    testColorsAndIcons();
}
