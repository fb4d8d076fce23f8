// What a person reads off the controls of a program.
#pragma once

#include "program.h"

#include <optional>

// Line breaks are written "\n".
std::wstring textOf(const Program &program, HWND control);
// The items of a combo or list box or the titles of a tab control.
Lines itemsOf(const Program &program, HWND control);
// The rows of a list view: cells joined by " | ", "[x] " ahead of a checked row.
Lines rowsOf(const Program &program, HWND control);
// The columns of a list view: title and width in pixels.
Lines columnsOf(const Program &program, HWND control);
// The nodes of a tree, two blanks for each level: "-" open, "+" closed, "[x]" checked.
Lines treeOf(const Program &program, HWND control);
// The value in a word: the position of a slider or progress bar, the check state, the selection.
std::wstring valueOf(const Program &program, HWND control);
// The items of the open menus, one level below the other; "x" checked, "-" not to be picked.
Lines menuOf(const Program &program);
// Where an item stands in a control, in its client area; `item` as in Input::pointIn.
std::optional<RECT> itemRectangle(const Program &program, HWND control, const std::wstring &item);
// The item with that number of the list that a combo box has dropped down, on the screen.
std::optional<POINT> droppedItem(const Program &program, HWND combo, int index);
