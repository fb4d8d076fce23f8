// Files: reading and writing them whole, copying, attributes and times.
#pragma once
#include "20_constants.h"

// A path may be relative, hold any characters and be longer than 260 units; the system functions
// get it in a form that they accept. Empty for an empty path and for one that holds a NUL.
std::wstring VL_SystemPath(const std::wstring &path);
// All bytes of a file, from `offset` on and at most `limit` of them (-1: no limit). False, and
// nothing read, for what is missing, is a folder or does not fit into memory.
bool VL_LoadFileBytes(const std::wstring &path, std::string &bytes, long long offset = 0,
                      long long limit = -1);
// Writes a whole file by way of a temporary beside it, so that a failure leaves the old file; or
// appends to it.
bool VL_SaveFileBytes(const std::wstring &path, const void *data, size_t length,
                      bool append = false);

bool VL_FileExists(const std::wstring &path);
bool VL_DirExists(const std::wstring &path);
// Text files. Encodings are code page numbers; -1 finds out by itself (when writing: that of the
// byte order mark the file has, else UTF-8). UTF-16 files get a byte order mark. `mode`: 0 writes
// anew, 1 appends, anything else refuses.
std::wstring VL_ReadFile(const std::wstring &path, intptr_t encoding = -1);
bool VL_WriteFile(const std::wstring &path, const std::wstring &content, intptr_t encoding = 65001,
                  intptr_t mode = 0);
bool VL_AppendFile(const std::wstring &path, const std::wstring &content,
                   intptr_t encoding = 65001);
// Lines end with CR LF, LF or CR when read, with CR LF when written.
VL_Array VL_ReadFileLines(const std::wstring &path, intptr_t encoding = -1);
bool VL_WriteFileLines(const std::wstring &path, const VL_Array &lines, intptr_t encoding = 65001,
                       intptr_t mode = 0);
VL_ByteArray VL_ReadBinaryFile(const std::wstring &path);
bool VL_WriteBinaryFile(const std::wstring &path, const VL_ByteArray &bytes);

bool VL_DeleteFile(const std::wstring &path);
bool VL_CopyFile(const std::wstring &source, const std::wstring &target, bool overwrite = true);
bool VL_MoveFile(const std::wstring &source, const std::wstring &target, bool overwrite = true);
// `newName` without a folder stays in the folder of `path`. Never overwrites.
bool VL_RenameFile(const std::wstring &path, const std::wstring &newName);

// -1 when there is no such file.
long long VL_GetFileSize(const std::wstring &path);
// Size in the largest unit that leaves at least 1, up to two decimals: 1536 is "1.5 KB".
std::wstring VL_FormatFileSize(long long size);
// Local time as "YYYY-MM-DD HH:MM:SS"; empty when there is no such file.
std::wstring VL_GetFileModifyTime(const std::wstring &path);
std::wstring VL_GetFileCreateTime(const std::wstring &path);
// The system's attribute bits of a file or folder, -1 when there is none.
int VL_GetFileAttributes(const std::wstring &path);
bool VL_IsReadOnlyFile(const std::wstring &path);
bool VL_SetReadOnlyFile(const std::wstring &path, bool on = true);
bool VL_IsHiddenFile(const std::wstring &path);
bool VL_SetHiddenFile(const std::wstring &path, bool on = true);
