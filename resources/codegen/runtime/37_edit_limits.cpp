// What may be typed into edit boxes and how it shows: password, limit, case.
#include "37_edit_limits.h"

#include <richedit.h>

namespace vl_edit_limits {
namespace {

const wchar_t PasswordCharName[] = L"VL_PasswordChar";
const wchar_t DefaultPasswordChar = L'\u25CF';
const int NoLimit = 0x7FFFFFFE;

bool isRichEdit(HWND edit)
{
    return VL_HasClass(edit, L"RICHEDIT50W");
}

bool isTextBox(HWND edit)
{
    return VL_HasClass(edit, L"EDIT") || isRichEdit(edit);
}

wchar_t passwordCharOf(HWND edit)
{
    const std::wstring own = VL_GetTextProperty(edit, PasswordCharName);
    return own.empty() ? DefaultPasswordChar : own[0];
}

} // namespace
} // namespace vl_edit_limits

void VL_SetPasswordMode(HWND edit, bool on)
{
    using namespace vl_edit_limits;
    if (!isTextBox(edit))
        return;
    SendMessageW(edit, EM_SETPASSWORDCHAR, on ? passwordCharOf(edit) : 0, 0);
    InvalidateRect(edit, NULL, TRUE);
}

bool VL_GetPasswordMode(HWND edit)
{
    return vl_edit_limits::isTextBox(edit) && SendMessageW(edit, EM_GETPASSWORDCHAR, 0, 0) != 0;
}

void VL_SetPasswordChar(HWND edit, const std::wstring &text)
{
    using namespace vl_edit_limits;
    if (!isTextBox(edit))
        return;
    VL_SetTextProperty(edit, PasswordCharName, text.substr(0, 1));
    if (VL_GetPasswordMode(edit))
        VL_SetPasswordMode(edit, true);
}

std::wstring VL_GetPasswordChar(HWND edit)
{
    using namespace vl_edit_limits;
    if (!isTextBox(edit))
        return std::wstring();
    const LRESULT shown = SendMessageW(edit, EM_GETPASSWORDCHAR, 0, 0);
    return std::wstring(1, shown ? (wchar_t)shown : passwordCharOf(edit));
}

void VL_SetTextLimit(HWND edit, int limit)
{
    using namespace vl_edit_limits;
    const int characters = limit > 0 ? limit : NoLimit;
    if (isRichEdit(edit))
        SendMessageW(edit, EM_EXLIMITTEXT, 0, characters);
    else if (isTextBox(edit))
        SendMessageW(edit, EM_SETLIMITTEXT, (WPARAM)characters, 0);
    else if (VL_HasClass(edit, WC_COMBOBOXW))
        SendMessageW(edit, CB_LIMITTEXT, (WPARAM)characters, 0);
}

void VL_SetCharCase(HWND edit, const std::wstring &word)
{
    if (!VL_HasClass(edit, L"EDIT"))
        return;
    const bool isUpper = word == L"\u5168\u5927\u5199";
    const bool isLower = word == L"\u5168\u5C0F\u5199";
    const LONG style = GetWindowLongW(edit, GWL_STYLE) & ~(ES_UPPERCASE | ES_LOWERCASE);
    SetWindowLongW(edit, GWL_STYLE, style | (isUpper ? ES_UPPERCASE : isLower ? ES_LOWERCASE : 0));
    std::wstring text = VL_GetText(edit);
    if (text.empty() || (!isUpper && !isLower))
        return;
    if (isUpper)
        CharUpperBuffW(&text[0], (DWORD)text.size());
    else
        CharLowerBuffW(&text[0], (DWORD)text.size());
    VL_SetTextStr(edit, text);
}
