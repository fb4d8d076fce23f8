// Combo boxes, list boxes and the item functions that list views, trees and tabs share.
#include "36_geometry.h"
#include "76_list_sizes.h"
#include "window_test.h"

namespace {

RECT place(int left, int top, int width, int height)
{
    return {left, top, left + width, top + height};
}

std::wstring indexes(HWND control)
{
    std::wstring text;
    for (const VL_Any &index : VL_GetSelectedIndexes(control))
        text += index.toStr() + L",";
    return text;
}

std::wstring texts(HWND control)
{
    std::wstring all;
    for (int i = 0; i < VL_GetItemCount(control); ++i)
        all += VL_GetComboOrListItemText(control, i) + L"|";
    return all;
}

struct Shared
{
    const wchar_t *windowClass;
    DWORD style;
};

const Shared kinds[] = {{L"LISTBOX", LBS_NOTIFY},
                        {L"LISTBOX", LBS_NOTIFY | LBS_EXTENDEDSEL},
                        {L"COMBOBOX", CBS_DROPDOWNLIST},
                        {L"COMBOBOX", CBS_DROPDOWN},
                        {WC_LISTVIEWW, LVS_REPORT},
                        {WC_TREEVIEWW, 0},
                        {WC_TABCONTROLW, 0}};

// Every control with items behaves alike.
void testShared()
{
    for (const Shared &kind : kinds) {
        const HWND control =
            testControl(kind.windowClass, L"", kind.style, 1001, place(10, 10, 200, 150));
        CHECK_EQ(VL_GetSelectedIndex(control), -1);
        CHECK_EQ(VL_AddItem(control, L"\u4E00"), 0);
        CHECK_EQ(VL_AddItem(control, L"three"), 1);
        CHECK_EQ(VL_InsertItem(control, 1, L"two"), 1);
        CHECK_EQ(VL_InsertItem(control, 99, L"end"), 3);
        CHECK_EQ(texts(control), L"\u4E00|two|three|end|");
        VL_SetSelectedIndex(control, 2);
        CHECK_EQ(VL_GetSelectedIndex(control), 2);
        CHECK_EQ(indexes(control), L"2,");
        CHECK(VL_IsItemSelected(control, 2));
        CHECK(!VL_IsItemSelected(control, 1) && !VL_IsItemSelected(control, -1));
        VL_SelectText(control, L"nowhere");
        CHECK_EQ(VL_GetSelectedIndex(control), 2);
        VL_SelectText(control, L"TWO");
        CHECK_EQ(VL_GetSelectedIndex(control), 1);
        VL_SetSelectedIndex(control, 2);
        const std::wstring text(5000, L'x');
        VL_SetComboOrListItemText(control, 2, text);
        CHECK(VL_GetComboOrListItemText(control, 2) == text);
        CHECK_EQ(VL_GetSelectedIndex(control), 2);
        VL_DeleteItem(control, 0);
        VL_DeleteItem(control, -1);
        VL_DeleteItem(control, 99);
        CHECK_EQ(VL_GetItemCount(control), 3);
        CHECK_EQ(VL_GetSelectedIndex(control), 1);
        CHECK_EQ(VL_GetComboOrListItemText(control, 7), L"");
        VL_SetComboOrListItemText(control, -1, L"no");
        VL_SetSelectedIndex(control, -1);
        CHECK_EQ(indexes(control), L"");
        VL_ClearComboOrList(control);
        CHECK_EQ(VL_GetItemCount(control), 0);
        DestroyWindow(control);
    }
    for (const HWND odd : {(HWND)NULL, (HWND)(intptr_t)0x1234, testWindow()}) {
        CHECK_EQ(VL_AddItem(odd, L"x"), -1);
        CHECK_EQ(VL_GetItemCount(odd), 0);
        CHECK_EQ(VL_GetSelectedIndex(odd), -1);
        VL_SetSelectedIndex(odd, 3);
        VL_FillItems(odd, L"a;b");
        VL_PrepareComboBox(odd, 20, 5);
        VL_PrepareListBox(odd, 20, 0, true);
    }
}

void testTreeOrder()
{
    const HWND tree = testControl(WC_TREEVIEWW, L"", 0, 1001, place(10, 10, 200, 150));
    VL_AddItem(tree, L"a");
    VL_AddItem(tree, L"d");
    TVINSERTSTRUCTW child = {};
    child.hParent = (HTREEITEM)SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
    child.hInsertAfter = TVI_LAST;
    child.item.mask = TVIF_TEXT;
    child.item.pszText = const_cast<wchar_t *>(L"c");
    SendMessageW(tree, TVM_INSERTITEMW, 0, (LPARAM)&child);
    CHECK_EQ(VL_InsertItem(tree, 1, L"b"), 1);
    CHECK_EQ(texts(tree), L"a|b|c|d|");
    VL_SetSelectedIndex(tree, 2);
    CHECK_EQ(VL_GetSelectedIndex(tree), 2);
    DestroyWindow(tree);
}

void testFill()
{
    const struct
    {
        const wchar_t *items;
        const wchar_t *expected;
    } rows[] = {{L"one\ntwo", L"one|two|"}, {L"one\r\ntwo\r\n", L"one|two|"},
                {L"a;b;c", L"a|b|c|"},      {L"a;b\nc", L"a;b|c|"},
                {L"a\n\nb", L"a||b|"},      {L"", L""}};
    const HWND list = testControl(L"LISTBOX", L"", 0, 1001, place(10, 10, 200, 150));
    const HWND combo =
        testControl(L"COMBOBOX", L"", CBS_DROPDOWNLIST, 1002, place(250, 10, 99, 99));
    for (const auto &row : rows) {
        for (const HWND control : {list, combo}) {
            VL_FillItems(control, row.items);
            CHECK_EQ(texts(control), row.expected);
        }
    }
    ShowWindow(combo, SW_HIDE);
    ShowWindow(list, SW_HIDE);
    std::wstring many;
    for (int i = 0; i < 10000; ++i)
        many += L"item " + std::to_wstring(i) + L"\n";
    VL_FillItems(list, many);
    VL_FillItems(combo, many);
    CHECK_EQ(VL_GetItemCount(list), 10000);
    CHECK_EQ(VL_GetComboOrListItemText(combo, 9999), L"item 9999");
    // Filling must not show what the program hid.
    CHECK(!(GetWindowLongW(combo, GWL_STYLE) & WS_VISIBLE));
    CHECK(!(GetWindowLongW(list, GWL_STYLE) & WS_VISIBLE));
    takeTold();
    VL_SetSelectedIndex(list, 3);
    VL_SetSelectedIndex(combo, 3);
    CHECK(takeTold().empty());
    DestroyWindow(list);
    DestroyWindow(combo);
}

void testSelectionModes()
{
    const HWND list =
        testControl(L"LISTBOX", L"", LBS_NOTIFY | LBS_MULTIPLESEL, 1001, place(10, 10, 200, 150));
    VL_FillItems(list, L"a;b;c;d;e");
    SendMessageW(list, LB_SETSEL, TRUE, 1);
    SendMessageW(list, LB_SETSEL, TRUE, 3);
    SendMessageW(list, LB_SETCARETINDEX, 3, FALSE);
    CHECK_EQ(VL_ListBox_GetBestIndex(list), 3);
    SendMessageW(list, LB_SETCARETINDEX, 0, FALSE);
    CHECK_EQ(VL_ListBox_GetBestIndex(list), 1);
    CHECK_EQ(indexes(list), L"1,3,");
    SendMessageW(list, LB_SETITEMDATA, 3, 42);
    VL_SetComboOrListItemText(list, 3, L"new");
    CHECK_EQ(indexes(list), L"1,3,");
    CHECK_EQ((int)SendMessageW(list, LB_GETITEMDATA, 3, 0), 42);
    DestroyWindow(list);

    const HWND sorted = testControl(L"LISTBOX", L"", LBS_SORT, 1001, place(10, 10, 200, 150));
    VL_FillItems(sorted, L"b;a;d");
    CHECK_EQ(VL_InsertItem(sorted, 0, L"c"), 2);
    VL_SetSelectedIndex(sorted, 0);
    VL_SetComboOrListItemText(sorted, 0, L"z");
    CHECK_EQ(texts(sorted), L"b|c|d|z|");
    CHECK_EQ(VL_GetSelectedIndex(sorted), 3);
    DestroyWindow(sorted);
}

int height(HWND control)
{
    RECT frame = {};
    GetWindowRect(control, &frame);
    return frame.bottom - frame.top;
}

int droppedHeight(HWND combo)
{
    COMBOBOXINFO parts = {};
    parts.cbSize = sizeof(parts);
    GetComboBoxInfo(combo, &parts);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    const int dropped = height(parts.hwndList);
    SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
    return dropped;
}

void testComboHeight()
{
    for (const DWORD style : {CBS_DROPDOWNLIST, CBS_DROPDOWN}) {
        const HWND combo =
            testControl(L"COMBOBOX", L"", style | WS_VSCROLL, 1001, place(10, 10, 200, 30));
        CHECK_EQ(VL_IsComboBoxEditable(combo), style == CBS_DROPDOWN);
        VL_FillItems(combo, L"a;b;c;d;e;f;g;h;i;j;k;l");
        VL_PrepareComboBox(combo, 34, 5);
        CHECK_EQ(height(combo), 34);
        const int item = (int)SendMessageW(combo, CB_GETITEMHEIGHT, 0, 0);
        CHECK(droppedHeight(combo) >= 5 * item && droppedHeight(combo) <= 6 * item);
        VL_SetDropDownCount(combo, 8);
        CHECK(droppedHeight(combo) >= 8 * item && droppedHeight(combo) <= 9 * item);
        VL_SetFontSize(combo, 16);
        CHECK_EQ(height(combo), 34);
        CHECK((int)SendMessageW(combo, CB_GETITEMHEIGHT, 0, 0) > item);
        SetWindowPos(combo, NULL, 10, 10, 190, 34, SWP_NOZORDER);
        CHECK_EQ(height(combo), 34);
        SetWindowPos(combo, NULL, 20, 20, 150, 44, SWP_NOZORDER);
        CHECK_EQ(height(combo), 44);
        SetWindowPos(combo, NULL, 20, 20, 180, 44, SWP_NOZORDER);
        CHECK_EQ(height(combo), 44);
        CHECK(droppedHeight(combo) >= 8 * item);
        VL_SetWidth(combo, 160);
        CHECK_EQ(VL_GetHeight(combo), 44);
        VL_SetHeight(combo, 50);
        CHECK_EQ(VL_GetHeight(combo), 50);
        CHECK_EQ(VL_GetWidth(combo), 160);
        CHECK(droppedHeight(combo) >= 8 * item);
        DestroyWindow(combo);
    }
}

void testListBoxSizes()
{
    const HWND list =
        testControl(L"LISTBOX", L"", WS_HSCROLL | WS_VSCROLL, 1001, place(10, 10, 100, 150));
    VL_PrepareListBox(list, 25, 0, true);
    CHECK_EQ((int)SendMessageW(list, LB_GETITEMHEIGHT, 0, 0), 25);
    VL_AddItem(list, L"short");
    pumpMessages();
    const int narrow = (int)SendMessageW(list, LB_GETHORIZONTALEXTENT, 0, 0);
    const std::wstring wide(60, L'W');
    VL_AddItem(list, wide);
    const int extent = (int)SendMessageW(list, LB_GETHORIZONTALEXTENT, 0, 0);
    CHECK(extent > 300 && narrow < 100);
    VL_SetFontSize(list, 20);
    pumpMessages();
    CHECK((int)SendMessageW(list, LB_GETHORIZONTALEXTENT, 0, 0) > extent);
    CHECK_EQ((int)SendMessageW(list, LB_GETITEMHEIGHT, 0, 0), 25);
    VL_DeleteItem(list, 1);
    UpdateWindow(list);
    pumpMessages();
    CHECK((int)SendMessageW(list, LB_GETHORIZONTALEXTENT, 0, 0) < extent);
    VL_AddItem(list, std::wstring(5000000, L'y'));
    pumpMessages();
    DestroyWindow(list);
}

} // namespace

void runTests()
{
    testShared();
    testTreeOrder();
    testFill();
    testSelectionModes();
    testComboHeight();
    testListBoxSizes();
}
