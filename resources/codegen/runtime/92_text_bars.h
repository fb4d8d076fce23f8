// Scroll bars over ranges of more than 32 bits.
#pragma once
#include "00_prelude.h"

// One of a window's own scroll bars.
class VL_TextBar
{
public:
    struct Range
    {
        long long total = -1;
        long long page = -1;
        long long position = -1;
    };
    // SB_VERT or SB_HORZ. With `stays` the bar is shown disabled when there is nothing to scroll.
    VL_TextBar(int which, bool stays) : m_which(which), m_stays(stays) {}

    // `total` and `page` are at least 1. Does nothing when that is shown already; otherwise the
    // window's size may change on the way.
    void show(HWND window, const Range &range);
    // Where the user dragged the box to, given the wParam of SB_THUMBTRACK or SB_THUMBPOSITION.
    long long draggedTo(HWND window, WPARAM wParam) const;
    // Whether that is as far as the box goes.
    bool isEnd(long long position) const;

private:
    int m_which;
    bool m_stays;
    Range m_shown;
    // The system's positions are ours, shifted to the right by this.
    int m_shift = 0;
};
