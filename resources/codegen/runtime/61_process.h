// Processes: finding, inspecting and steering them, and the privileges of this one.
#pragma once
#include "20_constants.h"

// A process is given by its number or by the name of its executable ("notepad.exe"; ".exe" may be
// left out). By name the first one found is meant, unless told otherwise. -1 is this program
// itself; 0, which a search without success gives, is none.

// One dictionary for each process: its name, number, parent's number and count of threads.
VL_Array VL_GetProcessList();
// Numbers of all processes, or of those with this name.
VL_Array VL_GetAllProcessIds(const std::wstring &name = std::wstring());
// 0 when there is none.
intptr_t VL_GetProcessId(const std::wstring &name);
bool VL_ProcessExists(const VL_Any &process);
intptr_t VL_GetOwnProcessId();
// Full path of the executable; empty when there is no such process or the system refuses.
std::wstring VL_GetProcessPath(const VL_Any &process = -1);
// Bytes of physical memory in use.
long long VL_GetProcessMemory(const VL_Any &process = -1);
// Share of all processors, 0 to 100, measured over so many milliseconds.
double VL_GetProcessCPU(const VL_Any &process = -1, intptr_t milliseconds = 200);
// Handle of the visible main window, 0 when there is none.
intptr_t VL_GetProcessWindow(const VL_Any &process = -1);

// Ends a process, by name all with that name; true when at least one was found and all are gone.
bool VL_KillProcess(const VL_Any &process);
// Stops all its threads and lets them run again; this program itself is refused.
bool VL_SuspendProcess(const VL_Any &process);
bool VL_ResumeProcess(const VL_Any &process);
// From 0, idle, to 5, real time; 2 is normal. -1 when there is no such process.
intptr_t VL_GetProcessPriority(const VL_Any &process = -1);
bool VL_SetProcessPriority(const VL_Any &process, intptr_t priority);

// Privileges by the system's names, such as "SeDebugPrivilege".
bool VL_EnablePrivilege(const std::wstring &name, bool enable = true);
// Whether this process has the privilege and it is enabled.
bool VL_CheckPrivilege(const std::wstring &name);
// Whether this program runs with an administrator's rights.
bool VL_IsAdmin();

// The processes that `process` means; empty for none. Index 0 is the one taken where one is wanted.
std::vector<DWORD> VL_FindProcesses(const VL_Any &process);
