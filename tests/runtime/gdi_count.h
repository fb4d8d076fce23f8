// How many GDI objects the test program holds, to find leaks.
#pragma once

#include "window_test.h"

// On systems that do not count them, the place that the next object gets in the table of all: free
// places are filled first, so that it moves up by what was lost.
inline int gdiObjects()
{
    const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    if (count)
        return (int)count;
    const HPEN pen = CreatePen(PS_SOLID, 1, RGB(1, 2, 3));
    const int place = (int)LOWORD((DWORD_PTR)pen);
    DeleteObject(pen);
    return place;
}
