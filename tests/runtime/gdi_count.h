// How many GDI objects the test program holds, to find leaks.
#pragma once

#include "window_test.h"

#include <algorithm>

// Up to a constant. On systems that do not count them: so many more that all free places of the
// table are taken lie at its end, which moves up by what was lost.
inline int gdiObjects()
{
    if (const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return (int)counted;
    std::vector<HBRUSH> brushes;
    int last = 0;
    for (int i = 0; i < 1000; ++i) {
        brushes.push_back(CreateSolidBrush(0));
        last = (std::max)(last, (int)((UINT_PTR)brushes.back() & 0xFFFF));
    }
    for (const HBRUSH brush : brushes)
        DeleteObject(brush);
    return last;
}
