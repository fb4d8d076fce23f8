// Pictures behind windows and controls.
#include "73_background_pictures.h"

#include "58_byte_array_values.h"

#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_background_pictures {
namespace {

const wchar_t kStretch[] = L"\u62C9\u4F38";
const wchar_t kTile[] = L"\u5E73\u94FA";
const wchar_t kCenter[] = L"\u5C45\u4E2D";
const wchar_t kZoom[] = L"\u7F29\u653E";

const UINT_PTR kPanelSubclass = 0x564C73;
const UINT_PTR kPictureSubclass = 0x564C74;

// Wider pictures would take gigabytes.
const double kMostPixels = 1e8;

// A picture of a window or control, and what it gives in the present size.
struct Picture
{
    std::unique_ptr<Gdiplus::Bitmap> image;
    std::wstring path;
    std::wstring mode = kStretch;
    HBITMAP scaled = NULL;
    HBRUSH brush = NULL;
    SIZE size = {0, 0};
    COLORREF under = 0;

    ~Picture() { clear(); }
    void clear()
    {
        if (brush)
            DeleteObject(brush);
        if (scaled)
            DeleteObject(scaled);
        brush = NULL;
        scaled = NULL;
    }
};

// Panels and group boxes that controls lie on without being inside them.
struct Backdrops
{
    std::vector<HWND> windows;
};

// A copy of its own: neither file nor bytes are needed afterwards.
std::unique_ptr<Gdiplus::Bitmap> decode(const VL_ByteArray &bytes)
{
    static const bool started = (VL_InitGdiPlus(), true);
    (void)started;
    std::unique_ptr<Gdiplus::Bitmap> copy;
    const HGLOBAL memory = bytes.empty() ? NULL : GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    if (!memory)
        return copy;
    memcpy(GlobalLock(memory), bytes.ptr(), bytes.size());
    GlobalUnlock(memory);
    IStream *stream = NULL;
    if (CreateStreamOnHGlobal(memory, TRUE, &stream) != S_OK) {
        GlobalFree(memory);
        return copy;
    }
    {
        Gdiplus::Bitmap read(stream);
        const UINT width = read.GetWidth();
        const UINT height = read.GetHeight();
        if (read.GetLastStatus() == Gdiplus::Ok && width > 0 && height > 0 &&
            (double)width * height <= kMostPixels) {
            copy.reset(new Gdiplus::Bitmap((INT)width, (INT)height, PixelFormat32bppPARGB));
            Gdiplus::Graphics graphics(copy.get());
            graphics.DrawImage(&read, 0, 0, (INT)width, (INT)height);
        }
    }
    stream->Release();
    return copy;
}

// Fits the picture into the area, as large as its proportions allow.
Gdiplus::RectF zoomed(Gdiplus::Bitmap &image, const SIZE &area)
{
    const double width = image.GetWidth();
    const double height = image.GetHeight();
    const double scale = std::min(area.cx / width, area.cy / height);
    return Gdiplus::RectF((float)((area.cx - width * scale) / 2),
                          (float)((area.cy - height * scale) / 2), (float)(width * scale),
                          (float)(height * scale));
}

void drawPicture(HWND window, const Picture &picture, Gdiplus::Graphics &graphics)
{
    Gdiplus::Bitmap &image = *picture.image;
    const int width = VL_ScaleX(window, (int)image.GetWidth());
    const int height = VL_ScaleY(window, (int)image.GetHeight());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBilinear);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    Gdiplus::ImageAttributes edges;
    // Without this the border pixels mix with what lies beneath.
    edges.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
    const auto drawAt = [&](const Gdiplus::RectF &place) {
        graphics.DrawImage(&image, place, 0, 0, (float)image.GetWidth(), (float)image.GetHeight(),
                           Gdiplus::UnitPixel, &edges);
    };
    if (picture.mode == kTile) {
        Gdiplus::TextureBrush tiles(&image, Gdiplus::WrapModeTile);
        tiles.ScaleTransform((float)width / (float)image.GetWidth(),
                             (float)height / (float)image.GetHeight());
        graphics.FillRectangle(&tiles, 0, 0, (INT)picture.size.cx, (INT)picture.size.cy);
    } else if (picture.mode == kCenter) {
        drawAt(Gdiplus::RectF((float)((picture.size.cx - width) / 2),
                              (float)((picture.size.cy - height) / 2), (float)width,
                              (float)height));
    } else if (picture.mode == kZoom) {
        drawAt(zoomed(image, picture.size));
    } else {
        drawAt(Gdiplus::RectF(0, 0, (float)picture.size.cx, (float)picture.size.cy));
    }
}

// The colour where the picture leaves room: the window's own or what is behind a control.
COLORREF colorUnder(HWND window)
{
    if (VL_HasBgColor(window))
        return (COLORREF)VL_GetBgColor(window);
    const HWND ground = VL_GroundOf(window);
    return (COLORREF)(ground ? VL_GetBgColor(ground) : (int)GetSysColor(COLOR_BTNFACE));
}

// Makes the bitmap of the window's size unless it is there.
bool prepare(HWND window, Picture &picture)
{
    RECT client = {};
    GetClientRect(window, &client);
    const COLORREF under = colorUnder(window);
    if (picture.scaled && picture.size.cx == client.right && picture.size.cy == client.bottom &&
        picture.under == under)
        return true;
    picture.clear();
    if (client.right <= 0 || client.bottom <= 0)
        return false;
    picture.size = {client.right, client.bottom};
    picture.under = under;
    const HDC screen = GetDC(NULL);
    const HDC memory = CreateCompatibleDC(screen);
    picture.scaled = CreateCompatibleBitmap(screen, client.right, client.bottom);
    ReleaseDC(NULL, screen);
    if (memory && picture.scaled) {
        const HGDIOBJ before = SelectObject(memory, picture.scaled);
        const HBRUSH fill = CreateSolidBrush(under);
        FillRect(memory, &client, fill);
        DeleteObject(fill);
        {
            Gdiplus::Graphics graphics(memory);
            drawPicture(window, picture, graphics);
        }
        SelectObject(memory, before);
    }
    if (memory)
        DeleteDC(memory);
    return picture.scaled != NULL;
}

Picture *pictureOf(HWND window)
{
    Picture *picture = VL_FindExtra<Picture>(window);
    return picture && picture->image ? picture : nullptr;
}

bool isTransparentContainer(HWND window)
{
    return (GetWindowLongW(window, GWL_STYLE) & WS_CHILD) &&
           (VL_HasClass(window, WC_STATICW) || VL_HasClass(window, WC_BUTTONW));
}

bool hasGround(HWND window)
{
    return pictureOf(window) || VL_BgBrush(window);
}

// The smallest backdrop among the control's siblings that holds it.
HWND backdropOf(HWND control, HWND parent)
{
    const Backdrops *backdrops = VL_FindExtra<Backdrops>(parent);
    if (!backdrops)
        return NULL;
    RECT own = {};
    GetWindowRect(control, &own);
    HWND best = NULL;
    LONGLONG bestArea = 0;
    for (HWND window : backdrops->windows) {
        RECT place = {};
        RECT common = {};
        if (window == control || GetParent(window) != parent || !VL_IsVisible(window) ||
            !hasGround(window) || !GetWindowRect(window, &place))
            continue;
        const LONGLONG area = (LONGLONG)(place.right - place.left) * (place.bottom - place.top);
        const bool holds = IntersectRect(&common, &place, &own) && EqualRect(&common, &own);
        if (holds && (!best || area < bestArea)) {
            best = window;
            bestArea = area;
        }
    }
    return best;
}

void repaint(HWND window)
{
    RedrawWindow(window, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

LRESULT CALLBACK panelProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR)
{
    LRESULT result = 0;
    if (VL_PassToOwner(window, message, wParam, lParam, &result))
        return result;
    switch (message) {
    case WM_ERASEBKGND:
        // Painting fills all of it.
        return 1;
    case WM_SIZE:
        result = DefSubclassProc(window, message, wParam, lParam);
        InvalidateRect(window, NULL, FALSE);
        return result;
    case WM_PARENTNOTIFY:
        // Only with controls inside the Tab key has to look here.
        if (LOWORD(wParam) == WM_CREATE) {
            SetWindowLongW(window, GWL_EXSTYLE,
                           GetWindowLongW(window, GWL_EXSTYLE) | WS_EX_CONTROLPARENT);
        }
        break;
    case WM_NCDESTROY:
        RemoveWindowSubclass(window, panelProcedure, kPanelSubclass);
        break;
    default:
        break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

// For controls that know nothing of pictures.
LRESULT CALLBACK pictureProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR)
{
    if (message == WM_ERASEBKGND && VL_PaintBackground(window, (HDC)wParam))
        return 1;
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(window, pictureProcedure, kPictureSubclass);
    const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
    if (message == WM_SIZE)
        InvalidateRect(window, NULL, TRUE);
    return result;
}

void readyControl(HWND control)
{
    if (!(GetWindowLongW(control, GWL_STYLE) & WS_CHILD))
        return;
    if (VL_HasClass(control, WC_STATICW)) {
        VL_PreparePanel(control);
        return;
    }
    SetWindowSubclass(control, pictureProcedure, kPictureSubclass, 0);
    VL_AddBackdrop(control);
}

// Offers the picture to the control; what it does not take is drawn here.
void apply(HWND window, const VL_ControlImage &image)
{
    if (!IsWindow(window) || SendMessageW(window, VL_WM_SET_IMAGE, (WPARAM)&image, 0))
        return;
    const bool isKnown = image.mode == kStretch || image.mode == kTile || image.mode == kCenter ||
                         image.mode == kZoom;
    Picture *picture = VL_Extra<Picture>(window);
    if (!picture)
        return;
    if (isKnown)
        picture->mode = image.mode;
    if (!image.keepPicture) {
        picture->path = image.bytes ? std::wstring() : image.path;
        if (image.bytes)
            picture->image = decode(*image.bytes);
        else if (image.path.empty())
            picture->image.reset();
        else
            picture->image = decode(VL_ReadFileByteArray(VL_FindProgramFile(image.path)));
        if (picture->image)
            readyControl(window);
    }
    picture->clear();
    repaint(window);
}

} // namespace
} // namespace vl_background_pictures

void VL_SetWindowBackground(HWND window, const std::wstring &path, const std::wstring &mode)
{
    VL_ControlImage image;
    image.path = path;
    image.mode = mode;
    vl_background_pictures::apply(window, image);
}

void VL_SetWindowBackgroundFromBytes(HWND window, const VL_ByteArray &bytes)
{
    VL_ControlImage image;
    image.bytes = &bytes;
    vl_background_pictures::apply(window, image);
}

void VL_SetWindowBackgroundScaleMode(HWND window, const std::wstring &mode)
{
    VL_ControlImage image;
    image.mode = mode;
    image.keepPicture = true;
    vl_background_pictures::apply(window, image);
}

std::wstring VL_GetWindowBackgroundPath(HWND window)
{
    VL_ControlImage image;
    if (IsWindow(window) && SendMessageW(window, VL_WM_GET_IMAGE, (WPARAM)&image, 0))
        return image.path;
    const vl_background_pictures::Picture *picture =
        VL_FindExtra<vl_background_pictures::Picture>(window);
    return picture ? picture->path : std::wstring();
}

std::wstring VL_GetWindowBackgroundMode(HWND window)
{
    VL_ControlImage image;
    if (IsWindow(window) && SendMessageW(window, VL_WM_GET_IMAGE, (WPARAM)&image, 0))
        return image.mode;
    const vl_background_pictures::Picture *picture =
        VL_FindExtra<vl_background_pictures::Picture>(window);
    return picture ? picture->mode : vl_background_pictures::kStretch;
}

void VL_SetControlBackgroundImage(HWND control, const std::wstring &path)
{
    VL_SetWindowBackground(control, path);
}

void VL_SetControlBackgroundImage(HWND control, const VL_ByteArray &bytes)
{
    VL_SetWindowBackgroundFromBytes(control, bytes);
}

void VL_SetControlBackgroundImage(HWND control, const VL_Any &pathOrBytes)
{
    if (pathOrBytes.type == VL_Any::TypeBytes)
        VL_SetWindowBackgroundFromBytes(control, pathOrBytes);
    else
        VL_SetWindowBackground(control, pathOrBytes.toStr());
}

void VL_PreparePanel(HWND panel)
{
    using namespace vl_background_pictures;
    if (!IsWindow(panel))
        return;
    SetWindowLongW(panel, GWL_STYLE,
                   GetWindowLongW(panel, GWL_STYLE) | WS_CLIPCHILDREN | WS_CLIPSIBLINGS);
    SetWindowSubclass(panel, panelProcedure, kPanelSubclass, 0);
    VL_AddBackdrop(panel);
}

void VL_AddBackdrop(HWND container)
{
    using namespace vl_background_pictures;
    Backdrops *backdrops = VL_Extra<Backdrops>(GetParent(container));
    if (!backdrops)
        return;
    std::vector<HWND> &windows = backdrops->windows;
    windows.erase(std::remove_if(windows.begin(), windows.end(),
                                 [](HWND window) { return !IsWindow(window); }),
                  windows.end());
    if (std::find(windows.begin(), windows.end(), container) == windows.end())
        windows.push_back(container);
}

bool VL_HasBackgroundPicture(HWND window)
{
    return vl_background_pictures::pictureOf(window) != nullptr;
}

bool VL_PaintBackground(HWND window, HDC context)
{
    using namespace vl_background_pictures;
    Picture *picture = pictureOf(window);
    if (picture && prepare(window, *picture)) {
        const HDC memory = CreateCompatibleDC(context);
        const HGDIOBJ before = SelectObject(memory, picture->scaled);
        BitBlt(context, 0, 0, picture->size.cx, picture->size.cy, memory, 0, 0, SRCCOPY);
        SelectObject(memory, before);
        DeleteDC(memory);
        return true;
    }
    const HBRUSH brush = VL_BgBrush(window);
    if (!brush)
        return false;
    RECT client = {};
    GetClientRect(window, &client);
    FillRect(context, &client, brush);
    return true;
}

HBRUSH VL_OwnGroundBrush(HWND window)
{
    using namespace vl_background_pictures;
    Picture *picture = pictureOf(window);
    if (!picture || !prepare(window, *picture))
        return VL_BgBrush(window);
    if (!picture->brush)
        picture->brush = CreatePatternBrush(picture->scaled);
    return picture->brush;
}

void VL_SetBrushCorner(HDC context, int x, int y)
{
    POINT corner = {x, y};
    LPtoDP(context, &corner, 1);
    SetBrushOrgEx(context, corner.x, corner.y, NULL);
}

HWND VL_GroundOf(HWND control)
{
    using namespace vl_background_pictures;
    for (HWND window = control; GetWindowLongW(window, GWL_STYLE) & WS_CHILD;) {
        const HWND parent = GetParent(window);
        if (!parent)
            return NULL;
        if (const HWND backdrop = backdropOf(window, parent))
            return backdrop;
        if (hasGround(parent))
            return parent;
        if (!isTransparentContainer(parent))
            return NULL;
        window = parent;
    }
    return NULL;
}

HBRUSH VL_BrushBehind(HWND control, HDC context)
{
    const HWND ground = VL_GroundOf(control);
    const HBRUSH brush = ground ? VL_OwnGroundBrush(ground) : NULL;
    if (brush) {
        POINT corner = {0, 0};
        MapWindowPoints(ground, control, &corner, 1);
        VL_SetBrushCorner(context, corner.x, corner.y);
    }
    return brush;
}

void VL_RefreshBackground(HWND window)
{
    using namespace vl_background_pictures;
    if (Picture *picture = pictureOf(window)) {
        picture->clear();
        repaint(window);
    }
}
