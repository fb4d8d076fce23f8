// Processes: finding, inspecting and steering them, and the privileges of this one.
#include "61_process.h"
#include "11_dictionary.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <cstring>

namespace vl_process {
namespace {

class Handle
{
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle()
    {
        if (valid())
            CloseHandle(m_handle);
    }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    bool valid() const { return m_handle && m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

private:
    HANDLE m_handle;
};

std::vector<PROCESSENTRY32W> allProcesses()
{
    std::vector<PROCESSENTRY32W> result;
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry;
    memset(&entry, 0, sizeof entry);
    entry.dwSize = sizeof entry;
    if (!snapshot.valid() || !Process32FirstW(snapshot.get(), &entry))
        return result;
    do {
        result.push_back(entry);
    } while (Process32NextW(snapshot.get(), &entry));
    return result;
}

bool hasName(const PROCESSENTRY32W &entry, const std::wstring &name)
{
    return _wcsicmp(entry.szExeFile, name.c_str()) == 0 ||
           _wcsicmp(entry.szExeFile, (name + L".exe").c_str()) == 0;
}

std::vector<DWORD> processesNamed(const std::wstring &name)
{
    std::vector<DWORD> ids;
    // A full path is reduced to its last part, which is all that the list holds.
    const size_t slash = name.find_last_of(L"\\/");
    const std::wstring last = slash == std::wstring::npos ? name : name.substr(slash + 1);
    if (last.empty())
        return ids;
    for (const PROCESSENTRY32W &entry : allProcesses())
        if (hasName(entry, last))
            ids.push_back(entry.th32ProcessID);
    return ids;
}

DWORD firstOf(const VL_Any &process)
{
    const std::vector<DWORD> ids = VL_FindProcesses(process);
    return ids.empty() ? 0 : ids[0];
}

// Opens the process that `process` means.
HANDLE openProcess(const VL_Any &process, DWORD access)
{
    const DWORD id = firstOf(process);
    return id == 0 ? NULL : OpenProcess(access, FALSE, id);
}

bool isRunning(HANDLE process)
{
    return WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
}

bool callNative(const VL_Any &process, const char *name)
{
    typedef LONG(WINAPI * NativeCall)(HANDLE);
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    void *found = ntdll ? (void *)GetProcAddress(ntdll, name) : NULL;
    const DWORD id = firstOf(process);
    if (!found || id == 0 || id == GetCurrentProcessId())
        return false;
    const Handle handle(OpenProcess(PROCESS_SUSPEND_RESUME, FALSE, id));
    return handle.valid() && ((NativeCall)found)(handle.get()) >= 0;
}

unsigned long long ticks(const FILETIME &time)
{
    return (unsigned long long)time.dwHighDateTime << 32 | time.dwLowDateTime;
}

// Processor time used so far, in units of 100 nanoseconds.
bool processorTime(HANDLE process, unsigned long long &used)
{
    FILETIME created;
    FILETIME ended;
    FILETIME kernel;
    FILETIME user;
    if (!GetProcessTimes(process, &created, &ended, &kernel, &user))
        return false;
    used = ticks(kernel) + ticks(user);
    return true;
}

struct WindowSearch
{
    DWORD process;
    HWND found;
};

// The first visible window that no other owns; one with a title goes before one without.
BOOL CALLBACK visitWindow(HWND window, LPARAM data)
{
    WindowSearch &search = *(WindowSearch *)data;
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || !IsWindowVisible(window) || GetWindow(window, GW_OWNER))
        return TRUE;
    const bool titled = GetWindowTextLengthW(window) > 0;
    if (!search.found || titled)
        search.found = window;
    return titled ? FALSE : TRUE;
}

const DWORD kPriorities[] = {IDLE_PRIORITY_CLASS,   BELOW_NORMAL_PRIORITY_CLASS,
                             NORMAL_PRIORITY_CLASS, ABOVE_NORMAL_PRIORITY_CLASS,
                             HIGH_PRIORITY_CLASS,   REALTIME_PRIORITY_CLASS};
const intptr_t kPriorityCount = sizeof kPriorities / sizeof kPriorities[0];

bool endProcess(DWORD id)
{
    const Handle handle(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, id));
    if (!handle.valid())
        return false;
    if (!TerminateProcess(handle.get(), 1) && isRunning(handle.get()))
        return false;
    return WaitForSingleObject(handle.get(), 5000) == WAIT_OBJECT_0;
}

HANDLE ownToken(DWORD access)
{
    HANDLE token = NULL;
    return OpenProcessToken(GetCurrentProcess(), access, &token) ? token : NULL;
}

} // namespace
} // namespace vl_process

std::vector<DWORD> VL_FindProcesses(const VL_Any &process)
{
    if (process.type == VL_Any::TypeString) {
        bool whole = false;
        const long long number = VL_ReadInteger(process.strVal, &whole);
        if (!whole)
            return vl_process::processesNamed(process.strVal);
        return VL_FindProcesses(VL_Any(number));
    }
    const long long id = VL_AnyToInteger(process);
    if (id == -1)
        return std::vector<DWORD>(1, GetCurrentProcessId());
    return id > 0 && id <= 0xFFFFFFFFLL ? std::vector<DWORD>(1, (DWORD)id) : std::vector<DWORD>();
}

VL_Array VL_GetProcessList()
{
    VL_Array result;
    for (const PROCESSENTRY32W &entry : vl_process::allProcesses()) {
        VL_Any row = VL_NewDictAny();
        VL_DictSet(row, L"\u540D\u79F0", VL_Any(entry.szExeFile));
        VL_DictSet(row, L"\u8FDB\u7A0BID", VL_Any((long long)entry.th32ProcessID));
        VL_DictSet(row, L"\u7236\u8FDB\u7A0BID", VL_Any((long long)entry.th32ParentProcessID));
        VL_DictSet(row, L"\u7EBF\u7A0B\u6570", VL_Any((long long)entry.cntThreads));
        result.push_back(row);
    }
    return result;
}

VL_Array VL_GetAllProcessIds(const std::wstring &name)
{
    VL_Array result;
    if (!name.empty()) {
        for (const DWORD id : vl_process::processesNamed(name))
            result.push_back(VL_Any((long long)id));
        return result;
    }
    for (const PROCESSENTRY32W &entry : vl_process::allProcesses())
        result.push_back(VL_Any((long long)entry.th32ProcessID));
    return result;
}

intptr_t VL_GetProcessId(const std::wstring &name)
{
    const std::vector<DWORD> ids = vl_process::processesNamed(name);
    return ids.empty() ? 0 : (intptr_t)ids[0];
}

bool VL_ProcessExists(const VL_Any &process)
{
    const std::vector<DWORD> ids = VL_FindProcesses(process);
    if (ids.empty())
        return false;
    for (const PROCESSENTRY32W &entry : vl_process::allProcesses())
        if (entry.th32ProcessID == ids[0])
            return true;
    return false;
}

intptr_t VL_GetOwnProcessId()
{
    return (intptr_t)GetCurrentProcessId();
}

std::wstring VL_GetProcessPath(const VL_Any &process)
{
    const vl_process::Handle handle(
        vl_process::openProcess(process, PROCESS_QUERY_LIMITED_INFORMATION));
    std::wstring path(0x8000, L'\0');
    DWORD length = (DWORD)path.size();
    if (!handle.valid() || !QueryFullProcessImageNameW(handle.get(), 0, &path[0], &length))
        return std::wstring();
    path.resize(length);
    return path;
}

long long VL_GetProcessMemory(const VL_Any &process)
{
    const vl_process::Handle handle(
        vl_process::openProcess(process, PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_VM_READ));
    PROCESS_MEMORY_COUNTERS counters;
    memset(&counters, 0, sizeof counters);
    counters.cb = sizeof counters;
    if (!handle.valid() || !GetProcessMemoryInfo(handle.get(), &counters, sizeof counters))
        return 0;
    return (long long)counters.WorkingSetSize;
}

double VL_GetProcessCPU(const VL_Any &process, intptr_t milliseconds)
{
    const DWORD span = milliseconds < 10 ? 10 : milliseconds > 60000 ? 60000 : (DWORD)milliseconds;
    const vl_process::Handle handle(
        vl_process::openProcess(process, PROCESS_QUERY_LIMITED_INFORMATION));
    unsigned long long before = 0;
    unsigned long long after = 0;
    LARGE_INTEGER frequency;
    LARGE_INTEGER start;
    LARGE_INTEGER end;
    if (!handle.valid() || !QueryPerformanceFrequency(&frequency) ||
        !vl_process::processorTime(handle.get(), before))
        return 0;
    QueryPerformanceCounter(&start);
    Sleep(span);
    QueryPerformanceCounter(&end);
    if (!vl_process::processorTime(handle.get(), after) || after < before ||
        end.QuadPart <= start.QuadPart)
        return 0;
    const double seconds = (double)(end.QuadPart - start.QuadPart) / (double)frequency.QuadPart;
    const DWORD processors = GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
    const double share = (double)(after - before) / 1e5 / seconds / (processors ? processors : 1);
    return share > 100 ? 100 : std::floor(share * 10 + 0.5) / 10;
}

intptr_t VL_GetProcessWindow(const VL_Any &process)
{
    vl_process::WindowSearch search = {vl_process::firstOf(process), NULL};
    if (search.process != 0)
        EnumWindows(vl_process::visitWindow, (LPARAM)&search);
    return (intptr_t)search.found;
}

bool VL_KillProcess(const VL_Any &process)
{
    bool all = true;
    bool self = false;
    const std::vector<DWORD> ids = VL_FindProcesses(process);
    for (const DWORD id : ids) {
        if (id == GetCurrentProcessId())
            self = true;
        else if (!vl_process::endProcess(id))
            all = false;
    }
    if (self)
        TerminateProcess(GetCurrentProcess(), 1);
    return all && !ids.empty();
}

bool VL_SuspendProcess(const VL_Any &process)
{
    return vl_process::callNative(process, "NtSuspendProcess");
}

bool VL_ResumeProcess(const VL_Any &process)
{
    return vl_process::callNative(process, "NtResumeProcess");
}

intptr_t VL_GetProcessPriority(const VL_Any &process)
{
    const vl_process::Handle handle(
        vl_process::openProcess(process, PROCESS_QUERY_LIMITED_INFORMATION));
    const DWORD priority = handle.valid() ? GetPriorityClass(handle.get()) : 0;
    for (intptr_t i = 0; i < vl_process::kPriorityCount; ++i)
        if (vl_process::kPriorities[i] == priority)
            return i;
    return -1;
}

bool VL_SetProcessPriority(const VL_Any &process, intptr_t priority)
{
    if (priority < 0 || priority >= vl_process::kPriorityCount)
        return false;
    const vl_process::Handle handle(vl_process::openProcess(process, PROCESS_SET_INFORMATION));
    return handle.valid() && SetPriorityClass(handle.get(), vl_process::kPriorities[priority]);
}

bool VL_EnablePrivilege(const std::wstring &name, bool enable)
{
    const vl_process::Handle token(vl_process::ownToken(TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY));
    TOKEN_PRIVILEGES wanted;
    memset(&wanted, 0, sizeof wanted);
    wanted.PrivilegeCount = 1;
    wanted.Privileges[0].Attributes = enable ? SE_PRIVILEGE_ENABLED : 0;
    if (!token.valid() || !LookupPrivilegeValueW(NULL, name.c_str(), &wanted.Privileges[0].Luid))
        return false;
    // The call succeeds too when the process has no such privilege; the error code tells.
    return AdjustTokenPrivileges(token.get(), FALSE, &wanted, 0, NULL, NULL) &&
           GetLastError() == ERROR_SUCCESS;
}

bool VL_CheckPrivilege(const std::wstring &name)
{
    const vl_process::Handle token(vl_process::ownToken(TOKEN_QUERY));
    PRIVILEGE_SET wanted;
    memset(&wanted, 0, sizeof wanted);
    wanted.PrivilegeCount = 1;
    wanted.Control = PRIVILEGE_SET_ALL_NECESSARY;
    BOOL enabled = FALSE;
    return token.valid() && LookupPrivilegeValueW(NULL, name.c_str(), &wanted.Privilege[0].Luid) &&
           PrivilegeCheck(token.get(), &wanted, &enabled) && enabled;
}

bool VL_IsAdmin()
{
    SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
    PSID administrators = NULL;
    BOOL member = FALSE;
    if (!AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID,
                                  DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0, 0, 0, &administrators))
        return false;
    const BOOL checked = CheckTokenMembership(NULL, administrators, &member);
    FreeSid(administrators);
    return checked && member;
}
