// GDI+ start-up and loading pictures into bitmaps.
#include "01_images.h"

// gdiplus.h needs the COM types, and min and max in its own namespace.
#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_images {
namespace {

ULONG_PTR g_gdiPlusToken = 0;
int g_gdiPlusUsers = 0;

Gdiplus::Color backgroundColor()
{
    return Gdiplus::Color(255, 240, 240, 240);
}

} // namespace
} // namespace vl_images

void VL_InitGdiPlus()
{
    if (vl_images::g_gdiPlusUsers++ > 0)
        return;
    Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&vl_images::g_gdiPlusToken, &input, NULL);
}

void VL_ShutdownGdiPlus()
{
    if (vl_images::g_gdiPlusUsers == 0 || --vl_images::g_gdiPlusUsers > 0)
        return;
    Gdiplus::GdiplusShutdown(vl_images::g_gdiPlusToken);
    vl_images::g_gdiPlusToken = 0;
}

HBITMAP VL_LoadImageToBitmap(const std::wstring &path)
{
    Gdiplus::Bitmap image(path.c_str());
    HBITMAP bitmap = NULL;
    if (image.GetLastStatus() == Gdiplus::Ok)
        image.GetHBITMAP(vl_images::backgroundColor(), &bitmap);
    return bitmap;
}

HBITMAP VL_LoadImageToBitmapScaled(const std::wstring &path, int width, int height)
{
    if (width <= 0 || height <= 0)
        return NULL;
    Gdiplus::Bitmap image(path.c_str());
    if (image.GetLastStatus() != Gdiplus::Ok || image.GetWidth() == 0 || image.GetHeight() == 0)
        return NULL;

    const int roomX = width - 4 > 0 ? width - 4 : width;
    const int roomY = height - 4 > 0 ? height - 4 : height;
    const double scale =
        std::min((double)roomX / image.GetWidth(), (double)roomY / image.GetHeight());
    const int drawnX = std::max(1, (int)(image.GetWidth() * scale));
    const int drawnY = std::max(1, (int)(image.GetHeight() * scale));

    Gdiplus::Bitmap canvas(width, height, PixelFormat32bppARGB);
    Gdiplus::Graphics graphics(&canvas);
    graphics.Clear(vl_images::backgroundColor());
    graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.DrawImage(&image, (width - drawnX) / 2, (height - drawnY) / 2, drawnX, drawnY);
    HBITMAP bitmap = NULL;
    canvas.GetHBITMAP(vl_images::backgroundColor(), &bitmap);
    return bitmap;
}
