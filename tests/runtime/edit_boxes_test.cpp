// Edit boxes: place of the text, cue banners, passwords, keys, selection, searching, balloons,
// files.
#include "35_tooltips.h"
#include "37_balloon_tips.h"
#include "37_edit_boxes.h"
#include "37_edit_limits.h"
#include "37_edit_text.h"
#include "40_files.h"
#include "68_text_files.h"
#include "window_test.h"

#include <richedit.h>

namespace {

const DWORD MultiLine = ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL;
const wchar_t *const BothClasses[] = {L"EDIT", L"RICHEDIT50W"};

HWND editBox(const wchar_t *windowClass, const wchar_t *text, DWORD style)
{
    const HWND edit = testControl(windowClass, L"", style, 1001, {10, 10, 210, 110});
    VL_SetText(edit, text);
    return edit;
}

RECT lineInWindow(HWND edit)
{
    RECT window = {}, client = {};
    GetWindowRect(edit, &window);
    GetClientRect(edit, &client);
    MapWindowPoints(edit, NULL, (POINT *)&client, 2);
    OffsetRect(&client, -window.left, -window.top);
    return client;
}

void testVerticalPlace()
{
    const HWND edit = testControl(L"EDIT", L"text", WS_BORDER, 1001, {10, 10, 110, 70});
    TEXTMETRICW metrics = {};
    const HDC context = GetDC(edit);
    GetTextMetricsW(context, &metrics);
    ReleaseDC(edit, context);
    const int height = metrics.tmHeight;
    struct Row
    {
        int place, top;
    };
    for (const Row &row : {Row{VL_VERTICAL_TOP, 1}, Row{VL_VERTICAL_BOTTOM, 58 - height},
                           Row{VL_VERTICAL_CENTER, 1 + (57 - height) / 2}}) {
        VL_PrepareSingleLineEdit(edit, row.place);
        CHECK_EQ((int)lineInWindow(edit).top, row.top);
        CHECK_EQ((int)(lineInWindow(edit).bottom - lineInWindow(edit).top), height + 1);
    }
    // Follows the size, and gives up when there is no room.
    MoveWindow(edit, 10, 10, 100, 40, TRUE);
    CHECK_EQ((int)lineInWindow(edit).top, 1 + (37 - height) / 2);
    MoveWindow(edit, 10, 10, 100, 8, TRUE);
    CHECK_EQ((int)lineInWindow(edit).top, 1);
    // Around the line the box has its own colour and takes the mouse.
    MoveWindow(edit, 10, 10, 100, 60, TRUE);
    CHECK_EQ(pixelAt(testWindow(), 20, 14), GetSysColor(COLOR_WINDOW));
    RECT window = {};
    GetWindowRect(edit, &window);
    CHECK_EQ((int)SendMessageW(edit, WM_NCHITTEST, 0, MAKELPARAM(window.left + 10, window.top + 4)),
             HTCLIENT);
    DestroyWindow(edit);
}

void testAlignByPadding()
{
    const HWND edit = testControl(L"EDIT", L"ab", ES_AUTOHSCROLL, 1001, {10, 10, 210, 40});
    VL_PrepareSingleLineEdit(edit, VL_VERTICAL_CENTER);
    VL_SetTextAlign(edit, L"\u53F3\u5BF9\u9F50");
    const RECT right = lineInWindow(edit);
    CHECK(right.left > 150 && right.right >= 199);
    VL_SetText(edit, L"a good deal longer");
    CHECK(lineInWindow(edit).left < right.left - 40);
    VL_SetTextAlign(edit, VL_ALIGN_CENTER);
    const RECT middle = lineInWindow(edit);
    CHECK(abs((middle.left + middle.right) / 2 - 100) <= 2);
    VL_SetTextAlign(edit, VL_ALIGN_LEFT);
    CHECK_EQ((int)lineInWindow(edit).left, 0);
    DestroyWindow(edit);
}

// Grey pixels of a cue banner in the box.
bool showsCue(HWND edit)
{
    UpdateWindow(edit);
    pumpMessages();
    const HDC context = GetDC(edit);
    bool found = false;
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 60; ++x)
            found = found || GetPixel(context, x, y) == GetSysColor(COLOR_GRAYTEXT);
    }
    ReleaseDC(edit, context);
    return found;
}

void testCueBanner()
{
    struct Row
    {
        const wchar_t *windowClass;
        DWORD style;
    };
    for (const Row &row :
         {Row{L"EDIT", 0}, Row{L"EDIT", MultiLine}, Row{L"RICHEDIT50W", MultiLine}}) {
        const HWND edit = editBox(row.windowClass, L"", row.style);
        VL_Edit_SetCueBanner(edit, L"MMMMM");
        CHECK_EQ(VL_Edit_GetCueBanner(edit), L"MMMMM");
        CHECK_EQ(showsCue(edit), true);
        VL_SetText(edit, L"x");
        CHECK_EQ(showsCue(edit), false);
        VL_SetText(edit, L"");
        CHECK_EQ(showsCue(edit), true);
        SetFocus(edit);
        CHECK_EQ(showsCue(edit), GetFocus() != edit);
        VL_Edit_SetCueBanner(edit, VL_Edit_GetCueBanner(edit), true);
        CHECK_EQ(showsCue(edit), true);
        SendMessageW(edit, WM_CHAR, L'i', 0);
        CHECK_EQ(showsCue(edit), false);
        DestroyWindow(edit);
    }
    CHECK_EQ(VL_Edit_GetCueBanner(NULL), L"");
}

void testPassword()
{
    const HWND edit = editBox(L"EDIT", L"secret", 0);
    CHECK_EQ(VL_GetPasswordMode(edit), false);
    CHECK_EQ(VL_GetPasswordChar(edit), L"\u25CF");
    VL_SetPasswordChar(edit, L"*+");
    CHECK_EQ(VL_GetPasswordMode(edit), false);
    VL_SetPasswordMode(edit, true);
    CHECK_EQ(VL_GetPasswordMode(edit), true);
    CHECK_EQ((int)SendMessageW(edit, EM_GETPASSWORDCHAR, 0, 0), (int)L'*');
    VL_SetPasswordChar(edit, L"#");
    CHECK_EQ(VL_GetPasswordChar(edit), L"#");
    VL_SetPasswordMode(edit, false);
    CHECK_EQ(VL_GetPasswordMode(edit), false);
    CHECK_EQ(VL_GetText(edit), L"secret");
    DestroyWindow(edit);
}

void type(HWND edit, const wchar_t *text)
{
    for (; *text; ++text)
        SendMessageW(edit, WM_CHAR, *text, 0);
}

void testLimitAndCase()
{
    const HWND edit = editBox(L"EDIT", L"", ES_AUTOHSCROLL);
    VL_SetTextLimit(edit, 4);
    type(edit, L"abcdef");
    CHECK_EQ(VL_GetText(edit), L"abcd");
    VL_SetTextLimit(edit, 0);
    VL_SetCharCase(edit, L"\u5168\u5927\u5199");
    CHECK_EQ(VL_GetText(edit), L"ABCD");
    VL_Edit_SelectText(edit, 4);
    type(edit, L"ef");
    CHECK_EQ(VL_GetText(edit), L"ABCDEF");
    VL_SetCharCase(edit, L"\u6B63\u5E38");
    type(edit, L"g");
    CHECK_EQ(VL_GetText(edit), L"ABCDEFg");
    DestroyWindow(edit);
}

// Whether the dialog keyboard leaves the key to the control.
bool keepsKey(HWND edit, WPARAM key)
{
    MSG message = {};
    message.hwnd = edit;
    message.message = WM_KEYDOWN;
    message.wParam = key;
    const LRESULT code = SendMessageW(edit, WM_GETDLGCODE, key, (LPARAM)&message);
    return (code & (DLGC_WANTMESSAGE | DLGC_WANTALLKEYS)) != 0;
}

void testDialogKeys()
{
    for (const wchar_t *windowClass : BothClasses) {
        const HWND edit = editBox(windowClass, L"ab", MultiLine);
        VL_PrepareEdit(edit);
        CHECK_EQ(keepsKey(edit, VK_RETURN), true);
        CHECK_EQ(keepsKey(edit, VK_TAB), false);
        CHECK_EQ(keepsKey(edit, VK_ESCAPE), false);
        VL_SetAcceptTab(edit, true);
        VL_SetAcceptReturn(edit, false);
        CHECK_EQ(keepsKey(edit, VK_RETURN), false);
        CHECK_EQ(keepsKey(edit, VK_TAB), true);
        VL_Edit_SelectText(edit, 2);
        type(edit, L"\r");
        CHECK_EQ(VL_GetText(edit), L"ab");
        SetFocus(edit);
        keybd_event(VK_CONTROL, 0, 0, 0);
        Sleep(20);
        pumpMessages();
        SendMessageW(edit, WM_KEYDOWN, 'A', 0);
        keybd_event(VK_CONTROL, 0, KEYEVENTF_KEYUP, 0);
        pumpMessages();
        CHECK_EQ(VL_Edit_GetSelectedText(edit), L"ab");
        // Esc in a multi-line edit must not close the window.
        SendMessageW(edit, WM_KEYDOWN, VK_ESCAPE, 0);
        pumpMessages();
        CHECK(IsWindow(testWindow()) != FALSE);
        DestroyWindow(edit);
    }
}

void testSelection()
{
    for (const wchar_t *windowClass : BothClasses) {
        const HWND edit = editBox(windowClass, L"one\ntwo\nthree", MultiLine);
        // Positions are those of the text the program reads, whatever the control counts.
        struct Row
        {
            int start, length;
            const wchar_t *selected;
        };
        for (const Row &row :
             {Row{0, 3, L"one"}, Row{5, 3, L"two"}, Row{10, 0, L"three"}, Row{-5, 2, L"on"},
              Row{13, 99, L"ee"}, Row{99, 1, L""}, Row{1, 6, L"ne\r\ntw"}}) {
            VL_Edit_SelectText(edit, row.start, row.length);
            CHECK_EQ(VL_Edit_GetSelectedText(edit), row.selected);
        }
        VL_Edit_SelectAll(edit);
        VL_Edit_Cut(edit);
        CHECK_EQ(VL_GetText(edit), L"");
        VL_Edit_Undo(edit);
        CHECK_EQ(VL_GetText(edit), L"one\r\ntwo\r\nthree");
        VL_Edit_SelectText(edit, 0, 3);
        VL_Edit_Copy(edit);
        VL_Edit_SelectText(edit, 5, 3);
        VL_Edit_Paste(edit);
        CHECK_EQ(VL_GetText(edit), L"one\r\none\r\nthree");
        VL_Edit_SelectText(edit, 5, 3);
        VL_Edit_ReplaceSelection(edit, L"x\ny");
        CHECK_EQ(VL_GetText(edit), L"one\r\nx\r\ny\r\nthree");
        VL_Edit_Undo(edit);
        CHECK_EQ(VL_GetText(edit), L"one\r\none\r\nthree");
        DestroyWindow(edit);
    }
    VL_Edit_SelectAll(NULL);
    VL_Edit_Copy(testWindow());
    CHECK_EQ(VL_Edit_GetSelectedText(testWindow()), L"");
}

int firstLine(HWND edit)
{
    return (int)SendMessageW(edit, EM_GETFIRSTVISIBLELINE, 0, 0);
}

void testScrolling()
{
    std::wstring text;
    for (int i = 1; i <= 200; ++i)
        text += L"line " + std::to_wstring(i) + (i < 200 ? L"\n" : L"");
    for (const wchar_t *windowClass : BothClasses) {
        const HWND edit = editBox(windowClass, text.c_str(), MultiLine);
        CHECK_EQ(VL_GetLineCount(edit), 200);
        VL_ScrollToBottom(edit);
        CHECK(firstLine(edit) > 180);
        VL_ScrollToTop(edit);
        CHECK_EQ(firstLine(edit), 0);
        VL_GotoLine(edit, 100);
        CHECK(firstLine(edit) > 50 && firstLine(edit) < 100);
        VL_Edit_SelectText(edit, 0, 1);
        VL_GotoLine(edit, 100000);
        CHECK(firstLine(edit) > 180);
        VL_GotoLine(edit, -3);
        CHECK_EQ(firstLine(edit), 0);
        DestroyWindow(edit);
    }
    CHECK_EQ(VL_GetLineCount(NULL), 0);
}

void testSearch()
{
    for (const wchar_t *windowClass : BothClasses) {
        const HWND edit = editBox(windowClass, L"abc\nABC\nxaBcx", MultiLine);
        VL_Edit_SelectText(edit, 0, 0);
        SendMessageW(edit, EM_SETSEL, 0, 0);
        DWORD start = 0;
        const auto at = [&] {
            SendMessageW(edit, EM_GETSEL, (WPARAM)&start, 0);
            return (int)SendMessageW(edit, EM_LINEFROMCHAR, start, 0);
        };
        CHECK_EQ(VL_FindNext(edit), false);
        CHECK_EQ(VL_Find(edit, L"aBC"), true);
        CHECK_EQ(at(), 0);
        CHECK_EQ(VL_FindNext(edit), true);
        CHECK_EQ(at(), 1);
        VL_FindNext(edit);
        CHECK_EQ(at(), 2);
        CHECK_EQ(VL_Edit_GetSelectedText(edit), L"aBc");
        VL_FindNext(edit);
        CHECK_EQ(at(), 0);
        VL_FindPrev(edit);
        CHECK_EQ(at(), 2);
        VL_FindPrev(edit);
        CHECK_EQ(at(), 1);
        CHECK_EQ(VL_Find(edit, L"nowhere"), false);
        CHECK_EQ(VL_Edit_GetSelectedText(edit), L"ABC");
        CHECK_EQ(VL_Find(edit, L"c\nx"), true);
        CHECK_EQ(VL_Edit_GetSelectedText(edit), L"C\r\nx");
        CHECK_EQ(VL_Find(edit, L""), false);
        DestroyWindow(edit);
    }
    // A pattern that makes a simple search take a minute.
    const HWND edit = editBox(L"EDIT", L"", MultiLine | ES_AUTOHSCROLL);
    std::wstring lines;
    for (int i = 0; i < 400; ++i)
        lines += std::wstring(1000, L'a') + L"\n";
    VL_SetText(edit, lines);
    const DWORD before = GetTickCount();
    CHECK_EQ(VL_Find(edit, std::wstring(900, L'a') + L"b"), false);
    CHECK(GetTickCount() - before < 2000);
    DestroyWindow(edit);
    CHECK_EQ(VL_Find(NULL, L"a"), false);
}

// How many lines of the box show the colour near their right end.
int linesOfColor(HWND edit, COLORREF color)
{
    UpdateWindow(edit);
    pumpMessages();
    const HDC context = GetDC(edit);
    int count = 0;
    bool wasColor = false;
    for (int y = 0; y < 80; ++y) {
        bool isColor = false;
        for (int x = 0; x < 20; ++x)
            isColor = isColor || GetPixel(context, x, y) == color;
        count += isColor && !wasColor ? 1 : 0;
        wasColor = isColor;
    }
    ReleaseDC(edit, context);
    return count;
}

void testHighlight()
{
    const COLORREF color = RGB(0, 255, 255);
    for (const wchar_t *windowClass : BothClasses) {
        const HWND edit = editBox(windowClass, L"iiii\niiii\niiii", MultiLine);
        VL_Edit_SelectText(edit, 1, 2);
        takeTold();
        VL_HighlightLine(edit, 2, (int)color);
        CHECK_EQ(linesOfColor(edit, color), 1);
        CHECK_EQ(countOf(takeTold(), 1001, EN_CHANGE), 0);
        CHECK_EQ(VL_Edit_GetSelectedText(edit), L"ii");
        VL_ClearHighlight(edit);
        CHECK_EQ(linesOfColor(edit, color), 0);
        VL_HighlightLine(edit, 0, 0);
        VL_HighlightLine(edit, 4, (int)color);
        CHECK_EQ(linesOfColor(edit, color), 0);
        DestroyWindow(edit);
    }
}

void testBalloon()
{
    const HWND edit = editBox(L"EDIT", L"", 0);
    CHECK_EQ(VL_BalloonTip_Hide(edit), false);
    CHECK_EQ(VL_BalloonTip_Show(edit, L"text", L"title", 2), true);
    CHECK_EQ(VL_BalloonTip_Show((intptr_t)edit, std::wstring(100000, L'x'),
                                std::wstring(1000, L't'), 77),
             true);
    CHECK_EQ(VL_BalloonTip_Hide((intptr_t)edit), true);
    CHECK_EQ(VL_BalloonTip_Hide(edit), false);
    VL_Edit_ShowBalloonTip(edit, L"", L"text");
    type(edit, L"x");
    CHECK_EQ(VL_BalloonTip_Hide(edit), false);
    CHECK_EQ(VL_BalloonTip_Show(edit, L""), false);
    CHECK_EQ(VL_BalloonTip_Show((HWND)(intptr_t)-4, L"x"), false);
    VL_BalloonTip_Show(edit, L"text");
    DestroyWindow(edit);
    pumpMessages();
}

void testFiles()
{
    const std::wstring path = L"edit_boxes_test.txt";
    for (const wchar_t *windowClass : BothClasses) {
        const HWND edit = editBox(windowClass, L"", MultiLine);
        for (int encoding : {65001, 936, 1200}) {
            VL_WriteFile(path, L"\u4E2D\u6587\n\u7B2C\u4E8C", encoding);
            CHECK_EQ(VL_LoadFile(edit, path), true);
            CHECK_EQ(VL_GetText(edit), L"\u4E2D\u6587\r\n\u7B2C\u4E8C");
        }
        VL_SaveFileBytes(path, "a\0b", 3);
        CHECK_EQ(VL_LoadFile(edit, path), true);
        CHECK_EQ(VL_GetText(edit), L"a b");
        CHECK_EQ(VL_LoadFile(edit, L"no such file"), false);
        CHECK_EQ(VL_GetText(edit), L"a b");
        DestroyWindow(edit);
    }
    VL_DeleteFile(path);
    CHECK_EQ(VL_LoadFile(NULL, path), false);
}

// Everything a box can own, made and destroyed often, leaves nothing behind.
void testNothingIsLeft()
{
    DWORD before = 0;
    for (int i = 0; i < 110; ++i) {
        if (i == 10)
            before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
        const HWND edit = testControl(L"EDIT", L"", WS_BORDER, 1001, {10, 10, 110, 60});
        VL_PrepareSingleLineEdit(edit, VL_VERTICAL_CENTER);
        VL_SetEditCornerRadius(edit, 6);
        VL_Edit_SetCueBanner(edit, L"cue", true);
        VL_SetTooltip(edit, L"tip");
        VL_BalloonTip_Show(edit, L"text");
        UpdateWindow(edit);
        MoveWindow(edit, 10, 10, 120, 50, TRUE);
        DestroyWindow(edit);
    }
    CHECK(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) <= before + 3);
}

void testCornerRadius()
{
    const HWND edit = testControl(L"EDIT", L"", WS_BORDER, 1001, {10, 10, 110, 60});
    VL_SetEditCornerRadius(edit, 12);
    MoveWindow(edit, 10, 10, 200, 60, TRUE);
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    GetWindowRgn(edit, region);
    CHECK(PtInRegion(region, 1, 1) == FALSE);
    CHECK(PtInRegion(region, 195, 30) != FALSE);
    VL_SetEditCornerRadius(edit, 0);
    CHECK_EQ(GetWindowRgn(edit, region), ERROR);
    DeleteObject(region);
    DestroyWindow(edit);
}

} // namespace

void runTests()
{
    LoadLibraryW(L"Msftedit.dll");
    testWindow();
    testVerticalPlace();
    testAlignByPadding();
    testCueBanner();
    testPassword();
    testLimitAndCase();
    testDialogKeys();
    testSelection();
    testScrolling();
    testSearch();
    testHighlight();
    testBalloon();
    testFiles();
    testCornerRadius();
    testNothingIsLeft();
}
