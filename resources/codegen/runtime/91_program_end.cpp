// When a program without a form ends.
#include "91_program_end.h"

namespace vl_program_end {
namespace {

BOOL CALLBACK findVisible(HWND window, LPARAM found)
{
    if (!IsWindowVisible(window))
        return TRUE;
    *(bool *)found = true;
    return FALSE;
}

} // namespace
} // namespace vl_program_end

bool VL_HasVisibleWindow()
{
    bool found = false;
    EnumThreadWindows(GetCurrentThreadId(), vl_program_end::findVisible, (LPARAM)&found);
    return found;
}

#ifdef _GLIBCXX_VERBOSE_ASSERT
// The C++ library calls this when an index lies outside an array. The program's memory is still
// sound; it ends with a sentence instead of going on with what is not there.
void std::__glibcxx_assert_fail(const char *, int, const char *, const char *) noexcept
{
    const std::wstring message = L"\u7A0B\u5E8F\u51FA\u9519\uFF1A\u4E0B\u6807\u8D85\u51FA\u4E86"
                                 L"\u6570\u7EC4\u7684\u8303\u56F4\u3002";
    const std::string bytes = VL_WideToUtf8(message + L"\r\n");
    const HANDLE errors = GetStdHandle(STD_ERROR_HANDLE);
    DWORD written = 0;
    const bool shown = errors && errors != INVALID_HANDLE_VALUE
        && WriteFile(errors, bytes.data(), (DWORD)bytes.size(), &written, NULL);
    if (!shown)
        MessageBoxW(NULL, message.c_str(), L"Vorel", MB_OK | MB_ICONERROR);
    ExitProcess(1);
}
#endif
