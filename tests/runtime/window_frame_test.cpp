// What all windows have in common: backgrounds, colours, limits, scaling, default buttons.
#include "43_buttons.h"
#include "73_window_frame.h"
#include "window_test.h"

namespace {

std::vector<int> g_commands;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (VL_WindowMessage(window, message, wParam, lParam, &result))
        return result;
    if (message == WM_COMMAND && HIWORD(wParam) == BN_CLICKED)
        g_commands.push_back(LOWORD(wParam));
    return DefWindowProcW(window, message, wParam, lParam);
}

// Lets the window manager finish what was asked of it: until nothing more arrives.
void settle()
{
    const DWORD begin = GetTickCount();
    do {
        pumpMessages();
    } while (GetTickCount() - begin < 3000 &&
             MsgWaitForMultipleObjects(0, NULL, FALSE, 80, QS_ALLINPUT) == WAIT_OBJECT_0);
}

HWND makeWindow(bool settles = true)
{
    WNDCLASSW description = {};
    description.lpfnWndProc = procedure;
    description.hInstance = g_hInstance;
    description.hCursor = LoadCursor(NULL, IDC_ARROW);
    description.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);
    description.lpszClassName = L"FrameTest";
    RegisterClassW(&description);
    const HWND window = CreateWindowW(L"FrameTest", L"Frame", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                                      100, 100, 0, 0, NULL, NULL, g_hInstance, NULL);
    VL_SetWidth(window, 200);
    VL_SetHeight(window, 160);
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
    UpdateWindow(window);
    if (settles)
        settle();
    return window;
}

HWND add(HWND parent, const wchar_t *name, DWORD style, int id, int x, int y, int width, int height)
{
    return CreateWindowW(name, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, x, y, width,
                         height, parent, (HMENU)(intptr_t)id, g_hInstance, NULL);
}

COLORREF colorOf(HWND window, int x, int y)
{
    RedrawWindow(window, NULL, NULL, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    return pixelAt(window, x, y);
}

// A bitmap file of 64 by 64 pixels: quarters of red and green above, blue and white below.
VL_ByteArray picture()
{
    const int side = 64;
    VL_ByteArray bytes(54 + side * side * 3);
    const unsigned char head[] = {'B', 'M', 54, 48,   0, 0, 0, 0,    0, 0, 54, 0, 0, 0, 40,
                                  0,   0,   0,  side, 0, 0, 0, side, 0, 0, 0,  1, 0, 24};
    memcpy(bytes.ptr(), head, sizeof(head));
    unsigned char *pixel = bytes.ptr() + 54;
    for (int i = 0; i < side * side; ++i, pixel += 3) {
        const bool isRight = i % side >= side / 2;
        const bool isBelow = i / side < side / 2;
        pixel[0] = isBelow ? 255 : 0;
        pixel[1] = isRight ? 255 : 0;
        pixel[2] = isRight == isBelow ? 255 : 0;
    }
    return bytes;
}

void plainBackground()
{
    const HWND window = makeWindow();
    CHECK_EQ(colorOf(window, 50, 50), GetSysColor(COLOR_BTNFACE));
    VL_SetBgColor(window, RGB(10, 200, 30));
    CHECK_EQ(colorOf(window, 50, 50), RGB(10, 200, 30));
    const HWND label = add(window, L"STATIC", 0, 1, 0, 0, 60, 20);
    const HWND check = add(window, L"BUTTON", BS_AUTOCHECKBOX, 2, 0, 30, 60, 20);
    CHECK_EQ(colorOf(label, 30, 10), RGB(10, 200, 30));
    CHECK_EQ(colorOf(check, 50, 10), RGB(10, 200, 30));
    const HWND edit = add(window, L"EDIT", 0, 3, 0, 60, 60, 20);
    CHECK_EQ(colorOf(edit, 40, 10), GetSysColor(COLOR_WINDOW));
    VL_SetBgColor(edit, RGB(1, 2, 3));
    CHECK_EQ(colorOf(edit, 40, 10), RGB(1, 2, 3));
    VL_SetEnabled(edit, false);
    CHECK(colorOf(edit, 40, 10) != RGB(1, 2, 3));
    VL_SetBgColor(label, RGB(50, 60, 70));
    CHECK_EQ(colorOf(label, 30, 10), RGB(50, 60, 70));
    DestroyWindow(window);
}

struct ColorCase
{
    const char *name;
    COLORREF text;
    COLORREF back;
    bool replaced;
};

void whiteTextStaysReadable()
{
    const HWND window = makeWindow();
    const HWND label = add(window, L"STATIC", 0, 1, 0, 0, 60, 20);
    const ColorCase cases[] = {{"white on white", 0xFFFFFF, 0xFFFFFF, true},
                               {"white on dark", 0xFFFFFF, 0x202020, false},
                               {"sum 600", RGB(200, 200, 200), 0xFFFFFF, false},
                               {"sum 601", RGB(200, 200, 201), 0xFFFFFF, true},
                               {"ground 400", 0xFFFFFF, RGB(200, 100, 100), false},
                               {"ground 401", 0xFFFFFF, RGB(200, 100, 101), true}};
    const HDC context = GetDC(label);
    for (const ColorCase &one : cases) {
        VL_SetTextColor(label, (int)one.text);
        VL_SetBgColor(label, (int)one.back);
        LRESULT brush = 0;
        CHECK(VL_WindowMessage(window, WM_CTLCOLORSTATIC, (WPARAM)context, (LPARAM)label, &brush));
        CHECK((HBRUSH)brush == VL_BgBrush(label));
        CHECK_EQ(GetTextColor(context),
                 one.replaced ? GetSysColor(COLOR_WINDOWTEXT) : (DWORD)one.text);
    }
    ReleaseDC(label, context);
    DestroyWindow(window);
}

// The colours that the parts of a combo box show are those of the box.
void comboColors()
{
    const HWND window = makeWindow();
    const HWND combo = add(window, L"COMBOBOX", CBS_DROPDOWN, 1, 0, 0, 90, 120);
    VL_SetBgColor(combo, RGB(20, 30, 40));
    COMBOBOXINFO info = {};
    info.cbSize = sizeof(info);
    GetComboBoxInfo(combo, &info);
    const HDC context = GetDC(combo);
    for (HWND part : {info.hwndList, info.hwndItem}) {
        LRESULT brush = 0;
        CHECK(VL_WindowMessage(window, WM_CTLCOLORLISTBOX, (WPARAM)context, (LPARAM)part, &brush));
        CHECK((HBRUSH)brush == VL_BgBrush(combo));
    }
    ReleaseDC(combo, context);
    DestroyWindow(window);
}

struct ModeCase
{
    const wchar_t *mode;
    COLORREF topLeft;
    COLORREF middle;
    COLORREF bottomRight;
};

void pictureModes()
{
    const HWND window = makeWindow();
    VL_SetBgColor(window, RGB(9, 9, 9));
    CHECK_EQ(VL_GetWindowBackgroundMode(window), L"\u62C9\u4F38");
    VL_SetWindowBackgroundFromBytes(window, picture());
    CHECK(VL_HasBackgroundPicture(window));
    const COLORREF red = RGB(255, 0, 0), white = RGB(255, 255, 255), under = RGB(9, 9, 9);
    const COLORREF green = RGB(0, 255, 0), blue = RGB(0, 0, 255);
    const ModeCase cases[] = {{L"\u62C9\u4F38", red, red, white},
                              {L"\u5E73\u94FA", red, blue, red},
                              {L"\u5C45\u4E2D", under, red, under},
                              {L"\u7F29\u653E", under, red, under}};
    for (const ModeCase &one : cases) {
        VL_SetWindowBackgroundScaleMode(window, one.mode);
        CHECK_EQ(VL_GetWindowBackgroundMode(window), one.mode);
        CHECK_EQ(colorOf(window, 0, 0), one.topLeft);
        CHECK_EQ(colorOf(window, 71, 50), one.middle);
        CHECK_EQ(colorOf(window, 199, 159), one.bottomRight);
    }
    VL_SetWindowBackgroundScaleMode(window, L"nonsense");
    CHECK_EQ(VL_GetWindowBackgroundMode(window), L"\u7F29\u653E");
    // It follows the window's size, and see-through controls show their part of it.
    VL_SetWindowBackgroundScaleMode(window, L"\u62C9\u4F38");
    const HWND label = add(window, L"STATIC", 0, 1, 150, 100, 40, 40);
    CHECK_EQ(colorOf(label, 35, 35), white);
    VL_SetWidth(window, 400);
    settle();
    CHECK_EQ(colorOf(label, 30, 30), blue);
    CHECK_EQ(colorOf(window, 399, 0), green);
    VL_SetWindowBackground(window, L"none.png");
    CHECK_EQ(VL_GetWindowBackgroundPath(window), L"none.png");
    CHECK(!VL_HasBackgroundPicture(window));
    CHECK_EQ(colorOf(window, 5, 5), under);
    VL_SetWindowBackgroundFromBytes(window, VL_ByteArray("no picture at all", 17));
    CHECK(!VL_HasBackgroundPicture(window));
    DestroyWindow(window);
    VL_SetWindowBackground(window, L"x");
    CHECK_EQ(VL_GetWindowBackgroundPath(window), L"");
}

// A panel shows its own ground; so do see-through controls that lie on it or are inside it.
void panels()
{
    const HWND window = makeWindow();
    const HWND label = add(window, L"STATIC", 0, 1, 30, 30, 20, 20);
    const HWND panel = add(window, L"STATIC", 0, 2, 20, 20, 80, 80);
    SetWindowPos(panel, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    VL_PreparePanel(panel);
    VL_PreparePanel(panel);
    VL_SetBgColor(panel, RGB(100, 0, 50));
    const HWND inner = add(panel, L"BUTTON", BS_AUTOCHECKBOX, 3, 40, 40, 30, 20);
    CHECK_EQ(colorOf(panel, 5, 5), RGB(100, 0, 50));
    CHECK_EQ(colorOf(label, 10, 10), RGB(100, 0, 50));
    CHECK_EQ(colorOf(inner, 25, 10), RGB(100, 0, 50));
    CHECK((GetWindowLongW(panel, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) != 0);
    g_commands.clear();
    SendMessageW(inner, BM_CLICK, 0, 0);
    CHECK_EQ(g_commands.size(), (size_t)1);
    VL_SetControlBackgroundImage(panel, VL_Any(picture()));
    CHECK_EQ(colorOf(panel, 5, 5), RGB(255, 0, 0));
    CHECK_EQ(colorOf(panel, 5, 75), RGB(0, 0, 255));
    DestroyWindow(panel);
    CHECK_EQ(colorOf(label, 10, 10), GetSysColor(COLOR_BTNFACE));
    const HWND group = add(window, L"BUTTON", BS_GROUPBOX, 4, 100, 20, 90, 90);
    VL_SetControlBackgroundImage(group, picture());
    CHECK_EQ(colorOf(group, 20, 30), RGB(255, 0, 0));
    VL_SetControlBackgroundImage(group, std::wstring());
    DestroyWindow(window);
}

void limitsOfSize()
{
    const HWND window = makeWindow();
    VL_SetWindowLimits(window, 150, 100, 300, 0);
    VL_SetWidth(window, 10);
    VL_SetHeight(window, 10);
    CHECK_EQ(VL_GetWidth(window), 150);
    CHECK_EQ(VL_GetHeight(window), 100);
    VL_SetWidth(window, 1000);
    VL_SetHeight(window, 500);
    CHECK_EQ(VL_GetWidth(window), 300);
    CHECK_EQ(VL_GetHeight(window), 500);
    DestroyWindow(window);
}

void borderlessWindows()
{
    const HWND window = makeWindow();
    const auto hit = [window](int x, int y) {
        RECT place = {};
        GetWindowRect(window, &place);
        return SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(place.left + x, place.top + y));
    };
    VL_SetWindowBorderless(window, true, true);
    settle();
    CHECK_EQ(VL_GetWidth(window), 200);
    RECT outer = {};
    GetWindowRect(window, &outer);
    CHECK_EQ(outer.right - outer.left, 200L);
    CHECK_EQ(hit(3, 3), (LRESULT)HTTOPLEFT);
    CHECK_EQ(hit(100, 7), (LRESULT)HTTOP);
    CHECK_EQ(hit(199, 80), (LRESULT)HTRIGHT);
    CHECK_EQ(hit(195, 158), (LRESULT)HTBOTTOMRIGHT);
    CHECK_EQ(hit(8, 8), (LRESULT)HTCLIENT);
    VL_SetWindowBorderless(window, true, false);
    CHECK_EQ(hit(3, 3), (LRESULT)HTCLIENT);
    MINMAXINFO info = {};
    SendMessageW(window, WM_GETMINMAXINFO, 0, (LPARAM)&info);
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    CHECK_EQ(info.ptMaxSize.y, work.bottom - work.top);
    DestroyWindow(window);
}

// Going to another scale and back any number of times changes nothing.
void scaleChangesDoNotDrift()
{
    const HWND window = makeWindow();
    const HWND button = add(window, L"BUTTON", 0, 1, 13, 27, 75, 23);
    const HWND panel = add(window, L"STATIC", 0, 2, 33, 61, 101, 67);
    const HWND inner = add(panel, L"EDIT", 0, 3, 7, 9, 31, 19);
    g_vlDpiAware = true;
    RECT suggested = {};
    GetWindowRect(window, &suggested);
    for (int i = 0; i < 10; ++i) {
        for (int dpi : {144, 120, 168}) {
            SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), (LPARAM)&suggested);
            RECT place = {};
            GetWindowRect(button, &place);
            CHECK_EQ((int)(place.right - place.left), (75 * dpi + 48) / 96);
        }
    }
    // One that the program moves in between keeps that.
    VL_SetBounds(inner, 35, 35, 70, 35);
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(96, 96), (LPARAM)&suggested);
    g_vlDpiAware = false;
    const int expected[][4] = {{13, 27, 75, 23}, {33, 61, 101, 67}, {20, 20, 40, 20}};
    const HWND windows[] = {button, panel, inner};
    for (int i = 0; i < 3; ++i) {
        CHECK_EQ(VL_GetX(windows[i]), expected[i][0]);
        CHECK_EQ(VL_GetY(windows[i]), expected[i][1]);
        CHECK_EQ(VL_GetWidth(windows[i]), expected[i][2]);
        CHECK_EQ(VL_GetHeight(windows[i]), expected[i][3]);
    }
    DestroyWindow(window);
}

MSG key(HWND window, WPARAM code)
{
    MSG result = {};
    result.hwnd = window;
    result.message = WM_KEYDOWN;
    result.wParam = code;
    return result;
}

void defaultAndCancelButtons()
{
    const HWND window = makeWindow();
    const HWND edit = add(window, L"EDIT", WS_TABSTOP, 1001, 0, 0, 60, 20);
    const HWND fine = add(window, L"BUTTON", WS_TABSTOP | BS_OWNERDRAW, 1002, 0, 30, 60, 20);
    const HWND cancel = add(window, L"BUTTON", WS_TABSTOP, 1003, 0, 60, 60, 20);
    SetFocus(edit);
    g_commands.clear();
    MSG escape = key(edit, VK_ESCAPE);
    CHECK(VL_FilterMessage(&escape));
    CHECK_EQ(g_commands.size(), (size_t)0);
    CHECK(IsWindow(window) != FALSE);
    VL_SetDefaultButton(fine);
    VL_SetCancelButton(cancel);
    MSG enter = key(edit, VK_RETURN);
    CHECK(VL_FilterMessage(&enter));
    CHECK(VL_FilterMessage(&escape));
    CHECK_EQ(g_commands.size(), (size_t)2);
    CHECK_EQ(g_commands.empty() ? 0 : g_commands.front() * 10000 + g_commands.back(), 10021003);
    // One that cannot be used is not pressed.
    VL_SetEnabled(cancel, false);
    VL_FilterMessage(&escape);
    CHECK_EQ(g_commands.size(), (size_t)2);
    DestroyWindow(window);
}

void focusComesBack()
{
    const HWND window = makeWindow();
    const HWND first = add(window, L"EDIT", WS_TABSTOP, 1, 0, 0, 60, 20);
    const HWND second = add(window, L"EDIT", WS_TABSTOP, 2, 0, 30, 60, 20);
    SetActiveWindow(testWindow());
    SetActiveWindow(window);
    CHECK(GetFocus() == first);
    SetFocus(second);
    SetActiveWindow(testWindow());
    SetActiveWindow(window);
    CHECK(GetFocus() == second);
    SetActiveWindow(testWindow());
    DestroyWindow(second);
    SetActiveWindow(window);
    CHECK(GetFocus() == first);
    DestroyWindow(window);
}

void cursors()
{
    const HWND window = makeWindow();
    const HWND button = add(window, L"BUTTON", 0, 1, 0, 0, 60, 20);
    VL_SetCursorStyle(button, L"\u624B\u578B");
    SendMessageW(button, WM_SETCURSOR, (WPARAM)button, MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    CHECK(GetCursor() == LoadCursorW(NULL, (LPCWSTR)IDC_HAND));
    VL_SetCursorStyle(button, L"\u9ED8\u8BA4");
    SendMessageW(button, WM_SETCURSOR, (WPARAM)button, MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    CHECK(GetCursor() == LoadCursorW(NULL, (LPCWSTR)IDC_ARROW));
    DestroyWindow(window);
}

void madeAtRunTime()
{
    const HWND window = (HWND)VL_CreateWindow(L"extra", L"Title", 333, 222);
    CHECK(window != NULL && !IsWindowVisible(window));
    CHECK_EQ(VL_GetWidth(window) * 1000 + VL_GetHeight(window), 333222);
    CHECK_EQ(VL_CreateWindow(L"extra"), (intptr_t)window);
    CHECK(VL_Window_Show(L"extra"));
    CHECK(VL_Window_Close(L"extra"));
    CHECK(IsWindow(window) && !VL_Window_IsVisible(L"extra"));
    CHECK(VL_CreateDialogWindow(L"dialog") != 0);
    CHECK(VL_DestroyWindow(L"dialog"));
    CHECK(VL_DestroyWindow(L"extra"));
    CHECK(!VL_Window_Exists(L"extra"));
}

void hundredWindowsLeaveNothing()
{
    DWORD before = 0;
    for (int i = 0; i <= 100; ++i) {
        const HWND window = makeWindow(false);
        VL_SetBgColor(window, i);
        VL_SetWindowBackgroundFromBytes(window, picture());
        const HWND panel = add(window, L"STATIC", 0, 1, 0, 0, 50, 50);
        VL_SetControlBackgroundImage(panel, picture());
        const HWND label = add(window, L"STATIC", 0, 2, 60, 0, 50, 50);
        colorOf(label, 1, 1);
        DestroyWindow(window);
        if (i == 0)
            before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    }
    CHECK(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) <= before + 5);
}

} // namespace

void VL_CallWindowCreateEvent(const std::wstring &) {}

void runTests()
{
    testWindow();
    plainBackground();
    whiteTextStaysReadable();
    comboColors();
    pictureModes();
    panels();
    limitsOfSize();
    borderlessWindows();
    scaleChangesDoNotDrift();
    defaultAndCancelButtons();
    focusComesBack();
    cursors();
    madeAtRunTime();
    hundredWindowsLeaveNothing();
}
