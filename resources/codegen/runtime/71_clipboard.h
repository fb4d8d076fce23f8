// The clipboard: text, pictures, files, HTML, and being told of changes.
#pragma once
#include "20_constants.h"

// While another program holds the clipboard it is asked for again for half a second; what cannot be
// had then is empty, what cannot be put there is false.

std::wstring VL_GetClipboardText();
bool VL_SetClipboardText(const std::wstring &text);
bool VL_ClearClipboard();
bool VL_ClipboardHasText();
bool VL_ClipboardHasImage();
bool VL_ClipboardHasFiles();

// As the bytes of a PNG file.
VL_ByteArray VL_GetClipboardImage();
// The path of an image file, or the bytes of one.
bool VL_SetClipboardImage(const VL_Any &pathOrBytes);
VL_Array VL_GetClipboardFiles();
// Relative paths count from the current folder; empty ones are left out. False without any.
bool VL_SetClipboardFiles(const VL_Array &paths);
// The copied part, without what its program put around it.
std::wstring VL_GetClipboardHTML();
// `plain` is for programs that take no HTML.
bool VL_SetClipboardHTML(const std::wstring &html, const std::wstring &plain = std::wstring());

// Calls back from the message loop of this thread whenever the content changed; a second call
// replaces the first. Changes made by the callback itself are not told.
bool VL_WatchClipboard(std::function<void()> callback);
void VL_StopClipboardWatch();
// The callback takes nothing, the text that is in the clipboard now, or the number of the change.
template <typename F>
bool VL_StartClipboardWatch(F callback)
{
    if constexpr (std::is_invocable<F>::value)
        return VL_WatchClipboard([callback]() mutable { callback(); });
    else if constexpr (std::is_invocable<F, std::wstring>::value)
        return VL_WatchClipboard([callback]() mutable { callback(VL_GetClipboardText()); });
    else
        return VL_WatchClipboard(
            [callback]() mutable { callback((intptr_t)GetClipboardSequenceNumber()); });
}
