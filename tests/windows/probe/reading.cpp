#include "reading.h"

#include <commctrl.h>
#include <richedit.h>

#include <algorithm>
#include <cstring>

namespace {

// Where structures and texts stand in the remote memory.
const size_t kTextPlace = 1024;
const size_t kMostText = 8192;
const int kMostItems = 2000;

bool isClass(HWND control, const wchar_t *name)
{
    return _wcsicmp(classOf(control).c_str(), name) == 0;
}

bool isCombo(HWND control)
{
    return isClass(control, L"ComboBox");
}

std::wstring oneLine(const std::wstring &text)
{
    std::wstring line;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n')
            continue;
        line +=
            text[i] == L'\n' || text[i] == L'\r' ? std::wstring(L"\\n") : std::wstring(1, text[i]);
    }
    return line;
}

// Sends a message that reads and writes a structure at `lParam`.
template <typename Structure>
LRESULT exchange(const Program &program, HWND control, UINT message, WPARAM wParam,
                 Structure &structure)
{
    const RemoteMemory &memory = program.memory();
    memory.write(&structure, sizeof structure);
    const LRESULT result =
        program.send(control, message, wParam, reinterpret_cast<LPARAM>(memory.address()));
    memory.read(&structure, sizeof structure);
    return result;
}

wchar_t *remoteText(const Program &program)
{
    return reinterpret_cast<wchar_t *>(program.memory().address(kTextPlace));
}

std::wstring cellOf(const Program &program, HWND list, int row, int column)
{
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = remoteText(program);
    item.cchTextMax = int(kMostText);
    const wchar_t none = 0;
    program.memory().write(&none, sizeof none, kTextPlace);
    exchange(program, list, LVM_GETITEMTEXTW, WPARAM(row), item);
    return program.memory().readText(kTextPlace, kMostText);
}

HWND headOf(const Program &program, HWND list)
{
    return reinterpret_cast<HWND>(program.send(list, LVM_GETHEADER));
}

HTREEITEM nextNode(const Program &program, HWND tree, WPARAM which, HTREEITEM from)
{
    return reinterpret_cast<HTREEITEM>(
        program.send(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(from)));
}

TVITEMW nodeOf(const Program &program, HWND tree, HTREEITEM node, std::wstring *text)
{
    TVITEMW item = {};
    item.mask = TVIF_TEXT | TVIF_STATE | TVIF_CHILDREN;
    item.stateMask = TVIS_EXPANDED | TVIS_STATEIMAGEMASK;
    item.hItem = node;
    item.pszText = remoteText(program);
    item.cchTextMax = int(kMostText);
    exchange(program, tree, TVM_GETITEMW, 0, item);
    *text = program.memory().readText(kTextPlace, kMostText);
    return item;
}

void addNodes(const Program &program, HWND tree, HTREEITEM node, size_t depth, Lines *lines)
{
    const bool checks = GetWindowLongW(tree, GWL_STYLE) & TVS_CHECKBOXES;
    for (; node && lines->size() < size_t(kMostItems);
         node = nextNode(program, tree, TVGN_NEXT, node)) {
        std::wstring text;
        const TVITEMW item = nodeOf(program, tree, node, &text);
        const HTREEITEM child = nextNode(program, tree, TVGN_CHILD, node);
        std::wstring line(depth * 2, L' ');
        line += !child ? L"  " : (item.state & TVIS_EXPANDED) ? L"- " : L"+ ";
        if (checks)
            line += (item.state & TVIS_STATEIMAGEMASK) >> 12 == 2 ? L"[x] " : L"[ ] ";
        lines->push_back(line + text);
        addNodes(program, tree, child, depth + 1, lines);
    }
}

HTREEITEM findNode(const Program &program, HWND tree, HTREEITEM node, const std::wstring &wanted)
{
    for (; node; node = nextNode(program, tree, TVGN_NEXT, node)) {
        std::wstring text;
        nodeOf(program, tree, node, &text);
        if (text == wanted)
            return node;
        const HTREEITEM child = nextNode(program, tree, TVGN_CHILD, node);
        if (HTREEITEM found = child ? findNode(program, tree, child, wanted) : nullptr)
            return found;
    }
    return nullptr;
}

std::wstring listSelection(const Program &program, HWND list)
{
    const LONG style = GetWindowLongW(list, GWL_STYLE);
    if (!(style & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)))
        return std::to_wstring(program.send(list, LB_GETCURSEL));
    std::wstring selected;
    const int count = int(program.send(list, LB_GETCOUNT));
    for (int i = 0; i < count && i < kMostItems; ++i) {
        if (program.send(list, LB_GETSEL, WPARAM(i)) > 0)
            selected += (selected.empty() ? L"" : L" ") + std::to_wstring(i);
    }
    return selected;
}

std::wstring rowSelection(const Program &program, HWND list)
{
    std::wstring selected;
    for (LRESULT row = -1;;) {
        row = program.send(list, LVM_GETNEXTITEM, WPARAM(row), LVNI_SELECTED);
        if (row < 0)
            return selected.empty() ? L"-1" : selected;
        selected += (selected.empty() ? L"" : L" ") + std::to_wstring(row);
    }
}

std::wstring editSelection(const Program &program, HWND edit)
{
    CHARRANGE range = {};
    const bool rich = isClass(edit, L"RICHEDIT50W");
    if (rich) {
        exchange(program, edit, EM_EXGETSEL, 0, range);
    } else {
        const LRESULT both = program.send(edit, EM_GETSEL);
        range = {LOWORD(both), HIWORD(both)};
    }
    return std::to_wstring(range.cpMin) + L" " + std::to_wstring(range.cpMax);
}

void addMenu(const Program &program, uintptr_t menu, size_t depth, Lines *lines)
{
    const int count = int(program.call("GetMenuItemCount", menu));
    for (int i = 0; i < count && i < kMostItems; ++i) {
        const uintptr_t position = uintptr_t(i);
        const UINT state = UINT(program.call("GetMenuState", menu, position, MF_BYPOSITION));
        const uintptr_t submenu = program.call("GetSubMenu", menu, position);
        const wchar_t none = 0;
        program.memory().write(&none, sizeof none, kTextPlace);
        program.call("GetMenuStringW", menu, position,
                     reinterpret_cast<uintptr_t>(remoteText(program)), kMostText, MF_BYPOSITION);
        std::wstring text = program.memory().readText(kTextPlace, kMostText);
        if (!submenu && (state & MF_SEPARATOR))
            text = L"----";
        const wchar_t *mark = !submenu && (state & MF_CHECKED)                  ? L"x "
                              : !submenu && (state & (MF_GRAYED | MF_DISABLED)) ? L"- "
                                                                                : L"";
        lines->push_back(std::wstring(depth * 2, L' ') + (text == L"----" ? L"" : mark) + text);
        if (submenu)
            addMenu(program, submenu, depth + 1, lines);
    }
}

std::optional<RECT> rowRectangle(const Program &program, HWND list, const std::wstring &item)
{
    RECT place = {};
    const int row = _wtoi(item.c_str() + 1);
    const size_t comma = item.find(L',');
    const bool check = comma != std::wstring::npos && item[comma + 1] == L'x';
    const int column = comma == std::wstring::npos ? 0 : _wtoi(item.c_str() + comma + 1);
    if (row >= int(program.send(list, LVM_GETITEMCOUNT)))
        return std::nullopt;
    if (column > 0) {
        place.left = LVIR_LABEL;
        place.top = column;
        exchange(program, list, LVM_GETSUBITEMRECT, WPARAM(row), place);
        return place;
    }
    place.left = LVIR_LABEL;
    exchange(program, list, LVM_GETITEMRECT, WPARAM(row), place);
    if (!check)
        return place;
    // The state picture stands ahead of icon and text.
    RECT whole = {LVIR_BOUNDS, 0, 0, 0};
    exchange(program, list, LVM_GETITEMRECT, WPARAM(row), whole);
    place.right = place.left;
    place.left = whole.left;
    return place;
}

std::optional<RECT> nodeRectangle(const Program &program, HWND tree, const std::wstring &item)
{
    const bool check = item.size() > 2 && item.compare(item.size() - 2, 2, L",x") == 0;
    const std::wstring text = item.substr(1, item.size() - (check ? 3 : 1));
    const HTREEITEM node =
        findNode(program, tree, nextNode(program, tree, TVGN_ROOT, nullptr), text);
    if (!node)
        return std::nullopt;
    // The structure begins as the node's handle and comes back as a rectangle.
    RECT place = {};
    std::memcpy(&place, &node, sizeof node);
    exchange(program, tree, TVM_GETITEMRECT, TRUE, place);
    if (check)
        place = {place.left - 14, place.top, place.left - 6, place.bottom};
    return place;
}

std::optional<RECT> headRectangle(const Program &program, HWND list, int column)
{
    const HWND head = headOf(program, list);
    RECT place = {};
    if (!exchange(program, head, HDM_GETITEMRECT, WPARAM(column), place))
        return std::nullopt;
    MapWindowPoints(head, list, reinterpret_cast<POINT *>(&place), 2);
    return place;
}

} // namespace

std::wstring textOf(const Program &program, HWND control)
{
    const size_t length = size_t(program.send(control, WM_GETTEXTLENGTH));
    std::wstring text(std::min(length, size_t(1) << 20) + 1, L'\0');
    const LRESULT got =
        program.send(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(&text[0]));
    text.resize(size_t(got));
    return oneLine(text);
}

Lines itemsOf(const Program &program, HWND control)
{
    Lines lines;
    if (isClass(control, WC_TABCONTROLW)) {
        const int count = int(program.send(control, TCM_GETITEMCOUNT));
        for (int i = 0; i < count; ++i) {
            TCITEMW item = {};
            item.mask = TCIF_TEXT;
            item.pszText = remoteText(program);
            item.cchTextMax = int(kMostText);
            exchange(program, control, TCM_GETITEMW, WPARAM(i), item);
            lines.push_back(program.memory().readText(kTextPlace, kMostText));
        }
        return lines;
    }
    const bool combo = isCombo(control);
    const int count = int(program.send(control, UINT(combo ? CB_GETCOUNT : LB_GETCOUNT)));
    for (int i = 0; i < count && i < kMostItems; ++i) {
        const LRESULT length =
            program.send(control, UINT(combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN), WPARAM(i));
        std::wstring text(size_t(std::max<LRESULT>(length, 0)) + 1, L'\0');
        program.send(control, UINT(combo ? CB_GETLBTEXT : LB_GETTEXT), WPARAM(i),
                     reinterpret_cast<LPARAM>(&text[0]));
        lines.push_back(text.c_str());
    }
    return lines;
}

Lines rowsOf(const Program &program, HWND control)
{
    Lines lines;
    const int rows = int(program.send(control, LVM_GETITEMCOUNT));
    const int columns = std::max(1, int(program.send(headOf(program, control), HDM_GETITEMCOUNT)));
    const bool checks = program.send(control, LVM_GETEXTENDEDLISTVIEWSTYLE) & LVS_EX_CHECKBOXES;
    for (int row = 0; row < rows && row < kMostItems; ++row) {
        std::wstring line;
        if (checks) {
            const LRESULT state =
                program.send(control, LVM_GETITEMSTATE, WPARAM(row), LVIS_STATEIMAGEMASK);
            line = state >> 12 == 2 ? L"[x] " : L"[ ] ";
        }
        for (int column = 0; column < columns; ++column)
            line += (column ? L" | " : L"") + cellOf(program, control, row, column);
        lines.push_back(line);
    }
    return lines;
}

Lines columnsOf(const Program &program, HWND control)
{
    Lines lines;
    const HWND head = headOf(program, control);
    const int count = int(program.send(head, HDM_GETITEMCOUNT));
    for (int i = 0; i < count; ++i) {
        HDITEMW item = {};
        item.mask = HDI_TEXT | HDI_WIDTH;
        item.pszText = remoteText(program);
        item.cchTextMax = int(kMostText);
        exchange(program, head, HDM_GETITEMW, WPARAM(i), item);
        lines.push_back(program.memory().readText(kTextPlace, kMostText) + L" " +
                        std::to_wstring(item.cxy));
    }
    return lines;
}

Lines treeOf(const Program &program, HWND control)
{
    Lines lines;
    addNodes(program, control, nextNode(program, control, TVGN_ROOT, nullptr), 0, &lines);
    return lines;
}

std::wstring valueOf(const Program &program, HWND control)
{
    if (isCombo(control))
        return std::to_wstring(program.send(control, CB_GETCURSEL));
    if (isClass(control, L"ListBox"))
        return listSelection(program, control);
    if (isClass(control, WC_LISTVIEWW))
        return rowSelection(program, control);
    if (isClass(control, WC_TABCONTROLW))
        return std::to_wstring(program.send(control, TCM_GETCURSEL));
    if (isClass(control, TRACKBAR_CLASSW))
        return std::to_wstring(program.send(control, TBM_GETPOS));
    if (isClass(control, PROGRESS_CLASSW))
        return std::to_wstring(int(program.send(control, PBM_GETPOS)));
    if (isClass(control, L"Button"))
        return std::to_wstring(program.send(control, BM_GETCHECK));
    if (isClass(control, WC_TREEVIEWW)) {
        const HTREEITEM node = nextNode(program, control, TVGN_CARET, nullptr);
        std::wstring text = L"-1";
        if (node)
            nodeOf(program, control, node, &text);
        return text;
    }
    return editSelection(program, control);
}

Lines menuOf(const Program &program)
{
    const HWND popup = program.visibleOfClass(L"#32768");
    if (!popup)
        return {L"none"};
    const UINT kGetMenu = 0x01E1;
    Lines lines;
    addMenu(program, uintptr_t(program.send(popup, kGetMenu)), 0, &lines);
    return lines;
}

std::optional<RECT> itemRectangle(const Program &program, HWND control, const std::wstring &item)
{
    RECT place = {};
    const int index = _wtoi(item.c_str() + 1);
    if (item[0] == L'^')
        return headRectangle(program, control, index);
    if (isClass(control, WC_LISTVIEWW))
        return rowRectangle(program, control, item);
    if (isClass(control, WC_TREEVIEWW))
        return nodeRectangle(program, control, item);
    if (isClass(control, WC_TABCONTROLW)) {
        if (exchange(program, control, TCM_GETITEMRECT, WPARAM(index), place))
            return place;
    } else if (isClass(control, L"ListBox") || isClass(control, L"ComboLBox")) {
        if (program.send(control, LB_GETITEMRECT, WPARAM(index),
                         reinterpret_cast<LPARAM>(&place)) != LB_ERR)
            return place;
    }
    return std::nullopt;
}

std::optional<POINT> droppedItem(const Program &program, HWND combo, int index)
{
    COMBOBOXINFO info = {};
    info.cbSize = sizeof info;
    exchange(program, combo, CB_GETCOMBOBOXINFO, 0, info);
    if (!info.hwndList ||
        !waitUntil([&] { return IsWindowVisible(info.hwndList); }, Program::kLimit))
        return std::nullopt;
    const auto place = itemRectangle(program, info.hwndList, L"#" + std::to_wstring(index));
    if (!place)
        return std::nullopt;
    POINT point = {(place->left + place->right) / 2, (place->top + place->bottom) / 2};
    ClientToScreen(info.hwndList, &point);
    return point;
}
