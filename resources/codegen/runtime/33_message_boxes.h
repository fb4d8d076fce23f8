// Message boxes: a text, an icon and the system's buttons.
#pragma once
#include "32_item_access.h"

// The window that a box or dialog opened now belongs to: the active window of this thread, else the
// program's main window when it is shown; NULL when there is none and on other threads, whose boxes
// must not wait for a window of the main thread.
HWND VL_DialogOwner();

// All boxes wait for the user. Text beyond what a screen can show is cut and ends in three dots.
// `flags` are MB_* values: buttons, icon, default button. The result is the number of the button
// that was pressed (IDOK 1, IDCANCEL 2, IDYES 6, IDNO 7, ...), 0 when no box could be shown.
int VL_MessageBox(const std::wstring &text, const std::wstring &title = L"\u63D0\u793A",
                  intptr_t flags = 0);
int VL_Win_MessageBox(const std::wstring &text, const std::wstring &title = std::wstring(),
                      intptr_t flags = 0);

// The title comes first here; a single text is the content. Flags without an icon get the one of
// the box's name.
int VL_InfoBox(const std::wstring &text);
int VL_InfoBox(const std::wstring &title, const std::wstring &text, intptr_t flags = 0);
int VL_WarningBox(const std::wstring &text);
int VL_WarningBox(const std::wstring &title, const std::wstring &text, intptr_t flags = 0);
int VL_ErrorBox(const std::wstring &text);
int VL_ErrorBox(const std::wstring &title, const std::wstring &text, intptr_t flags = 0);
// True for OK.
bool VL_ConfirmBox(const std::wstring &text);
bool VL_ConfirmBox(const std::wstring &title, const std::wstring &text);
// True for yes.
bool VL_AskBox(const std::wstring &text, const std::wstring &title = std::wstring());
