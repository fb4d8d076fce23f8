// Check boxes, radio buttons and group boxes of self-drawn windows.
#pragma once
#include "95_self_drawn_frame.h"

// What the number property "VL_VlwinOdKind" of an owner-drawn BUTTON says.
const int VL_VLWIN_OD_CHECKBOX = 1;
const int VL_VLWIN_OD_3STATE = 2;
const int VL_VLWIN_OD_RADIO = 3;

// Makes an owner-drawn BUTTON behave and look as its kind says: BM_GETCHECK and BM_SETCHECK,
// clicks, space, arrow keys among radio buttons. The number property "VL_VlwinCheckRight" puts the
// box at the right; radio buttons of the window with the same text property "VL_VlwinRadioGroup"
// exclude each other, those without one when they have the same parent.
void VL_VlwinAttachOdSubclass(HWND control);
// 0 off, 1 on, 2 undecided (three states only); tells nobody. Clears the others of a radio group.
void VL_VlwinOdWriteCheckState(HWND control, int state);
void VL_Win32StripCheckRadioTheme(HWND control);
void VL_VlwinDrawOwnerDrawCheckOrRadio(const DRAWITEMSTRUCT *item);

// Makes a BUTTON a dark group box that stands behind the controls inside it. The number property
// "VL_VlwinBorderColor" is the colour of its frame + 1.
void VL_VlwinPrepareGroupBox(HWND control);
