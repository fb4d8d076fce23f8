// How drawn buttons look.
#pragma once
#include "43_background.h"

const int VL_BUTTON_PLAIN = 0;
const int VL_BUTTON_COMMAND_LINK = 1;
const int VL_BUTTON_SPLIT = 2;

// A picture on a button.
class VL_ButtonImage
{
public:
    // Of any format that GDI+ reads; the file is not kept open. NULL when it cannot be read.
    static std::unique_ptr<VL_ButtonImage> load(const std::wstring &path);
    ~VL_ButtonImage();
    VL_ButtonImage(const VL_ButtonImage &) = delete;
    VL_ButtonImage &operator=(const VL_ButtonImage &) = delete;

    int width() const;
    int height() const;
    // Scaled to `place`; paler when it is not enabled.
    void draw(HDC context, const RECT &place, bool isEnabled) const;

private:
    explicit VL_ButtonImage(void *bitmap) : m_bitmap(bitmap) {}

    void *m_bitmap;
};

// What a button looks like at a moment. Colours, font and text are the control's.
struct VL_ButtonLook
{
    int kind = 0; // VL_BUTTON_*
    bool isHot = false;
    bool isPressed = false;
    bool isArrowPressed = false;
    bool isDefault = false;
    bool showsFocus = false;
    bool showsMnemonics = true;
    const VL_ButtonImage *image = nullptr;
    std::wstring note;
};
void VL_DrawButton(HWND button, HDC context, const VL_ButtonLook &look);
// The part of a split button that opens the menu.
RECT VL_SplitArrowArea(HWND button);
