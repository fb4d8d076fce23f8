// Scroll bars over ranges of more than 32 bits.
#include "92_text_bars.h"

#include <algorithm>

namespace vl_text_bars {
namespace {

const long long kLargest = 0x3FFFFFFF;

} // namespace
} // namespace vl_text_bars

void VL_TextBar::show(HWND window, const Range &range)
{
    if (range.total == m_shown.total && range.page == m_shown.page &&
        range.position == m_shown.position)
        return;
    m_shown = range;
    m_shift = 0;
    while (range.total >> m_shift > vl_text_bars::kLargest)
        ++m_shift;
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    if (m_stays)
        info.fMask |= SIF_DISABLENOSCROLL;
    info.nMax = (int)((range.total - 1) >> m_shift);
    info.nPage = (UINT)(std::max)(1LL, range.page >> m_shift);
    info.nPos = (int)(range.position >> m_shift);
    SetScrollInfo(window, m_which, &info, TRUE);
}

long long VL_TextBar::draggedTo(HWND window, WPARAM wParam) const
{
    // The message itself has room for 16 bits only; whoever sends it by program means these.
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(window, m_which, &info);
    const int dragged = HIWORD(wParam);
    const int position = (info.nTrackPos & 0xFFFF) == dragged ? info.nTrackPos : dragged;
    return (long long)(std::max)(0, position) << m_shift;
}

bool VL_TextBar::isEnd(long long position) const
{
    return position + m_shown.page + (1LL << m_shift) > m_shown.total;
}
