// Drawn buttons, check boxes, radio groups, group boxes.
#include "43_buttons.h"
#include "43_check_boxes.h"
#include "43_group_boxes.h"
#include "window_test.h"

namespace {

const COLORREF Own = RGB(0, 120, 215);

HWND drawnButton(const wchar_t *text, int id, RECT place)
{
    const HWND button = testControl(L"BUTTON", text, BS_PUSHBUTTON | WS_TABSTOP, id, place);
    VL_PrepareButton(button);
    return button;
}

void testColors()
{
    const HWND button = drawnButton(L"", 1001, {20, 20, 120, 60});
    CHECK_EQ(pixelAt(testWindow(), 70, 30), RGB(225, 225, 225));
    CHECK_EQ(pixelAt(testWindow(), 119, 59), RGB(173, 173, 173));
    VL_SetBgColor(button, (int)Own);
    CHECK_EQ(pixelAt(testWindow(), 70, 30), Own);
    SendMessageW(button, BM_SETSTATE, TRUE, 0);
    const COLORREF pressed = pixelAt(testWindow(), 70, 30);
    CHECK(GetBValue(pressed) < GetBValue(Own));
    SendMessageW(button, BM_SETSTATE, FALSE, 0);
    EnableWindow(button, FALSE);
    CHECK(pixelAt(testWindow(), 70, 30) != Own);
    EnableWindow(button, TRUE);
    // Outside round corners the window shows.
    SetPropW(button, L"VL_ButtonCornerRadius", (HANDLE)12);
    InvalidateRect(button, NULL, FALSE);
    CHECK_EQ(pixelAt(testWindow(), 20, 20), GetSysColor(COLOR_BTNFACE));
    CHECK_EQ(pixelAt(testWindow(), 70, 30), Own);
    DestroyWindow(button);
}

// How much of the left and of the right half of the button is text or picture.
int inkBalance(HWND button)
{
    UpdateWindow(button);
    const COLORREF ground = pixelAt(button, 5, 5);
    const HDC context = GetDC(button);
    int balance = 0;
    for (int y = 4; y < 36; ++y) {
        for (int x = 4; x < 196; ++x)
            balance += GetPixel(context, x, y) == ground ? 0 : x < 100 ? -1 : 1;
    }
    ReleaseDC(button, context);
    return balance;
}

void testAlign()
{
    const HWND button = drawnButton(L"HH", 1001, {20, 20, 220, 60});
    CHECK(abs(inkBalance(button)) < 12);
    VL_SetTextAlign(button, L"\u5DE6\u5BF9\u9F50");
    CHECK(inkBalance(button) < -20);
    VL_SetTextAlign(button, L"\u53F3\u5BF9\u9F50");
    CHECK(inkBalance(button) > 20);
    VL_SetTextAlign(button, VL_ALIGN_CENTER);
    CHECK(abs(inkBalance(button)) < 12);
    DestroyWindow(button);
}

void clickAt(HWND control, int x, int y)
{
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

// What push buttons do with mouse and keyboard is kept.
void testBehaviour()
{
    const HWND button = drawnButton(L"&OK", 1001, {20, 20, 120, 60});
    takeTold();
    clickAt(button, 5, 5);
    CHECK_EQ(countOf(takeTold(), 1001, BN_CLICKED), 1);
    // A second fast click is a click as well.
    SendMessageW(button, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
    SendMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    CHECK_EQ(countOf(takeTold(), 1001, BN_CLICKED), 1);
    SendMessageW(button, WM_KEYDOWN, VK_SPACE, 0);
    SendMessageW(button, WM_KEYUP, VK_SPACE, 0);
    CHECK_EQ(countOf(takeTold(), 1001, BN_CLICKED), 1);
    // The dialog keyboard must not turn it into a button of the system.
    SendMessageW(button, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    CHECK_EQ((int)(GetWindowLongW(button, GWL_STYLE) & 0xF), (int)BS_OWNERDRAW);
    CHECK((SendMessageW(button, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0);
    DestroyWindow(button);
}

void pressInDialog(HWND focus, WPARAM key)
{
    MSG message = {};
    message.hwnd = focus;
    message.message = WM_KEYDOWN;
    message.wParam = key;
    IsDialogMessageW(testWindow(), &message);
    pumpMessages();
}

void testEnterAndEsc()
{
    const HWND edit = testControl(L"EDIT", L"", WS_TABSTOP, 1000, {20, 100, 120, 120});
    const HWND first = drawnButton(L"first", 1001, {20, 20, 120, 60});
    const HWND second = drawnButton(L"second", 1002, {130, 20, 220, 60});
    VL_SetDefaultButton(first);
    VL_SetCancelButton(second);
    SetFocus(edit);
    takeTold();
    pressInDialog(edit, VK_RETURN);
    std::vector<Told> told = takeTold();
    CHECK_EQ(countOf(told, 1001, BN_CLICKED), 1);
    pressInDialog(edit, VK_ESCAPE);
    told = takeTold();
    CHECK_EQ(countOf(told, 1002, BN_CLICKED), 1);
    CHECK_EQ(countOf(told, IDCANCEL, 0), 0);
    // The button with the focus goes ahead of the default one; a disabled one is not pressed.
    SetFocus(second);
    pressInDialog(second, VK_RETURN);
    CHECK_EQ(countOf(takeTold(), 1002, BN_CLICKED), 1);
    EnableWindow(first, FALSE);
    SetFocus(edit);
    pressInDialog(edit, VK_RETURN);
    CHECK_EQ(countOf(takeTold(), 1001, BN_CLICKED), 0);
    for (HWND control : {edit, first, second})
        DestroyWindow(control);
    pressInDialog(testWindow(), VK_ESCAPE);
    VL_SetDefaultButton(NULL);
}

// Picks an item of the menu that is about to open.
void CALLBACK pickItem(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(NULL, timer);
    const HWND menu = FindWindowW(L"#32768", NULL);
    PostMessageW(menu ? menu : testWindow(), WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(menu ? menu : testWindow(), WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(menu ? menu : testWindow(), WM_KEYDOWN, VK_RETURN, 0);
}

void testSplitButton()
{
    const HWND button = drawnButton(L"split", 1001, {20, 20, 120, 60});
    VL_SetButtonKind(button, VL_BUTTON_SPLIT);
    VL_Button_SetDropDownItems(button, L"one;two\r\nthree;;-;");
    const wchar_t *const items[] = {L"one", L"two", L"three", L"-", L""};
    for (int i = 0; i < 5; ++i)
        CHECK_EQ(VL_Button_GetDropDownItem(button, i), items[i]);
    CHECK_EQ(VL_Button_GetDropDownItem(button, -1), L"");
    takeTold();
    clickAt(button, 10, 10);
    CHECK_EQ(countOf(takeTold(), 1001, BN_CLICKED), 1);
    SetTimer(NULL, 0, 300, pickItem);
    SendMessageW(button, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(95, 20));
    const std::vector<Told> told = takeTold();
    CHECK_EQ(countOf(told, 1001, VL_BUTTON_DROPDOWN), 1);
    CHECK_EQ(countOf(told, 1001, BN_CLICKED), 0);
    CHECK_EQ(countOf(told, 1001, VL_BUTTON_ITEM_PICKED), 1);
    for (const Told &one : told) {
        if (one.code == VL_BUTTON_ITEM_PICKED)
            CHECK_EQ((int)one.data, 1);
    }
    VL_Button_SetDropDownItems(button, L"");
    VL_Button_ShowDropDown(button);
    DestroyWindow(button);
    VL_Button_ShowDropDown(NULL);
}

// Whatever kind a button is, it stays that kind when it becomes the default one.
void testDefaultKeepsKind()
{
    for (LONG type : {BS_PUSHBUTTON, BS_COMMANDLINK, BS_SPLITBUTTON}) {
        const HWND button = testControl(L"BUTTON", L"x", (DWORD)type, 1001, {20, 20, 120, 60});
        VL_SetDefaultButton(button);
        CHECK_EQ((int)(GetWindowLongW(button, GWL_STYLE) & 0xF), (int)(type | BS_DEFPUSHBUTTON));
        const HWND other = testControl(L"BUTTON", L"y", BS_PUSHBUTTON, 1002, {20, 80, 120, 120});
        VL_SetDefaultButton(other);
        CHECK_EQ((int)(GetWindowLongW(button, GWL_STYLE) & 0xF), (int)type);
        DestroyWindow(button);
        DestroyWindow(other);
    }
}

void testNote()
{
    const HWND link = testControl(L"BUTTON", L"link", BS_COMMANDLINK, 1001, {20, 20, 220, 80});
    VL_Button_SetNote(link, L"note");
    VL_PrepareButton(link);
    CHECK_EQ(VL_Button_GetNote(link), L"note");
    takeTold();
    clickAt(link, 10, 10);
    CHECK_EQ(countOf(takeTold(), 1001, BN_CLICKED), 1);
    DestroyWindow(link);
    CHECK_EQ(VL_Button_GetNote(link), L"");
    CHECK_EQ(VL_Button_SetImage(testWindow(), L"x.png"), false);
}

void testChecks()
{
    const HWND box = testControl(L"BUTTON", L"x", BS_AUTOCHECKBOX, 1001, {20, 20, 120, 40});
    struct Row
    {
        int set, state, told;
    };
    takeTold();
    for (const Row &row : {Row{1, 1, 1}, Row{1, 1, 0}, Row{2, 1, 0}, Row{0, 0, 1}, Row{7, 0, 0}}) {
        VL_SetCheckState(box, row.set);
        CHECK_EQ(VL_GetCheckState(box), row.state);
        const std::vector<Told> told = takeTold();
        CHECK_EQ(countOf(told, 1001, VL_VALUE_CHANGED), row.told);
        CHECK_EQ(countOf(told, 1001, BN_CLICKED), 0);
    }
    VL_SetCheckBoxThreeState(box, true);
    CHECK_EQ(VL_IsCheckBoxThreeState(box), true);
    VL_SetCheckState(box, 2);
    CHECK_EQ(VL_GetCheckState(box), 2);
    CHECK_EQ(VL_IsChecked(box), false);
    VL_SetCheckBoxThreeState(box, false);
    CHECK_EQ(VL_GetCheckState(box), 1);
    CHECK_EQ(VL_GetCheckAlign(box), L"\u5DE6\u4FA7");
    VL_SetCheckAlign(box, L"\u53F3\u4FA7");
    CHECK_EQ(VL_GetCheckAlign(box), L"\u53F3\u4FA7");
    DestroyWindow(box);
    CHECK_EQ(VL_IsChecked(NULL), false);
    VL_SetChecked(testWindow(), true);
}

std::wstring checksOf(const std::vector<HWND> &buttons)
{
    std::wstring states;
    for (HWND button : buttons)
        states += VL_IsChecked(button) ? L'1' : L'0';
    return states;
}

// Two groups whose buttons alternate within one run.
void testRadioGroups()
{
    std::vector<HWND> buttons;
    for (int i = 0; i < 4; ++i) {
        buttons.push_back(testControl(L"BUTTON", L"x", BS_AUTORADIOBUTTON | WS_TABSTOP, 1001 + i,
                                      {20, 20 + 25 * i, 120, 40 + 25 * i}));
        VL_SetRadioGroup(buttons[(size_t)i], i % 2 ? L"b" : L"a");
    }
    VL_SetChecked(buttons[0], true);
    VL_SetChecked(buttons[1], true);
    CHECK_EQ(checksOf(buttons), L"1100");
    takeTold();
    VL_SetChecked(buttons[2], true);
    CHECK_EQ(checksOf(buttons), L"0110");
    CHECK_EQ(countOf(takeTold(), 1001, VL_VALUE_CHANGED), 1);
    clickAt(buttons[3], 5, 5);
    CHECK_EQ(checksOf(buttons), L"0011");
    CHECK_EQ(countOf(takeTold(), 1004, BN_CLICKED), 1);
    SendMessageW(buttons[0], BM_CLICK, 0, 0);
    CHECK_EQ(checksOf(buttons), L"1001");
    // The arrow keys stay within the group.
    SendMessageW(buttons[0], WM_KEYDOWN, VK_DOWN, 0);
    CHECK_EQ(checksOf(buttons), L"0011");
    SendMessageW(buttons[2], WM_KEYDOWN, VK_DOWN, 0);
    CHECK_EQ(checksOf(buttons), L"1001");
    for (HWND button : buttons)
        DestroyWindow(button);
}

void testUnnamedRadios()
{
    std::vector<HWND> buttons;
    for (int i = 0; i < 4; ++i)
        buttons.push_back(testControl(L"BUTTON", L"x", BS_AUTORADIOBUTTON | (i % 2 ? 0 : WS_GROUP),
                                      1001 + i, {20, 20 + 25 * i, 120, 40 + 25 * i}));
    for (HWND button : buttons)
        VL_SetChecked(button, true);
    CHECK_EQ(checksOf(buttons), L"0101");
    for (HWND button : buttons)
        DestroyWindow(button);
}

// Containers made ahead of what stands on them, one within the other.
void testGroupBox()
{
    const HWND outer = testControl(L"BUTTON", L"outer", BS_GROUPBOX, 1001, {20, 20, 320, 220});
    VL_PrepareGroupBox(outer);
    const HWND inner = testControl(L"BUTTON", L"", BS_GROUPBOX, 1002, {120, 50, 300, 200});
    VL_PrepareGroupBox(inner);
    VL_SetBgColor(inner, (int)RGB(255, 0, 0));
    const HWND panel =
        testControl(L"STATIC", L"", SS_BLACKRECT | WS_CLIPSIBLINGS, 1003, {200, 100, 250, 150});
    CHECK_EQ(pixelAt(testWindow(), 60, 120), GetSysColor(COLOR_BTNFACE));
    CHECK_EQ(pixelAt(testWindow(), 150, 180), RGB(255, 0, 0));
    CHECK(pixelAt(testWindow(), 220, 120) != RGB(255, 0, 0));
    // A repaint of the boxes leaves what stands on them alone.
    RedrawWindow(outer, NULL, NULL, RDW_INVALIDATE | RDW_UPDATENOW);
    RedrawWindow(inner, NULL, NULL, RDW_INVALIDATE | RDW_UPDATENOW);
    CHECK(pixelAt(testWindow(), 220, 120) != RGB(255, 0, 0));
    // Round corners on a coloured box show its colour.
    const HWND button = drawnButton(L"", 1004, {130, 60, 190, 90});
    SetPropW(button, L"VL_ButtonCornerRadius", (HANDLE)12);
    InvalidateRect(button, NULL, FALSE);
    CHECK_EQ(pixelAt(testWindow(), 130, 60), RGB(255, 0, 0));
    for (HWND control : {button, panel, inner, outer})
        DestroyWindow(control);
}

void testNothingIsLeft()
{
    DWORD before = 0;
    for (int i = 0; i < 110; ++i) {
        if (i == 10)
            before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
        const HWND box = testControl(L"BUTTON", L"box", BS_GROUPBOX, 1001, {20, 20, 320, 220});
        VL_PrepareGroupBox(box);
        const HWND link = testControl(L"BUTTON", L"link", BS_COMMANDLINK, 1002, {30, 40, 200, 90});
        VL_PrepareButton(link);
        const HWND button = drawnButton(L"button", 1003, {30, 100, 90, 130});
        VL_SetBgColor(button, (int)Own);
        VL_SetButtonKind(button, VL_BUTTON_SPLIT);
        SetPropW(button, L"VL_ButtonCornerRadius", (HANDLE)4);
        pixelAt(testWindow(), 40, 110);
        for (HWND control : {button, link, box})
            DestroyWindow(control);
    }
    CHECK(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) <= before + 3);
}

} // namespace

void runTests()
{
    testWindow();
    testColors();
    testAlign();
    testBehaviour();
    testEnterAndEsc();
    testSplitButton();
    testDefaultKeepsKind();
    testNote();
    testChecks();
    testRadioGroups();
    testUnnamedRadios();
    testGroupBox();
    testNothingIsLeft();
}
