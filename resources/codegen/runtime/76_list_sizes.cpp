// Heights of combo boxes and sizes of the items of list boxes, kept in design pixels.
#include "76_list_sizes.h"

#include <algorithm>

namespace vl_list_sizes {
namespace {

const UINT_PTR kSubclass = 0x564C76;
// Told to child windows after their window changed its resolution; older headers lack it.
const UINT kDpiChangedAfterParent = 0x02E3;
const UINT kSetMinVisible = 0x1701;

struct ComboSize
{
    int height = 0; // of the closed control, in pixels; 0 leaves it alone
    int items = 8;
    bool busy = false; // the control is being resized by this section
};

struct ListSize
{
    int itemHeight = 0; // design pixels, as columnWidth
    int columnWidth = 0;
    bool horizontalScroll = false;
    int extent = 0;
    bool stale = true; // the extent must be measured anew
    int dpi = 0;
};

int heightOf(HWND window)
{
    RECT frame = {};
    GetWindowRect(window, &frame);
    return frame.bottom - frame.top;
}

bool dropsDown(HWND combo)
{
    return VL_HasClass(combo, L"COMBOBOX") && (GetWindowLongW(combo, GWL_STYLE) & 3) != CBS_SIMPLE;
}

// What the control has besides its field differs by system and theme: the difference is measured.
void applyClosedHeight(HWND combo, const ComboSize &size)
{
    if (size.height <= 0)
        return;
    int field = (int)SendMessageW(combo, CB_GETITEMHEIGHT, (WPARAM)-1, 0);
    for (int round = 0; round < 2; ++round) {
        SendMessageW(combo, CB_SETITEMHEIGHT, (WPARAM)-1, field);
        field = (std::max)(1, field + size.height - heightOf(combo));
    }
}

void applyListHeight(HWND combo, const ComboSize &size)
{
    // Where the list finds its height by itself, it does so by this.
    SendMessageW(combo, kSetMinVisible, (WPARAM)size.items, 0);
    const LRESULT item = SendMessageW(combo, CB_GETITEMHEIGHT, 0, 0);
    RECT frame = {};
    GetWindowRect(combo, &frame);
    // A height beyond that of the closed control goes to the list.
    const int list = (item > 0 ? (int)item : 16) * size.items + 2 * GetSystemMetrics(SM_CYBORDER);
    SetWindowPos(combo, NULL, 0, 0, frame.right - frame.left, frame.bottom - frame.top + list,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void applyComboSize(HWND combo, ComboSize *size)
{
    if (size->busy)
        return;
    size->busy = true;
    applyListHeight(combo, *size);
    applyClosedHeight(combo, *size);
    size->busy = false;
}

LRESULT CALLBACK comboProcedure(HWND combo, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR)
{
    ComboSize *size = VL_FindExtra<ComboSize>(combo);
    if (message == WM_NCDESTROY) {
        RemovePropW(combo, L"VL_KeepsHeight");
        RemoveWindowSubclass(combo, comboProcedure, kSubclass);
    }
    if (!size || size->busy)
        return DefSubclassProc(combo, message, wParam, lParam);
    if (message == WM_WINDOWPOSCHANGING && size->height > 0) {
        // The system would give the height to the list; here it means the closed control.
        const WINDOWPOS *place = (const WINDOWPOS *)lParam;
        if (!(place->flags & SWP_NOSIZE) && place->cy > 0)
            size->height = place->cy;
    } else if (message == WM_SETFONT || message == WM_SIZE) {
        // Both make the system find heights of its own, from the font.
        size->busy = true;
        const LRESULT result = DefSubclassProc(combo, message, wParam, lParam);
        size->busy = false;
        applyComboSize(combo, size);
        return result;
    }
    return DefSubclassProc(combo, message, wParam, lParam);
}

ComboSize *prepareCombo(HWND combo)
{
    if (!dropsDown(combo))
        return nullptr;
    ComboSize *size = VL_Extra<ComboSize>(combo);
    if (size)
        SetWindowSubclass(combo, comboProcedure, kSubclass, 0);
    return size;
}

// What a text takes in the list; what the system cannot measure counts as far as it can.
int widthOfText(HDC context, const std::wstring &text)
{
    SIZE size = {};
    const int greatest = 8000;
    GetTextExtentPoint32W(context, text.c_str(), (int)(std::min)(text.size(), (size_t)greatest),
                          &size);
    return size.cx + 8;
}

class FontContext
{
public:
    explicit FontContext(HWND window) : m_window(window), m_context(GetDC(window))
    {
        const HFONT font = (HFONT)SendMessageW(window, WM_GETFONT, 0, 0);
        m_old = SelectObject(m_context, font ? font : GetStockObject(SYSTEM_FONT));
    }
    ~FontContext()
    {
        SelectObject(m_context, m_old);
        ReleaseDC(m_window, m_context);
    }
    FontContext(const FontContext &) = delete;
    FontContext &operator=(const FontContext &) = delete;
    HDC get() const { return m_context; }

private:
    HWND m_window;
    HDC m_context;
    HGDIOBJ m_old;
};

void measureAll(HWND list, ListSize *size)
{
    const FontContext context(list);
    int extent = 0;
    const int count = VL_GetItemCount(list);
    for (int i = 0; i < count; ++i)
        extent = (std::max)(extent, widthOfText(context.get(), VL_GetComboOrListItemText(list, i)));
    size->extent = extent;
    size->stale = false;
    SendMessageW(list, LB_SETHORIZONTALEXTENT, (WPARAM)extent, 0);
}

void growExtent(HWND list, ListSize *size, const wchar_t *text)
{
    if (size->stale || !text)
        return;
    const FontContext context(list);
    const int width = widthOfText(context.get(), text);
    if (width <= size->extent)
        return;
    size->extent = width;
    SendMessageW(list, LB_SETHORIZONTALEXTENT, (WPARAM)width, 0);
}

void applyListSize(HWND list, ListSize *size)
{
    size->dpi = VL_GetDpiForScaling(list);
    if (size->itemHeight > 0)
        SendMessageW(list, LB_SETITEMHEIGHT, 0, VL_ScaleY(list, size->itemHeight));
    if (size->columnWidth > 0)
        SendMessageW(list, LB_SETCOLUMNWIDTH, (WPARAM)VL_ScaleX(list, size->columnWidth), 0);
    size->stale = true;
    InvalidateRect(list, NULL, TRUE);
}

LRESULT CALLBACK listProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR)
{
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(list, listProcedure, kSubclass);
        return DefSubclassProc(list, message, wParam, lParam);
    }
    if (message == WM_PAINT) {
        ListSize *size = VL_FindExtra<ListSize>(list);
        if (size && size->horizontalScroll && size->stale)
            measureAll(list, size);
    }
    const LRESULT result = DefSubclassProc(list, message, wParam, lParam);
    ListSize *size = VL_FindExtra<ListSize>(list);
    if (!size)
        return result;
    switch (message) {
    case LB_ADDSTRING:
    case LB_INSERTSTRING:
        if (size->horizontalScroll)
            growExtent(list, size, (const wchar_t *)lParam);
        break;
    case LB_DELETESTRING:
    case LB_RESETCONTENT:
        size->stale = true;
        break;
    case WM_SETFONT:
        applyListSize(list, size);
        break;
    case WM_SIZE:
    case kDpiChangedAfterParent:
        if (size->dpi != VL_GetDpiForScaling(list))
            applyListSize(list, size);
        break;
    default:
        break;
    }
    return result;
}

} // namespace
} // namespace vl_list_sizes

void VL_SetDropDownCount(HWND combo, int count)
{
    using namespace vl_list_sizes;
    ComboSize *size = prepareCombo(combo);
    if (!size)
        return;
    size->items = (std::max)(1, (std::min)(count, 100));
    applyComboSize(combo, size);
}

void VL_PrepareComboBox(HWND combo, int height, int maxItems)
{
    using namespace vl_list_sizes;
    ComboSize *size = prepareCombo(combo);
    if (!size)
        return;
    size->height = (std::max)(0, VL_ScaleY(combo, (std::min)(height, 10000)));
    SetPropW(combo, L"VL_KeepsHeight", (HANDLE)(intptr_t)(size->height > 0));
    if (maxItems > 0)
        size->items = (std::min)(maxItems, 100);
    applyComboSize(combo, size);
}

void VL_PrepareListBox(HWND list, int itemHeight, int columnWidth, bool horizontalScroll)
{
    using namespace vl_list_sizes;
    if (!VL_HasClass(list, L"LISTBOX"))
        return;
    ListSize *size = VL_Extra<ListSize>(list);
    if (!size)
        return;
    // The system takes item heights in one byte.
    size->itemHeight = (std::max)(0, (std::min)(itemHeight, 255));
    size->columnWidth = (std::max)(0, (std::min)(columnWidth, 10000));
    size->horizontalScroll = horizontalScroll;
    SetWindowSubclass(list, listProcedure, kSubclass, 0);
    applyListSize(list, size);
}
