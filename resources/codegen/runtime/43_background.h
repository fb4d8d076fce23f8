// What stands behind controls: painting it, and keeping containers behind what stands on them.
#pragma once
#include "35_control_text.h"

// Draws what the parent and the containers behind show at the control's place; `area` and the
// drawing are in the control's client coordinates. For controls that do not fill their rectangle.
void VL_PaintBehind(HWND control, HDC context, const RECT &area);
// Keeps a container behind its siblings, those made later as well; of several the one that was
// named first stays behind the others. A container shows through controls that use VL_PaintBehind
// when it answers WM_PRINTCLIENT.
void VL_KeepBehind(HWND container);

// Paints without flicker: everything drawn goes to a bitmap that is shown at the end. Without
// memory for one, drawing goes straight to the target.
class VL_BufferedPaint
{
public:
    VL_BufferedPaint(HDC target, const RECT &area);
    ~VL_BufferedPaint();
    VL_BufferedPaint(const VL_BufferedPaint &) = delete;
    VL_BufferedPaint &operator=(const VL_BufferedPaint &) = delete;

    // Has the coordinates of the target.
    HDC context() const { return m_context; }

private:
    HDC m_target;
    RECT m_area;
    HDC m_context;
    HBITMAP m_bitmap;
    HGDIOBJ m_old;
};
// `share` percent of `other` in `color`.
COLORREF VL_MixColors(COLORREF color, COLORREF other, int share);
