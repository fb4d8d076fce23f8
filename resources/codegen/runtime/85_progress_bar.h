// Progress bars: colours, states, text and the moving bar. As long as no colour, state or text is
// set, the system draws them. Otherwise a bar without PBS_SMOOTH is drawn in blocks.
#pragma once
#include "34_window_state.h"

// Told to the owner when the value changed; data is the new value.
const int VL_EVENT_VALUE_CHANGED = 0x021A;

// Takes charge of a progress bar; false for anything else. All functions below do so. From then on
// each change of its value is told, whoever makes it, and PBM_SETMARQUEE needs no style.
bool VL_PrepareProgressBar(HWND bar);
// 0xBBGGRR.
void VL_ProgressBar_SetBarColor(HWND bar, int color);
void VL_ProgressBar_SetBkColor(HWND bar, int color);
// 0 or \u6B63\u5E38 normal, 1 or \u9519\u8BEF error (red), 2 or \u6682\u505C paused (yellow).
void VL_ProgressBar_SetState(HWND bar, const VL_Any &state);
int VL_ProgressBar_GetState(HWND bar);
void VL_ProgressBar_SetNormal(HWND bar);
void VL_ProgressBar_SetError(HWND bar);
void VL_ProgressBar_SetPaused(HWND bar);
// %p stands for the percentage, %v for the value, %m for the greatest value, %% for a percent sign.
void VL_ProgressBar_SetText(HWND bar, bool show, const std::wstring &format = L"%p%");
// A bar that runs on and on; a step every `speed` milliseconds.
void VL_ProgressBar_SetMarquee(HWND bar, bool on, int speed = 30);
