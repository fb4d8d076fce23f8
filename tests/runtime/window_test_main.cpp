// The window of the runtime tests.
#include "window_test.h"

namespace {

std::vector<Told> g_told;

LRESULT CALLBACK testProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_COMMAND:
        g_told.push_back({message, LOWORD(wParam), HIWORD(wParam), lParam});
        break;
    case WM_NOTIFY: {
        const NMHDR *header = (const NMHDR *)lParam;
        g_told.push_back({message, (int)header->idFrom, (int)header->code, lParam});
        break;
    }
    case WM_HSCROLL:
    case WM_VSCROLL:
        g_told.push_back({message, GetDlgCtrlID((HWND)lParam), LOWORD(wParam), lParam});
        break;
    default:
        break;
    }
    LRESULT result = 0;
    if (VL_ReflectMessage(message, wParam, lParam, &result))
        return result;
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace

HWND testWindow()
{
    static HWND window = NULL;
    if (window)
        return window;
    INITCOMMONCONTROLSEX controls = {sizeof(controls), 0xFFFF};
    InitCommonControlsEx(&controls);
    WNDCLASSW description = {};
    description.lpfnWndProc = testProcedure;
    description.hInstance = g_hInstance;
    description.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);
    description.hCursor = LoadCursor(NULL, IDC_ARROW);
    description.lpszClassName = L"VLWnd";
    RegisterClassW(&description);
    RECT size = {0, 0, 600, 400};
    const DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    AdjustWindowRectEx(&size, style, FALSE, 0);
    window = CreateWindowW(L"VLWnd", L"Test", style, 10, 10, size.right - size.left,
                           size.bottom - size.top, NULL, NULL, g_hInstance, NULL);
    g_hWndMain = window;
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
    pumpMessages();
    return window;
}

HWND testControl(const wchar_t *windowClass, const wchar_t *text, DWORD style, int id, RECT place)
{
    return CreateWindowW(windowClass, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                         place.right - place.left, place.bottom - place.top, testWindow(),
                         (HMENU)(intptr_t)id, g_hInstance, NULL);
}

void pumpMessages()
{
    MSG message;
    while (PeekMessageW(&message, NULL, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

std::vector<Told> takeTold()
{
    std::vector<Told> told;
    told.swap(g_told);
    return told;
}

int countOf(const std::vector<Told> &told, int id, int code)
{
    int count = 0;
    for (const Told &one : told)
        count += one.id == id && one.code == code ? 1 : 0;
    return count;
}

COLORREF pixelAt(HWND window, int x, int y)
{
    UpdateWindow(window);
    pumpMessages();
    const HDC context = GetDC(window);
    const COLORREF color = GetPixel(context, x, y);
    ReleaseDC(window, context);
    return color;
}
