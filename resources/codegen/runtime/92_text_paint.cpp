// Painting the rows of the large text box: colours, words of the language, the margin with numbers.
#include "92_text_paint.h"

#include <algorithm>

namespace vl_text_paint {
namespace {

// Longer lines are shown plain: each painting would read them from their start.
const size_t kLongestScanned = 0x4000;
const size_t kLongestRun = 1000;
// Units painted in a row at most, were they all of width 0.
const size_t kMostUnits = 20000;

COLORREF blend(COLORREF a, COLORREF b, int percentOfB)
{
    const auto part = [percentOfB](int x, int y) { return x + (y - x) * percentOfB / 100; };
    return RGB(part(GetRValue(a), GetRValue(b)), part(GetGValue(a), GetGValue(b)),
               part(GetBValue(a), GetBValue(b)));
}

bool isDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

bool isHexDigit(wchar_t unit)
{
    return isDigit(unit) || ((unit | 0x20) >= L'a' && (unit | 0x20) <= L'f');
}

// What goes on in a name: ASCII letters, digits, "_", and all letters beyond, but no full-width
// signs or spaces.
bool isWordUnit(wchar_t unit)
{
    if (unit < 0x80)
        return isDigit(unit) || unit == L'_' || ((unit | 0x20) >= L'a' && (unit | 0x20) <= L'z');
    return unit >= 0xC0 && !(unit >= 0x2000 && unit < 0x2E80) &&
           !(unit >= 0x3000 && unit < 0x3040) && !(unit >= 0xFF00 && unit < 0xFF10) &&
           !(unit >= 0xFF1A && unit < 0xFF21);
}

// Sorted, so that a word is found by halving.
const std::vector<std::wstring> &keywords()
{
    static const std::vector<std::wstring> words = [] {
        std::vector<std::wstring> list = {L"\u53D8\u91CF",
                                          L"\u6574\u6570",
                                          L"\u957F\u6574\u6570",
                                          L"\u5C0F\u6570",
                                          L"\u53CC\u6D6E\u70B9",
                                          L"\u5355\u6D6E\u70B9",
                                          L"\u6587\u672C",
                                          L"\u903B\u8F91",
                                          L"\u6570\u7EC4",
                                          L"\u4E8C\u7EF4\u6570\u7EC4",
                                          L"\u4E09\u7EF4\u6570\u7EC4",
                                          L"\u5B57\u8282\u96C6",
                                          L"\u901A\u7528",
                                          L"\u7A7A",
                                          L"\u5982\u679C",
                                          L"\u5426\u5219",
                                          L"\u5426\u5219\u5982\u679C",
                                          L"\u9009\u62E9",
                                          L"\u5206\u652F",
                                          L"\u9ED8\u8BA4",
                                          L"\u5F53",
                                          L"\u5FAA\u73AF",
                                          L"\u8BA1\u6B21\u5FAA\u73AF",
                                          L"\u904D\u5386",
                                          L"\u8DF3\u51FA",
                                          L"\u7EE7\u7EED",
                                          L"\u51FD\u6570",
                                          L"\u8FD4\u56DE",
                                          L"\u7C7B",
                                          L"\u5C5E\u6027",
                                          L"\u65B9\u6CD5",
                                          L"\u516C\u5F00",
                                          L"\u79C1\u6709",
                                          L"\u771F",
                                          L"\u5047",
                                          L"\u5E76\u4E14",
                                          L"\u4E14",
                                          L"\u6216\u8005",
                                          L"\u6216",
                                          L"\u975E"};
        std::sort(list.begin(), list.end());
        return list;
    }();
    return words;
}

bool isKeyword(const std::wstring &line, size_t begin, size_t end)
{
    if (end - begin > 4)
        return false;
    const std::vector<std::wstring> &words = keywords();
    return std::binary_search(words.begin(), words.end(), line.substr(begin, end - begin));
}

// The end of the token that begins at `i`, and its kind.
size_t tokenEnd(const std::wstring &line, size_t i, int &kind)
{
    const size_t length = line.size();
    const wchar_t unit = line[i];
    const wchar_t second = i + 1 < length ? line[i + 1] : L'\0';
    size_t end = i + 1;
    kind = VTB_PLAIN;
    if (unit == L'/' && second == L'/') {
        kind = VTB_COMMENT;
        return length;
    }
    if (unit == L'/' && second == L'*') {
        kind = VTB_COMMENT;
        const size_t close = line.find(L"*/", i + 2);
        return close == std::wstring::npos ? length : close + 2;
    }
    if (unit == L'"' || unit == L'\'') {
        kind = VTB_STRING;
        while (end < length && line[end] != unit)
            end += line[end] == L'\\' ? 2 : 1;
        return (std::min)(end + 1, length);
    }
    if (isDigit(unit)) {
        kind = VTB_NUMBER;
        const bool hex = unit == L'0' && (second | 0x20) == L'x';
        end += hex ? 1 : 0;
        while (end < length &&
               (hex ? isHexDigit(line[end]) : isDigit(line[end]) || line[end] == L'.'))
            ++end;
        return end;
    }
    if (isWordUnit(unit)) {
        while (end < length && isWordUnit(line[end]))
            ++end;
        kind = isKeyword(line, i, end) ? VTB_KEYWORD : VTB_PLAIN;
    }
    return end;
}

} // namespace
} // namespace vl_text_paint

bool VTB_IsDark(COLORREF color)
{
    return GetRValue(color) * 3 + GetGValue(color) * 6 + GetBValue(color) < 1280;
}

VTB_Colors VTB_ColorsOf(HWND control, bool focused, bool enabled)
{
    using namespace vl_text_paint;
    VTB_Colors colors = {};
    colors.back = VL_HasBgColor(control) ? (COLORREF)VL_GetBgColor(control)
                                         : GetSysColor(enabled ? COLOR_WINDOW : COLOR_BTNFACE);
    COLORREF text = VL_HasTextColor(control) ? (COLORREF)VL_GetTextColor(control)
                                             : GetSysColor(COLOR_WINDOWTEXT);
    if (!VL_HasTextColor(control) && VTB_IsDark(colors.back) == VTB_IsDark(text))
        text = VTB_IsDark(colors.back) ? RGB(220, 220, 220) : RGB(0, 0, 0);
    if (!enabled)
        text = blend(text, colors.back, 50);
    static const COLORREF onLight[] = {0, RGB(20, 70, 190), RGB(170, 70, 10), RGB(90, 125, 90),
                                       RGB(130, 50, 150)};
    static const COLORREF onDark[] = {0, RGB(120, 170, 245), RGB(230, 165, 120), RGB(130, 165, 130),
                                      RGB(205, 160, 225)};
    const COLORREF *own = VTB_IsDark(colors.back) ? onDark : onLight;
    colors.token[VTB_PLAIN] = text;
    for (int kind = VTB_PLAIN + 1; kind < VTB_TOKEN_KINDS; ++kind)
        colors.token[kind] = enabled ? own[kind] : text;
    colors.selectedBack = focused ? GetSysColor(COLOR_HIGHLIGHT) : blend(colors.back, text, 20);
    colors.selectedText = focused ? GetSysColor(COLOR_HIGHLIGHTTEXT) : text;
    colors.marginBack = blend(colors.back, text, 5);
    colors.marginText = blend(colors.back, text, 50);
    return colors;
}

void VTB_ScanLine(const std::wstring &line, std::vector<unsigned char> &kinds)
{
    kinds.assign(line.size(), (unsigned char)VTB_PLAIN);
    for (size_t i = 0; i < line.size();) {
        int kind = VTB_PLAIN;
        const size_t end = vl_text_paint::tokenEnd(line, i, kind);
        std::fill(kinds.begin() + (std::ptrdiff_t)i, kinds.begin() + (std::ptrdiff_t)end,
                  (unsigned char)kind);
        i = end;
    }
}

// A wrapped line is painted row by row, but scanned once.
void VTB_RowPainter::scan(const VTB_Row &row, size_t lineStart, size_t lineLength)
{
    if (row.line == m_scannedLine)
        return;
    m_scannedLine = row.line;
    m_kinds.clear();
    if (row.highlights && lineLength <= vl_text_paint::kLongestScanned)
        VTB_ScanLine(m_data.text(lineStart, lineLength), m_kinds);
}

void VTB_RowPainter::fill(HDC context, const VTB_Row &row, long long from, long long to,
                          COLORREF color)
{
    RECT area = row.place;
    const long long left = row.left + from;
    const long long right = row.left + to;
    if (left >= area.right || right <= area.left)
        return;
    area.left = left > area.left ? (LONG)left : area.left;
    area.right = right < area.right ? (LONG)right : area.right;
    VTB_Fill(context, area, color);
}

// The gathered units, all in one colour.
void VTB_RowPainter::draw(HDC context, const VTB_Row &row, const Run &run, long long right)
{
    if (run.selected)
        fill(context, row, run.x, right, m_colors.selectedBack);
    if (!m_text.empty()) {
        SetTextColor(context, run.selected ? m_colors.selectedText : m_colors.token[run.kind]);
        if (run.elsewhere)
            SelectObject(context, m_font.elsewhere());
        ExtTextOutW(context, (int)(row.left + run.x), row.place.top + m_font.baseline(),
                    ETO_CLIPPED, &row.place, m_text.data(), (UINT)m_text.size(), m_widths.data());
        if (run.elsewhere)
            SelectObject(context, m_font.handle());
    }
    m_text.clear();
    m_widths.clear();
}

long long VTB_RowPainter::paint(HDC context, const VTB_Row &row)
{
    using namespace vl_text_paint;
    const size_t lineStart = m_data.lineStart(row.line);
    const size_t lineEnd = m_data.lineEnd(row.line);
    scan(row, lineStart, lineEnd - lineStart);
    VTB_Fill(context, row.place, row.back);
    SetBkMode(context, TRANSPARENT);
    SetTextAlign(context, TA_BASELINE);
    const size_t first = m_layout.columnAt(row.line, row.row, row.place.left - row.left, true);
    const size_t end = m_layout.rowEnd(row.line, row.row);
    long long x = m_layout.xOf(row.line, row.row, first);
    Run run;
    run.x = x;
    // One unit more tells whether a pair follows.
    const std::wstring text =
        m_data.text(lineStart + first, (std::min)(end - first, kMostUnits) + 1);
    const size_t count = (std::min)(end - first, text.size());
    size_t i = 0;
    for (; i < count && row.left + x < row.place.right; ++i) {
        const size_t offset = lineStart + first + i;
        const int kind = first + i < m_kinds.size() ? m_kinds[first + i] : VTB_PLAIN;
        const bool selected = offset >= row.selectionBegin && offset < row.selectionEnd;
        const bool tab = text[i] == L'\t';
        const bool elsewhere = m_font.isElsewhere(text[i]);
        if (kind != run.kind || selected != run.selected || elsewhere != run.elsewhere || tab ||
            m_text.size() >= kLongestRun) {
            draw(context, row, run, x);
            run.x = x;
            run.kind = kind;
            run.selected = selected;
            run.elsewhere = elsewhere;
        }
        const long long next = m_layout.advance(text.data(), i, text.size(), x);
        if (tab) {
            draw(context, row, run, next);
            run.x = next;
        } else {
            m_text += VTB_ShownUnit(text[i]);
            // The halves of a pair share its width: drawn one by one, they lie side by side.
            const bool second = next == x && i > 0 && text[i] >= 0xDC00 && text[i] < 0xE000;
            const int shared = second && !m_widths.empty() ? m_widths.back() / 2 : 0;
            if (shared)
                m_widths.back() -= shared;
            m_widths.push_back((int)(next - x) + shared);
        }
        x = next;
    }
    draw(context, row, run, x);
    // A selected line end shows as a blank.
    if (i == count && end == lineEnd - lineStart && lineEnd >= row.selectionBegin &&
        lineEnd < row.selectionEnd)
        fill(context, row, x, x + m_font.averageWidth(), m_colors.selectedBack);
    return x;
}

void VTB_RowPainter::paintNumber(HDC context, size_t line, const RECT &place, int padding)
{
    wchar_t text[24];
    const int length = swprintf(text, 24, L"%llu", (unsigned long long)line + 1);
    std::vector<int> widths;
    int width = 0;
    for (int i = 0; i < length; ++i) {
        widths.push_back(m_font.width(text[i]));
        width += widths.back();
    }
    SetBkMode(context, TRANSPARENT);
    SetTextAlign(context, TA_BASELINE);
    SetTextColor(context, m_colors.marginText);
    ExtTextOutW(context, place.right - padding - width, place.top + m_font.baseline(), ETO_CLIPPED,
                &place, text, (UINT)length, widths.data());
}

COLORREF VTB_LineColors::of(size_t line, COLORREF otherwise) const
{
    const auto found = m_colors.find(line);
    return found == m_colors.end() ? otherwise : found->second;
}

void VTB_LineColors::linesChanged(size_t line, size_t column, std::ptrdiff_t lines)
{
    if (lines == 0 || m_colors.empty())
        return;
    std::map<size_t, COLORREF> moved;
    for (const auto &color : m_colors) {
        const bool pushed = lines > 0 && column == 0 && color.first == line;
        if (color.first <= line && !pushed)
            moved.insert(color);
        else if (lines > 0 || color.first > line + (size_t)-lines)
            moved[color.first + (size_t)lines] = color.second;
    }
    m_colors.swap(moved);
}

void VTB_Fill(HDC context, const RECT &area, COLORREF color)
{
    SetBkColor(context, color);
    ExtTextOutW(context, 0, 0, ETO_OPAQUE, &area, L"", 0, NULL);
}

void VTB_PaintBuffered(HDC target, const RECT &clip, const std::function<void(HDC)> &paint)
{
    const int width = clip.right - clip.left;
    const int height = clip.bottom - clip.top;
    if (width <= 0 || height <= 0)
        return;
    const HDC context = CreateCompatibleDC(target);
    const HBITMAP bitmap = CreateCompatibleBitmap(target, width, height);
    if (context && bitmap) {
        const HGDIOBJ oldBitmap = SelectObject(context, bitmap);
        SetViewportOrgEx(context, -clip.left, -clip.top, NULL);
        paint(context);
        BitBlt(target, clip.left, clip.top, width, height, context, clip.left, clip.top, SRCCOPY);
        SelectObject(context, oldBitmap);
    } else {
        paint(target);
    }
    if (bitmap)
        DeleteObject(bitmap);
    if (context)
        DeleteDC(context);
}
