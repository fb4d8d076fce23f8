// What the user does to the large text box: keys, mouse, clipboard, searching.
#pragma once
#include "92_text_view.h"

class VL_TextInput
{
public:
    explicit VL_TextInput(VL_TextView &view) : m_view(view) {}

    void setReadOnly(bool on) { m_readOnly = on; }
    bool isReadOnly() const { return m_readOnly; }

    // Keys that are no characters. `shift` and `control` as they are held.
    void keyDown(WPARAM key, bool shift, bool control);
    // A unit as WM_CHAR brings it; halves of a pair come one by one.
    void character(wchar_t unit, bool shift, bool control);

    // Points are client pixels. A second click in place selects the word, a third the line.
    void mouseDown(POINT point, bool shift, bool isDouble);
    void mouseMove(POINT point);
    void mouseUp();
    // Goes on selecting while the mouse is held outside the window.
    void timer();
    // `delta` as the wheel messages tell it.
    void wheel(int delta, bool sideways);

    void selectAll();
    void copy();
    void cut();
    void paste();
    // The selection goes, without the clipboard.
    void clear();
    void undo();
    void redo();

    // Selects the next place behind the selection, or the last one ahead of it; goes on at the
    // other end of the text. False, and the selection stays, when there is none.
    bool find(const std::wstring &text);
    bool findNext();
    bool findPrevious();

private:
    enum class Unit
    {
        Character,
        Word,
        Line
    };

    VL_TextEditing &editing() { return m_view.editing(); }
    bool moveKey(WPARAM key, bool shift, bool control);
    bool commandKey(WPARAM key, bool shift);
    void moveSideways(bool right, bool shift, bool control);
    void page(int direction, bool shift);
    void type(wchar_t unit);
    void remove(bool back, bool word);
    void drag(POINT point);
    void startDrag(Unit unit, size_t begin, size_t end);
    void unitAround(size_t offset, size_t &begin, size_t &end);
    bool showFound(size_t offset, size_t length);

    VL_TextView &m_view;
    bool m_readOnly = false;
    wchar_t m_firstHalf = 0;
    int m_wheel[2] = {0, 0};
    std::wstring m_pattern;
    // While the mouse is held: what was clicked on, and where the mouse is.
    bool m_dragging = false;
    Unit m_unit = Unit::Character;
    size_t m_dragBegin = 0;
    size_t m_dragEnd = 0;
    POINT m_point = {};
    DWORD m_doubleTime = 0;
    POINT m_doublePoint = {};
};
