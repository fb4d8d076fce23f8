// Where the lines of the large text box stand in its window.
#pragma once
#include "34_window_state.h"
#include "90_text_editing.h"
#include "92_text_layout.h"

// A row on the screen: a line, and a row within it when lines wrap.
struct VL_TextPlace
{
    size_t line = 0;
    size_t row = 0;
};

// The geometry of one control: its text, laid out, and the row that is shown first.
class VL_TextRows
{
public:
    explicit VL_TextRows(HWND window);

    // NULL when the window is gone.
    HWND window() const { return m_window; }
    VL_TextEditing &editing() { return m_editing; }
    const VirtualTextData &data() const { return m_editing.data(); }
    const VL_TextPlace &top() const { return m_top; }
    // The property "VL_VTB_TabSpaces", 1 to 32.
    int tabSpaces() const;
    int lineHeight() const { return m_font.lineHeight(); }
    // Rows that are to be seen whole; at least 1.
    int visibleRows() const;
    // Where the text stands, client pixels.
    RECT textArea() const;
    bool isOverMargin(POINT point) const { return point.x < m_marginWidth; }

    static bool isBefore(const VL_TextPlace &a, const VL_TextPlace &b);
    // Moves `place` by that many rows, within the text, and returns how many there were.
    long long step(VL_TextPlace &place, long long rows);
    VL_TextPlace caretPlace();
    struct Hit
    {
        size_t offset;
        // The place is the end of a row that wraps, not the start of the next one.
        bool atRowEnd;
    };
    // The place in the text nearest to a point, which may lie outside the window.
    Hit hitTest(POINT point);

protected:
    int scaled(int value) const;
    long long rowsFromTop(const VL_TextPlace &place, long long most);
    size_t offsetOf(const VL_TextPlace &place);
    long long rowLeft(const VL_TextPlace &place);
    void clampTop();

    HWND m_window;
    VL_TextEditing m_editing;
    VL_TextFont m_font;
    VL_TextLayout m_layout;
    RECT m_client = {};
    // Room for the numbers, pixels.
    int m_marginWidth = 0;
    VL_TextPlace m_top;
    long long m_scrollX = 0;
    int m_align = 0;
    bool m_caretAtRowEnd = false;
};
