// Text in lines: breaking, placing, shortening, and text as a mask for effects.
#pragma once
#include "68_raster.h"

// The text as it is drawn: line ends are single \n, a tab is four blanks, what no screen could show
// is left out.
std::wstring VL_DrawableText(const std::wstring &text);

struct VL_DrawnLine
{
    size_t start;
    size_t length;
    int width; // pixels
};
struct VL_DrawnText
{
    std::vector<VL_DrawnLine> lines;
    int lineHeight = 1;
    int width = 0; // of the widest line
    int height() const { return lineHeight * (int)lines.size(); }
};
// Cuts a text of VL_DrawableText into lines for the font selected in `dc`; with `wrap` also where
// `width` pixels are full. At most `mostLines` lines are made.
VL_DrawnText VL_BreakText(HDC dc, const std::wstring &text, int width, bool wrap, int mostLines);

struct VL_DrawnPlace
{
    RECT area;
    int align = 0;    // 0 left, 1 centre, 2 right
    int vertical = 0; // 0 top, 1 middle, 2 bottom; lines that are too high begin at the top
    bool ellipsis = false;
};
// Draws with the font, colour and mode of `dc`.
void VL_DrawBrokenText(HDC dc, const std::wstring &text, const VL_DrawnText &layout,
                       const VL_DrawnPlace &place);
// What that would cover, with `margin` pixels around it, within `bounds`.
VL_Mask VL_MaskOfText(HFONT font, const std::wstring &text, const VL_DrawnText &layout,
                      const VL_DrawnPlace &place, int margin, const RECT &bounds);
