// Group boxes.
#include "43_group_boxes.h"

#include <algorithm>

namespace vl_group_boxes {
namespace {

const UINT_PTR SubclassId = 0x564C47;
const int StyleSystem = 2;
const int StyleFlat = 3;
const COLORREF StandardLine = RGB(213, 213, 213);

int styleOf(HWND box)
{
    return VL_GetNumberProperty(box, L"VL_GroupFlat", 1);
}

COLORREF titleColor(HWND box)
{
    if (!IsWindowEnabled(box))
        return GetSysColor(COLOR_GRAYTEXT);
    return VL_HasTextColor(box) ? (COLORREF)VL_GetTextColor(box) : GetSysColor(COLOR_WINDOWTEXT);
}

void drawFrame(HWND box, HDC context, const RECT &frame)
{
    const int style = styleOf(box);
    if (style == StyleSystem) {
        RECT edge = frame;
        DrawEdge(context, &edge, EDGE_ETCHED, BF_RECT);
        return;
    }
    const COLORREF flatLine = VL_MixColors(titleColor(box), RGB(255, 255, 255), 45);
    const int width = VL_ScaleX(box, 1);
    const HPEN pen = CreatePen(PS_INSIDEFRAME, width, style == StyleFlat ? flatLine : StandardLine);
    const HGDIOBJ oldPen = SelectObject(context, pen);
    const HGDIOBJ oldBrush = SelectObject(context, GetStockObject(NULL_BRUSH));
    const int across = style == StyleFlat ? 0 : VL_ScaleX(box, 6);
    RoundRect(context, frame.left, frame.top, frame.right, frame.bottom, across, across);
    SelectObject(context, oldBrush);
    SelectObject(context, oldPen);
    DeleteObject(pen);
}

// The frame runs through the middle of the title, which interrupts it.
void draw(HWND box, HDC context)
{
    RECT client = {};
    GetClientRect(box, &client);
    if (client.right <= 0 || client.bottom <= 0)
        return;
    VL_PaintBehind(box, context, client);
    HFONT font = (HFONT)SendMessageW(box, WM_GETFONT, 0, 0);
    if (!font)
        font = (HFONT)GetStockObject(DEFAULT_GUI_FONT);
    const HGDIOBJ oldFont = SelectObject(context, font);
    const std::wstring title = VL_GetText(box).substr(0, 1000);
    RECT place = {};
    DrawTextW(context, title.empty() ? L"X" : title.c_str(), -1, &place,
              DT_CALCRECT | DT_SINGLELINE);
    RECT frame = client;
    frame.top += place.bottom / 2;
    if (VL_HasBgColor(box))
        FillRect(context, &frame, VL_BgBrush(box));
    const int saved = SaveDC(context);
    const int indent = VL_ScaleX(box, 9), gap = VL_ScaleX(box, 2);
    place.right = (std::min)(place.right, client.right - 2 * indent);
    OffsetRect(&place, indent, 0);
    if (!title.empty())
        ExcludeClipRect(context, place.left - gap, place.top, place.right + gap, place.bottom);
    drawFrame(box, context, frame);
    RestoreDC(context, saved);
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, titleColor(box));
    DrawTextW(context, title.c_str(), -1, &place, DT_SINGLELINE | DT_END_ELLIPSIS);
    SelectObject(context, oldFont);
}

void paint(HWND box)
{
    PAINTSTRUCT paint = {};
    const HDC target = BeginPaint(box, &paint);
    RECT client = {};
    GetClientRect(box, &client);
    {
        const VL_BufferedPaint buffer(target, client);
        draw(box, buffer.context());
    }
    EndPaint(box, &paint);
}

} // namespace
} // namespace vl_group_boxes

LRESULT CALLBACK GroupBoxSubclassProc(HWND box, UINT message, WPARAM wParam, LPARAM lParam,
                                      UINT_PTR id, DWORD_PTR)
{
    using namespace vl_group_boxes;
    switch (message) {
    case WM_PAINT:
        paint(box);
        return 0;
    case WM_PRINTCLIENT:
        draw(box, (HDC)wParam);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETTEXT:
    case WM_SETFONT:
    case WM_ENABLE: {
        // The system would draw the title at once, in its own way.
        const LRESULT result = DefSubclassProc(box, message, wParam, lParam);
        InvalidateRect(box, NULL, FALSE);
        return result;
    }
    case WM_SIZE:
        InvalidateRect(box, NULL, FALSE);
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(box, GroupBoxSubclassProc, id);
        break;
    default:
        break;
    }
    return DefSubclassProc(box, message, wParam, lParam);
}

void VL_PrepareGroupBox(HWND box)
{
    if (!VL_HasClass(box, WC_BUTTONW))
        return;
    // What stands on it must not be painted over.
    SetWindowLongW(box, GWL_STYLE, GetWindowLongW(box, GWL_STYLE) | WS_CLIPSIBLINGS);
    SetWindowSubclass(box, GroupBoxSubclassProc, vl_group_boxes::SubclassId, 0);
    VL_KeepBehind(box);
    InvalidateRect(box, NULL, FALSE);
}
