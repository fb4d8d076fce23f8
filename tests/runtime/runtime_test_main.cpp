// Entry point of the runtime test programs.
#include "runtime_test.h"

#include "00_prelude.h"

HINSTANCE g_hInstance;
HWND g_hWndMain;
DWORD g_mainThreadId;

static int g_failures = 0;

void reportMismatch(const char *file, int line, const char *what, const std::wstring &actual,
                    const std::wstring &expected)
{
    ++g_failures;
    printf("%s:%d: %s\n  is       %s\n  expected %s\n", file, line, what,
           VL_WideToUtf8(actual).c_str(), VL_WideToUtf8(expected).c_str());
    fflush(stdout);
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int)
{
    g_hInstance = instance;
    g_mainThreadId = GetCurrentThreadId();
    runTests();
    printf("%d failed\n", g_failures);
    return g_failures;
}
