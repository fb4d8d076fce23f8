// Drawn buttons, command links, split buttons; the buttons that Enter and Esc press.
#include "43_buttons.h"
#include "41_paths.h"

#include <shlwapi.h>

#include <algorithm>

namespace vl_buttons {
namespace {

const UINT_PTR SubclassId = 0x564C44;
const UINT_PTR DialogKeysSubclassId = 0x564C45;
const LONG TypeMask = 0xF;
const wchar_t NoteName[] = L"VL_ButtonNote";
const UINT LargestMenu = 1000;

struct ButtonState
{
    int kind = VL_BUTTON_PLAIN;
    // The system's own command link or split button.
    bool isNative = false;
    bool isDefault = false;
    bool isHot = false;
    bool isArrowPressed = false;
    std::unique_ptr<VL_ButtonImage> image;
};

// The menu of a button of any class.
struct DropDown
{
    std::vector<std::wstring> items;
};

// The buttons that Enter and Esc press in a window.
struct DialogKeys
{
    HWND defaultButton = NULL;
    HWND cancelButton = NULL;
};

LONG typeOf(HWND button)
{
    return GetWindowLongW(button, GWL_STYLE) & TypeMask;
}

bool isDefaultType(LONG type)
{
    return type == BS_DEFPUSHBUTTON || type == BS_DEFCOMMANDLINK || type == BS_DEFSPLITBUTTON;
}

// The style of the button when it is the default one and when it is not.
WPARAM styleAs(HWND button, bool isDefault)
{
    const LONG type = typeOf(button);
    LONG plain = BS_PUSHBUTTON;
    if (VL_HasClass(button, WC_BUTTONW) && (type == BS_COMMANDLINK || type == BS_DEFCOMMANDLINK))
        plain = BS_COMMANDLINK;
    else if (VL_HasClass(button, WC_BUTTONW) &&
             (type == BS_SPLITBUTTON || type == BS_DEFSPLITBUTTON))
        plain = BS_SPLITBUTTON;
    return (WPARAM)(plain | (isDefault ? BS_DEFPUSHBUTTON : 0));
}

// Whether this program got the newer controls, which know command links and split buttons.
bool hasNewControls()
{
    static const bool has = [] {
        const HMODULE library = GetModuleHandleW(L"comctl32.dll");
        const DLLGETVERSIONPROC version =
            library ? (DLLGETVERSIONPROC)(void *)GetProcAddress(library, "DllGetVersion") : NULL;
        DLLVERSIONINFO info = {};
        info.cbSize = sizeof(info);
        return version && SUCCEEDED(version(&info)) && info.dwMajorVersion >= 6;
    }();
    return has;
}

bool isUsable(HWND button)
{
    return button && IsWindowVisible(button) && IsWindowEnabled(button);
}

void click(HWND button)
{
    SendMessageW(VL_OwnerWindow(button), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED),
                 (LPARAM)button);
}

LRESULT CALLBACK dialogKeysSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR)
{
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(window, dialogKeysSubclass, id);
    const DialogKeys *keys = VL_FindExtra<DialogKeys>(window);
    if (keys && message == DM_GETDEFID && isUsable(keys->defaultButton))
        return MAKELRESULT(GetDlgCtrlID(keys->defaultButton), DC_HASDEFID);
    if (keys && message == WM_COMMAND && wParam == IDCANCEL && isUsable(keys->cancelButton)) {
        click(keys->cancelButton);
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

DialogKeys *dialogKeysOf(HWND button)
{
    const HWND owner = VL_OwnerWindow(button);
    DialogKeys *keys = IsWindow(button) && owner != button ? VL_Extra<DialogKeys>(owner) : nullptr;
    if (keys)
        SetWindowSubclass(owner, dialogKeysSubclass, DialogKeysSubclassId, 0);
    return keys;
}

bool isPushButton(HWND window)
{
    return (SendMessageW(window, WM_GETDLGCODE, 0, 0) &
            (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

// Whether Enter presses this button: the one with the focus, else the default one.
bool looksDefault(HWND button, const ButtonState &state)
{
    const HWND focus = GetFocus();
    if (focus == button)
        return true;
    return state.isDefault && !(focus && isPushButton(focus));
}

void draw(HWND button, ButtonState &state, const DRAWITEMSTRUCT &item)
{
    VL_ButtonLook look;
    look.kind = state.kind;
    look.isHot = state.isHot;
    look.isPressed = (item.itemState & ODS_SELECTED) && !state.isArrowPressed;
    look.isArrowPressed = state.isArrowPressed;
    look.isDefault = looksDefault(button, state);
    look.showsFocus = (item.itemState & ODS_FOCUS) && !(item.itemState & ODS_NOFOCUSRECT);
    look.showsMnemonics = !(item.itemState & ODS_NOACCEL);
    look.image = state.image.get();
    if (state.kind == VL_BUTTON_COMMAND_LINK)
        look.note = VL_Button_GetNote(button);
    VL_DrawButton(button, item.hDC, look);
}

void setHot(HWND button, ButtonState &state, bool isHot)
{
    if (state.isHot == isHot)
        return;
    state.isHot = isHot;
    if (isHot) {
        TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, button, 0};
        TrackMouseEvent(&track);
    }
    InvalidateRect(button, NULL, FALSE);
}

LRESULT dialogCode(HWND button, const ButtonState &state, const MSG *key)
{
    if (state.kind == VL_BUTTON_SPLIT && key && key->message == WM_KEYDOWN &&
        key->wParam == VK_DOWN)
        return DLGC_BUTTON | DLGC_WANTMESSAGE;
    const bool isDefault = state.isDefault || GetFocus() == button;
    return DLGC_BUTTON | (isDefault ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
}

void setAlign(HWND button, int align)
{
    const int shown = align == VL_ALIGN_LEFT ? 1 : align == VL_ALIGN_RIGHT ? 2 : 0;
    SetPropW(button, L"VL_ButtonTextAlign", (HANDLE)(intptr_t)shown);
    InvalidateRect(button, NULL, FALSE);
}

bool isSplit(const ButtonState &state)
{
    return state.kind == VL_BUTTON_SPLIT;
}

bool opensMenu(HWND button, const ButtonState &state, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (!isSplit(state))
        return false;
    if (message == WM_KEYDOWN)
        return wParam == VK_DOWN;
    const RECT area = VL_SplitArrowArea(button);
    const POINT place = {(short)LOWORD(lParam), (short)HIWORD(lParam)};
    return message == WM_LBUTTONDOWN && PtInRect(&area, place);
}

// Of a button that draws itself. False leaves the message to the button.
bool handleDrawn(HWND button, ButtonState &state, UINT message, WPARAM wParam, LPARAM lParam,
                 LRESULT *result)
{
    *result = 0;
    switch (message) {
    case VL_REFLECT + WM_DRAWITEM:
        draw(button, state, *(const DRAWITEMSTRUCT *)lParam);
        *result = TRUE;
        return true;
    case WM_ERASEBKGND:
        *result = TRUE;
        return true;
    case WM_GETDLGCODE:
        *result = dialogCode(button, state, (const MSG *)lParam);
        return true;
    case BM_SETSTYLE:
        // The dialog keyboard says by it which button is the default one; the style itself would
        // undo the drawing.
        state.isDefault = isDefaultType((LONG)(wParam & TypeMask));
        InvalidateRect(button, NULL, FALSE);
        return true;
    case WM_KEYDOWN:
    case WM_LBUTTONDOWN:
        if (!opensMenu(button, state, message, wParam, lParam))
            return false;
        SetFocus(button);
        VL_Button_ShowDropDown(button);
        return true;
    case WM_LBUTTONDBLCLK:
        // An owner-drawn button would tell a double click in the place of the second click.
        *result = SendMessageW(button, WM_LBUTTONDOWN, wParam, lParam);
        return true;
    case WM_MOUSEMOVE:
        setHot(button, state, true);
        return false;
    case WM_MOUSELEAVE:
        setHot(button, state, false);
        return false;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_ENABLE:
        InvalidateRect(button, NULL, FALSE);
        return false;
    default:
        return false;
    }
}

std::vector<std::wstring> split(const std::wstring &text)
{
    std::vector<std::wstring> items;
    std::wstring item;
    const auto take = [&] {
        if (!item.empty())
            items.push_back(item);
        item.clear();
    };
    for (wchar_t c : text) {
        if (c == L';' || c == L'\r' || c == L'\n')
            take();
        else
            item += c;
    }
    take();
    return items;
}

ButtonState *stateOf(HWND button)
{
    return VL_FindExtra<ButtonState>(button);
}

HMENU menuOf(const DropDown &state)
{
    const HMENU menu = CreatePopupMenu();
    for (UINT i = 0; i < state.items.size() && i < LargestMenu; ++i) {
        const bool isLine = state.items[i] == L"-";
        AppendMenuW(menu, isLine ? MF_SEPARATOR : MF_STRING, i + 1,
                    isLine ? NULL : state.items[i].c_str());
    }
    return menu;
}

// The index of the item that was picked, -1 for none.
int trackMenu(HWND button, HMENU menu)
{
    RECT place = {};
    GetWindowRect(button, &place);
    TPMPARAMS exclude = {sizeof(exclude), place};
    const int picked =
        (int)TrackPopupMenuEx(menu, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RETURNCMD | TPM_NONOTIFY,
                              place.left, place.bottom, VL_OwnerWindow(button), &exclude);
    return picked - 1;
}

// The file that a path of a design means.
std::wstring imageFile(const std::wstring &path)
{
    for (const std::wstring &folder : {VL_GetAppDir() + L"\\", VL_GetAppDir() + L"\\resource\\"}) {
        const std::wstring file = folder + path;
        if (GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES)
            return file;
    }
    return path;
}

} // namespace
} // namespace vl_buttons

LRESULT CALLBACK ButtonSubclassProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR)
{
    using namespace vl_buttons;
    ButtonState *state = stateOf(button);
    if (message == WM_NCDESTROY || !state) {
        RemoveWindowSubclass(button, ButtonSubclassProc, id);
        return DefSubclassProc(button, message, wParam, lParam);
    }
    if (message == VL_REFLECT + WM_NOTIFY && lParam &&
        ((const NMHDR *)lParam)->code == (UINT)BCN_DROPDOWN) {
        VL_Button_ShowDropDown(button);
        return 1;
    }
    if (message == VL_WM_SET_OPTION && lParam) {
        const VL_ControlOption *option = (const VL_ControlOption *)lParam;
        if (!state->isNative && wcscmp(option->name, L"textAlign") == 0) {
            setAlign(button, option->number);
            return 1;
        }
    }
    LRESULT result = 0;
    if (!state->isNative && handleDrawn(button, *state, message, wParam, lParam, &result))
        return result;
    return DefSubclassProc(button, message, wParam, lParam);
}

void VL_PrepareButton(HWND button)
{
    using namespace vl_buttons;
    if (!VL_HasClass(button, WC_BUTTONW))
        return;
    ButtonState *state = VL_Extra<ButtonState>(button);
    if (!state)
        return;
    const LONG type = typeOf(button);
    if (type != BS_OWNERDRAW)
        state->isDefault = isDefaultType(type);
    if (type == BS_COMMANDLINK || type == BS_DEFCOMMANDLINK)
        state->kind = VL_BUTTON_COMMAND_LINK;
    else if (type == BS_SPLITBUTTON || type == BS_DEFSPLITBUTTON)
        state->kind = VL_BUTTON_SPLIT;
    state->isNative = state->kind != VL_BUTTON_PLAIN && type != BS_OWNERDRAW && hasNewControls();
    if (!state->isNative) {
        const LONG style = GetWindowLongW(button, GWL_STYLE);
        SetWindowLongW(button, GWL_STYLE, (style & ~TypeMask) | BS_OWNERDRAW);
    }
    SetWindowSubclass(button, ButtonSubclassProc, SubclassId, 0);
    InvalidateRect(button, NULL, FALSE);
}

void VL_SetButtonKind(HWND button, int kind)
{
    using namespace vl_buttons;
    if (!stateOf(button))
        VL_PrepareButton(button);
    ButtonState *state = stateOf(button);
    if (!state || state->isNative)
        return;
    state->kind =
        kind == VL_BUTTON_COMMAND_LINK || kind == VL_BUTTON_SPLIT ? kind : VL_BUTTON_PLAIN;
    InvalidateRect(button, NULL, FALSE);
}

void VL_SetDefaultButton(HWND button)
{
    using namespace vl_buttons;
    DialogKeys *keys = dialogKeysOf(button);
    if (!keys)
        return;
    if (IsWindow(keys->defaultButton))
        SendMessageW(keys->defaultButton, BM_SETSTYLE, styleAs(keys->defaultButton, false), TRUE);
    keys->defaultButton = button;
    SendMessageW(button, BM_SETSTYLE, styleAs(button, true), TRUE);
}

void VL_SetCancelButton(HWND button)
{
    if (vl_buttons::DialogKeys *keys = vl_buttons::dialogKeysOf(button))
        keys->cancelButton = button;
}

bool VL_Button_SetImage(HWND button, const std::wstring &path)
{
    using namespace vl_buttons;
    if (!stateOf(button))
        VL_PrepareButton(button);
    ButtonState *state = stateOf(button);
    if (!state)
        return false;
    state->image = path.empty() ? nullptr : VL_ButtonImage::load(imageFile(path));
    InvalidateRect(button, NULL, FALSE);
    return path.empty() || state->image;
}

void VL_Button_SetNote(HWND button, const std::wstring &note)
{
    using namespace vl_buttons;
    if (!IsWindow(button))
        return;
    VL_SetTextProperty(button, NoteName, note);
    const LONG type = typeOf(button);
    if (VL_HasClass(button, WC_BUTTONW) && (type == BS_COMMANDLINK || type == BS_DEFCOMMANDLINK))
        SendMessageW(button, BCM_SETNOTE, 0, (LPARAM)note.c_str());
    InvalidateRect(button, NULL, FALSE);
}

std::wstring VL_Button_GetNote(HWND button)
{
    return VL_GetTextProperty(button, vl_buttons::NoteName);
}

void VL_Button_SetDropDownItems(HWND button, const std::wstring &items)
{
    using namespace vl_buttons;
    if (DropDown *menu = VL_Extra<DropDown>(button)) {
        menu->items = split(items);
        VL_OfferOption(button, L"dropDownItems", items, 0);
    }
}

std::wstring VL_Button_GetDropDownItem(HWND button, int index)
{
    const vl_buttons::DropDown *menu = VL_FindExtra<vl_buttons::DropDown>(button);
    const bool isThere = menu && index >= 0 && (size_t)index < menu->items.size();
    return isThere ? menu->items[(size_t)index] : std::wstring();
}

void VL_Button_SetDropDownState(HWND button, bool pressed)
{
    using namespace vl_buttons;
    ButtonState *state = stateOf(button);
    if (!state)
        return;
    state->isArrowPressed = pressed;
    if (state->isNative)
        SendMessageW(button, BCM_SETDROPDOWNSTATE, pressed, 0);
    InvalidateRect(button, NULL, FALSE);
}

void VL_Button_ShowDropDown(HWND button)
{
    using namespace vl_buttons;
    if (!IsWindow(button))
        return;
    // Whoever is told may change the items, or close the window.
    VL_NotifyOwner(button, VL_BUTTON_DROPDOWN);
    const DropDown *shown = VL_FindExtra<DropDown>(button);
    if (!shown || shown->items.empty())
        return;
    const HMENU menu = menuOf(*shown);
    VL_Button_SetDropDownState(button, true);
    UpdateWindow(button);
    const int picked = trackMenu(button, menu);
    DestroyMenu(menu);
    VL_Button_SetDropDownState(button, false);
    if (picked >= 0 && IsWindow(button))
        VL_NotifyOwner(button, VL_BUTTON_ITEM_PICKED, picked);
}
