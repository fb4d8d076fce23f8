// The text of edit boxes: selection, clipboard, scrolling, searching, marked lines.
#include "37_edit_text.h"

#include <richedit.h>

#include <algorithm>

namespace vl_edit_text {
namespace {

const UINT_PTR MarkSubclassId = 0x564C3A;
const wchar_t SoughtName[] = L"VL_SoughtText";
const COLORREF DefaultMark = RGB(255, 242, 157);

bool isRichEdit(HWND edit)
{
    return VL_HasClass(edit, L"RICHEDIT50W");
}

bool isTextBox(HWND edit)
{
    return VL_HasClass(edit, L"EDIT") || isRichEdit(edit);
}

bool isMultiLine(HWND edit)
{
    return (GetWindowLongW(edit, GWL_STYLE) & ES_MULTILINE) != 0;
}

// Hands a request over to the text box of our own class; whether it took it.
bool handOver(HWND edit, int command, int a = 0, int b = 0)
{
    VL_TextCommand request;
    request.command = command;
    request.a = a;
    request.b = b;
    return VL_SendTextCommand(edit, request);
}

// Whether a search was handed over, and what came of it.
bool handOverSearch(HWND edit, int command, const std::wstring &text, bool *found)
{
    VL_TextCommand request;
    request.command = command;
    request.text = text;
    const bool taken = VL_SendTextCommand(edit, request);
    *found = request.number != 0;
    return taken;
}

CHARRANGE selectionOf(HWND edit)
{
    CHARRANGE range = {};
    if (isRichEdit(edit)) {
        SendMessageW(edit, EM_EXGETSEL, 0, (LPARAM)&range);
    } else {
        DWORD start = 0, end = 0;
        SendMessageW(edit, EM_GETSEL, (WPARAM)&start, (LPARAM)&end);
        range.cpMin = (LONG)start;
        range.cpMax = (LONG)end;
    }
    return range;
}

void select(HWND edit, LONG start, LONG end)
{
    if (isRichEdit(edit)) {
        CHARRANGE range = {start, end};
        SendMessageW(edit, EM_EXSETSEL, 0, (LPARAM)&range);
    } else {
        SendMessageW(edit, EM_SETSEL, (WPARAM)start, end);
    }
    SendMessageW(edit, EM_SCROLLCARET, 0, 0);
}

// The text by the positions that the control counts in: a line end of a rich edit is one character.
std::wstring countedText(HWND edit)
{
    if (!isRichEdit(edit))
        return VL_GetText(edit);
    GETTEXTLENGTHEX lengthOf = {GTL_NUMCHARS | GTL_PRECISE, 1200};
    const LRESULT length = SendMessageW(edit, EM_GETTEXTLENGTHEX, (WPARAM)&lengthOf, 0);
    if (length <= 0)
        return std::wstring();
    std::wstring text((size_t)length + 1, L'\0');
    GETTEXTEX options = {};
    options.cb = (DWORD)(text.size() * sizeof(wchar_t));
    options.codepage = 1200;
    const LRESULT got = SendMessageW(edit, EM_GETTEXTEX, (WPARAM)&options, (LPARAM)&text[0]);
    text.resize((size_t)(got > 0 && got <= length ? got : 0));
    return text;
}

// The position in the control of a position in the text that the program reads.
LONG countedPosition(HWND edit, LONG position)
{
    if (!isRichEdit(edit))
        return position;
    const std::wstring text = VL_GetText(edit);
    LONG counted = position;
    for (size_t i = 1; i < text.size() && i < (size_t)position; ++i)
        counted -= text[i] == L'\n' && text[i - 1] == L'\r' ? 1 : 0;
    return counted;
}

std::wstring lineEndsOf(HWND edit, const std::wstring &text)
{
    const std::wstring lines = VL_WithCrLf(text);
    if (!isRichEdit(edit))
        return lines;
    std::wstring result;
    for (wchar_t c : lines) {
        if (c != L'\n')
            result += c;
    }
    return result;
}

void toLower(std::wstring &text)
{
    if (!text.empty())
        CharLowerBuffW(&text[0], (DWORD)text.size());
}

// Where `sought` first stands in text[from, to), -1 for nowhere. Linear whatever the texts hold.
long long firstPlace(const std::wstring &text, const std::wstring &sought, size_t from, size_t to)
{
    std::vector<size_t> border(sought.size(), 0);
    for (size_t i = 1, matched = 0; i < sought.size(); ++i) {
        while (matched > 0 && sought[i] != sought[matched])
            matched = border[matched - 1];
        matched += sought[i] == sought[matched] ? 1 : 0;
        border[i] = matched;
    }
    size_t matched = 0;
    for (size_t i = from; i < to; ++i) {
        while (matched > 0 && text[i] != sought[matched])
            matched = border[matched - 1];
        matched += text[i] == sought[matched] ? 1 : 0;
        if (matched == sought.size())
            return (long long)(i + 1 - matched);
    }
    return -1;
}

long long placeBehind(const std::wstring &text, const std::wstring &sought, size_t from)
{
    const long long found = firstPlace(text, sought, (std::min)(from, text.size()), text.size());
    return found >= 0 ? found : firstPlace(text, sought, 0, text.size());
}

// The last place that begins ahead of `before`, or the last one at all.
long long placeAhead(std::wstring text, std::wstring sought, size_t before)
{
    std::reverse(text.begin(), text.end());
    std::reverse(sought.begin(), sought.end());
    const size_t end = (std::min)(before + sought.size(), text.size() + 1) - 1;
    const size_t from = before == 0 ? text.size() : text.size() - end;
    const long long found = placeBehind(text, sought, from);
    return found < 0 ? -1 : (long long)(text.size() - sought.size()) - found;
}

bool search(HWND edit, const std::wstring &what, bool forward)
{
    std::wstring sought = lineEndsOf(edit, what);
    std::wstring text = countedText(edit);
    if (sought.empty() || sought.size() > text.size())
        return false;
    toLower(sought);
    toLower(text);
    const CHARRANGE selection = selectionOf(edit);
    const long long found = forward ? placeBehind(text, sought, (size_t)selection.cpMax)
                                    : placeAhead(text, sought, (size_t)selection.cpMin);
    if (found < 0)
        return false;
    select(edit, (LONG)found, (LONG)(found + (long long)sought.size()));
    return true;
}

// The marked line of a plain edit.
struct LineMark
{
    int line = -1;
    COLORREF color = DefaultMark;
};

// The line's place in the client area; empty when it does not show.
RECT placeOfLine(HWND edit, int line)
{
    RECT area = {};
    const LRESULT first = SendMessageW(edit, EM_GETFIRSTVISIBLELINE, 0, 0);
    if (line < first || line >= SendMessageW(edit, EM_GETLINECOUNT, 0, 0))
        return area;
    const HDC context = GetDC(edit);
    const HGDIOBJ font = (HGDIOBJ)SendMessageW(edit, WM_GETFONT, 0, 0);
    const HGDIOBJ old = font ? SelectObject(context, font) : NULL;
    TEXTMETRICW metrics = {};
    GetTextMetricsW(context, &metrics);
    if (old)
        SelectObject(context, old);
    ReleaseDC(edit, context);
    SendMessageW(edit, EM_GETRECT, 0, (LPARAM)&area);
    const LONG bottom = area.bottom;
    area.top += (LONG)(line - first) * metrics.tmHeight;
    area.bottom = (std::min)(area.top + metrics.tmHeight, bottom);
    return area;
}

bool isDark(COLORREF color)
{
    return GetRValue(color) * 3 + GetGValue(color) * 6 + GetBValue(color) < 1280;
}

// Colours what was painted without painting over it: on a light ground the colour is laid under
// dark text, on a dark one under light text. Doing it twice changes nothing.
void paintMark(HWND edit, const LineMark &mark)
{
    const DWORD patternAnd = 0x00A000C9, patternOr = 0x00FA0089;
    const RECT area = placeOfLine(edit, mark.line);
    if (area.bottom <= area.top)
        return;
    const HBRUSH brush = CreateSolidBrush(mark.color);
    HideCaret(edit);
    const HDC context = GetDC(edit);
    const HGDIOBJ old = SelectObject(context, brush);
    PatBlt(context, area.left, area.top, area.right - area.left, area.bottom - area.top,
           isDark((COLORREF)VL_GetBgColor(edit)) ? patternOr : patternAnd);
    SelectObject(context, old);
    ReleaseDC(edit, context);
    ShowCaret(edit);
    DeleteObject(brush);
}

// Whether the control may paint at once, rather than by WM_PAINT, because of the message.
bool paintsAtOnce(UINT message)
{
    switch (message) {
    case WM_CHAR:
    case WM_KEYDOWN:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_PASTE:
    case WM_CUT:
    case WM_CLEAR:
    case WM_UNDO:
    case WM_VSCROLL:
    case WM_HSCROLL:
    case WM_MOUSEWHEEL:
    case EM_SETSEL:
    case EM_REPLACESEL:
    case EM_UNDO:
        return true;
    default:
        return false;
    }
}

LRESULT CALLBACK markSubclass(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                              DWORD_PTR)
{
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(edit, markSubclass, id);
    const LRESULT result = DefSubclassProc(edit, message, wParam, lParam);
    if (message == WM_PAINT) {
        if (const LineMark *mark = VL_FindExtra<LineMark>(edit))
            paintMark(edit, *mark);
    } else if (paintsAtOnce(message) || (message == WM_MOUSEMOVE && (wParam & MK_LBUTTON))) {
        InvalidateRect(edit, NULL, FALSE);
    }
    return result;
}

// Formats a stretch of a rich edit; the selection, the view and the owner notice nothing.
void setBackColor(HWND edit, CHARRANGE range, bool isAutomatic, COLORREF color)
{
    const CHARRANGE selection = selectionOf(edit);
    POINT scroll = {};
    SendMessageW(edit, EM_GETSCROLLPOS, 0, (LPARAM)&scroll);
    const LRESULT events = SendMessageW(edit, EM_SETEVENTMASK, 0, 0);
    SendMessageW(edit, WM_SETREDRAW, FALSE, 0);
    CHARFORMAT2W format = {};
    format.cbSize = sizeof(format);
    format.dwMask = CFM_BACKCOLOR;
    format.dwEffects = isAutomatic ? CFE_AUTOBACKCOLOR : 0;
    format.crBackColor = color;
    SendMessageW(edit, EM_EXSETSEL, 0, (LPARAM)&range);
    SendMessageW(edit, EM_SETCHARFORMAT, SCF_SELECTION, (LPARAM)&format);
    SendMessageW(edit, EM_EXSETSEL, 0, (LPARAM)&selection);
    SendMessageW(edit, EM_SETSCROLLPOS, 0, (LPARAM)&scroll);
    SendMessageW(edit, WM_SETREDRAW, TRUE, 0);
    SendMessageW(edit, EM_SETEVENTMASK, 0, events);
    InvalidateRect(edit, NULL, TRUE);
}

void scroll(HWND edit, WPARAM where)
{
    if (!IsWindow(edit))
        return;
    SendMessageW(edit, WM_VSCROLL, where, 0);
    SendMessageW(edit, WM_VSCROLL, SB_ENDSCROLL, 0);
}

} // namespace
} // namespace vl_edit_text

std::wstring VL_Edit_GetSelectedText(HWND edit)
{
    using namespace vl_edit_text;
    VL_TextCommand request;
    request.command = VL_TEXT_SELECTED_TEXT;
    if (VL_SendTextCommand(edit, request))
        return request.answer;
    if (!isTextBox(edit))
        return std::wstring();
    const CHARRANGE range = selectionOf(edit);
    if (range.cpMax <= range.cpMin)
        return std::wstring();
    const std::wstring text = countedText(edit);
    const size_t start = (size_t)range.cpMin;
    if (start >= text.size())
        return std::wstring();
    const std::wstring selected = text.substr(start, (size_t)(range.cpMax - range.cpMin));
    return isRichEdit(edit) ? VL_WithCrLf(selected) : selected;
}

void VL_Edit_SelectAll(HWND edit)
{
    using namespace vl_edit_text;
    if (!handOver(edit, VL_TEXT_SELECT_ALL) && isTextBox(edit))
        SendMessageW(edit, EM_SETSEL, 0, -1);
}

void VL_Edit_Copy(HWND edit)
{
    using namespace vl_edit_text;
    if (!handOver(edit, VL_TEXT_COPY) && IsWindow(edit))
        SendMessageW(edit, WM_COPY, 0, 0);
}

void VL_Edit_Cut(HWND edit)
{
    using namespace vl_edit_text;
    if (!handOver(edit, VL_TEXT_CUT) && IsWindow(edit))
        SendMessageW(edit, WM_CUT, 0, 0);
}

void VL_Edit_Paste(HWND edit)
{
    using namespace vl_edit_text;
    if (!handOver(edit, VL_TEXT_PASTE) && IsWindow(edit))
        SendMessageW(edit, WM_PASTE, 0, 0);
}

void VL_Edit_Undo(HWND edit)
{
    using namespace vl_edit_text;
    if (!handOver(edit, VL_TEXT_UNDO) && isTextBox(edit))
        SendMessageW(edit, EM_UNDO, 0, 0);
}

void VL_Edit_SelectText(HWND edit, int start, int length)
{
    using namespace vl_edit_text;
    const int from = (std::max)(start, 0);
    if (handOver(edit, VL_TEXT_SELECT, from, (std::max)(length, 0)) || !isTextBox(edit))
        return;
    const LONG all = (LONG)SendMessageW(edit, WM_GETTEXTLENGTH, 0, 0);
    const LONG first = (std::min)((LONG)from, all);
    const LONG last = length <= 0 || length > all - first ? all : first + length;
    select(edit, countedPosition(edit, first), countedPosition(edit, last));
}

void VL_Edit_ReplaceSelection(HWND edit, const std::wstring &text)
{
    using namespace vl_edit_text;
    if (!isTextBox(edit) && !VL_HasClass(edit, L"VL_VirtualTextBox"))
        return;
    const std::wstring shown = isMultiLine(edit) ? VL_WithCrLf(text) : text;
    SendMessageW(edit, EM_REPLACESEL, TRUE, (LPARAM)shown.c_str());
}

void VL_ScrollToBottom(HWND edit)
{
    using namespace vl_edit_text;
    if (!handOver(edit, VL_TEXT_SCROLL_BOTTOM))
        scroll(edit, SB_BOTTOM);
}

void VL_ScrollToTop(HWND edit)
{
    using namespace vl_edit_text;
    if (!handOver(edit, VL_TEXT_SCROLL_TOP))
        scroll(edit, SB_TOP);
}

void VL_GotoLine(HWND edit, int line)
{
    using namespace vl_edit_text;
    if (handOver(edit, VL_TEXT_GOTO_LINE, line) || !isTextBox(edit))
        return;
    const int wanted = (std::min)((std::max)(line, 1), VL_GetLineCount(edit));
    const LRESULT start = SendMessageW(edit, EM_LINEINDEX, (WPARAM)(wanted - 1), 0);
    if (start >= 0)
        select(edit, (LONG)start, (LONG)start);
}

int VL_GetLineCount(HWND edit)
{
    using namespace vl_edit_text;
    VL_TextCommand request;
    request.command = VL_TEXT_LINE_COUNT;
    if (VL_SendTextCommand(edit, request))
        return request.number;
    if (isTextBox(edit))
        return (int)SendMessageW(edit, EM_GETLINECOUNT, 0, 0);
    const std::wstring text = VL_GetText(edit);
    return IsWindow(edit) ? 1 + (int)std::count(text.begin(), text.end(), L'\n') : 0;
}

bool VL_Find(HWND edit, const std::wstring &text)
{
    using namespace vl_edit_text;
    bool found = false;
    if (handOverSearch(edit, VL_TEXT_FIND, text, &found))
        return found;
    if (!isTextBox(edit))
        return false;
    VL_SetTextProperty(edit, SoughtName, text);
    return search(edit, text, true);
}

bool VL_FindNext(HWND edit)
{
    using namespace vl_edit_text;
    bool found = false;
    if (handOverSearch(edit, VL_TEXT_FIND_NEXT, L"", &found))
        return found;
    return isTextBox(edit) && search(edit, VL_GetTextProperty(edit, SoughtName), true);
}

bool VL_FindPrev(HWND edit)
{
    using namespace vl_edit_text;
    bool found = false;
    if (handOverSearch(edit, VL_TEXT_FIND_PREVIOUS, L"", &found))
        return found;
    return isTextBox(edit) && search(edit, VL_GetTextProperty(edit, SoughtName), false);
}

void VL_HighlightLine(HWND edit, int line, int color)
{
    using namespace vl_edit_text;
    if (handOver(edit, VL_TEXT_HIGHLIGHT_LINE, line, color) || !isTextBox(edit) || line < 1 ||
        line > VL_GetLineCount(edit))
        return;
    const COLORREF shown = color < 0 ? DefaultMark : (COLORREF)color & 0xFFFFFF;
    if (isRichEdit(edit)) {
        const LONG start = (LONG)SendMessageW(edit, EM_LINEINDEX, (WPARAM)(line - 1), 0);
        const LONG length = (LONG)SendMessageW(edit, EM_LINELENGTH, (WPARAM)start, 0);
        setBackColor(edit, {start, start + length}, false, shown);
    } else if (LineMark *mark = isMultiLine(edit) ? VL_Extra<LineMark>(edit) : nullptr) {
        mark->line = line - 1;
        mark->color = shown;
        SetWindowSubclass(edit, markSubclass, MarkSubclassId, 0);
        InvalidateRect(edit, NULL, TRUE);
    }
}

void VL_ClearHighlight(HWND edit)
{
    using namespace vl_edit_text;
    if (handOver(edit, VL_TEXT_CLEAR_HIGHLIGHT) || !isTextBox(edit))
        return;
    if (isRichEdit(edit)) {
        setBackColor(edit, {0, -1}, true, 0);
    } else if (LineMark *mark = VL_FindExtra<LineMark>(edit)) {
        mark->line = -1;
        RemoveWindowSubclass(edit, markSubclass, MarkSubclassId);
        InvalidateRect(edit, NULL, TRUE);
    }
}
