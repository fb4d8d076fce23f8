// Files shown in text boxes: plain text and RTF.
#include "68_text_files.h"
#include "38_rich_edit.h"
#include "39_encodings.h"
#include "40_files.h"

#include <algorithm>

bool VL_LoadFile(HWND edit, const std::wstring &path)
{
    VL_TextCommand load;
    load.command = VL_TEXT_LOAD_FILE;
    load.text = path;
    if (VL_SendTextCommand(edit, load))
        return load.number != 0;
    std::string bytes;
    if (!IsWindow(edit) || !VL_LoadFileBytes(path, bytes))
        return false;
    std::wstring text = VL_DecodeText(bytes.data(), bytes.size(), -1);
    // A control's text ends at the first NUL; the rest of a binary file is to show as well.
    std::replace(text.begin(), text.end(), L'\0', L' ');
    VL_SetText(edit, text);
    return true;
}

bool VL_LoadRTF(HWND edit, const std::wstring &path)
{
    std::string bytes;
    if (!IsWindow(edit) || !VL_LoadFileBytes(path, bytes))
        return false;
    return VL_RE_SetRtfBytes(edit, bytes) || VL_LoadFile(edit, path);
}

bool VL_SaveRTF(HWND edit, const std::wstring &path)
{
    const std::string bytes = VL_RE_GetRtfBytes(edit);
    return !bytes.empty() && VL_SaveFileBytes(path, bytes.data(), bytes.size());
}
