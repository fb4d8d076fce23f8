// Layout of a window's controls: flexible rows and columns and grids that follow its size.
#pragma once
#include "34_window_state.h"
#include "96_flex_engine.h"

// A window or control as a program names it: by its handle, or by the handle as a number.
struct VL_FlexWindow
{
    HWND handle;
    VL_FlexWindow(HWND window) : handle(window) {}
    VL_FlexWindow(const VL_Any &number);
    template <typename T, VL_IfInteger<T> = 0>
    VL_FlexWindow(T number) : handle((HWND)(intptr_t)number)
    {}
};

// All lengths are design pixels. What is set takes effect with the next messages, at once with
// VL_ApplyFlexLayout. Whatever is no window is left alone. Hidden controls take no room.

// From now on the window's controls are laid out in its client area: those the design named, or
// all, in tab order. What stands inside a group box moves with it.
bool VL_EnableFlexLayout(VL_FlexWindow window, bool enabled = true);
void VL_ApplyFlexLayout(VL_FlexWindow window);

// What an item asks for, in design pixels.
struct VL_FlexStyle
{
    double grow = 0;
    double shrink = 1;
    double minWidth = 0;
    double minHeight = 0;
    double maxWidth = std::numeric_limits<double>::infinity();
    double maxHeight = std::numeric_limits<double>::infinity();
    VL_FlexSides margin;
    bool shares = false; // its own length does not count
};

// Kept with each control.
struct VL_FlexMember
{
    VL_FlexStyle style;
    bool added = false;
    // The size that it had before it was laid out, or was given since.
    double baseWidth = -1;
    double baseHeight = -1;
    // As the last layout left it, in pixels of that scale.
    SIZE last = {-1, -1};
    int lastDpi = 0;
};

struct VL_FlexChild
{
    HWND control = NULL; // else a box
    int box = -1;        // else a spacer
    double width = 0;    // of a spacer
    double height = 0;
    VL_FlexStyle style; // of a box or spacer
};

// A row, column or grid of a window; no window itself.
struct VL_FlexBox
{
    bool grid = false;
    bool enabled = true;
    int depth = 0;
    int columns = 2;
    VL_FlexContainer style;
    // As designed.
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool growsRight = true;
    bool growsDown = true;
    std::vector<VL_FlexChild> children;
};

// Kept with each window.
struct VL_FlexTree
{
    bool enabled = false;
    bool named = false; // the design told which controls belong to it
    bool anchored = false;
    bool busy = false;
    bool scheduled = false;
    int lastDpi = 0;
    double designWidth = 0;
    double designHeight = 0;
    VL_FlexBox window;
    std::vector<VL_FlexBox> boxes;
};

// Made on first use; NULL for no window.
VL_FlexTree *VL_Flex_TreeOf(HWND window);
VL_FlexMember *VL_Flex_MemberOf(HWND control);
// The box of that number, -1 for the window's own; NULL without one.
VL_FlexBox *VL_Flex_FindBox(VL_FlexTree &tree, int box);
// Adds a control to a box, out of the one that it stood in.
void VL_Flex_TakeControl(HWND window, int box, HWND control);
// Has the window laid out with the next messages.
void VL_Flex_Schedule(HWND window);
