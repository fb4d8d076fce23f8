// Pictures in memory: transparency, sizes, icons, PNG, damaged bytes.
#include "16_picture_bytes.h"
#include "runtime_test.h"

#include "40_files.h"

namespace {

// "b,g,r,a" of a pixel.
std::wstring pixel(HBITMAP picture, int x, int y)
{
    int width = 0, height = 0;
    const unsigned char *bits = VL_PictureBits(picture, &width, &height);
    if (!bits || x >= width || y >= height)
        return L"none";
    std::wstring text;
    for (int i = 0; i < 4; ++i)
        text += (i ? L"," : L"") + std::to_wstring(bits[(y * width + x) * 4 + i]);
    return text;
}

// A BMP file of `bits` bits a pixel, bottom line first: the top line blue with that opacity, the
// others red.
VL_ByteArray bmp(int width, int height, int bits, int opacity)
{
    const int line = (width * bits / 8 + 3) / 4 * 4;
    VL_ByteArray bytes(54 + line * height);
    const BITMAPINFOHEADER header = {40, width, height, 1, (WORD)bits, BI_RGB, 0, 0, 0, 0, 0};
    bytes[0] = 'B';
    bytes[1] = 'M';
    bytes[2] = (unsigned char)bytes.size();
    bytes[10] = 54;
    memcpy(bytes.ptr() + 14, &header, sizeof(header));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            unsigned char *at = bytes.ptr() + 54 + y * line + x * bits / 8;
            at[y == height - 1 ? 0 : 2] = 255;
            if (bits == 32)
                at[3] = (unsigned char)opacity;
        }
    }
    return bytes;
}

HBITMAP load(const VL_ByteArray &bytes, int width = 0, int height = 0)
{
    return VL_PictureFromBytes(bytes.ptr(), bytes.size(), width, height);
}

void bitmapFiles()
{
    const struct
    {
        int bits;
        int opacity;
        std::wstring top;
        std::wstring below;
    } rows[] = {{24, 0, L"255,0,0,255", L"0,0,255,255"},
                {32, 0, L"255,0,0,255", L"0,0,255,255"}, // no opacity at all means none is meant
                {32, 128, L"128,0,0,128", L"0,0,128,128"},
                {32, 255, L"255,0,0,255", L"0,0,255,255"}};
    for (const auto &row : rows) {
        const HBITMAP picture = load(bmp(6, 4, row.bits, row.opacity));
        CHECK_EQ(pixel(picture, 0, 0), row.top);
        CHECK_EQ(pixel(picture, 5, 1), row.below);
        // The same after going through a PNG file.
        const VL_ByteArray png = VL_PictureToPng(picture);
        const HBITMAP again = load(png);
        CHECK_EQ(pixel(again, 5, 0), row.top);
        CHECK_EQ(pixel(again, 0, 3), row.below);
        DeleteObject(picture);
        DeleteObject(again);
    }
}

void fitting()
{
    // Wide into square: free above and below.
    const HBITMAP picture = load(bmp(40, 20, 32, 255), 16, 16);
    CHECK_EQ(pixel(picture, 8, 0), std::wstring(L"0,0,0,0"));
    CHECK_EQ(pixel(picture, 8, 8), std::wstring(L"0,0,255,255"));
    CHECK_EQ(pixel(picture, 8, 15), std::wstring(L"0,0,0,0"));
    CHECK_EQ(pixel(picture, 16, 0), std::wstring(L"none"));
    DeleteObject(picture);
    CHECK(!VL_NewPicture(0, 5));
    CHECK(!VL_NewPicture(5, 100000));
}

// An icon file whose entries are a red bitmap without opacity, its lower half masked out, and a
// PNG of 32 pixels.
VL_ByteArray iconFile()
{
    VL_ByteArray image(40 + 16 * 16 * 4 + 16 * 4);
    const BITMAPINFOHEADER header = {40, 16, 32, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    memcpy(image.ptr(), &header, sizeof(header));
    for (int i = 0; i < 16 * 16; ++i)
        image[40 + i * 4 + 2] = 255;
    for (int i = 0; i < 8 * 4; ++i)
        image[40 + 16 * 16 * 4 + i] = 255;
    const HBITMAP large = load(bmp(32, 32, 24, 0));
    const VL_ByteArray png = VL_PictureToPng(large);
    DeleteObject(large);
    VL_ByteArray file(6 + 2 * 16);
    file[2] = 1;
    file[4] = 2;
    const struct
    {
        int pixels;
        size_t size, offset;
    } entries[] = {{16, image.size(), 38}, {32, png.size(), 38 + image.size()}};
    for (int i = 0; i < 2; ++i) {
        unsigned char *entry = file.ptr() + 6 + i * 16;
        entry[0] = entry[1] = (unsigned char)entries[i].pixels;
        entry[6] = 32;
        for (int k = 0; k < 2; ++k) {
            entry[8 + k] = (unsigned char)(entries[i].size >> (8 * k));
            entry[12 + k] = (unsigned char)(entries[i].offset >> (8 * k));
        }
    }
    return file + image + png;
}

void icons()
{
    const VL_ByteArray file = iconFile();
    const HBITMAP small = load(file, 16, 16), large = load(file, 24, 24);
    CHECK_EQ(pixel(small, 3, 3), std::wstring(L"0,0,255,255"));
    CHECK_EQ(pixel(small, 3, 12), std::wstring(L"0,0,0,0"));
    // Only the greater entry has a blue line at the top.
    CHECK(pixel(large, 12, 0).compare(0, 2, L"0,") != 0);
    DeleteObject(small);
    DeleteObject(large);
}

// Whatever the bytes are, there is a picture or none, and nothing is left behind.
void damagedBytes()
{
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (const VL_ByteArray &good : {bmp(6, 4, 32, 128), bmp(6, 4, 24, 0), iconFile()}) {
        for (size_t size = 0; size < good.size(); size += size < 80 ? 3 : 41)
            DeleteObject(VL_PictureFromBytes(good.ptr(), size));
        for (size_t i = 0; i < good.size() && i < 70; ++i) {
            for (const unsigned char value : {0x00, 0x7F, 0xFF}) {
                VL_ByteArray bad = good;
                bad[i] = value;
                DeleteObject(load(bad, 8, 8));
            }
        }
    }
    CHECK(!VL_PictureFromBytes(NULL, 100));
    CHECK(!VL_PictureFromBitmap(NULL, 1, 1));
    CHECK(VL_PictureToPng(NULL).empty());
    const DWORD after = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    CHECK(after <= before + 2);
}

} // namespace

void runTests()
{
    bitmapFiles();
    fitting();
    icons();
    damagedBytes();
}
