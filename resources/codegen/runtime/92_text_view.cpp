// What the large text box shows: scrolling, wrapping, caret, painting.
#include "92_text_view.h"

#include <algorithm>

namespace vl_text_view {
namespace {

const size_t kNone = (size_t)-1;
// Widths of longer lines are estimated as long as their end was not seen.
const size_t kLongLine = 0x10000;

int digitsOf(size_t number)
{
    int digits = 1;
    for (; number >= 10; number /= 10)
        ++digits;
    return digits;
}

} // namespace
} // namespace vl_text_view

VL_TextView::VL_TextView(HWND window)
    : VL_TextRows(window), m_vertical(SB_VERT, true), m_horizontal(SB_HORZ, false)
{
    m_editing.onChange = [this](size_t line, size_t column, std::ptrdiff_t lines) {
        textChanged(line, column, lines);
    };
    setFont(NULL);
}

void VL_TextView::invalidate()
{
    if (m_window)
        InvalidateRect(m_window, NULL, FALSE);
}

void VL_TextView::setFont(HFONT font)
{
    m_givenFont = font;
    m_font.set(font, scaled(2));
    m_layout.reset();
    m_extent = 0;
    m_hasCaret = false; // its height is another one
    m_dirty = true;
    invalidate();
}

void VL_TextView::showLineNumbers(bool on)
{
    m_lineNumbers = on;
    m_dirty = true;
}

void VL_TextView::setLineNumberWidth(int width)
{
    m_givenMargin = (std::max)(0, (std::min)(width, 1000));
    m_dirty = true;
}

void VL_TextView::setHighlighting(bool on)
{
    m_highlighting = on;
    invalidate();
}

void VL_TextView::setWordWrap(bool on)
{
    if (on == m_wordWrap)
        return;
    m_wordWrap = on;
    m_scrollX = 0;
    m_dirty = true;
    invalidate();
}

void VL_TextView::setAlign(int align)
{
    m_align = align;
    invalidate();
}

void VL_TextView::setLineColor(size_t line, COLORREF color)
{
    m_lineColors.set(line, color);
    invalidate();
}

void VL_TextView::clearLineColors()
{
    m_lineColors.clear();
    invalidate();
}

void VL_TextView::setText(VL_TextPieces &&pieces, const wchar_t *lineEnd)
{
    m_editing.setText(std::move(pieces), lineEnd);
    m_layout.reset();
    m_lineColors.clear();
    m_top = VL_TextPlace();
    m_scrollX = m_extent = 0;
    m_caretAtRowEnd = false;
    m_wantedX = -1;
    m_changed = m_dirty = true;
    invalidate();
}

void VL_TextView::textChanged(size_t line, size_t column, std::ptrdiff_t lines)
{
    m_layout.textChanged(line, column, lines);
    m_changed = m_dirty = true;
    m_staleFrom = (std::min)(m_staleFrom, line);
    m_staleTo = lines || m_wordWrap ? vl_text_view::kNone : (std::max)(m_staleTo, line);
    m_lineColors.linesChanged(line, column, lines);
}

void VL_TextView::showCaret(bool keepColumn)
{
    m_wantsCaret = true;
    if (!keepColumn) {
        m_wantedX = -1;
        m_caretAtRowEnd = false;
    }
}

void VL_TextView::moveCaret(size_t offset, bool extend, bool atRowEnd)
{
    m_editing.moveTo(offset, extend);
    showCaret();
    m_caretAtRowEnd = atRowEnd;
}

void VL_TextView::moveCaretRows(long long rows, bool extend)
{
    VL_TextPlace place = caretPlace();
    const size_t column = m_editing.caret() - data().lineStart(place.line);
    if (m_wantedX < 0)
        m_wantedX = m_layout.xOf(place.line, place.row, column);
    step(place, rows);
    const size_t target = m_layout.columnAt(place.line, place.row, m_wantedX, false);
    m_editing.moveTo(data().lineStart(place.line) + target, extend);
    m_caretAtRowEnd = m_layout.wrapWidth() && target == m_layout.rowEnd(place.line, place.row);
    showCaret(true);
}

void VL_TextView::moveToRowEdge(bool end, bool extend)
{
    const VL_TextPlace place = caretPlace();
    const size_t start = data().lineStart(place.line);
    if (end) {
        moveCaret(start + m_layout.rowEnd(place.line, place.row), extend,
                  m_layout.wrapWidth() != 0);
        return;
    }
    // Home goes to the first character that is no blank, and from there to the very start.
    const size_t begin = start + m_layout.rowStart(place.line, place.row);
    size_t text = begin;
    const size_t rowEnd = start + m_layout.rowEnd(place.line, place.row);
    while (text < rowEnd && (data().at(text) == L' ' || data().at(text) == L'\t'))
        ++text;
    const bool blank = text == rowEnd;
    moveCaret(!blank && m_editing.caret() != text ? text : begin, extend);
}

void VL_TextView::scrollRows(long long rows)
{
    step(m_top, rows);
    m_dirty = true;
}

void VL_TextView::scrollColumns(long long pixels)
{
    m_scrollX = (std::max)(0LL, (std::min)(m_scrollX + pixels, widestScroll()));
    m_dirty = true;
}

void VL_TextView::scrollTo(bool end)
{
    m_top = VL_TextPlace();
    if (end) {
        m_top.line = data().lineCount() - 1;
        m_top.row = m_layout.rowCount(m_top.line) - 1;
    }
    m_dirty = true;
}

void VL_TextView::scrollToCaret()
{
    const VL_TextPlace place = caretPlace();
    const long long rows = visibleRows();
    if (isBefore(place, m_top)) {
        VL_TextPlace above = place;
        // Just above, the view moves by what is missing; from far, the caret comes to the middle.
        step(above, rows);
        const bool isNear = !isBefore(above, m_top);
        m_top = place;
        if (!isNear)
            step(m_top, -rows / 2);
    } else {
        const long long distance = rowsFromTop(place, 2 * rows);
        if (distance >= rows) {
            m_top = place;
            step(m_top, distance >= 2 * rows ? -rows / 2 : 1 - rows);
        }
    }
    if (m_wordWrap || m_align != 0)
        return;
    const RECT area = textArea();
    const long long width = area.right - area.left;
    const long long x =
        m_layout.xOf(place.line, place.row, m_editing.caret() - data().lineStart(place.line));
    m_extent = (std::max)(m_extent, x + m_font.averageWidth());
    if (x < m_scrollX)
        m_scrollX = (std::max)(0LL, x - width / 4);
    else if (x > m_scrollX + width - m_font.averageWidth())
        m_scrollX = (std::max)(0LL, x - width + (std::max)(width / 4, 1LL));
}

// Lines count without wrapping. Wrapped, rows are known only where they were laid out: units count.
VL_TextBar::Range VL_TextView::verticalRange()
{
    const int rows = visibleRows();
    if (!m_layout.wrapWidth())
        return {(long long)data().lineCount(), rows, (long long)m_top.line};
    VL_TextPlace end;
    if (step(end, rows) < rows)
        return {1, 1, 0};
    const long long total = (long long)data().length() + 1;
    const long long inLine = total / (long long)data().lineCount() + 1;
    const long long inRow = (std::max)(1, m_layout.wrapWidth() / m_font.averageWidth());
    const long long perRow = inLine / ((inLine + inRow - 1) / inRow);
    const long long page = (std::max)(1LL, (std::min)(perRow * rows, total - 1));
    end = m_top;
    if (step(end, rows) < rows)
        return {total, page, total - page};
    return {total, page, (std::min)((long long)offsetOf(m_top), total - page)};
}

void VL_TextView::updateBars()
{
    m_barsPosted = false;
    m_vertical.show(m_window, verticalRange());
    const RECT area = textArea();
    const bool wide = widestScroll() > 0;
    const long long width = wide ? area.right - area.left : 1;
    m_horizontal.show(m_window, {wide ? m_extent : 1, width, m_scrollX});
}

// How far the view can go to the right.
long long VL_TextView::widestScroll() const
{
    const RECT area = textArea();
    return m_wordWrap ? 0 : (std::max)(0LL, m_extent - (area.right - area.left));
}

void VL_TextView::dragTo(int bar, WPARAM wParam)
{
    if (bar == SB_HORZ)
        return scrollColumns(m_horizontal.draggedTo(m_window, wParam) - m_scrollX);
    const long long position = m_vertical.draggedTo(m_window, wParam);
    if (m_vertical.isEnd(position))
        return scrollTo(true);
    m_top = VL_TextPlace();
    if (!m_layout.wrapWidth()) {
        m_top.line = (size_t)position;
    } else {
        m_top.line = data().lineOf((size_t)position);
        const size_t column = (size_t)position - data().lineStart(m_top.line);
        m_top.row = m_layout.rowOf(m_top.line, column, false);
    }
    m_dirty = true;
}

void VL_TextView::onScroll(int bar, WPARAM wParam)
{
    const RECT area = textArea();
    const bool vertical = bar == SB_VERT;
    const long long line = vertical ? 1 : m_font.averageWidth() * 3;
    const long long width = area.right - area.left;
    const long long page = (std::max)(1LL, vertical ? visibleRows() - 1 : width - line);
    const auto scroll = [this, vertical](long long amount) {
        if (vertical)
            scrollRows(amount);
        else
            scrollColumns(amount);
    };
    switch (LOWORD(wParam)) {
    case SB_LINEUP:
        return scroll(-line);
    case SB_LINEDOWN:
        return scroll(line);
    case SB_PAGEUP:
        return scroll(-page);
    case SB_PAGEDOWN:
        return scroll(page);
    case SB_TOP:
        return vertical ? scrollTo(false) : scrollColumns(-m_scrollX);
    case SB_BOTTOM:
        return vertical ? scrollTo(true) : scrollColumns(m_extent);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        if (m_barsPosted)
            updateBars();
        return dragTo(bar, wParam);
    default:
        return;
    }
}

// Takes up the window's size, the margin and the width for wrapping; the top row stays the top row.
void VL_TextView::measureWindow()
{
    GetClientRect(m_window, &m_client);
    int margin = 0;
    if (m_lineNumbers) {
        const int digits = (std::max)(2, vl_text_view::digitsOf(data().lineCount()));
        margin =
            m_givenMargin ? scaled(m_givenMargin) : digits * m_font.digitWidth() + 2 * scaled(6);
        margin = (std::min)(margin, (int)m_client.right);
    }
    if (margin != m_marginWidth)
        invalidate();
    m_marginWidth = margin;
    const RECT area = textArea();
    const int width = (std::max)((int)(area.right - area.left), 4 * m_font.averageWidth());
    const int wrap = m_wordWrap ? width : 0;
    if (wrap == m_layout.wrapWidth())
        return;
    const size_t column = m_layout.rowStart(m_top.line, m_top.row);
    m_layout.setWrapWidth(wrap);
    m_top.row = m_layout.rowOf(m_top.line, column, false);
    invalidate();
}

// Lines as they stand on the screen now.
void VL_TextView::invalidateLines(size_t first, size_t last)
{
    if (!m_window || last < m_top.line)
        return;
    RECT area = m_client;
    const long long rows = visibleRows() + 1;
    if (first > m_top.line || (first == m_top.line && m_top.row == 0)) {
        VL_TextPlace place;
        place.line = (std::min)(first, data().lineCount() - 1);
        const long long distance = rowsFromTop(place, rows + 1);
        if (distance > rows)
            return;
        area.top = textArea().top + (int)distance * m_font.lineHeight();
    }
    if (last < data().lineCount() && !m_layout.wrapWidth()) {
        const size_t below = (std::min)(last - m_top.line, (size_t)rows);
        area.bottom = textArea().top + ((int)below + 1) * m_font.lineHeight();
    }
    InvalidateRect(m_window, &area, FALSE);
}

// Paints again where the selection has become another one.
void VL_TextView::showSelection()
{
    const size_t anchor = m_editing.anchor();
    const size_t caret = m_editing.caret();
    const auto stale = [this](size_t a, size_t b) {
        if (a != b)
            invalidateLines(data().lineOf((std::min)(a, b)), data().lineOf((std::max)(a, b)));
    };
    if (anchor == m_shownAnchor) {
        stale(m_shownCaret, caret);
    } else {
        stale(m_shownAnchor, m_shownCaret);
        stale(anchor, caret);
    }
    m_shownAnchor = anchor;
    m_shownCaret = caret;
}

void VL_TextView::settle()
{
    if (!m_window)
        return;
    m_layout.setTabSpaces(tabSpaces());
    if (m_dirty || m_wantsCaret) {
        m_dirty = false;
        measureWindow();
        if (m_wantsCaret)
            scrollToCaret();
        m_wantsCaret = false;
        clampTop();
        m_scrollX = (std::min)(m_scrollX, widestScroll());
        // Drawing the bars takes longer than all else: once is enough for all that comes until the
        // program waits for messages.
        if (!m_barsPosted)
            m_barsPosted = PostMessageW(m_window, VTB_WM_UPDATE_BARS, 0, 0) != FALSE;
        if (!m_barsPosted)
            updateBars();
    }
    if (m_top.line != m_shownTop.line || m_top.row != m_shownTop.row || m_scrollX != m_shownX) {
        const bool sameTop = m_top.line == m_shownTop.line && m_top.row == m_shownTop.row;
        m_scrolled = m_scrolled || !sameTop;
        m_shownTop = m_top;
        m_shownX = m_scrollX;
        invalidate();
    }
    if (m_staleFrom != vl_text_view::kNone)
        invalidateLines(m_staleFrom, m_staleTo);
    m_staleFrom = vl_text_view::kNone;
    m_staleTo = 0;
    showSelection();
    placeCaret();
    m_font.release();
}

void VL_TextView::takeNews(bool &changed, bool &scrolled)
{
    changed = m_changed;
    scrolled = m_scrolled;
    m_changed = m_scrolled = false;
}

bool VL_TextView::caretPoint(POINT &point)
{
    const VL_TextPlace place = caretPlace();
    const RECT area = textArea();
    point.x = area.left;
    point.y = area.top;
    if (isBefore(place, m_top))
        return false;
    const long long rows = rowsFromTop(place, visibleRows() + 1);
    if (rows > visibleRows())
        return false;
    const long long x =
        rowLeft(place) +
        m_layout.xOf(place.line, place.row, m_editing.caret() - data().lineStart(place.line));
    // Blanks that hang over the edge do not take the caret out of sight.
    const long long edge = (std::max)(area.left, m_client.right - 1);
    if (x < m_marginWidth || (x > edge && !m_wordWrap))
        return false;
    point.x = (LONG)(std::min)(x, edge);
    point.y += (LONG)rows * m_font.lineHeight();
    return true;
}

void VL_TextView::placeCaret()
{
    if (!m_focused)
        return;
    const bool fresh = !m_hasCaret;
    if (fresh) {
        DWORD width = 1;
        SystemParametersInfoW(SPI_GETCARETWIDTH, 0, &width, 0);
        CreateCaret(m_window, NULL, (int)(std::max)(width, (DWORD)scaled(1)), lineHeight());
        ShowCaret(m_window);
        m_hasCaret = true;
    }
    POINT point;
    if (!caretPoint(point))
        point = {-100, -1000};
    // Setting it starts its blinking anew.
    if (!fresh && point.x == m_caretPoint.x && point.y == m_caretPoint.y)
        return;
    m_caretPoint = point;
    SetCaretPos(point.x, point.y);
}

void VL_TextView::focusChanged(bool focused)
{
    m_focused = focused;
    m_hasCaret = false;
    if (!focused)
        DestroyCaret();
    if (m_editing.hasSelection())
        invalidateLines(data().lineOf(m_editing.selectionBegin()),
                        data().lineOf(m_editing.selectionEnd()));
}

// The horizontal bar grows with what was seen.
void VL_TextView::noteWidth(const VL_TextPlace &place)
{
    const size_t length = m_layout.rowEnd(place.line, place.row);
    const long long width = length > vl_text_view::kLongLine
                                ? (long long)length * m_font.averageWidth()
                                : m_layout.xOf(place.line, place.row, length);
    if (width + m_font.averageWidth() <= m_extent)
        return;
    m_extent = width + m_font.averageWidth();
    m_dirty = true;
}

void VL_TextView::paintRows(HDC context, const RECT &clip)
{
    const bool enabled = IsWindowEnabled(m_window) != FALSE;
    const VTB_Colors colors = VTB_ColorsOf(m_window, m_focused, enabled);
    VTB_RowPainter painter(data(), m_layout, m_font, colors);
    VTB_Fill(context, clip, colors.back);
    RECT margin = m_client;
    margin.right = m_marginWidth;
    VTB_Fill(context, margin, colors.marginBack);
    VTB_Row row = {};
    row.selectionBegin = m_editing.selectionBegin();
    row.selectionEnd = m_editing.selectionEnd();
    row.highlights = m_highlighting;
    VL_TextPlace place = m_top;
    const int height = m_font.lineHeight();
    for (int y = textArea().top; y < clip.bottom && y < m_client.bottom; y += height) {
        if (y + height > clip.top) {
            row.back = m_lineColors.of(place.line, colors.back);
            row.line = place.line;
            row.row = place.row;
            row.left = rowLeft(place);
            row.place = {m_marginWidth, y, m_client.right, y + height};
            painter.paint(context, row);
            const RECT number = {0, y, m_marginWidth, y + height};
            if (m_marginWidth > 0 && place.row == 0)
                painter.paintNumber(context, place.line, number, scaled(6));
        }
        if (!m_wordWrap)
            noteWidth(place);
        if (step(place, 1) == 0)
            break;
    }
}

void VL_TextView::paint(HDC target, const RECT &clip)
{
    if (!m_window)
        return;
    VTB_PaintBuffered(target, clip, [this, &clip](HDC context) {
        const HGDIOBJ oldFont = SelectObject(context, m_font.handle());
        paintRows(context, clip);
        SelectObject(context, oldFont);
    });
}
