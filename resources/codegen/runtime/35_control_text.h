// Text of controls and how it stands: alignment, wrapping, size, read-only.
#pragma once
#include "34_window_state.h"

// A setting that a control's own class may take part in. The setters of this section offer it first
// by VL_WM_SET_OPTION (wParam 0, lParam a VL_ControlOption *) and act by themselves when the answer
// is 0. Names: L"textAlign" (number VL_ALIGN_*, text the word); L"wordWrap", L"autoSize",
// L"readOnly", L"threeState" and L"checkAlign" (number 0 or 1; of the last 1 is the box to the
// right of the text); L"backImage" (text a path).
struct VL_ControlOption
{
    const wchar_t *name;
    std::wstring text;
    int number;
};
const UINT VL_WM_SET_OPTION = WM_APP + 0x1800;
// Sends it; whether the control took it.
bool VL_OfferOption(HWND control, const wchar_t *name, const std::wstring &text, int number);

const int VL_ALIGN_LEFT = 0;
const int VL_ALIGN_CENTER = 1;
const int VL_ALIGN_RIGHT = 2;

// What the functions about text ask of a text control of our own (class L"VL_VirtualTextBox"): they
// send it VL_WM_TEXT_COMMAND (wParam 0, lParam a VL_TextCommand *); not 0 means that it was done.
// Lines count from 1, characters from 0.
const int VL_TEXT_SELECT_ALL = 1;
const int VL_TEXT_COPY = 2;
const int VL_TEXT_CUT = 3;
const int VL_TEXT_PASTE = 4;
const int VL_TEXT_UNDO = 5;
const int VL_TEXT_SELECT = 6;        // a start, b length; 0 is to the end
const int VL_TEXT_SELECTED_TEXT = 7; // answer
const int VL_TEXT_APPEND = 8;        // text goes to the end, which is scrolled into view
const int VL_TEXT_SCROLL_TOP = 9;
const int VL_TEXT_SCROLL_BOTTOM = 10;
const int VL_TEXT_GOTO_LINE = 11;  // a line
const int VL_TEXT_LINE_COUNT = 12; // number
const int VL_TEXT_FIND = 13; // text; number 1 when found. Selects it, wraps round, ignores case
const int VL_TEXT_FIND_NEXT = 14;      // number 1 when found
const int VL_TEXT_FIND_PREVIOUS = 15;  // number 1 when found
const int VL_TEXT_HIGHLIGHT_LINE = 16; // a line, b colour 0xBBGGRR or -1 for the control's own
const int VL_TEXT_CLEAR_HIGHLIGHT = 17;
const int VL_TEXT_LOAD_FILE = 18;    // text a path; number 1 when it could be read
const int VL_TEXT_IS_READ_ONLY = 19; // number 0 or 1
struct VL_TextCommand
{
    int command = 0;
    int a = 0;
    int b = 0;
    std::wstring text;
    std::wstring answer;
    int number = 0;
};
const UINT VL_WM_TEXT_COMMAND = WM_APP + 0x1801;
// Sends it to a control of that class; false for every other control.
bool VL_SendTextCommand(HWND control, VL_TextCommand &command);

// The text of a window or control, of any length; empty for something that is none.
std::wstring VL_GetText(HWND window);
std::wstring VL_GetText(intptr_t window);
void VL_SetText(HWND window, const std::wstring &text);
void VL_SetText(intptr_t window, const std::wstring &text);
// A written property: does nothing when the control has that text already, so that caret and scroll
// position stay.
void VL_SetTextStr(HWND window, const std::wstring &text);
// Text boxes take it at the end and scroll there. Texts in quick succession show, and are told as a
// change, together.
void VL_AppendText(HWND window, const std::wstring &text);
// Line ends of any kind as the CR LF that text boxes show.
std::wstring VL_WithCrLf(const std::wstring &text);

// Statics, edits, rich edits and buttons. `align` is the word of the property or VL_ALIGN_*.
void VL_SetTextAlign(HWND control, const VL_Any &align);
// Statics, rich edits and classes that take the option; an edit has it decided for good when made.
void VL_SetWordWrap(HWND control, bool on);
// Fits the control to its text, now and whenever the text or font is set by this program.
void VL_SetAutoSize(HWND control, bool on);
void VL_SetReadOnly(HWND control, bool on);
bool VL_IsReadOnly(HWND control);
