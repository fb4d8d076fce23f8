// How a program ends: when no window is left, and when it fails.
#include "91_program_end.h"

#include <exception>

namespace vl_program_end {
namespace {

BOOL CALLBACK findVisible(HWND window, LPARAM found)
{
    if (!IsWindowVisible(window))
        return TRUE;
    *(bool *)found = true;
    return FALSE;
}

// "The program failed: " and the reason.
const wchar_t *faultText(DWORD code)
{
    switch (code) {
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
    // Where the compiler itself watches for divisors that are 0.
    case EXCEPTION_ILLEGAL_INSTRUCTION:
        return L"\u7A0B\u5E8F\u51FA\u9519\uFF1A\u6574\u6570\u4E0D\u80FD\u9664\u4EE5 0\u3002";
    case EXCEPTION_INT_OVERFLOW:
        return L"\u7A0B\u5E8F\u51FA\u9519\uFF1A\u6574\u6570\u8FD0\u7B97\u7684\u7ED3\u679C\u8D85"
               L"\u51FA\u8303\u56F4\u3002";
    case EXCEPTION_STACK_OVERFLOW:
        return L"\u7A0B\u5E8F\u51FA\u9519\uFF1A\u51FD\u6570\u8C03\u7528\u7684\u5C42\u6570\u592A"
               L"\u591A\uFF0C\u53EF\u80FD\u662F\u6CA1\u6709\u5C3D\u5934\u7684\u9012\u5F52\u3002";
    default:
        return L"\u7A0B\u5E8F\u51FA\u9519\uFF1A\u8BBF\u95EE\u4E86\u65E0\u6548\u7684\u5185\u5B58"
               L"\u3002";
    }
}

LONG WINAPI reportFault(EXCEPTION_POINTERS *fault)
{
    VL_EndWithError(faultText(fault->ExceptionRecord->ExceptionCode));
    return EXCEPTION_EXECUTE_HANDLER;
}

// A full stack leaves no room for the search of other handlers.
LONG WINAPI reportFullStack(EXCEPTION_POINTERS *fault)
{
    return fault->ExceptionRecord->ExceptionCode == EXCEPTION_STACK_OVERFLOW
               ? reportFault(fault)
               : EXCEPTION_CONTINUE_SEARCH;
}

void reportUncaught()
{
    VL_EndWithError(L"\u7A0B\u5E8F\u51FA\u9519\uFF1A\u5185\u5B58\u4E0D\u8DB3\u6216\u6570\u636E"
                    L"\u592A\u5927\u3002");
}

// In place before the first statement of the program, its globals included.
struct FaultReports
{
    FaultReports()
    {
        // What is left of the stack for the report of its overflow.
        ULONG reserve = 0x10000;
        SetThreadStackGuarantee(&reserve);
        SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
        SetUnhandledExceptionFilter(reportFault);
        AddVectoredExceptionHandler(0, reportFullStack);
        std::set_terminate(reportUncaught);
    }
};

const FaultReports g_faultReports;

} // namespace
} // namespace vl_program_end

bool VL_HasVisibleWindow()
{
    bool found = false;
    EnumThreadWindows(GetCurrentThreadId(), vl_program_end::findVisible, (LPARAM)&found);
    return found;
}

void VL_EndWithError(const std::wstring &message)
{
    const std::string bytes = VL_WideToUtf8(message + L"\r\n");
    const HANDLE errors = GetStdHandle(STD_ERROR_HANDLE);
    DWORD written = 0;
    const bool shown = errors && errors != INVALID_HANDLE_VALUE &&
                       WriteFile(errors, bytes.data(), (DWORD)bytes.size(), &written, NULL);
    if (!shown)
        MessageBoxW(NULL, message.c_str(), L"Vorel", MB_OK | MB_ICONERROR);
    TerminateProcess(GetCurrentProcess(), 1);
}

#ifdef _GLIBCXX_VERBOSE_ASSERT
// The C++ library calls this when an index lies outside an array. Nothing is spoilt yet.
void std::__glibcxx_assert_fail(const char *, int, const char *, const char *) noexcept
{
    VL_EndWithError(L"\u7A0B\u5E8F\u51FA\u9519\uFF1A\u4E0B\u6807\u8D85\u51FA\u4E86\u6570\u7EC4"
                    L"\u7684\u8303\u56F4\u3002");
    ExitProcess(1);
}
#endif
