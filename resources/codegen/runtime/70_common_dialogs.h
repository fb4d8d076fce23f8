// The system's dialogs for files, folders, colours and fonts.
#pragma once
#include "20_constants.h"
#include "33_message_boxes.h"

// All of them wait for the user over the program's active window and leave the current folder
// alone. A filter is "name|patterns|name|patterns", patterns parted by ";", such as
// "text|*.txt;*.log"; empty for all files. `initial` is a folder, a file name or both.

// The chosen path; empty after cancel.
std::wstring VL_OpenFileDialog(const std::wstring &title = std::wstring(),
                               const std::wstring &filter = std::wstring(),
                               const std::wstring &initial = std::wstring());
// Asks before a file is overwritten. A name without extension gets the one of the chosen filter.
std::wstring VL_SaveFileDialog(const std::wstring &title = std::wstring(),
                               const std::wstring &filter = std::wstring(),
                               const std::wstring &initial = std::wstring());
// The chosen paths, any number of them; empty after cancel.
VL_Array VL_OpenFilesDialog(const std::wstring &title = std::wstring(),
                            const std::wstring &filter = std::wstring(),
                            const std::wstring &initial = std::wstring());
std::wstring VL_SelectFolderDialog(const std::wstring &title = std::wstring(),
                                   const std::wstring &initial = std::wstring());
// A colour as 0xBBGGRR; -1 after cancel.
int VL_ColorDialog(intptr_t initial = 0);
// A dictionary with the keys \u5B57\u4F53 (name), \u5B57\u53F7 (points), \u7C97\u4F53, \u659C\u4F53
// and \u989C\u8272, empty after cancel. `initial` takes the same keys.
VL_Any VL_FontDialog(const VL_Any &initial = VL_Any());
