// GDI+ start-up and loading pictures into bitmaps.
#pragma once
#include "00_prelude.h"

// GDI+ may be started and shut down any number of times; only the first and the last act.
void VL_InitGdiPlus();
void VL_ShutdownGdiPlus();

// The picture at `path` as a bitmap that the caller deletes; NULL when it cannot be read. What is
// transparent shows the light grey of a window.
HBITMAP VL_LoadImageToBitmap(const std::wstring &path);
// The same, fitted into `width` by `height` pixels with a margin of 2 on each side, centred, its
// proportions kept.
HBITMAP VL_LoadImageToBitmapScaled(const std::wstring &path, int width, int height);
