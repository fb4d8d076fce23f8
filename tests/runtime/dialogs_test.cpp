// Message boxes, the input box and the system's dialogs, driven from a timer while they wait.
#include "68_input_box.h"
#include "70_common_dialogs.h"
#include "window_test.h"

#include "40_files.h"
#include "41_paths.h"

#include <commdlg.h>

namespace {

std::function<void(HWND)> g_act;
bool g_acted;

BOOL CALLBACK actOnDialog(HWND window, LPARAM)
{
    if (!VL_HasClass(window, L"#32770") || !IsWindowVisible(window))
        return TRUE;
    g_acted = true;
    const auto act = g_act;
    g_act = nullptr;
    act(window);
    return FALSE;
}

VOID CALLBACK tick(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_act)
        EnumThreadWindows(GetCurrentThreadId(), actOnDialog, 0);
}

// Runs `show` and does `act` to the dialog that it opens.
template <typename F>
auto answered(const std::function<void(HWND)> &act, const F &show)
{
    g_act = act;
    g_acted = false;
    const UINT_PTR timer = SetTimer(NULL, 0, 50, tick);
    const auto result = show();
    KillTimer(NULL, timer);
    CHECK(g_acted);
    return result;
}

std::function<void(HWND)> press(int id)
{
    return [id](HWND dialog) { PostMessageW(dialog, WM_COMMAND, (WPARAM)id, 0); };
}

std::wstring textOf(HWND window)
{
    wchar_t text[300] = L"";
    GetWindowTextW(window, text, 300);
    return text;
}

void messageBoxes()
{
    const HWND window = testWindow();
    SetActiveWindow(window);
    CHECK_EQ(answered(press(IDOK), [] { return VL_MessageBox(L"\u5185\u5BB9"); }), IDOK);
    CHECK_EQ(answered(press(IDYES), [] { return VL_Win_MessageBox(L"a", L"b", MB_YESNOCANCEL); }),
             IDYES);
    CHECK(answered(press(IDOK), [] { return VL_ConfirmBox(L"a"); }));
    CHECK(!answered(press(IDCANCEL), [] { return VL_ConfirmBox(L"a", L"b"); }));
    CHECK(answered(press(IDYES), [] { return VL_AskBox(L"a"); }));
    CHECK(!answered(press(IDNO), [] { return VL_AskBox(L"a", L"b"); }));
    CHECK_EQ(answered(press(IDRETRY), [] { return VL_ErrorBox(L"a", L"b", MB_RETRYCANCEL); }),
             IDRETRY);
    std::wstring title;
    HWND owner = NULL;
    answered(
        [&](HWND dialog) {
            title = textOf(dialog);
            owner = GetWindow(dialog, GW_OWNER);
            PostMessageW(dialog, WM_COMMAND, IDOK, 0);
        },
        [] { return VL_InfoBox(L"\u6807\u9898", L"text"); });
    CHECK_EQ(title, std::wstring(L"\u6807\u9898"));
    CHECK(owner == window);

    // Endless texts leave the buttons on the screen; nonsense flags still show a box.
    for (const std::wstring &text :
         {std::wstring(10000000, L'\n'), std::wstring(10000000, L'x'), std::wstring(5, L'\0')}) {
        RECT place = {};
        answered(
            [&](HWND dialog) {
                GetWindowRect(dialog, &place);
                PostMessageW(dialog, WM_COMMAND, IDOK, 0);
            },
            [&] { return VL_WarningBox(text); });
        CHECK(place.bottom <= GetSystemMetrics(SM_CYSCREEN));
    }
    CHECK(answered(press(IDOK), [] { return VL_MessageBox(L"a", L"b", 0x20000E); }) != 0);
}

DWORD WINAPI boxOfThread(void *)
{
    g_act = press(IDOK);
    const UINT_PTR timer = SetTimer(NULL, 0, 50, tick);
    const DWORD pressed = (DWORD)VL_MessageBox(L"from a thread");
    KillTimer(NULL, timer);
    return pressed;
}

// A box of another thread does not need the main thread, which here handles no messages.
void otherThread()
{
    const HANDLE thread = CreateThread(NULL, 0, boxOfThread, NULL, 0, NULL);
    CHECK_EQ(WaitForSingleObject(thread, 10000), (DWORD)WAIT_OBJECT_0);
    DWORD pressed = 0;
    GetExitCodeThread(thread, &pressed);
    CHECK_EQ(pressed, (DWORD)IDOK);
    CloseHandle(thread);
}

void inputBox()
{
    const std::wstring longText(100000, L'\u957F');
    RECT small = {}, large = {}, owner = {};
    GetWindowRect(testWindow(), &owner);
    std::wstring texts;
    const auto type = [&](RECT *place, const std::wstring &text) {
        return [&texts, place, text](HWND dialog) {
            const HWND edit = FindWindowExW(dialog, NULL, L"EDIT", NULL);
            texts = textOf(edit) + L"|" + textOf(dialog);
            GetWindowRect(dialog, place);
            CHECK(GetFocus() == edit);
            CHECK(!IsWindowEnabled(testWindow()));
            SetWindowTextW(edit, text.c_str());
            PostMessageW(edit, WM_KEYDOWN, text.empty() ? VK_ESCAPE : VK_RETURN, 0);
        };
    };
    CHECK_EQ(answered(type(&small, L"\u5F20\u4E09"),
                      [] { return VL_InputBox(L"\u59D3\u540D", L"\u8BF7", L"\u539F"); }),
             std::wstring(L"\u5F20\u4E09"));
    CHECK_EQ(texts, std::wstring(L"\u539F|\u8BF7"));
    CHECK_EQ(VL_InputBox_GetText(), std::wstring(L"\u5F20\u4E09"));
    CHECK_EQ(VL_InputBox_GetCode(), (intptr_t)1);
    // Centred over its owner, which is enabled again.
    CHECK(abs(small.left + small.right - owner.left - owner.right) <= 2);
    CHECK(IsWindowEnabled(testWindow()) != FALSE);

    CHECK_EQ(answered(type(&large, L""), [&] { return VL_InputBox(longText); }), std::wstring());
    CHECK_EQ(VL_InputBox_GetCode(), (intptr_t)0);
    CHECK(large.bottom - large.top > small.bottom - small.top + 100);
    CHECK(large.top >= 0 && large.bottom <= GetSystemMetrics(SM_CYSCREEN));
    CHECK_EQ(answered(type(&large, longText), [] { return VL_InputBoxEx(L"").text.size(); }),
             longText.size());
    const DWORD before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    for (int i = 0; i < 20; ++i)
        answered(press(IDCANCEL), [] { return VL_InputBox(L"again"); });
    CHECK(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) <= before + 3);
}

// Types into the name line of a file dialog and presses its first button.
std::function<void(HWND)> chooseName(const std::wstring &name)
{
    return [name](HWND dialog) {
        HWND line = GetDlgItem(dialog, 0x47C); // the line of the newer kind, the plain one
        line = line ? line : GetDlgItem(dialog, 0x480);
        SetWindowTextW(line, name.c_str());
        PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    };
}

void fileDialogs()
{
    const std::wstring folder = VL_JoinPath(VL_GetTempDir(), L"vl_dialogs");
    CreateDirectoryW(folder.c_str(), NULL);
    const std::wstring file = VL_JoinPath(folder, L"\u7532.txt");
    const std::wstring second = VL_JoinPath(folder, L"b.log");
    VL_WriteFile(file, L"x");
    VL_WriteFile(second, L"x");
    const std::wstring current = VL_GetCurrentDir();
    const std::wstring filter = L"\u6587\u672C|*.txt;*.log|\u6240\u6709|*.*";

    std::wstring title;
    const auto open = answered(
        [&](HWND dialog) {
            title = textOf(dialog);
            chooseName(L"\u7532.txt")(dialog);
        },
        [&] { return VL_OpenFileDialog(L"\u9009\u62E9", filter, folder); });
    CHECK_EQ(open, file);
    CHECK_EQ(title, std::wstring(L"\u9009\u62E9"));
    CHECK_EQ(VL_GetCurrentDir(), current);
    CHECK_EQ(answered(press(IDCANCEL), [&] { return VL_OpenFileDialog(); }), std::wstring());

    // The extension of the filter is added; the name that was given is there from the start.
    CHECK_EQ(
        answered(press(IDOK), [&] { return VL_SaveFileDialog(L"", filter, folder + L"/fresh"); }),
        VL_JoinPath(folder, L"fresh.txt"));

    const auto many = answered(chooseName(L"\"\u7532.txt\" \"b.log\""),
                               [&] { return VL_OpenFilesDialog(L"", L"", folder); });
    CHECK_EQ(many.size(), (size_t)2);
    CHECK(many.size() == 2 && many[0].toStr() == file && many[1].toStr() == second);
    const auto one =
        answered(chooseName(L"b.log"), [&] { return VL_OpenFilesDialog(L"", L"*.log", folder); });
    CHECK(one.size() == 1 && one[0].toStr() == second);
    CHECK(answered(press(IDCANCEL), [&] { return VL_OpenFilesDialog(); }).empty());
    for (const std::wstring &odd : {std::wstring(L"|||"), std::wstring(L"a|"),
                                    std::wstring(100000, L'|'), std::wstring(1000000, L'x')}) {
        CHECK_EQ(answered(press(IDCANCEL), [&] { return VL_OpenFileDialog(odd, odd, odd); }),
                 std::wstring());
    }
    DeleteFileW(file.c_str());
    DeleteFileW(second.c_str());
    RemoveDirectoryW(folder.c_str());
}

void otherDialogs()
{
    const std::wstring current = VL_GetCurrentDir();
    CHECK_EQ(answered(press(IDCANCEL), [] { return VL_SelectFolderDialog(L"\u76EE\u5F55"); }),
             std::wstring());
    CHECK_EQ(VL_GetCurrentDir(), current);
    CHECK_EQ(answered(press(IDOK), [] { return VL_ColorDialog(0x123456); }), 0x123456);
    CHECK_EQ(answered(press(IDCANCEL), [] { return VL_ColorDialog(-1); }), -1);
    VL_Any wanted = VL_NewDictAny();
    VL_DictSet(wanted, L"\u5B57\u4F53", VL_Any(L"Tahoma"));
    VL_DictSet(wanted, L"\u5B57\u53F7", VL_Any(14));
    VL_DictSet(wanted, L"\u7C97\u4F53", VL_Any(true));
    VL_DictSet(wanted, L"\u989C\u8272", VL_Any(255));
    const auto font = answered(press(IDOK), [&] { return VL_FontDialog(wanted); });
    CHECK_EQ(VL_DictGet(font, L"\u5B57\u4F53").toStr(), std::wstring(L"Tahoma"));
    CHECK_EQ(VL_DictGet(font, L"\u5B57\u53F7").toInt(), 14LL);
    CHECK(VL_DictGet(font, L"\u7C97\u4F53").toBool());
    CHECK(!VL_DictGet(font, L"\u659C\u4F53").toBool());
    CHECK_EQ(VL_DictGet(font, L"\u989C\u8272").toInt(), 255LL);
    CHECK_EQ(VL_DictCount(answered(press(IDCANCEL), [] { return VL_FontDialog(); })), (intptr_t)0);
}

} // namespace

void runTests()
{
    messageBoxes();
    otherThread();
    inputBox();
    fileDialogs();
    otherDialogs();
}
