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
