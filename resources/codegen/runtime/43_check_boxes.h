// Check boxes and radio buttons.
#pragma once
#include "35_control_text.h"

// Private notification: a value changed other than by a click on the control itself.
const int VL_VALUE_CHANGED = 0x021A;

// Check boxes and radio buttons, drawn by the system or not. Setting tells no click, but
// VL_VALUE_CHANGED when the state really changed. States: 0 off, 1 on, 2 undetermined.
bool VL_IsChecked(HWND button);
void VL_SetChecked(HWND button, bool on);
int VL_GetCheckState(HWND button);
void VL_SetCheckState(HWND button, int state);
bool VL_IsCheckBoxThreeState(HWND button);
void VL_SetCheckBoxThreeState(HWND button, bool on);
// On which side of the text the box stands, as the word of the property.
std::wstring VL_GetCheckAlign(HWND button);
void VL_SetCheckAlign(HWND button, const std::wstring &side);
// Radio buttons of one name in one window exclude each other, wherever they stand.
void VL_SetRadioGroup(HWND button, const std::wstring &name);
