// Drawing canvases: a window class of its own that keeps what is drawn on it.
#pragma once
#include "68_raster.h"
#include "73_background_pictures.h"
#include "85_parent_background.h"

// A canvas shows its background colour (white without one), a picture above it, and above both what
// was drawn and written. Drawings stay where they are when the canvas is resized; they are lost
// beyond its edges as they are at the time. Places and sizes are design pixels, colours 0xBBGGRR.
// All functions do nothing with a window of another class.
void VL_RegisterDrawCanvasClass(HINSTANCE instance);
void VL_DrawCanvas_ApplyProps(HWND canvas, int backColor, bool antialias);
bool VL_DrawCanvas_GetAntialias(HWND canvas);
// Holds for what is drawn from then on.
void VL_DrawCanvas_SetAntialias(HWND canvas, bool on);
void VL_DrawCanvas_Invalidate(HWND canvas);

// What shapes are drawn with: the pixels, how many of them a design pixel has, smooth edges or not.
struct VL_CanvasTarget
{
    VL_Surface &surface;
    double scale;
    bool smooth;
};
// Lets `draw` draw and repaints later; false, and nothing drawn, when there is no canvas or no
// room.
bool VL_DrawCanvas_Draw(HWND canvas, const std::function<void(VL_CanvasTarget &)> &draw);
// Between the two nothing is repainted, then all at once. Calls may nest.
void VL_DrawCanvas_BeginDraw(HWND canvas);
void VL_DrawCanvas_EndDraw(HWND canvas);

// Takes all drawings away.
void VL_DrawCanvas_ClearOverlay(HWND canvas);
// The same, and covers the whole canvas with a colour.
void VL_DrawCanvas_Clear(HWND canvas);
void VL_DrawCanvas_Clear(HWND canvas, int color);
// The colour that shows; -1 outside.
int VL_DrawCanvas_GetPixel(HWND canvas, double x, double y);
// The whole canvas as PNG, JPEG, BMP or TIFF, by the extension.
bool VL_DrawCanvas_Save(HWND canvas, const std::wstring &path);

// From the top left corner on; size in points. An empty font is the canvas's own.
void VL_DrawCanvas_AddText(HWND canvas, double x, double y, const std::wstring &text,
                           int color = RGB(0, 0, 0), double size = 12);
void VL_DrawCanvas_AddText(HWND canvas, double x, double y, const std::wstring &text, int color,
                           double size, const std::wstring &font, bool bold = false);
int VL_DrawCanvas_TextWidth(HWND canvas, const std::wstring &text, double size = 12,
                            const std::wstring &font = std::wstring(), bool bold = false);
int VL_DrawCanvas_TextHeight(HWND canvas, const std::wstring &text, double size = 12,
                             const std::wstring &font = std::wstring(), bool bold = false);
// Stretched to the size; a width or height of 0 is the picture's own. Paths as in picture boxes.
// False when the picture cannot be read.
bool VL_DrawCanvas_DrawImage(HWND canvas, const std::wstring &path, double x, double y,
                             double width = 0, double height = 0);
bool VL_DrawCanvas_DrawImageBytes(HWND canvas, const VL_ByteArray &bytes, double x, double y,
                                  double width = 0, double height = 0);
