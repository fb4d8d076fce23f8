// Calling commands in the user's own DLLs.
#pragma once
#include "00_prelude.h"

// What such a DLL exports: takes a command and its arguments as JSON, writes the result into
// `outBuf` (at most `outCap` characters with the closing NUL), and returns a negative number when
// it fails. cdecl, so that the name of the export stays undecorated.
typedef int(__cdecl *VL_Ext_InvokeFn)(const wchar_t *cmd, const wchar_t *argsJson, wchar_t *outBuf,
                                      int outCap);

// The function of a DLL; null when library or function is not there. Both are loaded once.
VL_Ext_InvokeFn VL_Ext_LoadInvoke(const std::wstring &dllPath, const std::wstring &invokeName);
// The result of a command; empty when it failed, and VL_Ext_GetLastError tells why.
std::wstring VL_Ext_Invoke_CallText(const std::wstring &dllPath, const std::wstring &cmd,
                                    const std::wstring &argsJson,
                                    const std::wstring &invokeName = L"VL_Ext_Invoke");
// The reason of this thread's last failed call; empty after one that went well.
std::wstring VL_Ext_GetLastError();
