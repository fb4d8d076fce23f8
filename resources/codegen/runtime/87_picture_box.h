// Picture boxes: a window class of its own that shows a picture, also a moving one.
#pragma once
#include "73_background_pictures.h"
#include "85_parent_background.h"

// Without a background colour what lies behind shows. The window property
// "VL_PictureBoxBorderColor" holds the border's colour + 1. The functions do nothing with a window
// of another class.
extern const wchar_t *g_pictureBoxClassName;
void VL_RegisterPictureBoxClass();

// False when there is no picture that could be read: then only the background shows, and
// VL_PictureBox_GetError tells why. An empty path or no bytes take the picture away. Relative paths
// count from the program's folder or its folder "resource". The file may be changed or deleted
// afterwards.
bool VL_PictureBox_SetImage(HWND box, const std::wstring &path);
bool VL_PictureBox_SetImageBytes(HWND box, const VL_ByteArray &bytes);
// Empty after a picture that could be read.
std::wstring VL_PictureBox_GetError(HWND box);
std::wstring VL_PictureBox_GetPath(HWND box);
// The picture's own size in its pixels; 0 without one.
int VL_PictureBox_GetImageWidth(HWND box);
int VL_PictureBox_GetImageHeight(HWND box);

// \u62C9\u4F38 fills the box, \u5E73\u94FA tiles it, \u5C45\u4E2D centres the picture in its own
// size, \u7F29\u653E (also for any other word) fits it with its proportions kept.
void VL_PictureBox_SetMode(HWND box, const std::wstring &mode);
std::wstring VL_PictureBox_GetMode(HWND box);
// Width in design pixels, 0 for none; colour 0xBBGGRR.
void VL_PictureBox_SetBorder(HWND box, int width, int color);
