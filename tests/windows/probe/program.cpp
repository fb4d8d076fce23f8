#include "program.h"

#include <winternl.h>

#include <algorithm>
#include <cstring>

namespace {

// A call with five arguments that stand, with the function, where the first argument points.
const unsigned char kCallCode[] = {
    0x53,                         // push rbx
    0x48, 0x89, 0xCB,             // mov rbx, rcx
    0x48, 0x83, 0xEC, 0x30,       // sub rsp, 30h
    0x48, 0x8B, 0x4B, 0x08,       // mov rcx, [rbx+08h]
    0x48, 0x8B, 0x53, 0x10,       // mov rdx, [rbx+10h]
    0x4C, 0x8B, 0x43, 0x18,       // mov r8, [rbx+18h]
    0x4C, 0x8B, 0x4B, 0x20,       // mov r9, [rbx+20h]
    0x48, 0x8B, 0x43, 0x28,       // mov rax, [rbx+28h]
    0x48, 0x89, 0x44, 0x24, 0x20, // mov [rsp+20h], rax
    0xFF, 0x13,                   // call [rbx]
    0x48, 0x89, 0x43, 0x30,       // mov [rbx+30h], rax
    0x48, 0x83, 0xC4, 0x30,       // add rsp, 30h
    0x5B,                         // pop rbx
    0x31, 0xC0,                   // xor eax, eax
    0xC3,                         // ret
};
const size_t kCodePlace = 0xF000;
const size_t kArgumentPlace = 0xF100;

struct WindowSearch
{
    DWORD processId;
    bool visibleOnly;
    std::vector<HWND> found;
};

BOOL CALLBACK addWindow(HWND window, LPARAM parameter)
{
    auto &search = *reinterpret_cast<WindowSearch *>(parameter);
    DWORD processId = 0;
    GetWindowThreadProcessId(window, &processId);
    if (processId == search.processId && (!search.visibleOnly || IsWindowVisible(window)))
        search.found.push_back(window);
    return TRUE;
}

BOOL CALLBACK addChild(HWND window, LPARAM parameter)
{
    reinterpret_cast<std::vector<HWND> *>(parameter)->push_back(window);
    return TRUE;
}

std::vector<HWND> descendants(HWND window)
{
    std::vector<HWND> found;
    EnumChildWindows(window, addChild, reinterpret_cast<LPARAM>(&found));
    return found;
}

// Popups that belong to a control are no windows to a user.
bool isHelperWindow(HWND window)
{
    static const wchar_t *const classes[] = {L"#32768", L"ComboLBox", L"tooltips_class32", L"IME"};
    const std::wstring name = classOf(window);
    for (const wchar_t *helper : classes) {
        if (name == helper)
            return true;
    }
    return false;
}

// Wine asks the host's window manager to show and hide windows and waits for it, long when there is
// none. Inside a desktop with a frame it does all by itself.
void frameDesktop(const std::wstring &name)
{
    if (!GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version"))
        return;
    std::wstring command = L"explorer.exe /desktop=" + name + L",1280x1024";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, &command[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &process))
        return;
    WaitForInputIdle(process.hProcess, Program::kLimit);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

} // namespace

std::wstring fromUtf8(const std::string &bytes)
{
    const int size = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), int(bytes.size()), nullptr, 0);
    std::wstring text(size_t(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, bytes.data(), int(bytes.size()), &text[0], size);
    return text;
}

std::string toUtf8(const std::wstring &text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), nullptr, 0,
                                         nullptr, nullptr);
    std::string bytes(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), &bytes[0], size, nullptr,
                        nullptr);
    return bytes;
}

std::vector<std::wstring> splitWords(const std::wstring &text)
{
    std::vector<std::wstring> words;
    for (size_t begin = text.find_first_not_of(L' '); begin != std::wstring::npos;) {
        const size_t end = text.find(L' ', begin);
        words.push_back(text.substr(begin, end - begin));
        begin = end == std::wstring::npos ? end : text.find_first_not_of(L' ', end);
    }
    return words;
}

std::string readFile(const std::wstring &path)
{
    std::string bytes;
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return bytes;
    char piece[4096];
    DWORD count = 0;
    while (ReadFile(file, piece, sizeof piece, &count, nullptr) && count > 0)
        bytes.append(piece, count);
    CloseHandle(file);
    return bytes;
}

bool waitUntil(const std::function<bool()> &done, DWORD milliseconds)
{
    const ULONGLONG end = GetTickCount64() + milliseconds;
    for (;;) {
        if (done())
            return true;
        if (GetTickCount64() >= end)
            return false;
        Sleep(2);
    }
}

std::wstring classOf(HWND window)
{
    wchar_t name[256] = L"";
    GetClassNameW(window, name, 256);
    return name;
}

bool moveMouse(POINT place)
{
    // Only after a while is the position asked of the screen again.
    const DWORD kRemembered = 120;
    for (int tries = 0; tries < 20; ++tries) {
        SetCursorPos(place.x, place.y);
        Sleep(kRemembered);
        POINT now = {};
        if (GetCursorPos(&now) && now.x == place.x && now.y == place.y)
            return true;
    }
    return false;
}

RemoteMemory::RemoteMemory(HANDLE process)
    : m_process(process),
      m_address(static_cast<char *>(
          VirtualAllocEx(process, nullptr, kSize, MEM_COMMIT, PAGE_EXECUTE_READWRITE)))
{
    write(kCallCode, sizeof kCallCode, kCodePlace);
}

RemoteMemory::~RemoteMemory()
{
    VirtualFreeEx(m_process, m_address, 0, MEM_RELEASE);
}

void RemoteMemory::write(const void *data, size_t size, size_t offset) const
{
    WriteProcessMemory(m_process, m_address + offset, data, size, nullptr);
}

void RemoteMemory::read(void *data, size_t size, size_t offset) const
{
    std::memset(data, 0, size);
    ReadProcessMemory(m_process, m_address + offset, data, size, nullptr);
}

std::wstring RemoteMemory::readText(size_t offset, size_t most) const
{
    std::wstring text(most, L'\0');
    read(&text[0], most * sizeof(wchar_t), offset);
    return text.substr(0, text.find(L'\0'));
}

bool Program::start(const std::wstring &path, const std::wstring &logPath)
{
    std::wstring name = L"vorel" + std::to_wstring(GetCurrentProcessId());
    m_desktop = CreateDesktopW(name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
    if (!m_desktop || !SetThreadDesktop(m_desktop))
        return false;
    frameDesktop(name);
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    m_logPath = logPath;
    const HANDLE log = CreateFileW(logPath.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                                   CREATE_ALWAYS, 0, nullptr);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.lpDesktop = &name[0];
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = log;
    PROCESS_INFORMATION process = {};
    std::wstring command = L'"' + path + L'"';
    const bool started = CreateProcessW(nullptr, &command[0], nullptr, nullptr, TRUE, 0, nullptr,
                                        nullptr, &startup, &process);
    CloseHandle(log);
    if (!started)
        return false;
    CloseHandle(process.hThread);
    m_process = process.hProcess;
    m_processId = process.dwProcessId;
    m_memory = new RemoteMemory(m_process);
    waitUntil([this] { return window() || !isRunning(); }, 4 * kLimit);
    moveMouse({2, 2});
    settle();
    return true;
}

Program::~Program()
{
    delete m_memory;
    if (!m_process)
        return;
    TerminateProcess(m_process, 1);
    WaitForSingleObject(m_process, kLimit);
    CloseHandle(m_process);
}

DWORD Program::exitCode() const
{
    DWORD code = 0;
    GetExitCodeProcess(m_process, &code);
    return code;
}

std::vector<HWND> Program::visibleWindows() const
{
    WindowSearch search{m_processId, true, {}};
    EnumDesktopWindows(m_desktop, addWindow, reinterpret_cast<LPARAM>(&search));
    std::vector<HWND> windows;
    for (HWND window : search.found) {
        if (!isHelperWindow(window))
            windows.push_back(window);
    }
    return windows;
}

HWND Program::visibleOfClass(const wchar_t *className) const
{
    WindowSearch search{m_processId, true, {}};
    EnumDesktopWindows(m_desktop, addWindow, reinterpret_cast<LPARAM>(&search));
    for (HWND window : search.found) {
        if (classOf(window) == className)
            return window;
    }
    return nullptr;
}

HWND Program::window()
{
    if (m_window && IsWindow(m_window))
        return m_window;
    const std::vector<HWND> windows = visibleWindows();
    m_window = windows.empty() ? nullptr : windows.front();
    return m_window;
}

bool Program::use(const std::wstring &title)
{
    return waitUntil(
               [&] {
                   for (HWND window : visibleWindows()) {
                       wchar_t text[512] = L"";
                       SendMessageTimeoutW(window, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text),
                                           SMTO_ABORTIFHUNG, kLimit, nullptr);
                       if (title == text) {
                           m_window = window;
                           return true;
                       }
                   }
                   return !isRunning();
               },
               kLimit) &&
           isRunning();
}

// The parts of a combo box have ids of their own, which may be those of other controls.
HWND Program::childWithId(HWND parent, int id) const
{
    for (HWND child : descendants(parent)) {
        if (GetDlgCtrlID(child) == id && classOf(GetParent(child)) != L"ComboBox")
            return child;
    }
    return nullptr;
}

HWND Program::control(const std::wstring &name)
{
    const HWND top = window();
    if (name == L"window")
        return top;
    const size_t slash = name.find(L'/');
    if (slash != std::wstring::npos) {
        const HWND outer = control(name.substr(0, slash));
        for (HWND child : descendants(outer)) {
            if (outer && _wcsicmp(classOf(child).c_str(), name.c_str() + slash + 1) == 0)
                return child;
        }
        return nullptr;
    }
    const auto known = names.find(name);
    const int id = known != names.end() ? known->second : _wtoi(name.c_str());
    if (HWND found = id > 0 ? childWithId(top, id) : nullptr)
        return found;
    for (HWND window : id > 0 ? visibleWindows() : std::vector<HWND>()) {
        if (HWND found = childWithId(window, id))
            return found;
    }
    return nullptr;
}

std::vector<std::pair<std::wstring, HWND>> Program::controls()
{
    std::map<int, std::wstring> ordered;
    for (const auto &name : names)
        ordered[name.second] = name.first;
    std::vector<std::pair<std::wstring, HWND>> found;
    for (const auto &name : ordered) {
        if (HWND child = childWithId(window(), name.first))
            found.emplace_back(name.second, child);
    }
    return found;
}

std::wstring Program::nameOf(HWND control) const
{
    for (HWND at = control; at; at = GetAncestor(at, GA_PARENT)) {
        for (const auto &name : names) {
            if (name.second == GetDlgCtrlID(at) && classOf(GetParent(at)) != L"ComboBox")
                return name.first;
        }
        if (at == m_window)
            return L"window";
    }
    return L"none";
}

// Windows paints when there is no input left: a mark to be painted tells that all is worked off.
void Program::settle()
{
    waitUntil(
        [this] {
            const HWND top = isRunning() ? window() : nullptr;
            if (!top)
                return true;
            const RECT corner = {0, 0, 1, 1};
            RECT dirty;
            if (SendMessageTimeoutW(top, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kLimit, nullptr) == 0)
                return !isRunning();
            RedrawWindow(top, &corner, nullptr, RDW_INVALIDATE | RDW_NOCHILDREN);
            return waitUntil([&] { return !GetUpdateRect(top, &dirty, FALSE) || !IsWindow(top); },
                             kLimit);
        },
        kLimit);
}

Lines Program::takeOutput()
{
    const std::string all = readFile(m_logPath);
    const std::string fresh = all.substr(std::min(m_logRead, all.size()));
    Lines lines;
    for (size_t begin = 0; begin < fresh.size();) {
        const size_t end = fresh.find('\n', begin);
        if (end == std::string::npos)
            break;
        std::wstring line = fromUtf8(fresh.substr(begin, end - begin));
        if (!line.empty() && line.back() == L'\r')
            line.pop_back();
        lines.push_back(line);
        begin = end + 1;
    }
    const size_t last = fresh.rfind('\n');
    if (last != std::string::npos)
        m_logRead += last + 1;
    return lines;
}

// The drawing objects stand in a table that every process has; asking the system for their number
// gives 0 on hosts other than Windows.
HeldObjects Program::held() const
{
    HeldObjects count;
    WindowSearch search{m_processId, false, {}};
    EnumDesktopWindows(m_desktop, addWindow, reinterpret_cast<LPARAM>(&search));
    for (HWND window : search.found)
        count.windows += 1 + int(descendants(window).size());
    count.drawing = int(GetGuiResources(m_process, GR_GDIOBJECTS));
    if (count.drawing > 0)
        return count;
    const size_t kTableInBlock = 0xF8, kEntrySize = 24, kTypeInEntry = 14, kEntries = 0x10000;
    PROCESS_BASIC_INFORMATION basic = {};
    ULONG size = 0;
    NtQueryInformationProcess(m_process, ProcessBasicInformation, &basic, sizeof basic, &size);
    char *table = nullptr;
    ReadProcessMemory(m_process, reinterpret_cast<char *>(basic.PebBaseAddress) + kTableInBlock,
                      &table, sizeof table, nullptr);
    std::vector<char> entries(kEntrySize * kEntries);
    ReadProcessMemory(m_process, table, entries.data(), entries.size(), nullptr);
    for (size_t i = 0; i < kEntries; ++i)
        count.drawing += entries[i * kEntrySize + kTypeInEntry] != 0 ? 1 : 0;
    return count;
}

LRESULT Program::send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) const
{
    DWORD_PTR result = 0;
    SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, kLimit, &result);
    return LRESULT(result);
}

uintptr_t Program::call(const char *function, uintptr_t a, uintptr_t b, uintptr_t c, uintptr_t d,
                        uintptr_t e) const
{
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"user32.dll"), function);
    const uintptr_t arguments[7] = {reinterpret_cast<uintptr_t>(address), a, b, c, d, e, 0};
    m_memory->write(arguments, sizeof arguments, kArgumentPlace);
    const HANDLE thread =
        CreateRemoteThread(m_process, nullptr, 0,
                           reinterpret_cast<LPTHREAD_START_ROUTINE>(m_memory->address(kCodePlace)),
                           m_memory->address(kArgumentPlace), 0, nullptr);
    if (!thread)
        return 0;
    WaitForSingleObject(thread, kLimit);
    CloseHandle(thread);
    uintptr_t result = 0;
    m_memory->read(&result, sizeof result, kArgumentPlace + 6 * sizeof(uintptr_t));
    return result;
}
