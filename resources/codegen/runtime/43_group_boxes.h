// Group boxes.
#pragma once
#include "43_background.h"

LRESULT CALLBACK GroupBoxSubclassProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR id, DWORD_PTR data);
// Draws the box with its colours and by the number property "VL_GroupFlat" (1 standard, 2 as the
// system, 3 flat), over the window's background unless it has a colour, and keeps it behind its
// siblings.
void VL_PrepareGroupBox(HWND box);
