// List views: columns, rows, icons, check boxes.
#include "77_list_view.h"

#include <algorithm>

namespace vl_list_view {
namespace {

const int kSmallIcon = 16;

// Where the cells of a row come from.
typedef std::function<const wchar_t *(int column)> Cells;

bool isListView(HWND list)
{
    return VL_HasClass(list, WC_LISTVIEWW);
}

bool isRow(HWND list, int row)
{
    return row >= 0 && row < (int)VL_ListView_RowMessage(list, LVM_GETITEMCOUNT, 0, 0);
}

void setText(HWND list, int row, int column, const wchar_t *text)
{
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = const_cast<wchar_t *>(text);
    VL_ListView_RowMessage(list, LVM_SETITEMTEXTW, (WPARAM)row, (LPARAM)&item);
}

int insertCells(HWND list, int row, int image, int columns, const Cells &cells)
{
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    // Behind the end the control appends.
    item.iItem = row < 0 ? INT_MAX : row;
    item.iImage = image < 0 ? I_IMAGENONE : image;
    item.pszText = const_cast<wchar_t *>(columns > 0 ? cells(0) : L"");
    const int place = (int)VL_ListView_RowMessage(list, LVM_INSERTITEMW, 0, (LPARAM)&item);
    for (int column = 1; column < columns && place >= 0; ++column) {
        const wchar_t *text = cells(column);
        if (*text)
            setText(list, place, column, text);
    }
    return place;
}

int insertRow(HWND list, int row, int image, std::initializer_list<std::wstring> cells)
{
    return insertCells(list, row, image, (int)cells.size(),
                       [&](int column) { return cells.begin()[column].c_str(); });
}

int insertRow(HWND list, int row, int image, const VL_Array &cells)
{
    std::wstring text;
    return insertCells(list, row, image, (int)cells.size(), [&](int column) {
        text = cells[(size_t)column].toStr();
        return text.c_str();
    });
}

int alignmentOf(int align)
{
    return align == 1 ? LVCFMT_CENTER : align == 2 ? LVCFMT_RIGHT : LVCFMT_LEFT;
}

int alignmentNumber(const std::wstring &align)
{
    return align == L"\u5C45\u4E2D" ? 1 : align == L"\u53F3\u5BF9\u9F50" ? 2 : 0;
}

int insertColumn(HWND list, int index, const std::wstring &title, int width, int align)
{
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
    column.fmt = alignmentOf(align);
    column.cx = VL_ScaleX(list, (std::max)(0, (std::min)(width, 10000)));
    column.iSubItem = index;
    column.pszText = const_cast<wchar_t *>(title.c_str());
    return (int)SendMessageW(list, LVM_INSERTCOLUMNW, (WPARAM)index, (LPARAM)&column);
}

// Both lists, so that an icon of one is there in the other under the same index.
VL_ListViewIcons *readyIcons(HWND list)
{
    VL_ListViewIcons *icons = VL_ListView_Icons(list);
    if (!icons)
        return nullptr;
    const bool fresh = !icons->largeIcons.handle() || !icons->smallIcons.handle();
    if (!icons->largeIcons.handle()) {
        icons->largeIcons.create(list, VL_GetNumberProperty(list, L"VL_LvIconWidth", 32),
                                 VL_GetNumberProperty(list, L"VL_LvIconHeight", 32));
    }
    if (!icons->smallIcons.handle())
        icons->smallIcons.create(list, kSmallIcon, kSmallIcon);
    if (fresh)
        VL_ListView_ShowIcons(list);
    return icons;
}

int viewModeNumber(const std::wstring &mode)
{
    static const struct
    {
        const wchar_t *name;
        int mode;
    } names[] = {{L"\u56FE\u6807", 0},
                 {L"Icon", 0},
                 {L"\u5C0F\u56FE\u6807", 1},
                 {L"SmallIcon", 1},
                 {L"\u5217\u8868", 2},
                 {L"List", 2},
                 {L"\u8BE6\u7EC6", 3},
                 {L"Report", 3},
                 {L"Details", 3},
                 {L"\u8BE6\u7EC6\u4FE1\u606F", 3}};
    for (const auto &entry : names) {
        if (_wcsicmp(mode.c_str(), entry.name) == 0)
            return entry.mode;
    }
    return -1;
}

} // namespace
} // namespace vl_list_view

void VL_PrepareListView(HWND list, int iconWidth, int iconHeight)
{
    if (!VL_ListView_Attach(list))
        return;
    SetPropW(list, L"VL_LvIconWidth", (HANDLE)(intptr_t)iconWidth);
    SetPropW(list, L"VL_LvIconHeight", (HANDLE)(intptr_t)iconHeight);
}

void VL_ListView_SetViewMode(HWND list, const VL_Any &wanted)
{
    const DWORD styles[] = {LVS_ICON, LVS_SMALLICON, LVS_LIST, LVS_REPORT};
    const long long mode = wanted.type == VL_Any::TypeString
                               ? vl_list_view::viewModeNumber(wanted.strVal)
                               : wanted.toInt();
    if (mode < 0 || mode > 3 || !VL_ListView_Attach(list))
        return;
    const DWORD style = (DWORD)GetWindowLongW(list, GWL_STYLE);
    if ((style & LVS_TYPEMASK) != styles[mode])
        SetWindowLongW(list, GWL_STYLE, (LONG)((style & ~LVS_TYPEMASK) | styles[mode]));
    // The header may be there only now.
    VL_ListView_Attach(list);
    InvalidateRect(list, NULL, TRUE);
}

int VL_ListView_AddColumn(HWND list, const std::wstring &title, int width, int align)
{
    using namespace vl_list_view;
    if (!VL_ListView_Attach(list))
        return -1;
    const int count = VL_ListView_GetColumnCount(list);
    // The system keeps the first column to the left, except when it moves there from another place.
    const bool moved = count == 0 && align != 0 && VL_GetItemCount(list) == 0;
    if (moved)
        insertColumn(list, 0, std::wstring(), 0, 0);
    int column = insertColumn(list, moved ? 1 : count, title, width, align);
    if (moved) {
        SendMessageW(list, LVM_DELETECOLUMN, 0, 0);
        column = 0;
    }
    VL_ListView_Attach(list);
    return column;
}

int VL_ListView_AddColumn(HWND list, const std::wstring &title, int width,
                          const std::wstring &align)
{
    return VL_ListView_AddColumn(list, title, width, vl_list_view::alignmentNumber(align));
}

void VL_ListView_DeleteColumn(HWND list, int column)
{
    if (column >= 0 && column < VL_ListView_GetColumnCount(list))
        SendMessageW(list, LVM_DELETECOLUMN, (WPARAM)column, 0);
}

int VL_ListView_GetColumnCount(HWND list)
{
    if (!vl_list_view::isListView(list))
        return 0;
    const HWND header = (HWND)SendMessageW(list, LVM_GETHEADER, 0, 0);
    const int count = header ? (int)SendMessageW(header, HDM_GETITEMCOUNT, 0, 0) : 0;
    return count < 0 ? 0 : count;
}

int VL_ListView_AddRow(HWND list, std::initializer_list<std::wstring> cells)
{
    return vl_list_view::insertRow(list, -1, -1, cells);
}

int VL_ListView_AddRow(HWND list, const VL_Array &cells)
{
    return vl_list_view::insertRow(list, -1, -1, cells);
}

int VL_ListView_AddRowWithImage(HWND list, int image, std::initializer_list<std::wstring> cells)
{
    return vl_list_view::insertRow(list, -1, image, cells);
}

int VL_ListView_AddRowWithImage(HWND list, int image, const VL_Array &cells)
{
    return vl_list_view::insertRow(list, -1, image, cells);
}

int VL_ListView_InsertRow(HWND list, int row, std::initializer_list<std::wstring> cells)
{
    return vl_list_view::insertRow(list, row, -1, cells);
}

int VL_ListView_InsertRow(HWND list, int row, const VL_Array &cells)
{
    return vl_list_view::insertRow(list, row, -1, cells);
}

void VL_ListView_AddRowsText(HWND list, const wchar_t *const *cells, int rows, int columns)
{
    using namespace vl_list_view;
    if (!cells || rows <= 0 || columns <= 0 || !VL_ListView_Attach(list))
        return;
    VL_ListView_RowMessage(list, LVM_SETITEMCOUNT, (WPARAM)(VL_GetItemCount(list) + rows), 0);
    for (int row = 0; row < rows; ++row) {
        const wchar_t *const *first = cells + (size_t)row * (size_t)columns;
        insertCells(list, -1, -1, columns,
                    [&](int column) { return first[column] ? first[column] : L""; });
    }
}

int VL_ListView_AddItem(HWND list, const std::wstring &text)
{
    return VL_ListView_AddRow(list, {text});
}

int VL_ListView_AddItem(HWND list, const std::wstring &text, int image)
{
    return VL_ListView_AddRowWithImage(list, image, {text});
}

int VL_ListView_AddItem(HWND list, const std::wstring &text, const std::wstring &iconPath)
{
    const int image = iconPath.empty() ? -1 : VL_ListView_AddIcon(list, iconPath);
    return VL_ListView_AddRowWithImage(list, image, {text});
}

int VL_ListView_AddItemWithImage(HWND list, const std::wstring &text, const VL_Any &icon)
{
    if (icon.type == VL_Any::TypeString)
        return VL_ListView_AddItem(list, text, icon.strVal);
    return VL_ListView_AddItem(list, text, icon.isNumber() ? (int)icon.toInt() : -1);
}

void VL_ListView_AddItemsFromArray(HWND list, const VL_Array &items)
{
    if (!VL_ListView_Attach(list))
        return;
    VL_ListView_RowMessage(list, LVM_SETITEMCOUNT, (WPARAM)VL_GetItemCount(list) + items.size(), 0);
    for (const VL_Any &item : items) {
        if (item.type == VL_Any::TypeArray && item.arrPtr)
            VL_ListView_AddRow(list, *item.arrPtr);
        else
            VL_ListView_AddRow(list, {item.toStr()});
    }
}

void VL_ListView_AddItemsFromArray(HWND list, const VL_Any &items)
{
    if (items.type == VL_Any::TypeArray && items.arrPtr)
        VL_ListView_AddItemsFromArray(list, *items.arrPtr);
}

void VL_ListView_AddItemsFromArray(HWND list, const VL_Array2D &rows)
{
    VL_ListView_AddItemsFromArrays(list, rows);
}

void VL_ListView_AddItemsFromArrays(HWND list, const VL_Array2D &rows)
{
    if (!VL_ListView_Attach(list))
        return;
    VL_ListView_RowMessage(list, LVM_SETITEMCOUNT, (WPARAM)VL_GetItemCount(list) + rows.size(), 0);
    for (const VL_Array &row : rows)
        VL_ListView_AddRow(list, row);
}

void VL_ListView_DeleteRow(HWND list, int row)
{
    if (vl_list_view::isRow(list, row))
        VL_ListView_RowMessage(list, LVM_DELETEITEM, (WPARAM)row, 0);
}

void VL_ListView_Clear(HWND list)
{
    if (vl_list_view::isListView(list))
        SendMessageW(list, LVM_DELETEALLITEMS, 0, 0);
}

void VL_ListView_SetSubItem(HWND list, int row, int column, const std::wstring &text)
{
    const int columns = (std::max)(1, VL_ListView_GetColumnCount(list));
    if (row >= 0 && column >= 0 && column < columns)
        vl_list_view::setText(list, row, column, text.c_str());
}

std::wstring VL_ListView_GetItemText(HWND list, int row, int column)
{
    if (!vl_list_view::isRow(list, row) || column < 0)
        return std::wstring();
    return VL_ReadGrowing([&](wchar_t *buffer, int size) {
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = buffer;
        item.cchTextMax = size;
        VL_ListView_RowMessage(list, LVM_GETITEMTEXTW, (WPARAM)row, (LPARAM)&item);
    });
}

VL_Array VL_ListView_GetRowData(HWND list, int row)
{
    VL_Array texts;
    if (!vl_list_view::isRow(list, row))
        return texts;
    const int columns = (std::max)(1, VL_ListView_GetColumnCount(list));
    for (int column = 0; column < columns; ++column)
        texts.push_back(VL_Any(VL_ListView_GetItemText(list, row, column)));
    return texts;
}

std::wstring VL_ListView_GetSelectedText(HWND list)
{
    return VL_ListView_GetItemText(list, VL_GetSelectedIndex(list), 0);
}

void VL_ListView_SelectAll(HWND list)
{
    if (!vl_list_view::isListView(list) || (GetWindowLongW(list, GWL_STYLE) & LVS_SINGLESEL))
        return;
    LVITEMW item = {};
    item.state = LVIS_SELECTED;
    item.stateMask = LVIS_SELECTED;
    VL_ListView_RowMessage(list, LVM_SETITEMSTATE, (WPARAM)-1, (LPARAM)&item);
}

void VL_ListView_EnsureVisible(HWND list, int row)
{
    if (vl_list_view::isRow(list, row))
        SendMessageW(list, LVM_ENSUREVISIBLE, (WPARAM)row, FALSE);
}

void VL_ListView_SetEnsureVisible(HWND list, int row)
{
    VL_ListView_EnsureVisible(list, row);
}

void VL_ListView_SetChecked(HWND list, int row, bool checked)
{
    if (!vl_list_view::isRow(list, row))
        return;
    LVITEMW item = {};
    item.state = INDEXTOSTATEIMAGEMASK(checked ? 2 : 1);
    item.stateMask = LVIS_STATEIMAGEMASK;
    VL_ListView_RowMessage(list, LVM_SETITEMSTATE, (WPARAM)row, (LPARAM)&item);
}

bool VL_ListView_IsChecked(HWND list, int row)
{
    return vl_list_view::isRow(list, row) &&
           VL_ListView_RowMessage(list, LVM_GETITEMSTATE, (WPARAM)row, LVIS_STATEIMAGEMASK) ==
               INDEXTOSTATEIMAGEMASK(2);
}

void VL_ListView_CreateImageList(HWND list, int width, int height, bool smallIcons)
{
    VL_ListViewIcons *icons = VL_ListView_Icons(list);
    if (!icons)
        return;
    SendMessageW(list, LVM_SETIMAGELIST, smallIcons ? LVSIL_SMALL : LVSIL_NORMAL, 0);
    (smallIcons ? icons->smallIcons : icons->largeIcons).create(list, width, height);
    vl_list_view::readyIcons(list);
    VL_ListView_ShowIcons(list);
}

int VL_ListView_AddIcon(HWND list, const std::wstring &path, bool)
{
    VL_ListViewIcons *icons = vl_list_view::readyIcons(list);
    if (!icons)
        return -1;
    const int index = icons->largeIcons.add(list, path);
    return index >= 0 && icons->smallIcons.add(list, path) == index ? index : -1;
}

void VL_ListView_HitTest(HWND list, int *row, int *column)
{
    *row = -1;
    *column = -1;
    if (!vl_list_view::isListView(list))
        return;
    const DWORD place = GetMessagePos();
    LVHITTESTINFO hit = {};
    hit.pt = {(short)LOWORD(place), (short)HIWORD(place)};
    ScreenToClient(list, &hit.pt);
    SendMessageW(list, LVM_SUBITEMHITTEST, 0, (LPARAM)&hit);
    if (hit.iItem < 0 || !(hit.flags & LVHT_ONITEM))
        return;
    *row = hit.iItem;
    *column = hit.iSubItem;
}

std::wstring VL_ListView_DebugInfo(HWND list)
{
    if (!vl_list_view::isListView(list))
        return std::wstring();
    const wchar_t *const modes[] = {L"\u56FE\u6807", L"\u8BE6\u7EC6", L"\u5C0F\u56FE\u6807",
                                    L"\u5217\u8868"};
    const DWORD mode = (DWORD)GetWindowLongW(list, GWL_STYLE) & LVS_TYPEMASK;
    return std::wstring(L"\u89C6\u56FE=") + modes[mode] + L", \u884C\u6570=" +
           std::to_wstring(VL_GetItemCount(list)) + L", \u5217\u6570=" +
           std::to_wstring(VL_ListView_GetColumnCount(list)) + L", \u9009\u4E2D\u884C=" +
           std::to_wstring(VL_GetSelectedIndex(list)) + L", \u9009\u4E2D\u6570=" +
           std::to_wstring((int)SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0));
}
