// Events of controls that the system does not tell by itself: mouse, keys, focus, scrolling.
#pragma once
#include "35_control_text.h"

// Codes told to the owner by VL_NotifyOwner; the data in brackets.
const int VL_EVENT_CLICK = 0x0201; // controls without a click notification of their own
const int VL_EVENT_MOUSE_ENTER = 0x0202;
const int VL_EVENT_MOUSE_LEAVE = 0x0203;
const int VL_EVENT_DOUBLE_CLICK = 0x0204;
const int VL_EVENT_GOT_FOCUS = 0x0205;
const int VL_EVENT_LOST_FOCUS = 0x0206;
const int VL_EVENT_MOUSE_DOWN = 0x0210; // [place and button, see VL_MouseData]
const int VL_EVENT_MOUSE_UP = 0x0211;   // [the same]
const int VL_EVENT_MOUSE_MOVE = 0x0212; // [the same, with the button that is held]
const int VL_EVENT_MOUSE_HELD = 0x0213; // [the same] every 100 ms while a button is held
const int VL_EVENT_KEY_DOWN = 0x0214;   // [virtual key]
const int VL_EVENT_KEY_UP = 0x0215;     // [virtual key]
const int VL_EVENT_ENTER = 0x0216;      // in a single-line edit
const int VL_EVENT_SCROLL = 0x0217;     // what is visible of a text or list changed
const int VL_MOUSE_LEFT = 0;
const int VL_MOUSE_RIGHT = 1;
const int VL_MOUSE_MIDDLE = 2;
const int VL_MOUSE_NONE = 3;
// Design pixels within the control, each 0 to 16383, and a VL_MOUSE_* as one number: x, and
// y | button << 14 above it.
LPARAM VL_MouseData(int x, int y, int button);

// From now on the control tells its owner these events; it keeps behaving as before. Statics and
// group boxes catch the mouse from then on. The edit of a combo box counts as part of it. Enter in
// a watched single-line edit is told and presses the window's default button as well.
void VL_WatchControlEvents(HWND control);
