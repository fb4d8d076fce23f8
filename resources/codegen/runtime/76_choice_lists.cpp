// Combo boxes and list boxes, and the item functions that all controls with items share.
#include "76_choice_lists.h"

#include "76_bulk_changes.h"

namespace vl_choice_lists {
namespace {

enum class Kind
{
    None,
    List,
    Combo,
    ListView,
    Tree,
    Tab
};

Kind kindOf(HWND control)
{
    static const struct
    {
        const wchar_t *name;
        Kind kind;
    } kinds[] = {{L"LISTBOX", Kind::List},
                 {L"COMBOBOX", Kind::Combo},
                 {WC_LISTVIEWW, Kind::ListView},
                 {WC_TREEVIEWW, Kind::Tree},
                 {WC_TABCONTROLW, Kind::Tab}};
    for (const auto &entry : kinds) {
        if (VL_HasClass(control, entry.name))
            return entry.kind;
    }
    return Kind::None;
}

DWORD styleOf(HWND control)
{
    return (DWORD)GetWindowLongW(control, GWL_STYLE);
}

bool isMultiple(HWND list)
{
    return (styleOf(list) & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0;
}

// What list boxes and the lists of combo boxes call by different numbers.
struct Messages
{
    UINT add, insert, remove, clear, count, textLength, text, selected, select, data, setData;
    DWORD sortStyle;
};

const Messages &messagesOf(Kind kind)
{
    static const Messages list = {LB_ADDSTRING, LB_INSERTSTRING, LB_DELETESTRING, LB_RESETCONTENT,
                                  LB_GETCOUNT,  LB_GETTEXTLEN,   LB_GETTEXT,      LB_GETCURSEL,
                                  LB_SETCURSEL, LB_GETITEMDATA,  LB_SETITEMDATA,  LBS_SORT};
    static const Messages combo = {CB_ADDSTRING, CB_INSERTSTRING, CB_DELETESTRING, CB_RESETCONTENT,
                                   CB_GETCOUNT,  CB_GETLBTEXTLEN, CB_GETLBTEXT,    CB_GETCURSEL,
                                   CB_SETCURSEL, CB_GETITEMDATA,  CB_SETITEMDATA,  CBS_SORT};
    return kind == Kind::Combo ? combo : list;
}

bool isPlain(Kind kind)
{
    return kind == Kind::List || kind == Kind::Combo;
}

HTREEITEM treeStep(HWND tree, UINT direction, HTREEITEM from)
{
    return (HTREEITEM)SendMessageW(tree, TVM_GETNEXTITEM, direction, (LPARAM)from);
}

// The item behind `item`, children ahead of siblings; the first one for NULL.
HTREEITEM nextInTree(HWND tree, HTREEITEM item)
{
    if (!item)
        return treeStep(tree, TVGN_ROOT, NULL);
    if (HTREEITEM child = treeStep(tree, TVGN_CHILD, item))
        return child;
    for (; item; item = treeStep(tree, TVGN_PARENT, item)) {
        if (HTREEITEM sibling = treeStep(tree, TVGN_NEXT, item))
            return sibling;
    }
    return NULL;
}

HTREEITEM treeItemAt(HWND tree, int index)
{
    HTREEITEM item = index < 0 ? NULL : nextInTree(tree, NULL);
    for (; item && index > 0; --index)
        item = nextInTree(tree, item);
    return item;
}

int orderInTree(HWND tree, HTREEITEM wanted)
{
    int order = 0;
    for (HTREEITEM item = nextInTree(tree, NULL); item; item = nextInTree(tree, item), ++order) {
        if (item == wanted)
            return order;
    }
    return -1;
}

wchar_t *writable(const std::wstring &text)
{
    return const_cast<wchar_t *>(text.c_str());
}

std::wstring plainText(HWND control, const Messages &messages, int index)
{
    const LRESULT length = SendMessageW(control, messages.textLength, (WPARAM)index, 0);
    if (length <= 0)
        return std::wstring();
    std::wstring text((size_t)length + 1, L'\0');
    const LRESULT copied = SendMessageW(control, messages.text, (WPARAM)index, (LPARAM)&text[0]);
    text.resize(copied > 0 ? (size_t)copied : 0);
    return text;
}

std::wstring treeText(HWND tree, HTREEITEM node)
{
    if (!node)
        return std::wstring();
    return VL_ReadGrowing([&](wchar_t *buffer, int size) {
        TVITEMW item = {};
        item.mask = TVIF_TEXT;
        item.hItem = node;
        item.pszText = buffer;
        item.cchTextMax = size;
        SendMessageW(tree, TVM_GETITEMW, 0, (LPARAM)&item);
    });
}

int insertPlain(HWND control, Kind kind, int index, const std::wstring &text)
{
    const Messages &messages = messagesOf(kind);
    const bool append = index < 0 || index >= VL_GetItemCount(control);
    const LRESULT place =
        append || (styleOf(control) & messages.sortStyle)
            ? SendMessageW(control, messages.add, 0, (LPARAM)text.c_str())
            : SendMessageW(control, messages.insert, (WPARAM)index, (LPARAM)text.c_str());
    return place < 0 ? -1 : (int)place;
}

int insertTreeItem(HWND tree, int index, const std::wstring &text)
{
    const HTREEITEM before = treeItemAt(tree, index);
    TVINSERTSTRUCTW place = {};
    place.hParent = before ? treeStep(tree, TVGN_PARENT, before) : NULL;
    place.hInsertAfter = TVI_LAST;
    if (before) {
        const HTREEITEM previous = treeStep(tree, TVGN_PREVIOUS, before);
        place.hInsertAfter = previous ? previous : TVI_FIRST;
    }
    place.item.mask = TVIF_TEXT;
    place.item.pszText = writable(text);
    const HTREEITEM item = (HTREEITEM)SendMessageW(tree, TVM_INSERTITEMW, 0, (LPARAM)&place);
    if (!item)
        return -1;
    return before ? index : VL_GetItemCount(tree) - 1;
}

int insertRow(HWND list, int index, const std::wstring &text)
{
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE;
    item.iImage = I_IMAGENONE;
    item.iItem = index < 0 ? VL_GetItemCount(list) : index;
    item.pszText = writable(text);
    return (int)SendMessageW(list, LVM_INSERTITEMW, 0, (LPARAM)&item);
}

int insertPage(HWND tab, int index, const std::wstring &text)
{
    const int count = VL_GetItemCount(tab);
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = writable(text);
    const int place = index < 0 || index > count ? count : index;
    return (int)SendMessageW(tab, TCM_INSERTITEMW, (WPARAM)place, (LPARAM)&item);
}

// Only list boxes: a combo box may take the message for one that shows or hides it as a window.
void setRedraw(HWND control, Kind kind, bool on)
{
    if (kind != Kind::List)
        return;
    SendMessageW(control, WM_SETREDRAW, on, 0);
    if (on)
        InvalidateRect(control, NULL, TRUE);
}

// A plain list cannot change a text in place: the item is replaced, its selection and data kept.
void replacePlain(HWND control, Kind kind, int index, const std::wstring &text)
{
    const Messages &messages = messagesOf(kind);
    if (index < 0 || index >= VL_GetItemCount(control))
        return;
    const bool multiple = kind == Kind::List && isMultiple(control);
    const bool selected = multiple ? SendMessageW(control, LB_GETSEL, (WPARAM)index, 0) > 0
                                   : (int)SendMessageW(control, messages.selected, 0, 0) == index;
    const int top = kind == Kind::List ? (int)SendMessageW(control, LB_GETTOPINDEX, 0, 0) : 0;
    const LRESULT data = SendMessageW(control, messages.data, (WPARAM)index, 0);
    setRedraw(control, kind, false);
    SendMessageW(control, messages.remove, (WPARAM)index, 0);
    const int place = insertPlain(control, kind, index, text);
    SendMessageW(control, messages.setData, (WPARAM)place, data);
    if (kind == Kind::List)
        SendMessageW(control, LB_SETTOPINDEX, (WPARAM)top, 0);
    if (selected && multiple)
        SendMessageW(control, LB_SETSEL, TRUE, place);
    else if (selected)
        SendMessageW(control, messages.select, (WPARAM)place, 0);
    setRedraw(control, kind, true);
}

void selectInList(HWND list, int index)
{
    if (!isMultiple(list)) {
        SendMessageW(list, LB_SETCURSEL, (WPARAM)index, 0);
        return;
    }
    SendMessageW(list, LB_SETSEL, FALSE, -1);
    if (index < 0)
        return;
    SendMessageW(list, LB_SETSEL, TRUE, index);
    SendMessageW(list, LB_SETCARETINDEX, (WPARAM)index, FALSE);
}

void selectRow(HWND list, int index)
{
    LVITEMW state = {};
    state.stateMask = LVIS_SELECTED;
    const bool alone =
        SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0) == 1 && VL_GetSelectedIndex(list) == index;
    if (!alone)
        SendMessageW(list, LVM_SETITEMSTATE, (WPARAM)-1, (LPARAM)&state);
    if (index < 0)
        return;
    state.state = LVIS_SELECTED | LVIS_FOCUSED;
    state.stateMask = state.state;
    SendMessageW(list, LVM_SETITEMSTATE, (WPARAM)index, (LPARAM)&state);
    SendMessageW(list, LVM_SETSELECTIONMARK, 0, index);
    SendMessageW(list, LVM_ENSUREVISIBLE, (WPARAM)index, FALSE);
}

// Splits at ends of line, or at ";" where there is none; "\r" counts as part of an end of line.
std::vector<std::wstring> itemsOf(const std::wstring &text)
{
    const bool lines = text.find_first_of(L"\r\n") != std::wstring::npos;
    const wchar_t separator = lines ? L'\n' : L';';
    std::vector<std::wstring> items;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find(separator, start);
        if (end == std::wstring::npos)
            end = text.size();
        size_t stop = end;
        while (lines && stop > start && text[stop - 1] == L'\r')
            --stop;
        items.push_back(text.substr(start, stop - start));
        start = end + 1;
    }
    return items;
}

} // namespace
} // namespace vl_choice_lists

std::wstring VL_ReadGrowing(const std::function<void(wchar_t *buffer, int size)> &read)
{
    const int greatest = 1 << 26;
    std::wstring text;
    for (int size = 260;; size *= 4) {
        text.assign((size_t)size, L'\0');
        read(&text[0], size);
        text[(size_t)size - 1] = L'\0';
        const size_t length = wcslen(text.c_str());
        // A text that fills the buffer may go on.
        if ((int)length < size - 1 || size >= greatest) {
            text.resize(length);
            return text;
        }
    }
}

int VL_GetItemCount(HWND control)
{
    using namespace vl_choice_lists;
    LRESULT count = 0;
    switch (const Kind kind = kindOf(control)) {
    case Kind::List:
    case Kind::Combo:
        count = SendMessageW(control, messagesOf(kind).count, 0, 0);
        break;
    case Kind::ListView:
        count = SendMessageW(control, LVM_GETITEMCOUNT, 0, 0);
        break;
    case Kind::Tree:
        // The control counts in 16 bits on some systems; what does not fit looks negative.
        count = SendMessageW(control, TVM_GETCOUNT, 0, 0);
        break;
    case Kind::Tab:
        count = SendMessageW(control, TCM_GETITEMCOUNT, 0, 0);
        break;
    case Kind::None:
        break;
    }
    return count < 0 ? 0 : (int)count;
}

int VL_GetSelectedIndex(HWND control)
{
    using namespace vl_choice_lists;
    switch (kindOf(control)) {
    case Kind::List:
        return VL_ListBox_GetBestIndex(control);
    case Kind::Combo:
        return (int)SendMessageW(control, CB_GETCURSEL, 0, 0);
    case Kind::ListView: {
        const int focused =
            (int)SendMessageW(control, LVM_GETNEXTITEM, (WPARAM)-1, LVNI_FOCUSED | LVNI_SELECTED);
        return focused >= 0
                   ? focused
                   : (int)SendMessageW(control, LVM_GETNEXTITEM, (WPARAM)-1, LVNI_SELECTED);
    }
    case Kind::Tree: {
        const HTREEITEM selected = treeStep(control, TVGN_CARET, NULL);
        return selected ? orderInTree(control, selected) : -1;
    }
    case Kind::Tab:
        return (int)SendMessageW(control, TCM_GETCURSEL, 0, 0);
    case Kind::None:
        break;
    }
    return -1;
}

void VL_SetSelectedIndex(HWND control, int index)
{
    using namespace vl_choice_lists;
    if (index < 0 || index >= VL_GetItemCount(control))
        index = -1;
    switch (kindOf(control)) {
    case Kind::List:
        selectInList(control, index);
        break;
    case Kind::Combo:
        SendMessageW(control, CB_SETCURSEL, (WPARAM)index, 0);
        break;
    case Kind::ListView:
        selectRow(control, index);
        break;
    case Kind::Tree:
        SendMessageW(control, TVM_SELECTITEM, TVGN_CARET, (LPARAM)treeItemAt(control, index));
        break;
    case Kind::Tab:
        SendMessageW(control, TCM_SETCURSEL, (WPARAM)index, 0);
        break;
    case Kind::None:
        break;
    }
}

void VL_SelectText(HWND control, const std::wstring &text)
{
    using namespace vl_choice_lists;
    const Kind kind = kindOf(control);
    int index = -1;
    if (isPlain(kind)) {
        const UINT find = kind == Kind::Combo ? CB_FINDSTRINGEXACT : LB_FINDSTRINGEXACT;
        index = (int)SendMessageW(control, find, (WPARAM)-1, (LPARAM)text.c_str());
    } else {
        const int count = VL_GetItemCount(control);
        for (int i = 0; i < count && index < 0; ++i) {
            if (_wcsicmp(VL_GetComboOrListItemText(control, i).c_str(), text.c_str()) == 0)
                index = i;
        }
    }
    if (index >= 0)
        VL_SetSelectedIndex(control, index);
    else if (VL_IsComboBoxEditable(control))
        SetWindowTextW(control, text.c_str());
}

bool VL_IsItemSelected(HWND control, int index)
{
    using namespace vl_choice_lists;
    if (index < 0)
        return false;
    const Kind kind = kindOf(control);
    if (kind == Kind::List && isMultiple(control))
        return SendMessageW(control, LB_GETSEL, (WPARAM)index, 0) > 0;
    if (kind == Kind::ListView)
        return SendMessageW(control, LVM_GETITEMSTATE, (WPARAM)index, LVIS_SELECTED) != 0;
    return VL_GetSelectedIndex(control) == index;
}

VL_Array VL_GetSelectedIndexes(HWND control)
{
    using namespace vl_choice_lists;
    VL_Array indexes;
    const Kind kind = kindOf(control);
    if (kind == Kind::List && isMultiple(control)) {
        const LRESULT count = SendMessageW(control, LB_GETSELCOUNT, 0, 0);
        std::vector<int> selected(count > 0 ? (size_t)count : 0);
        if (!selected.empty())
            SendMessageW(control, LB_GETSELITEMS, (WPARAM)count, (LPARAM)selected.data());
        indexes.assign(selected.begin(), selected.end());
    } else if (kind == Kind::ListView) {
        // Straight to the control: past subclass procedures a hundred thousand rows take no time.
        const WNDPROC procedure = VL_ClassProcedure(control);
        int row = -1;
        while ((row = (int)CallWindowProcW(procedure, control, LVM_GETNEXTITEM, (WPARAM)row,
                                           LVNI_SELECTED)) >= 0)
            indexes.push_back(VL_Any(row));
    } else if (VL_GetSelectedIndex(control) >= 0) {
        indexes.push_back(VL_Any(VL_GetSelectedIndex(control)));
    }
    return indexes;
}

std::wstring VL_GetComboOrListItemText(HWND control, int index)
{
    using namespace vl_choice_lists;
    const Kind kind = kindOf(control);
    if (index < 0 || index >= VL_GetItemCount(control))
        return std::wstring();
    if (isPlain(kind))
        return plainText(control, messagesOf(kind), index);
    if (kind == Kind::Tree)
        return treeText(control, treeItemAt(control, index));
    return VL_ReadGrowing([&](wchar_t *buffer, int size) {
        if (kind == Kind::Tab) {
            TCITEMW item = {};
            item.mask = TCIF_TEXT;
            item.pszText = buffer;
            item.cchTextMax = size;
            SendMessageW(control, TCM_GETITEMW, (WPARAM)index, (LPARAM)&item);
        } else {
            LVITEMW item = {};
            item.pszText = buffer;
            item.cchTextMax = size;
            SendMessageW(control, LVM_GETITEMTEXTW, (WPARAM)index, (LPARAM)&item);
        }
    });
}

void VL_SetComboOrListItemText(HWND control, int index, const std::wstring &text)
{
    using namespace vl_choice_lists;
    const Kind kind = kindOf(control);
    if (isPlain(kind)) {
        replacePlain(control, kind, index, text);
    } else if (kind == Kind::ListView) {
        LVITEMW item = {};
        item.pszText = writable(text);
        SendMessageW(control, LVM_SETITEMTEXTW, (WPARAM)index, (LPARAM)&item);
    } else if (kind == Kind::Tree) {
        TVITEMW item = {};
        item.mask = TVIF_TEXT;
        item.hItem = treeItemAt(control, index);
        item.pszText = writable(text);
        if (item.hItem)
            SendMessageW(control, TVM_SETITEMW, 0, (LPARAM)&item);
    } else if (kind == Kind::Tab) {
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = writable(text);
        SendMessageW(control, TCM_SETITEMW, (WPARAM)index, (LPARAM)&item);
    }
}

int VL_AddItem(HWND control, const std::wstring &text)
{
    return VL_InsertItem(control, -1, text);
}

int VL_InsertItem(HWND control, int index, const std::wstring &text)
{
    using namespace vl_choice_lists;
    switch (const Kind kind = kindOf(control)) {
    case Kind::List:
    case Kind::Combo:
        return insertPlain(control, kind, index, text);
    case Kind::ListView:
        return insertRow(control, index, text);
    case Kind::Tree:
        return insertTreeItem(control, index, text);
    case Kind::Tab:
        return insertPage(control, index, text);
    case Kind::None:
        break;
    }
    return -1;
}

void VL_DeleteItem(HWND control, int index)
{
    using namespace vl_choice_lists;
    if (index < 0 || index >= VL_GetItemCount(control))
        return;
    switch (const Kind kind = kindOf(control)) {
    case Kind::List:
    case Kind::Combo:
        SendMessageW(control, messagesOf(kind).remove, (WPARAM)index, 0);
        break;
    case Kind::ListView:
        SendMessageW(control, LVM_DELETEITEM, (WPARAM)index, 0);
        break;
    case Kind::Tree:
        if (const HTREEITEM item = treeItemAt(control, index))
            SendMessageW(control, TVM_DELETEITEM, 0, (LPARAM)item);
        break;
    case Kind::Tab:
        SendMessageW(control, TCM_DELETEITEM, (WPARAM)index, 0);
        break;
    case Kind::None:
        break;
    }
}

void VL_ClearComboOrList(HWND control)
{
    using namespace vl_choice_lists;
    switch (const Kind kind = kindOf(control)) {
    case Kind::List:
    case Kind::Combo:
        SendMessageW(control, messagesOf(kind).clear, 0, 0);
        break;
    case Kind::ListView:
        SendMessageW(control, LVM_DELETEALLITEMS, 0, 0);
        break;
    case Kind::Tree:
        SendMessageW(control, TVM_DELETEITEM, 0, (LPARAM)TVI_ROOT);
        break;
    case Kind::Tab:
        SendMessageW(control, TCM_DELETEALLITEMS, 0, 0);
        break;
    case Kind::None:
        break;
    }
}

void VL_FillItems(HWND control, const std::wstring &items)
{
    using namespace vl_choice_lists;
    const Kind kind = kindOf(control);
    if (!isPlain(kind))
        return;
    const Messages &messages = messagesOf(kind);
    const std::vector<std::wstring> texts = itemsOf(items);
    size_t bytes = 0;
    for (const std::wstring &text : texts)
        bytes += (text.size() + 1) * sizeof(wchar_t);
    setRedraw(control, kind, false);
    SendMessageW(control, messages.clear, 0, 0);
    SendMessageW(control, kind == Kind::Combo ? CB_INITSTORAGE : LB_INITSTORAGE, texts.size(),
                 (LPARAM)bytes);
    for (const std::wstring &text : texts)
        SendMessageW(control, messages.add, 0, (LPARAM)text.c_str());
    setRedraw(control, kind, true);
}

int VL_ListBox_GetBestIndex(HWND list)
{
    using namespace vl_choice_lists;
    if (kindOf(list) != Kind::List)
        return -1;
    if (!isMultiple(list))
        return (int)SendMessageW(list, LB_GETCURSEL, 0, 0);
    const int caret = (int)SendMessageW(list, LB_GETCARETINDEX, 0, 0);
    if (caret >= 0 && SendMessageW(list, LB_GETSEL, (WPARAM)caret, 0) > 0)
        return caret;
    int first = -1;
    return SendMessageW(list, LB_GETSELITEMS, 1, (LPARAM)&first) == 1 ? first : -1;
}

bool VL_IsComboBoxEditable(HWND combo)
{
    using namespace vl_choice_lists;
    return kindOf(combo) == Kind::Combo && (styleOf(combo) & 3) != CBS_DROPDOWNLIST;
}
