// Pictures in memory: reading any image file's bytes into a bitmap, writing a bitmap as PNG.
#pragma once
#include "12_byte_array.h"

// The bytes of a PNG, JPEG, GIF, BMP or icon file as a bitmap of 32 bits with premultiplied
// transparency, top line first, which the caller deletes; NULL for anything else. With a width and
// height the picture is fitted into them, its proportions kept, and centred; without (0) it keeps
// its size. An icon file gives its entry that fits best.
HBITMAP VL_PictureFromBytes(const void *bytes, size_t size, int width = 0, int height = 0);
// The same of an icon, and of a bitmap that the caller keeps; the transparency of a bitmap of
// 32 bits counts when it has any.
HBITMAP VL_PictureFromIcon(HICON icon, int width, int height);
HBITMAP VL_PictureFromBitmap(HBITMAP bitmap, int width, int height);
// The same of the header, colours and lines that a clipboard or a BMP file holds; the lines begin
// at `offset`, behind the colours when it is 0. All of it is opaque.
HBITMAP VL_PictureFromDib(const void *dib, size_t size, size_t offset = 0);
// A bitmap made by one of these as PNG file bytes; empty when it cannot be.
VL_ByteArray VL_PictureToPng(HBITMAP picture);
// The lines of a bitmap made by one of these: 4 bytes a pixel, blue, green, red, opacity. NULL for
// any other.
unsigned char *VL_PictureBits(HBITMAP picture, int *width, int *height);
// An empty (transparent) one; NULL for a size below 1 or beyond the memory.
HBITMAP VL_NewPicture(int width, int height);
