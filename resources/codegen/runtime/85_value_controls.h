// Value, range and step of progress bars and sliders.
#pragma once
#include "85_progress_bar.h"
#include "85_slider.h"

// Both kinds by class; other windows read as 0 and take nothing. A value outside the range becomes
// the nearest end of it. A value that changes by code raises the value event once: for a progress
// bar VL_EVENT_VALUE_CHANGED, for a slider the message that a move by keyboard sends.
int VL_GetValue(HWND control);
void VL_SetValue(HWND control, int value);
int VL_GetMinValue(HWND control);
void VL_SetMinValue(HWND control, int value);
int VL_GetMaxValue(HWND control);
void VL_SetMaxValue(HWND control, int value);
int VL_GetMin(HWND control);
int VL_GetMax(HWND control);
// Ends in the wrong order are exchanged. Moving one end past the other takes the other along.
void VL_SetRange(HWND control, int least, int greatest);
int VL_GetStep(HWND control);
void VL_SetStep(HWND control, int step);
// 0 to 100; 0 for an empty range.
int VL_GetPercent(HWND control);
int VL_Slider_GetPercent(HWND slider);
