// Shadow, corners and edge by the desktop window manager.
#include "shell/native_frame.h"

#include <windows.h>

#include <dwmapi.h>

namespace {

// Older headers do not name them; older systems refuse them, which does no harm.
constexpr DWORD useImmersiveDarkMode = 20;
constexpr DWORD windowCornerPreference = 33;
constexpr DWORD roundCorners = 2;

} // namespace

void NativeFrame::dress(std::uintptr_t window, bool isDark)
{
    const HWND handle = reinterpret_cast<HWND>(window);
    // One line of frame within the window is enough for the shadow.
    const MARGINS margins = {0, 0, 0, 1};
    DwmExtendFrameIntoClientArea(handle, &margins);
    const BOOL dark = isDark;
    DwmSetWindowAttribute(handle, useImmersiveDarkMode, &dark, sizeof dark);
    DwmSetWindowAttribute(handle, windowCornerPreference, &roundCorners, sizeof roundCorners);
}
