// What other parts of a program ask of the large text box by messages: text, selection, commands.
#include "93_text_messages.h"

#include <algorithm>

void VL_TextMessages::setText(const wchar_t *text)
{
    VL_TextCutter cutter;
    if (text)
        cutter.add(text, wcslen(text));
    const wchar_t *lineEnd = cutter.lineEnd();
    m_view.setText(cutter.take(), lineEnd);
    m_form = VTB_FileForm();
}

bool VL_TextMessages::load(const std::wstring &path)
{
    VL_TextCutter cutter;
    VTB_FileForm form;
    if (!VTB_LoadText(path, cutter, form))
        return false;
    const wchar_t *lineEnd = cutter.lineEnd();
    m_view.setText(cutter.take(), lineEnd);
    m_form = form;
    return true;
}

bool VL_TextMessages::onText(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result)
{
    switch (message) {
    case WM_SETTEXT:
        setText((const wchar_t *)lParam);
        result = TRUE;
        return true;
    case WM_GETTEXTLENGTH:
        result = (LRESULT)data().outerLength();
        return true;
    case WM_GETTEXT: {
        wchar_t *target = (wchar_t *)lParam;
        if (!target || wParam == 0)
            return true;
        const size_t used =
            data().copyOuter(0, data().length(), data().outerLineEnd(), target, wParam - 1);
        target[used] = L'\0';
        result = (LRESULT)used;
        return true;
    }
    case WM_COPY:
        m_input.copy();
        return true;
    case WM_CUT:
        m_input.cut();
        return true;
    case WM_PASTE:
        m_input.paste();
        return true;
    case WM_CLEAR:
        m_input.clear();
        return true;
    case WM_UNDO:
    case EM_UNDO:
        m_input.undo();
        result = TRUE;
        return true;
    default:
        return false;
    }
}

// Offsets as the text goes out, -1 the end.
void VL_TextMessages::select(long long begin, long long end)
{
    const size_t length = data().length();
    const size_t from = begin < 0 ? length : data().innerOffset((size_t)begin);
    const size_t to = end < 0 ? length : data().innerOffset((size_t)end);
    m_view.editing().select(from, to);
}

// The messages of edit boxes that programs send most.
bool VL_TextMessages::onEdit(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result)
{
    VL_TextEditing &editing = m_view.editing();
    switch (message) {
    case EM_SETSEL:
        if ((int)wParam == -1)
            editing.select(editing.caret(), editing.caret());
        else
            select((int)wParam, (int)lParam);
        return true;
    case EM_GETSEL: {
        const DWORD begin = (DWORD)data().outerOffset(editing.selectionBegin());
        const DWORD end = (DWORD)data().outerOffset(editing.selectionEnd());
        if (wParam)
            *(DWORD *)wParam = begin;
        if (lParam)
            *(DWORD *)lParam = end;
        result = begin > 0xFFFF || end > 0xFFFF ? -1 : (LRESULT)MAKELONG(begin, end);
        return true;
    }
    case EM_REPLACESEL:
        editing.insert(lParam ? (const wchar_t *)lParam : L"");
        m_view.showCaret();
        return true;
    case EM_SCROLLCARET:
        m_view.showCaret(true);
        return true;
    case EM_SETREADONLY:
        m_input.setReadOnly(wParam != 0);
        result = TRUE;
        return true;
    case EM_GETLINECOUNT:
        result = (LRESULT)data().lineCount();
        return true;
    case EM_GETFIRSTVISIBLELINE:
        result = (LRESULT)m_view.top().line;
        return true;
    case EM_CANUNDO:
        result = editing.canUndo() && !m_input.isReadOnly();
        return true;
    default:
        return false;
    }
}

bool VL_TextMessages::onRequest(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result)
{
    switch (message) {
    case VL_WM_TEXT_COMMAND:
        result = lParam && runCommand(*(VL_TextCommand *)lParam);
        return true;
    case VL_WM_SET_OPTION:
        result = lParam && setOption(*(const VL_ControlOption *)lParam);
        return true;
    default:
        return onText(message, wParam, lParam, result) || onEdit(message, wParam, lParam, result);
    }
}

bool VL_TextMessages::setOption(const VL_ControlOption &option)
{
    const std::wstring name = option.name ? option.name : L"";
    if (name == L"wordWrap")
        m_view.setWordWrap(option.number != 0);
    else if (name == L"readOnly")
        m_input.setReadOnly(option.number != 0);
    else if (name == L"textAlign")
        m_view.setAlign(option.number);
    else
        return false;
    return true;
}

void VL_TextMessages::gotoPlace(int line, int column)
{
    const size_t index = (std::min)((size_t)(std::max)(line, 1), data().lineCount()) - 1;
    const size_t start = data().lineStart(index);
    const size_t most = data().lineEnd(index) - start;
    m_view.moveCaret(start + (std::min)((size_t)(std::max)(column, 1) - 1, most), false);
}

void VL_TextMessages::highlight(int line, int color)
{
    if (line < 1 || (size_t)line > data().lineCount())
        return;
    COLORREF wanted = (COLORREF)color & 0xFFFFFF;
    if (color == -1 && m_highlight != CLR_NONE)
        wanted = m_highlight;
    else if (color == -1)
        wanted = VTB_IsDark(VTB_ColorsOf(m_view.window(), false, true).back) ? RGB(80, 75, 30)
                                                                             : RGB(255, 245, 170);
    m_view.setLineColor((size_t)line - 1, wanted);
}

std::wstring VL_TextMessages::selectedText()
{
    const size_t begin = m_view.editing().selectionBegin();
    const size_t end = m_view.editing().selectionEnd();
    std::wstring text(data().outerOffset(end) - data().outerOffset(begin), L'\0');
    data().copyOuter(begin, end - begin, data().outerLineEnd(), &text[0], text.size());
    return text;
}

bool VL_TextMessages::runQuestion(VL_TextCommand &command)
{
    switch (command.command) {
    case VL_TEXT_FIND:
        command.number = m_input.find(command.text);
        return true;
    case VL_TEXT_FIND_NEXT:
        command.number = m_input.findNext();
        return true;
    case VL_TEXT_FIND_PREVIOUS:
        command.number = m_input.findPrevious();
        return true;
    case VL_TEXT_SELECTED_TEXT:
        command.answer = selectedText();
        return true;
    case VL_TEXT_LINE_COUNT:
        command.number = (int)(std::min)(data().lineCount(), (size_t)0x7FFFFFFF);
        return true;
    case VL_TEXT_IS_READ_ONLY:
        command.number = m_input.isReadOnly();
        return true;
    case VL_TEXT_LOAD_FILE:
        command.number = load(command.text);
        return true;
    default:
        return false;
    }
}

bool VL_TextMessages::runCommand(VL_TextCommand &command)
{
    switch (command.command) {
    case VL_TEXT_SELECT_ALL:
        m_input.selectAll();
        return true;
    case VL_TEXT_COPY:
        m_input.copy();
        return true;
    case VL_TEXT_CUT:
        m_input.cut();
        return true;
    case VL_TEXT_PASTE:
        m_input.paste();
        return true;
    case VL_TEXT_UNDO:
        m_input.undo();
        return true;
    case VL_TEXT_SELECT: {
        const long long begin = (std::max)(command.a, 0);
        select(begin, command.b > 0 ? begin + command.b : -1);
        m_view.showCaret();
        return true;
    }
    case VL_TEXT_APPEND:
        m_view.editing().append(command.text);
        m_view.scrollTo(true);
        return true;
    case VL_TEXT_SCROLL_TOP:
    case VL_TEXT_SCROLL_BOTTOM:
        m_view.scrollTo(command.command == VL_TEXT_SCROLL_BOTTOM);
        return true;
    case VL_TEXT_GOTO_LINE:
        gotoPlace(command.a, 1);
        return true;
    case VL_TEXT_HIGHLIGHT_LINE:
        highlight(command.a, command.b);
        return true;
    case VL_TEXT_CLEAR_HIGHLIGHT:
        m_view.clearLineColors();
        return true;
    default:
        return runQuestion(command);
    }
}
