// How list views draw: once for all changes made in a row, icons and columns in the screen's
// resolution, headers in colours of their own.
#include "77_list_drawing.h"

#include "43_background.h"
#include "76_bulk_changes.h"

#include <algorithm>

namespace vl_list_drawing {
namespace {

const UINT kDpiChangedAfterParent = 0x02E3;

struct Changes
{
    VL_HeldDrawing drawing;
    int ensure = -1; // row that shall come into sight when drawing is on again
    int dpi = 0;
    WNDPROC control = NULL; // the procedure of the class
    WNDPROC next = NULL;    // the one that stood first before this section's
    HWND header = NULL;
    WNDPROC headerNext = NULL;
};

// Drawing is on again.
void bringIntoSight(HWND list, Changes *changes)
{
    const int row = changes->ensure;
    changes->ensure = -1;
    if (row >= 0)
        SendMessageW(list, LVM_ENSUREVISIBLE, (WPARAM)row, FALSE);
}

// The row to bring into sight moves with those before it.
void followRow(Changes *changes, UINT message, WPARAM wParam, LRESULT result)
{
    if (changes->ensure < 0)
        return;
    if (message == LVM_INSERTITEMW || message == LVM_INSERTITEMA) {
        changes->ensure += result >= 0 && (int)result <= changes->ensure ? 1 : 0;
    } else if (message == LVM_DELETEITEM && result) {
        changes->ensure -= (int)wParam < changes->ensure ? 1 : 0;
    } else if (message == LVM_DELETEALLITEMS) {
        changes->ensure = -1;
    }
}

void detachIcons(HWND list)
{
    // The control would destroy what this section owns.
    if (!VL_FindExtra<VL_ListViewIcons>(list))
        return;
    SendMessageW(list, LVM_SETIMAGELIST, LVSIL_NORMAL, 0);
    SendMessageW(list, LVM_SETIMAGELIST, LVSIL_SMALL, 0);
}

void followDpi(HWND list, Changes *changes)
{
    const int dpi = VL_GetDpiForScaling(list);
    if (dpi == changes->dpi)
        return;
    const int old = changes->dpi;
    changes->dpi = dpi;
    const HWND header = (HWND)SendMessageW(list, LVM_GETHEADER, 0, 0);
    const int columns = header ? (int)SendMessageW(header, HDM_GETITEMCOUNT, 0, 0) : 0;
    for (int i = 0; i < columns; ++i) {
        const int width = (int)SendMessageW(list, LVM_GETCOLUMNWIDTH, (WPARAM)i, 0);
        SendMessageW(list, LVM_SETCOLUMNWIDTH, (WPARAM)i, MulDiv(width, dpi, old));
    }
    VL_ListViewIcons *icons = VL_FindExtra<VL_ListViewIcons>(list);
    if (!icons)
        return;
    detachIcons(list);
    icons->largeIcons.rescale(list);
    icons->smallIcons.rescale(list);
    VL_ListView_ShowIcons(list);
}

// Messages ahead of which, or after which, something must happen to the held drawing.
enum class Effect
{
    None,
    Change,
    Places,
    EnsureVisible,
    SetRedraw
};

Effect effectOf(UINT message, WPARAM wParam)
{
    switch (message) {
    case LVM_SETITEMSTATE:
        // Of all rows.
        return (int)wParam == -1 ? Effect::Change : Effect::None;
    case LVM_INSERTITEMA:
    case LVM_INSERTITEMW:
    case LVM_SETITEMA:
    case LVM_SETITEMW:
    case LVM_SETITEMTEXTA:
    case LVM_SETITEMTEXTW:
    case LVM_DELETEITEM:
        return Effect::Change;
    case VL_HeldDrawing::Message:
    case WM_PAINT:
    case WM_PRINT:
    case WM_PRINTCLIENT:
    case LVM_SCROLL:
    case LVM_HITTEST:
    case LVM_SUBITEMHITTEST:
    case LVM_GETITEMRECT:
    case LVM_GETSUBITEMRECT:
    case LVM_GETTOPINDEX:
    case LVM_GETITEMPOSITION:
    case LVM_EDITLABELW:
    case LVM_EDITLABELA:
        return Effect::Places;
    case LVM_ENSUREVISIBLE:
        return Effect::EnsureVisible;
    case WM_SETREDRAW:
        return Effect::SetRedraw;
    default:
        return Effect::None;
    }
}

// True when the message is answered with `result`.
bool prepareFor(HWND list, Changes *changes, UINT message, WPARAM wParam, LRESULT *result)
{
    switch (effectOf(message, wParam)) {
    case Effect::Change:
        changes->drawing.hold(list);
        break;
    case Effect::Places:
        if (changes->drawing.show(list))
            bringIntoSight(list, changes);
        *result = 0;
        return message == VL_HeldDrawing::Message;
    case Effect::EnsureVisible:
        if (!changes->drawing.isHeld())
            break;
        changes->ensure = (int)wParam;
        *result = (int)wParam >= 0 && (int)wParam < VL_GetItemCount(list);
        if (!*result)
            changes->ensure = -1;
        return true;
    case Effect::SetRedraw:
        changes->drawing.seeSetRedraw();
        break;
    case Effect::None:
        break;
    }
    return false;
}

// The attached list views. Windows can outlive what is destroyed at the end of the program.
VL_WindowTable &attached()
{
    static VL_WindowTable &table = *new VL_WindowTable;
    return table;
}

Changes *changesOf(HWND list)
{
    return (Changes *)attached().find(list);
}

// Notifications that come once or more for each row and that no subclass procedure looks at.
bool isOfEachRow(const NMHDR *header)
{
    return header->code == LVN_INSERTITEM || header->code == LVN_DELETEITEM ||
           header->code == LVN_ITEMCHANGING || header->code == LVN_ITEMCHANGED;
}

// Stands ahead of all subclass procedures, so that thousands of rows do not pass through them.
LRESULT CALLBACK listProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam)
{
    Changes *changes = changesOf(list);
    if (!changes)
        return DefWindowProcW(list, message, wParam, lParam);
    if (message == VL_REFLECT + WM_NOTIFY && lParam && isOfEachRow((const NMHDR *)lParam))
        return 0;
    const WNDPROC next = changes->next;
    if (message == WM_NCDESTROY) {
        attached().set(list, nullptr);
        return CallWindowProcW(next, list, message, wParam, lParam);
    }
    if (message == WM_DESTROY)
        detachIcons(list);
    LRESULT result = 0;
    if (prepareFor(list, changes, message, wParam, &result))
        return result;
    result = CallWindowProcW(next, list, message, wParam, lParam);
    followRow(changes, message, wParam, result);
    if (message == WM_SIZE || message == WM_SETFONT || message == kDpiChangedAfterParent)
        followDpi(list, changes);
    return result;
}

COLORREF blended(COLORREF a, COLORREF b, int percent)
{
    const auto channel = [percent](int from, int to) { return from + (to - from) * percent / 100; };
    return RGB(channel(GetRValue(a), GetRValue(b)), channel(GetGValue(a), GetGValue(b)),
               channel(GetBValue(a), GetBValue(b)));
}

void fill(HDC context, const RECT &area, COLORREF color)
{
    SetDCBrushColor(context, color);
    FillRect(context, &area, (HBRUSH)GetStockObject(DC_BRUSH));
}

void drawSortMark(HWND header, HDC context, RECT *area, bool upward, COLORREF color)
{
    const int size = VL_ScaleX(header, 4);
    const int x = area->right - VL_ScaleX(header, 6) - size;
    const int y = (area->top + area->bottom - size) / 2;
    const int base = upward ? y + size : y;
    const int tip = upward ? y : y + size;
    const POINT points[] = {{x - size, base}, {x + size, base}, {x, tip}};
    SetDCBrushColor(context, color);
    SetDCPenColor(context, color);
    Polygon(context, points, 3);
    area->right = x - size;
}

void drawHeaderItem(HWND header, HDC context, int column, COLORREF back, COLORREF fore)
{
    RECT area = {};
    if (!SendMessageW(header, HDM_GETITEMRECT, (WPARAM)column, (LPARAM)&area))
        return;
    int format = HDF_LEFT;
    const std::wstring title = VL_ReadGrowing([&](wchar_t *buffer, int size) {
        HDITEMW item = {};
        item.mask = HDI_TEXT | HDI_FORMAT;
        item.pszText = buffer;
        item.cchTextMax = size;
        SendMessageW(header, HDM_GETITEMW, (WPARAM)column, (LPARAM)&item);
        format = item.fmt;
    });
    const int line = (std::max)(1, VL_ScaleX(header, 1));
    const RECT divider = {area.right - line, area.top + 4 * line, area.right,
                          area.bottom - 4 * line};
    fill(context, divider, blended(back, fore, 25));
    if (format & (HDF_SORTUP | HDF_SORTDOWN))
        drawSortMark(header, context, &area, (format & HDF_SORTUP) != 0, fore);
    InflateRect(&area, -VL_ScaleX(header, 6), 0);
    const int justify = format & HDF_JUSTIFYMASK;
    const UINT side = justify == HDF_CENTER ? DT_CENTER : justify == HDF_RIGHT ? DT_RIGHT : DT_LEFT;
    SetTextColor(context, fore);
    DrawTextW(context, title.c_str(), (int)(std::min)(title.size(), (size_t)4096), &area,
              side | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

void drawHeader(HWND header, HDC context, const RECT &client, COLORREF back, COLORREF fore)
{
    HFONT font = (HFONT)SendMessageW(header, WM_GETFONT, 0, 0);
    const HGDIOBJ oldFont =
        SelectObject(context, font ? font : (HFONT)GetStockObject(DEFAULT_GUI_FONT));
    const HGDIOBJ oldBrush = SelectObject(context, GetStockObject(DC_BRUSH));
    const HGDIOBJ oldPen = SelectObject(context, GetStockObject(DC_PEN));
    SetBkMode(context, TRANSPARENT);
    fill(context, client, back);
    const RECT edge = {client.left, client.bottom - 1, client.right, client.bottom};
    fill(context, edge, blended(back, fore, 25));
    const int columns = (int)SendMessageW(header, HDM_GETITEMCOUNT, 0, 0);
    for (int i = 0; i < columns; ++i)
        drawHeaderItem(header, context, i, back, fore);
    SelectObject(context, oldPen);
    SelectObject(context, oldBrush);
    SelectObject(context, oldFont);
}

void paintHeader(HWND header, COLORREF back, COLORREF fore)
{
    PAINTSTRUCT paint = {};
    const HDC screen = BeginPaint(header, &paint);
    RECT client = {};
    GetClientRect(header, &client);
    drawHeader(header, VL_BufferedPaint(screen, client).context(), client, back, fore);
    EndPaint(header, &paint);
}

// The list view asks its header about each row it changes: nothing may stand in between that costs.
LRESULT CALLBACK headerProcedure(HWND header, UINT message, WPARAM wParam, LPARAM lParam)
{
    const HWND list = GetParent(header);
    const Changes *changes = changesOf(list);
    if (!changes)
        return DefWindowProcW(header, message, wParam, lParam);
    if (message == WM_PAINT || message == WM_ERASEBKGND) {
        const int back = VL_GetNumberProperty(list, L"VL_LvHdrBg");
        const int fore = VL_GetNumberProperty(list, L"VL_LvHdrFg");
        if ((back || fore) && message == WM_ERASEBKGND)
            return 1;
        if (back || fore) {
            paintHeader(header, back ? (COLORREF)(back - 1) : GetSysColor(COLOR_BTNFACE),
                        fore ? (COLORREF)(fore - 1) : GetSysColor(COLOR_BTNTEXT));
            return 0;
        }
    }
    return CallWindowProcW(changes->headerNext, header, message, wParam, lParam);
}

void attachHeader(HWND list, Changes *changes)
{
    // Some systems make the header when the first column comes.
    const HWND header = (HWND)SendMessageW(list, LVM_GETHEADER, 0, 0);
    if (!header || header == changes->header)
        return;
    changes->header = header;
    changes->headerNext = (WNDPROC)GetWindowLongPtrW(header, GWLP_WNDPROC);
    SetWindowLongPtrW(header, GWLP_WNDPROC, (LONG_PTR)headerProcedure);
}

} // namespace
} // namespace vl_list_drawing

bool VL_ListView_Attach(HWND list)
{
    using namespace vl_list_drawing;
    if (!VL_HasClass(list, WC_LISTVIEWW))
        return false;
    Changes *changes = changesOf(list);
    if (!changes) {
        changes = VL_Extra<Changes>(list);
        if (!changes)
            return false;
        changes->dpi = VL_GetDpiForScaling(list);
        changes->control = VL_ClassProcedure(list);
        changes->next = (WNDPROC)GetWindowLongPtrW(list, GWLP_WNDPROC);
        attached().set(list, changes);
        SetWindowLongPtrW(list, GWLP_WNDPROC, (LONG_PTR)listProcedure);
    }
    attachHeader(list, changes);
    return true;
}

LRESULT VL_ListView_RowMessage(HWND list, UINT message, WPARAM wParam, LPARAM lParam)
{
    using namespace vl_list_drawing;
    Changes *changes = changesOf(list);
    if (!changes && VL_ListView_Attach(list))
        changes = changesOf(list);
    if (!changes)
        return -1;
    if (!changes->control || GetWindowThreadProcessId(list, NULL) != GetCurrentThreadId())
        return SendMessageW(list, message, wParam, lParam);
    if (effectOf(message, wParam) == Effect::Change)
        changes->drawing.hold(list);
    const LRESULT result = CallWindowProcW(changes->control, list, message, wParam, lParam);
    followRow(changes, message, wParam, result);
    return result;
}

VL_ListViewIcons *VL_ListView_Icons(HWND list)
{
    return VL_ListView_Attach(list) ? VL_Extra<VL_ListViewIcons>(list) : nullptr;
}

void VL_ListView_ShowIcons(HWND list)
{
    VL_ListViewIcons *icons = VL_ListView_Icons(list);
    if (!icons)
        return;
    SendMessageW(list, LVM_SETIMAGELIST, LVSIL_NORMAL, (LPARAM)icons->largeIcons.handle());
    SendMessageW(list, LVM_SETIMAGELIST, LVSIL_SMALL, (LPARAM)icons->smallIcons.handle());
}

void VL_ListView_BeginUpdate(HWND list)
{
    if (VL_ListView_Attach(list))
        vl_list_drawing::changesOf(list)->drawing.begin(list);
}

void VL_ListView_EndUpdate(HWND list)
{
    using namespace vl_list_drawing;
    if (VL_ListView_Attach(list) && changesOf(list)->drawing.end(list))
        bringIntoSight(list, changesOf(list));
}
