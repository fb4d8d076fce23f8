// Where the lines of the large text box stand in its window.
#include "92_text_rows.h"

#include <algorithm>

namespace vl_text_rows {
namespace {

// Design pixels beside and above the text.
const int kPadding = 4;
const int kTopPadding = 2;

} // namespace
} // namespace vl_text_rows

VL_TextRows::VL_TextRows(HWND window) : m_window(window), m_layout(m_editing.data(), m_font) {}

bool VL_TextRows::isBefore(const VL_TextPlace &a, const VL_TextPlace &b)
{
    return a.line < b.line || (a.line == b.line && a.row < b.row);
}

int VL_TextRows::scaled(int value) const
{
    return VL_ScaleX(m_window, value);
}

int VL_TextRows::tabSpaces() const
{
    const int spaces = VL_GetNumberProperty(m_window, L"VL_VTB_TabSpaces", 4);
    return (std::max)(1, (std::min)(spaces, 32));
}

RECT VL_TextRows::textArea() const
{
    RECT area = m_client;
    area.left = m_marginWidth + scaled(vl_text_rows::kPadding);
    area.top = scaled(vl_text_rows::kTopPadding);
    area.right = (std::max)(area.left + 1, area.right - scaled(vl_text_rows::kPadding));
    return area;
}

int VL_TextRows::visibleRows() const
{
    const int height = m_client.bottom - 2 * scaled(vl_text_rows::kTopPadding);
    return (std::max)(1, height / m_font.lineHeight());
}

long long VL_TextRows::step(VL_TextPlace &place, long long rows)
{
    const size_t last = data().lineCount() - 1;
    if (!m_layout.wrapWidth()) {
        const size_t old = place.line;
        if (rows < 0)
            place.line -= (std::min)((unsigned long long)-rows, (unsigned long long)place.line);
        else
            place.line += (std::min)((unsigned long long)rows, (unsigned long long)(last - old));
        place.row = 0;
        return rows < 0 ? (long long)(old - place.line) : (long long)(place.line - old);
    }
    long long done = 0;
    for (; done < rows; ++done) {
        if (m_layout.hasRow(place.line, place.row + 1)) {
            ++place.row;
        } else if (place.line < last) {
            ++place.line;
            place.row = 0;
        } else {
            return done;
        }
    }
    for (; done < -rows; ++done) {
        if (place.row > 0) {
            --place.row;
        } else if (place.line > 0) {
            --place.line;
            place.row = m_layout.rowCount(place.line) - 1;
        } else {
            return done;
        }
    }
    return done;
}

// How many rows `place` lies below the top; `most` when it is that or more. Not for places above.
long long VL_TextRows::rowsFromTop(const VL_TextPlace &place, long long most)
{
    if (!m_layout.wrapWidth())
        return (long long)(std::min)((unsigned long long)(place.line - m_top.line),
                                     (unsigned long long)most);
    VL_TextPlace at = m_top;
    long long rows = 0;
    while (rows < most && isBefore(at, place) && step(at, 1) == 1)
        ++rows;
    return rows;
}

size_t VL_TextRows::offsetOf(const VL_TextPlace &place)
{
    return data().lineStart(place.line) + m_layout.rowStart(place.line, place.row);
}

VL_TextPlace VL_TextRows::caretPlace()
{
    VL_TextPlace place;
    const size_t caret = m_editing.caret();
    place.line = data().lineOf(caret);
    place.row = m_layout.rowOf(place.line, caret - data().lineStart(place.line), m_caretAtRowEnd);
    return place;
}

VL_TextRows::Hit VL_TextRows::hitTest(POINT point)
{
    const int y = point.y - scaled(vl_text_rows::kTopPadding);
    const int height = m_font.lineHeight();
    VL_TextPlace place = m_top;
    const long long rows = y >= 0 ? y / height : -((height - 1 - y) / height);
    step(place, rows);
    const long long x = point.x - rowLeft(place);
    const size_t column = m_layout.columnAt(place.line, place.row, x, false);
    const bool atEnd = m_layout.wrapWidth() && column == m_layout.rowEnd(place.line, place.row);
    return {data().lineStart(place.line) + column, atEnd};
}

// The x of the row's start in the window.
long long VL_TextRows::rowLeft(const VL_TextPlace &place)
{
    const RECT area = textArea();
    const long long left = area.left - m_scrollX;
    if (m_align == 0)
        return left;
    const size_t end = m_layout.rowEnd(place.line, place.row);
    if (end - m_layout.rowStart(place.line, place.row) > 4096)
        return left;
    const long long room = area.right - area.left - m_layout.xOf(place.line, place.row, end);
    return room <= 0 ? left : left + (m_align == 1 ? room / 2 : room);
}

// The last page stands at the bottom; below the text there is nothing to be seen.
void VL_TextRows::clampTop()
{
    m_top.line = (std::min)(m_top.line, data().lineCount() - 1);
    if (!m_layout.hasRow(m_top.line, m_top.row))
        m_top.row = m_layout.rowCount(m_top.line) - 1;
    const long long wanted = visibleRows() - 1;
    VL_TextPlace last = m_top;
    const long long below = step(last, wanted);
    if (below < wanted)
        step(m_top, below - wanted);
}
