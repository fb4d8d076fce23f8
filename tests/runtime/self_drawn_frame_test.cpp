// Self-drawn windows: picture, hit testing, caption buttons, title, odd arguments.
#include "self_drawn_test.h"

#include <algorithm>

namespace {

std::vector<WPARAM> g_commands;

LRESULT CALLBACK keepCommands(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                              DWORD_PTR)
{
    if (message == WM_SYSCOMMAND) {
        g_commands.push_back(wParam);
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

void prepare(bool minimizeBox, bool maximizeBox, bool resizable)
{
    VL_VlwinPrepareWindow(darkWindow(), kTitleColor, kClientColor, minimizeBox, maximizeBox,
                          resizable);
    pumpMessages();
}

// The commands of a press at one point that is let go at another.
std::vector<WPARAM> commandsOf(POINT press, POINT release)
{
    const HWND window = darkWindow();
    g_commands.clear();
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(press.x, press.y));
    SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(release.x, release.y));
    pumpMessages();
    return g_commands;
}

void testPicture()
{
    const HWND window = darkWindow();
    prepare(true, true, true);
    SetWindowTextW(window, L"");
    RECT client;
    RECT outer;
    GetClientRect(window, &client);
    GetWindowRect(window, &outer);
    CHECK_EQ(client.right, outer.right - outer.left);
    CHECK_EQ(client.bottom, 400L);
    const struct
    {
        int x;
        int y;
        COLORREF color;
    } rows[] = {
        {300, 20, kTitleColor},     {2, 39, kTitleColor},      {300, 40, kClientColor},
        {2, 200, kClientColor},     {0, 0, VL_VLWIN_FRAME},    {1, 200, VL_VLWIN_FRAME},
        {300, 399, VL_VLWIN_FRAME}, {598, 30, VL_VLWIN_FRAME}, {597, 200, kClientColor},
    };
    for (const auto &row : rows)
        CHECK_EQ(pixelAt(window, row.x, row.y), row.color);
    // A new colour of the window is that of its client area.
    VL_SetBgColor(window, RGB(10, 90, 10));
    CHECK_EQ(pixelAt(window, 300, 200), (COLORREF)RGB(10, 90, 10));
    prepare(true, true, true);
}

void testHitTest()
{
    const struct
    {
        int x;
        int y;
        LRESULT resizable;
        LRESULT fixed;
    } rows[] = {
        {300, 20, HTCAPTION, HTCAPTION},  {300, 200, HTCLIENT, HTCLIENT},
        {0, 0, HTTOPLEFT, HTCAPTION},     {300, 7, HTTOP, HTCAPTION},
        {300, 8, HTCAPTION, HTCAPTION},   {599, 399, HTBOTTOMRIGHT, HTCLIENT},
        {3, 200, HTLEFT, HTCLIENT},       {596, 200, HTRIGHT, HTCLIENT},
        {4, 396, HTBOTTOMLEFT, HTCLIENT}, {300, 395, HTBOTTOM, HTCLIENT},
        {590, 20, HTCLIENT, HTCLIENT},    {464, 20, HTCLIENT, HTCLIENT},
        {460, 20, HTCAPTION, HTCAPTION},  {700, 20, HTNOWHERE, HTNOWHERE},
    };
    for (const bool resizable : {true, false}) {
        prepare(true, true, resizable);
        for (const auto &row : rows) {
            POINT point = {row.x, row.y};
            ClientToScreen(darkWindow(), &point);
            CHECK_EQ(SendMessageW(darkWindow(), WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y)),
                     resizable ? row.resizable : row.fixed);
        }
    }
}

void testCaptionButtons()
{
    SetWindowSubclass(darkWindow(), keepCommands, 2, 0);
    const POINT rightmost = {580, 20};
    const POINT second = {530, 20};
    const POINT third = {490, 20};
    const auto one = [](WPARAM command) { return std::vector<WPARAM>{command}; };
    prepare(true, true, true);
    CHECK(commandsOf(rightmost, rightmost) == one(SC_CLOSE));
    CHECK(commandsOf(second, second) == one(SC_MAXIMIZE));
    CHECK(commandsOf(third, third) == one(SC_MINIMIZE));
    CHECK(commandsOf(rightmost, second).empty());
    CHECK(commandsOf(POINT{300, 200}, rightmost).empty());
    prepare(true, false, true);
    CHECK(commandsOf(second, second) == one(SC_MINIMIZE));
    CHECK(commandsOf(third, third).empty());
    prepare(false, false, true);
    CHECK(commandsOf(second, second).empty());
    // A double click on the title maximises only a window that can be.
    g_commands.clear();
    SendMessageW(darkWindow(), WM_NCLBUTTONDBLCLK, HTCAPTION, 0);
    pumpMessages();
    CHECK(g_commands.empty());
    prepare(true, true, true);
    SendMessageW(darkWindow(), WM_NCLBUTTONDBLCLK, HTCAPTION, 0);
    pumpMessages();
    CHECK(g_commands == one(SC_MAXIMIZE));

    // Presses on the buttons are nobody else's, those on the client area are.
    LRESULT result = 0;
    CHECK(VL_VlwinMessage(darkWindow(), WM_LBUTTONDOWN, 0, MAKELPARAM(580, 20), &result));
    CHECK(VL_VlwinMessage(darkWindow(), WM_LBUTTONUP, 0, MAKELPARAM(300, 200), &result));
    CHECK(!VL_VlwinMessage(darkWindow(), WM_LBUTTONDOWN, 0, MAKELPARAM(300, 200), &result));
    CHECK(!VL_VlwinMessage(darkWindow(), WM_LBUTTONUP, 0, MAKELPARAM(300, 200), &result));
    RemoveWindowSubclass(darkWindow(), keepCommands, 2);
}

void testHover()
{
    const HWND window = darkWindow();
    LRESULT result = 0;
    // The pointer is there: were it elsewhere, the system would soon tell that it left.
    POINT place = {580, 20};
    ClientToScreen(window, &place);
    SetCursorPos(place.x, place.y);
    pumpMessages();
    VL_VlwinMessage(window, WM_MOUSEMOVE, 0, MAKELPARAM(580, 20), &result);
    CHECK_EQ(pixelAt(window, 560, 10), (COLORREF)RGB(232, 17, 35));
    VL_VlwinMessage(window, WM_MOUSELEAVE, 0, 0, &result);
    CHECK_EQ(pixelAt(window, 560, 10), (COLORREF)kTitleColor);
}

void testTitle()
{
    const HWND window = darkWindow();
    const RECT place = {8, 8, 300, 36};
    SetWindowTextW(window, L"");
    CHECK_EQ(pixelsUnlike(window, place, kTitleColor), 0);
    SetWindowTextW(window, L"WWWW");
    CHECK(pixelsUnlike(window, place, kTitleColor) > 20);
    CHECK_EQ(g_vlwinWndTitle, std::wstring(L"WWWW"));

    const auto brightest = [window, place] {
        int most = 0;
        for (int x = place.left; x < 80; ++x) {
            for (int y = place.top; y < place.bottom; ++y)
                most = std::max(most, (int)GetRValue(pixelAt(window, x, y)));
        }
        return most;
    };
    SendMessageW(window, WM_NCACTIVATE, TRUE, 0);
    const int active = brightest();
    SendMessageW(window, WM_NCACTIVATE, FALSE, 0);
    const int inactive = brightest();
    CHECK(active > 190);
    CHECK(inactive > 80 && inactive < active - 30);
    SendMessageW(window, WM_NCACTIVATE, TRUE, 0);

    // Text of any length neither hangs nor writes over the buttons.
    SetWindowTextW(window, std::wstring(5000000, L'M').c_str());
    CHECK_EQ(pixelAt(window, 465, 20), (COLORREF)kTitleColor);
    SetWindowTextW(window, L"");
}

void testBehindControls()
{
    const HWND window = darkWindow();
    const HDC screen = GetDC(window);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 50, 50);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    const HWND control = testControl(L"STATIC", L"", 0, 5, RECT{20, 30, 70, 80});
    VL_VlwinParentBackground(control, memory);
    CHECK_EQ(GetPixel(memory, 5, 5), (COLORREF)kTitleColor);
    CHECK_EQ(GetPixel(memory, 5, 15), (COLORREF)kClientColor);
    DestroyWindow(control);
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, screen);
}

void testMaximized()
{
    const HWND window = darkWindow();
    MINMAXINFO limits = {};
    SendMessageW(window, WM_GETMINMAXINFO, 0, (LPARAM)&limits);
    RECT work;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    CHECK_EQ(limits.ptMaxSize.x, work.right - work.left);
    CHECK_EQ(limits.ptMaxSize.y, work.bottom - work.top);
    CHECK(limits.ptMinTrackSize.x >= 3 * VL_VLWIN_CAPTION_BUTTON);
}

void testOddArguments()
{
    LRESULT result = 0;
    CHECK(!VL_VlwinMessage(NULL, WM_PAINT, 0, 0, &result));
    VL_VlwinPrepareWindow(NULL, 0, 0, true, true, true);
    VL_VlwinPrepareWindow((HWND)(intptr_t)0x7FFF1234, 0, 0, true, true, true);
    VL_VlwinDisableNcRendering(NULL);
    VL_VlwinStripControlTheme(NULL);
    const HWND plain = testControl(L"STATIC", L"", 0, 5, RECT{0, 50, 50, 80});
    CHECK(!VL_VlwinMessage(plain, WM_NCHITTEST, 0, 0, &result));
    DestroyWindow(plain);
    VL_VlwinFill(NULL, RECT{0, 0, 5, 5}, 0);
    VL_VlwinRoundRect(NULL, RECT{5, 5, 0, 0}, 3, 0, 0, 1);
    const VL_BufferedPaint nothing(NULL, RECT{0, 0, -5, 0});
}

void testLeaks()
{
    int before = 0;
    for (int round = 0; round < 105; ++round) {
        if (round == 5)
            before = gdiMark();
        const HWND window =
            CreateWindowW(L"STATIC", L"Title", WS_POPUP, 700, 10, 200, 100, NULL, NULL, NULL, NULL);
        SetWindowSubclass(window, darkProcedure, 1, 0);
        VL_VlwinPrepareWindow(window, kTitleColor, kClientColor, true, true, true);
        const HDC dc = GetDC(window);
        SendMessageW(window, WM_PRINTCLIENT, (WPARAM)dc, PRF_CLIENT);
        ReleaseDC(window, dc);
        DestroyWindow(window);
    }
    CHECK(gdiMark() < before + 40);
}

} // namespace

void runTests()
{
    testPicture();
    testHitTest();
    testCaptionButtons();
    testHover();
    testTitle();
    testBehindControls();
    testMaximized();
    testOddArguments();
    testLeaks();
}
