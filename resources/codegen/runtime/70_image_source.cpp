// Pictures: reading them from files and bytes, and their frames.
#include "70_image_source.h"
#include "01_images.h"
#include "40_files.h"
#include "41_paths.h"

#include <objidl.h>
#include <wincodec.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

namespace vl_image_source {
namespace {

const long long kMostPixels = 100000000;
const GUID kImagingFactory = {
    0xcacaf262, 0x9370, 0x4615, {0xa1, 0x3b, 0x9f, 0x55, 0x39, 0xda, 0x4c, 0x0a}};
const GUID kImagingFactoryId = {
    0xec5ec8a9, 0xc395, 0x4314, {0x9c, 0x77, 0x54, 0xd7, 0xa9, 0x35, 0xff, 0x70}};
// Premultiplied BGRA.
const GUID kPixelFormat = {
    0x6fddc324, 0x4e03, 0x4bfe, {0xb1, 0x85, 0x3d, 0x77, 0x76, 0x8d, 0xc9, 0x10}};
const GUID kTimeDimension = {
    0x6aedbd6d, 0x3fb5, 0x418a, {0x83, 0xa6, 0x7f, 0x45, 0x22, 0x9d, 0xc8, 0x72}};

const wchar_t kEmptyData[] = L"\u56FE\u7247\u6570\u636E\u4E3A\u7A7A";
const wchar_t kNoSuchFile[] = L"\u65E0\u6CD5\u8BFB\u53D6\u56FE\u7247\u6587\u4EF6\uFF1A";
const wchar_t kNotAnImage[] =
    L"\u65E0\u6CD5\u8BC6\u522B\u7684\u56FE\u7247\u683C\u5F0F\u6216\u6570\u636E\u5DF2\u635F\u574F";
const wchar_t kTooLarge[] = L"\u56FE\u7247\u5C3A\u5BF8\u8FC7\u5927";

// For the time of a call; a thread that has COM already is left as it is.
class ComScope
{
public:
    ComScope() : m_result(CoInitializeEx(NULL, COINIT_APARTMENTTHREADED)) {}
    ~ComScope()
    {
        if (SUCCEEDED(m_result))
            CoUninitialize();
    }
    ComScope(const ComScope &) = delete;
    ComScope &operator=(const ComScope &) = delete;

private:
    HRESULT m_result;
};

} // namespace

// Parts of a class that other sections name; they are not local to this one.
template <typename T>
class Com
{
public:
    Com() = default;
    Com(const Com &) = delete;
    Com &operator=(const Com &) = delete;
    ~Com() { reset(); }

    T *get() const { return m_object; }
    T *operator->() const { return m_object; }
    T **out()
    {
        reset();
        return &m_object;
    }
    void **outVoid() { return (void **)out(); }
    void reset()
    {
        if (m_object)
            m_object->Release();
        m_object = nullptr;
    }
    void take(Com &other)
    {
        reset();
        std::swap(m_object, other.m_object);
    }
    explicit operator bool() const { return m_object != nullptr; }

private:
    T *m_object = nullptr;
};

struct Pixels
{
    int width = 0;
    int height = 0;
    std::vector<VL_Argb> values; // premultiplied, top row first

    bool allocate(UINT w, UINT h)
    {
        if (w < 1 || h < 1 || (long long)w * h > kMostPixels)
            return false;
        width = (int)w;
        height = (int)h;
        values.assign((size_t)w * h, 0);
        return true;
    }
};

} // namespace vl_image_source

class VL_Image
{
public:
    // Each level has half the width and height of the one before; the first is the picture.
    std::vector<vl_image_source::Pixels> levels;
    // Only of a moving picture. The decoder reads from the stream, which goes after it.
    vl_image_source::Com<IStream> stream;
    std::unique_ptr<Gdiplus::Bitmap> source;
    std::vector<int> delays;
    int frame = 0;
};

namespace vl_image_source {
namespace {

void startGdiPlus()
{
    // Pictures may outlive the program's own shutdown of it, so this use never ends.
    static const bool started = (VL_InitGdiPlus(), true);
    (void)started;
}

bool makeStream(const void *data, size_t length, Com<IStream> &stream)
{
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, length);
    if (!memory)
        return false;
    if (void *place = GlobalLock(memory)) {
        memcpy(place, data, length);
        GlobalUnlock(memory);
    }
    if (SUCCEEDED(CreateStreamOnHGlobal(memory, TRUE, stream.out())))
        return true;
    GlobalFree(memory);
    return false;
}

bool isIcon(const unsigned char *data, size_t length)
{
    return length > 22 && data[0] == 0 && data[1] == 0 && data[2] == 1 && data[3] == 0;
}

// The largest of the pictures that the system's decoders find.
bool decodeBySystem(IStream *stream, Pixels &pixels)
{
    const ComScope com;
    Com<IWICImagingFactory> factory;
    Com<IWICBitmapDecoder> decoder;
    if (FAILED(CoCreateInstance(kImagingFactory, NULL, CLSCTX_INPROC_SERVER, kImagingFactoryId,
                                factory.outVoid())) ||
        FAILED(factory->CreateDecoderFromStream(stream, NULL, WICDecodeMetadataCacheOnDemand,
                                                decoder.out())))
        return false;
    UINT count = 0;
    decoder->GetFrameCount(&count);
    Com<IWICBitmapFrameDecode> best;
    unsigned long long mostPixels = 0;
    for (UINT i = 0; i < std::min(count, 64u); ++i) {
        Com<IWICBitmapFrameDecode> frame;
        UINT width = 0, height = 0;
        if (FAILED(decoder->GetFrame(i, frame.out())) || FAILED(frame->GetSize(&width, &height)))
            continue;
        if ((unsigned long long)width * height > mostPixels) {
            mostPixels = (unsigned long long)width * height;
            pixels.width = (int)width;
            pixels.height = (int)height;
            best.take(frame);
        }
    }
    Com<IWICFormatConverter> converter;
    if (!best || !pixels.allocate((UINT)pixels.width, (UINT)pixels.height) ||
        FAILED(factory->CreateFormatConverter(converter.out())) ||
        FAILED(converter->Initialize(best.get(), kPixelFormat, WICBitmapDitherTypeNone, NULL, 0,
                                     WICBitmapPaletteTypeCustom)))
        return false;
    // In strips, whose length in bytes must fit into 32 bits.
    const UINT stride = (UINT)pixels.width * 4;
    const int strip = std::max(1, (int)(0x4000000 / stride));
    for (int y = 0; y < pixels.height; y += strip) {
        const int rows = std::min(strip, pixels.height - y);
        const WICRect place = {0, y, pixels.width, rows};
        if (FAILED(
                converter->CopyPixels(&place, stride, stride * rows,
                                      (BYTE *)(pixels.values.data() + (size_t)y * pixels.width))))
            return false;
    }
    return true;
}

// The bitmap's present frame.
bool copyPixels(Gdiplus::Bitmap &bitmap, Pixels &pixels)
{
    const UINT width = bitmap.GetWidth(), height = bitmap.GetHeight();
    if (!pixels.allocate(width, height))
        return false;
    Gdiplus::BitmapData data = {};
    data.Width = width;
    data.Height = height;
    data.Stride = (INT)width * 4;
    data.PixelFormat = PixelFormat32bppPARGB;
    data.Scan0 = pixels.values.data();
    Gdiplus::Rect all(0, 0, (INT)width, (INT)height);
    if (bitmap.LockBits(&all, Gdiplus::ImageLockModeRead | Gdiplus::ImageLockModeUserInputBuf,
                        PixelFormat32bppPARGB, &data) != Gdiplus::Ok)
        return false;
    bitmap.UnlockBits(&data);
    return true;
}

// A property of whole numbers, 16 or 32 bits each; empty when there is none.
std::vector<int> numbersOf(Gdiplus::Bitmap &bitmap, PROPID id)
{
    std::vector<int> numbers;
    const UINT size = bitmap.GetPropertyItemSize(id);
    if (size < sizeof(Gdiplus::PropertyItem) || size > 0x1000000)
        return numbers;
    std::vector<char> room(size);
    Gdiplus::PropertyItem *item = (Gdiplus::PropertyItem *)room.data();
    if (bitmap.GetPropertyItem(id, size, item) != Gdiplus::Ok || !item->value)
        return numbers;
    const bool isShort = item->type == PropertyTagTypeShort;
    const size_t count = item->length / (isShort ? 2 : 4);
    for (size_t i = 0; i < count; ++i)
        numbers.push_back(isShort ? ((const unsigned short *)item->value)[i]
                                  : ((const int *)item->value)[i]);
    return numbers;
}

void turnUpright(Gdiplus::Bitmap &bitmap)
{
    const std::vector<int> orientation = numbersOf(bitmap, PropertyTagOrientation);
    static const Gdiplus::RotateFlipType kTurns[] = {
        Gdiplus::RotateNoneFlipNone, Gdiplus::RotateNoneFlipX,   Gdiplus::Rotate180FlipNone,
        Gdiplus::Rotate180FlipX,     Gdiplus::Rotate90FlipX,     Gdiplus::Rotate90FlipNone,
        Gdiplus::Rotate270FlipX,     Gdiplus::Rotate270FlipNone,
    };
    if (!orientation.empty() && orientation[0] > 1 && orientation[0] <= 8)
        bitmap.RotateFlip(kTurns[orientation[0] - 1]);
}

std::vector<int> delaysOf(Gdiplus::Bitmap &bitmap, UINT frames)
{
    std::vector<int> delays = numbersOf(bitmap, PropertyTagFrameDelay);
    delays.resize(frames, 10);
    for (int &delay : delays) {
        // Pictures made for "as fast as possible" are meant to be shown at ten frames a second.
        delay = delay < 2 ? 100 : std::min(delay, 100000) * 10;
    }
    return delays;
}

bool decode(VL_Image &image, Com<IStream> &stream)
{
    std::unique_ptr<Gdiplus::Bitmap> bitmap(new Gdiplus::Bitmap(stream.get()));
    if (bitmap->GetLastStatus() != Gdiplus::Ok)
        return false;
    image.levels.resize(1);
    const UINT frames = bitmap->GetFrameCount(&kTimeDimension);
    if (frames > 1)
        bitmap->SelectActiveFrame(&kTimeDimension, 0);
    else
        turnUpright(*bitmap);
    if (!copyPixels(*bitmap, image.levels[0]))
        return false;
    if (frames > 1) {
        image.delays = delaysOf(*bitmap, frames);
        image.stream.take(stream);
        image.source = std::move(bitmap);
    }
    return true;
}

bool decodeAny(VL_Image &image, const void *data, size_t length)
{
    Com<IStream> stream;
    if (!makeStream(data, length, stream))
        return false;
    const bool icon = isIcon((const unsigned char *)data, length);
    if (!icon && decode(image, stream))
        return true;
    if (!stream && !makeStream(data, length, stream))
        return false;
    stream->Seek({}, STREAM_SEEK_SET, NULL);
    image.levels.resize(1);
    if (decodeBySystem(stream.get(), image.levels[0]))
        return true;
    stream->Seek({}, STREAM_SEEK_SET, NULL);
    return icon && decode(image, stream);
}

// Averages blocks of four pixels; an odd row or column at the end is left out.
Pixels halved(const Pixels &from)
{
    Pixels half;
    half.allocate((UINT)from.width / 2, (UINT)from.height / 2);
    for (int y = 0; y < half.height; ++y) {
        const VL_Argb *above = from.values.data() + (size_t)y * 2 * from.width;
        const VL_Argb *below = above + from.width;
        VL_Argb *to = half.values.data() + (size_t)y * half.width;
        for (int x = 0; x < half.width; ++x, above += 2, below += 2) {
            VL_Argb mixed = 0;
            for (int shift = 0; shift < 32; shift += 8) {
                const unsigned sum = (above[0] >> shift & 255) + (above[1] >> shift & 255) +
                                     (below[0] >> shift & 255) + (below[1] >> shift & 255);
                mixed |= (sum + 2) / 4 << shift;
            }
            to[x] = mixed;
        }
    }
    return half;
}

VL_ImagePtr open(const void *data, size_t length, std::wstring *error)
{
    std::wstring ignored;
    std::wstring &told = error ? *error : ignored;
    told.clear();
    startGdiPlus();
    VL_ImagePtr image = std::make_shared<VL_Image>();
    try {
        if (length == 0)
            told = kEmptyData;
        else if (!decodeAny(*image, data, length))
            told = image->levels.empty() || image->levels[0].width < 1 ? kNotAnImage : kTooLarge;
    } catch (const std::bad_alloc &) {
        told = kTooLarge;
    }
    return told.empty() ? image : VL_ImagePtr();
}

} // namespace
} // namespace vl_image_source

VL_ImagePtr VL_OpenImage(const VL_ByteArray &bytes, std::wstring *error)
{
    return vl_image_source::open(bytes.ptr(), bytes.size(), error);
}

VL_ImagePtr VL_OpenImage(const std::wstring &path, std::wstring *error)
{
    std::string bytes;
    if (!VL_LoadFileBytes(VL_FindImageFile(path), bytes)) {
        if (error)
            *error = vl_image_source::kNoSuchFile + path;
        return VL_ImagePtr();
    }
    return vl_image_source::open(bytes.data(), bytes.size(), error);
}

std::wstring VL_FindImageFile(const std::wstring &path)
{
    if (path.empty())
        return path;
    const std::wstring folder = VL_GetAppDir();
    for (const std::wstring &place :
         {VL_JoinPath(folder, path), VL_JoinPath(folder, L"resource", path)}) {
        if (VL_FileExists(place))
            return place;
    }
    return path;
}

SIZE VL_ImageSize(const VL_ImagePtr &image)
{
    if (!image)
        return {0, 0};
    return {image->levels[0].width, image->levels[0].height};
}

int VL_ImageFrameCount(const VL_ImagePtr &image)
{
    return !image ? 0 : image->delays.empty() ? 1 : (int)image->delays.size();
}

int VL_ImageFrameDelay(const VL_ImagePtr &image, int frame)
{
    if (!image || frame < 0 || frame >= (int)image->delays.size())
        return 0;
    return image->delays[frame];
}

void VL_ShowImageFrame(const VL_ImagePtr &image, int frame)
{
    if (!image || frame < 0 || frame >= (int)image->delays.size() || frame == image->frame)
        return;
    image->frame = frame;
    image->source->SelectActiveFrame(&vl_image_source::kTimeDimension, (UINT)frame);
    image->levels.resize(1);
    vl_image_source::copyPixels(*image->source, image->levels[0]);
}

VL_ImagePixels VL_PixelsOf(const VL_ImagePtr &image, int leastWidth, int leastHeight)
{
    VL_ImagePixels found;
    if (!image)
        return found;
    leastWidth = std::max(leastWidth, 1);
    leastHeight = std::max(leastHeight, 1);
    size_t level = 0;
    while (image->levels[level].width / 2 >= leastWidth &&
           image->levels[level].height / 2 >= leastHeight) {
        if (++level == image->levels.size())
            image->levels.push_back(vl_image_source::halved(image->levels[level - 1]));
    }
    const vl_image_source::Pixels &pixels = image->levels[level];
    found.width = pixels.width;
    found.height = pixels.height;
    found.values = pixels.values.data();
    return found;
}
