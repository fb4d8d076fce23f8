// Sorting the rows of a list view.
#pragma once
#include "77_list_view.h"

// Numbers by value ahead of texts; equal rows keep their order, selection and checks stay with
// their rows. The number that the control keeps with each item is used up for it.
void VL_ListView_Sort(HWND list, int column, bool ascending = true);
