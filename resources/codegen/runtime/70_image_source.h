// Pictures: reading them from files and bytes, and their frames.
#pragma once
#include "20_constants.h"
#include "68_raster.h"

// A picture that was read; it needs its file no more. Empty pointers are taken everywhere and draw
// nothing.
class VL_Image;
typedef std::shared_ptr<VL_Image> VL_ImagePtr;

// PNG, JPEG (turned upright as it says), BMP, GIF, TIFF, ICO (its largest picture) and whatever
// else the system can decode. Empty when it cannot be read; `error` then tells why. A relative path
// counts from the program's folder, from its folder "resource" or, failing these, from the current
// one.
VL_ImagePtr VL_OpenImage(const std::wstring &path, std::wstring *error = nullptr);
VL_ImagePtr VL_OpenImage(const VL_ByteArray &bytes, std::wstring *error = nullptr);
// Where that path leads; as given when there is no such file.
std::wstring VL_FindImageFile(const std::wstring &path);

SIZE VL_ImageSize(const VL_ImagePtr &image);
int VL_ImageFrameCount(const VL_ImagePtr &image);
// Milliseconds.
int VL_ImageFrameDelay(const VL_ImagePtr &image, int frame);
void VL_ShowImageFrame(const VL_ImagePtr &image, int frame);

// The pixels of the frame that is shown, colours multiplied by their alpha, top row first; valid
// until another frame is.
struct VL_ImagePixels
{
    int width = 0;
    int height = 0;
    const VL_Argb *values = nullptr;
};
// The picture itself, or the smallest of its halved copies that is no smaller than that.
VL_ImagePixels VL_PixelsOf(const VL_ImagePtr &image, int leastWidth, int leastHeight);
