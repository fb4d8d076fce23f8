// Where the characters of the large text box stand: measured widths, rows, columns.
#pragma once
#include "90_text_buffer.h"

// A font's measures in pixels. Widths are measured once for each character.
class VL_TextFont
{
public:
    VL_TextFont() = default;
    ~VL_TextFont() { dropFallback(); }
    VL_TextFont(const VL_TextFont &) = delete;
    VL_TextFont &operator=(const VL_TextFont &) = delete;

    // NULL is the system's font for controls; `spacing` is added to the height of a line.
    void set(HFONT font, int spacing);
    HFONT handle() const { return m_font; }
    int lineHeight() const { return m_lineHeight; }
    // From the top of a line to the line that its characters stand on.
    int baseline() const { return m_baseline; }
    // Width of an average letter and of the widest digit; at least 1.
    int averageWidth() const { return m_averageWidth; }
    int digitWidth() const { return m_digitWidth; }
    // Width of a unit; of a surrogate pair when `second` is its other half.
    int width(wchar_t unit, wchar_t second = 0);
    // Whether the font lacks that character and another font shows it. Systems that link fonts do
    // so by themselves, but not all do.
    bool isElsewhere(wchar_t unit) { return (cell(unit) & kElsewhere) != 0; }
    HFONT elsewhere() const { return m_fallback; }
    // Gives back the device context that measuring keeps open; it is opened again when needed.
    void release();

private:
    static const unsigned kElsewhere = 0x8000;
    static const unsigned kUnknown = 0xFFFF;

    bool open();
    bool hasGlyph(wchar_t unit);
    int measure(const wchar_t *text, int units);
    unsigned cell(wchar_t unit);
    void dropFallback();

    HFONT m_font = NULL;
    // For characters that the font lacks; made when the first one comes.
    HFONT m_fallback = NULL;
    HDC m_context = NULL;
    HGDIOBJ m_oldFont = NULL;
    int m_lineHeight = 16;
    int m_baseline = 12;
    int m_averageWidth = 8;
    int m_digitWidth = 8;
    // Width, and kElsewhere, of each unit that was seen.
    std::vector<unsigned short> m_pages[256];
    std::map<unsigned, int> m_pairs;
};

// How a control character is shown.
wchar_t VTB_ShownUnit(wchar_t unit);

// Lays out lines as they are asked for and remembers what is costly: the rows of wrapped lines, and
// marks along lines of many thousand characters. Columns are units from the start of the line; x is
// in pixels from the left end of a row.
class VL_TextLayout
{
public:
    VL_TextLayout(const VirtualTextData &data, VL_TextFont &font) : m_data(data), m_font(font) {}

    // 0 does not wrap.
    void setWrapWidth(int width);
    int wrapWidth() const { return m_wrapWidth; }
    void setTabSpaces(int spaces);
    // Forgets everything; when the text or the font is another one.
    void reset() { m_lines.clear(); }
    // A change of the text that begins at that place.
    void textChanged(size_t line, size_t column, std::ptrdiff_t lines);

    // Rows count from 0; every line has one at least.
    bool hasRow(size_t line, size_t row);
    size_t rowCount(size_t line);
    // At the place between two rows, `atRowEnd` takes the upper one.
    size_t rowOf(size_t line, size_t column, bool atRowEnd);
    size_t rowStart(size_t line, size_t row);
    size_t rowEnd(size_t line, size_t row);
    long long xOf(size_t line, size_t row, size_t column);
    // The place nearest to `x`, or with `floor` the character that x lies in.
    size_t columnAt(size_t line, size_t row, long long x, bool floor);
    // The x behind the unit at `i` of a text of `count` units, given the x ahead of it.
    long long advance(const wchar_t *text, size_t i, size_t count, long long x);

private:
    struct Line
    {
        // Wrapped: the columns where rows begin. Otherwise the x at every kStep-th column.
        std::vector<size_t> rows;
        std::vector<long long> marks;
        bool complete = false;
    };

    Line &lineFor(size_t line);
    Line &laidOut(size_t line, size_t row);
    size_t nextRow(size_t start, size_t length, size_t column);
    bool breaksBefore(const wchar_t *text, size_t i) const;
    long long measure(size_t lineStart, size_t length, size_t from, size_t to, long long x);
    size_t markBefore(size_t line, size_t start, size_t length, size_t column, long long x);
    void load(size_t lineStart, size_t length, size_t from, size_t to);

    const VirtualTextData &m_data;
    VL_TextFont &m_font;
    int m_wrapWidth = 0;
    int m_tabSpaces = 4;
    std::map<size_t, Line> m_lines;
    // Units read last: from m_first on, with one more at each end where the line has one.
    std::vector<wchar_t> m_units;
    size_t m_first = 0;
};
