// What the user does to the large text box: keys, mouse, clipboard, searching.
#include "93_text_input.h"

#include <algorithm>

namespace vl_text_input {
namespace {

const size_t kNone = (size_t)-1;
const UINT_PTR kDragTimer = 1;
const UINT kDragInterval = 50;

// Another program may hold the clipboard for a moment.
bool openClipboard(HWND window)
{
    for (int attempt = 0; attempt < 10; ++attempt) {
        if (OpenClipboard(window))
            return true;
        Sleep(10);
    }
    return false;
}

bool setClipboardText(HWND window, const VirtualTextData &data, size_t begin, size_t end)
{
    const size_t units = end - begin + data.lineOf(end) - data.lineOf(begin);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, (units + 1) * sizeof(wchar_t));
    if (!memory)
        return false;
    if (wchar_t *text = (wchar_t *)GlobalLock(memory)) {
        const size_t used = data.copyOuter(begin, end - begin, L"\r\n", text, units);
        text[used] = L'\0';
        GlobalUnlock(memory);
    }
    bool done = false;
    if (openClipboard(window)) {
        EmptyClipboard();
        done = SetClipboardData(CF_UNICODETEXT, memory) != NULL;
        CloseClipboard();
    }
    if (!done)
        GlobalFree(memory);
    return done;
}

std::wstring clipboardText(HWND window)
{
    std::wstring result;
    if (!openClipboard(window))
        return result;
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
    if (const wchar_t *text = memory ? (const wchar_t *)GlobalLock(memory) : nullptr) {
        const size_t most = GlobalSize(memory) / sizeof(wchar_t);
        size_t length = 0;
        while (length < most && text[length])
            ++length;
        result.assign(text, length);
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return result;
}

} // namespace
} // namespace vl_text_input

void VL_TextInput::keyDown(WPARAM key, bool shift, bool control)
{
    if (moveKey(key, shift, control))
        return;
    if (control && commandKey(key, shift))
        return;
    if (key == VK_DELETE && shift && !control)
        cut();
    else if (key == VK_DELETE)
        remove(false, control);
    else if (key == VK_INSERT && shift && !control)
        paste();
}

bool VL_TextInput::moveKey(WPARAM key, bool shift, bool control)
{
    const size_t length = m_view.data().length();
    switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
        moveSideways(key == VK_RIGHT, shift, control);
        return true;
    case VK_UP:
    case VK_DOWN:
        if (control)
            m_view.scrollRows(key == VK_UP ? -1 : 1);
        else
            m_view.moveCaretRows(key == VK_UP ? -1 : 1, shift);
        return true;
    case VK_PRIOR:
    case VK_NEXT:
        page(key == VK_PRIOR ? -1 : 1, shift);
        return true;
    case VK_HOME:
        if (control)
            m_view.moveCaret(0, shift);
        else
            m_view.moveToRowEdge(false, shift);
        return true;
    case VK_END:
        if (control)
            m_view.moveCaret(length, shift);
        else
            m_view.moveToRowEdge(true, shift);
        return true;
    default:
        return false;
    }
}

// Keys held with Ctrl.
bool VL_TextInput::commandKey(WPARAM key, bool shift)
{
    switch (key) {
    case 'A':
        selectAll();
        return true;
    case 'C':
    case VK_INSERT:
        copy();
        return true;
    case 'X':
        cut();
        return true;
    case 'V':
        paste();
        return true;
    case 'Z':
        if (shift)
            redo();
        else
            undo();
        return true;
    case 'Y':
        redo();
        return true;
    default:
        return false;
    }
}

void VL_TextInput::moveSideways(bool right, bool shift, bool control)
{
    const size_t caret = editing().caret();
    size_t target = 0;
    if (control)
        target = right ? editing().wordRight(caret) : editing().wordLeft(caret);
    else if (editing().hasSelection() && !shift)
        target = right ? editing().selectionEnd() : editing().selectionBegin();
    else
        target = right ? editing().next(caret) : editing().previous(caret);
    m_view.moveCaret(target, shift);
}

void VL_TextInput::page(int direction, bool shift)
{
    const int rows = (std::max)(1, m_view.visibleRows() - 1) * direction;
    m_view.scrollRows(rows);
    m_view.moveCaretRows(rows, shift);
}

void VL_TextInput::character(wchar_t unit, bool shift, bool control)
{
    if (m_readOnly)
        return;
    switch (unit) {
    case L'\b':
        return remove(true, false);
    case 0x7F: // what Ctrl makes of the key
        return remove(true, true);
    case L'\r':
        editing().newLine();
        return m_view.showCaret();
    case L'\t':
        if (control)
            return;
        if (shift)
            editing().outdent((size_t)m_view.tabSpaces());
        else
            editing().indent((size_t)m_view.tabSpaces());
        return m_view.showCaret();
    default:
        if (unit >= 0x20)
            type(unit);
    }
}

void VL_TextInput::type(wchar_t unit)
{
    const bool isFirst = unit >= 0xD800 && unit < 0xDC00;
    const bool isSecond = unit >= 0xDC00 && unit < 0xE000;
    if (isFirst) {
        m_firstHalf = unit;
        return;
    }
    if (isSecond && !m_firstHalf)
        return;
    std::wstring text;
    if (isSecond)
        text += m_firstHalf;
    m_firstHalf = 0;
    text += unit;
    editing().insert(text, VL_TextEditing::Kind::Typing);
    m_view.showCaret();
}

void VL_TextInput::remove(bool back, bool word)
{
    if (m_readOnly)
        return;
    const size_t caret = editing().caret();
    if (back)
        editing().removeTo(word ? editing().wordLeft(caret) : editing().previous(caret));
    else
        editing().removeTo(word ? editing().wordRight(caret) : editing().next(caret));
    m_view.showCaret();
}

// The whole of what dragging selects by: the word or line around a place.
void VL_TextInput::unitAround(size_t offset, size_t &begin, size_t &end)
{
    begin = end = offset;
    if (m_unit == Unit::Word) {
        editing().wordAround(offset, begin, end);
    } else if (m_unit == Unit::Line) {
        const size_t line = m_view.data().lineOf(offset);
        begin = m_view.data().lineStart(line);
        end = m_view.data().lineStart(line + 1);
    }
}

void VL_TextInput::startDrag(Unit unit, size_t begin, size_t end)
{
    m_unit = unit;
    m_dragBegin = begin;
    m_dragEnd = end;
    m_dragging = true;
    SetCapture(m_view.window());
    SetTimer(m_view.window(), vl_text_input::kDragTimer, vl_text_input::kDragInterval, NULL);
}

void VL_TextInput::mouseDown(POINT point, bool shift, bool isDouble)
{
    SetFocus(m_view.window());
    // Whoever is told of the focus may end the window.
    if (!m_view.window())
        return;
    m_point = point;
    const VL_TextView::Hit hit = m_view.hitTest(point);
    const DWORD now = (DWORD)GetMessageTime();
    const bool isTriple = m_doubleTime && now - m_doubleTime <= GetDoubleClickTime() &&
                          abs(point.x - m_doublePoint.x) <= GetSystemMetrics(SM_CXDOUBLECLK) &&
                          abs(point.y - m_doublePoint.y) <= GetSystemMetrics(SM_CYDOUBLECLK);
    m_doubleTime = isDouble && !shift ? (now ? now : 1) : 0;
    m_doublePoint = point;
    m_unit = m_view.isOverMargin(point) || isTriple ? Unit::Line
             : isDouble                             ? Unit::Word
                                                    : Unit::Character;
    size_t begin = 0;
    size_t end = 0;
    unitAround(hit.offset, begin, end);
    if (shift) {
        m_view.moveCaret(hit.offset, true, hit.atRowEnd);
        begin = end = editing().anchor();
        m_unit = Unit::Character;
    } else if (m_unit == Unit::Character) {
        m_view.moveCaret(hit.offset, false, hit.atRowEnd);
    } else {
        editing().select(begin, end);
        m_view.showCaret();
    }
    startDrag(m_unit, begin, end);
}

void VL_TextInput::drag(POINT point)
{
    // Far outside is not quicker than a few rows outside.
    const RECT area = m_view.textArea();
    const LONG most = 3 * m_view.lineHeight();
    point.y = (std::max)(area.top - most, (std::min)(point.y, area.bottom + most));
    const VL_TextView::Hit hit = m_view.hitTest(point);
    if (m_unit == Unit::Character) {
        editing().select(m_dragBegin, hit.offset);
        m_view.moveCaret(hit.offset, true, hit.atRowEnd);
        return;
    }
    size_t begin = 0;
    size_t end = 0;
    unitAround(hit.offset, begin, end);
    if (begin < m_dragBegin)
        editing().select(m_dragEnd, begin);
    else
        editing().select(m_dragBegin, (std::max)(end, m_dragEnd));
    m_view.showCaret();
}

void VL_TextInput::mouseMove(POINT point)
{
    if (!m_dragging || (point.x == m_point.x && point.y == m_point.y))
        return;
    m_point = point;
    drag(point);
}

void VL_TextInput::timer()
{
    RECT area = m_view.textArea();
    if (m_dragging && !PtInRect(&area, m_point))
        drag(m_point);
}

void VL_TextInput::mouseUp()
{
    if (!m_dragging)
        return;
    m_dragging = false;
    KillTimer(m_view.window(), vl_text_input::kDragTimer);
    if (GetCapture() == m_view.window())
        ReleaseCapture();
}

void VL_TextInput::wheel(int delta, bool sideways)
{
    UINT lines = 3;
    SystemParametersInfoW(sideways ? SPI_GETWHEELSCROLLCHARS : SPI_GETWHEELSCROLLLINES, 0, &lines,
                          0);
    int &gathered = m_wheel[sideways ? 1 : 0];
    // Fine wheels send parts of a notch.
    gathered += delta;
    const int notches = gathered / WHEEL_DELTA;
    gathered -= notches * WHEEL_DELTA;
    const bool byPage = lines == WHEEL_PAGESCROLL || (int)lines > m_view.visibleRows();
    const long long amount = byPage ? (std::max)(1, m_view.visibleRows() - 1) : (int)lines;
    if (sideways)
        m_view.scrollColumns(notches * amount * m_view.lineHeight());
    else
        m_view.scrollRows(-notches * amount);
}

void VL_TextInput::selectAll()
{
    editing().select(0, m_view.data().length());
}

void VL_TextInput::copy()
{
    if (editing().hasSelection())
        vl_text_input::setClipboardText(m_view.window(), m_view.data(), editing().selectionBegin(),
                                        editing().selectionEnd());
}

void VL_TextInput::cut()
{
    if (m_readOnly || !editing().hasSelection())
        return;
    // What could not be copied stays.
    if (vl_text_input::setClipboardText(m_view.window(), m_view.data(), editing().selectionBegin(),
                                        editing().selectionEnd()))
        clear();
}

void VL_TextInput::paste()
{
    if (m_readOnly)
        return;
    const std::wstring text = vl_text_input::clipboardText(m_view.window());
    if (text.empty())
        return;
    editing().insert(text);
    m_view.showCaret();
}

void VL_TextInput::clear()
{
    if (m_readOnly || !editing().hasSelection())
        return;
    editing().removeTo(editing().caret());
    m_view.showCaret();
}

void VL_TextInput::undo()
{
    if (m_readOnly || !editing().canUndo())
        return;
    editing().undo();
    m_view.showCaret();
}

void VL_TextInput::redo()
{
    if (m_readOnly || !editing().canRedo())
        return;
    editing().redo();
    m_view.showCaret();
}

bool VL_TextInput::showFound(size_t offset, size_t length)
{
    if (offset == vl_text_input::kNone)
        return false;
    editing().select(offset, offset + length);
    m_view.showCaret();
    return true;
}

bool VL_TextInput::find(const std::wstring &text)
{
    VL_TextCutter cutter;
    cutter.add(text.data(), text.size());
    m_pattern.clear();
    for (const std::wstring &piece : cutter.take())
        m_pattern += piece;
    return findNext();
}

bool VL_TextInput::findNext()
{
    const size_t length = m_view.data().length();
    const size_t from = editing().selectionEnd();
    size_t found = m_view.data().find(m_pattern, from, length);
    if (found == vl_text_input::kNone)
        found = m_view.data().find(m_pattern, 0, (std::min)(length, from + m_pattern.size()));
    return showFound(found, m_pattern.size());
}

bool VL_TextInput::findPrevious()
{
    const size_t length = m_view.data().length();
    size_t found = m_view.data().findLast(m_pattern, 0, editing().selectionBegin());
    if (found == vl_text_input::kNone)
        found = m_view.data().findLast(m_pattern, 0, length);
    return showFound(found, m_pattern.size());
}
