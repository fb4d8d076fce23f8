// Path texts, and the folders of the system, the user and the program.
#pragma once
#include "00_prelude.h"

// Both slashes are taken as separators; results use the backslash. Folders are given without a
// separator at their end, except for the root of a drive.

// The last part of a path, without its extension if `withExtension` is false.
std::wstring VL_GetFileName(const std::wstring &path, bool withExtension = true);
// With its dot (".txt"); empty when there is none. A name such as ".profile" has no extension.
std::wstring VL_GetFileExt(const std::wstring &path);
std::wstring VL_GetFileDir(const std::wstring &path);
// Joins parts with exactly one separator; a part with a drive or a server begins anew.
std::wstring VL_JoinPath(const std::wstring &first, const std::wstring &second = std::wstring());
template <typename... Rest>
std::wstring VL_JoinPath(const std::wstring &first, const std::wstring &second,
                         const std::wstring &third, const Rest &...rest)
{
    return VL_JoinPath(VL_JoinPath(first, second), third, rest...);
}
// Resolves "." and "..", doubled and mixed separators, without looking at the disk. ".." never
// climbs above a root; a relative path stays relative.
std::wstring VL_NormalizePath(const std::wstring &path);

std::wstring VL_GetCurrentDir();
bool VL_SetCurrentDir(const std::wstring &path);
// The folder of the running executable.
std::wstring VL_GetAppDir();
std::wstring VL_GetTempDir();
std::wstring VL_GetSystemDir();
std::wstring VL_GetUserDir();
std::wstring VL_GetDesktopPath();
std::wstring VL_GetDocumentsPath();
std::wstring VL_GetDownloadsPath();
std::wstring VL_GetMusicPath();
std::wstring VL_GetPicturesPath();
std::wstring VL_GetVideosPath();
