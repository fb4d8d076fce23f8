// The input box: a question, a line to type in, OK and cancel.
#include "68_input_box.h"

namespace vl_input_box {
namespace {

const int PromptId = 100;
const int EditId = 101;
const size_t MostPromptCharacters = 4000;

// Sizes in design pixels.
const int Width = 380;
const int Margin = 16;
const int Gap = 12;
const int ButtonWidth = 88;
const int ButtonHeight = 28;
const int EditPadding = 9; // above and below the text, with the border

struct Box
{
    std::wstring prompt;
    std::wstring title;
    VL_InputBoxResult result;
    HFONT font = NULL;
};

thread_local VL_InputBoxResult g_last;

// The system's font for messages, for a dialog of that scale.
HFONT makeFont(int dpi)
{
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    LOGFONTW font = metrics.lfMessageFont;
    const int system = VL_GetDpiForScaling(NULL);
    font.lfHeight = MulDiv(font.lfHeight, dpi, system);
    return CreateFontIndirectW(&font);
}

// The area of a monitor that windows may cover.
RECT workArea(HWND window)
{
    MONITORINFO information = {};
    information.cbSize = sizeof(information);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &information);
    return information.rcWork;
}

int promptHeight(HWND dialog, const Box &box, int width)
{
    if (box.prompt.empty())
        return 0;
    const HDC context = GetDC(dialog);
    const HGDIOBJ old = SelectObject(context, box.font);
    RECT place = {0, 0, width, 0};
    DrawTextW(context, box.prompt.c_str(), (int)box.prompt.size(), &place,
              DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS | DT_EDITCONTROL);
    SelectObject(context, old);
    ReleaseDC(dialog, context);
    const RECT work = workArea(dialog);
    const int most = (work.bottom - work.top) * 6 / 10;
    return place.bottom < most ? place.bottom : most;
}

void place(HWND dialog, int id, int x, int y, int width, int height)
{
    SetWindowPos(GetDlgItem(dialog, id), NULL, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

int lineHeight(HWND dialog, HFONT font)
{
    const HDC context = GetDC(dialog);
    const HGDIOBJ old = SelectObject(context, font);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(context, &metrics);
    SelectObject(context, old);
    ReleaseDC(dialog, context);
    return metrics.tmHeight;
}

// Sets the font of the scale and puts everything in its place; the size of the client area.
SIZE arrange(HWND dialog, Box &box)
{
    const HFONT old = box.font;
    box.font = makeFont(VL_GetDpiForScaling(dialog));
    for (const int id : {PromptId, EditId, (int)IDOK, (int)IDCANCEL})
        SendDlgItemMessageW(dialog, id, WM_SETFONT, (WPARAM)box.font, TRUE);
    if (old)
        DeleteObject(old);

    const auto scaled = [dialog](int value) { return VL_ScaleX(dialog, value); };
    const int left = scaled(Margin), inner = scaled(Width - 2 * Margin);
    const int prompt = promptHeight(dialog, box, inner);
    int y = scaled(Margin);
    place(dialog, PromptId, left, y, inner, prompt);
    y += prompt > 0 ? prompt + scaled(Gap) : 0;
    const int edit = lineHeight(dialog, box.font) + scaled(EditPadding);
    place(dialog, EditId, left, y, inner, edit);
    y += edit + scaled(Gap + 4);
    const int button = scaled(ButtonWidth), right = left + inner;
    place(dialog, IDOK, right - 2 * button - scaled(8), y, button, scaled(ButtonHeight));
    place(dialog, IDCANCEL, right - button, y, button, scaled(ButtonHeight));
    y += scaled(ButtonHeight + Margin);
    const SIZE size = {scaled(Width), y};
    return size;
}

// The window's size for a client area, and its place over the owner but within the screen.
void centre(HWND dialog, SIZE client)
{
    RECT frame = {0, 0, client.cx, client.cy};
    AdjustWindowRectEx(&frame, (DWORD)GetWindowLongPtrW(dialog, GWL_STYLE), FALSE,
                       (DWORD)GetWindowLongPtrW(dialog, GWL_EXSTYLE));
    const int width = frame.right - frame.left, height = frame.bottom - frame.top;
    const HWND owner = GetWindow(dialog, GW_OWNER);
    const RECT work = workArea(owner ? owner : dialog);
    RECT around = work;
    if (owner && !IsIconic(owner))
        GetWindowRect(owner, &around);
    int x = around.left + (around.right - around.left - width) / 2;
    int y = around.top + (around.bottom - around.top - height) / 2;
    x = x + width > work.right ? work.right - width : x;
    y = y + height > work.bottom ? work.bottom - height : y;
    x = x < work.left ? work.left : x;
    y = y < work.top ? work.top : y;
    SetWindowPos(dialog, NULL, x, y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

HWND addControl(HWND dialog, const wchar_t *windowClass, const wchar_t *text, DWORD style, int id)
{
    const DWORD extended = id == EditId ? WS_EX_CLIENTEDGE : 0;
    return CreateWindowExW(extended, windowClass, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                           dialog, (HMENU)(intptr_t)id, g_hInstance, NULL);
}

void initialize(HWND dialog, Box &box)
{
    SetWindowLongPtrW(dialog, DWLP_USER, (LONG_PTR)&box);
    SetWindowTextW(dialog, box.title.c_str());
    addControl(dialog, L"STATIC", box.prompt.c_str(), SS_LEFT | SS_NOPREFIX | SS_EDITCONTROL,
               PromptId);
    const HWND edit =
        addControl(dialog, L"EDIT", L"", WS_TABSTOP | ES_AUTOHSCROLL | ES_LEFT, EditId);
    SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
    SetWindowTextW(edit, box.result.text.c_str());
    addControl(dialog, L"BUTTON", L"\u786E\u5B9A", WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK);
    addControl(dialog, L"BUTTON", L"\u53D6\u6D88", WS_TABSTOP | BS_PUSHBUTTON, IDCANCEL);
    centre(dialog, arrange(dialog, box));
    SendMessageW(edit, EM_SETSEL, 0, -1);
    SetFocus(edit);
    if (!GetWindow(dialog, GW_OWNER))
        SetForegroundWindow(dialog);
}

void finish(HWND dialog, Box &box, bool accepted)
{
    box.result = VL_InputBoxResult();
    if (accepted) {
        const HWND edit = GetDlgItem(dialog, EditId);
        std::wstring text((size_t)GetWindowTextLengthW(edit) + 1, L'\0');
        text.resize((size_t)GetWindowTextW(edit, &text[0], (int)text.size()));
        box.result.text = text;
        box.result.code = 1;
    }
    EndDialog(dialog, accepted ? IDOK : IDCANCEL);
}

INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    const UINT dpiChanged = 0x02E0;
    if (message == WM_INITDIALOG) {
        initialize(dialog, *(Box *)lParam);
        return FALSE;
    }
    Box *box = (Box *)GetWindowLongPtrW(dialog, DWLP_USER);
    if (!box)
        return FALSE;
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
        finish(dialog, *box, LOWORD(wParam) == IDOK);
        return TRUE;
    }
    if (message == dpiChanged) {
        const RECT *suggested = (const RECT *)lParam;
        SetWindowPos(dialog, NULL, suggested->left, suggested->top,
                     suggested->right - suggested->left, suggested->bottom - suggested->top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
        arrange(dialog, *box);
        return TRUE;
    }
    return FALSE;
}

// A dialog without controls, which are made by the procedure in pixels; menu, class and title
// empty.
struct Template
{
    DLGTEMPLATE head;
    WORD menu, windowClass, title;
};

} // namespace
} // namespace vl_input_box

VL_InputBoxResult VL_InputBoxEx(const std::wstring &prompt, const std::wstring &title,
                                const std::wstring &initial)
{
    using namespace vl_input_box;
    Box box;
    box.prompt = prompt.c_str();
    if (box.prompt.size() > MostPromptCharacters)
        box.prompt = box.prompt.substr(0, MostPromptCharacters) + L"...";
    box.title = title.empty() ? std::wstring(L"\u8F93\u5165") : title.substr(0, 200);
    box.result.text = initial;
    Template description = {};
    description.head.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME;
    const INT_PTR shown = DialogBoxIndirectParamW(g_hInstance, &description.head, VL_DialogOwner(),
                                                  dialogProcedure, (LPARAM)&box);
    if (box.font)
        DeleteObject(box.font);
    g_last = shown == IDOK ? box.result : VL_InputBoxResult();
    return g_last;
}

std::wstring VL_InputBox(const std::wstring &prompt, const std::wstring &title,
                         const std::wstring &initial)
{
    return VL_InputBoxEx(prompt, title, initial).text;
}

intptr_t VL_InputBox_GetCode()
{
    return vl_input_box::g_last.code;
}

std::wstring VL_InputBox_GetText()
{
    return vl_input_box::g_last.text;
}

intptr_t VL_InputBox_GetCode(const VL_InputBoxResult &result)
{
    return result.code;
}

std::wstring VL_InputBox_GetText(const VL_InputBoxResult &result)
{
    return result.text;
}
