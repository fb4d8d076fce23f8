#include "29_scaling.h"

bool g_vlDpiAware = false;

int VL_GetDpiForScaling(HWND window)
{
    if (!g_vlDpiAware)
        return 96;
    typedef UINT(WINAPI * DpiForWindow)(HWND);
    static const DpiForWindow dpiForWindow =
        (DpiForWindow)(void *)GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
    const UINT dpi = window && dpiForWindow ? dpiForWindow(window) : 0;
    if (dpi)
        return (int)dpi;
    const HDC screen = GetDC(NULL);
    const int ofScreen = screen ? GetDeviceCaps(screen, LOGPIXELSX) : 96;
    if (screen)
        ReleaseDC(NULL, screen);
    return ofScreen > 0 ? ofScreen : 96;
}

int VL_ScaleX(HWND window, int value)
{
    return MulDiv(value, VL_GetDpiForScaling(window), 96);
}

int VL_ScaleY(HWND window, int value)
{
    return MulDiv(value, VL_GetDpiForScaling(window), 96);
}

int VL_UnscaleX(HWND window, int value)
{
    return MulDiv(value, 96, VL_GetDpiForScaling(window));
}

int VL_UnscaleY(HWND window, int value)
{
    return MulDiv(value, 96, VL_GetDpiForScaling(window));
}
