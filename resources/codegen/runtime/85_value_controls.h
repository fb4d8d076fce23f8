// Progress bars and sliders: value, range, step, look.
#pragma once
#include "34_window_state.h"

// Both kinds by class; other windows read as 0 and take nothing. A value outside the range becomes
// the nearest end of it. A value that changes by code raises the value event once.
int VL_GetValue(HWND control);
void VL_SetValue(HWND control, int value);
int VL_GetMinValue(HWND control);
void VL_SetMinValue(HWND control, int value);
int VL_GetMaxValue(HWND control);
void VL_SetMaxValue(HWND control, int value);
int VL_GetMin(HWND control);
int VL_GetMax(HWND control);
// Ends in the wrong order are exchanged.
void VL_SetRange(HWND control, int least, int greatest);
int VL_GetStep(HWND control);
void VL_SetStep(HWND control, int step);
// 0 to 100; 0 for an empty range.
int VL_GetPercent(HWND control);

// A progress bar that is given a colour, a text or a state draws itself. Colours are 0xBBGGRR.
void VL_ProgressBar_SetBarColor(HWND bar, int color);
void VL_ProgressBar_SetBkColor(HWND bar, int color);
// 0 normal, 1 error, 2 paused, or the word of the property.
void VL_ProgressBar_SetState(HWND bar, const VL_Any &state);
int VL_ProgressBar_GetState(HWND bar);
void VL_ProgressBar_SetNormal(HWND bar);
void VL_ProgressBar_SetError(HWND bar);
void VL_ProgressBar_SetPaused(HWND bar);
// In the format "%p" stands for the percentage, "%v" for the value, "%m" for the greatest value.
void VL_ProgressBar_SetText(HWND bar, bool show, const std::wstring &format = L"%p%");
// A strip that runs along the bar, moved every `milliseconds`.
void VL_ProgressBar_SetMarquee(HWND bar, bool on, int milliseconds = 30);

// `showValue` writes the value beside the thumb. An inverted slider has its least value at the
// right or at the bottom; values are exchanged in all functions here.
void VL_PrepareSlider(HWND slider, bool showValue, bool inverted);
