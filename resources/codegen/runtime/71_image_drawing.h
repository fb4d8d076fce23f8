// Pictures drawn: scaled with care, tiled, centred; kept as drawn; saved.
#pragma once
#include "70_image_source.h"

enum class VL_ImageMode
{
    Stretch,
    Tile,
    Center,
    Zoom
};
// Of the property's word or its English name; zoom for any other.
VL_ImageMode VL_ImageModeOf(const std::wstring &word);
std::wstring VL_ImageModeText(VL_ImageMode mode);
// Lays the picture over the surface within `place`; `dpi` scales what is drawn at natural size.
void VL_DrawImage(VL_Surface &surface, const VL_ImagePtr &image, const RECT &place,
                  VL_ImageMode mode, int dpi);
// The picture's size at that scale, in pixels.
SIZE VL_ScaledImageSize(const VL_ImagePtr &image, int dpi);

// A picture as drawn for one place, kept until something about it changes.
class VL_ImageLayer
{
public:
    // Empty takes the picture away.
    void setImage(const VL_ImagePtr &image);
    const VL_ImagePtr &image() const { return m_image; }
    void showFrame(int frame);
    void blendTo(HDC target, const RECT &place, VL_ImageMode mode, int dpi);

private:
    VL_ImagePtr m_image;
    VL_Surface m_drawn;
    VL_ImageMode m_mode = VL_ImageMode::Zoom;
    int m_dpi = 0;
    bool m_valid = false;
};

// Writes PNG, JPEG, BMP or TIFF by the path's extension; false for another one and when the
// file cannot be written.
bool VL_SaveImage(const VL_Surface &surface, const std::wstring &path);
