// Pictures drawn: scaled with care, tiled, centred; kept as drawn; saved.
#include "71_image_drawing.h"
#include "01_images.h"
#include "40_files.h"
#include "41_paths.h"

#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_image_drawing {
namespace {

// Weights are fixed-point numbers with this many bits behind the point.
const int kBits = 14;

// What flows into one pixel of a scaled row or column: weights of neighbours from `first` on.
struct Taps
{
    int first;
    int count;
    size_t weights;
};

struct Kernel
{
    std::vector<Taps> taps;
    std::vector<int> weights;
};

double cubic(double x)
{
    x = std::fabs(x);
    if (x < 1)
        return (1.5 * x - 2.5) * x * x + 1;
    return x < 2 ? ((2.5 - 0.5 * x) * x - 4) * x + 2 : 0;
}

// For the pixels `from` to `to` of `target`, scaled from `source` pixels.
Kernel kernelOf(int source, int target, int from, int to)
{
    Kernel kernel;
    const double step = (double)source / target;
    const double spread = std::max(1.0, step);
    std::vector<double> exact;
    for (int i = from; i < to; ++i) {
        const double middle = (i + 0.5) * step - 0.5;
        const int first = std::max(0, (int)std::ceil(middle - 2 * spread));
        const int last = std::min(source - 1, (int)std::floor(middle + 2 * spread));
        exact.clear();
        double sum = 0;
        for (int k = first; k <= last; ++k) {
            exact.push_back(cubic((k - middle) / spread));
            sum += exact.back();
        }
        kernel.taps.push_back({first, (int)exact.size(), kernel.weights.size()});
        for (const double weight : exact)
            kernel.weights.push_back((int)std::lround(weight / sum * (1 << kBits)));
    }
    return kernel;
}

VL_Argb weighted(const VL_Argb *pixels, size_t stride, const int *weights, int count)
{
    int alpha = 1 << (kBits - 1), red = alpha, green = alpha, blue = alpha;
    for (int i = 0; i < count; ++i, pixels += stride) {
        const VL_Argb pixel = *pixels;
        alpha += (int)(pixel >> 24) * weights[i];
        red += (int)(pixel >> 16 & 255) * weights[i];
        green += (int)(pixel >> 8 & 255) * weights[i];
        blue += (int)(pixel & 255) * weights[i];
    }
    const int a = std::min(255, std::max(0, alpha >> kBits));
    const int r = std::min(a, std::max(0, red >> kBits));
    const int g = std::min(a, std::max(0, green >> kBits));
    const int b = std::min(a, std::max(0, blue >> kBits));
    return (VL_Argb)a << 24 | (VL_Argb)r << 16 | (VL_Argb)g << 8 | (VL_Argb)b;
}

// The part `clip` of the picture scaled to `width` by `height`.
std::vector<VL_Argb> scaled(const VL_ImagePtr &image, int width, int height, const RECT &clip)
{
    const VL_ImagePixels source = VL_PixelsOf(image, width, height);
    const int clipWidth = clip.right - clip.left, clipHeight = clip.bottom - clip.top;
    std::vector<VL_Argb> result((size_t)clipWidth * clipHeight);
    if (source.width == width && source.height == height) {
        for (int y = 0; y < clipHeight; ++y)
            std::copy_n(source.values + (size_t)(clip.top + y) * width + clip.left, clipWidth,
                        result.data() + (size_t)y * clipWidth);
        return result;
    }
    const Kernel across = kernelOf(source.width, width, clip.left, clip.right);
    const Kernel down = kernelOf(source.height, height, clip.top, clip.bottom);
    const int firstRow = down.taps.front().first;
    const int rows = down.taps.back().first + down.taps.back().count - firstRow;
    std::vector<VL_Argb> narrow((size_t)clipWidth * rows);
    for (int y = 0; y < rows; ++y) {
        const VL_Argb *from = source.values + (size_t)(firstRow + y) * source.width;
        for (int x = 0; x < clipWidth; ++x) {
            const Taps &taps = across.taps[x];
            narrow[(size_t)y * clipWidth + x] =
                weighted(from + taps.first, 1, across.weights.data() + taps.weights, taps.count);
        }
    }
    for (int y = 0; y < clipHeight; ++y) {
        const Taps &taps = down.taps[y];
        const VL_Argb *from = narrow.data() + (size_t)(taps.first - firstRow) * clipWidth;
        for (int x = 0; x < clipWidth; ++x)
            result[(size_t)y * clipWidth + x] =
                weighted(from + x, clipWidth, down.weights.data() + taps.weights, taps.count);
    }
    return result;
}

void blendOver(VL_Argb &pixel, VL_Argb over)
{
    const unsigned rest = 255 - (over >> 24);
    if (rest == 0) {
        pixel = over;
    } else if (rest < 255) {
        VL_Argb result = 0;
        for (int shift = 0; shift < 32; shift += 8) {
            const unsigned below = (pixel >> shift & 255) * rest + 127;
            result |= std::min(255u, (over >> shift & 255) + below / 255) << shift;
        }
        pixel = result;
    }
}

// Draws the picture, scaled to cover `whole`, where it lies within `clip` and the surface.
void drawScaled(VL_Surface &surface, const VL_ImagePtr &image, const RECT &whole, const RECT &clip)
{
    const RECT all = {0, 0, surface.width(), surface.height()};
    RECT shown = {};
    if (!IntersectRect(&shown, &whole, &clip) || !IntersectRect(&shown, &shown, &all))
        return;
    RECT part = shown;
    OffsetRect(&part, -whole.left, -whole.top);
    const std::vector<VL_Argb> pixels =
        scaled(image, whole.right - whole.left, whole.bottom - whole.top, part);
    const int width = part.right - part.left;
    for (int y = shown.top; y < shown.bottom; ++y) {
        const VL_Argb *from = pixels.data() + (size_t)(y - shown.top) * width;
        VL_Argb *to = surface.row(y) + shown.left;
        for (int x = 0; x < width; ++x)
            blendOver(to[x], from[x]);
    }
}

void drawTiled(VL_Surface &surface, const VL_ImagePtr &image, const RECT &place, int dpi)
{
    const RECT all = {0, 0, surface.width(), surface.height()};
    RECT shown = {};
    if (!IntersectRect(&shown, &place, &all))
        return;
    const SIZE size = VL_ScaledImageSize(image, dpi);
    const RECT part = {0, 0, std::min(size.cx, place.right - place.left),
                       std::min(size.cy, place.bottom - place.top)};
    const std::vector<VL_Argb> tile = scaled(image, size.cx, size.cy, part);
    for (int y = shown.top; y < shown.bottom; ++y) {
        const VL_Argb *from = tile.data() + (size_t)((y - place.top) % size.cy) * part.right;
        for (int x = shown.left; x < shown.right; ++x)
            blendOver(surface.row(y)[x], from[(x - place.left) % size.cx]);
    }
}

RECT centered(const RECT &place, int width, int height)
{
    const LONG left = place.left + (place.right - place.left - width) / 2;
    const LONG top = place.top + (place.bottom - place.top - height) / 2;
    return {left, top, left + width, top + height};
}

RECT zoomed(const RECT &place, SIZE size)
{
    const double roomX = place.right - place.left, roomY = place.bottom - place.top;
    const double factor = std::min(roomX / size.cx, roomY / size.cy);
    return centered(place, std::max(1, (int)(size.cx * factor + 0.5)),
                    std::max(1, (int)(size.cy * factor + 0.5)));
}

const unsigned long kJpeg = 0x557cf401;

Gdiplus::EncoderParameters highQuality()
{
    static ULONG quality = 92;
    static const GUID kQuality = {
        0x1d5be4b5, 0xfa4a, 0x452d, {0x9c, 0xdd, 0x5d, 0xb3, 0x51, 0x05, 0xe7, 0xeb}};
    Gdiplus::EncoderParameters parameters = {};
    parameters.Count = 1;
    parameters.Parameter[0].Guid = kQuality;
    parameters.Parameter[0].Type = Gdiplus::EncoderParameterValueTypeLong;
    parameters.Parameter[0].NumberOfValues = 1;
    parameters.Parameter[0].Value = &quality;
    return parameters;
}

// Encoders that the system always has differ in the lowest part of the first number.
GUID encoderOf(const std::wstring &extension)
{
    GUID id = {0, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
    static const struct
    {
        const wchar_t *extension;
        unsigned long number;
    } kKnown[] = {{L".bmp", 0x557cf400}, {L".jpg", kJpeg},       {L".jpeg", kJpeg},
                  {L".tif", 0x557cf405}, {L".tiff", 0x557cf405}, {L".png", 0x557cf406}};
    for (const auto &known : kKnown) {
        if (_wcsicmp(known.extension, extension.c_str()) == 0)
            id.Data1 = known.number;
    }
    return id;
}

bool writeStream(IStream *stream, const std::wstring &path)
{
    HGLOBAL memory = NULL;
    STATSTG state = {};
    if (FAILED(GetHGlobalFromStream(stream, &memory)) ||
        FAILED(stream->Stat(&state, STATFLAG_NONAME)) || state.cbSize.QuadPart == 0)
        return false;
    const void *data = GlobalLock(memory);
    const bool done = data && VL_SaveFileBytes(path, data, (size_t)state.cbSize.QuadPart);
    if (data)
        GlobalUnlock(memory);
    return done;
}

} // namespace
} // namespace vl_image_drawing

VL_ImageMode VL_ImageModeOf(const std::wstring &word)
{
    if (word == L"\u62C9\u4F38" || _wcsicmp(word.c_str(), L"stretch") == 0)
        return VL_ImageMode::Stretch;
    if (word == L"\u5E73\u94FA" || _wcsicmp(word.c_str(), L"tile") == 0)
        return VL_ImageMode::Tile;
    if (word == L"\u5C45\u4E2D" || _wcsicmp(word.c_str(), L"center") == 0)
        return VL_ImageMode::Center;
    return VL_ImageMode::Zoom;
}

std::wstring VL_ImageModeText(VL_ImageMode mode)
{
    switch (mode) {
    case VL_ImageMode::Stretch:
        return L"\u62C9\u4F38";
    case VL_ImageMode::Tile:
        return L"\u5E73\u94FA";
    case VL_ImageMode::Center:
        return L"\u5C45\u4E2D";
    default:
        return L"\u7F29\u653E";
    }
}

SIZE VL_ScaledImageSize(const VL_ImagePtr &image, int dpi)
{
    const SIZE size = VL_ImageSize(image);
    return {std::max(1, MulDiv(size.cx, dpi, 96)), std::max(1, MulDiv(size.cy, dpi, 96))};
}

void VL_DrawImage(VL_Surface &surface, const VL_ImagePtr &image, const RECT &place,
                  VL_ImageMode mode, int dpi)
{
    using namespace vl_image_drawing;
    if (!image || !surface.valid() || IsRectEmpty(&place))
        return;
    GdiFlush();
    const SIZE natural = VL_ScaledImageSize(image, dpi);
    switch (mode) {
    case VL_ImageMode::Stretch:
        drawScaled(surface, image, place, place);
        break;
    case VL_ImageMode::Tile:
        drawTiled(surface, image, place, dpi);
        break;
    case VL_ImageMode::Center:
        drawScaled(surface, image, centered(place, natural.cx, natural.cy), place);
        break;
    case VL_ImageMode::Zoom:
        drawScaled(surface, image, zoomed(place, natural), place);
        break;
    }
}

void VL_ImageLayer::setImage(const VL_ImagePtr &image)
{
    m_image = image;
    m_valid = false;
    if (!image)
        m_drawn.release();
}

void VL_ImageLayer::showFrame(int frame)
{
    VL_ShowImageFrame(m_image, frame);
    m_valid = false;
}

void VL_ImageLayer::blendTo(HDC target, const RECT &place, VL_ImageMode mode, int dpi)
{
    const int width = place.right - place.left, height = place.bottom - place.top;
    if (!m_image || width < 1 || height < 1)
        return;
    const bool fits = m_drawn.width() == width && m_drawn.height() == height;
    if (!m_valid || !fits || mode != m_mode || dpi != m_dpi) {
        m_valid = m_drawn.create(width, height);
        m_mode = mode;
        m_dpi = dpi;
        VL_DrawImage(m_drawn, m_image, {0, 0, width, height}, mode, dpi);
    }
    m_drawn.blendTo(target, place.left, place.top);
}

bool VL_SaveImage(const VL_Surface &surface, const std::wstring &path)
{
    const GUID encoder = vl_image_drawing::encoderOf(VL_GetFileExt(path));
    if (!surface.valid() || encoder.Data1 == 0)
        return false;
    GdiFlush();
    VL_InitGdiPlus();
    bool done = false;
    IStream *stream = nullptr;
    if (SUCCEEDED(CreateStreamOnHGlobal(NULL, TRUE, &stream))) {
        {
            Gdiplus::Bitmap bitmap(surface.width(), surface.height(), surface.width() * 4,
                                   PixelFormat32bppRGB, (BYTE *)surface.row(0));
            Gdiplus::EncoderParameters parameters = vl_image_drawing::highQuality();
            const bool isJpeg = encoder.Data1 == vl_image_drawing::kJpeg;
            done = bitmap.Save(stream, &encoder, isJpeg ? &parameters : NULL) == Gdiplus::Ok;
        }
        done = done && vl_image_drawing::writeStream(stream, path);
        stream->Release();
    }
    VL_ShutdownGdiPlus();
    return done;
}
