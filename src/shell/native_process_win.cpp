#include "shell/native_process.h"

#include <windows.h>

void NativeProcess::useMonitorScaling()
{
    using SetContext = BOOL(WINAPI *)(HANDLE);
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    if (!user)
        return;
    // Missing before Windows 10.
    const auto setContext = reinterpret_cast<SetContext>(
        reinterpret_cast<void *>(GetProcAddress(user, "SetProcessDpiAwarenessContext")));
    const auto perMonitorV2 = reinterpret_cast<HANDLE>(-4);
    if (setContext)
        setContext(perMonitorV2);
}
