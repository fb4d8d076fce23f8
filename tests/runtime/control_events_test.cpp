// Events that controls tell their window: mouse, keys, focus, scrolling.
#include "43_buttons.h"
#include "48_control_events.h"
#include "window_test.h"

namespace {

HWND watched(const wchar_t *windowClass, const wchar_t *text, DWORD style, RECT place)
{
    const HWND control = testControl(windowClass, text, style, 1001, place);
    VL_WatchControlEvents(control);
    takeTold();
    return control;
}

LPARAM dataOf(const std::vector<Told> &told, int code)
{
    for (const Told &one : told) {
        if (one.code == code)
            return one.data;
    }
    return -1;
}

void press(HWND control, int x, int y)
{
    SendMessageW(control, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
}

void release(HWND control, int x, int y)
{
    SendMessageW(control, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

void testMouseData()
{
    struct Row
    {
        int x, y, button;
        int shownX, shownY;
    };
    for (const Row &row :
         {Row{3, 4, VL_MOUSE_LEFT, 3, 4}, Row{-5, -6, VL_MOUSE_RIGHT, 0, 0},
          Row{16383, 99999, VL_MOUSE_MIDDLE, 16383, 16383}, Row{0, 1, VL_MOUSE_NONE, 0, 1}}) {
        const LPARAM data = VL_MouseData(row.x, row.y, row.button);
        CHECK_EQ((int)LOWORD(data), row.shownX);
        CHECK_EQ((int)(HIWORD(data) & 0x3FFF), row.shownY);
        CHECK_EQ((int)(HIWORD(data) >> 14) & 3, row.button);
    }
}

void testClicks()
{
    struct Row
    {
        const wchar_t *windowClass;
        DWORD style;
        int clicks; // by the private code
    };
    const Row rows[] = {{L"STATIC", SS_LEFT, 1},
                        {L"BUTTON", BS_GROUPBOX, 1},
                        {L"EDIT", 0, 1},
                        {L"EDIT", ES_MULTILINE, 1},
                        {L"RICHEDIT50W", ES_MULTILINE, 1},
                        {L"LISTBOX", LBS_NOTIFY, 1},
                        {L"BUTTON", BS_PUSHBUTTON, 0},
                        {WC_LISTVIEWW, LVS_REPORT, 0}};
    for (const Row &row : rows) {
        const HWND control = watched(row.windowClass, L"x", row.style, {20, 20, 120, 60});
        press(control, 7, 8);
        std::vector<Told> told = takeTold();
        CHECK_EQ(dataOf(told, VL_EVENT_MOUSE_DOWN) >= 0, true);
        CHECK_EQ(countOf(told, 1001, VL_EVENT_CLICK), 0);
        release(control, 7, 8);
        told = takeTold();
        CHECK_EQ(countOf(told, 1001, VL_EVENT_MOUSE_UP), 1);
        CHECK_EQ(countOf(told, 1001, VL_EVENT_CLICK), row.clicks);
        CHECK(GetCapture() == NULL);
        // Let go outside it is no click; neither is going down elsewhere.
        press(control, 7, 8);
        release(control, 500, 8);
        release(control, 7, 8);
        CHECK_EQ(countOf(takeTold(), 1001, VL_EVENT_CLICK), 0);
        DestroyWindow(control);
    }
}

// Places are those within the control, in design pixels, whatever its border and padding.
void testPlaces()
{
    const HWND label = watched(L"STATIC", L"x", WS_BORDER, {20, 20, 220, 60});
    press(label, 10, 12);
    LPARAM data = dataOf(takeTold(), VL_EVENT_MOUSE_DOWN);
    CHECK_EQ((int)LOWORD(data), 11);
    CHECK_EQ((int)HIWORD(data), 13);
    release(label, 10, 12);
    SendMessageW(label, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(10, 12));
    data = dataOf(takeTold(), VL_EVENT_MOUSE_DOWN);
    CHECK_EQ((int)(HIWORD(data) >> 14), VL_MOUSE_RIGHT);
    SendMessageW(label, WM_MOUSEMOVE, MK_RBUTTON, MAKELPARAM(20, 12));
    SendMessageW(label, WM_MOUSEMOVE, MK_RBUTTON, MAKELPARAM(20, 12));
    std::vector<Told> told = takeTold();
    CHECK_EQ(countOf(told, 1001, VL_EVENT_MOUSE_MOVE), 1);
    CHECK_EQ((int)(HIWORD(dataOf(told, VL_EVENT_MOUSE_MOVE)) >> 14) & 3, VL_MOUSE_RIGHT);
    SendMessageW(label, WM_RBUTTONUP, 0, MAKELPARAM(20, 12));
    SendMessageW(label, WM_MOUSEMOVE, 0, MAKELPARAM(25, 12));
    told = takeTold();
    CHECK_EQ((int)(HIWORD(dataOf(told, VL_EVENT_MOUSE_MOVE)) >> 14) & 3, VL_MOUSE_NONE);
    SendMessageW(label, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(25, 12));
    CHECK_EQ(countOf(takeTold(), 1001, VL_EVENT_DOUBLE_CLICK), 1);
    release(label, 25, 12);
    DestroyWindow(label);
}

void waitFor(DWORD milliseconds)
{
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < milliseconds) {
        pumpMessages();
        Sleep(5);
    }
}

void testHeld()
{
    const HWND label = watched(L"STATIC", L"x", 0, {20, 20, 220, 60});
    press(label, 10, 12);
    waitFor(550);
    const int held = countOf(takeTold(), 1001, VL_EVENT_MOUSE_HELD);
    CHECK(held >= 2 && held <= 6);
    release(label, 10, 12);
    takeTold();
    waitFor(250);
    CHECK_EQ(countOf(takeTold(), 1001, VL_EVENT_MOUSE_HELD), 0);
    // Something else that takes the mouse ends it.
    press(label, 10, 12);
    SetCapture(testWindow());
    takeTold();
    waitFor(250);
    CHECK_EQ(countOf(takeTold(), 1001, VL_EVENT_MOUSE_HELD), 0);
    ReleaseCapture();
    DestroyWindow(label);
}

// The pointer itself, so that statics are hit as well.
void testEnterAndLeave()
{
    const HWND label = watched(L"STATIC", L"x", 0, {20, 20, 120, 60});
    const HWND combo = testControl(L"COMBOBOX", L"x", CBS_DROPDOWN, 1002, {20, 100, 120, 250});
    VL_WatchControlEvents(combo);
    POINT origin = {0, 0};
    ClientToScreen(testWindow(), &origin);
    const auto moveTo = [&](int x, int y) {
        SetCursorPos(origin.x + x, origin.y + y);
        waitFor(150);
        return takeTold();
    };
    moveTo(400, 300);
    std::vector<Told> told = moveTo(50, 40);
    CHECK_EQ(countOf(told, 1001, VL_EVENT_MOUSE_ENTER), 1);
    CHECK(countOf(told, 1001, VL_EVENT_MOUSE_MOVE) >= 1);
    told = moveTo(60, 45);
    CHECK_EQ(countOf(told, 1001, VL_EVENT_MOUSE_ENTER), 0);
    told = moveTo(400, 300);
    CHECK_EQ(countOf(told, 1001, VL_EVENT_MOUSE_LEAVE), 1);
    // From the edit of a combo box to its button is no leaving.
    told = moveTo(50, 110);
    CHECK_EQ(countOf(told, 1002, VL_EVENT_MOUSE_ENTER), 1);
    told = moveTo(114, 110);
    CHECK_EQ(countOf(told, 1002, VL_EVENT_MOUSE_ENTER), 0);
    CHECK_EQ(countOf(told, 1002, VL_EVENT_MOUSE_LEAVE), 0);
    told = moveTo(400, 300);
    CHECK_EQ(countOf(told, 1002, VL_EVENT_MOUSE_LEAVE), 1);
    DestroyWindow(label);
    DestroyWindow(combo);
}

void testFocus()
{
    const HWND edit = watched(L"EDIT", L"x", 0, {20, 20, 120, 40});
    const HWND combo = testControl(L"COMBOBOX", L"x", CBS_DROPDOWN, 1002, {20, 100, 120, 250});
    VL_WatchControlEvents(combo);
    SetFocus(edit);
    std::vector<Told> told = takeTold();
    CHECK_EQ(countOf(told, 1001, VL_EVENT_GOT_FOCUS), 1);
    // The combo box hands the focus on to its edit: one event, not three.
    SetFocus(combo);
    told = takeTold();
    CHECK_EQ(countOf(told, 1001, VL_EVENT_LOST_FOCUS), 1);
    CHECK_EQ(countOf(told, 1002, VL_EVENT_GOT_FOCUS), 1);
    CHECK_EQ(countOf(told, 1002, VL_EVENT_LOST_FOCUS), 0);
    SendMessageW(GetFocus(), WM_KEYDOWN, 'K', 0);
    CHECK_EQ((int)dataOf(takeTold(), VL_EVENT_KEY_DOWN), (int)'K');
    SetFocus(testWindow());
    CHECK_EQ(countOf(takeTold(), 1002, VL_EVENT_LOST_FOCUS), 1);
    DestroyWindow(edit);
    DestroyWindow(combo);
}

void pressEnter(HWND edit)
{
    MSG message = {};
    message.hwnd = edit;
    message.message = WM_KEYDOWN;
    message.wParam = VK_RETURN;
    if (!IsDialogMessageW(testWindow(), &message))
        DispatchMessageW(&message);
    pumpMessages();
}

void testKeysAndEnter()
{
    const HWND edit = watched(L"EDIT", L"x", WS_TABSTOP, {20, 20, 120, 40});
    SendMessageW(edit, WM_KEYDOWN, VK_F5, 0);
    SendMessageW(edit, WM_KEYUP, VK_F5, 0);
    std::vector<Told> told = takeTold();
    CHECK_EQ((int)dataOf(told, VL_EVENT_KEY_DOWN), VK_F5);
    CHECK_EQ((int)dataOf(told, VL_EVENT_KEY_UP), VK_F5);
    SetFocus(edit);
    takeTold();
    pressEnter(edit);
    told = takeTold();
    CHECK_EQ(countOf(told, 1001, VL_EVENT_ENTER), 1);
    // It presses the default button as well.
    const HWND button = testControl(L"BUTTON", L"ok", BS_PUSHBUTTON, 1002, {20, 80, 90, 110});
    VL_PrepareButton(button);
    VL_SetDefaultButton(button);
    pressEnter(edit);
    told = takeTold();
    CHECK_EQ(countOf(told, 1001, VL_EVENT_ENTER), 1);
    CHECK_EQ(countOf(told, 1002, BN_CLICKED), 1);
    DestroyWindow(button);
    DestroyWindow(edit);
    const HWND area = watched(L"EDIT", L"x", ES_MULTILINE, {20, 20, 120, 80});
    SendMessageW(area, WM_KEYDOWN, VK_RETURN, 0);
    SendMessageW(area, WM_CHAR, L'\r', 0);
    told = takeTold();
    CHECK_EQ(countOf(told, 1001, VL_EVENT_ENTER), 0);
    CHECK_EQ(VL_GetText(area), L"\r\nx");
    DestroyWindow(area);
}

void testScroll()
{
    for (const wchar_t *windowClass : {L"EDIT", L"RICHEDIT50W", L"LISTBOX"}) {
        const bool isList = *windowClass == L'L';
        const DWORD style = WS_VSCROLL | (isList ? LBS_NOTIFY : ES_MULTILINE | ES_AUTOVSCROLL);
        const HWND control = testControl(windowClass, L"", style, 1001, {20, 20, 120, 80});
        for (int i = 0; i < 50; ++i) {
            if (isList)
                SendMessageW(control, LB_ADDSTRING, 0, (LPARAM)L"item");
            else
                VL_AppendText(control, L"line\n");
        }
        SendMessageW(control, WM_VSCROLL, SB_TOP, 0);
        VL_WatchControlEvents(control);
        takeTold();
        const auto scrolls = [&] { return countOf(takeTold(), 1001, VL_EVENT_SCROLL); };
        SendMessageW(control, WM_VSCROLL, SB_LINEDOWN, 0);
        CHECK_EQ(scrolls(), 1);
        SendMessageW(control, WM_VSCROLL, SB_BOTTOM, 0);
        CHECK_EQ(scrolls(), 1);
        SendMessageW(control, WM_VSCROLL, SB_BOTTOM, 0);
        CHECK_EQ(scrolls(), 0);
        SendMessageW(control, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
        CHECK_EQ(scrolls(), 1);
        DestroyWindow(control);
    }
}

LRESULT CALLBACK closeOnEvent(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR data)
{
    if (message == WM_COMMAND && HIWORD(wParam) == (WORD)data)
        DestroyWindow(GetDlgItem(window, LOWORD(wParam)));
    return DefSubclassProc(window, message, wParam, lParam);
}

// A handler may close the control that tells it.
void testClosedByHandler()
{
    for (int code : {VL_EVENT_MOUSE_DOWN, VL_EVENT_MOUSE_UP, VL_EVENT_CLICK, VL_EVENT_MOUSE_MOVE,
                     VL_EVENT_KEY_DOWN, VL_EVENT_ENTER, VL_EVENT_MOUSE_ENTER}) {
        const HWND edit = watched(L"EDIT", L"x", 0, {20, 20, 120, 40});
        SetWindowSubclass(testWindow(), closeOnEvent, 1, (DWORD_PTR)code);
        SendMessageW(edit, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        press(edit, 5, 5);
        release(edit, 5, 5);
        SendMessageW(edit, WM_KEYDOWN, VK_RETURN, 0);
        CHECK_EQ(IsWindow(edit), FALSE);
        RemoveWindowSubclass(testWindow(), closeOnEvent, 1);
    }
    VL_WatchControlEvents(NULL);
}

} // namespace

void runTests()
{
    LoadLibraryW(L"Msftedit.dll");
    testWindow();
    testMouseData();
    testClicks();
    testPlaces();
    testHeld();
    testEnterAndLeave();
    testFocus();
    testKeysAndEnter();
    testScroll();
    testClosedByHandler();
}
