// Pictures by name: files beside the program and the program's own resources.
#pragma once
#include "16_picture_bytes.h"

// An image file, taken from the folder "resource" beside the program or from that folder when its
// path is relative, or "#5" for the program's resource 5. Fitted into `width` by `height` pixels;
// the caller deletes it. NULL when there is no such picture.
HBITMAP VL_PictureFromName(const std::wstring &name, int width, int height);
