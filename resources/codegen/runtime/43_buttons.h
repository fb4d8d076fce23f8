// Drawn buttons, command links, split buttons; the buttons that Enter and Esc press.
#pragma once
#include "43_button_paint.h"

// Private notifications of buttons.
const int VL_BUTTON_ITEM_PICKED = 0x0218; // data: the index of the item
const int VL_BUTTON_DROPDOWN = 0x0219;    // the menu is about to open

LRESULT CALLBACK ButtonSubclassProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam,
                                    UINT_PTR id, DWORD_PTR data);
// Draws the button (class BUTTON) with its colours, font and image and by the number properties
// "VL_ButtonTextAlign" (1 left, 2 right, else centre), "VL_ButtonCornerRadius" (design pixels) and
// "VL_ButtonFlat" (not 0: no frame). Any push button becomes BS_OWNERDRAW and keeps what the
// dialog keyboard does with push buttons. Command links and split buttons stay the system's own
// where it has them, unless they are owner-drawn already.
void VL_PrepareButton(HWND button);
// VL_BUTTON_*, for a button that was made owner-drawn.
void VL_SetButtonKind(HWND button, int kind);
// The button that Enter (Esc) presses in its window, wherever the focus is.
void VL_SetDefaultButton(HWND button);
void VL_SetCancelButton(HWND button);

// A picture to the left of the text. `path` is taken from the program's folder, its folder
// `resource` or as it is; an empty or unreadable one shows none. False when it cannot be read.
bool VL_Button_SetImage(HWND button, const std::wstring &path);
// The smaller text of a command link.
void VL_Button_SetNote(HWND button, const std::wstring &note);
std::wstring VL_Button_GetNote(HWND button);
// The menu of a button of any class, to whom it is offered as the option L"dropDownItems" as well;
// line ends and ';' separate the items, "-" is a separating line that counts as an item.
void VL_Button_SetDropDownItems(HWND button, const std::wstring &items);
std::wstring VL_Button_GetDropDownItem(HWND button, int index);
void VL_Button_SetDropDownState(HWND button, bool pressed);
// Opens the menu below the button and returns when it is closed; tells VL_BUTTON_ITEM_PICKED.
void VL_Button_ShowDropDown(HWND button);
