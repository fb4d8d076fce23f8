// The text of edit boxes: selection, clipboard, scrolling, searching, marked lines.
// All functions work on EDIT and RICHEDIT50W and hand over to the text box of our own class, which
// answers VL_WM_TEXT_COMMAND (VL_TextCommand and its numbers are in 35_control_text.h).
#pragma once
#include "35_control_text.h"

std::wstring VL_Edit_GetSelectedText(HWND edit);
void VL_Edit_SelectAll(HWND edit);
void VL_Edit_Copy(HWND edit);
void VL_Edit_Cut(HWND edit);
void VL_Edit_Paste(HWND edit);
void VL_Edit_Undo(HWND edit);
// Characters count from 0; a length of 0 reaches to the end.
void VL_Edit_SelectText(HWND edit, int start, int length = 0);
// Puts the text in the place of the selection, or at the caret; it can be undone.
void VL_Edit_ReplaceSelection(HWND edit, const std::wstring &text);

void VL_ScrollToBottom(HWND edit);
void VL_ScrollToTop(HWND edit);
// Lines count from 1; the caret goes to the start of the line, which is scrolled into view.
void VL_GotoLine(HWND edit, int line = 1);
int VL_GetLineCount(HWND edit);
// Selects and shows the next place of the text behind the selection; the search ignores case and
// goes on at the other end of the text. False, and nothing selected, when there is none.
bool VL_Find(HWND edit, const std::wstring &text);
bool VL_FindNext(HWND edit);
bool VL_FindPrev(HWND edit);
// Marks a line by a background colour (0xBBGGRR; -1 is a light yellow). Of a plain edit one line at
// a time is marked, of a rich edit any number.
void VL_HighlightLine(HWND edit, int line, int color = -1);
void VL_ClearHighlight(HWND edit);
