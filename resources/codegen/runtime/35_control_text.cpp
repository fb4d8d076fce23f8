// Text of controls and how it stands: alignment, wrapping, size, read-only.
#include "35_control_text.h"

#include <richedit.h>

#include <algorithm>
#include <cstring>

namespace vl_control_text {
namespace {

const UINT_PTR PendingSubclassId = 0x564C4A;
const UINT FlushMessage = WM_APP + 0x1802;
const DWORD FlushMilliseconds = 50;
// A window of another program may hang; it gets this long to answer.
const UINT AnswerMilliseconds = 2000;
const size_t LongText = 10000;

bool isEdit(HWND window)
{
    return VL_HasClass(window, L"EDIT");
}

bool isRichEdit(HWND window)
{
    return VL_HasClass(window, L"RICHEDIT50W");
}

bool isMultiLineEdit(HWND window)
{
    return isEdit(window) && (GetWindowLongW(window, GWL_STYLE) & ES_MULTILINE);
}

bool isOfThisProgram(HWND window)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId();
}

// SendMessageW that does not wait for ever for another program.
LRESULT ask(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (isOfThisProgram(window))
        return SendMessageW(window, message, wParam, lParam);
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, AnswerMilliseconds,
                        &answer);
    return (LRESULT)answer;
}

std::wstring shownText(HWND window, const std::wstring &text)
{
    return isMultiLineEdit(window) ? VL_WithCrLf(text) : text;
}

struct Source
{
    const std::wstring *text;
    size_t position;
};

DWORD CALLBACK readText(DWORD_PTR cookie, BYTE *buffer, LONG wanted, LONG *got)
{
    Source *source = (Source *)cookie;
    const size_t left = source->text->size() - source->position;
    const size_t length = (std::min)((size_t)(std::max)(wanted, 0L) / sizeof(wchar_t), left);
    std::memcpy(buffer, source->text->data() + source->position, length * sizeof(wchar_t));
    source->position += length;
    *got = (LONG)(length * sizeof(wchar_t));
    return 0;
}

// Rich edits may need a time that grows with the square of a text that is set at once, but not of
// one that they read bit by bit.
void streamText(HWND edit, const std::wstring &text)
{
    Source source = {&text, 0};
    EDITSTREAM stream = {(DWORD_PTR)&source, 0, readText};
    SendMessageW(edit, EM_STREAMIN, SF_TEXT | SF_UNICODE, (LPARAM)&stream);
}

void setShownText(HWND window, const std::wstring &text)
{
    if (text.size() > LongText && isRichEdit(window) && isOfThisProgram(window))
        streamText(window, VL_WithCrLf(text));
    else
        ask(window, WM_SETTEXT, 0, (LPARAM)text.c_str());
    // Of all text boxes only this kind does not tell by itself that its text was set.
    if (isMultiLineEdit(window) && isOfThisProgram(window))
        VL_NotifyOwner(window, EN_CHANGE, (LPARAM)window);
}

void appendToEdit(HWND edit, const std::wstring &text)
{
    const LRESULT length = SendMessageW(edit, WM_GETTEXTLENGTH, 0, 0);
    // The limit is for typing, not for the program.
    const LRESULT limit = SendMessageW(edit, EM_GETLIMITTEXT, 0, 0);
    const bool isTight = limit < length + (LRESULT)text.size();
    if (isTight)
        SendMessageW(edit, EM_SETLIMITTEXT, 0x7FFFFFFE, 0);
    SendMessageW(edit, EM_SETSEL, (WPARAM)length, (LPARAM)length);
    SendMessageW(edit, EM_REPLACESEL, FALSE, (LPARAM)text.c_str());
    SendMessageW(edit, EM_SCROLLCARET, 0, 0);
    if (isTight)
        SendMessageW(edit, EM_SETLIMITTEXT, (WPARAM)limit, 0);
}

void appendToRichEdit(HWND edit, const std::wstring &text)
{
    CHARRANGE end = {0x7FFFFFFE, 0x7FFFFFFE};
    SendMessageW(edit, EM_EXSETSEL, 0, (LPARAM)&end);
    SendMessageW(edit, EM_REPLACESEL, FALSE, (LPARAM)text.c_str());
    // Without the focus it does not follow its caret.
    SendMessageW(edit, WM_VSCROLL, SB_BOTTOM, 0);
}

// Text that waits to be appended. Appending costs a box a good deal, repainting above all: what
// comes in quick succession goes in together, at the latest ahead of the next message to the box,
// so that nobody sees the box without it.
struct PendingText
{
    std::wstring text;
    DWORD lastFlush = 0;
    bool isFlushing = false;
};

void appendNow(HWND edit, const std::wstring &text)
{
    if (isRichEdit(edit))
        appendToRichEdit(edit, text);
    else
        appendToEdit(edit, text);
}

void flush(HWND edit)
{
    PendingText *pending = VL_FindExtra<PendingText>(edit);
    if (!pending || pending->isFlushing || pending->text.empty())
        return;
    std::wstring text;
    text.swap(pending->text);
    pending->isFlushing = true;
    appendNow(edit, text);
    // The owner was told of it and may have closed the window.
    if ((pending = VL_FindExtra<PendingText>(edit))) {
        pending->isFlushing = false;
        pending->lastFlush = GetTickCount();
    }
}

LRESULT CALLBACK pendingSubclass(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR)
{
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(edit, pendingSubclass, PendingSubclassId);
    else
        flush(edit);
    return message == FlushMessage ? 0 : DefSubclassProc(edit, message, wParam, lParam);
}

void appendSoon(HWND edit, const std::wstring &text)
{
    PendingText *pending = VL_Extra<PendingText>(edit);
    if (!pending)
        return;
    if (pending->text.empty()) {
        SetWindowSubclass(edit, pendingSubclass, PendingSubclassId, 0);
        PostMessageW(edit, FlushMessage, 0, 0);
    }
    pending->text += text;
    if (GetTickCount() - pending->lastFlush >= FlushMilliseconds)
        flush(edit);
}

bool isOfThisThread(HWND window)
{
    return GetWindowThreadProcessId(window, NULL) == GetCurrentThreadId();
}

} // namespace
} // namespace vl_control_text

bool VL_OfferOption(HWND control, const wchar_t *name, const std::wstring &text, int number)
{
    VL_ControlOption option = {name, text, number};
    return control && SendMessageW(control, VL_WM_SET_OPTION, 0, (LPARAM)&option) != 0;
}

bool VL_SendTextCommand(HWND control, VL_TextCommand &command)
{
    return VL_HasClass(control, L"VL_VirtualTextBox") &&
           SendMessageW(control, VL_WM_TEXT_COMMAND, 0, (LPARAM)&command) != 0;
}

std::wstring VL_GetText(HWND window)
{
    using namespace vl_control_text;
    const LRESULT length = IsWindow(window) ? ask(window, WM_GETTEXTLENGTH, 0, 0) : 0;
    if (length <= 0)
        return std::wstring();
    std::wstring text((size_t)length + 1, L'\0');
    const LRESULT got = ask(window, WM_GETTEXT, text.size(), (LPARAM)&text[0]);
    text.resize((size_t)(got > 0 && got <= length ? got : 0));
    return text;
}

std::wstring VL_GetText(intptr_t window)
{
    return VL_GetText((HWND)window);
}

void VL_SetText(HWND window, const std::wstring &text)
{
    using namespace vl_control_text;
    if (IsWindow(window))
        setShownText(window, shownText(window, text));
}

void VL_SetText(intptr_t window, const std::wstring &text)
{
    VL_SetText((HWND)window, text);
}

void VL_SetTextStr(HWND window, const std::wstring &text)
{
    using namespace vl_control_text;
    if (!IsWindow(window))
        return;
    const std::wstring shown = shownText(window, text);
    // Nothing is read when the lengths tell already that it differs.
    const LRESULT length = ask(window, WM_GETTEXTLENGTH, 0, 0);
    const bool canBeEqual = isRichEdit(window) || length == (LRESULT)shown.size();
    if (!canBeEqual || VL_GetText(window) != (isRichEdit(window) ? VL_WithCrLf(shown) : shown))
        setShownText(window, shown);
}

void VL_AppendText(HWND window, const std::wstring &text)
{
    using namespace vl_control_text;
    if (!IsWindow(window) || text.empty())
        return;
    VL_TextCommand append;
    append.command = VL_TEXT_APPEND;
    append.text = text;
    if (VL_SendTextCommand(window, append))
        return;
    if (!isRichEdit(window) && !isEdit(window))
        VL_SetText(window, VL_GetText(window) + text);
    else if (isOfThisThread(window))
        appendSoon(window, shownText(window, text));
    else
        appendNow(window, shownText(window, text));
}

std::wstring VL_WithCrLf(const std::wstring &text)
{
    std::wstring result;
    result.reserve(text.size() + text.size() / 32);
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != L'\r' && text[i] != L'\n') {
            result += text[i];
            continue;
        }
        result += L"\r\n";
        if (text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n')
            ++i;
    }
    return result;
}

namespace vl_control_text {
namespace {

const UINT_PTR AutoSizeSubclassId = 0x564C36;

int alignOf(const VL_Any &align)
{
    if (align.type != VL_Any::TypeString) {
        const long long number = align;
        return number == VL_ALIGN_CENTER || number == VL_ALIGN_RIGHT ? (int)number : VL_ALIGN_LEFT;
    }
    const std::wstring word = align.toStr();
    if (word == L"\u5C45\u4E2D")
        return VL_ALIGN_CENTER;
    return word == L"\u53F3\u5BF9\u9F50" ? VL_ALIGN_RIGHT : VL_ALIGN_LEFT;
}

const wchar_t *alignWord(int align)
{
    if (align == VL_ALIGN_CENTER)
        return L"\u5C45\u4E2D";
    return align == VL_ALIGN_RIGHT ? L"\u53F3\u5BF9\u9F50" : L"\u5DE6\u5BF9\u9F50";
}

void setStyleBits(HWND control, LONG mask, LONG bits)
{
    const LONG style = GetWindowLongW(control, GWL_STYLE);
    if ((style & mask) == bits)
        return;
    SetWindowLongW(control, GWL_STYLE, (style & ~mask) | bits);
    InvalidateRect(control, NULL, TRUE);
}

bool isTextStatic(HWND control)
{
    const LONG kind = GetWindowLongW(control, GWL_STYLE) & SS_TYPEMASK;
    return VL_HasClass(control, WC_STATICW) &&
           (kind == SS_LEFT || kind == SS_CENTER || kind == SS_RIGHT || kind == SS_LEFTNOWORDWRAP);
}

void alignRichEdit(HWND edit, int align)
{
    CHARRANGE selection = {};
    SendMessageW(edit, EM_EXGETSEL, 0, (LPARAM)&selection);
    SendMessageW(edit, WM_SETREDRAW, FALSE, 0);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    PARAFORMAT2 format = {};
    format.cbSize = sizeof(format);
    format.dwMask = PFM_ALIGNMENT;
    format.wAlignment = align == VL_ALIGN_CENTER  ? PFA_CENTER
                        : align == VL_ALIGN_RIGHT ? PFA_RIGHT
                                                  : PFA_LEFT;
    SendMessageW(edit, EM_SETPARAFORMAT, 0, (LPARAM)&format);
    SendMessageW(edit, EM_EXSETSEL, 0, (LPARAM)&selection);
    SendMessageW(edit, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(edit, NULL, TRUE);
}

// Of a check box or radio button: its mark and the gap behind it, in design pixels.
const int MarkWidth = 19;

SIZE idealSize(HWND control)
{
    SIZE size = {};
    const HDC context = GetDC(control);
    const HGDIOBJ font = (HGDIOBJ)SendMessageW(control, WM_GETFONT, 0, 0);
    const HGDIOBJ old = font ? SelectObject(context, font) : NULL;
    RECT area = {};
    std::wstring text = VL_GetText(control);
    if (text.empty())
        text = L" ";
    const bool noPrefix =
        VL_HasClass(control, WC_STATICW) && (GetWindowLongW(control, GWL_STYLE) & SS_NOPREFIX);
    DrawTextW(context, text.c_str(), (int)text.size(), &area,
              DT_CALCRECT | DT_EXPANDTABS | (noPrefix ? DT_NOPREFIX : 0));
    if (old)
        SelectObject(context, old);
    ReleaseDC(control, context);
    RECT window = {}, client = {};
    GetWindowRect(control, &window);
    GetClientRect(control, &client);
    size.cx = area.right + (window.right - window.left) - client.right;
    size.cy = area.bottom + (window.bottom - window.top) - client.bottom;
    if (VL_HasClass(control, WC_BUTTONW)) {
        size.cx += VL_ScaleX(control, MarkWidth);
        size.cy = (std::max)(size.cy, (LONG)VL_ScaleY(control, 16));
    }
    return size;
}

void fitToText(HWND control)
{
    const SIZE size = idealSize(control);
    SetWindowPos(control, NULL, 0, 0, size.cx, size.cy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

LRESULT CALLBACK autoSizeSubclass(HWND control, UINT message, WPARAM wParam, LPARAM lParam,
                                  UINT_PTR, DWORD_PTR)
{
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(control, autoSizeSubclass, AutoSizeSubclassId);
    const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
    if (message == WM_SETTEXT || message == WM_SETFONT)
        fitToText(control);
    return result;
}

// The edit that a combo box holds, or the control itself.
HWND textBoxOf(HWND control)
{
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    const bool isCombo = VL_HasClass(control, WC_COMBOBOXW);
    return isCombo && GetComboBoxInfo(control, &info) && info.hwndItem ? info.hwndItem : control;
}

} // namespace
} // namespace vl_control_text

void VL_SetTextAlign(HWND control, const VL_Any &align)
{
    using namespace vl_control_text;
    const int wanted = alignOf(align);
    if (!IsWindow(control) || VL_OfferOption(control, L"textAlign", alignWord(wanted), wanted))
        return;
    if (isRichEdit(control)) {
        alignRichEdit(control, wanted);
    } else if (isTextStatic(control)) {
        const LONG styles[] = {SS_LEFT, SS_CENTER, SS_RIGHT};
        setStyleBits(control, SS_TYPEMASK, styles[wanted]);
    } else if (isEdit(control)) {
        const LONG styles[] = {ES_LEFT, ES_CENTER, ES_RIGHT};
        setStyleBits(control, ES_CENTER | ES_RIGHT, styles[wanted]);
    } else if (VL_HasClass(control, WC_BUTTONW)) {
        const LONG styles[] = {BS_LEFT, BS_CENTER, BS_RIGHT};
        setStyleBits(control, BS_CENTER, styles[wanted]);
    }
}

void VL_SetWordWrap(HWND control, bool on)
{
    using namespace vl_control_text;
    if (!IsWindow(control) || VL_OfferOption(control, L"wordWrap", L"", on))
        return;
    if (isRichEdit(control)) {
        // A line of width 1 means never to wrap, of width 0 to wrap at the control's.
        SendMessageW(control, EM_SETTARGETDEVICE, 0, on ? 0 : 1);
        return;
    }
    const LONG kind = GetWindowLongW(control, GWL_STYLE) & SS_TYPEMASK;
    if (isTextStatic(control) && (kind == SS_LEFT || kind == SS_LEFTNOWORDWRAP))
        setStyleBits(control, SS_TYPEMASK, on ? SS_LEFT : SS_LEFTNOWORDWRAP);
}

void VL_SetAutoSize(HWND control, bool on)
{
    using namespace vl_control_text;
    if (!IsWindow(control) || VL_OfferOption(control, L"autoSize", L"", on))
        return;
    if (!on) {
        RemoveWindowSubclass(control, autoSizeSubclass, AutoSizeSubclassId);
    } else if (isTextStatic(control) || VL_HasClass(control, WC_BUTTONW)) {
        SetWindowSubclass(control, autoSizeSubclass, AutoSizeSubclassId, 0);
        fitToText(control);
    }
}

void VL_SetReadOnly(HWND control, bool on)
{
    using namespace vl_control_text;
    if (!IsWindow(control) || VL_OfferOption(control, L"readOnly", L"", on))
        return;
    const HWND box = textBoxOf(control);
    if (isEdit(box) || isRichEdit(box))
        SendMessageW(box, EM_SETREADONLY, on, 0);
}

bool VL_IsReadOnly(HWND control)
{
    using namespace vl_control_text;
    VL_TextCommand question;
    question.command = VL_TEXT_IS_READ_ONLY;
    if (VL_SendTextCommand(control, question))
        return question.number != 0;
    const HWND box = textBoxOf(control);
    if (isEdit(box))
        return (GetWindowLongW(box, GWL_STYLE) & ES_READONLY) != 0;
    return isRichEdit(box) && (SendMessageW(box, EM_GETOPTIONS, 0, 0) & ECO_READONLY);
}
