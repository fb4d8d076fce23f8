// The large text box as a user and a program meet it: keys, mouse, scrolling, files, painting.
#include "35_control_text.h"
#include "40_files.h"
#include "93_virtual_text_box.h"
#include "gdi_count.h"

#include <algorithm>

namespace {

const int kId = 77;
const int kChanged = 1;
const int kScrolled = 0x0217;

HWND makeBox(const std::wstring &text, int width = 300, int height = 200)
{
    const HWND box = VL_CreateVirtualTextBox(testWindow(), 0, 0, width, height, kId);
    VL_SetControlFont(box, L"Microsoft YaHei UI", 9, false, false, false, false);
    SetWindowTextW(box, text.c_str());
    pumpMessages();
    takeTold();
    return box;
}

std::wstring textOf(HWND box)
{
    std::wstring text((size_t)SendMessageW(box, WM_GETTEXTLENGTH, 0, 0) + 1, L'?');
    text.resize((size_t)SendMessageW(box, WM_GETTEXT, text.size(), (LPARAM)&text[0]));
    return text;
}

VL_TextCommand command(HWND box, int number, int a = 0, int b = 0, const std::wstring &text = L"")
{
    VL_TextCommand request;
    request.command = number;
    request.a = a;
    request.b = b;
    request.text = text;
    CHECK_EQ(SendMessageW(box, VL_WM_TEXT_COMMAND, 0, (LPARAM)&request), (LRESULT)1);
    return request;
}

std::wstring selected(HWND box)
{
    return command(box, VL_TEXT_SELECTED_TEXT).answer;
}

// Line and column of the caret.
std::wstring place(HWND box)
{
    return std::to_wstring(VL_VTB_GetCurrentLine(box)) + L":" +
           std::to_wstring(VL_VTB_GetCurrentColumn(box));
}

void press(HWND box, WPARAM key, bool shift = false, bool control = false)
{
    BYTE keys[256] = {};
    keys[VK_SHIFT] = shift ? 0x80 : 0;
    keys[VK_CONTROL] = control ? 0x80 : 0;
    SetKeyboardState(keys);
    SendMessageW(box, WM_KEYDOWN, key, 0);
    ZeroMemory(keys, sizeof(keys));
    SetKeyboardState(keys);
}

void type(HWND box, const wchar_t *text)
{
    for (; *text; ++text)
        SendMessageW(box, WM_CHAR, *text, 0);
}

int scrollPosition(HWND box, int bar, int *pages = nullptr)
{
    pumpMessages();
    SCROLLINFO info = {sizeof(info), SIF_ALL, 0, 0, 0, 0, 0};
    GetScrollInfo(box, bar, &info);
    if (pages)
        *pages = (info.nMax + 1) / (int)(info.nPage ? info.nPage : 1);
    return info.nPos;
}

std::wstring numberedLines(int count)
{
    std::wstring text;
    for (int i = 1; i <= count; ++i)
        text += L"line " + std::to_wstring(i) + (i < count ? L"\r\n" : L"");
    return text;
}

void texts()
{
    const HWND box = makeBox(L"");
    const wchar_t *rows[] = {L"",     L"one\r\ntwo\r\n", L"one\ntwo",
                             L"a\rb", L"\r\n\r\n",       L"\u4E2D\U0001F600x"};
    for (const wchar_t *text : rows) {
        SetWindowTextW(box, text);
        CHECK_EQ(textOf(box), std::wstring(text));
        CHECK_EQ(countOf(takeTold(), kId, kChanged), 1);
    }
    SetWindowTextW(box, L"ab\r\ncd");
    wchar_t room[5] = L"????";
    CHECK_EQ(SendMessageW(box, WM_GETTEXT, 4, (LPARAM)room), (LRESULT)3);
    CHECK_EQ(std::wstring(room), std::wstring(L"ab\r"));
    CHECK_EQ(VL_VTB_GetLineText(box, 2), std::wstring(L"cd"));
    CHECK_EQ(VL_VTB_GetLineText(box, 3), std::wstring());
    CHECK_EQ(VL_VTB_GetLineText(box, 0), std::wstring());
    takeTold();
    for (int i = 0; i < 100; ++i)
        command(box, VL_TEXT_APPEND, 0, 0, L"\nlog");
    CHECK_EQ(VL_VTB_GetLineCount(box), 102);
    CHECK_EQ(countOf(takeTold(), kId, kChanged), 100);
    int pages = 0;
    CHECK(scrollPosition(box, SB_VERT, &pages) > 80);
    DestroyWindow(box);
}

void typing()
{
    const HWND box = makeBox(L"");
    type(box, L"  if\r\u4E2D\xD83D\xDE00!\b\b\ty");
    CHECK_EQ(textOf(box), std::wstring(L"  if\r\n  \u4E2D y"));
    SetPropW(box, L"VL_VTB_TabSpaces", (HANDLE)8);
    type(box, L"\t");
    CHECK_EQ(textOf(box), std::wstring(L"  if\r\n  \u4E2D y   "));
    // Halves without each other and control characters are not typed.
    const std::wstring before = textOf(box);
    type(box, L"\xDE00\x01\x1B");
    CHECK_EQ(textOf(box), before);
    press(box, 'Z', false, true);
    press(box, 'Z', false, true);
    press(box, 'Y', false, true);
    press(box, 'A', false, true);
    CHECK_EQ(selected(box), textOf(box));
    takeTold();
    VL_VTB_SetReadOnly(box, true);
    CHECK_EQ(command(box, VL_TEXT_IS_READ_ONLY).number, 1);
    const std::wstring kept = textOf(box);
    type(box, L"x\b\r\t");
    press(box, VK_DELETE);
    press(box, 'X', false, true);
    press(box, 'V', false, true);
    press(box, 'Z', false, true);
    CHECK_EQ(textOf(box), kept);
    CHECK_EQ(countOf(takeTold(), kId, kChanged), 0);
    DestroyWindow(box);
}

void keys()
{
    const HWND box = makeBox(L"first line\r\n  second\r\n\r\n" + numberedLines(100));
    const struct
    {
        WPARAM key;
        bool shift;
        bool control;
        const wchar_t *place;
        const wchar_t *selected;
    } rows[] = {
        {VK_RIGHT, false, true, L"1:7", L""},   {VK_END, true, false, L"1:11", L"line"},
        {VK_LEFT, false, false, L"1:7", L""},   {VK_END, false, false, L"1:11", L""},
        {VK_DOWN, false, false, L"2:9", L""},   {VK_DOWN, false, false, L"3:1", L""},
        {VK_UP, false, false, L"2:9", L""},     {VK_HOME, false, false, L"2:3", L""},
        {VK_HOME, false, false, L"2:1", L""},   {VK_LEFT, true, false, L"1:11", L"\r\n"},
        {VK_UP, false, false, L"1:1", L""},     {VK_END, false, true, L"103:9", L""},
        {VK_HOME, true, true, L"1:1", nullptr},
    };
    for (const auto &row : rows) {
        press(box, row.key, row.shift, row.control);
        // The first line is reached from its end: up stays in it.
        if (row.key == VK_UP && std::wstring(row.place) == L"1:1")
            CHECK_EQ(VL_VTB_GetCurrentLine(box), 1);
        else
            CHECK_EQ(place(box), std::wstring(row.place));
        if (row.selected)
            CHECK_EQ(selected(box), std::wstring(row.selected));
    }
    CHECK_EQ(selected(box), textOf(box));
    press(box, VK_NEXT);
    const int paged = VL_VTB_GetCurrentLine(box);
    CHECK(paged > 4 && paged < 20);
    press(box, VK_PRIOR);
    CHECK_EQ(VL_VTB_GetCurrentLine(box), 1);
    VL_VTB_SetCursorPos(box, 2, 9);
    press(box, VK_DELETE);
    CHECK_EQ(VL_VTB_GetLineText(box, 2), std::wstring(L"  second"));
    press(box, VK_LEFT, false, true);
    press(box, VK_DELETE, false, true);
    CHECK_EQ(VL_VTB_GetLineText(box, 2), std::wstring(L"  "));
    VL_VTB_SetCursorPos(box, 1000, 1000);
    CHECK_EQ(place(box), std::wstring(L"102:9"));
    VL_VTB_SetCursorPos(box, -5, -5);
    CHECK_EQ(place(box), std::wstring(L"1:1"));
    DestroyWindow(box);
}

// The caret's client place when it stands in that column of line 1.
POINT caretAt(HWND box, int line, int column)
{
    VL_VTB_SetCursorPos(box, line, column);
    POINT point = {};
    GetCaretPos(&point);
    return point;
}

void mouse(HWND box, UINT message, POINT point, WPARAM keys = MK_LBUTTON)
{
    SendMessageW(box, message, keys, MAKELPARAM(point.x, point.y));
}

void clicks()
{
    const HWND box = makeBox(L"ab\u4E2D\u6587 word_2\r\nsecond line\r\nthird");
    SetFocus(box);
    pumpMessages();
    // Widths are measured: a Chinese character is wider than a letter.
    const POINT first = caretAt(box, 1, 1);
    const POINT third = caretAt(box, 1, 3);
    const POINT fourth = caretAt(box, 1, 4);
    CHECK(fourth.x - third.x > (third.x - first.x) / 2);
    POINT inWord = caretAt(box, 1, 9);
    inWord.y += 5;
    mouse(box, WM_LBUTTONDOWN, inWord);
    mouse(box, WM_LBUTTONUP, inWord, 0);
    CHECK_EQ(place(box), std::wstring(L"1:9"));
    mouse(box, WM_LBUTTONDBLCLK, inWord);
    CHECK_EQ(selected(box), std::wstring(L"word_2"));
    mouse(box, WM_LBUTTONUP, inWord, 0);
    mouse(box, WM_LBUTTONDOWN, inWord);
    CHECK_EQ(selected(box), std::wstring(L"ab\u4E2D\u6587 word_2\r\n"));
    // Dragging on goes by lines.
    POINT below = caretAt(box, 2, 3);
    below.y += 5;
    mouse(box, WM_MOUSEMOVE, below);
    CHECK_EQ(selected(box), std::wstring(L"ab\u4E2D\u6587 word_2\r\nsecond line\r\n"));
    mouse(box, WM_LBUTTONUP, below, 0);
    CHECK(GetCapture() != box);
    Sleep(GetDoubleClickTime() + 50);
    mouse(box, WM_LBUTTONDOWN, below);
    mouse(box, WM_LBUTTONUP, below, 0);
    mouse(box, WM_LBUTTONDOWN, inWord, MK_LBUTTON | MK_SHIFT);
    mouse(box, WM_LBUTTONUP, inWord, 0);
    CHECK_EQ(selected(box), std::wstring(L"d_2\r\nse"));
    VL_VTB_ShowLineNumbers(box, true);
    mouse(box, WM_LBUTTONDOWN, {2, below.y});
    CHECK_EQ(selected(box), std::wstring(L"second line\r\n"));
    mouse(box, WM_LBUTTONUP, {2, below.y}, 0);
    CHECK(caretAt(box, 1, 1).x > first.x + 15);
    VL_VTB_SetLineNumberWidth(box, 100);
    CHECK(caretAt(box, 1, 1).x >= first.x + 100);
    DestroyWindow(box);
}

void draggingOutside()
{
    const HWND box = makeBox(numberedLines(200));
    mouse(box, WM_LBUTTONDOWN, {20, 50});
    mouse(box, WM_MOUSEMOVE, {20, 900});
    int last = VL_VTB_GetCurrentLine(box);
    for (int i = 0; i < 5; ++i) {
        SendMessageW(box, WM_TIMER, 1, 0);
        const int line = VL_VTB_GetCurrentLine(box);
        CHECK(line > last && line <= last + 5);
        last = line;
    }
    mouse(box, WM_LBUTTONUP, {20, 900}, 0);
    SendMessageW(box, WM_TIMER, 1, 0);
    CHECK_EQ(VL_VTB_GetCurrentLine(box), last);
    DestroyWindow(box);
}

void scrolling()
{
    const HWND box = makeBox(numberedLines(100000));
    const auto scrolls = [box](const wchar_t *what, int position, int told) {
        CHECK_EQ(std::wstring(what) + std::to_wstring(scrollPosition(box, SB_VERT)),
                 std::wstring(what) + std::to_wstring(position));
        CHECK_EQ(countOf(takeTold(), kId, kScrolled), told);
        CHECK_EQ(SendMessageW(box, EM_GETFIRSTVISIBLELINE, 0, 0), (LRESULT)position);
    };
    SendMessageW(box, WM_VSCROLL, SB_LINEDOWN, 0);
    scrolls(L"line", 1, 1);
    SendMessageW(box, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    scrolls(L"wheel", 4, 1);
    for (int i = 0; i < 4; ++i)
        SendMessageW(box, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA / 4), 0);
    scrolls(L"parts", 1, 1);
    SendMessageW(box, WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 50000), 0);
    scrolls(L"thumb", 50000, 1);
    SendMessageW(box, WM_VSCROLL, SB_TOP, 0);
    SendMessageW(box, WM_VSCROLL, SB_LINEUP, 0);
    scrolls(L"top", 0, 1);
    command(box, VL_TEXT_GOTO_LINE, 70000);
    CHECK_EQ(VL_VTB_GetCurrentLine(box), 70000);
    const int at = scrollPosition(box, SB_VERT);
    CHECK(at > 69950 && at < 70000);
    SendMessageW(box, WM_VSCROLL, SB_BOTTOM, 0);
    int pages = 0;
    const int bottom = scrollPosition(box, SB_VERT, &pages);
    // The last page stands at the bottom, nothing below it.
    CHECK(bottom > 99950 && bottom < 99999);
    CHECK_EQ(SendMessageW(box, EM_GETFIRSTVISIBLELINE, 0, 0), (LRESULT)bottom);
    takeTold();
    // What is deleted above takes the view with it.
    command(box, VL_TEXT_SELECT_ALL);
    press(box, VK_DELETE);
    scrolls(L"emptied", 0, 1);
    SetWindowTextW(box, std::wstring(500, L'w').c_str());
    UpdateWindow(box);
    scrollPosition(box, SB_HORZ, &pages);
    CHECK(pages >= 5);
    press(box, VK_END);
    CHECK(scrollPosition(box, SB_HORZ) > 1000);
    press(box, VK_HOME);
    CHECK_EQ(scrollPosition(box, SB_HORZ), 0);
    DestroyWindow(box);
}

void wrapping()
{
    std::wstring text;
    for (int i = 0; i < 200; ++i)
        text += L"word" + std::to_wstring(i) + L" ";
    const HWND box = makeBox(text + L"\r\nend");
    SetFocus(box);
    VL_ControlOption option = {L"wordWrap", L"", 1};
    CHECK_EQ(SendMessageW(box, VL_WM_SET_OPTION, 0, (LPARAM)&option), (LRESULT)1);
    int pages = 0;
    scrollPosition(box, SB_HORZ, &pages);
    CHECK_EQ(pages, 1);
    const int left = caretAt(box, 1, 1).x;
    press(box, VK_END);
    const int rowEnd = VL_VTB_GetCurrentColumn(box);
    CHECK(rowEnd > 10 && rowEnd < 60);
    // Behind the blank that ends the row, and still in it.
    CHECK_EQ(text[(size_t)rowEnd - 2], L' ');
    POINT caret = {};
    GetCaretPos(&caret);
    const int top = caret.y;
    CHECK(caret.x > left + 100);
    press(box, VK_HOME);
    press(box, VK_DOWN);
    GetCaretPos(&caret);
    CHECK_EQ(VL_VTB_GetCurrentColumn(box), rowEnd);
    CHECK(caret.y > top && caret.x == left);
    for (int i = 0; i < 300 && VL_VTB_GetCurrentLine(box) == 1; ++i)
        press(box, VK_DOWN);
    CHECK_EQ(place(box), std::wstring(L"2:1"));
    for (int i = 0; i < 300 && VL_VTB_GetCurrentColumn(box) != rowEnd; ++i)
        press(box, VK_UP);
    CHECK_EQ(place(box), std::wstring(L"1:") + std::to_wstring(rowEnd));
    SendMessageW(box, WM_VSCROLL, SB_BOTTOM, 0);
    CHECK(scrollPosition(box, SB_VERT, &pages) > 0);
    CHECK(pages >= 2);
    // A word put in front moves all rows; what was laid out before must not be used on.
    caretAt(box, 1, 1);
    type(box, L"xxxxxxxxxxxx ");
    press(box, VK_HOME);
    press(box, VK_END);
    const std::wstring row = VL_VTB_GetLineText(box, 1);
    CHECK_EQ(row[(size_t)VL_VTB_GetCurrentColumn(box) - 2], L' ');
    press(box, VK_DOWN);
    press(box, VK_END);
    CHECK_EQ(row[(size_t)VL_VTB_GetCurrentColumn(box) - 2], L' ');
    DestroyWindow(box);
}

void finding()
{
    const HWND box = makeBox(L"One two\r\none TWO\r\nthree");
    CHECK_EQ(command(box, VL_TEXT_FIND_NEXT).number, 0);
    CHECK_EQ(command(box, VL_TEXT_FIND, 0, 0, L"one").number, 1);
    CHECK_EQ(selected(box), std::wstring(L"One"));
    CHECK_EQ(command(box, VL_TEXT_FIND_NEXT).number, 1);
    CHECK_EQ(place(box), std::wstring(L"2:4"));
    CHECK_EQ(command(box, VL_TEXT_FIND_NEXT).number, 1);
    CHECK_EQ(place(box), std::wstring(L"1:4"));
    CHECK_EQ(command(box, VL_TEXT_FIND_PREVIOUS).number, 1);
    CHECK_EQ(place(box), std::wstring(L"2:4"));
    CHECK_EQ(command(box, VL_TEXT_FIND, 0, 0, L"two\r\nTHREE").number, 1);
    CHECK_EQ(selected(box), std::wstring(L"TWO\r\nthree"));
    CHECK_EQ(command(box, VL_TEXT_FIND, 0, 0, L"four").number, 0);
    // Characters count as in the text that a program reads.
    command(box, VL_TEXT_SELECT, 9, 3);
    CHECK_EQ(selected(box), std::wstring(L"one"));
    command(box, VL_TEXT_SELECT, 18);
    CHECK_EQ(selected(box), std::wstring(L"three"));
    command(box, VL_TEXT_SELECT, 1000000, 5);
    CHECK_EQ(selected(box), std::wstring());
    command(box, VL_TEXT_SELECT, 4, 3);
    command(box, VL_TEXT_CUT);
    CHECK_EQ(VL_VTB_GetLineText(box, 1), std::wstring(L"One "));
    VL_VTB_SetCursorPos(box, 3, 6);
    command(box, VL_TEXT_PASTE);
    CHECK_EQ(VL_VTB_GetLineText(box, 3), std::wstring(L"threetwo"));
    command(box, VL_TEXT_UNDO);
    command(box, VL_TEXT_UNDO);
    CHECK_EQ(textOf(box), std::wstring(L"One two\r\none TWO\r\nthree"));
    DestroyWindow(box);
}

void painting()
{
    const HWND box = makeBox(L"a\r\n\r\nc", 200, 120);
    CHECK_EQ(pixelAt(box, 150, 20), GetSysColor(COLOR_WINDOW));
    VL_VTB_SetBgColor(box, RGB(10, 20, 30));
    CHECK_EQ(pixelAt(box, 150, 60), (COLORREF)RGB(10, 20, 30));
    SetFocus(box);
    const POINT second = caretAt(box, 2, 1);
    const int middle = second.y + 5;
    VL_VTB_SetHighlightColor(box, RGB(1, 2, 3));
    command(box, VL_TEXT_HIGHLIGHT_LINE, 2, -1);
    CHECK_EQ(pixelAt(box, 150, middle), (COLORREF)RGB(1, 2, 3));
    // The mark goes down with its line.
    caretAt(box, 1, 1);
    type(box, L"\r");
    CHECK_EQ(pixelAt(box, 150, middle), (COLORREF)RGB(10, 20, 30));
    CHECK_EQ(pixelAt(box, 150, 2 * middle - (int)caretAt(box, 1, 1).y - 5), (COLORREF)RGB(1, 2, 3));
    command(box, VL_TEXT_CLEAR_HIGHLIGHT);
    command(box, VL_TEXT_HIGHLIGHT_LINE, 3, RGB(9, 9, 9));
    CHECK(pixelAt(box, 150, 2 * middle - (int)caretAt(box, 1, 1).y - 5) == RGB(9, 9, 9));
    // Words of the language have a colour, and lose it with the setting.
    const auto colors = [box] {
        std::map<COLORREF, int> seen;
        UpdateWindow(box);
        pumpMessages();
        const HDC context = GetDC(box);
        for (int y = 2; y < 18; ++y)
            for (int x = 4; x < 60; ++x)
                ++seen[GetPixel(context, x, y)];
        ReleaseDC(box, context);
        return seen;
    };
    VL_VTB_SetBgColor(box, RGB(255, 255, 255));
    VL_VTB_SetTextColor(box, RGB(0, 0, 0));
    SetWindowTextW(box, L"\u51FD\u6570 \u8FD4\u56DE");
    const auto isBlue = [&colors] {
        for (const auto &color : colors())
            if (GetBValue(color.first) > GetRValue(color.first) + 60)
                return true;
        return false;
    };
    CHECK(isBlue());
    VL_VTB_SetSyntaxHighlight(box, false);
    CHECK(!isBlue());
    DestroyWindow(box);
}

void files()
{
    const std::wstring path = L"virtual_text_box_test.txt";
    const HWND box = makeBox(L"");
    const struct
    {
        std::string bytes;
        const wchar_t *text;
    } rows[] = {
        {"", L""},
        {"plain\r\nascii\r\n", L"plain\r\nascii\r\n"},
        {"\xE4\xB8\xAD\n\xF0\x9F\x98\x80", L"\u4E2D\n\U0001F600"},
        {"\xEF\xBB\xBFmark\n", L"mark\n"},
        {std::string("\xFF\xFE"
                     "a\0\r\0\n\0\x2D\x4E",
                     10),
         L"a\r\n\u4E2D"},
        {std::string("\xFE\xFF\0a\0\n\x4E\x2D", 8), L"a\n\u4E2D"},
        {"\xD6\xD0\xCE\xC4\r\nab", L"\u4E2D\u6587\r\nab"},
    };
    for (const auto &row : rows) {
        CHECK(VL_SaveFileBytes(path, row.bytes.data(), row.bytes.size()));
        CHECK(VL_VTB_LoadFile(box, path));
        CHECK_EQ(textOf(box), std::wstring(row.text));
        CHECK(VL_VTB_SaveFile(box, path));
        std::string saved;
        CHECK(VL_LoadFileBytes(path, saved));
        CHECK_EQ(saved, row.bytes);
    }
    // What the encoding lacks is not lost.
    type(box, L"\xD83D\xDE00");
    CHECK(VL_VTB_SaveFile(box, path));
    CHECK_EQ(command(box, VL_TEXT_LOAD_FILE, 0, 0, path).number, 1);
    CHECK_EQ(textOf(box), std::wstring(L"\U0001F600\u4E2D\u6587\r\nab"));
    // Characters that lie across the pieces that are read, in every phase.
    for (const char *unit : {"\xE4\xB8\xAD", "\xD6\xD0", "\xF0\x9F\x98\x80"}) {
        std::string bytes;
        for (int i = 0; i < 4; ++i) {
            bytes += 'x';
            for (int j = 0; j < 30000; ++j)
                bytes += unit;
        }
        VL_SaveFileBytes(path, bytes.data(), bytes.size());
        CHECK(VL_VTB_LoadFile(box, path));
        CHECK(VL_VTB_SaveFile(box, path));
        std::string saved;
        VL_LoadFileBytes(path, saved);
        CHECK(saved == bytes);
        CHECK_EQ(textOf(box).find(L'\xFFFD'), std::wstring::npos);
    }
    const std::wstring kept = textOf(box);
    CHECK(!VL_VTB_LoadFile(box, L"no_such_file.txt"));
    CHECK(!VL_VTB_LoadFile(box, L""));
    CHECK(textOf(box) == kept);
    VL_DeleteFile(path);
    DestroyWindow(box);
}

// What an owner may do when it is told of a change.
LRESULT CALLBACK reactingOwner(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                               DWORD_PTR data)
{
    if (message == WM_COMMAND && HIWORD(wParam) == kChanged) {
        const HWND box = GetDlgItem(window, kId);
        if (data)
            DestroyWindow(box);
        else
            SetWindowTextW(box, (textOf(box) + L"!").c_str());
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

void reactions()
{
    HWND box = makeBox(L"");
    SetWindowSubclass(testWindow(), reactingOwner, 1, 0);
    type(box, L"a");
    CHECK_EQ(textOf(box), std::wstring(L"a!"));
    SetWindowSubclass(testWindow(), reactingOwner, 1, 1);
    SetFocus(box);
    type(box, L"b");
    CHECK(!IsWindow(box));
    box = makeBox(L"x");
    CHECK(!IsWindow(box));
    RemoveWindowSubclass(testWindow(), reactingOwner, 1);
}

void oddCalls()
{
    const HWND box = makeBox(L"text");
    const HWND button = testControl(L"BUTTON", L"b", 0, 5, {0, 0, 10, 10});
    const HWND dead = makeBox(L"");
    DestroyWindow(dead);
    for (const HWND other : {button, dead, (HWND)NULL, GetDesktopWindow()}) {
        VL_VTB_ShowLineNumbers(other, true);
        VL_VTB_SetCursorPos(other, 1, 1);
        CHECK_EQ(VL_VTB_GetLineCount(other), 0);
        CHECK_EQ(VL_VTB_GetLineText(other, 1), std::wstring());
        CHECK(!VL_VTB_SaveFile(other, L"never.txt"));
    }
    for (UINT message = WM_USER; message < WM_USER + 300; ++message)
        SendMessageW(box, message, 0, 0);
    SendMessageW(box, VL_WM_TEXT_COMMAND, 0, 0);
    SendMessageW(box, VL_WM_SET_OPTION, 0, 0);
    SendMessageW(box, WM_SETTEXT, 0, 0);
    CHECK_EQ(textOf(box), std::wstring());
    // A line of many units without width or break, in a window too small for anything.
    std::wstring strange(50000, L'\u200B');
    strange += std::wstring(50000, L'\xD83D') + std::wstring(1, L'\t');
    SetWindowTextW(box, strange.c_str());
    for (int wrap = 0; wrap < 2; ++wrap) {
        VL_VTB_SetWordWrap(box, wrap != 0);
        for (const int size : {0, 1, 30, 300}) {
            MoveWindow(box, 0, 0, size, size, TRUE);
            press(box, VK_END, false, true);
            press(box, VK_UP);
            InvalidateRect(box, NULL, FALSE);
            UpdateWindow(box);
            pumpMessages();
        }
    }
    CHECK_EQ(textOf(box), strange);
    DestroyWindow(box);
    DestroyWindow(button);
}

void leaks()
{
    int before = 0;
    for (int round = 0; round < 110; ++round) {
        const HWND box = makeBox(L"\u4E2D text");
        // A font without Chinese: another one stands in.
        VL_SetFontName(box, L"Consolas");
        VL_VTB_ShowLineNumbers(box, true);
        SetFocus(box);
        type(box, L"x");
        UpdateWindow(box);
        DestroyWindow(box);
        if (round == 9)
            before = gdiObjects();
    }
    CHECK(gdiObjects() <= before + 20);
}

} // namespace

void runTests()
{
    texts();
    typing();
    keys();
    clicks();
    draggingOutside();
    scrolling();
    wrapping();
    finding();
    painting();
    files();
    reactions();
    oddCalls();
    leaks();
}
