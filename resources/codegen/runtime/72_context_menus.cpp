// Right-click menus: built item by item, bound to controls, shown on a right click.
#include "72_context_menus.h"

#include "33_message_boxes.h"
#include "68_picture_names.h"

#include <algorithm>

namespace vl_context_menus {
namespace {

const UINT_PTR Subclass = 0x564C48;
const int DeepestSubmenu = 24;
const size_t MostTextCharacters = 500;
const intptr_t AtPointer = -2147483646;
const int IconSize = 16;

struct Picture
{
    HBITMAP bitmap = NULL;
    int size = 0;
    Picture() = default;
    Picture(const Picture &) = delete;
    Picture &operator=(const Picture &) = delete;
    ~Picture()
    {
        if (bitmap)
            DeleteObject(bitmap);
    }
};

struct Item
{
    intptr_t serial = 0; // different for all items that ever were
    intptr_t id = 0;
    intptr_t submenu = 0;
    bool separator = false;
    UINT flags = 0;
    std::wstring text;
    std::wstring icon;
    std::function<void(intptr_t, int)> callback;
    std::shared_ptr<Picture> picture; // as it was last shown
};

struct Menu
{
    int depth = 0;
    std::vector<Item> items;
};

// Small numbers rather than addresses: an old number finds nothing.
std::map<intptr_t, Menu> g_menus;
intptr_t g_lastMenu = 0;
intptr_t g_lastSerial = 0;
intptr_t g_pickedSerial = 0;

struct Binding
{
    intptr_t menu = 0;
    bool design = false;
    bool allowed = true;
    std::function<void(intptr_t, intptr_t)> preTrack;
};

Menu *findMenu(intptr_t menu)
{
    const auto found = g_menus.find(menu);
    return found == g_menus.end() ? nullptr : &found->second;
}

Item *addItem(intptr_t menu)
{
    Menu *found = findMenu(menu);
    if (!found)
        return nullptr;
    found->items.emplace_back();
    found->items.back().serial = ++g_lastSerial;
    return &found->items.back();
}

// The first item that fits, submenus included.
template <typename F>
Item *findItem(intptr_t menu, const F &fits)
{
    Menu *found = findMenu(menu);
    if (!found)
        return nullptr;
    for (Item &item : found->items) {
        if (fits(item))
            return &item;
        Item *inside = item.submenu ? findItem(item.submenu, fits) : nullptr;
        if (inside)
            return inside;
    }
    return nullptr;
}

Item *itemOf(intptr_t menu, intptr_t id)
{
    return id ? findItem(menu, [id](const Item &item) { return item.id == id; }) : nullptr;
}

void clearMenu(intptr_t menu)
{
    Menu *found = findMenu(menu);
    if (!found)
        return;
    const std::vector<Item> items = std::move(found->items);
    found->items.clear();
    for (const Item &item : items) {
        clearMenu(item.submenu);
        g_menus.erase(item.submenu);
    }
}

std::shared_ptr<Picture> pictureOf(Item &item, int size)
{
    if (item.icon.empty() || (item.picture && item.picture->size == size))
        return item.picture;
    item.picture = std::make_shared<Picture>();
    item.picture->size = size;
    item.picture->bitmap = VL_PictureFromName(item.icon, size, size);
    return item.picture;
}

// The system's menu for one showing: which item a command stands for, and the pictures that must
// live as long as it.
struct Shown
{
    std::vector<intptr_t> serials;
    std::vector<std::shared_ptr<Picture>> pictures;
    int iconSize = IconSize;
};

// Wine copies a menu's bitmaps without regard to their transparency; there they are drawn here.
bool drawsPictures()
{
    static const bool result =
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != NULL;
    return result;
}

void drawPicture(const DRAWITEMSTRUCT &request, const Picture &picture)
{
    const HDC memory = CreateCompatibleDC(request.hDC);
    const HGDIOBJ old = SelectObject(memory, picture.bitmap);
    const int size = picture.size;
    const RECT &place = request.rcItem;
    const BYTE strength = (request.itemState & (ODS_GRAYED | ODS_DISABLED)) ? 110 : 255;
    const BLENDFUNCTION blend = {AC_SRC_OVER, 0, strength, AC_SRC_ALPHA};
    AlphaBlend(request.hDC, place.left + (place.right - place.left - size) / 2,
               place.top + (place.bottom - place.top - size) / 2, size, size, memory, 0, 0, size,
               size, blend);
    SelectObject(memory, old);
    DeleteDC(memory);
}

// Of the menu's owner while a menu with such pictures is open.
LRESULT CALLBACK drawProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR data)
{
    const Shown &shown = *(const Shown *)data;
    ULONG_PTR asked = 0;
    if (message == WM_MEASUREITEM && ((const MEASUREITEMSTRUCT *)lParam)->CtlType == ODT_MENU)
        asked = ((const MEASUREITEMSTRUCT *)lParam)->itemData;
    else if (message == WM_DRAWITEM && ((const DRAWITEMSTRUCT *)lParam)->CtlType == ODT_MENU)
        asked = ((const DRAWITEMSTRUCT *)lParam)->itemData;
    for (const std::shared_ptr<Picture> &picture : shown.pictures) {
        if (asked != (ULONG_PTR)picture.get())
            continue;
        if (message == WM_MEASUREITEM) {
            ((MEASUREITEMSTRUCT *)lParam)->itemWidth = (UINT)picture->size;
            ((MEASUREITEMSTRUCT *)lParam)->itemHeight = (UINT)picture->size;
        } else {
            drawPicture(*(const DRAWITEMSTRUCT *)lParam, *picture);
        }
        return TRUE;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

HMENU buildMenu(intptr_t menu, Shown &shown);

void appendItem(HMENU handle, Item &item, Shown &shown)
{
    MENUITEMINFOW information = {};
    information.cbSize = sizeof(information);
    information.fMask = MIIM_FTYPE;
    information.fType = item.separator ? MFT_SEPARATOR : MFT_STRING;
    information.fType |= item.flags & (MF_MENUBREAK | MF_MENUBARBREAK);
    if (!item.separator) {
        shown.serials.push_back(item.serial);
        information.fMask |= MIIM_ID | MIIM_STATE | MIIM_STRING;
        information.wID = (UINT)shown.serials.size();
        information.fState = item.flags & (MFS_CHECKED | MFS_DEFAULT);
        if (item.flags & (MF_GRAYED | MF_DISABLED))
            information.fState |= MFS_GRAYED;
        information.dwTypeData = &item.text[0];
        const std::shared_ptr<Picture> picture = pictureOf(item, shown.iconSize);
        if (picture && picture->bitmap) {
            shown.pictures.push_back(picture);
            information.fMask |= MIIM_BITMAP | MIIM_DATA;
            information.hbmpItem = drawsPictures() ? HBMMENU_CALLBACK : picture->bitmap;
            information.dwItemData = (ULONG_PTR)picture.get();
        }
    }
    if (item.submenu) {
        information.fMask |= MIIM_SUBMENU;
        information.hSubMenu = buildMenu(item.submenu, shown);
    }
    InsertMenuItemW(handle, (UINT)GetMenuItemCount(handle), TRUE, &information);
}

HMENU buildMenu(intptr_t menu, Shown &shown)
{
    const HMENU handle = CreatePopupMenu();
    // Check marks and pictures share a column.
    MENUINFO style = {};
    style.cbSize = sizeof(style);
    style.fMask = MIM_STYLE;
    style.dwStyle = MNS_CHECKORBMP;
    SetMenuInfo(handle, &style);
    if (Menu *found = findMenu(menu)) {
        for (Item &item : found->items)
            appendItem(handle, item, shown);
    }
    return handle;
}

// The window that has the keys while a menu is open; a hidden one, which the caller destroys, when
// there is no other of this thread.
HWND menuOwner(HWND control, bool *ownIsMade)
{
    HWND owner = control && IsWindow(control) ? VL_OwnerWindow(control) : VL_DialogOwner();
    *ownIsMade = !owner || GetWindowThreadProcessId(owner, NULL) != GetCurrentThreadId();
    if (*ownIsMade)
        owner = CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, NULL, NULL,
                                g_hInstance, NULL);
    return owner;
}

// The item that the user picks; NULL for none.
Item *track(HWND control, intptr_t menu, int x, int y)
{
    const Menu *found = findMenu(menu);
    if (!found || found->items.empty())
        return nullptr;
    Shown shown;
    shown.iconSize = VL_ScaleX(control, IconSize);
    const HMENU handle = buildMenu(menu, shown);
    bool ownIsMade = false;
    const HWND owner = menuOwner(control, &ownIsMade);
    // Otherwise a click elsewhere would not close the menu.
    SetForegroundWindow(owner);
    if (drawsPictures())
        SetWindowSubclass(owner, drawProcedure, Subclass + 1, (DWORD_PTR)&shown);
    const UINT side = GetSystemMetrics(SM_MENUDROPALIGNMENT) ? TPM_RIGHTALIGN : TPM_LEFTALIGN;
    const UINT command = (UINT)TrackPopupMenuEx(
        handle, side | TPM_TOPALIGN | TPM_RETURNCMD | TPM_RIGHTBUTTON, x, y, owner, NULL);
    RemoveWindowSubclass(owner, drawProcedure, Subclass + 1);
    PostMessageW(owner, WM_NULL, 0, 0);
    DestroyMenu(handle);
    if (ownIsMade)
        DestroyWindow(owner);
    if (command == 0 || command > shown.serials.size())
        return nullptr;
    const intptr_t serial = shown.serials[command - 1];
    return findItem(menu, [serial](const Item &item) { return item.serial == serial; });
}

void callItem(const Item &item, HWND control)
{
    // The callback may destroy the menu that it stands in.
    const std::function<void(intptr_t, int)> callback = item.callback;
    if (callback)
        callback((intptr_t)control, (int)item.id);
}

// The bound control at or above `window`, up to `top`, whose menu may be shown.
HWND boundControl(HWND window, HWND top)
{
    for (HWND at = window; at; at = GetAncestor(at, GA_PARENT)) {
        const Binding *binding = VL_FindExtra<Binding>(at);
        if (binding && findMenu(binding->menu) && (!binding->design || binding->allowed))
            return at;
        if (at == top)
            break;
    }
    return NULL;
}

// Labels and frames let the mouse through to their parent, which then reports the click as its own.
HWND refinedHit(HWND hit, POINT screen)
{
    POINT point = screen;
    ScreenToClient(hit, &point);
    const HWND child = ChildWindowFromPointEx(hit, point, CWP_SKIPINVISIBLE | CWP_SKIPDISABLED);
    return child ? child : hit;
}

bool isInClientArea(HWND window, POINT screen)
{
    RECT area = {};
    GetClientRect(window, &area);
    ScreenToClient(window, &screen);
    return PtInRect(&area, screen);
}

// Where a menu belongs that was asked for with the keyboard.
POINT keyboardPlace(HWND window)
{
    GUITHREADINFO information = {};
    information.cbSize = sizeof(information);
    RECT area = {};
    GetClientRect(window, &area);
    POINT place = {(std::min)(area.right / 2, (LONG)VL_ScaleX(window, 12)),
                   (std::min)(area.bottom / 2, (LONG)VL_ScaleY(window, 12))};
    if (GetGUIThreadInfo(GetCurrentThreadId(), &information) && information.hwndCaret == window) {
        place.x = information.rcCaret.left;
        place.y = information.rcCaret.bottom;
    }
    ClientToScreen(window, &place);
    return place;
}

void showBound(HWND control, POINT place)
{
    Binding *binding = VL_FindExtra<Binding>(control);
    const intptr_t menu = binding->menu;
    VL_ContextMenu_InvokeDesignPreTrackCallback(control, menu);
    if (const Item *picked = track(control, menu, place.x, place.y))
        callItem(*picked, control);
}

// Shows a bound menu for a WM_CONTEXTMENU that came to `window`, searching up to `top`; false when
// there is none for it.
bool answerContextMenu(HWND window, HWND top, HWND hit, LPARAM lParam)
{
    const bool byKey = lParam == -1;
    POINT place = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
    if (!hit || (hit != window && !IsChild(window, hit)))
        hit = window;
    if (!byKey && hit == GetAncestor(hit, GA_ROOT) && !isInClientArea(hit, place))
        return false;
    const HWND control = boundControl(byKey ? hit : refinedHit(hit, place), top);
    if (!control)
        return false;
    showBound(control, byKey ? keyboardPlace(hit) : place);
    return true;
}

// `owner` is the control that the window is a part of, or NULL.
LRESULT CALLBACK menuProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR owner)
{
    switch (message) {
    case WM_CONTEXTMENU:
        if (answerContextMenu(window, owner ? (HWND)owner : window, (HWND)wParam, lParam))
            return 0;
        break;
    case WM_RBUTTONUP:
        // Rich edits make no WM_CONTEXTMENU of it.
        if (VL_HasClass(window, L"RICHEDIT50W") && boundControl(window, window)) {
            POINT place = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
            ClientToScreen(window, &place);
            SendMessageW(window, WM_CONTEXTMENU, (WPARAM)window, MAKELPARAM(place.x, place.y));
            return 0;
        }
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(window, menuProcedure, Subclass);
        break;
    default:
        break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

bool appendText(intptr_t menu, intptr_t id, const std::wstring &text, const std::wstring &icon,
                Item **added)
{
    *added = addItem(menu);
    if (!*added)
        return false;
    (*added)->id = id;
    (*added)->text = text.substr(0, MostTextCharacters).c_str();
    (*added)->icon = icon.substr(0, MAX_PATH * 4).c_str();
    return true;
}

int toPixels(HWND control, intptr_t design)
{
    const intptr_t most = 100000;
    return VL_ScaleX(control, (int)(design > most ? most : design < -most ? -most : design));
}

} // namespace
} // namespace vl_context_menus

intptr_t VL_ContextMenu_Create()
{
    vl_context_menus::g_menus[++vl_context_menus::g_lastMenu];
    return vl_context_menus::g_lastMenu;
}

void VL_ContextMenu_Destroy(intptr_t menu)
{
    VL_ContextMenu_Clear(menu);
    vl_context_menus::g_menus.erase(menu);
}

void VL_ContextMenu_Clear(intptr_t menu)
{
    vl_context_menus::clearMenu(menu);
}

bool VL_ContextMenu_AddItem(intptr_t menu, intptr_t id, const std::wstring &text,
                            VL_ContextMenuCallback callback, const std::wstring &icon,
                            intptr_t flags)
{
    vl_context_menus::Item *item = nullptr;
    if (!vl_context_menus::appendText(menu, id, text, icon, &item))
        return false;
    item->flags = (UINT)flags;
    item->callback = std::move(callback);
    return true;
}

bool VL_ContextMenu_AddSeparator(intptr_t menu, intptr_t id)
{
    vl_context_menus::Item *item = vl_context_menus::addItem(menu);
    if (!item)
        return false;
    item->separator = true;
    item->id = id;
    return true;
}

intptr_t VL_ContextMenu_AddSubmenu(intptr_t menu, const std::wstring &text,
                                   const std::wstring &icon)
{
    using namespace vl_context_menus;
    const Menu *parent = findMenu(menu);
    if (!parent || parent->depth >= DeepestSubmenu)
        return 0;
    const int depth = parent->depth + 1;
    Item *item = nullptr;
    appendText(menu, 0, text, icon, &item);
    item->submenu = ++g_lastMenu;
    g_menus[item->submenu].depth = depth;
    return item->submenu;
}

bool VL_ContextMenu_SetItemEnabled(intptr_t menu, intptr_t id, bool enabled)
{
    vl_context_menus::Item *item = vl_context_menus::itemOf(menu, id);
    if (!item)
        return false;
    item->flags &= ~(UINT)(MF_GRAYED | MF_DISABLED);
    item->flags |= enabled ? 0 : MF_GRAYED;
    return true;
}

bool VL_ContextMenu_SetItemChecked(intptr_t menu, intptr_t id, bool checked)
{
    vl_context_menus::Item *item = vl_context_menus::itemOf(menu, id);
    if (!item)
        return false;
    item->flags = checked ? item->flags | MF_CHECKED : item->flags & ~(UINT)MF_CHECKED;
    return true;
}

bool VL_ContextMenu_SetItemText(intptr_t menu, intptr_t id, const std::wstring &text)
{
    vl_context_menus::Item *item = vl_context_menus::itemOf(menu, id);
    if (!item)
        return false;
    item->text = text.substr(0, vl_context_menus::MostTextCharacters).c_str();
    return true;
}

intptr_t VL_ContextMenu_Show(intptr_t menu, HWND control, intptr_t x, intptr_t y)
{
    using namespace vl_context_menus;
    if (!IsWindow(control))
        control = NULL;
    POINT place = {};
    GetCursorPos(&place);
    POINT asked = {toPixels(control, x), toPixels(control, y)};
    if (control)
        ClientToScreen(control, &asked);
    place.x = x == AtPointer ? place.x : asked.x;
    place.y = y == AtPointer ? place.y : asked.y;
    const Item *picked = track(control, menu, place.x, place.y);
    if (!picked)
        return 0;
    const intptr_t id = picked->id;
    callItem(*picked, control);
    return id;
}

bool VL_ContextMenu_Bind(HWND control, intptr_t menu, bool design)
{
    using namespace vl_context_menus;
    Binding *binding = findMenu(menu) ? VL_Extra<Binding>(control) : nullptr;
    if (!binding)
        return false;
    binding->menu = menu;
    binding->design = design;
    SetWindowSubclass(control, menuProcedure, Subclass, 0);
    // Some controls report to their window only.
    SetWindowSubclass(VL_OwnerWindow(control), menuProcedure, Subclass, 0);
    COMBOBOXINFO parts = {};
    parts.cbSize = sizeof(parts);
    // The line of an editable combo box would show the menu of edits.
    if (VL_HasClass(control, L"COMBOBOX") && GetComboBoxInfo(control, &parts) && parts.hwndItem &&
        parts.hwndItem != control)
        SetWindowSubclass(parts.hwndItem, menuProcedure, Subclass, (DWORD_PTR)control);
    return true;
}

void VL_ContextMenu_Unbind(HWND control)
{
    if (vl_context_menus::Binding *binding = VL_FindExtra<vl_context_menus::Binding>(control))
        binding->menu = 0;
}

void VL_ContextMenu_SetDesignContextAllowed(HWND control, bool allowed)
{
    if (vl_context_menus::Binding *binding = VL_Extra<vl_context_menus::Binding>(control))
        binding->allowed = allowed;
}

bool VL_ContextMenu_IsDesignContextAllowed(HWND control)
{
    const vl_context_menus::Binding *binding = VL_FindExtra<vl_context_menus::Binding>(control);
    return !binding || binding->allowed;
}

void VL_ContextMenu_SetDesignPreTrackCallback(HWND control, VL_ContextMenuPreTrack callback)
{
    if (vl_context_menus::Binding *binding = VL_Extra<vl_context_menus::Binding>(control))
        binding->preTrack = std::move(callback);
}

void VL_ContextMenu_InvokeDesignPreTrackCallback(HWND control, intptr_t menu)
{
    const vl_context_menus::Binding *binding = VL_FindExtra<vl_context_menus::Binding>(control);
    if (!binding || !binding->preTrack)
        return;
    const std::function<void(intptr_t, intptr_t)> callback = binding->preTrack;
    callback((intptr_t)control, menu);
}

intptr_t VL_ContextMenu_TrackAt(HWND owner, intptr_t menu, int x, int y)
{
    const vl_context_menus::Item *picked = vl_context_menus::track(owner, menu, x, y);
    vl_context_menus::g_pickedSerial = picked ? picked->serial : 0;
    return picked ? picked->id : 0;
}

void VL_ContextMenu_InvokeItemCallback(intptr_t menu, HWND control, intptr_t id)
{
    using namespace vl_context_menus;
    // Of several items with one number the one that was just picked.
    const Item *item = findItem(
        menu, [id](const Item &one) { return one.id == id && one.serial == g_pickedSerial; });
    if (!item)
        item = itemOf(menu, id);
    if (item)
        callItem(*item, control);
}

LRESULT CALLBACK VL_EditSubclass_ContextMenuBindOnly(HWND edit, UINT message, WPARAM wParam,
                                                     LPARAM lParam)
{
    WNDPROC before = (WNDPROC)(void *)GetPropW(edit, L"VL_OldEditProc");
    if (!before)
        before = (WNDPROC)GetClassLongPtrW(edit, GCLP_WNDPROC);
    if (message == WM_CONTEXTMENU &&
        vl_context_menus::answerContextMenu(edit, edit, (HWND)wParam, lParam))
        return 0;
    if (message == WM_NCDESTROY)
        RemovePropW(edit, L"VL_OldEditProc");
    return CallWindowProcW(before, edit, message, wParam, lParam);
}
