// Where the characters of the large text box stand: measured widths, rows, columns.
#include "92_text_layout.h"

#include <algorithm>

namespace vl_text_layout {
namespace {

// Columns between two marks of a long line.
const size_t kStep = 1024;
// Characters of width 0 must not make a row endless.
const size_t kLongestRow = 4096;
const size_t kMostLines = 2048;

bool isHigh(wchar_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(wchar_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

bool isBlank(wchar_t unit)
{
    return unit == L' ' || unit == L'\t' || unit == 0x3000;
}

// Scripts that break between any two characters.
bool isWide(wchar_t unit)
{
    return (unit >= 0x2E80 && unit < 0xD800) || (unit >= 0xF900 && unit < 0xFB00) ||
           (unit >= 0xFF00 && unit < 0xFFF0);
}

bool isOneOf(wchar_t unit, const wchar_t *list)
{
    return unit != 0 && wcschr(list, unit) != NULL;
}

// Signs that do not begin a row: closing marks, commas, stops.
bool closes(wchar_t unit)
{
    return isOneOf(unit, L",.;:!?)]}%\u3001\u3002\u3009\u300B\u300D\u300F\u3011\u3015\u2019\u201D"
                         L"\u2026\uFF01\uFF05\uFF09\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F\uFF3D\uFF5D");
}

bool opens(wchar_t unit)
{
    return isOneOf(unit, L"([{\u3008\u300A\u300C\u300E\u3010\u3014\u2018\u201C\uFF08\uFF3B\uFF5B");
}

} // namespace
} // namespace vl_text_layout

wchar_t VTB_ShownUnit(wchar_t unit)
{
    return unit < 0x20 || unit == 0x7F ? L'\u00B7' : unit;
}

void VL_TextFont::set(HFONT font, int spacing)
{
    dropFallback();
    for (std::vector<unsigned short> &page : m_pages)
        std::vector<unsigned short>().swap(page);
    m_pairs.clear();
    m_font = font ? font : (HFONT)GetStockObject(DEFAULT_GUI_FONT);
    TEXTMETRICW metric = {};
    if (open() && GetTextMetricsW(m_context, &metric)) {
        m_lineHeight = (std::max)(1L, metric.tmHeight) + spacing;
        m_baseline = spacing / 2 + metric.tmAscent;
        m_averageWidth = (std::max)(1L, metric.tmAveCharWidth);
    }
    m_digitWidth = 1;
    for (wchar_t digit = L'0'; digit <= L'9'; ++digit)
        m_digitWidth = (std::max)(m_digitWidth, width(digit));
}

void VL_TextFont::release()
{
    if (!m_context)
        return;
    SelectObject(m_context, m_oldFont);
    DeleteDC(m_context);
    m_context = NULL;
}

void VL_TextFont::dropFallback()
{
    release();
    if (m_fallback)
        DeleteObject(m_fallback);
    m_fallback = NULL;
}

bool VL_TextFont::open()
{
    if (m_context)
        return true;
    m_context = CreateCompatibleDC(NULL);
    if (m_context)
        m_oldFont = SelectObject(m_context, m_font);
    return m_context != NULL;
}

bool VL_TextFont::hasGlyph(wchar_t unit)
{
    WORD glyph = 0;
    return GetGlyphIndicesW(m_context, &unit, 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS) == 1 &&
           glyph != 0xFFFF;
}

int VL_TextFont::measure(const wchar_t *text, int units)
{
    SIZE size = {};
    if (!open() || !GetTextExtentPoint32W(m_context, text, units, &size))
        return m_averageWidth;
    return (std::max)(0, (std::min)((int)size.cx, 0x7FFE));
}

unsigned VL_TextFont::cell(wchar_t unit)
{
    std::vector<unsigned short> &page = m_pages[(unsigned short)unit >> 8];
    if (page.empty())
        page.assign(256, (unsigned short)kUnknown);
    unsigned short &known = page[unit & 0xFF];
    if (known != kUnknown)
        return known;
    const wchar_t shown = VTB_ShownUnit(unit);
    known = (unsigned short)measure(&shown, 1);
    if (shown < 0x80 || !m_context || hasGlyph(shown))
        return known;
    LOGFONTW wanted = {};
    if (!m_fallback && GetObjectW(m_font, sizeof(wanted), &wanted)) {
        lstrcpynW(wanted.lfFaceName, L"Microsoft YaHei UI", LF_FACESIZE);
        wanted.lfCharSet = DEFAULT_CHARSET;
        m_fallback = CreateFontIndirectW(&wanted);
    }
    if (m_fallback) {
        SelectObject(m_context, m_fallback);
        if (hasGlyph(shown))
            known = (unsigned short)(measure(&shown, 1) | kElsewhere);
        SelectObject(m_context, m_font);
    }
    return known;
}

int VL_TextFont::width(wchar_t unit, wchar_t second)
{
    if (!second)
        return (int)(cell(unit) & ~kElsewhere);
    const unsigned key = (unsigned)unit << 16 | (unsigned short)second;
    const auto known = m_pairs.find(key);
    if (known != m_pairs.end())
        return known->second;
    if (m_pairs.size() > 0x10000)
        m_pairs.clear();
    const wchar_t pair[2] = {unit, second};
    return m_pairs[key] = measure(pair, 2);
}

void VL_TextLayout::setWrapWidth(int width)
{
    if (width == m_wrapWidth)
        return;
    m_wrapWidth = width;
    reset();
}

void VL_TextLayout::setTabSpaces(int spaces)
{
    spaces = (std::max)(1, (std::min)(spaces, 32));
    if (spaces == m_tabSpaces)
        return;
    m_tabSpaces = spaces;
    reset();
}

void VL_TextLayout::textChanged(size_t line, size_t column, std::ptrdiff_t lines)
{
    if (lines != 0)
        m_lines.erase(m_lines.upper_bound(line), m_lines.end());
    const auto found = m_lines.find(line);
    if (found == m_lines.end())
        return;
    // What is ahead of the change stays, but for the row above it: a word may move up there.
    Line &known = found->second;
    const auto row = std::upper_bound(known.rows.begin(), known.rows.end(), column);
    const size_t keep = (size_t)(row - known.rows.begin());
    known.rows.resize(keep > 2 ? keep - 2 : (std::min)(known.rows.size(), (size_t)1));
    // A mark's pair of units may have been torn apart, hence one unit more.
    known.marks.resize(
        (std::min)(known.marks.size(), (column ? column - 1 : 0) / vl_text_layout::kStep + 1));
    known.complete = false;
}

VL_TextLayout::Line &VL_TextLayout::lineFor(size_t line)
{
    const auto found = m_lines.find(line);
    if (found != m_lines.end())
        return found->second;
    if (m_lines.size() >= vl_text_layout::kMostLines)
        m_lines.clear();
    return m_lines[line];
}

// Reads the units from..to of a line and those next to them into m_units.
void VL_TextLayout::load(size_t lineStart, size_t length, size_t from, size_t to)
{
    m_first = from ? from - 1 : 0;
    m_units.resize((std::min)(to + 1, length) - m_first);
    if (!m_units.empty())
        m_data.copy(lineStart + m_first, m_units.size(), m_units.data());
}

long long VL_TextLayout::advance(const wchar_t *text, size_t i, size_t count, long long x)
{
    using namespace vl_text_layout;
    const wchar_t unit = text[i];
    if (unit == L'\t') {
        const long long stop = (long long)(std::max)(1, m_font.width(L' ') * m_tabSpaces);
        return (x / stop + 1) * stop;
    }
    if (isHigh(unit) && i + 1 < count && isLow(text[i + 1]))
        return x + m_font.width(unit, text[i + 1]);
    // The first half has the width of both.
    if (isLow(unit) && i > 0 && isHigh(text[i - 1]))
        return x;
    return x + m_font.width(unit);
}

// The x at column `to`, given the one at `from`.
long long VL_TextLayout::measure(size_t lineStart, size_t length, size_t from, size_t to,
                                 long long x)
{
    while (from < to) {
        const size_t end = (std::min)(to, from + vl_text_layout::kStep);
        load(lineStart, length, from, end);
        for (; from < end; ++from)
            x = advance(m_units.data(), from - m_first, m_units.size(), x);
    }
    return x;
}

bool VL_TextLayout::breaksBefore(const wchar_t *text, size_t i) const
{
    using namespace vl_text_layout;
    const wchar_t left = text[i - 1];
    const wchar_t right = text[i];
    if (isBlank(right))
        return false;
    if (isBlank(left))
        return true;
    return (isWide(left) || isWide(right)) && !closes(right) && !opens(left);
}

// The column behind the row that begins at `column`.
size_t VL_TextLayout::nextRow(size_t start, size_t length, size_t column)
{
    using namespace vl_text_layout;
    const size_t limit = (std::min)(length, column + kLongestRow);
    size_t candidate = 0;
    long long x = 0;
    for (size_t i = column; i < limit;) {
        const size_t end = (std::min)(limit, i + 256);
        load(start, length, i, end);
        for (; i < end; ++i) {
            const size_t local = i - m_first;
            if (i > column && breaksBefore(m_units.data(), local))
                candidate = i;
            x = advance(m_units.data(), local, m_units.size(), x);
            // Blanks may hang over the edge: no row begins with the blank between two words.
            if (x <= m_wrapWidth || isBlank(m_units[local]))
                continue;
            if (candidate > column)
                return candidate;
            const bool pair =
                isHigh(m_units[local]) && local + 1 < m_units.size() && isLow(m_units[local + 1]);
            return i > column ? i : (std::min)(length, i + (pair ? 2 : 1));
        }
    }
    // A row cut at the limit must not part a pair.
    if (limit < length && isHigh(m_data.at(start + limit - 1)) && isLow(m_data.at(start + limit)))
        return limit - 1;
    return limit;
}

// The line's record with its rows known up to that one, when it has so many.
VL_TextLayout::Line &VL_TextLayout::laidOut(size_t line, size_t row)
{
    Line &known = lineFor(line);
    if (known.rows.empty())
        known.rows.push_back(0);
    if (known.complete || known.rows.size() > row)
        return known;
    const size_t start = m_data.lineStart(line);
    const size_t length = m_data.lineEnd(line) - start;
    while (!known.complete && known.rows.size() <= row) {
        const size_t end = nextRow(start, length, known.rows.back());
        if (end >= length)
            known.complete = true;
        else
            known.rows.push_back(end);
    }
    return known;
}

bool VL_TextLayout::hasRow(size_t line, size_t row)
{
    return row == 0 || (m_wrapWidth && laidOut(line, row).rows.size() > row);
}

size_t VL_TextLayout::rowCount(size_t line)
{
    return m_wrapWidth ? laidOut(line, (size_t)-1).rows.size() : 1;
}

size_t VL_TextLayout::rowStart(size_t line, size_t row)
{
    if (!m_wrapWidth)
        return 0;
    const std::vector<size_t> &rows = laidOut(line, row).rows;
    return rows[(std::min)(row, rows.size() - 1)];
}

size_t VL_TextLayout::rowEnd(size_t line, size_t row)
{
    if (m_wrapWidth && row + 1 != 0) {
        const std::vector<size_t> &rows = laidOut(line, row + 1).rows;
        if (row + 1 < rows.size())
            return rows[row + 1];
    }
    return m_data.lineEnd(line) - m_data.lineStart(line);
}

size_t VL_TextLayout::rowOf(size_t line, size_t column, bool atRowEnd)
{
    if (!m_wrapWidth)
        return 0;
    for (size_t row = 0;; row += row / 2 + 16) {
        const Line &found = laidOut(line, row);
        if (found.rows.back() > column || found.complete)
            break;
    }
    const std::vector<size_t> &rows = lineFor(line).rows;
    const auto after = std::upper_bound(rows.begin(), rows.end(), column);
    const size_t row = (size_t)(after - rows.begin()) - 1;
    return atRowEnd && row > 0 && rows[row] == column ? row - 1 : row;
}

// The last marked column at or ahead of both `column` and `x`. Marks are made on the way.
size_t VL_TextLayout::markBefore(size_t line, size_t start, size_t length, size_t column,
                                 long long x)
{
    using namespace vl_text_layout;
    if (length <= kStep)
        return 0;
    std::vector<long long> &marks = lineFor(line).marks;
    if (marks.empty())
        marks.push_back(0);
    const size_t wanted = (std::min)(column, length) / kStep;
    while (marks.size() <= wanted && marks.back() <= x) {
        const size_t from = (marks.size() - 1) * kStep;
        marks.push_back(measure(start, length, from, from + kStep, marks.back()));
    }
    const size_t byX = (size_t)(std::upper_bound(marks.begin(), marks.end(), x) - marks.begin());
    return (std::min)(wanted, byX ? byX - 1 : 0) * kStep;
}

long long VL_TextLayout::xOf(size_t line, size_t row, size_t column)
{
    const size_t start = m_data.lineStart(line);
    const size_t length = m_data.lineEnd(line) - start;
    column = (std::min)(column, length);
    if (m_wrapWidth)
        return measure(start, length, rowStart(line, row), column, 0);
    const size_t from = markBefore(line, start, length, column, 0x7FFFFFFFFFFFFFFF);
    const long long x = from ? lineFor(line).marks[from / vl_text_layout::kStep] : 0;
    return measure(start, length, from, column, x);
}

size_t VL_TextLayout::columnAt(size_t line, size_t row, long long x, bool floor)
{
    using namespace vl_text_layout;
    const size_t start = m_data.lineStart(line);
    const size_t length = m_data.lineEnd(line) - start;
    size_t from = rowStart(line, row);
    const size_t end = m_wrapWidth ? rowEnd(line, row) : length;
    long long left = 0;
    if (!m_wrapWidth) {
        from = markBefore(line, start, length, length, x);
        left = from ? lineFor(line).marks[from / kStep] : 0;
    }
    size_t best = from;
    while (from < end) {
        const size_t blockEnd = (std::min)(end, from + kStep);
        load(start, length, from, blockEnd);
        for (; from < blockEnd; ++from) {
            const size_t local = from - m_first;
            const bool second = isLow(m_units[local]) && local > 0 && isHigh(m_units[local - 1]);
            if (second)
                continue;
            best = from;
            const long long right = advance(m_units.data(), local, m_units.size(), left);
            if (x < (floor ? right : left + (right - left + 1) / 2))
                return best;
            left = right;
        }
    }
    return end;
}
