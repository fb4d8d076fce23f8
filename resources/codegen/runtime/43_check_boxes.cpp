// Check boxes and radio buttons.
#include "43_check_boxes.h"

#include <algorithm>

namespace vl_check_boxes {
namespace {

const UINT_PTR SubclassId = 0x564C46;
const wchar_t GroupName[] = L"VL_RadioGroup";
// Buttons that draw themselves keep their kind here: 2 is a check box of three states.
const wchar_t DrawnKindName[] = L"VL_VlwinOdKind";
const wchar_t DrawnRightName[] = L"VL_VlwinCheckRight";
const int DrawnThreeState = 2;
const wchar_t LeftWord[] = L"\u5DE6\u4FA7";
const wchar_t RightWord[] = L"\u53F3\u4FA7";

// The radio button that a click is just turning on. Meanwhile the system turns off what it takes
// for the others of its group.
HWND g_clicked = NULL;

LONG typeOf(HWND button)
{
    return GetWindowLongW(button, GWL_STYLE) & 0xF;
}

bool isRadio(HWND button)
{
    return VL_HasClass(button, WC_BUTTONW) &&
           (typeOf(button) == BS_AUTORADIOBUTTON || typeOf(button) == BS_RADIOBUTTON);
}

int stateOf(HWND button)
{
    return (int)(SendMessageW(button, BM_GETCHECK, 0, 0) & 3);
}

// Sets the state and tells the owner when it is another one.
void change(HWND button, int state)
{
    const int before = stateOf(button);
    SendMessageW(button, BM_SETCHECK, (WPARAM)state, 0);
    if (stateOf(button) != before)
        VL_NotifyOwner(button, VL_VALUE_CHANGED);
}

// The radio buttons that a named one excludes.
struct GroupSearch
{
    HWND button;
    std::wstring group;
    std::vector<HWND> found;
};

BOOL CALLBACK collectGroup(HWND window, LPARAM data)
{
    GroupSearch *search = (GroupSearch *)data;
    if (window != search->button && isRadio(window) &&
        VL_GetTextProperty(window, GroupName) == search->group)
        search->found.push_back(window);
    return TRUE;
}

std::vector<HWND> othersOfGroup(HWND button)
{
    GroupSearch search = {button, VL_GetTextProperty(button, GroupName), {}};
    if (!search.group.empty())
        EnumChildWindows(VL_OwnerWindow(button), collectGroup, (LPARAM)&search);
    return search.found;
}

// Without a name: the run of siblings that the keyboard walks through as well.
std::vector<HWND> othersOfRun(HWND button)
{
    std::vector<HWND> found;
    const HWND parent = GetParent(button);
    HWND sibling = GetNextDlgGroupItem(parent, button, FALSE);
    while (sibling && sibling != button && found.size() < 10000) {
        if (std::find(found.begin(), found.end(), sibling) != found.end())
            break;
        found.push_back(sibling);
        sibling = GetNextDlgGroupItem(parent, sibling, FALSE);
    }
    found.erase(std::remove_if(found.begin(), found.end(), [](HWND w) { return !isRadio(w); }),
                found.end());
    return found;
}

void turnOffOthers(HWND button)
{
    const bool isNamed = !VL_GetTextProperty(button, GroupName).empty();
    for (HWND other : isNamed ? othersOfGroup(button) : othersOfRun(button)) {
        if (stateOf(other) != 0)
            change(other, 0);
    }
}

// The next usable one of the group in the order of the windows.
HWND neighbour(HWND button, bool forward)
{
    std::vector<HWND> group = othersOfGroup(button);
    group.erase(std::remove_if(group.begin(), group.end(),
                               [](HWND w) { return !IsWindowVisible(w) || !IsWindowEnabled(w); }),
                group.end());
    if (group.empty())
        return NULL;
    // Siblings in front of the button come ahead of it.
    size_t ahead = 0;
    for (HWND w = GetWindow(button, GW_HWNDPREV); w; w = GetWindow(w, GW_HWNDPREV))
        ahead += std::find(group.begin(), group.end(), w) != group.end() ? 1 : 0;
    const size_t index = forward ? ahead : ahead + group.size() - 1;
    return group[index % group.size()];
}

bool isArrow(WPARAM key)
{
    return key == VK_DOWN || key == VK_RIGHT || key == VK_UP || key == VK_LEFT;
}

bool walkWithArrow(HWND button, WPARAM key)
{
    const bool forward = key == VK_DOWN || key == VK_RIGHT;
    if (!isArrow(key))
        return false;
    if (const HWND next = neighbour(button, forward)) {
        SetFocus(next);
        SendMessageW(next, BM_CLICK, 0, 0);
    }
    return true;
}

// Of radio buttons with a group name.
LRESULT CALLBACK radioSubclass(HWND button, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                               DWORD_PTR)
{
    switch (message) {
    case WM_NCDESTROY:
        RemoveWindowSubclass(button, radioSubclass, id);
        break;
    case WM_GETDLGCODE:
        // The dialog keyboard would walk through the run of siblings, whatever their group. Asked
        // without a key the answer must be a plain radio button's: the system compares it.
        if (lParam && ((const MSG *)lParam)->message == WM_KEYDOWN && isArrow(wParam))
            return DefSubclassProc(button, message, wParam, lParam) | DLGC_WANTMESSAGE;
        break;
    case WM_KEYDOWN:
        if (walkWithArrow(button, wParam))
            return 0;
        break;
    case BM_SETCHECK:
        // The system turns off the run of siblings and tells nobody: what is to be turned off is
        // done below.
        if (wParam == 0 && g_clicked && g_clicked != button)
            return 0;
        if (wParam == 1 && g_clicked == button) {
            const LRESULT result = DefSubclassProc(button, message, wParam, lParam);
            g_clicked = NULL;
            turnOffOthers(button);
            g_clicked = button;
            return result;
        }
        break;
    case WM_LBUTTONUP:
    case WM_KEYUP:
    case WM_SETFOCUS:
    case BM_CLICK: {
        const HWND before = g_clicked;
        g_clicked = button;
        const LRESULT result = DefSubclassProc(button, message, wParam, lParam);
        g_clicked = before;
        return result;
    }
    default:
        break;
    }
    return DefSubclassProc(button, message, wParam, lParam);
}

// What the program sets inside a click handler is no part of the click.
class OutsideClick
{
public:
    OutsideClick() : m_clicked(g_clicked) { g_clicked = NULL; }
    ~OutsideClick() { g_clicked = m_clicked; }
    OutsideClick(const OutsideClick &) = delete;
    OutsideClick &operator=(const OutsideClick &) = delete;

private:
    HWND m_clicked;
};

} // namespace
} // namespace vl_check_boxes

bool VL_IsChecked(HWND button)
{
    return VL_GetCheckState(button) == 1;
}

void VL_SetChecked(HWND button, bool on)
{
    VL_SetCheckState(button, on ? 1 : 0);
}

int VL_GetCheckState(HWND button)
{
    return VL_HasClass(button, WC_BUTTONW) ? vl_check_boxes::stateOf(button) : 0;
}

void VL_SetCheckState(HWND button, int state)
{
    using namespace vl_check_boxes;
    if (!VL_HasClass(button, WC_BUTTONW) || state < 0 || state > 2)
        return;
    const OutsideClick outside;
    // Two states cannot show the third one.
    const int shown = state == 2 && !VL_IsCheckBoxThreeState(button) ? 1 : state;
    if (shown == 1 && isRadio(button))
        turnOffOthers(button);
    if (IsWindow(button))
        change(button, shown);
}

bool VL_IsCheckBoxThreeState(HWND button)
{
    using namespace vl_check_boxes;
    if (!VL_HasClass(button, WC_BUTTONW))
        return false;
    const LONG type = typeOf(button);
    return type == BS_3STATE || type == BS_AUTO3STATE ||
           VL_GetNumberProperty(button, DrawnKindName) == DrawnThreeState;
}

void VL_SetCheckBoxThreeState(HWND button, bool on)
{
    using namespace vl_check_boxes;
    if (!VL_HasClass(button, WC_BUTTONW))
        return;
    if (!on && stateOf(button) == 2)
        VL_SetCheckState(button, 1);
    if (VL_OfferOption(button, L"threeState", L"", on))
        return;
    const LONG type = typeOf(button);
    const bool isCheckBox = type == BS_CHECKBOX || type == BS_AUTOCHECKBOX || type == BS_3STATE ||
                            type == BS_AUTO3STATE;
    if (isCheckBox)
        SendMessageW(button, BM_SETSTYLE, on ? BS_AUTO3STATE : BS_AUTOCHECKBOX, TRUE);
}

std::wstring VL_GetCheckAlign(HWND button)
{
    using namespace vl_check_boxes;
    if (!VL_HasClass(button, WC_BUTTONW))
        return std::wstring();
    const bool isDrawn = GetPropW(button, DrawnKindName) != NULL;
    const bool isRight = isDrawn ? VL_GetNumberProperty(button, DrawnRightName) != 0
                                 : (GetWindowLongW(button, GWL_STYLE) & BS_RIGHTBUTTON) != 0;
    return isRight ? RightWord : LeftWord;
}

void VL_SetCheckAlign(HWND button, const std::wstring &side)
{
    using namespace vl_check_boxes;
    const bool isRight = side == RightWord;
    if (!VL_HasClass(button, WC_BUTTONW) || VL_OfferOption(button, L"checkAlign", side, isRight))
        return;
    const LONG style = GetWindowLongW(button, GWL_STYLE) & ~BS_RIGHTBUTTON;
    SetWindowLongW(button, GWL_STYLE, style | (isRight ? BS_RIGHTBUTTON : 0));
    InvalidateRect(button, NULL, TRUE);
}

void VL_SetRadioGroup(HWND button, const std::wstring &name)
{
    using namespace vl_check_boxes;
    if (!isRadio(button))
        return;
    VL_SetTextProperty(button, GroupName, name);
    if (name.empty())
        RemoveWindowSubclass(button, radioSubclass, SubclassId);
    else
        SetWindowSubclass(button, radioSubclass, SubclassId, 0);
}
