// Text of controls, tool tips, alignment, read-only.
#include "35_control_text.h"
#include "35_tooltips.h"
#include "window_test.h"

namespace {

HWND tipWindow()
{
    HWND found = NULL;
    while ((found = FindWindowExW(NULL, found, TOOLTIPS_CLASSW, NULL))) {
        if (GetWindow(found, GW_OWNER) == testWindow())
            return found;
    }
    return NULL;
}

int toolCount()
{
    return (int)SendMessageW(tipWindow(), TTM_GETTOOLCOUNT, 0, 0);
}

void testText()
{
    struct Row
    {
        const wchar_t *windowClass;
        DWORD style;
        const wchar_t *text;
        const wchar_t *shown;
    };
    const Row rows[] = {
        {L"STATIC", SS_LEFT, L"\u4E00\n\u4E8C", L"\u4E00\n\u4E8C"},
        {L"BUTTON", BS_PUSHBUTTON, L"&OK", L"&OK"},
        {L"EDIT", 0, L"abc", L"abc"},
        {L"EDIT", ES_MULTILINE | ES_AUTOVSCROLL, L"a\nb\rc\r\nd\n\n", L"a\r\nb\r\nc\r\nd\r\n\r\n"},
        {L"RICHEDIT50W", ES_MULTILINE, L"a\nb\r\nc", L"a\r\nb\r\nc"},
        {L"COMBOBOX", CBS_DROPDOWN, L"xyz", L"xyz"},
    };
    for (const Row &row : rows) {
        const HWND control = testControl(row.windowClass, L"", row.style, 1001, {0, 0, 90, 60});
        VL_SetText(control, row.text);
        CHECK_EQ(VL_GetText(control), row.shown);
        CHECK_EQ(VL_GetText((intptr_t)control), row.shown);
        VL_AppendText(control, L"\u5C3E");
        CHECK_EQ(VL_GetText(control), std::wstring(row.shown) + L"\u5C3E");
        DestroyWindow(control);
    }
    CHECK_EQ(VL_GetText((HWND)0x12345678), L"");
    VL_SetText((intptr_t)0, L"nobody");
    VL_AppendText(NULL, L"nobody");
}

// A property that is written with the text the control shows must not move the caret.
void testEqualTextKeepsCaret()
{
    for (const wchar_t *windowClass : {L"EDIT", L"RICHEDIT50W"}) {
        const HWND edit = testControl(windowClass, L"", ES_MULTILINE, 1001, {0, 0, 200, 60});
        VL_SetTextStr(edit, L"one\ntwo");
        SendMessageW(edit, EM_SETSEL, 2, 4);
        takeTold();
        VL_SetTextStr(edit, L"one\ntwo");
        DWORD start = 0, end = 0;
        SendMessageW(edit, EM_GETSEL, (WPARAM)&start, (LPARAM)&end);
        CHECK_EQ(start, 2u);
        CHECK_EQ(end, 4u);
        CHECK_EQ(countOf(takeTold(), 1001, EN_CHANGE), 0);
        VL_SetTextStr(edit, L"one\ntwx");
        CHECK_EQ(VL_GetText(edit), L"one\r\ntwx");
        DestroyWindow(edit);
    }
}

// Each kind of edit tells once that the program set its text.
void testSettingTellsChange()
{
    for (DWORD style : {0L, ES_MULTILINE}) {
        const HWND edit = testControl(L"EDIT", L"", style, 1001, {0, 0, 200, 60});
        takeTold();
        VL_SetText(edit, L"new");
        CHECK_EQ(countOf(takeTold(), 1001, EN_CHANGE), 1);
        DestroyWindow(edit);
    }
}

void testManyAppends()
{
    for (const wchar_t *windowClass : {L"EDIT", L"RICHEDIT50W"}) {
        const DWORD style = ES_MULTILINE | ES_AUTOVSCROLL | WS_VSCROLL;
        const HWND edit = testControl(windowClass, L"", style, 1001, {0, 0, 200, 100});
        // Less than what is appended: a limit is for typing.
        SendMessageW(edit, EM_SETLIMITTEXT, 1000, 0);
        for (int i = 0; i < 10000; ++i)
            VL_AppendText(edit, L"line\n");
        CHECK_EQ(VL_GetText(edit).size(), (size_t)60000);
        CHECK_EQ((int)SendMessageW(edit, EM_GETLINECOUNT, 0, 0), 10001);
        CHECK((int)SendMessageW(edit, EM_GETFIRSTVISIBLELINE, 0, 0) > 9980);
        DestroyWindow(edit);
    }
}

void testLongText()
{
    const HWND edit =
        testControl(L"EDIT", L"", ES_MULTILINE | ES_AUTOHSCROLL, 1001, {0, 0, 90, 60});
    std::wstring text;
    for (int i = 0; i < 20000; ++i)
        text += L"0123456789012345678901234567890123456789012345678\n";
    VL_SetText(edit, text);
    CHECK_EQ(VL_GetText(edit).size(), text.size() + 20000);
    DestroyWindow(edit);
}

void testTooltip()
{
    const HWND label = testControl(L"STATIC", L"x", SS_LEFT, 1001, {10, 10, 90, 30});
    const HWND button = testControl(L"BUTTON", L"x", WS_DISABLED, 1002, {10, 40, 90, 70});
    CHECK_EQ(VL_GetTooltip(label), L"");
    VL_SetTooltip(label, L"\u7B2C\u4E00\u884C\n\u7B2C\u4E8C\u884C");
    CHECK_EQ(VL_GetTooltip(label), L"\u7B2C\u4E00\u884C\n\u7B2C\u4E8C\u884C");
    VL_SetTooltip(button, std::wstring(100000, L'x'));
    CHECK_EQ(VL_GetTooltip(button).size(), (size_t)100000);
    // Each control has a tool of its own and one for its place in the window.
    CHECK_EQ(toolCount(), 4);
    VL_SetTooltip(label, L"other");
    VL_SetTooltip(label, L"other");
    CHECK_EQ(toolCount(), 4);

    MoveWindow(label, 200, 100, 50, 20, FALSE);
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = testWindow();
    tool.uId = (UINT_PTR)label;
    wchar_t text[1100] = L"";
    tool.lpszText = text;
    SendMessageW(tipWindow(), TTM_GETTOOLINFOW, 0, (LPARAM)&tool);
    CHECK_EQ((int)tool.rect.left, 200);
    CHECK_EQ((int)tool.rect.bottom, 120);
    // A hidden control's place shows no tip.
    ShowWindow(label, SW_HIDE);
    SendMessageW(tipWindow(), TTM_GETTOOLINFOW, 0, (LPARAM)&tool);
    CHECK(IsRectEmpty(&tool.rect) != FALSE);

    VL_SetTooltip(label, L"");
    CHECK_EQ(toolCount(), 2);
    DestroyWindow(button);
    CHECK_EQ(toolCount(), 0);
    DestroyWindow(label);
    VL_SetTooltip(NULL, L"nobody");
}

void testAlign()
{
    const HWND label = testControl(L"STATIC", L"x", SS_LEFT | SS_NOTIFY, 1001, {0, 0, 90, 20});
    const auto kind = [&] { return (int)(GetWindowLongW(label, GWL_STYLE) & SS_TYPEMASK); };
    VL_SetTextAlign(label, L"\u5C45\u4E2D");
    CHECK_EQ(kind(), (int)SS_CENTER);
    VL_SetTextAlign(label, std::wstring(L"\u53F3\u5BF9\u9F50"));
    CHECK_EQ(kind(), (int)SS_RIGHT);
    VL_SetTextAlign(label, 0);
    CHECK_EQ(kind(), (int)SS_LEFT);
    VL_SetTextAlign(label, VL_Any(1));
    CHECK_EQ(kind(), (int)SS_CENTER);
    VL_SetTextAlign(label, 99);
    VL_SetWordWrap(label, false);
    CHECK_EQ(kind(), (int)SS_LEFTNOWORDWRAP);
    // Other styles stay.
    CHECK((GetWindowLongW(label, GWL_STYLE) & SS_NOTIFY) != 0);
    DestroyWindow(label);
}

LRESULT CALLBACK takeOptions(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                             DWORD_PTR data)
{
    if (message != VL_WM_SET_OPTION)
        return DefSubclassProc(control, message, wParam, lParam);
    const VL_ControlOption *option = (const VL_ControlOption *)lParam;
    *(std::wstring *)data +=
        std::wstring(option->name) + L"=" + std::to_wstring(option->number) + option->text + L";";
    return 1;
}

// A class of our own decides about an option, and nothing else happens then.
void testOptionsAreOffered()
{
    std::wstring got;
    const HWND label = testControl(L"STATIC", L"x", SS_LEFT, 1001, {0, 0, 90, 20});
    SetWindowSubclass(label, takeOptions, 1, (DWORD_PTR)&got);
    VL_SetTextAlign(label, 2);
    VL_SetWordWrap(label, false);
    VL_SetAutoSize(label, true);
    VL_SetReadOnly(label, true);
    CHECK_EQ(got, L"textAlign=2\u53F3\u5BF9\u9F50;wordWrap=0;autoSize=1;readOnly=1;");
    CHECK_EQ((int)(GetWindowLongW(label, GWL_STYLE) & SS_TYPEMASK), (int)SS_LEFT);
    DestroyWindow(label);
}

void testAutoSize()
{
    for (const wchar_t *windowClass : {L"STATIC", L"BUTTON"}) {
        const DWORD style = *windowClass == L'B' ? BS_AUTOCHECKBOX : SS_LEFT;
        const HWND control = testControl(windowClass, L"short", style, 1001, {0, 0, 300, 200});
        RECT before = {}, after = {};
        VL_SetAutoSize(control, true);
        GetClientRect(control, &before);
        CHECK(before.right > 10 && before.right < 120 && before.bottom < 40);
        VL_SetText(control, L"a good deal longer");
        GetClientRect(control, &after);
        CHECK(after.right > before.right + 20);
        VL_SetAutoSize(control, false);
        VL_SetText(control, L"");
        GetClientRect(control, &before);
        CHECK_EQ(before.right, after.right);
        DestroyWindow(control);
    }
}

void testReadOnly()
{
    struct Row
    {
        const wchar_t *windowClass;
        DWORD style;
        bool canBe;
    };
    const Row rows[] = {{L"EDIT", 0, true},
                        {L"RICHEDIT50W", ES_MULTILINE, true},
                        {L"COMBOBOX", CBS_DROPDOWN, true},
                        {L"COMBOBOX", CBS_DROPDOWNLIST, false},
                        {L"STATIC", 0, false}};
    for (const Row &row : rows) {
        const HWND control = testControl(row.windowClass, L"", row.style, 1001, {0, 0, 90, 60});
        CHECK_EQ(VL_IsReadOnly(control), false);
        VL_SetReadOnly(control, true);
        CHECK_EQ(VL_IsReadOnly(control), row.canBe);
        VL_SetReadOnly(control, false);
        CHECK_EQ(VL_IsReadOnly(control), false);
        DestroyWindow(control);
    }
    CHECK_EQ(VL_IsReadOnly(NULL), false);
}

} // namespace

void runTests()
{
    LoadLibraryW(L"Msftedit.dll");
    testWindow();
    testText();
    testEqualTextKeepsCaret();
    testSettingTellsChange();
    testManyAppends();
    testLongText();
    testTooltip();
    testAlign();
    testOptionsAreOffered();
    testAutoSize();
    testReadOnly();
}
