// When a program without a form ends.
#pragma once
#include "00_prelude.h"

// Whether the calling thread has a window that the user can see.
bool VL_HasVisibleWindow();
