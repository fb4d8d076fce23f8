// The push button of self-drawn windows.
#include "98_self_drawn_push_button.h"
#include "self_drawn_test.h"

namespace {

const UINT kSetNote = 0x1609;
const UINT kGetNote = 0x160A;
const UINT kGetNoteLength = 0x160B;
const DWORD kStyleSplit = 0x0C;
const DWORD kStyleLink = 0x0E;
bool g_destroysAtClick = false;

LRESULT CALLBACK destroyAtClick(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR)
{
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED && g_destroysAtClick)
        DestroyWindow((HWND)lParam);
    return DefSubclassProc(window, message, wParam, lParam);
}

HWND button(DWORD style, const wchar_t *text = L"", int id = 70)
{
    darkWindow();
    VL_D2DStdControls_Register();
    return testControl(L"VL_D2DPushButton", text, style | WS_TABSTOP, id, RECT{20, 60, 140, 92});
}

int clicks()
{
    return countOf(takeTold(), 70, BN_CLICKED);
}

void key(HWND control, WPARAM code)
{
    SendMessageW(control, WM_KEYDOWN, code, 1);
    SendMessageW(control, WM_KEYUP, code, (LPARAM)0xC0000001);
}

void testClicks()
{
    const HWND control = button(BS_PUSHBUTTON, L"Text");
    takeTold();
    clickAt(control, 10, 10);
    CHECK_EQ(clicks(), 1);
    key(control, VK_SPACE);
    CHECK_EQ(clicks(), 1);
    key(control, VK_RETURN);
    CHECK_EQ(clicks(), 1);
    SendMessageW(control, WM_KEYDOWN, VK_RETURN, 1 << 30); // held down
    SendMessageW(control, WM_KEYUP, VK_SPACE, 0);          // never pressed here
    CHECK_EQ(clicks(), 0);
    SendMessageW(control, BM_CLICK, 0, 0);
    CHECK_EQ(clicks(), 1);
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    CHECK_EQ(SendMessageW(control, BM_GETSTATE, 0, 0) & BST_PUSHED, (LRESULT)BST_PUSHED);
    SendMessageW(control, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, 200));
    CHECK_EQ(SendMessageW(control, BM_GETSTATE, 0, 0) & BST_PUSHED, (LRESULT)0);
    SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(10, 200));
    SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
    CHECK_EQ(clicks(), 0);
    EnableWindow(control, FALSE);
    SendMessageW(control, BM_CLICK, 0, 0);
    CHECK_EQ(clicks(), 0);
    CHECK_EQ(VL_VlwinWindowText(control), std::wstring(L"Text"));
    DestroyWindow(control);
}

// A handler may close what was clicked.
void testDestroyedByHandler()
{
    SetWindowSubclass(darkWindow(), destroyAtClick, 4, 0);
    g_destroysAtClick = true;
    for (int way = 0; way < 4; ++way) {
        const HWND control = button(BS_PUSHBUTTON);
        if (way == 0)
            clickAt(control, 10, 10);
        else if (way == 1)
            SendMessageW(control, BM_CLICK, 0, 0);
        else
            key(control, way == 2 ? VK_SPACE : VK_RETURN);
        CHECK(!IsWindow(control));
    }
    g_destroysAtClick = false;
    RemoveWindowSubclass(darkWindow(), destroyAtClick, 4);
}

void testDefaultButton()
{
    const HWND plain = button(BS_PUSHBUTTON, L"", 71);
    const HWND main = button(BS_DEFPUSHBUTTON);
    const auto code = [](HWND control) {
        return SendMessageW(control, WM_GETDLGCODE, 0, 0) & (DLGC_DEFPUSHBUTTON | DLGC_BUTTON);
    };
    CHECK_EQ(code(plain), (LRESULT)DLGC_BUTTON);
    CHECK_EQ(code(main), (LRESULT)(DLGC_DEFPUSHBUTTON | DLGC_BUTTON));
    SendMessageW(main, BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
    SendMessageW(plain, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    CHECK_EQ(code(plain), (LRESULT)(DLGC_DEFPUSHBUTTON | DLGC_BUTTON));
    CHECK_EQ(code(main), (LRESULT)DLGC_BUTTON);

    // Enter presses the button with the focus, whose default style goes with it.
    SetForegroundWindow(darkWindow());
    SetFocus(plain);
    takeTold();
    MSG message = {};
    message.hwnd = plain;
    message.message = WM_KEYDOWN;
    message.wParam = VK_RETURN;
    CHECK(IsDialogMessageW(darkWindow(), &message) != 0);
    CHECK_EQ(countOf(takeTold(), 71, BN_CLICKED), 1);
    for (const HWND one : {plain, main})
        DestroyWindow(one);
}

void testSplitAndNote()
{
    const HWND split = button(kStyleSplit);
    takeTold();
    clickAt(split, 110, 10);
    std::vector<Told> told = takeTold();
    CHECK_EQ(countOf(told, 70, VL_BUTTON_DROPDOWN), 1);
    CHECK_EQ(countOf(told, 70, BN_CLICKED), 0);
    clickAt(split, 10, 10);
    told = takeTold();
    CHECK_EQ(countOf(told, 70, VL_BUTTON_DROPDOWN), 0);
    CHECK_EQ(countOf(told, 70, BN_CLICKED), 1);
    SendMessageW(split, WM_KEYDOWN, VK_DOWN, 1);
    CHECK_EQ(countOf(takeTold(), 70, VL_BUTTON_DROPDOWN), 1);
    VL_Button_SetDropDownItems(split, L"one;two\r\nthree;");
    // The second item is picked by keys that wait for the menu.
    PostMessageW(darkWindow(), WM_KEYDOWN, VK_DOWN, 1);
    PostMessageW(darkWindow(), WM_KEYDOWN, VK_DOWN, 1);
    PostMessageW(darkWindow(), WM_KEYDOWN, VK_RETURN, 1);
    clickAt(split, 110, 10);
    const std::vector<Told> picked = takeTold();
    CHECK_EQ(countOf(picked, 70, VL_BUTTON_ITEM_PICKED), 1);
    CHECK(!picked.empty() && picked.back().data == 1);
    DestroyWindow(split);

    const HWND link = button(kStyleLink, L"Link");
    SendMessageW(link, kSetNote, 0, (LPARAM)L"A longer note");
    CHECK_EQ(SendMessageW(link, kGetNoteLength, 0, 0), (LRESULT)13);
    wchar_t text[32] = L"";
    DWORD room = 9;
    CHECK(SendMessageW(link, kGetNote, (WPARAM)&room, (LPARAM)text) != 0);
    CHECK_EQ(std::wstring(text), std::wstring(L"A longer"));
    SendMessageW(link, kSetNote, 0, 0);
    CHECK_EQ(SendMessageW(link, kGetNoteLength, 0, 0), (LRESULT)0);
    DestroyWindow(link);
}

void testPicture()
{
    const HWND control = button(BS_PUSHBUTTON);
    CHECK_EQ(windowPixel(control, 60, 16), (COLORREF)RGB(192, 192, 192));
    CHECK(windowPixel(control, 0, 16) != (COLORREF)RGB(192, 192, 192));
    VL_SetBgColor(control, RGB(0, 90, 160));
    CHECK_EQ(windowPixel(control, 60, 16), (COLORREF)RGB(0, 90, 160));
    SendMessageW(control, WM_MOUSEMOVE, 0, MAKELPARAM(60, 16));
    const COLORREF hover = windowPixel(control, 60, 16);
    CHECK(GetBValue(hover) > 160 && GetGValue(hover) > 90);
    SendMessageW(control, WM_MOUSELEAVE, 0, 0);
    SendMessageW(control, BM_SETSTATE, TRUE, 0);
    CHECK(GetBValue(windowPixel(control, 60, 16)) < 160);
    SendMessageW(control, BM_SETSTATE, FALSE, 0);
    // Round corners show the window behind; the text goes where it is told.
    VL_VlwinButton_SetOptions(control, 12, 1, L"no such file.png");
    CHECK_EQ(windowPixel(control, 0, 0), (COLORREF)kClientColor);
    SetWindowTextW(control, L"WW");
    VL_SetTextColor(control, RGB(255, 255, 255));
    CHECK(pixelsUnlike(control, RECT{8, 4, 40, 28}, RGB(0, 90, 160)) > 20);
    CHECK_EQ(pixelsUnlike(control, RECT{60, 4, 100, 28}, RGB(0, 90, 160)), 0);
    VL_VlwinButton_SetOptions(control, 0, 2, L"");
    CHECK_EQ(pixelsUnlike(control, RECT{8, 4, 40, 28}, RGB(0, 90, 160)), 0);
    SetWindowTextW(control, std::wstring(3000000, L'x').c_str());
    windowPixel(control, 1, 1);
    SetWindowPos(control, NULL, 0, 0, 3, 1, SWP_NOMOVE | SWP_NOZORDER);
    windowPixel(control, 1, 1);
    DestroyWindow(control);
    VL_VlwinButton_SetOptions(NULL, 1, 1, L"x");
}

void testLeaks()
{
    int before = 0;
    for (int round = 0; round < 105; ++round) {
        if (round == 5)
            before = gdiMark();
        const HWND control = button(round % 2 ? kStyleLink : kStyleSplit, L"Text");
        VL_VlwinButton_SetOptions(control, 6, 0, L"none.png");
        windowPixel(control, 1, 1);
        DestroyWindow(control);
    }
    CHECK(gdiMark() < before + 40);
}

} // namespace

void runTests()
{
    testClicks();
    testDestroyedByHandler();
    testDefaultButton();
    testSplitAndNote();
    testPicture();
    testLeaks();
}
