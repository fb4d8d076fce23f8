// Painting the rows of the large text box: colours, words of the language, the margin with numbers.
#pragma once
#include "34_window_state.h"
#include "92_text_layout.h"

// Kinds of units; plain numbers, which the operators of variants leave alone.
const int VTB_PLAIN = 0;
const int VTB_KEYWORD = 1;
const int VTB_STRING = 2;
const int VTB_COMMENT = 3;
const int VTB_NUMBER = 4;
const int VTB_TOKEN_KINDS = 5;

struct VTB_Colors
{
    COLORREF token[VTB_TOKEN_KINDS];
    COLORREF back;
    COLORREF selectedText;
    COLORREF selectedBack;
    COLORREF marginText;
    COLORREF marginBack;
};
// By the colours set for the control and its state. Words keep readable on a dark background.
VTB_Colors VTB_ColorsOf(HWND control, bool focused, bool enabled);

// Backgrounds of single lines, which stay with their lines when lines come and go.
class VTB_LineColors
{
public:
    bool empty() const { return m_colors.empty(); }
    void clear() { m_colors.clear(); }
    void set(size_t line, COLORREF color) { m_colors[line] = color; }
    COLORREF of(size_t line, COLORREF otherwise) const;
    void linesChanged(size_t line, size_t column, std::ptrdiff_t lines);

private:
    std::map<size_t, COLORREF> m_colors;
};

// The kind of each unit of one line. A comment or string ends with its line.
void VTB_ScanLine(const std::wstring &line, std::vector<unsigned char> &kinds);

// One row and how to paint it; pixels and units as in VL_TextLayout.
struct VTB_Row
{
    size_t line;
    size_t row;
    // Where the row's x 0 lies, and the part of the window that is painted, device pixels.
    long long left;
    RECT place;
    size_t selectionBegin; // offsets in the text
    size_t selectionEnd;
    COLORREF back;
    bool highlights;
};

class VTB_RowPainter
{
public:
    VTB_RowPainter(const VirtualTextData &data, VL_TextLayout &layout, VL_TextFont &font,
                   const VTB_Colors &colors)
        : m_data(data), m_layout(layout), m_font(font), m_colors(colors)
    {}
    // The font must be selected. Returns the x behind what was painted: the row's width when its
    // end is to be seen.
    long long paint(HDC context, const VTB_Row &row);
    // The line's number, right-aligned in `place`.
    void paintNumber(HDC context, size_t line, const RECT &place, int padding);

private:
    struct Run
    {
        size_t begin = 0;
        long long x = 0;
        int kind = VTB_PLAIN;
        bool selected = false;
        bool elsewhere = false;
    };
    void scan(const VTB_Row &row, size_t lineStart, size_t lineLength);
    void draw(HDC context, const VTB_Row &row, const Run &run, long long right);
    void fill(HDC context, const VTB_Row &row, long long from, long long to, COLORREF color);

    const VirtualTextData &m_data;
    VL_TextLayout &m_layout;
    VL_TextFont &m_font;
    const VTB_Colors &m_colors;
    size_t m_scannedLine = (size_t)-1;
    std::vector<unsigned char> m_kinds;
    // The run that is being gathered.
    std::wstring m_text;
    std::vector<int> m_widths;
};

// Whether light text stands out from it.
bool VTB_IsDark(COLORREF color);
// Fills an area, quicker than with a brush.
void VTB_Fill(HDC context, const RECT &area, COLORREF color);
// Calls `paint` with a context whose content then appears at `clip` at once. Coordinates are those
// of `target`.
void VTB_PaintBuffered(HDC target, const RECT &clip, const std::function<void(HDC)> &paint);
