// The table of self-drawn windows.
#include "99_self_drawn_table.h"

#include <algorithm>

namespace vl_self_drawn_table {
namespace {

const UINT_PTR kListSubclass = 0x564C9901;
const COLORREF kHeaderBack = RGB(45, 45, 48);
const COLORREF kRowText = RGB(190, 190, 195);
const COLORREF kSelection = RGB(9, 71, 113);
const COLORREF kWhite = RGB(255, 255, 255);
const int kCellIndent = 6;
const int kDefaultStrip = 40;
const int kLongestCell = 1024;

struct Table
{
    bool rows = false; // the rows too, not only the header
    bool strip = false;
    int stripWidth = kDefaultStrip;
    std::wstring stripTitle;
    COLORREF headerBack = kHeaderBack;
    COLORREF headerFore = VL_VLWIN_TEXT;
    bool grid = false;
    // From the beginning of a painting to its end.
    std::unique_ptr<VL_VlwinRowPainter> painter;
};

struct Header
{
    WNDPROC next = NULL;
    const Table *table = nullptr;
    int hot = -1;
};

// The list view asks its header about every row that it adds: this is quicker to look up than what
// hangs on the window itself. All windows of a program live on one thread,
// and some outlive what is destroyed at its end.
std::map<HWND, Header> &headers()
{
    static std::map<HWND, Header> &all = *new std::map<HWND, Header>;
    return all;
}

HWND headerOf(HWND list)
{
    return (HWND)SendMessageW(list, LVM_GETHEADER, 0, 0);
}

// The same for the list views themselves.
std::map<HWND, Table *> &tables()
{
    static std::map<HWND, Table *> &all = *new std::map<HWND, Table *>;
    return all;
}

bool isReport(HWND list)
{
    return (GetWindowLongW(list, GWL_STYLE) & LVS_TYPEMASK) == LVS_REPORT;
}

UINT alignment(int format)
{
    const int justify = format & LVCFMT_JUSTIFYMASK;
    return justify == LVCFMT_RIGHT ? DT_RIGHT : justify == LVCFMT_CENTER ? DT_CENTER : DT_LEFT;
}

// ---- the header

void drawSortArrow(HWND header, HDC dc, const RECT &cell, bool up, COLORREF color)
{
    const float unit = (float)VL_ScaleX(header, 100) / 100;
    const float x = (float)cell.right - 10 * unit;
    const float y = (float)(cell.top + cell.bottom) / 2;
    const float rise = up ? 2 * unit : -2 * unit;
    const float points[] = {x - 3.5f * unit, y + rise, x, y - rise, x + 3.5f * unit, y + rise};
    VL_VlwinStroke(dc, points, 3, 1.3f * unit, color);
}

void drawHeaderCell(HWND header, const Header &data, HDC dc, int index)
{
    const Table &table = *data.table;
    RECT cell;
    if (!SendMessageW(header, HDM_GETITEMRECT, (WPARAM)index, (LPARAM)&cell) ||
        cell.right <= cell.left || !RectVisible(dc, &cell))
        return;
    wchar_t text[kLongestCell] = L"";
    HDITEMW item = {};
    item.mask = HDI_TEXT | HDI_FORMAT;
    item.pszText = text;
    item.cchTextMax = kLongestCell;
    SendMessageW(header, HDM_GETITEMW, (WPARAM)index, (LPARAM)&item);
    if (data.hot == index)
        VL_VlwinFill(dc, cell, VL_MixColors(table.headerBack, kWhite, 8));
    const LONG line = VL_ScaleX(header, 1);
    const LONG inset = VL_ScaleX(header, 5);
    const RECT separator = {cell.right - line, cell.top + inset, cell.right, cell.bottom - inset};
    VL_VlwinFill(dc, separator, VL_MixColors(table.headerBack, table.headerFore, 22));
    RECT place = cell;
    place.left += VL_ScaleX(header, kCellIndent);
    place.right -= VL_ScaleX(header, kCellIndent);
    if (item.fmt & (HDF_SORTUP | HDF_SORTDOWN)) {
        drawSortArrow(header, dc, cell, (item.fmt & HDF_SORTUP) != 0, table.headerFore);
        place.right -= VL_ScaleX(header, 12);
    }
    if (place.right > place.left)
        VL_VlwinDrawText(header, dc, text, place,
                         alignment(item.fmt) | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS |
                             DT_NOPREFIX,
                         table.headerFore);
}

void drawHeader(HWND header, const Header &data, HDC target)
{
    RECT all;
    GetClientRect(header, &all);
    const VL_BufferedPaint buffer(target, RECT{0, 0, all.right, all.bottom});
    const HDC dc = buffer.context();
    VL_VlwinFill(dc, all, data.table->headerBack);
    const int count = (int)SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
    for (int i = 0; i < count; ++i)
        drawHeaderCell(header, data, dc, i);
    VL_VlwinFill(dc, RECT{0, all.bottom - VL_ScaleY(header, 1), all.right, all.bottom},
                 VL_VLWIN_BORDER);
}

void setHotCell(HWND header, Header *data, int index)
{
    if (data->hot == index)
        return;
    if (data->hot < 0)
        VL_VlwinTrackLeave(header);
    data->hot = index;
    InvalidateRect(header, NULL, FALSE);
}

int cellAt(HWND header, LPARAM place)
{
    HDHITTESTINFO test = {};
    test.pt = POINT{(short)LOWORD(place), (short)HIWORD(place)};
    SendMessageW(header, HDM_HITTEST, 0, (LPARAM)&test);
    return test.flags & HHT_ONHEADER ? test.iItem : -1;
}

void paintHeader(HWND header, const Header &data)
{
    PAINTSTRUCT state;
    if (const HDC dc = BeginPaint(header, &state))
        drawHeader(header, data, dc);
    EndPaint(header, &state);
}

LRESULT CALLBACK headerProcedure(HWND header, UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto found = headers().find(header);
    if (found == headers().end())
        return DefWindowProcW(header, message, wParam, lParam);
    Header &data = found->second;
    const WNDPROC next = data.next;
    switch (message) {
    case WM_PAINT:
        paintHeader(header, data);
        return 0;
    case WM_PRINTCLIENT:
        if (wParam)
            drawHeader(header, data, (HDC)wParam);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_NCDESTROY:
        headers().erase(found);
        break;
    case WM_MOUSEMOVE:
        setHotCell(header, &data, cellAt(header, lParam));
        break;
    case WM_MOUSELEAVE:
        setHotCell(header, &data, -1);
        break;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_SIZE: {
        // A pressed cell may have been drawn at once, past WM_PAINT.
        const LRESULT result = CallWindowProcW(next, header, message, wParam, lParam);
        InvalidateRect(header, NULL, FALSE);
        return result;
    }
    default:
        break;
    }
    return CallWindowProcW(next, header, message, wParam, lParam);
}

void attachHeader(HWND list, const Table *table)
{
    const HWND header = headerOf(list);
    if (!header || headers().count(header))
        return;
    VL_VlwinStripControlTheme(header);
    Header &data = headers()[header];
    data.table = table;
    data.next = (WNDPROC)GetWindowLongPtrW(header, GWLP_WNDPROC);
    SetWindowLongPtrW(header, GWLP_WNDPROC, (LONG_PTR)headerProcedure);
    InvalidateRect(header, NULL, FALSE);
}

// ---- frame and row numbers, outside the client area

int borderOf(HWND list)
{
    return VL_ScaleX(list, 1);
}

int stripOf(HWND list, const Table &table)
{
    return table.strip && isReport(list) ? VL_ScaleX(list, table.stripWidth) : 0;
}

POINT clientOrigin(HWND list)
{
    RECT window;
    GetWindowRect(list, &window);
    POINT origin = {0, 0};
    ClientToScreen(list, &origin);
    return POINT{origin.x - window.left, origin.y - window.top};
}

void drawRowNumbers(HWND list, const Table &table, HDC dc, const RECT &strip, LONG top)
{
    const VL_VlwinRowPainter painter(list, false);
    const LONG line = VL_ScaleX(list, 1);
    const int count = painter.rowCount();
    for (int row = painter.topRow(); row < count; ++row) {
        RECT place;
        if (!painter.rowRect(row, &place) || place.bottom <= place.top)
            break;
        OffsetRect(&place, 0, top);
        if (place.top >= strip.bottom)
            break;
        place.left = strip.left;
        place.right = strip.right;
        const bool selected = painter.isSelected(row);
        if (selected)
            VL_VlwinFill(dc, place, VL_MixColors(table.headerBack, kSelection, 60));
        painter.drawText(dc, std::to_wstring(row + 1), place, DT_CENTER,
                         selected ? kWhite : VL_MixColors(table.headerFore, table.headerBack, 25));
        VL_VlwinFill(dc, RECT{place.left, place.bottom - line, place.right, place.bottom},
                     VL_MixColors(table.headerBack, table.headerFore, 10));
    }
}

void drawStrip(HWND list, const Table &table, HDC target)
{
    const int width = stripOf(list, table);
    const POINT origin = clientOrigin(list);
    RECT client;
    GetClientRect(list, &client);
    const LONG left = origin.x - width;
    RECT strip = {left, origin.y, origin.x, origin.y + client.bottom};
    if (width <= 0 || client.bottom <= 0)
        return;
    const VL_BufferedPaint buffer(target, RECT{0, 0, strip.right, strip.bottom});
    const HDC dc = buffer.context();
    VL_VlwinFill(dc, strip, table.headerBack);
    drawRowNumbers(list, table, dc, strip, origin.y);
    const HWND header = headerOf(list);
    RECT corner = {0, 0, 0, 0};
    if (header && IsWindowVisible(header))
        GetClientRect(header, &corner);
    corner = RECT{strip.left, strip.top, strip.right, strip.top + corner.bottom};
    const LONG line = VL_ScaleX(list, 1);
    if (corner.bottom > corner.top) {
        VL_VlwinFill(dc, corner, table.headerBack);
        VL_VlwinDrawText(list, dc, table.stripTitle, corner,
                         DT_CENTER | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX,
                         table.headerFore);
        VL_VlwinFill(dc, RECT{corner.left, corner.bottom - line, corner.right, corner.bottom},
                     VL_VLWIN_BORDER);
    }
    VL_VlwinFill(dc, RECT{strip.right - line, strip.top, strip.right, strip.bottom},
                 VL_VLWIN_BORDER);
    // Only the strip is this function's; the buffer begins at the window's corner.
    ExcludeClipRect(target, 0, 0, strip.left, strip.bottom);
    ExcludeClipRect(target, strip.left, 0, strip.right, strip.top);
}

void drawOutside(HWND list, const Table &table, bool withFrame)
{
    const HDC dc = GetWindowDC(list);
    if (!dc)
        return;
    if (withFrame) {
        RECT window;
        GetWindowRect(list, &window);
        const LONG width = window.right - window.left;
        const LONG height = window.bottom - window.top;
        const LONG line = borderOf(list);
        VL_VlwinFill(dc, RECT{0, 0, width, line}, VL_VLWIN_BORDER);
        VL_VlwinFill(dc, RECT{0, height - line, width, height}, VL_VLWIN_BORDER);
        VL_VlwinFill(dc, RECT{0, 0, line, height}, VL_VLWIN_BORDER);
        VL_VlwinFill(dc, RECT{width - line, 0, width, height}, VL_VLWIN_BORDER);
        // A horizontal scroll bar leaves a corner below the strip.
        RECT client;
        GetClientRect(list, &client);
        const POINT origin = clientOrigin(list);
        VL_VlwinFill(dc, RECT{line, origin.y + client.bottom, origin.x, height - line},
                     table.headerBack);
    }
    drawStrip(list, table, dc);
    ReleaseDC(list, dc);
}

// A click on a row's number selects the row.
bool clickStrip(HWND list, const Table &table, LPARAM lParam)
{
    POINT point = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
    ScreenToClient(list, &point);
    if (point.x >= 0 || point.x < -stripOf(list, table))
        return false;
    SetFocus(list);
    const VL_VlwinRowPainter painter(list, false);
    const int last = painter.topRow() + (int)SendMessageW(list, LVM_GETCOUNTPERPAGE, 0, 0) + 1;
    for (int row = painter.topRow(); row <= last; ++row) {
        RECT place;
        if (!painter.rowRect(row, &place))
            break;
        if (point.y < place.top || point.y >= place.bottom)
            continue;
        LVITEMW item = {};
        item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        if (GetKeyState(VK_CONTROL) >= 0)
            SendMessageW(list, LVM_SETITEMSTATE, (WPARAM)-1, (LPARAM)&item);
        item.state = LVIS_SELECTED | LVIS_FOCUSED;
        SendMessageW(list, LVM_SETITEMSTATE, (WPARAM)row, (LPARAM)&item);
        break;
    }
    return true;
}

LRESULT setExtendedStyle(HWND list, Table *table, WPARAM mask, LPARAM style)
{
    const bool grid = table->grid;
    if (mask == 0 || (mask & LVS_EX_GRIDLINES))
        table->grid = (style & LVS_EX_GRIDLINES) != 0;
    const LRESULT old = DefSubclassProc(list, LVM_SETEXTENDEDLISTVIEWSTYLE, mask,
                                        style & ~(LPARAM)LVS_EX_GRIDLINES);
    InvalidateRect(list, NULL, FALSE);
    return old | (grid ? LVS_EX_GRIDLINES : 0);
}

LRESULT colorLabelEdit(HDC dc)
{
    SetTextColor(dc, kWhite);
    SetBkColor(dc, VL_VLWIN_FIELD);
    SetDCBrushColor(dc, VL_VLWIN_FIELD);
    return (LRESULT)GetStockObject(DC_BRUSH);
}

bool answerList(HWND list, Table *table, UINT message, WPARAM wParam, LPARAM lParam,
                LRESULT *result)
{
    *result = 0;
    switch (message) {
    case LVM_SETEXTENDEDLISTVIEWSTYLE:
        *result = setExtendedStyle(list, table, wParam, lParam);
        return true;
    case LVM_GETEXTENDEDLISTVIEWSTYLE:
        *result =
            DefSubclassProc(list, message, wParam, lParam) | (table->grid ? LVS_EX_GRIDLINES : 0);
        return true;
    case WM_NCCALCSIZE: {
        RECT *place = (RECT *)lParam;
        const int line = borderOf(list);
        InflateRect(place, -line, -line);
        place->left = std::min(place->right, place->left + stripOf(list, *table));
        *result = DefSubclassProc(list, message, wParam, lParam);
        return true;
    }
    case WM_NCPAINT:
        *result = DefSubclassProc(list, message, wParam, lParam);
        drawOutside(list, *table, true);
        return true;
    case WM_PAINT:
        *result = DefSubclassProc(list, message, wParam, lParam);
        drawOutside(list, *table, false);
        return true;
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
        return clickStrip(list, *table, lParam);
    case WM_CTLCOLOREDIT:
        *result = colorLabelEdit((HDC)wParam);
        return true;
    case VL_REFLECT + WM_NOTIFY:
        if (lParam && ((const NMHDR *)lParam)->code == (UINT)NM_CUSTOMDRAW)
            *result = VL_VlwinListViewNmCustomDraw(lParam);
        return *result != 0;
    default:
        return false;
    }
}

LRESULT CALLBACK listProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR data)
{
    // Rows come by the hundred thousand: the record lives as long as the list and is not looked up.
    Table *table = (Table *)data;
    if (message == WM_NCDESTROY) {
        tables().erase(list);
        RemoveWindowSubclass(list, listProcedure, kListSubclass);
        return DefSubclassProc(list, message, wParam, lParam);
    }
    LRESULT result = 0;
    if (table->rows && answerList(list, table, message, wParam, lParam, &result))
        return result;
    result = DefSubclassProc(list, message, wParam, lParam);
    if (message == LVM_INSERTCOLUMNW || message == LVM_INSERTCOLUMNA)
        attachHeader(list, table);
    return result;
}

Table *attach(HWND list)
{
    if (!VL_HasClass(list, WC_LISTVIEWW))
        return nullptr;
    Table *table = VL_Extra<Table>(list);
    if (table) {
        tables()[list] = table;
        SetWindowSubclass(list, listProcedure, kListSubclass, (DWORD_PTR)table);
        attachHeader(list, table);
    }
    return table;
}

} // namespace
} // namespace vl_self_drawn_table

void VL_VlwinAttachListHeaderSubclass(HWND list)
{
    vl_self_drawn_table::attach(list);
}

void VL_VlwinPrepareTable(HWND list, bool rowHeader, int rowHeaderWidth,
                          const wchar_t *rowHeaderTitle, int headerBack, int headerFore)
{
    using namespace vl_self_drawn_table;
    Table *table = attach(list);
    if (!table)
        return;
    table->strip = rowHeader;
    table->stripWidth = rowHeaderWidth > 0 ? std::min(rowHeaderWidth, 1000) : kDefaultStrip;
    table->stripTitle = rowHeaderTitle ? rowHeaderTitle : L"";
    table->headerBack = headerBack < 0 ? kHeaderBack : (COLORREF)headerBack & 0xFFFFFF;
    table->headerFore = headerFore < 0 ? VL_VLWIN_TEXT : (COLORREF)headerFore & 0xFFFFFF;
    if (!table->rows) {
        table->rows = true;
        const LRESULT style = SendMessageW(list, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
        SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, style | LVS_EX_DOUBLEBUFFER);
    }
    VL_VlwinStripControlTheme(list);
    if (!VL_HasBgColor(list))
        VL_SetBgColor(list, (int)VL_VLWIN_FIELD);
    if (!VL_HasTextColor(list))
        VL_SetTextColor(list, (int)kRowText);
    SetWindowLongPtrW(list, GWL_STYLE, GetWindowLongPtrW(list, GWL_STYLE) & ~(LONG_PTR)WS_BORDER);
    SetWindowLongPtrW(list, GWL_EXSTYLE,
                      GetWindowLongPtrW(list, GWL_EXSTYLE) & ~(LONG_PTR)WS_EX_CLIENTEDGE);
    SetWindowPos(list, NULL, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
    RedrawWindow(list, NULL, NULL, RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
}

LRESULT VL_VlwinListViewNmCustomDraw(LPARAM lParam)
{
    using namespace vl_self_drawn_table;
    const NMLVCUSTOMDRAW *draw = (const NMLVCUSTOMDRAW *)lParam;
    if (!draw || draw->nmcd.hdr.code != (UINT)NM_CUSTOMDRAW)
        return CDRF_DODEFAULT;
    const HWND list = draw->nmcd.hdr.hwndFrom;
    const auto found = tables().find(list);
    if (found == tables().end() || !found->second->rows || !isReport(list))
        return CDRF_DODEFAULT;
    Table &table = *found->second;
    if (draw->nmcd.dwDrawStage == CDDS_PREPAINT || !table.painter)
        table.painter.reset(new VL_VlwinRowPainter(list, table.grid));
    switch (draw->nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
        return CDRF_NOTIFYITEMDRAW | CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPREPAINT:
        table.painter->drawRow(draw->nmcd.hdc, (int)draw->nmcd.dwItemSpec);
        return CDRF_SKIPDEFAULT;
    case CDDS_POSTPAINT:
        table.painter->drawBelow(draw->nmcd.hdc);
        table.painter.reset();
        return CDRF_DODEFAULT;
    default:
        return CDRF_DODEFAULT;
    }
}
