// Rich edits: set-up, formats of the selection, RTF.
#include "38_rich_edit.h"
#include "37_edit_boxes.h"

#include <richedit.h>

#include <algorithm>
#include <cstring>

namespace vl_rich_edit {
namespace {

const UINT_PTR SubclassId = 0x564C3B;
const LONG TwipsPerPoint = 20;
const int LargestSize = 1000;

bool isRichEdit(HWND edit)
{
    return VL_HasClass(edit, L"RICHEDIT50W");
}

CHARFORMAT2W formatOf(DWORD mask)
{
    CHARFORMAT2W format = {};
    format.cbSize = sizeof(format);
    format.dwMask = mask;
    return format;
}

void formatSelection(HWND edit, const CHARFORMAT2W &format)
{
    if (isRichEdit(edit))
        SendMessageW(edit, EM_SETCHARFORMAT, SCF_SELECTION, (LPARAM)&format);
}

void setEffect(HWND edit, DWORD effect, bool on)
{
    // Of these effects mask and value are the same bit.
    CHARFORMAT2W format = formatOf(effect);
    format.dwEffects = on ? effect : 0;
    formatSelection(edit, format);
}

// The colour of everything that is there and of what comes. The owner is not told: the text stays.
void setTextColor(HWND edit, COLORREF color)
{
    const LRESULT events = SendMessageW(edit, EM_SETEVENTMASK, 0, 0);
    CHARFORMAT2W format = formatOf(CFM_COLOR);
    format.crTextColor = color;
    SendMessageW(edit, EM_SETCHARFORMAT, SCF_ALL, (LPARAM)&format);
    SendMessageW(edit, EM_SETCHARFORMAT, SCF_DEFAULT, (LPARAM)&format);
    SendMessageW(edit, EM_SETEVENTMASK, 0, events);
}

LRESULT CALLBACK richEditSubclass(HWND edit, UINT message, WPARAM wParam, LPARAM lParam,
                                  UINT_PTR id, DWORD_PTR)
{
    if (message == WM_NCDESTROY)
        RemoveWindowSubclass(edit, richEditSubclass, id);
    if (message == VL_REFLECT + WM_CTLCOLOREDIT && wParam == 0) {
        setTextColor(edit, (COLORREF)lParam);
        return 1;
    }
    return DefSubclassProc(edit, message, wParam, lParam);
}

struct Source
{
    const std::string *bytes;
    size_t position;
};

DWORD CALLBACK readBytes(DWORD_PTR cookie, BYTE *buffer, LONG wanted, LONG *got)
{
    Source *source = (Source *)cookie;
    const size_t length =
        (std::min)((size_t)(std::max)(wanted, 0L), source->bytes->size() - source->position);
    std::memcpy(buffer, source->bytes->data() + source->position, length);
    source->position += length;
    *got = (LONG)length;
    return 0;
}

DWORD CALLBACK writeBytes(DWORD_PTR cookie, BYTE *buffer, LONG length, LONG *written)
{
    ((std::string *)cookie)->append((const char *)buffer, (size_t)(std::max)(length, 0L));
    *written = length;
    return 0;
}

} // namespace
} // namespace vl_rich_edit

void VL_PrepareRichEdit(HWND edit, bool wordWrap)
{
    using namespace vl_rich_edit;
    if (!isRichEdit(edit))
        return;
    VL_PrepareEdit(edit);
    SendMessageW(edit, EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    SendMessageW(edit, EM_SETEVENTMASK, 0, ENM_CHANGE | ENM_SELCHANGE | ENM_SCROLL);
    const LRESULT options = SendMessageW(edit, EM_GETLANGOPTIONS, 0, 0);
    SendMessageW(edit, EM_SETLANGOPTIONS, 0, options & ~(IMF_DUALFONT | IMF_AUTOFONTSIZEADJUST));
    VL_SetWordWrap(edit, wordWrap);
    SetWindowSubclass(edit, richEditSubclass, SubclassId, 0);
    if (VL_HasTextColor(edit))
        setTextColor(edit, (COLORREF)VL_GetTextColor(edit));
}

void VL_RE_SetSelectionColor(HWND edit, int color)
{
    CHARFORMAT2W format = vl_rich_edit::formatOf(CFM_COLOR);
    if (color < 0 && VL_HasTextColor(edit))
        format.crTextColor = (COLORREF)VL_GetTextColor(edit);
    else if (color < 0)
        format.dwEffects = CFE_AUTOCOLOR;
    else
        format.crTextColor = (COLORREF)color & 0xFFFFFF;
    vl_rich_edit::formatSelection(edit, format);
}

void VL_RE_SetSelectionBackColor(HWND edit, int color)
{
    CHARFORMAT2W format = vl_rich_edit::formatOf(CFM_BACKCOLOR);
    format.dwEffects = color < 0 ? CFE_AUTOBACKCOLOR : 0;
    format.crBackColor = (COLORREF)color & 0xFFFFFF;
    vl_rich_edit::formatSelection(edit, format);
}

void VL_RE_SetSelectionBold(HWND edit, bool on)
{
    vl_rich_edit::setEffect(edit, CFE_BOLD, on);
}

void VL_RE_SetSelectionItalic(HWND edit, bool on)
{
    vl_rich_edit::setEffect(edit, CFE_ITALIC, on);
}

void VL_RE_SetSelectionUnderline(HWND edit, bool on)
{
    CHARFORMAT2W format = vl_rich_edit::formatOf(CFM_UNDERLINE | CFM_UNDERLINETYPE);
    format.dwEffects = on ? CFE_UNDERLINE : 0;
    format.bUnderlineType = on ? CFU_UNDERLINE : CFU_UNDERLINENONE;
    vl_rich_edit::formatSelection(edit, format);
}

void VL_RE_SetSelectionFont(HWND edit, const std::wstring &name, int size)
{
    using namespace vl_rich_edit;
    CHARFORMAT2W format = formatOf((name.empty() ? 0 : CFM_FACE) | (size > 0 ? CFM_SIZE : 0));
    lstrcpynW(format.szFaceName, name.c_str(), LF_FACESIZE);
    format.yHeight = (std::min)(size, LargestSize) * TwipsPerPoint;
    if (format.dwMask)
        formatSelection(edit, format);
}

std::string VL_RE_GetRtfBytes(HWND edit)
{
    std::string bytes;
    if (!vl_rich_edit::isRichEdit(edit))
        return bytes;
    EDITSTREAM stream = {(DWORD_PTR)&bytes, 0, vl_rich_edit::writeBytes};
    SendMessageW(edit, EM_STREAMOUT, SF_RTF, (LPARAM)&stream);
    // Some versions end it by a NUL.
    while (!bytes.empty() && bytes.back() == '\0')
        bytes.pop_back();
    return bytes;
}

std::wstring VL_RE_GetRTF(HWND edit)
{
    const std::string bytes = VL_RE_GetRtfBytes(edit);
    return VL_CodePageToWide(bytes.data(), bytes.size(), CP_ACP);
}

bool VL_RE_SetRtfBytes(HWND edit, const std::string &rtf)
{
    if (!vl_rich_edit::isRichEdit(edit) || rtf.compare(0, 5, "{\\rtf") != 0)
        return false;
    vl_rich_edit::Source source = {&rtf, 0};
    EDITSTREAM stream = {(DWORD_PTR)&source, 0, vl_rich_edit::readBytes};
    SendMessageW(edit, EM_STREAMIN, SF_RTF, (LPARAM)&stream);
    return stream.dwError == 0;
}

bool VL_RE_SetRTF(HWND edit, const std::wstring &rtf)
{
    return VL_RE_SetRtfBytes(edit, VL_WideToCodePage(rtf, CP_ACP));
}
