// How a program ends: when no window is left, and when it fails.
#pragma once
#include "00_prelude.h"

// Whether the calling thread has a window that the user can see.
bool VL_HasVisibleWindow();

// Ends the program with exit code 1 and a sentence on the error output, or in a box without one.
// Division of an integer by 0, endless recursion, an index outside an array and other faults of a
// running program end here by themselves.
void VL_EndWithError(const std::wstring &message);
