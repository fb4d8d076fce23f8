// What the large text box shows: scrolling, wrapping, caret, painting.
#pragma once
#include "92_text_bars.h"
#include "92_text_paint.h"
#include "92_text_rows.h"

// Posted by the view to its window, which answers by updateBars().
const UINT VTB_WM_UPDATE_BARS = WM_APP + 0x1881;

// The view of one control. What changes is shown by settle(), which the control calls when it has
// done with a message; nothing here tells the owner, so nothing can end the control meanwhile.
class VL_TextView : public VL_TextRows
{
public:
    explicit VL_TextView(HWND window);
    void windowGone() { m_window = NULL; }

    void setFont(HFONT font);
    HFONT font() const { return m_givenFont; }
    void showLineNumbers(bool on);
    // Design pixels; 0 takes the room that the numbers need.
    void setLineNumberWidth(int width);
    void setHighlighting(bool on);
    void setWordWrap(bool on);
    // VL_ALIGN_*: 0 left, 1 centre, 2 right. Rows wider than the window start at the left.
    void setAlign(int align);
    void setLineColor(size_t line, COLORREF color);
    void clearLineColors();
    void setText(VL_TextPieces &&pieces, const wchar_t *lineEnd);

    // Scrolls the caret into view when the message is done; from far away, to the middle.
    // `keepColumn`: moving on up and down aims at the same place as before.
    void showCaret(bool keepColumn = false);
    void moveCaret(size_t offset, bool extend, bool atRowEnd = false);
    // Takes the caret up or down, to the x it had at first.
    void moveCaretRows(long long rows, bool extend);
    void moveToRowEdge(bool end, bool extend);
    // Where the caret stands, client pixels; false when it is out of view.
    bool caretPoint(POINT &point);

    void scrollRows(long long rows);
    void scrollColumns(long long pixels);
    void scrollTo(bool end);
    // SB_VERT or SB_HORZ, and the message's wParam.
    void onScroll(int bar, WPARAM wParam);
    void updateBars();

    void paint(HDC target, const RECT &clip);
    void invalidate();
    // Something that settle() must take into account: size, scale, settings.
    void setDirty() { m_dirty = true; }
    void focusChanged(bool focused);
    void settle();
    // What happened since the last call.
    void takeNews(bool &changed, bool &scrolled);

private:
    void textChanged(size_t line, size_t column, std::ptrdiff_t lines);
    void measureWindow();
    void scrollToCaret();
    VL_TextBar::Range verticalRange();
    void dragTo(int bar, WPARAM wParam);
    long long widestScroll() const;
    void invalidateLines(size_t first, size_t last);
    void showSelection();
    void placeCaret();
    void paintRows(HDC context, const RECT &clip);
    void noteWidth(const VL_TextPlace &place);

    HFONT m_givenFont = NULL;
    bool m_lineNumbers = false;
    int m_givenMargin = 0;
    bool m_highlighting = true;
    bool m_wordWrap = false;
    VTB_LineColors m_lineColors;
    // The widest row seen.
    long long m_extent = 0;
    VL_TextBar m_vertical;
    VL_TextBar m_horizontal;
    bool m_barsPosted = false;
    long long m_wantedX = -1;
    bool m_wantsCaret = false;
    bool m_focused = false;
    bool m_hasCaret = false;
    POINT m_caretPoint = {};

    bool m_dirty = true;
    bool m_changed = false;
    bool m_scrolled = false;
    // Lines to be painted again, and what was shown last.
    size_t m_staleFrom = (size_t)-1;
    size_t m_staleTo = 0;
    VL_TextPlace m_shownTop;
    long long m_shownX = 0;
    size_t m_shownAnchor = 0;
    size_t m_shownCaret = 0;
};
