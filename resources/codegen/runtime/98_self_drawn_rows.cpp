// The rows of a dark list view in report mode.
#include "98_self_drawn_rows.h"

#include <algorithm>

namespace vl_self_drawn_rows {
namespace {

const COLORREF kRowText = RGB(190, 190, 195);
const COLORREF kSelection = RGB(9, 71, 113);
const COLORREF kGrid = RGB(58, 58, 62);
const COLORREF kWhite = RGB(255, 255, 255);
const int kIndent = 6;
const int kUnpainted = 2; // in device pixels
const int kLongestCell = 1024;

UINT alignment(int format)
{
    const int justify = format & LVCFMT_JUSTIFYMASK;
    return justify == LVCFMT_RIGHT ? DT_RIGHT : justify == LVCFMT_CENTER ? DT_CENTER : DT_LEFT;
}

COLORREF rowBack(COLORREF back, int row)
{
    return row % 2 ? VL_MixColors(back, VL_VlwinIsLight(back) ? RGB(0, 0, 0) : kWhite, 4) : back;
}

} // namespace
} // namespace vl_self_drawn_rows

VL_VlwinRowPainter::VL_VlwinRowPainter(HWND list, bool hasGrid)
    : m_list(list),
      m_header(NULL),
      m_class((WNDPROC)GetClassLongPtrW(list, GCLP_WNDPROC)),
      m_font(NULL),
      m_images(NULL),
      m_back((COLORREF)VL_GetBgColor(list)),
      m_text(VL_HasTextColor(list) ? (COLORREF)VL_GetTextColor(list)
                                   : vl_self_drawn_rows::kRowText),
      m_hasGrid(hasGrid),
      m_isFullRow(false),
      m_hasChecks(false),
      m_showsFocus(VL_VlwinShowsFocus(list)),
      m_line(VL_ScaleX(list, 1)),
      m_indent(VL_ScaleX(list, vl_self_drawn_rows::kIndent))
{
    GetClientRect(list, &m_client);
    m_header = (HWND)ask(LVM_GETHEADER, 0, 0);
    m_font = (HFONT)ask(WM_GETFONT, 0, 0);
    if (!m_font)
        m_font = (HFONT)GetStockObject(DEFAULT_GUI_FONT);
    m_images = (HIMAGELIST)ask(LVM_GETIMAGELIST, LVSIL_SMALL, 0);
    const LRESULT style = ask(LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
    m_isFullRow = (style & LVS_EX_FULLROWSELECT) != 0;
    m_hasChecks = (style & LVS_EX_CHECKBOXES) != 0;
    if (!IsWindowEnabled(list))
        m_text = VL_MixColors(m_text, m_back, 50);
    readColumns();
}

LRESULT VL_VlwinRowPainter::ask(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return CallWindowProcW(m_class, m_list, message, wParam, lParam);
}

void VL_VlwinRowPainter::readColumns()
{
    const int count = m_header ? (int)SendMessageW(m_header, HDM_GETITEMCOUNT, 0, 0) : 0;
    for (int i = 0; i < count; ++i) {
        RECT cell = {0, 0, 0, 0};
        SendMessageW(m_header, HDM_GETITEMRECT, (WPARAM)i, (LPARAM)&cell);
        LVCOLUMNW column = {};
        column.mask = LVCF_FMT;
        ask(LVM_GETCOLUMNW, (WPARAM)i, (LPARAM)&column);
        m_columns.push_back({cell.left, cell.right, vl_self_drawn_rows::alignment(column.fmt)});
    }
}

bool VL_VlwinRowPainter::partRect(int row, int part, RECT *place) const
{
    *place = RECT{part, 0, 0, 0};
    return ask(LVM_GETITEMRECT, (WPARAM)row, (LPARAM)place) != 0;
}

UINT VL_VlwinRowPainter::stateOf(int row) const
{
    return (UINT)ask(LVM_GETITEMSTATE, (WPARAM)row, 0xFFFF);
}

bool VL_VlwinRowPainter::isSelected(int row) const
{
    return (stateOf(row) & LVIS_SELECTED) != 0;
}

int VL_VlwinRowPainter::topRow() const
{
    return std::max(0, (int)ask(LVM_GETTOPINDEX, 0, 0));
}

int VL_VlwinRowPainter::rowCount() const
{
    return (int)ask(LVM_GETITEMCOUNT, 0, 0);
}

std::wstring VL_VlwinRowPainter::cellText(int row, int column) const
{
    wchar_t text[vl_self_drawn_rows::kLongestCell] = L"";
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = vl_self_drawn_rows::kLongestCell;
    ask(LVM_GETITEMTEXTW, (WPARAM)row, (LPARAM)&item);
    // A virtual list may answer with a text of its own.
    if (!item.pszText || item.pszText == LPSTR_TEXTCALLBACKW)
        return std::wstring();
    return item.pszText;
}

void VL_VlwinRowPainter::drawText(HDC dc, const std::wstring &text, RECT place, UINT format,
                                  COLORREF color) const
{
    VL_VlwinDrawTextIn(m_font, dc, text, place,
                       format | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX, color);
}

void VL_VlwinRowPainter::drawCheckBox(HDC dc, RECT room, bool isChecked, COLORREF back) const
{
    using namespace vl_self_drawn_rows;
    const LONG size = VL_ScaleX(m_list, 14);
    room.right = std::max(room.right, room.left + size);
    const LONG x = (room.left + room.right - size) / 2;
    const LONG y = (room.top + room.bottom - size) / 2;
    VL_VlwinRoundRect(dc, RECT{x, y, x + size, y + size}, VL_ScaleX(m_list, 3),
                      isChecked ? VL_VLWIN_ACCENT : VL_MixColors(back, kWhite, 5),
                      isChecked ? VL_VLWIN_ACCENT : RGB(160, 160, 164), m_line);
    if (isChecked)
        VL_VlwinTick(dc, RECT{x, y, x + size, y + size}, kWhite);
}

// The check box and the picture of a row; returns where its text begins.
LONG VL_VlwinRowPainter::drawMarks(HDC dc, int row, const RECT &cell, COLORREF back) const
{
    RECT icon;
    RECT label;
    if (!partRect(row, LVIR_ICON, &icon) || !partRect(row, LVIR_LABEL, &label))
        return cell.left + m_indent;
    LONG least = cell.left + m_indent;
    const UINT image = stateOf(row) >> 12 & 0xF;
    if (m_hasChecks && image) {
        const LONG left = cell.left + VL_ScaleX(m_list, 3);
        drawCheckBox(dc, RECT{left, cell.top, std::max(icon.left, left), cell.bottom}, image == 2,
                     back);
        least = std::max(least, left + VL_ScaleX(m_list, 20));
    }
    LVITEMW item = {};
    item.mask = LVIF_IMAGE;
    item.iItem = row;
    int width = 0;
    int height = 0;
    if (m_images && ask(LVM_GETITEMW, 0, (LPARAM)&item) && item.iImage >= 0 &&
        ImageList_GetIconSize(m_images, &width, &height))
        ImageList_Draw(m_images, item.iImage, dc, icon.left, (cell.top + cell.bottom - height) / 2,
                       ILD_TRANSPARENT);
    return std::max(label.left + VL_ScaleX(m_list, 2), least);
}

void VL_VlwinRowPainter::drawCell(HDC dc, int row, int column, RECT cell, COLORREF back,
                                  COLORREF color) const
{
    using namespace vl_self_drawn_rows;
    const RECT all = cell;
    cell.left = column == 0 ? drawMarks(dc, row, cell, back) : cell.left + m_indent;
    cell.right -= m_indent;
    if (cell.right > cell.left)
        drawText(dc, cellText(row, column), cell, m_columns[(size_t)column].format, color);
    if (m_hasGrid)
        VL_VlwinFill(dc, RECT{all.right - m_line, all.top, all.right, all.bottom}, kGrid);
}

void VL_VlwinRowPainter::drawRow(HDC dc, int row) const
{
    // An empty list is asked to draw its first row as well.
    if (row < 0 || row >= (int)SendMessageW(m_list, LVM_GETITEMCOUNT, 0, 0))
        return;
    using namespace vl_self_drawn_rows;
    RECT bounds;
    if (!rowRect(row, &bounds))
        return;
    const UINT state = stateOf(row);
    const bool isMarked = (state & LVIS_SELECTED) != 0;
    const COLORREF back = rowBack(m_back, row);
    VL_VlwinFill(dc, RECT{0, bounds.top, m_client.right, bounds.bottom}, back);
    // When the selection changes the class repaints neither what lies past the columns nor the
    // first pixels of the row.
    const LONG markLeft = bounds.left + kUnpainted;
    if (isMarked && m_isFullRow)
        VL_VlwinFill(dc, RECT{markLeft, bounds.top, bounds.right, bounds.bottom}, kSelection);
    for (int i = 0; i < (int)m_columns.size(); ++i) {
        const Column &column = m_columns[(size_t)i];
        const RECT cell = {bounds.left + column.left, bounds.top, bounds.left + column.right,
                           bounds.bottom};
        if (cell.right <= cell.left || cell.right <= 0 || cell.left >= m_client.right)
            continue;
        const bool isCellMarked = isMarked && (m_isFullRow || i == 0);
        if (isCellMarked && !m_isFullRow)
            VL_VlwinFill(dc, RECT{markLeft, cell.top, cell.right, cell.bottom}, kSelection);
        drawCell(dc, row, i, cell, isCellMarked ? kSelection : back,
                 isCellMarked ? kWhite : m_text);
    }
    if (m_hasGrid)
        VL_VlwinFill(dc, RECT{0, bounds.bottom - m_line, m_client.right, bounds.bottom}, kGrid);
    if ((state & LVIS_FOCUSED) && m_showsFocus)
        VL_VlwinRoundRect(dc, RECT{markLeft, bounds.top, bounds.right, bounds.bottom}, 0, CLR_NONE,
                          VL_MixColors(isMarked ? kSelection : back, kWhite, 30), m_line);
}

void VL_VlwinRowPainter::drawBelow(HDC dc) const
{
    using namespace vl_self_drawn_rows;
    if (!m_hasGrid)
        return;
    RECT header = {0, 0, 0, 0};
    GetClientRect(m_header, &header);
    POINT origin = {0, 0};
    ask(LVM_GETORIGIN, 0, (LPARAM)&origin);
    LONG top = header.bottom;
    LONG left = -origin.x;
    RECT last;
    if (rowCount() > 0 && rowRect(rowCount() - 1, &last)) {
        top = last.bottom;
        left = last.left;
    }
    for (const Column &column : m_columns) {
        const LONG right = left + column.right;
        if (top < m_client.bottom)
            VL_VlwinFill(dc, RECT{right - m_line, top, right, m_client.bottom}, kGrid);
    }
}
