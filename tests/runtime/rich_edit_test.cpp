// Rich edits: set-up, formats, colours, RTF.
#include "37_edit_text.h"
#include "38_rich_edit.h"
#include "40_files.h"
#include "68_text_files.h"
#include "window_test.h"

#include <richedit.h>

namespace {

HWND richEdit(const wchar_t *text)
{
    const DWORD style = ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL;
    const HWND edit = testControl(L"RICHEDIT50W", L"", style, 1001, {10, 10, 210, 110});
    VL_SetControlFont(edit, L"Tahoma", 9, false, false, false, false);
    VL_PrepareRichEdit(edit, true);
    VL_SetText(edit, text);
    return edit;
}

CHARFORMAT2W formatAt(HWND edit, int start)
{
    VL_Edit_SelectText(edit, start, 1);
    CHARFORMAT2W format = {};
    format.cbSize = sizeof(format);
    SendMessageW(edit, EM_GETCHARFORMAT, SCF_SELECTION, (LPARAM)&format);
    return format;
}

void testFormats()
{
    const HWND edit = richEdit(L"one two three");
    VL_Edit_SelectText(edit, 4, 3);
    VL_RE_SetSelectionColor(edit, RGB(255, 0, 0));
    VL_RE_SetSelectionBackColor(edit, RGB(0, 255, 0));
    VL_RE_SetSelectionBold(edit, true);
    VL_RE_SetSelectionItalic(edit, true);
    VL_RE_SetSelectionUnderline(edit, true);
    VL_RE_SetSelectionFont(edit, L"Courier New", 20);
    const CHARFORMAT2W inside = formatAt(edit, 5), outside = formatAt(edit, 1);
    CHECK_EQ(inside.crTextColor, RGB(255, 0, 0));
    CHECK_EQ(inside.crBackColor, RGB(0, 255, 0));
    CHECK_EQ(inside.dwEffects & (CFE_BOLD | CFE_ITALIC | CFE_UNDERLINE),
             (DWORD)(CFE_BOLD | CFE_ITALIC | CFE_UNDERLINE));
    CHECK_EQ(inside.szFaceName, std::wstring(L"Courier New"));
    CHECK_EQ(inside.yHeight, 400L);
    CHECK_EQ(outside.dwEffects & (CFE_BOLD | CFE_ITALIC | CFE_UNDERLINE), 0u);
    CHECK(outside.yHeight != 400);

    VL_Edit_SelectText(edit, 4, 3);
    VL_RE_SetSelectionBold(edit, false);
    VL_RE_SetSelectionBackColor(edit, -1);
    VL_RE_SetSelectionFont(edit, L"", 0);
    CHECK_EQ(formatAt(edit, 5).dwEffects & (CFE_BOLD | CFE_AUTOBACKCOLOR),
             (DWORD)CFE_AUTOBACKCOLOR);
    CHECK_EQ(formatAt(edit, 5).yHeight, 400L);
    DestroyWindow(edit);
    const HWND other = testControl(L"EDIT", L"x", 0, 1001, {0, 0, 50, 20});
    VL_RE_SetSelectionBold(other, true);
    CHECK_EQ(VL_RE_GetRTF(other), L"");
    DestroyWindow(other);
}

// The colour of the control is that of all its text, and no change of the text.
void testControlColor()
{
    const HWND edit = richEdit(L"text");
    takeTold();
    VL_SetTextColor(edit, RGB(0, 0, 255));
    CHECK_EQ(formatAt(edit, 1).crTextColor, RGB(0, 0, 255));
    CHECK_EQ(countOf(takeTold(), 1001, EN_CHANGE), 0);
    VL_SetText(edit, L"other text");
    CHECK_EQ(formatAt(edit, 1).crTextColor, RGB(0, 0, 255));
    VL_SetBgColor(edit, RGB(255, 255, 0));
    CHECK_EQ(pixelAt(edit, 150, 80), RGB(255, 255, 0));
    DestroyWindow(edit);
}

void testRtf()
{
    const HWND edit = richEdit(L"\u4E2D\u6587 bold");
    VL_Edit_SelectText(edit, 3, 4);
    VL_RE_SetSelectionBold(edit, true);
    const std::wstring path = L"rich_edit_test.rtf";
    CHECK_EQ(VL_SaveRTF(edit, path), true);
    CHECK_EQ(VL_RE_GetRTF(edit).substr(0, 5), L"{\\rtf");
    VL_SetText(edit, L"");
    CHECK_EQ(VL_LoadRTF(edit, path), true);
    // Some versions of the control add a line end.
    CHECK_EQ(VL_GetText(edit).substr(0, 7), L"\u4E2D\u6587 bold");
    CHECK_EQ(formatAt(edit, 4).dwEffects & CFE_BOLD, (DWORD)CFE_BOLD);
    CHECK_EQ(formatAt(edit, 0).dwEffects & CFE_BOLD, 0u);

    VL_WriteFile(path, L"no RTF");
    CHECK_EQ(VL_LoadRTF(edit, path), true);
    CHECK_EQ(VL_GetText(edit), L"no RTF");
    CHECK_EQ(VL_LoadRTF(edit, L"no such file"), false);
    for (const char *broken : {"", "{", "{\\rt", "text"})
        CHECK_EQ(VL_RE_SetRtfBytes(edit, broken), false);
    CHECK_EQ(VL_GetText(edit), L"no RTF");
    VL_RE_SetRtfBytes(edit, "{\\rtf1 unclosed {{{");
    VL_RE_SetRtfBytes(edit, "{\\rtf1 }}}}}");
    CHECK_EQ(VL_SaveRTF(testWindow(), path), false);
    VL_DeleteFile(path);
    DestroyWindow(edit);
}

// Twice the text needs about twice the time, and comes through whole and with one notification.
void testLongText()
{
    DWORD took[2] = {};
    for (int round = 0; round < 2; ++round) {
        const HWND edit = richEdit(L"");
        std::wstring text;
        for (int i = 0; i < 1500 * (1 + round); ++i)
            text += L"0123456789012345678901234567890123456789\n";
        takeTold();
        const DWORD before = GetTickCount();
        VL_SetText(edit, text);
        took[round] = GetTickCount() - before;
        CHECK_EQ(countOf(takeTold(), 1001, EN_CHANGE), 1);
        CHECK_EQ(VL_GetText(edit), VL_WithCrLf(text));
        DestroyWindow(edit);
    }
    CHECK(took[1] < 4 * took[0] + 500);
}

} // namespace

void runTests()
{
    LoadLibraryW(L"Msftedit.dll");
    testWindow();
    testFormats();
    testControlColor();
    testRtf();
    testLongText();
}
