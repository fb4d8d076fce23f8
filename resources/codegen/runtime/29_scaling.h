// Design pixels (96 dots per inch) and the pixels of a window.
#pragma once
#include "00_prelude.h"

// Whether Windows leaves scaling to the program; set once at start.
extern bool g_vlDpiAware;
// Dots per inch by which the program scales for that window; NULL asks for the screen.
int VL_GetDpiForScaling(HWND window);
// Design pixels (96 dots per inch) to pixels of the window, and back.
int VL_ScaleX(HWND window, int value);
int VL_ScaleY(HWND window, int value);
int VL_UnscaleX(HWND window, int value);
int VL_UnscaleY(HWND window, int value);
