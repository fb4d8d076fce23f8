// Pictures in memory: reading any image file's bytes into a bitmap, writing a bitmap as PNG.
#include "16_picture_bytes.h"

#include "01_images.h"

// gdiplus.h needs the COM types, and min and max in its own namespace.
#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_picture_bytes {
namespace {

typedef const unsigned char *Bytes;

const int MostPixelsAcross = 16384;

// GDI+ for the time of one piece of work.
struct GdiPlus
{
    GdiPlus() { VL_InitGdiPlus(); }
    ~GdiPlus() { VL_ShutdownGdiPlus(); }
};

unsigned word(Bytes bytes)
{
    return bytes[0] | bytes[1] << 8;
}

DWORD doubleWord(Bytes bytes)
{
    return word(bytes) | (DWORD)word(bytes + 2) << 16;
}

IStream *streamOf(const void *bytes, size_t size)
{
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size ? size : 1);
    if (!memory)
        return NULL;
    memcpy(GlobalLock(memory), bytes, size);
    GlobalUnlock(memory);
    IStream *stream = NULL;
    if (FAILED(CreateStreamOnHGlobal(memory, TRUE, &stream)))
        GlobalFree(memory);
    return stream;
}

// Draws the picture into a new one of that size.
HBITMAP fitted(Gdiplus::Bitmap &source, int width, int height)
{
    const int ownWidth = (int)source.GetWidth(), ownHeight = (int)source.GetHeight();
    if (source.GetLastStatus() != Gdiplus::Ok || ownWidth <= 0 || ownHeight <= 0)
        return NULL;
    if (width <= 0 || height <= 0) {
        width = ownWidth;
        height = ownHeight;
    }
    const HBITMAP picture = VL_NewPicture(width, height);
    unsigned char *bits = VL_PictureBits(picture, NULL, NULL);
    if (!bits)
        return NULL;
    const double scale = std::min((double)width / ownWidth, (double)height / ownHeight);
    const int drawnWidth = std::max(1, (int)std::lround(ownWidth * scale));
    const int drawnHeight = std::max(1, (int)std::lround(ownHeight * scale));

    Gdiplus::Bitmap canvas(width, height, width * 4, PixelFormat32bppPARGB, bits);
    Gdiplus::Graphics graphics(&canvas);
    if (drawnWidth != ownWidth || drawnHeight != ownHeight)
        graphics.SetInterpolationMode(Gdiplus::InterpolationModeHighQualityBicubic);
    graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
    // Without this the edges would fade into what lies outside the picture.
    Gdiplus::ImageAttributes attributes;
    attributes.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
    const Gdiplus::Rect place((width - drawnWidth) / 2, (height - drawnHeight) / 2, drawnWidth,
                              drawnHeight);
    graphics.DrawImage(&source, place, 0, 0, ownWidth, ownHeight, Gdiplus::UnitPixel, &attributes);
    graphics.Flush(Gdiplus::FlushIntentionSync);
    return picture;
}

bool hasOpacity(Bytes bits, size_t pixels)
{
    for (size_t i = 0; i < pixels; ++i) {
        if (bits[i * 4 + 3] != 0)
            return true;
    }
    return false;
}

// Lines of 32 bits with opacity that is not premultiplied, as BMP files and icons hold them.
HBITMAP fromLines(Bytes bits, int width, int height, bool bottomFirst, int newWidth, int newHeight)
{
    const bool opacity = hasOpacity(bits, (size_t)width * height);
    const INT stride = bottomFirst ? -width * 4 : width * 4;
    Bytes first = bottomFirst ? bits + (size_t)(height - 1) * width * 4 : bits;
    Gdiplus::Bitmap source(width, height, stride,
                           opacity ? PixelFormat32bppARGB : PixelFormat32bppRGB,
                           const_cast<BYTE *>(first));
    return fitted(source, newWidth, newHeight);
}

// Whether a header of uncompressed lines is sound, and how long it is with its colours.
bool isPlainDib(const BITMAPINFOHEADER &header, size_t size, size_t *behind)
{
    const WORD bits = header.biBitCount;
    const bool masks = header.biCompression == BI_BITFIELDS;
    const bool depth =
        bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
    if (header.biSize < sizeof(header) || header.biSize > 1000 || !depth || header.biPlanes != 1 ||
        header.biWidth <= 0 || header.biWidth > MostPixelsAcross || header.biHeight == 0 ||
        header.biHeight > MostPixelsAcross || header.biHeight < -MostPixelsAcross ||
        (header.biCompression != BI_RGB && !(masks && bits >= 16 && bits != 24)) ||
        header.biClrUsed > 256)
        return false;
    size_t colors = header.biClrUsed;
    if (bits <= 8 && (colors == 0 || colors > (size_t)1 << bits))
        colors = (size_t)1 << bits;
    *behind = header.biSize + colors * sizeof(RGBQUAD);
    if (masks && header.biSize == sizeof(header))
        *behind += 3 * sizeof(DWORD);
    return *behind <= size;
}

// A BMP file. GDI+ would leave out the opacity of those of 32 bits.
HBITMAP fromBmp(Bytes bytes, size_t size, int width, int height)
{
    const size_t headers = 14 + 40;
    const size_t offset = size < headers ? 0 : doubleWord(bytes + 10);
    if (offset < headers || offset > size)
        return NULL;
    const HBITMAP plain = VL_PictureFromDib(bytes + 14, size - 14, offset - 14);
    int columns = 0, lines = 0;
    const unsigned char *bits = VL_PictureBits(plain, &columns, &lines);
    if (!bits)
        return NULL;
    const DWORD compression = doubleWord(bytes + 30);
    const bool colors = compression == BI_RGB ||
                        (doubleWord(bytes + 54) == 0xFF0000 && doubleWord(bytes + 58) == 0xFF00 &&
                         doubleWord(bytes + 62) == 0xFF);
    const bool deep = word(bytes + 28) == 32 && colors;
    const HBITMAP picture = deep ? fromLines(bytes + offset, columns, lines,
                                             (int)doubleWord(bytes + 22) > 0, width, height)
                                 : fromLines(bits, columns, lines, false, width, height);
    DeleteObject(plain);
    return picture;
}

HBITMAP fromGdiPlus(Bytes bytes, size_t size, int width, int height)
{
    IStream *stream = streamOf(bytes, size);
    if (!stream)
        return NULL;
    HBITMAP picture = NULL;
    {
        Gdiplus::Bitmap source(stream);
        if (source.GetLastStatus() == Gdiplus::Ok && source.GetWidth() <= (UINT)MostPixelsAcross &&
            source.GetHeight() <= (UINT)MostPixelsAcross)
            picture = fitted(source, width, height);
    }
    stream->Release();
    return picture;
}

// An entry of an icon file: how many pixels it has across, and how it lies in the file.
struct IconEntry
{
    int width = 0;
    int depth = 0;
    size_t offset = 0;
    size_t size = 0;
};

// The smallest entry that is not below `wanted` pixels, else the greatest; the richer of equals.
bool bestIconEntry(Bytes bytes, size_t size, int wanted, IconEntry *best)
{
    const size_t count = word(bytes + 4);
    bool found = false;
    for (size_t i = 0; i < count && 6 + (i + 1) * 16 <= size; ++i) {
        Bytes record = bytes + 6 + i * 16;
        IconEntry entry;
        entry.width = record[0] ? record[0] : 256;
        entry.depth = (int)word(record + 6);
        entry.size = doubleWord(record + 8);
        entry.offset = doubleWord(record + 12);
        if (entry.offset > size || entry.size > size - entry.offset || entry.size < 16)
            continue;
        const bool large = entry.width >= wanted, bestLarge = best->width >= wanted;
        const bool better = entry.width == best->width ? entry.depth > best->depth
                            : large != bestLarge       ? large
                            : large                    ? entry.width < best->width
                                                       : entry.width > best->width;
        if (!found || better)
            *best = entry;
        found = true;
    }
    return found;
}

HBITMAP fromIconFile(Bytes bytes, size_t size, int width, int height)
{
    IconEntry entry;
    if (!bestIconEntry(bytes, size, width > 0 ? width : 256, &entry))
        return NULL;
    Bytes data = bytes + entry.offset;
    if (memcmp(data, "\x89PNG", 4) == 0)
        return fromGdiPlus(data, entry.size, width, height);
    const HICON icon = CreateIconFromResourceEx(const_cast<BYTE *>(data), (DWORD)entry.size, TRUE,
                                                0x30000, entry.width, entry.width, 0);
    if (!icon)
        return NULL;
    const HBITMAP picture = VL_PictureFromIcon(icon, width > 0 ? width : entry.width,
                                               height > 0 ? height : entry.width);
    DestroyIcon(icon);
    return picture;
}

// What an old icon without opacity covers, from its mask.
void addMask(HICON icon, unsigned char *bits, int width, int height)
{
    const HBITMAP mask = VL_NewPicture(width, height);
    Bytes masked = VL_PictureBits(mask, NULL, NULL);
    if (!masked)
        return;
    const HDC context = CreateCompatibleDC(NULL);
    const HGDIOBJ old = SelectObject(context, mask);
    DrawIconEx(context, 0, 0, icon, width, height, 0, NULL, DI_MASK);
    GdiFlush();
    for (size_t i = 0; i < (size_t)width * height; ++i) {
        if (masked[i * 4] == 0)
            bits[i * 4 + 3] = 0xFF;
        else
            memset(bits + i * 4, 0, 4);
    }
    SelectObject(context, old);
    DeleteDC(context);
    DeleteObject(mask);
}

const CLSID PngEncoder = {
    0x557cf406, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};

} // namespace
} // namespace vl_picture_bytes

HBITMAP VL_NewPicture(int width, int height)
{
    const int most = vl_picture_bytes::MostPixelsAcross;
    if (width <= 0 || height <= 0 || width > most || height > most)
        return NULL;
    BITMAPINFO information = {};
    information.bmiHeader.biSize = sizeof(information.bmiHeader);
    information.bmiHeader.biWidth = width;
    information.bmiHeader.biHeight = -height;
    information.bmiHeader.biPlanes = 1;
    information.bmiHeader.biBitCount = 32;
    void *bits = NULL;
    return CreateDIBSection(NULL, &information, DIB_RGB_COLORS, &bits, NULL, 0);
}

unsigned char *VL_PictureBits(HBITMAP picture, int *width, int *height)
{
    DIBSECTION section = {};
    if (!picture || GetObjectW(picture, sizeof(section), &section) != (int)sizeof(section) ||
        section.dsBm.bmBitsPixel != 32)
        return NULL;
    if (width)
        *width = section.dsBm.bmWidth;
    if (height)
        *height = section.dsBm.bmHeight;
    return (unsigned char *)section.dsBm.bmBits;
}

HBITMAP VL_PictureFromBytes(const void *bytes, size_t size, int width, int height)
{
    using namespace vl_picture_bytes;
    if (!bytes || size < 8)
        return NULL;
    const GdiPlus started;
    const Bytes data = (Bytes)bytes;
    if (memcmp(data, "\0\0\1\0", 4) == 0)
        return fromIconFile(data, size, width, height);
    if (data[0] == 'B' && data[1] == 'M')
        return fromBmp(data, size, width, height);
    return fromGdiPlus(data, size, width, height);
}

HBITMAP VL_PictureFromDib(const void *dib, size_t size, size_t offset)
{
    using namespace vl_picture_bytes;
    BITMAPINFOHEADER header = {};
    if (!dib || size < sizeof(header))
        return NULL;
    memcpy(&header, dib, sizeof(header));
    size_t behind = 0;
    if (!isPlainDib(header, size, &behind))
        return NULL;
    if (offset == 0)
        offset = behind;
    const int height = std::abs(header.biHeight);
    const size_t line = ((size_t)header.biWidth * header.biBitCount + 31) / 32 * 4;
    if (offset < behind || offset > size || size - offset < line * height)
        return NULL;

    const HBITMAP picture = VL_NewPicture(header.biWidth, height);
    unsigned char *bits = VL_PictureBits(picture, NULL, NULL);
    if (!bits)
        return NULL;
    const HDC context = CreateCompatibleDC(NULL);
    const HGDIOBJ old = SelectObject(context, picture);
    StretchDIBits(context, 0, 0, header.biWidth, height, 0, 0, header.biWidth, height,
                  (Bytes)dib + offset, (const BITMAPINFO *)dib, DIB_RGB_COLORS, SRCCOPY);
    GdiFlush();
    SelectObject(context, old);
    DeleteDC(context);
    for (size_t i = 0; i < (size_t)header.biWidth * height; ++i)
        bits[i * 4 + 3] = 0xFF;
    return picture;
}

HBITMAP VL_PictureFromIcon(HICON icon, int width, int height)
{
    using namespace vl_picture_bytes;
    const HBITMAP picture = VL_NewPicture(width, height);
    unsigned char *bits = VL_PictureBits(picture, NULL, NULL);
    if (!bits)
        return NULL;
    const HDC context = CreateCompatibleDC(NULL);
    const HGDIOBJ old = SelectObject(context, picture);
    const BOOL drawn = DrawIconEx(context, 0, 0, icon, width, height, 0, NULL, DI_NORMAL);
    GdiFlush();
    SelectObject(context, old);
    DeleteDC(context);
    if (!drawn) {
        DeleteObject(picture);
        return NULL;
    }
    if (!hasOpacity(bits, (size_t)width * height))
        addMask(icon, bits, width, height);
    return picture;
}

HBITMAP VL_PictureFromBitmap(HBITMAP bitmap, int width, int height)
{
    using namespace vl_picture_bytes;
    BITMAP shape = {};
    if (!bitmap || !GetObjectW(bitmap, sizeof(shape), &shape))
        return NULL;
    // A copy whose lines lie as they are wanted here.
    const HBITMAP copy = VL_NewPicture(shape.bmWidth, shape.bmHeight);
    unsigned char *bits = VL_PictureBits(copy, NULL, NULL);
    if (!bits)
        return NULL;
    BITMAPINFO information = {};
    information.bmiHeader.biSize = sizeof(information.bmiHeader);
    information.bmiHeader.biWidth = shape.bmWidth;
    information.bmiHeader.biHeight = -shape.bmHeight;
    information.bmiHeader.biPlanes = 1;
    information.bmiHeader.biBitCount = 32;
    const HDC screen = GetDC(NULL);
    GetDIBits(screen, bitmap, 0, (UINT)shape.bmHeight, bits, &information, DIB_RGB_COLORS);
    ReleaseDC(NULL, screen);
    if (shape.bmBitsPixel != 32) {
        for (size_t i = 0; i < (size_t)shape.bmWidth * shape.bmHeight; ++i)
            bits[i * 4 + 3] = 0xFF;
    }
    const GdiPlus started;
    const HBITMAP picture = fromLines(bits, shape.bmWidth, shape.bmHeight, false, width, height);
    DeleteObject(copy);
    return picture;
}

VL_ByteArray VL_PictureToPng(HBITMAP picture)
{
    int width = 0, height = 0;
    unsigned char *bits = VL_PictureBits(picture, &width, &height);
    IStream *stream = NULL;
    VL_ByteArray result;
    if (!bits || FAILED(CreateStreamOnHGlobal(NULL, TRUE, &stream)))
        return result;
    {
        const vl_picture_bytes::GdiPlus started;
        Gdiplus::Bitmap source(width, height, width * 4, PixelFormat32bppPARGB, bits);
        STATSTG state = {};
        HGLOBAL memory = NULL;
        if (source.Save(stream, &vl_picture_bytes::PngEncoder, NULL) == Gdiplus::Ok &&
            SUCCEEDED(stream->Stat(&state, STATFLAG_NONAME)) &&
            SUCCEEDED(GetHGlobalFromStream(stream, &memory)))
            result = VL_ByteArray(GlobalLock(memory), (size_t)state.cbSize.QuadPart);
        if (memory)
            GlobalUnlock(memory);
    }
    stream->Release();
    return result;
}
