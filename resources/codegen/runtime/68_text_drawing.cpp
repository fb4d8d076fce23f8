// Text in lines: breaking, placing, shortening, and text as a mask for effects.
#include "68_text_drawing.h"

#include <algorithm>

namespace vl_text_drawing {
namespace {

const size_t kMostCharacters = 1000000;
const size_t kLongestLine = 4096;
const wchar_t kEllipsis[] = L"\u2026";
// No line begins with the first ones, none ends with the others.
const wchar_t kClosing[] = L"\uFF0C\u3002\u3001\uFF1B\uFF1A\uFF1F\uFF01\uFF09\u3011\u300B\u300D"
                           L"\u201D\u2019\u2026,.;:?!)]}%";
const wchar_t kOpening[] = L"\uFF08\u3010\u300A\u300C\u201C\u2018([{";

bool isHighHalf(wchar_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}

bool isBlank(wchar_t c)
{
    return c == L' ' || c == 0x3000;
}

bool isIdeograph(wchar_t c)
{
    return c >= 0x2E80 && (c < 0xDC00 || c >= 0xF900);
}

bool canBreakBetween(wchar_t before, wchar_t after)
{
    if (isHighHalf(before))
        return false;
    if (isBlank(before))
        return !isBlank(after);
    if (wcschr(kClosing, after) || wcschr(kOpening, before))
        return false;
    return isIdeograph(before) || isIdeograph(after) || before == L'-' ||
           (before >= 0xDC00 && before < 0xE000);
}

int widthOf(HDC dc, const wchar_t *text, size_t length)
{
    SIZE size = {};
    GetTextExtentPoint32W(dc, text, (int)length, &size);
    return size.cx;
}

// How many characters of the text fit into `width` pixels.
size_t fitting(HDC dc, const wchar_t *text, size_t length, int width)
{
    int count = 0;
    SIZE size = {};
    GetTextExtentExPointW(dc, text, (int)length, std::max(width, 0), &count, NULL, &size);
    size_t fit = std::min((size_t)std::max(count, 0), length);
    if (fit > 0 && fit < length && isHighHalf(text[fit - 1]))
        --fit;
    return fit;
}

class Breaker
{
public:
    Breaker(HDC dc, const std::wstring &text, int width, bool wrap, size_t mostLines)
        : m_dc(dc), m_text(text), m_width(std::max(width, 1)), m_wrap(wrap), m_mostLines(mostLines)
    {
        TEXTMETRICW metrics = {};
        GetTextMetricsW(dc, &metrics);
        m_layout.lineHeight = std::max(1, (int)metrics.tmHeight);
        // Enough characters to fill a line, however narrow they are.
        m_sample = (size_t)m_width * 4 / std::max(1, (int)metrics.tmAveCharWidth) + 32;
    }

    VL_DrawnText run()
    {
        size_t begin = 0;
        while (begin <= m_text.size() && m_layout.lines.size() < m_mostLines) {
            size_t end = m_text.find(L'\n', begin);
            if (end == std::wstring::npos)
                end = m_text.size();
            addParagraph(begin, end);
            begin = end + 1;
        }
        return m_layout;
    }

private:
    void addParagraph(size_t begin, size_t end)
    {
        while (m_wrap && begin < end && m_layout.lines.size() < m_mostLines) {
            const size_t sample = std::min(end - begin, m_sample);
            const size_t fit = fitting(m_dc, m_text.data() + begin, sample, m_width);
            if (fit == end - begin)
                break;
            const size_t next = breakPlace(begin, fit, end);
            size_t shown = next;
            while (shown > begin && isBlank(m_text[shown - 1]))
                --shown;
            addLine(begin, shown);
            begin = next;
            if (begin == end)
                return;
        }
        if (m_layout.lines.size() < m_mostLines)
            addLine(begin, end);
    }

    // Where the next line begins when `fit` characters from `begin` on have room.
    size_t breakPlace(size_t begin, size_t fit, size_t end) const
    {
        size_t blanks = begin + fit;
        while (blanks < end && isBlank(m_text[blanks]))
            ++blanks;
        if (blanks > begin + fit && fit > 0)
            return blanks;
        for (size_t at = begin + fit; at > begin; --at) {
            if (canBreakBetween(m_text[at - 1], m_text[at]))
                return at;
        }
        if (fit > 0)
            return begin + fit;
        // At least one character, whatever the room.
        return std::min(end, begin + (isHighHalf(m_text[begin]) ? 2 : 1));
    }

    void addLine(size_t begin, size_t end)
    {
        const size_t length = std::min(end - begin, kLongestLine);
        const int width = length ? widthOf(m_dc, m_text.data() + begin, length) : 0;
        m_layout.lines.push_back({begin, length, width});
        m_layout.width = std::max(m_layout.width, width);
    }

    HDC m_dc;
    const std::wstring &m_text;
    int m_width;
    bool m_wrap;
    size_t m_mostLines;
    size_t m_sample = 0;
    VL_DrawnText m_layout;
};

int topOf(const VL_DrawnText &layout, const VL_DrawnPlace &place, int lines)
{
    const int room = place.area.bottom - place.area.top - lines * layout.lineHeight;
    // One line that is a little too high is best in the middle.
    if (place.vertical == 0 || (room < 0 && lines > 1))
        return place.area.top;
    return place.area.top + (place.vertical == 1 ? room / 2 : room);
}

int leftOf(int width, const VL_DrawnPlace &place)
{
    const int room = place.area.right - place.area.left - width;
    return place.area.left + (place.align == 0 ? 0 : place.align == 1 ? room / 2 : room);
}

// The lines that are drawn; with an ellipsis none that the area would cut.
int linesShown(const VL_DrawnText &layout, const VL_DrawnPlace &place)
{
    const int count = (int)layout.lines.size();
    if (!place.ellipsis)
        return count;
    const int room = (int)(place.area.bottom - place.area.top) / layout.lineHeight;
    return std::min(count, std::max(1, room));
}

// The mask's place: around the lines, but within `bounds`.
RECT reachOf(const VL_DrawnText &layout, const VL_DrawnPlace &place, int margin, const RECT &bounds)
{
    // Slanted letters lean over the measured width.
    const int side = margin + layout.lineHeight / 2;
    const int top = topOf(layout, place, linesShown(layout, place));
    const LONG left = leftOf(layout.width, place);
    const RECT wanted = {left - side, top - margin, left + layout.width + side,
                         top + layout.height() + margin};
    RECT reach = {};
    IntersectRect(&reach, &wanted, &bounds);
    return reach;
}

} // namespace
} // namespace vl_text_drawing

std::wstring VL_DrawableText(const std::wstring &text)
{
    std::wstring result;
    result.reserve(std::min(text.size(), vl_text_drawing::kMostCharacters));
    for (size_t i = 0; i < text.size() && result.size() < vl_text_drawing::kMostCharacters; ++i) {
        const wchar_t c = text[i];
        if (c == L'\t')
            result.append(4, L' ');
        else if (c == L'\r')
            result += i + 1 < text.size() && text[i + 1] == L'\n' ? L"" : L"\n";
        else if (c != 0)
            result += c;
    }
    return result;
}

VL_DrawnText VL_BreakText(HDC dc, const std::wstring &text, int width, bool wrap, int mostLines)
{
    return vl_text_drawing::Breaker(dc, text, width, wrap, (size_t)std::max(mostLines, 1)).run();
}

void VL_DrawBrokenText(HDC dc, const std::wstring &text, const VL_DrawnText &layout,
                       const VL_DrawnPlace &place)
{
    using namespace vl_text_drawing;
    const int count = linesShown(layout, place);
    const int width = place.area.right - place.area.left;
    const int top = topOf(layout, place, count);
    for (int i = 0; i < count; ++i) {
        const VL_DrawnLine &line = layout.lines[i];
        const int y = top + i * layout.lineHeight;
        if (y >= place.area.bottom || line.start + line.length > text.size())
            break;
        const wchar_t *characters = text.data() + line.start;
        const bool cut = i + 1 == count && count < (int)layout.lines.size();
        if (!place.ellipsis || (line.width <= width && !cut)) {
            ExtTextOutW(dc, leftOf(line.width, place), y, 0, NULL, characters, (UINT)line.length,
                        NULL);
            continue;
        }
        const int room = width - widthOf(dc, kEllipsis, 1);
        std::wstring shortened(characters, fitting(dc, characters, line.length, room));
        shortened += kEllipsis;
        ExtTextOutW(dc,
                    leftOf(std::min(width, widthOf(dc, shortened.data(), shortened.size())), place),
                    y, 0, NULL, shortened.data(), (UINT)shortened.size(), NULL);
    }
}

VL_Mask VL_MaskOfText(HFONT font, const std::wstring &text, const VL_DrawnText &layout,
                      const VL_DrawnPlace &place, int margin, const RECT &bounds)
{
    VL_Mask mask;
    const RECT reach = vl_text_drawing::reachOf(layout, place, margin, bounds);
    VL_Surface surface;
    if (IsRectEmpty(&reach) || !surface.create(reach.right - reach.left, reach.bottom - reach.top))
        return mask;
    LOGFONTW description = {};
    GetObjectW(font, sizeof(description), &description);
    // Smooth in greys: coloured edges are of no use in a mask.
    description.lfQuality = ANTIALIASED_QUALITY;
    const HFONT smooth = CreateFontIndirectW(&description);
    const HGDIOBJ before = SelectObject(surface.dc(), smooth);
    SetTextColor(surface.dc(), RGB(255, 255, 255));
    SetBkMode(surface.dc(), TRANSPARENT);
    VL_DrawnPlace moved = place;
    OffsetRect(&moved.area, -reach.left, -reach.top);
    VL_DrawBrokenText(surface.dc(), text, layout, moved);
    SelectObject(surface.dc(), before);
    DeleteObject(smooth);
    GdiFlush();
    mask.reset(reach);
    for (int y = 0; y < mask.height; ++y) {
        const VL_Argb *pixels = surface.row(y);
        for (int x = 0; x < mask.width; ++x)
            mask.cover[(size_t)y * mask.width + x] = (unsigned char)(pixels[x] >> 8);
    }
    return mask;
}
