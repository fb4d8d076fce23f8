// Right-click menus: what is picked and called, bound controls, pictures, what is left behind.
#include "16_picture_bytes.h"
#include "72_context_menus.h"
#include "window_test.h"

#include "40_files.h"
#include "41_paths.h"

namespace {

std::wstring g_log;
std::vector<WPARAM> g_keys;
HMENU g_seenMenu;
int g_seenItems;
int g_seenRed; // pixels of that colour in the open menu

int countRed(HWND menu)
{
    const HDC context = GetDC(menu);
    int count = 0;
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 40; ++x)
            count += GetPixel(context, x, y) == RGB(200, 20, 60) ? 1 : 0;
    }
    ReleaseDC(menu, context);
    return count;
}

VOID CALLBACK pressNextKey(HWND, UINT, UINT_PTR timer, DWORD)
{
    GUITHREADINFO information = {};
    information.cbSize = sizeof(information);
    GetGUIThreadInfo(GetCurrentThreadId(), &information);
    if (!(information.flags & GUI_INMENUMODE))
        return;
    g_seenMenu = (HMENU)SendMessageW(FindWindowW(L"#32768", NULL), 0x01E1, 0, 0);
    g_seenItems = GetMenuItemCount(g_seenMenu);
    g_seenRed = countRed(FindWindowW(L"#32768", NULL));
    if (g_keys.empty()) {
        KillTimer(NULL, timer);
        EndMenu();
        return;
    }
    PostMessageW(information.hwndMenuOwner, WM_KEYDOWN, g_keys.front(), 0);
    g_keys.erase(g_keys.begin());
}

// Types these keys into the menu that `show` opens, then closes it; what was called.
template <typename F>
std::wstring typed(const std::vector<WPARAM> &keys, const F &show)
{
    g_log.clear();
    g_keys = keys;
    const UINT_PTR timer = SetTimer(NULL, 0, 30, pressNextKey);
    show();
    KillTimer(NULL, timer);
    pumpMessages();
    return g_log;
}

void logCall(intptr_t control, int id)
{
    g_log += L"[" + std::to_wstring(id) + (control ? L"c]" : L"]");
}

intptr_t g_sub;
intptr_t makeMenu()
{
    const intptr_t menu = VL_ContextMenu_Create();
    VL_ContextMenu_AddItem(menu, 11, L"&First\tCtrl+F", logCall);
    VL_ContextMenu_AddSeparator(menu);
    VL_ContextMenu_AddItem(menu, 12, L"Second", [](intptr_t) { g_log += L"[one]"; });
    g_sub = VL_ContextMenu_AddSubmenu(menu, L"More");
    VL_ContextMenu_AddItem(g_sub, 13, L"Inside",
                           [](intptr_t control, intptr_t id) { logCall(control, (int)id); });
    // The same number again: it is the picked one that counts.
    VL_ContextMenu_AddItem(menu, 11, L"Again", [](intptr_t, int) { g_log += L"[again]"; });
    VL_ContextMenu_AddItem(menu, 15, L"Grey", logCall, L"", MF_GRAYED);
    return menu;
}

void picking()
{
    const HWND window = testWindow();
    const intptr_t menu = makeMenu();
    const auto show = [&] { VL_ContextMenu_Show(menu, window, 20, 20); };
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, show), std::wstring(L"[11c]"));
    CHECK_EQ(g_seenItems, 6);
    CHECK_EQ(typed({VK_DOWN, VK_DOWN, VK_RETURN}, show), std::wstring(L"[one]"));
    CHECK_EQ(typed({VK_DOWN, VK_DOWN, VK_DOWN, VK_RIGHT, VK_RETURN}, show), std::wstring(L"[13c]"));
    CHECK_EQ(typed({VK_DOWN, VK_ESCAPE}, show), std::wstring());
    // Without a control, and with a handle as a number.
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, [&] { VL_ContextMenu_Show(menu, 0); }),
             std::wstring(L"[11]"));
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, [&] { VL_ContextMenu_Show(menu, (intptr_t)window); }),
             std::wstring(L"[11c]"));
    const auto track = [&] {
        const intptr_t id = VL_ContextMenu_TrackAt((intptr_t)window, menu, 60, 60);
        g_log += std::to_wstring(id);
        VL_ContextMenu_InvokeItemCallback(menu, (intptr_t)window, id);
    };
    CHECK_EQ(typed({VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}, track),
             std::wstring(L"11[again]"));
    VL_ContextMenu_Destroy(menu);
    CHECK_EQ(VL_ContextMenu_Show(menu, window), (intptr_t)0);
    CHECK(!VL_ContextMenu_AddItem(g_sub, 1, L"x"));
}

void changing()
{
    const intptr_t menu = makeMenu();
    CHECK(VL_ContextMenu_SetItemEnabled(menu, 11, false));
    CHECK(VL_ContextMenu_SetItemChecked(menu, 13, true));
    CHECK(VL_ContextMenu_SetItemText(menu, 12, std::wstring(10000000, L'x')));
    CHECK(!VL_ContextMenu_SetItemText(menu, 99, L"x"));
    CHECK(!VL_ContextMenu_SetItemChecked(menu, 0, true));
    // The first is grey now and calls nothing.
    const auto show = [&] { VL_ContextMenu_Show(menu, testWindow(), 20, 20); };
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, show), std::wstring());
    VL_ContextMenu_Clear(menu);
    CHECK(!VL_ContextMenu_AddItem(g_sub, 1, L"x"));
    CHECK_EQ(VL_ContextMenu_Show(menu, testWindow()), (intptr_t)0);
    // A callback that destroys its own menu.
    VL_ContextMenu_AddItem(menu, 1, L"Destroy", [menu] {
        VL_ContextMenu_Destroy(menu);
        g_log += L"destroyed";
    });
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, show), std::wstring(L"destroyed"));
    intptr_t deep = VL_ContextMenu_Create();
    const intptr_t top = deep;
    int depth = 0;
    for (; deep && depth < 100; ++depth)
        deep = VL_ContextMenu_AddSubmenu(deep, L"deeper");
    CHECK(depth < 100);
    VL_ContextMenu_Destroy(top);
}

void rightClick(HWND target, HWND told, bool byKey = false)
{
    POINT point = {5, 5};
    ClientToScreen(target, &point);
    SendMessageW(told, WM_CONTEXTMENU, (WPARAM)told,
                 byKey ? (LPARAM)-1 : MAKELPARAM(point.x, point.y));
}

void binding()
{
    const HWND window = testWindow();
    const intptr_t menu = makeMenu();
    const struct
    {
        const wchar_t *windowClass;
        DWORD style;
        bool toldByWindow; // labels let the mouse through
    } rows[] = {{L"BUTTON", 0, false},
                {L"EDIT", ES_MULTILINE, false},
                {L"STATIC", 0, true},
                {L"BUTTON", BS_GROUPBOX, true},
                {WC_TREEVIEWW, 0, false}};
    for (const auto &row : rows) {
        const HWND control = testControl(row.windowClass, L"", row.style, 5, {10, 10, 200, 100});
        const HWND told = row.toldByWindow ? window : control;
        CHECK(VL_ContextMenu_Bind(control, menu));
        CHECK_EQ(typed({VK_DOWN, VK_RETURN}, [&] { rightClick(control, told); }),
                 std::wstring(L"[11c]"));
        CHECK_EQ(typed({VK_DOWN, VK_RETURN}, [&] { rightClick(control, control, true); }),
                 std::wstring(L"[11c]"));
        VL_ContextMenu_Unbind((intptr_t)control);
        DestroyWindow(control);
    }
    const HWND combo = testControl(L"COMBOBOX", L"", CBS_DROPDOWN, 5, {10, 10, 200, 100});
    VL_ContextMenu_Bind(combo, menu);
    const HWND line = GetWindow(combo, GW_CHILD);
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, [&] { rightClick(line, line); }), std::wstring(L"[11c]"));
    DestroyWindow(combo);
    VL_ContextMenu_Destroy(menu);
}

void designMenus()
{
    const HWND edit = testControl(L"EDIT", L"", 0, 5, {10, 10, 200, 40});
    const intptr_t menu = makeMenu();
    SetPropW(edit, L"VL_OldEditProc",
             (HANDLE)SetWindowLongPtrW(edit, GWLP_WNDPROC,
                                       (LONG_PTR)VL_EditSubclass_ContextMenuBindOnly));
    SetWindowTextW(edit, L"abc");
    CHECK_EQ(GetWindowTextLengthW(edit), 3);
    CHECK(VL_ContextMenu_Bind((intptr_t)edit, menu, true));
    VL_ContextMenu_SetDesignPreTrackCallback(edit, [](intptr_t control, intptr_t shown) {
        g_log += control ? L"before " : L"?";
        VL_ContextMenu_SetItemText(shown, 11, L"changed");
    });
    const auto click = [&] { rightClick(edit, edit); };
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, click), std::wstring(L"before [11c]"));
    CHECK(VL_ContextMenu_IsDesignContextAllowed(edit));
    VL_ContextMenu_SetDesignContextAllowed((intptr_t)edit, false);
    CHECK(!VL_ContextMenu_IsDesignContextAllowed((intptr_t)edit));
    CHECK_EQ(typed({VK_ESCAPE}, click), std::wstring());
    // The program's own menu is another matter.
    VL_ContextMenu_Bind(edit, menu);
    CHECK_EQ(typed({VK_DOWN, VK_RETURN}, click), std::wstring(L"before [11c]"));
    DestroyWindow(edit);
    CHECK(!VL_ContextMenu_Bind(edit, menu));
    CHECK(VL_ContextMenu_IsDesignContextAllowed(edit));
    VL_ContextMenu_Destroy(menu);
}

// A picture of one colour, as the bytes of a BMP file of 32 bits.
VL_ByteArray squareBmp(int size, COLORREF color)
{
    VL_ByteArray bytes(54 + size * size * 4);
    const BITMAPINFOHEADER header = {40, size, size, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    bytes[0] = 'B';
    bytes[1] = 'M';
    bytes[10] = 54;
    memcpy(bytes.ptr() + 14, &header, sizeof(header));
    for (int i = 0; i < size * size; ++i) {
        const unsigned char pixel[4] = {GetBValue(color), GetGValue(color), GetRValue(color), 255};
        memcpy(bytes.ptr() + 54 + i * 4, pixel, 4);
    }
    return bytes;
}

// Pictures beside the program show in the menu, at the menu's size; what is no picture does not.
void pictures()
{
    CreateDirectoryW(VL_JoinPath(VL_GetAppDir(), L"resource").c_str(), NULL);
    const std::wstring path = VL_JoinPath(VL_GetAppDir(), L"resource\\vl_cm_test.bmp");
    VL_WriteBinaryFile(path, squareBmp(40, RGB(200, 20, 60)));
    const intptr_t menu = VL_ContextMenu_Create();
    VL_ContextMenu_AddItem(menu, 1, L"Red", logCall, L"vl_cm_test.bmp");
    VL_ContextMenu_AddItem(menu, 2, L"None", logCall, L"no_such_file.png");
    VL_ContextMenu_AddItem(menu, 3, L"No resource", logCall, L"#7777");
    VL_ContextMenu_AddSubmenu(menu, L"Absolute", path);
    DWORD before = 0;
    for (int round = 0; round < 12; ++round) {
        typed({VK_DOWN, VK_DOWN}, [&] { VL_ContextMenu_TrackAt(testWindow(), menu, 100, 100); });
        CHECK_EQ(g_seenRed, 16 * 16);
        const DWORD now = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
        before = round == 1 ? now : before;
        CHECK(round < 2 || now <= before);
    }
    VL_ContextMenu_Destroy(menu);
    DeleteFileW(path.c_str());
}

} // namespace

void runTests()
{
    picking();
    changing();
    binding();
    designMenus();
    pictures();
}
