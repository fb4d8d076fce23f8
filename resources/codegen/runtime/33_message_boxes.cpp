// Message boxes: a text, an icon and the system's buttons.
#include "33_message_boxes.h"

namespace vl_message_boxes {
namespace {

const size_t MostCharacters = 4000;
const size_t MostLines = 50;
const UINT IconMask = 0xF0;
const UINT ButtonMask = 0x0F;

// A box taller than the screen has its buttons below it.
std::wstring shownText(const std::wstring &text)
{
    size_t end = text.size() < MostCharacters ? text.size() : MostCharacters;
    size_t lines = 1;
    for (size_t i = 0; i < end; ++i) {
        if (text[i] == L'\0')
            end = i;
        else if (text[i] == L'\n' && ++lines > MostLines)
            end = i;
    }
    if (end == text.size() || text[end] == L'\0')
        return text.substr(0, end);
    if (end > 0 && IS_HIGH_SURROGATE(text[end - 1]))
        --end;
    return text.substr(0, end) + L"\n...";
}

int show(const std::wstring &text, const std::wstring &title, intptr_t flags)
{
    const std::wstring content = shownText(text);
    const std::wstring caption =
        title.empty() ? std::wstring(L"\u63D0\u793A") : title.substr(0, 200);
    // A box can belong neither to a service's desktop nor bring its own help.
    UINT style = (UINT)flags & ~(UINT)(MB_SERVICE_NOTIFICATION | MB_DEFAULT_DESKTOP_ONLY | MB_HELP);
    if ((style & ButtonMask) > MB_CANCELTRYCONTINUE)
        style &= ~ButtonMask;
    return MessageBoxW(VL_DialogOwner(), content.c_str(), caption.c_str(),
                       style | MB_SETFOREGROUND);
}

int showWithIcon(const std::wstring &text, const std::wstring &title, intptr_t flags, UINT icon)
{
    return show(text, title, ((UINT)flags & IconMask) ? flags : flags | (intptr_t)icon);
}

} // namespace
} // namespace vl_message_boxes

HWND VL_DialogOwner()
{
    HWND window = GetActiveWindow();
    if (!window && g_hWndMain && IsWindowVisible(g_hWndMain) &&
        GetWindowThreadProcessId(g_hWndMain, NULL) == GetCurrentThreadId())
        window = GetLastActivePopup(g_hWndMain);
    return window && IsWindowVisible(window) ? window : NULL;
}

int VL_MessageBox(const std::wstring &text, const std::wstring &title, intptr_t flags)
{
    return vl_message_boxes::show(text, title, flags);
}

int VL_Win_MessageBox(const std::wstring &text, const std::wstring &title, intptr_t flags)
{
    return vl_message_boxes::show(text, title, flags);
}

int VL_InfoBox(const std::wstring &text)
{
    return VL_InfoBox(L"\u4FE1\u606F", text);
}

int VL_InfoBox(const std::wstring &title, const std::wstring &text, intptr_t flags)
{
    return vl_message_boxes::showWithIcon(text, title, flags, MB_ICONINFORMATION);
}

int VL_WarningBox(const std::wstring &text)
{
    return VL_WarningBox(L"\u8B66\u544A", text);
}

int VL_WarningBox(const std::wstring &title, const std::wstring &text, intptr_t flags)
{
    return vl_message_boxes::showWithIcon(text, title, flags, MB_ICONWARNING);
}

int VL_ErrorBox(const std::wstring &text)
{
    return VL_ErrorBox(L"\u9519\u8BEF", text);
}

int VL_ErrorBox(const std::wstring &title, const std::wstring &text, intptr_t flags)
{
    return vl_message_boxes::showWithIcon(text, title, flags, MB_ICONERROR);
}

bool VL_ConfirmBox(const std::wstring &text)
{
    return VL_ConfirmBox(L"\u786E\u8BA4", text);
}

bool VL_ConfirmBox(const std::wstring &title, const std::wstring &text)
{
    return vl_message_boxes::show(text, title, MB_OKCANCEL | MB_ICONQUESTION) == IDOK;
}

bool VL_AskBox(const std::wstring &text, const std::wstring &title)
{
    return vl_message_boxes::show(text, title.empty() ? L"\u8BE2\u95EE" : title,
                                  MB_YESNO | MB_ICONQUESTION) == IDYES;
}
