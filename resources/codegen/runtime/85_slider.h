// Sliders: the value beside the slider, and sliders that run the other way.
#pragma once
#include "34_window_state.h"

// `showValue` writes the value beside the slider, below an upright one. An inverted slider has its
// least value at the right or at the bottom; all messages about places then mean values too.
void VL_PrepareSlider(HWND slider, bool showValue, bool inverted);
