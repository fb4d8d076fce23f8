// Starting programs, running command lines, waiting for what was started.
#pragma once
#include "20_constants.h"

// Runs a line of the command interpreter without a window and gives what it prints, errors
// included, line ends at the end left out. With -1 the encoding is found out: UTF-8 or 936. After
// `timeout` milliseconds (-1: no limit) it is ended, and the text so far is given. Of more than
// 64 MB the rest is lost.
std::wstring VL_ExecCommand(const std::wstring &command, intptr_t timeout = -1,
                            intptr_t encoding = -1);
// Opens a program, a document, a folder or an address as a double click does. `show` is an SW_
// value. With `wait` it returns when the program has ended. False when it could not be started.
bool VL_RunProgram(const std::wstring &path, const std::wstring &arguments = std::wstring(),
                   const std::wstring &folder = std::wstring(), intptr_t show = SW_SHOWNORMAL,
                   bool wait = false);
// Starts an executable and gives the number of its process, 0 on failure.
intptr_t VL_CreateProcess(const std::wstring &path, const std::wstring &arguments = std::wstring(),
                          const std::wstring &folder = std::wstring(), bool visible = true);
// Waits until a process ends, at most `timeout` milliseconds (-1: no limit), and gives its exit
// code; -1 when it has not ended by then, or there is none.
intptr_t VL_WaitProcess(const VL_Any &process, intptr_t timeout = -1);
// Starts this program again with an administrator's rights and ends it here. True at once when it
// has them already; false when the user refuses.
bool VL_RestartAsAdmin();
