// Starts a program and answers its message boxes: box_presser PROGRAM ok|cancel... Prints the text
// of each box, a line "--" behind it; ends with the exit code of the program.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

const DWORD kLimitMs = 60000;

struct Search
{
    DWORD process;
    HWND box;
};

BOOL CALLBACK findBox(HWND window, LPARAM data)
{
    Search *search = reinterpret_cast<Search *>(data);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    wchar_t title[64] = L"";
    GetWindowTextW(window, title, 64);
    if (owner != search->process || !IsWindowVisible(window) ||
        std::wcscmp(title, L"Vorel \x8C03\x8BD5\x5668") != 0)
        return TRUE;
    search->box = window;
    return FALSE;
}

BOOL CALLBACK addText(HWND control, LPARAM data)
{
    wchar_t type[32] = L"";
    GetClassNameW(control, type, 32);
    if (_wcsicmp(type, L"Static") != 0)
        return TRUE;
    std::wstring text(size_t(GetWindowTextLengthW(control)) + 1, L'\0');
    text.resize(size_t(GetWindowTextW(control, &text[0], int(text.size()))));
    *reinterpret_cast<std::wstring *>(data) += text;
    return TRUE;
}

void print(const std::wstring &text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), int(text.size()), nullptr, 0,
                                         nullptr, nullptr);
    std::string bytes(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), int(text.size()), &bytes[0], size, nullptr,
                        nullptr);
    std::printf("%s\n--\n", bytes.c_str());
    std::fflush(stdout);
}

// The next box; null when the program has ended or takes too long.
HWND waitForBox(const PROCESS_INFORMATION &process)
{
    const DWORD begin = GetTickCount();
    Search search{process.dwProcessId, nullptr};
    while (GetTickCount() - begin < kLimitMs) {
        EnumWindows(findBox, reinterpret_cast<LPARAM>(&search));
        if (search.box || WaitForSingleObject(process.hProcess, 20) == WAIT_OBJECT_0)
            break;
    }
    return search.box;
}

} // namespace

int wmain(int argc, wchar_t *argv[])
{
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (argc < 2 || !CreateProcessW(argv[1], nullptr, nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                    &start, &process))
        return 90;
    for (int i = 2; i < argc; ++i) {
        const HWND box = waitForBox(process);
        if (!box)
            break;
        std::wstring text;
        EnumChildWindows(box, addText, reinterpret_cast<LPARAM>(&text));
        print(text);
        SendMessageW(box, WM_COMMAND, std::wcscmp(argv[i], L"cancel") == 0 ? IDCANCEL : IDOK, 0);
        while (IsWindow(box) && WaitForSingleObject(process.hProcess, 20) != WAIT_OBJECT_0) {
        }
    }
    if (WaitForSingleObject(process.hProcess, 10000) != WAIT_OBJECT_0) {
        TerminateProcess(process.hProcess, 91);
        WaitForSingleObject(process.hProcess, 1000);
    }
    DWORD code = 92;
    GetExitCodeProcess(process.hProcess, &code);
    return int(code);
}
