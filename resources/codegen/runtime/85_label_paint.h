// How a label looks, and painting it.
#pragma once
#include "68_text_drawing.h"
#include "71_image_drawing.h"

// Bits of the window property "VL_BorderSides"; none means all.
enum
{
    VL_SIDE_TOP = 1,
    VL_SIDE_BOTTOM = 2,
    VL_SIDE_LEFT = 4,
    VL_SIDE_RIGHT = 8
};

// Lengths are design pixels, colours 0xBBGGRR or -1 for none.
struct VL_LabelLook
{
    int dpi = 96;
    int enabled = 1;
    int textAlign = -1;    // VL_ALIGN_*; -1 leaves it to the window style
    int verticalAlign = 1; // 0 top, 1 middle, 2 bottom
    int ellipsis = 0;
    int wordWrap = 0;
    int autoSize = 0;
    int padding = 0;
    VL_ImageMode pictureMode = VL_ImageMode::Stretch;

    int textColor = 0;
    int backColor = -1;
    int backColor2 = -1;
    int gradientVertical = 0;
    int gradientPreset = 0; // 1 to 10 in the order of the property's words, 0 none

    int borderStyle = VL_BORDER_NONE;
    int borderColor = 0x808080;
    int borderWidth = 1;
    int borderRadius = 0;
    int borderSides = 0;

    int shadow = 0;
    int shadowColor = 0x808080;
    int shadowX = 2;
    int shadowY = 2;
    int shadowBlur = 0;
    int stroke = 0;
    int strokeColor = 0;
    int strokeWidth = 1;
    int depth3D = 0;
    int depth = 3;
    int glow = 0;
    int glowColor = 0x00FFFF;
    int glowSize = 5;
};

// Whether the label covers all of its area, so that nothing behind it shows.
bool VL_IsLabelOpaque(const VL_LabelLook &look);
// Paints over what the surface shows. `text` is a text of VL_DrawableText.
void VL_PaintLabel(VL_Surface &surface, const VL_LabelLook &look, VL_ImageLayer &picture,
                   HFONT font, const std::wstring &text);
// The size that the label needs, in pixels; with word wrap for that width.
SIZE VL_FittingLabelSize(const VL_LabelLook &look, HFONT font, const std::wstring &text, int width);
