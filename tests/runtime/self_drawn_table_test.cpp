// The table of self-drawn windows.
#include "99_self_drawn_table.h"
#include "self_drawn_test.h"

namespace {

const COLORREF kHeader = RGB(45, 45, 48);
const COLORREF kSelection = RGB(9, 71, 113);
const int kStrip = 40;

HWND table(DWORD style, bool rowHeader, int rows = 30)
{
    darkWindow();
    const HWND list =
        testControl(WC_LISTVIEWW, L"", LVS_REPORT | style, 90, RECT{20, 60, 420, 260});
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
    VL_VlwinPrepareTable(list, rowHeader, kStrip, L"#", -1, -1);
    for (int i = 0; i < 2; ++i) {
        LVCOLUMNW column = {};
        column.mask = LVCF_WIDTH;
        column.cx = 100;
        SendMessageW(list, LVM_INSERTCOLUMNW, (WPARAM)i, (LPARAM)&column);
    }
    for (int i = 0; i < rows; ++i) {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = i;
        item.pszText = (wchar_t *)L"";
        SendMessageW(list, LVM_INSERTITEMW, 0, (LPARAM)&item);
    }
    pumpMessages();
    return list;
}

void select(HWND list, int row, bool on)
{
    LVITEMW item = {};
    item.stateMask = LVIS_SELECTED;
    item.state = on ? LVIS_SELECTED : 0;
    SendMessageW(list, LVM_SETITEMSTATE, (WPARAM)row, (LPARAM)&item);
}

int selectedRow(HWND list)
{
    return (int)SendMessageW(list, LVM_GETNEXTITEM, (WPARAM)-1, LVNI_SELECTED);
}

RECT rowRect(HWND list, int row)
{
    RECT place = {LVIR_BOUNDS, 0, 0, 0};
    SendMessageW(list, LVM_GETITEMRECT, (WPARAM)row, (LPARAM)&place);
    return place;
}

// The colour in the second column, where no text stands, in the middle of a row.
COLORREF rowColor(HWND list, int row)
{
    const RECT place = rowRect(list, row);
    return pixelAt(list, 150, (place.top + place.bottom) / 2);
}

void testRows()
{
    const HWND list = table(0, false);
    const COLORREF even = rowColor(list, 0);
    CHECK_EQ(even, VL_VLWIN_FIELD);
    CHECK(rowColor(list, 1) != even);
    CHECK_EQ(rowColor(list, 2), even);
    // Selection shows without the focus too.
    SetFocus(darkWindow());
    select(list, 2, true);
    CHECK_EQ(rowColor(list, 2), kSelection);
    select(list, 2, false);
    CHECK_EQ(rowColor(list, 2), even);
    VL_SetBgColor(list, RGB(60, 0, 0));
    CHECK_EQ(rowColor(list, 0), (COLORREF)RGB(60, 0, 0));
    CHECK(pixelsUnlike(list, RECT{0, 50, 1, 51}, VL_VLWIN_BORDER) == 0);

    std::wstring text(200000, L'W');
    LVITEMW item = {};
    item.iSubItem = 1;
    item.pszText = &text[0];
    SendMessageW(list, LVM_SETITEMTEXTW, 0, (LPARAM)&item);
    VL_SetTextColor(list, RGB(0, 255, 0));
    windowPixel(list, 1, 1);
    const RECT place = rowRect(list, 0);
    CHECK(pixelsUnlike(list, RECT{110, place.top + 2, 190, place.bottom}, RGB(60, 0, 0)) > 20);
    // It ends with its column.
    CHECK_EQ(pixelsUnlike(list, RECT{202, place.top + 2, 260, place.bottom}, RGB(60, 0, 0)), 0);
    DestroyWindow(list);
}

void testHeader()
{
    const HWND list = table(0, false);
    const HWND header = (HWND)SendMessageW(list, LVM_GETHEADER, 0, 0);
    CHECK_EQ(windowPixel(header, 20, 4), kHeader);
    CHECK_EQ(windowPixel(header, 300, 4), kHeader);
    CHECK(windowPixel(header, 99, 10) != kHeader); // between two columns
    VL_VlwinPrepareTable(list, false, 0, nullptr, RGB(80, 20, 20), RGB(255, 255, 255));
    CHECK_EQ(windowPixel(header, 20, 4), (COLORREF)RGB(80, 20, 20));
    HDITEMW item = {};
    item.mask = HDI_FORMAT;
    item.fmt = HDF_STRING | HDF_SORTUP;
    SendMessageW(header, HDM_SETITEMW, 0, (LPARAM)&item);
    CHECK(pixelsUnlike(header, RECT{80, 4, 96, 20}, RGB(80, 20, 20)) > 3);
    DestroyWindow(list);
}

void testRowHeader()
{
    const HWND list = table(0, true);
    RECT client;
    GetClientRect(list, &client);
    CHECK_EQ(client.right, (LONG)(400 - 2 - kStrip - GetSystemMetrics(SM_CXVSCROLL)));
    // Numbers are painted beside the rows and no column.
    CHECK_EQ(windowPixel(list, 3, 45), kHeader);
    const RECT first = rowRect(list, 0);
    CHECK(pixelsUnlike(list, RECT{10, first.top + 3, 34, first.bottom - 2}, kHeader) > 3);
    LVHITTESTINFO hit = {};
    hit.pt = POINT{5, (first.top + first.bottom) / 2};
    CHECK_EQ(SendMessageW(list, LVM_SUBITEMHITTEST, 0, (LPARAM)&hit), (LRESULT)0);
    CHECK_EQ(hit.iSubItem, 0);

    // They follow when the rows move: row 8 has another picture than row 1.
    const auto picture = [list, first] {
        std::vector<COLORREF> colors;
        UpdateWindow(list);
        pumpMessages();
        const HDC dc = GetWindowDC(list);
        for (int y = first.top + 2; y < first.bottom; ++y) {
            for (int x = 8; x < kStrip - 4; ++x)
                colors.push_back(GetPixel(dc, x, y));
        }
        ReleaseDC(list, dc);
        return colors;
    };
    const std::vector<COLORREF> before = picture();
    SendMessageW(list, LVM_SCROLL, 0, 7 * (first.bottom - first.top));
    CHECK_EQ((int)SendMessageW(list, LVM_GETTOPINDEX, 0, 0), 7);
    CHECK(picture() != before);
    SendMessageW(list, LVM_ENSUREVISIBLE, 0, FALSE);
    CHECK(picture() == before);

    // A click on a number selects its row.
    const RECT third = rowRect(list, 2);
    POINT point = {-20, (third.top + third.bottom) / 2};
    ClientToScreen(list, &point);
    SendMessageW(list, WM_NCLBUTTONDOWN, HTBORDER, MAKELPARAM(point.x, point.y));
    CHECK_EQ(selectedRow(list), 2);
    VL_VlwinPrepareTable(list, false, 0, L"", -1, -1);
    GetClientRect(list, &client);
    CHECK_EQ(client.right, (LONG)(400 - 2 - GetSystemMetrics(SM_CXVSCROLL)));
    DestroyWindow(list);
}

void testGridAndChecks()
{
    const HWND list = table(0, false, 3);
    const auto style = [list] { return SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0); };
    CHECK_EQ(style() & LVS_EX_GRIDLINES, (LRESULT)0);
    const RECT row = rowRect(list, 0);
    CHECK_EQ(pixelAt(list, 99, row.top + 4), VL_VLWIN_FIELD);
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_GRIDLINES, LVS_EX_GRIDLINES);
    CHECK_EQ(style() & LVS_EX_GRIDLINES, (LRESULT)LVS_EX_GRIDLINES);
    CHECK_EQ(style() & LVS_EX_FULLROWSELECT, (LRESULT)LVS_EX_FULLROWSELECT);
    CHECK(pixelAt(list, 99, row.top + 4) != VL_VLWIN_FIELD);
    CHECK(pixelAt(list, 99, rowRect(list, 2).bottom + 30) != VL_VLWIN_FIELD);
    CHECK(pixelAt(list, 150, row.bottom - 1) != VL_VLWIN_FIELD);
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_GRIDLINES, 0);
    CHECK_EQ(style() & LVS_EX_GRIDLINES, (LRESULT)0);

    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES, LVS_EX_CHECKBOXES);
    const auto accents = [list, row] {
        int count = 0;
        for (int x = 0; x < 24; ++x)
            count += pixelAt(list, x, (row.top + row.bottom) / 2) == VL_VLWIN_ACCENT ? 1 : 0;
        return count;
    };
    CHECK_EQ(accents(), 0);
    ListView_SetCheckState(list, 0, TRUE);
    CHECK(accents() > 4);
    DestroyWindow(list);
}

void testOddArgumentsAndLeaks()
{
    CHECK_EQ(VL_VlwinListViewNmCustomDraw(0), (LRESULT)0);
    NMLVCUSTOMDRAW draw = {};
    draw.nmcd.hdr.code = (UINT)NM_CUSTOMDRAW;
    draw.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
    CHECK_EQ(VL_VlwinListViewNmCustomDraw((LPARAM)&draw), (LRESULT)0);
    const HWND plain = testControl(WC_LISTVIEWW, L"", LVS_REPORT, 91, RECT{20, 60, 220, 160});
    draw.nmcd.hdr.hwndFrom = plain;
    CHECK_EQ(VL_VlwinListViewNmCustomDraw((LPARAM)&draw), (LRESULT)0);
    VL_VlwinPrepareTable(plain, true, 5000, nullptr, -1, -1);
    draw.nmcd.dwItemSpec = 12345;
    VL_VlwinListViewNmCustomDraw((LPARAM)&draw);
    windowPixel(plain, 1, 1);
    DestroyWindow(plain);
    VL_VlwinPrepareTable(NULL, true, 1, L"", 0, 0);
    VL_VlwinAttachListHeaderSubclass(NULL);
    VL_VlwinAttachListHeaderSubclass(darkWindow());

    int before = 0;
    for (int round = 0; round < 105; ++round) {
        if (round == 5)
            before = gdiMark();
        const HWND list = table(round % 2 ? LVS_NOCOLUMNHEADER : 0, true, 5);
        windowPixel(list, 1, 1);
        DestroyWindow(list);
    }
    CHECK(gdiMark() < before + 40);
}

} // namespace

void runTests()
{
    testRows();
    testHeader();
    testRowHeader();
    testGridAndChecks();
    testOddArgumentsAndLeaks();
}
