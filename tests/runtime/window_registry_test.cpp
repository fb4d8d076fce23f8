// The program's windows by name: making, showing, modal running, events, keyboard.
#include "54_window_registry.h"
#include "window_test.h"

namespace {

const wchar_t kMain[] = L"\u4E3B\u7A97\u53E3";
const wchar_t kSecond[] = L"\u7A97\u53E32";
const wchar_t kThird[] = L"\u7A97\u53E33";

HWND g_second = NULL;
HWND g_third = NULL;
int g_made = 0;
std::vector<std::wstring> g_log;
std::function<void()> g_onTimer;
std::function<void()> g_onCommand;

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    int id = 0;
    int first = 0;
    int second = 0;
    std::wstring text;
    if (VL_Window_TakeEvent(message, wParam, lParam, &id, &first, &second)) {
        g_log.push_back(std::to_wstring(id) + L" " + std::to_wstring(first) + L" " +
                        std::to_wstring(second));
        return 0;
    }
    if (VL_Window_TakeText(message, wParam, lParam, &text)) {
        g_log.push_back(text);
        return 0;
    }
    switch (message) {
    case WM_CLOSE:
        ShowWindow(window, SW_HIDE);
        g_windowRegistry[VL_Window_GetName(window)].createEventCalled = false;
        return 0;
    case WM_TIMER: {
        KillTimer(window, wParam);
        const std::function<void()> action = std::move(g_onTimer);
        g_onTimer = nullptr;
        if (action)
            action();
        return 0;
    }
    case WM_COMMAND:
        g_log.push_back(L"command " + std::to_wstring(LOWORD(wParam)));
        if (g_onCommand)
            g_onCommand();
        return 0;
    case VL_WM_KEY_PREVIEW:
        g_log.push_back((lParam == WM_KEYDOWN ? L"down " : L"up ") + std::to_wstring(wParam));
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND make(const wchar_t *title)
{
    WNDCLASSW description = {};
    description.lpfnWndProc = procedure;
    description.hInstance = g_hInstance;
    description.lpszClassName = L"RegistryTest";
    RegisterClassW(&description);
    ++g_made;
    return CreateWindowW(L"RegistryTest", title, WS_OVERLAPPEDWINDOW, 200, 200, 300, 200, NULL,
                         NULL, g_hInstance, NULL);
}

void makeSecond()
{
    g_second = make(L"second");
    VL_Window_Register(kSecond, g_second);
}

// Leaves the handle in its variable only.
void makeThird()
{
    g_third = make(L"third");
}

std::wstring takeLog()
{
    std::wstring all;
    for (const std::wstring &line : g_log)
        all += line + L";";
    g_log.clear();
    return all;
}

// Runs `action` within the modal loop that follows.
void later(HWND window, const std::function<void()> &action)
{
    g_onTimer = action;
    SetTimer(window, 1, 30, NULL);
}

void namesAndRegistration()
{
    CHECK(VL_Window_Register(kMain, testWindow(), NULL, false));
    VL_Window_RegisterCreator(kSecond, makeSecond, &g_second);
    VL_Window_RegisterCreator(kThird, makeThird, &g_third);
    CHECK(!VL_Window_Register(L"", testWindow()));
    CHECK(!VL_Window_Register(L"x", 0x7FFFFFF0));
    const VL_Array names = VL_Window_GetAll();
    CHECK_EQ(names.size(), (size_t)3);
    CHECK_EQ(names.at(0).toStr() + names.at(2).toStr(), std::wstring(kMain) + kThird);
    CHECK_EQ(VL_Window_GetAll(true).size(), (size_t)1);
    CHECK(!VL_Window_Exists(kSecond));
    CHECK(!VL_Window_IsVisible(kSecond));
    CHECK_EQ(VL_Window_GetByName(L"MainWindow"), (intptr_t)testWindow());
    const HWND button = testControl(L"BUTTON", L"", 0, 1, {0, 0, 9, 9});
    CHECK_EQ(VL_Window_GetName(button), kMain);
    DestroyWindow(button);
    CHECK(!VL_Window_Show(L"none"));
    CHECK(!VL_Window_SendText(L"none", L"x"));
    CHECK_EQ(takeLog(), L"");
}

void createEventComesOncePerOpening()
{
    CHECK(VL_Window_Show(kSecond));
    CHECK(g_second && VL_Window_IsVisible(g_second));
    CHECK_EQ(takeLog(), std::wstring(L"create ") + kSecond + L";");
    VL_Window_Hide(kSecond);
    VL_Window_Show((intptr_t)g_second);
    VL_Window_Show(kMain);
    CHECK_EQ(takeLog(), L"");
    VL_Window_Close(kSecond);
    CHECK(!VL_Window_IsVisible(kSecond));
    // The variable of a window that is not made yet stands for its name.
    CHECK(VL_Window_Show(g_third));
    VL_Window_Show(kSecond);
    CHECK_EQ(takeLog(), std::wstring(L"create ") + kThird + L";create " + kSecond + L";");
    const int made = g_made;
    CHECK(VL_UnloadWindow(kSecond));
    CHECK(g_second == NULL);
    CHECK(!VL_Window_Exists(kSecond));
    CHECK(VL_LoadWindow(kSecond));
    CHECK_EQ(g_made, made + 1);
    CHECK_EQ(takeLog(), std::wstring(L"create ") + kSecond + L";");
}

// A window that unloads itself while it handles a message goes afterwards.
void destroyedWithinItsOwnEvent()
{
    const HWND old = g_second;
    g_onCommand = [old] {
        CHECK(VL_DestroyWindow(kSecond));
        CHECK(IsWindow(old) != FALSE);
        CHECK(!VL_Window_Exists(kSecond));
        CHECK(VL_LoadWindow(kSecond));
    };
    SendMessageW(old, WM_COMMAND, 5, 0);
    g_onCommand = nullptr;
    pumpMessages();
    CHECK(IsWindow(old) == FALSE);
    CHECK(VL_Window_Exists(kSecond) && g_second != old);
    takeLog();
}

void switchingAndActive()
{
    VL_Window_Show(kSecond);
    pumpMessages();
    CHECK_EQ(VL_Window_GetActiveName(), kSecond);
    CHECK(VL_Window_SwitchTo(kThird));
    CHECK(!VL_Window_IsVisible(kSecond));
    CHECK(VL_Window_IsVisible(kThird));
    CHECK(VL_Window_SwitchTo(kThird));
    CHECK(VL_Window_IsVisible(kThird));
    CHECK_EQ(VL_Window_GetActiveHandle(), (intptr_t)g_third);
    VL_Window_Hide(kThird);
    takeLog();
}

void modalBlocksItsOwner()
{
    const HWND owner = testWindow();
    const std::wstring ends[] = {L"end", L"close", L"hide", L"destroy"};
    for (const std::wstring &end : ends) {
        VL_MakeWindow(kSecond);
        bool wasDisabled = false;
        bool freedInTime = false;
        later(g_second, [&] {
            wasDisabled = !IsWindowEnabled(owner) && GetWindow(g_second, GW_OWNER) == owner;
            if (end == L"end")
                VL_Window_EndModal(g_second, 42);
            else if (end == L"close")
                VL_Window_Close(kSecond);
            else if (end == L"hide")
                VL_Window_Hide(kSecond);
            else
                VL_DestroyWindow(kSecond);
            freedInTime = IsWindowEnabled(owner) != FALSE;
        });
        CHECK_EQ(VL_Window_ShowModal(g_second, owner), (intptr_t)(end == L"end" ? 42 : 0));
        CHECK(wasDisabled);
        CHECK(freedInTime);
        CHECK(IsWindowEnabled(owner) != FALSE);
        CHECK(!VL_Window_IsVisible(kSecond));
        if (g_second)
            CHECK(GetWindow(g_second, GW_OWNER) == NULL);
    }
    CHECK(!VL_Window_EndModal(kSecond));
    takeLog();
}

void nestedModalAndQuit()
{
    const HWND owner = testWindow();
    VL_MakeWindow(kSecond);
    VL_MakeWindow(kThird);
    later(g_second, [&] {
        later(g_third, [] { VL_Window_EndModal(kThird, 3); });
        CHECK_EQ(VL_Window_ShowModal(kThird), (intptr_t)3);
        // The outer one still blocks its owner.
        CHECK(IsWindowEnabled(owner) == FALSE);
        CHECK(IsWindowEnabled(g_second) != FALSE);
        PostQuitMessage(7);
    });
    VL_Window_ShowModal(kSecond, owner);
    CHECK(IsWindowEnabled(owner) != FALSE);
    CHECK_EQ(VL_RunMessageLoop(), 7);
    takeLog();
}

void eventsBetweenWindows()
{
    VL_Window_Show(kSecond);
    takeLog();
    CHECK(VL_Window_PostEvent(kSecond, 9, 1));
    CHECK(VL_Window_SendEvent(kSecond, -5, 2147483647, -1));
    CHECK_EQ(takeLog(), L"-5 2147483647 -1;");
    pumpMessages();
    CHECK_EQ(takeLog(), L"9 1 0;");
    const std::wstring longText(1000000, L'\u6587');
    CHECK(VL_Window_SendText(g_second, longText));
    CHECK_EQ(g_log.back().size(), longText.size());
    takeLog();
    // Messages that only look like such events.
    SendMessageW(g_second, VL_WM_CUSTOM_EVENT, 1, 0x1234);
    SendMessageW(g_second, VL_WM_RECEIVE_TEXT, 1, (LPARAM)&longText);
    CHECK_EQ(takeLog(), L"");
    // What was on its way to a window goes with it.
    VL_Window_PostEvent(kSecond, 10);
    VL_DestroyWindow(kSecond);
    pumpMessages();
    CHECK_EQ(takeLog(), L"");
}

DWORD WINAPI fromElsewhere(void *)
{
    VL_Window_Show(kSecond);
    VL_Window_PostEvent(kSecond, 11, 1, 2);
    return 0;
}

// Windows belong to the main thread, whoever asks for them.
void otherThreadsAskTheMainOne()
{
    CHECK(!VL_Window_Exists(kSecond));
    const HANDLE thread = CreateThread(NULL, 0, fromElsewhere, NULL, 0, NULL);
    while (MsgWaitForMultipleObjects(1, &thread, FALSE, 5000, QS_ALLINPUT) == WAIT_OBJECT_0 + 1)
        pumpMessages();
    CloseHandle(thread);
    pumpMessages();
    CHECK(g_second && GetWindowThreadProcessId(g_second, NULL) == GetCurrentThreadId());
    CHECK_EQ(takeLog(), std::wstring(L"create ") + kSecond + L";11 1 2;");
}

MSG key(HWND window, UINT message, WPARAM code)
{
    MSG result = {};
    result.hwnd = window;
    result.message = message;
    result.wParam = code;
    return result;
}

void keysAreFilteredAndPreviewed()
{
    VL_Window_Show(kSecond);
    const HWND first = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 90, 20,
                                     g_second, (HMENU)1001, g_hInstance, NULL);
    const HWND area = CreateWindowW(L"EDIT", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_MULTILINE,
                                    0, 30, 90, 60, g_second, (HMENU)1002, g_hInstance, NULL);
    SetFocus(first);
    takeLog();
    MSG message = key(first, WM_KEYDOWN, VK_TAB);
    CHECK(VL_FilterMessage(&message));
    CHECK(GetFocus() == area);
    CHECK_EQ(takeLog().substr(0, 7), L"down 9;");
    message = key(first, WM_KEYUP, 'A');
    VL_FilterMessage(&message);
    CHECK_EQ(takeLog().substr(0, 6), L"up 65;");
    // Esc in a multi-line edit must not close the window; a program that closes it then may.
    for (bool closes : {false, true}) {
        g_onCommand = nullptr;
        message = key(area, WM_KEYDOWN, VK_ESCAPE);
        if (closes)
            PostMessageW(g_second, WM_CLOSE, 0, VL_CLOSE_BY_PROGRAM);
        CHECK(VL_FilterMessage(&message));
        CHECK(takeLog().find(L"command 2;") != std::wstring::npos);
        pumpMessages();
        CHECK_EQ(VL_Window_IsVisible(kSecond), !closes);
    }
    VL_Window_Show(kSecond);
    // The window itself still hears of keys that only move the focus, and only once of others.
    takeLog();
    SetFocus(g_second);
    message = key(g_second, WM_KEYDOWN, VK_LEFT);
    CHECK(VL_FilterMessage(&message));
    CHECK_EQ(takeLog().substr(0, 8), L"down 37;");
    VL_KeyPreview(key(g_second, WM_KEYDOWN, 'A'));
    CHECK_EQ(takeLog(), L"");
    VL_DestroyWindow(kSecond);
}

void hundredOpeningsLeaveNothing()
{
    VL_Window_Show(kSecond);
    VL_DestroyWindow(kSecond);
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    for (int i = 0; i < 100; ++i) {
        VL_Window_Show(kSecond);
        VL_DestroyWindow(kSecond);
    }
    CHECK(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS) <= before + 2);
}

} // namespace

void VL_CallWindowCreateEvent(const std::wstring &name)
{
    g_log.push_back(L"create " + name);
}

void runTests()
{
    testWindow();
    namesAndRegistration();
    createEventComesOncePerOpening();
    destroyedWithinItsOwnEvent();
    switchingAndActive();
    modalBlocksItsOwner();
    nestedModalAndQuit();
    eventsBetweenWindows();
    otherThreadsAskTheMainOne();
    keysAreFilteredAndPreviewed();
    hundredOpeningsLeaveNothing();
}
