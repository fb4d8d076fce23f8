// Keys and mouse: pressing, moving, clicking, and their state.
#pragma once
#include "20_constants.h"

// A key by its virtual key number, or keys by name, joined by "+" when they are held together:
// "A", "Enter", "Ctrl+Shift+S". `action`: 0 presses and releases, 1 only presses, 2 only releases.
// False when a name is not known or the system refuses.
bool VL_SendKey(const VL_Any &key, intptr_t action = 0);
// Clicks at a point of the screen; without one (-2147483646) where the mouse is. `button`: 1 left,
// 2 right, 4 middle, 5 and 6 the extra ones.
bool VL_MouseClick(intptr_t x = -2147483646, intptr_t y = -2147483646, intptr_t button = 1,
                   intptr_t count = 1);
// The mouse in pixels of the screen.
int VL_GetMouseX();
int VL_GetMouseY();
bool VL_MoveMouse(intptr_t x, intptr_t y);
// Whether a key or mouse button is down at this moment; keys as for VL_SendKey, all of them.
bool VL_GetKeyState(const VL_Any &key);
