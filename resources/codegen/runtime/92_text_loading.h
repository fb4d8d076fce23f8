// Text files of many megabytes: read without a copy of the whole, written as they were.
#pragma once
#include "90_text_buffer.h"

// How a file holds its text.
struct VTB_FileForm
{
    // A code page number as in the file commands, and whether a byte order mark goes ahead.
    int encoding = 65001;
    bool hasMark = false;
};
// False, with nothing added, when there is no such file or it cannot be read.
bool VTB_LoadText(const std::wstring &path, VL_TextCutter &cutter, VTB_FileForm &form);
// Writes by way of a temporary. What the encoding lacks makes the file UTF-8, and `form` with it.
bool VTB_SaveText(const std::wstring &path, const VirtualTextData &data, VTB_FileForm &form);
