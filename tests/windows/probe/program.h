// The program under test as seen from outside: its process, windows, controls and output.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

using Lines = std::vector<std::wstring>;

std::wstring fromUtf8(const std::string &bytes);
std::string toUtf8(const std::wstring &text);
std::vector<std::wstring> splitWords(const std::wstring &text);
// The whole file; empty when it cannot be read.
std::string readFile(const std::wstring &path);
// Sleeps in short steps until `done` or until the time is over; gives what `done` said last.
bool waitUntil(const std::function<bool()> &done, DWORD milliseconds);

// Puts the mouse there for good: a move may be overtaken by news of where the mouse was. False when
// it does not stay.
bool moveMouse(POINT place);

// A piece of memory of the program, for messages that take pointers.
class RemoteMemory
{
public:
    static constexpr size_t kSize = 65536;

    explicit RemoteMemory(HANDLE process);
    ~RemoteMemory();
    RemoteMemory(const RemoteMemory &) = delete;
    RemoteMemory &operator=(const RemoteMemory &) = delete;

    char *address(size_t offset = 0) const { return m_address + offset; }
    void write(const void *data, size_t size, size_t offset = 0) const;
    void read(void *data, size_t size, size_t offset = 0) const;
    std::wstring readText(size_t offset, size_t most) const;

private:
    HANDLE m_process;
    char *m_address;
};

// What a process holds at a moment.
struct HeldObjects
{
    int drawing = 0; // fonts, brushes, bitmaps, regions, device contexts
    int windows = 0;
};

class Program
{
public:
    // How long anything may take, in milliseconds.
    static constexpr DWORD kLimit = 6000;

    // Starts the program on a desktop of its own, so that no other program takes the keyboard or
    // the mouse; what it prints goes to `logPath`.
    bool start(const std::wstring &path, const std::wstring &logPath);
    ~Program();

    HANDLE process() const { return m_process; }
    // Null when the program has no visible window.
    HWND window();
    // Waits for a visible window with that title and goes on with it.
    bool use(const std::wstring &title);
    std::vector<HWND> visibleWindows() const;
    // Window classes such as open menus have windows that are no windows to a user.
    HWND visibleOfClass(const wchar_t *className) const;
    bool isRunning() const { return WaitForSingleObject(m_process, 0) == WAIT_TIMEOUT; }
    DWORD exitCode() const;

    // "编号" or a name from the table of names; "window" for the window itself; "X/Class" for the
    // first window of that class inside the control X. Null when there is none.
    HWND control(const std::wstring &name);
    // The controls of the window that the table names, with their names.
    std::vector<std::pair<std::wstring, HWND>> controls();
    std::wstring nameOf(HWND control) const;
    std::map<std::wstring, int> names;

    // Until all that was typed and clicked so far has been worked off.
    void settle();
    // What was printed since the last call, as lines.
    Lines takeOutput();
    HeldObjects held() const;

    LRESULT send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    // Calls a function of user32.dll in the program; for menus, which only their own process can
    // look into.
    uintptr_t call(const char *function, uintptr_t a = 0, uintptr_t b = 0, uintptr_t c = 0,
                   uintptr_t d = 0, uintptr_t e = 0) const;
    const RemoteMemory &memory() const { return *m_memory; }

private:
    HWND childWithId(HWND parent, int id) const;

    HANDLE m_process = nullptr;
    DWORD m_processId = 0;
    HDESK m_desktop = nullptr;
    HWND m_window = nullptr;
    RemoteMemory *m_memory = nullptr;
    std::wstring m_logPath;
    size_t m_logRead = 0;
};

std::wstring classOf(HWND window);
