// The large text box, a control of our own: texts of many megabytes open, scroll and change without
// delay.
#include "93_virtual_text_box.h"
#include "93_text_window.h"

#include <algorithm>

namespace vl_virtual_text_box {
namespace {

int clamped(size_t number)
{
    return (int)(std::min)(number, (size_t)0x7FFFFFFF);
}

} // namespace
} // namespace vl_virtual_text_box

HWND VL_CreateVirtualTextBox(HWND parent, int x, int y, int w, int h, int id)
{
    const wchar_t *windowClass = VTB_WindowClass();
    if (!windowClass)
        return NULL;
    return CreateWindowExW(WS_EX_CLIENTEDGE, windowClass, L"",
                           WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | WS_VSCROLL |
                               WS_HSCROLL,
                           x, y, w, h, parent, (HMENU)(intptr_t)id, g_hInstance, NULL);
}

void VL_VTB_ShowLineNumbers(HWND box, bool on)
{
    VTB_Call(box, [on](VL_TextMessages &self) { self.view().showLineNumbers(on); });
}

void VL_VTB_SetLineNumberWidth(HWND box, int width)
{
    VTB_Call(box, [width](VL_TextMessages &self) { self.view().setLineNumberWidth(width); });
}

void VL_VTB_SetReadOnly(HWND box, bool on)
{
    VTB_Call(box, [on](VL_TextMessages &self) { self.input().setReadOnly(on); });
}

void VL_VTB_SetSyntaxHighlight(HWND box, bool on)
{
    VTB_Call(box, [on](VL_TextMessages &self) { self.view().setHighlighting(on); });
}

void VL_VTB_SetWordWrap(HWND box, bool on)
{
    VTB_Call(box, [on](VL_TextMessages &self) { self.view().setWordWrap(on); });
}

void VL_VTB_SetTabSpaces(HWND box, int spaces)
{
    spaces = (std::max)(1, (std::min)(spaces, 32));
    VTB_Call(box, [spaces](VL_TextMessages &self) {
        SetPropW(self.view().window(), L"VL_VTB_TabSpaces", (HANDLE)(intptr_t)spaces);
        self.view().invalidate();
    });
}

void VL_VTB_SetTextColor(HWND box, int color)
{
    if (VL_HasClass(box, L"VL_VirtualTextBox"))
        VL_SetTextColor(box, color);
}

void VL_VTB_SetBgColor(HWND box, int color)
{
    if (VL_HasClass(box, L"VL_VirtualTextBox"))
        VL_SetBgColor(box, color);
}

void VL_VTB_SetHighlightColor(HWND box, int color)
{
    const COLORREF wanted = (COLORREF)color & 0xFFFFFF;
    VTB_Call(box, [wanted](VL_TextMessages &self) { self.setHighlightColor(wanted); });
}

int VL_VTB_GetLineCount(HWND box)
{
    int count = 0;
    VTB_Call(box, [&count](VL_TextMessages &self) {
        count = vl_virtual_text_box::clamped(self.data().lineCount());
    });
    return count;
}

int VL_VTB_GetCurrentLine(HWND box)
{
    int line = 0;
    VTB_Call(box, [&line](VL_TextMessages &self) {
        const size_t caret = self.view().editing().caret();
        line = vl_virtual_text_box::clamped(self.data().lineOf(caret) + 1);
    });
    return line;
}

int VL_VTB_GetCurrentColumn(HWND box)
{
    int column = 0;
    VTB_Call(box, [&column](VL_TextMessages &self) {
        const size_t caret = self.view().editing().caret();
        const size_t start = self.data().lineStart(self.data().lineOf(caret));
        column = vl_virtual_text_box::clamped(caret - start + 1);
    });
    return column;
}

void VL_VTB_SetCursorPos(HWND box, int line, int column)
{
    VTB_Call(box, [line, column](VL_TextMessages &self) { self.gotoPlace(line, column); });
}

std::wstring VL_VTB_GetLineText(HWND box, int line)
{
    std::wstring text;
    VTB_Call(box, [&text, line](VL_TextMessages &self) {
        if (line < 1 || (size_t)line > self.data().lineCount())
            return;
        const size_t start = self.data().lineStart((size_t)line - 1);
        text = self.data().text(start, self.data().lineEnd((size_t)line - 1) - start);
    });
    return text;
}

bool VL_VTB_LoadFile(HWND box, const std::wstring &path)
{
    bool done = false;
    VTB_Call(box, [&done, &path](VL_TextMessages &self) { done = self.load(path); });
    return done;
}

bool VL_VTB_SaveFile(HWND box, const std::wstring &path)
{
    bool done = false;
    VTB_Call(box, [&done, &path](VL_TextMessages &self) { done = self.save(path); });
    return done;
}
