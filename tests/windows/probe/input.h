// Mouse and keyboard, used as a person would: through the system's input queue.
#pragma once

#include "program.h"

#include <optional>

enum class MouseButton
{
    Left,
    Right,
    Middle
};

class Input
{
public:
    explicit Input(Program &program) : m_program(program) {}

    // The point of the screen that "", "X Y", "#3" (an item), "#3,1" (a cell), "#3,x" (its check
    // box), "^2" (a column's head) or "#text" (a node of a tree) mean inside a control. None when
    // there is no such item.
    std::optional<POINT> pointIn(HWND control, const std::vector<std::wstring> &words);
    void moveTo(POINT point);
    void click(POINT point, MouseButton button, int times);
    void press(MouseButton button);
    void release(MouseButton button);
    void drag(POINT from, POINT to);
    void wheel(POINT point, int notches);
    void focus(HWND control);
    // "Enter", "Ctrl+A", "F5"; false for a name that is none.
    bool key(const std::wstring &name);
    void type(const std::wstring &text);

private:
    POINT restingPoint(HWND control);

    Program &m_program;
    POINT m_place = {};
    POINT m_lastClick = {-100, -100};
    ULONGLONG m_lastClickTime = 0;
};
