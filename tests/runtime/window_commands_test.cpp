// Commands on windows: finding, placing, frame, icon and look.
#include "53_window_commands.h"
#include "window_test.h"

#include "40_files.h"

namespace {

const int kClientWidth = 600;
const int kClientHeight = 400;

void findsByTitleAndClass()
{
    const HWND window = testWindow();
    CHECK(VL_SetWindowTitle(window, L"VL \u7A97\u53E3 Probe"));
    CHECK_EQ(VL_GetWindowTitle((intptr_t)window), L"VL \u7A97\u53E3 Probe");
    const intptr_t number = (intptr_t)window;
    CHECK_EQ(VL_FindWindow(L"VL \u7A97\u53E3 Probe"), number);
    CHECK_EQ(VL_FindWindow(L"\u7A97\u53E3 probe"), number);
    CHECK_EQ(VL_FindWindow(L"", L"vlwnd"), number);
    CHECK_EQ(VL_FindWindow(L"\u7A97\u53E3 probe", L"Button"), (intptr_t)0);
    CHECK_EQ(VL_FindWindow(L""), (intptr_t)0);
    CHECK_EQ(VL_GetWindowHandleInt(L"VL \u7A97\u53E3 Probe"), number);
    const HWND first = testControl(L"BUTTON", L"alike", 0, 1, {0, 0, 10, 10});
    const HWND second = testControl(L"BUTTON", L"Alike too", 0, 2, {0, 20, 10, 30});
    CHECK_EQ(VL_GetWindowHandleIntEx(L"alike", L"", window, false, 2), (intptr_t)second);
    CHECK_EQ(VL_GetWindowHandleIntEx(L"alike", L"", window, true), (intptr_t)first);
    CHECK_EQ(VL_GetWindowHandleIntEx(L"", L"button", window, false, 3), (intptr_t)0);
    // A parent that is gone must not mean the whole desktop.
    DestroyWindow(second);
    CHECK_EQ(VL_GetWindowHandleIntEx(L"", L"", (intptr_t)second), (intptr_t)0);
    DestroyWindow(first);
}

void deadWindowsAreRefused()
{
    const HWND gone = testControl(L"BUTTON", L"", 0, 1, {0, 0, 10, 10});
    DestroyWindow(gone);
    for (const VL_Any &none : {VL_Any(gone), VL_Any(), VL_Any(0), VL_Any(-1)}) {
        CHECK(!VL_IsWindow(none));
        CHECK(!VL_SetWindowTitle(none, L"x"));
        CHECK(!VL_CenterWindow(none));
        CHECK(!VL_SetWindowTopmost(none));
        CHECK(!VL_SetFullscreen(none, true));
        CHECK(!VL_SetWindowBorderless(none, true));
        CHECK(!VL_SetWindowIcon(none, L"x.ico"));
        CHECK(!VL_StartWindowDrag(none));
        CHECK(!VL_CloseWindow(none));
        CHECK_EQ(VL_TreeView_FillWindowHierarchy(none), (intptr_t)0);
        CHECK_EQ(VL_GetWindowTitle(none), L"");
        CHECK_EQ((int)VL_GetWindowSize(none)[L"\u5BBD\u5EA6"], 0);
    }
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

void checkClient(HWND window)
{
    CHECK_EQ(VL_GetWidth(window), kClientWidth);
    CHECK_EQ(VL_GetHeight(window), kClientHeight);
}

void frameChangesKeepTheClientArea()
{
    const HWND window = testWindow();
    CHECK(VL_SetWindowSize(window, kClientWidth, kClientHeight));
    CHECK(VL_SetWindowPosition(window, 40, 50));
    const VL_Any place = VL_GetWindowPosition(window);
    CHECK_EQ((int)place[L"\u5DE6\u8FB9"], 40);
    CHECK_EQ((int)place[L"\u9876\u8FB9"], 50);
    const LONG style = GetWindowLongW(window, GWL_STYLE);
    CHECK(VL_SetWindowBorderless(window, true));
    CHECK(VL_SetWindowBorderless(window, true));
    checkClient(window);
    CHECK_EQ(GetWindowLongW(window, GWL_STYLE) & (WS_CAPTION | WS_THICKFRAME), 0L);
    CHECK(VL_SetWindowBorderless(window, false));
    checkClient(window);
    CHECK_EQ(GetWindowLongW(window, GWL_STYLE), style);
    CHECK(VL_SetShowInTaskbar(window, false));
    checkClient(window);
    CHECK(IsWindowVisible(window) != FALSE);
    CHECK(VL_SetShowInTaskbar(window, true));
    settle();
    checkClient(window);
}

void fullscreenComesBack()
{
    const HWND window = testWindow();
    for (bool maximized : {false, true}) {
        ShowWindow(window, maximized ? SW_MAXIMIZE : SW_RESTORE);
        settle();
        const LONG style = GetWindowLongW(window, GWL_STYLE);
        CHECK(VL_SetFullscreen(window, true));
        settle();
        CHECK(VL_IsFullscreen(window));
        RECT place = {};
        GetWindowRect(window, &place);
        CHECK_EQ(place.right, (LONG)GetSystemMetrics(SM_CXSCREEN));
        CHECK_EQ(place.bottom, (LONG)GetSystemMetrics(SM_CYSCREEN));
        CHECK_EQ(GetWindowLongW(window, GWL_STYLE) & WS_CAPTION, 0L);
        CHECK(VL_SetFullscreen(window, false));
        settle();
        CHECK(!VL_IsFullscreen(window));
        CHECK_EQ(GetWindowLongW(window, GWL_STYLE), style);
        ShowWindow(window, SW_RESTORE);
        settle();
        checkClient(window);
    }
}

void centering()
{
    const HWND window = testWindow();
    CHECK(VL_CenterWindow(window));
    RECT place = {};
    RECT work = {};
    GetWindowRect(window, &place);
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    CHECK(abs((place.left + place.right) - (work.left + work.right)) <= 1);
    CHECK(abs((place.top + place.bottom) - (work.top + work.bottom)) <= 1);
    // Over its owner, but with the caption in reach.
    VL_SetWindowPosition(window, 0, 0);
    const HWND owned = CreateWindowW(L"VLWnd", L"", WS_OVERLAPPEDWINDOW, 300, 300, 700, 1200,
                                     window, NULL, g_hInstance, NULL);
    VL_CenterWindow(owned);
    GetWindowRect(owned, &place);
    CHECK_EQ(place.top, work.top);
    DestroyWindow(owned);
}

void opacityAndTopmost()
{
    const HWND window = testWindow();
    const int values[][2] = {{50, 50}, {-3, 0}, {140, 100}, {1, 1}, {100, 100}};
    for (const auto &value : values) {
        CHECK(VL_SetWindowOpacity(window, value[0]));
        CHECK_EQ(VL_GetWindowOpacity(window), value[1]);
    }
    CHECK_EQ(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_LAYERED, 0L);
    CHECK(VL_SetWindowTopmost(window));
    CHECK((GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0);
    CHECK(VL_SetWindowTopmost(window, false));
    CHECK_EQ(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST, 0L);
    // Windows that belong to it go along.
    const HWND owned =
        CreateWindowExW(0, WC_STATICW, L"", WS_POPUP, 0, 0, 10, 10, window, NULL, NULL, NULL);
    CHECK(VL_SetWindowTopmost(window));
    for (const HWND each : {window, owned})
        CHECK((GetWindowLongW(each, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0);
    CHECK(VL_SetWindowTopmost(window, false));
    CHECK_EQ(GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST, 0L);
    DestroyWindow(owned);
}

// A bitmap of 2 by 1 pixels, red and blue.
const unsigned char kBitmap[] = {'B', 'M', 62, 0, 0, 0, 0, 0, 0,   0,   54, 0, 0,  0, 40, 0,
                                 0,   0,   2,  0, 0, 0, 1, 0, 0,   0,   1,  0, 24, 0, 0,  0,
                                 0,   0,   8,  0, 0, 0, 0, 0, 0,   0,   0,  0, 0,  0, 0,  0,
                                 0,   0,   0,  0, 0, 0, 0, 0, 255, 255, 0,  0, 0,  0};

void iconsAreFreed()
{
    const HWND window = testWindow();
    const std::wstring name = L"\u56FE\u6807 w.bmp";
    const std::wstring path = VL_GetAppDir() + L"\\" + name;
    FILE *file = _wfopen(path.c_str(), L"wb");
    fwrite(kBitmap, 1, sizeof(kBitmap), file);
    fclose(file);
    CHECK_EQ(VL_FindProgramFile(name), path);
    CHECK_EQ(VL_FindProgramFile(L"none.ico"), L"none.ico");
    CHECK(VL_SetWindowIcon(window, name));
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    const DWORD gdiBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (int i = 0; i < 50; ++i)
        VL_SetWindowIcon(window, name);
    CHECK(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS) <= before + 2);
    CHECK(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) <= gdiBefore + 4);
    CHECK(SendMessageW(window, WM_GETICON, ICON_BIG, 0) != 0);
    CHECK(!VL_SetWindowIcon(window, L"none.ico"));
    CHECK_EQ(SendMessageW(window, WM_GETICON, ICON_BIG, 0), (LRESULT)0);
    const HICON own = LoadIconW(NULL, (LPCWSTR)IDI_ERROR);
    CHECK(VL_SetWindowIcon(window, (intptr_t)own));
    CHECK_EQ(SendMessageW(window, WM_GETICON, ICON_SMALL, 0), (LRESULT)own);
    DeleteFileW(path.c_str());
}

void hierarchyFillsTheTree()
{
    const HWND tree = testControl(WC_TREEVIEWW, L"", 0, 9, {0, 0, 200, 200});
    const intptr_t count = VL_TreeView_FillWindowHierarchy(tree);
    CHECK(count >= 2);
    CHECK_EQ((intptr_t)SendMessageW(tree, TVM_GETCOUNT, 0, 0), count);
    CHECK_EQ(VL_TreeView_FillWindowHierarchy(tree), count);
    // The tree itself stands below its window.
    HTREEITEM item = (HTREEITEM)SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0);
    TVITEMW read = {};
    read.mask = TVIF_PARAM | TVIF_CHILDREN;
    for (; item; item = (HTREEITEM)SendMessageW(tree, TVM_GETNEXTITEM, TVGN_NEXT, (LPARAM)item)) {
        read.hItem = item;
        SendMessageW(tree, TVM_GETITEMW, 0, (LPARAM)&read);
        if ((HWND)read.lParam == testWindow())
            break;
    }
    CHECK(item != NULL);
    const HTREEITEM child =
        (HTREEITEM)SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, (LPARAM)item);
    read.hItem = child;
    SendMessageW(tree, TVM_GETITEMW, 0, (LPARAM)&read);
    CHECK(child != NULL && (HWND)read.lParam == tree);
    DestroyWindow(tree);
}

void screenText()
{
    CHECK(VL_WriteScreenText(L"\u5C4F\u5E55\nText", 900, 700, 0x0000FF, 20));
    const HDC screen = GetDC(NULL);
    int red = 0;
    for (int y = 700; y < 770; ++y) {
        for (int x = 900; x < 980; ++x)
            red +=
                GetRValue(GetPixel(screen, x, y)) > 200 && GetGValue(GetPixel(screen, x, y)) < 60;
    }
    ReleaseDC(NULL, screen);
    CHECK(red > 20);
    CHECK(!VL_WriteScreenText(L"x", 0, 0, 0, 0));
    CHECK(VL_WriteScreenText(std::wstring(2000000, L'x'), 0, 880, 0, 8));
}

} // namespace

void runTests()
{
    testWindow();
    findsByTitleAndClass();
    deadWindowsAreRefused();
    frameChangesKeepTheClientArea();
    fullscreenComesBack();
    centering();
    opacityAndTopmost();
    iconsAreFreed();
    hierarchyFillsTheTree();
    screenText();
}
