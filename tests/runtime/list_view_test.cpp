// List views: rows, columns, drawing once for many changes, icons, sorting.
#include "77_list_view_sorting.h"
#include "gdi_count.h"

namespace {

HWND makeList(DWORD style, DWORD extended = 0)
{
    const HWND list = testControl(WC_LISTVIEWW, L"", style, 1001, {10, 10, 410, 210});
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, (LPARAM)extended);
    VL_PrepareListView(list);
    return list;
}

std::wstring column(HWND list, int index)
{
    std::wstring all;
    for (int row = 0; row < VL_GetItemCount(list); ++row)
        all += VL_ListView_GetItemText(list, row, index) + L"|";
    return all;
}

void testRows()
{
    const HWND list = makeList(LVS_REPORT);
    CHECK_EQ(VL_ListView_AddColumn(list, L"Name"), 0);
    CHECK_EQ(VL_ListView_AddColumn(list, L"\u6570", 80, L"\u53F3\u5BF9\u9F50"), 1);
    CHECK_EQ(VL_ListView_AddColumn(list, L"C", 60, 1), 2);
    CHECK_EQ((int)SendMessageW(list, LVM_GETCOLUMNWIDTH, 1, 0), 80);
    CHECK_EQ(VL_ListView_AddRow(list, {L"a", std::wstring(L"1"), L"x"}), 0);
    CHECK_EQ(VL_ListView_AddRow(list, VL_Array{VL_Any(L"b"), VL_Any(2)}), 1);
    CHECK_EQ(VL_ListView_InsertRow(list, 1, {L"between"}), 1);
    CHECK_EQ(VL_ListView_InsertRow(list, 99, {L"last", L"4"}), 3);
    const wchar_t *const cells[] = {L"t1", L"5", L"y", L"t2", NULL, L"z"};
    VL_ListView_AddRowsText(list, cells, 2, 3);
    CHECK_EQ(column(list, 0), L"a|between|b|last|t1|t2|");
    CHECK_EQ(column(list, 1), L"1||2|4|5||");
    CHECK_EQ(column(list, 2), L"x||||y|z|");
    VL_ListView_AddItemsFromArray(
        list, VL_Array{VL_Any(L"solo"), VL_Any(VL_Array{VL_Any(7), VL_Any(8)})});
    VL_ListView_AddItemsFromArray(list, VL_Array2D{{VL_Any(L"m"), VL_Any(true)}});
    CHECK_EQ(VL_ListView_GetItemText(list, 7, 1), L"8");
    CHECK_EQ(VL_GetItemCount(list), 9);
    VL_ListView_SetSubItem(list, 0, 1, std::wstring(20000, L'n'));
    CHECK(VL_ListView_GetItemText(list, 0, 1) == std::wstring(20000, L'n'));
    VL_ListView_SetSubItem(list, 0, 9, L"nowhere");
    VL_ListView_SetSubItem(list, 90, 0, L"nowhere");
    CHECK_EQ((int)VL_ListView_GetRowData(list, 5).size(), 3);
    CHECK_EQ(VL_ListView_GetRowData(list, 5)[2].toStr(), L"z");
    CHECK(VL_ListView_GetRowData(list, -1).empty());
    VL_ListView_DeleteColumn(list, 1);
    CHECK_EQ(column(list, 1).substr(0, 2), L"x|");
    CHECK_EQ(VL_ListView_GetColumnCount(list), 2);
    VL_ListView_DeleteRow(list, 0);
    VL_SetSelectedIndex(list, 1);
    CHECK_EQ(VL_ListView_GetSelectedText(list), L"b");
    VL_ListView_Clear(list);
    CHECK_EQ(VL_ListView_GetSelectedText(list), L"");
    DestroyWindow(list);
    for (const HWND odd : {(HWND)NULL, (HWND)(intptr_t)77, testWindow()}) {
        CHECK_EQ(VL_ListView_AddRow(odd, {L"x"}), -1);
        CHECK_EQ(VL_ListView_AddColumn(odd, L"x"), -1);
        CHECK_EQ(VL_ListView_AddIcon(odd, L"x.png"), -1);
        VL_ListView_Sort(odd, 0);
        VL_ListView_SelectAll(odd);
        VL_ListView_SetViewMode(odd, VL_Any(3));
        VL_ListView_BeginUpdate(odd);
        VL_ListView_EndUpdate(odd);
        CHECK_EQ(VL_ListView_DebugInfo(odd), L"");
    }
}

// The alignment of the first column is one that the system alone would refuse.
void testFirstColumn()
{
    const HWND list = makeList(LVS_REPORT);
    CHECK_EQ(VL_ListView_AddColumn(list, L"N", 50, 2), 0);
    LVCOLUMNW read = {};
    read.mask = LVCF_FMT;
    SendMessageW(list, LVM_GETCOLUMNW, 0, (LPARAM)&read);
    CHECK_EQ(read.fmt & LVCFMT_JUSTIFYMASK, LVCFMT_RIGHT);
    CHECK_EQ(VL_ListView_GetColumnCount(list), 1);
    VL_ListView_AddRow(list, {L"1"});
    CHECK_EQ(column(list, 0), L"1|");
    DestroyWindow(list);
}

bool showsText(HWND list, int row)
{
    RECT area = {LVIR_LABEL, 0, 0, 0};
    SendMessageW(list, LVM_GETITEMRECT, (WPARAM)row, (LPARAM)&area);
    UpdateWindow(list);
    const HDC context = GetDC(list);
    bool dark = false;
    for (int y = area.top; y < area.bottom && !dark; ++y) {
        for (int x = area.left; x < area.left + 30 && !dark; ++x)
            dark = GetRValue(GetPixel(context, x, y)) < 128;
    }
    ReleaseDC(list, context);
    return dark;
}

void testDrawing()
{
    const HWND list = makeList(LVS_REPORT);
    VL_ListView_AddColumn(list, L"A", 150);
    VL_ListView_AddRow(list, {L"MMM"});
    CHECK(showsText(list, 0));
    for (int i = 1; i < 300; ++i)
        VL_ListView_AddRow(list, {L"MMM " + std::to_wstring(i)});
    VL_ListView_EnsureVisible(list, 299);
    VL_ListView_InsertRow(list, 0, {L"top"});
    pumpMessages();
    // The row that was asked for is the one in sight, though another came before it.
    const int top = (int)SendMessageW(list, LVM_GETTOPINDEX, 0, 0);
    const int page = (int)SendMessageW(list, LVM_GETCOUNTPERPAGE, 0, 0);
    CHECK(top <= 300 && top + page >= 300);
    CHECK(showsText(list, 300));
    VL_ListView_BeginUpdate(list);
    VL_ListView_BeginUpdate(list);
    VL_ListView_Clear(list);
    VL_ListView_AddRow(list, {L"MMM"});
    VL_ListView_EndUpdate(list);
    pumpMessages();
    VL_ListView_EndUpdate(list);
    CHECK(showsText(list, 0));
    // A program that switches drawing itself keeps the say.
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    VL_ListView_AddRow(list, {L"MMM"});
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, NULL, TRUE);
    CHECK(showsText(list, 1));
    ShowWindow(list, SW_HIDE);
    VL_ListView_AddRow(list, {L"hidden"});
    pumpMessages();
    CHECK(!(GetWindowLongW(list, GWL_STYLE) & WS_VISIBLE));
    DestroyWindow(list);
}

void testSelection()
{
    const HWND list = makeList(LVS_REPORT | LVS_SHOWSELALWAYS, LVS_EX_CHECKBOXES);
    VL_ListView_AddColumn(list, L"A", 150);
    VL_ListView_AddItemsFromArray(list, VL_Any(VL_Array{VL_Any(L"a"), VL_Any(L"b"), VL_Any(L"c")}));
    VL_ListView_SelectAll(list);
    CHECK_EQ((int)VL_GetSelectedIndexes(list).size(), 3);
    VL_SetSelectedIndex(list, 2);
    CHECK_EQ((int)VL_GetSelectedIndexes(list).size(), 1);
    pumpMessages();
    takeTold();
    VL_ListView_SetChecked(list, 1, true);
    CHECK_EQ(countOf(takeTold(), 1001, (int)LVN_ITEMCHANGED), 1);
    CHECK(VL_ListView_IsChecked(list, 1));
    CHECK(!VL_ListView_IsChecked(list, 0));
    CHECK(!VL_ListView_IsChecked(list, 9));
    VL_ListView_SetChecked(list, 1, false);
    CHECK(!VL_ListView_IsChecked(list, 1));
    const std::wstring info = VL_ListView_DebugInfo(list);
    CHECK(info.find(L"\u884C\u6570=3") != std::wstring::npos);
    DestroyWindow(list);
}

void testSorting()
{
    const struct
    {
        const wchar_t *items[6];
        bool ascending;
        const wchar_t *expected;
    } rows[] = {{{L"10", L"9", L"-1", L"2.5"}, true, L"-1|2.5|9|10|"},
                {{L"b", L"10", L"A", L"2", L"", L"a"}, true, L"2|10||A|a|b|"},
                {{L"b", L"10", L"A", L"2", L"a"}, false, L"b|A|a|10|2|"},
                {{L"nan", L"0x10", L"1e1", L"9"}, true, L"9|1e1|0x10|nan|"},
                {{NULL}, true, L""}};
    const HWND list = makeList(LVS_REPORT, LVS_EX_CHECKBOXES);
    VL_ListView_AddColumn(list, L"A", 150);
    VL_ListView_AddColumn(list, L"B", 150);
    for (const auto &row : rows) {
        VL_ListView_Clear(list);
        for (const wchar_t *item : row.items) {
            if (item)
                VL_ListView_AddRow(list, {L"other", item});
        }
        VL_ListView_Sort(list, 1, row.ascending);
        CHECK_EQ(column(list, 1), row.expected);
    }
    VL_ListView_Clear(list);
    for (const wchar_t *text : {L"c", L"a", L"b"})
        VL_ListView_AddRow(list, {text});
    VL_SetSelectedIndex(list, 0);
    VL_ListView_SetChecked(list, 2, true);
    VL_ListView_Sort(list, 0);
    VL_ListView_Sort(list, 0, false);
    CHECK_EQ(VL_ListView_GetSelectedText(list), L"c");
    CHECK_EQ(VL_GetSelectedIndex(list), 0);
    CHECK(VL_ListView_IsChecked(list, 1));
    CHECK(!VL_ListView_IsChecked(list, 0));
    DestroyWindow(list);
}

void testHeaderColors()
{
    const HWND list = makeList(LVS_REPORT);
    SetPropW(list, L"VL_LvHdrBg", (HANDLE)(intptr_t)(RGB(20, 40, 60) + 1));
    VL_ListView_AddColumn(list, L"", 100);
    pumpMessages();
    const HWND header = (HWND)SendMessageW(list, LVM_GETHEADER, 0, 0);
    CHECK_EQ((int)pixelAt(header, 30, 5), (int)RGB(20, 40, 60));
    // The part right of the last column too.
    CHECK_EQ((int)pixelAt(header, 300, 5), (int)RGB(20, 40, 60));
    DestroyWindow(list);
}

// A picture of one colour, 24 bits deep.
void writeBitmap(const std::wstring &path, int size, COLORREF color)
{
    BITMAPFILEHEADER file = {};
    BITMAPINFOHEADER info = {};
    info.biSize = sizeof(info);
    info.biWidth = info.biHeight = size;
    info.biPlanes = 1;
    info.biBitCount = 24;
    const int row = (size * 3 + 3) / 4 * 4;
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof(file) + sizeof(info);
    file.bfSize = file.bfOffBits + (DWORD)(row * size);
    std::string bytes((size_t)(row * size), '\0');
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            bytes[(size_t)(y * row + x * 3)] = (char)GetBValue(color);
            bytes[(size_t)(y * row + x * 3 + 1)] = (char)GetGValue(color);
            bytes[(size_t)(y * row + x * 3 + 2)] = (char)GetRValue(color);
        }
    }
    FILE *out = _wfopen(path.c_str(), L"wb");
    fwrite(&file, sizeof(file), 1, out);
    fwrite(&info, sizeof(info), 1, out);
    fwrite(bytes.data(), 1, bytes.size(), out);
    fclose(out);
}

void testIcons()
{
    writeBitmap(L"list_view_test.bmp", 24, RGB(200, 0, 0));
    const HWND list = makeList(LVS_ICON);
    CHECK_EQ(VL_ListView_AddIcon(list, L"missing.png"), -1);
    CHECK_EQ(VL_ListView_AddIcon(list, L"list_view_test.bmp"), 0);
    CHECK_EQ(VL_ListView_AddIcon(list, L"list_view_test.bmp"), 0);
    VL_ListView_AddItem(list, L"with", L"list_view_test.bmp");
    VL_ListView_AddItem(list, L"without");
    const auto iconColor = [list](int row) {
        pumpMessages();
        RECT area = {LVIR_ICON, 0, 0, 0};
        SendMessageW(list, LVM_GETITEMRECT, (WPARAM)row, (LPARAM)&area);
        return (int)pixelAt(list, (area.left + area.right) / 2, (area.top + area.bottom) / 2);
    };
    CHECK_EQ(iconColor(0), (int)RGB(200, 0, 0));
    CHECK_EQ(iconColor(1), (int)GetSysColor(COLOR_WINDOW));
    VL_ListView_CreateImageList(list, 48, 48);
    CHECK_EQ(iconColor(0), (int)RGB(200, 0, 0));
    VL_ListView_SetViewMode(list, VL_Any(L"\u8BE6\u7EC6"));
    VL_ListView_AddColumn(list, L"A", 150);
    CHECK_EQ(iconColor(0), (int)RGB(200, 0, 0));
    DestroyWindow(list);

    int before = 0;
    for (int i = 0; i < 101; ++i) {
        // The first round fills what is kept for all.
        if (i == 1)
            before = gdiObjects();
        const HWND one = makeList(LVS_REPORT, LVS_EX_CHECKBOXES);
        SetPropW(one, L"VL_LvHdrBg", (HANDLE)(intptr_t)1);
        VL_ListView_AddColumn(one, L"A", 150);
        VL_ListView_AddItemWithImage(one, L"with", VL_Any(L"list_view_test.bmp"));
        UpdateWindow(one);
        DestroyWindow(one);
    }
    CHECK(gdiObjects() <= before + 50);
    DeleteFileW(L"list_view_test.bmp");
}

} // namespace

void runTests()
{
    testRows();
    testFirstColumn();
    testDrawing();
    testSelection();
    testSorting();
    testHeaderColors();
    testIcons();
}
