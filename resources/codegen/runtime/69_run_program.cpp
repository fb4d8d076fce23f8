// Starting programs, running command lines, waiting for what was started.
#include "69_run_program.h"
#include "39_encodings.h"
#include "61_process.h"

#include <cstring>

namespace vl_run_program {
namespace {

const size_t kMostOutput = 0x4000000;
// How long a pause in the output may be, and all of it last, once the command has ended.
const DWORD kGrace = 50;
const DWORD kLongestGrace = 500;
const ULONGLONG kNever = (ULONGLONG)-1;

class Handle
{
public:
    explicit Handle(HANDLE handle = NULL) : m_handle(handle) {}
    ~Handle() { reset(); }
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    bool valid() const { return m_handle && m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }
    void reset(HANDLE handle = NULL)
    {
        if (valid())
            CloseHandle(m_handle);
        m_handle = handle;
    }

private:
    HANDLE m_handle;
};

SRWLOCK g_lock = SRWLOCK_INIT;

class Lock
{
public:
    Lock() { AcquireSRWLockExclusive(&g_lock); }
    ~Lock() { ReleaseSRWLockExclusive(&g_lock); }
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;
};

// Handles of the processes that VL_CreateProcess made, by number: they keep the exit code
// readable, and the number from being given to another process.
std::map<DWORD, HANDLE> &created()
{
    static std::map<DWORD, HANDLE> handles;
    return handles;
}

void remember(DWORD id, HANDLE process)
{
    const Lock lock;
    std::map<DWORD, HANDLE> &handles = created();
    if (handles.size() >= 256) {
        for (auto it = handles.begin(); it != handles.end();) {
            if (WaitForSingleObject(it->second, 0) == WAIT_TIMEOUT) {
                ++it;
                continue;
            }
            CloseHandle(it->second);
            it = handles.erase(it);
        }
    }
    HANDLE &place = handles[id];
    if (place)
        CloseHandle(place);
    place = process;
}

// A handle of the caller's own.
HANDLE processHandle(const VL_Any &process)
{
    const std::vector<DWORD> ids = VL_FindProcesses(process);
    if (ids.empty() || ids[0] == GetCurrentProcessId())
        return NULL;
    const Lock lock;
    const auto known = created().find(ids[0]);
    HANDLE handle = NULL;
    if (known != created().end() &&
        DuplicateHandle(GetCurrentProcess(), known->second, GetCurrentProcess(), &handle, 0, FALSE,
                        DUPLICATE_SAME_ACCESS))
        return handle;
    return OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, ids[0]);
}

DWORD waitTime(intptr_t milliseconds)
{
    if (milliseconds < 0)
        return INFINITE;
    return (unsigned long long)milliseconds < INFINITE ? (DWORD)milliseconds : INFINITE - 1;
}

std::wstring interpreter()
{
    wchar_t path[MAX_PATH] = L"";
    const DWORD length = GetEnvironmentVariableW(L"ComSpec", path, MAX_PATH);
    if (length > 0 && length < MAX_PATH)
        return path;
    const UINT folder = GetSystemDirectoryW(path, MAX_PATH);
    return folder > 0 && folder < MAX_PATH ? std::wstring(path) + L"\\cmd.exe" : L"cmd.exe";
}

// A pipe whose reading end can be waited for together with the process.
bool makePipe(Handle &reading, Handle &writing)
{
    static volatile LONG counter = 0;
    wchar_t name[80];
    swprintf(name, 80, L"\\\\.\\pipe\\vl-output-%lx-%lx-%lx", (unsigned long)GetCurrentProcessId(),
             (unsigned long)GetTickCount(), (unsigned long)InterlockedIncrement(&counter));
    reading.reset(CreateNamedPipeW(
        name, PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
        PIPE_TYPE_BYTE | PIPE_WAIT, 1, 0, 0x10000, 0, NULL));
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, NULL, TRUE};
    if (reading.valid())
        writing.reset(CreateFileW(name, GENERIC_WRITE, 0, &inherited, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, NULL));
    return reading.valid() && writing.valid();
}

// A command line at work: its process, all that it starts, and the pipe that they print to.
class Command
{
public:
    bool start(const std::wstring &line);
    std::string output(DWORD timeout);

private:
    enum State
    {
        Got,
        Pending,
        Closed
    };

    State beginRead();
    State endRead(bool wait);
    DWORD timeLeft() const;
    void hasEnded();
    void end();
    void collect();

    bool m_running = true;
    ULONGLONG m_deadline = kNever;
    Handle m_process;
    Handle m_job;
    Handle m_pipe;
    Handle m_event;
    OVERLAPPED m_overlapped;
    char m_buffer[0x4000];
    std::string m_bytes;
};

bool Command::start(const std::wstring &line)
{
    Handle writing;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, NULL, TRUE};
    const Handle nothing(CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                     &inherited, OPEN_EXISTING, 0, NULL));
    m_event.reset(CreateEventW(NULL, TRUE, FALSE, NULL));
    m_job.reset(CreateJobObjectW(NULL, NULL));
    if (!m_event.valid() || !makePipe(m_pipe, writing))
        return false;
    STARTUPINFOW startup;
    memset(&startup, 0, sizeof startup);
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    startup.hStdInput = nothing.get();
    startup.hStdOutput = writing.get();
    startup.hStdError = writing.get();
    const std::wstring program = interpreter();
    // With "/s" exactly the outer quotes are taken off, whatever the line itself holds.
    std::wstring commandLine = L"\"" + program + L"\" /d /s /c \"" + line + L"\"";
    PROCESS_INFORMATION info;
    if (!CreateProcessW(program.c_str(), &commandLine[0], NULL, NULL, TRUE,
                        CREATE_NO_WINDOW | CREATE_SUSPENDED, NULL, NULL, &startup, &info))
        return false;
    m_process.reset(info.hProcess);
    if (m_job.valid() && !AssignProcessToJobObject(m_job.get(), info.hProcess))
        m_job.reset();
    ResumeThread(info.hThread);
    CloseHandle(info.hThread);
    return true;
}

Command::State Command::beginRead()
{
    memset(&m_overlapped, 0, sizeof m_overlapped);
    m_overlapped.hEvent = m_event.get();
    ResetEvent(m_event.get());
    if (ReadFile(m_pipe.get(), m_buffer, sizeof m_buffer, NULL, &m_overlapped))
        return endRead(true);
    return GetLastError() == ERROR_IO_PENDING ? Pending : Closed;
}

Command::State Command::endRead(bool wait)
{
    DWORD got = 0;
    if (!GetOverlappedResult(m_pipe.get(), &m_overlapped, &got, wait))
        return GetLastError() == ERROR_IO_INCOMPLETE ? Pending : Closed;
    m_bytes.append(m_buffer, got);
    return Got;
}

void Command::end()
{
    if (m_job.valid())
        TerminateJobObject(m_job.get(), 1);
    else
        TerminateProcess(m_process.get(), 1);
    hasEnded();
}

// Milliseconds until the process is to be ended or, once it has ended, until its output is.
DWORD Command::timeLeft() const
{
    const ULONGLONG now = GetTickCount64();
    if (m_deadline == kNever)
        return INFINITE;
    return now < m_deadline ? (DWORD)(m_deadline - now) : 0;
}

void Command::hasEnded()
{
    m_running = false;
    m_deadline = GetTickCount64() + kLongestGrace;
}

// Reads until the process has ended and nothing more comes. What the process leaves running in
// the background may hold the pipe open for ever, so its end is not waited for.
void Command::collect()
{
    const HANDLE events[] = {m_event.get(), m_process.get()};
    State state = beginRead();
    while (state != Closed && m_bytes.size() < kMostOutput) {
        const DWORD left = timeLeft();
        if (left == 0 && !m_running)
            break;
        if (left == 0)
            end();
        if (state == Got) {
            state = beginRead();
            continue;
        }
        const DWORD which =
            WaitForMultipleObjects(m_running ? 2 : 1, events, FALSE, m_running ? left : kGrace);
        if (which == WAIT_OBJECT_0)
            state = endRead(false);
        else if (which == WAIT_OBJECT_0 + 1)
            hasEnded();
        else if (which != WAIT_TIMEOUT || !m_running)
            break;
    }
    if (state == Pending) {
        CancelIo(m_pipe.get());
        endRead(true);
    }
}

std::string Command::output(DWORD timeout)
{
    m_deadline = timeout == INFINITE ? kNever : GetTickCount64() + timeout;
    collect();
    // Closing its output does not end a process: it has the rest of its time.
    if (m_running && (m_bytes.size() >= kMostOutput ||
                      WaitForSingleObject(m_process.get(), timeLeft()) != WAIT_OBJECT_0))
        end();
    return std::move(m_bytes);
}

const wchar_t *textOrNull(const std::wstring &text)
{
    return text.empty() ? NULL : text.c_str();
}

// What stands behind the program's own name on its command line.
std::wstring ownArguments()
{
    const wchar_t *at = GetCommandLineW();
    bool quoted = false;
    for (; *at && (quoted || (*at != L' ' && *at != L'\t')); ++at)
        if (*at == L'"')
            quoted = !quoted;
    while (*at == L' ' || *at == L'\t')
        ++at;
    return at;
}

bool shellStart(SHELLEXECUTEINFOW &info)
{
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    return ShellExecuteExW(&info) != FALSE;
}

} // namespace
} // namespace vl_run_program

std::wstring VL_ExecCommand(const std::wstring &command, intptr_t timeout, intptr_t encoding)
{
    // The interpreter takes no longer line.
    if (command.empty() || command.size() > 8000 || command.find(L'\0') != std::wstring::npos)
        return std::wstring();
    const std::unique_ptr<vl_run_program::Command> running(new vl_run_program::Command);
    if (!running->start(command))
        return std::wstring();
    const std::string bytes = running->output(vl_run_program::waitTime(timeout));
    std::wstring text = VL_DecodeText(bytes.data(), bytes.size(), encoding);
    const size_t last = text.find_last_not_of(L"\r\n");
    text.resize(last == std::wstring::npos ? 0 : last + 1);
    return text;
}

bool VL_RunProgram(const std::wstring &path, const std::wstring &arguments,
                   const std::wstring &folder, intptr_t show, bool wait)
{
    if (path.empty())
        return false;
    SHELLEXECUTEINFOW info;
    memset(&info, 0, sizeof info);
    info.lpFile = path.c_str();
    info.lpParameters = vl_run_program::textOrNull(arguments);
    info.lpDirectory = vl_run_program::textOrNull(folder);
    info.nShow = show >= 0 && show <= SW_FORCEMINIMIZE ? (int)show : SW_SHOWNORMAL;
    if (!vl_run_program::shellStart(info))
        return false;
    if (info.hProcess) {
        if (wait)
            WaitForSingleObject(info.hProcess, INFINITE);
        CloseHandle(info.hProcess);
    }
    return true;
}

intptr_t VL_CreateProcess(const std::wstring &path, const std::wstring &arguments,
                          const std::wstring &folder, bool visible)
{
    // Quotes of the caller's own are taken off, so that the name is quoted exactly once.
    std::wstring program = path;
    if (program.size() >= 2 && program.front() == L'"' && program.back() == L'"')
        program = program.substr(1, program.size() - 2);
    if (program.empty() || program.find(L'"') != std::wstring::npos)
        return 0;
    std::wstring commandLine = L"\"" + program + L"\"";
    if (!arguments.empty())
        commandLine += L" " + arguments;
    if (commandLine.size() > 32766)
        return 0;
    STARTUPINFOW startup;
    memset(&startup, 0, sizeof startup);
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = visible ? SW_SHOWNORMAL : SW_HIDE;
    PROCESS_INFORMATION info;
    if (!CreateProcessW(NULL, &commandLine[0], NULL, NULL, FALSE, visible ? 0 : CREATE_NO_WINDOW,
                        NULL, vl_run_program::textOrNull(folder), &startup, &info))
        return 0;
    CloseHandle(info.hThread);
    vl_run_program::remember(info.dwProcessId, info.hProcess);
    return (intptr_t)info.dwProcessId;
}

intptr_t VL_WaitProcess(const VL_Any &process, intptr_t timeout)
{
    const vl_run_program::Handle handle(vl_run_program::processHandle(process));
    DWORD code = 0;
    if (!handle.valid() ||
        WaitForSingleObject(handle.get(), vl_run_program::waitTime(timeout)) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(handle.get(), &code))
        return -1;
    return (intptr_t)(int)code;
}

bool VL_RestartAsAdmin()
{
    if (VL_IsAdmin())
        return true;
    std::wstring path(0x8000, L'\0');
    path.resize(GetModuleFileNameW(NULL, &path[0], (DWORD)path.size()));
    const std::wstring arguments = vl_run_program::ownArguments();
    SHELLEXECUTEINFOW info;
    memset(&info, 0, sizeof info);
    info.lpVerb = L"runas";
    info.lpFile = path.c_str();
    info.lpParameters = vl_run_program::textOrNull(arguments);
    info.nShow = SW_SHOWNORMAL;
    if (path.empty() || !vl_run_program::shellStart(info))
        return false;
    if (info.hProcess)
        CloseHandle(info.hProcess);
    ExitProcess(0);
}
